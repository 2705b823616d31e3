#include "Wire.h"

#include "SimCompat.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QJsonArray>
#include <QJsonObject>

namespace Wire {

static QVariant plainArgument(const QDBusArgument &argument)
{
    switch (argument.currentType()) {
    case QDBusArgument::MapType: {
        QVariantMap map;
        argument.beginMap();
        while (!argument.atEnd()) {
            QString key;
            QVariant value;
            argument.beginMapEntry();
            argument >> key >> value;
            argument.endMapEntry();
            map.insert(key, plain(value));
        }
        argument.endMap();
        return map;
    }
    case QDBusArgument::ArrayType: {
        QVariantList list;
        argument.beginArray();
        while (!argument.atEnd()) {
            QVariant element;
            argument >> element;
            list.append(plain(element));
        }
        argument.endArray();
        return list;
    }
    default:
        return {};
    }
}

QVariant plain(const QVariant &value)
{
    const int type = SimCompat::typeId(value);
    if (type == qMetaTypeId<QDBusVariant>())
        return plain(value.value<QDBusVariant>().variant());
    if (type == qMetaTypeId<QDBusArgument>())
        return plainArgument(value.value<QDBusArgument>());
    if (type == QMetaType::QVariantList) {
        QVariantList list;
        for (const QVariant &element : value.toList())
            list.append(plain(element));
        return list;
    }
    if (type == QMetaType::QVariantMap) {
        QVariantMap map;
        const QVariantMap source = value.toMap();
        for (auto it = source.cbegin(); it != source.cend(); ++it)
            map.insert(it.key(), plain(it.value()));
        return map;
    }
    return value;
}

QVariant fromJson(const QJsonValue &value)
{
    if (value.isArray()) {
        QVariantList list;
        for (const QJsonValue &element : value.toArray())
            list.append(fromJson(element));
        return list;
    }
    if (value.isObject()) {
        QVariantMap map;
        const QJsonObject object = value.toObject();
        for (auto it = object.constBegin(); it != object.constEnd(); ++it)
            map.insert(it.key(), fromJson(it.value()));
        return map;
    }
    if (value.isDouble())
        return value.toDouble();
    return value.toVariant();
}

bool isNumber(const QVariant &value)
{
    switch (SimCompat::typeId(value)) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::UChar:
        return true;
    default:
        return false;
    }
}

bool isText(const QVariant &value)
{
    return SimCompat::typeId(value) == QMetaType::QString;
}

bool isBool(const QVariant &value)
{
    return SimCompat::typeId(value) == QMetaType::Bool;
}

bool sameFamily(const QVariant &model, const QVariant &candidate)
{
    if (isNumber(model))
        return isNumber(candidate);
    return SimCompat::typeId(model) == SimCompat::typeId(candidate);
}

QString text(const QVariant &value, const QString &unit)
{
    QString result;
    if (isBool(value))
        result = value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    else if (SimCompat::typeId(value) == QMetaType::Double)
        result = QString::number(value.toDouble(), 'g', 12);
    else if (SimCompat::typeId(value) == QMetaType::QVariantList) {
        QStringList parts;
        for (const QVariant &element : value.toList())
            parts.append(text(element));
        result = QLatin1Char('[') + parts.join(QStringLiteral(", ")) + QLatin1Char(']');
    } else
        result = value.toString();
    if (!unit.isEmpty())
        result += QLatin1Char(' ') + unit;
    return result;
}

QString keyValueText(const QVariantMap &map, const std::function<QString(const QString &)> &unitOf)
{
    QStringList parts;
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        parts.append(it.key() + QLatin1Char('=') + text(it.value(), unitOf(it.key())));
    return parts.join(QStringLiteral(", "));
}

} // namespace Wire
