#include "ResultDoubleInterface.h"

#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QtTest/QTest>

#include <functional>
#include <memory>

using Operation = std::function<Outcome(ResultDoubleInterface &)>;
using CompGetter = std::function<QList<QVariant>(ResultDoubleInterface &)>;
Q_DECLARE_METATYPE(Operation)
Q_DECLARE_METATYPE(CompGetter)

namespace {

const QString path = QStringLiteral("/Result/Voltage");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");

struct CompRow
{
    const char *member;
    CompGetter getter;
    const char *literal; ///< the operation text of its failure report
};

QList<CompRow> compGetters()
{
    return {
        {"getValueComp", [](ResultDoubleInterface &p) { return p.getValueComp(); }, "getValueComp(): "},
        {"getMinValueComp", [](ResultDoubleInterface &p) { return p.getMinValueComp(); }, "getMinValueComp(): "},
        {"getMaxValueComp", [](ResultDoubleInterface &p) { return p.getMaxValueComp(); }, "getMaxValueComp(): "},
        {"getStringComp", [](ResultDoubleInterface &p) { return p.getStringComp(); }, "getStringComp(): "},
        {"getMinStringComp", [](ResultDoubleInterface &p) { return p.getMinStringComp(); }, "getMinStringComp(): "},
        {"getMaxStringComp", [](ResultDoubleInterface &p) { return p.getMaxStringComp(); }, "getMaxStringComp(): "},
    };
}

/// @p text as the debug stream writes a QString: quoted, inner quotes and backslashes escaped.
QString quoted(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('"'), QLatin1String("\\\""));
    return QLatin1Char('"') + text + QLatin1Char('"');
}

/// A Comp getter's failure report for @p service and this test's path.
QString report(const char *literal, const QString &service, const QString &message)
{
    return QStringLiteral("\"ResultDoubleInterface::\" ") + QLatin1String(literal) + QStringLiteral(" ") +
        quoted(service) + QStringLiteral("  /  ") + quoted(path) + QStringLiteral("  / Error: ") + quoted(message);
}

/// The error that QDBusReply<QList<QVariant>> itself makes of what @p member answers now.
QString replyErrorOf(const QString &service, const QString &member)
{
    const QDBusMessage call = QDBusMessage::createMethodCall(service, path, FakeMeasApplication::interfaceName, member);
    const QDBusReply<QList<QVariant>> reply = QDBusConnection::sessionBus().call(call, QDBus::Block);
    return reply.error().message();
}

QList<LogLine> debugLinesOnly(const QList<LogLine> &lines)
{
    QList<LogLine> debug;
    for (const LogLine &line : lines) {
        if (line.level == QtDebugMsg)
            debug.append(line);
    }
    return debug;
}

} // namespace

class tst_ResultDoubleInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void sendsEachOperationAsItsOwnMemberWithoutArguments_data();
    void sendsEachOperationAsItsOwnMemberWithoutArguments();
    void mapsEachGeneratedReply_data();
    void mapsEachGeneratedReply();
    void generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent_data();
    void generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent();

    void compGettersReturnTheElementsAsSent_data();
    void compGettersReturnTheElementsAsSent();
    void compGettersPassAnEmptyListOnWithoutAReport_data();
    void compGettersPassAnEmptyListOnWithoutAReport();
    void compGettersReportAnErrorReplyInOneLine_data();
    void compGettersReportAnErrorReplyInOneLine();
    void compGettersTreatAWrongTypedReplyAsAFailure_data();
    void compGettersTreatAWrongTypedReplyAsAFailure();
    void compGettersReportAnAbsentServiceInOneLine_data();
    void compGettersReportAnAbsentServiceInOneLine();
    void compReportQuotesAndEscapesTheErrorMessage();
    void failingStringCompReportsUnderItsOwnName();
    void hasNoMinOrMaxStringButBothStringComps();

    void aFailedCallLeavesTheProxyAsItWas();

    void metaObjectListsExactlyItsSlotsInOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();

private:
    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<ResultDoubleInterface> m_proxy;
};

void tst_ResultDoubleInterface::init()
{
    m_fake.reset(new FakeMeasApplication);
    m_proxy.reset(new ResultDoubleInterface(m_fake->service(), path, QDBusConnection::sessionBus()));
}

void tst_ResultDoubleInterface::cleanup()
{
    m_proxy.reset();
    m_fake.reset();
}

void tst_ResultDoubleInterface::sendsEachOperationAsItsOwnMemberWithoutArguments_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");

    const auto op = [](std::function<void(ResultDoubleInterface &)> call) {
        return Operation([call](ResultDoubleInterface &proxy) {
            call(proxy);
            return Outcome{};
        });
    };
    QTest::newRow("getLowerLimit") << op([](ResultDoubleInterface &p) { p.getLowerLimit(); }) << "getLowerLimit";
    QTest::newRow("getUpperLimit") << op([](ResultDoubleInterface &p) { p.getUpperLimit(); }) << "getUpperLimit";
    QTest::newRow("getValue") << op([](ResultDoubleInterface &p) { p.getValue(); }) << "getValue";
    QTest::newRow("getString") << op([](ResultDoubleInterface &p) { p.getString(); }) << "getString";
    QTest::newRow("getMinValue") << op([](ResultDoubleInterface &p) { p.getMinValue(); }) << "getMinValue";
    QTest::newRow("getMaxValue") << op([](ResultDoubleInterface &p) { p.getMaxValue(); }) << "getMaxValue";
    QTest::newRow("resetMinMaxValues") << op([](ResultDoubleInterface &p) { p.resetMinMaxValues(); })
                                       << "resetMinMaxValues";
    QTest::newRow("stopMinMaxEval") << op([](ResultDoubleInterface &p) { p.stopMinMaxEval(); }) << "stopMinMaxEval";
    QTest::newRow("continueMinMaxEval") << op([](ResultDoubleInterface &p) { p.continueMinMaxEval(); })
                                        << "continueMinMaxEval";
    QTest::newRow("getValueComp") << op([](ResultDoubleInterface &p) { p.getValueComp(); }) << "getValueComp";
    QTest::newRow("getMinValueComp") << op([](ResultDoubleInterface &p) { p.getMinValueComp(); }) << "getMinValueComp";
    QTest::newRow("getMaxValueComp") << op([](ResultDoubleInterface &p) { p.getMaxValueComp(); }) << "getMaxValueComp";
    QTest::newRow("getStringComp") << op([](ResultDoubleInterface &p) { p.getStringComp(); }) << "getStringComp";
    QTest::newRow("getMinStringComp") << op([](ResultDoubleInterface &p) { p.getMinStringComp(); })
                                      << "getMinStringComp";
    QTest::newRow("getMaxStringComp") << op([](ResultDoubleInterface &p) { p.getMaxStringComp(); })
                                      << "getMaxStringComp";
}

void tst_ResultDoubleInterface::sendsEachOperationAsItsOwnMemberWithoutArguments()
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);

    LogCapture log; // an empty reply is a failure to the Comp getters
    m_fake->answer(member, ScriptedAnswer::reply());
    operation(*m_proxy);
    verifySingleCall(*m_fake, path, member, "", {});
}

void tst_ResultDoubleInterface::mapsEachGeneratedReply_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QVariant>("value");

    const ScriptedAnswer error = ScriptedAnswer::error(failure, QStringLiteral("no result"));
    const auto rows = [&](const char *name, Operation op, const QVariant &good, const QVariant &wrongType,
                          const QVariant &defaultValue) {
        QTest::addRow("%s answered", name) << op << name << ScriptedAnswer::value(good) << true << good;
        QTest::addRow("%s error", name) << op << name << error << false << defaultValue;
        QTest::addRow("%s wrong type", name) << op << name << ScriptedAnswer::value(wrongType) << false << defaultValue;
    };
    rows(
        "getLowerLimit", [](ResultDoubleInterface &p) { return outcomeOf(p.getLowerLimit()); }, -0.5, -1, 0.0);
    rows(
        "getUpperLimit", [](ResultDoubleInterface &p) { return outcomeOf(p.getUpperLimit()); }, 12.75,
        QStringLiteral("12.75"), 0.0);
    rows(
        "getValue", [](ResultDoubleInterface &p) { return outcomeOf(p.getValue()); }, 3.25, 3, 0.0);
    rows(
        "getString", [](ResultDoubleInterface &p) { return outcomeOf(p.getString()); }, QStringLiteral("3.25 V"), 3.25,
        QString());
    rows(
        "getMinValue", [](ResultDoubleInterface &p) { return outcomeOf(p.getMinValue()); }, -0.125, true, 0.0);
    rows(
        "getMaxValue", [](ResultDoubleInterface &p) { return outcomeOf(p.getMaxValue()); }, 11.5,
        QStringLiteral("11.5"), 0.0);
    {
        const Operation op = [](ResultDoubleInterface &p) { return outcomeOf(p.resetMinMaxValues()); };
        QTest::newRow("resetMinMaxValues answered")
            << op << "resetMinMaxValues" << ScriptedAnswer::reply() << true << QVariant();
        QTest::newRow("resetMinMaxValues answered with a value")
            << op << "resetMinMaxValues" << ScriptedAnswer::value(1) << true << QVariant();
        QTest::newRow("resetMinMaxValues error") << op << "resetMinMaxValues" << error << false << QVariant();
    }
    {
        const Operation op = [](ResultDoubleInterface &p) { return outcomeOf(p.stopMinMaxEval()); };
        QTest::newRow("stopMinMaxEval answered")
            << op << "stopMinMaxEval" << ScriptedAnswer::reply() << true << QVariant();
        QTest::newRow("stopMinMaxEval answered with a value")
            << op << "stopMinMaxEval" << ScriptedAnswer::value(1) << true << QVariant();
        QTest::newRow("stopMinMaxEval error") << op << "stopMinMaxEval" << error << false << QVariant();
    }
    {
        const Operation op = [](ResultDoubleInterface &p) { return outcomeOf(p.continueMinMaxEval()); };
        QTest::newRow("continueMinMaxEval answered")
            << op << "continueMinMaxEval" << ScriptedAnswer::reply() << true << QVariant();
        QTest::newRow("continueMinMaxEval answered with a value")
            << op << "continueMinMaxEval" << ScriptedAnswer::value(1) << true << QVariant();
        QTest::newRow("continueMinMaxEval error") << op << "continueMinMaxEval" << error << false << QVariant();
    }
}

void tst_ResultDoubleInterface::mapsEachGeneratedReply()
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);
    QFETCH(ScriptedAnswer, answer);
    QFETCH(bool, valid);
    QFETCH(QVariant, value);

    LogCapture log;
    m_fake->answer(member, answer);
    const Outcome outcome = operation(*m_proxy);
    QCOMPARE(outcome.valid, valid);
    QCOMPARE(outcome.value, value);
    QCOMPARE(outcome.value.userType(), value.userType());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ResultDoubleInterface::generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("getLowerLimit") << Operation([](ResultDoubleInterface &p) { return outcomeOf(p.getLowerLimit()); })
                                   << QVariant(0.0);
    QTest::newRow("getUpperLimit") << Operation([](ResultDoubleInterface &p) { return outcomeOf(p.getUpperLimit()); })
                                   << QVariant(0.0);
    QTest::newRow("getValue") << Operation([](ResultDoubleInterface &p) { return outcomeOf(p.getValue()); })
                              << QVariant(0.0);
    QTest::newRow("getString") << Operation([](ResultDoubleInterface &p) { return outcomeOf(p.getString()); })
                               << QVariant(QString());
    QTest::newRow("getMinValue") << Operation([](ResultDoubleInterface &p) { return outcomeOf(p.getMinValue()); })
                                 << QVariant(0.0);
    QTest::newRow("getMaxValue") << Operation([](ResultDoubleInterface &p) { return outcomeOf(p.getMaxValue()); })
                                 << QVariant(0.0);
    QTest::newRow("resetMinMaxValues") << Operation([](ResultDoubleInterface &p) {
        return outcomeOf(p.resetMinMaxValues());
    }) << QVariant();
    QTest::newRow("stopMinMaxEval") << Operation([](ResultDoubleInterface &p) { return outcomeOf(p.stopMinMaxEval()); })
                                    << QVariant();
    QTest::newRow("continueMinMaxEval") << Operation([](ResultDoubleInterface &p) {
        return outcomeOf(p.continueMinMaxEval());
    }) << QVariant();
}

void tst_ResultDoubleInterface::generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent()
{
    QFETCH(Operation, operation);
    QFETCH(QVariant, value);

    LogCapture log;
    ResultDoubleInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const Outcome outcome = operation(proxy);

    QCOMPARE(outcome.valid, false);
    QCOMPARE(outcome.value, value);
    QCOMPARE(outcome.value.userType(), value.userType());
    if (value.userType() == QMetaType::QString)
        QVERIFY(outcome.value.toString().isNull());
    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ResultDoubleInterface::compGettersReturnTheElementsAsSent_data()
{
    QTest::addColumn<CompGetter>("getter");
    QTest::addColumn<QString>("member");

    for (const CompRow &row : compGetters())
        QTest::newRow(row.member) << row.getter << row.member;
}

void tst_ResultDoubleInterface::compGettersReturnTheElementsAsSent()
{
    QFETCH(CompGetter, getter);
    QFETCH(QString, member);

    LogCapture log;
    const QList<QVariant> sent{3, QStringLiteral("3 counts"), -1.5, true, 1};
    m_fake->answer(member, ScriptedAnswer::value(sent));

    const QList<QVariant> received = getter(*m_proxy);

    QCOMPARE(received, sent);
    // Each element arrives unwrapped from its D-Bus variant, with its own type.
    const QList<int> types{QMetaType::Int, QMetaType::QString, QMetaType::Double, QMetaType::Bool, QMetaType::Int};
    QCOMPARE(received.size(), types.size());
    for (int i = 0; i < types.size(); ++i) {
        QCOMPARE(received.at(i).userType(), types.at(i));
        QVERIFY(received.at(i).userType() != qMetaTypeId<QDBusVariant>());
    }
    verifySingleCall(*m_fake, path, member, "", {});
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ResultDoubleInterface::compGettersPassAnEmptyListOnWithoutAReport_data()
{
    compGettersReturnTheElementsAsSent_data();
}

void tst_ResultDoubleInterface::compGettersPassAnEmptyListOnWithoutAReport()
{
    QFETCH(CompGetter, getter);
    QFETCH(QString, member);

    LogCapture log;
    m_fake->answer(member, ScriptedAnswer::value(QList<QVariant>()));

    QCOMPARE(getter(*m_proxy), QList<QVariant>());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ResultDoubleInterface::compGettersReportAnErrorReplyInOneLine_data()
{
    QTest::addColumn<CompGetter>("getter");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("line");

    QTest::newRow("getValueComp") << CompGetter([](ResultDoubleInterface &p) { return p.getValueComp(); })
                                  << "getValueComp"
                                  << "\"ResultDoubleInterface::\" getValueComp():  \"com.velk.mqx.app.fake\"  /  "
                                     "\"/Result/Voltage\"  / Error: \"no reading\"";
    QTest::newRow("getMinValueComp") << CompGetter([](ResultDoubleInterface &p) { return p.getMinValueComp(); })
                                     << "getMinValueComp"
                                     << "\"ResultDoubleInterface::\" getMinValueComp():  \"com.velk.mqx.app.fake\"  /  "
                                        "\"/Result/Voltage\"  / Error: \"no reading\"";
    QTest::newRow("getMaxValueComp") << CompGetter([](ResultDoubleInterface &p) { return p.getMaxValueComp(); })
                                     << "getMaxValueComp"
                                     << "\"ResultDoubleInterface::\" getMaxValueComp():  \"com.velk.mqx.app.fake\"  /  "
                                        "\"/Result/Voltage\"  / Error: \"no reading\"";
    QTest::newRow("getStringComp") << CompGetter([](ResultDoubleInterface &p) { return p.getStringComp(); })
                                   << "getStringComp"
                                   << "\"ResultDoubleInterface::\" getStringComp():  \"com.velk.mqx.app.fake\"  /  "
                                      "\"/Result/Voltage\"  / Error: \"no reading\"";
    QTest::newRow("getMinStringComp") << CompGetter([](ResultDoubleInterface &p) { return p.getMinStringComp(); })
                                      << "getMinStringComp"
                                      << "\"ResultDoubleInterface::\" getMinStringComp():  \"com.velk.mqx.app.fake\"  "
                                         "/  \"/Result/Voltage\"  / Error: \"no reading\"";
    QTest::newRow("getMaxStringComp") << CompGetter([](ResultDoubleInterface &p) { return p.getMaxStringComp(); })
                                      << "getMaxStringComp"
                                      << "\"ResultDoubleInterface::\" getMaxStringComp():  \"com.velk.mqx.app.fake\"  "
                                         "/  \"/Result/Voltage\"  / Error: \"no reading\"";
}

void tst_ResultDoubleInterface::compGettersReportAnErrorReplyInOneLine()
{
    QFETCH(CompGetter, getter);
    QFETCH(QString, member);
    QFETCH(QString, line);

    LogCapture log;
    m_fake->answer(member, ScriptedAnswer::error(failure, QStringLiteral("no reading")));

    QCOMPARE(getter(*m_proxy), QList<QVariant>());

    verifySingleCall(*m_fake, path, member, "", {});
    QCOMPARE(log.lines(), debugLines({line}));
}

void tst_ResultDoubleInterface::compGettersTreatAWrongTypedReplyAsAFailure_data()
{
    QTest::addColumn<CompGetter>("getter");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("literal");
    QTest::addColumn<ScriptedAnswer>("answer");

    for (const CompRow &row : compGetters()) {
        QTest::addRow("%s integer array", row.member)
            << row.getter << row.member << row.literal << ScriptedAnswer::value(QVariant::fromValue(QList<int>{1, 2}));
        QTest::addRow("%s string", row.member)
            << row.getter << row.member << row.literal << ScriptedAnswer::value(QStringLiteral("1 2"));
        QTest::addRow("%s string list", row.member)
            << row.getter << row.member << row.literal << ScriptedAnswer::value(QStringList{"1", "2"});
        QTest::addRow("%s nothing", row.member) << row.getter << row.member << row.literal << ScriptedAnswer::reply();
    }
}

void tst_ResultDoubleInterface::compGettersTreatAWrongTypedReplyAsAFailure()
{
    QFETCH(CompGetter, getter);
    QFETCH(QString, member);
    QFETCH(QString, literal);
    QFETCH(ScriptedAnswer, answer);

    LogCapture log;
    m_fake->answer(member, answer);

    QCOMPARE(getter(*m_proxy), QList<QVariant>());

    const QString message = replyErrorOf(m_fake->service(), member);
    QVERIFY(message.startsWith(QStringLiteral("Unexpected reply signature")));
    QCOMPARE(log.lines(), debugLines({report(literal.toLatin1().constData(), m_fake->service(), message)}));
}

void tst_ResultDoubleInterface::compGettersReportAnAbsentServiceInOneLine_data()
{
    QTest::addColumn<CompGetter>("getter");
    QTest::addColumn<QString>("literal");

    for (const CompRow &row : compGetters())
        QTest::newRow(row.member) << row.getter << row.literal;
}

void tst_ResultDoubleInterface::compGettersReportAnAbsentServiceInOneLine()
{
    QFETCH(CompGetter, getter);
    QFETCH(QString, literal);

    LogCapture log;
    ResultDoubleInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    QCOMPARE(getter(proxy), QList<QVariant>());

    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
    QCOMPARE(log.lines(),
             debugLines({report(literal.toLatin1().constData(), absentService(), proxy.lastError().message())}));
}

void tst_ResultDoubleInterface::compReportQuotesAndEscapesTheErrorMessage()
{
    LogCapture log;
    m_fake->answer("getValueComp", ScriptedAnswer::error(failure, QStringLiteral("say \"hi\" \\ bye")));

    m_proxy->getValueComp();

    QCOMPARE(log.lines(),
             debugLines({"\"ResultDoubleInterface::\" getValueComp():  \"com.velk.mqx.app.fake\"  /  "
                         "\"/Result/Voltage\"  / Error: \"say \\\"hi\\\" \\\\ bye\""}));
}

void tst_ResultDoubleInterface::failingStringCompReportsUnderItsOwnName()
{
    LogCapture log;
    m_fake->answer("getStringComp", ScriptedAnswer::error(failure, QStringLiteral("no text")));

    QCOMPARE(m_proxy->getStringComp(), QList<QVariant>());

    verifySingleCall(*m_fake, path, "getStringComp", "", {});
    QCOMPARE(log.lines(),
             debugLines({"\"ResultDoubleInterface::\" getStringComp():  \"com.velk.mqx.app.fake\"  /  "
                         "\"/Result/Voltage\"  / Error: \"no text\""}));
}

void tst_ResultDoubleInterface::hasNoMinOrMaxStringButBothStringComps()
{
    const QMetaObject &meta = ResultDoubleInterface::staticMetaObject;
    QCOMPARE(meta.indexOfMethod("getMinString()"), -1);
    QCOMPARE(meta.indexOfMethod("getMaxString()"), -1);
    QVERIFY(meta.indexOfMethod("getMinStringComp()") >= meta.methodOffset());
    QVERIFY(meta.indexOfMethod("getMaxStringComp()") >= meta.methodOffset());

    LogCapture log;
    QVERIFY(!QMetaObject::invokeMethod(m_proxy.get(), "getMinString", Qt::DirectConnection));
    QVERIFY(!QMetaObject::invokeMethod(m_proxy.get(), "getMaxString", Qt::DirectConnection));
    QCOMPARE(debugLinesOnly(log.lines()), QList<LogLine>());

    // Nothing went out: the next call is the first the application sees.
    m_fake->answer("getValue", ScriptedAnswer::value(1.0));
    m_proxy->getValue();
    verifySingleCall(*m_fake, path, "getValue", "", {});
}

void tst_ResultDoubleInterface::aFailedCallLeavesTheProxyAsItWas()
{
    LogCapture log;
    m_fake->answer("getValueComp", ScriptedAnswer::error(failure, QStringLiteral("not yet")));
    m_fake->answer("getValue", ScriptedAnswer::error(failure, QStringLiteral("not yet")));
    QCOMPARE(m_proxy->getValueComp(), QList<QVariant>());
    QVERIFY(!m_proxy->getValue().isValid());

    const QList<QVariant> reading{3.25, QStringLiteral("3.25 V")};
    m_fake->answer("getValueComp", ScriptedAnswer::value(reading));
    m_fake->answer("getValue", ScriptedAnswer::value(3.25));
    QCOMPARE(m_proxy->getValueComp(), reading);
    QCOMPARE(m_proxy->getValue().value(), 3.25);

    QVERIFY(m_fake->waitForCalls(4));
    const QList<ReceivedCall> calls = m_fake->calls();
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(calls.at(i + 2).path, calls.at(i).path);
        QCOMPARE(calls.at(i + 2).interface, calls.at(i).interface);
        QCOMPARE(calls.at(i + 2).member, calls.at(i).member);
        QCOMPARE(calls.at(i + 2).signature, calls.at(i).signature);
        QCOMPARE(calls.at(i + 2).arguments, calls.at(i).arguments);
    }
    QCOMPARE(log.lines().size(), 1);
}

void tst_ResultDoubleInterface::metaObjectListsExactlyItsSlotsInOrder()
{
    const QMetaObject &meta = ResultDoubleInterface::staticMetaObject;
    const QStringList expected{"getLowerLimit()",      "getUpperLimit()",    "getValue()",          "getString()",
                               "getMinValue()",        "getMaxValue()",      "resetMinMaxValues()", "stopMinMaxEval()",
                               "continueMinMaxEval()", "getValueComp()",     "getMinValueComp()",   "getMaxValueComp()",
                               "getStringComp()",      "getMinStringComp()", "getMaxStringComp()"};
    QCOMPARE(ownMethodSignatures(meta), expected);
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Slot), expected);
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Signal), QStringList());
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 15);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
    QCOMPARE(meta.classInfoCount(), meta.classInfoOffset());
    QCOMPARE(meta.superClass(), &QDBusAbstractInterface::staticMetaObject);
    QCOMPARE(m_proxy->metaObject(), &meta);
}

void tst_ResultDoubleInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    QCOMPARE(m_proxy->qt_metacast("ResultDoubleInterface"), static_cast<void *>(m_proxy.get()));
    QCOMPARE(m_proxy->qt_metacast("QDBusAbstractInterface"),
             static_cast<void *>(static_cast<QDBusAbstractInterface *>(m_proxy.get())));
    QCOMPARE(m_proxy->qt_metacast(nullptr), nullptr);
    QCOMPARE(m_proxy->qt_metacast("ResultIntInterface"), nullptr);
}

void tst_ResultDoubleInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(3.25));
    m_fake->answer("getString", ScriptedAnswer::value(QStringLiteral("3.25 V")));
    const QList<QVariant> reading{3.25, QStringLiteral("3.25 V")};
    m_fake->answer("getValueComp", ScriptedAnswer::value(reading));

    QDBusReply<double> value;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<double>, value)));
    QVERIFY(value.isValid());
    QCOMPARE(value.value(), m_proxy->getValue().value());
    QCOMPARE(value.value(), 3.25);

    QDBusReply<QString> text;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getString", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<QString>, text)));
    QCOMPARE(text.value(), QStringLiteral("3.25 V"));

    QList<QVariant> composite;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValueComp", Qt::DirectConnection,
                                      Q_RETURN_ARG(QList<QVariant>, composite)));
    QCOMPARE(composite, m_proxy->getValueComp());
    QCOMPARE(composite, reading);

    m_fake->answer("resetMinMaxValues", ScriptedAnswer::reply());
    QDBusReply<void> reset;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "resetMinMaxValues", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<void>, reset)));
    QVERIFY(reset.isValid());
    QVERIFY(m_fake->waitForCalls(6));
    QCOMPARE(m_fake->calls().last().member, QStringLiteral("resetMinMaxValues"));
}

QTEST_GUILESS_MAIN(tst_ResultDoubleInterface)

#include "tst_resultdoubleinterface.moc"
