#ifndef TESTS_COMPOSITETEST_H
#define TESTS_COMPOSITETEST_H

// The checks every composite setup class shares (array, map, map list, map of maps,
// threshold manager, storage elements). A class's test states the class as a CompositeClass
// and derives from CompositeTest, adding what is the class's own.

#include "DBusCompat_p.h"
#include "ProxyTableTest.h"

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

/// A composite setup class as its test states it. A row's member on the bus is the first
/// word of its .operation ("getValue entry" sends getValue), where the row names no other.
/// A slot invoked by name (byName) is a row like any other, "by name" in its .operation.
struct CompositeClass
{
    const char *className;
    QString path;
    ProxyFactory make;
    /// Calls checked for their wire form only (.signature, .arguments or .wireArguments); the
    /// rows of replies, voidReplies and asyncs, and setToDefault(), are checked so too.
    QList<OperationRow> sent = {};
    /// The operations handing back a value: .answered reaches the caller (as .seen, where
    /// given); an error, a .wrongType answer, an empty return and an absent service each give
    /// .empty. Only the checked getters among them may log.
    QList<OperationRow> replies = {};
    /// The operations handing back QDBusReply<void>: valid on any return, .answered among them,
    /// invalid on an error or an absent service.
    QList<OperationRow> voidReplies = {};
    /// The getters that log one line on a failure ("Class::getter(): "), each the reply row of
    /// its name; .wrongType is refused with .typeError.
    QList<OperationRow> checkedGetters = {};
    /// The error answers the checked getters are tried with.
    QList<LoggedError> loggedErrors = {};
    /// setToDefault(), which waits for the answer and drops it.
    ProxyOperation setToDefault;
    /// The fire-and-forget operations, and a blocking call the application refuses before them.
    QList<OperationRow> asyncs = {};
    OperationRow failingCall = {.operation = ""};
    /// The Qt signals relayed from the bus signal of their name (.operation "changed(QString)"
    /// relays "changed"), with the .arguments it carries.
    QList<OperationRow> relayed = {};
    /// Classes it must not pass for in qt_metacast().
    QList<const char *> otherClassNames = {};
    /// The class's own methods in meta-object order, and the return types of some of them.
    QStringList signalSignatures = {};
    QStringList slotSignatures = {};
    QList<QPair<const char *, const char *>> returnTypes = {};
};

class CompositeTest : public ProxyTableTest
{
    Q_OBJECT

public:
    explicit CompositeTest(CompositeClass tested);
    ~CompositeTest() override;

private:
    /// Whether @p operation is one of the checked getters, which log their failures, or one
    /// called another way ("getValue by name").
    bool isCheckedGetter(const char *operation) const;

    const CompositeClass m_class;

private Q_SLOTS:
    void constructionForAnAbsentServiceKeepsItsArgumentsAndLogsNothing();
    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void mapsEachAnswerToWhatTheCallerSees_data();
    void mapsEachAnswerToWhatTheCallerSees();
    void givesInvalidRepliesAndLogsNothingWhenTheServiceIsAbsent_data();
    void givesInvalidRepliesAndLogsNothingWhenTheServiceIsAbsent();
    void checkedGettersLogOneLinePerFailure_data();
    void checkedGettersLogOneLinePerFailure();
    void checkedGettersLogOneLineWhenTheServiceIsAbsent_data();
    void checkedGettersLogOneLineWhenTheServiceIsAbsent();
    void checkedGettersLogOneLineWhenTheApplicationVanishes_data();
    void checkedGettersLogOneLineWhenTheApplicationVanishes();
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

// ---- what the composite classes' own tests share -------------------------------------

/// The operation @p method called with @p arguments (for a method that is not overloaded).
template<typename Proxy, typename R, typename... Params, typename... Args>
ProxyOperation calling(R (Proxy::*method)(Params...), Args... arguments)
{
    return onProxy<Proxy>([=](Proxy &proxy) { return (proxy.*method)(arguments...); });
}

/// Stand-in marshalling operators of @p Map that mark what they write and what they read,
/// to show which operators a construction leaves in place.
template<typename Map, void (*write)(QDBusArgument &, const Map &), void (*read)(const QDBusArgument &, Map &)>
struct MarkingOperators
{
    static void install(int typeId) { DBusCompat::registerMarshallOperators(typeId, writer, reader); }
    static void writer(QDBusArgument &argument, const void *value)
    {
        Map marked = *static_cast<const Map *>(value);
        marked.insert(QStringLiteral("written by the stand-in"), typename Map::mapped_type(QStringLiteral("yes")));
        write(argument, marked);
    }
    static void reader(const QDBusArgument &argument, void *value)
    {
        Map &map = *static_cast<Map *>(value);
        read(argument, map);
        map.insert(QStringLiteral("read by the stand-in"), typename Map::mapped_type(QStringLiteral("yes")));
    }
};
using MarkingSettingsMap = MarkingOperators<SettingsMap, DBusTypes::writeSettingsMap, DBusTypes::readSettingsMap>;

/// The call "probe" with @p arguments, as the session bus connection marshals them, as the
/// application receives it (an empty call if none arrives).
ReceivedCall probeCall(FakeMeasApplication &fake, const QString &path, const QList<QVariant> &arguments);

/// @p value is a structured value that QtDBus left as a QDBusArgument, reading as @p wire (wireText()).
void verifyLeftAsArgument(const QVariant &value, const QString &wire);

#endif
