#include "ExitSignals.h"
#include "MeasApplNames_p.h"
#include "Model.h"
#include "SimulatedKinds.h"
#include "SimulatorService.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QTextStream>

#include <csignal>

namespace {

enum ExitCode { BadCommandLine = 1, BadModel = 2, NoBus = 3, BadKinds = 4 };

int fail(int code, const QString &message)
{
    QTextStream(stderr) << "dbusinterfaces-simulator: " << message << '\n';
    return code;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    // Handled even when inherited as ignored, as by a script's "&" job.
    ExitSignals exitSignals({SIGINT, SIGTERM});
    QCoreApplication::setApplicationName(QStringLiteral("dbusinterfaces-simulator"));
    QCoreApplication::setApplicationVersion(QStringLiteral("1.0"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Behaves like the instrument's measurement application on D-Bus (see docs/simulator.md).\n"
                       "Prints \"ready\" when its name is owned. Exit status: 0 normal end, 1 bad command line,\n"
                       "2 bad model file, 3 no bus or name already owned, 4 a kind's handlers do not match\n"
                       "the kind table."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption name(
        QStringLiteral("name"),
        QStringLiteral("Application name (service %1<name>).").arg(QLatin1String(MeasAppl::servicePrefix)),
        QStringLiteral("NAME"));
    const QCommandLineOption address(QStringLiteral("address"),
                                     QStringLiteral("D-Bus address instead of the session bus."),
                                     QStringLiteral("ADDRESS"));
    const QCommandLineOption model(QStringLiteral("model"),
                                   QStringLiteral("JSON model file instead of the default model."),
                                   QStringLiteral("FILE"));
    const QCommandLineOption dumpModel(QStringLiteral("dump-model"),
                                       QStringLiteral("Print the default model and exit."));
    const QCommandLineOption seed(QStringLiteral("seed"),
                                  QStringLiteral("Seed of the simulated measurement (default 1)."), QStringLiteral("N"),
                                  QStringLiteral("1"));
    const QCommandLineOption rate(QStringLiteral("rate"), QStringLiteral("Default sample rate of the results in Hz."),
                                  QStringLiteral("HZ"));
    const QCommandLineOption manualClock(
        QStringLiteral("manual-clock"),
        QStringLiteral("Measurement time advances only through the control method tick."));
    const QCommandLineOption log(QStringLiteral("log"), QStringLiteral("Append one JSON line per call received."),
                                 QStringLiteral("FILE"));
    parser.addOptions({name, address, model, dumpModel, seed, rate, manualClock, log});
    if (!parser.parse(QCoreApplication::arguments()))
        return fail(BadCommandLine, parser.errorText() + QStringLiteral(" (see --help)"));
    if (parser.isSet(QStringLiteral("help")))
        parser.showHelp(0);
    if (parser.isSet(QStringLiteral("version")))
        parser.showVersion();
    if (!parser.positionalArguments().isEmpty())
        return fail(
            BadCommandLine,
            QStringLiteral("unexpected argument \"%1\" (see --help)").arg(parser.positionalArguments().first()));
    if (parser.isSet(dumpModel)) {
        QTextStream(stdout) << defaultModelJson();
        return 0;
    }

    SimulatorService::Options options;
    options.name = parser.value(name);
    options.address = parser.value(address);
    options.manualClock = parser.isSet(manualClock);
    options.logFile = parser.value(log);
    bool ok = false;
    options.seed = parser.value(seed).toUInt(&ok);
    if (!ok)
        return fail(BadCommandLine,
                    QStringLiteral("--seed needs a non-negative integer, not \"%1\"").arg(parser.value(seed)));
    if (parser.isSet(rate)) {
        options.rate = parser.value(rate).toDouble(&ok);
        if (!ok || options.rate <= 0)
            return fail(BadCommandLine,
                        QStringLiteral("--rate needs a positive number, not \"%1\"").arg(parser.value(rate)));
    }
    if (parser.isSet(name) && options.name.isEmpty())
        return fail(BadCommandLine, QStringLiteral("--name needs a non-empty name"));
    if (parser.isSet(name) && !Model::nameProblem(options.name).isEmpty())
        return fail(BadCommandLine, QStringLiteral("--name: ") + Model::nameProblem(options.name));

    // A kind whose handlers do not match its members in the kind table would answer wrongly.
    const QStringList kindProblems = SimulatedKinds::builtIn().problems();
    if (!kindProblems.isEmpty())
        return fail(BadKinds, kindProblems.join(QStringLiteral("\ndbusinterfaces-simulator: ")));

    QByteArray json = defaultModelJson();
    QString modelName = QStringLiteral("default model");
    if (parser.isSet(model)) {
        QFile file(parser.value(model));
        if (!file.open(QIODevice::ReadOnly))
            return fail(BadModel, QStringLiteral("%1: %2").arg(file.fileName(), file.errorString()));
        json = file.readAll();
        modelName = file.fileName();
    }
    QString error;
    std::unique_ptr<Model> loaded = loadModel(json, modelName, &error);
    if (!loaded)
        return fail(BadModel, error);

    SimulatorService service(std::move(loaded), options);
    QObject::connect(&service, &SimulatorService::ready, [] {
        QTextStream out(stdout);
        out << "ready\n";
        out.flush();
    });
    QObject::connect(&service, &SimulatorService::failed, [](const QString &reason) {
        fail(NoBus, reason);
        QCoreApplication::exit(NoBus);
    });
    if (!service.start(&error))
        return fail(NoBus, error);
    // A signal ends it as quit does: the name released, the call log complete.
    QObject::connect(&exitSignals, &ExitSignals::received, &service, [&service] {
        service.leave();
        QCoreApplication::exit(0);
    });
    return app.exec();
}
