#include "SetupMapMapItemInterface.h"

#include "BusTestSupport.h"
#include "DBusCompat_p.h"
#include "DBusTypes.h"
#include "ProxyClassTest.h"
#include "StructuredValues.h"

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

using MapOfMaps = QMap<QString, QVariantMap>;

namespace {
using P = SetupMapMapItemInterface;
using IntReply = QDBusReply<int>;
const QString path = QStringLiteral("/Setup/Routing");
const char *const cellSignal = SIGNAL(setupChangedPart(QString, QString, QVariant, bool));
const char *const busCellSignal = SIGNAL(setupChangedPart(QString, QString, QDBusVariant, bool));

SettingsMap cell(const QString &key, const QVariant &value)
{
    return {{key, value}};
}

const MapOfMaps twoEntries{{"b", cell("x", 1)}, {"a", {}}};

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

/// getStringMap("p") invoked by name, its result made comparable.
Seen stringMapByName(QDBusAbstractInterface &proxy)
{
    Seen seen = byName<SettingsStringMap>("getStringMap(QString)", QStringLiteral("p"))(proxy);
    seen.value = comparable(qvariant_cast<SettingsStringMap>(seen.value));
    return seen;
}

const SettingsMap entry{{"level", 3}, {"label", QStringLiteral("In 1")}};
const QString entryText = QStringLiteral("a{sv} {s \"label\": v(s \"In 1\"), s \"level\": v(i 3)}");
const SettingsStringMap texts{{"b", "2"}, {"a", "on"}};
// Every value is a text, never a nested map, and "a" goes before "b".
const QString jsonEntries = QStringLiteral("a{sv} {s \"a\": ") + jsonText(SettingsMap()) +
    QStringLiteral(", s \"b\": ") + jsonText(cell("x", 1)) + QLatin1Char('}');
const QStringList keys{"in1", "in2"};
const SettingsMap flags{{"level", 3}, {"on", true}};
const QVariantMap flagTexts{{"level", QStringLiteral("3")}, {"on", QStringLiteral("true")}};

const QStringList entryKey{"s \"p\""};
const QStringList cellKeys{"s \"p\"", "s \"k\""};

// clang-format off
// The blocking entry setter sends the map bare; a cell takes a variant or a bare string. Slots
// invoked by name give what the direct call gives; the getters with a log give an empty value
// and log one line on any failure.
const QList<OperationRow> replies{
    {.operation = "setValue map of maps", .run = onProxy<P>([](P &p) { return p.setValue(twoEntries); }),
     .call = {.member = "setValue", .signature = "a{sv}", .wireArguments = {jsonEntries}},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "setValue entry", .run = onProxy<P>([](P &p) { return p.setValue("p", entry); }),
     .call = {.member = "setValue", .signature = "sa{sv}", .wireArguments = {"s \"p\"", entryText}},
     .reply = {.answered = true, .wrongType = QStringLiteral("true"), .empty = false}},
    {.operation = "setValue string map", .run = onProxy<P>([](P &p) { return p.setValue("p", texts); }),
     .call = {.member = "setValue", .signature = "sa{sv}",
              .wireArguments = {"s \"p\"", "a{sv} {s \"a\": v(s \"on\"), s \"b\": v(s \"2\")}"}},
     .reply = {.answered = true, .wrongType = 1.0, .empty = false}},
    {.operation = "setValue cell variant",
     .run = onProxy<P>([](P &p) { return p.setValue("p", "k", QVariant(QStringLiteral("on"))); }),
     .call = {.member = "setValue", .signature = "ssv", .wireArguments = {"s \"p\"", "s \"k\"", "v(s \"on\")"}},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "setValue cell string",
     .run = onProxy<P>([](P &p) { return p.setValue("p", "k", QStringLiteral("on")); }),
     .call = {.member = "setValue", .signature = "sss", .wireArguments = {"s \"p\"", "s \"k\"", "s \"on\""}},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "setDefaultMap map of maps", .run = onProxy<P>([](P &p) { return p.setDefaultMap(twoEntries); }),
     .call = {.member = "setDefaultMap", .signature = "a{sv}", .wireArguments = {jsonEntries}},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "setDefaultMap entry", .run = onProxy<P>([](P &p) { return p.setDefaultMap("p", entry); }),
     .call = {.member = "setDefaultMap", .signature = "sa{sv}", .wireArguments = {"s \"p\"", entryText}},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "mergeFromDefaultMap entry", .run = onProxy<P>([](P &p) { return p.mergeFromDefaultMap("p"); }),
     .call = {.member = "mergeFromDefaultMap", .signature = "s", .wireArguments = entryKey},
     .reply = {.answered = true, .wrongType = keys, .empty = false}},
    {.operation = "mergeFromDefaultMap all", .run = onProxy(&P::mergeFromDefaultMap),
     .call = {.member = "mergeFromDefaultMap"}, .reply = {.answered = keys, .wrongType = true, .empty = QStringList()}},
    {.operation = "getAllKeys", .run = onProxy(&P::getAllKeys), .call = {.member = "getAllKeys"},
     .reply = {.answered = keys, .wrongType = QStringLiteral("in1"), .empty = QStringList()}},
    {.operation = "isKeyAvailable", .run = onProxy<P>([](P &p) { return p.isKeyAvailable("p"); }),
     .call = {.member = "isKeyAvailable", .signature = "s", .wireArguments = entryKey},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .call = {.member = "isChangeable"},
     .reply = {.answered = true, .wrongType = QStringLiteral("yes"), .empty = false}},
    {.operation = "getEnums", .run = onProxy<P>([](P &p) { return p.getEnums("p", "k"); }),
     .call = {.member = "getEnums", .signature = "ss", .wireArguments = cellKeys},
     .reply = {.answered = keys, .wrongType = wrappedValue(keys), .empty = QStringList()}},
    {.operation = "getString", .run = onProxy(&P::getString), .call = {.member = "getString"},
     .reply = {.answered = QStringLiteral("in1: on"), .wrongType = 1, .empty = QString()}},
    {.operation = "size", .run = onProxy(&P::size), .call = {.member = "size"},
     .reply = {.answered = 2, .wrongType = 2.0, .empty = 0}},
    {.operation = "removeItem entry", .run = onProxy<P>([](P &p) { return p.removeItem("p"); }),
     .call = {.member = "removeItem", .signature = "s", .wireArguments = entryKey},
     .reply = {.answered = 1, .wrongType = true, .empty = 0}},
    {.operation = "removeItem cell", .run = onProxy<P>([](P &p) { return p.removeItem("p", "k"); }),
     .call = {.member = "removeItem", .signature = "ss", .wireArguments = cellKeys},
     .reply = {.answered = 4, .wrongType = true, .empty = 0}},
    {.operation = "removeItem cell by name",
     .run = byName<IntReply>("removeItem(QString,QString)", QStringLiteral("p"), QStringLiteral("k")),
     .call = {.member = "removeItem", .signature = "ss", .wireArguments = cellKeys},
     .reply = {.answered = 1, .wrongType = true, .empty = 0}},
    {.operation = "getAllKeys entry", .run = onProxy<P>([](P &p) { return p.getAllKeys("p"); }),
     .call = {.member = "getAllKeys", .signature = "s", .wireArguments = entryKey},
     .reply = {.answered = keys, .wrongType = QStringLiteral("in1"), .empty = QStringList()},
     .log = judgedAs<P, QStringList>("getAllKeys", QStringLiteral("in1"))},
    {.operation = "getValue entry", .run = onProxy<P>([](P &p) { return p.getValue("p"); }),
     .call = {.member = "getValue", .signature = "s", .wireArguments = entryKey},
     .reply = {.answered = flags, .wrongType = wrappedValue(flags), .empty = SettingsMap()},
     .log = judgedAs<P, SettingsMap>("getValue", wrappedValue(flags))},
    {.operation = "getValue cell", .run = onProxy<P>([](P &p) { return p.getValue("p", "k"); }),
     .call = {.member = "getValue", .signature = "ss", .wireArguments = cellKeys},
     .reply = {.answered = wrappedValue(3), .seen = 3, .wrongType = 3},
     .log = judgedAs<P, QDBusVariant>("getValue", 3)},
    {.operation = "getStringValue", .run = onProxy<P>([](P &p) { return p.getStringValue("p", "k"); }),
     .call = {.member = "getStringValue", .signature = "ss", .wireArguments = cellKeys},
     .reply = {.answered = QStringLiteral("3 dB"), .wrongType = 3, .empty = QString()},
     .log = judgedAs<P, QString>("getStringValue", 3)},
    {.operation = "getStringMap", .run = onProxy<P>([](P &p) { return comparable(p.getStringMap("p")); }),
     .call = {.member = "getValue", .signature = "s", .wireArguments = entryKey},
     .reply = {.answered = flags, .seen = flagTexts, .wrongType = QStringLiteral("level=3"), .empty = QVariantMap()},
     .log = judgedAs<P, SettingsMap>("getStringMap", QStringLiteral("level=3"))},
    {.operation = "getStringMap by name", .run = stringMapByName,
     .call = {.member = "getValue", .signature = "s", .wireArguments = entryKey},
     .reply = {.answered = cell("level", 3), .seen = QVariantMap{{"level", "3"}}, .wrongType = 3,
               .empty = QVariantMap()},
     .log = judgedAs<P, SettingsMap>("getStringMap", 3)},
    {.operation = "getMin", .run = onProxy<P>([](P &p) { return p.getMin("p", "k"); }),
     .call = {.member = "getMin", .signature = "ss", .wireArguments = cellKeys},
     .reply = {.answered = wrappedValue(-6.5), .seen = -6.5, .wrongType = -6.5},
     .log = judgedAs<P, QDBusVariant>("getMin", -6.5)},
    {.operation = "getMax", .run = onProxy<P>([](P &p) { return p.getMax("p", "k"); }),
     .call = {.member = "getMax", .signature = "ss", .wireArguments = cellKeys},
     .reply = {.answered = wrappedValue(12), .seen = 12, .wrongType = QStringLiteral("12")},
     .log = judgedAs<P, QDBusVariant>("getMax", QStringLiteral("12"))},
    {.operation = "getBaseElement", .run = onProxy(&P::getBaseElement), .call = {.member = "getBaseElement"},
     .reply = {.answered = wrappedValue(QStringLiteral("template")), .seen = QStringLiteral("template"),
               .wrongType = QStringLiteral("template")},
     .log = judgedAs<P, QDBusVariant>("getBaseElement", QStringLiteral("template"))},
    {.operation = "getString entry", .run = onProxy<P>([](P &p) { return p.getString("p"); }),
     .call = {.member = "getString", .signature = "s", .wireArguments = entryKey},
     .reply = {.answered = QStringLiteral("level=3"), .wrongType = wrappedValue(QStringLiteral("level=3")),
               .empty = QString()},
     .log = judgedAs<P, QString>("getString", wrappedValue(QStringLiteral("level=3")))},
};

const QList<OperationRow> sent{
    {.operation = "setValue cell variant int", .run = onProxy<P>([](P &p) { p.setValue("p", "k", QVariant(5)); }),
     .call = {.member = "setValue", .signature = "ssv", .wireArguments = {"s \"p\"", "s \"k\"", "v(i 5)"}}},
    {.operation = "setDefaultMap empty map of maps", .run = onProxy<P>([](P &p) { p.setDefaultMap(MapOfMaps()); }),
     .call = {.member = "setDefaultMap", .signature = "a{sv}", .wireArguments = {"a{sv} {}"}}},
};

// The asynchronous entry setter wraps the map in a variant.
const QList<OperationRow> asyncs{
    {.operation = "setValueAsync", .run = onProxy<P>([](P &p) { p.setValueAsync("p", entry); }),
     .call = {.member = "setValue", .signature = "sv", .wireArguments = {"s \"p\"", "v(" + entryText + ")"}}},
    {.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .call = {.member = "setToDefault"}},
};

const QStringList slotSignatures{
    "setValue(QMap<QString,QVariantMap>)", "setValue(QString,QVariantMap)", "setValue(QString,QMap<QString,QString>)",
    "setValue(QString,QString,QVariant)", "setValue(QString,QString,QString)",
    "setDefaultMap(QMap<QString,QVariantMap>)", "setDefaultMap(QString,QVariantMap)",
    "QDBusReply<bool> mergeFromDefaultMap(QString)", "QDBusReply<QStringList> mergeFromDefaultMap()",
    "setValueAsync(QString,QVariantMap)", "getAllKeys()", "QStringList getAllKeys(QString)", "isKeyAvailable(QString)",
    "isChangeable()", "SettingsMap getValue(QString)", "getValue(QString,QString)", "getStringValue(QString,QString)",
    "SettingsStringMap getStringMap(QString)", "getMin(QString,QString)", "getMax(QString,QString)",
    "getEnums(QString,QString)", "getBaseElement()", "QDBusReply<QString> getString()", "QString getString(QString)",
    "size()", "QDBusReply<int> removeItem(QString)", "QDBusReply<int> removeItem(QString,QString)",
    "void setToDefault()", "setToDefaultAsync()", "emitSetupChangedPart(QString,QString,QDBusVariant,bool)"};
// clang-format on

ProxyClassTable mapMapItem()
{
    return {
        .className = "SetupMapMapItemInterface",
        .path = path,
        .make = factoryOf<P>(),
        .sent = sent,
        .replies = replies,
        .errors = {{"error", "no such entry", "\"no such entry\""},
                   {"error with quotes", "entry \"in1\" unknown", "\"entry \\\"in1\\\" unknown\""}},
        .setToDefault = {.operation = "setToDefault",
                         .run = onProxy(&P::setToDefault),
                         .call = {.member = "setToDefault"}},
        .asyncs = asyncs,
        .failingCall = {.operation = "size", .run = onProxy(&P::size), .call = {.member = "size"}},
        .signalSignatures = {"setupChanged()", "setupChangedPart(QString,QString,QVariant,bool)",
                             "setupChangedPart(QString,QString,QDBusVariant,bool)", "mapEntryRemoved(QString)",
                             "setupBoundsChanged()"},
        .slotSignatures = slotSignatures,
        .otherClasses = {"SetupMapListInterface"},
        .relayed = {{.operation = "setupChanged()", .call = {.member = "setupChanged"}},
                    {.operation = "mapEntryRemoved(QString)",
                     .call = {.member = "mapEntryRemoved", .arguments = {"in1"}}},
                    {.operation = "setupBoundsChanged()", .call = {.member = "setupBoundsChanged"}}},
    };
}

/// A proxy whose receivers can be counted.
class CountingProxy : public SetupMapMapItemInterface
{
public:
    using SetupMapMapItemInterface::SetupMapMapItemInterface;
    int receiverCount(const char *signal) const { return receivers(signal); }
};

using MarkingStringMap =
    MarkingOperators<SettingsStringMap, DBusTypes::writeSettingsStringMap, DBusTypes::readSettingsStringMap>;

/// A structure, which no map or list reader takes apart.
QVariant pair()
{
    QDBusArgument pair;
    pair.beginStructure();
    pair << 1 << QStringLiteral("a");
    pair.endStructure();
    return QVariant::fromValue(pair);
}

/// A cell change of "in1" "level" as the application emits it.
QList<QVariant> levelChange(const QVariant &value)
{
    return {QStringLiteral("in1"), QStringLiteral("level"), wrappedValue(value), false};
}

/// The new values a spy on a cell signal has seen.
QList<QVariant> relayedValues(const QSignalSpy &spy)
{
    QList<QVariant> values;
    for (const QList<QVariant> &arguments : spy)
        values.append(arguments.at(2));
    return values;
}
} // namespace

class tst_SetupMapMapItemInterface : public ProxyClassTest
{
    Q_OBJECT

public:
    tst_SetupMapMapItemInterface()
        : ProxyClassTest(mapMapItem())
    {
    }

private:
    P &proxy() { return ProxyClassTest::proxy<P>(); }
    /// Emits each change of @p changes, after the same from another path, interface and
    /// connection, then waits until the spies have seen @p count signals and nothing more comes.
    void emitAndSettle(const QList<QList<QVariant>> &changes, const QList<QSignalSpy *> &spies, int count);

private Q_SLOTS:
    void initTestCase();

    void mapsOfMapsTravelAsJsonTexts();
    void entryValuesStayAsSentAndOnlyPlainOnesGetAText_data();
    void entryValuesStayAsSentAndOnlyPlainOnesGetAText();
    void anEntryWithARepeatedKeyIsReadAsQMapReadsIt();
    void getStringWithoutKeyHandsOverTheErrorUnlogged();

    void registersSettingsStringMapOnceAndBothProxiesWork();
    void everyConstructionInstallsBothMapOperators();

    void listensToTheBusSignalFromConstructionOn();
    void relaysEachCellChangeOfItsOwnObjectOnceWithTheValueUnwrapped_data();
    void relaysEachCellChangeOfItsOwnObjectOnceWithTheValueUnwrapped();
    void relaysOnceAlsoWhenACallerConnectsToBothOverloads();
    void twoProxiesOfOneObjectEachRelayToTheirOwnReceivers();

    void relayOfTheBusSignalIsNoSlotForCallers();
    void parameterNamesAreKeptAsDeclared();

private:
    int m_stringMapIdBeforeAnyProxy = -1;
};

void tst_SetupMapMapItemInterface::emitAndSettle(const QList<QList<QVariant>> &changes,
                                                 const QList<QSignalSpy *> &spies, int count)
{
    syncWithBus(proxy().connection());
    for (const QList<QVariant> &change : changes) {
        // Sent before the proxy's own change: by the time that arrives these have been
        // dropped, or they would stand before it in the spies.
        m_fake->emitSignal(path + QStringLiteral("/Other"), "setupChangedPart", change);
        m_fake->emitSignal(path, "setupChangedPart", change, QStringLiteral("com.velk.mqx.OtherInterface"));
        m_fake->emitForeignSignal(path, "setupChangedPart", change);
        m_fake->emitSignal(path, "setupChangedPart", change);
    }
    for (QSignalSpy *spy : spies)
        QTRY_COMPARE(spy->count(), count);
    // A duplicate would stand among the signals by now, or come with the next events.
    QCoreApplication::processEvents();
    for (QSignalSpy *spy : spies)
        QCOMPARE(spy->count(), count);
}

void tst_SetupMapMapItemInterface::initTestCase()
{
    m_stringMapIdBeforeAnyProxy = DBusCompat::metaTypeIdByName("SettingsStringMap");
}

void tst_SetupMapMapItemInterface::mapsOfMapsTravelAsJsonTexts()
{
    m_fake->answer("setValue", ScriptedAnswer::value(true));
    m_fake->answer("setDefaultMap", ScriptedAnswer::value(true));
    const MapOfMaps maps = twoEntries;

    QVERIFY(proxy().setValue(maps).value());
    QVERIFY(proxy().setDefaultMap(maps).value());

    QVERIFY(m_fake->waitForCalls(2));
    for (const ReceivedCall &call : m_fake->calls()) {
        SettingsMap texts;
        DBusTypes::readSettingsMap(qvariant_cast<QDBusArgument>(call.arguments.first()), texts);
        QCOMPARE(texts.keys(), QStringList({"a", "b"}));
        for (const QString &key : texts.keys()) {
            QCOMPARE(texts.value(key).userType(), int(QMetaType::QString));
            const QJsonDocument json = QJsonDocument::fromJson(texts.value(key).toString().toUtf8());
            QVERIFY(json.isObject());
            QCOMPARE(json.object().toVariantMap(), maps.value(key));
        }
    }
}

void tst_SetupMapMapItemInterface::entryValuesStayAsSentAndOnlyPlainOnesGetAText_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("wire");
    QTest::addColumn<QString>("text");

    // clang-format off
    QTest::newRow("int") << QVariant(1) << "i 1" << "1";
    QTest::newRow("bool") << QVariant(true) << "b true" << "true";
    QTest::newRow("string") << QVariant(QStringLiteral("In 1")) << "s \"In 1\"" << "In 1";
    QTest::newRow("double") << QVariant(0.5) << "d 0.5" << "0.5";
    QTest::newRow("map") << QVariant(cell("out", 2)) << "a{sv} {s \"out\": v(i 2)}" << "";
    QTest::newRow("list") << QVariant(QVariantList{1, 2.5}) << "av [v(i 1), v(d 2.5)]" << "";
    QTest::newRow("map in a map") << QVariant(cell("inner", cell("x", 1)))
                                  << "a{sv} {s \"inner\": v(a{sv} {s \"x\": v(i 1)})}" << "";
    QTest::newRow("structure") << pair() << "(is) (i 1, s \"a\")" << "";
    // clang-format on
}

void tst_SetupMapMapItemInterface::entryValuesStayAsSentAndOnlyPlainOnesGetAText()
{
    QFETCH(QVariant, value);
    QFETCH(QString, wire);
    QFETCH(QString, text);
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant(cell("v", value))));
    m_fake->answer("getMax", ScriptedAnswer::value(wrappedValue(value)));

    LogCapture log;
    const SettingsMap map = proxy().getValue("in1");
    const SettingsStringMap texts = proxy().getStringMap("in1");
    const QVariant max = proxy().getMax("in1", "v");

    QCOMPARE(map.keys(), QStringList{"v"});
    QCOMPARE(wireText(map.value("v")), wire);
    QCOMPARE(texts.keys(), QStringList{"v"});
    QCOMPARE(texts.value("v"), text);
    QCOMPARE(wireText(max), wire);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupMapMapItemInterface::anEntryWithARepeatedKeyIsReadAsQMapReadsIt()
{
    verifyRepeatedKeysKeptAsQMapDoes(*m_fake, "getValue", [this] { return proxy().getValue("in1"); },
                                     {{"level", 1}, {"level", 2}});
    // The texts keep the last value.
    QCOMPARE(proxy().getStringMap("in1"), SettingsStringMap({{"level", "2"}}));
}

void tst_SetupMapMapItemInterface::getStringWithoutKeyHandsOverTheErrorUnlogged()
{
    // getString() of an entry logs its failures, as its checked getter rows show.
    LogCapture log;
    m_fake->answer("getString", ScriptedAnswer::error(failedErrorName(), QStringLiteral("no text")));

    QCOMPARE(proxy().getString().error().message(), QStringLiteral("no text"));
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

    const SettingsMap level = cell(QStringLiteral("level"), 3);
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant(level)));
    QCOMPARE(proxy().getValue("in1"), level);
    QCOMPARE(second.getValue("in1"), level);
    QCOMPARE(proxy().getStringMap("in1").value(QStringLiteral("level")), QStringLiteral("3"));
    QCOMPARE(second.getStringMap("in1").value(QStringLiteral("level")), QStringLiteral("3"));
}

void tst_SetupMapMapItemInterface::everyConstructionInstallsBothMapOperators()
{
    const int stringMapId = DBusCompat::metaTypeIdByName("SettingsStringMap");
    const SettingsMap map = cell(QStringLiteral("level"), 3);
    const SettingsStringMap strings{{QStringLiteral("label"), QStringLiteral("In 1")}};
    const QList<QVariant> maps{QVariant(map), QVariant::fromValue(strings)};
    const QStringList plain{"a{sv} {s \"level\": v(i 3)}", "a{ss} {s \"label\": s \"In 1\"}"};

    for (int round = 0; round < 2; ++round) {
        MarkingSettingsMap::install(QMetaType::QVariantMap);
        MarkingStringMap::install(stringMapId);
        QCOMPARE(wireTexts(probeCall(*m_fake, path, maps).arguments),
                 QStringList({"a{sv} {s \"level\": v(i 3), s \"written by the stand-in\": v(s \"yes\")}",
                              "a{ss} {s \"label\": s \"In 1\", s \"written by the stand-in\": s \"yes\"}"}));

        SetupMapMapItemInterface constructed(m_fake->service(), path, QDBusConnection::sessionBus());
        const ReceivedCall call = probeCall(*m_fake, path, maps);
        QCOMPARE(call.signature, QStringLiteral("a{sv}a{ss}"));
        QCOMPARE(wireTexts(call.arguments), plain);
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
    m_fake->emitSignal(path, "setupChangedPart", levelChange(5));
    QTRY_COMPARE(deliveries.count(), 1);

    // A caller that connects afterwards gets the next one.
    QSignalSpy spy(&proxy, cellSignal);
    m_fake->emitSignal(path, "setupChangedPart", levelChange(6));
    QTRY_COMPARE(spy.count(), 1);
    QCOMPARE(spy.first().at(2), QVariant(6));
}

void tst_SetupMapMapItemInterface::relaysEachCellChangeOfItsOwnObjectOnceWithTheValueUnwrapped_data()
{
    QTest::addColumn<QList<QVariant>>("change");
    QTest::addColumn<QStringList>("relayed");

    // clang-format off
    QTest::newRow("int") << QList<QVariant>{"in1", "level", wrappedValue(5), false}
                         << QStringList{"s \"in1\"", "s \"level\"", "i 5", "b false"};
    QTest::newRow("string, deleted") << QList<QVariant>{"in2", "label", wrappedValue(QStringLiteral("x")), true}
                                     << QStringList{"s \"in2\"", "s \"label\"", "s \"x\"", "b true"};
    QTest::newRow("map, deleted") << QList<QVariant>{"in1", "routing", wrappedValue(QVariant(cell("out", 2))), true}
                                  << QStringList{"s \"in1\"", "s \"routing\"", "a{sv} {s \"out\": v(i 2)}", "b true"};
    // clang-format on
}

void tst_SetupMapMapItemInterface::relaysEachCellChangeOfItsOwnObjectOnceWithTheValueUnwrapped()
{
    QFETCH(QList<QVariant>, change);
    QFETCH(QStringList, relayed);
    QSignalSpy spy(&proxy(), cellSignal);
    QVERIFY(spy.isValid());

    // A second change marks the end: a duplicate of the first would stand before it.
    emitAndSettle({change, levelChange(0)}, {&spy}, 2);

    QCOMPARE(wireTexts(spy.first()), relayed);
}

void tst_SetupMapMapItemInterface::relaysOnceAlsoWhenACallerConnectsToBothOverloads()
{
    QSignalSpy unwrapped(&proxy(), cellSignal);
    QSignalSpy wrapped(&proxy(), busCellSignal);
    QList<QVariant> lambdaValues;
    connect(&proxy(), QOverload<QString, QString, QVariant, bool>::of(&SetupMapMapItemInterface::setupChangedPart),
            this, [&](const QString &, const QString &, const QVariant &value, bool) { lambdaValues.append(value); });

    emitAndSettle({levelChange(5), levelChange(7)}, {&unwrapped, &wrapped}, 2);

    QCOMPARE(relayedValues(unwrapped), QList<QVariant>({5, 7}));
    QCOMPARE(wireTexts(relayedValues(wrapped)), QStringList({"v(i 5)", "v(i 7)"}));
    QCOMPARE(lambdaValues, QList<QVariant>({5, 7}));
}

void tst_SetupMapMapItemInterface::twoProxiesOfOneObjectEachRelayToTheirOwnReceivers()
{
    SetupMapMapItemInterface other(m_fake->service(), path, QDBusConnection::sessionBus());
    QSignalSpy first(&proxy(), cellSignal);
    QSignalSpy second(&other, cellSignal);

    emitAndSettle({levelChange(5), levelChange(6)}, {&first, &second}, 2);

    QCOMPARE(relayedValues(first), QList<QVariant>({5, 6}));
    QCOMPARE(relayedValues(second), QList<QVariant>({5, 6}));
}

void tst_SetupMapMapItemInterface::relayOfTheBusSignalIsNoSlotForCallers()
{
    const QMetaObject &meta = SetupMapMapItemInterface::staticMetaObject;
    const QMetaMethod relay = meta.method(meta.indexOfSlot("emitSetupChangedPart(QString,QString,QDBusVariant,bool)"));
    QCOMPARE(relay.access(), QMetaMethod::Private);
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

QTEST_GUILESS_MAIN(tst_SetupMapMapItemInterface)

#include "tst_setupmapmapiteminterface.moc"
