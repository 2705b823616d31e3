#include "SetupIntInterface.h"

#include "MeasApplNames_p.h"
#include "ProxyCall_p.h"

SetupIntInterface::SetupIntInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                                     QObject *parent)
    : QDBusAbstractInterface(service, path, MeasAppl::interfaceName, connection, parent)
{
}

SetupIntInterface::~SetupIntInterface() = default;

QDBusReply<bool> SetupIntInterface::setValue(int value)
{
    return ProxyCall::blocking<bool>(*this, "setValue", value);
}

void SetupIntInterface::setValueAsync(int value)
{
    ProxyCall::fireAndForget(*this, "setValue", value);
}

QDBusReply<int> SetupIntInterface::getValue()
{
    return ProxyCall::replyLoggingLastError<int>(*this, "getValue",
                                                 {"SetupIntInterface::getValue() Error! ",
                                                  "SetupIntInterface::getValue() Interface ",
                                                  "SetupIntInterface::getValue() Path "});
}

QDBusReply<QString> SetupIntInterface::getString()
{
    return ProxyCall::replyLoggingLastError<QString>(*this, "getString", {"SetupIntInterface::getString() Error! "});
}

QDBusReply<int> SetupIntInterface::getMinValue()
{
    return ProxyCall::blocking<int>(*this, "getMinValue");
}

QDBusReply<int> SetupIntInterface::getMaxValue()
{
    return ProxyCall::blocking<int>(*this, "getMaxValue");
}

QDBusReply<int> SetupIntInterface::getGranularity()
{
    return ProxyCall::blocking<int>(*this, "getGranularity");
}

QDBusReply<bool> SetupIntInterface::isChangeable()
{
    return ProxyCall::blocking<bool>(*this, "isChangeable");
}

QDBusReply<void> SetupIntInterface::setToDefault()
{
    return ProxyCall::blocking<void>(*this, "setToDefault");
}

void SetupIntInterface::setToDefaultAsync()
{
    ProxyCall::fireAndForget(*this, "setToDefault");
}
