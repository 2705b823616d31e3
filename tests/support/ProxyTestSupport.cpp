#include "ProxyTestSupport.h"

#include <QCoreApplication>
#include <QDBusVariant>

QList<QVariant> comparableArguments(const QList<QVariant> &arguments)
{
    QList<QVariant> comparable;
    for (const QVariant &argument : arguments) {
        if (argument.userType() != qMetaTypeId<QDBusVariant>()) {
            comparable.append(argument);
            continue;
        }
        const QVariant content = qvariant_cast<QDBusVariant>(argument).variant();
        comparable.append(QVariantList{QStringLiteral("QDBusVariant"), QString::fromLatin1(content.typeName()),
                                       comparableArguments({content}).first()});
    }
    return comparable;
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
        QCOMPARE(comparableArguments(spy.first()), comparableArguments(arguments));
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
