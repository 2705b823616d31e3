#include "SimulatorService.h"

#include "BusEndpoint.h"
#include "ControlElement.h"
#include "MeasApplNames_p.h"
#include "MeasurementEngine.h"
#include "Model.h"
#include "RootElement.h"

#include <DBusTypes.h>

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDateTime>

const QString SimulatorService::controlInterface = QStringLiteral("com.velk.mqx.Simulator");

SimulatorService::SimulatorService(std::unique_ptr<Model> model, const Options &options, QObject *parent)
    : QObject(parent)
    , m_options(options)
    , m_model(std::move(model))
    , m_connection(QString())
{
    DBusTypes::registerSettingsMap();
    DBusTypes::registerSettingsStringMap();
    const double rate = options.rate > 0 ? options.rate : m_model->rate;
    m_engine = std::make_unique<MeasurementEngine>(m_model->results(), options.seed, rate,
                                                   QDateTime::currentMSecsSinceEpoch());
    m_engine->setRunning(m_model->running);
    m_root = std::make_unique<RootElement>(*m_model, *m_engine);
    m_control = std::make_unique<ControlElement>(*this);
    m_endpoint = std::make_unique<BusEndpoint>(*this);
    for (const auto &planned : m_model->faults)
        m_faults.set(planned.first, planned.second);
    const QString name = options.name.isEmpty() ? m_model->application : options.name;
    m_serviceName = QLatin1String(MeasAppl::servicePrefix) + name.toLower();
    const auto sink = [this](const QString &path, const QString &member, const QVariantList &arguments) {
        if (m_connected)
            sendOn(m_connection, path, member, arguments);
    };
    for (const auto &element : m_model->elements)
        element->setSignalSink(sink);
    if (!options.manualClock) {
        m_clock.setInterval(int(m_engine->periodMs()));
        connect(&m_clock, &QTimer::timeout, this, [this] { m_engine->advance(m_engine->periodMs()); });
    }
}

SimulatorService::~SimulatorService()
{
    if (m_connected)
        QDBusConnection::disconnectFromBus(m_connectionName);
}

bool SimulatorService::start(QString *error)
{
    if (!m_options.logFile.isEmpty() && !m_log.open(m_options.logFile, error))
        return false;
    if (!connectToBus(error) || !ownName(false, error))
        return false;
    if (!m_options.manualClock)
        m_clock.start();
    return true;
}

Element *SimulatorService::elementAt(const QString &path) const
{
    if (path == QLatin1String(MeasAppl::rootPath))
        return m_root.get();
    if (path == Model::controlPath)
        return m_control.get();
    return m_model->find(path);
}

QStringList SimulatorService::childNodes(const QString &path) const
{
    QStringList children = m_model->childNodes(path);
    if (path == QLatin1String("/"))
        children << QString::fromLatin1(MeasAppl::rootPath).mid(1) << Model::controlPath.mid(1);
    return children;
}

bool SimulatorService::setFault(const QString &path, const QString &kind, const QString &argument)
{
    if (path != FaultPlan::everyPath && (path == Model::controlPath || !elementAt(path)))
        return false;
    Fault fault;
    QString why;
    if (!Fault::parse(kind, argument, &fault, &why))
        return false;
    m_faults.set(path, fault);
    return true;
}

bool SimulatorService::connectToBus(QString *error)
{
    m_connectionName = QStringLiteral("simulator-%1").arg(++m_generation);
    m_connection = m_options.address.isEmpty()
        ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_connectionName)
        : QDBusConnection::connectToBus(m_options.address, m_connectionName);
    if (!m_connection.isConnected()) {
        *error = QStringLiteral("cannot connect to the bus: %1").arg(m_connection.lastError().message());
        QDBusConnection::disconnectFromBus(m_connectionName);
        return false;
    }
    m_connected = true;
    m_connection.registerVirtualObject(QStringLiteral("/"), m_endpoint.get(), QDBusConnection::SubPath);
    m_connection.connect(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                         QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameAcquired"), this,
                         SLOT(onNameAcquired(QString)));
    // libdbus reports a closed socket (the daemon gone) as this local signal.
    m_connection.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                         QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                         SLOT(onDisconnected()));
    return true;
}

bool SimulatorService::ownName(bool queue, QString *error)
{
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply = m_connection.interface()->registerService(
        m_serviceName, queue ? QDBusConnectionInterface::QueueService : QDBusConnectionInterface::DontQueueService,
        QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid()) {
        *error = QStringLiteral("cannot own %1: %2").arg(m_serviceName, reply.error().message());
        return false;
    }
    if (reply.value() == QDBusConnectionInterface::ServiceNotRegistered) {
        *error = QStringLiteral("%1 is already owned by another connection").arg(m_serviceName);
        return false;
    }
    if (reply.value() == QDBusConnectionInterface::ServiceRegistered)
        Q_EMIT ready();
    else
        m_awaitingName = true;
    return true;
}

void SimulatorService::onNameAcquired(const QString &name)
{
    // Only a queued request is answered this way; a direct one has announced itself already.
    if (name != m_serviceName || !m_awaitingName)
        return;
    m_awaitingName = false;
    Q_EMIT ready();
}

void SimulatorService::onDisconnected()
{
    // A connection closed on purpose is gone before its report could arrive.
    if (!m_connected || m_connection.isConnected())
        return;
    m_connected = false;
    Q_EMIT failed(QStringLiteral("lost the connection to the bus"));
}

void SimulatorService::afterAnswer(const std::function<void()> &step)
{
    QTimer::singleShot(0, this, [this, step] {
        // A round trip on the same connection: what was sent before has reached the daemon.
        if (m_connected)
            m_connection.interface()->isServiceRegistered(QStringLiteral("org.freedesktop.DBus"));
        step();
    });
}

void SimulatorService::leaveBus(bool disconnect)
{
    if (!m_connected)
        return;
    if (disconnect) {
        m_connection.unregisterObject(QStringLiteral("/"), QDBusConnection::UnregisterTree);
        QDBusConnection::disconnectFromBus(m_connectionName);
        m_connection = QDBusConnection(QString());
        m_connected = false;
    } else {
        m_connection.interface()->unregisterService(m_serviceName);
    }
}

void SimulatorService::dropOffBus(bool disconnect, int backAfterMs)
{
    afterAnswer([this, disconnect, backAfterMs] {
        leaveBus(disconnect);
        if (backAfterMs < 0)
            return;
        QTimer::singleShot(backAfterMs, this, [this] {
            QString error;
            if ((!m_connected && !connectToBus(&error)) || !ownName(true, &error))
                Q_EMIT failed(error);
        });
    });
}

void SimulatorService::restart()
{
    afterAnswer([this] {
        leaveBus(true);
        QString error;
        if (!connectToBus(&error) || !ownName(true, &error))
            Q_EMIT failed(error);
    });
}

void SimulatorService::leave()
{
    leaveBus(false);
    leaveBus(true);
}

void SimulatorService::quitSoon()
{
    afterAnswer([] { QCoreApplication::quit(); });
}

bool SimulatorService::sendSignal(const QString &path, const QString &member, bool spoofed)
{
    Element *element = m_model->find(path);
    QVariantList arguments;
    if (!element || !element->signalArguments(member, &arguments))
        return false;
    if (!spoofed) {
        sendOn(m_connection, path, member, arguments);
        return true;
    }
    const QString spoofName = QStringLiteral("simulator-spoof");
    QDBusConnection spoof = m_options.address.isEmpty()
        ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, spoofName)
        : QDBusConnection::connectToBus(m_options.address, spoofName);
    if (!spoof.isConnected())
        return false;
    sendOn(spoof, path, member, arguments);
    // Let the daemon route the spoof before the caller hears back.
    spoof.interface()->isServiceRegistered(QStringLiteral("org.freedesktop.DBus"));
    return true;
}

void SimulatorService::sendOn(QDBusConnection connection, const QString &path, const QString &member,
                              const QVariantList &arguments)
{
    QDBusMessage signal = QDBusMessage::createSignal(path, QString::fromLatin1(MeasAppl::interfaceName), member);
    signal.setArguments(arguments);
    connection.send(signal);
}
