#include "SetupMapItemInterface.h"

#include "CompositeTestSupport.h"
#include "DBusTypes.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusVariant>
#include <QtTest/QTest>

#include <memory>

namespace {
using P = SetupMapItemInterface;
const QString path = QStringLiteral("/Setup/Labels");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");

/// The checked getters: an invalid variant and this line on any failure.
std::vector<CheckedGetter<P>> checkedGetters()
{
    return {
        {"getValue", "getValue", [](P &p) { return p.getValue("ch1"); }, QVariant(),
         "SetupMapItemInterface::getValue():  %1  /  \"/Setup/Labels\"  / Error: %2", 7,
         replyTypeError<QDBusVariant>(7)},
        {"getBaseElement", "getBaseElement", [](P &p) { return p.getBaseElement(); }, QVariant(),
         "SetupMapItemInterface::getBaseElement():  %1  /  \"/Setup/Labels\"  / Error: %2", QStringLiteral("base"),
         replyTypeError<QDBusVariant>(QStringLiteral("base"))},
    };
}
} // namespace

class tst_SetupMapItemInterface : public QObject, private ProxyFixture<SetupMapItemInterface>
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

    void variantGettersReturnTheValueInsideTheVariant_data();
    void variantGettersReturnTheValueInsideTheVariant();
    void variantGettersLeaveAMapValueAsAnArgument();
    void variantGettersLogOneLinePerFailure_data();
    void variantGettersLogOneLinePerFailure();
    void variantGettersLogOneLineWhenTheServiceIsAbsent_data();
    void variantGettersLogOneLineWhenTheServiceIsAbsent();
    void plainOperationsLogNothingOnFailure();

    void removeItemAnswersAnIntNotABool();
    void setToDefaultWaitsForTheAnswerAndDropsIt();
    void asyncOperationsReturnAtOnceAndLeaveLastErrorAlone();
    void asyncSetterToAnAbsentServiceReturnsAtOnceAndLogsNothing();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();
    void relaysSetupChangedOfItsOwnObjectOnly();
};

void tst_SetupMapItemInterface::init()
{
    startFakeAndProxy(path);
}

void tst_SetupMapItemInterface::cleanup()
{
    stopFakeAndProxy();
}

void tst_SetupMapItemInterface::constructionPassesItsArgumentsOnAndSendsNothing()
{
    verifyConstructionContract<SetupMapItemInterface>(*m_fake, path);
}

void tst_SetupMapItemInterface::sendsEachOperationWithItsWireForm_data()
{
    addWireRows<P>({
        {"setValue int", [](P &p) { p.setValue("ch1", QVariant(5)); }, "setValue", "sv", {"s \"ch1\"", "v(i 5)"}},
        {"setValue string",
         [](P &p) { p.setValue("ch2", QVariant(QStringLiteral("Left"))); },
         "setValue",
         "sv",
         {"s \"ch2\"", "v(s \"Left\")"}},
        {"setValue list",
         [](P &p) { p.setValue("ch3", QVariantList() << 1); },
         "setValue",
         "sv",
         {"s \"ch3\"", "v(av [v(i 1)])"}},
        {"setValueAsync",
         [](P &p) { p.setValueAsync("ch4", QVariant(true)); },
         "setValue",
         "sv",
         {"s \"ch4\"", "v(b true)"}},
        {"getAllKeys", [](P &p) { p.getAllKeys(); }, "getAllKeys", "", {}},
        {"isKeyAvailable", [](P &p) { p.isKeyAvailable("ch1"); }, "isKeyAvailable", "s", {"s \"ch1\""}},
        {"isChangeable", [](P &p) { p.isChangeable(); }, "isChangeable", "", {}},
        {"getValue", [](P &p) { p.getValue("ch1"); }, "getValue", "s", {"s \"ch1\""}},
        {"getBaseElement", [](P &p) { p.getBaseElement(); }, "getBaseElement", "", {}},
        {"getString", [](P &p) { p.getString(); }, "getString", "", {}},
        {"size", [](P &p) { p.size(); }, "size", "", {}},
        {"removeItem", [](P &p) { p.removeItem("ch9"); }, "removeItem", "s", {"s \"ch9\""}},
        {"setToDefault", [](P &p) { p.setToDefault(); }, "setToDefault", "", {}},
        {"setToDefaultAsync", [](P &p) { p.setToDefaultAsync(); }, "setToDefault", "", {}},
    });
}

void tst_SetupMapItemInterface::sendsEachOperationWithItsWireForm()
{
    verifyWireRow(*m_fake, *m_proxy);
}

void tst_SetupMapItemInterface::mapsEachReply_data()
{
    ReplyTable<P> table(ScriptedAnswer::error(failure, QStringLiteral("refused")));
    table.reply(
        "setValue", [](P &p) { return seenOf(p.setValue("k", QVariant(1))); }, true, 1, false);
    table.reply(
        "getAllKeys", [](P &p) { return seenOf(p.getAllKeys()); },
        QStringList{QStringLiteral("ch1"), QStringLiteral("ch2")}, QStringLiteral("ch1"), QStringList());
    table.reply(
        "isKeyAvailable", [](P &p) { return seenOf(p.isKeyAvailable("ch1")); }, true, 1, false);
    table.reply(
        "isChangeable", [](P &p) { return seenOf(p.isChangeable()); }, true, QStringLiteral("yes"), false);
    table.reply(
        "getString", [](P &p) { return seenOf(p.getString()); }, QStringLiteral("ch1=Left, ch2=Right"), 2, QString());
    table.reply(
        "size", [](P &p) { return seenOf(p.size()); }, 2, 2.0, 0);
    table.reply(
        "removeItem", [](P &p) { return seenOf(p.removeItem("ch1")); }, 1, true, 0);

    // The variant getters hand back the value inside the variant, invalid on any failure.
    table.checked(
        "getValue", "getValue", [](P &p) { return seenOf(p.getValue("ch1")); }, wrappedValue(2.5), 2.5, 2.5,
        QVariant());
    table.checked(
        "getBaseElement", "getBaseElement", [](P &p) { return seenOf(p.getBaseElement()); },
        wrappedValue(QStringLiteral("label")), QStringLiteral("label"), QStringLiteral("label"), QVariant());
}

void tst_SetupMapItemInterface::mapsEachReply()
{
    verifyMappedReply(*m_fake, *m_proxy);
}

void tst_SetupMapItemInterface::givesInvalidRepliesWhenTheServiceIsAbsent_data()
{
    addAbsentRows<P>({
        {"setValue", [](P &p) { return seenOf(p.setValue("k", QVariant(1))); }, false},
        {"getAllKeys", [](P &p) { return seenOf(p.getAllKeys()); }, QStringList()},
        {"isKeyAvailable", [](P &p) { return seenOf(p.isKeyAvailable("k")); }, false},
        {"isChangeable", [](P &p) { return seenOf(p.isChangeable()); }, false},
        {"getValue", [](P &p) { return seenOf(p.getValue("k")); }, QVariant()},
        {"getBaseElement", [](P &p) { return seenOf(p.getBaseElement()); }, QVariant()},
        {"getString", [](P &p) { return seenOf(p.getString()); }, QString()},
        {"size", [](P &p) { return seenOf(p.size()); }, 0},
        {"removeItem", [](P &p) { return seenOf(p.removeItem("k")); }, 0},
        {"setToDefault",
         [](P &p) {
             p.setToDefault();
             return Seen{};
         },
         QVariant()},
    });
}

void tst_SetupMapItemInterface::givesInvalidRepliesWhenTheServiceIsAbsent()
{
    verifyAbsentRow<P>(path);
}

void tst_SetupMapItemInterface::variantGettersReturnTheValueInsideTheVariant_data()
{
    QTest::addColumn<ProxyOperation>("getter");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QVariant>("value");

    const ProxyOperation getValue = onProxy<P>([](P &p) { return p.getValue("k"); });
    const ProxyOperation getBaseElement = onProxy<P>([](P &p) { return p.getBaseElement(); });
    QTest::newRow("getValue int") << getValue << "getValue" << QVariant(5);
    QTest::newRow("getValue bool") << getValue << "getValue" << QVariant(false);
    QTest::newRow("getValue string") << getValue << "getValue" << QVariant(QStringLiteral("Left"));
    QTest::newRow("getValue string list") << getValue << "getValue" << QVariant(QStringList{"a", "b"});
    QTest::newRow("getBaseElement double") << getBaseElement << "getBaseElement" << QVariant(-0.25);
    QTest::newRow("getBaseElement string") << getBaseElement << "getBaseElement" << QVariant(QStringLiteral("x"));
}

void tst_SetupMapItemInterface::variantGettersReturnTheValueInsideTheVariant()
{
    QFETCH(ProxyOperation, getter);
    QFETCH(QString, member);
    QFETCH(QVariant, value);

    m_fake->answer(member, ScriptedAnswer::value(wrappedValue(value)));

    const QVariant received = getter(*m_proxy).value;

    QCOMPARE(received.userType(), value.userType());
    QCOMPARE(received, value);
}

void tst_SetupMapItemInterface::variantGettersLeaveAMapValueAsAnArgument()
{
    SettingsMap entry;
    entry.insert(QStringLiteral("colour"), QStringLiteral("red"));
    entry.insert(QStringLiteral("width"), 2);
    m_fake->answer("getValue", ScriptedAnswer::value(wrappedValue(QVariant(entry))));
    m_fake->answer("getBaseElement", ScriptedAnswer::value(wrappedValue(QVariant(entry))));

    for (const QVariant &value : {m_proxy->getValue("ch1"), m_proxy->getBaseElement()}) {
        QCOMPARE(value.userType(), qMetaTypeId<QDBusArgument>());
        const QDBusArgument argument = qvariant_cast<QDBusArgument>(value);
        QCOMPARE(argument.currentSignature(), QStringLiteral("a{sv}"));
        QCOMPARE(wireText(argument), QStringLiteral("a{sv} {s \"colour\": v(s \"red\"), s \"width\": v(i 2)}"));
        SettingsMap read;
        DBusTypes::readSettingsMap(argument, read);
        QCOMPARE(read, entry);
    }
}

void tst_SetupMapItemInterface::variantGettersLogOneLinePerFailure_data()
{
    addLoggedFailureRows(checkedGetters(), failure,
                         {{"error", "no such key", "\"no such key\""},
                          {"error with quotes", "key \"ch1\" unknown", "\"key \\\"ch1\\\" unknown\""}});
}

void tst_SetupMapItemInterface::variantGettersLogOneLinePerFailure()
{
    verifyLoggedFailureRow(*m_fake, *m_proxy);
}

void tst_SetupMapItemInterface::variantGettersLogOneLineWhenTheServiceIsAbsent_data()
{
    addLoggedAbsentRows(checkedGetters());
}

void tst_SetupMapItemInterface::variantGettersLogOneLineWhenTheServiceIsAbsent()
{
    verifyLoggedAbsentRow<P>(path);
}

void tst_SetupMapItemInterface::plainOperationsLogNothingOnFailure()
{
    verifyNothingLoggedWhenTheServiceIsAbsent<P>(path, [](P &p) {
        p.setValue("k", QVariant(1));
        p.setValueAsync("k", QVariant(1));
        p.getAllKeys();
        p.isKeyAvailable("k");
        p.isChangeable();
        p.getString();
        p.size();
        p.removeItem("k");
        p.setToDefault();
        p.setToDefaultAsync();
    });
}

void tst_SetupMapItemInterface::removeItemAnswersAnIntNotABool()
{
    m_fake->answer("removeItem", ScriptedAnswer::value(2));
    m_fake->answer("isKeyAvailable", ScriptedAnswer::value(2));

    const QDBusReply<int> removed = m_proxy->removeItem("ch1");
    QVERIFY(removed.isValid());
    QCOMPARE(removed.value(), 2);
    // The same int is a wrong type for the key query, which answers a bool.
    QVERIFY(!m_proxy->isKeyAvailable("ch1").isValid());

    m_fake->answer("removeItem", ScriptedAnswer::value(true));
    const QDBusReply<int> fromBool = m_proxy->removeItem("ch1");
    QVERIFY(!fromBool.isValid());
    QCOMPARE(fromBool.value(), 0);
    QCOMPARE(fromBool.error().type(), QDBusError::InvalidSignature);
}

void tst_SetupMapItemInterface::setToDefaultWaitsForTheAnswerAndDropsIt()
{
    verifySetToDefaultWaitsAndDropsTheAnswer(*m_fake, *m_proxy, failure, QStringLiteral("locked"));
}

void tst_SetupMapItemInterface::asyncOperationsReturnAtOnceAndLeaveLastErrorAlone()
{
    verifyAsyncCallsReturnAtOnce(*m_fake, *m_proxy, path, {"size", [](P &p) { p.size(); }},
                                 {{[](P &p) { p.setValueAsync("ch1", QVariant(3)); }, "setValue", "sv"},
                                  {[](P &p) { p.setToDefaultAsync(); }, "setToDefault", ""}});
}

void tst_SetupMapItemInterface::asyncSetterToAnAbsentServiceReturnsAtOnceAndLogsNothing()
{
    verifyAsyncCallsToAnAbsentServiceLogNothing<P>(path, [](P &p) {
        p.setValueAsync("k", QVariant(5));
        p.setToDefaultAsync();
    });
}

void tst_SetupMapItemInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    verifyOwnMethods(*m_proxy, {"setupChanged()"},
                     {"setValue(QString,QVariant)", "setValueAsync(QString,QVariant)", "getAllKeys()",
                      "isKeyAvailable(QString)", "isChangeable()", "getValue(QString)", "getBaseElement()",
                      "getString()", "size()", "removeItem(QString)", "setToDefault()", "setToDefaultAsync()"});
    verifyReturnTypes<P>(
        {{"getValue(QString)", "QVariant"}, {"removeItem(QString)", "QDBusReply<int>"}, {"setToDefault()", "void"}});
}

void tst_SetupMapItemInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(*m_proxy, "SetupMapItemInterface");
    QCOMPARE(m_proxy->qt_metacast("SetupArrayItemInterface"), nullptr);
}

void tst_SetupMapItemInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(wrappedValue(11)));
    m_fake->answer("removeItem", ScriptedAnswer::value(1));

    QVariant value;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection, Q_RETURN_ARG(QVariant, value),
                                      Q_ARG(QString, QStringLiteral("ch1"))));
    QCOMPARE(value, m_proxy->getValue("ch1"));
    QCOMPARE(value, QVariant(11));

    QDBusReply<int> removed;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "removeItem", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<int>, removed), Q_ARG(QString, QStringLiteral("ch1"))));
    QVERIFY(removed.isValid());
    QCOMPARE(removed.value(), 1);
}

void tst_SetupMapItemInterface::relaysSetupChangedOfItsOwnObjectOnly()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupChanged()), "setupChanged", {});
}

QTEST_GUILESS_MAIN(tst_SetupMapItemInterface)

#include "tst_setupmapiteminterface.moc"
