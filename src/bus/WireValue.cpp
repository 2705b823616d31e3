#include "WireValue_p.h"

#include "DBusCompat_p.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QVariantList>
#include <QVariantMap>

#include <cmath>
#include <limits>

namespace WireValue {

namespace {

int typeOf(const QVariant &value)
{
    return value.userType();
}

QVariant plainArgument(const QDBusArgument &argument)
{
    switch (argument.currentType()) {
    case QDBusArgument::BasicType:
        return argument.asVariant();
    case QDBusArgument::VariantType: {
        QDBusVariant inner;
        argument >> inner;
        return plain(inner.variant());
    }
    case QDBusArgument::ArrayType:
    case QDBusArgument::StructureType: {
        const bool array = argument.currentType() == QDBusArgument::ArrayType;
        QVariantList items;
        if (array)
            argument.beginArray();
        else
            argument.beginStructure();
        while (!argument.atEnd())
            items.append(plainArgument(argument));
        if (array)
            argument.endArray();
        else
            argument.endStructure();
        return items;
    }
    case QDBusArgument::MapType: {
        QVariantMap map;
        argument.beginMap();
        while (!argument.atEnd()) {
            argument.beginMapEntry();
            const QString key = plainArgument(argument).toString();
            map.insert(key, plainArgument(argument));
            argument.endMapEntry();
        }
        argument.endMap();
        return map;
    }
    default:
        return {};
    }
}

bool isNumber(const QVariant &value)
{
    switch (typeOf(value)) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Double:
    case QMetaType::Float:
        return true;
    default:
        return false;
    }
}

// A whole number within [lowest, highest], from a number or a text; nothing otherwise.
QVariant wholeNumber(const QVariant &value, double lowest, double highest)
{
    bool ok = false;
    const double number = typeOf(value) == QMetaType::QString ? value.toString().toDouble(&ok) : value.toDouble(&ok);
    if (!ok || (!isNumber(value) && typeOf(value) != QMetaType::QString) || std::floor(number) != number ||
        number < lowest || number > highest)
        return {};
    return number;
}

} // namespace

QVariant plain(const QVariant &wire)
{
    const int type = typeOf(wire);
    if (type == qMetaTypeId<QDBusVariant>())
        return plain(wire.value<QDBusVariant>().variant());
    if (type == qMetaTypeId<QDBusArgument>())
        return plainArgument(wire.value<QDBusArgument>());
    return wire;
}

QVariant toWire(const QVariant &value, const QString &signature)
{
    if (!value.isValid())
        return {};
    if (signature == QLatin1String("v"))
        return QVariant::fromValue(QDBusVariant(value));
    if (signature == QLatin1String("s"))
        return typeOf(value) == QMetaType::QString || isNumber(value) || typeOf(value) == QMetaType::Bool
            ? QVariant(value.toString())
            : QVariant();
    if (signature == QLatin1String("b")) {
        if (typeOf(value) == QMetaType::Bool)
            return value;
        const QString text = value.toString();
        if (text == QLatin1String("true") || text == QLatin1String("false"))
            return text == QLatin1String("true");
        return {};
    }
    if (signature == QLatin1String("d")) {
        bool ok = false;
        const double number = value.toDouble(&ok);
        return ok && (isNumber(value) || typeOf(value) == QMetaType::QString) ? QVariant(number) : QVariant();
    }
    if (signature == QLatin1String("i")) {
        const QVariant whole =
            wholeNumber(value, std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max());
        return whole.isValid() ? QVariant(static_cast<qint32>(whole.toDouble())) : QVariant();
    }
    if (signature == QLatin1String("x")) {
        const QVariant whole = wholeNumber(value, -9007199254740992.0, 9007199254740992.0);
        return whole.isValid() ? QVariant(static_cast<qint64>(whole.toDouble())) : QVariant();
    }
    return {};
}

QString signatureOf(const QVariant &value)
{
    if (!value.isValid())
        return {};
    return QString::fromLatin1(DBusCompat::signatureOf(typeOf(value)));
}

} // namespace WireValue
