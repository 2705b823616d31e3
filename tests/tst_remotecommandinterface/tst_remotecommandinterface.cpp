#include "DBusConnector.h"
#include "RemoteCommandInterface.h"

#include "LogCapture.h"
#include "ProxyClassTest.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QtTest/QTest>

#include <memory>

namespace {
using P = RemoteCommandInterface;
const QString path = QStringLiteral("/MEAS_APPL_OBJ");
const QString member = QStringLiteral("executeRemoteCommand");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");
const QString untouched = QStringLiteral("left alone");

// The command's calls and what it makes of their answers are stated by the checks below: an
// answer is a text, a parser error among them, which no table of replies describes.
// clang-format off
const ProxyClassTable remoteCommand{
    .className = "RemoteCommandInterface",
    .path = path,
    .make = factoryOf<P>(),
    .slotSignatures = {"QString executeCommand(QString,QStringList,bool*,QString*)",
                       "QString executeCommand(QString,QStringList,bool*)",
                       "QString executeCommand(QString,QStringList)"},
    .otherClasses = {"ResultIntInterface"},
};
// clang-format on
} // namespace

class tst_RemoteCommandInterface : public ProxyClassTest
{
    Q_OBJECT

public:
    tst_RemoteCommandInterface()
        : ProxyClassTest(remoteCommand)
    {
    }

private:
    P &command() { return proxy<P>(); }

private Q_SLOTS:
    void cleanup();

    void sendsTheCommandAndFourParameterSlots_data();
    void sendsTheCommandAndFourParameterSlots();
    void refusesMoreThanFourParametersWithoutSending_data();
    void refusesMoreThanFourParametersWithoutSending();
    void mapsEachAnswer_data();
    void mapsEachAnswer();
    void givesANullAnswerWithOkWhenTheServiceIsAbsent();
    void parserErrorLineQuotesAndEscapesCommandAndAnswer();
    void neverWritesThroughNullOkOrErrorCode();

    void sendsOverTheConnectorsConnectionNotItsOwn();
    void blocksWithoutRunningTheEventLoop();

    void eachSlotFormIsPublic();
    void invokingEachSlotFormByNameRunsTheCommand();
};

void tst_RemoteCommandInterface::cleanup()
{
    ProxyClassTest::cleanup();
    DBusConnector::releaseInstance();
}

void tst_RemoteCommandInterface::sendsTheCommandAndFourParameterSlots_data()
{
    QTest::addColumn<QStringList>("params");
    QTest::addColumn<QList<QVariant>>("arguments");

    QTest::newRow("no parameters") << QStringList() << QList<QVariant>{"MEAS:START", "", "", "", ""};
    QTest::newRow("one parameter") << QStringList{"12"} << QList<QVariant>{"MEAS:START", "12", "", "", ""};
    QTest::newRow("an empty parameter before another")
        << QStringList{"", "b"} << QList<QVariant>{"MEAS:START", "", "b", "", ""};
    QTest::newRow("four parameters") << QStringList{"1", "two", "3.0", "IV"}
                                     << QList<QVariant>{"MEAS:START", "1", "two", "3.0", "IV"};
}

void tst_RemoteCommandInterface::sendsTheCommandAndFourParameterSlots()
{
    QFETCH(QStringList, params);
    QFETCH(QList<QVariant>, arguments);

    m_fake->answer(member, ScriptedAnswer::value(QStringLiteral("OK")));

    QCOMPARE(command().executeCommand("MEAS:START", params), QStringLiteral("OK"));

    verifySingleCall(*m_fake, path, member, "sssss", wireTexts(arguments));
    QCOMPARE(m_fake->calls().first().arguments.size(), 5);
}

void tst_RemoteCommandInterface::refusesMoreThanFourParametersWithoutSending_data()
{
    QTest::addColumn<QStringList>("params");

    QTest::newRow("five parameters") << QStringList{"1", "2", "3", "4", "5"};
    QTest::newRow("six parameters") << QStringList{"1", "2", "3", "4", "5", "6"};
}

void tst_RemoteCommandInterface::refusesMoreThanFourParametersWithoutSending()
{
    QFETCH(QStringList, params);

    LogCapture log;
    m_fake->answer(member, ScriptedAnswer::value(QStringLiteral("OK")));
    bool ok = false;
    QString errorCode = untouched;

    const QString answer = command().executeCommand("SYST:PRESET", params, &ok, &errorCode);

    QVERIFY(answer.isNull());
    QCOMPARE(ok, true);
    QCOMPARE(errorCode, untouched);
    QCOMPARE(log.lines(), QList<LogLine>());

    // Messages arrive in order: if the refused command had been sent, it would come first.
    command().executeCommand("SYST:CHECK", {});
    verifySingleCall(*m_fake, path, member, "sssss",
                     wireTexts({QStringLiteral("SYST:CHECK"), QString(), QString(), QString(), QString()}));
}

void tst_RemoteCommandInterface::mapsEachAnswer_data()
{
    QTest::addColumn<ScriptedAnswer>("reply");
    QTest::addColumn<QString>("errorCodeBefore");
    QTest::addColumn<QString>("result");
    QTest::addColumn<bool>("resultIsNull");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QString>("errorCodeAfter");
    QTest::addColumn<QStringList>("log");

    const auto answer = [](const char *text) { return ScriptedAnswer::value(QString::fromUtf8(text)); };

    QTest::newRow("plain answer") << answer("12.5 V") << untouched << "12.5 V" << false << true << untouched
                                  << QStringList();
    QTest::newRow("empty answer") << answer("") << untouched << "" << false << true << untouched << QStringList();

    QTest::newRow("parser error") << answer("Parser Error: unknown header") << "" << QString() << true << false
                                  << "unknown header"
                                  << QStringList{"RemoteCommandInterface::executeCommand()  \"MEAS:START\"  / Error "
                                                 "PARSER_ERROR:  \"Parser Error: unknown header\""};
    QTest::newRow("bare prefix") << answer("Parser Error: ") << "E7;" << QString() << true << false << "E7;"
                                 << QStringList{"RemoteCommandInterface::executeCommand()  \"MEAS:START\"  / Error "
                                                "PARSER_ERROR:  \"Parser Error: \""};
    QTest::newRow("appended without a separator")
        << answer("Parser Error: second") << "first" << QString() << true << false << "firstsecond"
        << QStringList{"RemoteCommandInterface::executeCommand()  \"MEAS:START\"  / Error PARSER_ERROR:  \"Parser "
                       "Error: second\""};
    QTest::newRow("prefix also in the earlier error code")
        << answer("Parser Error: new") << "Parser Error: old; " << QString() << true << false << "old; new"
        << QStringList{"RemoteCommandInterface::executeCommand()  \"MEAS:START\"  / Error PARSER_ERROR:  \"Parser "
                       "Error: new\""};
    QTest::newRow("prefix twice in the answer")
        << answer("Parser Error: Parser Error: nested") << "" << QString() << true << false << "nested"
        << QStringList{"RemoteCommandInterface::executeCommand()  \"MEAS:START\"  / Error PARSER_ERROR:  \"Parser "
                       "Error: Parser Error: nested\""};

    QTest::newRow("prefix in lower case")
        << answer("parser error: x") << untouched << "parser error: x" << false << true << untouched << QStringList();
    QTest::newRow("prefix in upper case")
        << answer("PARSER ERROR: x") << untouched << "PARSER ERROR: x" << false << true << untouched << QStringList();
    QTest::newRow("prefix without its blank")
        << answer("Parser Error:x") << untouched << "Parser Error:x" << false << true << untouched << QStringList();
    QTest::newRow("prefix after a blank")
        << answer(" Parser Error: x") << untouched << " Parser Error: x" << false << true << untouched << QStringList();
    QTest::newRow("prefix inside the answer")
        << answer("Warning Parser Error: x") << untouched << "Warning Parser Error: x" << false << true << untouched
        << QStringList();

    QTest::newRow("error reply") << ScriptedAnswer::error(failure, "Parser Error: as error") << untouched << QString()
                                 << true << true << untouched << QStringList();
    QTest::newRow("integer reply") << ScriptedAnswer::value(7) << untouched << QString() << true << true << untouched
                                   << QStringList();
    QTest::newRow("string list reply") << ScriptedAnswer::value(QStringList{"Parser Error: x"}) << untouched
                                       << QString() << true << true << untouched << QStringList();
    QTest::newRow("empty reply") << ScriptedAnswer::reply() << untouched << QString() << true << true << untouched
                                 << QStringList();
    QTest::newRow("application vanishes mid-call")
        << ScriptedAnswer::vanish() << untouched << QString() << true << true << untouched << QStringList();
}

void tst_RemoteCommandInterface::mapsEachAnswer()
{
    QFETCH(ScriptedAnswer, reply);
    QFETCH(QString, errorCodeBefore);
    QFETCH(QString, result);
    QFETCH(bool, resultIsNull);
    QFETCH(bool, ok);
    QFETCH(QString, errorCodeAfter);
    QFETCH(QStringList, log);

    LogCapture capture;
    m_fake->answer(member, reply);
    bool okOut = !ok;
    QString errorCode = errorCodeBefore;

    const QString answer = command().executeCommand("MEAS:START", {"1"}, &okOut, &errorCode);

    QCOMPARE(answer, result);
    QCOMPARE(answer.isNull(), resultIsNull);
    QCOMPARE(okOut, ok);
    QCOMPARE(errorCode, errorCodeAfter);
    QCOMPARE(capture.lines(), debugLines(log));
    QCOMPARE(m_fake->callCount(), 1);
}

void tst_RemoteCommandInterface::givesANullAnswerWithOkWhenTheServiceIsAbsent()
{
    LogCapture log;
    RemoteCommandInterface proxy(absentService(), path, QDBusConnection::sessionBus());
    bool ok = false;
    QString errorCode = untouched;

    const QString answer = proxy.executeCommand("MEAS:START", {}, &ok, &errorCode);

    QVERIFY(answer.isNull());
    QCOMPARE(ok, true);
    QCOMPARE(errorCode, untouched);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_RemoteCommandInterface::parserErrorLineQuotesAndEscapesCommandAndAnswer()
{
    LogCapture log;
    m_fake->answer(member, ScriptedAnswer::value(QStringLiteral("Parser Error: missing \"\"")));
    QString errorCode;

    command().executeCommand("DISP:TEXT \"hi\"", {}, nullptr, &errorCode);

    QCOMPARE(errorCode, QStringLiteral("missing \"\""));
    QCOMPARE(log.lines(),
             debugLines({"RemoteCommandInterface::executeCommand()  \"DISP:TEXT \\\"hi\\\"\"  / Error "
                         "PARSER_ERROR:  \"Parser Error: missing \\\"\\\"\""}));
}

void tst_RemoteCommandInterface::neverWritesThroughNullOkOrErrorCode()
{
    LogCapture log;
    m_fake->answer(member, ScriptedAnswer::value(QStringLiteral("Parser Error: bad")));
    const QString line = QStringLiteral(
        "RemoteCommandInterface::executeCommand()  \"CMD\"  / Error PARSER_ERROR:  \"Parser Error: bad\"");

    QVERIFY(command().executeCommand("CMD", {}).isNull());
    QVERIFY(command().executeCommand("CMD", {}, nullptr).isNull());
    QVERIFY(command().executeCommand("CMD", {}, nullptr, nullptr).isNull());

    bool ok = true;
    QVERIFY(command().executeCommand("CMD", {}, &ok, nullptr).isNull());
    QCOMPARE(ok, false);

    QString errorCode = QStringLiteral("was: ");
    QVERIFY(command().executeCommand("CMD", {}, nullptr, &errorCode).isNull());
    QCOMPARE(errorCode, QStringLiteral("was: bad"));

    // The refused parameter list returns before anything could be written.
    QVERIFY(command().executeCommand("CMD", {"1", "2", "3", "4", "5"}, nullptr, nullptr).isNull());

    QCOMPARE(log.lines(), debugLines({line, line, line, line, line}));
    QCOMPARE(m_fake->callCount(), 5);
}

void tst_RemoteCommandInterface::sendsOverTheConnectorsConnectionNotItsOwn()
{
    const QDBusConnection neverOpened(QStringLiteral("never-opened"));
    QVERIFY(!neverOpened.isConnected());
    RemoteCommandInterface proxy(m_fake->service(), path, neverOpened);
    m_fake->answer(member, ScriptedAnswer::value(QStringLiteral("done")));

    QCOMPARE(proxy.executeCommand("MEAS:START", {}), QStringLiteral("done"));

    // Fetched afresh at each call: a connector released in between is created again.
    DBusConnector::releaseInstance();
    QCOMPARE(proxy.executeCommand("MEAS:STOP", {}), QStringLiteral("done"));

    QVERIFY(m_fake->waitForCalls(2));
    QCOMPARE(m_fake->calls().at(0).arguments.first(), QVariant("MEAS:START"));
    QCOMPARE(m_fake->calls().at(1).arguments.first(), QVariant("MEAS:STOP"));
}

void tst_RemoteCommandInterface::blocksWithoutRunningTheEventLoop()
{
    m_fake->answer(member, ScriptedAnswer::value(QStringLiteral("done")));
    bool ran = false;
    QMetaObject::invokeMethod(
        this, [&ran] { ran = true; }, Qt::QueuedConnection);

    QCOMPARE(command().executeCommand("MEAS:START", {}), QStringLiteral("done"));

    QVERIFY(!ran);
    QCoreApplication::sendPostedEvents(this);
    QVERIFY(ran);
}

void tst_RemoteCommandInterface::eachSlotFormIsPublic()
{
    const QMetaObject &meta = P::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        QCOMPARE(meta.method(i).access(), QMetaMethod::Public);
}

void tst_RemoteCommandInterface::invokingEachSlotFormByNameRunsTheCommand()
{
    LogCapture log;
    m_fake->answer(member, ScriptedAnswer::value(QStringLiteral("Parser Error: syntax")));
    const QStringList params{"a"};

    QString answer = QStringLiteral("unset");
    bool ok = true;
    QString errorCode = QStringLiteral("code: ");
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "executeCommand", Qt::DirectConnection,
                                      Q_RETURN_ARG(QString, answer), Q_ARG(QString, "CMD"), Q_ARG(QStringList, params),
                                      Q_ARG(bool *, &ok), Q_ARG(QString *, &errorCode)));
    QVERIFY(answer.isNull());
    QCOMPARE(ok, false);
    QCOMPARE(errorCode, QStringLiteral("code: syntax"));

    answer = QStringLiteral("unset");
    ok = true;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "executeCommand", Qt::DirectConnection,
                                      Q_RETURN_ARG(QString, answer), Q_ARG(QString, "CMD"), Q_ARG(QStringList, params),
                                      Q_ARG(bool *, &ok)));
    QVERIFY(answer.isNull());
    QCOMPARE(ok, false);

    m_fake->answer(member, ScriptedAnswer::value(QStringLiteral("42")));
    answer.clear();
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "executeCommand", Qt::DirectConnection,
                                      Q_RETURN_ARG(QString, answer), Q_ARG(QString, "CMD"),
                                      Q_ARG(QStringList, params)));
    QCOMPARE(answer, QStringLiteral("42"));

    // Without a place for the result the command still goes out.
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "executeCommand", Qt::DirectConnection, Q_ARG(QString, "LAST"),
                                      Q_ARG(QStringList, params)));

    QVERIFY(m_fake->waitForCalls(4));
    for (const ReceivedCall &call : m_fake->calls()) {
        QCOMPARE(call.member, member);
        QCOMPARE(call.signature, QStringLiteral("sssss"));
    }
    QCOMPARE(m_fake->calls().last().arguments, (QList<QVariant>{"LAST", "a", "", "", ""}));
    QCOMPARE(log.lines().size(), 2);
}

QTEST_GUILESS_MAIN(tst_RemoteCommandInterface)

#include "tst_remotecommandinterface.moc"
