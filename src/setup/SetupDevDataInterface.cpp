#include "SetupDevDataInterface.h"

#include "DBusCompat_p.h"
#include "MeasApplNames_p.h"
#include "ProxyCall_p.h"

SetupDevDataInterface::SetupDevDataInterface(const QString &service, const QString &path,
                                             const QDBusConnection &connection, QObject *parent)
    : QDBusAbstractInterface(service, path, MeasAppl::interfaceName, connection, parent)
    , m_service(service)
    , m_path(path)
{
    DBusCompat::registerVariantForSignals();
}

SetupDevDataInterface::~SetupDevDataInterface() = default;

QDBusReply<bool> SetupDevDataInterface::setValue(QVariant value)
{
    return ProxyCall::blockingList<bool>(*this, "setValue", {ProxyCall::wrapped(value)});
}

void SetupDevDataInterface::setValueAsync(QVariant value)
{
    ProxyCall::fireAndForgetList(*this, "setValue", {ProxyCall::wrapped(value)});
}

QVariant SetupDevDataInterface::getValue()
{
    return ProxyCall::variantOrEmpty(*this, {"SetupDevDataInterface::getValue(): ", m_service, m_path}, "getValue");
}

QString SetupDevDataInterface::getString()
{
    // Deliberately the same report text as getValue().
    return ProxyCall::valueOrEmpty<QString>(*this, {"SetupDevDataInterface::getValue(): ", m_service, m_path},
                                            "getString");
}
