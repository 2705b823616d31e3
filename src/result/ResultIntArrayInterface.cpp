#include "ResultIntArrayInterface.h"

#include "MeasApplNames_p.h"
#include "ProxyCall_p.h"

ResultIntArrayInterface::ResultIntArrayInterface(const QString &service, const QString &path,
                                                 const QDBusConnection &connection, QObject *parent)
    : QDBusAbstractInterface(service, path, MeasAppl::interfaceName, connection, parent)
    , m_service(service)
    , m_path(path)
{
}

ResultIntArrayInterface::~ResultIntArrayInterface() = default;

QList<QVariant> ResultIntArrayInterface::getValues()
{
    return ProxyCall::valueOrEmpty<QList<QVariant>>(
        *this, {"ResultIntArrayInterface::getValues(): ", m_service, m_path}, "getValues");
}

QString ResultIntArrayInterface::getString()
{
    return ProxyCall::valueOrEmpty<QString>(*this, {"ResultIntArrayInterface::getString(): ", m_service, m_path},
                                            "getString");
}

QDBusReply<int> ResultIntArrayInterface::size()
{
    return ProxyCall::blocking<int>(*this, "size");
}

QDBusReply<int> ResultIntArrayInterface::getResultStatus()
{
    return ProxyCall::blocking<int>(*this, "getResultStatus");
}

QDBusReply<QDateTime> ResultIntArrayInterface::getTimeStamp()
{
    return ProxyCall::blocking<QDateTime>(*this, "getTimeStamp");
}
