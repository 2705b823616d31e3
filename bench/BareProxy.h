#ifndef BENCH_BAREPROXY_H
#define BENCH_BAREPROXY_H

#include "DBusTypes.h"

#include <QDBusAbstractInterface>
#include <QDBusReply>
#include <QDBusVariant>

/// What a hand-written QDBusAbstractInterface subclass makes of the same calls as the
/// library's proxies: the yardstick of "the library adds nothing".
class BareProxy : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    BareProxy(const QString &service, const QString &path, const QDBusConnection &connection)
        : QDBusAbstractInterface(service, path, "com.velk.mqx.MeasApplInterface", connection, nullptr)
    {
    }

Q_SIGNALS:
    void setupChanged(int newVal);

public:
    QDBusReply<int> getInt() { return call(QDBus::Block, QStringLiteral("getValue")); }
    QDBusReply<int> getMinValue() { return call(QDBus::Block, QStringLiteral("getMinValue")); }
    void setToDefault() { call(QDBus::Block, QStringLiteral("setToDefault")); }
    void setValueAsync(int value) { asyncCall(QStringLiteral("setValue"), value); }
    QDBusReply<bool> setVariant(const QVariant &value)
    {
        return callWithArgumentList(QDBus::Block, QStringLiteral("setValue"),
                                    {QVariant::fromValue(QDBusVariant(value))});
    }
    QDBusReply<bool> setMap(const QString &key, const SettingsMap &value)
    {
        return callWithArgumentList(QDBus::Block, QStringLiteral("setValue"), {key, QVariant(value)});
    }
    QVariant getVariant(const QList<QVariant> &args = {})
    {
        const QDBusReply<QDBusVariant> reply = callWithArgumentList(QDBus::Block, QStringLiteral("getValue"), args);
        return reply.isValid() ? reply.value().variant() : QVariant();
    }
    SettingsMap getMap(int position)
    {
        const QDBusReply<SettingsMap> reply = call(QDBus::Block, QStringLiteral("getValue"), position);
        return reply.isValid() ? reply.value() : SettingsMap();
    }
};

#endif
