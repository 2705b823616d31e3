#ifndef TESTS_SCALARRESULTTEST_H
#define TESTS_SCALARRESULTTEST_H

// The data-driven test every scalar result class shares. A class's test states the class as
// a ScalarResultClass (its operations with their answers, its report openings, its slots)
// and derives from ScalarResultTest, adding what is the class's own. Row tags name class,
// operation and case: "ResultIntInterface/getValue/error reply".

#include "ProxyTableTest.h"

#include <QDBusAbstractInterface>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

/// A scalar result class as its test states it.
struct ScalarResultClass
{
    const char *className;
    QString path;
    ProxyFactory make;
    /// The tables .getters, .commands and .comps hold the class's own slots, in declaration order.
    /// Getters handing back a reply: .answered, .wrongType and the .empty value of a failure.
    QList<OperationRow> getters;
    /// Operations handing back QDBusReply<void>; .answered is an answer they must accept.
    QList<OperationRow> commands = {};
    /// The Comp getters: a list of variants, or an empty one after one line opening with .report.
    QList<OperationRow> comps;
    /// Slots invoked by name (invokedByName()), each giving what its direct call gives.
    QList<OperationRow> byName;
    /// Class names qt_metacast must not take for this class.
    QList<const char *> otherClasses;
};

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

class ScalarResultTest : public ProxyTableTest
{
    Q_OBJECT

public:
    explicit ScalarResultTest(ScalarResultClass tested);
    ~ScalarResultTest() override;

protected:
    /// The application refuses @p member with @p message: @p operation gives an empty list
    /// after that one call without arguments, and logs exactly @p line.
    void verifyOneReportLine(const ProxyOperation &operation, const QString &member, const QString &message,
                             const QString &line);

    /// None of @p names is a method of the class: unknown to the meta-object, not invocable,
    /// and nothing is sent.
    void verifyCannotBeFoundByName(const QList<const char *> &names);

    const ScalarResultClass m_class;

private Q_SLOTS:
    void sendsEachOperationAsItsOwnMemberWithoutArguments_data();
    void sendsEachOperationAsItsOwnMemberWithoutArguments();
    void mapsEachGeneratedReply_data();
    void mapsEachGeneratedReply();
    void failsWhenTheServiceIsAbsentAndOnlyCompGettersReportIt_data();
    void failsWhenTheServiceIsAbsentAndOnlyCompGettersReportIt();

    void compGettersReturnTheElementsAsSent_data();
    void compGettersReturnTheElementsAsSent();
    void compGettersGiveAnEmptyListAndReportAnyFailureInOneLine_data();
    void compGettersGiveAnEmptyListAndReportAnyFailureInOneLine();
    void compReportQuotesAndEscapesTheErrorMessage();

    void aFailedCallLeavesTheProxyAsItWas();

    void metaObjectListsExactlyItsSlotsInOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult_data();
    void invokingSlotsByNameGivesTheDirectResult();

private:
    /// The row of the table's getters, commands or Comp getters named @p name.
    OperationRow rowNamed(const char *name) const;
};

#endif
