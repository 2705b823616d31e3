#include "DBusInterfaceManager.h"

#include "BusCall_p.h"
#include "DBusConnector.h"
#include "MeasApplNames_p.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QStringList>

DBusInterfaceManager *DBusInterfaceManager::m_pInstance = nullptr;

namespace {

QString serviceOf(const QString &appName)
{
    return QLatin1String(MeasAppl::servicePrefix) + appName.toLower();
}

} // namespace

DBusInterfaceManager::DBusInterfaceManager() = default;

DBusInterfaceManager::~DBusInterfaceManager() = default;

DBusInterfaceManager *DBusInterfaceManager::getInstance()
{
    if (!m_pInstance)
        m_pInstance = new DBusInterfaceManager;
    return m_pInstance;
}

void DBusInterfaceManager::releaseInstance()
{
    delete m_pInstance;
    m_pInstance = nullptr;
}

bool DBusInterfaceManager::addItem(QString name, QDBusAbstractInterface *proxy)
{
    if (m_interfaces.contains(name))
        return false;
    m_interfaces.insert(name, proxy);
    return true;
}

QDBusAbstractInterface *DBusInterfaceManager::getInterface(QString name)
{
    return m_interfaces.value(name, nullptr);
}

bool DBusInterfaceManager::isMeasAppAvailable(QString appName)
{
    const QString service = serviceOf(appName);
    // Even an unconnected connection has a bus interface object; its query simply fails.
    const QDBusReply<QStringList> names =
        DBusConnector::getInstance()->getDBusConnection().interface()->registeredServiceNames();
    return names.isValid() && names.value().contains(service);
}

QString DBusInterfaceManager::getMeasAppStatus(QString appName)
{
    const QDBusReply<QString> status =
        BusCall::callThroughConnector(serviceOf(appName), MeasAppl::rootPath, "getMeasApplicationStatus");
    return status.isValid() ? status.value() : QStringLiteral("");
}
