#ifndef TESTS_PROXYTESTSUPPORT_H
#define TESTS_PROXYTESTSUPPORT_H

#include "BusTestSupport.h"
#include "DBusTypes.h"
#include "FakeMeasApplication.h"
#include "LogCapture.h"

#include <QDBusAbstractInterface>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusReply>
#include <QDBusVariant>
#include <QDebug>
#include <QMetaMethod>
#include <QMetaObject>
#include <QPair>
#include <QPointer>
#include <QSignalSpy>
#include <QStringList>
#include <QVariant>
#include <QtTest/QTest>

#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

/// A service nobody owns on the test bus.
inline QString absentService()
{
    return QStringLiteral("com.velk.mqx.app.absent");
}

// The vocabulary every proxy test speaks: what the caller saw (Seen), an operation of any
// proxy class (ProxyOperation, made by onProxy or byName), one table row with named fields
// (OperationRow), the one check of a single call (verifySingleCall), one log expectation
// (LogCheck) and one quoting helper (quoted).

/// What the caller saw of one operation: whether it succeeded, the value it got, and the
/// error of the reply it was handed, if it was handed one (a plain value carries none).
struct Seen
{
    bool valid = false;
    QVariant value;
    std::optional<QDBusError> error;
};

template<typename T>
Seen seenOf(const QDBusReply<T> &reply)
{
    return {reply.isValid(), QVariant::fromValue(reply.value()), reply.error()};
}

inline Seen seenOf(const QDBusReply<void> &reply)
{
    return {reply.isValid(), QVariant(), reply.error()};
}

inline Seen seenOf(const Seen &seen)
{
    return seen;
}

/// A plain value counts as valid when it is not the empty one.
inline Seen seenOf(const QVariant &value)
{
    return {value.isValid(), value, std::nullopt};
}

inline Seen seenOf(const QString &text)
{
    return {!text.isNull(), text, std::nullopt};
}

/// A container counts as valid when it is not empty; a number always does.
template<typename Plain>
Seen seenOf(const Plain &plain)
{
    if constexpr (std::is_arithmetic_v<Plain>)
        return {true, QVariant::fromValue(plain), std::nullopt};
    else
        return {!plain.isEmpty(), QVariant::fromValue(plain), std::nullopt};
}

/// An operation of a proxy, run on the base class so that one table column holds any class's.
using ProxyOperation = std::function<Seen(QDBusAbstractInterface &)>;
Q_DECLARE_METATYPE(ProxyOperation)

/// @p call, written for the proxy class, as an operation of any proxy. An operation that
/// returns nothing shows nothing: only the proxy's lastError() tells of a failure.
template<typename Proxy, typename Call>
ProxyOperation onProxy(Call call)
{
    return [call](QDBusAbstractInterface &proxy) {
        Proxy &typed = static_cast<Proxy &>(proxy);
        if constexpr (std::is_void_v<decltype(call(typed))>) {
            call(typed);
            return Seen{};
        } else {
            return seenOf(call(typed));
        }
    };
}

/// The operation @p method, which takes no arguments.
template<typename Proxy, typename R>
ProxyOperation onProxy(R (Proxy::*method)())
{
    return onProxy<Proxy>([method](Proxy &proxy) { return (proxy.*method)(); });
}

namespace Detail {

template<typename... Args, std::size_t... I>
bool invoke(QDBusAbstractInterface &proxy, const QMetaMethod &method, QGenericReturnArgument result,
            std::index_sequence<I...>, const Args &...arguments)
{
    const QList<QByteArray> types = method.parameterTypes();
    return method.invoke(&proxy, Qt::DirectConnection, result,
                         QGenericArgument(types.value(int(I)).constData(), &arguments)...);
}

} // namespace Detail

/// The slot @p slot ("getValue", or "setValue(int)" with @p arguments) invoked by name
/// through the meta-object system; @p Result is its return type. A slot that cannot be
/// invoked shows an invalid "<not invoked: slot>".
template<typename Result, typename... Args>
ProxyOperation byName(const char *slot, Args... arguments)
{
    return [slot, arguments...](QDBusAbstractInterface &proxy) {
        const QByteArray signature = QByteArray(slot).contains('(') ? QByteArray(slot) : QByteArray(slot) + "()";
        const int index = proxy.metaObject()->indexOfMethod(QMetaObject::normalizedSignature(signature.constData()));
        const Seen notInvoked{false, QStringLiteral("<not invoked: %1>").arg(QLatin1String(slot)), std::nullopt};
        if (index < 0)
            return notInvoked;
        const QMetaMethod method = proxy.metaObject()->method(index);
        if constexpr (std::is_void_v<Result>) {
            if (!Detail::invoke(proxy, method, QGenericReturnArgument(), std::index_sequence_for<Args...>(),
                                arguments...))
                return notInvoked;
            return Seen{};
        } else {
            Result result{};
            if (!Detail::invoke(proxy, method, QGenericReturnArgument(method.typeName(), &result),
                                std::index_sequence_for<Args...>(), arguments...))
                return notInvoked;
            return seenOf(result);
        }
    };
}

/**
 * One operation of a proxy class as a test table states it; the fields a check does not
 * read stay empty. Written with designated initialisers, so that a row reads as what it
 * states: {.operation = "getValue", .run = onProxy(&P::getValue), .answered = 42, ...}.
 */
struct OperationRow
{
    /// The operation's name, as the rows' tags give it.
    const char *operation;
    ProxyOperation run = {};
    /// The member sent on the bus, where it is not the operation's name.
    QString member = {};
    QString signature = {};
    /// The arguments as they go out.
    QList<QVariant> arguments = {};
    /// An answer that reaches the caller as it is, or as .seen where that is given.
    QVariant answered = {};
    /// What the caller gets of .answered, where it is not .answered itself (an unwrapped variant).
    QVariant seen = {};
    /// A well-formed answer of another type, which the caller must see as a failure.
    QVariant wrongType = {};
    /// What the caller sees after any failure.
    QVariant empty = {};
    /// The opening of the line the operation logs when it fails.
    QString report = {};
    /// QtDBus's message for .wrongType, which a checked getter quotes in its line.
    QString typeError = {};
    /// The lines the operation logs when it fails, "%1" standing for the quoted error message.
    QStringList logLines = {};
    /// The arguments as wire texts (wireText()), where they are custom types; replaces .arguments.
    QStringList wireArguments = {};

    QString wireMember() const { return member.isEmpty() ? QString::fromLatin1(operation) : member; }
};
Q_DECLARE_METATYPE(OperationRow)

/// The message of QtDBus's own error for a reply of @p value where an R was expected.
template<typename R>
QString replyTypeError(const QVariant &value)
{
    const QDBusMessage call = QDBusMessage::createMethodCall(QStringLiteral("com.velk.mqx.app.local"),
                                                             QStringLiteral("/"), QString(), QStringLiteral("get"));
    const QDBusReply<R> reply(call.createReply(value));
    return reply.error().message();
}

/// Whether a check also requires that nothing was logged.
enum class LogCheck { Unchecked, Nothing };
Q_DECLARE_METATYPE(LogCheck)

/// @p text as the debug stream writes a QString item: quoted, inner quotes and backslashes escaped.
inline QString quoted(const QString &text)
{
    QString written;
    QDebug(&written).nospace() << text;
    return written;
}

/// The one line of a failed valueOrEmpty() call: @p opening, then service, path and the
/// message as the debug stream quotes it (@p quotedMessage).
inline QString reportLineQuoting(const QString &opening, const QString &service, const QString &path,
                                 const QString &quotedMessage)
{
    return opening + QLatin1Char(' ') + quoted(service) + QStringLiteral("  /  ") + quoted(path) +
        QStringLiteral("  / Error: ") + quotedMessage;
}

inline QString reportLine(const QString &opening, const QString &service, const QString &path, const QString &message)
{
    return reportLineQuoting(opening, service, path, quoted(message));
}

/// The error name the fake answers with where a test makes a call fail.
inline QString failedErrorName()
{
    return QStringLiteral("com.velk.mqx.Error.Failed");
}

/// Makes a proxy of one class for a service and path on the session bus.
using ProxyFactory =
    std::function<QDBusAbstractInterface *(const QString &service, const QString &path, QObject *parent)>;

template<typename Proxy>
ProxyFactory factoryOf()
{
    return [](const QString &service, const QString &path, QObject *parent) {
        return new Proxy(service, path, QDBusConnection::sessionBus(), parent);
    };
}

/// Signatures of the methods a class declares itself, signals first, in meta-object order.
inline QStringList ownMethodSignatures(const QMetaObject &metaObject)
{
    QStringList signatures;
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i)
        signatures.append(QString::fromLatin1(metaObject.method(i).methodSignature()));
    return signatures;
}

/// Signatures of the class's own methods of one kind (QMetaMethod::Signal or Slot).
inline QStringList ownMethodSignatures(const QMetaObject &metaObject, QMetaMethod::MethodType type)
{
    QStringList signatures;
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i) {
        if (metaObject.method(i).methodType() == type)
            signatures.append(QString::fromLatin1(metaObject.method(i).methodSignature()));
    }
    return signatures;
}

/// Return type names of the methods a class declares itself, in meta-object order.
inline QStringList ownMethodReturnTypes(const QMetaObject &metaObject)
{
    QStringList types;
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i)
        types.append(QString::fromLatin1(metaObject.method(i).typeName()));
    return types;
}

/// The one call the fake received, in its wire form: arguments as wire texts (wireText()),
/// which tell each argument's D-Bus type; wireTexts() makes them of the values sent.
inline void verifySingleCall(const FakeMeasApplication &fake, const QString &path, const QString &member,
                             const QString &signature, const QStringList &arguments)
{
    QVERIFY(fake.waitForCalls(1));
    const QList<ReceivedCall> calls = fake.calls();
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.first().path, path);
    QCOMPARE(calls.first().interface, FakeMeasApplication::interfaceName);
    QCOMPARE(calls.first().member, member);
    QCOMPARE(calls.first().signature, signature);
    QCOMPARE(wireTexts(calls.first().arguments), arguments);
}

/// The application and the proxy on it that each test function starts with afresh.
template<typename Proxy>
class ProxyFixture
{
protected:
    /// Starts a new application and a proxy of @p path on it.
    void startFakeAndProxy(const QString &path)
    {
        m_fake.reset(new FakeMeasApplication);
        m_proxy.reset(new Proxy(m_fake->service(), path, QDBusConnection::sessionBus()));
    }

    /// The proxy goes before the application it talks to.
    void stopFakeAndProxy()
    {
        m_proxy.reset();
        m_fake.reset();
    }

    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<Proxy> m_proxy;
};

/**
 * Checks what every proxy class shares at construction: service, path, interface and parent
 * are passed on, no message is sent and nothing is logged, and the parent deletes the proxy.
 */
void verifyConstructionContract(const ProxyFactory &make, FakeMeasApplication &fake, const QString &path);

template<typename Proxy>
void verifyConstructionContract(FakeMeasApplication &fake, const QString &path)
{
    verifyConstructionContract(factoryOf<Proxy>(), fake, path);
}

/// A proxy made for a service nobody owns keeps what it was given and logs nothing.
template<typename Proxy>
void verifyConstructionForAnAbsentService(const QString &path)
{
    LogCapture log;
    Proxy absent(absentService(), path, QDBusConnection::sessionBus());

    QCOMPARE(absent.service(), absentService());
    QCOMPARE(absent.path(), path);
    QCOMPARE(log.lines(), QList<LogLine>());
}

/// The columns of verifyMappedReply()'s rows.
void addMappedReplyColumns();

/// A row of verifyMappedReply(): the application answers @p member with @p answer, and the
/// caller of @p operation sees @p valid and @p value.
void addMappedReplyRow(const QByteArray &tag, const ProxyOperation &operation, const QString &member,
                       const ScriptedAnswer &answer, bool valid, const QVariant &value,
                       LogCheck log = LogCheck::Nothing);

/// The rows of an operation handing back a reply with a value: answered with .answered; an
/// error reply, an answer of .wrongType's type and an empty return, each giving .empty.
/// @p errorLogs says what the error reply may log, @p otherFailureLogs what the other two
/// may. Tags begin with @p prefix.
void addMappedReplyRows(const QByteArray &prefix, const OperationRow &row, LogCheck errorLogs = LogCheck::Nothing,
                        LogCheck otherFailureLogs = LogCheck::Nothing);

/// The rows of an operation handing back QDBusReply<void>: valid on any method return,
/// .answered among them, invalid on an error reply.
void addMappedVoidReplyRows(const QByteArray &prefix, const OperationRow &row);

/// The row's operation, answered as the row says, shows the row's validity and value.
void verifyMappedReply(FakeMeasApplication &fake, QDBusAbstractInterface &proxy);

/// qt_metacast answers the class's own name with the object and leaves other names to the
/// base; @p otherNames (near misses, other classes) are not the class.
void verifyMetaCast(QDBusAbstractInterface &proxy, const char *className, const QList<const char *> &otherNames = {});

/// One received call against the row's wire form: member, signature and arguments.
void verifyReceivedCall(const ReceivedCall &call, const QString &path, const OperationRow &row);

/// The row's operation sends exactly the row's call, and nothing else.
void verifySentAsItsRow(FakeMeasApplication &fake, QDBusAbstractInterface &proxy, const OperationRow &row);

/// The same, for the current row of addOperationRows().
void verifySentAsItsRow(FakeMeasApplication &fake, QDBusAbstractInterface &proxy);

/**
 * @p asyncs return at once: the application never answers them, so calls that waited would
 * not come back in time for the fake to see them all. They leave the lastError() that
 * @p failingCall, which the application refuses, has set, and log nothing.
 */
void verifyAsyncCallsReturnAtOnce(FakeMeasApplication &fake, QDBusAbstractInterface &proxy,
                                  const OperationRow &failingCall, const QList<OperationRow> &asyncs);

/// @p asyncs on a proxy of a service nobody owns leave lastError() as it was and log nothing.
void verifyAsyncCallsShowNothing(QDBusAbstractInterface &absent, const QList<OperationRow> &asyncs);

/// A row per operation, tagged with its name, in the column "row".
void addOperationRows(const QList<OperationRow> &rows);

/// The row's operation on a proxy of a service nobody owns fails: it shows .empty, and the
/// bus's ServiceUnknown error in the reply it is handed (if any) and in lastError().
void verifyFailsWhenTheServiceIsAbsent(const ProxyFactory &make, const QString &path,
                                       LogCheck log = LogCheck::Unchecked);

/// An error answer and its message as a report line quotes it.
struct LoggedError
{
    const char *name;
    QString message;
    QString quoted;
};

/// Per checked getter (.report opens its line), a row per error of @p errors and one for its
/// .wrongType answer, which QtDBus refuses with .typeError.
void addLoggedFailureRows(const QList<OperationRow> &getters, const QList<LoggedError> &errors);

/// The row's checked getter, answered as the row says, gives .empty and logs its one line.
void verifyLoggedFailure(FakeMeasApplication &fake, QDBusAbstractInterface &proxy);

/// The row's checked getter (rows of addOperationRows()) on a proxy of a service nobody
/// owns: .empty, ServiceUnknown, and one line quoting QtDBus's message.
void verifyLoggedFailureWhenTheServiceIsAbsent(const ProxyFactory &make, const QString &path);

/**
 * Checks that @p qtSignal of @p proxy relays the bus signal @p member of the proxy's own
 * service, path and interface with @p arguments, and nothing sent from another path,
 * another interface or another connection; and that relaying stops once the last
 * receiver has gone.
 */
void verifySignalRelay(QDBusAbstractInterface &proxy, FakeMeasApplication &fake, const char *qtSignal,
                       const QString &member, const QList<QVariant> &arguments);

// ---- the composite classes: variants, maps, setToDefault() and the meta-object ------------

inline QVariant wrappedValue(const QVariant &value)
{
    return QVariant::fromValue(QDBusVariant(value));
}

/// An a{sv} with @p entries in this order, repeated keys included, as only a peer can send it.
QDBusArgument settingsMapArgument(const QList<QPair<QString, QVariant>> &entries);

/**
 * @p get reads a map that the application answers to @p member with @p entries, in this
 * order, some keys repeated, as only a peer can send it. The result is what QMap makes of
 * them: Qt 5's keeps every entry of a repeated key, Qt 6's the later one. Nothing is logged.
 */
void verifyRepeatedKeysKeptAsQMapDoes(FakeMeasApplication &fake, const QString &member,
                                      const std::function<SettingsMap()> &get,
                                      const QList<QPair<QString, QVariant>> &entries);

/// @p setToDefault waits for the answer: its error is in lastError() when it returns, and is not logged.
void verifySetToDefaultWaitsAndDropsTheAnswer(FakeMeasApplication &fake, QDBusAbstractInterface &proxy,
                                              const ProxyOperation &setToDefault, const QString &errorName,
                                              const QString &message);

/// The class declares @p signalSignatures, then @p slotSignatures, in this order and nothing
/// else; it derives from QDBusAbstractInterface directly and adds no property, enumerator or
/// class info.
void verifySignalsThenSlots(const QMetaObject &meta, const QObject &proxy, const QStringList &signalSignatures,
                            const QStringList &slotSignatures);

/// Each method (by signature) returns the type of that name.
void verifyReturnTypes(const QMetaObject &meta, const QList<QPair<const char *, const char *>> &returnTypes);

/// A row per own method: its index after the base's, its signature and its kind.
void addMethodPlacementRows(const QStringList &signalSignatures, const QStringList &slotSignatures);

/// The current row's method is at that index, and found there by its signature too.
void verifyMethodPlacementRow(const QMetaObject &meta);

#endif
