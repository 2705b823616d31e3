#include "ApplicationMirror.h"

#include "KindTable.h"
#include "LiveValue.h"
#include "MeasApplNames_p.h"
#include "MirrorLink_p.h"

#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QElapsedTimer>
#include <QTimer>

namespace {
/// How long one pass of the event loop may spend sending reads before it lets others run.
constexpr qint64 sliceNs = 3 * 1000 * 1000;
} // namespace

ApplicationMirror::ApplicationMirror(const QString &applicationName, const QDBusConnection &connection, QObject *parent)
    : QObject(parent)
    , m_link(
          std::make_shared<MirrorLink>(connection, QLatin1String(MeasAppl::servicePrefix) + applicationName.toLower()))
    , m_applicationName(applicationName)
    , m_readPump(new QTimer(this))
{
    // For queued connections and QSignalSpy under Qt 5.
    qRegisterMetaType<LiveValue::State>();
    qRegisterMetaType<LiveValue::WriteState>();
    m_readPump->setSingleShot(true);
    m_readPump->setInterval(0);
    connect(m_readPump, &QTimer::timeout, this, &ApplicationMirror::sendScheduledReads);

    auto *watcher =
        new QDBusServiceWatcher(m_link->service(), connection, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &newOwner) { followOwner(newOwner); });
    // One match rule for every change signal of the application: its service, its
    // interface, any path and member. QtDBus hands on only the owner's signals.
    QDBusConnection(connection)
        .connect(m_link->service(), QString(), QLatin1String(MeasAppl::interfaceName), QString(), this,
                 SLOT(takeBusSignal(QDBusMessage)));
    // Sent after the watcher's rule: an owner change after this answer is seen as a signal.
    m_link->send(this,
                 QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                                QStringLiteral("/org/freedesktop/DBus"),
                                                QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetNameOwner"))
                     << m_link->service(),
                 [this](const QDBusMessage &reply) { learnInitialOwner(reply); });
}

// The values are children: their calls' watchers go with them.
ApplicationMirror::~ApplicationMirror() = default;

QString ApplicationMirror::applicationName() const
{
    return m_applicationName;
}

QString ApplicationMirror::service() const
{
    return m_link->service();
}

bool ApplicationMirror::isOnBus() const
{
    return !m_link->owner().isEmpty();
}

QString ApplicationMirror::owner() const
{
    return m_link->owner();
}

int ApplicationMirror::callTimeout() const
{
    return m_link->timeoutMs();
}

void ApplicationMirror::setCallTimeout(int milliseconds)
{
    if (milliseconds == m_link->timeoutMs())
        return;
    m_link->setTimeoutMs(milliseconds);
    Q_EMIT callTimeoutChanged(milliseconds);
}

LiveValue *ApplicationMirror::value(const QString &path, const QString &kind)
{
    if (LiveValue *known = m_values.value(path))
        return known;
    if (!kind.isEmpty() && !KindTable::find(kind))
        return nullptr;
    auto *live = new LiveValue(path, kind, m_link, this);
    m_values.insert(path, live);
    connect(live, &LiveValue::trafficChanged, this, [this, live] { Q_EMIT trafficChanged(live); });
    connect(live, &QObject::destroyed, this, [this, path, live] {
        if (m_values.value(path) == live)
            m_values.remove(path);
    });
    if (m_link->ownerKnown() && m_link->owner().isEmpty())
        live->applicationLeft();
    else
        scheduleRead(live);
    return live;
}

LiveValue *ApplicationMirror::find(const QString &path) const
{
    return m_values.value(path);
}

QList<LiveValue *> ApplicationMirror::values() const
{
    return m_values.values();
}

void ApplicationMirror::refresh()
{
    m_toRead.clear();
    for (LiveValue *live : qAsConst(m_values))
        scheduleRead(live);
}

void ApplicationMirror::takeBusSignal(const QDBusMessage &message)
{
    // QtDBus filters by owner too; this holds whatever route a signal took.
    if (m_link->owner().isEmpty() || message.service() != m_link->owner())
        return;
    if (LiveValue *live = m_values.value(message.path()))
        live->dispatchSignal(message);
}

void ApplicationMirror::followOwner(const QString &newOwner)
{
    if (m_link->ownerKnown() && newOwner == m_link->owner())
        return;
    const bool wasOnBus = isOnBus();
    m_link->followOwner(newOwner);
    m_toRead.clear();
    for (LiveValue *live : qAsConst(m_values))
        live->applicationLeft();
    if (!newOwner.isEmpty())
        refresh();
    Q_EMIT ownerChanged(newOwner);
    if (wasOnBus != isOnBus())
        Q_EMIT onBusChanged(isOnBus());
}

void ApplicationMirror::learnInitialOwner(const QDBusMessage &reply)
{
    // An owner change seen meanwhile is newer than this answer.
    if (m_link->ownerKnown())
        return;
    const QString owner =
        reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0).toString() : QString();
    m_link->learnOwner(owner);
    if (owner.isEmpty()) {
        m_toRead.clear();
        for (LiveValue *live : qAsConst(m_values))
            live->applicationLeft();
        return;
    }
    Q_EMIT ownerChanged(owner);
    Q_EMIT onBusChanged(true);
}

void ApplicationMirror::scheduleRead(LiveValue *value)
{
    m_toRead.append(value);
    if (!m_readPump->isActive())
        m_readPump->start();
}

void ApplicationMirror::sendScheduledReads()
{
    QElapsedTimer slice;
    slice.start();
    qsizetype next = 0;
    while (next < m_toRead.size() && slice.nsecsElapsed() < sliceNs) {
        if (LiveValue *live = m_toRead.at(next))
            live->readAll();
        ++next;
    }
    m_toRead.erase(m_toRead.begin(), m_toRead.begin() + next);
    if (!m_toRead.isEmpty())
        m_readPump->start();
}
