#include "Commands.h"

#include "Output.h"
#include "Session.h"
#include "Values.h"
#include "Watch.h"

#include "DBusInterfaceManager.h"
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
    if (element.kind)
        record.add(QStringLiteral("kind"), element.kind->className());
    return record;
}

Outcome usage(const Invocation &invocation)
{
    return Outcome::failed(ExitCode::BadCommandLine, QStringLiteral("usage: measctl %1").arg(invocation.usage));
}

int runStatus(const Session &session, const Invocation &invocation, const Output &output)
{
    if (!invocation.args.isEmpty())
        return output.finish(usage(invocation));
    DBusInterfaceManager *manager = DBusInterfaceManager::getInstance();
    Outcome outcome;
    outcome.record.add(QStringLiteral("application"), session.appName());
    outcome.record.add(QStringLiteral("service"), session.service());
    const bool available = manager->isMeasAppAvailable(session.appName());
    outcome.record.add(QStringLiteral("available"), available);
    if (available)
        outcome.record.add(QStringLiteral("status"), manager->getMeasAppStatus(session.appName()));
    else
        outcome.failure = session.requireApplication();
    return output.finish(outcome);
}

int runList(const Session &session, const Invocation &invocation, const Output &output)
{
    if (!invocation.args.isEmpty())
        return output.finish(usage(invocation));
    if (auto failure = session.requireApplication())
        return output.finish(Outcome::failed(*failure));
    QVector<ListedElement> elements;
    Outcome outcome;
    outcome.failure = session.list(elements);
    QJsonArray list;
    for (const ListedElement &element : elements) {
        const QJsonValue kind = element.kind ? QJsonValue(element.kind->className()) : QJsonValue();
        list.append(QJsonObject{{QStringLiteral("path"), element.path}, {QStringLiteral("kind"), kind}});
        outcome.text += QStringLiteral("%1  %2\n").arg(element.path, element.kind ? element.kind->className() : "?");
    }
    outcome.record.add(QStringLiteral("application"), session.appName());
    outcome.record.add(QStringLiteral("elements"), list);
    return output.finish(outcome);
}

/// get, set and info: the same steps around the kind's own operation.
template<Outcome (ElementKind::*operation)(QDBusAbstractInterface &, const QStringList &) const>
int runOnElement(const Session &session, const Invocation &invocation, const Output &output)
{
    if (invocation.args.isEmpty())
        return output.finish(usage(invocation));
    if (auto failure = session.requireApplication())
        return output.finish(Outcome::failed(*failure));
    const BoundElement element = session.bind(invocation.args.first(), invocation.kind);
    if (element.failure)
        return output.finish(Outcome::failed(*element.failure));
    Outcome outcome = (element.kind->*operation)(*element.proxy, invocation.args.mid(1));
    Record record = elementRecord(element);
    record.append(outcome.record);
    outcome.record = record;
    if (outcome.failure && outcome.failure->code != ExitCode::BadCommandLine)
        outcome.failure->message = element.path + QStringLiteral(": ") + outcome.failure->message;
    return output.finish(outcome);
}

int runWatch(const Session &session, const Invocation &invocation, const Output &output)
{
    if (invocation.args.isEmpty())
        return output.finish(usage(invocation));
    if (auto failure = session.requireApplication())
        return output.finish(Outcome::failed(*failure));

    QEventLoop loop;
    int received = 0;
    std::vector<BoundElement> elements;
    for (const QString &path : invocation.args) {
        BoundElement element = session.bind(path, invocation.kind);
        if (element.failure)
            return output.finish(Outcome::failed(*element.failure));
        const QString kind = element.kind->className();
        const int connected =
            element.kind->watch(*element.proxy, [&, path, kind](const QString &signal, const QJsonArray &arguments) {
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
            return output.finish(Outcome::failed(ExitCode::BadCommandLine,
                                                 QStringLiteral("%1: %2 elements send no signals").arg(path, kind)));
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
        return output.finish(Outcome::failed(*failure));

    RemoteCommandInterface remote(session.service(), Session::rootPath, session.connection());
    const QString command = invocation.args.first();
    bool ok = false;
    QString errorCode;
    const QString answer = remote.executeCommand(command, invocation.args.mid(1), &ok, &errorCode);

    Outcome outcome;
    outcome.record.add(QStringLiteral("command"), command);
    outcome.record.add(QStringLiteral("ok"), ok);
    if (!ok) {
        outcome.record.add(QStringLiteral("parserError"), errorCode);
        outcome.failure =
            Failure{ExitCode::ParserError, QStringLiteral("%1: parser error: %2").arg(command, errorCode)};
    } else if (answer.isNull()) {
        // The library hides why the call failed; only that it did shows.
        outcome.record.add(QStringLiteral("answer"), QJsonValue());
        outcome.failure =
            Failure{ExitCode::BusError, QStringLiteral("%1: no answer from the application").arg(command)};
    } else {
        outcome.record.add(QStringLiteral("answer"), answer);
    }
    return output.finish(outcome);
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
         runOnElement<&ElementKind::get>},
        {QStringLiteral("set"),
         QStringLiteral("PATH VALUE..."),
         QStringLiteral("Change an element's value; shows the application's answer."),
         {kindOption},
         runOnElement<&ElementKind::set>},
        {QStringLiteral("info"),
         QStringLiteral("PATH [ARGS...]"),
         QStringLiteral("Describe an element: text, limits, choices, changeability..."),
         {kindOption},
         runOnElement<&ElementKind::info>},
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
