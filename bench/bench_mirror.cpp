// The mirror's scenario (scenario 7 of docs/performance.md): the caller's event-loop stall
// while many elements start, while the application restarts under them and while a silent
// application is asked, against the simulator on a private bus. Not part of ctest.
//
//   bench_mirror [--elements=N] [--results-json=FILE]      (default 5000 elements)

#include "MirrorScenario.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    int elements = 5000;
    QString resultsJson;
    for (const QString &argument : QCoreApplication::arguments().mid(1)) {
        if (argument.startsWith(QLatin1String("--elements=")))
            elements = qMax(1, argument.mid(11).toInt());
        else if (argument.startsWith(QLatin1String("--results-json=")))
            resultsJson = argument.mid(15);
    }
    QTemporaryDir work;
    const QJsonObject results = MirrorScenario(QStringLiteral(SIMULATOR_PROGRAM), work.path(), elements).run();
    const QByteArray text = QJsonDocument(results).toJson();
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout);
    if (!resultsJson.isEmpty()) {
        QFile file(resultsJson);
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            return 1;
    }
    return results.isEmpty() ? 1 : 0;
}
