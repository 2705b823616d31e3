#include "SetupDoubleInterface.h"

#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"
#include "SetupTestSupport.h"

#include <QDBusConnection>
#include <QtMath>
#include <QtTest/QTest>

#include <limits>
#include <type_traits>

namespace {
const QString path = QStringLiteral("/Setup/Frequency");
const double infinity = std::numeric_limits<double>::infinity();
const QString nanLine = QStringLiteral("SetupDoubleInterface::setValue(): Value is NaN!");

// setToDefault() returns no reply, so it has no row here.
ReplyTable<SetupDoubleInterface> replies()
{
    return ReplyTable<SetupDoubleInterface>()
        .value("setValue", true, 1, false, [](SetupDoubleInterface &p) { return stateOf(p.setValue(5.5)); })
        .value("getValue", 3.25, 3, 0.0, [](SetupDoubleInterface &p) { return stateOf(p.getValue()); })
        .value("getString", QStringLiteral("3.25 MHz"), 3.25, QString(),
               [](SetupDoubleInterface &p) { return stateOf(p.getString()); })
        .value("getMinValue", -10.5, QStringLiteral("-10.5"), 0.0,
               [](SetupDoubleInterface &p) { return stateOf(p.getMinValue()); })
        .value("getMaxValue", 90.75, true, 0.0, [](SetupDoubleInterface &p) { return stateOf(p.getMaxValue()); })
        .value("getGranularity", 0.05, 5, 0.0, [](SetupDoubleInterface &p) { return stateOf(p.getGranularity()); })
        .value("isChangeable", true, 1.0, false, [](SetupDoubleInterface &p) { return stateOf(p.isChangeable()); });
}

std::vector<SentCall<SetupDoubleInterface>> asyncCalls()
{
    return {{"setValueAsync", [](SetupDoubleInterface &p) { p.setValueAsync(9.5); }, "setValue", "d", {9.5}},
            {"setToDefaultAsync", [](SetupDoubleInterface &p) { p.setToDefaultAsync(); }, "setToDefault", "", {}}};
}
} // namespace

class tst_SetupDoubleInterface : public QObject, private SetupProxyFixture<SetupDoubleInterface>
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
    void givesInvalidRepliesWhenTheServiceIsAbsent_data();
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
};

void tst_SetupDoubleInterface::init()
{
    startFakeAndProxy(path);
}

void tst_SetupDoubleInterface::cleanup()
{
    stopFakeAndProxy();
}

void tst_SetupDoubleInterface::constructorPassesItsArgumentsOnAndCallsNothing()
{
    verifyConstructionContract<SetupDoubleInterface>(*m_fake, path);
}

void tst_SetupDoubleInterface::holdsNoDataOfItsOwn()
{
    QCOMPARE(sizeof(SetupDoubleInterface), sizeof(QDBusAbstractInterface));
}

void tst_SetupDoubleInterface::sendsEachOperationWithItsWireForm_data()
{
    addWireFormRows({
        {"setValue", [](SetupDoubleInterface &p) { p.setValue(2.5); }, "setValue", "d", {2.5}},
        {"setValue zero", [](SetupDoubleInterface &p) { p.setValue(0.0); }, "setValue", "d", {0.0}},
        {"setValueAsync", [](SetupDoubleInterface &p) { p.setValueAsync(-0.125); }, "setValue", "d", {-0.125}},
        {"getValue", [](SetupDoubleInterface &p) { p.getValue(); }, "getValue", "", {}},
        {"getString", [](SetupDoubleInterface &p) { p.getString(); }, "getString", "", {}},
        {"getMinValue", [](SetupDoubleInterface &p) { p.getMinValue(); }, "getMinValue", "", {}},
        {"getMaxValue", [](SetupDoubleInterface &p) { p.getMaxValue(); }, "getMaxValue", "", {}},
        {"getGranularity", [](SetupDoubleInterface &p) { p.getGranularity(); }, "getGranularity", "", {}},
        {"isChangeable", [](SetupDoubleInterface &p) { p.isChangeable(); }, "isChangeable", "", {}},
        {"setToDefault", [](SetupDoubleInterface &p) { p.setToDefault(); }, "setToDefault", "", {}},
        {"setToDefaultAsync", [](SetupDoubleInterface &p) { p.setToDefaultAsync(); }, "setToDefault", "", {}},
    });
}

void tst_SetupDoubleInterface::sendsEachOperationWithItsWireForm()
{
    verifyWireForm();
}

void tst_SetupDoubleInterface::mapsEachReplyWithoutLogging_data()
{
    const ReplyTable<SetupDoubleInterface> table = replies();
    table.addMappingRows();
    // A false answer must come back valid, apart from the default of a failed reply.
    table.addMappingRow("setValue answered false", "setValue", ScriptedAnswer::value(false), true, false);
}

void tst_SetupDoubleInterface::mapsEachReplyWithoutLogging()
{
    verifyMappedReply(LogCheck::Nothing);
}

void tst_SetupDoubleInterface::givesInvalidRepliesWhenTheServiceIsAbsent_data()
{
    replies().addAbsentServiceRows();
}

void tst_SetupDoubleInterface::givesInvalidRepliesWhenTheServiceIsAbsent()
{
    verifyInvalidReplyFromAbsentService();
}

void tst_SetupDoubleInterface::operationsLogNothingWhenTheServiceIsAbsent()
{
    verifyNothingLoggedWithAbsentService(replies(), asyncCalls(), {[](SetupDoubleInterface &p) { p.setToDefault(); }});
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

    m_fake->answer("getMinValue", ScriptedAnswer::error(failedErrorName(), QStringLiteral("earlier failure")));
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
    m_fake->answer("setToDefault", ScriptedAnswer::error(failedErrorName(), QStringLiteral("reset refused")));

    m_proxy->setToDefault();

    // Only a caller that waited for the answer knows of the error, and the fake has
    // the call without anyone waiting for it here.
    QCOMPARE(m_fake->callCount(), 1);
    QCOMPARE(m_proxy->lastError().name(), failedErrorName());
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
    verifyAsyncCallsReturnAtOnce(
        {"getMinValue", [](SetupDoubleInterface &p) { p.getMinValue(); }, "getMinValue", "", {}}, asyncCalls());
}

void tst_SetupDoubleInterface::asyncSetterToAnAbsentServiceLogsNothing()
{
    verifyAsyncCallsToAnAbsentServiceShowNothing(asyncCalls());
}

void tst_SetupDoubleInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    verifyOwnMethods({"setupChanged(double)", "setupBoundsChanged(double,double)", "setValue(double)",
                      "setValueAsync(double)", "getValue()", "getString()", "getMinValue()", "getMaxValue()",
                      "getGranularity()", "isChangeable()", "setToDefault()", "setToDefaultAsync()"},
                     {"setupChanged(double)", "setupBoundsChanged(double,double)"},
                     {"void", "void", "QDBusReply<bool>", "void", "QDBusReply<double>", "QDBusReply<QString>",
                      "QDBusReply<double>", "QDBusReply<double>", "QDBusReply<double>", "QDBusReply<bool>", "void",
                      "void"});
}

void tst_SetupDoubleInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCastOf("SetupDoubleInterface", {"SetupIntInterface", "setupdoubleinterface"});
}

void tst_SetupDoubleInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(17.5));
    m_fake->answer("getGranularity", ScriptedAnswer::value(0.5));
    m_fake->answer("setValue", ScriptedAnswer::value(true));
    m_fake->answer("setToDefault", ScriptedAnswer::error(failedErrorName(), QStringLiteral("reset refused")));

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
