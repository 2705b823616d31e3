#ifndef SIMULATOR_OUTCOME_H
#define SIMULATOR_OUTCOME_H

#include <QString>
#include <QVariantList>

/// What an element answers to one call: reply values, or a D-Bus error.
struct Outcome
{
    QVariantList values;
    QString errorName;
    QString errorMessage;

    bool isError() const { return !errorName.isEmpty(); }

    static Outcome reply(const QVariantList &values = {}) { return {values, {}, {}}; }
    static Outcome value(const QVariant &value) { return {{value}, {}, {}}; }
    static Outcome error(const QString &name, const QString &message) { return {{}, name, message}; }
    /// "No <what>" as the error of a key that names nothing.
    static Outcome unknownKey(const QString &what);
    static Outcome outOfRange(const QString &message);
};

namespace ErrorNames {
constexpr char unknownObject[] = "org.freedesktop.DBus.Error.UnknownObject";
constexpr char unknownMethod[] = "org.freedesktop.DBus.Error.UnknownMethod";
constexpr char invalidArgs[] = "org.freedesktop.DBus.Error.InvalidArgs";
constexpr char failed[] = "org.freedesktop.DBus.Error.Failed";
constexpr char unknownKey[] = "com.velk.mqx.Error.UnknownKey";
constexpr char outOfRange[] = "com.velk.mqx.Error.OutOfRange";
constexpr char noRange[] = "com.velk.mqx.Error.NoRange";
} // namespace ErrorNames

inline Outcome Outcome::unknownKey(const QString &what)
{
    return error(ErrorNames::unknownKey, QStringLiteral("No %1").arg(what));
}

inline Outcome Outcome::outOfRange(const QString &message)
{
    return error(ErrorNames::outOfRange, message);
}

#endif
