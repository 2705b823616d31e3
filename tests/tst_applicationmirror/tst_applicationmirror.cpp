#include "ApplicationMirror.h"
#include "LiveValue.h"
#include "SetupIntInterface.h"

#include "BulkModel.h"
#include "SimulatorProcess.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest/QTest>

#include <memory>

namespace {

const QString averages = QStringLiteral("/Setup/Acquisition/Averages");
const QString sampleRate = QStringLiteral("/Setup/Acquisition/SampleRate");
const QString duration = QStringLiteral("/Setup/Acquisition/Duration");
const QString autoRange = QStringLiteral("/Setup/Acquisition/AutoRange");
const QString triggerMode = QStringLiteral("/Setup/Acquisition/TriggerMode");
const QString inputCoupling = QStringLiteral("/Setup/Acquisition/InputCoupling");
const QString serialNumber = QStringLiteral("/Setup/Device/SerialNumber");
const QString label = QStringLiteral("/Setup/Device/Label");
const QString calibration = QStringLiteral("/Setup/Device/CalibrationFactor");
const QString mapMap = QStringLiteral("/Setup/Channels/Config");
const QString rms = QStringLiteral("/Result/Voltage/RMS");
const QString interfaceName = QStringLiteral("com.velk.mqx.MeasApplInterface");
/// Generous: only a broken run waits this long.
constexpr int patience = 30000;

QDBusConnection bus()
{
    return QDBusConnection::sessionBus();
}

bool allInState(const QList<LiveValue *> &values, LiveValue::State state)
{
    return std::all_of(values.begin(), values.end(), [state](const LiveValue *live) { return live->state() == state; });
}

/// Counts the ticks of a zero-interval timer: the caller's event loop turning.
class EventLoopTicks
{
public:
    EventLoopTicks()
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { ++m_ticks; });
        m_timer.start(0);
    }
    int ticks() const { return m_ticks; }

private:
    QTimer m_timer;
    int m_ticks = 0;
};

} // namespace

/**
 * The mirror against the real simulator: values filled in from the application without
 * blocking, kept current by its signals, followed through restarts, late answers, errors
 * and spoofs, and safe to destroy while calls are on their way.
 */
class tst_ApplicationMirror : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void eachKindShowsWhatItHas();
    void aKindGivenByNameNeedsNoIntrospection();
    void anUnknownKindNameGivesNoValue();
    void aPathWithoutAnElementIsAbsent();
    void aChangeSignalOfTheOwnerUpdatesTheValueAndIsRelayed();
    void writesAreAnsweredAndShowTheApplicationsValue_data();
    void writesAreAnsweredAndShowTheApplicationsValue();
    void aWriteTheKindCannotTakeFailsAtOnce();
    void writesAreSeenInTheCallLog();
    void aRestartedApplicationIsReadAgainAndItsFormerOwnerIgnored();
    void theSimulatorsRestartIsFollowed();
    void droppingOffTheBusAndComingBackTurnsStaleThenValid();
    void anApplicationAbsentAtStartIsReadWhenItAppears();
    void aLateAnswerMakesTheValueStaleWhileTheEventLoopRuns();
    void anErrorReplyIsShownWithTheLastValueKept();
    void spoofedSignalsAreIgnored();
    void destroyingALiveValueWithACallInFlightDropsTheAnswer();
    void destroyingTheMirrorWithCallsInFlightDropsTheAnswers();
    void fiveThousandElementsAllBecomeValid();

private:
    void start(const QStringList &arguments = {});
    std::unique_ptr<ApplicationMirror> makeMirror();
    /// The value of @p path once it is Valid.
    LiveValue *valid(ApplicationMirror &mirror, const QString &path, const QString &kind = QString());
    QList<QJsonObject> loggedCalls(const QString &path, const QString &member) const;

    std::unique_ptr<SimulatorProcess> m_simulator;
    QTemporaryDir m_dir;
};

void tst_ApplicationMirror::init()
{
    start();
}

void tst_ApplicationMirror::cleanup()
{
    m_simulator.reset();
    QFile::remove(m_dir.filePath(QStringLiteral("calls.jsonl")));
}

void tst_ApplicationMirror::start(const QStringList &arguments)
{
    m_simulator.reset();
    m_simulator = std::make_unique<SimulatorProcess>(
        QStringList{QStringLiteral("--log"), m_dir.filePath(QStringLiteral("calls.jsonl"))} + arguments);
    QVERIFY(m_simulator->waitForReady());
}

std::unique_ptr<ApplicationMirror> tst_ApplicationMirror::makeMirror()
{
    return std::make_unique<ApplicationMirror>(SimulatorProcess::name, bus());
}

LiveValue *tst_ApplicationMirror::valid(ApplicationMirror &mirror, const QString &path, const QString &kind)
{
    LiveValue *live = mirror.value(path, kind);
    if (!live || !QTest::qWaitFor([live] { return live->state() == LiveValue::Valid; }, patience))
        QTest::qFail(qPrintable(path + QStringLiteral(" never became valid")), __FILE__, __LINE__);
    return live;
}

QList<QJsonObject> tst_ApplicationMirror::loggedCalls(const QString &path, const QString &member) const
{
    QFile log(m_dir.filePath(QStringLiteral("calls.jsonl")));
    QList<QJsonObject> calls;
    if (!log.open(QIODevice::ReadOnly))
        return calls;
    while (!log.atEnd()) {
        const QJsonObject call = QJsonDocument::fromJson(log.readLine()).object();
        if (call.value(QStringLiteral("path")).toString() == path &&
            call.value(QStringLiteral("member")).toString() == member)
            calls.append(call);
    }
    return calls;
}

void tst_ApplicationMirror::eachKindShowsWhatItHas()
{
    auto mirror = makeMirror();
    LiveValue *rate = valid(*mirror, sampleRate);
    LiveValue *length = valid(*mirror, duration);
    LiveValue *trigger = valid(*mirror, triggerMode);
    LiveValue *serial = valid(*mirror, serialNumber);
    LiveValue *factor = valid(*mirror, calibration);
    LiveValue *channels = valid(*mirror, mapMap);
    LiveValue *voltage = valid(*mirror, rms);

    QCOMPARE(rate->kindName(), QStringLiteral("int"));
    QCOMPARE(rate->kindClassName(), QStringLiteral("SetupIntInterface"));
    QCOMPARE(rate->properties(), (QStringList{"value", "text", "minimum", "maximum", "granularity", "changeable"}));
    QCOMPARE(rate->value(), QVariant(48000));
    QCOMPARE(rate->text(), QVariant(QStringLiteral("48000 Hz")));
    QCOMPARE(rate->minimum(), QVariant(1000));
    QCOMPARE(rate->maximum(), QVariant(192000));
    QCOMPARE(rate->granularity(), QVariant(1000));
    QCOMPARE(rate->changeable(), QVariant(true));
    QVERIFY(!rate->lowerLimit().isValid());
    QVERIFY(rate->choices().isEmpty());
    QVERIFY(rate->lastError().isEmpty());

    QCOMPARE(length->kindName(), QStringLiteral("double"));
    QCOMPARE(length->value(), QVariant(10.0));
    QCOMPARE(length->minimum(), QVariant(0.1));

    QCOMPARE(trigger->kindName(), QStringLiteral("enum"));
    QCOMPARE(trigger->value(), QVariant(0));
    QCOMPARE(trigger->text(), QVariant(QStringLiteral("Free Run")));
    QCOMPARE(trigger->choices(), (QStringList{"Free Run", "Edge Rising", "Edge Falling", "External"}));
    QVERIFY(!trigger->minimum().isValid());

    QCOMPARE(serial->value(), QVariant(QStringLiteral("MQX-2041-00317")));
    QCOMPARE(serial->changeable(), QVariant(false));

    QCOMPARE(factor->kindName(), QStringLiteral("devData"));
    QCOMPARE(factor->value(), QVariant(1.0023));
    QVERIFY(!factor->changeable().isValid());

    // A composite: no plain getValue, yet its text and whether it can be changed.
    QCOMPARE(channels->kindName(), QStringLiteral("mapMap"));
    QCOMPARE(channels->properties(), (QStringList{"text", "changeable"}));
    QVERIFY(!channels->value().isValid());
    QVERIFY(!channels->text().toString().isEmpty());
    QCOMPARE(channels->changeable(), QVariant(true));

    QCOMPARE(voltage->kindName(), QStringLiteral("resultDouble"));
    QCOMPARE(voltage->lowerLimit(), QVariant(0.0));
    QCOMPARE(voltage->upperLimit(), QVariant(5.0));
    QVERIFY(qAbs(voltage->value().toDouble() - 2.3) <= 0.05);
    QVERIFY(voltage->minimum().toDouble() <= voltage->value().toDouble());
}

void tst_ApplicationMirror::aKindGivenByNameNeedsNoIntrospection()
{
    auto mirror = makeMirror();
    LiveValue *byShortName = valid(*mirror, averages, QStringLiteral("int"));
    LiveValue *byClassName = valid(*mirror, autoRange, QStringLiteral("SetupBoolInterface"));

    QCOMPARE(byShortName->value(), QVariant(16));
    QCOMPARE(byClassName->value(), QVariant(true));
    QVERIFY(loggedCalls(averages, QStringLiteral("Introspect")).isEmpty());
    QCOMPARE(loggedCalls(averages, QStringLiteral("getValue")).size(), 1);
    // Asking again gives the same object, read once.
    QCOMPARE(mirror->value(averages), byShortName);
    QCOMPARE(mirror->find(averages), byShortName);
    QCOMPARE(byShortName->callCount(), 6);
    QVERIFY(byShortName->lastLatencyMs() >= 0);
    QVERIFY(byShortName->medianLatencyMs() >= 0);
}

void tst_ApplicationMirror::anUnknownKindNameGivesNoValue()
{
    auto mirror = makeMirror();
    QCOMPARE(mirror->value(averages, QStringLiteral("noSuchKind")), nullptr);
    QCOMPARE(mirror->find(averages), nullptr);
}

void tst_ApplicationMirror::aPathWithoutAnElementIsAbsent()
{
    auto mirror = makeMirror();
    LiveValue *byKind = mirror->value(QStringLiteral("/Setup/Nothing"), QStringLiteral("int"));
    LiveValue *inferred = mirror->value(QStringLiteral("/Setup/Nowhere"));

    QTRY_COMPARE_WITH_TIMEOUT(byKind->state(), LiveValue::Absent, patience);
    QTRY_COMPARE_WITH_TIMEOUT(inferred->state(), LiveValue::Absent, patience);
    QVERIFY(byKind->lastError().startsWith(QStringLiteral("org.freedesktop.DBus.Error.UnknownObject")));
    QVERIFY(!byKind->value().isValid());
    QVERIFY(inferred->kindName().isEmpty());
}

void tst_ApplicationMirror::aChangeSignalOfTheOwnerUpdatesTheValueAndIsRelayed()
{
    auto mirror = makeMirror();
    LiveValue *live = valid(*mirror, averages);
    LiveValue *trigger = valid(*mirror, triggerMode);
    QSignalSpy relayed(live, &LiveValue::busSignal);
    QSignalSpy triggerRelayed(trigger, &LiveValue::busSignal);
    const int readsBefore = loggedCalls(averages, QStringLiteral("getValue")).size();

    // Another client, with the blocking proxy.
    SetupIntInterface other(SimulatorProcess::service, averages, bus());
    QCOMPARE(other.setValue(64).value(), true);
    SetupIntInterface(SimulatorProcess::service, triggerMode, bus()).setValue(2);

    QTRY_COMPARE_WITH_TIMEOUT(live->value(), QVariant(64), patience);
    QTRY_COMPARE_WITH_TIMEOUT(live->text(), QVariant(QStringLiteral("64")), patience);
    QTRY_COMPARE_WITH_TIMEOUT(trigger->text(), QVariant(QStringLiteral("Edge Falling")), patience);
    QCOMPARE(relayed.count(), 1);
    QCOMPARE(relayed.at(0).at(0), QVariant(QStringLiteral("setupChanged")));
    QCOMPARE(relayed.at(0).at(1).toList(), QVariantList{64});
    QCOMPARE(triggerRelayed.at(0).at(1).toList(), (QVariantList{2, QStringLiteral("Edge Falling")}));
    QCOMPARE(live->signalCount(), 1);
    // The value came with the signal; only the text was read again.
    QCOMPARE(loggedCalls(averages, QStringLiteral("getValue")).size(), readsBefore);
    QTRY_COMPARE_WITH_TIMEOUT(live->state(), LiveValue::Valid, patience);
}

void tst_ApplicationMirror::writesAreAnsweredAndShowTheApplicationsValue_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QVariant>("written");
    QTest::addColumn<LiveValue::WriteState>("answer");
    QTest::addColumn<QVariant>("shown");

    QTest::newRow("int accepted") << averages << QVariant(64) << LiveValue::Accepted << QVariant(64);
    QTest::newRow("int refused") << averages << QVariant(5000) << LiveValue::Refused << QVariant(16);
    QTest::newRow("int from text") << averages << QVariant(QStringLiteral("32")) << LiveValue::Accepted << QVariant(32);
    QTest::newRow("double accepted") << duration << QVariant(2.5) << LiveValue::Accepted << QVariant(2.5);
    QTest::newRow("double refused") << duration << QVariant(-1.0) << LiveValue::Refused << QVariant(10.0);
    QTest::newRow("bool accepted") << autoRange << QVariant(false) << LiveValue::Accepted << QVariant(false);
    QTest::newRow("string accepted") << label << QVariant(QStringLiteral("Channel B")) << LiveValue::Accepted
                                     << QVariant(QStringLiteral("Channel B"));
    QTest::newRow("string refused") << serialNumber << QVariant(QStringLiteral("X")) << LiveValue::Refused
                                    << QVariant(QStringLiteral("MQX-2041-00317"));
    QTest::newRow("enum by index") << inputCoupling << QVariant(2) << LiveValue::Accepted << QVariant(2);
    QTest::newRow("enum by text") << inputCoupling << QVariant(QStringLiteral("AC")) << LiveValue::Accepted
                                  << QVariant(0);
    QTest::newRow("enum refused") << inputCoupling << QVariant(QStringLiteral("HF")) << LiveValue::Refused
                                  << QVariant(1);
    QTest::newRow("devData in a variant") << calibration << QVariant(1.5) << LiveValue::Accepted << QVariant(1.5);
    QTest::newRow("devData of another type")
        << calibration << QVariant(QStringLiteral("x")) << LiveValue::Refused << QVariant(1.0023);
}

void tst_ApplicationMirror::writesAreAnsweredAndShowTheApplicationsValue()
{
    QFETCH(QString, path);
    QFETCH(QVariant, written);
    QFETCH(LiveValue::WriteState, answer);
    QFETCH(QVariant, shown);
    auto mirror = makeMirror();
    LiveValue *live = valid(*mirror, path);
    QSignalSpy writeStates(live, &LiveValue::writeStateChanged);

    live->set(written);

    // Returned at once: nothing answered yet, and nothing guessed.
    QCOMPARE(live->writeState(), LiveValue::Pending);
    QTRY_COMPARE_WITH_TIMEOUT(live->writeState(), answer, patience);
    QTRY_COMPARE_WITH_TIMEOUT(live->value(), shown, patience);
    QTRY_COMPARE_WITH_TIMEOUT(live->state(), LiveValue::Valid, patience);
    QCOMPARE(writeStates.count(), 2);
    QVERIFY(live->writeError().isEmpty());
}

void tst_ApplicationMirror::aWriteTheKindCannotTakeFailsAtOnce()
{
    auto mirror = makeMirror();
    LiveValue *live = valid(*mirror, averages);
    LiveValue *channels = valid(*mirror, mapMap);

    live->set(QStringLiteral("many"));
    QCOMPARE(live->writeState(), LiveValue::Failed);
    QVERIFY(!live->writeError().isEmpty());
    channels->set(3);
    QCOMPARE(channels->writeState(), LiveValue::Failed);
    QVERIFY(loggedCalls(averages, QStringLiteral("setValue")).isEmpty());
}

void tst_ApplicationMirror::writesAreSeenInTheCallLog()
{
    auto mirror = makeMirror();
    LiveValue *live = valid(*mirror, averages);

    live->set(64);
    QTRY_COMPARE_WITH_TIMEOUT(live->writeState(), LiveValue::Accepted, patience);
    live->set(0);
    QTRY_COMPARE_WITH_TIMEOUT(live->writeState(), LiveValue::Refused, patience);

    const QList<QJsonObject> writes = loggedCalls(averages, QStringLiteral("setValue"));
    QCOMPARE(writes.size(), 2);
    QCOMPARE(writes.at(0).value(QStringLiteral("signature")).toString(), QStringLiteral("i"));
    QCOMPARE(writes.at(0).value(QStringLiteral("arguments")).toArray(), QJsonArray{64});
    QCOMPARE(writes.at(0).value(QStringLiteral("answer")).toObject().value(QStringLiteral("values")).toArray(),
             QJsonArray{true});
    QCOMPARE(writes.at(1).value(QStringLiteral("arguments")).toArray(), QJsonArray{0});
    QCOMPARE(writes.at(1).value(QStringLiteral("answer")).toObject().value(QStringLiteral("values")).toArray(),
             QJsonArray{false});
    QCOMPARE(writes.at(0).value(QStringLiteral("sender")).toString(), bus().baseService());
}

void tst_ApplicationMirror::aRestartedApplicationIsReadAgainAndItsFormerOwnerIgnored()
{
    auto mirror = makeMirror();
    LiveValue *live = valid(*mirror, averages);
    live->set(64);
    QTRY_COMPARE_WITH_TIMEOUT(live->value(), QVariant(64), patience);
    const QString formerOwner = mirror->owner();
    QCOMPARE(formerOwner, bus().interface()->serviceOwner(SimulatorProcess::service).value());
    QSignalSpy states(live, &LiveValue::stateChanged);
    QSignalSpy relayed(live, &LiveValue::busSignal);

    // The first instance lets go of the name and lingers on the bus; a new one takes it.
    auto former = std::move(m_simulator);
    former->control(QStringLiteral("dropOffBus"), {QStringLiteral("release"), -1});
    QTRY_COMPARE_WITH_TIMEOUT(live->state(), LiveValue::Stale, patience);
    QCOMPARE(live->value(), QVariant(64)); // kept while the application is away
    QVERIFY(!mirror->isOnBus());
    start();
    QTRY_COMPARE_WITH_TIMEOUT(live->state(), LiveValue::Valid, patience);

    QVERIFY(mirror->owner() != formerOwner);
    QCOMPARE(mirror->owner(), bus().interface()->serviceOwner(SimulatorProcess::service).value());
    QCOMPARE(live->value(), QVariant(16)); // the new instance's default
    QCOMPARE(states.at(0).at(0).value<LiveValue::State>(), LiveValue::Stale);

    // The former owner still speaks on the same path and interface: not heard.
    const int signalsBefore = live->signalCount();
    QCOMPARE(former->control(QStringLiteral("emitSignal"), {averages, QStringLiteral("setupChanged")}, formerOwner)
                 .arguments(),
             QVariantList{true});
    QCOMPARE(m_simulator->control(QStringLiteral("emitSignal"), {averages, QStringLiteral("setupChanged")}).arguments(),
             QVariantList{true});
    QTRY_COMPARE_WITH_TIMEOUT(relayed.count(), 1, patience);
    QCOMPARE(relayed.at(0).at(1).toList(), QVariantList{16});
    QCOMPARE(live->value(), QVariant(16));
    QCOMPARE(live->signalCount(), signalsBefore + 1);
}

void tst_ApplicationMirror::theSimulatorsRestartIsFollowed()
{
    auto mirror = makeMirror();
    LiveValue *live = valid(*mirror, averages);
    const QString before = mirror->owner();
    QSignalSpy states(live, &LiveValue::stateChanged);
    QSignalSpy owners(mirror.get(), &ApplicationMirror::ownerChanged);
    const int callsBefore = live->callCount();

    m_simulator->control(QStringLiteral("restart"));
    QVERIFY(m_simulator->waitForReady());

    QTRY_VERIFY_WITH_TIMEOUT(!owners.isEmpty() && owners.last().at(0).toString() != before &&
                                 !owners.last().at(0).toString().isEmpty(),
                             patience);
    QTRY_COMPARE_WITH_TIMEOUT(live->state(), LiveValue::Valid, patience);
    QCOMPARE(states.at(0).at(0).value<LiveValue::State>(), LiveValue::Stale);
    QCOMPARE(live->callCount(), callsBefore + live->properties().size());
    QCOMPARE(live->value(), QVariant(16));
}

void tst_ApplicationMirror::droppingOffTheBusAndComingBackTurnsStaleThenValid()
{
    auto mirror = makeMirror();
    LiveValue *live = valid(*mirror, averages);
    LiveValue *rate = valid(*mirror, sampleRate);
    QSignalSpy onBus(mirror.get(), &ApplicationMirror::onBusChanged);
    QSignalSpy states(live, &LiveValue::stateChanged);

    m_simulator->control(QStringLiteral("dropOffBus"), {QStringLiteral("release"), 100});

    QTRY_COMPARE_WITH_TIMEOUT(onBus.count(), 2, patience);
    QCOMPARE(onBus.at(0).at(0), QVariant(false));
    QCOMPARE(onBus.at(1).at(0), QVariant(true));
    QTRY_COMPARE_WITH_TIMEOUT(live->state(), LiveValue::Valid, patience);
    QTRY_COMPARE_WITH_TIMEOUT(rate->state(), LiveValue::Valid, patience);
    QCOMPARE(states.at(0).at(0).value<LiveValue::State>(), LiveValue::Stale);
    // Read again from the returning owner.
    QCOMPARE(loggedCalls(averages, QStringLiteral("getValue")).size(), 2);
    QCOMPARE(live->value(), QVariant(16));
}

void tst_ApplicationMirror::anApplicationAbsentAtStartIsReadWhenItAppears()
{
    m_simulator.reset();
    auto mirror = makeMirror();
    LiveValue *live = mirror->value(averages, QStringLiteral("int"));
    LiveValue *inferred = mirror->value(triggerMode);
    QTRY_COMPARE_WITH_TIMEOUT(live->state(), LiveValue::Absent, patience);
    QTRY_COMPARE_WITH_TIMEOUT(inferred->state(), LiveValue::Absent, patience);
    QVERIFY(!mirror->isOnBus());

    start();

    QTRY_COMPARE_WITH_TIMEOUT(live->state(), LiveValue::Valid, patience);
    QTRY_COMPARE_WITH_TIMEOUT(inferred->state(), LiveValue::Valid, patience);
    QCOMPARE(live->value(), QVariant(16));
    QCOMPARE(inferred->kindName(), QStringLiteral("enum"));
    QVERIFY(mirror->isOnBus());
}

void tst_ApplicationMirror::aLateAnswerMakesTheValueStaleWhileTheEventLoopRuns()
{
    auto mirror = makeMirror();
    LiveValue *live = valid(*mirror, averages);
    mirror->setCallTimeout(300);
    QCOMPARE(
        m_simulator->control(QStringLiteral("setFault"), {averages, QStringLiteral("delay"), QStringLiteral("3000")})
            .arguments(),
        QVariantList{true});
    EventLoopTicks loop;
    int ticksWhenStale = -1;
    connect(live, &LiveValue::stateChanged, this, [&](LiveValue::State state) {
        if (state == LiveValue::Stale)
            ticksWhenStale = loop.ticks();
    });

    const int ticksBefore = loop.ticks();
    live->refresh();
    QCOMPARE(loop.ticks(), ticksBefore); // refresh() only sends

    QTRY_COMPARE_WITH_TIMEOUT(live->state(), LiveValue::Stale, patience);
    // The caller's event loop kept turning while the application was late.
    QVERIFY2(ticksWhenStale - ticksBefore > 10, qPrintable(QString::number(ticksWhenStale - ticksBefore)));
    QVERIFY(live->lastError().startsWith(QStringLiteral("org.freedesktop.DBus.Error.NoReply")));
    QCOMPARE(live->value(), QVariant(16));

    m_simulator->control(QStringLiteral("clearFaults"));
    live->refresh();
    QTRY_COMPARE_WITH_TIMEOUT(live->state(), LiveValue::Valid, patience);
    QVERIFY(live->lastError().isEmpty());
}

void tst_ApplicationMirror::anErrorReplyIsShownWithTheLastValueKept()
{
    auto mirror = makeMirror();
    LiveValue *live = valid(*mirror, averages);
    m_simulator->control(
        QStringLiteral("setFault"),
        {averages, QStringLiteral("error"), QStringLiteral("com.velk.mqx.Error.Busy Instrument busy")});

    live->refresh();

    QTRY_COMPARE_WITH_TIMEOUT(live->state(), LiveValue::Error, patience);
    QCOMPARE(live->lastError(), QStringLiteral("com.velk.mqx.Error.Busy: Instrument busy"));
    QCOMPARE(live->value(), QVariant(16));
    live->set(20);
    QTRY_COMPARE_WITH_TIMEOUT(live->writeState(), LiveValue::Failed, patience);
    QCOMPARE(live->writeError(), QStringLiteral("com.velk.mqx.Error.Busy: Instrument busy"));
}

void tst_ApplicationMirror::spoofedSignalsAreIgnored()
{
    auto mirror = makeMirror();
    LiveValue *live = valid(*mirror, averages);
    QSignalSpy relayed(live, &LiveValue::busSignal);
    const QString spooferName = QStringLiteral("spoofer");
    QDBusConnection spoofer = QDBusConnection::connectToBus(QDBusConnection::SessionBus, spooferName);
    QVERIFY(spoofer.isConnected());

    // From the simulator's second connection, with the element's own arguments.
    QCOMPARE(
        m_simulator->control(QStringLiteral("spoofSignal"), {averages, QStringLiteral("setupChanged")}).arguments(),
        QVariantList{true});
    // Broadcast and sent to the mirror's connection alone, with a value of their own.
    QDBusMessage broadcast = QDBusMessage::createSignal(averages, interfaceName, QStringLiteral("setupChanged"));
    broadcast << 999;
    QVERIFY(spoofer.send(broadcast));
    QDBusMessage unicast = QDBusMessage::createTargetedSignal(bus().baseService(), averages, interfaceName,
                                                              QStringLiteral("setupChanged"));
    unicast << 998;
    QVERIFY(spoofer.send(unicast));
    // A round trip on the spoofer's connection: the daemon has routed both by its answer.
    QVERIFY(spoofer.interface()->isServiceRegistered(SimulatorProcess::service).value());
    QCOMPARE(m_simulator->control(QStringLiteral("emitSignal"), {averages, QStringLiteral("setupChanged")}).arguments(),
             QVariantList{true});

    QTRY_COMPARE_WITH_TIMEOUT(relayed.count(), 1, patience);
    QCOMPARE(relayed.at(0).at(1).toList(), QVariantList{16});
    QCOMPARE(live->signalCount(), 1);
    QCOMPARE(live->value(), QVariant(16));
    QDBusConnection::disconnectFromBus(spooferName);
}

void tst_ApplicationMirror::destroyingALiveValueWithACallInFlightDropsTheAnswer()
{
    auto mirror = makeMirror();
    m_simulator->control(QStringLiteral("setFault"), {averages, QStringLiteral("delay"), QStringLiteral("300")});
    m_simulator->control(QStringLiteral("setFault"), {sampleRate, QStringLiteral("delay"), QStringLiteral("300")});
    QPointer<LiveValue> doomed = mirror->value(averages, QStringLiteral("int"));
    QTRY_VERIFY_WITH_TIMEOUT(doomed->callCount() > 0, patience);
    QTRY_VERIFY_WITH_TIMEOUT(!loggedCalls(averages, QStringLiteral("getValue")).isEmpty(), patience);

    delete doomed.data();
    QCOMPARE(mirror->find(averages), nullptr);
    // Sent later with the same delay, so answered after the doomed value's calls.
    LiveValue *probe = valid(*mirror, sampleRate, QStringLiteral("int"));

    QCOMPARE(probe->value(), QVariant(48000));
    QVERIFY(doomed.isNull());
    // Asked again, the path gets a new value of its own.
    QVERIFY(valid(*mirror, averages, QStringLiteral("int")));
}

void tst_ApplicationMirror::destroyingTheMirrorWithCallsInFlightDropsTheAnswers()
{
    m_simulator->control(QStringLiteral("setFault"),
                         {QStringLiteral("*"), QStringLiteral("delay"), QStringLiteral("300")});
    auto doomed = makeMirror();
    QPointer<LiveValue> live = doomed->value(averages);
    doomed->value(triggerMode, QStringLiteral("enum"));
    QTRY_VERIFY_WITH_TIMEOUT(live->callCount() > 0, patience);
    QTRY_VERIFY_WITH_TIMEOUT(!loggedCalls(averages, QStringLiteral("Introspect")).isEmpty(), patience);

    doomed.reset();
    QVERIFY(live.isNull());
    auto probe = makeMirror();

    QCOMPARE(valid(*probe, averages, QStringLiteral("int"))->value(), QVariant(16));
}

void tst_ApplicationMirror::fiveThousandElementsAllBecomeValid()
{
    constexpr int count = 5000;
    const QString model = m_dir.filePath(QStringLiteral("bulk.json"));
    QVERIFY(BulkModel::write(model, count));
    start({QStringLiteral("--model"), model});

    auto mirror = makeMirror();
    // The simulator looks each path up among all its elements: with 5,000 of them, the
    // 22,000 first reads take it far longer than the default deadline.
    mirror->setCallTimeout(patience * 4);
    QList<LiveValue *> values;
    for (int i = 0; i < count; ++i)
        values.append(mirror->value(BulkModel::path(i), BulkModel::kind(i)));

    QTRY_VERIFY_WITH_TIMEOUT(allInState(values, LiveValue::Valid), patience * 4);
    for (int i = 0; i < count; ++i)
        QCOMPARE(values.at(i)->value(), BulkModel::initialValue(i));
}

QTEST_GUILESS_MAIN(tst_ApplicationMirror)

#include "tst_applicationmirror.moc"
