#include "SetupIntInterface.h"

#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"
#include "SetupTestSupport.h"

#include <QDBusConnection>
#include <QtTest/QTest>

namespace {
const QString path = QStringLiteral("/Setup/Gain");

ReplyTable<SetupIntInterface> replies()
{
    return ReplyTable<SetupIntInterface>()
        .value("setValue", true, 1, false, [](SetupIntInterface &p) { return stateOf(p.setValue(5)); })
        .value("getValue", 42, QStringLiteral("42"), 0, [](SetupIntInterface &p) { return stateOf(p.getValue()); })
        .value("getString", QStringLiteral("42 dB"), 42, QString(),
               [](SetupIntInterface &p) { return stateOf(p.getString()); })
        .value("getMinValue", -10, 2.5, 0, [](SetupIntInterface &p) { return stateOf(p.getMinValue()); })
        .value("getMaxValue", 90, true, 0, [](SetupIntInterface &p) { return stateOf(p.getMaxValue()); })
        .value("getGranularity", 5, 5.0, 0, [](SetupIntInterface &p) { return stateOf(p.getGranularity()); })
        .value("isChangeable", true, 1, false, [](SetupIntInterface &p) { return stateOf(p.isChangeable()); })
        .voidReply("setToDefault", 3, [](SetupIntInterface &p) { return stateOf(p.setToDefault()); });
}

std::vector<SentCall<SetupIntInterface>> asyncCalls()
{
    return {{"setValueAsync", [](SetupIntInterface &p) { p.setValueAsync(9); }, "setValue", "i", {9}},
            {"setToDefaultAsync", [](SetupIntInterface &p) { p.setToDefaultAsync(); }, "setToDefault", "", {}}};
}

QList<LogLine> getValueLines(const QString &quotedMessage)
{
    return debugLines({
        "SetupIntInterface::getValue() Error!  " + quotedMessage,
        "SetupIntInterface::getValue() Interface  \"com.velk.mqx.MeasApplInterface\"",
        "SetupIntInterface::getValue() Path  \"/Setup/Gain\"",
    });
}

QList<LogLine> getStringLines(const QString &quotedMessage)
{
    return debugLines({"SetupIntInterface::getString() Error!  " + quotedMessage});
}
} // namespace

class tst_SetupIntInterface : public QObject, private SetupProxyFixture<SetupIntInterface>
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void constructionPassesItsArgumentsOnAndSendsNothing();
    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void mapsEachReply_data();
    void mapsEachReply();
    void givesInvalidRepliesWhenTheServiceIsAbsent_data();
    void givesInvalidRepliesWhenTheServiceIsAbsent();

    void getValueLogsThreeLinesOnAnErrorReply();
    void getValueLogsThreeLinesWhenTheServiceIsAbsent();
    void getStringLogsOneLineOnAnErrorReply();
    void getStringLogsOneLineWhenTheServiceIsAbsent();
    void checkedGettersLogNothingForAWrongTypedReply();
    void checkedGettersQuoteAndEscapeTheErrorMessage();
    void plainOperationsLogNothingOnFailure();

    void asyncOperationsReturnAtOnceAndLeaveLastErrorAlone();
    void asyncSetterToAnAbsentServiceLogsNothing();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();
    void relaysSetupChangedOfItsOwnObjectOnly();
};

void tst_SetupIntInterface::init()
{
    startFakeAndProxy(path);
}

void tst_SetupIntInterface::cleanup()
{
    stopFakeAndProxy();
}

void tst_SetupIntInterface::constructionPassesItsArgumentsOnAndSendsNothing()
{
    verifyConstructionContract<SetupIntInterface>(*m_fake, path);
}

void tst_SetupIntInterface::sendsEachOperationWithItsWireForm_data()
{
    addWireFormRows({
        {"setValue", [](SetupIntInterface &p) { p.setValue(7); }, "setValue", "i", {7}},
        {"setValueAsync", [](SetupIntInterface &p) { p.setValueAsync(-3); }, "setValue", "i", {-3}},
        {"getValue", [](SetupIntInterface &p) { p.getValue(); }, "getValue", "", {}},
        {"getString", [](SetupIntInterface &p) { p.getString(); }, "getString", "", {}},
        {"getMinValue", [](SetupIntInterface &p) { p.getMinValue(); }, "getMinValue", "", {}},
        {"getMaxValue", [](SetupIntInterface &p) { p.getMaxValue(); }, "getMaxValue", "", {}},
        {"getGranularity", [](SetupIntInterface &p) { p.getGranularity(); }, "getGranularity", "", {}},
        {"isChangeable", [](SetupIntInterface &p) { p.isChangeable(); }, "isChangeable", "", {}},
        {"setToDefault", [](SetupIntInterface &p) { p.setToDefault(); }, "setToDefault", "", {}},
        {"setToDefaultAsync", [](SetupIntInterface &p) { p.setToDefaultAsync(); }, "setToDefault", "", {}},
    });
}

void tst_SetupIntInterface::sendsEachOperationWithItsWireForm()
{
    verifyWireForm();
}

void tst_SetupIntInterface::mapsEachReply_data()
{
    replies().addMappingRows();
}

void tst_SetupIntInterface::mapsEachReply()
{
    // getValue and getString log on failure; their lines are judged below.
    verifyMappedReply(LogCheck::Unchecked);
}

void tst_SetupIntInterface::givesInvalidRepliesWhenTheServiceIsAbsent_data()
{
    replies().addAbsentServiceRows();
}

void tst_SetupIntInterface::givesInvalidRepliesWhenTheServiceIsAbsent()
{
    verifyInvalidReplyFromAbsentService();
}

void tst_SetupIntInterface::getValueLogsThreeLinesOnAnErrorReply()
{
    verifyErrorReplyLogs(replies()["getValue"], "no value yet", getValueLines("\"no value yet\""));
}

void tst_SetupIntInterface::getValueLogsThreeLinesWhenTheServiceIsAbsent()
{
    verifyAbsentServiceLogs(replies()["getValue"],
                            [](const QString &message) { return getValueLines("\"" + message + "\""); });
}

void tst_SetupIntInterface::getStringLogsOneLineOnAnErrorReply()
{
    verifyErrorReplyLogs(replies()["getString"], "no text", getStringLines("\"no text\""));
}

void tst_SetupIntInterface::getStringLogsOneLineWhenTheServiceIsAbsent()
{
    verifyAbsentServiceLogs(replies()["getString"],
                            [](const QString &message) { return getStringLines("\"" + message + "\""); });
}

void tst_SetupIntInterface::checkedGettersLogNothingForAWrongTypedReply()
{
    // The lines follow the proxy's lastError(), which a well-formed answer of the wrong
    // type does not set; the reply itself is still invalid.
    verifyWrongTypedReplyLogsNothing(replies()["getValue"], QStringLiteral("forty-two"));
    verifyWrongTypedReplyLogsNothing(replies()["getString"], 42);
}

void tst_SetupIntInterface::checkedGettersQuoteAndEscapeTheErrorMessage()
{
    verifyErrorReplyLogs(replies()["getString"], "say \"hi\"", getStringLines("\"say \\\"hi\\\"\""));
}

void tst_SetupIntInterface::plainOperationsLogNothingOnFailure()
{
    verifyNothingLoggedWithAbsentService(replies().without({"getValue", "getString"}), asyncCalls());
}

void tst_SetupIntInterface::asyncOperationsReturnAtOnceAndLeaveLastErrorAlone()
{
    verifyAsyncCallsReturnAtOnce({"getMinValue", [](SetupIntInterface &p) { p.getMinValue(); }, "getMinValue", "", {}},
                                 asyncCalls());
}

void tst_SetupIntInterface::asyncSetterToAnAbsentServiceLogsNothing()
{
    verifyAsyncCallsToAnAbsentServiceShowNothing(asyncCalls());
}

void tst_SetupIntInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    verifyOwnMethods({"setupChanged(int)", "setValue(int)", "setValueAsync(int)", "getValue()", "getString()",
                      "getMinValue()", "getMaxValue()", "getGranularity()", "isChangeable()", "setToDefault()",
                      "setToDefaultAsync()"},
                     {"setupChanged(int)"},
                     {"void", "QDBusReply<bool>", "void", "QDBusReply<int>", "QDBusReply<QString>", "QDBusReply<int>",
                      "QDBusReply<int>", "QDBusReply<int>", "QDBusReply<bool>", "QDBusReply<void>", "void"});
}

void tst_SetupIntInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCastOf("SetupIntInterface", {"SetupDoubleInterface"});
}

void tst_SetupIntInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(17));
    m_fake->answer("getString", ScriptedAnswer::value(QStringLiteral("17 dB")));
    m_fake->answer("setValue", ScriptedAnswer::value(true));

    QDBusReply<int> value;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<int>, value)));
    QCOMPARE(value.value(), m_proxy->getValue().value());
    QCOMPARE(value.value(), 17);

    QDBusReply<QString> text;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getString", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<QString>, text)));
    QCOMPARE(text.value(), QStringLiteral("17 dB"));

    QDBusReply<bool> accepted;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<bool>, accepted), Q_ARG(int, 4)));
    QVERIFY(accepted.isValid());
    QCOMPARE(accepted.value(), true);
    QCOMPARE(m_fake->calls().last().arguments, QList<QVariant>{4});

    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setToDefaultAsync", Qt::DirectConnection));
    QVERIFY(m_fake->waitForCalls(5));
    QCOMPARE(m_fake->calls().last().member, QStringLiteral("setToDefault"));
}

void tst_SetupIntInterface::relaysSetupChangedOfItsOwnObjectOnly()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupChanged(int)), "setupChanged", {12});
}

QTEST_GUILESS_MAIN(tst_SetupIntInterface)

#include "tst_setupintinterface.moc"
