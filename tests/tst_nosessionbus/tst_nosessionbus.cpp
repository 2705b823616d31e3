#include "DBusConnector.h"
#include "DBusInterfaceManager.h"
#include "RemoteCommandInterface.h"
#include "ResultIntInterface.h"

#include "LogCapture.h"

#include <QByteArray>
#include <QDBusConnection>
#include <QFileInfo>
#include <QtTest/QTest>

// Runs without a bus daemon: the session bus address names a socket that does not exist.

namespace {
const QString service = QStringLiteral("com.velk.mqx.app.foo");
const QString rootPath = QStringLiteral("/MEAS_APPL_OBJ");
const QString untouched = QStringLiteral("left alone");
} // namespace

class tst_NoSessionBus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void connectorHandsOutAnUnconnectedConnectionAtEachCall();
    void isMeasAppAvailableIsFalse();
    void getMeasAppStatusIsEmptyWithoutALogLine();
    void executeCommandGivesANullAnswerWithOkTrue();
    void resultProxyOnTheConnectorsConnectionFailsLikeAnyCall();
};

void tst_NoSessionBus::initTestCase()
{
    // Guard against running on a real bus, where every test here would mean nothing.
    const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    QVERIFY2(address.startsWith("unix:path="), address.constData());
    QVERIFY(!QFileInfo::exists(QString::fromLocal8Bit(address.mid(int(qstrlen("unix:path="))))));
}

void tst_NoSessionBus::cleanup()
{
    DBusInterfaceManager::releaseInstance();
    DBusConnector::releaseInstance();
}

void tst_NoSessionBus::connectorHandsOutAnUnconnectedConnectionAtEachCall()
{
    DBusConnector *connector = DBusConnector::getInstance();

    for (int call = 0; call < 3; ++call) {
        const QDBusConnection connection = connector->getDBusConnection();
        QVERIFY2(!connection.isConnected(), QByteArray::number(call).constData());
        QVERIFY(connection.lastError().isValid());
    }
}

void tst_NoSessionBus::isMeasAppAvailableIsFalse()
{
    LogCapture log;

    QCOMPARE(DBusInterfaceManager::getInstance()->isMeasAppAvailable("foo"), false);
    QCOMPARE(DBusInterfaceManager::getInstance()->isMeasAppAvailable("Foo"), false);

    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_NoSessionBus::getMeasAppStatusIsEmptyWithoutALogLine()
{
    LogCapture log;

    const QString status = DBusInterfaceManager::getInstance()->getMeasAppStatus("foo");

    QCOMPARE(status, QStringLiteral(""));
    QVERIFY(!status.isNull());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_NoSessionBus::executeCommandGivesANullAnswerWithOkTrue()
{
    LogCapture log;
    RemoteCommandInterface proxy(service, rootPath, DBusConnector::getInstance()->getDBusConnection());
    bool ok = false;
    QString errorCode = untouched;

    const QString answer = proxy.executeCommand("MEAS:START", {"1"}, &ok, &errorCode);

    QVERIFY(answer.isNull());
    QCOMPARE(ok, true);
    QCOMPARE(errorCode, untouched);
    QVERIFY(proxy.executeCommand("MEAS:STOP", {}).isNull());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_NoSessionBus::resultProxyOnTheConnectorsConnectionFailsLikeAnyCall()
{
    LogCapture log;
    ResultIntInterface proxy(service, QStringLiteral("/Result/Count"),
                             DBusConnector::getInstance()->getDBusConnection());

    const QDBusReply<int> value = proxy.getValue();
    QVERIFY(!value.isValid());
    QCOMPARE(value.value(), 0);
    QCOMPARE(log.lines(), QList<LogLine>());

    QCOMPARE(proxy.getValueComp(), QList<QVariant>());
    const QString message = proxy.lastError().message();
    QVERIFY(!message.isEmpty());
    QCOMPARE(log.lines(),
             debugLines({"\"ResultIntInterface::\" getValueComp():  \"com.velk.mqx.app.foo\"  /  "
                         "\"/Result/Count\"  / Error: \"" +
                         message + "\""}));
}

QTEST_GUILESS_MAIN(tst_NoSessionBus)

#include "tst_nosessionbus.moc"
