#include "BusTestSupport.h"
#include "FakeMeasApplication.h"
#include "RelayedSignals.h"
#include "ResultVarArrayInterface.h"
#include "SetupIntInterface.h"
#include "SetupMapItemInterface.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QFile>
#include <QtTest/QTest>

#include <cstdio>
#include <memory>
#include <unistd.h>

namespace {

const QString path = QStringLiteral("/Setup/Element");

/// A size from the environment, or @p fallback: CTest runs the short soak, tools/run-soak.sh the long one.
int sizeFromEnvironment(const char *name, int fallback)
{
    bool ok = false;
    const int size = qEnvironmentVariableIntValue(name, &ok);
    return ok && size > 0 ? size : fallback;
}

/// Resident memory of this process in KiB, from /proc/self/statm.
qint64 residentKiB()
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return -1;
    const QList<QByteArray> fields = statm.readAll().split(' ');
    return fields.size() > 1 ? fields.at(1).toLongLong() * (sysconf(_SC_PAGESIZE) / 1024) : -1;
}

/// The match rules the bus daemon holds for @p connection, or -1 when it does not tell.
int matchRulesAtTheDaemon(const QDBusConnection &connection)
{
    QDBusMessage query = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus.Debug.Stats"), QStringLiteral("GetConnectionStats"));
    query.setArguments({connection.baseService()});
    const QDBusMessage reply = connection.call(query);
    if (reply.type() != QDBusMessage::ReplyMessage)
        return -1;
    const QVariantMap stats = qdbus_cast<QVariantMap>(reply.arguments().value(0));
    return stats.contains(QStringLiteral("MatchRules")) ? stats.value(QStringLiteral("MatchRules")).toInt() : -1;
}

void report(const char *what, int count, qint64 before, qint64 after, qint64 ms)
{
    std::printf("soak: %s: %d in %lld ms; resident %lld KiB before, %lld KiB after\n", what, count,
                static_cast<long long>(ms), static_cast<long long>(before), static_cast<long long>(after));
    std::fflush(stdout);
}

} // namespace

/**
 * Long use leaves nothing behind: many calls, many signals and many proxies made and
 * destroyed. Short here, so that the sanitizer build checks it for leaks at every run;
 * tools/run-soak.sh runs it at full length and prints the figures docs/robustness.md gives.
 */
class tst_Soak : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void manyMixedCallsAllGetTheirAnswers();
    void manyReceivedSignalsAreAllRelayed();
    void proxiesMadeAndDestroyedWithSignalsLeaveNoMatchRulesAtTheDaemon();

private:
    std::unique_ptr<FakeMeasApplication> m_fake;
};

void tst_Soak::initTestCase()
{
    verifyProxyClassesAreThoseOfTheKindTable();
    m_fake.reset(new FakeMeasApplication);
    m_fake->answer(QStringLiteral("getValue"), ScriptedAnswer::value(5));
    m_fake->answer(QStringLiteral("setValue"), ScriptedAnswer::value(true));
    m_fake->answer(QStringLiteral("getValues"), ScriptedAnswer::value(QVariantList{1, QStringLiteral("two"), 3.0}));
    m_fake->answer(QStringLiteral("getString"),
                   ScriptedAnswer::error(QStringLiteral("com.velk.mqx.Error.Failed"), QStringLiteral("no text")));
}

void tst_Soak::cleanupTestCase()
{
    m_fake.reset();
}

void tst_Soak::manyMixedCallsAllGetTheirAnswers()
{
    const int calls = sizeFromEnvironment("DBUSINTERFACES_SOAK_CALLS", 2000);
    SetupIntInterface scalar(m_fake->service(), path, QDBusConnection::sessionBus());
    ResultVarArrayInterface row(m_fake->service(), path, QDBusConnection::sessionBus());
    SetupMapItemInterface map(m_fake->service(), path, QDBusConnection::sessionBus());
    // The error lines of the failing calls would flood the output.
    const QtMessageHandler previous =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const qint64 before = residentKiB();
    QElapsedTimer timer;
    timer.start();

    int answered = 0;
    for (int i = 0; i < calls; i += 5) {
        answered += scalar.getValue().value() == 5;
        answered += scalar.setValue(i).value();
        answered += row.getValues().size() == 3;
        answered += !scalar.getString().isValid();
        map.setValueAsync(QStringLiteral("k"), QVariantMap{{QStringLiteral("n"), i}});
        ++answered;
        // The fake application lives in this process: its record of calls must not count.
        if (i % 1000 == 0)
            m_fake->clearCalls();
    }
    syncWithBus(scalar.connection());

    qInstallMessageHandler(previous);
    report("mixed calls", calls, before, residentKiB(), timer.elapsed());
    QCOMPARE(answered, (calls + 4) / 5 * 5);
}

void tst_Soak::manyReceivedSignalsAreAllRelayed()
{
    const int signalCount = sizeFromEnvironment("DBUSINTERFACES_SOAK_SIGNALS", 2000);
    SetupIntInterface proxy(m_fake->service(), path, QDBusConnection::sessionBus());
    int received = 0;
    int sum = 0;
    connect(&proxy, &SetupIntInterface::setupChanged, this, [&](int value) {
        ++received;
        sum += value % 7;
    });
    syncWithBus(proxy.connection());
    const qint64 before = residentKiB();
    QElapsedTimer timer;
    timer.start();

    int expectedSum = 0;
    for (int i = 0; i < signalCount; ++i) {
        m_fake->emitSignal(path, QStringLiteral("setupChanged"), {i});
        expectedSum += i % 7;
        // Deliver as they come, as a client's event loop would.
        if (i % 100 == 99)
            QCoreApplication::processEvents();
    }
    QTRY_COMPARE_WITH_TIMEOUT(received, signalCount, 60000);

    report("received signals", signalCount, before, residentKiB(), timer.elapsed());
    QCOMPARE(sum, expectedSum);
}

void tst_Soak::proxiesMadeAndDestroyedWithSignalsLeaveNoMatchRulesAtTheDaemon()
{
    const int perClass = sizeFromEnvironment("DBUSINTERFACES_SOAK_PROXIES", 100);
    const QDBusConnection connection = QDBusConnection::sessionBus();
    syncWithBus(connection);
    QCoreApplication::processEvents();
    const int rulesBefore = matchRulesAtTheDaemon(connection);
    const qint64 before = residentKiB();
    QElapsedTimer timer;
    timer.start();

    int made = 0;
    int rulesWhileListening = -1;
    for (const KindProxyClass &proxyClass : allProxyClasses()) {
        for (int i = 0; i < perClass; ++i) {
            std::unique_ptr<QDBusAbstractInterface> proxy(proxyClass.make(m_fake->service(), path, nullptr));
            const std::vector<RelayedSignal> relayed = allRelayedSignals();
            for (const RelayedSignal &signal : relayed) {
                if (QString::fromLatin1(signal.proxyClass.name) != QLatin1String(proxyClass.name))
                    continue;
                QObject receiver;
                QObject::connect(proxy.get(), signal.signal().constData(), &receiver, SLOT(deleteLater()));
                if (rulesWhileListening < 0)
                    rulesWhileListening = matchRulesAtTheDaemon(connection);
                QObject::disconnect(proxy.get(), signal.signal().constData(), &receiver, SLOT(deleteLater()));
            }
            ++made;
        }
    }
    // QtDBus removes rules from the event loop; the daemon has them all once this call returns.
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    syncWithBus(connection);
    const int rulesAfter = matchRulesAtTheDaemon(connection);

    report("proxies made and destroyed", made, before, residentKiB(), timer.elapsed());
    std::printf("soak: match rules at the daemon: %d before, %d after\n", rulesBefore, rulesAfter);
    if (rulesBefore < 0)
        QSKIP("this bus daemon does not give connection statistics");
    // The count is seen to move while a signal is listened to, so an unchanged count means something.
    QVERIFY(rulesWhileListening > rulesBefore);
    QCOMPARE(rulesAfter, rulesBefore);
}

QTEST_GUILESS_MAIN(tst_Soak)

#include "tst_soak.moc"
