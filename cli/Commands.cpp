#include "Commands.h"

#include "Output.h"
#include "Session.h"
#include "Values.h"
#include "Watch.h"

#include "DBusInterfaceManager.h"
#include "MeasApplNames_p.h"
#include "RemoteCommandInterface.h"

#include <QDBusConnectionInterface>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonObject>

#include <vector>

namespace Commands {

const QCommandLineOption kindOption(QStringLiteral("kind"),
                                    QStringLiteral("Treat the element as of kind <kind> instead of inferring it."),
                                    QStringLiteral("kind"));
const QCommandLineOption countOption(QStringLiteral("count"), QStringLiteral("Stop after <n> signals."),
                                     QStringLiteral("n"));

} // namespace Commands

namespace {

/// The path and kind of an element, the fields every element command's answer opens with.
Record elementRecord(const BoundElement &element)
{
    Record record;
    record.add(QStringLiteral("path"), element.path);
    if (element.adapter)
        record.add(QStringLiteral("kind"), element.adapter->className());
    return record;
}

CommandResult usage(const Invocation &invocation)
{
    return CommandResult::failed(ExitCode::BadCommandLine, QStringLiteral("usage: measctl %1").arg(invocation.usage));
}

int runStatus(const Session &session, const Invocation &invocation, const Output &output)
{
    if (!invocation.args.isEmpty())
        return output.finish(usage(invocation));
    DBusInterfaceManager *manager = DBusInterfaceManager::getInstance();
    CommandResult result;
    result.record.add(QStringLiteral("application"), session.appName());
    result.record.add(QStringLiteral("service"), session.service());
    const bool available = manager->isMeasAppAvailable(session.appName());
    result.record.add(QStringLiteral("available"), available);
    if (available)
        result.record.add(QStringLiteral("status"), manager->getMeasAppStatus(session.appName()));
    else
        result.failure = session.requireApplication();
    return output.finish(result);
}

int runList(const Session &session, const Invocation &invocation, const Output &output)
{
    if (!invocation.args.isEmpty())
        return output.finish(usage(invocation));
    if (auto failure = session.requireApplication())
        return output.finish(CommandResult::failed(*failure));
    QVector<ListedElement> elements;
    CommandResult result;
    result.failure = session.list(elements);
    QJsonArray list;
    for (const ListedElement &element : elements) {
        const QJsonValue kind = element.adapter ? QJsonValue(element.adapter->className()) : QJsonValue();
        list.append(QJsonObject{{QStringLiteral("path"), element.path}, {QStringLiteral("kind"), kind}});
        result.text +=
            QStringLiteral("%1  %2\n").arg(element.path, element.adapter ? element.adapter->className() : "?");
    }
    result.record.add(QStringLiteral("application"), session.appName());
    result.record.add(QStringLiteral("elements"), list);
    return output.finish(result);
}

/// get, set and info: the same steps around the kind's own operation.
template<CommandResult (KindAdapter::*operation)(QDBusAbstractInterface &, const QStringList &) const>
int runOnElement(const Session &session, const Invocation &invocation, const Output &output)
{
    if (invocation.args.isEmpty())
        return output.finish(usage(invocation));
    if (auto failure = session.requireApplication())
        return output.finish(CommandResult::failed(*failure));
    const BoundElement element = session.bind(invocation.args.first(), invocation.kind);
    if (element.failure)
        return output.finish(CommandResult::failed(*element.failure));
    CommandResult result = (element.adapter->*operation)(*element.proxy, invocation.args.mid(1));
    Record record = elementRecord(element);
    record.append(result.record);
    result.record = record;
    if (result.failure && result.failure->code != ExitCode::BadCommandLine)
        result.failure->message = element.path + QStringLiteral(": ") + result.failure->message;
    return output.finish(result);
}

int runWatch(const Session &session, const Invocation &invocation, const Output &output)
{
    if (invocation.args.isEmpty())
        return output.finish(usage(invocation));
    if (auto failure = session.requireApplication())
        return output.finish(CommandResult::failed(*failure));

    QEventLoop loop;
    int received = 0;
    std::vector<BoundElement> elements;
    for (const QString &path : invocation.args) {
        BoundElement element = session.bind(path, invocation.kind);
        if (element.failure)
            return output.finish(CommandResult::failed(*element.failure));
        const QString kind = element.adapter->className();
        const int connected =
            element.adapter->watch(*element.proxy, [&, path, kind](const QString &signal, const QJsonArray &arguments) {
                Record event;
                event.add(QStringLiteral("path"), path);
                event.add(QStringLiteral("kind"), kind);
                event.add(QStringLiteral("signal"), signal);
                event.add(QStringLiteral("args"), arguments);
                QStringList words{path, signal};
                for (const QJsonValue &argument : arguments)
                    words.append(Values::toText(argument));
                output.event(event, words.join(QLatin1Char(' ')));
                if (invocation.count > 0 && ++received >= invocation.count)
                    loop.quit();
            });
        if (connected == 0)
            return output.finish(CommandResult::failed(
                ExitCode::BadCommandLine, QStringLiteral("%1: %2 elements send no signals").arg(path, kind)));
        elements.push_back(std::move(element));
    }

    StopOnSignal stop;
    QObject::connect(&stop, &StopOnSignal::stopRequested, &loop, &QEventLoop::quit);
    // A round trip to the bus daemon: once it is answered, the subscriptions are in place.
    session.connection().interface()->isServiceRegistered(session.service());
    output.note(QStringLiteral("watching %1 element(s)").arg(elements.size()));
    loop.exec();
    return static_cast<int>(ExitCode::Success);
}

int runExec(const Session &session, const Invocation &invocation, const Output &output)
{
    if (invocation.args.isEmpty() || invocation.args.size() > 5)
        return output.finish(usage(invocation));
    if (auto failure = session.requireApplication())
        return output.finish(CommandResult::failed(*failure));

    RemoteCommandInterface remote(session.service(), QLatin1String(MeasAppl::rootPath), session.connection());
    const QString command = invocation.args.first();
    bool ok = false;
    QString errorCode;
    const QString answer = remote.executeCommand(command, invocation.args.mid(1), &ok, &errorCode);

    CommandResult result;
    result.record.add(QStringLiteral("command"), command);
    result.record.add(QStringLiteral("ok"), ok);
    if (!ok) {
        result.record.add(QStringLiteral("parserError"), errorCode);
        result.failure = Failure{ExitCode::ParserError, QStringLiteral("%1: parser error: %2").arg(command, errorCode)};
    } else if (answer.isNull()) {
        // The library hides why the call failed; only that it did shows.
        result.record.add(QStringLiteral("answer"), QJsonValue());
        result.failure = Failure{ExitCode::BusError, QStringLiteral("%1: no answer from the application").arg(command)};
    } else {
        result.record.add(QStringLiteral("answer"), answer);
    }
    return output.finish(result);
}

} // namespace

namespace Commands {

const QList<Command> &all()
{
    static const QList<Command> commands{
        {QStringLiteral("status"),
         QString(),
         QStringLiteral("Whether the application is on the bus, and its status text."),
         {},
         runStatus},
        {QStringLiteral("list"),
         QString(),
         QStringLiteral("The application's elements with their kinds."),
         {},
         runList},
        {QStringLiteral("get"),
         QStringLiteral("PATH [ARGS...]"),
         QStringLiteral("Read an element's value."),
         {kindOption},
         runOnElement<&KindAdapter::get>},
        {QStringLiteral("set"),
         QStringLiteral("PATH VALUE..."),
         QStringLiteral("Change an element's value; shows the application's answer."),
         {kindOption},
         runOnElement<&KindAdapter::set>},
        {QStringLiteral("info"),
         QStringLiteral("PATH [ARGS...]"),
         QStringLiteral("Describe an element: text, limits, choices, changeability..."),
         {kindOption},
         runOnElement<&KindAdapter::info>},
        {QStringLiteral("watch"),
         QStringLiteral("PATH..."),
         QStringLiteral("Print the change signals of elements as they arrive, until Ctrl-C or --count."),
         {kindOption, countOption},
         runWatch},
        {QStringLiteral("exec"),
         QStringLiteral("COMMAND [P1 [P2 [P3 [P4]]]]"),
         QStringLiteral("Execute a remote command and show the application's answer."),
         {},
         runExec},
    };
    return commands;
}

const Command *find(const QString &name)
{
    for (const Command &command : all()) {
        if (command.name == name)
            return &command;
    }
    return nullptr;
}

} // namespace Commands
