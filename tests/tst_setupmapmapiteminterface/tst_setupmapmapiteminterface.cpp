#include "SetupMapMapItemInterface.h"

#include "BusTestSupport.h"
#include "DBusCompat_p.h"
#include "DBusTypes.h"
#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"
#include "WireText.h"

#include <JsonFormatter.h>

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QtTest/QTest>

#include <functional>
#include <memory>

using Operation = std::function<Outcome(SetupMapMapItemInterface &)>;
Q_DECLARE_METATYPE(Operation)

using Getter = std::function<QVariant(SetupMapMapItemInterface &)>;
Q_DECLARE_METATYPE(Getter)

using MapOfMaps = QMap<QString, QVariantMap>;

namespace {
const QString path = QStringLiteral("/Setup/Routing");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");
const char *const cellSignal = SIGNAL(setupChangedPart(QString, QString, QVariant, bool));
const char *const busCellSignal = SIGNAL(setupChangedPart(QString, QString, QDBusVariant, bool));

QVariant wrappedValue(const QVariant &value)
{
    return QVariant::fromValue(QDBusVariant(value));
}

SettingsMap cell(const QString &key, const QVariant &value)
{
    SettingsMap map;
    map.insert(key, value);
    return map;
}

/// {"b": {"x": 1}, "a": {}}
MapOfMaps twoEntries()
{
    MapOfMaps maps;
    maps.insert(QStringLiteral("b"), cell(QStringLiteral("x"), 1));
    maps.insert(QStringLiteral("a"), SettingsMap());
    return maps;
}

/// How a JSON text of the framework's formatter appears in a wire text.
QString jsonText(const SettingsMap &map)
{
    return QStringLiteral("v(s \"") + JsonFormatter::getJson(map) + QStringLiteral("\")");
}

/// A string map as a variant map, which QVariant can compare.
QVariantMap comparable(const SettingsStringMap &map)
{
    QVariantMap result;
    for (auto entry = map.constBegin(); entry != map.constEnd(); ++entry)
        result.insert(entry.key(), entry.value());
    return result;
}

Outcome plainOutcome(const QVariant &value, bool present)
{
    return {present, value};
}

/// A proxy whose receivers can be counted.
class CountingProxy : public SetupMapMapItemInterface
{
public:
    using SetupMapMapItemInterface::SetupMapMapItemInterface;
    int receiverCount(const char *signal) const { return receivers(signal); }
};

// Stand-ins that leave a mark, to show which operators a construction leaves in place.
void markingMapWriter(QDBusArgument &argument, const void *value)
{
    SettingsMap marked = *static_cast<const SettingsMap *>(value);
    marked.insert(QStringLiteral("written by the stand-in"), true);
    DBusTypes::writeSettingsMap(argument, marked);
}

void markingMapReader(const QDBusArgument &argument, void *value)
{
    DBusTypes::readSettingsMap(argument, *static_cast<SettingsMap *>(value));
}

void markingStringMapWriter(QDBusArgument &argument, const void *value)
{
    SettingsStringMap marked = *static_cast<const SettingsStringMap *>(value);
    marked.insert(QStringLiteral("written by the stand-in"), QStringLiteral("yes"));
    DBusTypes::writeSettingsStringMap(argument, marked);
}

void markingStringMapReader(const QDBusArgument &argument, void *value)
{
    DBusTypes::readSettingsStringMap(argument, *static_cast<SettingsStringMap *>(value));
}
} // namespace

class tst_SetupMapMapItemInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void mapsOfMapsTravelAsJsonTextsInAscendingPrimaryKeyOrder();
    void emptyMapOfMapsSendsAnEmptyMap();
    void asyncSetterWrapsTheMapWhileTheBlockingOneSendsItBare();
    void cellSettersSendAVariantOrABareString();
    void mapsEachReply_data();
    void mapsEachReply();
    void givesEmptyValuesWhenTheServiceIsAbsent();

    void getValueOfAnEntryLeavesNestedValuesAsArguments();
    void getValueOfAnEntryKeepsRepeatedKeysAsQMapDoes();
    void deeplyNestedAndStructuredValuesStayArguments();
    void checkedOperationsLogOneLineWhenTheApplicationVanishes();
    void getStringMapAsksGetValueAndConvertsEveryValueToText();
    void getStringMapTurnsStructuredValuesIntoEmptyTexts();
    void getStringMapKeepsTheLastValueOfARepeatedKey();
    void checkedOperationsLogOneLinePerFailure_data();
    void checkedOperationsLogOneLinePerFailure();
    void checkedOperationsLogOneLineWhenTheServiceIsAbsent_data();
    void checkedOperationsLogOneLineWhenTheServiceIsAbsent();
    void getStringWithoutKeyIsNotLogged();
    void plainOperationsLogNothingOnFailure();

    void setToDefaultWaitsForTheAnswerAndDropsIt();
    void asyncOperationsReturnAtOnceAndLeaveLastErrorAlone();
    void asyncOperationsToAnAbsentServiceLogNothing();

    void registersSettingsStringMapOnceAndBothProxiesWork();
    void everyConstructionInstallsBothMapOperators();

    void listensToTheBusSignalFromConstructionOn();
    void relaysACellChangeOnceWithTheValueUnwrapped();
    void relaysOnceAlsoWhenACallerConnectsToBothOverloads();
    void relaysAStructuredNewValueAndTheDeletedFlag();
    void relaysCellChangesOfItsOwnObjectOnly();
    void twoProxiesOfOneObjectEachRelayToTheirOwnReceivers();
    void relaysSetupChangedOfItsOwnObjectOnly();
    void relaysMapEntryRemovedOfItsOwnObjectOnly();
    void relaysSetupBoundsChangedOfItsOwnObjectOnly();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void parameterNamesAreKeptAsDeclared();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();

private:
    int m_stringMapIdBeforeAnyProxy = -1;
    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<SetupMapMapItemInterface> m_proxy;
};

void tst_SetupMapMapItemInterface::initTestCase()
{
    m_stringMapIdBeforeAnyProxy = DBusCompat::metaTypeIdByName("SettingsStringMap");
}

void tst_SetupMapMapItemInterface::init()
{
    m_fake.reset(new FakeMeasApplication);
    m_proxy.reset(new SetupMapMapItemInterface(m_fake->service(), path, QDBusConnection::sessionBus()));
}

void tst_SetupMapMapItemInterface::cleanup()
{
    m_proxy.reset();
    m_fake.reset();
}

void tst_SetupMapMapItemInterface::sendsEachOperationWithItsWireForm_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<QStringList>("arguments");

    const auto op = [](std::function<void(SetupMapMapItemInterface &)> call) {
        return Operation([call](SetupMapMapItemInterface &proxy) {
            call(proxy);
            return Outcome{};
        });
    };
    SettingsMap entry;
    entry.insert(QStringLiteral("level"), 3);
    entry.insert(QStringLiteral("label"), QStringLiteral("In 1"));
    const QString entryText = QStringLiteral("a{sv} {s \"label\": v(s \"In 1\"), s \"level\": v(i 3)}");
    SettingsStringMap texts;
    texts.insert(QStringLiteral("b"), QStringLiteral("2"));
    texts.insert(QStringLiteral("a"), QStringLiteral("on"));
    const QString jsonEntries = QStringLiteral("a{sv} {s \"a\": ") + jsonText(SettingsMap()) +
        QStringLiteral(", s \"b\": ") + jsonText(cell(QStringLiteral("x"), 1)) + QLatin1Char('}');

    QTest::newRow("1 setValue map of maps")
        << op([](SetupMapMapItemInterface &p) { p.setValue(twoEntries()); }) << "setValue"
        << "a{sv}" << QStringList{jsonEntries};
    QTest::newRow("2 setValue entry") << op([entry](SetupMapMapItemInterface &p) { p.setValue("p", entry); })
                                      << "setValue"
                                      << "sa{sv}" << QStringList{"s \"p\"", entryText};
    QTest::newRow("3 setValue string map")
        << op([texts](SetupMapMapItemInterface &p) { p.setValue("p", texts); }) << "setValue"
        << "sa{sv}" << QStringList{"s \"p\"", "a{sv} {s \"a\": v(s \"on\"), s \"b\": v(s \"2\")}"};
    QTest::newRow("4 setValue cell variant")
        << op([](SetupMapMapItemInterface &p) { p.setValue("p", "k", QVariant(QStringLiteral("on"))); }) << "setValue"
        << "ssv" << QStringList{"s \"p\"", "s \"k\"", "v(s \"on\")"};
    QTest::newRow("4 setValue cell variant int")
        << op([](SetupMapMapItemInterface &p) { p.setValue("p", "k", QVariant(5)); }) << "setValue"
        << "ssv" << QStringList{"s \"p\"", "s \"k\"", "v(i 5)"};
    QTest::newRow("5 setValue cell string")
        << op([](SetupMapMapItemInterface &p) { p.setValue("p", "k", QStringLiteral("on")); }) << "setValue"
        << "sss" << QStringList{"s \"p\"", "s \"k\"", "s \"on\""};
    QTest::newRow("6 setDefaultMap map of maps")
        << op([](SetupMapMapItemInterface &p) { p.setDefaultMap(twoEntries()); }) << "setDefaultMap"
        << "a{sv}" << QStringList{jsonEntries};
    QTest::newRow("7 setDefaultMap entry")
        << op([entry](SetupMapMapItemInterface &p) { p.setDefaultMap("p", entry); }) << "setDefaultMap"
        << "sa{sv}" << QStringList{"s \"p\"", entryText};
    QTest::newRow("8 mergeFromDefaultMap entry")
        << op([](SetupMapMapItemInterface &p) { p.mergeFromDefaultMap("p"); }) << "mergeFromDefaultMap"
        << "s" << QStringList{"s \"p\""};
    QTest::newRow("9 mergeFromDefaultMap all")
        << op([](SetupMapMapItemInterface &p) { p.mergeFromDefaultMap(); }) << "mergeFromDefaultMap"
        << "" << QStringList{};
    QTest::newRow("10 setValueAsync") << op([entry](SetupMapMapItemInterface &p) { p.setValueAsync("p", entry); })
                                      << "setValue"
                                      << "sv" << QStringList{"s \"p\"", "v(" + entryText + ")"};
    QTest::newRow("11 getAllKeys") << op([](SetupMapMapItemInterface &p) { p.getAllKeys(); }) << "getAllKeys"
                                   << "" << QStringList{};
    QTest::newRow("12 getAllKeys entry") << op([](SetupMapMapItemInterface &p) { p.getAllKeys("p"); }) << "getAllKeys"
                                         << "s" << QStringList{"s \"p\""};
    QTest::newRow("13 isKeyAvailable") << op([](SetupMapMapItemInterface &p) { p.isKeyAvailable("p"); })
                                       << "isKeyAvailable"
                                       << "s" << QStringList{"s \"p\""};
    QTest::newRow("14 isChangeable") << op([](SetupMapMapItemInterface &p) { p.isChangeable(); }) << "isChangeable"
                                     << "" << QStringList{};
    QTest::newRow("15 getValue entry") << op([](SetupMapMapItemInterface &p) { p.getValue("p"); }) << "getValue"
                                       << "s" << QStringList{"s \"p\""};
    QTest::newRow("16 getValue cell") << op([](SetupMapMapItemInterface &p) { p.getValue("p", "k"); }) << "getValue"
                                      << "ss" << QStringList{"s \"p\"", "s \"k\""};
    QTest::newRow("17 getStringValue") << op([](SetupMapMapItemInterface &p) { p.getStringValue("p", "k"); })
                                       << "getStringValue"
                                       << "ss" << QStringList{"s \"p\"", "s \"k\""};
    QTest::newRow("18 getStringMap") << op([](SetupMapMapItemInterface &p) { p.getStringMap("p"); }) << "getValue"
                                     << "s" << QStringList{"s \"p\""};
    QTest::newRow("19 getMin") << op([](SetupMapMapItemInterface &p) { p.getMin("p", "k"); }) << "getMin"
                               << "ss" << QStringList{"s \"p\"", "s \"k\""};
    QTest::newRow("20 getMax") << op([](SetupMapMapItemInterface &p) { p.getMax("p", "k"); }) << "getMax"
                               << "ss" << QStringList{"s \"p\"", "s \"k\""};
    QTest::newRow("21 getEnums") << op([](SetupMapMapItemInterface &p) { p.getEnums("p", "k"); }) << "getEnums"
                                 << "ss" << QStringList{"s \"p\"", "s \"k\""};
    QTest::newRow("22 getBaseElement") << op([](SetupMapMapItemInterface &p) { p.getBaseElement(); })
                                       << "getBaseElement"
                                       << "" << QStringList{};
    QTest::newRow("23 getString") << op([](SetupMapMapItemInterface &p) { p.getString(); }) << "getString"
                                  << "" << QStringList{};
    QTest::newRow("24 getString entry") << op([](SetupMapMapItemInterface &p) { p.getString("p"); }) << "getString"
                                        << "s" << QStringList{"s \"p\""};
    QTest::newRow("25 size") << op([](SetupMapMapItemInterface &p) { p.size(); }) << "size"
                             << "" << QStringList{};
    QTest::newRow("26 removeItem entry") << op([](SetupMapMapItemInterface &p) { p.removeItem("p"); }) << "removeItem"
                                         << "s" << QStringList{"s \"p\""};
    QTest::newRow("27 removeItem cell") << op([](SetupMapMapItemInterface &p) { p.removeItem("p", "k"); })
                                        << "removeItem"
                                        << "ss" << QStringList{"s \"p\"", "s \"k\""};
    QTest::newRow("28 setToDefault") << op([](SetupMapMapItemInterface &p) { p.setToDefault(); }) << "setToDefault"
                                     << "" << QStringList{};
    QTest::newRow("29 setToDefaultAsync")
        << op([](SetupMapMapItemInterface &p) { p.setToDefaultAsync(); }) << "setToDefault"
        << "" << QStringList{};
}

void tst_SetupMapMapItemInterface::sendsEachOperationWithItsWireForm()
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

void tst_SetupMapMapItemInterface::mapsOfMapsTravelAsJsonTextsInAscendingPrimaryKeyOrder()
{
    m_fake->answer("setValue", ScriptedAnswer::value(true));
    m_fake->answer("setDefaultMap", ScriptedAnswer::value(true));
    const MapOfMaps maps = twoEntries();

    QVERIFY(m_proxy->setValue(maps).value());
    QVERIFY(m_proxy->setDefaultMap(maps).value());

    QVERIFY(m_fake->waitForCalls(2));
    for (const ReceivedCall &call : m_fake->calls()) {
        QCOMPARE(call.signature, QStringLiteral("a{sv}"));
        QCOMPARE(call.arguments.size(), 1);
        const QDBusArgument argument = qvariant_cast<QDBusArgument>(call.arguments.first());
        QCOMPARE(argument.currentSignature(), QStringLiteral("a{sv}"));
        // Every value is a text, never a nested map; "a" goes before "b".
        QVERIFY(wireText(argument).startsWith(QStringLiteral("a{sv} {s \"a\": v(s \"")));
        QVERIFY(wireText(argument).contains(QStringLiteral(", s \"b\": v(s \"")));
        SettingsMap texts;
        DBusTypes::readSettingsMap(argument, texts);
        QCOMPARE(texts.keys(), QStringList({"a", "b"}));
        for (const QString &key : texts.keys()) {
            const QVariant text = texts.value(key);
            QCOMPARE(text.userType(), int(QMetaType::QString));
            QCOMPARE(text.toString(), JsonFormatter::getJson(maps.value(key)));
            const QJsonDocument json = QJsonDocument::fromJson(text.toString().toUtf8());
            QVERIFY(json.isObject());
            QCOMPARE(json.object().toVariantMap(), maps.value(key));
        }
    }
}

void tst_SetupMapMapItemInterface::emptyMapOfMapsSendsAnEmptyMap()
{
    m_fake->answer("setDefaultMap", ScriptedAnswer::value(true));

    QVERIFY(m_proxy->setDefaultMap(MapOfMaps()).value());

    verifySingleWireCall(*m_fake, path, "setDefaultMap", "a{sv}", {"a{sv} {}"});
}

void tst_SetupMapMapItemInterface::asyncSetterWrapsTheMapWhileTheBlockingOneSendsItBare()
{
    m_fake->answer("setValue", ScriptedAnswer::value(true));
    const SettingsMap entry = cell(QStringLiteral("level"), 3);

    m_proxy->setValueAsync("p", entry);
    QVERIFY(m_fake->waitForCalls(1));
    m_proxy->setValue("p", entry);

    QVERIFY(m_fake->waitForCalls(2));
    const ReceivedCall async = m_fake->calls().at(0);
    QCOMPARE(async.member, QStringLiteral("setValue"));
    QCOMPARE(async.signature, QStringLiteral("sv"));
    QCOMPARE(async.arguments.at(1).userType(), qMetaTypeId<QDBusVariant>());
    const QVariant inner = qvariant_cast<QDBusVariant>(async.arguments.at(1)).variant();
    QCOMPARE(qvariant_cast<QDBusArgument>(inner).currentSignature(), QStringLiteral("a{sv}"));
    QCOMPARE(qdbus_cast<SettingsMap>(qvariant_cast<QDBusArgument>(inner)), entry);

    const ReceivedCall blocking = m_fake->calls().at(1);
    QCOMPARE(blocking.member, QStringLiteral("setValue"));
    QCOMPARE(blocking.signature, QStringLiteral("sa{sv}"));
    QCOMPARE(blocking.arguments.at(1).userType(), qMetaTypeId<QDBusArgument>());
    QCOMPARE(qvariant_cast<QDBusArgument>(blocking.arguments.at(1)).currentSignature(), QStringLiteral("a{sv}"));
    QCOMPARE(qdbus_cast<SettingsMap>(qvariant_cast<QDBusArgument>(blocking.arguments.at(1))), entry);
}

void tst_SetupMapMapItemInterface::cellSettersSendAVariantOrABareString()
{
    m_fake->answer("setValue", ScriptedAnswer::value(true));

    QVERIFY(m_proxy->setValue("p", "k", QStringLiteral("on")).value());
    QVERIFY(m_proxy->setValue("p", "k", QVariant(QStringLiteral("on"))).value());

    const QList<ReceivedCall> calls = m_fake->calls();
    QCOMPARE(calls.size(), 2);
    QCOMPARE(calls.at(0).signature, QStringLiteral("sss"));
    QCOMPARE(calls.at(0).arguments.at(2).userType(), int(QMetaType::QString));
    QCOMPARE(calls.at(1).signature, QStringLiteral("ssv"));
    QCOMPARE(calls.at(1).arguments.at(2).userType(), qMetaTypeId<QDBusVariant>());
    QCOMPARE(qvariant_cast<QDBusVariant>(calls.at(1).arguments.at(2)).variant(), QVariant(QStringLiteral("on")));
}

void tst_SetupMapMapItemInterface::mapsEachReply_data()
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
    const QStringList keys{QStringLiteral("in1"), QStringLiteral("in2")};
    rows(
        "setValue map of maps", "setValue",
        [](SetupMapMapItemInterface &p) { return outcomeOf(p.setValue(twoEntries())); }, true, 1, false);
    rows(
        "setValue entry", "setValue",
        [](SetupMapMapItemInterface &p) { return outcomeOf(p.setValue("p", cell("k", 1))); }, true,
        QStringLiteral("true"), false);
    rows(
        "setValue string map", "setValue",
        [](SetupMapMapItemInterface &p) {
            return outcomeOf(p.setValue("p", SettingsStringMap{{QStringLiteral("k"), QStringLiteral("1")}}));
        },
        true, 1.0, false);
    rows(
        "setValue cell variant", "setValue",
        [](SetupMapMapItemInterface &p) { return outcomeOf(p.setValue("p", "k", QVariant(1))); }, true, 1, false);
    rows(
        "setValue cell string", "setValue",
        [](SetupMapMapItemInterface &p) { return outcomeOf(p.setValue("p", "k", QStringLiteral("1"))); }, true, 1,
        false);
    rows(
        "setDefaultMap map of maps", "setDefaultMap",
        [](SetupMapMapItemInterface &p) { return outcomeOf(p.setDefaultMap(twoEntries())); }, true, 1, false);
    rows(
        "setDefaultMap entry", "setDefaultMap",
        [](SetupMapMapItemInterface &p) { return outcomeOf(p.setDefaultMap("p", cell("k", 1))); }, true, 1, false);
    rows(
        "mergeFromDefaultMap entry", "mergeFromDefaultMap",
        [](SetupMapMapItemInterface &p) { return outcomeOf(p.mergeFromDefaultMap("p")); }, true, keys, false);
    rows(
        "mergeFromDefaultMap all", "mergeFromDefaultMap",
        [](SetupMapMapItemInterface &p) { return outcomeOf(p.mergeFromDefaultMap()); }, keys, true, QStringList());
    rows(
        "getAllKeys", "getAllKeys", [](SetupMapMapItemInterface &p) { return outcomeOf(p.getAllKeys()); }, keys,
        QStringLiteral("in1"), QStringList());
    rows(
        "isKeyAvailable", "isKeyAvailable",
        [](SetupMapMapItemInterface &p) { return outcomeOf(p.isKeyAvailable("in1")); }, true, 1, false);
    rows(
        "isChangeable", "isChangeable", [](SetupMapMapItemInterface &p) { return outcomeOf(p.isChangeable()); }, true,
        QStringLiteral("yes"), false);
    rows(
        "getEnums", "getEnums", [](SetupMapMapItemInterface &p) { return outcomeOf(p.getEnums("p", "k")); }, keys,
        wrappedValue(keys), QStringList());
    rows(
        "getString", "getString", [](SetupMapMapItemInterface &p) { return outcomeOf(p.getString()); },
        QStringLiteral("in1: on"), 1, QString());
    rows(
        "size", "size", [](SetupMapMapItemInterface &p) { return outcomeOf(p.size()); }, 2, 2.0, 0);
    rows(
        "removeItem entry", "removeItem", [](SetupMapMapItemInterface &p) { return outcomeOf(p.removeItem("p")); }, 1,
        true, 0);
    rows(
        "removeItem cell", "removeItem", [](SetupMapMapItemInterface &p) { return outcomeOf(p.removeItem("p", "k")); },
        4, true, 0);

    // Checked operations hand back plain values: "valid" says the value is not the empty one.
    const auto checkedRows = [&](const char *name, const char *member, Operation op, const QVariant &answered,
                                 const QVariant &good, const QVariant &wrongType, const QVariant &empty) {
        QTest::addRow("%s answered", name) << op << member << ScriptedAnswer::value(answered) << true << good;
        QTest::addRow("%s error", name) << op << member << error << false << empty;
        QTest::addRow("%s wrong type", name) << op << member << ScriptedAnswer::value(wrongType) << false << empty;
        QTest::addRow("%s no value", name) << op << member << ScriptedAnswer::reply() << false << empty;
    };
    SettingsMap entry;
    entry.insert(QStringLiteral("level"), 3);
    entry.insert(QStringLiteral("on"), true);
    QVariantMap entryTexts;
    entryTexts.insert(QStringLiteral("level"), QStringLiteral("3"));
    entryTexts.insert(QStringLiteral("on"), QStringLiteral("true"));
    checkedRows(
        "getAllKeys entry", "getAllKeys",
        [](SetupMapMapItemInterface &p) {
            const QStringList list = p.getAllKeys("p");
            return plainOutcome(list, !list.isEmpty());
        },
        keys, keys, QStringLiteral("in1"), QStringList());
    checkedRows(
        "getValue entry", "getValue",
        [](SetupMapMapItemInterface &p) {
            const SettingsMap map = p.getValue("p");
            return plainOutcome(map, !map.isEmpty());
        },
        QVariant(entry), QVariant(entry), wrappedValue(QVariant(entry)), QVariant(SettingsMap()));
    checkedRows(
        "getValue cell", "getValue",
        [](SetupMapMapItemInterface &p) {
            const QVariant value = p.getValue("p", "k");
            return plainOutcome(value, value.isValid());
        },
        wrappedValue(3), QVariant(3), 3, QVariant());
    checkedRows(
        "getStringValue", "getStringValue",
        [](SetupMapMapItemInterface &p) {
            const QString text = p.getStringValue("p", "k");
            return plainOutcome(text, !text.isNull());
        },
        QStringLiteral("3 dB"), QStringLiteral("3 dB"), 3, QVariant(QString()));
    checkedRows(
        "getStringMap", "getValue",
        [](SetupMapMapItemInterface &p) {
            const SettingsStringMap map = p.getStringMap("p");
            return plainOutcome(comparable(map), !map.isEmpty());
        },
        QVariant(entry), QVariant(entryTexts), QStringLiteral("level=3"), QVariant(QVariantMap()));
    checkedRows(
        "getMin", "getMin",
        [](SetupMapMapItemInterface &p) {
            const QVariant value = p.getMin("p", "k");
            return plainOutcome(value, value.isValid());
        },
        wrappedValue(-6.5), QVariant(-6.5), -6.5, QVariant());
    checkedRows(
        "getMax", "getMax",
        [](SetupMapMapItemInterface &p) {
            const QVariant value = p.getMax("p", "k");
            return plainOutcome(value, value.isValid());
        },
        wrappedValue(12), QVariant(12), QStringLiteral("12"), QVariant());
    checkedRows(
        "getBaseElement", "getBaseElement",
        [](SetupMapMapItemInterface &p) {
            const QVariant value = p.getBaseElement();
            return plainOutcome(value, value.isValid());
        },
        wrappedValue(QStringLiteral("template")), QVariant(QStringLiteral("template")), QStringLiteral("template"),
        QVariant());
    checkedRows(
        "getString entry", "getString",
        [](SetupMapMapItemInterface &p) {
            const QString text = p.getString("p");
            return plainOutcome(text, !text.isNull());
        },
        QStringLiteral("level=3"), QStringLiteral("level=3"), wrappedValue(QStringLiteral("level=3")),
        QVariant(QString()));
}

void tst_SetupMapMapItemInterface::mapsEachReply()
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

void tst_SetupMapMapItemInterface::givesEmptyValuesWhenTheServiceIsAbsent()
{
    LogCapture log;
    SetupMapMapItemInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const QDBusReply<bool> set = proxy.setValue(twoEntries());
    QVERIFY(!set.isValid());
    QCOMPARE(set.value(), false);
    QCOMPARE(set.error().type(), QDBusError::ServiceUnknown);
    QVERIFY(!proxy.setValue("p", cell("k", 1)).isValid());
    QVERIFY(!proxy.setValue("p", SettingsStringMap()).isValid());
    QVERIFY(!proxy.setValue("p", "k", QVariant(1)).isValid());
    QVERIFY(!proxy.setValue("p", "k", QStringLiteral("1")).isValid());
    QVERIFY(!proxy.setDefaultMap(twoEntries()).isValid());
    QVERIFY(!proxy.setDefaultMap("p", cell("k", 1)).isValid());
    QVERIFY(!proxy.mergeFromDefaultMap("p").isValid());
    QCOMPARE(proxy.mergeFromDefaultMap().value(), QStringList());
    QVERIFY(!proxy.getAllKeys().isValid());
    QCOMPARE(proxy.getAllKeys("p"), QStringList());
    QVERIFY(!proxy.isKeyAvailable("p").isValid());
    QVERIFY(!proxy.isChangeable().isValid());
    QCOMPARE(proxy.getValue("p"), SettingsMap());
    QVERIFY(!proxy.getValue("p", "k").isValid());
    QVERIFY(proxy.getStringValue("p", "k").isNull());
    QCOMPARE(proxy.getStringMap("p"), SettingsStringMap());
    QVERIFY(!proxy.getMin("p", "k").isValid());
    QVERIFY(!proxy.getMax("p", "k").isValid());
    QVERIFY(!proxy.getEnums("p", "k").isValid());
    QVERIFY(!proxy.getBaseElement().isValid());
    QVERIFY(!proxy.getString().isValid());
    QVERIFY(proxy.getString("p").isNull());
    QVERIFY(!proxy.size().isValid());
    QCOMPARE(proxy.removeItem("p").value(), 0);
    QVERIFY(!proxy.removeItem("p", "k").isValid());
    proxy.setToDefault();
    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
}

void tst_SetupMapMapItemInterface::getValueOfAnEntryLeavesNestedValuesAsArguments()
{
    SettingsMap entry;
    entry.insert(QStringLiteral("routing"), cell(QStringLiteral("out"), 2));
    entry.insert(QStringLiteral("levels"), QVariantList() << 1 << 2.5);
    entry.insert(QStringLiteral("label"), QStringLiteral("In 1"));
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant(entry)));

    const SettingsMap map = m_proxy->getValue("in1");

    QCOMPARE(map.keys(), QStringList({"label", "levels", "routing"}));
    QCOMPARE(map.value(QStringLiteral("label")), QVariant(QStringLiteral("In 1")));
    const QVariant routing = map.value(QStringLiteral("routing"));
    QCOMPARE(routing.userType(), qMetaTypeId<QDBusArgument>());
    QCOMPARE(qvariant_cast<QDBusArgument>(routing).currentSignature(), QStringLiteral("a{sv}"));
    QCOMPARE(qdbus_cast<SettingsMap>(qvariant_cast<QDBusArgument>(routing)), cell(QStringLiteral("out"), 2));
    const QVariant levels = map.value(QStringLiteral("levels"));
    QCOMPARE(levels.userType(), qMetaTypeId<QDBusArgument>());
    QCOMPARE(wireText(levels), QStringLiteral("av [v(i 1), v(d 2.5)]"));
}

void tst_SetupMapMapItemInterface::getValueOfAnEntryKeepsRepeatedKeysAsQMapDoes()
{
    QDBusArgument repeated;
    repeated.beginMap(QMetaType::QString, qMetaTypeId<QDBusVariant>());
    for (int value : {1, 2}) {
        repeated.beginMapEntry();
        repeated << QStringLiteral("level") << QDBusVariant(value);
        repeated.endMapEntry();
    }
    repeated.endMap();
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant::fromValue(repeated)));

    LogCapture log;
    const SettingsMap map = m_proxy->getValue("in1");

    // Qt 5's QMap keeps both entries of a repeated key, Qt 6's keeps the later one; the
    // expectation is built by the same insertion the reader uses.
    SettingsMap expected;
    DBusCompat::insertMulti(expected, QStringLiteral("level"), QVariant(1));
    DBusCompat::insertMulti(expected, QStringLiteral("level"), QVariant(2));
    QCOMPARE(map, expected);
    QCOMPARE(map.count(QStringLiteral("level")), expected.count(QStringLiteral("level")));
    QCOMPARE(map.value(QStringLiteral("level")), QVariant(2));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupMapMapItemInterface::deeplyNestedAndStructuredValuesStayArguments()
{
    QDBusArgument pair;
    pair.beginStructure();
    pair << 1 << QStringLiteral("a");
    pair.endStructure();
    SettingsMap entry;
    entry.insert(QStringLiteral("deep"), cell(QStringLiteral("inner"), cell(QStringLiteral("x"), 1)));
    entry.insert(QStringLiteral("pair"), QVariant::fromValue(pair));
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant(entry)));
    m_fake->answer("getMax", ScriptedAnswer::value(wrappedValue(QVariant::fromValue(pair))));

    LogCapture log;
    const SettingsMap map = m_proxy->getValue("in1");
    const SettingsStringMap texts = m_proxy->getStringMap("in1");
    const QVariant max = m_proxy->getMax("in1", "pair");

    QCOMPARE(map.keys(), QStringList({"deep", "pair"}));
    QCOMPARE(wireText(map.value(QStringLiteral("deep"))),
             QStringLiteral("a{sv} {s \"inner\": v(a{sv} {s \"x\": v(i 1)})}"));
    const SettingsMap deep = qdbus_cast<SettingsMap>(qvariant_cast<QDBusArgument>(map.value(QStringLiteral("deep"))));
    QCOMPARE(deep.value(QStringLiteral("inner")).userType(), qMetaTypeId<QDBusArgument>());
    QCOMPARE(map.value(QStringLiteral("pair")).userType(), qMetaTypeId<QDBusArgument>());
    QCOMPARE(wireText(map.value(QStringLiteral("pair"))), QStringLiteral("(is) (i 1, s \"a\")"));
    QCOMPARE(texts.keys(), QStringList({"deep", "pair"}));
    QVERIFY(texts.value(QStringLiteral("deep")).isEmpty());
    QVERIFY(texts.value(QStringLiteral("pair")).isEmpty());
    QCOMPARE(max.userType(), qMetaTypeId<QDBusArgument>());
    QCOMPARE(wireText(max), QStringLiteral("(is) (i 1, s \"a\")"));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupMapMapItemInterface::checkedOperationsLogOneLineWhenTheApplicationVanishes()
{
    LogCapture log;
    m_fake->answer("getValue", ScriptedAnswer::vanish());

    const QVariant value = m_proxy->getValue("in1", "level");

    QVERIFY(!value.isValid());
    const QDBusError error = m_proxy->lastError();
    QVERIFY(error.isValid());
    QCOMPARE(log.lines(),
             debugLines({"SetupMapMapItemInterface::getValue():  " + debugQuoted(m_fake->service()) +
                         "  /  \"/Setup/Routing\"  / Error: " + debugQuoted(error.message())}));
}

void tst_SetupMapMapItemInterface::getStringMapAsksGetValueAndConvertsEveryValueToText()
{
    SettingsMap entry;
    entry.insert(QStringLiteral("n"), 1);
    entry.insert(QStringLiteral("flag"), true);
    entry.insert(QStringLiteral("t"), QStringLiteral("x"));
    entry.insert(QStringLiteral("d"), 0.5);
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant(entry)));

    const SettingsStringMap texts = m_proxy->getStringMap("in1");

    QCOMPARE(texts.keys(), QStringList({"d", "flag", "n", "t"}));
    QCOMPARE(texts.value(QStringLiteral("n")), QStringLiteral("1"));
    QCOMPARE(texts.value(QStringLiteral("flag")), QStringLiteral("true"));
    QCOMPARE(texts.value(QStringLiteral("t")), QStringLiteral("x"));
    QCOMPARE(texts.value(QStringLiteral("d")), QStringLiteral("0.5"));
    verifySingleWireCall(*m_fake, path, "getValue", "s", {"s \"in1\""});
}

void tst_SetupMapMapItemInterface::getStringMapTurnsStructuredValuesIntoEmptyTexts()
{
    SettingsMap entry;
    entry.insert(QStringLiteral("routing"), cell(QStringLiteral("out"), 2));
    entry.insert(QStringLiteral("levels"), QVariantList() << 1 << 2);
    entry.insert(QStringLiteral("label"), QStringLiteral("In 1"));
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant(entry)));

    LogCapture log;
    const SettingsStringMap texts = m_proxy->getStringMap("in1");

    QCOMPARE(texts.keys(), QStringList({"label", "levels", "routing"}));
    QCOMPARE(texts.value(QStringLiteral("label")), QStringLiteral("In 1"));
    QVERIFY(texts.value(QStringLiteral("routing")).isEmpty());
    QVERIFY(texts.value(QStringLiteral("levels")).isEmpty());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupMapMapItemInterface::getStringMapKeepsTheLastValueOfARepeatedKey()
{
    QDBusArgument repeated;
    repeated.beginMap(QMetaType::QString, qMetaTypeId<QDBusVariant>());
    for (int value : {1, 2}) {
        repeated.beginMapEntry();
        repeated << QStringLiteral("level") << QDBusVariant(value);
        repeated.endMapEntry();
    }
    repeated.endMap();
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant::fromValue(repeated)));

    const SettingsStringMap texts = m_proxy->getStringMap("in1");

    QCOMPARE(texts.size(), 1);
    QCOMPARE(texts.value(QStringLiteral("level")), QStringLiteral("2"));
}

void tst_SetupMapMapItemInterface::checkedOperationsLogOneLinePerFailure_data()
{
    QTest::addColumn<Getter>("getter");
    QTest::addColumn<QString>("member");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<QString>("line");

    const QString service = FakeMeasApplication::serviceFor(QStringLiteral("fake"));
    const auto line = [&](const char *literal, const QString &message) {
        return QString::fromLatin1(literal) + " " + debugQuoted(service) +
            "  /  \"/Setup/Routing\"  / Error: " + debugQuoted(message);
    };
    const auto rows = [&](const char *name, const char *member, Getter getter, const char *literal,
                          const QVariant &wrongType, const QString &typeError) {
        QTest::addRow("%s error", name) << getter << member
                                        << ScriptedAnswer::error(failure, QStringLiteral("no such entry"))
                                        << line(literal, QStringLiteral("no such entry"));
        QTest::addRow("%s error with quotes", name)
            << getter << member << ScriptedAnswer::error(failure, QStringLiteral("entry \"in1\" unknown"))
            << line(literal, QStringLiteral("entry \"in1\" unknown"));
        QTest::addRow("%s wrong type", name)
            << getter << member << ScriptedAnswer::value(wrongType) << line(literal, typeError);
    };
    rows(
        "getAllKeys entry", "getAllKeys", [](SetupMapMapItemInterface &p) { return QVariant(p.getAllKeys("p")); },
        "SetupMapMapItemInterface::getAllKeys(): ", 5, replyTypeError<QStringList>(5));
    rows(
        "getValue entry", "getValue", [](SetupMapMapItemInterface &p) { return QVariant(p.getValue("p")); },
        "SetupMapMapItemInterface::getValue(): ", 5, replyTypeError<SettingsMap>(5));
    rows(
        "getValue cell", "getValue", [](SetupMapMapItemInterface &p) { return p.getValue("p", "k"); },
        "SetupMapMapItemInterface::getValue(): ", 5, replyTypeError<QDBusVariant>(5));
    rows(
        "getStringValue", "getStringValue",
        [](SetupMapMapItemInterface &p) { return QVariant(p.getStringValue("p", "k")); },
        "SetupMapMapItemInterface::getStringValue(): ", 5, replyTypeError<QString>(5));
    rows(
        "getStringMap", "getValue",
        [](SetupMapMapItemInterface &p) { return QVariant(comparable(p.getStringMap("p"))); },
        "SetupMapMapItemInterface::getStringMap(): ", QStringLiteral("x"),
        replyTypeError<SettingsMap>(QStringLiteral("x")));
    rows(
        "getMin", "getMin", [](SetupMapMapItemInterface &p) { return p.getMin("p", "k"); },
        "SetupMapMapItemInterface::getMin(): ", 5, replyTypeError<QDBusVariant>(5));
    rows(
        "getMax", "getMax", [](SetupMapMapItemInterface &p) { return p.getMax("p", "k"); },
        "SetupMapMapItemInterface::getMax(): ", true, replyTypeError<QDBusVariant>(true));
    rows(
        "getBaseElement", "getBaseElement", [](SetupMapMapItemInterface &p) { return p.getBaseElement(); },
        "SetupMapMapItemInterface::getBaseElement(): ", 5, replyTypeError<QDBusVariant>(5));
    rows(
        "getString entry", "getString", [](SetupMapMapItemInterface &p) { return QVariant(p.getString("p")); },
        "SetupMapMapItemInterface::getString(): ", 5, replyTypeError<QString>(5));
}

void tst_SetupMapMapItemInterface::checkedOperationsLogOneLinePerFailure()
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

void tst_SetupMapMapItemInterface::checkedOperationsLogOneLineWhenTheServiceIsAbsent_data()
{
    QTest::addColumn<Getter>("getter");
    QTest::addColumn<QString>("literal");
    QTest::addColumn<QVariant>("empty");

    QTest::newRow("getAllKeys entry") << Getter([](SetupMapMapItemInterface &p) { return QVariant(p.getAllKeys("p")); })
                                      << "SetupMapMapItemInterface::getAllKeys(): " << QVariant(QStringList());
    QTest::newRow("getValue entry") << Getter([](SetupMapMapItemInterface &p) { return QVariant(p.getValue("p")); })
                                    << "SetupMapMapItemInterface::getValue(): " << QVariant(SettingsMap());
    QTest::newRow("getValue cell") << Getter([](SetupMapMapItemInterface &p) { return p.getValue("p", "k"); })
                                   << "SetupMapMapItemInterface::getValue(): " << QVariant();
    QTest::newRow("getStringValue") << Getter([](SetupMapMapItemInterface &p) {
        return QVariant(p.getStringValue("p", "k"));
    })
                                    << "SetupMapMapItemInterface::getStringValue(): " << QVariant(QString());
    QTest::newRow("getStringMap") << Getter([](SetupMapMapItemInterface &p) {
        return QVariant(comparable(p.getStringMap("p")));
    })
                                  << "SetupMapMapItemInterface::getStringMap(): " << QVariant(QVariantMap());
    QTest::newRow("getMin") << Getter([](SetupMapMapItemInterface &p) { return p.getMin("p", "k"); })
                            << "SetupMapMapItemInterface::getMin(): " << QVariant();
    QTest::newRow("getMax") << Getter([](SetupMapMapItemInterface &p) { return p.getMax("p", "k"); })
                            << "SetupMapMapItemInterface::getMax(): " << QVariant();
    QTest::newRow("getBaseElement") << Getter([](SetupMapMapItemInterface &p) { return p.getBaseElement(); })
                                    << "SetupMapMapItemInterface::getBaseElement(): " << QVariant();
    QTest::newRow("getString entry") << Getter([](SetupMapMapItemInterface &p) { return QVariant(p.getString("p")); })
                                     << "SetupMapMapItemInterface::getString(): " << QVariant(QString());
}

void tst_SetupMapMapItemInterface::checkedOperationsLogOneLineWhenTheServiceIsAbsent()
{
    QFETCH(Getter, getter);
    QFETCH(QString, literal);
    QFETCH(QVariant, empty);

    LogCapture log;
    SetupMapMapItemInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const QVariant value = getter(proxy);

    QCOMPARE(value.userType(), empty.userType());
    QCOMPARE(value, empty);
    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
    const QString message = proxy.lastError().message();
    QVERIFY(message.contains(absentService()));
    QCOMPARE(
        log.lines(),
        debugLines({literal + " \"com.velk.mqx.app.absent\"  /  \"/Setup/Routing\"  / Error: \"" + message + "\""}));
}

void tst_SetupMapMapItemInterface::getStringWithoutKeyIsNotLogged()
{
    LogCapture log;
    m_fake->answer("getString", ScriptedAnswer::error(failure, QStringLiteral("no text")));

    const QDBusReply<QString> text = m_proxy->getString();
    QVERIFY(!text.isValid());
    QCOMPARE(text.error().message(), QStringLiteral("no text"));
    QCOMPARE(log.lines(), QList<LogLine>());

    QVERIFY(m_proxy->getString("p").isNull());
    QCOMPARE(log.lines(),
             debugLines({"SetupMapMapItemInterface::getString():  \"" + m_fake->service() +
                         "\"  /  \"/Setup/Routing\"  / Error: \"no text\""}));
}

void tst_SetupMapMapItemInterface::plainOperationsLogNothingOnFailure()
{
    LogCapture log;
    SetupMapMapItemInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    proxy.setValue(twoEntries());
    proxy.setValue("p", cell("k", 1));
    proxy.setValue("p", SettingsStringMap());
    proxy.setValue("p", "k", QVariant(1));
    proxy.setValue("p", "k", QStringLiteral("1"));
    proxy.setDefaultMap(twoEntries());
    proxy.setDefaultMap("p", cell("k", 1));
    proxy.mergeFromDefaultMap("p");
    proxy.mergeFromDefaultMap();
    proxy.setValueAsync("p", cell("k", 1));
    proxy.getAllKeys();
    proxy.isKeyAvailable("p");
    proxy.isChangeable();
    proxy.getEnums("p", "k");
    proxy.getString();
    proxy.size();
    proxy.removeItem("p");
    proxy.removeItem("p", "k");
    proxy.setToDefault();
    proxy.setToDefaultAsync();

    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupMapMapItemInterface::setToDefaultWaitsForTheAnswerAndDropsIt()
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

void tst_SetupMapMapItemInterface::asyncOperationsReturnAtOnceAndLeaveLastErrorAlone()
{
    m_fake->answer("size", ScriptedAnswer::error(failure, QStringLiteral("earlier failure")));
    m_fake->answer("setValue", ScriptedAnswer::silence());
    m_fake->answer("setToDefault", ScriptedAnswer::silence());
    m_proxy->size();
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));

    // The application never answers: a call that waited would not come back in time
    // for the fake to see both messages.
    m_proxy->setValueAsync("p", cell("k", 1));
    m_proxy->setToDefaultAsync();

    QVERIFY(m_fake->waitForCalls(3));
    QCOMPARE(m_fake->calls().at(1).member, QStringLiteral("setValue"));
    QCOMPARE(m_fake->calls().at(1).signature, QStringLiteral("sv"));
    QCOMPARE(m_fake->calls().at(2).member, QStringLiteral("setToDefault"));
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));
}

void tst_SetupMapMapItemInterface::asyncOperationsToAnAbsentServiceLogNothing()
{
    LogCapture log;
    SetupMapMapItemInterface proxy(absentService(), path, QDBusConnection::sessionBus());
    const QDBusError before = proxy.lastError();

    proxy.setValueAsync("p", cell("k", 1));
    proxy.setToDefaultAsync();

    QCOMPARE(proxy.lastError().type(), before.type());
    QCOMPARE(proxy.lastError().message(), before.message());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupMapMapItemInterface::registersSettingsStringMapOnceAndBothProxiesWork()
{
    // Nothing in the process knew the name before the first proxy was made.
    QCOMPARE(m_stringMapIdBeforeAnyProxy, int(QMetaType::UnknownType));

    const int id = DBusCompat::metaTypeIdByName("SettingsStringMap");
    QVERIFY(id != QMetaType::UnknownType);
    QCOMPARE(DBusTypes::registerSettingsStringMap(), id);

    SetupMapMapItemInterface second(m_fake->service(), path, QDBusConnection::sessionBus());
    QCOMPARE(DBusCompat::metaTypeIdByName("SettingsStringMap"), id);
    QCOMPARE(DBusTypes::registerSettingsStringMap(), id);
    QCOMPARE(qMetaTypeId<SettingsStringMap>(), id);

    SettingsMap entry = cell(QStringLiteral("level"), 3);
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant(entry)));
    QCOMPARE(m_proxy->getValue("in1"), entry);
    QCOMPARE(second.getValue("in1"), entry);
    QCOMPARE(m_proxy->getStringMap("in1").value(QStringLiteral("level")), QStringLiteral("3"));
    QCOMPARE(second.getStringMap("in1").value(QStringLiteral("level")), QStringLiteral("3"));
}

void tst_SetupMapMapItemInterface::everyConstructionInstallsBothMapOperators()
{
    const int stringMapId = DBusCompat::metaTypeIdByName("SettingsStringMap");
    const SettingsMap map = cell(QStringLiteral("level"), 3);
    SettingsStringMap strings;
    strings.insert(QStringLiteral("label"), QStringLiteral("In 1"));
    const auto sendProbe = [&] {
        m_fake->clearCalls();
        QDBusMessage probe = QDBusMessage::createMethodCall(m_fake->service(), path, FakeMeasApplication::interfaceName,
                                                            QStringLiteral("probe"));
        probe << QVariant(map) << QVariant::fromValue(strings);
        QDBusConnection::sessionBus().call(probe);
        QVERIFY(m_fake->waitForCalls(1));
    };
    const QStringList plain{"a{sv} {s \"level\": v(i 3)}", "a{ss} {s \"label\": s \"In 1\"}"};

    for (int round = 0; round < 2; ++round) {
        DBusCompat::registerMarshallOperators(QMetaType::QVariantMap, markingMapWriter, markingMapReader);
        DBusCompat::registerMarshallOperators(stringMapId, markingStringMapWriter, markingStringMapReader);
        sendProbe();
        QCOMPARE(wireTexts(m_fake->calls().first().arguments),
                 QStringList({"a{sv} {s \"level\": v(i 3), s \"written by the stand-in\": v(b true)}",
                              "a{ss} {s \"label\": s \"In 1\", s \"written by the stand-in\": s \"yes\"}"}));

        SetupMapMapItemInterface constructed(m_fake->service(), path, QDBusConnection::sessionBus());
        sendProbe();
        QCOMPARE(m_fake->calls().first().signature, QStringLiteral("a{sv}a{ss}"));
        QCOMPARE(wireTexts(m_fake->calls().first().arguments), plain);
    }
}

void tst_SetupMapMapItemInterface::listensToTheBusSignalFromConstructionOn()
{
    CountingProxy proxy(m_fake->service(), path, QDBusConnection::sessionBus());
    QCOMPARE(proxy.receiverCount(busCellSignal), 1);
    QCOMPARE(proxy.receiverCount(cellSignal), 0);

    // No caller has connected to anything, yet the bus signal reaches the proxy.
    DeliveryCounter deliveries(&proxy);
    syncWithBus(proxy.connection());
    m_fake->emitSignal(path, "setupChangedPart", {"p", "k", wrappedValue(5), false});
    QTRY_COMPARE(deliveries.count(), 1);

    // A caller that connects afterwards gets the next one.
    QSignalSpy spy(&proxy, cellSignal);
    m_fake->emitSignal(path, "setupChangedPart", {"p", "k", wrappedValue(6), false});
    QTRY_COMPARE(spy.count(), 1);
    QCOMPARE(spy.first().at(2), QVariant(6));
}

void tst_SetupMapMapItemInterface::relaysACellChangeOnceWithTheValueUnwrapped()
{
    QSignalSpy spy(m_proxy.get(), cellSignal);
    QVERIFY(spy.isValid());
    syncWithBus(m_proxy->connection());

    m_fake->emitSignal(path, "setupChangedPart", {"in1", "level", wrappedValue(5), false});
    // A second change marks the end: a duplicate of the first would stand before it.
    m_fake->emitSignal(path, "setupChangedPart", {"in2", "label", wrappedValue(QStringLiteral("x")), true});

    QTRY_COMPARE(spy.count(), 2);
    QCoreApplication::processEvents();
    QCOMPARE(spy.count(), 2);
    const QList<QVariant> first = spy.at(0);
    QCOMPARE(first.at(0), QVariant(QStringLiteral("in1")));
    QCOMPARE(first.at(1), QVariant(QStringLiteral("level")));
    QCOMPARE(first.at(2).userType(), int(QMetaType::Int));
    QCOMPARE(first.at(2), QVariant(5));
    QCOMPARE(first.at(3), QVariant(false));
    const QList<QVariant> second = spy.at(1);
    QCOMPARE(second.at(0), QVariant(QStringLiteral("in2")));
    QCOMPARE(second.at(1), QVariant(QStringLiteral("label")));
    QCOMPARE(second.at(2).userType(), int(QMetaType::QString));
    QCOMPARE(second.at(2), QVariant(QStringLiteral("x")));
    QCOMPARE(second.at(3), QVariant(true));
}

void tst_SetupMapMapItemInterface::relaysOnceAlsoWhenACallerConnectsToBothOverloads()
{
    QSignalSpy unwrapped(m_proxy.get(), cellSignal);
    QSignalSpy wrapped(m_proxy.get(), busCellSignal);
    int lambdaCalls = 0;
    QVariant lambdaValue;
    connect(m_proxy.get(), QOverload<QString, QString, QVariant, bool>::of(&SetupMapMapItemInterface::setupChangedPart),
            this, [&](const QString &, const QString &, const QVariant &value, bool) {
                ++lambdaCalls;
                lambdaValue = value;
            });
    syncWithBus(m_proxy->connection());

    m_fake->emitSignal(path, "setupChangedPart", {"in1", "level", wrappedValue(5), false});
    m_fake->emitSignal(path, "setupChangedPart", {"in1", "level", wrappedValue(7), false});

    QTRY_COMPARE(unwrapped.count(), 2);
    QCoreApplication::processEvents();
    QCOMPARE(unwrapped.count(), 2);
    QCOMPARE(unwrapped.at(0).at(2), QVariant(5));
    QCOMPARE(unwrapped.at(1).at(2), QVariant(7));
    QCOMPARE(wrapped.count(), 2);
    QCOMPARE(wrapped.at(0).at(2).userType(), qMetaTypeId<QDBusVariant>());
    QCOMPARE(qvariant_cast<QDBusVariant>(wrapped.at(0).at(2)).variant(), QVariant(5));
    QCOMPARE(lambdaCalls, 2);
    QCOMPARE(lambdaValue, QVariant(7));
}

void tst_SetupMapMapItemInterface::relaysAStructuredNewValueAndTheDeletedFlag()
{
    QSignalSpy spy(m_proxy.get(), cellSignal);
    syncWithBus(m_proxy->connection());

    m_fake->emitSignal(path, "setupChangedPart",
                       {"in1", "routing", wrappedValue(QVariant(cell(QStringLiteral("out"), 2))), true});

    QTRY_COMPARE(spy.count(), 1);
    QCOMPARE(spy.first().at(3), QVariant(true));
    const QVariant value = spy.first().at(2);
    QCOMPARE(value.userType(), qMetaTypeId<QDBusArgument>());
    QCOMPARE(qvariant_cast<QDBusArgument>(value).currentSignature(), QStringLiteral("a{sv}"));
    QCOMPARE(qdbus_cast<SettingsMap>(qvariant_cast<QDBusArgument>(value)), cell(QStringLiteral("out"), 2));
}

void tst_SetupMapMapItemInterface::relaysCellChangesOfItsOwnObjectOnly()
{
    QSignalSpy spy(m_proxy.get(), cellSignal);
    syncWithBus(m_proxy->connection());
    const QList<QVariant> change{"in1", "level", wrappedValue(1), false};

    // Sent before the proxy's own signal: by the time that one arrives these have been
    // dropped, or they would stand before it in the spy.
    m_fake->emitSignal(path + QStringLiteral("/Other"), "setupChangedPart", change);
    m_fake->emitSignal(path, "setupChangedPart", change, QStringLiteral("com.velk.mqx.OtherInterface"));
    m_fake->emitForeignSignal(path, "setupChangedPart", change);
    m_fake->emitSignal(path, "setupChangedPart", {"in1", "level", wrappedValue(2), false});

    QTRY_COMPARE(spy.count(), 1);
    QCoreApplication::processEvents();
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().at(2), QVariant(2));
}

void tst_SetupMapMapItemInterface::twoProxiesOfOneObjectEachRelayToTheirOwnReceivers()
{
    SetupMapMapItemInterface other(m_fake->service(), path, QDBusConnection::sessionBus());
    QSignalSpy first(m_proxy.get(), cellSignal);
    QSignalSpy second(&other, cellSignal);
    syncWithBus(m_proxy->connection());

    m_fake->emitSignal(path, "setupChangedPart", {"in1", "level", wrappedValue(5), false});
    m_fake->emitSignal(path, "setupChangedPart", {"in1", "level", wrappedValue(6), false});

    QTRY_COMPARE(first.count(), 2);
    QTRY_COMPARE(second.count(), 2);
    QCoreApplication::processEvents();
    QCOMPARE(first.count(), 2);
    QCOMPARE(second.count(), 2);
    QCOMPARE(first.at(0).at(2), QVariant(5));
    QCOMPARE(second.at(0).at(2), QVariant(5));
    QCOMPARE(first.at(1).at(2), QVariant(6));
    QCOMPARE(second.at(1).at(2), QVariant(6));
}

void tst_SetupMapMapItemInterface::relaysSetupChangedOfItsOwnObjectOnly()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupChanged()), "setupChanged", {});
}

void tst_SetupMapMapItemInterface::relaysMapEntryRemovedOfItsOwnObjectOnly()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(mapEntryRemoved(QString)), "mapEntryRemoved", {"in1"});
}

void tst_SetupMapMapItemInterface::relaysSetupBoundsChangedOfItsOwnObjectOnly()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupBoundsChanged()), "setupBoundsChanged", {});
}

void tst_SetupMapMapItemInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    const QMetaObject &meta = SetupMapMapItemInterface::staticMetaObject;
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Signal),
             QStringList({"setupChanged()", "setupChangedPart(QString,QString,QVariant,bool)",
                          "setupChangedPart(QString,QString,QDBusVariant,bool)", "mapEntryRemoved(QString)",
                          "setupBoundsChanged()"}));
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Slot),
             QStringList({"setValue(QMap<QString,QVariantMap>)",
                          "setValue(QString,QVariantMap)",
                          "setValue(QString,QMap<QString,QString>)",
                          "setValue(QString,QString,QVariant)",
                          "setValue(QString,QString,QString)",
                          "setDefaultMap(QMap<QString,QVariantMap>)",
                          "setDefaultMap(QString,QVariantMap)",
                          "mergeFromDefaultMap(QString)",
                          "mergeFromDefaultMap()",
                          "setValueAsync(QString,QVariantMap)",
                          "getAllKeys()",
                          "getAllKeys(QString)",
                          "isKeyAvailable(QString)",
                          "isChangeable()",
                          "getValue(QString)",
                          "getValue(QString,QString)",
                          "getStringValue(QString,QString)",
                          "getStringMap(QString)",
                          "getMin(QString,QString)",
                          "getMax(QString,QString)",
                          "getEnums(QString,QString)",
                          "getBaseElement()",
                          "getString()",
                          "getString(QString)",
                          "size()",
                          "removeItem(QString)",
                          "removeItem(QString,QString)",
                          "setToDefault()",
                          "setToDefaultAsync()",
                          "emitSetupChangedPart(QString,QString,QDBusVariant,bool)"}));
    QCOMPARE(ownMethodSignatures(meta).size(), 5 + 29 + 1);
    const QMetaMethod relay = meta.method(meta.indexOfSlot("emitSetupChangedPart(QString,QString,QDBusVariant,bool)"));
    QCOMPARE(relay.access(), QMetaMethod::Private);
    QCOMPARE(meta.method(meta.indexOfMethod("getValue(QString)")).typeName(), "SettingsMap");
    QCOMPARE(meta.method(meta.indexOfMethod("getStringMap(QString)")).typeName(), "SettingsStringMap");
    QCOMPARE(meta.method(meta.indexOfMethod("getAllKeys(QString)")).returnType(), int(QMetaType::QStringList));
    QCOMPARE(meta.method(meta.indexOfMethod("mergeFromDefaultMap(QString)")).typeName(), "QDBusReply<bool>");
    QCOMPARE(meta.method(meta.indexOfMethod("mergeFromDefaultMap()")).typeName(), "QDBusReply<QStringList>");
    QCOMPARE(meta.method(meta.indexOfMethod("removeItem(QString)")).typeName(), "QDBusReply<int>");
    QCOMPARE(meta.method(meta.indexOfMethod("removeItem(QString,QString)")).typeName(), "QDBusReply<int>");
    QCOMPARE(meta.method(meta.indexOfMethod("getString()")).typeName(), "QDBusReply<QString>");
    QCOMPARE(meta.method(meta.indexOfMethod("getString(QString)")).returnType(), int(QMetaType::QString));
    QCOMPARE(meta.method(meta.indexOfMethod("setToDefault()")).returnType(), int(QMetaType::Void));
    QCOMPARE(meta.superClass(), &QDBusAbstractInterface::staticMetaObject);
    QCOMPARE(m_proxy->metaObject(), &SetupMapMapItemInterface::staticMetaObject);
}

void tst_SetupMapMapItemInterface::parameterNamesAreKeptAsDeclared()
{
    const QMetaObject &meta = SetupMapMapItemInterface::staticMetaObject;
    const auto names = [&](const char *signature) {
        QStringList result;
        for (const QByteArray &name : meta.method(meta.indexOfMethod(signature)).parameterNames())
            result.append(QString::fromLatin1(name));
        return result;
    };
    QCOMPARE(names("removeItem(QString,QString)"), QStringList({"primaryKey", "secondaryKey"}));
    QCOMPARE(names("getValue(QString,QString)"), QStringList({"primaryKey", "secondKey"}));
    QCOMPARE(names("setValue(QString,QString,QVariant)"), QStringList({"primaryKey", "secondKey", "newValue"}));
    QCOMPARE(names("setupChangedPart(QString,QString,QVariant,bool)"),
             QStringList({"primaryKey", "secondKey", "newValue", "deleted"}));
    QCOMPARE(names("mapEntryRemoved(QString)"), QStringList({"primaryKey"}));
}

void tst_SetupMapMapItemInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    QCOMPARE(m_proxy->qt_metacast("SetupMapMapItemInterface"), static_cast<void *>(m_proxy.get()));
    QCOMPARE(m_proxy->qt_metacast("QDBusAbstractInterface"),
             static_cast<void *>(static_cast<QDBusAbstractInterface *>(m_proxy.get())));
    QCOMPARE(m_proxy->qt_metacast("SetupMapListInterface"), nullptr);
}

void tst_SetupMapMapItemInterface::invokingSlotsByNameGivesTheDirectResult()
{
    SettingsMap entry = cell(QStringLiteral("level"), 3);
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant(entry)));
    m_fake->answer("removeItem", ScriptedAnswer::value(1));

    SettingsStringMap texts;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getStringMap", Qt::DirectConnection,
                                      Q_RETURN_ARG(SettingsStringMap, texts), Q_ARG(QString, QStringLiteral("in1"))));
    QCOMPARE(texts, m_proxy->getStringMap("in1"));
    QCOMPARE(texts.value(QStringLiteral("level")), QStringLiteral("3"));

    QDBusReply<int> removed;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "removeItem", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<int>, removed), Q_ARG(QString, QStringLiteral("in1")),
                                      Q_ARG(QString, QStringLiteral("level"))));
    QVERIFY(removed.isValid());
    QCOMPARE(removed.value(), 1);
    QCOMPARE(m_fake->calls().last().signature, QStringLiteral("ss"));
}

QTEST_GUILESS_MAIN(tst_SetupMapMapItemInterface)

#include "tst_setupmapmapiteminterface.moc"
