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
// proxy class (ProxyOperation, made by onProxy or byName), the one check of a single call
// (verifySingleCall) and one quoting helper (quoted).

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

/// The message of QtDBus's own error for a reply of @p value where an R was expected.
template<typename R>
QString replyTypeError(const QVariant &value)
{
    const QDBusMessage call = QDBusMessage::createMethodCall(QStringLiteral("com.velk.mqx.app.local"),
                                                             QStringLiteral("/"), QString(), QStringLiteral("get"));
    const QDBusReply<R> reply(call.createReply(value));
    return reply.error().message();
}

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

/// qt_metacast answers the class's own name with the object and leaves other names to the
/// base; @p otherNames (near misses, other classes) are not the class.
void verifyMetaCast(QDBusAbstractInterface &proxy, const char *className, const QList<const char *> &otherNames = {});

/**
 * Checks that @p qtSignal of @p proxy relays the bus signal @p member of the proxy's own
 * service, path and interface with @p arguments, and nothing sent from another path,
 * another interface or another connection; and that relaying stops once the last
 * receiver has gone.
 */
void verifySignalRelay(QDBusAbstractInterface &proxy, FakeMeasApplication &fake, const char *qtSignal,
                       const QString &member, const QList<QVariant> &arguments);

/// @p value in a D-Bus variant.
inline QVariant wrappedValue(const QVariant &value)
{
    return QVariant::fromValue(QDBusVariant(value));
}

/// The class declares @p signalSignatures, then @p slotSignatures, in this order and nothing
/// else; it derives from QDBusAbstractInterface directly and adds no property, enumerator or
/// class info.
void verifySignalsThenSlots(const QMetaObject &meta, const QObject &proxy, const QStringList &signalSignatures,
                            const QStringList &slotSignatures);

#endif
