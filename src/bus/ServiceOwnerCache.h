#ifndef DBUSINTERFACES_SERVICEOWNERCACHE_H
#define DBUSINTERFACES_SERVICEOWNERCACHE_H

#include "dbusinterfaces_export.h"

#include <QDBusConnection>
#include <QObject>
#include <QString>

/**
 * @brief Makes QtDBus keep the owner of one application's service, so that proxies
 * constructed for that service while it lives ask the bus daemon nothing.
 *
 * Every proxy's construction asks the bus daemon who owns its service, with a blocking
 * call, unless QtDBus already follows that service's owner because a signal of the
 * service is subscribed on the same connection. This object holds one such
 * subscription for its lifetime: to the signal "serviceOwnerCacheAnchor" of the
 * application's root object, which no application emits. Proxies behave exactly as
 * without it; only their construction stops waiting for the daemon.
 *
 * At the daemon it costs the subscription's match rule, plus the rule with which QtDBus
 * follows the owner when no other subscription of the service has added it already.
 *
 * @code
 * ServiceOwnerCache ownerCache(service, bus);
 * for (const QString &path : paths)
 *     proxies.append(new SetupIntInterface(service, path, bus));
 * @endcode
 */
class DBUSINTERFACES_EXPORT ServiceOwnerCache : public QObject
{
    Q_OBJECT

public:
    /// Subscribes on @p connection at once; whether that worked is isActive().
    /// @param service the application's service, as the proxies are given it.
    /// @param connection the connection the proxies are constructed with.
    /// @param parent the QObject parent.
    ServiceOwnerCache(const QString &service, const QDBusConnection &connection, QObject *parent = nullptr);
    /// Drops the subscription; proxies constructed later ask the daemon again.
    ~ServiceOwnerCache() override;

    /// The service whose owner is kept.
    QString service() const;
    /// False when the connection is not connected or the service name is not valid.
    bool isActive() const;

private Q_SLOTS:
    void ignoreAnchorSignal();

private:
    bool subscribe();

    QDBusConnection m_connection;
    QString m_service;
    bool m_active;
};

#endif
