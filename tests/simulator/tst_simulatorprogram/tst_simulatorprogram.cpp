#include "SimulatorProcess.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <limits>

#include <sys/types.h>

namespace {

struct Run
{
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

/// Runs the program to its end; the bound only ends a run that hangs.
Run run(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(SIMULATOR_PROGRAM), arguments);
    Run result;
    if (!process.waitForFinished(20000)) {
        process.kill();
        process.waitForFinished();
        return result;
    }
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    return result;
}

} // namespace

class tst_SimulatorProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void helpDescribesTheOptions();
    void badCommandLinesEndWithAMessageAndStatusOne_data();
    void badCommandLinesEndWithAMessageAndStatusOne();
    void badModelFilesEndWithAMessageAndStatusTwo_data();
    void badModelFilesEndWithAMessageAndStatusTwo();
    void aModelFileIsServed();
    void theDefaultModelIsTheShippedFile();
    void aNameAlreadyOwnedEndsWithStatusThree();
    void theRateSetsTheLengthOfATick();
    void aBusAddressIsUsedInsteadOfTheSessionBus();
    void anUnreachableBusEndsWithStatusThree();
    void aModelFilesFaultActsOnItsElement();
    void theSameSeedRepeatsTheMeasurementAcrossRuns();
    void aLongTickIsAnsweredAndANegativeOneRefused();
    void theBusDaemonEndingEndsItWithStatusThree();
    void sigintAndSigtermEndItCleanly_data();
    void sigintAndSigtermEndItCleanly();

private:
    QTemporaryDir m_dir;
};

void tst_SimulatorProgram::helpDescribesTheOptions()
{
    const Run help = run({QStringLiteral("--help")});
    QCOMPARE(help.exitCode, 0);
    for (const char *option : {"--name", "--address", "--model", "--seed", "--rate", "--manual-clock", "--log"})
        QVERIFY2(help.out.contains(option), option);
}

void tst_SimulatorProgram::badCommandLinesEndWithAMessageAndStatusOne_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("message");

    QTest::newRow("unknown option") << QStringList{"--colour"}
                                    << QByteArray("dbusinterfaces-simulator: Unknown option 'colour'. (see --help)\n");
    QTest::newRow("missing value") << QStringList{"--seed"}
                                   << QByteArray(
                                          "dbusinterfaces-simulator: Missing value after '--seed'. (see --help)\n");
    QTest::newRow("seed not a number")
        << QStringList{"--seed", "x"}
        << QByteArray("dbusinterfaces-simulator: --seed needs a non-negative integer, not \"x\"\n");
    QTest::newRow("rate not positive") << QStringList{"--rate", "0"}
                                       << QByteArray(
                                              "dbusinterfaces-simulator: --rate needs a positive number, not \"0\"\n");
    QTest::newRow("bad name") << QStringList{"--name", "bad name!"}
                              << QByteArray(
                                     "dbusinterfaces-simulator: --name: \"bad name!\" is not a valid application "
                                     "name (letters, digits, \"_\" and \"-\", not starting with a digit, "
                                     "at most 238 characters)\n");
    QTest::newRow("stray argument") << QStringList{"now"}
                                    << QByteArray(
                                           "dbusinterfaces-simulator: unexpected argument \"now\" (see --help)\n");
}

void tst_SimulatorProgram::badCommandLinesEndWithAMessageAndStatusOne()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, message);
    const Run result = run(arguments);
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.err, message);
}

void tst_SimulatorProgram::badModelFilesEndWithAMessageAndStatusTwo_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("problem");

    QTest::newRow("not JSON") << QByteArray("{") << "not JSON: unterminated object at offset 1";
    QTest::newRow("unknown kind") << QByteArray(R"({"elements": [{"path": "/A", "kind": "float"}]})")
                                  << "element '/A': unknown kind \"float\"";
    QTest::newRow("missing field") << QByteArray(R"({"elements": [{"path": "/A", "kind": "string"}]})")
                                   << "element '/A': missing field \"default\"";
    QTest::newRow("default outside range")
        << QByteArray(R"({"elements": [{"path": "/A", "kind": "double", "default": 5, "min": 0, "max": 1}]})")
        << "element '/A': default: 5 is outside 0..1";
    QTest::newRow("misspelt field")
        << QByteArray(R"({"elements": [{"path": "/A", "kind": "int", "default": 1, "min": 0, "max": 2,
                          "granularty": 1}]})")
        << "element '/A': unknown field \"granularty\"";
    QTest::newRow("field of another kind")
        << QByteArray(R"({"elements": [{"path": "/A", "kind": "resultInt", "center": 1, "spread": 1, "decimals": 2}]})")
        << "element '/A': unknown field \"decimals\"";
    QTest::newRow("misspelt top-level field") << QByteArray(R"({"rat": 5, "elements": []})") << "unknown field \"rat\"";
    QTest::newRow("misspelt fault field") << QByteArray(R"({"elements": [{"path": "/A", "kind": "bool", "default": true,
                          "fault": {"kind": "silent", "ms": 5}}]})")
                                          << "element '/A': fault: unknown field \"ms\"";
    QTest::newRow("misspelt item field") << QByteArray(
                                                R"({"elements": [{"path": "/A", "kind": "mapList", "keyItem": "name",
                          "items": {"name": {}, "level": {"min": 0, "max": 1, "unti": "V"}}, "default": []}]})")
                                         << "element '/A': item \"level\": unknown field \"unti\"";
    QTest::newRow("element rate 0")
        << QByteArray(R"({"elements": [{"path": "/A", "kind": "resultInt", "center": 1, "spread": 1, "rate": 0}]})")
        << "element '/A': rate must be positive";
    QTest::newRow("negative decimals")
        << QByteArray(
               R"({"elements": [{"path": "/A", "kind": "resultDouble", "center": 1, "spread": 1, "decimals": -3}]})")
        << "element '/A': decimals must lie in 0..15";
    QTest::newRow("choice holding the separator")
        << QByteArray(R"({"elements": [{"path": "/A", "kind": "enum", "choices": ["a;b", "c"], "default": 1}]})")
        << "element '/A': choice \"a;b\" holds \";\", which separates the choices in the value list";
    QTest::newRow("array too large")
        << QByteArray(
               R"({"elements": [{"path": "/A", "kind": "resultIntArray", "size": 100000000, "center": 1, "spread": 1}]})")
        << "element '/A': size must lie in 1..65536";
    QTest::newRow("bad application name")
        << QByteArray(R"({"application": "bad name!", "elements": []})")
        << "application: \"bad name!\" is not a valid application name (letters, digits, \"_\" and \"-\", not "
           "starting with a digit, at most 238 characters)";
}

void tst_SimulatorProgram::badModelFilesEndWithAMessageAndStatusTwo()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, problem);
    const QString fileName = m_dir.filePath(QStringLiteral("bad.json"));
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(content);
    file.close();

    const Run result = run({QStringLiteral("--model"), fileName});

    QCOMPARE(result.exitCode, 2);
    QCOMPARE(QString::fromUtf8(result.err),
             QStringLiteral("dbusinterfaces-simulator: %1: %2\n").arg(fileName, problem));
}

void tst_SimulatorProgram::aModelFileIsServed()
{
    const QString fileName = m_dir.filePath(QStringLiteral("bench.json"));
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(R"({"elements": [{"path": "/Setup/Gain", "kind": "int", "default": 4, "min": 0, "max": 8}]})");
    file.close();

    SimulatorProcess simulator({QStringLiteral("--model"), fileName});
    QVERIFY(simulator.waitForReady());

    QDBusMessage call =
        QDBusMessage::createMethodCall(SimulatorProcess::service, QStringLiteral("/Setup/Gain"),
                                       QStringLiteral("com.velk.mqx.MeasApplInterface"), QStringLiteral("getValue"));
    QCOMPARE(QDBusConnection::sessionBus().call(call).arguments(), QVariantList{4});
    QDBusMessage absent =
        QDBusMessage::createMethodCall(SimulatorProcess::service, QStringLiteral("/Setup/Acquisition/Averages"),
                                       QStringLiteral("com.velk.mqx.MeasApplInterface"), QStringLiteral("getValue"));
    QCOMPARE(QDBusConnection::sessionBus().call(absent).errorName(),
             QStringLiteral("org.freedesktop.DBus.Error.UnknownObject"));
}

void tst_SimulatorProgram::theDefaultModelIsTheShippedFile()
{
    QFile shipped(QStringLiteral(SIMULATOR_SOURCE_DIR "/default-model.json"));
    QVERIFY(shipped.open(QIODevice::ReadOnly));
    const Run dump = run({QStringLiteral("--dump-model")});
    QCOMPARE(dump.exitCode, 0);
    QCOMPARE(dump.out, shipped.readAll());
}

void tst_SimulatorProgram::aNameAlreadyOwnedEndsWithStatusThree()
{
    SimulatorProcess first;
    QVERIFY(first.waitForReady());
    const Run second = run({QStringLiteral("--name"), SimulatorProcess::name});
    QCOMPARE(second.exitCode, 3);
    QCOMPARE(second.err,
             QByteArray("dbusinterfaces-simulator: com.velk.mqx.app.simtest is already owned by another connection\n"));
}

void tst_SimulatorProgram::theRateSetsTheLengthOfATick()
{
    SimulatorProcess simulator({QStringLiteral("--rate"), QStringLiteral("5")});
    QVERIFY(simulator.waitForReady());
    QCOMPARE(simulator.control(QStringLiteral("tick"), {2}).arguments(), QVariantList{qlonglong(400)});
}

void tst_SimulatorProgram::aBusAddressIsUsedInsteadOfTheSessionBus()
{
    SimulatorProcess simulator(
        {QStringLiteral("--address"), QString::fromLocal8Bit(qgetenv("DBUS_SESSION_BUS_ADDRESS"))});
    QVERIFY(simulator.waitForReady());
    QVERIFY(QDBusConnection::sessionBus().interface()->isServiceRegistered(SimulatorProcess::service));
}

void tst_SimulatorProgram::anUnreachableBusEndsWithStatusThree()
{
    const Run result = run({QStringLiteral("--address"), QStringLiteral("unix:path=") + m_dir.filePath("no-bus")});
    QCOMPARE(result.exitCode, 3);
    QVERIFY2(result.err.startsWith("dbusinterfaces-simulator: cannot connect to the bus: "), result.err.constData());
}

void tst_SimulatorProgram::aModelFilesFaultActsOnItsElement()
{
    const QString fileName = m_dir.filePath(QStringLiteral("faulty.json"));
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(R"({"elements": [{"path": "/Setup/Gain", "kind": "int", "default": 4, "min": 0, "max": 8,
                  "fault": {"kind": "error", "name": "com.velk.mqx.Error.Locked", "message": "Front panel lock"}}]})");
    file.close();
    SimulatorProcess simulator({QStringLiteral("--model"), fileName});
    QVERIFY(simulator.waitForReady());

    const QDBusMessage reply = QDBusConnection::sessionBus().call(
        QDBusMessage::createMethodCall(SimulatorProcess::service, QStringLiteral("/Setup/Gain"),
                                       QStringLiteral("com.velk.mqx.MeasApplInterface"), QStringLiteral("getValue")));
    QCOMPARE(reply.errorName(), QStringLiteral("com.velk.mqx.Error.Locked"));
    QCOMPARE(reply.errorMessage(), QStringLiteral("Front panel lock"));
}

static QVariantList measuredAfterTicks(const QString &seed)
{
    SimulatorProcess simulator({QStringLiteral("--seed"), seed});
    if (!simulator.waitForReady())
        return {};
    simulator.control(QStringLiteral("tick"), {5});
    QDBusMessage call =
        QDBusMessage::createMethodCall(SimulatorProcess::service, QStringLiteral("/Result/Spectrum/Bins"),
                                       QStringLiteral("com.velk.mqx.MeasApplInterface"), QStringLiteral("getString"));
    return QDBusConnection::sessionBus().call(call).arguments();
}

void tst_SimulatorProgram::theSameSeedRepeatsTheMeasurementAcrossRuns()
{
    const QVariantList first = measuredAfterTicks(QStringLiteral("3"));
    QCOMPARE(first.size(), 1);
    QCOMPARE(measuredAfterTicks(QStringLiteral("3")), first);
    QVERIFY(measuredAfterTicks(QStringLiteral("4")) != first);
}

void tst_SimulatorProgram::aLongTickIsAnsweredAndANegativeOneRefused()
{
    SimulatorProcess simulator;
    QVERIFY(simulator.waitForReady());
    const QDBusMessage longTick = simulator.control(QStringLiteral("tick"), {std::numeric_limits<int>::max()});
    QCOMPARE(longTick.type(), QDBusMessage::ReplyMessage);
    const QVariantList after = {qlonglong(std::numeric_limits<int>::max()) * 100};
    QCOMPARE(longTick.arguments(), after);

    const QDBusMessage negative = simulator.control(QStringLiteral("tick"), {-5});
    QCOMPARE(negative.errorName(), QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs"));
    QCOMPARE(simulator.control(QStringLiteral("tick"), {0}).arguments(), after);
    QCOMPARE(simulator.control(QStringLiteral("quit")).type(), QDBusMessage::ReplyMessage);
    QVERIFY(simulator.process().waitForFinished(20000));
    QCOMPARE(simulator.process().exitCode(), 0);
}

void tst_SimulatorProgram::theBusDaemonEndingEndsItWithStatusThree()
{
    QProcess daemon;
    daemon.start(QStringLiteral("dbus-daemon"),
                 {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address=1")});
    QVERIFY(daemon.waitForReadyRead(20000));
    const QString address = QString::fromLocal8Bit(daemon.readLine().trimmed());

    QProcess simulator;
    simulator.start(QStringLiteral(SIMULATOR_PROGRAM),
                    {QStringLiteral("--manual-clock"), QStringLiteral("--address"), address, QStringLiteral("--name"),
                     SimulatorProcess::name});
    QVERIFY(simulator.waitForReadyRead(20000));
    QCOMPARE(simulator.readLine(), QByteArray("ready\n"));
    daemon.kill();
    QVERIFY(daemon.waitForFinished(20000));

    const bool ended = simulator.waitForFinished(20000);
    if (!ended) {
        simulator.kill();
        simulator.waitForFinished(20000);
    }
    QVERIFY(ended);
    QCOMPARE(simulator.exitStatus(), QProcess::NormalExit);
    QCOMPARE(simulator.exitCode(), 3);
    QCOMPARE(simulator.readAllStandardError(),
             QByteArray("dbusinterfaces-simulator: lost the connection to the bus\n"));
}

void tst_SimulatorProgram::sigintAndSigtermEndItCleanly_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<bool>("sigintIgnored");
    QTest::newRow("SIGTERM") << int(SIGTERM) << false;
    QTest::newRow("SIGINT") << int(SIGINT) << false;
    QTest::newRow("SIGINT, inherited as ignored") << int(SIGINT) << true;
}

void tst_SimulatorProgram::sigintAndSigtermEndItCleanly()
{
    QFETCH(int, signal);
    QFETCH(bool, sigintIgnored);
    const QString logName = m_dir.filePath(QStringLiteral("signal.jsonl"));
    QFile::remove(logName);
    SimulatorProcess simulator({QStringLiteral("--log"), logName},
                               sigintIgnored ? SimulatorProcess::SigintIgnored : SimulatorProcess::Plain);
    QVERIFY(simulator.waitForReady());
    QCOMPARE(simulator.control(QStringLiteral("tick"), {1}).type(), QDBusMessage::ReplyMessage);

    QCOMPARE(::kill(pid_t(simulator.process().processId()), signal), 0);
    QVERIFY(simulator.process().waitForFinished(20000));
    QCOMPARE(simulator.process().exitStatus(), QProcess::NormalExit);
    QCOMPARE(simulator.process().exitCode(), 0);
    QFile log(logName);
    QVERIFY(log.open(QIODevice::ReadOnly));
    QVERIFY(log.readAll().contains("\"member\":\"tick\""));
}

QTEST_GUILESS_MAIN(tst_SimulatorProgram)
#include "tst_simulatorprogram.moc"
