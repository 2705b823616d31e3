#include "MeasurementEngine.h"

#include "ResultElement.h"

#include <cmath>

namespace {

qint64 periodOf(double rate)
{
    // 1 ms to 1000 s: the count of periods in a tick stays far from overflowing measurement time.
    return std::llround(qBound(1.0, 1000.0 / rate, 1e6));
}

// FNV-1a: stable across Qt versions and runs, unlike qHash.
quint32 stableHash(const QString &text)
{
    quint32 hash = 2166136261u;
    for (const char byte : text.toUtf8()) {
        hash ^= quint8(byte);
        hash *= 16777619u;
    }
    return hash;
}

} // namespace

MeasurementEngine::MeasurementEngine(const QList<ResultElement *> &results, quint32 seed, double defaultRate,
                                     qint64 epochMs)
    : m_periodMs(periodOf(defaultRate))
    , m_epochMs(epochMs)
{
    for (ResultElement *result : results) {
        const qint64 period = result->rate() > 0 ? periodOf(result->rate()) : m_periodMs;
        m_channels.push_back({result, QRandomGenerator(seed ^ stableHash(result->path())), period, period});
        Channel &channel = m_channels.back();
        channel.result->sample(channel.random, m_epochMs);
    }
}

void MeasurementEngine::advance(qint64 ms)
{
    m_elapsedMs += ms;
    for (Channel &channel : m_channels) {
        if (!m_running) {
            channel.nextDueMs = m_elapsedMs + channel.periodMs;
            continue;
        }
        // A long stretch is sampled only at its end, so that one call's work stays bounded.
        const qint64 due =
            channel.nextDueMs <= m_elapsedMs ? (m_elapsedMs - channel.nextDueMs) / channel.periodMs + 1 : 0;
        if (due > maxSamplesPerAdvance)
            channel.nextDueMs += (due - maxSamplesPerAdvance) * channel.periodMs;
        for (; channel.nextDueMs <= m_elapsedMs; channel.nextDueMs += channel.periodMs)
            channel.result->sample(channel.random, m_epochMs + channel.nextDueMs);
    }
}

qint64 MeasurementEngine::tick(int periods)
{
    Q_ASSERT(periods >= 0);
    advance(qint64(periods) * m_periodMs);
    return m_elapsedMs;
}
