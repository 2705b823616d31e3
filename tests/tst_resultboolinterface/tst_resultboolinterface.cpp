#include "ResultBoolInterface.h"

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

using Operation = std::function<Outcome(ResultBoolInterface &)>;
using CompGetter = std::function<QList<QVariant>(ResultBoolInterface &)>;
Q_DECLARE_METATYPE(Operation)
Q_DECLARE_METATYPE(CompGetter)

namespace {

const QString path = QStringLiteral("/Result/Overload");
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
        {"getValueComp", [](ResultBoolInterface &p) { return p.getValueComp(); }, "getValueComp(): "},
        {"getMinValueComp", [](ResultBoolInterface &p) { return p.getMinValueComp(); }, "getMinValueComp(): "},
        {"getMaxValueComp", [](ResultBoolInterface &p) { return p.getMaxValueComp(); }, "getMaxValueComp(): "},
        {"getStringComp", [](ResultBoolInterface &p) { return p.getStringComp(); }, "getStringComp(): "},
        {"getMinStringComp", [](ResultBoolInterface &p) { return p.getMinStringComp(); }, "getMinStringComp(): "},
        {"getMaxStringComp", [](ResultBoolInterface &p) { return p.getMaxStringComp(); }, "getMaxStringComp(): "},
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
    return QStringLiteral("\"ResultBoolInterface::\" ") + QLatin1String(literal) + QStringLiteral(" ") +
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

class tst_ResultBoolInterface : public QObject
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

    void aFailedCallLeavesTheProxyAsItWas();

    void metaObjectListsExactlyItsSlotsInOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();

private:
    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<ResultBoolInterface> m_proxy;
};

void tst_ResultBoolInterface::init()
{
    m_fake.reset(new FakeMeasApplication);
    m_proxy.reset(new ResultBoolInterface(m_fake->service(), path, QDBusConnection::sessionBus()));
}

void tst_ResultBoolInterface::cleanup()
{
    m_proxy.reset();
    m_fake.reset();
}

void tst_ResultBoolInterface::sendsEachOperationAsItsOwnMemberWithoutArguments_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");

    const auto op = [](std::function<void(ResultBoolInterface &)> call) {
        return Operation([call](ResultBoolInterface &proxy) {
            call(proxy);
            return Outcome{};
        });
    };
    QTest::newRow("getLowerLimit") << op([](ResultBoolInterface &p) { p.getLowerLimit(); }) << "getLowerLimit";
    QTest::newRow("getUpperLimit") << op([](ResultBoolInterface &p) { p.getUpperLimit(); }) << "getUpperLimit";
    QTest::newRow("getValue") << op([](ResultBoolInterface &p) { p.getValue(); }) << "getValue";
    QTest::newRow("getString") << op([](ResultBoolInterface &p) { p.getString(); }) << "getString";
    QTest::newRow("getMinValue") << op([](ResultBoolInterface &p) { p.getMinValue(); }) << "getMinValue";
    QTest::newRow("getMinString") << op([](ResultBoolInterface &p) { p.getMinString(); }) << "getMinString";
    QTest::newRow("getMaxValue") << op([](ResultBoolInterface &p) { p.getMaxValue(); }) << "getMaxValue";
    QTest::newRow("getMaxString") << op([](ResultBoolInterface &p) { p.getMaxString(); }) << "getMaxString";
    QTest::newRow("resetMinMaxValues") << op([](ResultBoolInterface &p) { p.resetMinMaxValues(); })
                                       << "resetMinMaxValues";
    QTest::newRow("stopMinMaxEval") << op([](ResultBoolInterface &p) { p.stopMinMaxEval(); }) << "stopMinMaxEval";
    QTest::newRow("continueMinMaxEval") << op([](ResultBoolInterface &p) { p.continueMinMaxEval(); })
                                        << "continueMinMaxEval";
    QTest::newRow("getValueComp") << op([](ResultBoolInterface &p) { p.getValueComp(); }) << "getValueComp";
    QTest::newRow("getMinValueComp") << op([](ResultBoolInterface &p) { p.getMinValueComp(); }) << "getMinValueComp";
    QTest::newRow("getMaxValueComp") << op([](ResultBoolInterface &p) { p.getMaxValueComp(); }) << "getMaxValueComp";
    QTest::newRow("getStringComp") << op([](ResultBoolInterface &p) { p.getStringComp(); }) << "getStringComp";
    QTest::newRow("getMinStringComp") << op([](ResultBoolInterface &p) { p.getMinStringComp(); }) << "getMinStringComp";
    QTest::newRow("getMaxStringComp") << op([](ResultBoolInterface &p) { p.getMaxStringComp(); }) << "getMaxStringComp";
}

void tst_ResultBoolInterface::sendsEachOperationAsItsOwnMemberWithoutArguments()
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);

    LogCapture log; // an empty reply is a failure to the Comp getters
    m_fake->answer(member, ScriptedAnswer::reply());
    operation(*m_proxy);
    verifySingleCall(*m_fake, path, member, "", {});
}

void tst_ResultBoolInterface::mapsEachGeneratedReply_data()
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
        "getLowerLimit", [](ResultBoolInterface &p) { return outcomeOf(p.getLowerLimit()); }, false, 0, false);
    rows(
        "getUpperLimit", [](ResultBoolInterface &p) { return outcomeOf(p.getUpperLimit()); }, true, 1, false);
    rows(
        "getValue", [](ResultBoolInterface &p) { return outcomeOf(p.getValue()); }, true, QStringLiteral("true"),
        false);
    rows(
        "getString", [](ResultBoolInterface &p) { return outcomeOf(p.getString()); }, QStringLiteral("overload"), true,
        QString());
    rows(
        "getMinValue", [](ResultBoolInterface &p) { return outcomeOf(p.getMinValue()); }, true, 1.0, false);
    rows(
        "getMinString", [](ResultBoolInterface &p) { return outcomeOf(p.getMinString()); },
        QStringLiteral("no overload"), false, QString());
    rows(
        "getMaxValue", [](ResultBoolInterface &p) { return outcomeOf(p.getMaxValue()); }, true, 1, false);
    rows(
        "getMaxString", [](ResultBoolInterface &p) { return outcomeOf(p.getMaxString()); }, QStringLiteral("overload"),
        1, QString());
    {
        const Operation op = [](ResultBoolInterface &p) { return outcomeOf(p.resetMinMaxValues()); };
        QTest::newRow("resetMinMaxValues answered")
            << op << "resetMinMaxValues" << ScriptedAnswer::reply() << true << QVariant();
        QTest::newRow("resetMinMaxValues answered with a value")
            << op << "resetMinMaxValues" << ScriptedAnswer::value(1) << true << QVariant();
        QTest::newRow("resetMinMaxValues error") << op << "resetMinMaxValues" << error << false << QVariant();
    }
    {
        const Operation op = [](ResultBoolInterface &p) { return outcomeOf(p.stopMinMaxEval()); };
        QTest::newRow("stopMinMaxEval answered")
            << op << "stopMinMaxEval" << ScriptedAnswer::reply() << true << QVariant();
        QTest::newRow("stopMinMaxEval answered with a value")
            << op << "stopMinMaxEval" << ScriptedAnswer::value(1) << true << QVariant();
        QTest::newRow("stopMinMaxEval error") << op << "stopMinMaxEval" << error << false << QVariant();
    }
    {
        const Operation op = [](ResultBoolInterface &p) { return outcomeOf(p.continueMinMaxEval()); };
        QTest::newRow("continueMinMaxEval answered")
            << op << "continueMinMaxEval" << ScriptedAnswer::reply() << true << QVariant();
        QTest::newRow("continueMinMaxEval answered with a value")
            << op << "continueMinMaxEval" << ScriptedAnswer::value(1) << true << QVariant();
        QTest::newRow("continueMinMaxEval error") << op << "continueMinMaxEval" << error << false << QVariant();
    }
}

void tst_ResultBoolInterface::mapsEachGeneratedReply()
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

void tst_ResultBoolInterface::generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("getLowerLimit") << Operation([](ResultBoolInterface &p) { return outcomeOf(p.getLowerLimit()); })
                                   << QVariant(false);
    QTest::newRow("getUpperLimit") << Operation([](ResultBoolInterface &p) { return outcomeOf(p.getUpperLimit()); })
                                   << QVariant(false);
    QTest::newRow("getValue") << Operation([](ResultBoolInterface &p) { return outcomeOf(p.getValue()); })
                              << QVariant(false);
    QTest::newRow("getString") << Operation([](ResultBoolInterface &p) { return outcomeOf(p.getString()); })
                               << QVariant(QString());
    QTest::newRow("getMinValue") << Operation([](ResultBoolInterface &p) { return outcomeOf(p.getMinValue()); })
                                 << QVariant(false);
    QTest::newRow("getMinString") << Operation([](ResultBoolInterface &p) { return outcomeOf(p.getMinString()); })
                                  << QVariant(QString());
    QTest::newRow("getMaxValue") << Operation([](ResultBoolInterface &p) { return outcomeOf(p.getMaxValue()); })
                                 << QVariant(false);
    QTest::newRow("getMaxString") << Operation([](ResultBoolInterface &p) { return outcomeOf(p.getMaxString()); })
                                  << QVariant(QString());
    QTest::newRow("resetMinMaxValues") << Operation([](ResultBoolInterface &p) {
        return outcomeOf(p.resetMinMaxValues());
    }) << QVariant();
    QTest::newRow("stopMinMaxEval") << Operation([](ResultBoolInterface &p) { return outcomeOf(p.stopMinMaxEval()); })
                                    << QVariant();
    QTest::newRow("continueMinMaxEval") << Operation([](ResultBoolInterface &p) {
        return outcomeOf(p.continueMinMaxEval());
    }) << QVariant();
}

void tst_ResultBoolInterface::generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent()
{
    QFETCH(Operation, operation);
    QFETCH(QVariant, value);

    LogCapture log;
    ResultBoolInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const Outcome outcome = operation(proxy);

    QCOMPARE(outcome.valid, false);
    QCOMPARE(outcome.value, value);
    QCOMPARE(outcome.value.userType(), value.userType());
    if (value.userType() == QMetaType::QString)
        QVERIFY(outcome.value.toString().isNull());
    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ResultBoolInterface::compGettersReturnTheElementsAsSent_data()
{
    QTest::addColumn<CompGetter>("getter");
    QTest::addColumn<QString>("member");

    for (const CompRow &row : compGetters())
        QTest::newRow(row.member) << row.getter << row.member;
}

void tst_ResultBoolInterface::compGettersReturnTheElementsAsSent()
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

void tst_ResultBoolInterface::compGettersPassAnEmptyListOnWithoutAReport_data()
{
    compGettersReturnTheElementsAsSent_data();
}

void tst_ResultBoolInterface::compGettersPassAnEmptyListOnWithoutAReport()
{
    QFETCH(CompGetter, getter);
    QFETCH(QString, member);

    LogCapture log;
    m_fake->answer(member, ScriptedAnswer::value(QList<QVariant>()));

    QCOMPARE(getter(*m_proxy), QList<QVariant>());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ResultBoolInterface::compGettersReportAnErrorReplyInOneLine_data()
{
    QTest::addColumn<CompGetter>("getter");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("line");

    QTest::newRow("getValueComp") << CompGetter([](ResultBoolInterface &p) { return p.getValueComp(); })
                                  << "getValueComp"
                                  << "\"ResultBoolInterface::\" getValueComp():  \"com.velk.mqx.app.fake\"  /  "
                                     "\"/Result/Overload\"  / Error: \"no reading\"";
    QTest::newRow("getMinValueComp") << CompGetter([](ResultBoolInterface &p) { return p.getMinValueComp(); })
                                     << "getMinValueComp"
                                     << "\"ResultBoolInterface::\" getMinValueComp():  \"com.velk.mqx.app.fake\"  /  "
                                        "\"/Result/Overload\"  / Error: \"no reading\"";
    QTest::newRow("getMaxValueComp") << CompGetter([](ResultBoolInterface &p) { return p.getMaxValueComp(); })
                                     << "getMaxValueComp"
                                     << "\"ResultBoolInterface::\" getMaxValueComp():  \"com.velk.mqx.app.fake\"  /  "
                                        "\"/Result/Overload\"  / Error: \"no reading\"";
    QTest::newRow("getStringComp") << CompGetter([](ResultBoolInterface &p) { return p.getStringComp(); })
                                   << "getStringComp"
                                   << "\"ResultBoolInterface::\" getStringComp():  \"com.velk.mqx.app.fake\"  /  "
                                      "\"/Result/Overload\"  / Error: \"no reading\"";
    QTest::newRow("getMinStringComp") << CompGetter([](ResultBoolInterface &p) { return p.getMinStringComp(); })
                                      << "getMinStringComp"
                                      << "\"ResultBoolInterface::\" getMinStringComp():  \"com.velk.mqx.app.fake\"  /  "
                                         "\"/Result/Overload\"  / Error: \"no reading\"";
    QTest::newRow("getMaxStringComp") << CompGetter([](ResultBoolInterface &p) { return p.getMaxStringComp(); })
                                      << "getMaxStringComp"
                                      << "\"ResultBoolInterface::\" getMaxStringComp():  \"com.velk.mqx.app.fake\"  /  "
                                         "\"/Result/Overload\"  / Error: \"no reading\"";
}

void tst_ResultBoolInterface::compGettersReportAnErrorReplyInOneLine()
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

void tst_ResultBoolInterface::compGettersTreatAWrongTypedReplyAsAFailure_data()
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

void tst_ResultBoolInterface::compGettersTreatAWrongTypedReplyAsAFailure()
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

void tst_ResultBoolInterface::compGettersReportAnAbsentServiceInOneLine_data()
{
    QTest::addColumn<CompGetter>("getter");
    QTest::addColumn<QString>("literal");

    for (const CompRow &row : compGetters())
        QTest::newRow(row.member) << row.getter << row.literal;
}

void tst_ResultBoolInterface::compGettersReportAnAbsentServiceInOneLine()
{
    QFETCH(CompGetter, getter);
    QFETCH(QString, literal);

    LogCapture log;
    ResultBoolInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    QCOMPARE(getter(proxy), QList<QVariant>());

    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
    QCOMPARE(log.lines(),
             debugLines({report(literal.toLatin1().constData(), absentService(), proxy.lastError().message())}));
}

void tst_ResultBoolInterface::compReportQuotesAndEscapesTheErrorMessage()
{
    LogCapture log;
    m_fake->answer("getValueComp", ScriptedAnswer::error(failure, QStringLiteral("say \"hi\" \\ bye")));

    m_proxy->getValueComp();

    QCOMPARE(log.lines(),
             debugLines({"\"ResultBoolInterface::\" getValueComp():  \"com.velk.mqx.app.fake\"  /  "
                         "\"/Result/Overload\"  / Error: \"say \\\"hi\\\" \\\\ bye\""}));
}

void tst_ResultBoolInterface::aFailedCallLeavesTheProxyAsItWas()
{
    LogCapture log;
    m_fake->answer("getValueComp", ScriptedAnswer::error(failure, QStringLiteral("not yet")));
    m_fake->answer("getValue", ScriptedAnswer::error(failure, QStringLiteral("not yet")));
    QCOMPARE(m_proxy->getValueComp(), QList<QVariant>());
    QVERIFY(!m_proxy->getValue().isValid());

    const QList<QVariant> reading{true, QStringLiteral("overload")};
    m_fake->answer("getValueComp", ScriptedAnswer::value(reading));
    m_fake->answer("getValue", ScriptedAnswer::value(true));
    QCOMPARE(m_proxy->getValueComp(), reading);
    QCOMPARE(m_proxy->getValue().value(), true);

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

void tst_ResultBoolInterface::metaObjectListsExactlyItsSlotsInOrder()
{
    const QMetaObject &meta = ResultBoolInterface::staticMetaObject;
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

void tst_ResultBoolInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    QCOMPARE(m_proxy->qt_metacast("ResultBoolInterface"), static_cast<void *>(m_proxy.get()));
    QCOMPARE(m_proxy->qt_metacast("QDBusAbstractInterface"),
             static_cast<void *>(static_cast<QDBusAbstractInterface *>(m_proxy.get())));
    QCOMPARE(m_proxy->qt_metacast(nullptr), nullptr);
    QCOMPARE(m_proxy->qt_metacast("ResultEnumInterface"), nullptr);
}

void tst_ResultBoolInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(true));
    m_fake->answer("getString", ScriptedAnswer::value(QStringLiteral("overload")));
    const QList<QVariant> reading{true, QStringLiteral("overload")};
    m_fake->answer("getValueComp", ScriptedAnswer::value(reading));

    QDBusReply<bool> value;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<bool>, value)));
    QVERIFY(value.isValid());
    QCOMPARE(value.value(), m_proxy->getValue().value());
    QCOMPARE(value.value(), true);

    QDBusReply<QString> text;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getString", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<QString>, text)));
    QCOMPARE(text.value(), QStringLiteral("overload"));

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

QTEST_GUILESS_MAIN(tst_ResultBoolInterface)

#include "tst_resultboolinterface.moc"
