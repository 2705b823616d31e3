#include "MemberCall.h"

#include "Values.h"

#include <QDBusVariant>

namespace MemberCall {

namespace {

/// The length of the complete type that starts at @p at of @p signature; 0 when there is none.
qsizetype typeLength(const QString &signature, qsizetype at)
{
    if (at >= signature.size())
        return 0;
    const QChar first = signature.at(at);
    if (first == QLatin1Char('a')) {
        const qsizetype element = typeLength(signature, at + 1);
        return element == 0 ? 0 : 1 + element;
    }
    if (first != QLatin1Char('(') && first != QLatin1Char('{'))
        return QStringLiteral("ybnqiuxtdsogvh").contains(first) ? 1 : 0;
    const QChar close = first == QLatin1Char('(') ? QLatin1Char(')') : QLatin1Char('}');
    qsizetype length = 1;
    while (at + length < signature.size() && signature.at(at + length) != close) {
        const qsizetype inner = typeLength(signature, at + length);
        if (inner == 0)
            return 0;
        length += inner;
    }
    return at + length < signature.size() ? length + 1 : 0;
}

template<typename T>
std::optional<QVariant> asVariant(const std::optional<T> &value)
{
    return value ? std::optional<QVariant>(QVariant::fromValue(*value)) : std::nullopt;
}

template<typename T, typename Parse>
std::optional<QVariant> listOf(const QString &word, Parse &&parse)
{
    const auto list = Values::parseArray(word);
    if (!list)
        return std::nullopt;
    QList<T> values;
    for (const QVariant &element : *list) {
        const auto value = parse(element);
        if (!value)
            return std::nullopt;
        values.append(*value);
    }
    return QVariant::fromValue(values);
}

std::optional<QVariant> argument(const QString &type, const QString &word)
{
    if (type == QLatin1String("s"))
        return QVariant(word);
    if (type == QLatin1String("i"))
        return asVariant(Values::parseInt(word));
    if (type == QLatin1String("x") || type == QLatin1String("u")) {
        bool ok = false;
        const qlonglong value = word.trimmed().toLongLong(&ok);
        if (!ok || (type == QLatin1String("u") && (value < 0 || value > 0xffffffffLL)))
            return std::nullopt;
        return type == QLatin1String("x") ? QVariant(value) : QVariant(static_cast<uint>(value));
    }
    if (type == QLatin1String("d"))
        return asVariant(Values::parseDouble(word));
    if (type == QLatin1String("b"))
        return asVariant(Values::parseBool(word));
    if (type == QLatin1String("v")) {
        const auto value = Values::parseAny(word);
        return value ? std::optional<QVariant>(QVariant::fromValue(QDBusVariant(*value))) : std::nullopt;
    }
    if (type == QLatin1String("a{sv}"))
        return asVariant(Values::parseObject(word));
    if (type == QLatin1String("av"))
        return asVariant(Values::parseArray(word));
    if (type == QLatin1String("as"))
        return listOf<QString>(word, [](const QVariant &element) {
            return element.userType() == QMetaType::QString ? std::optional<QString>(element.toString()) : std::nullopt;
        });
    if (type == QLatin1String("ai"))
        return listOf<int>(word, [](const QVariant &element) {
            return element.userType() == QMetaType::Int ? std::optional<int>(element.toInt()) : std::nullopt;
        });
    if (type == QLatin1String("ad"))
        return listOf<double>(word, [](const QVariant &element) {
            bool ok = false;
            const double value = element.toDouble(&ok);
            return ok && element.userType() != QMetaType::Bool ? std::optional<double>(value) : std::nullopt;
        });
    return std::nullopt;
}

} // namespace

QStringList completeTypes(const QString &signature)
{
    QStringList types;
    for (qsizetype at = 0; at < signature.size();) {
        const qsizetype length = typeLength(signature, at);
        if (length == 0)
            return {};
        types.append(signature.mid(at, length));
        at += length;
    }
    return types;
}

std::optional<QVariantList> arguments(const QString &signature, const QStringList &words, QString &problem)
{
    const QStringList types = completeTypes(signature);
    if (types.size() != words.size()) {
        problem =
            QStringLiteral("(%1) takes %2 argument(s), not %3").arg(signature).arg(types.size()).arg(words.size());
        return std::nullopt;
    }
    QVariantList values;
    for (qsizetype i = 0; i < types.size(); ++i) {
        const auto value = argument(types.at(i), words.at(i));
        if (!value) {
            problem = QStringLiteral("'%1' is not a value of D-Bus type %2").arg(words.at(i), types.at(i));
            return std::nullopt;
        }
        values.append(*value);
    }
    return values;
}

} // namespace MemberCall
