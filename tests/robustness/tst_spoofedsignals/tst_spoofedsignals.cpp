#include "BusTestSupport.h"
#include "FakeMeasApplication.h"
#include "RelayedSignals.h"

#include <QDBusConnection>
#include <QSignalSpy>
#include <QtTest/QTest>

#include <memory>

namespace {

const QString path = QStringLiteral("/Setup/Element");
// Values a spoofer sends and values the owner sends, told apart by what arrives.
const int spoofed = 13;
const int genuine = 42;

} // namespace

/**
 * Only the current owner of the application's name speaks for the application: a signal on
 * the proxy's path and interface from any other connection is never relayed, however it
 * reaches the client.
 */
class tst_SpoofedSignals : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void aBroadcastFromAConnectionWithoutTheNameIsNotRelayed_data() { relayedSignalRows(); }
    void aBroadcastFromAConnectionWithoutTheNameIsNotRelayed();
    void aUnicastToTheClientFromAConnectionWithoutTheNameIsNotRelayed_data() { relayedSignalRows(); }
    void aUnicastToTheClientFromAConnectionWithoutTheNameIsNotRelayed();
    void aSpoofDeliveredThroughABroaderSubscriptionOfTheClientIsNotRelayed_data() { relayedSignalRows(); }
    void aSpoofDeliveredThroughABroaderSubscriptionOfTheClientIsNotRelayed();
    void aProxyMadeBeforeTheApplicationAppearedRelaysOnlyTheOwner_data() { relayedSignalRows(); }
    void aProxyMadeBeforeTheApplicationAppearedRelaysOnlyTheOwner();
    void theOwnerOfAnotherApplicationsNameIsNotRelayed_data() { relayedSignalRows(); }
    void theOwnerOfAnotherApplicationsNameIsNotRelayed();

private:
    void relayedSignalRows();
    /// Starts the application, then a proxy on it listening to the row's signal.
    void listen(const RelayedSignal &relayed);
    /// The owner's own signal arrives, alone and with the owner's values.
    void verifyOnlyTheOwnersSignalIsRelayed(const RelayedSignal &relayed);

    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<QDBusAbstractInterface> m_proxy;
    std::unique_ptr<QSignalSpy> m_spy;
};

void tst_SpoofedSignals::relayedSignalRows()
{
    QTest::addColumn<RelayedSignal>("relayed");
    for (const RelayedSignal &relayed : allRelayedSignals())
        QTest::newRow(qPrintable(relayed.tag())) << relayed;
}

void tst_SpoofedSignals::initTestCase()
{
    verifyProxyClassesAreThoseOfTheKindTable();
}

void tst_SpoofedSignals::cleanup()
{
    m_spy.reset();
    m_proxy.reset();
    m_fake.reset();
}

void tst_SpoofedSignals::listen(const RelayedSignal &relayed)
{
    m_fake.reset(new FakeMeasApplication);
    m_proxy.reset(relayed.proxyClass.make(m_fake->service(), path, nullptr));
    m_spy.reset(new QSignalSpy(m_proxy.get(), relayed.signal().constData()));
    QVERIFY(m_spy->isValid());
    syncWithBus(m_proxy->connection());
}

void tst_SpoofedSignals::verifyOnlyTheOwnersSignalIsRelayed(const RelayedSignal &relayed)
{
    const QList<QVariant> owners = signalArguments(relayed.method, genuine);
    m_fake->emitSignal(path, relayed.member(), owners);
    // Whatever was sent before the owner's signal has been handled by the time it arrives.
    QVERIFY(m_spy->wait(5000));
    QCOMPARE(m_spy->count(), 1);
    QCOMPARE(unwrappedArguments(m_spy->first()), unwrappedArguments(owners));
}

void tst_SpoofedSignals::aBroadcastFromAConnectionWithoutTheNameIsNotRelayed()
{
    QFETCH(RelayedSignal, relayed);
    listen(relayed);

    m_fake->emitForeignSignal(path, relayed.member(), signalArguments(relayed.method, spoofed));

    verifyOnlyTheOwnersSignalIsRelayed(relayed);
}

void tst_SpoofedSignals::aUnicastToTheClientFromAConnectionWithoutTheNameIsNotRelayed()
{
    QFETCH(RelayedSignal, relayed);
    listen(relayed);
    // A signal addressed to the client reaches it whatever it subscribed to.
    BusSignalWitness delivered(m_proxy->connection(), m_fake->foreignUniqueName(), path,
                               FakeMeasApplication::interfaceName, relayed.member());

    m_fake->emitForeignSignalTo(m_proxy->connection().baseService(), path, relayed.member(),
                                signalArguments(relayed.method, spoofed));

    verifyOnlyTheOwnersSignalIsRelayed(relayed);
    QCOMPARE(delivered.count(), 1);
}

void tst_SpoofedSignals::aSpoofDeliveredThroughABroaderSubscriptionOfTheClientIsNotRelayed()
{
    QFETCH(RelayedSignal, relayed);
    listen(relayed);
    // Any sender: the bus now hands the spoof to the client's connection.
    BusSignalWitness anySender(m_proxy->connection(), QString(), path, FakeMeasApplication::interfaceName,
                               relayed.member());

    m_fake->emitForeignSignal(path, relayed.member(), signalArguments(relayed.method, spoofed));

    verifyOnlyTheOwnersSignalIsRelayed(relayed);
    QTRY_COMPARE(anySender.count(), 2);
}

void tst_SpoofedSignals::aProxyMadeBeforeTheApplicationAppearedRelaysOnlyTheOwner()
{
    QFETCH(RelayedSignal, relayed);
    const QString service = FakeMeasApplication::serviceFor(QStringLiteral("fake"));
    m_proxy.reset(relayed.proxyClass.make(service, path, nullptr));
    m_spy.reset(new QSignalSpy(m_proxy.get(), relayed.signal().constData()));
    QVERIFY(m_spy->isValid());
    syncWithBus(m_proxy->connection());
    m_fake.reset(new FakeMeasApplication(service));

    m_fake->emitForeignSignal(path, relayed.member(), signalArguments(relayed.method, spoofed));
    m_fake->emitForeignSignalTo(m_proxy->connection().baseService(), path, relayed.member(),
                                signalArguments(relayed.method, spoofed));

    verifyOnlyTheOwnersSignalIsRelayed(relayed);
}

void tst_SpoofedSignals::theOwnerOfAnotherApplicationsNameIsNotRelayed()
{
    QFETCH(RelayedSignal, relayed);
    listen(relayed);
    FakeMeasApplication other(FakeMeasApplication::serviceFor(QStringLiteral("other")));

    other.emitSignal(path, relayed.member(), signalArguments(relayed.method, spoofed));

    verifyOnlyTheOwnersSignalIsRelayed(relayed);
}

QTEST_GUILESS_MAIN(tst_SpoofedSignals)

#include "tst_spoofedsignals.moc"
