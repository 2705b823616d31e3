#include "MirrorLink_p.h"

#include "ApplicationMirror.h"
#include "MeasApplNames_p.h"

#include <QDBusPendingCallWatcher>
#include <QElapsedTimer>

namespace {
const QString busDaemon = QStringLiteral("org.freedesktop.DBus");
} // namespace

MirrorLink::MirrorLink(const QDBusConnection &connection, const QString &service)
    : m_connection(connection)
    , m_service(service)
    , m_timeoutMs(ApplicationMirror::defaultCallTimeout)
{
}

void MirrorLink::followOwner(const QString &owner)
{
    m_owner = owner;
    m_ownerKnown = true;
    ++m_generation;
}

void MirrorLink::learnOwner(const QString &owner)
{
    m_owner = owner;
    m_ownerKnown = true;
}

void MirrorLink::send(QObject *context, const QDBusMessage &message, const Answer &answer) const
{
    // The watcher is the context's child: destroying the context destroys it, and with it
    // the only way the answer could reach the context.
    auto *watcher = new QDBusPendingCallWatcher(m_connection.asyncCall(message, m_timeoutMs), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context, [watcher, answer] {
        watcher->deleteLater();
        answer(watcher->reply());
    });
}

void MirrorLink::call(QObject *context, const QString &path, const QString &member, const QList<QVariant> &args,
                      const TimedAnswer &answer) const
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(m_service, path, QLatin1String(MeasAppl::interfaceName), member);
    message.setArguments(args);
    sendTimed(context, message, answer);
}

void MirrorLink::callInterface(QObject *context, const QString &path, const QString &interface, const QString &member,
                               const TimedAnswer &answer) const
{
    sendTimed(context, QDBusMessage::createMethodCall(m_service, path, interface, member), answer);
}

void MirrorLink::sendTimed(QObject *context, const QDBusMessage &message, const TimedAnswer &answer) const
{
    QElapsedTimer sent;
    sent.start();
    const quint64 generation = m_generation;
    std::shared_ptr<const MirrorLink> self = shared_from_this();
    send(context, message, [self, generation, sent, answer](const QDBusMessage &reply) {
        if (self->m_generation == generation && self->isFromFollowedOwner(reply))
            answer(reply, static_cast<double>(sent.nsecsElapsed()) / 1e6);
    });
}

bool MirrorLink::isFromFollowedOwner(const QDBusMessage &reply) const
{
    const QString &sender = reply.service();
    if (reply.type() == QDBusMessage::ErrorMessage && (sender.isEmpty() || sender == busDaemon))
        return true; // the deadline, or the daemon saying that nobody owns the name
    return !m_owner.isEmpty() && sender == m_owner;
}
