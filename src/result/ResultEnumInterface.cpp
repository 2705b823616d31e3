#include "ResultEnumInterface.h"

#include "MeasApplNames_p.h"
#include "ProxyCall_p.h"

ResultEnumInterface::ResultEnumInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                                         QObject *parent)
    : QDBusAbstractInterface(service, path, MeasAppl::interfaceName, connection, parent)
    , m_service(service)
    , m_path(path)
{
}

ResultEnumInterface::~ResultEnumInterface() = default;

QDBusReply<int> ResultEnumInterface::getValue()
{
    return ProxyCall::blocking<int>(*this, "getValue");
}

QDBusReply<QString> ResultEnumInterface::getString()
{
    return ProxyCall::blocking<QString>(*this, "getString");
}

QDBusReply<int> ResultEnumInterface::getMinValue()
{
    return ProxyCall::blocking<int>(*this, "getMinValue");
}

QDBusReply<int> ResultEnumInterface::getMaxValue()
{
    return ProxyCall::blocking<int>(*this, "getMaxValue");
}

QList<QVariant> ResultEnumInterface::getValueComp()
{
    // No class-name prefix member here: the class name is part of the literal.
    return ProxyCall::valueOrEmpty<QList<QVariant>>(*this, {"ResultEnumInterface::getValueComp(): ", m_service, m_path},
                                                    "getValueComp");
}
