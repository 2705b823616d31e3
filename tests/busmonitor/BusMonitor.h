#ifndef TESTS_BUSMONITOR_H
#define TESTS_BUSMONITOR_H

#include <QDBusConnection>
#include <QString>

struct sd_bus;

/// Messages that went through the bus daemon from or to one connection.
struct MessageCount
{
    int sent = 0;
    int received = 0;
};

/**
 * Counts the messages of one QDBusConnection at the bus daemon, as a monitor
 * (org.freedesktop.DBus.Monitoring) on a connection of its own.
 *
 * take() makes the watched connection call the daemon once, as a marker, and reads
 * the monitor up to that marker; since the daemon handles one connection's messages
 * in order, every message sent before the call is counted, the marker itself is not.
 */
class BusMonitor
{
public:
    explicit BusMonitor(const QDBusConnection &watched);
    ~BusMonitor();

    bool isWatching() const;
    /// The messages since the previous take() (or since construction).
    MessageCount take();

    /// One figure of the daemon's statistics about @p connection (org.freedesktop.DBus.Debug.Stats).
    static uint daemonStat(const QDBusConnection &connection, const char *key);

private:
    BusMonitor(const BusMonitor &) = delete;
    BusMonitor &operator=(const BusMonitor &) = delete;

    QDBusConnection m_watched;
    QString m_uniqueName;
    sd_bus *m_monitor = nullptr;
};

#endif
