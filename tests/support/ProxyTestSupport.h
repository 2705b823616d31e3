#ifndef TESTS_PROXYTESTSUPPORT_H
#define TESTS_PROXYTESTSUPPORT_H

#include "BusTestSupport.h"
#include "FakeMeasApplication.h"
#include "LogCapture.h"

#include <QDBusAbstractInterface>
#include <QDBusReply>
#include <QMetaMethod>
#include <QMetaObject>
#include <QPointer>
#include <QSignalSpy>
#include <QStringList>
#include <QVariant>
#include <QtTest/QTest>

#include <functional>
#include <memory>

/// A service nobody owns on the test bus.
inline QString absentService()
{
    return QStringLiteral("com.velk.mqx.app.absent");
}

/// What a caller can see of a reply: whether it is valid, and its value.
struct Outcome
{
    bool valid;
    QVariant value;
};

template<typename T>
Outcome outcomeOf(const QDBusReply<T> &reply)
{
    return {reply.isValid(), QVariant::fromValue(reply.value())};
}

inline Outcome outcomeOf(const QDBusReply<void> &reply)
{
    return {reply.isValid(), QVariant()};
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

/// Compares the one call the fake received with the expected wire form.
inline void verifySingleCall(const FakeMeasApplication &fake, const QString &path, const QString &member,
                             const QString &signature, const QList<QVariant> &arguments)
{
    QVERIFY(fake.waitForCalls(1));
    const QList<ReceivedCall> calls = fake.calls();
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.first().path, path);
    QCOMPARE(calls.first().interface, FakeMeasApplication::interfaceName);
    QCOMPARE(calls.first().member, member);
    QCOMPARE(calls.first().signature, signature);
    QCOMPARE(calls.first().arguments, arguments);
}

/**
 * @p arguments in a form QCOMPARE can judge: each QDBusVariant becomes a list of its
 * wrapper's name, its content's type name and its content. Qt 5 compares QDBusVariant
 * values inside a QVariant byte by byte, so equal values may differ there.
 */
QList<QVariant> comparableArguments(const QList<QVariant> &arguments);

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
template<typename Proxy>
void verifyConstructionContract(FakeMeasApplication &fake, const QString &path)
{
    LogCapture log;
    auto parent = std::make_unique<QObject>();
    fake.clearCalls();

    QPointer<Proxy> proxy = new Proxy(fake.service(), path, QDBusConnection::sessionBus(), parent.get());

    QCOMPARE(proxy->parent(), parent.get());
    QCOMPARE(proxy->service(), fake.service());
    QCOMPARE(proxy->path(), path);
    QCOMPARE(proxy->interface(), FakeMeasApplication::interfaceName);
    QVERIFY(!proxy->lastError().isValid());
    // A message sent at construction would have reached the fake before this round trip ends.
    syncWithBus(proxy->connection());
    QCOMPARE(fake.callCount(), 0);
    QCOMPARE(log.lines(), QList<LogLine>());

    parent.reset();
    QVERIFY(proxy.isNull());
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

/// qt_metacast answers the class's own name with the object and leaves other names to the base.
template<typename Proxy>
void verifyMetaCast(Proxy &proxy, const char *className)
{
    QCOMPARE(proxy.qt_metacast(className), static_cast<void *>(&proxy));
    QCOMPARE(proxy.qt_metacast("QDBusAbstractInterface"),
             static_cast<void *>(static_cast<QDBusAbstractInterface *>(&proxy)));
    QCOMPARE(proxy.qt_metacast("QObject"), static_cast<void *>(static_cast<QObject *>(&proxy)));
    QCOMPARE(proxy.qt_metacast(nullptr), nullptr);
    QCOMPARE(proxy.qt_metacast("NoSuchInterface"), nullptr);
}

/**
 * Checks that @p qtSignal of @p proxy relays the bus signal @p member of the proxy's own
 * service, path and interface with @p arguments, and nothing sent from another path,
 * another interface or another connection; and that relaying stops once the last
 * receiver has gone.
 */
void verifySignalRelay(QDBusAbstractInterface &proxy, FakeMeasApplication &fake, const char *qtSignal,
                       const QString &member, const QList<QVariant> &arguments);

#endif
