#include "SetupMapListInterface.h"

#include "DBusCompat_p.h"
#include "DBusTypes.h"
#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"
#include "WireText.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusVariant>
#include <QtTest/QTest>

#include <functional>
#include <memory>

using Operation = std::function<Outcome(SetupMapListInterface &)>;
Q_DECLARE_METATYPE(Operation)

using Getter = std::function<QVariant(SetupMapListInterface &)>;
Q_DECLARE_METATYPE(Getter)

namespace {
const QString path = QStringLiteral("/Setup/Presets");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");

QVariant wrappedValue(const QVariant &value)
{
    return QVariant::fromValue(QDBusVariant(value));
}

SettingsMap preset()
{
    SettingsMap map;
    map.insert(QStringLiteral("name"), QStringLiteral("Quiet"));
    map.insert(QStringLiteral("gain"), 2.5);
    map.insert(QStringLiteral("active"), true);
    return map;
}

/// What a checked getter's caller sees: the plain value and whether it counts as present.
Outcome plainOutcome(const QVariant &value, bool present)
{
    return {present, value};
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

class tst_SetupMapListInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void sendsTheMapInsideAVariantNeverBare();
    void sendsAPositionAnItemAndAVariantHoldingTheDouble();
    void mapsEachReply_data();
    void mapsEachReply();
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

private:
    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<SetupMapListInterface> m_proxy;
};

void tst_SetupMapListInterface::init()
{
    m_fake.reset(new FakeMeasApplication);
    m_proxy.reset(new SetupMapListInterface(m_fake->service(), path, QDBusConnection::sessionBus()));
}

void tst_SetupMapListInterface::cleanup()
{
    m_proxy.reset();
    m_fake.reset();
}

void tst_SetupMapListInterface::sendsEachOperationWithItsWireForm_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<QStringList>("arguments");

    const auto op = [](std::function<void(SetupMapListInterface &)> call) {
        return Operation([call](SetupMapListInterface &proxy) {
            call(proxy);
            return Outcome{};
        });
    };
    QTest::newRow("setValue map") << op([](SetupMapListInterface &p) { p.setValue("Quiet", preset()); }) << "setValue"
                                  << "sv"
                                  << QStringList{"s \"Quiet\"",
                                                 "v(a{sv} {s \"active\": v(b true), s \"gain\": v(d "
                                                 "2.5), s \"name\": v(s \"Quiet\")})"};
    QTest::newRow("setValue empty map") << op([](SetupMapListInterface &p) { p.setValue("None", SettingsMap()); })
                                        << "setValue"
                                        << "sv" << QStringList{"s \"None\"", "v(a{sv} {})"};
    QTest::newRow("setValue item") << op([](SetupMapListInterface &p) { p.setValue(1, "gain", QVariant(2.5)); })
                                   << "setValue"
                                   << "isv" << QStringList{"i 1", "s \"gain\"", "v(d 2.5)"};
    QTest::newRow("setValue item string")
        << op([](SetupMapListInterface &p) { p.setValue(0, "name", QVariant(QStringLiteral("Loud"))); }) << "setValue"
        << "isv" << QStringList{"i 0", "s \"name\"", "v(s \"Loud\")"};
    QTest::newRow("getAllKeys") << op([](SetupMapListInterface &p) { p.getAllKeys(); }) << "getAllKeys"
                                << "" << QStringList{};
    QTest::newRow("isKeyAvailable") << op([](SetupMapListInterface &p) { p.isKeyAvailable("Quiet"); })
                                    << "isKeyAvailable"
                                    << "s" << QStringList{"s \"Quiet\""};
    QTest::newRow("getKeyPosition") << op([](SetupMapListInterface &p) { p.getKeyPosition("Quiet"); })
                                    << "getKeyPosition"
                                    << "s" << QStringList{"s \"Quiet\""};
    QTest::newRow("isChangeable") << op([](SetupMapListInterface &p) { p.isChangeable(); }) << "isChangeable"
                                  << "" << QStringList{};
    QTest::newRow("getValue position") << op([](SetupMapListInterface &p) { p.getValue(2); }) << "getValue"
                                       << "i" << QStringList{"i 2"};
    QTest::newRow("getValue item") << op([](SetupMapListInterface &p) { p.getValue(2, "gain"); }) << "getValue"
                                   << "is" << QStringList{"i 2", "s \"gain\""};
    QTest::newRow("getStringValue") << op([](SetupMapListInterface &p) { p.getStringValue(3, "gain"); })
                                    << "getStringValue"
                                    << "is" << QStringList{"i 3", "s \"gain\""};
    QTest::newRow("getString") << op([](SetupMapListInterface &p) { p.getString(4); }) << "getString"
                               << "i" << QStringList{"i 4"};
    QTest::newRow("getMin") << op([](SetupMapListInterface &p) { p.getMin(5, "gain"); }) << "getMin"
                            << "is" << QStringList{"i 5", "s \"gain\""};
    QTest::newRow("getMax") << op([](SetupMapListInterface &p) { p.getMax(6, "gain"); }) << "getMax"
                            << "is" << QStringList{"i 6", "s \"gain\""};
    QTest::newRow("size") << op([](SetupMapListInterface &p) { p.size(); }) << "size"
                          << "" << QStringList{};
    QTest::newRow("removeItem") << op([](SetupMapListInterface &p) { p.removeItem(7); }) << "removeItem"
                                << "i" << QStringList{"i 7"};
    QTest::newRow("setToDefault") << op([](SetupMapListInterface &p) { p.setToDefault(); }) << "setToDefault"
                                  << "" << QStringList{};
}

void tst_SetupMapListInterface::sendsEachOperationWithItsWireForm()
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);
    QFETCH(QString, signature);
    QFETCH(QStringList, arguments);

    LogCapture log;
    m_fake->answer(member, ScriptedAnswer::reply());
    operation(*m_proxy);
    verifySingleWireCall(*m_fake, path, member, signature, arguments);
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
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QVariant>("value");

    const ScriptedAnswer error = ScriptedAnswer::error(failure, QStringLiteral("refused"));
    const auto rows = [&](const char *name, const char *member, Operation op, const QVariant &good,
                          const QVariant &wrongType, const QVariant &defaultValue) {
        QTest::addRow("%s answered", name) << op << member << ScriptedAnswer::value(good) << true << good;
        QTest::addRow("%s error", name) << op << member << error << false << defaultValue;
        QTest::addRow("%s wrong type", name)
            << op << member << ScriptedAnswer::value(wrongType) << false << defaultValue;
    };
    rows(
        "setValue map", "setValue", [](SetupMapListInterface &p) { return outcomeOf(p.setValue("Quiet", preset())); },
        true, 1, false);
    rows(
        "setValue item", "setValue",
        [](SetupMapListInterface &p) { return outcomeOf(p.setValue(0, "gain", QVariant(1.0))); }, true,
        QStringLiteral("ok"), false);
    rows(
        "getAllKeys", "getAllKeys", [](SetupMapListInterface &p) { return outcomeOf(p.getAllKeys()); },
        QStringList{QStringLiteral("Quiet"), QStringLiteral("Loud")}, 2, QStringList());
    rows(
        "isKeyAvailable", "isKeyAvailable",
        [](SetupMapListInterface &p) { return outcomeOf(p.isKeyAvailable("Quiet")); }, true, 1, false);
    rows(
        "getKeyPosition", "getKeyPosition",
        [](SetupMapListInterface &p) { return outcomeOf(p.getKeyPosition("Loud")); }, 1, true, 0);
    rows(
        "isChangeable", "isChangeable", [](SetupMapListInterface &p) { return outcomeOf(p.isChangeable()); }, true,
        QStringLiteral("true"), false);
    rows(
        "size", "size", [](SetupMapListInterface &p) { return outcomeOf(p.size()); }, 3, 3.0, 0);
    rows(
        "removeItem", "removeItem", [](SetupMapListInterface &p) { return outcomeOf(p.removeItem(0)); }, true, 1,
        false);

    // Checked getters hand back plain values: "valid" here says the value is not the
    // empty one (an empty map, an invalid variant, a null string).
    const auto checkedRows = [&](const char *name, const char *member, Operation op, const QVariant &answered,
                                 const QVariant &good, const QVariant &wrongType, const QVariant &empty) {
        QTest::addRow("%s answered", name) << op << member << ScriptedAnswer::value(answered) << true << good;
        QTest::addRow("%s error", name) << op << member << error << false << empty;
        QTest::addRow("%s wrong type", name) << op << member << ScriptedAnswer::value(wrongType) << false << empty;
        QTest::addRow("%s no value", name) << op << member << ScriptedAnswer::reply() << false << empty;
    };
    checkedRows(
        "getValue position", "getValue",
        [](SetupMapListInterface &p) {
            const SettingsMap map = p.getValue(0);
            return plainOutcome(map, !map.isEmpty());
        },
        QVariant(preset()), QVariant(preset()), QStringLiteral("Quiet"), QVariant(SettingsMap()));
    checkedRows(
        "getValue item", "getValue",
        [](SetupMapListInterface &p) {
            const QVariant value = p.getValue(0, "gain");
            return plainOutcome(value, value.isValid());
        },
        wrappedValue(2.5), QVariant(2.5), 2.5, QVariant());
    checkedRows(
        "getStringValue", "getStringValue",
        [](SetupMapListInterface &p) {
            const QString text = p.getStringValue(0, "gain");
            return plainOutcome(text, !text.isNull());
        },
        QStringLiteral("2.5 dB"), QStringLiteral("2.5 dB"), 2.5, QVariant(QString()));
    checkedRows(
        "getString", "getString",
        [](SetupMapListInterface &p) {
            const QString text = p.getString(0);
            return plainOutcome(text, !text.isNull());
        },
        QStringLiteral("Quiet: 2.5 dB"), QStringLiteral("Quiet: 2.5 dB"), wrappedValue(QStringLiteral("Quiet")),
        QVariant(QString()));
    checkedRows(
        "getMin", "getMin",
        [](SetupMapListInterface &p) {
            const QVariant value = p.getMin(0, "gain");
            return plainOutcome(value, value.isValid());
        },
        wrappedValue(-10), QVariant(-10), -10, QVariant());
    checkedRows(
        "getMax", "getMax",
        [](SetupMapListInterface &p) {
            const QVariant value = p.getMax(0, "gain");
            return plainOutcome(value, value.isValid());
        },
        wrappedValue(10.5), QVariant(10.5), QStringLiteral("10.5"), QVariant());
}

void tst_SetupMapListInterface::mapsEachReply()
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);
    QFETCH(ScriptedAnswer, answer);
    QFETCH(bool, valid);
    QFETCH(QVariant, value);

    LogCapture log;
    m_fake->answer(member, answer);
    const Outcome outcome = operation(*m_proxy);
    QCOMPARE(outcome.valid, valid);
    QCOMPARE(outcome.value.userType(), value.userType());
    QCOMPARE(outcome.value, value);
}

void tst_SetupMapListInterface::givesEmptyValuesWhenTheServiceIsAbsent()
{
    LogCapture log;
    SetupMapListInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const QDBusReply<bool> set = proxy.setValue("Quiet", preset());
    QVERIFY(!set.isValid());
    QCOMPARE(set.value(), false);
    QCOMPARE(set.error().type(), QDBusError::ServiceUnknown);
    QVERIFY(!proxy.setValue(0, "gain", QVariant(1)).isValid());
    QVERIFY(!proxy.getAllKeys().isValid());
    QVERIFY(!proxy.isKeyAvailable("Quiet").isValid());
    QCOMPARE(proxy.getKeyPosition("Quiet").value(), 0);
    QVERIFY(!proxy.getKeyPosition("Quiet").isValid());
    QVERIFY(!proxy.isChangeable().isValid());
    QCOMPARE(proxy.getValue(0), SettingsMap());
    QVERIFY(!proxy.getValue(0, "gain").isValid());
    QVERIFY(proxy.getStringValue(0, "gain").isNull());
    QVERIFY(proxy.getString(0).isNull());
    QVERIFY(!proxy.getMin(0, "gain").isValid());
    QVERIFY(!proxy.getMax(0, "gain").isValid());
    QVERIFY(!proxy.size().isValid());
    QVERIFY(!proxy.removeItem(0).isValid());
    QCOMPARE(proxy.removeItem(0).value(), false);
    proxy.setToDefault();
    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
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
    QDBusArgument repeated;
    repeated.beginMap(QMetaType::QString, qMetaTypeId<QDBusVariant>());
    repeated.beginMapEntry();
    repeated << QStringLiteral("gain") << QDBusVariant(1);
    repeated.endMapEntry();
    repeated.beginMapEntry();
    repeated << QStringLiteral("gain") << QDBusVariant(2);
    repeated.endMapEntry();
    repeated.beginMapEntry();
    repeated << QStringLiteral("name") << QDBusVariant(QStringLiteral("x"));
    repeated.endMapEntry();
    repeated.endMap();
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant::fromValue(repeated)));

    LogCapture log;
    const SettingsMap map = m_proxy->getValue(0);

    // Qt 5's QMap keeps both entries of a repeated key, Qt 6's keeps the later one; the
    // expectation is built by the same insertion the reader uses.
    SettingsMap expected;
    DBusCompat::insertMulti(expected, QStringLiteral("gain"), QVariant(1));
    DBusCompat::insertMulti(expected, QStringLiteral("gain"), QVariant(2));
    DBusCompat::insertMulti(expected, QStringLiteral("name"), QVariant(QStringLiteral("x")));
    QCOMPARE(map, expected);
    QCOMPARE(map.count(QStringLiteral("gain")), expected.count(QStringLiteral("gain")));
    QCOMPARE(map.value(QStringLiteral("gain")), QVariant(2));
    QCOMPARE(log.lines(), QList<LogLine>());
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
    QTest::addColumn<Getter>("getter");
    QTest::addColumn<QString>("member");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<QString>("line");

    const QString service = FakeMeasApplication::serviceFor(QStringLiteral("fake"));
    const auto line = [&](const char *literal, const QString &message) {
        return QString::fromLatin1(literal) + " " + debugQuoted(service) +
            "  /  \"/Setup/Presets\"  / Error: " + debugQuoted(message);
    };
    const auto rows = [&](const char *name, const char *member, Getter getter, const char *literal,
                          const QVariant &wrongType, const QString &typeError) {
        QTest::addRow("%s error", name) << getter << member
                                        << ScriptedAnswer::error(failure, QStringLiteral("no such position"))
                                        << line(literal, QStringLiteral("no such position"));
        QTest::addRow("%s error with quotes", name)
            << getter << member << ScriptedAnswer::error(failure, QStringLiteral("item \"gain\" unknown"))
            << line(literal, QStringLiteral("item \"gain\" unknown"));
        QTest::addRow("%s wrong type", name)
            << getter << member << ScriptedAnswer::value(wrongType) << line(literal, typeError);
    };
    rows(
        "getValue position", "getValue", [](SetupMapListInterface &p) { return QVariant(p.getValue(0)); },
        "SetupMapListInterface::getValue(): ", 5, replyTypeError<SettingsMap>(5));
    rows(
        "getValue item", "getValue", [](SetupMapListInterface &p) { return p.getValue(0, "gain"); },
        "SetupMapListInterface::getValue(): ", 5, replyTypeError<QDBusVariant>(5));
    rows(
        "getStringValue", "getStringValue",
        [](SetupMapListInterface &p) { return QVariant(p.getStringValue(0, "gain")); },
        "SetupMapListInterface::getStringValue(): ", 5, replyTypeError<QString>(5));
    rows(
        "getString", "getString", [](SetupMapListInterface &p) { return QVariant(p.getString(0)); },
        "SetupMapListInterface::getString(): ", true, replyTypeError<QString>(true));
    rows(
        "getMin", "getMin", [](SetupMapListInterface &p) { return p.getMin(0, "gain"); },
        "SetupMapListInterface::getMin(): ", 5, replyTypeError<QDBusVariant>(5));
    rows(
        "getMax", "getMax", [](SetupMapListInterface &p) { return p.getMax(0, "gain"); },
        "SetupMapListInterface::getMax(): ", 5.5, replyTypeError<QDBusVariant>(5.5));
}

void tst_SetupMapListInterface::checkedGettersLogOneLinePerFailure()
{
    QFETCH(Getter, getter);
    QFETCH(QString, member);
    QFETCH(ScriptedAnswer, answer);
    QFETCH(QString, line);

    QCOMPARE(m_fake->service(), FakeMeasApplication::serviceFor(QStringLiteral("fake")));
    LogCapture log;
    m_fake->answer(member, answer);

    getter(*m_proxy);

    QCOMPARE(log.lines(), debugLines({line}));
}

void tst_SetupMapListInterface::checkedGettersLogOneLineWhenTheServiceIsAbsent_data()
{
    QTest::addColumn<Getter>("getter");
    QTest::addColumn<QString>("literal");
    QTest::addColumn<QVariant>("empty");

    QTest::newRow("getValue position") << Getter([](SetupMapListInterface &p) { return QVariant(p.getValue(0)); })
                                       << "SetupMapListInterface::getValue(): " << QVariant(SettingsMap());
    QTest::newRow("getValue item") << Getter([](SetupMapListInterface &p) { return p.getValue(0, "gain"); })
                                   << "SetupMapListInterface::getValue(): " << QVariant();
    QTest::newRow("getStringValue") << Getter([](SetupMapListInterface &p) {
        return QVariant(p.getStringValue(0, "gain"));
    })
                                    << "SetupMapListInterface::getStringValue(): " << QVariant(QString());
    QTest::newRow("getString") << Getter([](SetupMapListInterface &p) { return QVariant(p.getString(0)); })
                               << "SetupMapListInterface::getString(): " << QVariant(QString());
    QTest::newRow("getMin") << Getter([](SetupMapListInterface &p) { return p.getMin(0, "gain"); })
                            << "SetupMapListInterface::getMin(): " << QVariant();
    QTest::newRow("getMax") << Getter([](SetupMapListInterface &p) { return p.getMax(0, "gain"); })
                            << "SetupMapListInterface::getMax(): " << QVariant();
}

void tst_SetupMapListInterface::checkedGettersLogOneLineWhenTheServiceIsAbsent()
{
    QFETCH(Getter, getter);
    QFETCH(QString, literal);
    QFETCH(QVariant, empty);

    LogCapture log;
    SetupMapListInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const QVariant value = getter(proxy);

    QCOMPARE(value.userType(), empty.userType());
    QCOMPARE(value, empty);
    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
    const QString message = proxy.lastError().message();
    QVERIFY(message.contains(absentService()));
    QCOMPARE(
        log.lines(),
        debugLines({literal + " \"com.velk.mqx.app.absent\"  /  \"/Setup/Presets\"  / Error: \"" + message + "\""}));
}

void tst_SetupMapListInterface::plainOperationsLogNothingOnFailure()
{
    LogCapture log;
    SetupMapListInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    proxy.setValue("Quiet", preset());
    proxy.setValue(0, "gain", QVariant(1));
    proxy.getAllKeys();
    proxy.isKeyAvailable("Quiet");
    proxy.getKeyPosition("Quiet");
    proxy.isChangeable();
    proxy.size();
    proxy.removeItem(0);
    proxy.setToDefault();

    QCOMPARE(log.lines(), QList<LogLine>());
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
    // The error only reaches lastError() if the call waited for it.
    LogCapture log;
    m_fake->answer("setToDefault", ScriptedAnswer::error(failure, QStringLiteral("locked")));

    m_proxy->setToDefault();

    QCOMPARE(m_fake->callCount(), 1);
    QCOMPARE(m_proxy->lastError().name(), failure);
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("locked"));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupMapListInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    const QMetaObject &meta = SetupMapListInterface::staticMetaObject;
    const QStringList methods = ownMethodSignatures(meta);
    QCOMPARE(methods,
             QStringList({"setupChanged()", "setupBoundsChanged()", "setValue(QString,QVariantMap)",
                          "setValue(int,QString,QVariant)", "getAllKeys()", "isKeyAvailable(QString)",
                          "getKeyPosition(QString)", "isChangeable()", "getValue(int)", "getValue(int,QString)",
                          "getStringValue(int,QString)", "getString(int)", "getMin(int,QString)", "getMax(int,QString)",
                          "size()", "removeItem(int)", "setToDefault()"}));
    QCOMPARE(methods.size(), 17);
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Signal), QStringList({"setupChanged()", "setupBoundsChanged()"}));
    QCOMPARE(meta.method(meta.indexOfMethod("getValue(int)")).typeName(), "SettingsMap");
    QCOMPARE(meta.method(meta.indexOfMethod("getValue(int,QString)")).returnType(), int(QMetaType::QVariant));
    QCOMPARE(meta.method(meta.indexOfMethod("getString(int)")).returnType(), int(QMetaType::QString));
    QCOMPARE(meta.method(meta.indexOfMethod("removeItem(int)")).typeName(), "QDBusReply<bool>");
    QCOMPARE(meta.method(meta.indexOfMethod("setToDefault()")).returnType(), int(QMetaType::Void));
    for (const QString &method : methods)
        QVERIFY2(!method.contains(QStringLiteral("Async")), qPrintable(method));
    QCOMPARE(meta.superClass(), &QDBusAbstractInterface::staticMetaObject);
    QCOMPARE(m_proxy->metaObject(), &SetupMapListInterface::staticMetaObject);
}

void tst_SetupMapListInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    QCOMPARE(m_proxy->qt_metacast("SetupMapListInterface"), static_cast<void *>(m_proxy.get()));
    QCOMPARE(m_proxy->qt_metacast("QDBusAbstractInterface"),
             static_cast<void *>(static_cast<QDBusAbstractInterface *>(m_proxy.get())));
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
