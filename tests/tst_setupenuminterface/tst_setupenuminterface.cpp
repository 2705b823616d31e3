#include "SetupEnumInterface.h"

#include "FakeMeasApplication.h"
#include "ProxyTestSupport.h"
#include "SetupTestSupport.h"

#include <QDBusConnection>
#include <QtTest/QTest>

namespace {
const QString path = QStringLiteral("/Setup/Mode");

ReplyTable<SetupEnumInterface> replies()
{
    const QString text = QStringLiteral("Auto");
    return ReplyTable<SetupEnumInterface>()
        .value("setValue by index", "setValue", true, 1, false,
               [](SetupEnumInterface &p) { return stateOf(p.setValue(1)); })
        .value("setValue by text", "setValue", true, QStringLiteral("true"), false,
               [text](SetupEnumInterface &p) { return stateOf(p.setValue(text)); })
        .value("getEnumValueList", "getValueList", QStringLiteral("Off;Auto;Manual"), QStringList({"Off", "Auto"}),
               QString(), [](SetupEnumInterface &p) { return stateOf(p.getEnumValueList()); })
        .value("getValue", 2, QStringLiteral("2"), 0, [](SetupEnumInterface &p) { return stateOf(p.getValue()); })
        .value("getString", QStringLiteral("Manual"), 2, QString(),
               [](SetupEnumInterface &p) { return stateOf(p.getString()); })
        .value("getStringRepresentation", QStringLiteral("Auto"), 1, QString(),
               [](SetupEnumInterface &p) { return stateOf(p.getStringRepresentation(1)); })
        .value("getEnumQuantity", "getQuantity", 3, 3.0, 0,
               [](SetupEnumInterface &p) { return stateOf(p.getEnumQuantity()); })
        .value("isChangeable", true, 1, false, [](SetupEnumInterface &p) { return stateOf(p.isChangeable()); })
        .voidReply("execute", 3, [](SetupEnumInterface &p) { return stateOf(p.execute()); })
        .voidReply("setToDefault", 3, [](SetupEnumInterface &p) { return stateOf(p.setToDefault()); });
}

std::vector<SentCall<SetupEnumInterface>> asyncCalls()
{
    const QString text = QStringLiteral("Auto");
    return {
        {"setValueAsync by index", [](SetupEnumInterface &p) { p.setValueAsync(2); }, "setValue", "i", {2}},
        {"setValueAsync by text", [text](SetupEnumInterface &p) { p.setValueAsync(text); }, "setValue", "s", {text}},
        {"executeAsync", [](SetupEnumInterface &p) { p.executeAsync(); }, "execute", "", {}},
        {"setToDefaultAsync", [](SetupEnumInterface &p) { p.setToDefaultAsync(); }, "setToDefault", "", {}}};
}
} // namespace

class tst_SetupEnumInterface : public QObject, private SetupProxyFixture<SetupEnumInterface>
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void constructorPassesItsArgumentsOnAndCallsNothing();
    void holdsNoDataOfItsOwn();

    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void enumOperationsSendMembersWithoutEnum();
    void setValueByTextAndByIndexShareTheMember();
    void mapsEachReplyWithoutLogging_data();
    void mapsEachReplyWithoutLogging();
    void givesInvalidRepliesWhenTheServiceIsAbsent_data();
    void givesInvalidRepliesWhenTheServiceIsAbsent();
    void operationsLogNothingWhenTheServiceIsAbsent();

    void asyncOperationsReturnAtOnceAndLeaveLastErrorAlone();
    void asyncSettersToAnAbsentServiceLogNothing();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();
    void invokingSetValueByNamePicksTheOverloadByArgumentType();
    void relaysSetupChangedOfItsOwnObjectOnly();
};

void tst_SetupEnumInterface::init()
{
    startFakeAndProxy(path);
}

void tst_SetupEnumInterface::cleanup()
{
    stopFakeAndProxy();
}

void tst_SetupEnumInterface::constructorPassesItsArgumentsOnAndCallsNothing()
{
    verifyConstructionContract<SetupEnumInterface>(*m_fake, path);
}

void tst_SetupEnumInterface::holdsNoDataOfItsOwn()
{
    QCOMPARE(sizeof(SetupEnumInterface), sizeof(QDBusAbstractInterface));
}

void tst_SetupEnumInterface::sendsEachOperationWithItsWireForm_data()
{
    const QString autoMode = QStringLiteral("Auto");
    const QString manual = QStringLiteral("Manual");
    addWireFormRows({
        {"setValue by index", [](SetupEnumInterface &p) { p.setValue(2); }, "setValue", "i", {2}},
        {"setValueAsync by index", [](SetupEnumInterface &p) { p.setValueAsync(3); }, "setValue", "i", {3}},
        {"setValue by text", [autoMode](SetupEnumInterface &p) { p.setValue(autoMode); }, "setValue", "s", {autoMode}},
        {"setValueAsync by text",
         [manual](SetupEnumInterface &p) { p.setValueAsync(manual); },
         "setValue",
         "s",
         {manual}},
        {"getEnumValueList", [](SetupEnumInterface &p) { p.getEnumValueList(); }, "getValueList", "", {}},
        {"getValue", [](SetupEnumInterface &p) { p.getValue(); }, "getValue", "", {}},
        {"getString", [](SetupEnumInterface &p) { p.getString(); }, "getString", "", {}},
        {"getStringRepresentation",
         [](SetupEnumInterface &p) { p.getStringRepresentation(4); },
         "getStringRepresentation",
         "i",
         {4}},
        {"getStringRepresentation negative",
         [](SetupEnumInterface &p) { p.getStringRepresentation(-1); },
         "getStringRepresentation",
         "i",
         {-1}},
        {"getEnumQuantity", [](SetupEnumInterface &p) { p.getEnumQuantity(); }, "getQuantity", "", {}},
        {"execute", [](SetupEnumInterface &p) { p.execute(); }, "execute", "", {}},
        {"executeAsync", [](SetupEnumInterface &p) { p.executeAsync(); }, "execute", "", {}},
        {"isChangeable", [](SetupEnumInterface &p) { p.isChangeable(); }, "isChangeable", "", {}},
        {"setToDefault", [](SetupEnumInterface &p) { p.setToDefault(); }, "setToDefault", "", {}},
        {"setToDefaultAsync", [](SetupEnumInterface &p) { p.setToDefaultAsync(); }, "setToDefault", "", {}},
    });
}

void tst_SetupEnumInterface::sendsEachOperationWithItsWireForm()
{
    verifyWireForm();
}

void tst_SetupEnumInterface::enumOperationsSendMembersWithoutEnum()
{
    m_fake->answer("getQuantity", ScriptedAnswer::value(3));
    m_fake->answer("getValueList", ScriptedAnswer::value(QStringLiteral("Off;Auto;Manual")));

    const QDBusReply<int> quantity = m_proxy->getEnumQuantity();
    const QDBusReply<QString> list = m_proxy->getEnumValueList();

    QVERIFY(quantity.isValid());
    QCOMPARE(quantity.value(), 3);
    QVERIFY(list.isValid());
    QCOMPARE(list.value(), QStringLiteral("Off;Auto;Manual"));
    const QList<ReceivedCall> calls = m_fake->calls();
    QCOMPARE(calls.size(), 2);
    QCOMPARE(calls.at(0).member, QStringLiteral("getQuantity"));
    QCOMPARE(calls.at(1).member, QStringLiteral("getValueList"));
}

void tst_SetupEnumInterface::setValueByTextAndByIndexShareTheMember()
{
    m_fake->answer("setValue", ScriptedAnswer::value(true));

    QVERIFY(m_proxy->setValue(QStringLiteral("Manual")).value());
    QVERIFY(m_proxy->setValue(1).value());

    const QList<ReceivedCall> calls = m_fake->calls();
    QCOMPARE(calls.size(), 2);
    QCOMPARE(calls.at(0).member, QStringLiteral("setValue"));
    QCOMPARE(calls.at(0).signature, QStringLiteral("s"));
    QCOMPARE(calls.at(0).arguments, QList<QVariant>{QStringLiteral("Manual")});
    QCOMPARE(calls.at(1).member, QStringLiteral("setValue"));
    QCOMPARE(calls.at(1).signature, QStringLiteral("i"));
    QCOMPARE(calls.at(1).arguments, QList<QVariant>{1});
}

void tst_SetupEnumInterface::mapsEachReplyWithoutLogging_data()
{
    replies().addMappingRows();
}

void tst_SetupEnumInterface::mapsEachReplyWithoutLogging()
{
    verifyMappedReply(LogCheck::Nothing);
}

void tst_SetupEnumInterface::givesInvalidRepliesWhenTheServiceIsAbsent_data()
{
    replies().addAbsentServiceRows();
}

void tst_SetupEnumInterface::givesInvalidRepliesWhenTheServiceIsAbsent()
{
    verifyInvalidReplyFromAbsentService();
}

void tst_SetupEnumInterface::operationsLogNothingWhenTheServiceIsAbsent()
{
    verifyNothingLoggedWithAbsentService(replies(), asyncCalls());
}

void tst_SetupEnumInterface::asyncOperationsReturnAtOnceAndLeaveLastErrorAlone()
{
    verifyAsyncCallsReturnAtOnce(
        {"getEnumQuantity", [](SetupEnumInterface &p) { p.getEnumQuantity(); }, "getQuantity", "", {}}, asyncCalls());
}

void tst_SetupEnumInterface::asyncSettersToAnAbsentServiceLogNothing()
{
    verifyAsyncCallsToAnAbsentServiceShowNothing(asyncCalls());
}

void tst_SetupEnumInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    verifyOwnMethods({"setupChanged(int,QString)", "setValue(int)", "setValueAsync(int)", "setValue(QString)",
                      "setValueAsync(QString)", "getEnumValueList()", "getValue()", "getString()",
                      "getStringRepresentation(int)", "getEnumQuantity()", "execute()", "executeAsync()",
                      "isChangeable()", "setToDefault()", "setToDefaultAsync()"},
                     {"setupChanged(int,QString)"},
                     {"void", "QDBusReply<bool>", "void", "QDBusReply<bool>", "void", "QDBusReply<QString>",
                      "QDBusReply<int>", "QDBusReply<QString>", "QDBusReply<QString>", "QDBusReply<int>",
                      "QDBusReply<void>", "void", "QDBusReply<bool>", "QDBusReply<void>", "void"});
}

void tst_SetupEnumInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCastOf("SetupEnumInterface", {"SetupIntInterface", "SetupEnumInterfaceX"});
}

void tst_SetupEnumInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(2));
    m_fake->answer("getQuantity", ScriptedAnswer::value(3));
    m_fake->answer("getStringRepresentation", ScriptedAnswer::value(QStringLiteral("Manual")));
    m_fake->answer("execute", ScriptedAnswer::error(failedErrorName(), QStringLiteral("busy")));

    QDBusReply<int> value;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<int>, value)));
    QVERIFY(value.isValid());
    QCOMPARE(value.value(), m_proxy->getValue().value());
    QCOMPARE(value.value(), 2);

    QDBusReply<int> quantity;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getEnumQuantity", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<int>, quantity)));
    QCOMPARE(quantity.value(), 3);
    QCOMPARE(m_fake->calls().last().member, QStringLiteral("getQuantity"));

    QDBusReply<QString> text;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getStringRepresentation", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<QString>, text), Q_ARG(int, 2)));
    QCOMPARE(text.value(), QStringLiteral("Manual"));
    QCOMPARE(m_fake->calls().last().arguments, QList<QVariant>{2});

    QDBusReply<void> executed;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "execute", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<void>, executed)));
    QVERIFY(!executed.isValid());
    QCOMPARE(executed.error().message(), QStringLiteral("busy"));

    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "executeAsync", Qt::DirectConnection));
    QVERIFY(m_fake->waitForCalls(6));
    QCOMPARE(m_fake->calls().last().member, QStringLiteral("execute"));
}

void tst_SetupEnumInterface::invokingSetValueByNamePicksTheOverloadByArgumentType()
{
    m_fake->answer("setValue", ScriptedAnswer::value(true));

    QDBusReply<bool> byText;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<bool>, byText), Q_ARG(QString, "Auto")));
    QDBusReply<bool> byIndex;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<bool>, byIndex), Q_ARG(int, 1)));
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValueAsync", Qt::DirectConnection, Q_ARG(QString, "Manual")));
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValueAsync", Qt::DirectConnection, Q_ARG(int, 2)));

    QVERIFY(byText.isValid());
    QCOMPARE(byText.value(), true);
    QVERIFY(byIndex.isValid());
    QCOMPARE(byIndex.value(), true);
    QVERIFY(m_fake->waitForCalls(4));
    const QList<ReceivedCall> calls = m_fake->calls();
    QCOMPARE(calls.at(0).signature, QStringLiteral("s"));
    QCOMPARE(calls.at(0).arguments, QList<QVariant>{QStringLiteral("Auto")});
    QCOMPARE(calls.at(1).signature, QStringLiteral("i"));
    QCOMPARE(calls.at(1).arguments, QList<QVariant>{1});
    QCOMPARE(calls.at(2).signature, QStringLiteral("s"));
    QCOMPARE(calls.at(2).arguments, QList<QVariant>{QStringLiteral("Manual")});
    QCOMPARE(calls.at(3).signature, QStringLiteral("i"));
    QCOMPARE(calls.at(3).arguments, QList<QVariant>{2});
    for (const ReceivedCall &call : calls)
        QCOMPARE(call.member, QStringLiteral("setValue"));
}

void tst_SetupEnumInterface::relaysSetupChangedOfItsOwnObjectOnly()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupChanged(int, QString)), "setupChanged",
                      {2, QStringLiteral("Manual")});
}

QTEST_GUILESS_MAIN(tst_SetupEnumInterface)

#include "tst_setupenuminterface.moc"
