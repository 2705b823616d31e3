#include "DBusConnector.h"
#include "DBusInterfaceManager.h"
#include "SetupIntInterface.h"
#include "SetupMapItemInterface.h"

#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"

#include <QDBusConnection>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest/QTest>

#include <memory>

namespace {

const QString path = QStringLiteral("/Setup/Element");

/// A bus daemon of the test's own, at a fixed address, that the test may kill.
class OwnBusDaemon
{
public:
    explicit OwnBusDaemon(const QString &address)
    {
        m_process.start(QStringLiteral("dbus-daemon"),
                        {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                         QStringLiteral("--config-file=" DBUSINTERFACES_TEST_BUS_CONFIG),
                         QStringLiteral("--address=") + address});
    }
    ~OwnBusDaemon() { kill(); }

    /// Whether the daemon listens: it prints its address once it does.
    bool waitUntilListening() { return m_process.waitForReadyRead(10000) && !m_process.readLine().trimmed().isEmpty(); }
    void kill()
    {
        if (m_process.state() == QProcess::NotRunning)
            return;
        m_process.kill();
        m_process.waitForFinished(10000);
    }

private:
    QProcess m_process;
};

} // namespace

/**
 * The bus daemon dies under a running client: every call fails cleanly, the connector and
 * the interface manager answer as without a bus, and nothing crashes. This executable runs
 * without the usual private bus; its session bus is a daemon it started itself.
 */
class tst_BusDaemonLoss : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void everythingWorksWhileTheDaemonRuns();
    void afterTheDaemonIsKilledCallsFailCleanlyAndTheQueriesAnswerAsWithoutABus();
    void theSessionConnectionDoesNotComeBackWhenADaemonListensAgain();

private:
    QTemporaryDir m_directory;
    QString m_address;
    std::unique_ptr<OwnBusDaemon> m_daemon;
    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<SetupIntInterface> m_scalar;
    std::unique_ptr<SetupMapItemInterface> m_map;
};

void tst_BusDaemonLoss::initTestCase()
{
    QVERIFY(m_directory.isValid());
    m_address = QStringLiteral("unix:path=") + m_directory.filePath(QStringLiteral("bus"));
    m_daemon.reset(new OwnBusDaemon(m_address));
    QVERIFY(m_daemon->waitUntilListening());
    // Before anything in the process has opened the session bus.
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_address.toLocal8Bit());

    m_fake.reset(new FakeMeasApplication(FakeMeasApplication::serviceFor(QStringLiteral("fake"))));
    m_fake->answer(QStringLiteral("getValue"), ScriptedAnswer::value(5));
    m_fake->answer(QStringLiteral("getMeasApplicationStatus"), ScriptedAnswer::value(QStringLiteral("running")));
    m_scalar.reset(new SetupIntInterface(m_fake->service(), path, QDBusConnection::sessionBus()));
    m_map.reset(new SetupMapItemInterface(m_fake->service(), path, QDBusConnection::sessionBus()));
}

void tst_BusDaemonLoss::cleanupTestCase()
{
    m_map.reset();
    m_scalar.reset();
    m_fake.reset();
    m_daemon.reset();
    DBusInterfaceManager::releaseInstance();
    DBusConnector::releaseInstance();
}

void tst_BusDaemonLoss::everythingWorksWhileTheDaemonRuns()
{
    QCOMPARE(m_scalar->getValue().value(), 5);
    QVERIFY(DBusConnector::getInstance()->getDBusConnection().isConnected());
    QVERIFY(DBusInterfaceManager::getInstance()->isMeasAppAvailable(QStringLiteral("fake")));
    QCOMPARE(DBusInterfaceManager::getInstance()->getMeasAppStatus(QStringLiteral("fake")), QStringLiteral("running"));
}

void tst_BusDaemonLoss::afterTheDaemonIsKilledCallsFailCleanlyAndTheQueriesAnswerAsWithoutABus()
{
    m_daemon->kill();
    LogCapture log;

    const QDBusReply<int> value = m_scalar->getValue();
    m_scalar->setValueAsync(7);
    const QVariant item = m_map->getValue(QStringLiteral("k"));
    const QString itemError = m_map->lastError().message();

    QVERIFY(!value.isValid());
    QCOMPARE(value.value(), 0);
    QVERIFY(value.error().isValid());
    QVERIFY(!item.isValid());
    QCOMPARE(
        log.lines(),
        debugLines(
            {QStringLiteral("SetupIntInterface::getValue() Error!  ") + quoted(value.error().message()),
             QStringLiteral("SetupIntInterface::getValue() Interface  ") + quoted(FakeMeasApplication::interfaceName),
             QStringLiteral("SetupIntInterface::getValue() Path  ") + quoted(path),
             reportLine(QStringLiteral("SetupMapItemInterface::getValue(): "), m_fake->service(), path, itemError)}));
    QVERIFY(!DBusConnector::getInstance()->getDBusConnection().isConnected());
    QVERIFY(!DBusInterfaceManager::getInstance()->isMeasAppAvailable(QStringLiteral("fake")));
    QCOMPARE(DBusInterfaceManager::getInstance()->getMeasAppStatus(QStringLiteral("fake")), QString());
    // A proxy made now is made as ever and fails as the others do.
    SetupIntInterface late(m_fake->service(), path, DBusConnector::getInstance()->getDBusConnection());
    QVERIFY(!late.getValue().isValid());
}

void tst_BusDaemonLoss::theSessionConnectionDoesNotComeBackWhenADaemonListensAgain()
{
    OwnBusDaemon again(m_address);
    QVERIFY(again.waitUntilListening());
    // Another connection reaches the new daemon, so the address works again...
    QDBusConnection fresh = QDBusConnection::connectToBus(m_address, QStringLiteral("fresh"));
    QVERIFY(fresh.isConnected());

    // ...but QtDBus keeps the process's session connection it lost.
    QVERIFY(!DBusConnector::getInstance()->getDBusConnection().isConnected());
    QVERIFY(!DBusInterfaceManager::getInstance()->isMeasAppAvailable(QStringLiteral("fake")));
    QDBusConnection::disconnectFromBus(QStringLiteral("fresh"));
}

QTEST_GUILESS_MAIN(tst_BusDaemonLoss)

#include "tst_busdaemonloss.moc"
