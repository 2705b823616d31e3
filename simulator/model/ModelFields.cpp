#include "ModelFields.h"

#include "Wire.h"

#include <cmath>

QJsonValue ModelFields::required(const QString &key) const
{
    if (!has(key))
        throw ModelError{QStringLiteral("missing field \"%1\"").arg(key)};
    return m_object.value(key);
}

double ModelFields::number(const QString &key) const
{
    const QJsonValue value = required(key);
    if (!value.isDouble())
        throw ModelError{QStringLiteral("field \"%1\" must be a number").arg(key)};
    return value.toDouble();
}

int ModelFields::integer(const QString &key) const
{
    const double value = number(key);
    if (value != std::floor(value) || std::fabs(value) > 2147483647.0)
        throw ModelError{QStringLiteral("field \"%1\" must be an integer").arg(key)};
    return int(value);
}

QString ModelFields::text(const QString &key) const
{
    const QJsonValue value = required(key);
    if (!value.isString())
        throw ModelError{QStringLiteral("field \"%1\" must be a text").arg(key)};
    return value.toString();
}

bool ModelFields::flag(const QString &key, bool fallback) const
{
    if (!has(key))
        return fallback;
    if (!m_object.value(key).isBool())
        throw ModelError{QStringLiteral("field \"%1\" must be true or false").arg(key)};
    return m_object.value(key).toBool();
}

QJsonArray ModelFields::array(const QString &key) const
{
    const QJsonValue value = required(key);
    if (!value.isArray())
        throw ModelError{QStringLiteral("field \"%1\" must be an array").arg(key)};
    return value.toArray();
}

QJsonObject ModelFields::object(const QString &key) const
{
    const QJsonValue value = required(key);
    if (!value.isObject())
        throw ModelError{QStringLiteral("field \"%1\" must be an object").arg(key)};
    return value.toObject();
}

QStringList ModelFields::texts(const QString &key) const
{
    QStringList result;
    for (const QJsonValue &value : array(key)) {
        if (!value.isString())
            throw ModelError{QStringLiteral("field \"%1\" must hold texts only").arg(key)};
        result.append(value.toString());
    }
    return result;
}

QStringList ModelFields::choices(const QString &key) const
{
    const QStringList result = texts(key);
    if (result.isEmpty())
        throw ModelError{QStringLiteral("\"%1\" is empty").arg(key)};
    for (const QString &choice : result) {
        if (choice.contains(QLatin1Char(';')))
            throw ModelError{
                QStringLiteral("choice \"%1\" holds \";\", which separates the choices in the value list").arg(choice)};
    }
    return result;
}

QVariant ModelFields::scalar(const QString &key) const
{
    const QJsonValue value = required(key);
    if (value.isArray() || value.isObject() || value.isNull())
        throw ModelError{QStringLiteral("field \"%1\" must be a number, text or true/false").arg(key)};
    return Wire::fromJson(value);
}

NumericRange ModelFields::range(bool required) const
{
    NumericRange range;
    if (!required && !has(QStringLiteral("min")) && !has(QStringLiteral("max")))
        return range;
    range.min = number(QStringLiteral("min"));
    range.max = number(QStringLiteral("max"));
    range.bounded = true;
    if (range.min > range.max)
        throw ModelError{QStringLiteral("min %1 is above max %2").arg(range.min).arg(range.max)};
    return range;
}

void ModelFields::refuseUnread(const QString &where) const
{
    for (auto it = m_object.constBegin(); it != m_object.constEnd(); ++it) {
        if (m_consulted.contains(it.key()))
            continue;
        const QString problem = QStringLiteral("unknown field \"%1\"").arg(it.key());
        throw ModelError{where.isEmpty() ? problem : QStringLiteral("%1: %2").arg(where, problem)};
    }
}

void ModelFields::check(const QString &refusal, const QString &what)
{
    if (!refusal.isEmpty())
        throw ModelError{QStringLiteral("%1: %2").arg(what, refusal)};
}
