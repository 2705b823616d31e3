#include "SetupMapListInterface.h"

#include "CompositeTest.h"
#include "DBusCompat_p.h"
#include "DBusTypes.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QtTest/QTest>

namespace {
using P = SetupMapListInterface;
const QString path = QStringLiteral("/Setup/Presets");

SettingsMap preset()
{
    SettingsMap map;
    map.insert(QStringLiteral("name"), QStringLiteral("Quiet"));
    map.insert(QStringLiteral("gain"), 2.5);
    map.insert(QStringLiteral("active"), true);
    return map;
}

const QString presetOnTheWire =
    QStringLiteral("a{sv} {s \"active\": v(b true), s \"gain\": v(d 2.5), s \"name\": v(s \"Quiet\")}");
const QString presetInAVariant = "v(" + presetOnTheWire + ")";

// clang-format off
/// The checked getters: an empty value and this line on any failure.
const QList<OperationRow> checkedGetters{
    {.operation = "getValue position", .run = onProxy<P>([](P &p) { return QVariant(p.getValue(0)); }),
     .member = "getValue", .wrongType = 5, .empty = QVariant(SettingsMap()),
     .report = "SetupMapListInterface::getValue(): ", .typeError = replyTypeError<SettingsMap>(5)},
    {.operation = "getValue item", .run = onProxy<P>([](P &p) { return p.getValue(0, "gain"); }), .member = "getValue",
     .wrongType = 5, .empty = QVariant(), .report = "SetupMapListInterface::getValue(): ",
     .typeError = replyTypeError<QDBusVariant>(5)},
    {.operation = "getStringValue", .run = onProxy<P>([](P &p) { return QVariant(p.getStringValue(0, "gain")); }),
     .wrongType = 5, .empty = QVariant(QString()), .report = "SetupMapListInterface::getStringValue(): ",
     .typeError = replyTypeError<QString>(5)},
    {.operation = "getString", .run = onProxy<P>([](P &p) { return QVariant(p.getString(0)); }), .wrongType = true,
     .empty = QVariant(QString()), .report = "SetupMapListInterface::getString(): ",
     .typeError = replyTypeError<QString>(true)},
    {.operation = "getMin", .run = calling(&P::getMin, 0, "gain"), .wrongType = 5, .empty = QVariant(),
     .report = "SetupMapListInterface::getMin(): ", .typeError = replyTypeError<QDBusVariant>(5)},
    {.operation = "getMax", .run = calling(&P::getMax, 0, "gain"), .wrongType = 5.5, .empty = QVariant(),
     .report = "SetupMapListInterface::getMax(): ", .typeError = replyTypeError<QDBusVariant>(5.5)},
};

const QList<OperationRow> sent{
    {.operation = "setValue map", .run = onProxy<P>([](P &p) { p.setValue("Quiet", preset()); }), .member = "setValue",
     .signature = "sv", .wireArguments = {"s \"Quiet\"", presetInAVariant}},
    {.operation = "setValue map, keys in ascending order",
     .run = onProxy<P>([](P &p) { p.setValue("Mixed", SettingsMap{{"b", 2}, {"a", QStringLiteral("first")}}); }),
     .member = "setValue", .signature = "sv",
     .wireArguments = {"s \"Mixed\"", "v(a{sv} {s \"a\": v(s \"first\"), s \"b\": v(i 2)})"}},
    {.operation = "setValue empty map", .run = onProxy<P>([](P &p) { p.setValue("None", SettingsMap()); }),
     .member = "setValue", .signature = "sv", .wireArguments = {"s \"None\"", "v(a{sv} {})"}},
    {.operation = "setValue item", .run = onProxy<P>([](P &p) { p.setValue(1, "gain", QVariant(2.5)); }),
     .member = "setValue", .signature = "isv", .wireArguments = {"i 1", "s \"gain\"", "v(d 2.5)"}},
    {.operation = "setValue item, a variant holding the double",
     .run = onProxy<P>([](P &p) { p.setValue(1, "gain", QVariant(-3.75)); }), .member = "setValue", .signature = "isv",
     .arguments = {1, QStringLiteral("gain"), wrappedValue(-3.75)}},
    {.operation = "setValue item string",
     .run = onProxy<P>([](P &p) { p.setValue(0, "name", QVariant(QStringLiteral("Loud"))); }), .member = "setValue",
     .signature = "isv", .wireArguments = {"i 0", "s \"name\"", "v(s \"Loud\")"}},
    {.operation = "getAllKeys", .run = onProxy(&P::getAllKeys)},
    {.operation = "isKeyAvailable", .run = calling(&P::isKeyAvailable, "Quiet"), .signature = "s",
     .wireArguments = {"s \"Quiet\""}},
    {.operation = "getKeyPosition", .run = calling(&P::getKeyPosition, "Quiet"), .signature = "s",
     .wireArguments = {"s \"Quiet\""}},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable)},
    {.operation = "getValue position", .run = onProxy<P>([](P &p) { p.getValue(2); }), .member = "getValue",
     .signature = "i", .wireArguments = {"i 2"}},
    {.operation = "getValue item", .run = onProxy<P>([](P &p) { p.getValue(2, "gain"); }), .member = "getValue",
     .signature = "is", .wireArguments = {"i 2", "s \"gain\""}},
    {.operation = "getStringValue", .run = calling(&P::getStringValue, 3, "gain"), .signature = "is",
     .wireArguments = {"i 3", "s \"gain\""}},
    {.operation = "getString", .run = calling(&P::getString, 4), .signature = "i", .wireArguments = {"i 4"}},
    {.operation = "getMin", .run = calling(&P::getMin, 5, "gain"), .signature = "is",
     .wireArguments = {"i 5", "s \"gain\""}},
    {.operation = "getMax", .run = calling(&P::getMax, 6, "gain"), .signature = "is",
     .wireArguments = {"i 6", "s \"gain\""}},
    {.operation = "size", .run = onProxy(&P::size)},
    {.operation = "removeItem", .run = calling(&P::removeItem, 7), .signature = "i", .wireArguments = {"i 7"}},
    {.operation = "setToDefault", .run = onProxy(&P::setToDefault)},
};

const QList<OperationRow> absent{
    {.operation = "setValue map", .run = onProxy<P>([](P &p) { return p.setValue("Quiet", preset()); }),
     .empty = false},
    {.operation = "setValue item", .run = onProxy<P>([](P &p) { return p.setValue(0, "gain", QVariant(1)); }),
     .empty = false},
    {.operation = "getAllKeys", .run = onProxy(&P::getAllKeys), .empty = QStringList()},
    {.operation = "isKeyAvailable", .run = calling(&P::isKeyAvailable, "Quiet"), .empty = false},
    {.operation = "getKeyPosition", .run = calling(&P::getKeyPosition, "Quiet"), .empty = 0},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .empty = false},
    {.operation = "getValue position", .run = onProxy<P>([](P &p) { return p.getValue(0); }),
     .empty = QVariant(SettingsMap())},
    {.operation = "getValue item", .run = onProxy<P>([](P &p) { return p.getValue(0, "gain"); }), .empty = QVariant()},
    {.operation = "getStringValue", .run = calling(&P::getStringValue, 0, "gain"), .empty = QString()},
    {.operation = "getString", .run = calling(&P::getString, 0), .empty = QString()},
    {.operation = "getMin", .run = calling(&P::getMin, 0, "gain"), .empty = QVariant()},
    {.operation = "getMax", .run = calling(&P::getMax, 0, "gain"), .empty = QVariant()},
    {.operation = "size", .run = onProxy(&P::size), .empty = 0},
    {.operation = "removeItem", .run = calling(&P::removeItem, 0), .empty = false},
    {.operation = "setToDefault", .run = onProxy(&P::setToDefault), .empty = QVariant()},
};

/// The operations that hand back a reply: a value, or the empty one on any failure.
const QList<OperationRow> replies{
    {.operation = "setValue map", .run = onProxy<P>([](P &p) { return p.setValue("Quiet", preset()); }),
     .member = "setValue", .answered = true, .wrongType = 1, .empty = false},
    {.operation = "setValue item", .run = onProxy<P>([](P &p) { return p.setValue(0, "gain", QVariant(1.0)); }),
     .member = "setValue", .answered = true, .wrongType = QStringLiteral("ok"), .empty = false},
    {.operation = "getAllKeys", .run = onProxy(&P::getAllKeys),
     .answered = QStringList{QStringLiteral("Quiet"), QStringLiteral("Loud")}, .wrongType = 2, .empty = QStringList()},
    {.operation = "isKeyAvailable", .run = calling(&P::isKeyAvailable, "Quiet"), .answered = true, .wrongType = 1,
     .empty = false},
    {.operation = "getKeyPosition", .run = calling(&P::getKeyPosition, "Loud"), .answered = 1, .wrongType = true,
     .empty = 0},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .answered = true,
     .wrongType = QStringLiteral("true"), .empty = false},
    {.operation = "size", .run = onProxy(&P::size), .answered = 3, .wrongType = 3.0, .empty = 0},
    {.operation = "removeItem", .run = calling(&P::removeItem, 0), .answered = true, .wrongType = 1, .empty = false},
};

/// The checked getters' values: what they log is judged by the checked getters' rows.
const QList<OperationRow> checkedReplies{
    {.operation = "getValue position", .run = onProxy<P>([](P &p) { return p.getValue(0); }), .member = "getValue",
     .answered = QVariant(preset()), .seen = QVariant(preset()), .wrongType = QStringLiteral("Quiet"),
     .empty = QVariant(SettingsMap())},
    {.operation = "getValue item", .run = onProxy<P>([](P &p) { return p.getValue(0, "gain"); }), .member = "getValue",
     .answered = wrappedValue(2.5), .seen = QVariant(2.5), .wrongType = 2.5, .empty = QVariant()},
    {.operation = "getStringValue", .run = calling(&P::getStringValue, 0, "gain"), .answered = QStringLiteral("2.5 dB"),
     .seen = QStringLiteral("2.5 dB"), .wrongType = 2.5, .empty = QVariant(QString())},
    {.operation = "getString", .run = calling(&P::getString, 0), .answered = QStringLiteral("Quiet: 2.5 dB"),
     .seen = QStringLiteral("Quiet: 2.5 dB"), .wrongType = wrappedValue(QStringLiteral("Quiet")),
     .empty = QVariant(QString())},
    {.operation = "getMin", .run = calling(&P::getMin, 0, "gain"), .answered = wrappedValue(-10), .seen = QVariant(-10),
     .wrongType = -10, .empty = QVariant()},
    {.operation = "getMax", .run = calling(&P::getMax, 0, "gain"), .answered = wrappedValue(10.5),
     .seen = QVariant(10.5), .wrongType = QStringLiteral("10.5"), .empty = QVariant()},
};

const QList<OperationRow> invokedByName{
    {.operation = "getValue position", .run = byName<SettingsMap>("getValue(int)", 0), .member = "getValue",
     .signature = "i", .answered = QVariant(preset()), .wireArguments = {"i 0"}},
    {.operation = "setValue map",
     .run = byName<QDBusReply<bool>>("setValue(QString,QVariantMap)", QStringLiteral("Quiet"), preset()),
     .member = "setValue", .signature = "sv", .answered = true, .wireArguments = {"s \"Quiet\"", presetInAVariant}},
};

const QList<OperationRow> relayed{{.operation = "setupChanged()"}, {.operation = "setupBoundsChanged()"}};
// clang-format on

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

CompositeClass mapList()
{
    return {
        .className = "SetupMapListInterface",
        .path = path,
        .make = factoryOf<P>(),
        .sent = sent,
        .absent = absent,
        .checkedGetters = checkedGetters,
        .loggedErrors = {{"error", "no such position", "\"no such position\""},
                         {"error with quotes", "item \"gain\" unknown", "\"item \\\"gain\\\" unknown\""}},
        .setToDefault = onProxy(&P::setToDefault),
    };
}
} // namespace

class tst_SetupMapListInterface : public CompositeTest
{
    Q_OBJECT

public:
    tst_SetupMapListInterface()
        : CompositeTest(mapList())
    {
    }

private:
    P &proxy() { return ProxyTableTest::proxy<P>(); }

private Q_SLOTS:
    void mapsEachReply_data();
    void mapsEachReply() { verifyMappedReply(*m_fake, proxy()); }

    void getValueOfAPositionReadsTheWholeMap();
    void getValueOfAPositionLeavesNestedValuesAsArguments();
    void getValueOfAPositionKeepsRepeatedKeysAsQMapDoes();
    void variantGettersLeaveStructuredValuesAsArguments();
    void plainOperationsLogNothingOnFailure() { verifyPlainOperationsLogNothingWhenTheServiceIsAbsent(m_class); }

    void everyConstructionInstallsTheSettingsMapOperators();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult_data()
    {
        addByNameRows(m_className, invokedByName, checkedReplies + replies);
    }
    void invokingSlotsByNameGivesTheDirectResult() { verifyByNameRow(*m_fake, proxy()); }
    void relaysItsSignalsOfItsOwnObjectOnly_data() { addSignalRelayRows(m_className, relayed); }
    void relaysItsSignalsOfItsOwnObjectOnly() { verifySignalRelayRow(*m_fake, proxy()); }
};

void tst_SetupMapListInterface::mapsEachReply_data()
{
    addMappedReplyColumns();
    addMappedReplyTable(replies);
    addMappedReplyTable(checkedReplies, LogCheck::Unchecked, LogCheck::Unchecked);
}

void tst_SetupMapListInterface::getValueOfAPositionReadsTheWholeMap()
{
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant(preset())));

    const SettingsMap map = proxy().getValue(1);

    QCOMPARE(map, preset());
    QCOMPARE(map.keys(), QStringList({"active", "gain", "name"}));
    QCOMPARE(map.value(QStringLiteral("gain")).userType(), int(QMetaType::Double));
    QCOMPARE(map.value(QStringLiteral("active")).userType(), int(QMetaType::Bool));

    m_fake->answer("getValue", ScriptedAnswer::value(QVariant(SettingsMap())));
    QCOMPARE(proxy().getValue(1), SettingsMap());
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

    const SettingsMap map = proxy().getValue(0);

    QCOMPARE(map.size(), 3);
    QCOMPARE(map.value(QStringLiteral("name")), QVariant(QStringLiteral("Ramp")));
    verifyLeftAsArgument(map.value(QStringLiteral("limits")), "a{sv} {s \"high\": v(i 9), s \"low\": v(i 1)}");
    verifyLeftAsArgument(map.value(QStringLiteral("points")), "av [v(i 1), v(i 2)]");
}

void tst_SetupMapListInterface::getValueOfAPositionKeepsRepeatedKeysAsQMapDoes()
{
    verifyRepeatedKeysKeptAsQMapDoes(*m_fake, "getValue", [this] { return proxy().getValue(0); },
                                     {{"gain", 1}, {"gain", 2}, {"name", QStringLiteral("x")}});
}

void tst_SetupMapListInterface::variantGettersLeaveStructuredValuesAsArguments()
{
    const QVariant structured = QVariant(preset());
    m_fake->answer("getValue", ScriptedAnswer::value(wrappedValue(structured)));
    m_fake->answer("getMin", ScriptedAnswer::value(wrappedValue(QVariantList() << 1 << 2)));
    m_fake->answer("getMax", ScriptedAnswer::value(wrappedValue(structured)));

    verifyLeftAsArgument(proxy().getValue(0, "all"), presetOnTheWire);
    verifyLeftAsArgument(proxy().getMin(0, "all"), "av [v(i 1), v(i 2)]");
    verifyLeftAsArgument(proxy().getMax(0, "all"), presetOnTheWire);
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
        proxy().setValue("Quiet", map);
        QVERIFY(m_fake->waitForCalls(1));
        QCOMPARE(wireText(m_fake->calls().first().arguments.at(1)),
                 QStringLiteral("v(a{sv} {s \"gain\": v(i 1), s \"written by the stand-in\": v(b true)})"));
        QVERIFY(proxy().getValue(0).contains(QStringLiteral("read by the stand-in")));

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

void tst_SetupMapListInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    verifyOwnMethods(proxy(), {"setupChanged()", "setupBoundsChanged()"},
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
    verifyMetaCast(proxy(), "SetupMapListInterface");
    QCOMPARE(proxy().qt_metacast("SetupMapItemInterface"), nullptr);
}

QTEST_GUILESS_MAIN(tst_SetupMapListInterface)

#include "tst_setupmaplistinterface.moc"
