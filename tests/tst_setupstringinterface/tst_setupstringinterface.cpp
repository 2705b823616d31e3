#include "SetupStringInterface.h"

#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"
#include "SetupTestSupport.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QtTest/QTest>

namespace {
const QString path = QStringLiteral("/Setup/Label");

ReplyTable<SetupStringInterface> replies()
{
    return ReplyTable<SetupStringInterface>()
        .value("setValue", true, QStringLiteral("true"), false,
               [](SetupStringInterface &p) { return stateOf(p.setValue(QStringLiteral("x"))); })
        .value("getString", QStringLiteral("Probe A"), 7, QString(),
               [](SetupStringInterface &p) { return stateOf(p.getString()); })
        .value("getValue", QStringLiteral("Probe A"), true, QString(),
               [](SetupStringInterface &p) { return stateOf(p.getValue()); })
        .value("isChangeable", true, 1, false, [](SetupStringInterface &p) { return stateOf(p.isChangeable()); })
        .voidReply("setToDefault", QStringLiteral("done"),
                   [](SetupStringInterface &p) { return stateOf(p.setToDefault()); });
}

std::vector<SentCall<SetupStringInterface>> asyncCalls()
{
    const QString label = QStringLiteral("Probe C");
    return {{"setValueAsync", [label](SetupStringInterface &p) { p.setValueAsync(label); }, "setValue", "s", {label}},
            {"setToDefaultAsync", [](SetupStringInterface &p) { p.setToDefaultAsync(); }, "setToDefault", "", {}}};
}

QList<LogLine> getValueLines(const QString &quotedMessage)
{
    return debugLines({
        "SetupStringInterface::getValue() Error!  " + quotedMessage,
        "SetupStringInterface::getValue() Interface  \"com.velk.mqx.MeasApplInterface\"",
        "SetupStringInterface::getValue() Path  \"/Setup/Label\"",
    });
}
} // namespace

class tst_SetupStringInterface : public QObject, private SetupProxyFixture<SetupStringInterface>
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void constructorPassesItsArgumentsOnAndCallsNothing();
    void holdsNoDataOfItsOwn();

    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void mapsEachReply_data();
    void mapsEachReply();
    void givesInvalidRepliesWhenTheServiceIsAbsent_data();
    void givesInvalidRepliesWhenTheServiceIsAbsent();

    void getValueLogsThreeLinesOnAnErrorReply();
    void getValueLogsThreeLinesWhenTheServiceIsAbsent();
    void getValueLogsNothingForAWrongTypedReply();
    void getValueLogsNothingWhenOnlyAnEarlierCallFailed();
    void getValueQuotesAndEscapesTheErrorMessage();
    void plainOperationsLogNothingOnAnErrorReply();
    void plainOperationsLogNothingWhenTheServiceIsAbsent();

    void asyncOperationsReturnAtOnceAndLeaveLastErrorAlone();
    void asyncSetterToAnAbsentServiceLogsNothing();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();
    void invokingGetValueByNameLogsLikeTheDirectCall();
    void relaysSetupChangedOfItsOwnObjectOnly();
};

void tst_SetupStringInterface::init()
{
    startFakeAndProxy(path);
}

void tst_SetupStringInterface::cleanup()
{
    stopFakeAndProxy();
}

void tst_SetupStringInterface::constructorPassesItsArgumentsOnAndCallsNothing()
{
    verifyConstructionContract<SetupStringInterface>(*m_fake, path);
}

void tst_SetupStringInterface::holdsNoDataOfItsOwn()
{
    QCOMPARE(sizeof(SetupStringInterface), sizeof(QDBusAbstractInterface));
}

void tst_SetupStringInterface::sendsEachOperationWithItsWireForm_data()
{
    const QString probeA = QStringLiteral("Probe A");
    const QString probeB = QStringLiteral("Probe B");
    const QString unicode = QStringLiteral("Messkopf \u00b5V \u2126 \"A\"");
    addWireFormRows({
        {"setValue", [probeA](SetupStringInterface &p) { p.setValue(probeA); }, "setValue", "s", {probeA}},
        {"setValue empty", [](SetupStringInterface &p) { p.setValue(QString()); }, "setValue", "s", {QString()}},
        {"setValue unicode", [unicode](SetupStringInterface &p) { p.setValue(unicode); }, "setValue", "s", {unicode}},
        {"getString", [](SetupStringInterface &p) { p.getString(); }, "getString", "", {}},
        {"setValueAsync", [probeB](SetupStringInterface &p) { p.setValueAsync(probeB); }, "setValue", "s", {probeB}},
        {"getValue", [](SetupStringInterface &p) { p.getValue(); }, "getValue", "", {}},
        {"isChangeable", [](SetupStringInterface &p) { p.isChangeable(); }, "isChangeable", "", {}},
        {"setToDefault", [](SetupStringInterface &p) { p.setToDefault(); }, "setToDefault", "", {}},
        {"setToDefaultAsync", [](SetupStringInterface &p) { p.setToDefaultAsync(); }, "setToDefault", "", {}},
    });
}

void tst_SetupStringInterface::sendsEachOperationWithItsWireForm()
{
    verifyWireForm();
}

void tst_SetupStringInterface::mapsEachReply_data()
{
    const ReplyTable<SetupStringInterface> table = replies();
    table.addMappingRows();
    table.addMappingRow("getValue answered empty", "getValue", ScriptedAnswer::value(QString()), true, QString());
    table.addMappingRow("getValue answered with an object path", "getValue",
                        ScriptedAnswer::value(QVariant::fromValue(QDBusObjectPath(path))), false, QString());
}

void tst_SetupStringInterface::mapsEachReply()
{
    // getValue logs on failure; its lines are judged below.
    verifyMappedReply(LogCheck::Unchecked);
}

void tst_SetupStringInterface::givesInvalidRepliesWhenTheServiceIsAbsent_data()
{
    replies().addAbsentServiceRows();
}

void tst_SetupStringInterface::givesInvalidRepliesWhenTheServiceIsAbsent()
{
    verifyInvalidReplyFromAbsentService();
}

void tst_SetupStringInterface::getValueLogsThreeLinesOnAnErrorReply()
{
    verifyErrorReplyLogs(replies()["getValue"], "no label yet", getValueLines("\"no label yet\""));
}

void tst_SetupStringInterface::getValueLogsThreeLinesWhenTheServiceIsAbsent()
{
    verifyAbsentServiceLogs(replies()["getValue"],
                            [](const QString &message) { return getValueLines("\"" + message + "\""); });
}

void tst_SetupStringInterface::getValueLogsNothingForAWrongTypedReply()
{
    // The lines follow the proxy's lastError(), which a well-formed answer of the wrong
    // type does not set; the reply itself is still invalid.
    verifyWrongTypedReplyLogsNothing(replies()["getValue"], 42);
}

void tst_SetupStringInterface::getValueLogsNothingWhenOnlyAnEarlierCallFailed()
{
    m_fake->answer("getString", ScriptedAnswer::error(failedErrorName(), QStringLiteral("earlier failure")));
    m_fake->answer("getValue", ScriptedAnswer::value(QStringLiteral("Probe A")));
    m_proxy->getString();
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));

    LogCapture log;
    const QDBusReply<QString> reply = m_proxy->getValue();

    QVERIFY(reply.isValid());
    QCOMPARE(reply.value(), QStringLiteral("Probe A"));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupStringInterface::getValueQuotesAndEscapesTheErrorMessage()
{
    verifyErrorReplyLogs(replies()["getValue"], "say \"hi\"", getValueLines("\"say \\\"hi\\\"\""));
}

void tst_SetupStringInterface::plainOperationsLogNothingOnAnErrorReply()
{
    // Only getValue is checked here; getString, unlike SetupIntInterface's, is not.
    verifyErrorRepliesLogNothing(replies().without({"getValue"}));
}

void tst_SetupStringInterface::plainOperationsLogNothingWhenTheServiceIsAbsent()
{
    verifyNothingLoggedWithAbsentService(replies().without({"getValue"}), asyncCalls());
}

void tst_SetupStringInterface::asyncOperationsReturnAtOnceAndLeaveLastErrorAlone()
{
    verifyAsyncCallsReturnAtOnce(
        {"isChangeable", [](SetupStringInterface &p) { p.isChangeable(); }, "isChangeable", "", {}}, asyncCalls());
}

void tst_SetupStringInterface::asyncSetterToAnAbsentServiceLogsNothing()
{
    verifyAsyncCallsToAnAbsentServiceShowNothing(asyncCalls());
}

void tst_SetupStringInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    verifyOwnMethods({"setupChanged(QString)", "setValue(QString)", "getString()", "setValueAsync(QString)",
                      "getValue()", "isChangeable()", "setToDefault()", "setToDefaultAsync()"},
                     {"setupChanged(QString)"},
                     {"void", "QDBusReply<bool>", "QDBusReply<QString>", "void", "QDBusReply<QString>",
                      "QDBusReply<bool>", "QDBusReply<void>", "void"});
}

void tst_SetupStringInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCastOf("SetupStringInterface", {"SetupEnumInterface", "SetupString"});
}

void tst_SetupStringInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(QStringLiteral("Probe A")));
    m_fake->answer("getString", ScriptedAnswer::value(QStringLiteral("Probe A (2)")));
    m_fake->answer("setValue", ScriptedAnswer::value(true));

    QDBusReply<QString> value;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<QString>, value)));
    QVERIFY(value.isValid());
    QCOMPARE(value.value(), m_proxy->getValue().value());
    QCOMPARE(value.value(), QStringLiteral("Probe A"));

    QDBusReply<QString> text;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getString", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<QString>, text)));
    QCOMPARE(text.value(), QStringLiteral("Probe A (2)"));

    QDBusReply<bool> accepted;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<bool>, accepted), Q_ARG(QString, "Probe D")));
    QVERIFY(accepted.isValid());
    QCOMPARE(accepted.value(), true);
    QCOMPARE(m_fake->calls().last().arguments, QList<QVariant>{QStringLiteral("Probe D")});

    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValueAsync", Qt::DirectConnection, Q_ARG(QString, "Probe E")));
    QVERIFY(m_fake->waitForCalls(5));
    QCOMPARE(m_fake->calls().last().member, QStringLiteral("setValue"));
    QCOMPARE(m_fake->calls().last().arguments, QList<QVariant>{QStringLiteral("Probe E")});
}

void tst_SetupStringInterface::invokingGetValueByNameLogsLikeTheDirectCall()
{
    LogCapture log;
    m_fake->answer("getValue", ScriptedAnswer::error(failedErrorName(), QStringLiteral("no label yet")));

    QDBusReply<QString> reply;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<QString>, reply)));

    QVERIFY(!reply.isValid());
    QCOMPARE(reply.error().message(), QStringLiteral("no label yet"));
    QCOMPARE(log.lines(), getValueLines("\"no label yet\""));
}

void tst_SetupStringInterface::relaysSetupChangedOfItsOwnObjectOnly()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupChanged(QString)), "setupChanged", {QStringLiteral("Probe B")});
}

QTEST_GUILESS_MAIN(tst_SetupStringInterface)

#include "tst_setupstringinterface.moc"
