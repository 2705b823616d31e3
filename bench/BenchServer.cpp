#include "BenchServer.h"

#include <QDBusMessage>

const QString BenchServer::service = QStringLiteral("com.velk.mqx.app.bench");
const QString BenchServer::interfaceName = QStringLiteral("com.velk.mqx.MeasApplInterface");

bool BenchServer::start(const QString &program)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(program, {service});
    if (!m_process.waitForStarted(10000))
        return false;
    while (m_process.waitForReadyRead(10000)) {
        if (m_process.readAll().contains("ready"))
            return true;
    }
    return false;
}

void BenchServer::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    control(QDBusConnection::sessionBus(), QStringLiteral("quit"));
    if (!m_process.waitForFinished(10000)) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

uint BenchServer::setValueCalls(const QDBusConnection &bus) const
{
    return control(bus, QStringLiteral("count")).arguments().value(0).toUInt();
}

void BenchServer::reset(const QDBusConnection &bus) const
{
    control(bus, QStringLiteral("reset"));
}

void BenchServer::setMapSize(const QDBusConnection &bus, uint size) const
{
    control(bus, QStringLiteral("setMapSize"), {size});
}

void BenchServer::emitChanges(const QDBusConnection &bus, const QString &path, uint count) const
{
    control(bus, QStringLiteral("emitChanges"), {path, count});
}

QDBusMessage BenchServer::control(const QDBusConnection &bus, const QString &member, const QList<QVariant> &args) const
{
    QDBusMessage call = QDBusMessage::createMethodCall(service, QStringLiteral("/MEAS_APPL_OBJ"),
                                                       QStringLiteral("bench.Control"), member);
    call.setArguments(args);
    return bus.call(call, QDBus::Block, 120000);
}
