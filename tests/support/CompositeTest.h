#ifndef TESTS_COMPOSITETEST_H
#define TESTS_COMPOSITETEST_H

// The checks every composite setup class shares (array, map, map list, map of maps,
// threshold manager, storage elements). A class's test states the class as a CompositeClass
// and derives from CompositeTest, adding what is the class's own.

#include "ProxyTableTest.h"

#include <QList>
#include <QString>
#include <QStringList>

/// A composite setup class as its test states it.
struct CompositeClass
{
    const char *className;
    QString path;
    ProxyFactory make;
    /// Every operation with the call it sends: .member, .signature, .arguments or .wireArguments.
    QList<OperationRow> sent;
    /// Every blocking operation and the .empty value it gives when the service is absent.
    QList<OperationRow> absent;
    /// Whether those failures must also log nothing.
    LogCheck absentLog = LogCheck::Unchecked;
    /// The getters that log one line on a failure: .report opens it; .wrongType is refused
    /// with .typeError.
    QList<OperationRow> checkedGetters = {};
    /// The error answers the checked getters are tried with.
    QList<LoggedError> loggedErrors = {};
    /// setToDefault(), which waits for the answer and drops it.
    ProxyOperation setToDefault;
    /// The fire-and-forget operations, and a blocking call the application refuses before them.
    QList<OperationRow> asyncs = {};
    OperationRow failingCall = {.operation = ""};
    /// The class's own methods in meta-object order, where the test places each at its index.
    QStringList signalSignatures = {};
    QStringList slotSignatures = {};
};

class CompositeTest : public ProxyTableTest
{
    Q_OBJECT

public:
    explicit CompositeTest(CompositeClass tested);
    ~CompositeTest() override;

protected:
    const CompositeClass m_class;

private Q_SLOTS:
    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void givesInvalidRepliesWhenTheServiceIsAbsent_data();
    void givesInvalidRepliesWhenTheServiceIsAbsent();
    void checkedGettersLogOneLinePerFailure_data();
    void checkedGettersLogOneLinePerFailure();
    void checkedGettersLogOneLineWhenTheServiceIsAbsent_data();
    void checkedGettersLogOneLineWhenTheServiceIsAbsent();
    void setToDefaultWaitsForTheAnswerAndDropsIt();
    void asyncOperationsReturnAtOnceAndLeaveLastErrorAlone();
    void asyncOperationsToAnAbsentServiceShowNothing();
    void metaObjectPlacesEachMethodAtItsIndex_data();
    void metaObjectPlacesEachMethodAtItsIndex();
};

// ---- checks the composite classes' own tests share -----------------------------------

/// The operation @p method called with @p arguments (for a method that is not overloaded).
template<typename Proxy, typename R, typename... Params, typename... Args>
ProxyOperation calling(R (Proxy::*method)(Params...), Args... arguments)
{
    return onProxy<Proxy>([=](Proxy &proxy) { return (proxy.*method)(arguments...); });
}

/// addMappedReplyRows() for each of @p rows, tags opening with the row's operation.
void addMappedReplyTable(const QList<OperationRow> &rows, LogCheck errorLogs = LogCheck::Nothing,
                         LogCheck otherFailureLogs = LogCheck::Nothing);

/// The operations of @p tested that log nothing of a failure (the blocking ones but the
/// checked getters, and the fire-and-forget ones) log nothing when the service is absent.
void verifyPlainOperationsLogNothingWhenTheServiceIsAbsent(const CompositeClass &tested);

/// A row per slot of @p invoked (made by byName), answered with .answered and seen as .seen
/// where that is given, beside the operation of the same name in @p direct.
void addByNameRows(const char *className, const QList<OperationRow> &invoked, const QList<OperationRow> &direct);

/// The row's slot invoked by name sends the row's call and gives what the direct call gives.
void verifyByNameRow(FakeMeasApplication &fake, QDBusAbstractInterface &proxy);

/// @p value is a structured value that QtDBus left as a QDBusArgument, reading as @p wire (WireText.h).
void verifyLeftAsArgument(const QVariant &value, const QString &wire);

/// A row per relayed signal: .operation is the Qt signal's signature, named as the bus
/// signal it relays, and .arguments what that carries.
void addSignalRelayRows(const char *className, const QList<OperationRow> &relayed);

/// The row's signal is relayed from the proxy's own object only (verifySignalRelay()).
void verifySignalRelayRow(FakeMeasApplication &fake, QDBusAbstractInterface &proxy);

#endif
