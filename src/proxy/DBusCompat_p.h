#ifndef DBUSINTERFACES_DBUSCOMPAT_P_H
#define DBUSINTERFACES_DBUSCOMPAT_P_H

// The one place where Qt 5 and Qt 6 differ for this library.

#include "DBusTypes.h"

#include <QDBusMetaType>
#include <QMap>
#include <QMetaType>
#include <QtGlobal>

namespace DBusCompat {

inline void registerMarshallOperators(int typeId, QDBusMetaType::MarshallFunction marshall,
                                      QDBusMetaType::DemarshallFunction demarshall)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    QDBusMetaType::registerMarshallOperators(QMetaType(typeId), marshall, demarshall);
#else
    QDBusMetaType::registerMarshallOperators(typeId, marshall, demarshall);
#endif
}

/// Qt 6 looks up a relayed bus signal's argument types by name when it subscribes, and
/// drops a signal whose variant argument it cannot place: a proxy whose signal carries a
/// D-Bus variant registers "QDBusVariant" before anything can connect. Qt 5 needs nothing.
inline void registerVariantForSignals()
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    DBusTypes::dbusVariantTypeId();
#endif
}

/// The D-Bus signature QtDBus writes for @p typeId, or null when it cannot write the type.
inline const char *signatureOf(int typeId)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return QDBusMetaType::typeToSignature(QMetaType(typeId));
#else
    return QDBusMetaType::typeToSignature(typeId);
#endif
}

/// The id registered under @p name, or QMetaType::UnknownType.
inline int metaTypeIdByName(const char *name)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return QMetaType::fromName(name).id();
#else
    return QMetaType::type(name);
#endif
}

/// Whether a QMap can hold a key twice (Qt 5) or keeps one value per key (Qt 6).
constexpr bool mapKeepsRepeatedKeys = QT_VERSION < QT_VERSION_CHECK(6, 0, 0);

/// Adds an entry without replacing one of the same key where the map can hold both;
/// in Qt 6 the later entry wins.
template<typename Key, typename T>
inline void insertMulti(QMap<Key, T> &map, const Key &key, const T &value)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    map.insert(key, value);
#else
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    map.insertMulti(key, value);
    QT_WARNING_POP
#endif
}

} // namespace DBusCompat

#endif
