#include "SetupBoolInterface.h"

#include "MeasApplNames_p.h"
#include "ProxyCall_p.h"

SetupBoolInterface::SetupBoolInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                                       QObject *parent)
    : QDBusAbstractInterface(service, path, MeasAppl::interfaceName, connection, parent)
{
}

SetupBoolInterface::~SetupBoolInterface() = default;

QDBusReply<bool> SetupBoolInterface::setValue(bool value)
{
    return ProxyCall::blocking<bool>(*this, "setValue", value);
}

void SetupBoolInterface::setValueAsync(bool value)
{
    ProxyCall::fireAndForget(*this, "setValue", value);
}

QDBusReply<bool> SetupBoolInterface::getValue()
{
    return ProxyCall::blocking<bool>(*this, "getValue");
}

QDBusReply<QString> SetupBoolInterface::getString()
{
    return ProxyCall::blocking<QString>(*this, "getString");
}

QDBusReply<bool> SetupBoolInterface::isChangeable()
{
    return ProxyCall::blocking<bool>(*this, "isChangeable");
}

QDBusReply<void> SetupBoolInterface::setToDefault()
{
    return ProxyCall::blocking<void>(*this, "setToDefault");
}

void SetupBoolInterface::setToDefaultAsync()
{
    ProxyCall::fireAndForget(*this, "setToDefault");
}
