#include "CommandResult.h"

#include "Values.h"

#include <QDBusError>

void Record::add(const QString &name, const QJsonValue &value)
{
    m_fields.append({name, value});
}

void Record::append(const Record &other)
{
    m_fields += other.m_fields;
}

QJsonArray Record::values() const
{
    QJsonArray values;
    for (const auto &field : m_fields)
        values.append(field.second);
    return values;
}

QJsonObject Record::toJson() const
{
    QJsonObject object;
    for (const auto &field : m_fields)
        object.insert(field.first, field.second);
    return object;
}

QString Record::toText() const
{
    QString text;
    for (const auto &field : m_fields)
        text += field.first + QStringLiteral(": ") + Values::toText(field.second) + QLatin1Char('\n');
    return text;
}

Failure Failure::fromError(const QDBusError &error, const QString &context)
{
    return {ExitCodes::fromError(error), QStringLiteral("%1: %2 (%3)").arg(context, error.message(), error.name())};
}

CommandResult CommandResult::failed(ExitCode code, const QString &message)
{
    return failed(Failure{code, message});
}

CommandResult CommandResult::failed(const Failure &failure)
{
    CommandResult result;
    result.failure = failure;
    return result;
}
