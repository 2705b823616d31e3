#include "RemoteCommandInterface.h"

#include "BusCall_p.h"
#include "MeasApplNames_p.h"

#include <QDBusReply>
#include <QDebug>
#include <QList>
#include <QVariant>

namespace {

// The command is always followed by this many parameter slots on the wire.
constexpr int parameterSlots = 4;

const QString parserErrorPrefix = QStringLiteral("Parser Error: ");

} // namespace

RemoteCommandInterface::RemoteCommandInterface(const QString &service, const QString &path,
                                               const QDBusConnection &connection, QObject *parent)
    : QDBusAbstractInterface(service, path, MeasAppl::interfaceName, connection, parent)
    , m_service(service)
    , m_path(path)
{
}

RemoteCommandInterface::~RemoteCommandInterface() = default;

QString RemoteCommandInterface::executeCommand(QString command, QStringList params, bool *ok, QString *errorCode)
{
    // Only a parser error counts as failure; transport failures leave ok true.
    if (ok)
        *ok = true;
    if (params.size() > parameterSlots)
        return QString();

    QList<QVariant> args{QVariant(command)};
    for (const QString &param : params)
        args.append(QVariant(param));
    while (args.size() < 1 + parameterSlots)
        args.append(QVariant(QString()));

    const QDBusReply<QString> reply =
        BusCall::callThroughConnector(m_service, m_path, QStringLiteral("executeRemoteCommand"), args);
    if (!reply.isValid())
        return QString();

    const QString answer = reply.value();
    if (!answer.startsWith(parserErrorPrefix))
        return answer;

    qDebug() << "RemoteCommandInterface::executeCommand() " << command << " / Error PARSER_ERROR: " << answer;
    if (errorCode) {
        errorCode->append(answer);
        errorCode->remove(parserErrorPrefix);
    }
    if (ok)
        *ok = false;
    return QString();
}
