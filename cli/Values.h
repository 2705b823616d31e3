#ifndef MEASCTL_VALUES_H
#define MEASCTL_VALUES_H

#include <QJsonValue>
#include <QMap>
#include <QString>
#include <QVariant>

#include <optional>

/**
 * Values between the command line, the proxies and the output: parsing of command-line
 * texts for each kind of value, and the JSON form of whatever a proxy hands back.
 */
namespace Values {

/// The JSON form of a value from a proxy; structured D-Bus values (QDBusArgument,
/// QDBusVariant) are unpacked, a time stamp becomes ISO 8601 text, an invalid value null.
QJsonValue toJson(const QVariant &value);
/// The JSON value that @p text holds; the text itself when it holds none.
QJsonValue fromJsonText(const QString &text);
/// For a "name: value" line: texts bare unless that would mislead (empty, line breaks and
/// other control characters, blanks at either end, a leading quote: then as a JSON string),
/// null as "null", everything else as compact JSON. A non-finite number is {"double": "inf"},
/// {"double": "-inf"} or {"double": "nan"}, as toJson() gives it.
QString toText(const QJsonValue &value);
/// As toText(), for one of several blank-separated words: a text with blanks is quoted too.
QString toWord(const QJsonValue &value);

/// Digits with an optional sign, whatever their size.
bool isWholeNumber(const QString &text);

/// A decimal int32, with an optional sign.
std::optional<int> parseInt(const QString &text);
/// A real number in C notation; "nan" and "inf" are accepted and passed on as such.
std::optional<double> parseDouble(const QString &text);
/// true, false, 1 or 0.
std::optional<bool> parseBool(const QString &text);
/// A value of any type: a whole number goes out as int32 (int64 when larger), a real number
/// as double, true/false as bool, a JSON string, array or object as such; any other text as
/// a string. Nothing for text that starts like JSON ([, {, ") but is not.
std::optional<QVariant> parseAny(const QString &text);
/// A JSON array; its elements as parseAny turns JSON into values.
std::optional<QVariantList> parseArray(const QString &text);
/// A JSON object.
std::optional<QVariantMap> parseObject(const QString &text);
/// A JSON object whose every value is a JSON object.
std::optional<QMap<QString, QVariantMap>> parseMapOfMaps(const QString &text);

} // namespace Values

#endif
