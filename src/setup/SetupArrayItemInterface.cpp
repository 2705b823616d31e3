#include "SetupArrayItemInterface.h"

#include "MeasApplNames_p.h"
#include "ProxyCall_p.h"

SetupArrayItemInterface::SetupArrayItemInterface(const QString &service, const QString &path,
                                                 const QDBusConnection &connection, QObject *parent)
    : QDBusAbstractInterface(service, path, MeasAppl::interfaceName, connection, parent)
    , m_service(service)
    , m_path(path)
{
}

SetupArrayItemInterface::~SetupArrayItemInterface() = default;

QDBusReply<bool> SetupArrayItemInterface::setValue(QVariant value, int start, int end)
{
    return ProxyCall::blockingList<bool>(*this, "setValue", {ProxyCall::wrapped(value), start, end});
}

QDBusReply<bool> SetupArrayItemInterface::setValue(QVariantList value)
{
    // Not wrapped: the application tells the two overloads apart by av against vii.
    return ProxyCall::blockingList<bool>(*this, "setValue", {QVariant(value)});
}

QList<QVariant> SetupArrayItemInterface::getValue(int start, int end)
{
    return ProxyCall::valueOrEmpty<QVariantList>(*this, {"SetupArrayItemInterface::getValue(): ", m_service, m_path},
                                                 "getValue", start, end);
}

QDBusReply<QString> SetupArrayItemInterface::getString()
{
    return ProxyCall::blocking<QString>(*this, "getString");
}

QDBusReply<int> SetupArrayItemInterface::size()
{
    return ProxyCall::blocking<int>(*this, "size");
}

void SetupArrayItemInterface::setValueAsync(QVariant value, int start, int end)
{
    ProxyCall::fireAndForgetList(*this, "setValue", {ProxyCall::wrapped(value), start, end});
}

QDBusReply<bool> SetupArrayItemInterface::isChangeable()
{
    return ProxyCall::blocking<bool>(*this, "isChangeable");
}

void SetupArrayItemInterface::setToDefault()
{
    ProxyCall::blockingVoid(*this, "setToDefault");
}

void SetupArrayItemInterface::setToDefaultAsync()
{
    ProxyCall::fireAndForget(*this, "setToDefault");
}
