#include "SetupStringInterface.h"

#include "MeasApplNames_p.h"
#include "ProxyCall_p.h"

SetupStringInterface::SetupStringInterface(const QString &service, const QString &path,
                                           const QDBusConnection &connection, QObject *parent)
    : QDBusAbstractInterface(service, path, MeasAppl::interfaceName, connection, parent)
{
}

SetupStringInterface::~SetupStringInterface() = default;

QDBusReply<bool> SetupStringInterface::setValue(QString str)
{
    return ProxyCall::blocking<bool>(*this, "setValue", str);
}

QDBusReply<QString> SetupStringInterface::getString()
{
    return ProxyCall::blocking<QString>(*this, "getString");
}

void SetupStringInterface::setValueAsync(QString str)
{
    ProxyCall::fireAndForget(*this, "setValue", str);
}

QDBusReply<QString> SetupStringInterface::getValue()
{
    return ProxyCall::replyLoggingLastError<QString>(*this, "getValue",
                                                     {"SetupStringInterface::getValue() Error! ",
                                                      "SetupStringInterface::getValue() Interface ",
                                                      "SetupStringInterface::getValue() Path "});
}

QDBusReply<bool> SetupStringInterface::isChangeable()
{
    return ProxyCall::blocking<bool>(*this, "isChangeable");
}

QDBusReply<void> SetupStringInterface::setToDefault()
{
    return ProxyCall::blocking<void>(*this, "setToDefault");
}

void SetupStringInterface::setToDefaultAsync()
{
    ProxyCall::fireAndForget(*this, "setToDefault");
}
