#include "FakeMeasApplication.h"

#include "BusTestSupport.h"

#include <QAtomicInt>
#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QDeadlineTimer>
#include <QHash>
#include <QMutex>
#include <QMutexLocker>
#include <QPair>
#include <QThread>

#include <optional>

const QString FakeMeasApplication::interfaceName = QStringLiteral("com.velk.mqx.MeasApplInterface");
const QString FakeMeasApplication::notScriptedError = QStringLiteral("com.velk.mqx.Error.NotScripted");

ScriptedAnswer ScriptedAnswer::reply(const QList<QVariant> &arguments)
{
    ScriptedAnswer answer;
    answer.arguments = arguments;
    return answer;
}

ScriptedAnswer ScriptedAnswer::value(const QVariant &value)
{
    return reply({value});
}

ScriptedAnswer ScriptedAnswer::error(const QString &name, const QString &message)
{
    ScriptedAnswer answer;
    answer.kind = Error;
    answer.errorName = name;
    answer.errorMessage = message;
    return answer;
}

ScriptedAnswer ScriptedAnswer::silence()
{
    ScriptedAnswer answer;
    answer.kind = Silence;
    return answer;
}

ScriptedAnswer ScriptedAnswer::vanish()
{
    ScriptedAnswer answer;
    answer.kind = Vanish;
    return answer;
}

namespace {

QString nextConnectionName()
{
    static QAtomicInt counter;
    return QStringLiteral("fake-meas-app-%1").arg(counter.fetchAndAddRelaxed(1));
}

} // namespace

/// The part that lives on the fake's own thread and connection.
class FakePeer : public QDBusVirtualObject
{
    Q_OBJECT

public:
    explicit FakePeer(const QString &service)
        : m_service(service)
        , m_connectionName(nextConnectionName())
    {
    }

    QString introspect(const QString &) const override { return QString(); }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        ScriptedAnswer answer;
        {
            QMutexLocker lock(&m_mutex);
            m_calls.append(
                {message.path(), message.interface(), message.member(), message.signature(), message.arguments()});
            answer = answerFor(message.path(), message.member());
        }
        switch (answer.kind) {
        case ScriptedAnswer::Reply:
            connection.send(message.createReply(answer.arguments));
            break;
        case ScriptedAnswer::Error:
            connection.send(message.createErrorReply(answer.errorName, answer.errorMessage));
            break;
        case ScriptedAnswer::Silence:
            message.setDelayedReply(true);
            break;
        case ScriptedAnswer::Vanish:
            message.setDelayedReply(true);
            QMetaObject::invokeMethod(this, "leaveBus", Qt::QueuedConnection);
            break;
        }
        return true;
    }

    ScriptedAnswer answerFor(const QString &path, const QString &member) const
    {
        const auto exact = m_answers.constFind(qMakePair(path, member));
        if (exact != m_answers.constEnd())
            return *exact;
        const auto anyPath = m_answers.constFind(qMakePair(QString(), member));
        if (anyPath != m_answers.constEnd())
            return *anyPath;
        if (m_unscripted)
            return *m_unscripted;
        return ScriptedAnswer::error(FakeMeasApplication::notScriptedError,
                                     QStringLiteral("nothing scripted for %1 on %2").arg(member, path));
    }

    Q_INVOKABLE void joinBus()
    {
        QDBusConnection connection = QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_connectionName);
        connection.registerVirtualObject(QStringLiteral("/"), this, QDBusConnection::SubPath);
        connection.registerService(m_service);
        m_uniqueName = connection.baseService();
    }

    Q_INVOKABLE void releaseService() { connection().unregisterService(m_service); }

    Q_INVOKABLE void leaveBus()
    {
        QDBusConnection connection(m_connectionName);
        if (!connection.isConnected())
            return;
        connection.unregisterObject(QStringLiteral("/"), QDBusConnection::UnregisterTree);
        QDBusConnection::disconnectFromBus(m_connectionName);
    }

    void start()
    {
        moveToThread(&m_thread);
        m_thread.start();
        QMetaObject::invokeMethod(this, "joinBus", Qt::BlockingQueuedConnection);
    }

    void stop()
    {
        QMetaObject::invokeMethod(this, "leaveBus", Qt::BlockingQueuedConnection);
        m_thread.quit();
        m_thread.wait();
        if (!m_foreignName.isEmpty())
            QDBusConnection::disconnectFromBus(m_foreignName);
    }

    QDBusConnection connection() const { return QDBusConnection(m_connectionName); }

    QDBusConnection foreignConnection()
    {
        if (m_foreignName.isEmpty()) {
            m_foreignName = m_connectionName + QStringLiteral("-foreign");
            QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_foreignName);
        }
        return QDBusConnection(m_foreignName);
    }

    const QString m_service;
    const QString m_connectionName;
    QString m_foreignName;
    QString m_uniqueName;
    QThread m_thread;

    mutable QMutex m_mutex;
    QHash<QPair<QString, QString>, ScriptedAnswer> m_answers;
    std::optional<ScriptedAnswer> m_unscripted;
    QList<ReceivedCall> m_calls;
};

QString FakeMeasApplication::serviceFor(const QString &appName)
{
    return QStringLiteral("com.velk.mqx.app.") + appName;
}

FakeMeasApplication::FakeMeasApplication(const QString &service)
    : m_peer(new FakePeer(service))
{
    // The caller's session connection holds incoming messages back until the caller's event
    // loop first runs. Let it run, or owner changes of earlier fakes wait in that queue and
    // mislead the proxies' owner tracking once a later test listens for a signal.
    QDBusConnection::sessionBus();
    QCoreApplication::processEvents();
    m_peer->start();
}

FakeMeasApplication::~FakeMeasApplication()
{
    m_peer->stop();
}

QString FakeMeasApplication::service() const
{
    return m_peer->m_service;
}

QString FakeMeasApplication::uniqueName() const
{
    return m_peer->m_uniqueName;
}

void FakeMeasApplication::answer(const QString &member, const ScriptedAnswer &answer)
{
    this->answer(QString(), member, answer);
}

void FakeMeasApplication::answer(const QString &path, const QString &member, const ScriptedAnswer &answer)
{
    QMutexLocker lock(&m_peer->m_mutex);
    m_peer->m_answers.insert(qMakePair(path, member), answer);
}

void FakeMeasApplication::answerUnscripted(const ScriptedAnswer &answer)
{
    QMutexLocker lock(&m_peer->m_mutex);
    m_peer->m_unscripted = answer;
}

QList<ReceivedCall> FakeMeasApplication::calls() const
{
    QMutexLocker lock(&m_peer->m_mutex);
    return m_peer->m_calls;
}

int FakeMeasApplication::callCount() const
{
    QMutexLocker lock(&m_peer->m_mutex);
    return m_peer->m_calls.size();
}

bool FakeMeasApplication::waitForCalls(int count, int timeoutMs) const
{
    QDeadlineTimer deadline(timeoutMs);
    while (callCount() < count) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(2);
    }
    return true;
}

void FakeMeasApplication::clearCalls()
{
    QMutexLocker lock(&m_peer->m_mutex);
    m_peer->m_calls.clear();
}

namespace {

/// Sends @p signal with @p arguments and returns once the bus daemon has routed it.
void sendRouted(const QDBusConnection &connection, QDBusMessage signal, const QList<QVariant> &arguments)
{
    signal.setArguments(arguments);
    connection.send(signal);
    syncWithBus(connection);
}

} // namespace

void FakeMeasApplication::emitSignal(const QString &path, const QString &member, const QList<QVariant> &arguments,
                                     const QString &interface)
{
    sendRouted(m_peer->connection(), QDBusMessage::createSignal(path, interface, member), arguments);
}

void FakeMeasApplication::emitForeignSignal(const QString &path, const QString &member,
                                            const QList<QVariant> &arguments, const QString &interface)
{
    sendRouted(m_peer->foreignConnection(), QDBusMessage::createSignal(path, interface, member), arguments);
}

void FakeMeasApplication::emitForeignSignalTo(const QString &destination, const QString &path, const QString &member,
                                              const QList<QVariant> &arguments, const QString &interface)
{
    sendRouted(m_peer->foreignConnection(), QDBusMessage::createTargetedSignal(destination, path, interface, member),
               arguments);
}

QString FakeMeasApplication::foreignUniqueName() const
{
    return m_peer->foreignConnection().baseService();
}

void FakeMeasApplication::releaseService()
{
    QMetaObject::invokeMethod(m_peer.get(), "releaseService", Qt::BlockingQueuedConnection);
}

QString wireText(const QDBusArgument &argument)
{
    const QDBusArgument copy = argument;
    const QString signature = copy.currentSignature();
    QStringList items;
    switch (copy.currentType()) {
    case QDBusArgument::BasicType:
    case QDBusArgument::VariantType:
        return wireText(copy.asVariant());
    case QDBusArgument::ArrayType:
        copy.beginArray();
        while (!copy.atEnd())
            items.append(wireText(copy.asVariant()));
        copy.endArray();
        return signature + QStringLiteral(" [") + items.join(QStringLiteral(", ")) + QLatin1Char(']');
    case QDBusArgument::MapType:
        copy.beginMap();
        while (!copy.atEnd()) {
            copy.beginMapEntry();
            const QString key = wireText(copy.asVariant());
            items.append(key + QStringLiteral(": ") + wireText(copy.asVariant()));
            copy.endMapEntry();
        }
        copy.endMap();
        return signature + QStringLiteral(" {") + items.join(QStringLiteral(", ")) + QLatin1Char('}');
    case QDBusArgument::StructureType:
        copy.beginStructure();
        while (!copy.atEnd())
            items.append(wireText(copy.asVariant()));
        copy.endStructure();
        return signature + QStringLiteral(" (") + items.join(QStringLiteral(", ")) + QLatin1Char(')');
    case QDBusArgument::MapEntryType:
    case QDBusArgument::UnknownType:
        break;
    }
    return QStringLiteral("<unreadable ") + signature + QLatin1Char('>');
}

QString wireText(const QVariant &value)
{
    const int type = value.userType();
    if (type == qMetaTypeId<QDBusVariant>())
        return QStringLiteral("v(") + wireText(qvariant_cast<QDBusVariant>(value).variant()) + QLatin1Char(')');
    if (type == qMetaTypeId<QDBusArgument>())
        return wireText(qvariant_cast<QDBusArgument>(value));
    if (type == qMetaTypeId<QDBusObjectPath>())
        return QStringLiteral("o ") + qvariant_cast<QDBusObjectPath>(value).path();
    switch (type) {
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("b true") : QStringLiteral("b false");
    case QMetaType::UChar:
        return QStringLiteral("y ") + QString::number(value.toUInt());
    case QMetaType::Short:
        return QStringLiteral("n ") + QString::number(value.toInt());
    case QMetaType::UShort:
        return QStringLiteral("q ") + QString::number(value.toUInt());
    case QMetaType::Int:
        return QStringLiteral("i ") + QString::number(value.toInt());
    case QMetaType::UInt:
        return QStringLiteral("u ") + QString::number(value.toUInt());
    case QMetaType::LongLong:
        return QStringLiteral("x ") + QString::number(value.toLongLong());
    case QMetaType::ULongLong:
        return QStringLiteral("t ") + QString::number(value.toULongLong());
    case QMetaType::Double:
        return QStringLiteral("d ") + QString::number(value.toDouble());
    case QMetaType::QString:
        return QStringLiteral("s \"") + value.toString() + QLatin1Char('"');
    case QMetaType::QStringList:
        return QStringLiteral("as [\"") + value.toStringList().join(QStringLiteral("\", \"")) + QStringLiteral("\"]");
    case QMetaType::QByteArray:
        return QStringLiteral("ay ") + QString::fromLatin1(value.toByteArray().toHex());
    default:
        break;
    }
    return QStringLiteral("<not a wire value: ") + QString::fromLatin1(value.typeName()) + QLatin1Char('>');
}

QStringList wireTexts(const QList<QVariant> &values)
{
    QStringList texts;
    for (const QVariant &value : values)
        texts.append(wireText(value));
    return texts;
}

#include "FakeMeasApplication.moc"
