#ifndef TESTS_PROXYCLASSTEST_H
#define TESTS_PROXYCLASSTEST_H

// The data-driven test the scalar, array and device-data classes share. A class's test states
// the class as a ProxyClass and derives from ProxyClassTest, adding what is the class's own;
// checks whose table a class leaves empty are skipped. Row tags name class, operation and
// case: "SetupIntInterface/getValue/error reply".

#include "LogCapture.h"
#include "ProxyTableTest.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <cstddef>

/// A proxy class as its test states it.
struct ProxyClass
{
    const char *className;
    QString path;
    ProxyFactory make;
    /// sizeof the class, and what of it is the class's own beside the base.
    std::size_t size = 0;
    std::size_t ownData = 0;
    /// Calls checked for their wire form only. Every row of .replies, .voidReplies, .asyncs and
    /// .comps is checked for it too: each names the .member, .signature and .arguments it sends.
    QList<OperationRow> sent = {};
    /// Getters judging the reply themselves: they give .answered (as .seen, where given), or
    /// .empty after the one line .report opens on each of .errors, on their .wrongType (QtDBus
    /// refusing it with .typeError) and on an empty return. Of .refused, only the .wrongType.
    /// The getters naming .logLines are tried with .errors too; without them, with two.
    QList<OperationRow> checked = {};
    QList<LoggedError> errors = {};
    QList<OperationRow> refused = {};
    /// Operations handing back a reply with a value: .answered, .wrongType, .empty; a checked
    /// getter also names the .logLines it writes on failure ("%1" the quoted message).
    QList<OperationRow> replies;
    /// Further answers and what the caller sees of them, silently.
    QList<OperationRow> answers = {};
    /// Time stamps getTimeStamp() hands on as sent, Qt::TimeSpec included.
    QList<QDateTime> timeStamps = {};
    /// Operations handing back QDBusReply<void>; .answered is an answer they must accept.
    QList<OperationRow> voidReplies = {};
    /// The fire-and-forget operations, and a blocking call the application refuses before them.
    QList<OperationRow> asyncs = {};
    OperationRow failingCall = {.operation = ""};
    /// The Comp getters: a list of variants, or an empty one after one line opening with .report.
    QList<OperationRow> comps = {};
    /// Comp getters, named only, each with the line it logs on an error reply written out whole
    /// in .logLines; they are checked as the checked getters are.
    QList<OperationRow> compLines = {};
    /// The class's own signals and slots in declaration order, and the return types of all of
    /// them; without .slotSignatures the slots are the operations of .replies, .voidReplies and
    /// .comps in this order, none taking arguments.
    QStringList signalSignatures = {};
    QStringList slotSignatures = {};
    QStringList returnTypes = {};
    /// Class names qt_metacast must not take for this class.
    QList<const char *> otherClasses = {};
    /// Slots invoked by name: the application answers .answered (or an empty return), the call
    /// goes out as the row says, and the direct call of the operation gives the same.
    QList<OperationRow> byName = {};
    /// Names that are no slot of the class.
    QList<const char *> noSuchSlots = {};
    /// Bus signals relayed: .operation is the Qt signal, .member and .arguments the bus signal.
    QList<OperationRow> signalsRelayed = {};
};

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

/// resetMinMaxValues(), stopMinMaxEval() and continueMinMaxEval(), each accepting an answer with a value.
template<typename P>
QList<OperationRow> minMaxCommandRows()
{
    // clang-format off
    return {
        {.operation = "resetMinMaxValues", .run = onProxy(&P::resetMinMaxValues), .answered = 1},
        {.operation = "stopMinMaxEval", .run = onProxy(&P::stopMinMaxEval), .answered = 1},
        {.operation = "continueMinMaxEval", .run = onProxy(&P::continueMinMaxEval), .answered = 1},
    };
    // clang-format on
}

/// The six Comp getters (value, minimum and maximum, as value and as text) in declaration order;
/// the line each logs on failure opens with "\"Class::\" name(): ", the name @p reportedAs gives.
template<typename P>
QList<OperationRow> compRows(const QList<const char *> &reportedAs)
{
    // clang-format off
    QList<OperationRow> rows{
        {.operation = "getValueComp", .run = onProxy(&P::getValueComp)},
        {.operation = "getMinValueComp", .run = onProxy(&P::getMinValueComp)},
        {.operation = "getMaxValueComp", .run = onProxy(&P::getMaxValueComp)},
        {.operation = "getStringComp", .run = onProxy(&P::getStringComp)},
        {.operation = "getMinStringComp", .run = onProxy(&P::getMinStringComp)},
        {.operation = "getMaxStringComp", .run = onProxy(&P::getMaxStringComp)},
    };
    // clang-format on
    // A list too short leaves the later rows without a name, and their report rows fail.
    for (int i = 0; i < rows.size(); ++i) {
        rows[i].report = QStringLiteral("\"%1::\" %2(): ")
                             .arg(QLatin1String(P::staticMetaObject.className()), QLatin1String(reportedAs.value(i)));
    }
    return rows;
}

/// getValue() (handing back an R), getString() and getValueComp() invoked by name, the application
/// answering @p value and @p text; then each of @p commands.
template<typename R>
QList<OperationRow> invokedByName(const QVariant &value, const QString &text, const QList<const char *> &commands = {})
{
    // clang-format off
    QList<OperationRow> rows{
        {.operation = "getValue", .run = byName<R>("getValue"), .answered = value},
        {.operation = "getString", .run = byName<QDBusReply<QString>>("getString"), .answered = text},
        {.operation = "getValueComp", .run = byName<QList<QVariant>>("getValueComp"),
         .answered = QVariantList{value, text}},
    };
    // clang-format on
    for (const char *command : commands)
        rows.append({.operation = command, .run = byName<QDBusReply<void>>(command)});
    return rows;
}

class ProxyClassTest : public ProxyTableTest
{
    Q_OBJECT

public:
    explicit ProxyClassTest(ProxyClass tested);
    ~ProxyClassTest() override;

protected:
    const ProxyClass m_class;

private Q_SLOTS:
    void keepsNoDataBesideTheBaseButItsOwn();

    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void mapsEachReply_data();
    void mapsEachReply();
    void failsWhenTheServiceIsAbsentAndLogsOnlyItsOwnLines_data();
    void failsWhenTheServiceIsAbsentAndLogsOnlyItsOwnLines();

    void checkedGettersGiveTheAnswerOrEmptyAfterTheirLines_data();
    void checkedGettersGiveTheAnswerOrEmptyAfterTheirLines();
    void getTimeStampKeepsTheApplicationsTimeSpec();
    void plainOperationsLogNothingOnAnErrorReply();

    void asyncOperationsReturnAtOnceAndLeaveLastErrorAlone();
    void asyncOperationsToAnAbsentServiceShowNothing_data();
    void asyncOperationsToAnAbsentServiceShowNothing();

    void compGettersReturnTheElementsAsSent_data();
    void compGettersReturnTheElementsAsSent();
    void compGettersGiveAnEmptyListAndReportAnyFailureInOneLine_data();
    void compGettersGiveAnEmptyListAndReportAnyFailureInOneLine();
    void aFailedCompCallLeavesTheProxyAsItWas();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult_data();
    void invokingSlotsByNameGivesTheDirectResult();
    void namesThatAreNoSlotCannotBeInvoked();
    void relaysItsSignalsOfItsOwnObjectOnly_data();
    void relaysItsSignalsOfItsOwnObjectOnly();

private:
    /// The lines the row's operation logs when its call to @p service fails with @p message.
    QList<LogLine> failureLines(const OperationRow &row, const QString &service, const QString &message) const;
};

#endif
