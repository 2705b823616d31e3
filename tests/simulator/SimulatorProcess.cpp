#include "SimulatorProcess.h"

#include <QDBusConnection>

const QString SimulatorProcess::name = QStringLiteral("simtest");
const QString SimulatorProcess::service = QStringLiteral("com.velk.mqx.app.simtest");

SimulatorProcess::SimulatorProcess(const QStringList &arguments, Start start)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const QStringList all = QStringList{QStringLiteral("--manual-clock"), QStringLiteral("--name"), name} + arguments;
    if (start == Plain) {
        m_process.start(QStringLiteral(SIMULATOR_PROGRAM), all);
        return;
    }
    // An ignored signal stays ignored across exec, so the program starts as a shell's "&" job would.
    m_process.start(QStringLiteral("/bin/sh"),
                    QStringList{QStringLiteral("-c"), QStringLiteral("trap '' INT; exec \"$0\" \"$@\""),
                                QStringLiteral(SIMULATOR_PROGRAM)} +
                        all);
}

SimulatorProcess::~SimulatorProcess()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(5000)) {
        m_process.kill();
        m_process.waitForFinished(5000);
    }
}

bool SimulatorProcess::waitForReady()
{
    // The bound only ends a broken run; the wait itself ends at the line.
    for (;;) {
        while (m_process.canReadLine()) {
            if (m_process.readLine().trimmed() == "ready")
                return true;
        }
        if (m_process.state() == QProcess::NotRunning || !m_process.waitForReadyRead(20000))
            return false;
    }
}

QDBusMessage SimulatorProcess::control(const QString &member, const QVariantList &arguments,
                                       const QString &destination) const
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(destination.isEmpty() ? service : destination, QStringLiteral("/Simulator"),
                                       QStringLiteral("com.velk.mqx.Simulator"), member);
    call.setArguments(arguments);
    return QDBusConnection::sessionBus().call(call);
}
