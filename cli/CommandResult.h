#ifndef MEASCTL_COMMANDRESULT_H
#define MEASCTL_COMMANDRESULT_H

#include "ExitCode.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QPair>
#include <QString>
#include <QVector>

#include <optional>

class QDBusError;

/// Named fields in the order they were read: one command's answer, for people or for scripts.
class Record
{
public:
    void add(const QString &name, const QJsonValue &value);
    /// Adds the fields of @p other after these.
    void append(const Record &other);
    bool isEmpty() const { return m_fields.isEmpty(); }
    /// The fields' values in their order.
    QJsonArray values() const;

    QJsonObject toJson() const;
    /// "name: value" lines; texts bare, structured values as compact JSON.
    QString toText() const;

private:
    QVector<QPair<QString, QJsonValue>> m_fields;
};

struct Failure
{
    ExitCode code;
    QString message;

    static Failure fromError(const QDBusError &error, const QString &context);
};

/// What a command produced: its fields, and a failure if it did not succeed.
struct CommandResult
{
    Record record;
    std::optional<Failure> failure;
    /// For people, instead of the record's lines when not empty.
    QString text;

    static CommandResult failed(ExitCode code, const QString &message);
    static CommandResult failed(const Failure &failure);
    ExitCode exitCode() const { return failure ? failure->code : ExitCode::Success; }
};

#endif
