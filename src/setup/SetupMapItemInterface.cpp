#include "SetupMapItemInterface.h"

#include "MeasApplNames_p.h"
#include "ProxyCall_p.h"

SetupMapItemInterface::SetupMapItemInterface(const QString &service, const QString &path,
                                             const QDBusConnection &connection, QObject *parent)
    : QDBusAbstractInterface(service, path, MeasAppl::interfaceName, connection, parent)
    , m_service(service)
    , m_path(path)
{
}

SetupMapItemInterface::~SetupMapItemInterface() = default;

QDBusReply<bool> SetupMapItemInterface::setValue(QString key, QVariant value)
{
    return ProxyCall::blockingList<bool>(*this, "setValue", {key, ProxyCall::wrapped(value)});
}

void SetupMapItemInterface::setValueAsync(QString key, QVariant value)
{
    ProxyCall::fireAndForgetList(*this, "setValue", {key, ProxyCall::wrapped(value)});
}

QDBusReply<QStringList> SetupMapItemInterface::getAllKeys()
{
    return ProxyCall::blocking<QStringList>(*this, "getAllKeys");
}

QDBusReply<bool> SetupMapItemInterface::isKeyAvailable(QString key)
{
    return ProxyCall::blocking<bool>(*this, "isKeyAvailable", key);
}

QDBusReply<bool> SetupMapItemInterface::isChangeable()
{
    return ProxyCall::blocking<bool>(*this, "isChangeable");
}

QVariant SetupMapItemInterface::getValue(QString key)
{
    return ProxyCall::variantOrEmpty(*this, {"SetupMapItemInterface::getValue(): ", m_service, m_path}, "getValue",
                                     key);
}

QVariant SetupMapItemInterface::getBaseElement()
{
    return ProxyCall::variantOrEmpty(*this, {"SetupMapItemInterface::getBaseElement(): ", m_service, m_path},
                                     "getBaseElement");
}

QDBusReply<QString> SetupMapItemInterface::getString()
{
    return ProxyCall::blocking<QString>(*this, "getString");
}

QDBusReply<int> SetupMapItemInterface::size()
{
    return ProxyCall::blocking<int>(*this, "size");
}

QDBusReply<int> SetupMapItemInterface::removeItem(QString key)
{
    return ProxyCall::blocking<int>(*this, "removeItem", key);
}

void SetupMapItemInterface::setToDefault()
{
    ProxyCall::blockingVoid(*this, "setToDefault");
}

void SetupMapItemInterface::setToDefaultAsync()
{
    ProxyCall::fireAndForget(*this, "setToDefault");
}
