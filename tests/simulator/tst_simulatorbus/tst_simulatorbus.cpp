#include "BusTestSupport.h"
#include "LogCapture.h"
#include "SimulatorProcess.h"

#include <DBusInterfaceManager.h>
#include <RemoteCommandInterface.h>
#include <ResultDoubleInterface.h>
#include <ResultIntInterface.h>
#include <ResultVarArrayInterface.h>
#include <SetupDevDataInterface.h>
#include <SetupDoubleInterface.h>
#include <SetupEnumInterface.h>
#include <SetupIntInterface.h>
#include <SetupMapMapItemInterface.h>
#include <SetupStringInterface.h>
#include <SetupThresholdManagerInterface.h>
#include <StorageElemsMapInterface.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusServiceWatcher>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <limits>
#include <memory>

namespace {

const QString averages = QStringLiteral("/Setup/Acquisition/Averages");
const QString interfaceName = QStringLiteral("com.velk.mqx.MeasApplInterface");

QDBusConnection bus()
{
    return QDBusConnection::sessionBus();
}

template<typename Proxy>
std::unique_ptr<Proxy> proxy(const QString &path)
{
    return std::make_unique<Proxy>(SimulatorProcess::service, path, bus());
}

QDBusMessage rawCall(const QString &path, const QString &interface, const QString &member,
                     const QVariantList &arguments = {})
{
    QDBusMessage call = QDBusMessage::createMethodCall(SimulatorProcess::service, path, interface, member);
    call.setArguments(arguments);
    return bus().call(call);
}

QList<LogLine> getValueLines(const QString &message)
{
    return debugLines({
        "SetupIntInterface::getValue() Error!  \"" + message + "\"",
        "SetupIntInterface::getValue() Interface  \"com.velk.mqx.MeasApplInterface\"",
        "SetupIntInterface::getValue() Path  \"/Setup/Acquisition/Averages\"",
    });
}

} // namespace

class tst_SimulatorBus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void intSetupRefusesAndSignalsThroughItsProxy();
    void doubleSetupRefusesNanAndOffStepValues();
    void enumSetupIsSetByIndexAndByText();
    void stringAndDeviceDataSetupsThroughTheirProxies();
    void mapOfMapsCellChangesArriveUnwrapped();
    void thresholdAndStorageSignalsThroughTheirProxies();
    void resultsChangeWithTicksThroughTheirProxies();
    void applicationStatusFollowsTheMeasurement();

    void lateAnswerBeyondTheTimeoutGivesTheInvalidReplyAndTheLines();
    void scriptedErrorReplyReachesTheProxy();
    void silenceLeavesTheCallerToItsTimeout();
    void droppingTheConnectionEndsTheCallAndTheName();
    void aFaultThatLeavesTheBusFailsThePendingCallAtOnce_data();
    void aFaultThatLeavesTheBusFailsThePendingCallAtOnce();
    void releasingTheNameTakesTheApplicationOffTheBus();
    void restartServesEarlierProxiesAgain();
    void spoofedSignalIsNotRelayedWhileTheOwnersIs();

    void remoteCommandAnswers_data();
    void remoteCommandAnswers();
    void badRequestsGetErrorReplies_data();
    void badRequestsGetErrorReplies();
    void introspectionWalksTheTree();
    void callLogHasOneLinePerCall();

private:
    std::unique_ptr<SimulatorProcess> m_simulator;
    QTemporaryDir m_dir;
};

void tst_SimulatorBus::init()
{
    m_simulator =
        std::make_unique<SimulatorProcess>(QStringList{QStringLiteral("--log"), m_dir.filePath("calls.jsonl")});
    QVERIFY(m_simulator->waitForReady());
}

void tst_SimulatorBus::cleanup()
{
    m_simulator.reset();
    QFile::remove(m_dir.filePath("calls.jsonl"));
}

void tst_SimulatorBus::intSetupRefusesAndSignalsThroughItsProxy()
{
    auto setup = proxy<SetupIntInterface>(averages);
    QSignalSpy changed(setup.get(), &SetupIntInterface::setupChanged);
    syncWithBus(bus());

    for (const int refused : {0, 1025}) {
        const QDBusReply<bool> reply = setup->setValue(refused);
        QVERIFY(reply.isValid());
        QCOMPARE(reply.value(), false);
    }
    QCOMPARE(setup->getValue().value(), 16);
    QCOMPARE(setup->setValue(128).value(), true);
    QVERIFY(changed.wait());
    // Signals arrive in order: the first one is the accepted value's, so the refusals sent none.
    QCOMPARE(changed.at(0), QVariantList{128});
    QCOMPARE(setup->getString().value(), QStringLiteral("128"));
    QCOMPARE(setup->getMinValue().value(), 1);
    QCOMPARE(setup->getMaxValue().value(), 1024);
    QCOMPARE(setup->getGranularity().value(), 1);
    QCOMPARE(setup->isChangeable().value(), true);

    QVERIFY(setup->setToDefault().isValid());
    QVERIFY(changed.wait());
    QCOMPARE(changed.at(1), QVariantList{16});
}

void tst_SimulatorBus::doubleSetupRefusesNanAndOffStepValues()
{
    auto setup = proxy<SetupDoubleInterface>(QStringLiteral("/Setup/Acquisition/Duration"));
    QSignalSpy changed(setup.get(), &SetupDoubleInterface::setupChanged);
    syncWithBus(bus());

    setup->setValueAsync(std::numeric_limits<double>::quiet_NaN()); // reaches the application unguarded
    QCOMPARE(setup->setValue(10.05).value(), false);
    QCOMPARE(setup->setValue(4000.0).value(), false);
    QCOMPARE(setup->getValue().value(), 10.0);
    QCOMPARE(setup->setValue(12.5).value(), true);
    QVERIFY(changed.wait());
    QCOMPARE(changed.at(0), QVariantList{12.5});
    QCOMPARE(setup->getString().value(), QStringLiteral("12.5 s"));
}

void tst_SimulatorBus::enumSetupIsSetByIndexAndByText()
{
    auto setup = proxy<SetupEnumInterface>(QStringLiteral("/Setup/Acquisition/InputCoupling"));
    QSignalSpy changed(setup.get(), &SetupEnumInterface::setupChanged);
    syncWithBus(bus());

    QCOMPARE(setup->setValue(QStringLiteral("Ground")).value(), false);
    QCOMPARE(setup->setValue(3).value(), false);
    QCOMPARE(setup->setValue(QStringLiteral("GND")).value(), true);
    QCOMPARE(setup->setValue(0).value(), true);
    QTRY_COMPARE(changed.count(), 2);
    QCOMPARE(changed.at(0), (QVariantList{2, QStringLiteral("GND")}));
    QCOMPARE(changed.at(1), (QVariantList{0, QStringLiteral("AC")}));
    QCOMPARE(setup->getEnumQuantity().value(), 3);
    QCOMPARE(setup->getEnumValueList().value(), QStringLiteral("AC;DC;GND"));
    QCOMPARE(setup->getStringRepresentation(1).value(), QStringLiteral("DC"));
    QVERIFY(setup->execute().isValid());
}

void tst_SimulatorBus::stringAndDeviceDataSetupsThroughTheirProxies()
{
    auto serial = proxy<SetupStringInterface>(QStringLiteral("/Setup/Device/SerialNumber"));
    QCOMPARE(serial->isChangeable().value(), false);
    QCOMPARE(serial->setValue(QStringLiteral("X")).value(), false);
    QCOMPARE(serial->getValue().value(), QStringLiteral("MQX-2041-00317"));

    auto calibration = proxy<SetupDevDataInterface>(QStringLiteral("/Setup/Device/CalibrationFactor"));
    QCOMPARE(calibration->getValue(), QVariant(1.0023));
    QSignalSpy changed(calibration.get(), &SetupDevDataInterface::setupChanged);
    syncWithBus(bus());
    QCOMPARE(calibration->setValue(QStringLiteral("high")).value(), false);
    QCOMPARE(calibration->setValue(1.5).value(), true);
    QVERIFY(changed.wait());
    QCOMPARE(changed.at(0).at(0).value<QDBusVariant>().variant(), QVariant(1.5));
    QCOMPARE(calibration->getValue(), QVariant(1.5));
}

void tst_SimulatorBus::mapOfMapsCellChangesArriveUnwrapped()
{
    auto config = proxy<SetupMapMapItemInterface>(QStringLiteral("/Setup/Channels/Config"));
    QSignalSpy cells(config.get(), SIGNAL(setupChangedPart(QString, QString, QVariant, bool)));
    QSignalSpy removed(config.get(), SIGNAL(mapEntryRemoved(QString)));
    syncWithBus(bus());

    QCOMPARE(config->setValue(QStringLiteral("A"), QStringLiteral("gain"), QVariant(1000.0)).value(), false);
    QCOMPARE(config->setValue(QStringLiteral("A"), QStringLiteral("offset"), QStringLiteral("1.5")).value(), true);
    QVERIFY(cells.wait());
    QCOMPARE(cells.at(0), (QVariantList{"A", "offset", 1.5, false}));
    QCOMPARE(config->getValue(QStringLiteral("A"), QStringLiteral("offset")), QVariant(1.5));
    QCOMPARE(config->getStringMap(QStringLiteral("A")).value(QStringLiteral("offset")), QStringLiteral("1.5"));
    QCOMPARE(config->getEnums(QStringLiteral("A"), QStringLiteral("coupling")).value(), (QStringList{"AC", "DC"}));
    QCOMPARE(config->getMax(QStringLiteral("A"), QStringLiteral("gain")), QVariant(100.0));

    QCOMPARE(config->removeItem(QStringLiteral("B")).value(), 1);
    QVERIFY(removed.wait());
    QCOMPARE(removed.at(0), QVariantList{"B"});
    QCOMPARE(config->getAllKeys().value(), QStringList{"A"});
}

void tst_SimulatorBus::thresholdAndStorageSignalsThroughTheirProxies()
{
    auto thresholds = proxy<SetupThresholdManagerInterface>(QStringLiteral("/Setup/Limits/Thresholds"));
    QSignalSpy renamed(thresholds.get(), &SetupThresholdManagerInterface::locationNameChanged);
    QSignalSpy valueChanged(thresholds.get(), SIGNAL(setupChanged(QString, double)));
    auto storage = proxy<StorageElemsMapInterface>(QStringLiteral("/Setup/Storage/Elements"));
    QSignalSpy sorted(storage.get(), &StorageElemsMapInterface::sortOrderChanged);
    QSignalSpy edited(storage.get(), &StorageElemsMapInterface::setupChanged);
    syncWithBus(bus());

    QCOMPARE(thresholds->setValue(QStringLiteral("Factory/Pressure"), 5.0).value(), false);
    QCOMPARE(thresholds->setValue(QStringLiteral("Line 1/Pressure"), 5.0).value(), true);
    QVERIFY(valueChanged.wait());
    QCOMPARE(valueChanged.at(0), (QVariantList{"Line 1/Pressure", 5.0}));
    QCOMPARE(thresholds->renameLocation(QStringLiteral("Line 2"), QStringLiteral("Line B")).value(), true);
    QVERIFY(renamed.wait());
    QCOMPARE(renamed.at(0), (QVariantList{"Line 2", "Line B"}));
    QCOMPARE(thresholds->getLocationNames().value(), (QStringList{"Factory", "Line 1", "Line B"}));
    QCOMPARE(thresholds->getAttributes(QStringLiteral("Line 1/Pressure")).value(), 2);
    QCOMPARE(thresholds->getMaxLocationNameCharacterCount().value(), 16);

    QVERIFY(!storage->setSortOrder(QStringLiteral("by size")).isValid());
    QVERIFY(storage->setSortOrder(QStringLiteral("descending")).isValid());
    QVERIFY(sorted.wait());
    QCOMPARE(sorted.at(0), QVariantList{"descending"});
    QTRY_COMPARE(edited.count(), 1);
    QCOMPARE(edited.at(0), (QVariantList{"sort", 0, 3, QStringList{"Run_0003", "Run_0002", "Run_0001"}}));
    QCOMPARE(storage->count().value(), 3);
}

void tst_SimulatorBus::resultsChangeWithTicksThroughTheirProxies()
{
    auto rms = proxy<ResultDoubleInterface>(QStringLiteral("/Result/Voltage/RMS"));
    const QList<QVariant> before = rms->getValueComp();
    QCOMPARE(before.size(), 3);
    QCOMPARE(m_simulator->control("tick", {3}).arguments(), QVariantList{qlonglong(300)});
    const QList<QVariant> after = rms->getValueComp();
    QCOMPARE(after.value(2).toLongLong() - before.value(2).toLongLong(), 300);
    QCOMPARE(after.value(0), QVariant(rms->getValue().value()));
    QCOMPARE(rms->getUpperLimit().value(), 5.0);

    auto events = proxy<ResultIntInterface>(QStringLiteral("/Result/Counter/Events"));
    QVERIFY(events->resetMinMaxValues().isValid());
    QCOMPARE(events->getMinValue().value(), events->getValue().value());
    QCOMPARE(events->getMaxStringComp().value(0).toString(), QString::number(events->getMaxValue().value()));

    auto peaks = proxy<ResultVarArrayInterface>(QStringLiteral("/Result/Spectrum/Peaks"));
    QCOMPARE(peaks->getValues().size(), 8);
    QCOMPARE(peaks->getValuesStatus().size(), 8);
    QCOMPARE(peaks->getTimeStamp().value().toMSecsSinceEpoch(), after.value(2).toLongLong());
    QCOMPARE(peaks->getLowerLimit(), QVariant(-60.0));
    QVERIFY(!peaks->getValue(8).isValid());
}

void tst_SimulatorBus::applicationStatusFollowsTheMeasurement()
{
    DBusInterfaceManager *manager = DBusInterfaceManager::getInstance();
    QVERIFY(manager->isMeasAppAvailable(QStringLiteral("SimTest")));
    QCOMPARE(manager->getMeasAppStatus(SimulatorProcess::name), QStringLiteral("running"));
    m_simulator->control("setMeasurementRunning", {false});
    QCOMPARE(manager->getMeasAppStatus(SimulatorProcess::name), QStringLiteral("idle"));
}

void tst_SimulatorBus::lateAnswerBeyondTheTimeoutGivesTheInvalidReplyAndTheLines()
{
    QCOMPARE(m_simulator->control("setFault", {averages, "delay", "3000"}).arguments(), QVariantList{true});
    auto setup = proxy<SetupIntInterface>(averages);
    setup->setTimeout(200);
    LogCapture log;

    const QDBusReply<int> reply = setup->getValue();

    QVERIFY(!reply.isValid());
    QCOMPARE(reply.error().type(), QDBusError::NoReply);
    QCOMPARE(log.lines(), getValueLines(reply.error().message()));

    setup->setTimeout(5000);
    QCOMPARE(setup->getValue().value(), 16); // late, yet within this timeout
    QCOMPARE(m_simulator->control("clearFault", {averages}).arguments(), QVariantList{true});
}

void tst_SimulatorBus::scriptedErrorReplyReachesTheProxy()
{
    m_simulator->control("setFault", {averages, "error", "com.velk.mqx.Error.Busy Instrument busy"});
    auto setup = proxy<SetupIntInterface>(averages);
    LogCapture log;

    const QDBusReply<int> reply = setup->getValue();

    QCOMPARE(reply.error().name(), QStringLiteral("com.velk.mqx.Error.Busy"));
    QCOMPARE(reply.error().message(), QStringLiteral("Instrument busy"));
    QCOMPARE(log.lines(), getValueLines(QStringLiteral("Instrument busy")));
    QCOMPARE(proxy<SetupIntInterface>(QStringLiteral("/Setup/Acquisition/SampleRate"))->getValue().value(), 48000);
}

void tst_SimulatorBus::silenceLeavesTheCallerToItsTimeout()
{
    m_simulator->control("setFault", {"*", "silent", ""});
    auto setup = proxy<SetupIntInterface>(averages);
    setup->setTimeout(200);
    const QDBusReply<bool> reply = setup->isChangeable();
    QCOMPARE(reply.error().type(), QDBusError::NoReply);
    m_simulator->control("clearFaults");
    QCOMPARE(setup->isChangeable().value(), true);
}

void tst_SimulatorBus::droppingTheConnectionEndsTheCallAndTheName()
{
    m_simulator->control("setFault", {averages, "drop", "disconnect"});
    auto setup = proxy<SetupIntInterface>(averages);

    const QDBusReply<int> reply = setup->getValue();

    QCOMPARE(reply.error().type(), QDBusError::NoReply);
    QVERIFY(!DBusInterfaceManager::getInstance()->isMeasAppAvailable(SimulatorProcess::name));
}

void tst_SimulatorBus::aFaultThatLeavesTheBusFailsThePendingCallAtOnce_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("argument");
    QTest::newRow("drop disconnect") << "drop"
                                     << "disconnect";
    QTest::newRow("restart") << "restart"
                             << "";
}

void tst_SimulatorBus::aFaultThatLeavesTheBusFailsThePendingCallAtOnce()
{
    QFETCH(QString, kind);
    QFETCH(QString, argument);
    QCOMPARE(m_simulator->control("setFault", {averages, kind, argument}).arguments(), QVariantList{true});

    // As with any peer that vanishes: the bus daemon answers the call for it, long before the
    // caller's own timeout (whose NoReply says "Did not receive a reply").
    const QDBusMessage call =
        QDBusMessage::createMethodCall(SimulatorProcess::service, averages, interfaceName, QStringLiteral("getValue"));
    const QDBusMessage answer = bus().call(call, QDBus::Block, 20000);
    QCOMPARE(answer.errorName(), QStringLiteral("org.freedesktop.DBus.Error.NoReply"));
    QVERIFY2(answer.errorMessage().contains(QLatin1String("disconnected")), qPrintable(answer.errorMessage()));
}

void tst_SimulatorBus::releasingTheNameTakesTheApplicationOffTheBus()
{
    QDBusServiceWatcher watcher(SimulatorProcess::service, bus(), QDBusServiceWatcher::WatchForUnregistration);
    QSignalSpy gone(&watcher, &QDBusServiceWatcher::serviceUnregistered);
    const QString uniqueName = bus().interface()->serviceOwner(SimulatorProcess::service).value();
    m_simulator->control("dropOffBus", {"release", -1});
    QVERIFY(gone.wait());
    QCOMPARE(proxy<SetupIntInterface>(averages)->getValue().error().type(), QDBusError::ServiceUnknown);
    // Still reachable by its own connection's name, it is told to come back.
    QCOMPARE(m_simulator->control("restart", {}, uniqueName).type(), QDBusMessage::ReplyMessage);
    QVERIFY(m_simulator->waitForReady());
    QCOMPARE(proxy<SetupIntInterface>(averages)->getValue().value(), 16);
}

void tst_SimulatorBus::restartServesEarlierProxiesAgain()
{
    auto setup = proxy<SetupIntInterface>(averages);
    QSignalSpy changed(setup.get(), &SetupIntInterface::setupChanged);
    syncWithBus(bus());
    const QString before = bus().interface()->serviceOwner(SimulatorProcess::service).value();

    m_simulator->control("restart");
    QVERIFY(m_simulator->waitForReady());

    QVERIFY(bus().interface()->serviceOwner(SimulatorProcess::service).value() != before);
    QCOMPARE(setup->setValue(64).value(), true);
    QVERIFY(changed.wait());
    QCOMPARE(changed.at(0), QVariantList{64});
}

void tst_SimulatorBus::spoofedSignalIsNotRelayedWhileTheOwnersIs()
{
    auto setup = proxy<SetupIntInterface>(averages);
    QSignalSpy changed(setup.get(), &SetupIntInterface::setupChanged);
    BusSignalWitness onTheBus(bus(), QString(), averages, interfaceName, QStringLiteral("setupChanged"));
    syncWithBus(bus());

    QCOMPARE(m_simulator->control("spoofSignal", {averages, "setupChanged"}).arguments(), QVariantList{true});
    QCOMPARE(m_simulator->control("emitSignal", {averages, "setupChanged"}).arguments(), QVariantList{true});

    QVERIFY(changed.wait());
    QTRY_COMPARE(onTheBus.count(), 2);
    QCOMPARE(changed.count(), 1);
}

void tst_SimulatorBus::remoteCommandAnswers_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QStringList>("parameters");
    QTest::addColumn<QString>("result");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QString>("errorCode");

    QTest::newRow("normal answer") << "echo" << QStringList{"done"} << "done" << true << "before";
    QTest::newRow("empty answer") << "echo" << QStringList{} << "" << true << "before";
    QTest::newRow("exactly the prefix") << "echo" << QStringList{"Parser Error: "} << QString() << false << "before";
    QTest::newRow("parser error with text")
        << "echo" << QStringList{"Parser Error: bad unit"} << QString() << false << "beforebad unit";
    QTest::newRow("prefix in other letter case")
        << "echo" << QStringList{"parser error: x"} << "parser error: x" << true << "before";
    QTest::newRow("command refused by the parser")
        << "calibrate" << QStringList{} << QString() << false << "beforeunknown command \"calibrate\"";
    QTest::newRow("set") << "set" << QStringList{"/Setup/Acquisition/Averages", "8"} << "OK" << true << "before";
}

void tst_SimulatorBus::remoteCommandAnswers()
{
    QFETCH(QString, command);
    QFETCH(QStringList, parameters);
    QFETCH(QString, result);
    QFETCH(bool, ok);
    QFETCH(QString, errorCode);
    RemoteCommandInterface remote(SimulatorProcess::service, QStringLiteral("/MEAS_APPL_OBJ"), bus());
    bool answeredOk = !ok;
    QString code = QStringLiteral("before");
    LogCapture log;

    const QString answer = remote.executeCommand(command, parameters, &answeredOk, &code);

    QCOMPARE(answer, result);
    QCOMPARE(answer.isNull(), result.isNull());
    QCOMPARE(answeredOk, ok);
    QCOMPARE(code, errorCode);
    QCOMPARE(log.lines().size(), ok ? 0 : 1);
}

void tst_SimulatorBus::badRequestsGetErrorReplies_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("interface");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<QString>("error");

    QTest::newRow("unknown path") << "/Setup/Nothing" << interfaceName << "getValue" << QVariantList{}
                                  << "org.freedesktop.DBus.Error.UnknownObject";
    QTest::newRow("unknown member") << averages << interfaceName << "getMinimum" << QVariantList{}
                                    << "org.freedesktop.DBus.Error.UnknownMethod";
    QTest::newRow("wrong signature") << averages << interfaceName << "setValue" << QVariantList{"eight"}
                                     << "org.freedesktop.DBus.Error.InvalidArgs";
    QTest::newRow("too many arguments") << "/MEAS_APPL_OBJ" << interfaceName << "executeRemoteCommand"
                                        << QVariantList{"a", "b", "c", "d", "e", "f"}
                                        << "org.freedesktop.DBus.Error.InvalidArgs";
    QTest::newRow("other interface") << averages << "org.example.Other"
                                     << "getValue" << QVariantList{} << "org.freedesktop.DBus.Error.UnknownMethod";
    QTest::newRow("control member unknown")
        << "/Simulator"
        << "com.velk.mqx.Simulator"
        << "explode" << QVariantList{} << "org.freedesktop.DBus.Error.UnknownMethod";
}

void tst_SimulatorBus::badRequestsGetErrorReplies()
{
    QFETCH(QString, path);
    QFETCH(QString, interface);
    QFETCH(QString, member);
    QFETCH(QVariantList, arguments);
    QFETCH(QString, error);

    const QDBusMessage reply = rawCall(path, interface, member, arguments);

    QCOMPARE(reply.type(), QDBusMessage::ErrorMessage);
    QCOMPARE(reply.errorName(), error);
    QCOMPARE(DBusInterfaceManager::getInstance()->getMeasAppStatus(SimulatorProcess::name), QStringLiteral("running"));
}

void tst_SimulatorBus::introspectionWalksTheTree()
{
    const auto introspect = [](const QString &path) {
        return rawCall(path, QStringLiteral("org.freedesktop.DBus.Introspectable"), QStringLiteral("Introspect"))
            .arguments()
            .value(0)
            .toString();
    };
    const QString root = introspect(QStringLiteral("/"));
    for (const char *child : {"<node name=\"Setup\"/>", "<node name=\"Result\"/>", "<node name=\"MEAS_APPL_OBJ\"/>"})
        QVERIFY2(root.contains(QLatin1String(child)), child);
    QVERIFY(introspect(QStringLiteral("/Setup/Acquisition")).contains(QLatin1String("<node name=\"Averages\"/>")));
    const QString element = introspect(averages);
    QVERIFY(element.contains(QLatin1String("<method name=\"getGranularity\">")));
    QVERIFY(!element.contains(QLatin1String("<node name=")));
}

void tst_SimulatorBus::callLogHasOneLinePerCall()
{
    auto setup = proxy<SetupIntInterface>(averages);
    QCOMPARE(setup->setValue(32).value(), true);
    m_simulator->control("setFault", {averages, "error", "com.velk.mqx.Error.Busy Instrument busy"});
    QVERIFY(!setup->getValue().isValid());

    QFile file(m_dir.filePath("calls.jsonl"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = file.readAll().split('\n');
    QCOMPARE(lines.size(), 4); // three lines, then the end after the last newline
    QCOMPARE(QJsonDocument::fromJson(lines.at(1)).object().value("member").toString(), QStringLiteral("setFault"));
    QCOMPARE(QJsonDocument::fromJson(lines.at(2)).object().value("answer").toObject(),
             (QJsonObject{{"kind", "error"}, {"name", "com.velk.mqx.Error.Busy"}, {"message", "Instrument busy"}}));
    const QJsonObject line = QJsonDocument::fromJson(lines.at(0)).object();
    QCOMPARE(line.value("sender").toString(), bus().baseService());
    QCOMPARE(line.value("path").toString(), averages);
    QCOMPARE(line.value("interface").toString(), interfaceName);
    QCOMPARE(line.value("member").toString(), QStringLiteral("setValue"));
    QCOMPARE(line.value("signature").toString(), QStringLiteral("i"));
    QCOMPARE(line.value("arguments").toArray(), QJsonArray{32});
    QCOMPARE(line.value("answer").toObject(), (QJsonObject{{"kind", "reply"}, {"values", QJsonArray{true}}}));
    QVERIFY(line.value("us").isDouble());
    QVERIFY(QDateTime::fromString(line.value("time").toString(), Qt::ISODateWithMs).isValid());
}

QTEST_GUILESS_MAIN(tst_SimulatorBus)
#include "tst_simulatorbus.moc"
