#ifndef TESTS_SCALARSETUPTEST_H
#define TESTS_SCALARSETUPTEST_H

// The data-driven test every scalar setup class shares. A class's test states the class as a
// ScalarSetupClass and derives from ScalarSetupTest, adding what is the class's own. Row
// tags name class, operation and case: "SetupIntInterface/getValue/error reply".

#include "LogCapture.h"
#include "ProxyTableTest.h"

#include <QDBusAbstractInterface>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <cstddef>
#include <memory>

/// A scalar setup class as its test states it.
struct ScalarSetupClass
{
    const char *className;
    QString path;
    ProxyFactory make;
    /// sizeof the class, which holds no data of its own.
    std::size_t size;
    /// Calls checked for their wire form only. Every row of .replies, .voidReplies and .asyncs
    /// is checked for it too: each names the .member, .signature and .arguments it sends.
    QList<OperationRow> sent = {};
    /// Operations handing back a reply with a value: .answered, .wrongType, .empty; a checked
    /// getter also names the .logLines it writes on failure.
    QList<OperationRow> replies;
    /// Operations handing back QDBusReply<void>; .answered is an answer they must accept.
    QList<OperationRow> voidReplies = {};
    /// The fire-and-forget operations, with the call each sends.
    QList<OperationRow> asyncs;
    /// A blocking call the application refuses before the asyncs go out.
    OperationRow failingCall;
    /// The class's own methods, signals first, and their return types.
    QStringList methods;
    QStringList signalSignatures;
    QStringList returnTypes;
    /// Class names qt_metacast must not take for this class.
    QList<const char *> otherClasses = {};
    /// Slots invoked by name: the application answers .answered (or an empty return), the
    /// call goes out with .arguments.
    QList<OperationRow> byName = {};
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

/// A checked getter's @p lines with @p quotedMessage in place of "%1", as debug lines.
QList<LogLine> linesOf(const QStringList &lines, const QString &quotedMessage);

class ScalarSetupTest : public ProxyTableTest
{
    Q_OBJECT

public:
    explicit ScalarSetupTest(ScalarSetupClass tested);
    ~ScalarSetupTest() override;

protected:
    const ScalarSetupClass m_class;

private Q_SLOTS:
    void holdsNoDataOfItsOwn();

    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void mapsEachReply_data();
    void mapsEachReply();
    void givesInvalidRepliesWhenTheServiceIsAbsent_data();
    void givesInvalidRepliesWhenTheServiceIsAbsent();

    void checkedGettersLogTheirLinesOnAnErrorReply_data();
    void checkedGettersLogTheirLinesOnAnErrorReply();
    void checkedGettersLogNothingForAWrongTypedReply_data();
    void checkedGettersLogNothingForAWrongTypedReply();
    void plainOperationsLogNothingOnAnErrorReply();
    void plainOperationsLogNothingWhenTheServiceIsAbsent();

    void asyncOperationsReturnAtOnceAndLeaveLastErrorAlone();
    void asyncOperationsToAnAbsentServiceShowNothing();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult_data();
    void invokingSlotsByNameGivesTheDirectResult();
    void relaysItsSignalsOfItsOwnObjectOnly_data();
    void relaysItsSignalsOfItsOwnObjectOnly();

private:
    QList<OperationRow> plainReplies() const;
};

#endif
