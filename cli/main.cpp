#include "Cli.h"

#include "DBusConnector.h"
#include "DBusInterfaceManager.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("measctl"));
    QCoreApplication::setApplicationVersion(QStringLiteral(MEASCTL_VERSION));
    const int exitCode = Cli::run(QCoreApplication::arguments());
    // The library never releases its singletons itself.
    DBusInterfaceManager::releaseInstance();
    DBusConnector::releaseInstance();
    return exitCode;
}
