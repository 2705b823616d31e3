#include "SetupDoubleInterface.h"

#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"

#include <QDBusConnection>
#include <QPointer>
#include <QtMath>
#include <QtTest/QTest>

#include <functional>
#include <limits>
#include <memory>
#include <type_traits>

using Operation = std::function<Outcome(SetupDoubleInterface &)>;
Q_DECLARE_METATYPE(Operation)

namespace {
const QString path = QStringLiteral("/Setup/Frequency");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");
const double infinity = std::numeric_limits<double>::infinity();
const QString nanLine = QStringLiteral("SetupDoubleInterface::setValue(): Value is NaN!");
} // namespace

class tst_SetupDoubleInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void constructorPassesItsArgumentsOnAndCallsNothing();
    void holdsNoDataOfItsOwn();

    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void mapsEachReplyWithoutLogging_data();
    void mapsEachReplyWithoutLogging();
    void givesInvalidRepliesWhenTheServiceIsAbsent();
    void operationsLogNothingWhenTheServiceIsAbsent();

    void setValueRefusesNaNWithoutSendingIt_data();
    void setValueRefusesNaNWithoutSendingIt();
    void setValueRefusesNaNAlsoWhenTheServiceIsAbsent();
    void setValueAsyncSendsNaN();
    void infinitiesAreSent_data();
    void infinitiesAreSent();

    void setToDefaultReturnsNothingButWaitsForTheAnswer();
    void setToDefaultToAnAbsentServiceShowsNothing();

    void asyncOperationsReturnAtOnceAndLeaveLastErrorAlone();
    void asyncSetterToAnAbsentServiceLogsNothing();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();
    void invokingSetValueByNameRefusesNaNToo();
    void relaysSetupChangedOfItsOwnObjectOnly();
    void relaysSetupBoundsChangedOfItsOwnObjectOnly();

private:
    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<SetupDoubleInterface> m_proxy;
};

void tst_SetupDoubleInterface::init()
{
    m_fake.reset(new FakeMeasApplication);
    m_proxy.reset(new SetupDoubleInterface(m_fake->service(), path, QDBusConnection::sessionBus()));
}

void tst_SetupDoubleInterface::cleanup()
{
    m_proxy.reset();
    m_fake.reset();
}

void tst_SetupDoubleInterface::constructorPassesItsArgumentsOnAndCallsNothing()
{
    auto parent = std::make_unique<QObject>();
    m_fake->answer("isChangeable", ScriptedAnswer::value(true));

    auto *proxy = new SetupDoubleInterface(m_fake->service(), path, QDBusConnection::sessionBus(), parent.get());

    QCOMPARE(proxy->parent(), parent.get());
    QCOMPARE(proxy->service(), m_fake->service());
    QCOMPARE(proxy->path(), path);
    QCOMPARE(proxy->interface(), QStringLiteral("com.velk.mqx.MeasApplInterface"));
    QVERIFY(!proxy->lastError().isValid());

    // The fake handles messages in order: anything sent at construction would stand
    // before this call.
    proxy->isChangeable();
    const QList<ReceivedCall> calls = m_fake->calls();
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.first().member, QStringLiteral("isChangeable"));

    // Qt ownership: the parent deletes the proxy.
    QPointer<SetupDoubleInterface> watch(proxy);
    parent.reset();
    QVERIFY(watch.isNull());
}

void tst_SetupDoubleInterface::holdsNoDataOfItsOwn()
{
    QCOMPARE(sizeof(SetupDoubleInterface), sizeof(QDBusAbstractInterface));
}

void tst_SetupDoubleInterface::sendsEachOperationWithItsWireForm_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<QList<QVariant>>("arguments");

    const auto op = [](std::function<void(SetupDoubleInterface &)> call) {
        return Operation([call](SetupDoubleInterface &proxy) {
            call(proxy);
            return Outcome{};
        });
    };
    QTest::newRow("setValue") << op([](SetupDoubleInterface &p) { p.setValue(2.5); }) << "setValue"
                              << "d" << QList<QVariant>{2.5};
    QTest::newRow("setValue zero") << op([](SetupDoubleInterface &p) { p.setValue(0.0); }) << "setValue"
                                   << "d" << QList<QVariant>{0.0};
    QTest::newRow("setValueAsync") << op([](SetupDoubleInterface &p) { p.setValueAsync(-0.125); }) << "setValue"
                                   << "d" << QList<QVariant>{-0.125};
    QTest::newRow("getValue") << op([](SetupDoubleInterface &p) { p.getValue(); }) << "getValue"
                              << "" << QList<QVariant>{};
    QTest::newRow("getString") << op([](SetupDoubleInterface &p) { p.getString(); }) << "getString"
                               << "" << QList<QVariant>{};
    QTest::newRow("getMinValue") << op([](SetupDoubleInterface &p) { p.getMinValue(); }) << "getMinValue"
                                 << "" << QList<QVariant>{};
    QTest::newRow("getMaxValue") << op([](SetupDoubleInterface &p) { p.getMaxValue(); }) << "getMaxValue"
                                 << "" << QList<QVariant>{};
    QTest::newRow("getGranularity") << op([](SetupDoubleInterface &p) { p.getGranularity(); }) << "getGranularity"
                                    << "" << QList<QVariant>{};
    QTest::newRow("isChangeable") << op([](SetupDoubleInterface &p) { p.isChangeable(); }) << "isChangeable"
                                  << "" << QList<QVariant>{};
    QTest::newRow("setToDefault") << op([](SetupDoubleInterface &p) { p.setToDefault(); }) << "setToDefault"
                                  << "" << QList<QVariant>{};
    QTest::newRow("setToDefaultAsync") << op([](SetupDoubleInterface &p) { p.setToDefaultAsync(); }) << "setToDefault"
                                       << "" << QList<QVariant>{};
}

void tst_SetupDoubleInterface::sendsEachOperationWithItsWireForm()
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);
    QFETCH(QString, signature);
    QFETCH(QList<QVariant>, arguments);

    m_fake->answer(member, ScriptedAnswer::reply());
    operation(*m_proxy);
    verifySingleCall(*m_fake, path, member, signature, arguments);
    // An exact type check: QVariant would call an int argument equal to the double.
    const QList<ReceivedCall> calls = m_fake->calls();
    for (const QVariant &argument : calls.first().arguments)
        QCOMPARE(argument.userType(), int(QMetaType::Double));
}

void tst_SetupDoubleInterface::mapsEachReplyWithoutLogging_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QVariant>("value");

    const ScriptedAnswer error = ScriptedAnswer::error(failure, QStringLiteral("refused"));
    const auto rows = [&](const char *name, Operation op, const QVariant &good, const QVariant &wrongType,
                          const QVariant &defaultValue) {
        QTest::addRow("%s answered", name) << op << name << ScriptedAnswer::value(good) << true << good;
        QTest::addRow("%s error", name) << op << name << error << false << defaultValue;
        QTest::addRow("%s wrong type", name) << op << name << ScriptedAnswer::value(wrongType) << false << defaultValue;
    };
    rows(
        "setValue", [](SetupDoubleInterface &p) { return outcomeOf(p.setValue(5.5)); }, true, 1, false);
    rows(
        "getValue", [](SetupDoubleInterface &p) { return outcomeOf(p.getValue()); }, 3.25, 3, 0.0);
    rows(
        "getString", [](SetupDoubleInterface &p) { return outcomeOf(p.getString()); }, QStringLiteral("3.25 MHz"), 3.25,
        QString());
    rows(
        "getMinValue", [](SetupDoubleInterface &p) { return outcomeOf(p.getMinValue()); }, -10.5,
        QStringLiteral("-10.5"), 0.0);
    rows(
        "getMaxValue", [](SetupDoubleInterface &p) { return outcomeOf(p.getMaxValue()); }, 90.75, true, 0.0);
    rows(
        "getGranularity", [](SetupDoubleInterface &p) { return outcomeOf(p.getGranularity()); }, 0.05, 5, 0.0);
    rows(
        "isChangeable", [](SetupDoubleInterface &p) { return outcomeOf(p.isChangeable()); }, true, 1.0, false);

    // A false answer must come back valid, apart from the default of a failed reply.
    QTest::newRow("setValue answered false")
        << Operation([](SetupDoubleInterface &p) { return outcomeOf(p.setValue(5.5)); }) << "setValue"
        << ScriptedAnswer::value(false) << true << QVariant(false);
}

void tst_SetupDoubleInterface::mapsEachReplyWithoutLogging()
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);
    QFETCH(ScriptedAnswer, answer);
    QFETCH(bool, valid);
    QFETCH(QVariant, value);

    LogCapture log;
    m_fake->answer(member, answer);
    const Outcome outcome = operation(*m_proxy);
    QCOMPARE(outcome.valid, valid);
    QCOMPARE(outcome.value, value);
    QCOMPARE(outcome.value.userType(), value.userType());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupDoubleInterface::givesInvalidRepliesWhenTheServiceIsAbsent()
{
    LogCapture log;
    SetupDoubleInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const QDBusReply<bool> set = proxy.setValue(1.5);
    QVERIFY(!set.isValid());
    QCOMPARE(set.value(), false);
    QCOMPARE(set.error().type(), QDBusError::ServiceUnknown);
    const QDBusReply<double> value = proxy.getValue();
    QVERIFY(!value.isValid());
    QCOMPARE(value.value(), 0.0);
    QCOMPARE(value.error().type(), QDBusError::ServiceUnknown);
    QVERIFY(!proxy.getString().isValid());
    QCOMPARE(proxy.getString().value(), QString());
    QVERIFY(!proxy.getMinValue().isValid());
    QCOMPARE(proxy.getMinValue().value(), 0.0);
    QVERIFY(!proxy.getMaxValue().isValid());
    QCOMPARE(proxy.getMaxValue().value(), 0.0);
    QVERIFY(!proxy.getGranularity().isValid());
    QCOMPARE(proxy.getGranularity().value(), 0.0);
    QVERIFY(!proxy.isChangeable().isValid());
    QCOMPARE(proxy.isChangeable().value(), false);
}

void tst_SetupDoubleInterface::operationsLogNothingWhenTheServiceIsAbsent()
{
    LogCapture log;
    SetupDoubleInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    proxy.setValue(1.0);
    proxy.setValueAsync(1.0);
    proxy.getValue();
    proxy.getString();
    proxy.getMinValue();
    proxy.getMaxValue();
    proxy.getGranularity();
    proxy.isChangeable();
    proxy.setToDefault();
    proxy.setToDefaultAsync();

    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupDoubleInterface::setValueRefusesNaNWithoutSendingIt_data()
{
    QTest::addColumn<double>("nan");

    QTest::newRow("quiet NaN") << std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("negative NaN") << -std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("signalling NaN") << std::numeric_limits<double>::signaling_NaN();
    QTest::newRow("computed NaN") << infinity - infinity;
}

void tst_SetupDoubleInterface::setValueRefusesNaNWithoutSendingIt()
{
    QFETCH(double, nan);
    QVERIFY(qIsNaN(nan));

    m_fake->answer("getMinValue", ScriptedAnswer::error(failure, QStringLiteral("earlier failure")));
    m_fake->answer("setValue", ScriptedAnswer::value(true));
    m_fake->answer("getValue", ScriptedAnswer::value(1.0));
    m_proxy->getMinValue();
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));
    m_fake->clearCalls();

    LogCapture log;
    const QDBusReply<bool> reply = m_proxy->setValue(nan);

    QVERIFY(reply.isValid());
    QCOMPARE(reply.value(), false);
    QVERIFY(!reply.error().isValid());
    QCOMPARE(log.lines(), debugLines({nanLine}));
    QCOMPARE(m_proxy->lastError().type(), QDBusError::Other);
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));

    // Messages of one connection arrive in order: had setValue gone out, it would stand
    // before this call.
    m_proxy->getValue();
    const QList<ReceivedCall> calls = m_fake->calls();
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.first().member, QStringLiteral("getValue"));
}

void tst_SetupDoubleInterface::setValueRefusesNaNAlsoWhenTheServiceIsAbsent()
{
    LogCapture log;
    SetupDoubleInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const QDBusReply<bool> reply = proxy.setValue(std::numeric_limits<double>::quiet_NaN());

    QVERIFY(reply.isValid());
    QCOMPARE(reply.value(), false);
    QVERIFY(!proxy.lastError().isValid());
    QCOMPARE(log.lines(), debugLines({nanLine}));
}

void tst_SetupDoubleInterface::setValueAsyncSendsNaN()
{
    LogCapture log;
    m_fake->answer("setValue", ScriptedAnswer::value(false));

    m_proxy->setValueAsync(std::numeric_limits<double>::quiet_NaN());

    QVERIFY(m_fake->waitForCalls(1));
    const ReceivedCall call = m_fake->calls().first();
    QCOMPARE(call.path, path);
    QCOMPARE(call.interface, FakeMeasApplication::interfaceName);
    QCOMPARE(call.member, QStringLiteral("setValue"));
    QCOMPARE(call.signature, QStringLiteral("d"));
    QCOMPARE(call.arguments.size(), 1);
    QCOMPARE(call.arguments.first().userType(), int(QMetaType::Double));
    QVERIFY(qIsNaN(call.arguments.first().toDouble()));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupDoubleInterface::infinitiesAreSent_data()
{
    QTest::addColumn<bool>("async");
    QTest::addColumn<double>("value");

    QTest::newRow("setValue +inf") << false << infinity;
    QTest::newRow("setValue -inf") << false << -infinity;
    QTest::newRow("setValueAsync +inf") << true << infinity;
    QTest::newRow("setValueAsync -inf") << true << -infinity;
}

void tst_SetupDoubleInterface::infinitiesAreSent()
{
    QFETCH(bool, async);
    QFETCH(double, value);

    LogCapture log;
    m_fake->answer("setValue", ScriptedAnswer::value(true));

    if (async) {
        m_proxy->setValueAsync(value);
    } else {
        const QDBusReply<bool> reply = m_proxy->setValue(value);
        QVERIFY(reply.isValid());
        QCOMPARE(reply.value(), true);
    }

    QVERIFY(m_fake->waitForCalls(1));
    const ReceivedCall call = m_fake->calls().first();
    QCOMPARE(call.member, QStringLiteral("setValue"));
    QCOMPARE(call.signature, QStringLiteral("d"));
    QCOMPARE(call.arguments.size(), 1);
    const double received = call.arguments.first().toDouble();
    QVERIFY(qIsInf(received));
    QCOMPARE(received > 0, value > 0);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupDoubleInterface::setToDefaultReturnsNothingButWaitsForTheAnswer()
{
    static_assert(std::is_void<decltype(m_proxy->setToDefault())>::value, "setToDefault() returns no reply");

    LogCapture log;
    m_fake->answer("setToDefault", ScriptedAnswer::error(failure, QStringLiteral("reset refused")));

    m_proxy->setToDefault();

    // Only a caller that waited for the answer knows of the error, and the fake has
    // the call without anyone waiting for it here.
    QCOMPARE(m_fake->callCount(), 1);
    QCOMPARE(m_proxy->lastError().name(), failure);
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("reset refused"));
    verifySingleCall(*m_fake, path, "setToDefault", "", {});
    QCOMPARE(log.lines(), QList<LogLine>());

    // A good answer after a failed one clears the proxy's error again.
    m_fake->answer("setToDefault", ScriptedAnswer::reply());
    m_proxy->setToDefault();
    QCOMPARE(m_fake->callCount(), 2);
    QVERIFY(!m_proxy->lastError().isValid());
}

void tst_SetupDoubleInterface::setToDefaultToAnAbsentServiceShowsNothing()
{
    LogCapture log;
    SetupDoubleInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    proxy.setToDefault();

    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupDoubleInterface::asyncOperationsReturnAtOnceAndLeaveLastErrorAlone()
{
    m_fake->answer("getMinValue", ScriptedAnswer::error(failure, QStringLiteral("earlier failure")));
    m_fake->answer("setValue", ScriptedAnswer::silence());
    m_fake->answer("setToDefault", ScriptedAnswer::silence());
    m_proxy->getMinValue();
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));

    // The application never answers: a call that waited would not come back in time
    // for the fake to see both messages.
    LogCapture log;
    m_proxy->setValueAsync(9.5);
    m_proxy->setToDefaultAsync();

    QVERIFY(m_fake->waitForCalls(3));
    QCOMPARE(m_fake->calls().at(1).member, QStringLiteral("setValue"));
    QCOMPARE(m_fake->calls().at(1).arguments, QList<QVariant>{9.5});
    QCOMPARE(m_fake->calls().at(2).member, QStringLiteral("setToDefault"));
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupDoubleInterface::asyncSetterToAnAbsentServiceLogsNothing()
{
    LogCapture log;
    SetupDoubleInterface proxy(absentService(), path, QDBusConnection::sessionBus());
    const QDBusError before = proxy.lastError();

    proxy.setValueAsync(5.0);
    proxy.setToDefaultAsync();

    QCOMPARE(proxy.lastError().type(), before.type());
    QCOMPARE(proxy.lastError().message(), before.message());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupDoubleInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    const QMetaObject &meta = SetupDoubleInterface::staticMetaObject;
    QCOMPARE(ownMethodSignatures(meta),
             QStringList({"setupChanged(double)", "setupBoundsChanged(double,double)", "setValue(double)",
                          "setValueAsync(double)", "getValue()", "getString()", "getMinValue()", "getMaxValue()",
                          "getGranularity()", "isChangeable()", "setToDefault()", "setToDefaultAsync()"}));
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Signal),
             QStringList({"setupChanged(double)", "setupBoundsChanged(double,double)"}));
    QCOMPARE(ownMethodReturnTypes(meta),
             QStringList({"void", "void", "QDBusReply<bool>", "void", "QDBusReply<double>", "QDBusReply<QString>",
                          "QDBusReply<double>", "QDBusReply<double>", "QDBusReply<double>", "QDBusReply<bool>", "void",
                          "void"}));
    QCOMPARE(meta.superClass(), &QDBusAbstractInterface::staticMetaObject);
    QCOMPARE(m_proxy->metaObject(), &meta);
}

void tst_SetupDoubleInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    QCOMPARE(m_proxy->qt_metacast("SetupDoubleInterface"), static_cast<void *>(m_proxy.get()));
    QCOMPARE(m_proxy->qt_metacast("QDBusAbstractInterface"),
             static_cast<void *>(static_cast<QDBusAbstractInterface *>(m_proxy.get())));
    QCOMPARE(m_proxy->qt_metacast("QObject"), static_cast<void *>(static_cast<QObject *>(m_proxy.get())));
    QCOMPARE(m_proxy->qt_metacast(nullptr), nullptr);
    QCOMPARE(m_proxy->qt_metacast("SetupIntInterface"), nullptr);
    QCOMPARE(m_proxy->qt_metacast("setupdoubleinterface"), nullptr);
}

void tst_SetupDoubleInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(17.5));
    m_fake->answer("getGranularity", ScriptedAnswer::value(0.5));
    m_fake->answer("setValue", ScriptedAnswer::value(true));
    m_fake->answer("setToDefault", ScriptedAnswer::error(failure, QStringLiteral("reset refused")));

    QDBusReply<double> value;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<double>, value)));
    QVERIFY(value.isValid());
    QCOMPARE(value.value(), m_proxy->getValue().value());
    QCOMPARE(value.value(), 17.5);

    QDBusReply<double> granularity;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getGranularity", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<double>, granularity)));
    QCOMPARE(granularity.value(), 0.5);

    QDBusReply<bool> accepted;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<bool>, accepted), Q_ARG(double, 4.75)));
    QVERIFY(accepted.isValid());
    QCOMPARE(accepted.value(), true);
    QCOMPARE(m_fake->calls().last().arguments, QList<QVariant>{4.75});

    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setToDefault", Qt::DirectConnection));
    QCOMPARE(m_fake->calls().last().member, QStringLiteral("setToDefault"));
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("reset refused"));

    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValueAsync", Qt::DirectConnection, Q_ARG(double, -2.0)));
    QVERIFY(m_fake->waitForCalls(6));
    QCOMPARE(m_fake->calls().last().member, QStringLiteral("setValue"));
    QCOMPARE(m_fake->calls().last().arguments, QList<QVariant>{-2.0});
}

void tst_SetupDoubleInterface::invokingSetValueByNameRefusesNaNToo()
{
    LogCapture log;

    QDBusReply<bool> reply;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<bool>, reply),
                                      Q_ARG(double, std::numeric_limits<double>::quiet_NaN())));

    QVERIFY(reply.isValid());
    QCOMPARE(reply.value(), false);
    QCOMPARE(log.lines(), debugLines({nanLine}));
    QCOMPARE(m_fake->callCount(), 0);
}

void tst_SetupDoubleInterface::relaysSetupChangedOfItsOwnObjectOnly()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupChanged(double)), "setupChanged", {12.25});
}

void tst_SetupDoubleInterface::relaysSetupBoundsChangedOfItsOwnObjectOnly()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupBoundsChanged(double, double)), "setupBoundsChanged",
                      {-1.5, 99.0});
}

QTEST_GUILESS_MAIN(tst_SetupDoubleInterface)

#include "tst_setupdoubleinterface.moc"
