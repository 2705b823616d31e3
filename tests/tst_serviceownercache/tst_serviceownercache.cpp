#include "ServiceOwnerCache.h"

#include "SetupIntInterface.h"

#include "BusMonitor.h"
#include "BusTestSupport.h"
#include "FakeMeasApplication.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QSignalSpy>
#include <QtTest/QTest>

#include <functional>
#include <memory>
#include <vector>

namespace {
const QString gainPath = QStringLiteral("/Setup/Gain");

/// Messages that the session bus connection sends to the daemon during @p action.
int messagesSentDuring(const std::function<void()> &action)
{
    BusMonitor monitor(QDBusConnection::sessionBus());
    if (!monitor.isWatching())
        return -1;
    action();
    return monitor.take().sent;
}

int matchRulesOf(const QDBusConnection &connection)
{
    return int(BusMonitor::daemonStat(connection, "MatchRules"));
}

std::vector<std::unique_ptr<SetupIntInterface>> constructProxies(const QString &service, int count)
{
    std::vector<std::unique_ptr<SetupIntInterface>> proxies;
    for (int i = 0; i < count; ++i)
        proxies.emplace_back(new SetupIntInterface(service, gainPath, QDBusConnection::sessionBus()));
    return proxies;
}
} // namespace

class tst_ServiceOwnerCache : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void isActiveOnAConnectedBus();
    void isInactiveWithoutAConnectionAndDoesNoHarm();
    void withoutItEachConstructionAsksTheDaemon();
    void proxiesConstructedMeanwhileAskTheDaemonNothing();
    void addsTheSubscriptionAndOwnerRulesOnlyAndRemovesThemAtTheEnd();
    void addsOnlyItsOwnRuleWhenTheServiceIsFollowedAlready();
    void proxiesConstructedMeanwhileCallAndRelayAsWithoutIt();
    void proxiesOutliveIt();
    void followsAnApplicationThatStartsLater();

private:
    std::unique_ptr<FakeMeasApplication> m_application;
};

void tst_ServiceOwnerCache::init()
{
    m_application.reset(new FakeMeasApplication);
    m_application->answer("getValue", ScriptedAnswer::value(42));
}

void tst_ServiceOwnerCache::cleanup()
{
    m_application.reset();
}

void tst_ServiceOwnerCache::isActiveOnAConnectedBus()
{
    const ServiceOwnerCache cache(m_application->service(), QDBusConnection::sessionBus());
    QVERIFY(cache.isActive());
    QCOMPARE(cache.service(), m_application->service());
}

void tst_ServiceOwnerCache::isInactiveWithoutAConnectionAndDoesNoHarm()
{
    const QDBusConnection unconnected(QStringLiteral("tst_ServiceOwnerCache.unconnected"));
    const ServiceOwnerCache cache(m_application->service(), unconnected);
    QVERIFY(!cache.isActive());

    const QDBusConnection bus = QDBusConnection::sessionBus();
    const ServiceOwnerCache invalidName(QStringLiteral("not a bus name"), bus);
    QVERIFY(!invalidName.isActive());
}

void tst_ServiceOwnerCache::withoutItEachConstructionAsksTheDaemon()
{
    std::vector<std::unique_ptr<SetupIntInterface>> proxies;
    const int sent = messagesSentDuring([&] { proxies = constructProxies(m_application->service(), 3); });
    // One owner query per proxy, and the first one's rule that follows the owner.
    QCOMPARE(sent, 3 + 1);
}

void tst_ServiceOwnerCache::proxiesConstructedMeanwhileAskTheDaemonNothing()
{
    const ServiceOwnerCache cache(m_application->service(), QDBusConnection::sessionBus());
    std::vector<std::unique_ptr<SetupIntInterface>> first;
    // Only the first proxy's rule that follows the owner; no owner query.
    QCOMPARE(messagesSentDuring([&] { first = constructProxies(m_application->service(), 1); }), 1);
    std::vector<std::unique_ptr<SetupIntInterface>> more;
    QCOMPARE(messagesSentDuring([&] { more = constructProxies(m_application->service(), 5); }), 0);
}

void tst_ServiceOwnerCache::addsTheSubscriptionAndOwnerRulesOnlyAndRemovesThemAtTheEnd()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    const int before = matchRulesOf(bus);
    int sent = 0;
    {
        std::unique_ptr<ServiceOwnerCache> cache;
        sent = messagesSentDuring([&] { cache.reset(new ServiceOwnerCache(m_application->service(), bus)); });
        QCOMPARE(matchRulesOf(bus), before + 2);
    }
    // Two rules and one owner query; then both rules go again.
    QCOMPARE(sent, 3);
    QCOMPARE(matchRulesOf(bus), before);
}

void tst_ServiceOwnerCache::addsOnlyItsOwnRuleWhenTheServiceIsFollowedAlready()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    SetupIntInterface proxy(m_application->service(), gainPath, bus);
    QSignalSpy changes(&proxy, &SetupIntInterface::setupChanged);
    const int before = matchRulesOf(bus);
    {
        const ServiceOwnerCache cache(m_application->service(), bus);
        QCOMPARE(matchRulesOf(bus), before + 1);
    }
    QCOMPARE(matchRulesOf(bus), before);
}

void tst_ServiceOwnerCache::proxiesConstructedMeanwhileCallAndRelayAsWithoutIt()
{
    const ServiceOwnerCache cache(m_application->service(), QDBusConnection::sessionBus());
    SetupIntInterface proxy(m_application->service(), gainPath, QDBusConnection::sessionBus());
    QVERIFY(!proxy.lastError().isValid());

    const QDBusReply<int> value = proxy.getValue();
    QVERIFY(value.isValid());
    QCOMPARE(value.value(), 42);

    QSignalSpy changes(&proxy, &SetupIntInterface::setupChanged);
    syncWithBus(QDBusConnection::sessionBus());
    m_application->emitSignal(gainPath, QStringLiteral("setupChanged"), {7});
    QVERIFY(changes.wait());
    QCOMPARE(changes.takeFirst(), QVariantList{7});
}

void tst_ServiceOwnerCache::proxiesOutliveIt()
{
    std::unique_ptr<ServiceOwnerCache> cache(
        new ServiceOwnerCache(m_application->service(), QDBusConnection::sessionBus()));
    SetupIntInterface proxy(m_application->service(), gainPath, QDBusConnection::sessionBus());
    QSignalSpy changes(&proxy, &SetupIntInterface::setupChanged);
    cache.reset();

    QCOMPARE(proxy.getValue().value(), 42);
    m_application->emitSignal(gainPath, QStringLiteral("setupChanged"), {8});
    QVERIFY(changes.wait());
    QCOMPARE(changes.takeFirst(), QVariantList{8});
}

void tst_ServiceOwnerCache::followsAnApplicationThatStartsLater()
{
    const QString service = FakeMeasApplication::serviceFor(QStringLiteral("later"));
    const ServiceOwnerCache cache(service, QDBusConnection::sessionBus());
    QVERIFY(cache.isActive());
    QVERIFY(!SetupIntInterface(service, gainPath, QDBusConnection::sessionBus()).getValue().isValid());

    FakeMeasApplication later(service);
    later.answer("getValue", ScriptedAnswer::value(5));
    SetupIntInterface proxy(service, gainPath, QDBusConnection::sessionBus());
    QCOMPARE(proxy.getValue().value(), 5);
}

QTEST_GUILESS_MAIN(tst_ServiceOwnerCache)

#include "tst_serviceownercache.moc"
