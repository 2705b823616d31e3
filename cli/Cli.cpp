#include "Cli.h"

#include "Commands.h"
#include "KindRegistry.h"
#include "Output.h"
#include "Session.h"

#include "MeasApplNames_p.h"

#include <QCommandLineParser>

#include <cstdio>

namespace Cli {

const char *const appVariable = "MEASCTL_APP";

namespace {

struct GlobalOptions
{
    QCommandLineOption app{QStringLiteral("app"),
                           QStringLiteral("The application <name> (service %1<name in lower case>); "
                                          "default: $MEASCTL_APP, else \"sim\".")
                               .arg(QLatin1String(MeasAppl::servicePrefix)),
                           QStringLiteral("name")};
    QCommandLineOption json{QStringLiteral("json"),
                            QStringLiteral("Write JSON for scripts: one document, or one object per line for watch.")};
    QCommandLineOption timeout{QStringLiteral("timeout"),
                               QStringLiteral("Wait at most <ms> for each call (default: the bus's own)."),
                               QStringLiteral("ms")};
};

QString commandsHelp()
{
    QString text;
    for (const Command &command : Commands::all())
        text += QStringLiteral("  %1 %2\n").arg(command.name, -7).arg(command.summary);
    return text;
}

QString globalDescription()
{
    return QStringLiteral("Command-line client of a measurement application on the session bus.\n"
                          "measctl COMMAND --help describes each command.\n\n"
                          "Commands:\n%1\nKinds (for --kind; inferred from introspection otherwise):\n%2\n"
                          "Exit codes:\n%3")
        .arg(commandsHelp(), KindRegistry::builtIn().helpText(), ExitCodes::helpText());
}

/// The forms that each kind accepts for @p command, one per line.
QString kindForms(const QString &command)
{
    QString text;
    for (const KindTable::Kind &kind : KindTable::all()) {
        for (const QString &form : KindRegistry::builtIn().adapter(kind)->syntax().of(command))
            text += QStringLiteral("  %1 %2\n")
                        .arg(QLatin1String(kind.shortName), -15)
                        .arg(QStringLiteral("%1 PATH %2").arg(command, form).trimmed());
    }
    return text;
}

QString commandDescription(const Command &command)
{
    QString text = command.summary + QLatin1Char('\n');
    const QString forms = kindForms(command.name);
    if (!forms.isEmpty())
        text += QStringLiteral("\nForms per kind:\n") + forms;
    if (command.name == QLatin1String("set"))
        text += QStringLiteral("\nValues: NUMBER as 12 or -2.5 (nan and inf are passed on); true|false|1|0; "
                               "an enum by INDEX or by TEXT;\nVALUE of any type: a whole number (int32), a real "
                               "number, true/false, JSON (\"text\", [..], {..}) or plain text.\n");
    text += QStringLiteral("\nExit codes:\n") + ExitCodes::helpText();
    return text;
}

void printHelp(const QCommandLineParser &parser)
{
    std::fputs(parser.helpText().toUtf8().constData(), stdout);
}

int badCommandLine(const QString &message)
{
    Output(false).note(message + QStringLiteral(" (see measctl --help)"));
    return static_cast<int>(ExitCode::BadCommandLine);
}

bool takes(const Command &command, const QCommandLineOption &option)
{
    for (const QCommandLineOption &own : command.options) {
        if (own.names() == option.names())
            return true;
    }
    return false;
}

void addGlobalOptions(QCommandLineParser &parser, const GlobalOptions &options)
{
    // Words after the first positional one stay words, so that values such as -5 need no "--".
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    parser.addHelpOption();
    parser.addOptions({options.app, options.json, options.timeout});
}

} // namespace

int run(const QStringList &arguments)
{
    const GlobalOptions options;
    QCommandLineParser global;
    addGlobalOptions(global, options);
    // Every command's options may stand before the command; the command's own parse checks them.
    global.addOptions({Commands::kindOption, Commands::countOption});
    global.setApplicationDescription(globalDescription());
    global.addPositionalArgument(QStringLiteral("command"), QStringLiteral("The command to run."),
                                 QStringLiteral("COMMAND [ARGS...]"));
    if (!global.parse(arguments))
        return badCommandLine(global.errorText());
    const QStringList words = global.positionalArguments();
    if (words.isEmpty()) {
        if (global.isSet(QStringLiteral("help"))) {
            printHelp(global);
            return static_cast<int>(ExitCode::Success);
        }
        return badCommandLine(QStringLiteral("no command given"));
    }
    const Command *command = Commands::find(words.first());
    if (!command)
        return badCommandLine(QStringLiteral("unknown command '%1'").arg(words.first()));

    // Parse again without the command's name, now knowing the command's own options.
    QCommandLineParser parser;
    addGlobalOptions(parser, options);
    parser.addOptions(command->options);
    parser.setApplicationDescription(commandDescription(*command));
    parser.addPositionalArgument(command->name, command->summary,
                                 (command->name + QLatin1Char(' ') + command->synopsis).trimmed());
    const QStringList beforeCommand = arguments.mid(0, arguments.size() - words.size());
    if (!parser.parse(beforeCommand + words.mid(1)))
        return badCommandLine(parser.errorText());
    if (parser.isSet(QStringLiteral("help"))) {
        printHelp(parser);
        return static_cast<int>(ExitCode::Success);
    }

    Invocation invocation;
    invocation.args = parser.positionalArguments();
    invocation.usage = (command->name + QLatin1Char(' ') + command->synopsis).trimmed();
    if (takes(*command, Commands::kindOption) && parser.isSet(Commands::kindOption))
        invocation.kind = parser.value(Commands::kindOption);
    if (takes(*command, Commands::countOption) && parser.isSet(Commands::countOption)) {
        bool ok = false;
        invocation.count = parser.value(Commands::countOption).toInt(&ok);
        if (!ok || invocation.count < 1)
            return badCommandLine(QStringLiteral("--count needs a whole number above 0"));
    }
    int timeoutMs = -1;
    if (parser.isSet(options.timeout)) {
        bool ok = false;
        timeoutMs = parser.value(options.timeout).toInt(&ok);
        if (!ok || timeoutMs < 1)
            return badCommandLine(QStringLiteral("--timeout needs a number of milliseconds above 0"));
    }
    QString app = parser.value(options.app);
    if (app.isEmpty())
        app = qEnvironmentVariable(appVariable, QStringLiteral("sim"));

    const Session session(app, timeoutMs);
    return command->run(session, invocation, Output(parser.isSet(options.json)));
}

} // namespace Cli
