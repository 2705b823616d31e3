#include "Cli.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("measctl"));
    return Cli::run(QCoreApplication::arguments());
}
