#ifndef SIMULATOR_MEASUREMENTENGINE_H
#define SIMULATOR_MEASUREMENTENGINE_H

#include <QList>
#include <QRandomGenerator>
#include <QtGlobal>

#include <vector>

class ResultElement;

/**
 * The simulated measurement: measurement time advances only through advance() (from a
 * wall-clock timer or from tests), and each result takes a sample every 1/rate seconds of it.
 * Each result draws from its own generator, seeded from the seed and its path.
 */
class MeasurementEngine
{
public:
    MeasurementEngine(const QList<ResultElement *> &results, quint32 seed, double defaultRate, qint64 epochMs);

    /// Samples taken per result in one advance at most: of a longer stretch only its last ones.
    static constexpr qint64 maxSamplesPerAdvance = 10000;

    void advance(qint64 ms);
    /// Advances @p periods (not negative) periods of the default rate; answers the measurement time in ms.
    qint64 tick(int periods);
    qint64 periodMs() const { return m_periodMs; }
    qint64 elapsedMs() const { return m_elapsedMs; }
    bool isRunning() const { return m_running; }
    void setRunning(bool running) { m_running = running; }

private:
    struct Channel
    {
        ResultElement *result;
        QRandomGenerator random;
        qint64 periodMs;
        qint64 nextDueMs;
    };
    std::vector<Channel> m_channels;
    qint64 m_periodMs;
    qint64 m_epochMs;
    qint64 m_elapsedMs = 0;
    bool m_running = true;
};

#endif
