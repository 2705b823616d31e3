#include "DBusConnector.h"
#include "DBusInterfaceManager.h"
#include "SetupIntInterface.h"

#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QPointer>
#include <QtTest/QTest>

#include <memory>

namespace {

const QString rootPath = QStringLiteral("/MEAS_APPL_OBJ");
const QString statusMember = QStringLiteral("getMeasApplicationStatus");

/// Reads the singletons' pointers, which only the classes and their heirs can see.
class ManagerProbe : public DBusInterfaceManager
{
public:
    static DBusInterfaceManager *instance() { return m_pInstance; }
};

class ConnectorProbe : public DBusConnector
{
public:
    static DBusConnector *instance() { return m_pInstance; }
};

/// A proxy to file; the registry never calls it.
std::unique_ptr<QDBusAbstractInterface> makeProxy(const QString &path)
{
    return std::make_unique<SetupIntInterface>(absentService(), path, QDBusConnection::sessionBus());
}

} // namespace

class tst_DBusInterfaceManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void getInstanceHandsOutOneInstanceUntilReleased();
    void releaseInstanceWithoutAnInstanceLeavesItNull();
    void aLaterInstanceStartsWithAnEmptyRegistry();
    void releasingTheManagerLeavesTheFiledProxiesAlive();

    void addItemKeepsTheProxyFiledFirstUnderAName();
    void addItemFilesDifferentNamesSideBySide();
    void addItemAcceptsANullProxy();
    void getInterfaceComparesNamesExactly_data();
    void getInterfaceComparesNamesExactly();
    void getInterfaceOnAnEmptyRegistryReturnsNull();

    void isMeasAppAvailableLooksForTheLowerCasedServiceName_data();
    void isMeasAppAvailableLooksForTheLowerCasedServiceName();
    void isMeasAppAvailableIsFalseWithoutTheApplication();
    void isMeasAppAvailableAsksTheBusNotTheApplication();
    void isMeasAppAvailableFollowsTheApplicationLeavingTheBus();

    void getMeasAppStatusPassesTheStatusTextThrough();
    void getMeasAppStatusAsksTheLowerCasedServiceOnly();
    void getMeasAppStatusGivesAnEmptyStringWithoutALogLine_data();
    void getMeasAppStatusGivesAnEmptyStringWithoutALogLine();
    void getMeasAppStatusBlocksWithoutRunningTheEventLoop();

    void queriesTakeTheirConnectionFromTheConnector();
};

void tst_DBusInterfaceManager::cleanup()
{
    DBusInterfaceManager::releaseInstance();
    DBusConnector::releaseInstance();
}

void tst_DBusInterfaceManager::getInstanceHandsOutOneInstanceUntilReleased()
{
    verifyOneInstanceUntilReleased<DBusInterfaceManager, ManagerProbe>();
}

void tst_DBusInterfaceManager::releaseInstanceWithoutAnInstanceLeavesItNull()
{
    QCOMPARE(ManagerProbe::instance(), nullptr);
    DBusInterfaceManager::releaseInstance();
    QCOMPARE(ManagerProbe::instance(), nullptr);
    DBusInterfaceManager::releaseInstance();
    QCOMPARE(ManagerProbe::instance(), nullptr);
}

void tst_DBusInterfaceManager::aLaterInstanceStartsWithAnEmptyRegistry()
{
    const auto proxy = makeProxy("/Setup/Gain");
    QVERIFY(DBusInterfaceManager::getInstance()->addItem("gain", proxy.get()));

    DBusInterfaceManager::releaseInstance();

    DBusInterfaceManager *manager = DBusInterfaceManager::getInstance();
    QCOMPARE(manager->getInterface("gain"), nullptr);
    QVERIFY(manager->addItem("gain", proxy.get()));
}

void tst_DBusInterfaceManager::releasingTheManagerLeavesTheFiledProxiesAlive()
{
    auto proxy = makeProxy("/Setup/Gain");
    QPointer<QDBusAbstractInterface> watch(proxy.get());
    DBusInterfaceManager::getInstance()->addItem("gain", proxy.get());

    DBusInterfaceManager::releaseInstance();

    QVERIFY(!watch.isNull());
    QCOMPARE(watch->path(), QStringLiteral("/Setup/Gain"));
}

void tst_DBusInterfaceManager::addItemKeepsTheProxyFiledFirstUnderAName()
{
    const auto first = makeProxy("/Setup/First");
    const auto second = makeProxy("/Setup/Second");
    DBusInterfaceManager *manager = DBusInterfaceManager::getInstance();

    QCOMPARE(manager->addItem("a", first.get()), true);
    QCOMPARE(manager->addItem("a", second.get()), false);

    QCOMPARE(manager->getInterface("a"), first.get());
}

void tst_DBusInterfaceManager::addItemFilesDifferentNamesSideBySide()
{
    const auto first = makeProxy("/Setup/First");
    const auto second = makeProxy("/Setup/Second");
    DBusInterfaceManager *manager = DBusInterfaceManager::getInstance();

    QVERIFY(manager->addItem("a", first.get()));
    QVERIFY(manager->addItem("b", second.get()));
    // One proxy may be filed under several names.
    QVERIFY(manager->addItem("c", first.get()));

    QCOMPARE(manager->getInterface("a"), first.get());
    QCOMPARE(manager->getInterface("b"), second.get());
    QCOMPARE(manager->getInterface("c"), first.get());
}

void tst_DBusInterfaceManager::addItemAcceptsANullProxy()
{
    const auto proxy = makeProxy("/Setup/Gain");
    DBusInterfaceManager *manager = DBusInterfaceManager::getInstance();

    QCOMPARE(manager->addItem("empty", nullptr), true);
    // The name is taken by the null entry, which stays.
    QCOMPARE(manager->addItem("empty", proxy.get()), false);
    QCOMPARE(manager->getInterface("empty"), nullptr);
}

void tst_DBusInterfaceManager::getInterfaceComparesNamesExactly_data()
{
    QTest::addColumn<QString>("lookedUp");
    QTest::addColumn<bool>("found");

    QTest::newRow("same name") << "a" << true;
    QTest::newRow("other case") << "A" << false;
    QTest::newRow("trailing blank") << "a " << false;
    QTest::newRow("longer name") << "ab" << false;
    QTest::newRow("empty name") << "" << false;
}

void tst_DBusInterfaceManager::getInterfaceComparesNamesExactly()
{
    QFETCH(QString, lookedUp);
    QFETCH(bool, found);

    const auto proxy = makeProxy("/Setup/Gain");
    DBusInterfaceManager *manager = DBusInterfaceManager::getInstance();
    manager->addItem("a", proxy.get());

    QCOMPARE(manager->getInterface(lookedUp), found ? proxy.get() : nullptr);
}

void tst_DBusInterfaceManager::getInterfaceOnAnEmptyRegistryReturnsNull()
{
    QCOMPARE(DBusInterfaceManager::getInstance()->getInterface("a"), nullptr);
    QCOMPARE(DBusInterfaceManager::getInstance()->getInterface(QString()), nullptr);
}

void tst_DBusInterfaceManager::isMeasAppAvailableLooksForTheLowerCasedServiceName_data()
{
    QTest::addColumn<QString>("registeredAs");
    QTest::addColumn<QString>("askedFor");
    QTest::addColumn<bool>("available");

    QTest::newRow("mixed case name, lower-case service") << "foo"
                                                         << "Foo" << true;
    QTest::newRow("lower-case name, lower-case service") << "foo"
                                                         << "foo" << true;
    QTest::newRow("upper-case name, lower-case service") << "foo"
                                                         << "FOO" << true;
    QTest::newRow("mixed case name, mixed case service") << "Foo"
                                                         << "Foo" << false;
    QTest::newRow("lower-case name, mixed case service") << "Foo"
                                                         << "foo" << false;
    QTest::newRow("shorter name") << "foo"
                                  << "fo" << false;
    QTest::newRow("longer name") << "foo"
                                 << "foobar" << false;
    QTest::newRow("empty name") << "foo"
                                << "" << false;
}

void tst_DBusInterfaceManager::isMeasAppAvailableLooksForTheLowerCasedServiceName()
{
    QFETCH(QString, registeredAs);
    QFETCH(QString, askedFor);
    QFETCH(bool, available);

    LogCapture log;
    FakeMeasApplication application(FakeMeasApplication::serviceFor(registeredAs));

    QCOMPARE(DBusInterfaceManager::getInstance()->isMeasAppAvailable(askedFor), available);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_DBusInterfaceManager::isMeasAppAvailableIsFalseWithoutTheApplication()
{
    LogCapture log;
    FakeMeasApplication other(FakeMeasApplication::serviceFor("other"));

    QCOMPARE(DBusInterfaceManager::getInstance()->isMeasAppAvailable("foo"), false);
    QCOMPARE(DBusInterfaceManager::getInstance()->isMeasAppAvailable("other"), true);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_DBusInterfaceManager::isMeasAppAvailableAsksTheBusNotTheApplication()
{
    FakeMeasApplication application(FakeMeasApplication::serviceFor("foo"));

    QVERIFY(DBusInterfaceManager::getInstance()->isMeasAppAvailable("foo"));

    // A status call afterwards is the first thing the application hears of.
    application.answer(rootPath, statusMember, ScriptedAnswer::value(QStringLiteral("idle")));
    DBusInterfaceManager::getInstance()->getMeasAppStatus("foo");
    QVERIFY(application.waitForCalls(1));
    QCOMPARE(application.callCount(), 1);
    QCOMPARE(application.calls().first().member, statusMember);
}

void tst_DBusInterfaceManager::isMeasAppAvailableFollowsTheApplicationLeavingTheBus()
{
    auto application = std::make_unique<FakeMeasApplication>(FakeMeasApplication::serviceFor("foo"));
    DBusInterfaceManager *manager = DBusInterfaceManager::getInstance();
    QCOMPARE(manager->isMeasAppAvailable("Foo"), true);

    NameReleaseWatch released(QDBusConnection::sessionBus(), application->service());
    application.reset();
    QVERIFY(released.wait());

    QCOMPARE(manager->isMeasAppAvailable("Foo"), false);
}

void tst_DBusInterfaceManager::getMeasAppStatusPassesTheStatusTextThrough()
{
    LogCapture log;
    FakeMeasApplication application(FakeMeasApplication::serviceFor("foo"));
    const QString status = QStringLiteral("MEASURING \"sweep 3/10\"");
    application.answer(rootPath, statusMember, ScriptedAnswer::value(status));

    QCOMPARE(DBusInterfaceManager::getInstance()->getMeasAppStatus("Foo"), status);

    verifySingleCall(application, rootPath, statusMember, "", {});
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_DBusInterfaceManager::getMeasAppStatusAsksTheLowerCasedServiceOnly()
{
    LogCapture log;
    FakeMeasApplication mixedCase(FakeMeasApplication::serviceFor("Foo"));
    mixedCase.answer(rootPath, statusMember, ScriptedAnswer::value(QStringLiteral("running")));

    const QString status = DBusInterfaceManager::getInstance()->getMeasAppStatus("Foo");

    QCOMPARE(status, QStringLiteral(""));
    QCOMPARE(mixedCase.callCount(), 0);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_DBusInterfaceManager::getMeasAppStatusGivesAnEmptyStringWithoutALogLine_data()
{
    QTest::addColumn<QString>("owner");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<int>("calls");

    // The status is asked of "foo"; "bar" is another application.
    const QString foo = QStringLiteral("foo");
    QTest::newRow("error reply") << foo << ScriptedAnswer::error("com.velk.mqx.Error.Busy", "busy") << 1;
    QTest::newRow("integer reply") << foo << ScriptedAnswer::value(3) << 1;
    QTest::newRow("string list reply") << foo << ScriptedAnswer::value(QStringList{"running"}) << 1;
    QTest::newRow("empty reply") << foo << ScriptedAnswer::reply() << 1;
    QTest::newRow("application vanishes mid-call") << foo << ScriptedAnswer::vanish() << 1;
    QTest::newRow("application absent") << QStringLiteral("bar") << ScriptedAnswer::value(QStringLiteral("running"))
                                        << 0;
}

void tst_DBusInterfaceManager::getMeasAppStatusGivesAnEmptyStringWithoutALogLine()
{
    QFETCH(QString, owner);
    QFETCH(ScriptedAnswer, answer);
    QFETCH(int, calls);

    LogCapture log;
    FakeMeasApplication application(FakeMeasApplication::serviceFor(owner));
    application.answer(rootPath, statusMember, answer);

    const QString status = DBusInterfaceManager::getInstance()->getMeasAppStatus("foo");

    QCOMPARE(status, QStringLiteral(""));
    QVERIFY(!status.isNull());
    QCOMPARE(application.callCount(), calls);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_DBusInterfaceManager::getMeasAppStatusBlocksWithoutRunningTheEventLoop()
{
    FakeMeasApplication application(FakeMeasApplication::serviceFor("foo"));
    application.answer(rootPath, statusMember, ScriptedAnswer::value(QStringLiteral("idle")));
    bool ran = false;
    QMetaObject::invokeMethod(
        this, [&ran] { ran = true; }, Qt::QueuedConnection);

    QCOMPARE(DBusInterfaceManager::getInstance()->getMeasAppStatus("foo"), QStringLiteral("idle"));

    QVERIFY(!ran);
    QCoreApplication::sendPostedEvents(this);
    QVERIFY(ran);
}

void tst_DBusInterfaceManager::queriesTakeTheirConnectionFromTheConnector()
{
    FakeMeasApplication application(FakeMeasApplication::serviceFor("foo"));
    application.answer(rootPath, statusMember, ScriptedAnswer::value(QStringLiteral("idle")));
    DBusInterfaceManager *manager = DBusInterfaceManager::getInstance();

    QCOMPARE(ConnectorProbe::instance(), nullptr);
    QVERIFY(manager->isMeasAppAvailable("foo"));
    QVERIFY(ConnectorProbe::instance());
    QVERIFY(ConnectorProbe::instance()->getDBusConnection().isConnected());

    // Fetched afresh at every use: a connector released in between is created again.
    DBusConnector::releaseInstance();
    QCOMPARE(manager->getMeasAppStatus("foo"), QStringLiteral("idle"));
    QVERIFY(ConnectorProbe::instance());
}

QTEST_GUILESS_MAIN(tst_DBusInterfaceManager)

#include "tst_dbusinterfacemanager.moc"
