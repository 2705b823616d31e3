#include "SetupMapListInterface.h"

#include "CompositeTestSupport.h"
#include "DBusCompat_p.h"
#include "DBusTypes.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusVariant>
#include <QtTest/QTest>

#include <memory>

namespace {
using P = SetupMapListInterface;
const QString path = QStringLiteral("/Setup/Presets");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");

SettingsMap preset()
{
    SettingsMap map;
    map.insert(QStringLiteral("name"), QStringLiteral("Quiet"));
    map.insert(QStringLiteral("gain"), 2.5);
    map.insert(QStringLiteral("active"), true);
    return map;
}

/// The checked getters: an empty value and this line on any failure.
std::vector<CheckedGetter<P>> checkedGetters()
{
    return {
        {"getValue position", "getValue", [](P &p) { return QVariant(p.getValue(0)); }, QVariant(SettingsMap()),
         "SetupMapListInterface::getValue():  %1  /  \"/Setup/Presets\"  / Error: %2", 5,
         replyTypeError<SettingsMap>(5)},
        {"getValue item", "getValue", [](P &p) { return p.getValue(0, "gain"); }, QVariant(),
         "SetupMapListInterface::getValue():  %1  /  \"/Setup/Presets\"  / Error: %2", 5,
         replyTypeError<QDBusVariant>(5)},
        {"getStringValue", "getStringValue", [](P &p) { return QVariant(p.getStringValue(0, "gain")); },
         QVariant(QString()), "SetupMapListInterface::getStringValue():  %1  /  \"/Setup/Presets\"  / Error: %2", 5,
         replyTypeError<QString>(5)},
        {"getString", "getString", [](P &p) { return QVariant(p.getString(0)); }, QVariant(QString()),
         "SetupMapListInterface::getString():  %1  /  \"/Setup/Presets\"  / Error: %2", true,
         replyTypeError<QString>(true)},
        {"getMin", "getMin", [](P &p) { return p.getMin(0, "gain"); }, QVariant(),
         "SetupMapListInterface::getMin():  %1  /  \"/Setup/Presets\"  / Error: %2", 5,
         replyTypeError<QDBusVariant>(5)},
        {"getMax", "getMax", [](P &p) { return p.getMax(0, "gain"); }, QVariant(),
         "SetupMapListInterface::getMax():  %1  /  \"/Setup/Presets\"  / Error: %2", 5.5,
         replyTypeError<QDBusVariant>(5.5)},
    };
}

// Stand-ins that leave a mark, to show which operators a construction leaves in place.
void markingWriter(QDBusArgument &argument, const void *value)
{
    SettingsMap marked = *static_cast<const SettingsMap *>(value);
    marked.insert(QStringLiteral("written by the stand-in"), true);
    DBusTypes::writeSettingsMap(argument, marked);
}

void markingReader(const QDBusArgument &argument, void *value)
{
    SettingsMap &map = *static_cast<SettingsMap *>(value);
    DBusTypes::readSettingsMap(argument, map);
    map.insert(QStringLiteral("read by the stand-in"), true);
}

void replaceSettingsMapOperators()
{
    DBusCompat::registerMarshallOperators(QMetaType::QVariantMap, markingWriter, markingReader);
}
} // namespace

class tst_SetupMapListInterface : public QObject, private ProxyFixture<SetupMapListInterface>
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void constructionPassesItsArgumentsOnAndSendsNothing();
    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void sendsTheMapInsideAVariantNeverBare();
    void sendsAPositionAnItemAndAVariantHoldingTheDouble();
    void mapsEachReply_data();
    void mapsEachReply();
    void givesEmptyValuesWhenTheServiceIsAbsent_data();
    void givesEmptyValuesWhenTheServiceIsAbsent();

    void getValueOfAPositionReadsTheWholeMap();
    void getValueOfAPositionLeavesNestedValuesAsArguments();
    void getValueOfAPositionKeepsRepeatedKeysAsQMapDoes();
    void variantGettersLeaveStructuredValuesAsArguments();
    void checkedGettersLogOneLinePerFailure_data();
    void checkedGettersLogOneLinePerFailure();
    void checkedGettersLogOneLineWhenTheServiceIsAbsent_data();
    void checkedGettersLogOneLineWhenTheServiceIsAbsent();
    void plainOperationsLogNothingOnFailure();

    void everyConstructionInstallsTheSettingsMapOperators();
    void setToDefaultWaitsForTheAnswerAndDropsIt();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();
    void relaysSetupChangedOfItsOwnObjectOnly();
    void relaysSetupBoundsChangedOfItsOwnObjectOnly();
};

void tst_SetupMapListInterface::init()
{
    startFakeAndProxy(path);
}

void tst_SetupMapListInterface::cleanup()
{
    stopFakeAndProxy();
}

void tst_SetupMapListInterface::constructionPassesItsArgumentsOnAndSendsNothing()
{
    verifyConstructionContract<SetupMapListInterface>(*m_fake, path);
}

void tst_SetupMapListInterface::sendsEachOperationWithItsWireForm_data()
{
    addWireRows<P>({
        {"setValue map",
         [](P &p) { p.setValue("Quiet", preset()); },
         "setValue",
         "sv",
         {"s \"Quiet\"", "v(a{sv} {s \"active\": v(b true), s \"gain\": v(d 2.5), s \"name\": v(s \"Quiet\")})"}},
        {"setValue empty map",
         [](P &p) { p.setValue("None", SettingsMap()); },
         "setValue",
         "sv",
         {"s \"None\"", "v(a{sv} {})"}},
        {"setValue item",
         [](P &p) { p.setValue(1, "gain", QVariant(2.5)); },
         "setValue",
         "isv",
         {"i 1", "s \"gain\"", "v(d 2.5)"}},
        {"setValue item string",
         [](P &p) { p.setValue(0, "name", QVariant(QStringLiteral("Loud"))); },
         "setValue",
         "isv",
         {"i 0", "s \"name\"", "v(s \"Loud\")"}},
        {"getAllKeys", [](P &p) { p.getAllKeys(); }, "getAllKeys", "", {}},
        {"isKeyAvailable", [](P &p) { p.isKeyAvailable("Quiet"); }, "isKeyAvailable", "s", {"s \"Quiet\""}},
        {"getKeyPosition", [](P &p) { p.getKeyPosition("Quiet"); }, "getKeyPosition", "s", {"s \"Quiet\""}},
        {"isChangeable", [](P &p) { p.isChangeable(); }, "isChangeable", "", {}},
        {"getValue position", [](P &p) { p.getValue(2); }, "getValue", "i", {"i 2"}},
        {"getValue item", [](P &p) { p.getValue(2, "gain"); }, "getValue", "is", {"i 2", "s \"gain\""}},
        {"getStringValue", [](P &p) { p.getStringValue(3, "gain"); }, "getStringValue", "is", {"i 3", "s \"gain\""}},
        {"getString", [](P &p) { p.getString(4); }, "getString", "i", {"i 4"}},
        {"getMin", [](P &p) { p.getMin(5, "gain"); }, "getMin", "is", {"i 5", "s \"gain\""}},
        {"getMax", [](P &p) { p.getMax(6, "gain"); }, "getMax", "is", {"i 6", "s \"gain\""}},
        {"size", [](P &p) { p.size(); }, "size", "", {}},
        {"removeItem", [](P &p) { p.removeItem(7); }, "removeItem", "i", {"i 7"}},
        {"setToDefault", [](P &p) { p.setToDefault(); }, "setToDefault", "", {}},
    });
}

void tst_SetupMapListInterface::sendsEachOperationWithItsWireForm()
{
    verifyWireRow(*m_fake, *m_proxy);
}

void tst_SetupMapListInterface::sendsTheMapInsideAVariantNeverBare()
{
    m_fake->answer("setValue", ScriptedAnswer::value(true));
    SettingsMap map;
    map.insert(QStringLiteral("b"), 2);
    map.insert(QStringLiteral("a"), QStringLiteral("first"));

    QVERIFY(m_proxy->setValue("Mixed", map).value());

    QVERIFY(m_fake->waitForCalls(1));
    const ReceivedCall call = m_fake->calls().first();
    QCOMPARE(call.signature, QStringLiteral("sv"));
    QCOMPARE(call.arguments.size(), 2);
    QCOMPARE(call.arguments.at(0), QVariant(QStringLiteral("Mixed")));
    QCOMPARE(call.arguments.at(1).userType(), qMetaTypeId<QDBusVariant>());
    const QVariant inner = qvariant_cast<QDBusVariant>(call.arguments.at(1)).variant();
    QCOMPARE(inner.userType(), qMetaTypeId<QDBusArgument>());
    const QDBusArgument argument = qvariant_cast<QDBusArgument>(inner);
    QCOMPARE(argument.currentSignature(), QStringLiteral("a{sv}"));
    // Keys go out in ascending order whatever the order of insertion.
    QCOMPARE(wireText(argument), QStringLiteral("a{sv} {s \"a\": v(s \"first\"), s \"b\": v(i 2)}"));
    QCOMPARE(qdbus_cast<SettingsMap>(argument), map);
}

void tst_SetupMapListInterface::sendsAPositionAnItemAndAVariantHoldingTheDouble()
{
    m_fake->answer("setValue", ScriptedAnswer::value(true));

    QVERIFY(m_proxy->setValue(1, "gain", QVariant(-3.75)).value());

    QVERIFY(m_fake->waitForCalls(1));
    const ReceivedCall call = m_fake->calls().first();
    QCOMPARE(call.signature, QStringLiteral("isv"));
    QCOMPARE(call.arguments.size(), 3);
    QCOMPARE(call.arguments.at(0).userType(), int(QMetaType::Int));
    QCOMPARE(call.arguments.at(0), QVariant(1));
    QCOMPARE(call.arguments.at(1), QVariant(QStringLiteral("gain")));
    QCOMPARE(call.arguments.at(2).userType(), qMetaTypeId<QDBusVariant>());
    const QVariant inner = qvariant_cast<QDBusVariant>(call.arguments.at(2)).variant();
    QCOMPARE(inner.userType(), int(QMetaType::Double));
    QCOMPARE(inner, QVariant(-3.75));
}

void tst_SetupMapListInterface::mapsEachReply_data()
{
    ReplyTable<P> table(ScriptedAnswer::error(failure, QStringLiteral("refused")));
    table.reply(
        "setValue map", "setValue", [](P &p) { return seenOf(p.setValue("Quiet", preset())); }, true, 1, false);
    table.reply(
        "setValue item", "setValue", [](P &p) { return seenOf(p.setValue(0, "gain", QVariant(1.0))); }, true,
        QStringLiteral("ok"), false);
    table.reply(
        "getAllKeys", [](P &p) { return seenOf(p.getAllKeys()); },
        QStringList{QStringLiteral("Quiet"), QStringLiteral("Loud")}, 2, QStringList());
    table.reply(
        "isKeyAvailable", [](P &p) { return seenOf(p.isKeyAvailable("Quiet")); }, true, 1, false);
    table.reply(
        "getKeyPosition", [](P &p) { return seenOf(p.getKeyPosition("Loud")); }, 1, true, 0);
    table.reply(
        "isChangeable", [](P &p) { return seenOf(p.isChangeable()); }, true, QStringLiteral("true"), false);
    table.reply(
        "size", [](P &p) { return seenOf(p.size()); }, 3, 3.0, 0);
    table.reply(
        "removeItem", [](P &p) { return seenOf(p.removeItem(0)); }, true, 1, false);

    table.checked(
        "getValue position", "getValue", [](P &p) { return seenOf(p.getValue(0)); }, QVariant(preset()),
        QVariant(preset()), QStringLiteral("Quiet"), QVariant(SettingsMap()));
    table.checked(
        "getValue item", "getValue", [](P &p) { return seenOf(p.getValue(0, "gain")); }, wrappedValue(2.5),
        QVariant(2.5), 2.5, QVariant());
    table.checked(
        "getStringValue", "getStringValue", [](P &p) { return seenOf(p.getStringValue(0, "gain")); },
        QStringLiteral("2.5 dB"), QStringLiteral("2.5 dB"), 2.5, QVariant(QString()));
    table.checked(
        "getString", "getString", [](P &p) { return seenOf(p.getString(0)); }, QStringLiteral("Quiet: 2.5 dB"),
        QStringLiteral("Quiet: 2.5 dB"), wrappedValue(QStringLiteral("Quiet")), QVariant(QString()));
    table.checked(
        "getMin", "getMin", [](P &p) { return seenOf(p.getMin(0, "gain")); }, wrappedValue(-10), QVariant(-10), -10,
        QVariant());
    table.checked(
        "getMax", "getMax", [](P &p) { return seenOf(p.getMax(0, "gain")); }, wrappedValue(10.5), QVariant(10.5),
        QStringLiteral("10.5"), QVariant());
}

void tst_SetupMapListInterface::mapsEachReply()
{
    verifyMappedReply(*m_fake, *m_proxy);
}

void tst_SetupMapListInterface::givesEmptyValuesWhenTheServiceIsAbsent_data()
{
    addAbsentRows<P>({
        {"setValue map", [](P &p) { return seenOf(p.setValue("Quiet", preset())); }, false},
        {"setValue item", [](P &p) { return seenOf(p.setValue(0, "gain", QVariant(1))); }, false},
        {"getAllKeys", [](P &p) { return seenOf(p.getAllKeys()); }, QStringList()},
        {"isKeyAvailable", [](P &p) { return seenOf(p.isKeyAvailable("Quiet")); }, false},
        {"getKeyPosition", [](P &p) { return seenOf(p.getKeyPosition("Quiet")); }, 0},
        {"isChangeable", [](P &p) { return seenOf(p.isChangeable()); }, false},
        {"getValue position", [](P &p) { return seenOf(p.getValue(0)); }, QVariant(SettingsMap())},
        {"getValue item", [](P &p) { return seenOf(p.getValue(0, "gain")); }, QVariant()},
        {"getStringValue", [](P &p) { return seenOf(p.getStringValue(0, "gain")); }, QString()},
        {"getString", [](P &p) { return seenOf(p.getString(0)); }, QString()},
        {"getMin", [](P &p) { return seenOf(p.getMin(0, "gain")); }, QVariant()},
        {"getMax", [](P &p) { return seenOf(p.getMax(0, "gain")); }, QVariant()},
        {"size", [](P &p) { return seenOf(p.size()); }, 0},
        {"removeItem", [](P &p) { return seenOf(p.removeItem(0)); }, false},
        {"setToDefault",
         [](P &p) {
             p.setToDefault();
             return Seen{};
         },
         QVariant()},
    });
}

void tst_SetupMapListInterface::givesEmptyValuesWhenTheServiceIsAbsent()
{
    verifyAbsentRow<P>(path);
}

void tst_SetupMapListInterface::getValueOfAPositionReadsTheWholeMap()
{
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant(preset())));

    const SettingsMap map = m_proxy->getValue(1);

    QCOMPARE(map, preset());
    QCOMPARE(map.keys(), QStringList({"active", "gain", "name"}));
    QCOMPARE(map.value(QStringLiteral("gain")).userType(), int(QMetaType::Double));
    QCOMPARE(map.value(QStringLiteral("active")).userType(), int(QMetaType::Bool));

    m_fake->answer("getValue", ScriptedAnswer::value(QVariant(SettingsMap())));
    QCOMPARE(m_proxy->getValue(1), SettingsMap());
}

void tst_SetupMapListInterface::getValueOfAPositionLeavesNestedValuesAsArguments()
{
    SettingsMap inner;
    inner.insert(QStringLiteral("low"), 1);
    inner.insert(QStringLiteral("high"), 9);
    SettingsMap outer;
    outer.insert(QStringLiteral("limits"), inner);
    outer.insert(QStringLiteral("points"), QVariantList() << 1 << 2);
    outer.insert(QStringLiteral("name"), QStringLiteral("Ramp"));
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant(outer)));

    const SettingsMap map = m_proxy->getValue(0);

    QCOMPARE(map.size(), 3);
    QCOMPARE(map.value(QStringLiteral("name")), QVariant(QStringLiteral("Ramp")));
    const QVariant limits = map.value(QStringLiteral("limits"));
    QCOMPARE(limits.userType(), qMetaTypeId<QDBusArgument>());
    QCOMPARE(qvariant_cast<QDBusArgument>(limits).currentSignature(), QStringLiteral("a{sv}"));
    SettingsMap readInner;
    DBusTypes::readSettingsMap(qvariant_cast<QDBusArgument>(limits), readInner);
    QCOMPARE(readInner, inner);
    const QVariant points = map.value(QStringLiteral("points"));
    QCOMPARE(points.userType(), qMetaTypeId<QDBusArgument>());
    QCOMPARE(wireText(points), QStringLiteral("av [v(i 1), v(i 2)]"));
}

void tst_SetupMapListInterface::getValueOfAPositionKeepsRepeatedKeysAsQMapDoes()
{
    verifyRepeatedKeysKeptAsQMapDoes(*m_fake, "getValue", [this] { return m_proxy->getValue(0); },
                                     {{"gain", 1}, {"gain", 2}, {"name", QStringLiteral("x")}});
}

void tst_SetupMapListInterface::variantGettersLeaveStructuredValuesAsArguments()
{
    const QVariant structured = QVariant(preset());
    m_fake->answer("getValue", ScriptedAnswer::value(wrappedValue(structured)));
    m_fake->answer("getMin", ScriptedAnswer::value(wrappedValue(QVariantList() << 1 << 2)));
    m_fake->answer("getMax", ScriptedAnswer::value(wrappedValue(structured)));

    const QVariant value = m_proxy->getValue(0, "all");
    QCOMPARE(value.userType(), qMetaTypeId<QDBusArgument>());
    QCOMPARE(qvariant_cast<QDBusArgument>(value).currentSignature(), QStringLiteral("a{sv}"));
    QCOMPARE(qdbus_cast<SettingsMap>(qvariant_cast<QDBusArgument>(value)), preset());
    const QVariant min = m_proxy->getMin(0, "all");
    QCOMPARE(min.userType(), qMetaTypeId<QDBusArgument>());
    QCOMPARE(wireText(min), QStringLiteral("av [v(i 1), v(i 2)]"));
    const QVariant max = m_proxy->getMax(0, "all");
    QCOMPARE(max.userType(), qMetaTypeId<QDBusArgument>());
    QCOMPARE(qvariant_cast<QDBusArgument>(max).currentSignature(), QStringLiteral("a{sv}"));
}

void tst_SetupMapListInterface::checkedGettersLogOneLinePerFailure_data()
{
    addLoggedFailureRows(checkedGetters(), failure,
                         {{"error", "no such position", "\"no such position\""},
                          {"error with quotes", "item \"gain\" unknown", "\"item \\\"gain\\\" unknown\""}});
}

void tst_SetupMapListInterface::checkedGettersLogOneLinePerFailure()
{
    verifyLoggedFailureRow(*m_fake, *m_proxy);
}

void tst_SetupMapListInterface::checkedGettersLogOneLineWhenTheServiceIsAbsent_data()
{
    addLoggedAbsentRows(checkedGetters());
}

void tst_SetupMapListInterface::checkedGettersLogOneLineWhenTheServiceIsAbsent()
{
    verifyLoggedAbsentRow<P>(path);
}

void tst_SetupMapListInterface::plainOperationsLogNothingOnFailure()
{
    verifyNothingLoggedWhenTheServiceIsAbsent<P>(path, [](P &p) {
        p.setValue("Quiet", preset());
        p.setValue(0, "gain", QVariant(1));
        p.getAllKeys();
        p.isKeyAvailable("Quiet");
        p.getKeyPosition("Quiet");
        p.isChangeable();
        p.size();
        p.removeItem(0);
        p.setToDefault();
    });
}

void tst_SetupMapListInterface::everyConstructionInstallsTheSettingsMapOperators()
{
    m_fake->answer("setValue", ScriptedAnswer::value(true));
    SettingsMap map;
    map.insert(QStringLiteral("gain"), 1);
    const QString plain = QStringLiteral("v(a{sv} {s \"gain\": v(i 1)})");

    for (int round = 0; round < 2; ++round) {
        replaceSettingsMapOperators();
        // The stand-ins are in force for a proxy constructed before them...
        m_fake->clearCalls();
        m_fake->answer("getValue", ScriptedAnswer::value(QVariant(map)));
        m_proxy->setValue("Quiet", map);
        QVERIFY(m_fake->waitForCalls(1));
        QCOMPARE(wireText(m_fake->calls().first().arguments.at(1)),
                 QStringLiteral("v(a{sv} {s \"gain\": v(i 1), s \"written by the stand-in\": v(b true)})"));
        QVERIFY(m_proxy->getValue(0).contains(QStringLiteral("read by the stand-in")));

        // ...and a new construction puts the library's own back.
        SetupMapListInterface constructed(m_fake->service(), path, QDBusConnection::sessionBus());
        m_fake->clearCalls();
        m_fake->answer("getValue", ScriptedAnswer::value(QVariant(map)));
        QVERIFY(constructed.setValue("Quiet", map).value());
        QVERIFY(m_fake->waitForCalls(1));
        QCOMPARE(wireText(m_fake->calls().first().arguments.at(1)), plain);
        QCOMPARE(constructed.getValue(0), map);
    }
}

void tst_SetupMapListInterface::setToDefaultWaitsForTheAnswerAndDropsIt()
{
    verifySetToDefaultWaitsAndDropsTheAnswer(*m_fake, *m_proxy, failure, QStringLiteral("locked"));
}

void tst_SetupMapListInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    verifyOwnMethods(*m_proxy, {"setupChanged()", "setupBoundsChanged()"},
                     {"setValue(QString,QVariantMap)", "setValue(int,QString,QVariant)", "getAllKeys()",
                      "isKeyAvailable(QString)", "getKeyPosition(QString)", "isChangeable()", "getValue(int)",
                      "getValue(int,QString)", "getStringValue(int,QString)", "getString(int)", "getMin(int,QString)",
                      "getMax(int,QString)", "size()", "removeItem(int)", "setToDefault()"});
    verifyReturnTypes<P>({{"getValue(int)", "SettingsMap"},
                          {"getValue(int,QString)", "QVariant"},
                          {"getString(int)", "QString"},
                          {"removeItem(int)", "QDBusReply<bool>"},
                          {"setToDefault()", "void"}});
    // No asynchronous operations.
    const QStringList methods = ownMethodSignatures(SetupMapListInterface::staticMetaObject);
    QCOMPARE(methods.size(), 17);
    for (const QString &method : methods)
        QVERIFY2(!method.contains(QStringLiteral("Async")), qPrintable(method));
}

void tst_SetupMapListInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(*m_proxy, "SetupMapListInterface");
    QCOMPARE(m_proxy->qt_metacast("SetupMapItemInterface"), nullptr);
}

void tst_SetupMapListInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant(preset())));
    m_fake->answer("setValue", ScriptedAnswer::value(true));

    SettingsMap map;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection, Q_RETURN_ARG(SettingsMap, map),
                                      Q_ARG(int, 0)));
    QCOMPARE(map, m_proxy->getValue(0));
    QCOMPARE(map, preset());

    m_fake->clearCalls();
    QDBusReply<bool> accepted;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<bool>, accepted), Q_ARG(QString, QStringLiteral("Quiet")),
                                      Q_ARG(QVariantMap, preset())));
    QVERIFY(accepted.isValid());
    QCOMPARE(accepted.value(), true);
    QCOMPARE(m_fake->calls().last().signature, QStringLiteral("sv"));
}

void tst_SetupMapListInterface::relaysSetupChangedOfItsOwnObjectOnly()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupChanged()), "setupChanged", {});
}

void tst_SetupMapListInterface::relaysSetupBoundsChangedOfItsOwnObjectOnly()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupBoundsChanged()), "setupBoundsChanged", {});
}

QTEST_GUILESS_MAIN(tst_SetupMapListInterface)

#include "tst_setupmaplistinterface.moc"
