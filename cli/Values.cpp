#include "Values.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusSignature>
#include <QDBusVariant>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Values {

namespace {

QJsonValue fromArgument(const QDBusArgument &argument)
{
    switch (argument.currentType()) {
    case QDBusArgument::BasicType:
        return toJson(argument.asVariant());
    case QDBusArgument::VariantType: {
        QDBusVariant inner;
        argument >> inner;
        return toJson(inner.variant());
    }
    case QDBusArgument::ArrayType: {
        QJsonArray array;
        argument.beginArray();
        while (!argument.atEnd())
            array.append(fromArgument(argument));
        argument.endArray();
        return array;
    }
    case QDBusArgument::StructureType: {
        QJsonArray fields;
        argument.beginStructure();
        while (!argument.atEnd())
            fields.append(fromArgument(argument));
        argument.endStructure();
        return fields;
    }
    case QDBusArgument::MapType: {
        QJsonObject object;
        argument.beginMap();
        while (!argument.atEnd()) {
            argument.beginMapEntry();
            const QJsonValue keyValue = fromArgument(argument);
            const QString key = keyValue.isString() ? keyValue.toString() : toText(keyValue);
            object.insert(key, fromArgument(argument));
            argument.endMapEntry();
        }
        argument.endMap();
        return object;
    }
    default:
        return QJsonValue();
    }
}

template<typename List>
QJsonArray arrayOf(const List &list)
{
    QJsonArray array;
    for (const auto &element : list)
        array.append(toJson(QVariant::fromValue(element)));
    return array;
}

template<typename Map>
QJsonObject objectOf(const Map &map)
{
    QJsonObject object;
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        object.insert(it.key(), toJson(QVariant::fromValue(it.value())));
    return object;
}

// JSON numbers have no integer type; whole numbers go out as integers.
QVariant numberFromJson(double number)
{
    if (std::floor(number) == number && std::abs(number) < 9007199254740992.0) {
        const auto whole = static_cast<qint64>(number);
        if (whole >= std::numeric_limits<int>::min() && whole <= std::numeric_limits<int>::max())
            return QVariant(static_cast<int>(whole));
        return QVariant(whole);
    }
    return QVariant(number);
}

QVariant fromJson(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Bool:
        return value.toBool();
    case QJsonValue::Double:
        return numberFromJson(value.toDouble());
    case QJsonValue::String:
        return value.toString();
    case QJsonValue::Array: {
        QVariantList list;
        for (const QJsonValue &element : value.toArray())
            list.append(fromJson(element));
        return list;
    }
    case QJsonValue::Object: {
        QVariantMap map;
        const QJsonObject object = value.toObject();
        for (auto it = object.begin(); it != object.end(); ++it)
            map.insert(it.key(), fromJson(it.value()));
        return map;
    }
    default:
        return QVariant();
    }
}

bool containsNull(const QJsonValue &value)
{
    if (value.isNull())
        return true;
    if (value.isArray()) {
        const QJsonArray array = value.toArray();
        return std::any_of(array.begin(), array.end(), [](const QJsonValue &element) { return containsNull(element); });
    }
    if (value.isObject()) {
        const QJsonObject object = value.toObject();
        return std::any_of(object.begin(), object.end(),
                           [](const QJsonValue &element) { return containsNull(element); });
    }
    return false;
}

// Any JSON value, the top level included ("5", "\"x\""). Not one with a null inside: D-Bus
// has no empty value, and QtDBus would fail to send it.
std::optional<QJsonValue> anyJson(const QString &text)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(("[" + text + "]").toUtf8(), &error);
    if (error.error != QJsonParseError::NoError || document.array().size() != 1)
        return std::nullopt;
    return document.array().first();
}

std::optional<QJsonValue> parseJson(const QString &text)
{
    const auto json = anyJson(text);
    if (!json || containsNull(*json))
        return std::nullopt;
    return json;
}

// Text that a bare line would misrepresent: empty, with line breaks or other control
// characters, blanks at either end, or a leading quote.
bool needsQuotes(const QString &text, bool blanksSeparate)
{
    if (text.isEmpty() || text.startsWith(QLatin1Char('"')) || text.front().isSpace() || text.back().isSpace())
        return true;
    return std::any_of(text.begin(), text.end(), [blanksSeparate](QChar c) {
        return c.unicode() < 0x20 || c.unicode() == 0x7f || (blanksSeparate && c.isSpace());
    });
}

QString quoted(const QString &text)
{
    const QByteArray wrapped = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(wrapped.mid(1, wrapped.size() - 2));
}

QJsonValue numberToJson(double number)
{
    if (std::isfinite(number))
        return number;
    // JSON has no such numbers, and QJsonDocument would write null.
    const QString spelled = std::isnan(number) ? QStringLiteral("nan")
        : number > 0                           ? QStringLiteral("inf")
                                               : QStringLiteral("-inf");
    return QJsonObject{{QStringLiteral("double"), spelled}};
}

} // namespace

QJsonValue toJson(const QVariant &value)
{
    const int type = value.userType();
    switch (type) {
    case QMetaType::UnknownType:
        return QJsonValue();
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::UChar:
    case QMetaType::Char:
    case QMetaType::SChar:
        return value.toInt();
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return value.toLongLong();
    case QMetaType::Double:
    case QMetaType::Float:
        return numberToJson(value.toDouble());
    case QMetaType::QString:
        return value.toString();
    case QMetaType::QByteArray:
        return QString::fromLatin1(value.toByteArray().toBase64());
    case QMetaType::QStringList:
        return QJsonArray::fromStringList(value.toStringList());
    case QMetaType::QVariantList:
        return arrayOf(value.toList());
    case QMetaType::QVariantMap:
        return objectOf(value.toMap());
    case QMetaType::QDateTime:
        return value.toDateTime().toString(Qt::ISODateWithMs);
    default:
        break;
    }
    if (type == qMetaTypeId<QDBusArgument>())
        return fromArgument(value.value<QDBusArgument>());
    if (type == qMetaTypeId<QDBusVariant>())
        return toJson(value.value<QDBusVariant>().variant());
    if (type == qMetaTypeId<QDBusObjectPath>())
        return value.value<QDBusObjectPath>().path();
    if (type == qMetaTypeId<QDBusSignature>())
        return value.value<QDBusSignature>().signature();
    if (type == qMetaTypeId<QList<int>>())
        return arrayOf(value.value<QList<int>>());
    if (type == qMetaTypeId<QList<double>>())
        return arrayOf(value.value<QList<double>>());
    if (type == qMetaTypeId<QMap<QString, QString>>())
        return objectOf(value.value<QMap<QString, QString>>());
    return value.toString();
}

QJsonValue fromJsonText(const QString &text)
{
    return anyJson(text).value_or(QJsonValue(text));
}

QString toWord(const QJsonValue &value)
{
    if (value.isString() && needsQuotes(value.toString(), true))
        return quoted(value.toString());
    return toText(value);
}

QString toText(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::String:
        return needsQuotes(value.toString(), false) ? quoted(value.toString()) : value.toString();
    case QJsonValue::Array:
        return QString::fromUtf8(QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact));
    case QJsonValue::Object:
        return QString::fromUtf8(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
    default: {
        // A scalar: let the JSON writer spell it (true, 2.5, null).
        const QByteArray wrapped = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
        return QString::fromUtf8(wrapped.mid(1, wrapped.size() - 2));
    }
    }
}

bool isWholeNumber(const QString &text)
{
    static const QRegularExpression wholeNumber(QStringLiteral("^[+-]?[0-9]+$"));
    return wholeNumber.match(text.trimmed()).hasMatch();
}

std::optional<int> parseInt(const QString &text)
{
    bool ok = false;
    const int value = text.trimmed().toInt(&ok, 10);
    if (!ok)
        return std::nullopt;
    return value;
}

std::optional<double> parseDouble(const QString &text)
{
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    if (!ok)
        return std::nullopt;
    return value;
}

std::optional<bool> parseBool(const QString &text)
{
    const QString word = text.trimmed().toLower();
    if (word == QLatin1String("true") || word == QLatin1String("1"))
        return true;
    if (word == QLatin1String("false") || word == QLatin1String("0"))
        return false;
    return std::nullopt;
}

std::optional<QVariant> parseAny(const QString &text)
{
    const QString trimmed = text.trimmed();
    if (isWholeNumber(trimmed)) {
        bool ok = false;
        const qlonglong whole = trimmed.toLongLong(&ok);
        if (ok && whole >= std::numeric_limits<int>::min() && whole <= std::numeric_limits<int>::max())
            return QVariant(static_cast<int>(whole));
        if (ok)
            return QVariant(whole);
    }
    if (const auto real = parseDouble(trimmed))
        return QVariant(*real);
    if (trimmed == QLatin1String("true") || trimmed == QLatin1String("false"))
        return QVariant(trimmed == QLatin1String("true"));
    if (trimmed.startsWith(QLatin1Char('[')) || trimmed.startsWith(QLatin1Char('{')) ||
        trimmed.startsWith(QLatin1Char('"'))) {
        const auto json = parseJson(trimmed);
        if (!json)
            return std::nullopt;
        return fromJson(*json);
    }
    return QVariant(text);
}

std::optional<QVariantList> parseArray(const QString &text)
{
    const auto json = parseJson(text);
    if (!json || !json->isArray())
        return std::nullopt;
    return fromJson(*json).toList();
}

std::optional<QVariantMap> parseObject(const QString &text)
{
    const auto json = parseJson(text);
    if (!json || !json->isObject())
        return std::nullopt;
    return fromJson(*json).toMap();
}

std::optional<QMap<QString, QVariantMap>> parseMapOfMaps(const QString &text)
{
    const auto object = parseObject(text);
    if (!object)
        return std::nullopt;
    QMap<QString, QVariantMap> maps;
    for (auto it = object->cbegin(); it != object->cend(); ++it) {
        if (it.value().userType() != QMetaType::QVariantMap)
            return std::nullopt;
        maps.insert(it.key(), it.value().toMap());
    }
    return maps;
}

} // namespace Values
