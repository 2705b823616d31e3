#ifndef BENCH_BENCHSERVER_H
#define BENCH_BENCHSERVER_H

#include <QDBusConnection>
#include <QProcess>
#include <QString>

/// The benchmark server process (bench_server) and its control members.
class BenchServer
{
public:
    static const QString service;
    static const QString interfaceName;

    /// Starts @p program and waits until it owns the service; false if it does not.
    bool start(const QString &program);
    /// Asks the server to end and waits for it.
    void stop();

    /// setValue calls the server has received since the last reset().
    uint setValueCalls(const QDBusConnection &bus) const;
    void reset(const QDBusConnection &bus) const;
    /// Entries of every map the server answers with.
    void setMapSize(const QDBusConnection &bus, uint size) const;
    /// Makes the server emit @p count "setupChanged" signals on @p path; returns when it has.
    void emitChanges(const QDBusConnection &bus, const QString &path, uint count) const;

private:
    QDBusMessage control(const QDBusConnection &bus, const QString &member, const QList<QVariant> &args = {}) const;

    QProcess m_process;
};

#endif
