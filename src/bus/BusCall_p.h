#ifndef DBUSINTERFACES_BUSCALL_P_H
#define DBUSINTERFACES_BUSCALL_P_H

#include <QDBusMessage>
#include <QList>
#include <QString>
#include <QVariant>

namespace BusCall {

/**
 * Hand-built blocking call over the connector's connection, fetched afresh at each use,
 * for the library's own requests that do not go through a proxy's connection. Waits at
 * most the connection's default time-out.
 */
QDBusMessage callThroughConnector(const QString &service, const QString &path, const QString &member,
                                  const QList<QVariant> &args = {});

} // namespace BusCall

#endif
