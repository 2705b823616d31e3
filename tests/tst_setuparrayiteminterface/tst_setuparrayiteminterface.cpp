#include "SetupArrayItemInterface.h"

#include "CompositeTestSupport.h"
#include "DBusTypes.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QtTest/QTest>

#include <memory>

namespace {
using P = SetupArrayItemInterface;
const QString path = QStringLiteral("/Setup/Channels");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");

/// The list getter hands back a plain list: the caller sees no validity, only emptiness.
Seen listOutcome(const QVariantList &list)
{
    return {true, QVariant(list), std::nullopt};
}

/// The one checked operation: an empty list and this line on any failure.
CheckedGetter<P> checkedGetValue()
{
    return {"getValue", "getValue", [](P &p) { return QVariant(p.getValue(3, 9)); }, QVariant(QVariantList()),
            "SetupArrayItemInterface::getValue():  %1  /  \"/Setup/Channels\"  / Error: %2"};
}
} // namespace

class tst_SetupArrayItemInterface : public QObject, private ProxyFixture<SetupArrayItemInterface>
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

    void getValueReturnsTheElementsUnwrapped();
    void getValueLeavesStructuredElementsAsArguments();
    void getValueLogsOneLineOnAnErrorReply();
    void getValueLogsOneLineForAWrongTypedReply();
    void getValueLogsOneLineWhenTheServiceIsAbsent();
    void getValueQuotesAndEscapesTheErrorMessage();
    void plainOperationsLogNothingOnFailure();

    void setToDefaultWaitsForTheAnswerAndDropsIt();
    void asyncOperationsReturnAtOnceAndLeaveLastErrorAlone();
    void asyncSetterToAnAbsentServiceLogsNothing();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();
    void relaysSetupChangedOfItsOwnObjectOnly();
};

void tst_SetupArrayItemInterface::init()
{
    startFakeAndProxy(path);
}

void tst_SetupArrayItemInterface::cleanup()
{
    stopFakeAndProxy();
}

void tst_SetupArrayItemInterface::constructionPassesItsArgumentsOnAndSendsNothing()
{
    verifyConstructionContract<SetupArrayItemInterface>(*m_fake, path);
}

void tst_SetupArrayItemInterface::sendsEachOperationWithItsWireForm_data()
{
    addWireRows<P>({
        {"setValue range, int",
         [](P &p) { p.setValue(QVariant(5), 0, 3); },
         "setValue",
         "vii",
         {"v(i 5)", "i 0", "i 3"}},
        {"setValue range, string",
         [](P &p) { p.setValue(QVariant(QStringLiteral("on")), 2, 2); },
         "setValue",
         "vii",
         {"v(s \"on\")", "i 2", "i 2"}},
        {"setValue range, negative bounds passed through",
         [](P &p) { p.setValue(QVariant(2.5), -1, 7); },
         "setValue",
         "vii",
         {"v(d 2.5)", "i -1", "i 7"}},
        {"setValue list",
         [](P &p) { p.setValue(QVariantList() << 1 << 2); },
         "setValue",
         "av",
         {"av [v(i 1), v(i 2)]"}},
        {"setValue mixed list",
         [](P &p) { p.setValue(QVariantList() << true << QStringLiteral("x") << 0.5); },
         "setValue",
         "av",
         {"av [v(b true), v(s \"x\"), v(d 0.5)]"}},
        {"setValue empty list", [](P &p) { p.setValue(QVariantList()); }, "setValue", "av", {"av []"}},
        {"getValue", [](P &p) { p.getValue(1, 4); }, "getValue", "ii", {"i 1", "i 4"}},
        {"getString", [](P &p) { p.getString(); }, "getString", "", {}},
        {"size", [](P &p) { p.size(); }, "size", "", {}},
        {"setValueAsync",
         [](P &p) { p.setValueAsync(QVariant(9), 3, 5); },
         "setValue",
         "vii",
         {"v(i 9)", "i 3", "i 5"}},
        {"isChangeable", [](P &p) { p.isChangeable(); }, "isChangeable", "", {}},
        {"setToDefault", [](P &p) { p.setToDefault(); }, "setToDefault", "", {}},
        {"setToDefaultAsync", [](P &p) { p.setToDefaultAsync(); }, "setToDefault", "", {}},
    });
}

void tst_SetupArrayItemInterface::sendsEachOperationWithItsWireForm()
{
    verifyWireRow(*m_fake, *m_proxy);
}

void tst_SetupArrayItemInterface::mapsEachReply_data()
{
    ReplyTable<P> table(ScriptedAnswer::error(failure, QStringLiteral("refused")));
    table.reply(
        "setValue range", "setValue", [](P &p) { return seenOf(p.setValue(QVariant(1), 0, 1)); }, true, 1, false);
    table.reply(
        "setValue list", "setValue", [](P &p) { return seenOf(p.setValue(QVariantList() << 1)); }, true,
        QStringLiteral("yes"), false);
    table.reply(
        "getString", [](P &p) { return seenOf(p.getString()); }, QStringLiteral("1, 2, 3"), 3, QString());
    table.reply(
        "size", [](P &p) { return seenOf(p.size()); }, 12, 12.0, 0);
    table.reply(
        "isChangeable", [](P &p) { return seenOf(p.isChangeable()); }, true, QStringLiteral("true"), false);

    const auto getValue = [](P &p) { return listOutcome(p.getValue(0, 2)); };
    const QVariantList elements = QVariantList() << 1 << QStringLiteral("a") << 2.5;
    const QVariant none = QVariant(QVariantList());
    table.row("getValue", "answered", "getValue", getValue, ScriptedAnswer::value(elements), true, QVariant(elements));
    table.row("getValue", "answered empty", "getValue", getValue, ScriptedAnswer::value(QVariantList()), true, none);
    table.row("getValue", "error", "getValue", getValue, table.error(), true, none);
    table.row("getValue", "wrong type", "getValue", getValue, ScriptedAnswer::value(QStringList{QStringLiteral("a")}),
              true, none);
    table.row("getValue", "no answer value", "getValue", getValue, ScriptedAnswer::reply(), true, none);
}

void tst_SetupArrayItemInterface::mapsEachReply()
{
    verifyMappedReply(*m_fake, *m_proxy);
}

void tst_SetupArrayItemInterface::givesInvalidRepliesWhenTheServiceIsAbsent_data()
{
    addAbsentRows<P>({
        {"setValue range", [](P &p) { return seenOf(p.setValue(QVariant(1), 0, 0)); }, false},
        {"setValue list", [](P &p) { return seenOf(p.setValue(QVariantList() << 1)); }, false},
        {"getValue", [](P &p) { return seenOf(p.getValue(0, 0)); }, QVariantList()},
        {"getString", [](P &p) { return seenOf(p.getString()); }, QString()},
        {"size", [](P &p) { return seenOf(p.size()); }, 0},
        {"isChangeable", [](P &p) { return seenOf(p.isChangeable()); }, false},
        {"setToDefault",
         [](P &p) {
             p.setToDefault();
             return Seen{};
         },
         QVariant()},
    });
}

void tst_SetupArrayItemInterface::givesInvalidRepliesWhenTheServiceIsAbsent()
{
    verifyAbsentRow<P>(path);
}

void tst_SetupArrayItemInterface::getValueReturnsTheElementsUnwrapped()
{
    m_fake->answer("getValue", ScriptedAnswer::value(QVariantList() << 7 << true << QStringLiteral("x")));

    const QVariantList elements = m_proxy->getValue(0, 2);

    QCOMPARE(elements.size(), 3);
    QCOMPARE(elements.at(0).userType(), int(QMetaType::Int));
    QCOMPARE(elements.at(0), QVariant(7));
    QCOMPARE(elements.at(1).userType(), int(QMetaType::Bool));
    QCOMPARE(elements.at(1), QVariant(true));
    QCOMPARE(elements.at(2).userType(), int(QMetaType::QString));
    QCOMPARE(elements.at(2), QVariant(QStringLiteral("x")));
}

void tst_SetupArrayItemInterface::getValueLeavesStructuredElementsAsArguments()
{
    SettingsMap nested;
    nested.insert(QStringLiteral("gain"), 3);
    const QVariantList inner = QVariantList() << 1 << 2;
    m_fake->answer("getValue", ScriptedAnswer::value(QVariantList() << QVariant(nested) << QVariant(inner) << 4));

    const QVariantList elements = m_proxy->getValue(0, 2);

    QCOMPARE(elements.size(), 3);
    QCOMPARE(elements.at(0).userType(), qMetaTypeId<QDBusArgument>());
    const QDBusArgument mapArgument = qvariant_cast<QDBusArgument>(elements.at(0));
    QCOMPARE(mapArgument.currentSignature(), QStringLiteral("a{sv}"));
    SettingsMap received;
    DBusTypes::readSettingsMap(mapArgument, received);
    QCOMPARE(received, nested);
    QCOMPARE(elements.at(1).userType(), qMetaTypeId<QDBusArgument>());
    const QDBusArgument listArgument = qvariant_cast<QDBusArgument>(elements.at(1));
    QCOMPARE(listArgument.currentSignature(), QStringLiteral("av"));
    QCOMPARE(qdbus_cast<QVariantList>(listArgument), inner);
    QCOMPARE(elements.at(2), QVariant(4));
}

void tst_SetupArrayItemInterface::getValueLogsOneLineOnAnErrorReply()
{
    verifyLoggedFailure(*m_fake, *m_proxy, checkedGetValue(),
                        ScriptedAnswer::error(failure, QStringLiteral("index out of range")),
                        QStringLiteral("\"index out of range\""));
}

void tst_SetupArrayItemInterface::getValueLogsOneLineForAWrongTypedReply()
{
    const QVariant wrong = QStringList{QStringLiteral("a")};
    const QString message = replyTypeError<QVariantList>(wrong);
    QVERIFY(message.contains(QStringLiteral("av")));

    verifyLoggedFailure(*m_fake, *m_proxy, checkedGetValue(), ScriptedAnswer::value(wrong), quoted(message));
}

void tst_SetupArrayItemInterface::getValueLogsOneLineWhenTheServiceIsAbsent()
{
    verifyLoggedFailureWhenTheServiceIsAbsent(path, checkedGetValue());
}

void tst_SetupArrayItemInterface::getValueQuotesAndEscapesTheErrorMessage()
{
    verifyLoggedFailure(*m_fake, *m_proxy, checkedGetValue(),
                        ScriptedAnswer::error(failure, QStringLiteral("no \"row\" here")),
                        QStringLiteral("\"no \\\"row\\\" here\""));
}

void tst_SetupArrayItemInterface::plainOperationsLogNothingOnFailure()
{
    verifyNothingLoggedWhenTheServiceIsAbsent<P>(path, [](P &p) {
        p.setValue(QVariant(1), 0, 0);
        p.setValue(QVariantList() << 1);
        p.getString();
        p.size();
        p.setValueAsync(QVariant(1), 0, 0);
        p.isChangeable();
        p.setToDefault();
        p.setToDefaultAsync();
    });
}

void tst_SetupArrayItemInterface::setToDefaultWaitsForTheAnswerAndDropsIt()
{
    verifySetToDefaultWaitsAndDropsTheAnswer(*m_fake, *m_proxy, failure, QStringLiteral("locked"));
}

void tst_SetupArrayItemInterface::asyncOperationsReturnAtOnceAndLeaveLastErrorAlone()
{
    verifyAsyncCallsReturnAtOnce(*m_fake, *m_proxy, path, {"size", [](P &p) { p.size(); }},
                                 {{[](P &p) { p.setValueAsync(QVariant(4), 0, 1); }, "setValue", "vii"},
                                  {[](P &p) { p.setToDefaultAsync(); }, "setToDefault", ""}});
}

void tst_SetupArrayItemInterface::asyncSetterToAnAbsentServiceLogsNothing()
{
    verifyAsyncCallsToAnAbsentServiceLogNothing<P>(path, [](P &p) {
        p.setValueAsync(QVariant(5), 0, 0);
        p.setToDefaultAsync();
    });
}

void tst_SetupArrayItemInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    verifyOwnMethods(*m_proxy, {"setupChanged()"},
                     {"setValue(QVariant,int,int)", "setValue(QVariantList)", "getValue(int,int)", "getString()",
                      "size()", "setValueAsync(QVariant,int,int)", "isChangeable()", "setToDefault()",
                      "setToDefaultAsync()"});
    verifyReturnTypes<P>({{"getValue(int,int)", "QVariantList"}, {"setToDefault()", "void"}});
}

void tst_SetupArrayItemInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(*m_proxy, "SetupArrayItemInterface");
    QCOMPARE(m_proxy->qt_metacast("SetupMapItemInterface"), nullptr);
}

void tst_SetupArrayItemInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(QVariantList() << 3 << 4));
    m_fake->answer("setValue", ScriptedAnswer::value(true));
    m_fake->answer("size", ScriptedAnswer::value(2));

    QList<QVariant> elements;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QList<QVariant>, elements), Q_ARG(int, 0), Q_ARG(int, 1)));
    QCOMPARE(elements, m_proxy->getValue(0, 1));
    QCOMPARE(elements, QVariantList() << 3 << 4);

    QDBusReply<int> size;
    QVERIFY(
        QMetaObject::invokeMethod(m_proxy.get(), "size", Qt::DirectConnection, Q_RETURN_ARG(QDBusReply<int>, size)));
    QCOMPARE(size.value(), 2);

    m_fake->clearCalls();
    QDBusReply<bool> accepted;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<bool>, accepted),
                                      Q_ARG(QVariantList, QVariantList() << 8)));
    QVERIFY(accepted.isValid());
    QCOMPARE(accepted.value(), true);
    QCOMPARE(m_fake->calls().last().signature, QStringLiteral("av"));
}

void tst_SetupArrayItemInterface::relaysSetupChangedOfItsOwnObjectOnly()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupChanged()), "setupChanged", {});
}

QTEST_GUILESS_MAIN(tst_SetupArrayItemInterface)

#include "tst_setuparrayiteminterface.moc"
