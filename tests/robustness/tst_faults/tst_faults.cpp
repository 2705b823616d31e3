#include "BusTestSupport.h"
#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyClasses.h"
#include "SetupIntInterface.h"
#include "SlotInvocation.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QElapsedTimer>
#include <QProcess>
#include <QSignalSpy>
#include <QtTest/QTest>

#include <csignal>
#include <cstdio>
#include <memory>

namespace {

const QString path = QStringLiteral("/Setup/Element");
const QString silentApplicationOption = QStringLiteral("--silent-application");
/// libdbus's default reply time-out, which a proxy waits unless told otherwise.
const int defaultTimeoutMs = 25000;

/**
 * The application of the kill test, in a process of its own: it takes @p service, says
 * "ready", and at the first call it receives it kills itself without answering.
 */
int runSelfKillingApplication(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    FakeMeasApplication fake(QString::fromLocal8Bit(argv[2]));
    fake.answerUnscripted(ScriptedAnswer::silence());
    std::puts("ready");
    std::fflush(stdout);
    if (!fake.waitForCalls(1, 60000))
        return 1;
    std::raise(SIGKILL);
    return 1;
}

} // namespace

/// A measurement application that dies, restarts or hangs never takes its clients with it.
class tst_Faults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void aBlockingCallReturnsAnErrorWhenTheApplicationIsKilledWhileItWaits();
    void anApplicationRestartedUnderTheSameNameServesEarlierProxiesAndOnlyItsSignalsAreRelayed();
    void everyOperationThroughAProxyHonoursTheProxysOwnTimeout_data();
    void everyOperationThroughAProxyHonoursTheProxysOwnTimeout();
};

void tst_Faults::initTestCase()
{
    verifyProxyClassesAreThoseOfTheKindTable();
    registerOperationTypes();
}

void tst_Faults::cleanup()
{
    QCoreApplication::processEvents();
}

void tst_Faults::aBlockingCallReturnsAnErrorWhenTheApplicationIsKilledWhileItWaits()
{
    const QString service = FakeMeasApplication::serviceFor(QStringLiteral("killed"));
    QProcess application;
    application.start(QCoreApplication::applicationFilePath(), {silentApplicationOption, service});
    QVERIFY(application.waitForReadyRead(10000));
    QCOMPARE(application.readLine().trimmed(), QByteArray("ready"));
    SetupIntInterface proxy(service, path, QDBusConnection::sessionBus());

    LogCapture log;
    QElapsedTimer waited;
    waited.start();
    const QDBusReply<int> reply = proxy.getValue();

    QVERIFY(waited.elapsed() < defaultTimeoutMs);
    QVERIFY(application.waitForFinished(10000));
    QCOMPARE(application.exitStatus(), QProcess::CrashExit);
    QVERIFY(!reply.isValid());
    QCOMPARE(reply.value(), 0);
    QCOMPARE(reply.error().type(), QDBusError::NoReply);
    QCOMPARE(log.lines(),
             debugLines({QStringLiteral("SetupIntInterface::getValue() Error!  ") + quoted(reply.error().message()),
                         QStringLiteral("SetupIntInterface::getValue() Interface  ") +
                             quoted(FakeMeasApplication::interfaceName),
                         QStringLiteral("SetupIntInterface::getValue() Path  ") + quoted(path)}));
}

void tst_Faults::anApplicationRestartedUnderTheSameNameServesEarlierProxiesAndOnlyItsSignalsAreRelayed()
{
    auto first = std::make_unique<FakeMeasApplication>();
    first->answer(QStringLiteral("getValue"), ScriptedAnswer::value(1));
    SetupIntInterface proxy(first->service(), path, QDBusConnection::sessionBus());
    QSignalSpy changed(&proxy, SIGNAL(setupChanged(int)));
    syncWithBus(proxy.connection());
    QCOMPARE(proxy.getValue().value(), 1);

    // The old instance lets go of the name and lingers on the bus; a new one takes the name.
    first->releaseService();
    FakeMeasApplication second(first->service());
    second.answer(QStringLiteral("getValue"), ScriptedAnswer::value(2));
    QVERIFY(second.uniqueName() != first->uniqueName());

    first->emitSignal(path, QStringLiteral("setupChanged"), {13});
    second.emitSignal(path, QStringLiteral("setupChanged"), {42});

    QVERIFY(changed.wait(5000));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().first(), QVariant(42));
    const QDBusReply<int> reply = proxy.getValue();
    QVERIFY(reply.isValid());
    QCOMPARE(reply.value(), 2);
    QCOMPARE(first->callCount(), 1);
}

void tst_Faults::everyOperationThroughAProxyHonoursTheProxysOwnTimeout_data()
{
    QTest::addColumn<KindProxyClass>("proxyClass");
    QTest::addColumn<int>("index");
    for (const KindProxyClass &proxyClass : allProxyClasses()) {
        const QMetaObject &meta = *proxyClass.metaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            const QMetaMethod method = meta.method(i);
            // The remote command goes through the connector's connection, not the proxy.
            if (method.methodType() != QMetaMethod::Slot || method.access() != QMetaMethod::Public ||
                method.name() == "executeCommand")
                continue;
            // Cloned entries of default arguments call the full form.
            if (method.attributes() & QMetaMethod::Cloned)
                continue;
            QTest::addRow("%s::%s", proxyClass.name, method.methodSignature().constData()) << proxyClass << i;
        }
    }
}

void tst_Faults::everyOperationThroughAProxyHonoursTheProxysOwnTimeout()
{
    QFETCH(KindProxyClass, proxyClass);
    QFETCH(int, index);
    const QMetaMethod operation = proxyClass.metaObject->method(index);
    FakeMeasApplication fake;
    fake.answerUnscripted(ScriptedAnswer::silence());
    std::unique_ptr<QDBusAbstractInterface> proxy(proxyClass.make(fake.service(), path, nullptr));
    // Short: nothing answers, so every blocking operation waits exactly this long.
    proxy->setTimeout(10);
    SlotInvocation invocation(operation);
    QVERIFY(invocation.complete());
    const bool fireAndForget = operation.name().endsWith("Async");

    QElapsedTimer waited;
    waited.start();
    LogCapture log;
    QVERIFY(invocation.invoke(proxy.get()));

    QVERIFY(waited.elapsed() < defaultTimeoutMs);
    QVERIFY(fake.waitForCalls(1));
    if (fireAndForget) {
        QVERIFY(!proxy->lastError().isValid());
    } else {
        QCOMPARE(proxy->lastError().type(), QDBusError::NoReply);
    }
}

int main(int argc, char **argv)
{
    if (argc == 3 && silentApplicationOption == QLatin1String(argv[1]))
        return runSelfKillingApplication(argc, argv);
    QCoreApplication app(argc, argv);
    tst_Faults test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_faults.moc"
