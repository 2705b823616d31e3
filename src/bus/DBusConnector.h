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
    DBusConnector();
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
    static DBusConnector *m_pInstance;
    QDBusConnection m_connection;

private:
    Q_DISABLE_COPY(DBusConnector)
};

#endif
