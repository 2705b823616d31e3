#include "SetupEnumInterface.h"

#include "MeasApplNames_p.h"
#include "ProxyCall_p.h"

SetupEnumInterface::SetupEnumInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                                       QObject *parent)
    : QDBusAbstractInterface(service, path, MeasAppl::interfaceName, connection, parent)
{
}

SetupEnumInterface::~SetupEnumInterface() = default;

QDBusReply<bool> SetupEnumInterface::setValue(int value)
{
    return ProxyCall::blocking<bool>(*this, "setValue", value);
}

void SetupEnumInterface::setValueAsync(int value)
{
    ProxyCall::fireAndForget(*this, "setValue", value);
}

QDBusReply<bool> SetupEnumInterface::setValue(QString str)
{
    return ProxyCall::blocking<bool>(*this, "setValue", str);
}

void SetupEnumInterface::setValueAsync(QString str)
{
    ProxyCall::fireAndForget(*this, "setValue", str);
}

QDBusReply<QString> SetupEnumInterface::getEnumValueList()
{
    return ProxyCall::blocking<QString>(*this, "getValueList");
}

QDBusReply<int> SetupEnumInterface::getValue()
{
    return ProxyCall::blocking<int>(*this, "getValue");
}

QDBusReply<QString> SetupEnumInterface::getString()
{
    return ProxyCall::blocking<QString>(*this, "getString");
}

QDBusReply<QString> SetupEnumInterface::getStringRepresentation(int val)
{
    return ProxyCall::blocking<QString>(*this, "getStringRepresentation", val);
}

QDBusReply<int> SetupEnumInterface::getEnumQuantity()
{
    return ProxyCall::blocking<int>(*this, "getQuantity");
}

QDBusReply<void> SetupEnumInterface::execute()
{
    return ProxyCall::blocking<void>(*this, "execute");
}

void SetupEnumInterface::executeAsync()
{
    ProxyCall::fireAndForget(*this, "execute");
}

QDBusReply<bool> SetupEnumInterface::isChangeable()
{
    return ProxyCall::blocking<bool>(*this, "isChangeable");
}

QDBusReply<void> SetupEnumInterface::setToDefault()
{
    return ProxyCall::blocking<void>(*this, "setToDefault");
}

void SetupEnumInterface::setToDefaultAsync()
{
    ProxyCall::fireAndForget(*this, "setToDefault");
}
