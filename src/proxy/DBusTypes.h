/// @file
/// @brief The maps that cross the bus as a{sv} and a{ss}, and the registration that makes the
/// library's custom types usable on a connection.

#ifndef DBUSINTERFACES_DBUSTYPES_H
#define DBUSINTERFACES_DBUSTYPES_H

#include "dbusinterfaces_export.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QVariant>

class QDBusArgument;

/// Settings of one element under string keys; a{sv} on the bus, every value in a variant.
typedef QMap<QString, QVariant> SettingsMap;

/// Texts under string keys; a{ss} on the bus, meta-type name "SettingsStringMap".
typedef QMap<QString, QString> SettingsStringMap;

/**
 * @brief Meta-type and D-Bus marshalling registration of the library's custom types.
 *
 * Proxy constructors call these before their first bus call. Meta-type names are
 * registered once per process; the marshalling operators again at every call, which is
 * harmless and keeps them in place whatever else the process registered.
 */
namespace DBusTypes {

/// Installs the SettingsMap writer and reader for Qt's QVariantMap type.
DBUSINTERFACES_EXPORT void registerSettingsMap();
/// Registers "SettingsStringMap" (once) and its marshalling; returns its type id.
DBUSINTERFACES_EXPORT int registerSettingsStringMap();
/// Registers "QList<double>" (once) and its marshalling; returns its type id.
DBUSINTERFACES_EXPORT int registerDoubleList();
/// The id of "QDBusVariant", registered on first use.
DBUSINTERFACES_EXPORT int dbusVariantTypeId();

/// Writes the entries in ascending key order, each value wrapped in a D-Bus variant.
DBUSINTERFACES_EXPORT void writeSettingsMap(QDBusArgument &argument, const SettingsMap &map);
/// Empties @p map, then adds every entry received. A key received twice keeps both entries
/// under Qt 5 and the later one under Qt 6; a structured value stays a QDBusArgument inside
/// its QVariant.
DBUSINTERFACES_EXPORT void readSettingsMap(const QDBusArgument &argument, SettingsMap &map);
/// Writes the entries in ascending key order.
DBUSINTERFACES_EXPORT void writeSettingsStringMap(QDBusArgument &argument, const SettingsStringMap &map);
/// Empties @p map, then adds every entry received, a repeated key as readSettingsMap() does.
DBUSINTERFACES_EXPORT void readSettingsStringMap(const QDBusArgument &argument, SettingsStringMap &map);
/// Writes the elements in list order, as ad.
DBUSINTERFACES_EXPORT void writeDoubleList(QDBusArgument &argument, const QList<double> &list);
/// Empties @p list, then appends every element received.
DBUSINTERFACES_EXPORT void readDoubleList(const QDBusArgument &argument, QList<double> &list);

} // namespace DBusTypes

#endif
