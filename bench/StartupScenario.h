#ifndef BENCH_STARTUPSCENARIO_H
#define BENCH_STARTUPSCENARIO_H

#include <QJsonArray>
#include <QList>

/**
 * Start-up of N proxies of mixed kinds for one application: construct all, connect
 * each one's change signal, read each value once. The plain path uses only the
 * proxies; the fast path adds ServiceOwnerCache and sends the reads through
 * ProxyReadBatch; the bare path does the same with bare QDBusAbstractInterface
 * subclasses, to tell what QtDBus costs from what the library adds. Each run has a
 * fresh connection, so no QtDBus cache carries over.
 */
class StartupScenario
{
public:
    /// One row per size and path: times per proxy (median and best of the runs),
    /// messages, match rules and heap bytes per proxy (from one extra counted run).
    QJsonArray run(const QList<int> &sizes) const;
};

#endif
