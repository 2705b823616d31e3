#ifndef BENCH_MIRRORSCENARIO_H
#define BENCH_MIRRORSCENARIO_H

#include <QJsonObject>
#include <QString>

/**
 * What an ApplicationMirror costs the caller's event loop, against the simulator with a
 * model of N elements: the longest gap between ticks of a zero-interval timer, and the
 * 99th percentile of the gaps, while the N elements start, while the application restarts
 * under them and while a silent application is asked; the time until all N are Valid;
 * and the same start-up with plain blocking proxies (construct, read the value) beside it.
 */
class MirrorScenario
{
public:
    MirrorScenario(const QString &simulatorProgram, const QString &workDirectory, int elements);
    QJsonObject run() const;

private:
    QString m_simulatorProgram;
    QString m_workDirectory;
    int m_elements;
};

#endif
