#include "StartupScenario.h"

#include "BareProxy.h"
#include "BenchServer.h"
#include "BusMonitor.h"

#include "ProxyReadBatch.h"
#include "ServiceOwnerCache.h"
#include "SetupBoolInterface.h"
#include "SetupDevDataInterface.h"
#include "SetupDoubleInterface.h"
#include "SetupIntInterface.h"
#include "SetupStringInterface.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QElapsedTimer>
#include <QJsonObject>

#include <algorithm>
#include <functional>
#include <malloc.h>
#include <memory>
#include <vector>

namespace {

/// One proxy of the scenario and what it takes to connect it and read it once.
struct StartupProxy
{
    std::unique_ptr<QDBusAbstractInterface> proxy;
    std::function<void(QObject *)> connectChange;
    std::function<bool()> readOnce;
};

template<typename Proxy, typename Value>
StartupProxy makeProxy(const QString &path, const QDBusConnection &bus, Value expected)
{
    auto *proxy = new Proxy(BenchServer::service, path, bus);
    StartupProxy made;
    made.proxy.reset(proxy);
    made.connectChange = [proxy](QObject *context) {
        QObject::connect(proxy, &Proxy::setupChanged, context, [](auto) {});
    };
    made.readOnce = [proxy, expected] { return proxy->getValue().value() == expected; };
    return made;
}

enum class Path { Plain, Fast, Bare };

const char *nameOf(Path path)
{
    return path == Path::Plain ? "plain" : path == Path::Fast ? "fast" : "bare subclass";
}

/// The yardstick: bare QDBusAbstractInterface subclasses, one kind only.
StartupProxy bareProxy(int index, const QDBusConnection &bus)
{
    auto *proxy = new BareProxy(BenchServer::service, QStringLiteral("/int/") + QString::number(index), bus);
    StartupProxy made;
    made.proxy.reset(proxy);
    made.connectChange = [proxy](QObject *context) {
        QObject::connect(proxy, &BareProxy::setupChanged, context, [](int) {});
    };
    made.readOnce = [proxy] { return proxy->getInt().value() == 42; };
    return made;
}

/// The five scalar kinds in turn.
StartupProxy proxyOfKind(int index, const QDBusConnection &bus, Path path)
{
    if (path == Path::Bare)
        return bareProxy(index, bus);
    const QString number = QString::number(index);
    switch (index % 5) {
    case 0:
        return makeProxy<SetupIntInterface>(QStringLiteral("/int/") + number, bus, 42);
    case 1:
        return makeProxy<SetupDoubleInterface>(QStringLiteral("/double/") + number, bus, 2.5);
    case 2:
        return makeProxy<SetupBoolInterface>(QStringLiteral("/bool/") + number, bus, true);
    case 3:
        return makeProxy<SetupStringInterface>(QStringLiteral("/string/") + number, bus, QStringLiteral("text"));
    default: {
        auto *proxy = new SetupDevDataInterface(BenchServer::service, QStringLiteral("/var/") + number, bus);
        StartupProxy made;
        made.proxy.reset(proxy);
        made.connectChange = [proxy](QObject *context) {
            QObject::connect(proxy, &SetupDevDataInterface::setupChanged, context, [](const QDBusVariant &) {});
        };
        made.readOnce = [proxy] { return proxy->getValue().toDouble() == 2.5; };
        return made;
    }
    }
}

struct Phases
{
    double construct = 0; // µs for all proxies
    double connect = 0;
    double read = 0;
    double total() const { return construct + connect + read; }
};

struct Counted
{
    MessageCount messages;
    int matchRules = 0;
    qint64 heapBytes = 0;
};

qint64 heapInUse()
{
    return qint64(mallinfo2().uordblks);
}

double microsecondsOf(const QElapsedTimer &clock)
{
    return clock.nsecsElapsed() / 1000.0;
}

/// One start-up of @p count proxies on a fresh connection.
Phases startUp(int count, Path path, Counted *counted)
{
    static int runNumber = 0;
    const QString name = QStringLiteral("startup-%1").arg(++runNumber);
    Phases phases;
    {
        QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
        QObject context;
        std::unique_ptr<BusMonitor> monitor;
        int rulesBefore = 0;
        qint64 heapBefore = 0;
        if (counted) {
            monitor.reset(new BusMonitor(bus));
            rulesBefore = int(BusMonitor::daemonStat(bus, "MatchRules"));
            heapBefore = heapInUse();
        }

        std::vector<StartupProxy> proxies;
        proxies.reserve(size_t(count));
        std::unique_ptr<ServiceOwnerCache> ownerCache;
        QElapsedTimer clock;
        clock.start();
        const bool fastPath = path == Path::Fast;
        if (fastPath)
            ownerCache.reset(new ServiceOwnerCache(BenchServer::service, bus));
        for (int i = 0; i < count; ++i)
            proxies.push_back(proxyOfKind(i, bus, path));
        phases.construct = microsecondsOf(clock);

        clock.restart();
        for (StartupProxy &proxy : proxies)
            proxy.connectChange(&context);
        phases.connect = microsecondsOf(clock);

        clock.restart();
        int wrong = 0;
        if (fastPath) {
            ProxyReadBatch batch;
            for (StartupProxy &proxy : proxies)
                batch.send(*proxy.proxy, QStringLiteral("getValue"));
            for (int i = 0; i < batch.size(); ++i)
                wrong += batch.replyMessage(i).type() != QDBusMessage::ReplyMessage;
        } else {
            for (StartupProxy &proxy : proxies)
                wrong += !proxy.readOnce();
        }
        phases.read = microsecondsOf(clock);
        if (wrong)
            qFatal("start-up: %d of %d reads failed", wrong, count);

        if (counted) {
            counted->heapBytes = heapInUse() - heapBefore;
            counted->matchRules = int(BusMonitor::daemonStat(bus, "MatchRules")) - rulesBefore;
            counted->messages = monitor->take();
        }
        proxies.clear();
        ownerCache.reset();
    }
    QDBusConnection::disconnectFromBus(name);
    QCoreApplication::processEvents();
    return phases;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

} // namespace

QJsonArray StartupScenario::run(const QList<int> &sizes) const
{
    const Path paths[] = {Path::Plain, Path::Fast, Path::Bare};
    QJsonArray rows;
    for (const int count : sizes) {
        // Enough runs for a median on a busy machine; the paths' runs alternate.
        const int runs = std::max(5, std::min(15, 10000 / count));
        std::vector<double> construct[3], connect[3], read[3], total[3];
        for (int run = 0; run < runs; ++run) {
            for (int p = 0; p < 3; ++p) {
                const Phases phases = startUp(count, paths[p], nullptr);
                construct[p].push_back(phases.construct / count);
                connect[p].push_back(phases.connect / count);
                read[p].push_back(phases.read / count);
                total[p].push_back(phases.total() / count);
            }
        }
        for (int p = 0; p < 3; ++p) {
            Counted counted;
            startUp(count, paths[p], &counted);
            QJsonObject row;
            row[QStringLiteral("proxies")] = count;
            row[QStringLiteral("path")] = QLatin1String(nameOf(paths[p]));
            row[QStringLiteral("runs")] = runs;
            row[QStringLiteral("construct_us_per_proxy")] = median(construct[p]);
            row[QStringLiteral("connect_us_per_proxy")] = median(connect[p]);
            row[QStringLiteral("read_us_per_proxy")] = median(read[p]);
            row[QStringLiteral("total_us_per_proxy")] = median(total[p]);
            // The best run: what the machine gives when nothing else runs in between.
            row[QStringLiteral("construct_us_per_proxy_best")] =
                *std::min_element(construct[p].begin(), construct[p].end());
            row[QStringLiteral("total_us_per_proxy_best")] = *std::min_element(total[p].begin(), total[p].end());
            row[QStringLiteral("messages_sent_per_proxy")] = double(counted.messages.sent) / count;
            row[QStringLiteral("messages_received_per_proxy")] = double(counted.messages.received) / count;
            row[QStringLiteral("match_rules_added")] = counted.matchRules;
            row[QStringLiteral("heap_bytes_per_proxy")] = double(counted.heapBytes) / count;
            rows.append(row);
            qInfo("start-up N=%d %s: %.1f us/proxy (construct %.1f, connect %.1f, read %.1f), %.2f msgs sent/proxy, "
                  "%d match rules, %.0f heap bytes/proxy",
                  count, nameOf(paths[p]), median(total[p]), median(construct[p]), median(connect[p]), median(read[p]),
                  double(counted.messages.sent) / count, counted.matchRules, double(counted.heapBytes) / count);
        }
    }
    return rows;
}
