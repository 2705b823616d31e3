#ifndef TESTS_PROXYCLASSTABLE_H
#define TESTS_PROXYCLASSTABLE_H

// A proxy class as its test states it: tables of operation rows, which ProxyClassTest runs.
// A row's fields come in groups, one per check that reads them:
//   {.operation = "getValue", .run = onProxy(&P::getValue),
//    .call = {.member = "getValue"},                  sendsEachOperationWithItsWireForm
//    .reply = {.answered = 42, .wrongType = 1.5, .empty = 0},   mapsEachReply
//    .log = {.report = "P::getValue(): "}}            checkedGettersGiveTheAnswerOrEmptyAfterTheirLines
// The checks of a failure (an absent service, a vanishing application) read .reply.empty and
// .log; every check that answers a call or compares what arrived reads .call.

#include "ProxyTestSupport.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <cstddef>

/// The call an operation sends: every check that answers the operation or compares the call
/// the application received reads it. Every row names its member.
struct WireCall
{
    QString member = {};
    QString signature = {};
    /// The arguments as they go out, compared as wire texts and as Qt types.
    QList<QVariant> arguments = {};
    /// The arguments as wire texts (wireText()), where they are custom types; replaces .arguments.
    QStringList wireArguments = {};
};

/// What the caller gets back (mapsEachReply and the checks of getters).
struct ReplyValues
{
    /// An answer that reaches the caller as it is, or as .seen where that is given.
    QVariant answered = {};
    /// What the caller gets of .answered, where it is not .answered itself (an unwrapped variant).
    QVariant seen = {};
    /// A well-formed answer of another type, which the caller must see as a failure.
    QVariant wrongType = {};
    /// What the caller sees after any failure.
    QVariant empty = {};
};

/// What an operation logs when it fails (the checks of checked getters); a row without it
/// logs nothing.
struct FailureLog
{
    /// The opening of the one line of a getter that judges the reply itself (reportLine()):
    /// it logs on every failure, an answer of the wrong type included.
    QString report = {};
    /// QtDBus's message for .reply.wrongType, which that line quotes.
    QString typeError = {};
    /// Lines written out whole, "%1" standing for the quoted error message, for a call to the
    /// application's own service. Without .report: the lines of a getter that follows the
    /// proxy's lastError(), so that only an error reply (or none) makes it log. With .report:
    /// its one line written out, not made by reportLine(), which would share a mistake.
    QStringList lines = {};
};

/**
 * One operation of a proxy class: its name in the rows' tags ("Class/operation/case"), how
 * to run it, and the groups of fields the checks read.
 */
struct OperationRow
{
    const char *operation;
    ProxyOperation run = {};
    WireCall call = {};
    ReplyValues reply = {};
    FailureLog log = {};
    /// For a slot invoked by name: the same call made directly, which must give the same.
    ProxyOperation direct = {};
};
Q_DECLARE_METATYPE(OperationRow)

/// An error answer and its message as a report line quotes it.
struct LoggedError
{
    const char *name;
    QString message;
    QString quoted;
};

/// A proxy class as its test states it. Lists the test leaves empty skip their checks.
struct ProxyClassTable
{
    const char *className;
    QString path;
    ProxyFactory make;
    /// sizeof the class, and what of it is the class's own beside the base.
    std::size_t size = 0;
    std::size_t ownData = 0;

    /// Calls checked for their wire form only. Every row of the lists below that sends is
    /// checked for it too.
    QList<OperationRow> sent = {};
    /// Operations handing back a value: .reply.answered, and .reply.empty on an error reply,
    /// a .reply.wrongType answer, an empty return or an absent service. Rows with a .log are
    /// the checked getters, which log their failures; they are tried with each of .errors too.
    QList<OperationRow> replies = {};
    /// Further answers and what the caller sees of them, silently.
    QList<OperationRow> answers = {};
    /// Further answers of the wrong type, which checked getters refuse with .log.typeError.
    QList<OperationRow> refused = {};
    /// The error answers the checked getters are tried with; two where the test names none.
    QList<LoggedError> errors = {};
    /// Time stamps getTimeStamp() hands on as sent, Qt::TimeSpec included.
    QList<QDateTime> timeStamps = {};
    /// Operations handing back QDBusReply<void>; .reply.answered is an answer they must accept.
    QList<OperationRow> voidReplies = {};
    /// setToDefault(), which returns nothing but waits for the answer and drops it.
    OperationRow setToDefault = {.operation = ""};
    /// The fire-and-forget operations, and a blocking call the application refuses before them.
    QList<OperationRow> asyncs = {};
    OperationRow failingCall = {.operation = ""};
    /// The Comp getters: a list of variants, or an empty one after the one line .log.report opens.
    /// The first is also made to fail between calls of .reading, which must go on as before.
    QList<OperationRow> comps = {};
    OperationRow reading = {.operation = ""};

    /// The class's own signals, then slots, in declaration order, each "ReturnType signature"
    /// where the test states the return type. Without slots the test names none, the slots are
    /// the operations of .replies, .voidReplies and .comps in this order, none taking arguments.
    QStringList signalSignatures = {};
    QStringList slotSignatures = {};
    /// Class names qt_metacast must not take for this class.
    QList<const char *> otherClasses = {};
    /// Slots invoked by name (.run), each with its .direct call: the application answers
    /// .reply.answered (or an empty return), and both give the same.
    QList<OperationRow> byName = {};
    /// Names that are no slot of the class.
    QList<const char *> noSuchSlots = {};
    /// Bus signals relayed: .operation the Qt signal, .call.member and .call.arguments the bus signal.
    QList<OperationRow> relayed = {};
};

// ---- rows the classes share ---------------------------------------------------------------

/// setValue(@p value) of a proxy class, as an operation.
template<typename P, typename T>
ProxyOperation setValueOf(T value)
{
    return onProxy<P>([value](P &p) { return p.setValue(value); });
}

/// setValueAsync(@p value) of a proxy class, as an operation.
template<typename P, typename T>
ProxyOperation setValueAsyncOf(T value)
{
    return onProxy<P>([value](P &p) { p.setValueAsync(value); });
}

/// The operation @p method called with @p arguments (for a method that is not overloaded).
template<typename Proxy, typename R, typename... Params, typename... Args>
ProxyOperation calling(R (Proxy::*method)(Params...), Args... arguments)
{
    return onProxy<Proxy>([=](Proxy &proxy) { return (proxy.*method)(arguments...); });
}

/// resetMinMaxValues(), stopMinMaxEval() and continueMinMaxEval(), each accepting an answer with a value.
template<typename P>
QList<OperationRow> minMaxCommandRows()
{
    // clang-format off
    return {
        {.operation = "resetMinMaxValues", .run = onProxy(&P::resetMinMaxValues),
         .call = {.member = "resetMinMaxValues"}, .reply = {.answered = 1}},
        {.operation = "stopMinMaxEval", .run = onProxy(&P::stopMinMaxEval), .call = {.member = "stopMinMaxEval"},
         .reply = {.answered = 1}},
        {.operation = "continueMinMaxEval", .run = onProxy(&P::continueMinMaxEval),
         .call = {.member = "continueMinMaxEval"}, .reply = {.answered = 1}},
    };
    // clang-format on
}

/// What getter @p getter of @p P logs when it judges the reply itself: one line opening
/// "Class::getter(): ", quoting QtDBus's message for @p wrongType where an R was expected.
template<typename P, typename R>
FailureLog judgedAs(const char *getter, const QVariant &wrongType)
{
    return {.report =
                QStringLiteral("%1::%2(): ").arg(QLatin1String(P::staticMetaObject.className()), QLatin1String(getter)),
            .typeError = replyTypeError<R>(wrongType)};
}

/// The six Comp getters (value, minimum and maximum, as value and as text) in declaration order;
/// the line each logs on failure opens with "\"Class::\" name(): ", the name @p reportedAs gives.
template<typename P>
QList<OperationRow> compRows(const QList<const char *> &reportedAs)
{
    // clang-format off
    QList<OperationRow> rows{
        {.operation = "getValueComp", .run = onProxy(&P::getValueComp), .call = {.member = "getValueComp"}},
        {.operation = "getMinValueComp", .run = onProxy(&P::getMinValueComp), .call = {.member = "getMinValueComp"}},
        {.operation = "getMaxValueComp", .run = onProxy(&P::getMaxValueComp), .call = {.member = "getMaxValueComp"}},
        {.operation = "getStringComp", .run = onProxy(&P::getStringComp), .call = {.member = "getStringComp"}},
        {.operation = "getMinStringComp", .run = onProxy(&P::getMinStringComp), .call = {.member = "getMinStringComp"}},
        {.operation = "getMaxStringComp", .run = onProxy(&P::getMaxStringComp), .call = {.member = "getMaxStringComp"}},
    };
    // clang-format on
    // A list too short leaves the later rows without a name, and their report rows fail.
    for (int i = 0; i < rows.size(); ++i) {
        rows[i].log.report =
            QStringLiteral("\"%1::\" %2(): ")
                .arg(QLatin1String(P::staticMetaObject.className()), QLatin1String(reportedAs.value(i)));
    }
    return rows;
}

/// getValue() (handing back an R), getString() and getValueComp() invoked by name, the application
/// answering @p value and @p text, then resetMinMaxValues() where the class has it.
template<typename P, typename R>
QList<OperationRow> invokedByName(const QVariant &value, const QString &text)
{
    // clang-format off
    QList<OperationRow> rows{
        {.operation = "getValue", .run = byName<R>("getValue"), .call = {.member = "getValue"},
         .reply = {.answered = value}, .direct = onProxy(&P::getValue)},
        {.operation = "getString", .run = byName<QDBusReply<QString>>("getString"), .call = {.member = "getString"},
         .reply = {.answered = text}, .direct = onProxy(&P::getString)},
        {.operation = "getValueComp", .run = byName<QList<QVariant>>("getValueComp"),
         .call = {.member = "getValueComp"}, .reply = {.answered = QVariantList{value, text}},
         .direct = onProxy(&P::getValueComp)},
    };
    if constexpr (requires(P &p) { p.resetMinMaxValues(); }) {
        rows.append({.operation = "resetMinMaxValues", .run = byName<QDBusReply<void>>("resetMinMaxValues"),
                     .call = {.member = "resetMinMaxValues"}, .direct = onProxy(&P::resetMinMaxValues)});
    }
    // clang-format on
    return rows;
}

#endif
