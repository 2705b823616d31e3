#include "SetupThresholdManagerInterface.h"

#include "DBusTypes.h"
#include "MeasApplNames_p.h"
#include "ProxyCall_p.h"

SetupThresholdManagerInterface::SetupThresholdManagerInterface(const QString &service, const QString &path,
                                                               const QDBusConnection &connection, QObject *parent)
    : QDBusAbstractInterface(service, path, MeasAppl::interfaceName, connection, parent)
    , m_service(service)
    , m_path(path)
{
    DBusTypes::registerDoubleList();
}

SetupThresholdManagerInterface::~SetupThresholdManagerInterface() = default;

QDBusReply<bool> SetupThresholdManagerInterface::setValue(QString key, double value)
{
    return ProxyCall::blockingList<bool>(*this, "setValue", ProxyCall::arguments(key, value));
}

QDBusReply<QString> SetupThresholdManagerInterface::getAllThresholdElements()
{
    return ProxyCall::blocking<QString>(*this, "getAllThresholdElements");
}

QDBusReply<int> SetupThresholdManagerInterface::getAttributes(QString key)
{
    return ProxyCall::blocking<int>(*this, "getAttributes", key);
}

QDBusReply<int> SetupThresholdManagerInterface::getMaxLocationDescriptionCharacterCount()
{
    return ProxyCall::blocking<int>(*this, "getMaxLocationDescriptionCharacterCount");
}

QDBusReply<int> SetupThresholdManagerInterface::getMaxLocationNameCharacterCount()
{
    return ProxyCall::blocking<int>(*this, "getMaxLocationNameCharacterCount");
}

QDBusReply<double> SetupThresholdManagerInterface::getMaxValue(QString key)
{
    return ProxyCall::blocking<double>(*this, "getMaxValue", key);
}

QDBusReply<double> SetupThresholdManagerInterface::getMinValue(QString key)
{
    return ProxyCall::blocking<double>(*this, "getMinValue", key);
}

QDBusReply<QString> SetupThresholdManagerInterface::getThresholdElementsForLocation(QString location)
{
    return ProxyCall::blocking<QString>(*this, "getThresholdElementsForLocation", location);
}

QDBusReply<double> SetupThresholdManagerInterface::getValue(QString key)
{
    return ProxyCall::blocking<double>(*this, "getValue", key);
}

QDBusReply<QString> SetupThresholdManagerInterface::getString(QString key)
{
    return ProxyCall::blocking<QString>(*this, "getString", key);
}

QDBusReply<QStringList> SetupThresholdManagerInterface::getLocationNames()
{
    return ProxyCall::blocking<QStringList>(*this, "getLocationNames");
}

QDBusReply<QString> SetupThresholdManagerInterface::getLocationDescription(QString location)
{
    return ProxyCall::blocking<QString>(*this, "getLocationDescription", location);
}

QDBusReply<bool> SetupThresholdManagerInterface::isLocationEditable(QString location)
{
    return ProxyCall::blocking<bool>(*this, "isLocationEditable", location);
}

QDBusReply<int> SetupThresholdManagerInterface::size()
{
    return ProxyCall::blocking<int>(*this, "size");
}

QDBusReply<bool> SetupThresholdManagerInterface::isChangeable()
{
    return ProxyCall::blocking<bool>(*this, "isChangeable");
}

QDBusReply<bool> SetupThresholdManagerInterface::setLocationDescription(QString location, QString description)
{
    return ProxyCall::blocking<bool>(*this, "setLocationDescription", location, description);
}

void SetupThresholdManagerInterface::setToDefault()
{
    ProxyCall::blockingVoid(*this, "setToDefault");
}

void SetupThresholdManagerInterface::setToDefaultAsync()
{
    ProxyCall::fireAndForget(*this, "setToDefault");
}

QDBusReply<bool> SetupThresholdManagerInterface::createLocation(QString location, QString srcLocation)
{
    return ProxyCall::blocking<bool>(*this, "createLocation", location, srcLocation);
}

QDBusReply<bool> SetupThresholdManagerInterface::deleteLocation(QString location)
{
    return ProxyCall::blocking<bool>(*this, "deleteLocation", location);
}

QDBusReply<bool> SetupThresholdManagerInterface::renameLocation(QString locationName, QString newLocationName)
{
    return ProxyCall::blocking<bool>(*this, "renameLocation", locationName, newLocationName);
}
