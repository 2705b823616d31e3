#ifndef DBUSINTERFACES_DBUSINTERFACEMANAGER_H
#define DBUSINTERFACES_DBUSINTERFACEMANAGER_H

#include "dbusinterfaces_export.h"

#include <QHash>
#include <QString>

class QDBusAbstractInterface;

/**
 * @brief Process-wide registry of proxies by name, and queries about a measurement application.
 *
 * The registry never owns a proxy: releasing the manager frees only the registry, and
 * an entry outlives its proxy if the caller deletes the proxy first.
 *
 * @code
 * DBusInterfaceManager *manager = DBusInterfaceManager::getInstance();
 * manager->addItem("gain", gainProxy);
 * if (manager->isMeasAppAvailable("Scope"))
 *     qDebug() << manager->getMeasAppStatus("Scope");
 * @endcode
 */
class DBUSINTERFACES_EXPORT DBusInterfaceManager
{
public:
    /// An empty registry; use getInstance() rather than a manager of your own.
    DBusInterfaceManager();
    /// Frees the registry only, never a filed proxy.
    ~DBusInterfaceManager();

    /// The singleton, created on first use.
    static DBusInterfaceManager *getInstance();
    /// Deletes the singleton and its registry, if any; the filed proxies stay alive.
    static void releaseInstance();

    /// Files @p proxy (null is accepted) under @p name; false if the name is taken, which
    /// keeps the proxy filed first.
    bool addItem(QString name, QDBusAbstractInterface *proxy);
    /// The proxy filed under exactly @p name, or null.
    QDBusAbstractInterface *getInterface(QString name);

    /// Whether the service of application @p appName is registered on the bus; false
    /// when the bus cannot be asked.
    ///
    /// The service is "com.velk.mqx.app." followed by @p appName in lower case; only the
    /// bus daemon's list of names is consulted, the application is not asked. Blocks.
    bool isMeasAppAvailable(QString appName);
    /// The status text that application @p appName reports, or "" on any failure.
    ///
    /// Calls "getMeasApplicationStatus" on the application's root object "/MEAS_APPL_OBJ" over
    /// DBusConnector's connection, blocking; the text is passed on uninterpreted and nothing is
    /// logged.
    QString getMeasAppStatus(QString appName);

protected:
    /// The singleton; null before the first getInstance() and after releaseInstance().
    static DBusInterfaceManager *m_pInstance;

private:
    Q_DISABLE_COPY(DBusInterfaceManager)

    QHash<QString, QDBusAbstractInterface *> m_interfaces;
};

#endif
