#include "SetupMapListInterface.h"

#include "MeasApplNames_p.h"
#include "ProxyCall_p.h"

SetupMapListInterface::SetupMapListInterface(const QString &service, const QString &path,
                                             const QDBusConnection &connection, QObject *parent)
    : QDBusAbstractInterface(service, path, MeasAppl::interfaceName, connection, parent)
    , m_service(service)
    , m_path(path)
{
    DBusTypes::registerSettingsMap();
}

SetupMapListInterface::~SetupMapListInterface() = default;

QDBusReply<bool> SetupMapListInterface::setValue(QString mapName, QMap<QString, QVariant> value)
{
    return ProxyCall::blockingList<bool>(*this, "setValue", {mapName, ProxyCall::wrapped(QVariant(value))});
}

QDBusReply<bool> SetupMapListInterface::setValue(int position, QString item, QVariant newValue)
{
    return ProxyCall::blockingList<bool>(*this, "setValue", {position, item, ProxyCall::wrapped(newValue)});
}

QDBusReply<QStringList> SetupMapListInterface::getAllKeys()
{
    return ProxyCall::blocking<QStringList>(*this, "getAllKeys");
}

QDBusReply<bool> SetupMapListInterface::isKeyAvailable(QString key)
{
    return ProxyCall::blocking<bool>(*this, "isKeyAvailable", key);
}

QDBusReply<int> SetupMapListInterface::getKeyPosition(QString key)
{
    return ProxyCall::blocking<int>(*this, "getKeyPosition", key);
}

QDBusReply<bool> SetupMapListInterface::isChangeable()
{
    return ProxyCall::blocking<bool>(*this, "isChangeable");
}

SettingsMap SetupMapListInterface::getValue(int position)
{
    // Reports under the two-argument form's text as well.
    return ProxyCall::valueOrEmpty<SettingsMap>(*this, {"SetupMapListInterface::getValue(): ", m_service, m_path},
                                                "getValue", position);
}

QVariant SetupMapListInterface::getValue(int position, QString item)
{
    return ProxyCall::variantOrEmpty(*this, {"SetupMapListInterface::getValue(): ", m_service, m_path}, "getValue",
                                     position, item);
}

QString SetupMapListInterface::getStringValue(int position, QString item)
{
    return ProxyCall::valueOrEmpty<QString>(*this, {"SetupMapListInterface::getStringValue(): ", m_service, m_path},
                                            "getStringValue", position, item);
}

QString SetupMapListInterface::getString(int position)
{
    return ProxyCall::valueOrEmpty<QString>(*this, {"SetupMapListInterface::getString(): ", m_service, m_path},
                                            "getString", position);
}

QVariant SetupMapListInterface::getMin(int position, QString item)
{
    return ProxyCall::variantOrEmpty(*this, {"SetupMapListInterface::getMin(): ", m_service, m_path}, "getMin",
                                     position, item);
}

QVariant SetupMapListInterface::getMax(int position, QString item)
{
    return ProxyCall::variantOrEmpty(*this, {"SetupMapListInterface::getMax(): ", m_service, m_path}, "getMax",
                                     position, item);
}

QDBusReply<int> SetupMapListInterface::size()
{
    return ProxyCall::blocking<int>(*this, "size");
}

QDBusReply<bool> SetupMapListInterface::removeItem(int position)
{
    return ProxyCall::blocking<bool>(*this, "removeItem", position);
}

void SetupMapListInterface::setToDefault()
{
    ProxyCall::blockingVoid(*this, "setToDefault");
}
