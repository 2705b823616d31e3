#include "DBusConnector.h"

#include "BusTestSupport.h"

#include <QDBusConnection>
#include <QtTest/QTest>

namespace {

/// Reads the connector's state that callers do not see.
struct ConnectorProbe : DBusConnector
{
    static DBusConnector *instance() { return m_pInstance; }
    static QDBusConnection heldConnection(DBusConnector *connector)
    {
        return static_cast<ConnectorProbe *>(connector)->m_connection;
    }
};

} // namespace

class tst_DBusConnector : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ipAddressStartsEmpty();
    void cleanup();

    void getInstanceReturnsTheSameObjectUntilReleased();
    void releaseWithoutInstanceLeavesItNull();
    void aNewInstanceHoldsAnUnconnectedDummyConnection();
    void aClientsOwnConnectionNamedDummyNameIsHandedOut();
    void getDBusConnectionSwitchesToTheSessionBusAndKeepsIt();
    void setIPAddressStoresTheAddressAndLeavesTheConnectionAlone();
    void releaseKeepsTheIPAddressAndStartsAgainUnconnected();
};

void tst_DBusConnector::ipAddressStartsEmpty()
{
    // Runs first: nothing has assigned the address yet.
    QVERIFY(DBusConnector::m_IPAddress.isEmpty());
    QCOMPARE(ConnectorProbe::instance(), nullptr);
}

void tst_DBusConnector::cleanup()
{
    DBusConnector::releaseInstance();
}

void tst_DBusConnector::getInstanceReturnsTheSameObjectUntilReleased()
{
    verifyOneInstanceUntilReleased<DBusConnector, ConnectorProbe>();
    // A fresh object, whatever address the allocator gave it: it starts unconnected again.
    QVERIFY(!ConnectorProbe::heldConnection(DBusConnector::getInstance()).isConnected());
}

void tst_DBusConnector::releaseWithoutInstanceLeavesItNull()
{
    QCOMPARE(ConnectorProbe::instance(), nullptr);
    DBusConnector::releaseInstance();
    QCOMPARE(ConnectorProbe::instance(), nullptr);
    DBusConnector::releaseInstance();
    QCOMPARE(ConnectorProbe::instance(), nullptr);
}

void tst_DBusConnector::aNewInstanceHoldsAnUnconnectedDummyConnection()
{
    const QDBusConnection held = ConnectorProbe::heldConnection(DBusConnector::getInstance());
    // A handle to a connection name that was never opened: no bus behind it.
    QVERIFY(!held.isConnected());
    QVERIFY(held.baseService().isEmpty());
    QVERIFY(QDBusConnection::sessionBus().isConnected());
}

void tst_DBusConnector::aClientsOwnConnectionNamedDummyNameIsHandedOut()
{
    const QString name = QStringLiteral("DummyName");
    const QDBusConnection own = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
    QVERIFY(own.isConnected());
    QVERIFY(own.baseService() != QDBusConnection::sessionBus().baseService());

    DBusConnector *connector = DBusConnector::getInstance();
    QCOMPARE(ConnectorProbe::heldConnection(connector).name(), name);
    const QDBusConnection handedOut = connector->getDBusConnection();

    QCOMPARE(handedOut.name(), name);
    QCOMPARE(handedOut.baseService(), own.baseService());
    DBusConnector::releaseInstance();
    QDBusConnection::disconnectFromBus(name);
}

void tst_DBusConnector::getDBusConnectionSwitchesToTheSessionBusAndKeepsIt()
{
    DBusConnector *connector = DBusConnector::getInstance();

    const QDBusConnection first = connector->getDBusConnection();
    QVERIFY(first.isConnected());
    QCOMPARE(first.baseService(), QDBusConnection::sessionBus().baseService());
    QCOMPARE(ConnectorProbe::heldConnection(connector).name(), QDBusConnection::sessionBus().name());

    const QDBusConnection second = connector->getDBusConnection();
    QCOMPARE(second.name(), first.name());
    QCOMPARE(second.baseService(), first.baseService());
}

void tst_DBusConnector::setIPAddressStoresTheAddressAndLeavesTheConnectionAlone()
{
    DBusConnector *connector = DBusConnector::getInstance();
    const QDBusConnection before = connector->getDBusConnection();

    DBusConnector::setIPAddress(QStringLiteral("192.0.2.17"));

    QCOMPARE(DBusConnector::m_IPAddress, QStringLiteral("192.0.2.17"));
    const QDBusConnection after = connector->getDBusConnection();
    QVERIFY(after.isConnected());
    QCOMPARE(after.name(), before.name());
    QCOMPARE(after.baseService(), before.baseService());

    DBusConnector::setIPAddress(QString());
    QVERIFY(DBusConnector::m_IPAddress.isEmpty());
}

void tst_DBusConnector::releaseKeepsTheIPAddressAndStartsAgainUnconnected()
{
    DBusConnector::setIPAddress(QStringLiteral("instrument-7"));
    DBusConnector::getInstance()->getDBusConnection();

    DBusConnector::releaseInstance();

    QCOMPARE(DBusConnector::m_IPAddress, QStringLiteral("instrument-7"));
    QVERIFY(!ConnectorProbe::heldConnection(DBusConnector::getInstance()).isConnected());
    QVERIFY(DBusConnector::getInstance()->getDBusConnection().isConnected());
    DBusConnector::setIPAddress(QString());
}

QTEST_GUILESS_MAIN(tst_DBusConnector)

#include "tst_dbusconnector.moc"
