#include "ServiceOwnerCache.h"

#include "MeasApplNames_p.h"

namespace {
// A signal nobody emits: the subscription exists only for QtDBus to follow the owner.
constexpr char anchorSignal[] = "serviceOwnerCacheAnchor";
} // namespace

ServiceOwnerCache::ServiceOwnerCache(const QString &service, const QDBusConnection &connection, QObject *parent)
    : QObject(parent)
    , m_connection(connection)
    , m_service(service)
    , m_active(false)
{
    m_active = subscribe();
}

// QtDBus drops the subscription with its receiver.
ServiceOwnerCache::~ServiceOwnerCache() = default;

QString ServiceOwnerCache::service() const
{
    return m_service;
}

bool ServiceOwnerCache::isActive() const
{
    return m_active;
}

void ServiceOwnerCache::ignoreAnchorSignal() { }

bool ServiceOwnerCache::subscribe()
{
    return m_connection.isConnected() &&
        m_connection.connect(m_service, QLatin1String(MeasAppl::rootPath), QLatin1String(MeasAppl::interfaceName),
                             QLatin1String(anchorSignal), this, SLOT(ignoreAnchorSignal()));
}
