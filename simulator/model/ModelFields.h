#ifndef SIMULATOR_MODELFIELDS_H
#define SIMULATOR_MODELFIELDS_H

#include "NumericRange.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariant>

/// A problem in the model file; carries the text of the message.
struct ModelError
{
    QString problem;
};

/// Typed access to the fields of one JSON object of a model file, failing with the field's name.
class ModelFields
{
public:
    explicit ModelFields(const QJsonObject &object)
        : m_object(object)
    {
    }

    bool has(const QString &key) const
    {
        m_consulted.insert(key);
        return m_object.contains(key);
    }
    QJsonValue required(const QString &key) const;

    double number(const QString &key) const;
    double number(const QString &key, double fallback) const { return has(key) ? number(key) : fallback; }
    int integer(const QString &key) const;
    int integer(const QString &key, int fallback) const { return has(key) ? integer(key) : fallback; }
    QString text(const QString &key) const;
    QString text(const QString &key, const QString &fallback) const { return has(key) ? text(key) : fallback; }
    bool flag(const QString &key, bool fallback) const;
    QJsonArray array(const QString &key) const;
    QJsonObject object(const QString &key) const;
    QStringList texts(const QString &key) const;
    /// Texts to choose from: at least one, none holding ";" (which joins them in getValueList).
    QStringList choices(const QString &key) const;
    /// A JSON scalar as the value the element holds.
    QVariant scalar(const QString &key) const;
    /// "min" and "max"; unbounded when not @p required and both are missing.
    NumericRange range(bool required) const;

    /// Fails with "@p what: @p refusal" unless @p refusal is empty.
    static void check(const QString &refusal, const QString &what);

    /// Fails on a field that no reader asked for (the fields a kind knows are those it reads),
    /// naming @p where it is unless empty.
    void refuseUnread(const QString &where = QString()) const;

private:
    QJsonObject m_object;
    mutable QSet<QString> m_consulted;
};

#endif
