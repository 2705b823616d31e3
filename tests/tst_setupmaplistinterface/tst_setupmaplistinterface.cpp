#include "SetupMapListInterface.h"

#include "DBusTypes.h"
#include "ProxyClassTest.h"
#include "StructuredValues.h"

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
// Slots invoked by name give what the direct call gives; the getters with a log give an empty
// value and log one line on any failure.
const QList<OperationRow> replies{
    {.operation = "setValue map", .run = onProxy<P>([](P &p) { return p.setValue("Quiet", preset); }),
     .call = {.member = "setValue", .signature = "sv", .wireArguments = {"s \"Quiet\"", presetInAVariant}},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "setValue map by name",
     .run = byName<QDBusReply<bool>>("setValue(QString,QVariantMap)", QStringLiteral("Quiet"), preset),
     .call = {.member = "setValue", .signature = "sv", .wireArguments = {"s \"Quiet\"", presetInAVariant}},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "setValue item", .run = onProxy<P>([](P &p) { return p.setValue(1, "gain", QVariant(2.5)); }),
     .call = {.member = "setValue", .signature = "isv", .wireArguments = {"i 1", "s \"gain\"", "v(d 2.5)"}},
     .reply = {.answered = true, .wrongType = QStringLiteral("ok"), .empty = false}},
    {.operation = "getAllKeys", .run = onProxy(&P::getAllKeys), .call = {.member = "getAllKeys"},
     .reply = {.answered = QStringList{"Quiet", "Loud"}, .wrongType = 2, .empty = QStringList()}},
    {.operation = "isKeyAvailable", .run = calling(&P::isKeyAvailable, "Quiet"),
     .call = {.member = "isKeyAvailable", .signature = "s", .wireArguments = quiet},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "getKeyPosition", .run = calling(&P::getKeyPosition, "Quiet"),
     .call = {.member = "getKeyPosition", .signature = "s", .wireArguments = quiet},
     .reply = {.answered = 1, .wrongType = true, .empty = 0}},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .call = {.member = "isChangeable"},
     .reply = {.answered = true, .wrongType = QStringLiteral("true"), .empty = false}},
    {.operation = "getValue position", .run = onProxy<P>([](P &p) { return p.getValue(2); }),
     .call = {.member = "getValue", .signature = "i", .wireArguments = {"i 2"}},
     .reply = {.answered = preset, .wrongType = QStringLiteral("Quiet"), .empty = SettingsMap()},
     .log = judgedAs<P, SettingsMap>("getValue", QStringLiteral("Quiet"))},
    {.operation = "getValue position by name", .run = byName<SettingsMap>("getValue(int)", 0),
     .call = {.member = "getValue", .signature = "i", .wireArguments = {"i 0"}},
     .reply = {.answered = preset, .wrongType = 2.5, .empty = SettingsMap()},
     .log = judgedAs<P, SettingsMap>("getValue", 2.5)},
    {.operation = "getValue item", .run = onProxy<P>([](P &p) { return p.getValue(2, "gain"); }),
     .call = {.member = "getValue", .signature = "is", .wireArguments = {"i 2", "s \"gain\""}},
     .reply = {.answered = wrappedValue(2.5), .seen = 2.5, .wrongType = 2.5},
     .log = judgedAs<P, QDBusVariant>("getValue", 2.5)},
    {.operation = "getStringValue", .run = calling(&P::getStringValue, 3, "gain"),
     .call = {.member = "getStringValue", .signature = "is", .wireArguments = {"i 3", "s \"gain\""}},
     .reply = {.answered = QStringLiteral("2.5 dB"), .wrongType = 2.5, .empty = QString()},
     .log = judgedAs<P, QString>("getStringValue", 2.5)},
    {.operation = "getString", .run = calling(&P::getString, 4),
     .call = {.member = "getString", .signature = "i", .wireArguments = {"i 4"}},
     .reply = {.answered = QStringLiteral("Quiet: 2.5 dB"), .wrongType = wrappedValue(QStringLiteral("Quiet")),
               .empty = QString()},
     .log = judgedAs<P, QString>("getString", wrappedValue(QStringLiteral("Quiet")))},
    {.operation = "getMin", .run = calling(&P::getMin, 5, "gain"),
     .call = {.member = "getMin", .signature = "is", .wireArguments = {"i 5", "s \"gain\""}},
     .reply = {.answered = wrappedValue(-10), .seen = -10, .wrongType = -10},
     .log = judgedAs<P, QDBusVariant>("getMin", -10)},
    {.operation = "getMax", .run = calling(&P::getMax, 6, "gain"),
     .call = {.member = "getMax", .signature = "is", .wireArguments = {"i 6", "s \"gain\""}},
     .reply = {.answered = wrappedValue(10.5), .seen = 10.5, .wrongType = QStringLiteral("10.5")},
     .log = judgedAs<P, QDBusVariant>("getMax", QStringLiteral("10.5"))},
    {.operation = "size", .run = onProxy(&P::size), .call = {.member = "size"},
     .reply = {.answered = 3, .wrongType = 3.0, .empty = 0}},
    {.operation = "removeItem", .run = calling(&P::removeItem, 7),
     .call = {.member = "removeItem", .signature = "i", .wireArguments = {"i 7"}},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
};

// Maps go out inside a variant, their keys in ascending order.
const QList<OperationRow> sent{
    {.operation = "setValue map, keys in ascending order",
     .run = onProxy<P>([](P &p) { p.setValue("Mixed", SettingsMap{{"b", 2}, {"a", QStringLiteral("first")}}); }),
     .call = {.member = "setValue", .signature = "sv",
              .wireArguments = {"s \"Mixed\"", "v(a{sv} {s \"a\": v(s \"first\"), s \"b\": v(i 2)})"}}},
    {.operation = "setValue empty map", .run = onProxy<P>([](P &p) { p.setValue("None", SettingsMap()); }),
     .call = {.member = "setValue", .signature = "sv", .wireArguments = {"s \"None\"", "v(a{sv} {})"}}},
    {.operation = "setValue item, a variant holding the double",
     .run = onProxy<P>([](P &p) { p.setValue(1, "gain", QVariant(-3.75)); }),
     .call = {.member = "setValue", .signature = "isv", .arguments = {1, QStringLiteral("gain"), wrappedValue(-3.75)}}},
    {.operation = "setValue item string",
     .run = onProxy<P>([](P &p) { p.setValue(0, "name", QVariant(QStringLiteral("Loud"))); }),
     .call = {.member = "setValue", .signature = "isv", .wireArguments = {"i 0", "s \"name\"", "v(s \"Loud\")"}}},
};
// clang-format on

ProxyClassTable mapList()
{
    return {
        .className = "SetupMapListInterface",
        .path = path,
        .make = factoryOf<P>(),
        .sent = sent,
        .replies = replies,
        .errors = {{"error", "no such position", "\"no such position\""},
                   {"error with quotes", "item \"gain\" unknown", "\"item \\\"gain\\\" unknown\""}},
        .setToDefault = {.operation = "setToDefault",
                         .run = onProxy(&P::setToDefault),
                         .call = {.member = "setToDefault"}},
        .signalSignatures = {"setupChanged()", "setupBoundsChanged()"},
        .slotSignatures = {"setValue(QString,QVariantMap)", "setValue(int,QString,QVariant)", "getAllKeys()",
                           "isKeyAvailable(QString)", "getKeyPosition(QString)", "isChangeable()",
                           "SettingsMap getValue(int)", "QVariant getValue(int,QString)", "getStringValue(int,QString)",
                           "QString getString(int)", "getMin(int,QString)", "getMax(int,QString)", "size()",
                           "QDBusReply<bool> removeItem(int)", "void setToDefault()"},
        .otherClasses = {"SetupMapItemInterface"},
        .relayed = {{.operation = "setupChanged()", .call = {.member = "setupChanged"}},
                    {.operation = "setupBoundsChanged()", .call = {.member = "setupBoundsChanged"}}},
    };
}
} // namespace

class tst_SetupMapListInterface : public ProxyClassTest
{
    Q_OBJECT

public:
    tst_SetupMapListInterface()
        : ProxyClassTest(mapList())
    {
    }

private:
    P &proxy() { return ProxyClassTest::proxy<P>(); }

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
