#include "DBusTypes.h"
#include "SetupDevDataInterface.h"
#include "SetupIntInterface.h"

#include "FakeMeasApplication.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QFile>
#include <QtTest/QTest>

#include <memory>
#include <vector>

namespace {

const QString path = QStringLiteral("/Setup/Gain");

/// Resident memory of this process in bytes, from /proc.
qint64 residentBytes()
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return -1;
    const QList<QByteArray> fields = statm.readAll().split(' ');
    return fields.size() > 1 ? fields.at(1).toLongLong() * 4096 : -1;
}

} // namespace

class bench_ProxyCalls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void blockingCallRoundTrip();
    void checkedVariantGetterRoundTrip();
    void fireAndForgetSend();
    void settingsMapMarshalling();
    void memoryPerProxy();

private:
    std::unique_ptr<FakeMeasApplication> m_fake;
};

void bench_ProxyCalls::initTestCase()
{
    m_fake.reset(new FakeMeasApplication);
    m_fake->answer("getValue", ScriptedAnswer::value(42));
    m_fake->answer("setValue", ScriptedAnswer::reply());
}

void bench_ProxyCalls::cleanupTestCase()
{
    m_fake.reset();
}

void bench_ProxyCalls::blockingCallRoundTrip()
{
    SetupIntInterface proxy(m_fake->service(), path, QDBusConnection::sessionBus());
    QBENCHMARK
    {
        QCOMPARE(proxy.getValue().value(), 42);
    }
}

void bench_ProxyCalls::checkedVariantGetterRoundTrip()
{
    FakeMeasApplication devData(FakeMeasApplication::serviceFor(QStringLiteral("devdata")));
    devData.answer("getValue", ScriptedAnswer::value(QVariant::fromValue(QDBusVariant(2.5))));
    SetupDevDataInterface proxy(devData.service(), path, QDBusConnection::sessionBus());
    QBENCHMARK
    {
        QCOMPARE(proxy.getValue().toDouble(), 2.5);
    }
}

void bench_ProxyCalls::fireAndForgetSend()
{
    SetupIntInterface proxy(m_fake->service(), path, QDBusConnection::sessionBus());
    m_fake->clearCalls();
    int sent = 0;
    QBENCHMARK
    {
        proxy.setValueAsync(++sent);
    }
    // Every message arrives; the benchmark measured only the sending side.
    QVERIFY2(m_fake->waitForCalls(sent, 30000),
             qPrintable(QStringLiteral("%1 of %2 arrived").arg(m_fake->callCount()).arg(sent)));
}

void bench_ProxyCalls::settingsMapMarshalling()
{
    SettingsMap map;
    for (int i = 0; i < 100; ++i)
        map.insert(QStringLiteral("item%1").arg(i, 3, 10, QLatin1Char('0')), i % 2 ? QVariant(i) : QVariant(i * 0.5));
    QBENCHMARK
    {
        QDBusArgument argument;
        DBusTypes::writeSettingsMap(argument, map);
    }
}

void bench_ProxyCalls::memoryPerProxy()
{
    const int count = 2000;
    std::vector<std::unique_ptr<SetupIntInterface>> proxies;
    proxies.reserve(count);
    const qint64 before = residentBytes();
    for (int i = 0; i < count; ++i)
        proxies.emplace_back(new SetupIntInterface(m_fake->service(), path, QDBusConnection::sessionBus()));
    const qint64 after = residentBytes();
    QVERIFY(before > 0 && after > 0);
    qInfo("resident memory per SetupIntInterface: about %lld bytes (%d proxies)", (after - before) / count, count);
}

QTEST_GUILESS_MAIN(bench_ProxyCalls)

#include "bench_proxycalls.moc"
