#include "ResultEnumInterface.h"

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

using Operation = std::function<Outcome(ResultEnumInterface &)>;
using CompGetter = std::function<QList<QVariant>(ResultEnumInterface &)>;
Q_DECLARE_METATYPE(Operation)
Q_DECLARE_METATYPE(CompGetter)

namespace {

const QString path = QStringLiteral("/Result/Range");
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
        {"getValueComp", [](ResultEnumInterface &p) { return p.getValueComp(); },
         "ResultEnumInterface::getValueComp(): "},
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
    return QLatin1String(literal) + QStringLiteral(" ") + quoted(service) + QStringLiteral("  /  ") + quoted(path) +
        QStringLiteral("  / Error: ") + quoted(message);
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

class tst_ResultEnumInterface : public QObject
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
    void failingValueCompReportBeginsWithTheBareClassLiteral();
    void cannotFindLimitsMinMaxTextOrMinMaxControlByName();

    void aFailedCallLeavesTheProxyAsItWas();

    void metaObjectListsExactlyItsSlotsInOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();

private:
    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<ResultEnumInterface> m_proxy;
};

void tst_ResultEnumInterface::init()
{
    m_fake.reset(new FakeMeasApplication);
    m_proxy.reset(new ResultEnumInterface(m_fake->service(), path, QDBusConnection::sessionBus()));
}

void tst_ResultEnumInterface::cleanup()
{
    m_proxy.reset();
    m_fake.reset();
}

void tst_ResultEnumInterface::sendsEachOperationAsItsOwnMemberWithoutArguments_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");

    const auto op = [](std::function<void(ResultEnumInterface &)> call) {
        return Operation([call](ResultEnumInterface &proxy) {
            call(proxy);
            return Outcome{};
        });
    };
    QTest::newRow("getValue") << op([](ResultEnumInterface &p) { p.getValue(); }) << "getValue";
    QTest::newRow("getString") << op([](ResultEnumInterface &p) { p.getString(); }) << "getString";
    QTest::newRow("getMinValue") << op([](ResultEnumInterface &p) { p.getMinValue(); }) << "getMinValue";
    QTest::newRow("getMaxValue") << op([](ResultEnumInterface &p) { p.getMaxValue(); }) << "getMaxValue";
    QTest::newRow("getValueComp") << op([](ResultEnumInterface &p) { p.getValueComp(); }) << "getValueComp";
}

void tst_ResultEnumInterface::sendsEachOperationAsItsOwnMemberWithoutArguments()
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);

    LogCapture log; // an empty reply is a failure to the Comp getters
    m_fake->answer(member, ScriptedAnswer::reply());
    operation(*m_proxy);
    verifySingleCall(*m_fake, path, member, "", {});
}

void tst_ResultEnumInterface::mapsEachGeneratedReply_data()
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
        "getValue", [](ResultEnumInterface &p) { return outcomeOf(p.getValue()); }, 2, QStringLiteral("2"), 0);
    rows(
        "getString", [](ResultEnumInterface &p) { return outcomeOf(p.getString()); }, QStringLiteral("Range 2"), 2,
        QString());
    rows(
        "getMinValue", [](ResultEnumInterface &p) { return outcomeOf(p.getMinValue()); }, 1, true, 0);
    rows(
        "getMaxValue", [](ResultEnumInterface &p) { return outcomeOf(p.getMaxValue()); }, 3, 3.0, 0);
}

void tst_ResultEnumInterface::mapsEachGeneratedReply()
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

void tst_ResultEnumInterface::generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("getValue") << Operation([](ResultEnumInterface &p) { return outcomeOf(p.getValue()); })
                              << QVariant(0);
    QTest::newRow("getString") << Operation([](ResultEnumInterface &p) { return outcomeOf(p.getString()); })
                               << QVariant(QString());
    QTest::newRow("getMinValue") << Operation([](ResultEnumInterface &p) { return outcomeOf(p.getMinValue()); })
                                 << QVariant(0);
    QTest::newRow("getMaxValue") << Operation([](ResultEnumInterface &p) { return outcomeOf(p.getMaxValue()); })
                                 << QVariant(0);
}

void tst_ResultEnumInterface::generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent()
{
    QFETCH(Operation, operation);
    QFETCH(QVariant, value);

    LogCapture log;
    ResultEnumInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const Outcome outcome = operation(proxy);

    QCOMPARE(outcome.valid, false);
    QCOMPARE(outcome.value, value);
    QCOMPARE(outcome.value.userType(), value.userType());
    if (value.userType() == QMetaType::QString)
        QVERIFY(outcome.value.toString().isNull());
    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ResultEnumInterface::compGettersReturnTheElementsAsSent_data()
{
    QTest::addColumn<CompGetter>("getter");
    QTest::addColumn<QString>("member");

    for (const CompRow &row : compGetters())
        QTest::newRow(row.member) << row.getter << row.member;
}

void tst_ResultEnumInterface::compGettersReturnTheElementsAsSent()
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

void tst_ResultEnumInterface::compGettersPassAnEmptyListOnWithoutAReport_data()
{
    compGettersReturnTheElementsAsSent_data();
}

void tst_ResultEnumInterface::compGettersPassAnEmptyListOnWithoutAReport()
{
    QFETCH(CompGetter, getter);
    QFETCH(QString, member);

    LogCapture log;
    m_fake->answer(member, ScriptedAnswer::value(QList<QVariant>()));

    QCOMPARE(getter(*m_proxy), QList<QVariant>());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ResultEnumInterface::compGettersReportAnErrorReplyInOneLine_data()
{
    QTest::addColumn<CompGetter>("getter");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("line");

    QTest::newRow("getValueComp") << CompGetter([](ResultEnumInterface &p) { return p.getValueComp(); })
                                  << "getValueComp"
                                  << "ResultEnumInterface::getValueComp():  \"com.velk.mqx.app.fake\"  /  "
                                     "\"/Result/Range\"  / Error: \"no reading\"";
}

void tst_ResultEnumInterface::compGettersReportAnErrorReplyInOneLine()
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

void tst_ResultEnumInterface::compGettersTreatAWrongTypedReplyAsAFailure_data()
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

void tst_ResultEnumInterface::compGettersTreatAWrongTypedReplyAsAFailure()
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

void tst_ResultEnumInterface::compGettersReportAnAbsentServiceInOneLine_data()
{
    QTest::addColumn<CompGetter>("getter");
    QTest::addColumn<QString>("literal");

    for (const CompRow &row : compGetters())
        QTest::newRow(row.member) << row.getter << row.literal;
}

void tst_ResultEnumInterface::compGettersReportAnAbsentServiceInOneLine()
{
    QFETCH(CompGetter, getter);
    QFETCH(QString, literal);

    LogCapture log;
    ResultEnumInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    QCOMPARE(getter(proxy), QList<QVariant>());

    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
    QCOMPARE(log.lines(),
             debugLines({report(literal.toLatin1().constData(), absentService(), proxy.lastError().message())}));
}

void tst_ResultEnumInterface::compReportQuotesAndEscapesTheErrorMessage()
{
    LogCapture log;
    m_fake->answer("getValueComp", ScriptedAnswer::error(failure, QStringLiteral("say \"hi\" \\ bye")));

    m_proxy->getValueComp();

    QCOMPARE(log.lines(),
             debugLines({"ResultEnumInterface::getValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Range\"  / "
                         "Error: \"say \\\"hi\\\" \\\\ bye\""}));
}

void tst_ResultEnumInterface::failingValueCompReportBeginsWithTheBareClassLiteral()
{
    LogCapture log;
    m_fake->answer("getValueComp", ScriptedAnswer::error(failure, QStringLiteral("no range")));

    QCOMPARE(m_proxy->getValueComp(), QList<QVariant>());

    const QList<LogLine> lines = log.lines();
    QCOMPARE(lines,
             debugLines({"ResultEnumInterface::getValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Range\"  / "
                         "Error: \"no range\""}));
    QVERIFY(lines.first().text.startsWith(QStringLiteral("ResultEnumInterface::getValueComp():  \"")));
}

void tst_ResultEnumInterface::cannotFindLimitsMinMaxTextOrMinMaxControlByName()
{
    const QMetaObject &meta = ResultEnumInterface::staticMetaObject;
    const char *const missing[] = {"getLowerLimit",     "getUpperLimit",  "getMinString",       "getMaxString",
                                   "resetMinMaxValues", "stopMinMaxEval", "continueMinMaxEval", "getMinValueComp",
                                   "getMaxValueComp",   "getStringComp",  "getMinStringComp",   "getMaxStringComp"};

    LogCapture log;
    for (const char *name : missing) {
        QCOMPARE(meta.indexOfMethod(QByteArray(name) + "()"), -1);
        QVERIFY2(!QMetaObject::invokeMethod(m_proxy.get(), name, Qt::DirectConnection), name);
    }
    QCOMPARE(debugLinesOnly(log.lines()), QList<LogLine>());

    // Nothing went out: the next call is the first the application sees.
    m_fake->answer("getValue", ScriptedAnswer::value(1));
    m_proxy->getValue();
    verifySingleCall(*m_fake, path, "getValue", "", {});
}

void tst_ResultEnumInterface::aFailedCallLeavesTheProxyAsItWas()
{
    LogCapture log;
    m_fake->answer("getValueComp", ScriptedAnswer::error(failure, QStringLiteral("not yet")));
    m_fake->answer("getValue", ScriptedAnswer::error(failure, QStringLiteral("not yet")));
    QCOMPARE(m_proxy->getValueComp(), QList<QVariant>());
    QVERIFY(!m_proxy->getValue().isValid());

    const QList<QVariant> reading{2, QStringLiteral("Range 2")};
    m_fake->answer("getValueComp", ScriptedAnswer::value(reading));
    m_fake->answer("getValue", ScriptedAnswer::value(2));
    QCOMPARE(m_proxy->getValueComp(), reading);
    QCOMPARE(m_proxy->getValue().value(), 2);

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

void tst_ResultEnumInterface::metaObjectListsExactlyItsSlotsInOrder()
{
    const QMetaObject &meta = ResultEnumInterface::staticMetaObject;
    const QStringList expected{"getValue()", "getString()", "getMinValue()", "getMaxValue()", "getValueComp()"};
    QCOMPARE(ownMethodSignatures(meta), expected);
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Slot), expected);
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Signal), QStringList());
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 5);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
    QCOMPARE(meta.classInfoCount(), meta.classInfoOffset());
    QCOMPARE(meta.superClass(), &QDBusAbstractInterface::staticMetaObject);
    QCOMPARE(m_proxy->metaObject(), &meta);
}

void tst_ResultEnumInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    QCOMPARE(m_proxy->qt_metacast("ResultEnumInterface"), static_cast<void *>(m_proxy.get()));
    QCOMPARE(m_proxy->qt_metacast("QDBusAbstractInterface"),
             static_cast<void *>(static_cast<QDBusAbstractInterface *>(m_proxy.get())));
    QCOMPARE(m_proxy->qt_metacast(nullptr), nullptr);
    QCOMPARE(m_proxy->qt_metacast("ResultBoolInterface"), nullptr);
}

void tst_ResultEnumInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(2));
    m_fake->answer("getString", ScriptedAnswer::value(QStringLiteral("Range 2")));
    const QList<QVariant> reading{2, QStringLiteral("Range 2")};
    m_fake->answer("getValueComp", ScriptedAnswer::value(reading));

    QDBusReply<int> value;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<int>, value)));
    QVERIFY(value.isValid());
    QCOMPARE(value.value(), m_proxy->getValue().value());
    QCOMPARE(value.value(), 2);

    QDBusReply<QString> text;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getString", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<QString>, text)));
    QCOMPARE(text.value(), QStringLiteral("Range 2"));

    QList<QVariant> composite;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValueComp", Qt::DirectConnection,
                                      Q_RETURN_ARG(QList<QVariant>, composite)));
    QCOMPARE(composite, m_proxy->getValueComp());
    QCOMPARE(composite, reading);
}

QTEST_GUILESS_MAIN(tst_ResultEnumInterface)

#include "tst_resultenuminterface.moc"
