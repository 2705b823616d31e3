#ifndef DBUSINTERFACES_DBUSCONNECTOR_H
#define DBUSINTERFACES_DBUSCONNECTOR_H

#include "dbusinterfaces_export.h"

#include <QDBusConnection>
#include <QString>

/**
 * @brief Process-wide holder of the bus connection used by the library's own queries.
 *
 * Creating the singleton does not touch the bus: it starts with an unconnected
 * connection and switches to the session bus the first time a connection is asked for.
 *
 * @code
 * QDBusConnection bus = DBusConnector::getInstance()->getDBusConnection();
 * SetupIntInterface gain(service, "/Setup/Gain", bus);
 * @endcode
 */
class DBUSINTERFACES_EXPORT DBusConnector
{
public:
    /// Starts with a connection that is never opened; use getInstance() rather than a
    /// connector of your own.
    DBusConnector();
    /// Leaves the bus connected: the session bus belongs to QtDBus, not to the connector.
    ~DBusConnector();

    /// The singleton, created on first use.
    static DBusConnector *getInstance();
    /// Deletes the singleton, if any; pointers obtained before dangle afterwards.
    static void releaseInstance();
    /// Stores @p address in m_IPAddress and does nothing else.
    static void setIPAddress(QString address);

    /// The session bus once it is reachable; until then an unconnected connection,
    /// and the session bus is tried again at the next call.
    QDBusConnection getDBusConnection();

    /// Kept for clients; the library itself never reads it.
    static QString m_IPAddress;

protected:
    /// The singleton; null before the first getInstance() and after releaseInstance().
    static DBusConnector *m_pInstance;
    /// What getDBusConnection() hands out.
    QDBusConnection m_connection;

private:
    Q_DISABLE_COPY(DBusConnector)
};

#endif
