#include "ProxyReadBatch.h"

#include "SetupDevDataInterface.h"
#include "SetupIntInterface.h"

#include "FakeMeasApplication.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusVariant>
#include <QtTest/QTest>

#include <memory>

namespace {
const QString gainPath = QStringLiteral("/Setup/Gain");
const QString offsetPath = QStringLiteral("/Setup/Offset");
const QString modePath = QStringLiteral("/Setup/Mode");
const QString getValue = QStringLiteral("getValue");
} // namespace

class tst_ProxyReadBatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void startsEmpty();
    void eachReadGivesTheValueOfTheBlockingCall();
    void eachReadGivesTheErrorOfTheBlockingCall_data();
    void eachReadGivesTheErrorOfTheBlockingCall();
    void readsAVariantAsTheBlockingCallDoes();
    void sendsEveryReadBeforeAnyAnswerIsAwaited();
    void sendsTheMemberAsTheProxySendsIt();
    void leavesTheProxysLastErrorAlone();
    void anIndexWithoutAReadGivesAnError();

private:
    std::unique_ptr<FakeMeasApplication> m_application;
};

void tst_ProxyReadBatch::init()
{
    m_application.reset(new FakeMeasApplication);
}

void tst_ProxyReadBatch::cleanup()
{
    m_application.reset();
}

void tst_ProxyReadBatch::startsEmpty()
{
    const ProxyReadBatch batch;
    QCOMPARE(batch.size(), 0);
}

void tst_ProxyReadBatch::eachReadGivesTheValueOfTheBlockingCall()
{
    m_application->answer(gainPath, "getValue", ScriptedAnswer::value(42));
    m_application->answer(offsetPath, "getValue", ScriptedAnswer::value(-3));
    m_application->answer(modePath, "getValue", ScriptedAnswer::value(7));
    SetupIntInterface gain(m_application->service(), gainPath, QDBusConnection::sessionBus());
    SetupIntInterface offset(m_application->service(), offsetPath, QDBusConnection::sessionBus());
    SetupIntInterface mode(m_application->service(), modePath, QDBusConnection::sessionBus());

    ProxyReadBatch batch;
    QCOMPARE(batch.send(gain, getValue), 0);
    QCOMPARE(batch.send(offset, getValue), 1);
    QCOMPARE(batch.send(mode, getValue), 2);
    QCOMPARE(batch.size(), 3);

    // Collected out of order on purpose.
    QCOMPARE(batch.reply<int>(2).value(), mode.getValue().value());
    QCOMPARE(batch.reply<int>(0).value(), gain.getValue().value());
    QCOMPARE(batch.reply<int>(1).value(), offset.getValue().value());
    QCOMPARE(batch.reply<int>(1).value(), -3);
    QVERIFY(batch.reply<int>(0).isValid());
}

void tst_ProxyReadBatch::eachReadGivesTheErrorOfTheBlockingCall_data()
{
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<bool>("serviceOnBus");
    QTest::newRow("error reply") << ScriptedAnswer::error(QStringLiteral("com.velk.mqx.Error.Busy"),
                                                          QStringLiteral("busy"))
                                 << true;
    QTest::newRow("reply of another type") << ScriptedAnswer::value(QStringLiteral("42")) << true;
    QTest::newRow("empty reply") << ScriptedAnswer::reply() << true;
    QTest::newRow("service absent") << ScriptedAnswer::value(42) << false;
}

void tst_ProxyReadBatch::eachReadGivesTheErrorOfTheBlockingCall()
{
    QFETCH(ScriptedAnswer, answer);
    QFETCH(bool, serviceOnBus);
    m_application->answer("getValue", answer);
    const QString service =
        serviceOnBus ? m_application->service() : FakeMeasApplication::serviceFor(QStringLiteral("absent"));
    SetupIntInterface proxy(service, gainPath, QDBusConnection::sessionBus());

    ProxyReadBatch batch;
    batch.send(proxy, getValue);
    const QDBusReply<int> batched = batch.reply<int>(0);
    const QDBusReply<int> blocking = proxy.getValue();

    QVERIFY(!batched.isValid());
    QCOMPARE(batched.value(), 0);
    QCOMPARE(batched.error().type(), blocking.error().type());
    QCOMPARE(batched.error().name(), blocking.error().name());
    QCOMPARE(batched.error().message(), blocking.error().message());
}

void tst_ProxyReadBatch::readsAVariantAsTheBlockingCallDoes()
{
    m_application->answer("getValue", ScriptedAnswer::value(QVariant::fromValue(QDBusVariant(2.5))));
    SetupDevDataInterface proxy(m_application->service(), gainPath, QDBusConnection::sessionBus());

    ProxyReadBatch batch;
    batch.send(proxy, getValue);
    const QDBusReply<QDBusVariant> batched = batch.reply<QDBusVariant>(0);
    QVERIFY(batched.isValid());
    QCOMPARE(batched.value().variant(), proxy.getValue());
    QCOMPARE(batched.value().variant(), QVariant(2.5));
}

void tst_ProxyReadBatch::sendsEveryReadBeforeAnyAnswerIsAwaited()
{
    // The first read is never answered: a batch that waited after each send would have
    // its time-out error in by the time the second one arrives.
    m_application->answer(gainPath, "getValue", ScriptedAnswer::silence());
    m_application->answer(offsetPath, "getValue", ScriptedAnswer::value(-3));
    SetupIntInterface gain(m_application->service(), gainPath, QDBusConnection::sessionBus());
    SetupIntInterface offset(m_application->service(), offsetPath, QDBusConnection::sessionBus());

    ProxyReadBatch batch;
    batch.send(gain, getValue);
    batch.send(offset, getValue);
    QVERIFY(m_application->waitForCalls(2));
    QVERIFY(!batch.isAnswered(0));
    QCOMPARE(batch.reply<int>(1).value(), -3);
    QVERIFY(batch.isAnswered(1));
    QVERIFY(!batch.isAnswered(2));
}

void tst_ProxyReadBatch::sendsTheMemberAsTheProxySendsIt()
{
    m_application->answer("getValue", ScriptedAnswer::value(42));
    SetupIntInterface proxy(m_application->service(), gainPath, QDBusConnection::sessionBus());
    proxy.getValue();
    ProxyReadBatch batch;
    batch.send(proxy, getValue);
    batch.replyMessage(0);

    const QList<ReceivedCall> calls = m_application->calls();
    QCOMPARE(calls.size(), 2);
    QCOMPARE(calls.at(1).path, calls.at(0).path);
    QCOMPARE(calls.at(1).interface, calls.at(0).interface);
    QCOMPARE(calls.at(1).member, calls.at(0).member);
    QCOMPARE(calls.at(1).signature, calls.at(0).signature);
    QCOMPARE(calls.at(1).arguments, calls.at(0).arguments);
    QCOMPARE(calls.at(1).interface, QStringLiteral("com.velk.mqx.MeasApplInterface"));
}

void tst_ProxyReadBatch::leavesTheProxysLastErrorAlone()
{
    m_application->answer("getValue",
                          ScriptedAnswer::error(QStringLiteral("com.velk.mqx.Error.Busy"), QStringLiteral("busy")));
    SetupIntInterface proxy(m_application->service(), gainPath, QDBusConnection::sessionBus());
    QVERIFY(!proxy.lastError().isValid());

    ProxyReadBatch batch;
    batch.send(proxy, getValue);
    QVERIFY(!batch.reply<int>(0).isValid());
    QVERIFY(!proxy.lastError().isValid());
}

void tst_ProxyReadBatch::anIndexWithoutAReadGivesAnError()
{
    m_application->answer("getValue", ScriptedAnswer::value(42));
    SetupIntInterface proxy(m_application->service(), gainPath, QDBusConnection::sessionBus());
    ProxyReadBatch batch;
    batch.send(proxy, getValue);

    for (int index : {-1, 1, 1000}) {
        const QDBusMessage answer = batch.replyMessage(index);
        QCOMPARE(answer.type(), QDBusMessage::ErrorMessage);
        QCOMPARE(answer.errorName(), QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs"));
        QCOMPARE(answer.errorMessage(), QStringLiteral("ProxyReadBatch has no read %1").arg(index));
        QVERIFY(!batch.reply<int>(index).isValid());
    }
    QCOMPARE(batch.reply<int>(0).value(), 42);
}

QTEST_GUILESS_MAIN(tst_ProxyReadBatch)

#include "tst_proxyreadbatch.moc"
