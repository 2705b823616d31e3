// Watches a measured result: its value against its limits, sampled on a timer, since
// results have no change signal. Each read blocks for its round trip; a user interface
// that must never wait uses ApplicationMirror instead (docs/live-values.md).
//
//   watch-result [APPLICATION [PATH [COUNT]]]
//   watch-result sim /Result/Voltage/Peak 5

#include <DBusConnector.h>
#include <ResultDoubleInterface.h>

#include <QCoreApplication>
#include <QTextStream>
#include <QTimer>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    const QString application = args.value(1, QStringLiteral("sim"));
    const QString path = args.value(2, QStringLiteral("/Result/Voltage/Peak"));
    const int count = args.value(3, QStringLiteral("5")).toInt();

    QTextStream out(stdout);
    const QString service = QStringLiteral("com.velk.mqx.app.") + application.toLower();
    ResultDoubleInterface result(service, path, DBusConnector::getInstance()->getDBusConnection());

    const QDBusReply<double> lowerLimit = result.getLowerLimit();
    const QDBusReply<double> upperLimit = result.getUpperLimit();
    if (!lowerLimit.isValid() || !upperLimit.isValid()) {
        QTextStream(stderr) << path << ": no limits: " << lowerLimit.error().message() << Qt::endl;
        return 1;
    }
    const double lower = lowerLimit.value();
    const double upper = upperLimit.value();
    out << path << " limits " << lower << " .. " << upper << Qt::endl;

    int seen = 0;
    int outside = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        const QDBusReply<double> value = result.getValue();
        const QDBusReply<QString> text = result.getString();
        if (!value.isValid()) {
            QTextStream(stderr) << "getValue failed: " << value.error().message() << Qt::endl;
            app.exit(1);
            return;
        }
        const bool inside = value.value() >= lower && value.value() <= upper;
        outside += inside ? 0 : 1;
        out << text.value() << (inside ? "" : "  OUTSIDE LIMITS") << Qt::endl;
        if (++seen == count)
            app.exit(0);
    });
    timer.start(200);
    const int status = app.exec();
    if (status == 0)
        out << outside << " of " << seen << " outside the limits" << Qt::endl;
    return status;
}
