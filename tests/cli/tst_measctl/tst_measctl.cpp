// The real measctl binary against the real simulator, both on this test's private bus.

#include "KindTable.h"
#include "MeasApplNames_p.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest/QTest>

#include <csignal>
#include <memory>

namespace {

const QString simulatorService = QLatin1String(MeasAppl::servicePrefix) + QStringLiteral("sim");
const QString rootPath = QLatin1String(MeasAppl::rootPath);

// Every object of the simulator's default model with the class of its kind, as the model file
// names the kind; the root object is the remote command's.
QMap<QString, QString> defaultModelClasses()
{
    QMap<QString, QString> classes{{rootPath, KindTable::classNames({KindTable::Family::Command}).value(0)}};
    QFile file(QStringLiteral(DEFAULT_MODEL_FILE));
    if (!file.open(QIODevice::ReadOnly))
        return classes;
    for (const QJsonValue &element : QJsonDocument::fromJson(file.readAll()).object().value("elements").toArray()) {
        const KindTable::Kind *kind = KindTable::find(element["kind"].toString());
        classes.insert(element["path"].toString(), kind ? QString::fromLatin1(kind->className) : QString());
    }
    return classes;
}
constexpr int processTimeoutMs = 30000;

/// What one run of measctl left behind.
struct Run
{
    int exitCode = -1;
    QByteArray out;
    QByteArray err;

    QJsonObject json() const { return QJsonDocument::fromJson(out).object(); }
    bool isOneJsonDocument() const
    {
        QJsonParseError error;
        return QJsonDocument::fromJson(out, &error).isObject() && error.error == QJsonParseError::NoError;
    }
};

Run measctl(const QStringList &arguments,
            const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(MEASCTL_PATH), arguments);
    Run run;
    if (!process.waitForFinished(processTimeoutMs) || process.exitStatus() != QProcess::NormalExit) {
        process.kill();
        process.waitForFinished();
        return run;
    }
    run.exitCode = process.exitCode();
    run.out = process.readAllStandardOutput();
    run.err = process.readAllStandardError();
    return run;
}

QJsonValue json(const QString &text)
{
    return QJsonDocument::fromJson(("[" + text + "]").toUtf8()).array().first();
}

/// Reads @p process's @p channel until @p text has arrived; false if it ended first.
bool waitForText(QProcess &process, QProcess::ProcessChannel channel, const QByteArray &text, QByteArray &seen)
{
    process.setReadChannel(channel);
    while (!seen.contains(text)) {
        if (!process.waitForReadyRead(processTimeoutMs))
            return false;
        seen += process.readAll();
    }
    return true;
}

/// The calls of @p member in the simulator's call log @p file, one JSON object each.
QList<QJsonObject> loggedCalls(const QString &file, const QString &member)
{
    QFile log(file);
    QList<QJsonObject> calls;
    if (!log.open(QIODevice::ReadOnly))
        return calls;
    for (const QByteArray &line : log.readAll().split('\n')) {
        const QJsonObject call = QJsonDocument::fromJson(line).object();
        if (call.value("member").toString() == member)
            calls.append(call);
    }
    return calls;
}

/// A watch event without its time stamp, which differs from run to run.
QJsonObject withoutTime(QJsonObject event)
{
    event.remove("time");
    return event;
}

/// The simulator with its default model, as the application "sim".
class Simulator
{
public:
    /// @p extraArguments: further options of the simulator (--log, --address).
    bool start(const QStringList &extraArguments = {})
    {
        m_process.start(QStringLiteral(SIMULATOR_PATH), QStringList{QStringLiteral("--manual-clock")} + extraArguments);
        QByteArray out;
        return waitForText(m_process, QProcess::StandardOutput, "ready\n", out);
    }

    void stop()
    {
        if (m_process.state() == QProcess::NotRunning)
            return;
        control(QStringLiteral("quit"), {});
        if (!m_process.waitForFinished(processTimeoutMs)) {
            m_process.kill();
            m_process.waitForFinished();
        }
    }

    /// Calls the simulator's control interface; true when it answered without error.
    bool control(const QString &member, const QList<QVariant> &arguments)
    {
        QDBusMessage call = QDBusMessage::createMethodCall(simulatorService, QStringLiteral("/Simulator"),
                                                           QStringLiteral("com.velk.mqx.Simulator"), member);
        call.setArguments(arguments);
        return QDBusConnection::sessionBus().call(call).type() == QDBusMessage::ReplyMessage;
    }

    QProcess &process() { return m_process; }

private:
    QProcess m_process;
};

} // namespace

class tst_Measctl : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void statusReportsTheApplicationAndItsStatusText();
    void statusOfAnAbsentApplicationExitsNoApplication();
    void listShowsEveryElementWithItsInferredKind();
    void getReadsEverySettingKind_data();
    void getReadsEverySettingKind();
    void getReadsEveryResultKind_data();
    void getReadsEveryResultKind();
    void getWritesNameValueLinesForPeople();
    void kindGivenByClassOrShortNameSkipsInference_data();
    void kindGivenByClassOrShortNameSkipsInference();
    void optionsMayFollowTheCommand();
    void theApplicationComesFromTheEnvironmentByDefault();
    void setChangesEverySettingKind_data();
    void setChangesEverySettingKind();
    void setReportsARefusal_data();
    void setReportsARefusal();
    void setOfNanIsRefusedByTheLibraryItself();
    void setOfAValueThatDoesNotParseSendsNothing_data();
    void setOfAValueThatDoesNotParseSendsNothing();
    void infoDescribesEveryKind_data();
    void infoDescribesEveryKind();
    void infoOfResultsListsWhatEachKindReads_data();
    void infoOfResultsListsWhatEachKindReads();
    void watchPrintsEachSignalAsItArrives_data();
    void watchPrintsEachSignalAsItArrives();
    void watchWritesOneLinePerSignalForPeople();
    void watchEndsCleanlyOnSignal_data();
    void watchEndsCleanlyOnSignal();
    void execShowsTheApplicationsAnswer();
    void execShowsAnEmptyAnswerAsSuch();
    void execShowsAParserError();
    void eachFailureHasItsExitCode_data();
    void eachFailureHasItsExitCode();
    void helpDescribesEachCommandAndTheExitCodes();
    void statusFailsWhenTheStatusQueryFails_data();
    void statusFailsWhenTheStatusQueryFails();
    void watchEndsWhenTheBusIsLost();
    void nullInAJsonValueIsABadValueAndSendsNothing();
    void badApplicationNamesAreABadCommandLine_data();
    void badApplicationNamesAreABadCommandLine();
    void anUnreachableBusHasItsOwnExitCode();
    void usageErrorsSayWhatIsWrong_data();
    void usageErrorsSayWhatIsWrong();
    void aDepartureIsReportedAsADisconnection_data();
    void aDepartureIsReportedAsADisconnection();
    void execReportsARefusal();
    void execWithoutAnAnswerShowsNoAnswerField();
    void textThatWouldMisleadIsQuoted();
    void nonFiniteNumbersHaveAJsonForm();
    void getOfAResultTakesValueAndTextFromOneSample();
    void jsonIsOneLinePerDocument();
    void thresholdElementsAreJson();
    void watchPollsResultsWithInterval();
    void versionQuietAndAddress();
    void callReachesAnyMemberByName();
    void callParsesArgumentsBySignature_data();
    void callParsesArgumentsBySignature();

private:
    /// Starts measctl watch and waits until it has subscribed.
    std::unique_ptr<QProcess> startWatch(const QStringList &arguments);

    Simulator m_simulator;
};

void tst_Measctl::init()
{
    QVERIFY(m_simulator.start());
}

void tst_Measctl::cleanup()
{
    m_simulator.stop();
}

std::unique_ptr<QProcess> tst_Measctl::startWatch(const QStringList &arguments)
{
    auto watch = std::make_unique<QProcess>();
    watch->start(QStringLiteral(MEASCTL_PATH), QStringList{QStringLiteral("watch")} + arguments);
    QByteArray err;
    if (!waitForText(*watch, QProcess::StandardError, "measctl: watching", err))
        return nullptr;
    return watch;
}

void tst_Measctl::statusReportsTheApplicationAndItsStatusText()
{
    const Run run = measctl({"--json", "status"});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.json(),
             QJsonObject(
                 {{"application", "sim"}, {"service", simulatorService}, {"available", true}, {"status", "running"}}));
}

void tst_Measctl::statusOfAnAbsentApplicationExitsNoApplication()
{
    const Run run = measctl({"--json", "--app", "Absent", "status"});
    QCOMPARE(run.exitCode, 3);
    QCOMPARE(run.json().value("service"), QJsonValue(MeasAppl::servicePrefix + QStringLiteral("absent")));
    QCOMPARE(run.json().value("available"), QJsonValue(false));
    QCOMPARE(run.json().value("error").toObject().value("code"), QJsonValue(3));
}

void tst_Measctl::listShowsEveryElementWithItsInferredKind()
{
    const Run run = measctl({"--json", "list"});
    QCOMPARE(run.exitCode, 0);
    QMap<QString, QString> kinds;
    for (const QJsonValue &element : run.json().value("elements").toArray())
        kinds.insert(element["path"].toString(), element["kind"].toString());
    const QMap<QString, QString> expected = defaultModelClasses();
    QVERIFY(expected.size() > 1);
    QCOMPARE(kinds, expected);

    const Run forPeople = measctl({"list"});
    QVERIFY(forPeople.out.contains("/Setup/Channels/Config  SetupMapMapItemInterface\n"));
}

void tst_Measctl::getReadsEverySettingKind_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("expected");
    QTest::newRow("int") << "/Setup/Acquisition/SampleRate"
                         << "value"
                         << "48000";
    QTest::newRow("double") << "/Setup/Acquisition/Duration"
                            << "value"
                            << "10";
    QTest::newRow("bool") << "/Setup/Acquisition/AutoRange"
                          << "value"
                          << "true";
    QTest::newRow("enum index") << "/Setup/Acquisition/InputCoupling"
                                << "value"
                                << "1";
    QTest::newRow("enum text") << "/Setup/Acquisition/InputCoupling"
                               << "text"
                               << "\"DC\"";
    QTest::newRow("string") << "/Setup/Device/SerialNumber"
                            << "value"
                            << "\"MQX-2041-00317\"";
    QTest::newRow("devData") << "/Setup/Device/CalibrationFactor"
                             << "value"
                             << "1.0023";
    QTest::newRow("array") << "/Setup/Filter/Coefficients"
                           << "value"
                           << "[0.5, 0.25, 0.125, 0.0625, 0, 0, 0, 0]";
    QTest::newRow("map") << "/Setup/Display/ChannelColors"
                         << "value"
                         << "{\"A\": \"#e6194b\", \"B\": \"#3cb44b\", \"C\": \"#4363d8\"}";
    QTest::newRow("mapList") << "/Setup/Sequence/Steps"
                             << "value"
                             << "[{\"name\": \"Warm-up\", \"frequency\": 1000, \"level\": -20, \"duration\": 5},"
                                " {\"name\": \"Sweep low\", \"frequency\": 100, \"level\": -10, \"duration\": 10},"
                                " {\"name\": \"Sweep high\", \"frequency\": 10000, \"level\": -10, \"duration\": 10}]";
    QTest::newRow("mapMap") << "/Setup/Channels/Config"
                            << "value"
                            << "{\"A\": {\"gain\": 1, \"offset\": 0, \"coupling\": \"DC\", \"enabled\": true},"
                               " \"B\": {\"gain\": 10, \"offset\": 0.25, \"coupling\": \"AC\", \"enabled\": false}}";
    QTest::newRow("thresholds") << "/Setup/Limits/Thresholds"
                                << "locations"
                                << "[\"Factory\", \"Line 1\", \"Line 2\"]";
    QTest::newRow("storage") << "/Setup/Storage/Elements"
                             << "value"
                             << "[\"Run_0001\", \"Run_0002\", \"Run_0003\"]";
}

void tst_Measctl::getReadsEverySettingKind()
{
    QFETCH(QString, path);
    QFETCH(QString, field);
    const QString kind = defaultModelClasses().value(path);
    QVERIFY(!kind.isEmpty());
    QFETCH(QString, expected);
    const Run run = measctl({"--json", "get", path});
    QCOMPARE(run.exitCode, 0);
    QVERIFY(run.isOneJsonDocument());
    QCOMPARE(run.json().value("path"), QJsonValue(path));
    QCOMPARE(run.json().value("kind"), QJsonValue(kind));
    QCOMPARE(run.json().value(field), json(expected));
}

void tst_Measctl::getReadsEveryResultKind_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("valueType");
    QTest::addColumn<int>("length");
    QTest::newRow("resultDouble") << "/Result/Voltage/RMS" << int(QJsonValue::Double) << 0;
    QTest::newRow("resultInt") << "/Result/Counter/Events" << int(QJsonValue::Double) << 0;
    QTest::newRow("resultBool") << "/Result/Status/SignalPresent" << int(QJsonValue::Bool) << 0;
    QTest::newRow("resultEnum") << "/Result/Status/RangeState" << int(QJsonValue::Double) << 0;
    QTest::newRow("resultIntArray") << "/Result/Spectrum/Bins" << int(QJsonValue::Array) << 16;
    QTest::newRow("resultVarArray") << "/Result/Spectrum/Peaks" << int(QJsonValue::Array) << 8;
}

void tst_Measctl::getReadsEveryResultKind()
{
    QFETCH(QString, path);
    QFETCH(int, valueType);
    const QString kind = defaultModelClasses().value(path);
    QVERIFY(!kind.isEmpty());
    QFETCH(int, length);
    const Run run = measctl({"--json", "get", path});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.json().value("kind"), QJsonValue(kind));
    const QJsonValue value = run.json().value("value");
    QCOMPARE(int(value.type()), valueType);
    if (length > 0)
        QCOMPARE(value.toArray().size(), length);
}

void tst_Measctl::getWritesNameValueLinesForPeople()
{
    const Run run = measctl({"get", "/Setup/Acquisition/SampleRate"});
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.out.startsWith("path: /Setup/Acquisition/SampleRate\nkind: SetupIntInterface\nvalue: 48000\ntext: "),
             run.out.constData());
}

void tst_Measctl::kindGivenByClassOrShortNameSkipsInference_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("short name") << "int";
    QTest::newRow("class name") << "SetupIntInterface";
    QTest::newRow("any letter case") << "setupINTinterface";
    QTest::newRow("short name in any letter case") << "INT";
}

void tst_Measctl::kindGivenByClassOrShortNameSkipsInference()
{
    QFETCH(QString, kind);
    // An enumeration answers the integer setting's getValue and getString too, so reading
    // it as one works; inference would have said enumeration.
    const Run run = measctl({"--json", "--kind", kind, "get", "/Setup/Acquisition/InputCoupling"});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.json(),
             QJsonObject({{"path", "/Setup/Acquisition/InputCoupling"},
                          {"kind", "SetupIntInterface"},
                          {"value", 1},
                          {"text", "DC"}}));
}

void tst_Measctl::optionsMayFollowTheCommand()
{
    const Run run = measctl({"get", "--json", "--timeout", "5000", "/Setup/Acquisition/SampleRate"});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.json().value("value"), QJsonValue(48000));
}

void tst_Measctl::theApplicationComesFromTheEnvironmentByDefault()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("MEASCTL_APP", "Elsewhere");
    const Run absent = measctl({"--json", "status"}, environment);
    QCOMPARE(absent.exitCode, 3);
    QCOMPARE(absent.json().value("service"), QJsonValue(MeasAppl::servicePrefix + QStringLiteral("elsewhere")));

    environment.insert("MEASCTL_APP", "SIM");
    QCOMPARE(measctl({"status"}, environment).exitCode, 0);
    environment.remove("MEASCTL_APP");
    QCOMPARE(measctl({"status"}, environment).exitCode, 0);
}

void tst_Measctl::setChangesEverySettingKind_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QStringList>("readArgs");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("expected");
    QTest::newRow("int") << "/Setup/Acquisition/SampleRate" << QStringList{"96000"} << QStringList() << "value"
                         << "96000";
    QTest::newRow("double, negative") << "/Setup/Acquisition/TriggerLevel" << QStringList{"-2.5"} << QStringList()
                                      << "value"
                                      << "-2.5";
    QTest::newRow("bool by 0") << "/Setup/Acquisition/AutoRange" << QStringList{"0"} << QStringList() << "value"
                               << "false";
    QTest::newRow("enum by text") << "/Setup/Acquisition/TriggerMode" << QStringList{"Edge Falling"} << QStringList()
                                  << "value"
                                  << "2";
    QTest::newRow("enum by index") << "/Setup/Acquisition/InputCoupling" << QStringList{"0"} << QStringList() << "text"
                                   << "\"AC\"";
    QTest::newRow("string") << "/Setup/Device/Label" << QStringList{"Bench 3"} << QStringList() << "value"
                            << "\"Bench 3\"";
    QTest::newRow("devData") << "/Setup/Device/CalibrationFactor" << QStringList{"1.5"} << QStringList() << "value"
                             << "1.5";
    QTest::newRow("array whole") << "/Setup/Filter/Coefficients"
                                 << QStringList{"[0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, -0.8]"} << QStringList() << "value"
                                 << "[0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, -0.8]";
    QTest::newRow("array range") << "/Setup/Filter/Coefficients" << QStringList{"0.75", "1", "2"}
                                 << QStringList{"0", "3"} << "value"
                                 << "[0.5, 0.75, 0.75, 0.0625]";
    QTest::newRow("map") << "/Setup/Display/ChannelColors" << QStringList{"B", "#123456"} << QStringList{"B"} << "value"
                         << "\"#123456\"";
    QTest::newRow("mapList item") << "/Setup/Sequence/Steps" << QStringList{"1", "level", "-30"}
                                  << QStringList{"1", "level"} << "value"
                                  << "-30";
    QTest::newRow("mapList entry") << "/Setup/Sequence/Steps"
                                   << QStringList{"Cool-down",
                                                  "{\"name\": \"Cool-down\", \"frequency\": 50.0, "
                                                  "\"level\": -40.0, \"duration\": 2.0}"}
                                   << QStringList{"3", "name"} << "value"
                                   << "\"Cool-down\"";
    QTest::newRow("mapMap cell") << "/Setup/Channels/Config" << QStringList{"A", "gain", "2.5"}
                                 << QStringList{"A", "gain"} << "value"
                                 << "2.5";
    QTest::newRow("mapMap entry") << "/Setup/Channels/Config"
                                  << QStringList{"B",
                                                 "{\"gain\": 5.0, \"offset\": 0.5, \"coupling\": \"DC\", "
                                                 "\"enabled\": true}"}
                                  << QStringList{"B"} << "value"
                                  << "{\"gain\": 5, \"offset\": 0.5, \"coupling\": \"DC\", \"enabled\": true}";
    QTest::newRow("mapMap whole") << "/Setup/Channels/Config"
                                  << QStringList{"{\"A\": {\"gain\": 3.0, \"offset\": 0.0, \"coupling\": \"AC\", "
                                                 "\"enabled\": true}}"}
                                  << QStringList{"A", "coupling"} << "value"
                                  << "\"AC\"";
    QTest::newRow("thresholds") << "/Setup/Limits/Thresholds" << QStringList{"Line 1/Temperature", "60"}
                                << QStringList{"Line 1/Temperature"} << "value"
                                << "60";
    QTest::newRow("storage sort order") << "/Setup/Storage/Elements" << QStringList{"descending"} << QStringList()
                                        << "value"
                                        << "[\"Run_0003\", \"Run_0002\", \"Run_0001\"]";
}

void tst_Measctl::setChangesEverySettingKind()
{
    QFETCH(QString, path);
    QFETCH(QStringList, values);
    QFETCH(QStringList, readArgs);
    QFETCH(QString, field);
    QFETCH(QString, expected);
    const Run set = measctl(QStringList{"--json", "set", path} + values);
    QVERIFY2(set.exitCode == 0, set.err.constData());
    QVERIFY(set.isOneJsonDocument());
    QVERIFY(!set.json().contains("error"));
    const Run get = measctl(QStringList{"--json", "get", path} + readArgs);
    QCOMPARE(get.exitCode, 0);
    QCOMPARE(get.json().value(field), json(expected));
}

void tst_Measctl::setReportsARefusal_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("values");
    QTest::newRow("int off its granularity") << "/Setup/Acquisition/SampleRate" << QStringList{"1500"};
    QTest::newRow("int below its minimum") << "/Setup/Acquisition/Averages" << QStringList{"0"};
    QTest::newRow("double above its maximum") << "/Setup/Acquisition/Duration" << QStringList{"4000"};
    QTest::newRow("string not changeable") << "/Setup/Device/SerialNumber" << QStringList{"X"};
    QTest::newRow("enum unknown text") << "/Setup/Acquisition/TriggerMode" << QStringList{"Sideways"};
    QTest::newRow("enum index out of range") << "/Setup/Acquisition/TriggerMode" << QStringList{"9"};
    QTest::newRow("devData of another type") << "/Setup/Device/CalibrationFactor" << QStringList{"high"};
    QTest::newRow("array of another length") << "/Setup/Filter/Coefficients" << QStringList{"[0.1, 0.2]"};
    QTest::newRow("map value of another type") << "/Setup/Display/ChannelColors" << QStringList{"A", "5"};
    QTest::newRow("mapList item out of range") << "/Setup/Sequence/Steps" << QStringList{"0", "level", "10"};
    QTest::newRow("mapMap cell out of range") << "/Setup/Channels/Config" << QStringList{"A", "gain", "1000"};
    QTest::newRow("thresholds of a fixed location")
        << "/Setup/Limits/Thresholds" << QStringList{"Factory/Temperature", "50"};
}

void tst_Measctl::setReportsARefusal()
{
    QFETCH(QString, path);
    QFETCH(QStringList, values);
    const Run run = measctl(QStringList{"--json", "set", path} + values);
    QCOMPARE(run.exitCode, 6);
    QCOMPARE(run.json().value("accepted"), QJsonValue(false));
    QCOMPARE(run.json().value("error").toObject().value("name"), QJsonValue("refused"));

    const Run forPeople = measctl(QStringList{"set", path} + values);
    QCOMPARE(forPeople.exitCode, 6);
    QVERIFY(forPeople.out.contains("accepted: false\n"));
    QVERIFY(forPeople.err.contains("measctl: " + path.toUtf8() + ": the application refused the value\n"));
}

void tst_Measctl::setOfNanIsRefusedByTheLibraryItself()
{
    const Run run = measctl({"--json", "set", "/Setup/Acquisition/Duration", "nan"});
    QCOMPARE(run.exitCode, 6);
    QCOMPARE(run.json().value("accepted"), QJsonValue(false));
    QVERIFY(run.err.contains("SetupDoubleInterface::setValue(): Value is NaN!"));
}

void tst_Measctl::setOfAValueThatDoesNotParseSendsNothing_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("values");
    QTest::newRow("int") << "/Setup/Acquisition/SampleRate" << QStringList{"fast"};
    QTest::newRow("int with a fraction") << "/Setup/Acquisition/SampleRate" << QStringList{"48000.5"};
    QTest::newRow("double with a comma") << "/Setup/Acquisition/Duration" << QStringList{"1,5"};
    QTest::newRow("bool") << "/Setup/Acquisition/AutoRange" << QStringList{"maybe"};
    QTest::newRow("array") << "/Setup/Filter/Coefficients" << QStringList{"[0.1,"};
    QTest::newRow("array range") << "/Setup/Filter/Coefficients" << QStringList{"0.1", "first", "2"};
    QTest::newRow("map value") << "/Setup/Display/ChannelColors" << QStringList{"A", "{\"r\":"};
    QTest::newRow("mapList position") << "/Setup/Sequence/Steps" << QStringList{"second", "level", "-3"};
    QTest::newRow("mapMap whole") << "/Setup/Channels/Config" << QStringList{"{\"A\": 1}"};
    QTest::newRow("thresholds") << "/Setup/Limits/Thresholds" << QStringList{"Line 1/Temperature", "warm"};
}

void tst_Measctl::setOfAValueThatDoesNotParseSendsNothing()
{
    QFETCH(QString, path);
    QFETCH(QStringList, values);
    const Run before = measctl({"--json", "get", path});
    const Run run = measctl(QStringList{"--json", "set", path} + values);
    QCOMPARE(run.exitCode, 5);
    QCOMPARE(run.json().value("error").toObject().value("name"), QJsonValue("bad-value"));
    QCOMPARE(measctl({"--json", "get", path}).out, before.out);
}

void tst_Measctl::infoDescribesEveryKind_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("expected");
    QTest::newRow("int limits") << "/Setup/Acquisition/SampleRate" << QStringList() << "max"
                                << "192000";
    QTest::newRow("int granularity") << "/Setup/Acquisition/SampleRate" << QStringList() << "granularity"
                                     << "1000";
    QTest::newRow("double limits") << "/Setup/Acquisition/TriggerLevel" << QStringList() << "min"
                                   << "-10";
    QTest::newRow("bool changeable") << "/Setup/Acquisition/AutoRange" << QStringList() << "changeable"
                                     << "true";
    QTest::newRow("string not changeable") << "/Setup/Device/SerialNumber" << QStringList() << "changeable"
                                           << "false";
    QTest::newRow("enum choices") << "/Setup/Acquisition/TriggerMode" << QStringList() << "choices"
                                  << "[\"Free Run\", \"Edge Rising\", \"Edge Falling\", \"External\"]";
    QTest::newRow("array size") << "/Setup/Filter/Coefficients" << QStringList() << "size"
                                << "8";
    QTest::newRow("map keys") << "/Setup/Display/ChannelColors" << QStringList() << "keys"
                              << "[\"A\", \"B\", \"C\"]";
    QTest::newRow("map base element") << "/Setup/Display/ChannelColors" << QStringList() << "baseElement"
                                      << "\"#ffffff\"";
    QTest::newRow("mapList item limits") << "/Setup/Sequence/Steps" << QStringList{"0", "frequency"} << "max"
                                         << "20000";
    QTest::newRow("mapMap cell choices") << "/Setup/Channels/Config" << QStringList{"A", "coupling"} << "enums"
                                         << "[\"AC\", \"DC\"]";
    QTest::newRow("thresholds name length") << "/Setup/Limits/Thresholds" << QStringList() << "maxLocationNameLength"
                                            << "16";
    QTest::newRow("thresholds attributes")
        << "/Setup/Limits/Thresholds" << QStringList{"Line 2/Pressure"} << "attributes"
        << "2";
    QTest::newRow("devData text") << "/Setup/Device/CalibrationFactor" << QStringList() << "text"
                                  << "\"1.0023\"";
    QTest::newRow("storage sort order") << "/Setup/Storage/Elements" << QStringList() << "sortOrder"
                                        << "\"ascending\"";
    QTest::newRow("resultDouble limits") << "/Result/Voltage/RMS" << QStringList() << "upperLimit"
                                         << "5";
    QTest::newRow("resultInt limits") << "/Result/Counter/Events" << QStringList() << "upperLimit"
                                      << "200";
    QTest::newRow("resultBool limits") << "/Result/Status/Overload" << QStringList() << "lowerLimit"
                                       << "false";
    QTest::newRow("resultIntArray size") << "/Result/Spectrum/Bins" << QStringList() << "size"
                                         << "16";
    QTest::newRow("resultVarArray limits") << "/Result/Spectrum/Peaks" << QStringList() << "lowerLimit"
                                           << "-60";
}

void tst_Measctl::infoDescribesEveryKind()
{
    QFETCH(QString, path);
    QFETCH(QStringList, args);
    QFETCH(QString, field);
    QFETCH(QString, expected);
    const Run run = measctl(QStringList{"--json", "info", path} + args);
    QVERIFY2(run.exitCode == 0, run.err.constData());
    QVERIFY(run.isOneJsonDocument());
    QCOMPARE(run.json().value(field), json(expected));
}

void tst_Measctl::infoOfResultsListsWhatEachKindReads_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("fields");
    const QStringList comps{"valueComp",  "minValueComp",  "maxValueComp",
                            "stringComp", "minStringComp", "maxStringComp"};
    const QStringList scalar{"path", "kind", "value", "text", "lowerLimit", "upperLimit", "min", "max"};
    QTest::newRow("resultInt") << "/Result/Counter/Events" << scalar + QStringList{"minText", "maxText"} + comps;
    QTest::newRow("resultBool") << "/Result/Status/Overload" << scalar + QStringList{"minText", "maxText"} + comps;
    QTest::newRow("resultDouble") << "/Result/Voltage/RMS" << scalar + comps;
    QTest::newRow("resultEnum") << "/Result/Status/RangeState"
                                << QStringList{"path", "kind", "value", "text", "min", "max", "valueComp"};
    QTest::newRow("resultIntArray") << "/Result/Spectrum/Bins"
                                    << QStringList{"path", "kind", "size", "text", "resultStatus", "timeStamp"};
    QTest::newRow("resultVarArray") << "/Result/Spectrum/Peaks"
                                    << QStringList{"path",       "kind",         "size",
                                                   "lowerLimit", "upperLimit",   "resultStatus",
                                                   "timeStamp",  "valuesStatus", "valueComp"};
}

void tst_Measctl::infoOfResultsListsWhatEachKindReads()
{
    QFETCH(QString, path);
    QFETCH(QStringList, fields);
    const Run run = measctl({"--json", "info", path});
    QCOMPARE(run.exitCode, 0);
    QStringList keys = run.json().keys();
    keys.sort();
    fields.sort();
    QCOMPARE(keys, fields);
    for (const QString &field : fields) {
        if (field.endsWith("Comp"))
            QVERIFY2(!run.json().value(field).toArray().isEmpty(), qPrintable(field));
    }
}

void tst_Measctl::watchPrintsEachSignalAsItArrives_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("signal");
    QTest::addColumn<QString>("arguments");
    QTest::newRow("int") << "/Setup/Acquisition/Averages" << QStringList{"32"} << 1 << "setupChanged"
                         << "[32]";
    QTest::newRow("double") << "/Setup/Acquisition/Duration" << QStringList{"2.5"} << 1 << "setupChanged"
                            << "[2.5]";
    QTest::newRow("bool") << "/Setup/Acquisition/AutoRange" << QStringList{"false"} << 1 << "setupChanged"
                          << "[false]";
    QTest::newRow("string") << "/Setup/Device/Label" << QStringList{"Bench 3"} << 1 << "setupChanged"
                            << "[\"Bench 3\"]";
    QTest::newRow("enum") << "/Setup/Acquisition/TriggerMode" << QStringList{"Edge Rising"} << 1 << "setupChanged"
                          << "[1, \"Edge Rising\"]";
    QTest::newRow("devData") << "/Setup/Device/OperatorNote" << QStringList{"recalibrated"} << 1 << "setupChanged"
                             << "[\"recalibrated\"]";
    QTest::newRow("array") << "/Setup/Filter/Coefficients" << QStringList{"0.3", "4", "5"} << 1 << "setupChanged"
                           << "[]";
    QTest::newRow("map") << "/Setup/Display/ChannelColors" << QStringList{"A", "#000000"} << 1 << "setupChanged"
                         << "[]";
    QTest::newRow("mapList") << "/Setup/Sequence/Steps" << QStringList{"0", "level", "-25"} << 1 << "setupChanged"
                             << "[]";
    // A cell's change comes as setupChangedPart, then setupChanged.
    QTest::newRow("mapMap") << "/Setup/Channels/Config" << QStringList{"B", "offset", "1.5"} << 2 << "setupChangedPart"
                            << "[\"B\", \"offset\", 1.5, false]";
    // QtDBus hands a bus signal to every same-named Qt signal with as many arguments or fewer:
    // the proxy's setupChanged() fires beside setupChanged(key, value).
    QTest::newRow("thresholds") << "/Setup/Limits/Thresholds" << QStringList{"Line 2/Vibration", "20"} << 2
                                << "setupChanged"
                                << "[\"Line 2/Vibration\", 20]";
    // A new sort order comes as the list's setupChanged and sortOrderChanged.
    QTest::newRow("storage") << "/Setup/Storage/Elements" << QStringList{"descending"} << 2 << "sortOrderChanged"
                             << "[\"descending\"]";
}

void tst_Measctl::watchPrintsEachSignalAsItArrives()
{
    QFETCH(QString, path);
    QFETCH(QStringList, values);
    const QString kind = defaultModelClasses().value(path);
    QVERIFY(!kind.isEmpty());
    QFETCH(int, count);
    QFETCH(QString, signal);
    QFETCH(QString, arguments);
    const std::unique_ptr<QProcess> watch = startWatch({"--json", "--count", QString::number(count), path});
    QVERIFY(watch);
    const Run set = measctl(QStringList{"set", path} + values);
    QCOMPARE(set.exitCode, 0);

    // It stops by itself after --count signals.
    QVERIFY(watch->waitForFinished(processTimeoutMs));
    QCOMPARE(watch->exitStatus(), QProcess::NormalExit);
    QCOMPARE(watch->exitCode(), 0);
    const QByteArray out = watch->readAllStandardOutput();
    const QList<QByteArray> lines = out.trimmed().split('\n');
    QCOMPARE(lines.size(), count);
    QList<QJsonObject> events;
    for (const QByteArray &line : lines)
        events.append(withoutTime(QJsonDocument::fromJson(line).object()));
    const QJsonObject expected{{"path", path}, {"kind", kind}, {"signal", signal}, {"args", json(arguments)}};
    QVERIFY2(events.contains(expected), out.constData());
}

void tst_Measctl::watchWritesOneLinePerSignalForPeople()
{
    const std::unique_ptr<QProcess> watch =
        startWatch({"--count", "2", "/Setup/Acquisition/Averages", "/Setup/Acquisition/TriggerMode"});
    QVERIFY(watch);
    QCOMPARE(measctl({"set", "/Setup/Acquisition/Averages", "64"}).exitCode, 0);
    QCOMPARE(measctl({"set", "/Setup/Acquisition/TriggerMode", "Edge Rising"}).exitCode, 0);
    QVERIFY(watch->waitForFinished(processTimeoutMs));
    QCOMPARE(watch->exitCode(), 0);
    // Each line opens with its time stamp; a text with blanks is quoted.
    const QString out = QString::fromUtf8(watch->readAllStandardOutput());
    const QRegularExpression lines(QStringLiteral(
        "^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z /Setup/Acquisition/Averages setupChanged 64\\n"
        "\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z /Setup/Acquisition/TriggerMode setupChanged 1 \"Edge "
        "Rising\"\\n$"));
    QVERIFY2(lines.match(out).hasMatch(), qPrintable(out));
}

void tst_Measctl::watchEndsCleanlyOnSignal_data()
{
    QTest::addColumn<int>("signalNumber");
    QTest::newRow("SIGINT") << int(SIGINT);
    QTest::newRow("SIGTERM") << int(SIGTERM);
}

void tst_Measctl::watchEndsCleanlyOnSignal()
{
    QFETCH(int, signalNumber);
    const std::unique_ptr<QProcess> watch = startWatch({"/Setup/Acquisition/Averages"});
    QVERIFY(watch);
    ::kill(static_cast<pid_t>(watch->processId()), signalNumber);
    QVERIFY(watch->waitForFinished(processTimeoutMs));
    QCOMPARE(watch->exitStatus(), QProcess::NormalExit);
    QCOMPARE(watch->exitCode(), 0);
}

void tst_Measctl::execShowsTheApplicationsAnswer()
{
    const Run run = measctl({"--json", "exec", "echo", "done"});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.json(), QJsonObject({{"command", "echo"}, {"ok", true}, {"answer", "done"}}));

    const Run forPeople = measctl({"exec", "status"});
    QCOMPARE(forPeople.exitCode, 0);
    QCOMPARE(forPeople.out, QByteArray("command: status\nok: true\nanswer: running\n"));
}

void tst_Measctl::execShowsAnEmptyAnswerAsSuch()
{
    const Run run = measctl({"--json", "exec", "echo"});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.json(), QJsonObject({{"command", "echo"}, {"ok", true}, {"answer", ""}}));
}

void tst_Measctl::execShowsAParserError()
{
    const Run run = measctl({"--json", "exec", "echo", "Parser Error: bad unit"});
    QCOMPARE(run.exitCode, 7);
    QCOMPARE(run.json().value("ok"), QJsonValue(false));
    QCOMPARE(run.json().value("parserError"), QJsonValue("bad unit"));
    QCOMPARE(run.json().value("error").toObject().value("code"), QJsonValue(7));
    QVERIFY(run.err.contains("measctl: echo: parser error: bad unit\n"));
}

void tst_Measctl::eachFailureHasItsExitCode_data()
{
    QTest::addColumn<QStringList>("fault");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    const QStringList none;
    QTest::newRow("1: an error reply") << QStringList{"/Setup/Acquisition/Averages", "error",
                                                      "com.velk.mqx.Error.Broken it broke"}
                                       << QStringList{"--kind", "int", "get", "/Setup/Acquisition/Averages"} << 1;
    QTest::newRow("1: a remote command without an answer")
        << QStringList{rootPath, "error", "com.velk.mqx.Error.Broken it broke"} << QStringList{"exec", "status"} << 1;
    QTest::newRow("1: invalid arguments") << none << QStringList{"set", "/Setup/Storage/Elements", "sideways"} << 1;
    QTest::newRow("2: unknown command") << none << QStringList{"frobnicate"} << 2;
    QTest::newRow("2: unknown option") << none << QStringList{"--verbose", "status"} << 2;
    QTest::newRow("2: no command") << none << QStringList() << 2;
    QTest::newRow("2: get without a path") << none << QStringList{"get"} << 2;
    QTest::newRow("2: too many words") << none << QStringList{"get", "/Setup/Acquisition/SampleRate", "x"} << 2;
    QTest::newRow("2: not an object path") << none << QStringList{"get", "Setup/Device/Label"} << 2;
    QTest::newRow("2: unknown kind") << none << QStringList{"--kind", "integer", "get", "/Setup/Acquisition/SampleRate"}
                                     << 2;
    QTest::newRow("2: a result is read-only") << none << QStringList{"set", "/Result/Voltage/RMS", "1"} << 2;
    QTest::newRow("2: a result sends no signals") << none << QStringList{"watch", "/Result/Voltage/RMS"} << 2;
    QTest::newRow("2: five command parameters") << none << QStringList{"exec", "echo", "1", "2", "3", "4", "5"} << 2;
    QTest::newRow("2: bad time-out") << none << QStringList{"--timeout", "soon", "status"} << 2;
    QTest::newRow("3: absent application") << none << QStringList{"--app", "absent", "get", "/Setup/Device/Label"} << 3;
    QTest::newRow("4: unknown path") << none << QStringList{"get", "/Setup/Nothing"} << 4;
    QTest::newRow("4: unknown path of a given kind")
        << none << QStringList{"--kind", "int", "get", "/Setup/Nothing"} << 4;
    QTest::newRow("4: unknown member") << none << QStringList{"--kind", "int", "info", "/Setup/Acquisition/TriggerMode"}
                                       << 4;
    QTest::newRow("4: no kind inferable") << none << QStringList{"get", "/Setup"} << 4;
    QTest::newRow("5: bad value") << none << QStringList{"set", "/Setup/Acquisition/Averages", "many"} << 5;
    QTest::newRow("6: refused value") << none << QStringList{"set", "/Setup/Acquisition/Averages", "5000"} << 6;
    QTest::newRow("7: parser error") << none << QStringList{"exec", "frobnicate"} << 7;
    QTest::newRow("8: time-out") << QStringList{"/Setup/Acquisition/Averages", "silent", ""}
                                 << QStringList{"--timeout", "300", "--kind",
                                                "int",       "get", "/Setup/Acquisition/Averages"}
                                 << 8;
}

void tst_Measctl::eachFailureHasItsExitCode()
{
    QFETCH(QStringList, fault);
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    if (!fault.isEmpty())
        QVERIFY(m_simulator.control("setFault", {fault.at(0), fault.at(1), fault.at(2)}));

    const Run forPeople = measctl(arguments);
    QCOMPARE(forPeople.exitCode, exitCode);
    QVERIFY(forPeople.err.contains("measctl: "));

    if (arguments.isEmpty() || arguments.contains("--verbose") || arguments.contains("frobnicate") ||
        arguments.contains("soon"))
        return; // refused before measctl knows what to write
    const Run forScripts = measctl(QStringList{"--json"} + arguments);
    QCOMPARE(forScripts.exitCode, exitCode);
    QVERIFY2(forScripts.isOneJsonDocument(), forScripts.out.constData());
    QCOMPARE(forScripts.json().value("error").toObject().value("code"), QJsonValue(exitCode));
}

void tst_Measctl::helpDescribesEachCommandAndTheExitCodes()
{
    const Run help = measctl({"--help"});
    QCOMPARE(help.exitCode, 0);
    for (const char *command : {"status", "list", "get", "set", "info", "watch", "exec"})
        QVERIFY(help.out.contains(QByteArray("  ") + command + ' '));
    QVERIFY(help.out.contains("  8  no answer in time\n"));
    // Every kind of the table, by its short name and its class.
    for (const KindTable::Kind &kind : KindTable::all()) {
        const QRegularExpression line(
            QStringLiteral("\\n  %1 +%2 +\\S").arg(QLatin1String(kind.shortName), QLatin1String(kind.className)));
        QVERIFY2(line.match(QString::fromUtf8(help.out)).hasMatch(), kind.className);
    }

    const Run setHelp = measctl({"set", "--help"});
    QCOMPARE(setHelp.exitCode, 0);
    QVERIFY(setHelp.out.contains("  mapMap          set PATH PRIMARY SECOND VALUE\n"));
    QVERIFY(setHelp.out.contains("  6  the application refused the value (answered false)\n"));
}

void tst_Measctl::statusFailsWhenTheStatusQueryFails_data()
{
    QTest::addColumn<QStringList>("fault");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("an error answer") << QStringList{rootPath, "error", "com.velk.mqx.Error.Busy busy"} << 1;
    QTest::newRow("no answer in time") << QStringList{rootPath, "silent", ""} << 8;
}

void tst_Measctl::statusFailsWhenTheStatusQueryFails()
{
    QFETCH(QStringList, fault);
    QFETCH(int, exitCode);
    QVERIFY(m_simulator.control("setFault", {fault.at(0), fault.at(1), fault.at(2)}));
    // --timeout holds for status's call: the silent fault ends after 300 ms, not the bus's 25 s.
    QElapsedTimer elapsed;
    elapsed.start();
    const Run run = measctl({"--json", "--timeout", "300", "status"});
    QVERIFY(elapsed.elapsed() < 20000);
    QCOMPARE(run.exitCode, exitCode);
    QVERIFY(!run.json().contains("status"));
    QCOMPARE(run.json().value("available"), QJsonValue(true));
    QCOMPARE(run.json().value("error").toObject().value("code"), QJsonValue(exitCode));
}

void tst_Measctl::watchEndsWhenTheBusIsLost()
{
    // A bus daemon of this test's own, that it can kill under the running watch.
    QTemporaryDir directory;
    QVERIFY(directory.isValid());
    const QString address = QStringLiteral("unix:path=") + directory.filePath("bus");
    QProcess daemon;
    daemon.start("dbus-daemon", {"--nofork", "--print-address", "--session", "--address=" + address});
    QByteArray printed;
    QVERIFY(waitForText(daemon, QProcess::StandardOutput, "\n", printed));
    Simulator simulator;
    QVERIFY(simulator.start({"--address", address}));

    QProcess watch;
    watch.start(QStringLiteral(MEASCTL_PATH), {"--address", address, "watch", "/Setup/Acquisition/Averages"});
    QByteArray err;
    QVERIFY(waitForText(watch, QProcess::StandardError, "measctl: watching", err));
    daemon.kill();
    QVERIFY(daemon.waitForFinished(processTimeoutMs));
    QVERIFY(watch.waitForFinished(processTimeoutMs));
    QCOMPARE(watch.exitStatus(), QProcess::NormalExit);
    QCOMPARE(watch.exitCode(), 10);
    QVERIFY(watch.readAllStandardError().contains("measctl: lost the bus"));
    simulator.process().kill();
    simulator.process().waitForFinished();
}

void tst_Measctl::nullInAJsonValueIsABadValueAndSendsNothing()
{
    m_simulator.stop();
    QTemporaryDir directory;
    const QString log = directory.filePath("calls.jsonl");
    QVERIFY(m_simulator.start({"--log", log}));
    const Run array = measctl({"set", "/Setup/Filter/Coefficients", "[0.1,0.2,0.3,0.4,0.5,0.6,0.7,null]"});
    QCOMPARE(array.exitCode, 5);
    QVERIFY(!array.err.contains("QDBusMarshaller"));
    const Run object = measctl({"set", "/Setup/Channels/Config", "B", "{\"gain\": null}"});
    QCOMPARE(object.exitCode, 5);
    // The log has the kind's introspection, but no change was sent.
    QVERIFY(!loggedCalls(log, "Introspect").isEmpty());
    QVERIFY(loggedCalls(log, "setValue").isEmpty());
}

void tst_Measctl::badApplicationNamesAreABadCommandLine_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("blank and mark") << "bad name!";
    QTest::newRow("not ASCII") << QString::fromUtf8("\xc3\x9cn\xc3\xaf");
    QTest::newRow("300 characters") << QString(300, QLatin1Char('a'));
    QTest::newRow("empty") << QString();
    QTest::newRow("leading digit") << "1sim";
}

void tst_Measctl::badApplicationNamesAreABadCommandLine()
{
    QFETCH(QString, name);
    const Run run = measctl({"--app", name, "status"});
    QCOMPARE(run.exitCode, 2);
    QVERIFY(run.err.startsWith("measctl: "));
}

void tst_Measctl::anUnreachableBusHasItsOwnExitCode()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    const Run run = measctl({"--json", "status"}, environment);
    QCOMPARE(run.exitCode, 10);
    QVERIFY(run.err.contains("measctl: cannot reach the bus at unix:path=/nonexistent"));
    QCOMPARE(run.json().value("error").toObject().value("name"), QJsonValue("no-bus"));
    QCOMPARE(measctl({"--address", "unix:path=/nonexistent", "list"}).exitCode, 10);
}

void tst_Measctl::usageErrorsSayWhatIsWrong_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("message");
    QTest::newRow("--help-all") << QStringList{"--help-all"} << 0 << QString();
    QTest::newRow("--count for get") << QStringList{"--count", "2", "get", "/Setup/Acquisition/SampleRate"} << 2
                                     << "--count does not apply to 'get'";
    QTest::newRow("--kind for list") << QStringList{"--kind", "int", "list"} << 2 << "--kind does not apply to 'list'";
    QTest::newRow("--timeout too large") << QStringList{"--timeout", "99999999999", "status"} << 2
                                         << "--timeout 99999999999 is out of range (1..2147483647)";
    QTest::newRow("--timeout not a number")
        << QStringList{"--timeout", "soon", "status"} << 2 << "--timeout needs a whole number";
    QTest::newRow("int beyond int32") << QStringList{"set", "/Setup/Acquisition/Averages", "2147483648"} << 5
                                      << "'2147483648' is out of range (-2147483648..2147483647)";
}

void tst_Measctl::usageErrorsSayWhatIsWrong()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, message);
    const Run run = measctl(arguments);
    QCOMPARE(run.exitCode, exitCode);
    if (exitCode == 0)
        QVERIFY(run.out.contains("Commands:\n"));
    else
        QVERIFY2(run.err.contains(message.toUtf8()), run.err.constData());
}

void tst_Measctl::aDepartureIsReportedAsADisconnection_data()
{
    QTest::addColumn<QStringList>("fault");
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("drop disconnect, get") << QStringList{"/Setup/Acquisition/Averages", "drop", "disconnect"}
                                          << QStringList{"get", "/Setup/Acquisition/Averages"};
    QTest::newRow("restart, get") << QStringList{"/Setup/Acquisition/Averages", "restart", ""}
                                  << QStringList{"get", "/Setup/Acquisition/Averages"};
    QTest::newRow("restart, status") << QStringList{rootPath, "restart", ""} << QStringList{"status"};
    QTest::newRow("drop disconnect, exec")
        << QStringList{rootPath, "drop", "disconnect"} << QStringList{"exec", "status"};
}

void tst_Measctl::aDepartureIsReportedAsADisconnection()
{
    QFETCH(QStringList, fault);
    QFETCH(QStringList, arguments);
    QVERIFY(m_simulator.control("setFault", {fault.at(0), fault.at(1), fault.at(2)}));
    const Run run = measctl(QStringList{"--json", "--timeout", "20000"} + arguments);
    QCOMPARE(run.exitCode, 9);
    QCOMPARE(run.json().value("error").toObject().value("name"), QJsonValue("disconnected"));
    QVERIFY(!run.json().contains("ok"));
    QVERIFY(run.err.contains("disconnected"));
}

void tst_Measctl::execReportsARefusal()
{
    const Run run = measctl({"--json", "exec", "set", "/Setup/Acquisition/SampleRate", "3"});
    QCOMPARE(run.exitCode, 6);
    QVERIFY(run.json().value("answer").toString().startsWith("Refused:"));
    QCOMPARE(run.json().value("refused"), QJsonValue(true));
    QCOMPARE(run.json().value("error").toObject().value("name"), QJsonValue("refused"));
}

void tst_Measctl::execWithoutAnAnswerShowsNoAnswerField()
{
    QVERIFY(m_simulator.control("setFault", {rootPath, "error", "com.velk.mqx.Error.Broken it broke"}));
    const Run run = measctl({"exec", "status"});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.out, QByteArray("command: status\n"));
}

void tst_Measctl::textThatWouldMisleadIsQuoted()
{
    QCOMPARE(measctl({"set", "/Setup/Device/Label", "two\nlines"}).exitCode, 0);
    const Run run = measctl({"get", "/Setup/Device/Label"});
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.out.contains("value: \"two\\nlines\"\n"), run.out.constData());
    QCOMPARE(measctl({"set", "/Setup/Device/Label", "plain words"}).exitCode, 0);
    QVERIFY(measctl({"get", "/Setup/Device/Label"}).out.contains("value: plain words\n"));
}

void tst_Measctl::nonFiniteNumbersHaveAJsonForm()
{
    QCOMPARE(measctl({"set", "/Setup/Device/CalibrationFactor", "inf"}).exitCode, 0);
    const Run run = measctl({"--json", "get", "/Setup/Device/CalibrationFactor"});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.json().value("value"), QJsonValue(QJsonObject{{"double", "inf"}}));
}

void tst_Measctl::getOfAResultTakesValueAndTextFromOneSample()
{
    QVERIFY(m_simulator.control("tick", {2}));
    const Run run = measctl({"--json", "get", "/Result/Voltage/RMS"});
    QCOMPARE(run.exitCode, 0);
    // The application's time stamp as it sent it: milliseconds since the epoch.
    QVERIFY(run.json().value("timeStamp").isDouble());
    QVERIFY(!run.json().contains("textTimeStamp"));
    QVERIFY(run.json().value("text").toString().startsWith(QString::number(run.json().value("value").toDouble())));
}

void tst_Measctl::jsonIsOneLinePerDocument()
{
    const Run run = measctl({"--json", "get", "/Setup/Acquisition/SampleRate"});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.out.count('\n'), 1);
    QVERIFY(run.out.endsWith("}\n"));
}

void tst_Measctl::thresholdElementsAreJson()
{
    const Run run = measctl({"--json", "get", "/Setup/Limits/Thresholds"});
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.json().value("elements").isObject(), run.out.constData());
}

void tst_Measctl::watchPollsResultsWithInterval()
{
    const std::unique_ptr<QProcess> watch =
        startWatch({"--json", "--interval", "20", "--count", "2", "/Result/Voltage/RMS"});
    QVERIFY(watch);
    // The first reading comes at once; the next one once a tick changed the value.
    QByteArray out;
    QVERIFY(waitForText(*watch, QProcess::StandardOutput, "\n", out));
    QVERIFY(m_simulator.control("tick", {3}));
    QVERIFY(watch->waitForFinished(processTimeoutMs));
    QCOMPARE(watch->exitCode(), 0);
    out += watch->readAllStandardOutput();
    const QList<QByteArray> lines = out.trimmed().split('\n');
    QCOMPARE(lines.size(), 2);
    for (const QByteArray &line : lines) {
        const QJsonObject event = QJsonDocument::fromJson(line).object();
        QCOMPARE(event.value("signal"), QJsonValue("polled"));
        QCOMPARE(event.value("kind"), QJsonValue("ResultDoubleInterface"));
        QVERIFY(QDateTime::fromString(event.value("time").toString(), Qt::ISODateWithMs).isValid());
        // value, text and the sample's time stamp
        QCOMPARE(event.value("args").toArray().size(), 3);
    }
    QVERIFY(lines.first() != lines.last());
}

void tst_Measctl::versionQuietAndAddress()
{
    const Run version = measctl({"--version"});
    QCOMPARE(version.exitCode, 0);
    QVERIFY(version.out.startsWith("measctl "));

    QVERIFY(m_simulator.control("setFault",
                                {"/Setup/Acquisition/Averages", "error", "com.velk.mqx.Error.Broken it broke"}));
    const Run loud = measctl({"--kind", "int", "get", "/Setup/Acquisition/Averages"});
    QVERIFY(loud.err.contains("SetupIntInterface::getValue()"));
    const Run quiet = measctl({"--quiet", "--kind", "int", "get", "/Setup/Acquisition/Averages"});
    QCOMPARE(quiet.exitCode, 1);
    QVERIFY(!quiet.err.contains("SetupIntInterface::getValue()"));
    QVERIFY(quiet.err.startsWith("measctl: "));

    QProcessEnvironment elsewhere = QProcessEnvironment::systemEnvironment();
    const QString address = elsewhere.value("DBUS_SESSION_BUS_ADDRESS");
    elsewhere.insert("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    QCOMPARE(measctl({"--address", address, "status"}, elsewhere).exitCode, 0);
}

void tst_Measctl::callReachesAnyMemberByName()
{
    m_simulator.stop();
    QTemporaryDir directory;
    const QString log = directory.filePath("calls.jsonl");
    QVERIFY(m_simulator.start({"--log", log}));
    QCOMPARE(measctl({"set", "/Setup/Acquisition/Averages", "64"}).exitCode, 0);
    const Run reset = measctl({"--json", "call", "/Setup/Acquisition/Averages", "setToDefault"});
    QCOMPARE(reset.exitCode, 0);
    QCOMPARE(reset.json().value("done"), QJsonValue(true));
    QCOMPARE(measctl({"--json", "get", "/Setup/Acquisition/Averages"}).json().value("value"), QJsonValue(16));

    const Run remove = measctl({"--json", "call", "/Setup/Display/ChannelColors", "removeItem", "B"});
    QCOMPARE(remove.exitCode, 0);
    QCOMPARE(remove.json().value("answer"), QJsonValue(1));
    const QList<QJsonObject> removals = loggedCalls(log, "removeItem");
    QCOMPARE(removals.size(), 1);
    QCOMPARE(removals.first().value("signature"), QJsonValue("s"));
    QCOMPARE(removals.first().value("arguments"), QJsonValue(QJsonArray{"B"}));

    const Run unknown = measctl({"call", "/Setup/Display/ChannelColors", "frobnicate"});
    QCOMPARE(unknown.exitCode, 2);
    QVERIFY(unknown.err.contains("removeItem"));
    QCOMPARE(loggedCalls(log, "frobnicate").size(), 0);
}

void tst_Measctl::callParsesArgumentsBySignature_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("answer");
    QTest::newRow("s") << QStringList{"/Setup/Display/ChannelColors", "getValue", "A"} << 0 << "\"#e6194b\"";
    QTest::newRow("ii") << QStringList{"/Setup/Filter/Coefficients", "getValue", "0", "1"} << 0 << "[0.5, 0.25]";
    QTest::newRow("vii") << QStringList{"/Setup/Filter/Coefficients", "setValue", "0.3", "0", "0"} << 0 << "true";
    QTest::newRow("a{sv}") << QStringList{"/Setup/Channels/Config", "setValue", "B",
                                          "{\"gain\": 5.0, \"offset\": 0.5, \"coupling\": \"DC\", \"enabled\": true}"}
                           << 0 << "true";
    QTest::newRow("i: not a number") << QStringList{"/Setup/Acquisition/Averages", "setValue", "many"} << 5 << "";
    QTest::newRow("too many words") << QStringList{"/Setup/Acquisition/Averages", "getValue", "1"} << 2 << "";
    QTest::newRow("the element's own error")
        << QStringList{"/Setup/Display/ChannelColors", "getValue", "Nope"} << 1 << "";
}

void tst_Measctl::callParsesArgumentsBySignature()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, answer);
    const Run run = measctl(QStringList{"--json", "call"} + arguments);
    QVERIFY2(run.exitCode == exitCode, run.err.constData());
    if (exitCode == 0)
        QCOMPARE(run.json().value("answer"), json(answer));
}

QTEST_GUILESS_MAIN(tst_Measctl)
#include "tst_measctl.moc"
