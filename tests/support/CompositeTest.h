#ifndef TESTS_COMPOSITETEST_H
#define TESTS_COMPOSITETEST_H

// The checks every composite setup class shares (array, map, map list, map of maps,
// threshold manager, storage elements). A class's test states the class as a CompositeClass
// and derives from CompositeTest, adding what is the class's own.

#include "ProxyTableTest.h"

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

/// A signal the class relays from the bus: its Qt signature, its bus member and what it carries.
struct RelayedSignal
{
    const char *qtSignal;
    QString member;
    QList<QVariant> arguments;
};

/// A composite setup class as its test states it. A row's member on the bus is the first
/// word of its .operation ("getValue entry" sends getValue), where the row names no other.
struct CompositeClass
{
    const char *className;
    QString path;
    ProxyFactory make;
    /// Operations and the call each sends (.signature, .arguments or .wireArguments); the rows
    /// of replies, voidReplies and asyncs, and setToDefault(), are checked so too.
    QList<OperationRow> sent = {};
    /// The operations handing back a value: .answered reaches the caller (as .seen, where
    /// given); an error, a .wrongType answer, an empty return and an absent service each give
    /// .empty. Only the checked getters among them may log.
    QList<OperationRow> replies = {};
    /// The operations handing back QDBusReply<void>: valid on any return, .answered among them,
    /// invalid on an error or an absent service.
    QList<OperationRow> voidReplies = {};
    /// The other blocking operations and the .empty value each gives when the service is
    /// absent; setToDefault() is tried so too.
    QList<OperationRow> absent = {};
    /// Whether those failures must also log nothing, the checked getters' aside.
    LogCheck absentLog = LogCheck::Unchecked;
    /// The getters that log one line on a failure, which .report opens ("Class::getter(): "
    /// by default); .wrongType is refused with .typeError. One without .run is the reply row
    /// of its name.
    QList<OperationRow> checkedGetters = {};
    /// The error answers the checked getters are tried with.
    QList<LoggedError> loggedErrors = {};
    /// setToDefault(), which waits for the answer and drops it.
    ProxyOperation setToDefault;
    /// The fire-and-forget operations, and a blocking call the application refuses before them.
    QList<OperationRow> asyncs = {};
    OperationRow failingCall = {.operation = ""};
    /// The bus signals the class relays to its callers.
    QList<RelayedSignal> relayed = {};
    /// Classes it must not pass for in qt_metacast().
    QList<const char *> otherClassNames = {};
    /// The class's own methods in meta-object order, where the test places each at its index.
    QStringList signalSignatures = {};
    QStringList slotSignatures = {};
    /// Return types of some of those methods, by signature.
    QList<QPair<const char *, const char *>> returnTypes = {};
};

class CompositeTest : public ProxyTableTest
{
    Q_OBJECT

public:
    explicit CompositeTest(CompositeClass tested);
    ~CompositeTest() override;

protected:
    /// Whether @p operation is one of the checked getters, which log their failures, or one
    /// called another way ("getValue by name").
    bool isCheckedGetter(const char *operation) const;

    const CompositeClass m_class;

private Q_SLOTS:
    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void mapsEachAnswerToWhatTheCallerSees_data();
    void mapsEachAnswerToWhatTheCallerSees();
    void givesInvalidRepliesWhenTheServiceIsAbsent_data();
    void givesInvalidRepliesWhenTheServiceIsAbsent();
    void checkedGettersLogOneLinePerFailure_data();
    void checkedGettersLogOneLinePerFailure();
    void checkedGettersLogOneLineWhenTheServiceIsAbsent_data();
    void checkedGettersLogOneLineWhenTheServiceIsAbsent();
    void setToDefaultWaitsForTheAnswerAndDropsIt();
    void asyncOperationsReturnAtOnceAndLeaveLastErrorAlone();
    void asyncOperationsToAnAbsentServiceShowNothing();
    void relaysEachSignalOfItsOwnObjectOnly_data();
    void relaysEachSignalOfItsOwnObjectOnly();
    void metaCastAnswersForTheClassAndItsBasesOnly();
    void metaObjectDeclaresSignalsThenSlotsOnly();
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

/// @p value is a structured value that QtDBus left as a QDBusArgument, reading as @p wire (wireText()).
void verifyLeftAsArgument(const QVariant &value, const QString &wire);

/// A row per relayed signal: .operation is the Qt signal's signature, named as the bus
/// signal it relays, and .arguments what that carries.
void addSignalRelayRows(const char *className, const QList<OperationRow> &relayed);

/// The row's signal is relayed from the proxy's own object only (verifySignalRelay()).
void verifySignalRelayRow(FakeMeasApplication &fake, QDBusAbstractInterface &proxy);

#endif
