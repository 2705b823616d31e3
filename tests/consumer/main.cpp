#include <DBusConnector.h>
#include <DBusTypes.h>
#include <SetupIntInterface.h>

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);

    // No bus is needed: the proxy is usable at once and reports failure through its reply.
    SetupIntInterface gain(QStringLiteral("com.velk.mqx.app.consumer"), QStringLiteral("/Setup/Gain"),
                           QDBusConnection(QStringLiteral("never-opened")));
    const QDBusReply<int> reply = gain.getValue();
    const SettingsMap settings{{QStringLiteral("gain"), 3}};

    DBusConnector::setIPAddress(QStringLiteral("consumer"));
    const bool ok = !reply.isValid() && reply.value() == 0 && DBusConnector::m_IPAddress == QLatin1String("consumer") &&
        settings.size() == 1;
    out << (ok ? "consumer ok" : "consumer FAILED") << Qt::endl;
    return ok ? 0 : 1;
}
