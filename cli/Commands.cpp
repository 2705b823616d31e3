#include "Commands.h"

#include "MemberCall.h"
#include "Output.h"
#include "Session.h"
#include "Values.h"
#include "Watch.h"

#include "MeasApplNames_p.h"
#include "RemoteCommandInterface.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QDateTime>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonObject>
#include <QTimer>

#include <memory>
#include <vector>

namespace Commands {

const QCommandLineOption kindOption(QStringLiteral("kind"),
                                    QStringLiteral("Treat the element as of kind <kind> instead of inferring it."),
                                    QStringLiteral("kind"));
const QCommandLineOption countOption(QStringLiteral("count"), QStringLiteral("Stop after <n> signals."),
                                     QStringLiteral("n"));
const QCommandLineOption intervalOption(QStringLiteral("interval"),
                                        QStringLiteral("Read elements without change signals every <ms> and print "
                                                       "their value when it changed."),
                                        QStringLiteral("ms"));

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

// libdbus's default, which executeCommand's calls wait.
constexpr qint64 busDefaultTimeoutMs = 25000;
// How the application answers a remote command that it understood but did not carry out.
const QString refusedPrefix = QStringLiteral("Refused:");

CommandResult usage(const Invocation &invocation)
{
    return CommandResult::failed(ExitCode::BadCommandLine, QStringLiteral("usage: measctl %1").arg(invocation.usage));
}

int runStatus(const Session &session, const Invocation &invocation, const Output &output)
{
    if (!invocation.args.isEmpty())
        return output.finish(usage(invocation));
    CommandResult result;
    result.record.add(QStringLiteral("application"), session.appName());
    result.record.add(QStringLiteral("service"), session.service());
    result.failure = session.requireApplication();
    if (result.failure && result.failure->code == ExitCode::NoBus)
        return output.finish(result);
    result.record.add(QStringLiteral("available"), !result.failure);
    if (result.failure)
        return output.finish(result);
    // The library's getMeasAppStatus answers "" for every failure; this call tells them apart.
    const QDBusReply<QString> status =
        session.call(QLatin1String(MeasAppl::rootPath), QStringLiteral("getMeasApplicationStatus"));
    if (status.isValid())
        result.record.add(QStringLiteral("status"), status.value());
    else
        result.failure =
            session.explained(Failure::fromError(status.error(), QStringLiteral("getMeasApplicationStatus")));
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
    return output.finish(session.explained(result));
}

/// Binds the element that the first word names into @p element; else the result that ends the
/// command (fewer than @p minWords words, no application, no such element).
std::optional<CommandResult> bindFirst(const Session &session, const Invocation &invocation, int minWords,
                                       BoundElement &element)
{
    if (invocation.args.size() < minWords)
        return usage(invocation);
    if (auto failure = session.requireApplication())
        return CommandResult::failed(*failure);
    element = session.bind(invocation.args.first(), invocation.kind);
    if (element.failure)
        return session.explained(CommandResult::failed(*element.failure));
    return std::nullopt;
}

/// get, set and info: the same steps around the kind's own operation.
template<CommandResult (KindAdapter::*operation)(QDBusAbstractInterface &, const QStringList &) const>
int runOnElement(const Session &session, const Invocation &invocation, const Output &output)
{
    BoundElement element;
    if (auto ended = bindFirst(session, invocation, 1, element))
        return output.finish(*ended);
    CommandResult result = session.explained((element.adapter->*operation)(*element.proxy, invocation.args.mid(1)));
    Record record = elementRecord(element);
    record.append(result.record);
    result.record = record;
    if (result.failure && result.failure->code != ExitCode::BadCommandLine)
        result.failure->message = element.path + QStringLiteral(": ") + result.failure->message;
    return output.finish(result);
}

/// The time stamp that opens every watch line: UTC, ISO 8601 with milliseconds.
QString now()
{
    return QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs);
}

/// Writes one watch line: @p signal of the element at @p path with @p arguments.
void printEvent(const Output &output, const QString &path, const QString &kind, const QString &signal,
                const QJsonArray &arguments)
{
    const QString time = now();
    Record event;
    event.add(QStringLiteral("time"), time);
    event.add(QStringLiteral("path"), path);
    event.add(QStringLiteral("kind"), kind);
    event.add(QStringLiteral("signal"), signal);
    event.add(QStringLiteral("args"), arguments);
    QStringList words{time, path, signal};
    for (const QJsonValue &argument : arguments)
        words.append(Values::toWord(argument));
    output.event(event, words.join(QLatin1Char(' ')));
}

// How often watch looks whether the bus is still there: QtDBus reports its loss by no signal.
constexpr int busCheckIntervalMs = 250;

int runWatch(const Session &session, const Invocation &invocation, const Output &output)
{
    if (invocation.args.isEmpty())
        return output.finish(usage(invocation));
    if (auto failure = session.requireApplication())
        return output.finish(CommandResult::failed(*failure));

    QEventLoop loop;
    int received = 0;
    const auto counted = [&] {
        if (invocation.count > 0 && ++received >= invocation.count)
            loop.exit(static_cast<int>(ExitCode::Success));
    };
    const auto fail = [&](const Failure &failure) {
        loop.exit(output.finish(CommandResult::failed(session.explained(failure))));
    };
    std::vector<BoundElement> elements;
    std::vector<std::unique_ptr<QTimer>> polls;
    for (const QString &path : invocation.args) {
        BoundElement element = session.bind(path, invocation.kind);
        if (element.failure)
            return output.finish(session.explained(CommandResult::failed(*element.failure)));
        const QString kind = element.adapter->className();
        const int connected =
            element.adapter->watch(*element.proxy, [&, path, kind](const QString &signal, const QJsonArray &arguments) {
                printEvent(output, path, kind, signal, arguments);
                counted();
            });
        if (connected == 0) {
            if (invocation.intervalMs == 0 || element.adapter->syntax().get.isEmpty())
                return output.finish(
                    CommandResult::failed(ExitCode::BadCommandLine,
                                          QStringLiteral("%1: %2 elements send no signals%3")
                                              .arg(path, kind,
                                                   element.adapter->syntax().get.isEmpty()
                                                       ? QString()
                                                       : QStringLiteral("; give --interval to poll it"))));
            // No signal tells of a change: read the element every interval and print what changed.
            auto poll = std::make_unique<QTimer>();
            const KindAdapter *adapter = element.adapter;
            QDBusAbstractInterface *proxy = element.proxy.get();
            auto last = std::make_shared<QJsonArray>();
            const auto read = [&, adapter, proxy, path, kind, last] {
                const CommandResult reading = adapter->get(*proxy, {});
                if (reading.failure)
                    return fail(Failure{reading.failure->code, path + QStringLiteral(": ") + reading.failure->message});
                const QJsonArray values = reading.record.values();
                if (values == *last)
                    return;
                *last = values;
                printEvent(output, path, kind, QStringLiteral("polled"), values);
                counted();
            };
            QObject::connect(poll.get(), &QTimer::timeout, &loop, read);
            poll->start(invocation.intervalMs);
            polls.push_back(std::move(poll));
            // The first reading is printed at once.
            QTimer::singleShot(0, &loop, read);
        }
        elements.push_back(std::move(element));
    }

    StopOnSignal stop;
    QObject::connect(&stop, &StopOnSignal::stopRequested, &loop, [&] { loop.exit(0); });
    QTimer busCheck;
    QObject::connect(&busCheck, &QTimer::timeout, &loop, [&] {
        if (!session.connection().isConnected())
            fail(Failure{ExitCode::NoBus, QStringLiteral("lost the bus")});
    });
    busCheck.start(busCheckIntervalMs);
    // A round trip to the bus daemon: once it is answered, the subscriptions are in place.
    session.connection().interface()->isServiceRegistered(session.service());
    output.note(QStringLiteral("watching %1 element(s)").arg(elements.size()));
    return loop.exec();
}

int runCall(const Session &session, const Invocation &invocation, const Output &output)
{
    BoundElement element;
    if (auto ended = bindFirst(session, invocation, 2, element))
        return output.finish(*ended);
    const QString member = invocation.args.at(1);
    const QStringList words = invocation.args.mid(2);
    const KindTable::Kind *kind = element.adapter->kind();

    CommandResult result;
    result.record = elementRecord(element);
    result.record.add(QStringLiteral("member"), member);
    QStringList names;
    for (const KindTable::Method &method : kind->methods()) {
        if (!names.contains(QLatin1String(method.name)))
            names.append(QLatin1String(method.name));
    }
    const QStringList signatures = kind->inSignatures(member);
    if (signatures.isEmpty()) {
        result.failure =
            Failure{ExitCode::BadCommandLine,
                    QStringLiteral("%1: %2 elements have no member '%3'; they have: %4")
                        .arg(element.path, element.adapter->className(), member, names.join(QStringLiteral(", ")))};
        return output.finish(result);
    }
    // The first of the member's signatures that the words fit.
    std::optional<QVariantList> arguments;
    QStringList problems;
    bool countFits = false;
    for (const QString &signature : signatures) {
        QString problem;
        arguments = MemberCall::arguments(signature, words, problem);
        if (arguments) {
            result.record.add(QStringLiteral("signature"), signature);
            break;
        }
        countFits = countFits || MemberCall::completeTypes(signature).size() == words.size();
        problems.append(member + problem);
    }
    if (!arguments) {
        result.failure = Failure{countFits ? ExitCode::BadValue : ExitCode::BadCommandLine,
                                 element.path + QStringLiteral(": ") + problems.join(QStringLiteral("; "))};
        return output.finish(result);
    }
    const QDBusMessage reply = element.proxy->callWithArgumentList(QDBus::Block, member, *arguments);
    if (reply.type() != QDBusMessage::ReplyMessage) {
        result.failure =
            session.explained(Failure::fromError(QDBusError(reply), element.path + QStringLiteral(": ") + member));
        return output.finish(result);
    }
    // callWithArgumentList pads an empty reply with one invalid value; the signature tells.
    const QVariantList answer = reply.signature().isEmpty() ? QVariantList() : reply.arguments();
    if (answer.isEmpty()) {
        result.record.add(QStringLiteral("done"), true);
    } else if (answer.size() == 1) {
        result.record.add(QStringLiteral("answer"), Values::toJson(answer.first()));
    } else {
        QJsonArray values;
        for (const QVariant &value : answer)
            values.append(Values::toJson(value));
        result.record.add(QStringLiteral("answer"), values);
    }
    return output.finish(result);
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
    QElapsedTimer elapsed;
    elapsed.start();
    const QString answer = remote.executeCommand(command, invocation.args.mid(1), &ok, &errorCode);

    CommandResult result;
    result.record.add(QStringLiteral("command"), command);
    if (!ok) {
        result.record.add(QStringLiteral("ok"), false);
        result.record.add(QStringLiteral("parserError"), errorCode);
        result.failure = Failure{ExitCode::ParserError, QStringLiteral("%1: parser error: %2").arg(command, errorCode)};
    } else if (answer.isNull()) {
        // executeCommand hides why the call failed: the time it took tells silence from an error
        // answer, and the service's owner afterwards a departure.
        const bool timedOut = elapsed.elapsed() >= busDefaultTimeoutMs;
        const Failure failure = timedOut
            ? Failure{ExitCode::Timeout, QStringLiteral("%1: no answer in time").arg(command)}
            : Failure{ExitCode::BusError,
                      QStringLiteral("%1: the call failed (the library does not say why)").arg(command)};
        const Failure departed = session.explained(Failure{ExitCode::Timeout, failure.message});
        result.failure = departed.code == ExitCode::Timeout ? failure : departed;
    } else {
        result.record.add(QStringLiteral("ok"), true);
        result.record.add(QStringLiteral("answer"), answer);
        if (answer.startsWith(refusedPrefix)) {
            result.record.add(QStringLiteral("refused"), true);
            result.failure = Failure{ExitCode::Refused, QStringLiteral("%1: %2").arg(command, answer)};
        }
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
         {kindOption, countOption, intervalOption},
         runWatch},
        {QStringLiteral("call"),
         QStringLiteral("PATH MEMBER [ARGS...]"),
         QStringLiteral("Call any member of the element's kind by name, arguments parsed by its signature."),
         {kindOption},
         runCall},
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
