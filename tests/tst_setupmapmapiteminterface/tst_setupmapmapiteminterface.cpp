#include "SetupMapMapItemInterface.h"

#include "BusTestSupport.h"
#include "CompositeTest.h"
#include "DBusCompat_p.h"
#include "DBusTypes.h"

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

#include <memory>

using MapOfMaps = QMap<QString, QVariantMap>;

namespace {
using P = SetupMapMapItemInterface;
const QString path = QStringLiteral("/Setup/Routing");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");
const char *const cellSignal = SIGNAL(setupChangedPart(QString, QString, QVariant, bool));
const char *const busCellSignal = SIGNAL(setupChangedPart(QString, QString, QDBusVariant, bool));

SettingsMap cell(const QString &key, const QVariant &value)
{
    SettingsMap map;
    map.insert(key, value);
    return map;
}

const QList<OperationRow> asyncCalls{
    {.operation = "setValueAsync",
     .run = onProxy<P>([](P &p) { p.setValueAsync("p", cell("k", 1)); }),
     .member = "setValue",
     .signature = "sv",
     .wireArguments = {"s \"p\"", "v(a{sv} {s \"k\": v(i 1)})"}},
    {.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .member = "setToDefault"},
};

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

/// The checked operations: an empty value and this line on any failure.
QList<OperationRow> checkedGetters()
{
    return {
        {.operation = "getAllKeys entry",
         .run = onProxy<P>([](P &p) { return QVariant(p.getAllKeys("p")); }),
         .member = "getAllKeys",
         .wrongType = 5,
         .empty = QVariant(QStringList()),
         .report = "SetupMapMapItemInterface::getAllKeys(): ",
         .typeError = replyTypeError<QStringList>(5)},
        {.operation = "getValue entry",
         .run = onProxy<P>([](P &p) { return QVariant(p.getValue("p")); }),
         .member = "getValue",
         .wrongType = 5,
         .empty = QVariant(SettingsMap()),
         .report = "SetupMapMapItemInterface::getValue(): ",
         .typeError = replyTypeError<SettingsMap>(5)},
        {.operation = "getValue cell",
         .run = onProxy<P>([](P &p) { return p.getValue("p", "k"); }),
         .member = "getValue",
         .wrongType = 5,
         .empty = QVariant(),
         .report = "SetupMapMapItemInterface::getValue(): ",
         .typeError = replyTypeError<QDBusVariant>(5)},
        {.operation = "getStringValue",
         .run = onProxy<P>([](P &p) { return QVariant(p.getStringValue("p", "k")); }),
         .wrongType = 5,
         .empty = QVariant(QString()),
         .report = "SetupMapMapItemInterface::getStringValue(): ",
         .typeError = replyTypeError<QString>(5)},
        {.operation = "getStringMap",
         .run = onProxy<P>([](P &p) { return QVariant(comparable(p.getStringMap("p"))); }),
         .member = "getValue",
         .wrongType = QStringLiteral("x"),
         .empty = QVariant(QVariantMap()),
         .report = "SetupMapMapItemInterface::getStringMap(): ",
         .typeError = replyTypeError<SettingsMap>(QStringLiteral("x"))},
        {.operation = "getMin",
         .run = onProxy<P>([](P &p) { return p.getMin("p", "k"); }),
         .wrongType = 5,
         .empty = QVariant(),
         .report = "SetupMapMapItemInterface::getMin(): ",
         .typeError = replyTypeError<QDBusVariant>(5)},
        {.operation = "getMax",
         .run = onProxy<P>([](P &p) { return p.getMax("p", "k"); }),
         .wrongType = true,
         .empty = QVariant(),
         .report = "SetupMapMapItemInterface::getMax(): ",
         .typeError = replyTypeError<QDBusVariant>(true)},
        {.operation = "getBaseElement",
         .run = onProxy(&P::getBaseElement),
         .wrongType = 5,
         .empty = QVariant(),
         .report = "SetupMapMapItemInterface::getBaseElement(): ",
         .typeError = replyTypeError<QDBusVariant>(5)},
        {.operation = "getString entry",
         .run = onProxy<P>([](P &p) { return QVariant(p.getString("p")); }),
         .member = "getString",
         .wrongType = 5,
         .empty = QVariant(QString()),
         .report = "SetupMapMapItemInterface::getString(): ",
         .typeError = replyTypeError<QString>(5)},
    };
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

CompositeClass mapMapItem()
{
    SettingsMap entry;
    entry.insert(QStringLiteral("level"), 3);
    entry.insert(QStringLiteral("label"), QStringLiteral("In 1"));
    const QString entryText = QStringLiteral("a{sv} {s \"label\": v(s \"In 1\"), s \"level\": v(i 3)}");
    SettingsStringMap texts;
    texts.insert(QStringLiteral("b"), QStringLiteral("2"));
    texts.insert(QStringLiteral("a"), QStringLiteral("on"));
    const QString jsonEntries = QStringLiteral("a{sv} {s \"a\": ") + jsonText(SettingsMap()) +
        QStringLiteral(", s \"b\": ") + jsonText(cell(QStringLiteral("x"), 1)) + QLatin1Char('}');
    return {
        .className = "SetupMapMapItemInterface",
        .path = path,
        .make = factoryOf<P>(),
        .sent =
            {
                {.operation = "1 setValue map of maps",
                 .run = onProxy<P>([](P &p) { p.setValue(twoEntries()); }),
                 .member = "setValue",
                 .signature = "a{sv}",
                 .wireArguments = {jsonEntries}},
                {.operation = "2 setValue entry",
                 .run = onProxy<P>([entry](P &p) { p.setValue("p", entry); }),
                 .member = "setValue",
                 .signature = "sa{sv}",
                 .wireArguments = {"s \"p\"", entryText}},
                {.operation = "3 setValue string map",
                 .run = onProxy<P>([texts](P &p) { p.setValue("p", texts); }),
                 .member = "setValue",
                 .signature = "sa{sv}",
                 .wireArguments = {"s \"p\"", "a{sv} {s \"a\": v(s \"on\"), s \"b\": v(s \"2\")}"}},
                {.operation = "4 setValue cell variant",
                 .run = onProxy<P>([](P &p) { p.setValue("p", "k", QVariant(QStringLiteral("on"))); }),
                 .member = "setValue",
                 .signature = "ssv",
                 .wireArguments = {"s \"p\"", "s \"k\"", "v(s \"on\")"}},
                {.operation = "4 setValue cell variant int",
                 .run = onProxy<P>([](P &p) { p.setValue("p", "k", QVariant(5)); }),
                 .member = "setValue",
                 .signature = "ssv",
                 .wireArguments = {"s \"p\"", "s \"k\"", "v(i 5)"}},
                {.operation = "5 setValue cell string",
                 .run = onProxy<P>([](P &p) { p.setValue("p", "k", QStringLiteral("on")); }),
                 .member = "setValue",
                 .signature = "sss",
                 .wireArguments = {"s \"p\"", "s \"k\"", "s \"on\""}},
                {.operation = "6 setDefaultMap map of maps",
                 .run = onProxy<P>([](P &p) { p.setDefaultMap(twoEntries()); }),
                 .member = "setDefaultMap",
                 .signature = "a{sv}",
                 .wireArguments = {jsonEntries}},
                {.operation = "7 setDefaultMap entry",
                 .run = onProxy<P>([entry](P &p) { p.setDefaultMap("p", entry); }),
                 .member = "setDefaultMap",
                 .signature = "sa{sv}",
                 .wireArguments = {"s \"p\"", entryText}},
                {.operation = "8 mergeFromDefaultMap entry",
                 .run = onProxy<P>([](P &p) { p.mergeFromDefaultMap("p"); }),
                 .member = "mergeFromDefaultMap",
                 .signature = "s",
                 .wireArguments = {"s \"p\""}},
                {.operation = "9 mergeFromDefaultMap all",
                 .run = onProxy(&P::mergeFromDefaultMap),
                 .member = "mergeFromDefaultMap"},
                {.operation = "10 setValueAsync",
                 .run = onProxy<P>([entry](P &p) { p.setValueAsync("p", entry); }),
                 .member = "setValue",
                 .signature = "sv",
                 .wireArguments = {"s \"p\"", "v(" + entryText + ")"}},
                {.operation = "11 getAllKeys", .run = onProxy(&P::getAllKeys), .member = "getAllKeys"},
                {.operation = "12 getAllKeys entry",
                 .run = onProxy<P>([](P &p) { p.getAllKeys("p"); }),
                 .member = "getAllKeys",
                 .signature = "s",
                 .wireArguments = {"s \"p\""}},
                {.operation = "13 isKeyAvailable",
                 .run = onProxy<P>([](P &p) { p.isKeyAvailable("p"); }),
                 .member = "isKeyAvailable",
                 .signature = "s",
                 .wireArguments = {"s \"p\""}},
                {.operation = "14 isChangeable", .run = onProxy(&P::isChangeable), .member = "isChangeable"},
                {.operation = "15 getValue entry",
                 .run = onProxy<P>([](P &p) { p.getValue("p"); }),
                 .member = "getValue",
                 .signature = "s",
                 .wireArguments = {"s \"p\""}},
                {.operation = "16 getValue cell",
                 .run = onProxy<P>([](P &p) { p.getValue("p", "k"); }),
                 .member = "getValue",
                 .signature = "ss",
                 .wireArguments = {"s \"p\"", "s \"k\""}},
                {.operation = "17 getStringValue",
                 .run = onProxy<P>([](P &p) { p.getStringValue("p", "k"); }),
                 .member = "getStringValue",
                 .signature = "ss",
                 .wireArguments = {"s \"p\"", "s \"k\""}},
                {.operation = "18 getStringMap",
                 .run = onProxy<P>([](P &p) { p.getStringMap("p"); }),
                 .member = "getValue",
                 .signature = "s",
                 .wireArguments = {"s \"p\""}},
                {.operation = "19 getMin",
                 .run = onProxy<P>([](P &p) { p.getMin("p", "k"); }),
                 .member = "getMin",
                 .signature = "ss",
                 .wireArguments = {"s \"p\"", "s \"k\""}},
                {.operation = "20 getMax",
                 .run = onProxy<P>([](P &p) { p.getMax("p", "k"); }),
                 .member = "getMax",
                 .signature = "ss",
                 .wireArguments = {"s \"p\"", "s \"k\""}},
                {.operation = "21 getEnums",
                 .run = onProxy<P>([](P &p) { p.getEnums("p", "k"); }),
                 .member = "getEnums",
                 .signature = "ss",
                 .wireArguments = {"s \"p\"", "s \"k\""}},
                {.operation = "22 getBaseElement", .run = onProxy(&P::getBaseElement), .member = "getBaseElement"},
                {.operation = "23 getString", .run = onProxy(&P::getString), .member = "getString"},
                {.operation = "24 getString entry",
                 .run = onProxy<P>([](P &p) { p.getString("p"); }),
                 .member = "getString",
                 .signature = "s",
                 .wireArguments = {"s \"p\""}},
                {.operation = "25 size", .run = onProxy(&P::size), .member = "size"},
                {.operation = "26 removeItem entry",
                 .run = onProxy<P>([](P &p) { p.removeItem("p"); }),
                 .member = "removeItem",
                 .signature = "s",
                 .wireArguments = {"s \"p\""}},
                {.operation = "27 removeItem cell",
                 .run = onProxy<P>([](P &p) { p.removeItem("p", "k"); }),
                 .member = "removeItem",
                 .signature = "ss",
                 .wireArguments = {"s \"p\"", "s \"k\""}},
                {.operation = "28 setToDefault", .run = onProxy(&P::setToDefault), .member = "setToDefault"},
                {.operation = "29 setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .member = "setToDefault"},
            },
        .absent =
            {
                {.operation = "setValue map of maps",
                 .run = onProxy<P>([](P &p) { return p.setValue(twoEntries()); }),
                 .empty = false},
                {.operation = "setValue entry",
                 .run = onProxy<P>([](P &p) { return p.setValue("p", cell("k", 1)); }),
                 .empty = false},
                {.operation = "setValue string map",
                 .run = onProxy<P>([](P &p) { return p.setValue("p", SettingsStringMap()); }),
                 .empty = false},
                {.operation = "setValue cell variant",
                 .run = onProxy<P>([](P &p) { return p.setValue("p", "k", QVariant(1)); }),
                 .empty = false},
                {.operation = "setValue cell string",
                 .run = onProxy<P>([](P &p) { return p.setValue("p", "k", QStringLiteral("1")); }),
                 .empty = false},
                {.operation = "setDefaultMap map of maps",
                 .run = onProxy<P>([](P &p) { return p.setDefaultMap(twoEntries()); }),
                 .empty = false},
                {.operation = "setDefaultMap entry",
                 .run = onProxy<P>([](P &p) { return p.setDefaultMap("p", cell("k", 1)); }),
                 .empty = false},
                {.operation = "mergeFromDefaultMap entry",
                 .run = onProxy<P>([](P &p) { return p.mergeFromDefaultMap("p"); }),
                 .empty = false},
                {.operation = "mergeFromDefaultMap all",
                 .run = onProxy(&P::mergeFromDefaultMap),
                 .empty = QStringList()},
                {.operation = "getAllKeys", .run = onProxy(&P::getAllKeys), .empty = QStringList()},
                {.operation = "getAllKeys entry",
                 .run = onProxy<P>([](P &p) { return p.getAllKeys("p"); }),
                 .empty = QStringList()},
                {.operation = "isKeyAvailable",
                 .run = onProxy<P>([](P &p) { return p.isKeyAvailable("p"); }),
                 .empty = false},
                {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .empty = false},
                {.operation = "getValue entry",
                 .run = onProxy<P>([](P &p) { return p.getValue("p"); }),
                 .empty = QVariant(SettingsMap())},
                {.operation = "getValue cell",
                 .run = onProxy<P>([](P &p) { return p.getValue("p", "k"); }),
                 .empty = QVariant()},
                {.operation = "getStringValue",
                 .run = onProxy<P>([](P &p) { return p.getStringValue("p", "k"); }),
                 .empty = QString()},
                {.operation = "getStringMap",
                 .run = onProxy<P>([](P &p) { return comparable(p.getStringMap("p")); }),
                 .empty = QVariantMap()},
                {.operation = "getMin",
                 .run = onProxy<P>([](P &p) { return p.getMin("p", "k"); }),
                 .empty = QVariant()},
                {.operation = "getMax",
                 .run = onProxy<P>([](P &p) { return p.getMax("p", "k"); }),
                 .empty = QVariant()},
                {.operation = "getEnums",
                 .run = onProxy<P>([](P &p) { return p.getEnums("p", "k"); }),
                 .empty = QStringList()},
                {.operation = "getBaseElement", .run = onProxy(&P::getBaseElement), .empty = QVariant()},
                {.operation = "getString", .run = onProxy(&P::getString), .empty = QString()},
                {.operation = "getString entry",
                 .run = onProxy<P>([](P &p) { return p.getString("p"); }),
                 .empty = QString()},
                {.operation = "size", .run = onProxy(&P::size), .empty = 0},
                {.operation = "removeItem entry",
                 .run = onProxy<P>([](P &p) { return p.removeItem("p"); }),
                 .empty = 0},
                {.operation = "removeItem cell",
                 .run = onProxy<P>([](P &p) { return p.removeItem("p", "k"); }),
                 .empty = 0},
                {.operation = "setToDefault", .run = onProxy(&P::setToDefault), .empty = QVariant()},
            },
        .checkedGetters = checkedGetters(),
        .loggedErrors = {{"error", "no such entry", "\"no such entry\""},
                         {"error with quotes", "entry \"in1\" unknown", "\"entry \\\"in1\\\" unknown\""}},
        .setToDefault = onProxy(&P::setToDefault),
        .asyncs = asyncCalls,
        .failingCall = {.operation = "size", .run = onProxy(&P::size)},
    };
}
} // namespace

class tst_SetupMapMapItemInterface : public CompositeTest
{
    Q_OBJECT

public:
    tst_SetupMapMapItemInterface()
        : CompositeTest(mapMapItem())
    {
    }

private:
    P &proxy() { return ProxyTableTest::proxy<P>(); }

private Q_SLOTS:
    void initTestCase();

    void mapsOfMapsTravelAsJsonTextsInAscendingPrimaryKeyOrder();
    void emptyMapOfMapsSendsAnEmptyMap();
    void asyncSetterWrapsTheMapWhileTheBlockingOneSendsItBare();
    void cellSettersSendAVariantOrABareString();
    void mapsEachReply_data();
    void mapsEachReply();

    void getValueOfAnEntryLeavesNestedValuesAsArguments();
    void getValueOfAnEntryKeepsRepeatedKeysAsQMapDoes();
    void deeplyNestedAndStructuredValuesStayArguments();
    void checkedOperationsLogOneLineWhenTheApplicationVanishes();
    void getStringMapAsksGetValueAndConvertsEveryValueToText();
    void getStringMapTurnsStructuredValuesIntoEmptyTexts();
    void getStringMapKeepsTheLastValueOfARepeatedKey();
    void getStringWithoutKeyIsNotLogged();
    void plainOperationsLogNothingOnFailure();

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
};

void tst_SetupMapMapItemInterface::initTestCase()
{
    m_stringMapIdBeforeAnyProxy = DBusCompat::metaTypeIdByName("SettingsStringMap");
}

void tst_SetupMapMapItemInterface::mapsOfMapsTravelAsJsonTextsInAscendingPrimaryKeyOrder()
{
    m_fake->answer("setValue", ScriptedAnswer::value(true));
    m_fake->answer("setDefaultMap", ScriptedAnswer::value(true));
    const MapOfMaps maps = twoEntries();

    QVERIFY(proxy().setValue(maps).value());
    QVERIFY(proxy().setDefaultMap(maps).value());

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

    QVERIFY(proxy().setDefaultMap(MapOfMaps()).value());

    verifySingleCall(*m_fake, path, "setDefaultMap", "a{sv}", {"a{sv} {}"});
}

void tst_SetupMapMapItemInterface::asyncSetterWrapsTheMapWhileTheBlockingOneSendsItBare()
{
    m_fake->answer("setValue", ScriptedAnswer::value(true));
    const SettingsMap entry = cell(QStringLiteral("level"), 3);

    proxy().setValueAsync("p", entry);
    QVERIFY(m_fake->waitForCalls(1));
    proxy().setValue("p", entry);

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

    QVERIFY(proxy().setValue("p", "k", QStringLiteral("on")).value());
    QVERIFY(proxy().setValue("p", "k", QVariant(QStringLiteral("on"))).value());

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
    addMappedReplyColumns();
    const QStringList keys{QStringLiteral("in1"), QStringLiteral("in2")};
    addMappedReplyRows("setValue map of maps ",
                       {.operation = "setValue map of maps",
                        .run = onProxy<P>([](P &p) { return p.setValue(twoEntries()); }),
                        .member = "setValue",
                        .answered = true,
                        .wrongType = 1,
                        .empty = false});
    addMappedReplyRows("setValue entry ",
                       {.operation = "setValue entry",
                        .run = onProxy<P>([](P &p) { return p.setValue("p", cell("k", 1)); }),
                        .member = "setValue",
                        .answered = true,
                        .wrongType = QStringLiteral("true"),
                        .empty = false});
    addMappedReplyRows("setValue string map ",
                       {.operation = "setValue string map",
                        .run = onProxy<P>([](P &p) {
                            return p.setValue("p", SettingsStringMap{{QStringLiteral("k"), QStringLiteral("1")}});
                        }),
                        .member = "setValue",
                        .answered = true,
                        .wrongType = 1.0,
                        .empty = false});
    addMappedReplyRows("setValue cell variant ",
                       {.operation = "setValue cell variant",
                        .run = onProxy<P>([](P &p) { return p.setValue("p", "k", QVariant(1)); }),
                        .member = "setValue",
                        .answered = true,
                        .wrongType = 1,
                        .empty = false});
    addMappedReplyRows("setValue cell string ",
                       {.operation = "setValue cell string",
                        .run = onProxy<P>([](P &p) { return p.setValue("p", "k", QStringLiteral("1")); }),
                        .member = "setValue",
                        .answered = true,
                        .wrongType = 1,
                        .empty = false});
    addMappedReplyRows("setDefaultMap map of maps ",
                       {.operation = "setDefaultMap map of maps",
                        .run = onProxy<P>([](P &p) { return p.setDefaultMap(twoEntries()); }),
                        .member = "setDefaultMap",
                        .answered = true,
                        .wrongType = 1,
                        .empty = false});
    addMappedReplyRows("setDefaultMap entry ",
                       {.operation = "setDefaultMap entry",
                        .run = onProxy<P>([](P &p) { return p.setDefaultMap("p", cell("k", 1)); }),
                        .member = "setDefaultMap",
                        .answered = true,
                        .wrongType = 1,
                        .empty = false});
    addMappedReplyRows("mergeFromDefaultMap entry ",
                       {.operation = "mergeFromDefaultMap entry",
                        .run = onProxy<P>([](P &p) { return p.mergeFromDefaultMap("p"); }),
                        .member = "mergeFromDefaultMap",
                        .answered = true,
                        .wrongType = keys,
                        .empty = false});
    addMappedReplyRows("mergeFromDefaultMap all ",
                       {.operation = "mergeFromDefaultMap all",
                        .run = onProxy(&P::mergeFromDefaultMap),
                        .member = "mergeFromDefaultMap",
                        .answered = keys,
                        .wrongType = true,
                        .empty = QStringList()});
    addMappedReplyRows("getAllKeys ",
                       {.operation = "getAllKeys",
                        .run = onProxy(&P::getAllKeys),
                        .answered = keys,
                        .wrongType = QStringLiteral("in1"),
                        .empty = QStringList()});
    addMappedReplyRows("isKeyAvailable ",
                       {.operation = "isKeyAvailable",
                        .run = onProxy<P>([](P &p) { return p.isKeyAvailable("in1"); }),
                        .answered = true,
                        .wrongType = 1,
                        .empty = false});
    addMappedReplyRows("isChangeable ",
                       {.operation = "isChangeable",
                        .run = onProxy(&P::isChangeable),
                        .answered = true,
                        .wrongType = QStringLiteral("yes"),
                        .empty = false});
    addMappedReplyRows("getEnums ",
                       {.operation = "getEnums",
                        .run = onProxy<P>([](P &p) { return p.getEnums("p", "k"); }),
                        .answered = keys,
                        .wrongType = wrappedValue(keys),
                        .empty = QStringList()});
    addMappedReplyRows("getString ",
                       {.operation = "getString",
                        .run = onProxy(&P::getString),
                        .answered = QStringLiteral("in1: on"),
                        .wrongType = 1,
                        .empty = QString()});
    addMappedReplyRows("size ",
                       {.operation = "size", .run = onProxy(&P::size), .answered = 2, .wrongType = 2.0, .empty = 0});
    addMappedReplyRows("removeItem entry ",
                       {.operation = "removeItem entry",
                        .run = onProxy<P>([](P &p) { return p.removeItem("p"); }),
                        .member = "removeItem",
                        .answered = 1,
                        .wrongType = true,
                        .empty = 0});
    addMappedReplyRows("removeItem cell ",
                       {.operation = "removeItem cell",
                        .run = onProxy<P>([](P &p) { return p.removeItem("p", "k"); }),
                        .member = "removeItem",
                        .answered = 4,
                        .wrongType = true,
                        .empty = 0});

    SettingsMap entry;
    entry.insert(QStringLiteral("level"), 3);
    entry.insert(QStringLiteral("on"), true);
    QVariantMap entryTexts;
    entryTexts.insert(QStringLiteral("level"), QStringLiteral("3"));
    entryTexts.insert(QStringLiteral("on"), QStringLiteral("true"));
    addMappedReplyRows("getAllKeys entry ",
                       {.operation = "getAllKeys entry",
                        .run = onProxy<P>([](P &p) { return p.getAllKeys("p"); }),
                        .member = "getAllKeys",
                        .answered = keys,
                        .seen = keys,
                        .wrongType = QStringLiteral("in1"),
                        .empty = QStringList()},
                       LogCheck::Unchecked, LogCheck::Unchecked);
    addMappedReplyRows("getValue entry ",
                       {.operation = "getValue entry",
                        .run = onProxy<P>([](P &p) { return p.getValue("p"); }),
                        .member = "getValue",
                        .answered = QVariant(entry),
                        .seen = QVariant(entry),
                        .wrongType = wrappedValue(QVariant(entry)),
                        .empty = QVariant(SettingsMap())},
                       LogCheck::Unchecked, LogCheck::Unchecked);
    addMappedReplyRows("getValue cell ",
                       {.operation = "getValue cell",
                        .run = onProxy<P>([](P &p) { return p.getValue("p", "k"); }),
                        .member = "getValue",
                        .answered = wrappedValue(3),
                        .seen = QVariant(3),
                        .wrongType = 3,
                        .empty = QVariant()},
                       LogCheck::Unchecked, LogCheck::Unchecked);
    addMappedReplyRows("getStringValue ",
                       {.operation = "getStringValue",
                        .run = onProxy<P>([](P &p) { return p.getStringValue("p", "k"); }),
                        .answered = QStringLiteral("3 dB"),
                        .seen = QStringLiteral("3 dB"),
                        .wrongType = 3,
                        .empty = QVariant(QString())},
                       LogCheck::Unchecked, LogCheck::Unchecked);
    addMappedReplyRows("getStringMap ",
                       {.operation = "getStringMap",
                        .run = onProxy<P>([](P &p) { return comparable(p.getStringMap("p")); }),
                        .member = "getValue",
                        .answered = QVariant(entry),
                        .seen = QVariant(entryTexts),
                        .wrongType = QStringLiteral("level=3"),
                        .empty = QVariant(QVariantMap())},
                       LogCheck::Unchecked, LogCheck::Unchecked);
    addMappedReplyRows("getMin ",
                       {.operation = "getMin",
                        .run = onProxy<P>([](P &p) { return p.getMin("p", "k"); }),
                        .answered = wrappedValue(-6.5),
                        .seen = QVariant(-6.5),
                        .wrongType = -6.5,
                        .empty = QVariant()},
                       LogCheck::Unchecked, LogCheck::Unchecked);
    addMappedReplyRows("getMax ",
                       {.operation = "getMax",
                        .run = onProxy<P>([](P &p) { return p.getMax("p", "k"); }),
                        .answered = wrappedValue(12),
                        .seen = QVariant(12),
                        .wrongType = QStringLiteral("12"),
                        .empty = QVariant()},
                       LogCheck::Unchecked, LogCheck::Unchecked);
    addMappedReplyRows("getBaseElement ",
                       {.operation = "getBaseElement",
                        .run = onProxy(&P::getBaseElement),
                        .answered = wrappedValue(QStringLiteral("template")),
                        .seen = QVariant(QStringLiteral("template")),
                        .wrongType = QStringLiteral("template"),
                        .empty = QVariant()},
                       LogCheck::Unchecked, LogCheck::Unchecked);
    addMappedReplyRows("getString entry ",
                       {.operation = "getString entry",
                        .run = onProxy<P>([](P &p) { return p.getString("p"); }),
                        .member = "getString",
                        .answered = QStringLiteral("level=3"),
                        .seen = QStringLiteral("level=3"),
                        .wrongType = wrappedValue(QStringLiteral("level=3")),
                        .empty = QVariant(QString())},
                       LogCheck::Unchecked, LogCheck::Unchecked);
}

void tst_SetupMapMapItemInterface::mapsEachReply()
{
    verifyMappedReply(*m_fake, proxy());
}

void tst_SetupMapMapItemInterface::getValueOfAnEntryLeavesNestedValuesAsArguments()
{
    SettingsMap entry;
    entry.insert(QStringLiteral("routing"), cell(QStringLiteral("out"), 2));
    entry.insert(QStringLiteral("levels"), QVariantList() << 1 << 2.5);
    entry.insert(QStringLiteral("label"), QStringLiteral("In 1"));
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant(entry)));

    const SettingsMap map = proxy().getValue("in1");

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
    verifyRepeatedKeysKeptAsQMapDoes(*m_fake, "getValue", [this] { return proxy().getValue("in1"); },
                                     {{"level", 1}, {"level", 2}});
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
    const SettingsMap map = proxy().getValue("in1");
    const SettingsStringMap texts = proxy().getStringMap("in1");
    const QVariant max = proxy().getMax("in1", "pair");

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

    const QVariant value = proxy().getValue("in1", "level");

    QVERIFY(!value.isValid());
    const QDBusError error = proxy().lastError();
    QVERIFY(error.isValid());
    QCOMPARE(log.lines(),
             debugLines({"SetupMapMapItemInterface::getValue():  " + quoted(m_fake->service()) +
                         "  /  \"/Setup/Routing\"  / Error: " + quoted(error.message())}));
}

void tst_SetupMapMapItemInterface::getStringMapAsksGetValueAndConvertsEveryValueToText()
{
    SettingsMap entry;
    entry.insert(QStringLiteral("n"), 1);
    entry.insert(QStringLiteral("flag"), true);
    entry.insert(QStringLiteral("t"), QStringLiteral("x"));
    entry.insert(QStringLiteral("d"), 0.5);
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant(entry)));

    const SettingsStringMap texts = proxy().getStringMap("in1");

    QCOMPARE(texts.keys(), QStringList({"d", "flag", "n", "t"}));
    QCOMPARE(texts.value(QStringLiteral("n")), QStringLiteral("1"));
    QCOMPARE(texts.value(QStringLiteral("flag")), QStringLiteral("true"));
    QCOMPARE(texts.value(QStringLiteral("t")), QStringLiteral("x"));
    QCOMPARE(texts.value(QStringLiteral("d")), QStringLiteral("0.5"));
    verifySingleCall(*m_fake, path, "getValue", "s", {"s \"in1\""});
}

void tst_SetupMapMapItemInterface::getStringMapTurnsStructuredValuesIntoEmptyTexts()
{
    SettingsMap entry;
    entry.insert(QStringLiteral("routing"), cell(QStringLiteral("out"), 2));
    entry.insert(QStringLiteral("levels"), QVariantList() << 1 << 2);
    entry.insert(QStringLiteral("label"), QStringLiteral("In 1"));
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant(entry)));

    LogCapture log;
    const SettingsStringMap texts = proxy().getStringMap("in1");

    QCOMPARE(texts.keys(), QStringList({"label", "levels", "routing"}));
    QCOMPARE(texts.value(QStringLiteral("label")), QStringLiteral("In 1"));
    QVERIFY(texts.value(QStringLiteral("routing")).isEmpty());
    QVERIFY(texts.value(QStringLiteral("levels")).isEmpty());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupMapMapItemInterface::getStringMapKeepsTheLastValueOfARepeatedKey()
{
    const QDBusArgument repeated = settingsMapArgument({{"level", 1}, {"level", 2}});
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant::fromValue(repeated)));

    const SettingsStringMap texts = proxy().getStringMap("in1");

    QCOMPARE(texts.size(), 1);
    QCOMPARE(texts.value(QStringLiteral("level")), QStringLiteral("2"));
}

void tst_SetupMapMapItemInterface::getStringWithoutKeyIsNotLogged()
{
    LogCapture log;
    m_fake->answer("getString", ScriptedAnswer::error(failure, QStringLiteral("no text")));

    const QDBusReply<QString> text = proxy().getString();
    QVERIFY(!text.isValid());
    QCOMPARE(text.error().message(), QStringLiteral("no text"));
    QCOMPARE(log.lines(), QList<LogLine>());

    QVERIFY(proxy().getString("p").isNull());
    QCOMPARE(log.lines(),
             debugLines({"SetupMapMapItemInterface::getString():  \"" + m_fake->service() +
                         "\"  /  \"/Setup/Routing\"  / Error: \"no text\""}));
}

void tst_SetupMapMapItemInterface::plainOperationsLogNothingOnFailure()
{
    verifyNothingLoggedWhenTheServiceIsAbsent<P>(path, [](P &p) {
        p.setValue(twoEntries());
        p.setValue("p", cell("k", 1));
        p.setValue("p", SettingsStringMap());
        p.setValue("p", "k", QVariant(1));
        p.setValue("p", "k", QStringLiteral("1"));
        p.setDefaultMap(twoEntries());
        p.setDefaultMap("p", cell("k", 1));
        p.mergeFromDefaultMap("p");
        p.mergeFromDefaultMap();
        p.setValueAsync("p", cell("k", 1));
        p.getAllKeys();
        p.isKeyAvailable("p");
        p.isChangeable();
        p.getEnums("p", "k");
        p.getString();
        p.size();
        p.removeItem("p");
        p.removeItem("p", "k");
        p.setToDefault();
        p.setToDefaultAsync();
    });
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
    QCOMPARE(proxy().getValue("in1"), entry);
    QCOMPARE(second.getValue("in1"), entry);
    QCOMPARE(proxy().getStringMap("in1").value(QStringLiteral("level")), QStringLiteral("3"));
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
    QSignalSpy spy(&proxy(), cellSignal);
    QVERIFY(spy.isValid());
    syncWithBus(proxy().connection());

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
    QSignalSpy unwrapped(&proxy(), cellSignal);
    QSignalSpy wrapped(&proxy(), busCellSignal);
    int lambdaCalls = 0;
    QVariant lambdaValue;
    connect(&proxy(), QOverload<QString, QString, QVariant, bool>::of(&SetupMapMapItemInterface::setupChangedPart),
            this, [&](const QString &, const QString &, const QVariant &value, bool) {
                ++lambdaCalls;
                lambdaValue = value;
            });
    syncWithBus(proxy().connection());

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
    QSignalSpy spy(&proxy(), cellSignal);
    syncWithBus(proxy().connection());

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
    QSignalSpy spy(&proxy(), cellSignal);
    syncWithBus(proxy().connection());
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
    QSignalSpy first(&proxy(), cellSignal);
    QSignalSpy second(&other, cellSignal);
    syncWithBus(proxy().connection());

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
    verifySignalRelay(proxy(), *m_fake, SIGNAL(setupChanged()), "setupChanged", {});
}

void tst_SetupMapMapItemInterface::relaysMapEntryRemovedOfItsOwnObjectOnly()
{
    verifySignalRelay(proxy(), *m_fake, SIGNAL(mapEntryRemoved(QString)), "mapEntryRemoved", {"in1"});
}

void tst_SetupMapMapItemInterface::relaysSetupBoundsChangedOfItsOwnObjectOnly()
{
    verifySignalRelay(proxy(), *m_fake, SIGNAL(setupBoundsChanged()), "setupBoundsChanged", {});
}

void tst_SetupMapMapItemInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    verifyOwnMethods(proxy(),
                     {"setupChanged()", "setupChangedPart(QString,QString,QVariant,bool)",
                      "setupChangedPart(QString,QString,QDBusVariant,bool)", "mapEntryRemoved(QString)",
                      "setupBoundsChanged()"},
                     {"setValue(QMap<QString,QVariantMap>)",
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
                      "emitSetupChangedPart(QString,QString,QDBusVariant,bool)"});
    verifyReturnTypes<P>({{"getValue(QString)", "SettingsMap"},
                          {"getStringMap(QString)", "SettingsStringMap"},
                          {"getAllKeys(QString)", "QStringList"},
                          {"mergeFromDefaultMap(QString)", "QDBusReply<bool>"},
                          {"mergeFromDefaultMap()", "QDBusReply<QStringList>"},
                          {"removeItem(QString)", "QDBusReply<int>"},
                          {"removeItem(QString,QString)", "QDBusReply<int>"},
                          {"getString()", "QDBusReply<QString>"},
                          {"getString(QString)", "QString"},
                          {"setToDefault()", "void"}});
    const QMetaObject &meta = SetupMapMapItemInterface::staticMetaObject;
    QCOMPARE(ownMethodSignatures(meta).size(), 5 + 29 + 1);
    // The relay of the bus signal is no slot for callers.
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

void tst_SetupMapMapItemInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(proxy(), "SetupMapMapItemInterface");
    QCOMPARE(proxy().qt_metacast("SetupMapListInterface"), nullptr);
}

void tst_SetupMapMapItemInterface::invokingSlotsByNameGivesTheDirectResult()
{
    SettingsMap entry = cell(QStringLiteral("level"), 3);
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant(entry)));
    m_fake->answer("removeItem", ScriptedAnswer::value(1));

    SettingsStringMap texts;
    QVERIFY(QMetaObject::invokeMethod(&proxy(), "getStringMap", Qt::DirectConnection,
                                      Q_RETURN_ARG(SettingsStringMap, texts), Q_ARG(QString, QStringLiteral("in1"))));
    QCOMPARE(texts, proxy().getStringMap("in1"));
    QCOMPARE(texts.value(QStringLiteral("level")), QStringLiteral("3"));

    QDBusReply<int> removed;
    QVERIFY(QMetaObject::invokeMethod(&proxy(), "removeItem", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<int>, removed), Q_ARG(QString, QStringLiteral("in1")),
                                      Q_ARG(QString, QStringLiteral("level"))));
    QVERIFY(removed.isValid());
    QCOMPARE(removed.value(), 1);
    QCOMPARE(m_fake->calls().last().signature, QStringLiteral("ss"));
}

QTEST_GUILESS_MAIN(tst_SetupMapMapItemInterface)

#include "tst_setupmapmapiteminterface.moc"
