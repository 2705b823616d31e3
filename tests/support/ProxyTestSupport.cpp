#include "ProxyTestSupport.h"

#include <QCoreApplication>

void verifyConstructionContract(const ProxyFactory &make, FakeMeasApplication &fake, const QString &path)
{
    LogCapture log;
    auto parent = std::make_unique<QObject>();
    fake.clearCalls();

    QPointer<QDBusAbstractInterface> proxy = make(fake.service(), path, parent.get());

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

void verifySignalRelay(QDBusAbstractInterface &proxy, FakeMeasApplication &fake, const char *qtSignal,
                       const QString &member, const QList<QVariant> &arguments)
{
    const QString path = proxy.path();
    DeliveryCounter deliveries(&proxy);
    {
        QSignalSpy spy(&proxy, qtSignal);
        QVERIFY(spy.isValid());
        syncWithBus(proxy.connection());

        // Sent before the proxy's own signal: by the time that one arrives these have been
        // dropped, or they would stand before it in the spy.
        fake.emitSignal(path + QStringLiteral("/Other"), member, arguments);
        fake.emitSignal(path, member, arguments, QStringLiteral("com.velk.mqx.OtherInterface"));
        fake.emitForeignSignal(path, member, arguments);
        fake.emitSignal(path, member, arguments);

        QVERIFY(spy.wait(5000));
        QCOMPARE(spy.count(), 1);
        QCOMPARE(wireTexts(spy.first()), wireTexts(arguments));
        QCOMPARE(deliveries.count(), 1);
    }

    // The spy was the last receiver; QtDBus drops the subscription from the event loop.
    QCoreApplication::sendPostedEvents();
    syncWithBus(proxy.connection());
    const int deliveredBefore = deliveries.count();

    // The witness keeps the bus delivering the signal to this connection, but the proxy
    // must no longer relay it.
    BusSignalWitness witness(proxy.connection(), proxy.service(), path, proxy.interface(), member);
    fake.emitSignal(path, member, arguments);
    QTRY_COMPARE(witness.count(), 1);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(deliveries.count(), deliveredBefore);
}

void verifyMetaCast(QDBusAbstractInterface &proxy, const char *className, const QList<const char *> &otherNames)
{
    QCOMPARE(proxy.qt_metacast(className), static_cast<void *>(&proxy));
    QCOMPARE(proxy.qt_metacast("QDBusAbstractInterface"), static_cast<void *>(&proxy));
    QCOMPARE(proxy.qt_metacast("QObject"), static_cast<void *>(static_cast<QObject *>(&proxy)));
    QCOMPARE(proxy.qt_metacast(nullptr), nullptr);
    QCOMPARE(proxy.qt_metacast("NoSuchInterface"), nullptr);
    for (const char *name : otherNames)
        QCOMPARE(proxy.qt_metacast(name), nullptr);
}

void verifySignalsThenSlots(const QMetaObject &meta, const QObject &proxy, const QStringList &signalSignatures,
                            const QStringList &slotSignatures)
{
    QCOMPARE(ownMethodSignatures(meta), signalSignatures + slotSignatures);
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Signal), signalSignatures);
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Slot), slotSignatures);
    QCOMPARE(meta.superClass(), &QDBusAbstractInterface::staticMetaObject);
    QCOMPARE(proxy.metaObject(), &meta);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
    QCOMPARE(meta.classInfoCount(), meta.classInfoOffset());
}
