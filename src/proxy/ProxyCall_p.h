#ifndef DBUSINTERFACES_PROXYCALL_P_H
#define DBUSINTERFACES_PROXYCALL_P_H

// The few ways in which a proxy operation becomes a bus call. Every proxy operation is
// one of these, named with its wire member, its arguments and, where it logs, its text.
// Two families log: replyLoggingLastError() hands back the reply and logs from the
// proxy's lastError(); valueOrEmpty() and its kin hand back a plain value, or its empty
// form after one report line.

#include <QDBusAbstractInterface>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QList>
#include <QString>
#include <QVariant>

namespace ProxyCall {

template<typename... Args>
QList<QVariant> arguments(const Args &...args)
{
    return QList<QVariant>{QVariant::fromValue(args)...};
}

/// Sends @p member and waits for the answer without running the event loop.
QDBusMessage callBlocking(QDBusAbstractInterface &proxy, const QString &member, const QList<QVariant> &args);

/// Blocking call: each argument goes out as its own D-Bus type; the reply converts by
/// QDBusReply's rules (invalid, holding T's default, on any failure).
template<typename T, typename... Args>
QDBusReply<T> blocking(QDBusAbstractInterface &proxy, const QString &member, const Args &...args)
{
    return callBlocking(proxy, member, arguments(args...));
}

/// Blocking list call: as blocking(), for arguments gathered beforehand (wrapped or custom types).
template<typename T>
QDBusReply<T> blockingList(QDBusAbstractInterface &proxy, const QString &member, const QList<QVariant> &args)
{
    return callBlocking(proxy, member, args);
}

/// Blocking void call: waits for the answer, then drops it, errors included.
template<typename... Args>
void blockingVoid(QDBusAbstractInterface &proxy, const QString &member, const Args &...args)
{
    callBlocking(proxy, member, arguments(args...));
}

/// Fire-and-forget call, argument list form: sends and returns; no reply is ever seen.
void fireAndForgetList(QDBusAbstractInterface &proxy, const QString &member, const QList<QVariant> &args);

/// Fire-and-forget call.
template<typename... Args>
void fireAndForget(QDBusAbstractInterface &proxy, const QString &member, const Args &...args)
{
    fireAndForgetList(proxy, member, arguments(args...));
}

/// Variant-wrapped argument: @p value travels as a D-Bus variant ("v") instead of its own type.
QVariant wrapped(const QVariant &value);

/// The literals of replyLoggingLastError()'s lines: the error line, and in the three-line form
/// the interface and path lines. Each is followed by its value on the same line.
struct LastErrorLines
{
    const char *errorLine;
    const char *interfaceLine = nullptr;
    const char *pathLine = nullptr;
};

/// Writes replyLoggingLastError()'s lines for the proxy's lastError(), if it has one.
void logLastError(const QDBusAbstractInterface &proxy, const LastErrorLines &lines);

/// A blocking call without arguments that logs through lastError() and still hands back
/// the reply.
template<typename T>
QDBusReply<T> replyLoggingLastError(QDBusAbstractInterface &proxy, const QString &member, const LastErrorLines &lines)
{
    const QDBusMessage reply = callBlocking(proxy, member, {});
    logLastError(proxy, lines);
    return reply;
}

/// The one-line report of a failed valueOrEmpty() call: [quoted class prefix] literal "service" / "path" / Error:
/// "message".
class FailureReport
{
public:
    FailureReport(const char *literal, const QString &service, const QString &path);
    FailureReport(const QString &classPrefix, const char *literal, const QString &service, const QString &path);

    void write(const QDBusError &error) const;

private:
    const QString *m_classPrefix;
    const char *m_literal;
    const QString &m_service;
    const QString &m_path;
};

/// The reply's value, or R's empty value after writing @p report; arguments gathered beforehand.
template<typename R>
R valueOrEmptyFromList(QDBusAbstractInterface &proxy, const FailureReport &report, const QString &member,
                       const QList<QVariant> &args)
{
    const QDBusReply<R> reply = callBlocking(proxy, member, args);
    if (reply.error().isValid()) {
        report.write(reply.error());
        return R();
    }
    return reply.value();
}

/// The reply read as R, or R's empty value after writing @p report.
template<typename R, typename... Args>
R valueOrEmpty(QDBusAbstractInterface &proxy, const FailureReport &report, const QString &member, const Args &...args)
{
    return valueOrEmptyFromList<R>(proxy, report, member, arguments(args...));
}

/// The value inside the D-Bus variant reply, or an invalid QVariant after writing @p report.
template<typename... Args>
QVariant variantOrEmpty(QDBusAbstractInterface &proxy, const FailureReport &report, const QString &member,
                        const Args &...args)
{
    return valueOrEmpty<QDBusVariant>(proxy, report, member, args...).variant();
}

/// Each element's QVariant::toInt(), in order; an element that does not convert counts as
/// 0, so the result is exactly as long as @p values. For numbers that arrive as variants.
QList<int> toIntList(const QList<QVariant> &values);

} // namespace ProxyCall

#endif
