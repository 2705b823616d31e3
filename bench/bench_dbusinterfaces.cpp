// The library against a bare QDBusAbstractInterface subclass, raw QtDBus, sdbus-c++ and
// sd-bus, on a private bus against bench_server. Run through tools/run-bench.sh.
//
// Own options (the rest go to Google Benchmark):
//   --server=PATH          the bench_server program (default: beside this one)
//   --smoke                smallest sizes and counts, to show that everything runs
//   --results-json=FILE    per-call medians and 99th percentiles over all repetitions, and
//                          scenario 5's rows, written as JSON
//   --startup-sizes=N,...  scenario 5's numbers of proxies (default 1,10,100,1000,5000;
//                          none: no scenario 5)
//   --list-contenders      PATTERN:IMPLEMENTATION of every call contender, one a line
//   --callgrind=PATTERN:IMPLEMENTATION:CALLS
//                          nothing but CALLS calls of one contender, for counting
//                          instructions under valgrind --tool=callgrind

#include "BenchServer.h"
#include "Contenders.h"
#include "StartupScenario.h"

#include "SetupIntInterface.h"
#include "SetupMapListInterface.h"
#include "SetupMapMapItemInterface.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <benchmark/benchmark.h>
#include <sdbus-c++/sdbus-c++.h>
#include <systemd/sd-bus.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <map>
#include <vector>

namespace {

struct Settings
{
    bool smoke = false;
    QString server;
    QString resultsJson;
    QList<int> startupSizes{1, 10, 100, 1000, 5000};
    QString callgrind;
    bool listContenders = false;
};

Clients *clients = nullptr;
BenchServer *server = nullptr;
bool smoke = false;

using Clock = std::chrono::steady_clock;

double microsecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

double percentile(std::vector<double> &samples, double fraction)
{
    if (samples.empty())
        return 0;
    const size_t index = std::min(samples.size() - 1, size_t(fraction * double(samples.size())));
    std::nth_element(samples.begin(), samples.begin() + std::ptrdiff_t(index), samples.end());
    return samples[index];
}

const QString fireAndForgetPattern = QStringLiteral("fire-and-forget call");

/// Every call's time of every repetition, by contender: the repetitions of all
/// contenders run interleaved, so that a change of load hits all of them alike.
std::map<std::pair<QString, QString>, std::vector<double>> pooledSamples;

void waitUntilServerCounted(uint count);

// Scenarios 1 and 2: each call timed on its own, for its median and 99th percentile.
void timeEachCall(benchmark::State &state, const Contender &contender)
{
    const Call call = contender.makeCall(*clients);
    const bool sendsOnly = contender.pattern == fireAndForgetPattern;
    if (sendsOnly)
        server->reset(clients->qt);
    std::vector<double> samples;
    samples.reserve(1 << 16);
    for (auto _ : state) {
        const Clock::time_point start = Clock::now();
        const bool right = call();
        samples.push_back(microsecondsSince(start));
        if (!right) {
            state.SkipWithError("wrong answer");
            break;
        }
    }
    // Messages still queued would slow down whatever runs next.
    if (sendsOnly)
        waitUntilServerCounted(uint(state.iterations()));
    std::vector<double> &pool = pooledSamples[{contender.pattern, contender.implementation}];
    pool.insert(pool.end(), samples.begin(), samples.end());
    state.counters["median_us"] = percentile(samples, 0.5);
    state.counters["p99_us"] = percentile(samples, 0.99);
}

QJsonArray pooledCallResults()
{
    QJsonArray rows;
    for (auto &[contender, samples] : pooledSamples) {
        QJsonObject row;
        row[QStringLiteral("pattern")] = contender.first;
        row[QStringLiteral("implementation")] = contender.second;
        row[QStringLiteral("calls")] = double(samples.size());
        row[QStringLiteral("median_us")] = percentile(samples, 0.5);
        row[QStringLiteral("p99_us")] = percentile(samples, 0.99);
        rows.append(row);
    }
    return rows;
}

// Scenario 3: setValue messages per second that the server receives.
void waitUntilServerCounted(uint count)
{
    while (server->setValueCalls(clients->qt) < count) { }
}

void fireAndForgetThroughput(benchmark::State &state, const QString &implementation)
{
    const uint count = smoke ? 10 : 20000;
    SetupIntInterface proxy(BenchServer::service, QStringLiteral("/int/a"), clients->qt);
    const QDBusMessage message = QDBusMessage::createMethodCall(BenchServer::service, QStringLiteral("/int/a"),
                                                                BenchServer::interfaceName, QStringLiteral("setValue"))
        << 5;
    double seconds = 0;
    for (auto _ : state) {
        server->reset(clients->qt);
        const Clock::time_point start = Clock::now();
        if (implementation == Impl::library) {
            for (uint i = 0; i < count; ++i)
                proxy.setValueAsync(int(i));
            waitUntilServerCounted(count);
        } else if (implementation == Impl::rawQt) {
            for (uint i = 0; i < count; ++i)
                clients->qt.asyncCall(message);
            waitUntilServerCounted(count);
        } else {
            const auto ignoreReply = [](sd_bus_message *, void *, sd_bus_error *) { return 0; };
            for (uint i = 0; i < count; ++i) {
                sd_bus_call_method_async(clients->sd, nullptr, BenchServer::service.toUtf8().constData(), "/int/a",
                                         "com.velk.mqx.MeasApplInterface", "setValue", ignoreReply, nullptr, "i",
                                         int32_t(i));
                if (i % 64 == 0)
                    while (sd_bus_process(clients->sd, nullptr) > 0) { }
            }
            uint32_t received = 0;
            while (received < count) {
                sd_bus_message *reply = nullptr;
                sd_bus_call_method(clients->sd, BenchServer::service.toUtf8().constData(), "/MEAS_APPL_OBJ",
                                   "bench.Control", "count", nullptr, &reply, "");
                sd_bus_message_read(reply, "u", &received);
                sd_bus_message_unref(reply);
            }
            while (sd_bus_process(clients->sd, nullptr) > 0) { }
        }
        seconds += std::chrono::duration<double>(Clock::now() - start).count();
        QCoreApplication::processEvents();
    }
    state.counters["messages_per_s"] = double(count) * double(state.iterations()) / seconds;
}

// Scenario 4: change signals per second delivered to a receiver.
class SignalCounter : public QObject
{
    Q_OBJECT

public:
    int count = 0;

public Q_SLOTS:
    void onChange(int) { ++count; }
};

void signalRate(benchmark::State &state, const QString &implementation)
{
    const uint count = smoke ? 10 : 20000;
    const QString path = QStringLiteral("/int/signals");
    SignalCounter counter;
    SetupIntInterface proxy(BenchServer::service, path, clients->qt);
    int sdCount = 0;
    sd_bus_slot *slot = nullptr;
    if (implementation == Impl::library)
        QObject::connect(&proxy, &SetupIntInterface::setupChanged, &counter, &SignalCounter::onChange);
    else if (implementation == Impl::rawQt)
        clients->qt.connect(BenchServer::service, path, BenchServer::interfaceName, QStringLiteral("setupChanged"),
                            &counter, SLOT(onChange(int)));
    else
        sd_bus_match_signal(
            clients->sd, &slot, nullptr, "/int/signals", "com.velk.mqx.MeasApplInterface", "setupChanged",
            [](sd_bus_message *, void *userdata, sd_bus_error *) {
                ++*static_cast<int *>(userdata);
                return 0;
            },
            &sdCount);

    double seconds = 0;
    for (auto _ : state) {
        counter.count = 0;
        sdCount = 0;
        const Clock::time_point start = Clock::now();
        if (implementation == Impl::sdBus) {
            sd_bus_call_method(clients->sd, BenchServer::service.toUtf8().constData(), "/MEAS_APPL_OBJ",
                               "bench.Control", "emitChanges", nullptr, nullptr, "su", "/int/signals", count);
            while (uint(sdCount) < count) {
                if (sd_bus_process(clients->sd, nullptr) == 0)
                    sd_bus_wait(clients->sd, 1000000);
            }
        } else {
            server->emitChanges(clients->qt, path, count);
            while (uint(counter.count) < count)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        seconds += std::chrono::duration<double>(Clock::now() - start).count();
    }
    sd_bus_slot_unref(slot);
    state.counters["signals_per_s"] = double(count) * double(state.iterations()) / seconds;
}

// Scenario 6: custom types with many entries, time per entry.
SettingsMap settingsMapOf(int entries)
{
    SettingsMap map;
    for (int i = 0; i < entries; ++i)
        map.insert(QStringLiteral("key%1").arg(i, 7, 10, QLatin1Char('0')), i);
    return map;
}

void customTypes(benchmark::State &state, const QString &operation)
{
    const int entries = int(state.range(0));
    server->setMapSize(clients->qt, uint(entries));
    SetupMapListInterface list(BenchServer::service, QStringLiteral("/map/a"), clients->qt);
    SetupMapMapItemInterface mapOfMaps(BenchServer::service, QStringLiteral("/map/b"), clients->qt);
    const SettingsMap map = settingsMapOf(entries);
    QMap<QString, QVariantMap> structure;
    for (int i = 0; i < entries; ++i)
        structure.insert(QStringLiteral("primary%1").arg(i, 7, 10, QLatin1Char('0')), {{QStringLiteral("cell"), i}});
    for (auto _ : state) {
        bool right = false;
        if (operation == QLatin1String("SettingsMap write"))
            right = list.setValue(QStringLiteral("entry"), map).value();
        else if (operation == QLatin1String("SettingsMap read"))
            right = list.getValue(0).size() == entries;
        else if (operation == QLatin1String("map-of-maps write"))
            right = mapOfMaps.setValue(structure).value();
        else
            right = mapOfMaps.getValue(QStringLiteral("primary")).size() == entries;
        if (!right) {
            state.SkipWithError("wrong answer");
            break;
        }
    }
    state.counters["entries"] = entries;
    server->setMapSize(clients->qt, 10);
}

void registerBenchmarks(const std::vector<Contender> &contenders)
{
    for (const Contender &contender : contenders) {
        const std::string name =
            "call/" + contender.pattern.toStdString() + "/" + contender.implementation.toStdString();
        auto *registered = benchmark::RegisterBenchmark(
            name.c_str(), [contender](benchmark::State &state) { timeEachCall(state, contender); });
        registered->Unit(benchmark::kMicrosecond)->UseRealTime();
        if (smoke)
            registered->Iterations(3);
        else if (contender.pattern == fireAndForgetPattern)
            registered->Iterations(5000)->Repetitions(8)->ReportAggregatesOnly(true);
        else
            registered->MinTime(0.15)->Repetitions(8)->ReportAggregatesOnly(true);
    }
    for (const QString &implementation : {Impl::library, Impl::rawQt, Impl::sdBus}) {
        const std::string suffix = implementation.toStdString();
        benchmark::RegisterBenchmark(
            ("fire-and-forget/" + suffix).c_str(),
            [implementation](benchmark::State &state) { fireAndForgetThroughput(state, implementation); })
            ->Iterations(smoke ? 1 : 5)
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
        benchmark::RegisterBenchmark(("signals/" + suffix).c_str(),
                                     [implementation](benchmark::State &state) { signalRate(state, implementation); })
            ->Iterations(smoke ? 1 : 5)
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
    }
    const QStringList operations{QStringLiteral("SettingsMap write"), QStringLiteral("SettingsMap read"),
                                 QStringLiteral("map-of-maps write"), QStringLiteral("map-of-maps read")};
    for (const QString &operation : operations) {
        auto *registered =
            benchmark::RegisterBenchmark(("custom types/" + operation.toStdString()).c_str(),
                                         [operation](benchmark::State &state) { customTypes(state, operation); });
        registered->Unit(benchmark::kMillisecond)->UseRealTime();
        if (smoke)
            registered->Arg(10)->Iterations(1);
        else
            registered->Arg(10)->Arg(1000)->Arg(100000)->MinTime(0.5);
    }
}

bool measuredCalls(const Call *call, int count)
{
    bool right = true;
    for (int i = 0; i < count; ++i)
        right = (*call)() && right;
    return right;
}

int runUnderCallgrind(const std::vector<Contender> &contenders, const QString &which)
{
    // The implementation's name may hold colons itself ("QDBusConnection::call").
    const int patternEnd = which.indexOf(QLatin1Char(':'));
    const int callsStart = which.lastIndexOf(QLatin1Char(':'));
    if (patternEnd < 0 || callsStart <= patternEnd) {
        std::fprintf(stderr, "--callgrind wants PATTERN:IMPLEMENTATION:CALLS\n");
        return 2;
    }
    const QString pattern = which.left(patternEnd);
    const QString implementation = which.mid(patternEnd + 1, callsStart - patternEnd - 1);
    const int calls = which.mid(callsStart + 1).toInt();
    for (const Contender &contender : contenders) {
        if (contender.pattern != pattern || contender.implementation != implementation)
            continue;
        const Call call = contender.makeCall(*clients);
        call(); // first-use costs are the same for any number of calls
        const bool right = measuredCalls(&call, calls);
        QCoreApplication::processEvents();
        return right ? 0 : 1;
    }
    std::fprintf(stderr, "no contender %s\n", qPrintable(which));
    return 2;
}

Settings takeOwnOptions(int &argc, char **argv)
{
    Settings settings;
    settings.server = QCoreApplication::applicationDirPath() + QStringLiteral("/bench_server");
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        const QString argument = QString::fromLocal8Bit(argv[i]);
        if (argument == QLatin1String("--smoke"))
            settings.smoke = true;
        else if (argument.startsWith(QLatin1String("--server=")))
            settings.server = argument.mid(9);
        else if (argument.startsWith(QLatin1String("--startup-sizes="))) {
            settings.startupSizes.clear();
            for (const QString &size : argument.mid(16).split(QLatin1Char(','), Qt::SkipEmptyParts))
                settings.startupSizes.append(std::max(1, size.toInt()));
        } else if (argument.startsWith(QLatin1String("--results-json=")))
            settings.resultsJson = argument.mid(15);
        else if (argument == QLatin1String("--list-contenders"))
            settings.listContenders = true;
        else if (argument.startsWith(QLatin1String("--callgrind=")))
            settings.callgrind = argument.mid(12);
        else
            argv[kept++] = argv[i];
    }
    argc = kept;
    return settings;
}

bool writeJson(const QString &fileName, const QJsonArray &calls, const QJsonArray &startup)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    QJsonObject root;
    root[QStringLiteral("calls")] = calls;
    root[QStringLiteral("startup")] = startup;
    file.write(QJsonDocument(root).toJson());
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const Settings settings = takeOwnOptions(argc, argv);
    smoke = settings.smoke;
    if (settings.listContenders) {
        for (const Contender &contender : callContenders())
            std::printf("%s:%s\n", qPrintable(contender.pattern), qPrintable(contender.implementation));
        return 0;
    }

    BenchServer benchServer;
    if (!benchServer.start(settings.server)) {
        std::fprintf(stderr, "cannot start %s\n", qPrintable(settings.server));
        return 1;
    }
    server = &benchServer;
    Clients connections;
    connections.sdbusCpp = sdbus::createSessionBusConnection();
    if (sd_bus_open_user(&connections.sd) < 0) {
        std::fprintf(stderr, "sd-bus cannot reach the session bus\n");
        return 1;
    }
    clients = &connections;
    const std::vector<Contender> contenders = callContenders();

    int status = 0;
    if (!settings.callgrind.isEmpty()) {
        status = runUnderCallgrind(contenders, settings.callgrind);
    } else {
        benchmark::Initialize(&argc, argv);
        registerBenchmarks(contenders);
        benchmark::RunSpecifiedBenchmarks();
        benchmark::Shutdown();
        const QJsonArray rows = StartupScenario().run(smoke ? QList<int>{1, 10} : settings.startupSizes);
        if (!settings.resultsJson.isEmpty() && !writeJson(settings.resultsJson, pooledCallResults(), rows)) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(settings.resultsJson));
            status = 1;
        }
    }

    sd_bus_flush_close_unref(connections.sd);
    connections.sdbusCpp.reset();
    benchServer.stop();
    return status;
}

#include "bench_dbusinterfaces.moc"
