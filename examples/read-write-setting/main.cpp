// Reads an integer setting with its range, sets a new value and reports what the
// application answered.
//
//   read-write-setting [APPLICATION [PATH [VALUE]]]
//   read-write-setting sim /Setup/Acquisition/Averages 64

#include <DBusConnector.h>
#include <SetupIntInterface.h>

#include <QCoreApplication>
#include <QDBusReply>
#include <QTextStream>

namespace {

QTextStream out(stdout);
QTextStream err(stderr);

// A failed call gives an invalid reply; its error says why (no application, no such
// object, a time-out, ...).
template<typename T>
bool failed(const QDBusReply<T> &reply, const char *what)
{
    if (reply.isValid())
        return false;
    err << what << " failed: " << reply.error().name() << ": " << reply.error().message() << Qt::endl;
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    const QString application = args.value(1, QStringLiteral("sim"));
    const QString path = args.value(2, QStringLiteral("/Setup/Acquisition/Averages"));
    bool numeric = true;
    const int wanted = args.value(3, QStringLiteral("64")).toInt(&numeric);
    if (!numeric) {
        err << "VALUE must be a whole number" << Qt::endl;
        return 2;
    }

    const QString service = QStringLiteral("com.velk.mqx.app.") + application.toLower();
    SetupIntInterface setting(service, path, DBusConnector::getInstance()->getDBusConnection());

    const QDBusReply<int> value = setting.getValue();
    const QDBusReply<int> min = setting.getMinValue();
    const QDBusReply<int> max = setting.getMaxValue();
    if (failed(value, "getValue") || failed(min, "getMinValue") || failed(max, "getMaxValue"))
        return 1;
    out << path << " = " << value.value() << " (" << min.value() << ".." << max.value() << ")" << Qt::endl;

    const QDBusReply<bool> accepted = setting.setValue(wanted);
    if (failed(accepted, "setValue"))
        return 1;
    if (!accepted.value()) {
        out << "the application refused " << wanted << Qt::endl;
        return 3;
    }
    // What the application holds now, which need not be what was sent (it may round).
    const QDBusReply<QString> text = setting.getString();
    if (failed(text, "getString"))
        return 1;
    out << path << " = " << text.value() << Qt::endl;
    return 0;
}
