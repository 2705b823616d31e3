#include "MirrorScenario.h"

#include "ApplicationMirror.h"
#include "BulkModel.h"
#include "LiveValue.h"
#include "SetupBoolInterface.h"
#include "SetupDoubleInterface.h"
#include "SetupEnumInterface.h"
#include "SetupIntInterface.h"
#include "SetupStringInterface.h"
#include "SimulatorProcess.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

namespace {

/// Generous: only a broken run waits this long.
constexpr qint64 patienceMs = 600000;

double milliseconds(qint64 nanoseconds)
{
    return static_cast<double>(nanoseconds) / 1e6;
}

/// The ticks of a zero-interval timer: how often the caller's event loop comes round.
class Ticks
{
public:
    Ticks()
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { m_at.push_back(m_clock.nsecsElapsed()); });
        m_clock.start();
        m_timer.start(0);
    }

    /// Forgets the ticks so far; the next gap counts from now.
    void restart()
    {
        m_at.clear();
        m_at.push_back(m_clock.nsecsElapsed());
    }

    /// Longest gap, 99th percentile of the gaps, number of ticks, and the time since restart(), all in ms.
    QJsonObject gaps() const
    {
        std::vector<qint64> gaps;
        std::vector<qint64> at = m_at;
        at.push_back(m_clock.nsecsElapsed());
        for (std::size_t i = 1; i < at.size(); ++i)
            gaps.push_back(at[i] - at[i - 1]);
        std::sort(gaps.begin(), gaps.end());
        const std::size_t p99 = std::min(gaps.size() - 1, gaps.size() * 99 / 100);
        return QJsonObject{{"longestGapMs", milliseconds(gaps.back())},
                           {"p99GapMs", milliseconds(gaps.at(p99))},
                           {"ticks", static_cast<qint64>(gaps.size())},
                           {"windowMs", milliseconds(at.back() - at.front())}};
    }

private:
    QElapsedTimer m_clock;
    QTimer m_timer;
    std::vector<qint64> m_at;
};

/// Runs the event loop until @p done; false if it never is.
bool waitUntil(const std::function<bool()> &done)
{
    QElapsedTimer waited;
    waited.start();
    while (!done()) {
        if (waited.elapsed() > patienceMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    }
    return true;
}

/// How many of the mirror's values are in each state, kept by their signals.
class StateCounts
{
public:
    explicit StateCounts(const QList<LiveValue *> &values)
        : m_states(static_cast<std::size_t>(values.size()), LiveValue::Loading)
    {
        m_counts[LiveValue::Loading] = values.size();
        for (int i = 0; i < values.size(); ++i) {
            m_states[static_cast<std::size_t>(i)] = values.at(i)->state();
            QObject::connect(values.at(i), &LiveValue::stateChanged, [this, i](LiveValue::State state) {
                --m_counts[m_states[static_cast<std::size_t>(i)]];
                ++m_counts[state];
                m_states[static_cast<std::size_t>(i)] = state;
            });
        }
        m_counts[LiveValue::Loading] = 0;
        for (const LiveValue::State state : m_states)
            ++m_counts[state];
    }
    int operator[](LiveValue::State state) const { return m_counts[state]; }

private:
    std::vector<LiveValue::State> m_states;
    int m_counts[LiveValue::Error + 1] = {};
};

std::unique_ptr<QDBusAbstractInterface> plainProxy(int index, const QDBusConnection &bus)
{
    const QString kind = BulkModel::kind(index);
    const QString &service = SimulatorProcess::service;
    const QString path = BulkModel::path(index);
    if (kind == QLatin1String("int"))
        return std::make_unique<SetupIntInterface>(service, path, bus);
    if (kind == QLatin1String("double"))
        return std::make_unique<SetupDoubleInterface>(service, path, bus);
    if (kind == QLatin1String("bool"))
        return std::make_unique<SetupBoolInterface>(service, path, bus);
    if (kind == QLatin1String("enum"))
        return std::make_unique<SetupEnumInterface>(service, path, bus);
    return std::make_unique<SetupStringInterface>(service, path, bus);
}

/// The proxy's blocking getter of its value, whatever its class.
bool readPlainValue(QDBusAbstractInterface *proxy)
{
    if (auto *p = qobject_cast<SetupIntInterface *>(proxy))
        return p->getValue().isValid();
    if (auto *p = qobject_cast<SetupDoubleInterface *>(proxy))
        return p->getValue().isValid();
    if (auto *p = qobject_cast<SetupBoolInterface *>(proxy))
        return p->getValue().isValid();
    if (auto *p = qobject_cast<SetupEnumInterface *>(proxy))
        return p->getValue().isValid();
    return qobject_cast<SetupStringInterface *>(proxy)->getValue().isValid();
}

} // namespace

MirrorScenario::MirrorScenario(const QString &simulatorProgram, const QString &workDirectory, int elements)
    : m_simulatorProgram(simulatorProgram)
    , m_workDirectory(workDirectory)
    , m_elements(elements)
{
}

QJsonObject MirrorScenario::run() const
{
    const QString model = m_workDirectory + QStringLiteral("/bulk.json");
    if (!BulkModel::write(model, m_elements))
        return {};
    SimulatorProcess simulator({QStringLiteral("--model"), model});
    if (!simulator.waitForReady())
        return {};
    QDBusConnection bus = QDBusConnection::sessionBus();
    QJsonObject results{{"elements", m_elements}};
    Ticks ticks;

    // Start-up: the caller asks for every element at once, then lets its event loop run.
    ticks.restart();
    QElapsedTimer clock;
    clock.start();
    ApplicationMirror mirror(SimulatorProcess::name, bus);
    // Long enough that the simulator's own time per call does not turn values stale.
    mirror.setCallTimeout(static_cast<int>(patienceMs));
    QList<LiveValue *> values;
    for (int i = 0; i < m_elements; ++i)
        values.append(mirror.value(BulkModel::path(i), BulkModel::kind(i)));
    const double askedMs = milliseconds(clock.nsecsElapsed());
    StateCounts counts(values);
    if (!waitUntil([&] { return counts[LiveValue::Valid] == m_elements; }))
        return {};
    const double startupMs = milliseconds(clock.nsecsElapsed());
    QJsonObject startup = ticks.gaps();
    startup.insert(QStringLiteral("askingMs"), askedMs);
    startup.insert(QStringLiteral("allValidMs"), startupMs);
    int calls = 0;
    for (const LiveValue *live : values)
        calls += live->callCount();
    startup.insert(QStringLiteral("calls"), calls);
    results.insert(QStringLiteral("startup"), startup);

    // Restart under them: every value turns stale, then valid with the new instance.
    const QString before = mirror.owner();
    ticks.restart();
    clock.restart();
    bus.asyncCall(QDBusMessage::createMethodCall(SimulatorProcess::service, QStringLiteral("/Simulator"),
                                                 QStringLiteral("com.velk.mqx.Simulator"), QStringLiteral("restart")));
    if (!waitUntil([&] {
            return !mirror.owner().isEmpty() && mirror.owner() != before && counts[LiveValue::Valid] == m_elements;
        }))
        return {};
    const double restartMs = milliseconds(clock.nsecsElapsed());
    QJsonObject restart = ticks.gaps();
    restart.insert(QStringLiteral("allValidMs"), restartMs);
    results.insert(QStringLiteral("restart"), restart);
    simulator.waitForReady();

    // A silent application: every read waits for the deadline.
    simulator.control(QStringLiteral("setFault"), {QStringLiteral("*"), QStringLiteral("silent"), QString()});
    mirror.setCallTimeout(1000);
    ticks.restart();
    clock.restart();
    mirror.refresh();
    if (!waitUntil([&] { return counts[LiveValue::Stale] == m_elements; }))
        return {};
    const double silentMs = milliseconds(clock.nsecsElapsed());
    QJsonObject silent = ticks.gaps();
    silent.insert(QStringLiteral("allStaleMs"), silentMs);
    results.insert(QStringLiteral("silent"), silent);
    simulator.control(QStringLiteral("clearFaults"));

    // The same start-up with plain blocking proxies: construct each, read its value.
    std::vector<std::unique_ptr<QDBusAbstractInterface>> proxies;
    int read = 0;
    QTimer::singleShot(0, [] {}); // a tick is due: the gap below is the proxies' own
    QCoreApplication::processEvents();
    ticks.restart();
    clock.restart();
    for (int i = 0; i < m_elements; ++i) {
        proxies.push_back(plainProxy(i, bus));
        read += readPlainValue(proxies.back().get()) ? 1 : 0;
    }
    const double plainMs = milliseconds(clock.nsecsElapsed());
    QCoreApplication::processEvents();
    QJsonObject plain = ticks.gaps();
    plain.insert(QStringLiteral("allReadMs"), plainMs);
    plain.insert(QStringLiteral("read"), read);
    results.insert(QStringLiteral("plainProxies"), plain);
    return results;
}
