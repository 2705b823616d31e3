#include "BusTestSupport.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDeadlineTimer>

void syncWithBus(const QDBusConnection &connection)
{
    // Messages of one connection are handled by the daemon in order: once this call
    // returns, whatever was sent before it has been routed.
    connection.interface()->isServiceRegistered(QStringLiteral("org.freedesktop.DBus"));
}

NameReleaseWatch::NameReleaseWatch(const QDBusConnection &connection, const QString &service)
    : m_watcher(service, connection, QDBusServiceWatcher::WatchForUnregistration)
{
    connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { m_released = true; });
    // The watcher's match rule must be in place before the name goes.
    syncWithBus(connection);
}

bool NameReleaseWatch::wait(int timeoutMs)
{
    QDeadlineTimer deadline(timeoutMs);
    while (!m_released && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    return m_released;
}

DeliveryCounter::DeliveryCounter(QObject *watched)
    : QObject(watched)
{
    watched->installEventFilter(this);
}

bool DeliveryCounter::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::MetaCall)
        ++m_count;
    return false;
}

BusSignalWitness::BusSignalWitness(const QDBusConnection &connection, const QString &service, const QString &path,
                                   const QString &interface, const QString &member)
{
    QDBusConnection(connection).connect(service, path, interface, member, this, SLOT(onSignal(QDBusMessage)));
    syncWithBus(connection);
}

void BusSignalWitness::onSignal(const QDBusMessage &)
{
    ++m_count;
}
