#ifndef DBUSINTERFACES_MIRRORLINK_P_H
#define DBUSINTERFACES_MIRRORLINK_P_H

#include <QDBusConnection>
#include <QDBusMessage>
#include <QList>
#include <QString>
#include <QVariant>

#include <functional>
#include <memory>

class QObject;

/**
 * What an ApplicationMirror shares with its live values: the connection, the service, the
 * owner it follows and the deadline, and the one way they call the application: without
 * waiting, the answer delivered on the event loop to a context object, or never when the
 * context is gone first.
 */
class MirrorLink : public std::enable_shared_from_this<MirrorLink>
{
public:
    using Answer = std::function<void(const QDBusMessage &reply)>;
    /// The answer and how long it took, in milliseconds.
    using TimedAnswer = std::function<void(const QDBusMessage &reply, double latencyMs)>;

    MirrorLink(const QDBusConnection &connection, const QString &service);

    const QDBusConnection &connection() const { return m_connection; }
    const QString &service() const { return m_service; }

    /// The unique name of the application's current owner; empty while it is off the bus.
    const QString &owner() const { return m_owner; }
    /// Whether the owner has been learnt (from the bus daemon or an owner change) at all.
    bool ownerKnown() const { return m_ownerKnown; }
    /// Follows a new owner: answers to calls sent before are dropped from now on.
    void followOwner(const QString &owner);
    /// The owner as the daemon named it at start-up; calls already sent keep their answers.
    void learnOwner(const QString &owner);

    int timeoutMs() const { return m_timeoutMs; }
    void setTimeoutMs(int timeoutMs) { m_timeoutMs = timeoutMs; }

    /// Sends @p message with the deadline; @p answer runs on @p context's thread, unless
    /// @p context is destroyed first.
    void send(QObject *context, const QDBusMessage &message, const Answer &answer) const;

    /// Calls @p member of the application interface on @p path of the application. The
    /// answer is handed on only while the owner that the call went to is still followed
    /// and came from that owner (or is the bus's own error, such as the deadline).
    void call(QObject *context, const QString &path, const QString &member, const QList<QVariant> &args,
              const TimedAnswer &answer) const;
    /// As call(), on another interface of the object (introspection).
    void callInterface(QObject *context, const QString &path, const QString &interface, const QString &member,
                       const TimedAnswer &answer) const;

private:
    void sendTimed(QObject *context, const QDBusMessage &message, const TimedAnswer &answer) const;
    bool isFromFollowedOwner(const QDBusMessage &reply) const;

    QDBusConnection m_connection;
    QString m_service;
    QString m_owner;
    bool m_ownerKnown = false;
    quint64 m_generation = 0;
    int m_timeoutMs;
};

#endif
