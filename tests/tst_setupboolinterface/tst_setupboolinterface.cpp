#include "SetupBoolInterface.h"

#include "FakeMeasApplication.h"
#include "ProxyTestSupport.h"
#include "SetupTestSupport.h"

#include <QDBusConnection>
#include <QtTest/QTest>

namespace {
const QString path = QStringLiteral("/Setup/Enabled");

ReplyTable<SetupBoolInterface> replies()
{
    return ReplyTable<SetupBoolInterface>()
        .value("setValue", true, 1, false, [](SetupBoolInterface &p) { return stateOf(p.setValue(true)); })
        .value("getValue", true, QStringLiteral("true"), false,
               [](SetupBoolInterface &p) { return stateOf(p.getValue()); })
        .value("getString", QStringLiteral("on"), true, QString(),
               [](SetupBoolInterface &p) { return stateOf(p.getString()); })
        .value("isChangeable", true, 1u, false, [](SetupBoolInterface &p) { return stateOf(p.isChangeable()); })
        .voidReply("setToDefault", true, [](SetupBoolInterface &p) { return stateOf(p.setToDefault()); });
}

std::vector<SentCall<SetupBoolInterface>> asyncCalls()
{
    return {{"setValueAsync", [](SetupBoolInterface &p) { p.setValueAsync(true); }, "setValue", "b", {true}},
            {"setToDefaultAsync", [](SetupBoolInterface &p) { p.setToDefaultAsync(); }, "setToDefault", "", {}}};
}
} // namespace

class tst_SetupBoolInterface : public QObject, private SetupProxyFixture<SetupBoolInterface>
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

    void asyncOperationsReturnAtOnceAndLeaveLastErrorAlone();
    void asyncSetterToAnAbsentServiceLogsNothing();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();
    void relaysSetupChangedOfItsOwnObjectOnly_data();
    void relaysSetupChangedOfItsOwnObjectOnly();
};

void tst_SetupBoolInterface::init()
{
    startFakeAndProxy(path);
}

void tst_SetupBoolInterface::cleanup()
{
    stopFakeAndProxy();
}

void tst_SetupBoolInterface::constructorPassesItsArgumentsOnAndCallsNothing()
{
    verifyConstructionContract<SetupBoolInterface>(*m_fake, path);
}

void tst_SetupBoolInterface::holdsNoDataOfItsOwn()
{
    QCOMPARE(sizeof(SetupBoolInterface), sizeof(QDBusAbstractInterface));
}

void tst_SetupBoolInterface::sendsEachOperationWithItsWireForm_data()
{
    addWireFormRows({
        {"setValue true", [](SetupBoolInterface &p) { p.setValue(true); }, "setValue", "b", {true}},
        {"setValue false", [](SetupBoolInterface &p) { p.setValue(false); }, "setValue", "b", {false}},
        {"setValueAsync true", [](SetupBoolInterface &p) { p.setValueAsync(true); }, "setValue", "b", {true}},
        {"setValueAsync false", [](SetupBoolInterface &p) { p.setValueAsync(false); }, "setValue", "b", {false}},
        {"getValue", [](SetupBoolInterface &p) { p.getValue(); }, "getValue", "", {}},
        {"getString", [](SetupBoolInterface &p) { p.getString(); }, "getString", "", {}},
        {"isChangeable", [](SetupBoolInterface &p) { p.isChangeable(); }, "isChangeable", "", {}},
        {"setToDefault", [](SetupBoolInterface &p) { p.setToDefault(); }, "setToDefault", "", {}},
        {"setToDefaultAsync", [](SetupBoolInterface &p) { p.setToDefaultAsync(); }, "setToDefault", "", {}},
    });
}

void tst_SetupBoolInterface::sendsEachOperationWithItsWireForm()
{
    verifyWireForm();
}

void tst_SetupBoolInterface::mapsEachReplyWithoutLogging_data()
{
    const ReplyTable<SetupBoolInterface> table = replies();
    table.addMappingRows();
    // An answered false is valid, unlike the false of a failed reply.
    table.addMappingRow("setValue answered false", "setValue", ScriptedAnswer::value(false), true, false);
    table.addMappingRow("getValue answered false", "getValue", ScriptedAnswer::value(false), true, false);
    table.addMappingRow("isChangeable answered false", "isChangeable", ScriptedAnswer::value(false), true, false);
}

void tst_SetupBoolInterface::mapsEachReplyWithoutLogging()
{
    verifyMappedReply(LogCheck::Nothing);
}

void tst_SetupBoolInterface::givesInvalidRepliesWhenTheServiceIsAbsent_data()
{
    replies().addAbsentServiceRows();
}

void tst_SetupBoolInterface::givesInvalidRepliesWhenTheServiceIsAbsent()
{
    verifyInvalidReplyFromAbsentService();
}

void tst_SetupBoolInterface::operationsLogNothingWhenTheServiceIsAbsent()
{
    verifyNothingLoggedWithAbsentService(replies(), asyncCalls());
}

void tst_SetupBoolInterface::asyncOperationsReturnAtOnceAndLeaveLastErrorAlone()
{
    verifyAsyncCallsReturnAtOnce(
        {"isChangeable", [](SetupBoolInterface &p) { p.isChangeable(); }, "isChangeable", "", {}}, asyncCalls());
}

void tst_SetupBoolInterface::asyncSetterToAnAbsentServiceLogsNothing()
{
    verifyAsyncCallsToAnAbsentServiceShowNothing(asyncCalls());
}

void tst_SetupBoolInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    verifyOwnMethods({"setupChanged(bool)", "setValue(bool)", "setValueAsync(bool)", "getValue()", "getString()",
                      "isChangeable()", "setToDefault()", "setToDefaultAsync()"},
                     {"setupChanged(bool)"},
                     {"void", "QDBusReply<bool>", "void", "QDBusReply<bool>", "QDBusReply<QString>", "QDBusReply<bool>",
                      "QDBusReply<void>", "void"});
}

void tst_SetupBoolInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCastOf("SetupBoolInterface", {"SetupIntInterface", "SetupBoolInterface "});
}

void tst_SetupBoolInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(true));
    m_fake->answer("getString", ScriptedAnswer::value(QStringLiteral("on")));
    m_fake->answer("setValue", ScriptedAnswer::value(true));
    m_fake->answer("setToDefault", ScriptedAnswer::error(failedErrorName(), QStringLiteral("reset refused")));

    QDBusReply<bool> value;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<bool>, value)));
    QVERIFY(value.isValid());
    QCOMPARE(value.value(), m_proxy->getValue().value());
    QCOMPARE(value.value(), true);

    QDBusReply<QString> text;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getString", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<QString>, text)));
    QCOMPARE(text.value(), QStringLiteral("on"));

    QDBusReply<bool> accepted;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<bool>, accepted), Q_ARG(bool, false)));
    QVERIFY(accepted.isValid());
    QCOMPARE(accepted.value(), true);
    QCOMPARE(m_fake->calls().last().arguments, QList<QVariant>{false});

    QDBusReply<void> reset;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setToDefault", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<void>, reset)));
    QVERIFY(!reset.isValid());
    QCOMPARE(reset.error().message(), QStringLiteral("reset refused"));
    QCOMPARE(reset.error().message(), m_proxy->setToDefault().error().message());

    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setToDefaultAsync", Qt::DirectConnection));
    QVERIFY(m_fake->waitForCalls(7));
    QCOMPARE(m_fake->calls().last().member, QStringLiteral("setToDefault"));
}

void tst_SetupBoolInterface::relaysSetupChangedOfItsOwnObjectOnly_data()
{
    QTest::addColumn<bool>("newVal");

    QTest::newRow("true") << true;
    QTest::newRow("false") << false;
}

void tst_SetupBoolInterface::relaysSetupChangedOfItsOwnObjectOnly()
{
    QFETCH(bool, newVal);

    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupChanged(bool)), "setupChanged", {newVal});
}

QTEST_GUILESS_MAIN(tst_SetupBoolInterface)

#include "tst_setupboolinterface.moc"
