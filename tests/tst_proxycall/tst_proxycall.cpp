#include "DBusTypes.h"
#include "ProxyCall_p.h"

#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QTimer>
#include <QtTest/QTest>

#include <cmath>
#include <limits>
#include <memory>

namespace {

const QString path = QStringLiteral("/Setup/Level");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");

/// The smallest proxy: the call patterns need nothing but the base class.
class PlainProxy : public QDBusAbstractInterface
{
public:
    PlainProxy(const QString &service, const QString &path, const QDBusConnection &connection)
        : QDBusAbstractInterface(service, path, "com.velk.mqx.MeasApplInterface", connection, nullptr)
    {
    }
};

} // namespace

class tst_ProxyCall : public QObject, private ProxyFixture<PlainProxy>
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void sendsEachArgumentAsItsOwnDBusType_data();
    void sendsEachArgumentAsItsOwnDBusType();
    void wrappedArgumentTravelsAsAVariantHoldingItsOwnType_data();
    void wrappedArgumentTravelsAsAVariantHoldingItsOwnType();
    void blockingCallHandsBackTheAnswer();
    void blockingCallGivesAnInvalidReplyOnAnErrorAndLogsNothing();
    void blockingCallGivesAnInvalidReplyForAWrongType();
    void blockingCallGivesAnInvalidReplyWhenNoAnswerComes();
    void blockingCallGivesAnInvalidReplyWhenTheApplicationVanishes();
    void blockingCallDoesNotRunTheEventLoop();
    void blockingListCallSendsTheGatheredArguments();
    void blockingVoidCallWaitsAndDropsTheError();
    void fireAndForgetReturnsWithoutAnAnswerAndLeavesLastErrorAlone();

    void checkedGetterWritesThreeLinesForTheLastError();
    void checkedGetterWritesOneLineInTheShortForm();
    void checkedGetterFollowsLastErrorSoAWrongTypeIsNotLogged();
    void checkedGetterLogsNothingOnSuccess();

    void checkedCallReturnsTheValueOnSuccess();
    void checkedCallReportsAnErrorAndReturnsTheEmptyValue_data();
    void checkedCallReportsAnErrorAndReturnsTheEmptyValue();
    void checkedCallReportsAWrongTypedReply();
    void failureReportPutsTheQuotedClassPrefixFirst();
    void failureReportKeepsALiteralWithoutTrailingBlank();
    void checkedVariantUnwrapsTheValue();
    void checkedVariantLeavesStructuredValuesAsArguments();
    void checkedVariantGivesAnInvalidVariantOnFailure();
};

void tst_ProxyCall::init()
{
    startFakeAndProxy(path);
}

void tst_ProxyCall::cleanup()
{
    stopFakeAndProxy();
}

void tst_ProxyCall::sendsEachArgumentAsItsOwnDBusType_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("signature");

    QTest::newRow("int") << QVariant(-7) << "i";
    QTest::newRow("double") << QVariant(2.5) << "d";
    QTest::newRow("bool") << QVariant(true) << "b";
    QTest::newRow("string") << QVariant(QStringLiteral("on")) << "s";
    QTest::newRow("string list") << QVariant(QStringList{"a", "b"}) << "as";
    QTest::newRow("variant list") << QVariant(QVariantList{1, QStringLiteral("x")}) << "av";
}

void tst_ProxyCall::sendsEachArgumentAsItsOwnDBusType()
{
    QFETCH(QVariant, value);
    QFETCH(QString, signature);

    m_fake->answer("setValue", ScriptedAnswer::value(true));
    const QDBusReply<bool> reply = ProxyCall::blocking<bool>(*m_proxy, "setValue", value);

    QVERIFY(reply.isValid());
    QCOMPARE(m_fake->calls().size(), 1);
    QCOMPARE(m_fake->calls().first().member, QStringLiteral("setValue"));
    QCOMPARE(m_fake->calls().first().signature, signature);
    if (signature == QLatin1String("av")) {
        QCOMPARE(qdbus_cast<QVariantList>(m_fake->calls().first().arguments.first()), value.toList());
    } else {
        QCOMPARE(m_fake->calls().first().arguments, QList<QVariant>{value});
    }
}

void tst_ProxyCall::wrappedArgumentTravelsAsAVariantHoldingItsOwnType_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("innerSignature");

    QTest::newRow("double") << QVariant(3.5) << "d";
    QTest::newRow("int") << QVariant(4) << "i";
    QTest::newRow("bool") << QVariant(false) << "b";
    QTest::newRow("string") << QVariant(QStringLiteral("on")) << "s";
    QTest::newRow("settings map") << QVariant(SettingsMap{{"gain", 2}}) << "a{sv}";
}

void tst_ProxyCall::wrappedArgumentTravelsAsAVariantHoldingItsOwnType()
{
    QFETCH(QVariant, value);
    QFETCH(QString, innerSignature);

    DBusTypes::registerSettingsMap();
    m_fake->answer("setValue", ScriptedAnswer::value(true));
    ProxyCall::blockingList<bool>(*m_proxy, "setValue", {ProxyCall::wrapped(value)});

    QCOMPARE(m_fake->calls().size(), 1);
    QCOMPARE(m_fake->calls().first().signature, QStringLiteral("v"));
    const QVariant received = m_fake->calls().first().arguments.first();
    QCOMPARE(received.userType(), qMetaTypeId<QDBusVariant>());
    const QVariant inner = received.value<QDBusVariant>().variant();
    if (innerSignature == QLatin1String("a{sv}")) {
        QCOMPARE(inner.value<QDBusArgument>().currentSignature(), innerSignature);
        QCOMPARE(qdbus_cast<SettingsMap>(inner), value.toMap());
    } else {
        QCOMPARE(inner.userType(), value.userType());
        QCOMPARE(inner, value);
    }
}

void tst_ProxyCall::blockingCallHandsBackTheAnswer()
{
    m_fake->answer("getValue", ScriptedAnswer::value(12));

    const QDBusReply<int> reply = ProxyCall::blocking<int>(*m_proxy, "getValue");

    QVERIFY(reply.isValid());
    QCOMPARE(reply.value(), 12);
    verifySingleCall(*m_fake, path, "getValue", "", {});
}

void tst_ProxyCall::blockingCallGivesAnInvalidReplyOnAnErrorAndLogsNothing()
{
    LogCapture log;
    m_fake->answer("getValue", ScriptedAnswer::error(failure, QStringLiteral("busy")));

    const QDBusReply<int> reply = ProxyCall::blocking<int>(*m_proxy, "getValue");

    QVERIFY(!reply.isValid());
    QCOMPARE(reply.value(), 0);
    QCOMPARE(reply.error().name(), failure);
    QCOMPARE(reply.error().message(), QStringLiteral("busy"));
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("busy"));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ProxyCall::blockingCallGivesAnInvalidReplyForAWrongType()
{
    m_fake->answer("getValue", ScriptedAnswer::value(QStringLiteral("12")));

    const QDBusReply<int> reply = ProxyCall::blocking<int>(*m_proxy, "getValue");

    QVERIFY(!reply.isValid());
    QCOMPARE(reply.value(), 0);
    QCOMPARE(reply.error().type(), QDBusError::InvalidSignature);
}

void tst_ProxyCall::blockingCallGivesAnInvalidReplyWhenNoAnswerComes()
{
    // The library never sets a time-out; a caller may, and silence must then end cleanly.
    m_proxy->setTimeout(200);
    m_fake->answer("getValue", ScriptedAnswer::silence());

    const QDBusReply<double> reply = ProxyCall::blocking<double>(*m_proxy, "getValue");

    QVERIFY(!reply.isValid());
    QCOMPARE(reply.value(), 0.0);
    QCOMPARE(reply.error().type(), QDBusError::NoReply);
}

void tst_ProxyCall::blockingCallGivesAnInvalidReplyWhenTheApplicationVanishes()
{
    m_fake->answer("getString", ScriptedAnswer::vanish());

    const QDBusReply<QString> reply = ProxyCall::blocking<QString>(*m_proxy, "getString");

    QVERIFY(!reply.isValid());
    QCOMPARE(reply.value(), QString());
    QCOMPARE(reply.error().type(), QDBusError::NoReply);

    const QDBusReply<QString> again = ProxyCall::blocking<QString>(*m_proxy, "getString");
    QCOMPARE(again.error().type(), QDBusError::ServiceUnknown);
}

void tst_ProxyCall::blockingCallDoesNotRunTheEventLoop()
{
    bool timerRan = false;
    QTimer::singleShot(0, this, [&timerRan] { timerRan = true; });
    m_fake->answer("getValue", ScriptedAnswer::value(1));

    ProxyCall::blocking<int>(*m_proxy, "getValue");

    QVERIFY(!timerRan);
    QTRY_VERIFY(timerRan);
}

void tst_ProxyCall::blockingListCallSendsTheGatheredArguments()
{
    m_fake->answer("setValue", ScriptedAnswer::value(true));

    const QDBusReply<bool> reply = ProxyCall::blockingList<bool>(*m_proxy, "setValue", {QStringLiteral("k"), 1.5});

    QVERIFY(reply.isValid());
    QCOMPARE(reply.value(), true);
    verifySingleCall(*m_fake, path, "setValue", "sd", wireTexts({QStringLiteral("k"), 1.5}));
}

void tst_ProxyCall::blockingVoidCallWaitsAndDropsTheError()
{
    LogCapture log;
    m_fake->answer("setToDefault", ScriptedAnswer::error(failure, QStringLiteral("locked")));

    ProxyCall::blockingVoid(*m_proxy, "setToDefault");

    // Waited: the answer has been seen, as lastError() shows, but nothing reached the caller.
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("locked"));
    QCOMPARE(m_fake->callCount(), 1);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ProxyCall::fireAndForgetReturnsWithoutAnAnswerAndLeavesLastErrorAlone()
{
    LogCapture log;
    m_fake->answer("setToDefault", ScriptedAnswer::silence());

    ProxyCall::fireAndForget(*m_proxy, "setToDefault");
    ProxyCall::fireAndForgetList(*m_proxy, "setToDefault", {ProxyCall::wrapped(2)});

    QVERIFY(m_fake->waitForCalls(2));
    QCOMPARE(m_fake->calls().at(0).signature, QString());
    QCOMPARE(m_fake->calls().at(1).signature, QStringLiteral("v"));
    QVERIFY(!m_proxy->lastError().isValid());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ProxyCall::checkedGetterWritesThreeLinesForTheLastError()
{
    LogCapture log;
    m_fake->answer("getValue", ScriptedAnswer::error(failure, QStringLiteral("gone")));

    const QDBusReply<int> reply = ProxyCall::replyLoggingLastError<int>(
        *m_proxy, "getValue", {"Probe::getValue() Error! ", "Probe::getValue() Interface ", "Probe::getValue() Path "});

    QVERIFY(!reply.isValid());
    QCOMPARE(reply.value(), 0);
    QCOMPARE(log.lines(),
             debugLines({
                 "Probe::getValue() Error!  \"gone\"",
                 "Probe::getValue() Interface  \"com.velk.mqx.MeasApplInterface\"",
                 "Probe::getValue() Path  \"/Setup/Level\"",
             }));
}

void tst_ProxyCall::checkedGetterWritesOneLineInTheShortForm()
{
    LogCapture log;
    m_fake->answer("getString", ScriptedAnswer::error(failure, QStringLiteral("gone")));

    const QDBusReply<QString> reply =
        ProxyCall::replyLoggingLastError<QString>(*m_proxy, "getString", {"Probe::getString() Error! "});

    QVERIFY(!reply.isValid());
    QCOMPARE(log.lines(), debugLines({"Probe::getString() Error!  \"gone\""}));
}

void tst_ProxyCall::checkedGetterFollowsLastErrorSoAWrongTypeIsNotLogged()
{
    LogCapture log;
    m_fake->answer("getValue", ScriptedAnswer::value(true));

    const QDBusReply<int> reply = ProxyCall::replyLoggingLastError<int>(
        *m_proxy, "getValue", {"Probe::getValue() Error! ", "Probe::getValue() Interface ", "Probe::getValue() Path "});

    QVERIFY(!reply.isValid());
    QVERIFY(!m_proxy->lastError().isValid());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ProxyCall::checkedGetterLogsNothingOnSuccess()
{
    LogCapture log;
    m_fake->answer("getValue", ScriptedAnswer::value(3));

    const QDBusReply<int> reply = ProxyCall::replyLoggingLastError<int>(
        *m_proxy, "getValue", {"Probe::getValue() Error! ", "Probe::getValue() Interface ", "Probe::getValue() Path "});

    QCOMPARE(reply.value(), 3);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ProxyCall::checkedCallReturnsTheValueOnSuccess()
{
    LogCapture log;
    const QString service = m_fake->service();
    m_fake->answer("getString", ScriptedAnswer::value(QStringLiteral("12 V")));
    m_fake->answer("getValues", ScriptedAnswer::value(QVariantList{1, QStringLiteral("b"), 2.5}));

    QCOMPARE(ProxyCall::valueOrEmpty<QString>(*m_proxy, {"Probe::getString(): ", service, path}, "getString"),
             QStringLiteral("12 V"));
    const QVariantList values =
        ProxyCall::valueOrEmpty<QVariantList>(*m_proxy, {"Probe::getValues(): ", service, path}, "getValues");
    QCOMPARE(values, (QVariantList{1, QStringLiteral("b"), 2.5}));
    QCOMPARE(values.at(1).userType(), int(QMetaType::QString));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ProxyCall::checkedCallReportsAnErrorAndReturnsTheEmptyValue_data()
{
    QTest::addColumn<QString>("member");
    QTest::addColumn<QVariant>("result");

    QTest::newRow("string") << "getString" << QVariant(QString());
    QTest::newRow("variant list") << "getValues" << QVariant(QVariantList());
    QTest::newRow("int") << "getValueStatus" << QVariant(0);
}

void tst_ProxyCall::checkedCallReportsAnErrorAndReturnsTheEmptyValue()
{
    QFETCH(QString, member);
    QFETCH(QVariant, result);

    LogCapture log;
    const QString service = m_fake->service();
    m_fake->answer(member, ScriptedAnswer::error(failure, QStringLiteral("no \"data\"")));
    const ProxyCall::FailureReport report("Probe::op(): ", service, path);

    QVariant value;
    if (member == QLatin1String("getString")) {
        const QString text = ProxyCall::valueOrEmpty<QString>(*m_proxy, report, member);
        QVERIFY(text.isNull());
        value = text;
    } else if (member == QLatin1String("getValues")) {
        value = ProxyCall::valueOrEmpty<QVariantList>(*m_proxy, report, member);
    } else {
        value = ProxyCall::valueOrEmpty<int>(*m_proxy, report, member, 4);
        QCOMPARE(m_fake->calls().first().signature, QStringLiteral("i"));
    }

    QCOMPARE(value, result);
    QCOMPARE(
        log.lines(),
        debugLines({"Probe::op():  \"com.velk.mqx.app.fake\"  /  \"/Setup/Level\"  / Error: \"no \\\"data\\\"\""}));
}

void tst_ProxyCall::checkedCallReportsAWrongTypedReply()
{
    LogCapture log;
    const QString service = m_fake->service();
    m_fake->answer("getValues", ScriptedAnswer::value(QVariant::fromValue(QList<int>{1, 2})));

    const QVariantList values =
        ProxyCall::valueOrEmpty<QVariantList>(*m_proxy, {"Probe::getValues(): ", service, path}, "getValues");

    QVERIFY(values.isEmpty());
    QCOMPARE(log.lines().size(), 1);
    QVERIFY(log.lines().first().text.startsWith(
        "Probe::getValues():  \"com.velk.mqx.app.fake\"  /  \"/Setup/Level\"  / Error: \""));
}

void tst_ProxyCall::failureReportPutsTheQuotedClassPrefixFirst()
{
    LogCapture log;
    const QString prefix = QStringLiteral("Probe::");
    const QString service = QStringLiteral("com.velk.mqx.app.x");

    ProxyCall::FailureReport(prefix, "getValueComp(): ", service, path)
        .write(QDBusError(QDBusError::Failed, QStringLiteral("down")));

    QCOMPARE(log.lines(),
             debugLines({"\"Probe::\" getValueComp():  \"com.velk.mqx.app.x\"  /  \"/Setup/Level\"  / "
                         "Error: \"down\""}));
}

void tst_ProxyCall::failureReportKeepsALiteralWithoutTrailingBlank()
{
    LogCapture log;
    const QString service = QStringLiteral("com.velk.mqx.app.x");

    ProxyCall::FailureReport("Probe::getValueComp()", service, path)
        .write(QDBusError(QDBusError::Failed, QStringLiteral("down")));

    QCOMPARE(log.lines(),
             debugLines({"Probe::getValueComp() \"com.velk.mqx.app.x\"  /  \"/Setup/Level\"  / Error: \"down\""}));
}

void tst_ProxyCall::checkedVariantUnwrapsTheValue()
{
    const QString service = m_fake->service();
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant::fromValue(QDBusVariant(2.5))));

    const QVariant value = ProxyCall::variantOrEmpty(*m_proxy, {"Probe::getValue(): ", service, path}, "getValue", 2);

    QCOMPARE(value.userType(), int(QMetaType::Double));
    QCOMPARE(value.toDouble(), 2.5);
    verifySingleCall(*m_fake, path, "getValue", "i", wireTexts({2}));
}

void tst_ProxyCall::checkedVariantLeavesStructuredValuesAsArguments()
{
    const QString service = m_fake->service();
    m_fake->answer("getValue",
                   ScriptedAnswer::value(QVariant::fromValue(QDBusVariant(QVariant(QStringList{"a", "b"})))));

    const QVariant value = ProxyCall::variantOrEmpty(*m_proxy, {"Probe::getValue(): ", service, path}, "getValue");

    // An array of strings is one of the shapes QtDBus converts itself; a map is not.
    QCOMPARE(value.toStringList(), (QStringList{"a", "b"}));

    DBusTypes::registerSettingsMap();
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant::fromValue(QDBusVariant(SettingsMap{{"k", 1}}))));
    const QVariant map = ProxyCall::variantOrEmpty(*m_proxy, {"Probe::getValue(): ", service, path}, "getValue");
    QCOMPARE(map.userType(), qMetaTypeId<QDBusArgument>());
    QCOMPARE(map.value<QDBusArgument>().currentSignature(), QStringLiteral("a{sv}"));
}

void tst_ProxyCall::checkedVariantGivesAnInvalidVariantOnFailure()
{
    LogCapture log;
    PlainProxy absent(absentService(), path, QDBusConnection::sessionBus());

    const QVariant value =
        ProxyCall::variantOrEmpty(absent, {"Probe::getValue(): ", absentService(), path}, "getValue");

    QVERIFY(!value.isValid());
    QCOMPARE(log.lines().size(), 1);
    QCOMPARE(log.lines().first().level, QtDebugMsg);
    QCOMPARE(log.lines().first().text,
             "Probe::getValue():  \"com.velk.mqx.app.absent\"  /  \"/Setup/Level\"  / Error: \"" +
                 absent.lastError().message() + "\"");
}

QTEST_GUILESS_MAIN(tst_ProxyCall)

#include "tst_proxycall.moc"
