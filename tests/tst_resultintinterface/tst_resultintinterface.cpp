#include "ResultIntInterface.h"

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

using Operation = std::function<Outcome(ResultIntInterface &)>;
using CompGetter = std::function<QList<QVariant>(ResultIntInterface &)>;
Q_DECLARE_METATYPE(Operation)
Q_DECLARE_METATYPE(CompGetter)

namespace {

const QString path = QStringLiteral("/Result/Count");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");

struct CompRow
{
    const char *member;
    CompGetter getter;
    const char *literal; ///< the operation text of its failure report
};

// Three rows report under getMinValueComp's text while calling their own member.
QList<CompRow> compGetters()
{
    return {
        {"getValueComp", [](ResultIntInterface &p) { return p.getValueComp(); }, "getValueComp(): "},
        {"getMinValueComp", [](ResultIntInterface &p) { return p.getMinValueComp(); }, "getMinValueComp(): "},
        {"getMaxValueComp", [](ResultIntInterface &p) { return p.getMaxValueComp(); }, "getMinValueComp(): "},
        {"getStringComp", [](ResultIntInterface &p) { return p.getStringComp(); }, "getMinValueComp(): "},
        {"getMinStringComp", [](ResultIntInterface &p) { return p.getMinStringComp(); }, "getMinValueComp(): "},
        {"getMaxStringComp", [](ResultIntInterface &p) { return p.getMaxStringComp(); }, "getMaxStringComp(): "},
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
    return QStringLiteral("\"ResultIntInterface::\" ") + QLatin1String(literal) + QStringLiteral(" ") +
        quoted(service) + QStringLiteral("  /  ") + quoted(path) + QStringLiteral("  / Error: ") + quoted(message);
}

/// The error that QDBusReply<QList<QVariant>> itself makes of what @p member answers now.
QString replyErrorOf(const QString &service, const QString &member)
{
    const QDBusMessage call = QDBusMessage::createMethodCall(service, path, FakeMeasApplication::interfaceName, member);
    const QDBusReply<QList<QVariant>> reply = QDBusConnection::sessionBus().call(call, QDBus::Block);
    return reply.error().message();
}

} // namespace

class tst_ResultIntInterface : public QObject
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
    void failingStringCompReportsUnderMinValueCompTextButCallsItsOwnMember();
    void failingMaxValueCompAndMinStringCompReportUnderMinValueCompText();

    void aFailedCallLeavesTheProxyAsItWas();

    void metaObjectListsExactlyItsSlotsInOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();

private:
    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<ResultIntInterface> m_proxy;
};

void tst_ResultIntInterface::init()
{
    m_fake.reset(new FakeMeasApplication);
    m_proxy.reset(new ResultIntInterface(m_fake->service(), path, QDBusConnection::sessionBus()));
}

void tst_ResultIntInterface::cleanup()
{
    m_proxy.reset();
    m_fake.reset();
}

void tst_ResultIntInterface::sendsEachOperationAsItsOwnMemberWithoutArguments_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");

    const auto op = [](std::function<void(ResultIntInterface &)> call) {
        return Operation([call](ResultIntInterface &proxy) {
            call(proxy);
            return Outcome{};
        });
    };
    QTest::newRow("getLowerLimit") << op([](ResultIntInterface &p) { p.getLowerLimit(); }) << "getLowerLimit";
    QTest::newRow("getUpperLimit") << op([](ResultIntInterface &p) { p.getUpperLimit(); }) << "getUpperLimit";
    QTest::newRow("getValue") << op([](ResultIntInterface &p) { p.getValue(); }) << "getValue";
    QTest::newRow("getString") << op([](ResultIntInterface &p) { p.getString(); }) << "getString";
    QTest::newRow("getMinValue") << op([](ResultIntInterface &p) { p.getMinValue(); }) << "getMinValue";
    QTest::newRow("getMinString") << op([](ResultIntInterface &p) { p.getMinString(); }) << "getMinString";
    QTest::newRow("getMaxValue") << op([](ResultIntInterface &p) { p.getMaxValue(); }) << "getMaxValue";
    QTest::newRow("getMaxString") << op([](ResultIntInterface &p) { p.getMaxString(); }) << "getMaxString";
    QTest::newRow("resetMinMaxValues") << op([](ResultIntInterface &p) { p.resetMinMaxValues(); })
                                       << "resetMinMaxValues";
    QTest::newRow("stopMinMaxEval") << op([](ResultIntInterface &p) { p.stopMinMaxEval(); }) << "stopMinMaxEval";
    QTest::newRow("continueMinMaxEval") << op([](ResultIntInterface &p) { p.continueMinMaxEval(); })
                                        << "continueMinMaxEval";
    QTest::newRow("getValueComp") << op([](ResultIntInterface &p) { p.getValueComp(); }) << "getValueComp";
    QTest::newRow("getMinValueComp") << op([](ResultIntInterface &p) { p.getMinValueComp(); }) << "getMinValueComp";
    QTest::newRow("getMaxValueComp") << op([](ResultIntInterface &p) { p.getMaxValueComp(); }) << "getMaxValueComp";
    QTest::newRow("getStringComp") << op([](ResultIntInterface &p) { p.getStringComp(); }) << "getStringComp";
    QTest::newRow("getMinStringComp") << op([](ResultIntInterface &p) { p.getMinStringComp(); }) << "getMinStringComp";
    QTest::newRow("getMaxStringComp") << op([](ResultIntInterface &p) { p.getMaxStringComp(); }) << "getMaxStringComp";
}

void tst_ResultIntInterface::sendsEachOperationAsItsOwnMemberWithoutArguments()
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);

    LogCapture log; // an empty reply is a failure to the Comp getters
    m_fake->answer(member, ScriptedAnswer::reply());
    operation(*m_proxy);
    verifySingleCall(*m_fake, path, member, "", {});
}

void tst_ResultIntInterface::mapsEachGeneratedReply_data()
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
        "getLowerLimit", [](ResultIntInterface &p) { return outcomeOf(p.getLowerLimit()); }, -100,
        QStringLiteral("-100"), 0);
    rows(
        "getUpperLimit", [](ResultIntInterface &p) { return outcomeOf(p.getUpperLimit()); }, 100, 100.0, 0);
    rows(
        "getValue", [](ResultIntInterface &p) { return outcomeOf(p.getValue()); }, 42, true, 0);
    rows(
        "getString", [](ResultIntInterface &p) { return outcomeOf(p.getString()); }, QStringLiteral("42 counts"), 42,
        QString());
    rows(
        "getMinValue", [](ResultIntInterface &p) { return outcomeOf(p.getMinValue()); }, -7, QStringLiteral("-7"), 0);
    rows(
        "getMinString", [](ResultIntInterface &p) { return outcomeOf(p.getMinString()); }, QStringLiteral("-7 counts"),
        -7, QString());
    rows(
        "getMaxValue", [](ResultIntInterface &p) { return outcomeOf(p.getMaxValue()); }, 99, 99.0, 0);
    rows(
        "getMaxString", [](ResultIntInterface &p) { return outcomeOf(p.getMaxString()); }, QStringLiteral("99 counts"),
        true, QString());
    {
        const Operation op = [](ResultIntInterface &p) { return outcomeOf(p.resetMinMaxValues()); };
        QTest::newRow("resetMinMaxValues answered")
            << op << "resetMinMaxValues" << ScriptedAnswer::reply() << true << QVariant();
        QTest::newRow("resetMinMaxValues answered with a value")
            << op << "resetMinMaxValues" << ScriptedAnswer::value(1) << true << QVariant();
        QTest::newRow("resetMinMaxValues error") << op << "resetMinMaxValues" << error << false << QVariant();
    }
    {
        const Operation op = [](ResultIntInterface &p) { return outcomeOf(p.stopMinMaxEval()); };
        QTest::newRow("stopMinMaxEval answered")
            << op << "stopMinMaxEval" << ScriptedAnswer::reply() << true << QVariant();
        QTest::newRow("stopMinMaxEval answered with a value")
            << op << "stopMinMaxEval" << ScriptedAnswer::value(1) << true << QVariant();
        QTest::newRow("stopMinMaxEval error") << op << "stopMinMaxEval" << error << false << QVariant();
    }
    {
        const Operation op = [](ResultIntInterface &p) { return outcomeOf(p.continueMinMaxEval()); };
        QTest::newRow("continueMinMaxEval answered")
            << op << "continueMinMaxEval" << ScriptedAnswer::reply() << true << QVariant();
        QTest::newRow("continueMinMaxEval answered with a value")
            << op << "continueMinMaxEval" << ScriptedAnswer::value(1) << true << QVariant();
        QTest::newRow("continueMinMaxEval error") << op << "continueMinMaxEval" << error << false << QVariant();
    }
}

void tst_ResultIntInterface::mapsEachGeneratedReply()
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

void tst_ResultIntInterface::generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("getLowerLimit") << Operation([](ResultIntInterface &p) { return outcomeOf(p.getLowerLimit()); })
                                   << QVariant(0);
    QTest::newRow("getUpperLimit") << Operation([](ResultIntInterface &p) { return outcomeOf(p.getUpperLimit()); })
                                   << QVariant(0);
    QTest::newRow("getValue") << Operation([](ResultIntInterface &p) { return outcomeOf(p.getValue()); })
                              << QVariant(0);
    QTest::newRow("getString") << Operation([](ResultIntInterface &p) { return outcomeOf(p.getString()); })
                               << QVariant(QString());
    QTest::newRow("getMinValue") << Operation([](ResultIntInterface &p) { return outcomeOf(p.getMinValue()); })
                                 << QVariant(0);
    QTest::newRow("getMinString") << Operation([](ResultIntInterface &p) { return outcomeOf(p.getMinString()); })
                                  << QVariant(QString());
    QTest::newRow("getMaxValue") << Operation([](ResultIntInterface &p) { return outcomeOf(p.getMaxValue()); })
                                 << QVariant(0);
    QTest::newRow("getMaxString") << Operation([](ResultIntInterface &p) { return outcomeOf(p.getMaxString()); })
                                  << QVariant(QString());
    QTest::newRow("resetMinMaxValues") << Operation([](ResultIntInterface &p) {
        return outcomeOf(p.resetMinMaxValues());
    }) << QVariant();
    QTest::newRow("stopMinMaxEval") << Operation([](ResultIntInterface &p) { return outcomeOf(p.stopMinMaxEval()); })
                                    << QVariant();
    QTest::newRow("continueMinMaxEval") << Operation([](ResultIntInterface &p) {
        return outcomeOf(p.continueMinMaxEval());
    }) << QVariant();
}

void tst_ResultIntInterface::generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent()
{
    QFETCH(Operation, operation);
    QFETCH(QVariant, value);

    LogCapture log;
    ResultIntInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const Outcome outcome = operation(proxy);

    QCOMPARE(outcome.valid, false);
    QCOMPARE(outcome.value, value);
    QCOMPARE(outcome.value.userType(), value.userType());
    if (value.userType() == QMetaType::QString)
        QVERIFY(outcome.value.toString().isNull());
    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ResultIntInterface::compGettersReturnTheElementsAsSent_data()
{
    QTest::addColumn<CompGetter>("getter");
    QTest::addColumn<QString>("member");

    for (const CompRow &row : compGetters())
        QTest::newRow(row.member) << row.getter << row.member;
}

void tst_ResultIntInterface::compGettersReturnTheElementsAsSent()
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

void tst_ResultIntInterface::compGettersPassAnEmptyListOnWithoutAReport_data()
{
    compGettersReturnTheElementsAsSent_data();
}

void tst_ResultIntInterface::compGettersPassAnEmptyListOnWithoutAReport()
{
    QFETCH(CompGetter, getter);
    QFETCH(QString, member);

    LogCapture log;
    m_fake->answer(member, ScriptedAnswer::value(QList<QVariant>()));

    QCOMPARE(getter(*m_proxy), QList<QVariant>());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ResultIntInterface::compGettersReportAnErrorReplyInOneLine_data()
{
    QTest::addColumn<CompGetter>("getter");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("line");

    QTest::newRow("getValueComp") << CompGetter([](ResultIntInterface &p) { return p.getValueComp(); })
                                  << "getValueComp"
                                  << "\"ResultIntInterface::\" getValueComp():  \"com.velk.mqx.app.fake\"  /  "
                                     "\"/Result/Count\"  / Error: \"no reading\"";
    QTest::newRow("getMinValueComp") << CompGetter([](ResultIntInterface &p) { return p.getMinValueComp(); })
                                     << "getMinValueComp"
                                     << "\"ResultIntInterface::\" getMinValueComp():  \"com.velk.mqx.app.fake\"  /  "
                                        "\"/Result/Count\"  / Error: \"no reading\"";
    QTest::newRow("getMaxValueComp") << CompGetter([](ResultIntInterface &p) { return p.getMaxValueComp(); })
                                     << "getMaxValueComp"
                                     << "\"ResultIntInterface::\" getMinValueComp():  \"com.velk.mqx.app.fake\"  /  "
                                        "\"/Result/Count\"  / Error: \"no reading\"";
    QTest::newRow("getStringComp") << CompGetter([](ResultIntInterface &p) { return p.getStringComp(); })
                                   << "getStringComp"
                                   << "\"ResultIntInterface::\" getMinValueComp():  \"com.velk.mqx.app.fake\"  /  "
                                      "\"/Result/Count\"  / Error: \"no reading\"";
    QTest::newRow("getMinStringComp") << CompGetter([](ResultIntInterface &p) { return p.getMinStringComp(); })
                                      << "getMinStringComp"
                                      << "\"ResultIntInterface::\" getMinValueComp():  \"com.velk.mqx.app.fake\"  /  "
                                         "\"/Result/Count\"  / Error: \"no reading\"";
    QTest::newRow("getMaxStringComp") << CompGetter([](ResultIntInterface &p) { return p.getMaxStringComp(); })
                                      << "getMaxStringComp"
                                      << "\"ResultIntInterface::\" getMaxStringComp():  \"com.velk.mqx.app.fake\"  /  "
                                         "\"/Result/Count\"  / Error: \"no reading\"";
}

void tst_ResultIntInterface::compGettersReportAnErrorReplyInOneLine()
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

void tst_ResultIntInterface::compGettersTreatAWrongTypedReplyAsAFailure_data()
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

void tst_ResultIntInterface::compGettersTreatAWrongTypedReplyAsAFailure()
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

void tst_ResultIntInterface::compGettersReportAnAbsentServiceInOneLine_data()
{
    QTest::addColumn<CompGetter>("getter");
    QTest::addColumn<QString>("literal");

    for (const CompRow &row : compGetters())
        QTest::newRow(row.member) << row.getter << row.literal;
}

void tst_ResultIntInterface::compGettersReportAnAbsentServiceInOneLine()
{
    QFETCH(CompGetter, getter);
    QFETCH(QString, literal);

    LogCapture log;
    ResultIntInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    QCOMPARE(getter(proxy), QList<QVariant>());

    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
    QCOMPARE(log.lines(),
             debugLines({report(literal.toLatin1().constData(), absentService(), proxy.lastError().message())}));
}

void tst_ResultIntInterface::compReportQuotesAndEscapesTheErrorMessage()
{
    LogCapture log;
    m_fake->answer("getValueComp", ScriptedAnswer::error(failure, QStringLiteral("say \"hi\" \\ bye")));

    m_proxy->getValueComp();

    QCOMPARE(log.lines(),
             debugLines({"\"ResultIntInterface::\" getValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Count\"  / "
                         "Error: \"say \\\"hi\\\" \\\\ bye\""}));
}

void tst_ResultIntInterface::failingStringCompReportsUnderMinValueCompTextButCallsItsOwnMember()
{
    LogCapture log;
    m_fake->answer("getStringComp", ScriptedAnswer::error(failure, QStringLiteral("no text")));

    QCOMPARE(m_proxy->getStringComp(), QList<QVariant>());

    verifySingleCall(*m_fake, path, "getStringComp", "", {});
    QCOMPARE(log.lines(),
             debugLines({"\"ResultIntInterface::\" getMinValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Count\" "
                         " / Error: \"no text\""}));
}

void tst_ResultIntInterface::failingMaxValueCompAndMinStringCompReportUnderMinValueCompText()
{
    LogCapture log;
    m_fake->answer("getMaxValueComp", ScriptedAnswer::error(failure, QStringLiteral("no maximum")));
    m_fake->answer("getMinStringComp", ScriptedAnswer::error(failure, QStringLiteral("no minimum")));

    m_proxy->getMaxValueComp();
    m_proxy->getMinStringComp();

    QVERIFY(m_fake->waitForCalls(2));
    QCOMPARE(m_fake->calls().at(0).member, QStringLiteral("getMaxValueComp"));
    QCOMPARE(m_fake->calls().at(1).member, QStringLiteral("getMinStringComp"));
    QCOMPARE(log.lines(),
             debugLines({"\"ResultIntInterface::\" getMinValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Count\" "
                         " / Error: \"no maximum\"",
                         "\"ResultIntInterface::\" getMinValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Count\" "
                         " / Error: \"no minimum\""}));
}

void tst_ResultIntInterface::aFailedCallLeavesTheProxyAsItWas()
{
    LogCapture log;
    m_fake->answer("getValueComp", ScriptedAnswer::error(failure, QStringLiteral("not yet")));
    m_fake->answer("getValue", ScriptedAnswer::error(failure, QStringLiteral("not yet")));
    QCOMPARE(m_proxy->getValueComp(), QList<QVariant>());
    QVERIFY(!m_proxy->getValue().isValid());

    const QList<QVariant> reading{42, QStringLiteral("42 counts")};
    m_fake->answer("getValueComp", ScriptedAnswer::value(reading));
    m_fake->answer("getValue", ScriptedAnswer::value(42));
    QCOMPARE(m_proxy->getValueComp(), reading);
    QCOMPARE(m_proxy->getValue().value(), 42);

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

void tst_ResultIntInterface::metaObjectListsExactlyItsSlotsInOrder()
{
    const QMetaObject &meta = ResultIntInterface::staticMetaObject;
    const QStringList expected{"getLowerLimit()",     "getUpperLimit()",   "getValue()",           "getString()",
                               "getMinValue()",       "getMinString()",    "getMaxValue()",        "getMaxString()",
                               "resetMinMaxValues()", "stopMinMaxEval()",  "continueMinMaxEval()", "getValueComp()",
                               "getMinValueComp()",   "getMaxValueComp()", "getStringComp()",      "getMinStringComp()",
                               "getMaxStringComp()"};
    QCOMPARE(ownMethodSignatures(meta), expected);
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Slot), expected);
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Signal), QStringList());
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 17);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
    QCOMPARE(meta.classInfoCount(), meta.classInfoOffset());
    QCOMPARE(meta.superClass(), &QDBusAbstractInterface::staticMetaObject);
    QCOMPARE(m_proxy->metaObject(), &meta);
}

void tst_ResultIntInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    QCOMPARE(m_proxy->qt_metacast("ResultIntInterface"), static_cast<void *>(m_proxy.get()));
    QCOMPARE(m_proxy->qt_metacast("QDBusAbstractInterface"),
             static_cast<void *>(static_cast<QDBusAbstractInterface *>(m_proxy.get())));
    QCOMPARE(m_proxy->qt_metacast(nullptr), nullptr);
    QCOMPARE(m_proxy->qt_metacast("ResultDoubleInterface"), nullptr);
}

void tst_ResultIntInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(42));
    m_fake->answer("getString", ScriptedAnswer::value(QStringLiteral("42 counts")));
    const QList<QVariant> reading{42, QStringLiteral("42 counts")};
    m_fake->answer("getValueComp", ScriptedAnswer::value(reading));

    QDBusReply<int> value;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<int>, value)));
    QVERIFY(value.isValid());
    QCOMPARE(value.value(), m_proxy->getValue().value());
    QCOMPARE(value.value(), 42);

    QDBusReply<QString> text;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getString", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<QString>, text)));
    QCOMPARE(text.value(), QStringLiteral("42 counts"));

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

QTEST_GUILESS_MAIN(tst_ResultIntInterface)

#include "tst_resultintinterface.moc"
