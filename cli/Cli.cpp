#include "Cli.h"

#include "Commands.h"
#include "KindRegistry.h"
#include "Output.h"
#include "Session.h"

#include "MeasApplNames_p.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QRegularExpression>

#include <limits>
#include <optional>

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
                               QStringLiteral("Wait at most <ms> for each call (default: the bus's own, 25 s)."),
                               QStringLiteral("ms")};
    QCommandLineOption address{QStringLiteral("address"),
                               QStringLiteral("Use the bus at D-Bus <address> instead of the session bus."),
                               QStringLiteral("address")};
    QCommandLineOption quiet{QStringLiteral("quiet"),
                             QStringLiteral("Hide the library's debug lines on stderr; measctl's own messages stay.")};
};

// The longest bus name that D-Bus allows.
constexpr int maxServiceLength = 255;

/// Why @p app cannot name an application; empty when it can.
QString badApplicationName(const QString &app)
{
    if (app.isEmpty())
        return QStringLiteral("--app needs a name");
    // The service's last elements: ASCII letters, digits, '_' and '-', not starting with a digit.
    static const QRegularExpression element(QStringLiteral("^[A-Za-z_-][A-Za-z0-9_-]*(\\.[A-Za-z_-][A-Za-z0-9_-]*)*$"));
    if (!element.match(app).hasMatch())
        return QStringLiteral("'%1' is not an application name (ASCII letters, digits, '_' and '-', not "
                              "starting with a digit)")
            .arg(app);
    const int length = static_cast<int>(qstrlen(MeasAppl::servicePrefix)) + static_cast<int>(app.size());
    if (length > maxServiceLength)
        return QStringLiteral("the application name is too long (the service name may have at most %1 characters)")
            .arg(maxServiceLength);
    return QString();
}

/// The value of a number option, or why it is not one in @p min..@p max.
std::optional<int> numberOption(const QCommandLineParser &parser, const QCommandLineOption &option, int min,
                                QString &problem)
{
    const QString text = parser.value(option);
    bool ok = false;
    const qlonglong value = text.trimmed().toLongLong(&ok);
    const int max = std::numeric_limits<int>::max();
    static const QRegularExpression digits(QStringLiteral("^\\s*[+-]?[0-9]+\\s*$"));
    if (ok && value >= min && value <= max)
        return static_cast<int>(value);
    const QString name = QStringLiteral("--") + option.names().first();
    if (ok || digits.match(text).hasMatch())
        problem = QStringLiteral("%1 %2 is out of range (%3..%4)").arg(name, text).arg(min).arg(max);
    else
        problem = QStringLiteral("%1 needs a whole number, not '%2'").arg(name, text);
    return std::nullopt;
}

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

// The library reports failed calls with qDebug(); --quiet drops those lines and nothing else.
void dropDebugLines(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtDebugMsg || type == QtInfoMsg)
        return;
    std::fputs(qFormatLogMessage(type, context, message).toLocal8Bit().constData(), stderr);
    std::fputc('\n', stderr);
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

/// Every command's own options: each may stand before the command and is checked against it after.
QList<QCommandLineOption> commandOptions()
{
    return {Commands::kindOption, Commands::countOption, Commands::intervalOption};
}

void addGlobalOptions(QCommandLineParser &parser, const GlobalOptions &options)
{
    // Words after the first positional one stay words, so that values such as -5 need no "--".
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({options.app, options.json, options.timeout, options.address, options.quiet});
    parser.addOptions(commandOptions());
}

bool helpAsked(const QCommandLineParser &parser)
{
    return parser.isSet(QStringLiteral("help")) || parser.isSet(QStringLiteral("help-all"));
}

} // namespace

int run(const QStringList &arguments)
{
    const GlobalOptions options;
    QCommandLineParser global;
    addGlobalOptions(global, options);
    global.setApplicationDescription(globalDescription());
    global.addPositionalArgument(QStringLiteral("command"), QStringLiteral("The command to run."),
                                 QStringLiteral("COMMAND [ARGS...]"));
    if (!global.parse(arguments))
        return badCommandLine(global.errorText());
    const QStringList words = global.positionalArguments();
    if (words.isEmpty()) {
        if (helpAsked(global)) {
            printHelp(global);
            return static_cast<int>(ExitCode::Success);
        }
        if (global.isSet(QStringLiteral("version"))) {
            std::printf("measctl %s\n", qPrintable(QCoreApplication::applicationVersion()));
            return static_cast<int>(ExitCode::Success);
        }
        return badCommandLine(QStringLiteral("no command given"));
    }
    const Command *command = Commands::find(words.first());
    if (!command)
        return badCommandLine(QStringLiteral("unknown command '%1'").arg(words.first()));

    // Parse again without the command's name, now describing the command.
    QCommandLineParser parser;
    addGlobalOptions(parser, options);
    parser.setApplicationDescription(commandDescription(*command));
    parser.addPositionalArgument(command->name, command->summary,
                                 (command->name + QLatin1Char(' ') + command->synopsis).trimmed());
    const QStringList beforeCommand = arguments.mid(0, arguments.size() - words.size());
    if (!parser.parse(beforeCommand + words.mid(1)))
        return badCommandLine(parser.errorText());
    if (helpAsked(parser)) {
        printHelp(parser);
        return static_cast<int>(ExitCode::Success);
    }
    for (const QCommandLineOption &option : commandOptions()) {
        if (parser.isSet(option) && !takes(*command, option))
            return badCommandLine(
                QStringLiteral("--%1 does not apply to '%2'").arg(option.names().first(), command->name));
    }

    Invocation invocation;
    invocation.args = parser.positionalArguments();
    invocation.usage = (command->name + QLatin1Char(' ') + command->synopsis).trimmed();
    if (parser.isSet(Commands::kindOption))
        invocation.kind = parser.value(Commands::kindOption);
    QString problem;
    if (parser.isSet(Commands::countOption)) {
        const auto count = numberOption(parser, Commands::countOption, 1, problem);
        if (!count)
            return badCommandLine(problem);
        invocation.count = *count;
    }
    if (parser.isSet(Commands::intervalOption)) {
        const auto interval = numberOption(parser, Commands::intervalOption, 1, problem);
        if (!interval)
            return badCommandLine(problem);
        invocation.intervalMs = *interval;
    }
    int timeoutMs = -1;
    if (parser.isSet(options.timeout)) {
        const auto timeout = numberOption(parser, options.timeout, 1, problem);
        if (!timeout)
            return badCommandLine(problem);
        timeoutMs = *timeout;
    }
    QString app = qEnvironmentVariable(appVariable);
    if (parser.isSet(options.app) || app.isEmpty())
        app = parser.isSet(options.app) ? parser.value(options.app) : QStringLiteral("sim");
    const QString badName = badApplicationName(app);
    if (!badName.isEmpty())
        return badCommandLine(badName);
    if (parser.isSet(options.quiet))
        qInstallMessageHandler(dropDebugLines);
    // The library connects to the session bus; pointing its address elsewhere moves the library too.
    if (parser.isSet(options.address))
        qputenv("DBUS_SESSION_BUS_ADDRESS", parser.value(options.address).toLocal8Bit());

    const Session session(app, timeoutMs);
    return command->run(session, invocation, Output(parser.isSet(options.json)));
}

} // namespace Cli
