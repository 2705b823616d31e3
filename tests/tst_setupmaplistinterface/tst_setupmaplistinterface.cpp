#include "SetupMapListInterface.h"

#include "CompositeTest.h"
#include "DBusTypes.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QtTest/QTest>

namespace {
using P = SetupMapListInterface;
const QString path = QStringLiteral("/Setup/Presets");

const SettingsMap preset{{"name", QStringLiteral("Quiet")}, {"gain", 2.5}, {"active", true}};

const QString presetOnTheWire =
    QStringLiteral("a{sv} {s \"active\": v(b true), s \"gain\": v(d 2.5), s \"name\": v(s \"Quiet\")}");
const QString presetInAVariant = "v(" + presetOnTheWire + ")";

const QStringList quiet{"s \"Quiet\""};

// clang-format off
// Slots invoked by name give what the direct call gives.
const QList<OperationRow> replies{
    {.operation = "setValue map", .run = onProxy<P>([](P &p) { return p.setValue("Quiet", preset); }),
     .signature = "sv", .answered = true, .wrongType = 1, .empty = false,
     .wireArguments = {"s \"Quiet\"", presetInAVariant}},
    {.operation = "setValue map by name",
     .run = byName<QDBusReply<bool>>("setValue(QString,QVariantMap)", QStringLiteral("Quiet"), preset),
     .signature = "sv", .answered = true, .wrongType = 1, .empty = false,
     .wireArguments = {"s \"Quiet\"", presetInAVariant}},
    {.operation = "setValue item", .run = onProxy<P>([](P &p) { return p.setValue(1, "gain", QVariant(2.5)); }),
     .signature = "isv", .answered = true, .wrongType = QStringLiteral("ok"), .empty = false,
     .wireArguments = {"i 1", "s \"gain\"", "v(d 2.5)"}},
    {.operation = "getAllKeys", .run = onProxy(&P::getAllKeys), .answered = QStringList{"Quiet", "Loud"},
     .wrongType = 2, .empty = QStringList()},
    {.operation = "isKeyAvailable", .run = calling(&P::isKeyAvailable, "Quiet"), .signature = "s", .answered = true,
     .wrongType = 1, .empty = false, .wireArguments = quiet},
    {.operation = "getKeyPosition", .run = calling(&P::getKeyPosition, "Quiet"), .signature = "s", .answered = 1,
     .wrongType = true, .empty = 0, .wireArguments = quiet},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .answered = true,
     .wrongType = QStringLiteral("true"), .empty = false},
    {.operation = "getValue position", .run = onProxy<P>([](P &p) { return p.getValue(2); }), .signature = "i",
     .answered = preset, .wrongType = QStringLiteral("Quiet"), .empty = SettingsMap(), .wireArguments = {"i 2"}},
    {.operation = "getValue position by name", .run = byName<SettingsMap>("getValue(int)", 0), .signature = "i",
     .answered = preset, .wrongType = 2.5, .empty = SettingsMap(), .wireArguments = {"i 0"}},
    {.operation = "getValue item", .run = onProxy<P>([](P &p) { return p.getValue(2, "gain"); }), .signature = "is",
     .answered = wrappedValue(2.5), .seen = 2.5, .wrongType = 2.5, .wireArguments = {"i 2", "s \"gain\""}},
    {.operation = "getStringValue", .run = calling(&P::getStringValue, 3, "gain"), .signature = "is",
     .answered = QStringLiteral("2.5 dB"), .wrongType = 2.5, .empty = QString(),
     .wireArguments = {"i 3", "s \"gain\""}},
    {.operation = "getString", .run = calling(&P::getString, 4), .signature = "i",
     .answered = QStringLiteral("Quiet: 2.5 dB"), .wrongType = wrappedValue(QStringLiteral("Quiet")),
     .empty = QString(), .wireArguments = {"i 4"}},
    {.operation = "getMin", .run = calling(&P::getMin, 5, "gain"), .signature = "is", .answered = wrappedValue(-10),
     .seen = -10, .wrongType = -10, .wireArguments = {"i 5", "s \"gain\""}},
    {.operation = "getMax", .run = calling(&P::getMax, 6, "gain"), .signature = "is", .answered = wrappedValue(10.5),
     .seen = 10.5, .wrongType = QStringLiteral("10.5"), .wireArguments = {"i 6", "s \"gain\""}},
    {.operation = "size", .run = onProxy(&P::size), .answered = 3, .wrongType = 3.0, .empty = 0},
    {.operation = "removeItem", .run = calling(&P::removeItem, 7), .signature = "i", .answered = true, .wrongType = 1,
     .empty = false, .wireArguments = {"i 7"}},
};

// Maps go out inside a variant, their keys in ascending order.
const QList<OperationRow> sent{
    {.operation = "setValue map, keys in ascending order",
     .run = onProxy<P>([](P &p) { p.setValue("Mixed", SettingsMap{{"b", 2}, {"a", QStringLiteral("first")}}); }),
     .signature = "sv", .wireArguments = {"s \"Mixed\"", "v(a{sv} {s \"a\": v(s \"first\"), s \"b\": v(i 2)})"}},
    {.operation = "setValue empty map", .run = onProxy<P>([](P &p) { p.setValue("None", SettingsMap()); }),
     .signature = "sv", .wireArguments = {"s \"None\"", "v(a{sv} {})"}},
    {.operation = "setValue item, a variant holding the double",
     .run = onProxy<P>([](P &p) { p.setValue(1, "gain", QVariant(-3.75)); }), .signature = "isv",
     .arguments = {1, QStringLiteral("gain"), wrappedValue(-3.75)}},
    {.operation = "setValue item string",
     .run = onProxy<P>([](P &p) { p.setValue(0, "name", QVariant(QStringLiteral("Loud"))); }), .signature = "isv",
     .wireArguments = {"i 0", "s \"name\"", "v(s \"Loud\")"}},
};

// An empty value and one line on any failure.
const QList<OperationRow> checkedGetters{
    {.operation = "getValue position", .wrongType = 5, .typeError = replyTypeError<SettingsMap>(5)},
    {.operation = "getValue item", .wrongType = 5, .typeError = replyTypeError<QDBusVariant>(5)},
    {.operation = "getStringValue", .wrongType = 5, .typeError = replyTypeError<QString>(5)},
    {.operation = "getString", .wrongType = true, .typeError = replyTypeError<QString>(true)},
    {.operation = "getMin", .wrongType = 5, .typeError = replyTypeError<QDBusVariant>(5)},
    {.operation = "getMax", .wrongType = 5.5, .typeError = replyTypeError<QDBusVariant>(5.5)},
};
// clang-format on

CompositeClass mapList()
{
    return {
        .className = "SetupMapListInterface",
        .path = path,
        .make = factoryOf<P>(),
        .sent = sent,
        .replies = replies,
        .checkedGetters = checkedGetters,
        .loggedErrors = {{"error", "no such position", "\"no such position\""},
                         {"error with quotes", "item \"gain\" unknown", "\"item \\\"gain\\\" unknown\""}},
        .setToDefault = onProxy(&P::setToDefault),
        .relayed = {{.operation = "setupChanged()"}, {.operation = "setupBoundsChanged()"}},
        .otherClassNames = {"SetupMapItemInterface"},
        .signalSignatures = {"setupChanged()", "setupBoundsChanged()"},
        .slotSignatures = {"setValue(QString,QVariantMap)", "setValue(int,QString,QVariant)", "getAllKeys()",
                           "isKeyAvailable(QString)", "getKeyPosition(QString)", "isChangeable()", "getValue(int)",
                           "getValue(int,QString)", "getStringValue(int,QString)", "getString(int)",
                           "getMin(int,QString)", "getMax(int,QString)", "size()", "removeItem(int)", "setToDefault()"},
        .returnTypes = {{"getValue(int)", "SettingsMap"},
                        {"getValue(int,QString)", "QVariant"},
                        {"getString(int)", "QString"},
                        {"removeItem(int)", "QDBusReply<bool>"},
                        {"setToDefault()", "void"}},
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
    void getValueOfAPositionReadsTheWholeMap();
    void getValueOfAPositionLeavesNestedValuesAsArguments();
    void getValueOfAPositionKeepsRepeatedKeysAsQMapDoes();
    void variantGettersLeaveStructuredValuesAsArguments();
    void everyConstructionInstallsTheSettingsMapOperators();
};

void tst_SetupMapListInterface::getValueOfAPositionReadsTheWholeMap()
{
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant(preset)));

    const SettingsMap map = proxy().getValue(1);

    QCOMPARE(map, preset);
    QCOMPARE(map.keys(), QStringList({"active", "gain", "name"}));
    QCOMPARE(map.value(QStringLiteral("gain")).userType(), int(QMetaType::Double));
    QCOMPARE(map.value(QStringLiteral("active")).userType(), int(QMetaType::Bool));

    m_fake->answer("getValue", ScriptedAnswer::value(QVariant(SettingsMap())));
    QCOMPARE(proxy().getValue(1), SettingsMap());
}

void tst_SetupMapListInterface::getValueOfAPositionLeavesNestedValuesAsArguments()
{
    const SettingsMap outer{{"limits", SettingsMap{{"low", 1}, {"high", 9}}},
                            {"points", QVariantList{1, 2}},
                            {"name", QStringLiteral("Ramp")}};
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
    const QVariant structured(preset);
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
    const SettingsMap map{{"gain", 1}};
    const QString plain = QStringLiteral("v(a{sv} {s \"gain\": v(i 1)})");

    for (int round = 0; round < 2; ++round) {
        MarkingSettingsMap::install(QMetaType::QVariantMap);
        // The stand-ins are in force for a proxy constructed before them...
        m_fake->clearCalls();
        m_fake->answer("getValue", ScriptedAnswer::value(QVariant(map)));
        proxy().setValue("Quiet", map);
        QVERIFY(m_fake->waitForCalls(1));
        QCOMPARE(wireText(m_fake->calls().first().arguments.at(1)),
                 QStringLiteral("v(a{sv} {s \"gain\": v(i 1), s \"written by the stand-in\": v(s \"yes\")})"));
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

QTEST_GUILESS_MAIN(tst_SetupMapListInterface)

#include "tst_setupmaplistinterface.moc"
