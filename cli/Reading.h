#ifndef MEASCTL_READING_H
#define MEASCTL_READING_H

#include "CommandResult.h"
#include "Values.h"

#include <QDBusAbstractInterface>
#include <QDBusReply>
#include <QJsonObject>
#include <QStringList>
#include <QVariant>

#include <optional>
#include <type_traits>

/// What a proxy operation answers: a QDBusReply, or a plain value of the getters that unwrap it.
template<typename T>
struct Answer
{
    using Value = T;
    static const T &valueOf(const T &plain) { return plain; }
};
template<typename T>
struct Answer<QDBusReply<T>>
{
    using Value = T;
    static T valueOf(const QDBusReply<T> &reply) { return reply.value(); }
};

/**
 * Calls through one proxy, gathering what they answer into a record until the first
 * failure; after it, no further call is made. A failure shows in an invalid QDBusReply
 * or, for the getters that hand back plain values, in the proxy's lastError().
 */
class Reading
{
public:
    explicit Reading(const QDBusAbstractInterface &proxy)
        : m_proxy(proxy)
    {
    }

    /// The value that @p call answers, or nothing once a call has failed.
    template<typename Call, typename A = Answer<std::decay_t<decltype(std::declval<Call>()())>>>
    std::optional<typename A::Value> value(const QString &member, Call &&call)
    {
        if (m_result.failure)
            return std::nullopt;
        const auto answer = call();
        if (!check(member, answer))
            return std::nullopt;
        return A::valueOf(answer);
    }

    /// Adds what @p call answers as the field @p name.
    template<typename Call>
    Reading &field(const QString &name, const QString &member, Call &&call)
    {
        if (const auto answer = value(member, call))
            add(name, Values::toJson(QVariant::fromValue(*answer)));
        return *this;
    }

    /// As field(), but an error answer of the application itself (not of the bus: no such
    /// object or member, no answer) gives the field null instead of a failure. For what an
    /// application may not know of every item, such as the limits of a text item.
    template<typename Call>
    Reading &fieldIfKnown(const QString &name, const QString &member, Call &&call)
    {
        const CommandResult before = m_result;
        field(name, member, call);
        if (m_result.failure && !before.failure && m_result.failure->code == ExitCode::BusError) {
            m_result = before;
            add(name, QJsonValue());
        }
        return *this;
    }

    /// What getValue answers for each of @p keys, asked one by one with @p valueOf, as one JSON object.
    template<typename ValueOf>
    QJsonObject valuesByKey(const std::optional<QStringList> &keys, ValueOf &&valueOf)
    {
        QJsonObject values;
        for (const QString &key : keys.value_or(QStringList())) {
            if (const auto answer = value(QStringLiteral("getValue"), [&] { return valueOf(key); }))
                values.insert(key, Values::toJson(*answer));
        }
        return values;
    }

    /// Adds the application's answer to a change as the field "accepted"; false is a refusal.
    template<typename Call>
    Reading &accepted(const QString &member, Call &&call)
    {
        if (const auto answer = value(member, call)) {
            add(QStringLiteral("accepted"), *answer);
            if (!*answer)
                m_result.failure = Failure{ExitCode::Refused, QStringLiteral("the application refused the value")};
        }
        return *this;
    }

    /// Makes a call whose answer carries nothing but success.
    template<typename Call>
    Reading &done(const QString &member, Call &&call)
    {
        if (!m_result.failure) {
            const QDBusReply<void> answer = call();
            if (check(member, answer))
                add(QStringLiteral("done"), true);
        }
        return *this;
    }

    void add(const QString &name, const QJsonValue &value) { m_result.record.add(name, value); }
    bool failed() const { return bool(m_result.failure); }
    CommandResult result() const { return m_result; }

private:
    template<typename T>
    bool check(const QString &member, const QDBusReply<T> &reply)
    {
        return reply.isValid() || fail(member, reply.error());
    }
    template<typename T>
    bool check(const QString &member, const T &)
    {
        const QDBusError error = m_proxy.lastError();
        return !error.isValid() || fail(member, error);
    }
    bool fail(const QString &member, const QDBusError &error)
    {
        m_result.failure = Failure::fromError(error, member);
        return false;
    }

    const QDBusAbstractInterface &m_proxy;
    CommandResult m_result;
};

#endif
