#include "BusTestSupport.h"

#include <QDBusConnectionInterface>

void syncWithBus(const QDBusConnection &connection)
{
    connection.interface()->isServiceRegistered(QStringLiteral("org.freedesktop.DBus"));
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
