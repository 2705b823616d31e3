#ifndef TESTS_STRUCTUREDVALUES_H
#define TESTS_STRUCTUREDVALUES_H

// Maps and structured values as the composite classes' own tests send, read and marshal them.

#include "DBusCompat_p.h"
#include "DBusTypes.h"
#include "FakeMeasApplication.h"

#include <QDBusArgument>
#include <QList>
#include <QPair>
#include <QString>
#include <QVariant>

#include <functional>

/// An a{sv} with @p entries in this order, repeated keys included, as only a peer can send it.
QDBusArgument settingsMapArgument(const QList<QPair<QString, QVariant>> &entries);

/**
 * @p get reads a map that the application answers to @p member with @p entries, in this
 * order, some keys repeated, as only a peer can send it. The result is what QMap makes of
 * them: Qt 5's keeps every entry of a repeated key, Qt 6's the later one. Nothing is logged.
 */
void verifyRepeatedKeysKeptAsQMapDoes(FakeMeasApplication &fake, const QString &member,
                                      const std::function<SettingsMap()> &get,
                                      const QList<QPair<QString, QVariant>> &entries);

/// Stand-in marshalling operators of @p Map that mark what they write and what they read,
/// to show which operators a construction leaves in place.
template<typename Map, void (*write)(QDBusArgument &, const Map &), void (*read)(const QDBusArgument &, Map &)>
struct MarkingOperators
{
    static void install(int typeId) { DBusCompat::registerMarshallOperators(typeId, writer, reader); }
    static void writer(QDBusArgument &argument, const void *value)
    {
        Map marked = *static_cast<const Map *>(value);
        marked.insert(QStringLiteral("written by the stand-in"), typename Map::mapped_type(QStringLiteral("yes")));
        write(argument, marked);
    }
    static void reader(const QDBusArgument &argument, void *value)
    {
        Map &map = *static_cast<Map *>(value);
        read(argument, map);
        map.insert(QStringLiteral("read by the stand-in"), typename Map::mapped_type(QStringLiteral("yes")));
    }
};
using MarkingSettingsMap = MarkingOperators<SettingsMap, DBusTypes::writeSettingsMap, DBusTypes::readSettingsMap>;

/// The call "probe" with @p arguments, as the session bus connection marshals them, as the
/// application receives it (an empty call if none arrives).
ReceivedCall probeCall(FakeMeasApplication &fake, const QString &path, const QList<QVariant> &arguments);

/// @p value is a structured value that QtDBus left as a QDBusArgument, reading as @p wire (wireText()).
void verifyLeftAsArgument(const QVariant &value, const QString &wire);

#endif
