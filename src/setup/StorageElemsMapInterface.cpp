#include "StorageElemsMapInterface.h"

#include "MeasApplNames_p.h"
#include "ProxyCall_p.h"

StorageElemsMapInterface::StorageElemsMapInterface(const QString &service, const QString &path,
                                                   const QDBusConnection &connection, QObject *parent)
    : QDBusAbstractInterface(service, path, MeasAppl::interfaceName, connection, parent)
{
}

StorageElemsMapInterface::~StorageElemsMapInterface() = default;

QDBusReply<QStringList> StorageElemsMapInterface::getValues()
{
    return ProxyCall::blocking<QStringList>(*this, "getValues");
}

QDBusReply<int> StorageElemsMapInterface::count()
{
    return ProxyCall::blocking<int>(*this, "count");
}

void StorageElemsMapInterface::setToDefault()
{
    ProxyCall::blockingVoid(*this, "setToDefault");
}

void StorageElemsMapInterface::setToDefaultAsync()
{
    ProxyCall::fireAndForget(*this, "setToDefault");
}

QDBusReply<QString> StorageElemsMapInterface::getSortOrder()
{
    return ProxyCall::blocking<QString>(*this, "getSortOrder");
}

QDBusReply<void> StorageElemsMapInterface::setSortOrder(QString order)
{
    return ProxyCall::blocking<void>(*this, "setSortOrder", order);
}
