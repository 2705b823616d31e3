#include "BusCall_p.h"

#include "DBusConnector.h"
#include "MeasApplNames_p.h"

namespace BusCall {

QDBusMessage callThroughConnector(const QString &service, const QString &path, const QString &member,
                                  const QList<QVariant> &args)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, MeasAppl::interfaceName, member);
    message.setArguments(args);
    // -1: the connection's own default time-out.
    return DBusConnector::getInstance()->getDBusConnection().call(message, QDBus::Block, -1);
}

} // namespace BusCall
