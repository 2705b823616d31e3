#ifndef SIMULATOR_WIRE_H
#define SIMULATOR_WIRE_H

#include <QDBusVariant>
#include <QJsonValue>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <QVariantMap>

#include <functional>

/// Conversions between what arrives on the bus and plain Qt values.
namespace Wire {

/// The value inside a D-Bus variant; structured D-Bus values (a{sv}, av, as) become
/// QVariantMap, QVariantList or QStringList, recursively.
QVariant plain(const QVariant &value);
inline QVariant variant(const QVariant &value)
{
    return QVariant::fromValue(QDBusVariant(value));
}

/// A JSON value as the simulator holds it: every number a double, arrays and objects as
/// QVariantList and QVariantMap.
QVariant fromJson(const QJsonValue &value);

bool isNumber(const QVariant &value);
bool isText(const QVariant &value);
bool isBool(const QVariant &value);
/// Whether @p candidate is of the same family (number, text, bool, map, list) as @p model.
bool sameFamily(const QVariant &model, const QVariant &candidate);

/// Text form of a value with an optional unit, as the element's getString answers.
QString text(const QVariant &value, const QString &unit = {});
/// "key=text, ..." of a map, each value with the unit @p unitOf gives its key.
QString keyValueText(const QVariantMap &map, const std::function<QString(const QString &)> &unitOf);

} // namespace Wire

#endif
