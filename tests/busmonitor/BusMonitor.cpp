#include "BusMonitor.h"

#include <QDBusMessage>
#include <QDBusReply>
#include <QVariantMap>

#include <systemd/sd-bus.h>

#include <cstdint>
#include <cstdlib>

namespace {
const char daemonService[] = "org.freedesktop.DBus";
const char daemonPath[] = "/org/freedesktop/DBus";

bool isFrom(sd_bus_message *message, const QString &name)
{
    const char *sender = sd_bus_message_get_sender(message);
    return sender && name == QLatin1String(sender);
}

bool isTo(sd_bus_message *message, const QString &name)
{
    const char *destination = sd_bus_message_get_destination(message);
    return destination && name == QLatin1String(destination);
}
} // namespace

BusMonitor::BusMonitor(const QDBusConnection &watched)
    : m_watched(watched)
    , m_uniqueName(watched.baseService())
{
    const char *address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (!address || m_uniqueName.isEmpty())
        return;
    sd_bus *bus = nullptr;
    if (sd_bus_new(&bus) < 0)
        return;
    if (sd_bus_set_address(bus, address) < 0 || sd_bus_set_bus_client(bus, 1) < 0 || sd_bus_set_monitor(bus, 1) < 0 ||
        sd_bus_start(bus) < 0) {
        sd_bus_unref(bus);
        return;
    }
    const QByteArray sent = "sender='" + m_uniqueName.toLatin1() + "'";
    const QByteArray received = "destination='" + m_uniqueName.toLatin1() + "'";
    sd_bus_message *request = nullptr;
    int status = sd_bus_message_new_method_call(bus, &request, daemonService, daemonPath,
                                                "org.freedesktop.DBus.Monitoring", "BecomeMonitor");
    if (status >= 0)
        status = sd_bus_message_append(request, "asu", 2, sent.constData(), received.constData(), 0u);
    if (status >= 0)
        status = sd_bus_call(bus, request, 0, nullptr, nullptr);
    sd_bus_message_unref(request);
    if (status < 0) {
        sd_bus_unref(bus);
        return;
    }
    m_monitor = bus;
}

BusMonitor::~BusMonitor()
{
    if (m_monitor)
        sd_bus_flush_close_unref(m_monitor);
}

bool BusMonitor::isWatching() const
{
    return m_monitor != nullptr;
}

MessageCount BusMonitor::take()
{
    MessageCount count;
    if (!m_monitor)
        return count;
    const QDBusMessage marker =
        QDBusMessage::createMethodCall(QLatin1String(daemonService), QLatin1String(daemonPath),
                                       QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId"));
    m_watched.call(marker);

    uint64_t markerCookie = 0;
    for (;;) {
        sd_bus_message *message = nullptr;
        const int status = sd_bus_process(m_monitor, &message);
        if (status < 0)
            return count;
        if (!message) {
            if (sd_bus_wait(m_monitor, 5 * 1000 * 1000) <= 0)
                return count;
            continue;
        }
        uint64_t cookie = 0;
        uint64_t replyCookie = 0;
        sd_bus_message_get_cookie(message, &cookie);
        sd_bus_message_get_reply_cookie(message, &replyCookie);
        const bool isMarker = isFrom(message, m_uniqueName) && sd_bus_message_is_method_call(message, nullptr, "GetId");
        const bool isMarkerReply = markerCookie != 0 && replyCookie == markerCookie && isTo(message, m_uniqueName);
        if (isMarker)
            markerCookie = cookie;
        else if (!isMarkerReply && isFrom(message, m_uniqueName))
            ++count.sent;
        else if (!isMarkerReply && isTo(message, m_uniqueName))
            ++count.received;
        sd_bus_message_unref(message);
        if (isMarkerReply)
            return count;
    }
}

uint BusMonitor::daemonStat(const QDBusConnection &connection, const char *key)
{
    QDBusMessage request = QDBusMessage::createMethodCall(QLatin1String(daemonService), QLatin1String(daemonPath),
                                                          QStringLiteral("org.freedesktop.DBus.Debug.Stats"),
                                                          QStringLiteral("GetConnectionStats"));
    request << connection.baseService();
    const QDBusReply<QVariantMap> stats = connection.call(request);
    return stats.value().value(QLatin1String(key)).toUInt();
}
