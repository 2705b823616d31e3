#include "SetupMapItemInterface.h"

#include "CompositeTest.h"
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

/// The checked getters: an invalid variant and one line on any failure.
QList<OperationRow> checkedGetters()
{
    return {
        {.operation = "getValue",
         .run = onProxy<P>([](P &p) { return p.getValue("ch1"); }),
         .wrongType = 7,
         .empty = QVariant(),
         .report = "SetupMapItemInterface::getValue(): ",
         .typeError = replyTypeError<QDBusVariant>(7)},
        {.operation = "getBaseElement",
         .run = onProxy(&P::getBaseElement),
         .wrongType = QStringLiteral("base"),
         .empty = QVariant(),
         .report = "SetupMapItemInterface::getBaseElement(): ",
         .typeError = replyTypeError<QDBusVariant>(QStringLiteral("base"))},
    };
}

const QList<OperationRow> asyncCalls{
    {.operation = "setValueAsync",
     .run = onProxy<P>([](P &p) { p.setValueAsync("ch1", QVariant(3)); }),
     .member = "setValue",
     .signature = "sv",
     .wireArguments = {"s \"ch1\"", "v(i 3)"}},
    {.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .member = "setToDefault"},
};

CompositeClass mapItem()
{
    return {
        .className = "SetupMapItemInterface",
        .path = path,
        .make = factoryOf<P>(),
        .sent =
            {
                {.operation = "setValue int",
                 .run = onProxy<P>([](P &p) { return p.setValue("ch1", QVariant(5)); }),
                 .member = "setValue",
                 .signature = "sv",
                 .wireArguments = {"s \"ch1\"", "v(i 5)"}},
                {.operation = "setValue string",
                 .run = onProxy<P>([](P &p) { return p.setValue("ch2", QVariant(QStringLiteral("Left"))); }),
                 .member = "setValue",
                 .signature = "sv",
                 .wireArguments = {"s \"ch2\"", "v(s \"Left\")"}},
                {.operation = "setValue list",
                 .run = onProxy<P>([](P &p) { return p.setValue("ch3", QVariantList() << 1); }),
                 .member = "setValue",
                 .signature = "sv",
                 .wireArguments = {"s \"ch3\"", "v(av [v(i 1)])"}},
                {.operation = "setValueAsync",
                 .run = onProxy<P>([](P &p) { p.setValueAsync("ch4", QVariant(true)); }),
                 .member = "setValue",
                 .signature = "sv",
                 .wireArguments = {"s \"ch4\"", "v(b true)"}},
                {.operation = "getAllKeys", .run = onProxy(&P::getAllKeys)},
                {.operation = "isKeyAvailable",
                 .run = onProxy<P>([](P &p) { return p.isKeyAvailable("ch1"); }),
                 .signature = "s",
                 .wireArguments = {"s \"ch1\""}},
                {.operation = "isChangeable", .run = onProxy(&P::isChangeable)},
                {.operation = "getValue",
                 .run = onProxy<P>([](P &p) { return p.getValue("ch1"); }),
                 .signature = "s",
                 .wireArguments = {"s \"ch1\""}},
                {.operation = "getBaseElement", .run = onProxy(&P::getBaseElement)},
                {.operation = "getString", .run = onProxy(&P::getString)},
                {.operation = "size", .run = onProxy(&P::size)},
                {.operation = "removeItem",
                 .run = onProxy<P>([](P &p) { return p.removeItem("ch9"); }),
                 .signature = "s",
                 .wireArguments = {"s \"ch9\""}},
                {.operation = "setToDefault", .run = onProxy(&P::setToDefault)},
                {.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .member = "setToDefault"},
            },
        .absent =
            {
                {.operation = "setValue",
                 .run = onProxy<P>([](P &p) { return p.setValue("k", QVariant(1)); }),
                 .empty = false},
                {.operation = "getAllKeys", .run = onProxy(&P::getAllKeys), .empty = QStringList()},
                {.operation = "isKeyAvailable",
                 .run = onProxy<P>([](P &p) { return p.isKeyAvailable("k"); }),
                 .empty = false},
                {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .empty = false},
                {.operation = "getValue", .run = onProxy<P>([](P &p) { return p.getValue("k"); }), .empty = QVariant()},
                {.operation = "getBaseElement", .run = onProxy(&P::getBaseElement), .empty = QVariant()},
                {.operation = "getString", .run = onProxy(&P::getString), .empty = QString()},
                {.operation = "size", .run = onProxy(&P::size), .empty = 0},
                {.operation = "removeItem", .run = onProxy<P>([](P &p) { return p.removeItem("k"); }), .empty = 0},
                {.operation = "setToDefault", .run = onProxy(&P::setToDefault), .empty = QVariant()},
            },
        .checkedGetters = checkedGetters(),
        .loggedErrors = {{"error", "no such key", "\"no such key\""},
                         {"error with quotes", "key \"ch1\" unknown", "\"key \\\"ch1\\\" unknown\""}},
        .setToDefault = onProxy(&P::setToDefault),
        .asyncs = asyncCalls,
        .failingCall = {.operation = "size", .run = onProxy(&P::size)},
    };
}
} // namespace

class tst_SetupMapItemInterface : public CompositeTest
{
    Q_OBJECT

public:
    tst_SetupMapItemInterface()
        : CompositeTest(mapItem())
    {
    }

private:
    P &proxy() { return ProxyTableTest::proxy<P>(); }

private Q_SLOTS:
    void mapsEachReply_data();
    void mapsEachReply();

    void variantGettersReturnTheValueInsideTheVariant_data();
    void variantGettersReturnTheValueInsideTheVariant();
    void variantGettersLeaveAMapValueAsAnArgument();
    void plainOperationsLogNothingOnFailure();

    void removeItemAnswersAnIntNotABool();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();
    void relaysSetupChangedOfItsOwnObjectOnly();
};

void tst_SetupMapItemInterface::mapsEachReply_data()
{
    addMappedReplyColumns();
    addMappedReplyRows("setValue ",
                       {.operation = "setValue",
                        .run = onProxy<P>([](P &p) { return p.setValue("k", QVariant(1)); }),
                        .answered = true,
                        .wrongType = 1,
                        .empty = false});
    addMappedReplyRows("getAllKeys ",
                       {.operation = "getAllKeys",
                        .run = onProxy(&P::getAllKeys),
                        .answered = QStringList{QStringLiteral("ch1"), QStringLiteral("ch2")},
                        .wrongType = QStringLiteral("ch1"),
                        .empty = QStringList()});
    addMappedReplyRows("isKeyAvailable ",
                       {.operation = "isKeyAvailable",
                        .run = onProxy<P>([](P &p) { return p.isKeyAvailable("ch1"); }),
                        .answered = true,
                        .wrongType = 1,
                        .empty = false});
    addMappedReplyRows("isChangeable ",
                       {.operation = "isChangeable",
                        .run = onProxy(&P::isChangeable),
                        .answered = true,
                        .wrongType = QStringLiteral("yes"),
                        .empty = false});
    addMappedReplyRows("getString ",
                       {.operation = "getString",
                        .run = onProxy(&P::getString),
                        .answered = QStringLiteral("ch1=Left, ch2=Right"),
                        .wrongType = 2,
                        .empty = QString()});
    addMappedReplyRows("size ",
                       {.operation = "size", .run = onProxy(&P::size), .answered = 2, .wrongType = 2.0, .empty = 0});
    addMappedReplyRows("removeItem ",
                       {.operation = "removeItem",
                        .run = onProxy<P>([](P &p) { return p.removeItem("ch1"); }),
                        .answered = 1,
                        .wrongType = true,
                        .empty = 0});

    // The variant getters hand back the value inside the variant, invalid on any failure,
    // which they log.
    addMappedReplyRows("getValue ",
                       {.operation = "getValue",
                        .run = onProxy<P>([](P &p) { return p.getValue("ch1"); }),
                        .answered = wrappedValue(2.5),
                        .seen = 2.5,
                        .wrongType = 2.5,
                        .empty = QVariant()},
                       LogCheck::Unchecked, LogCheck::Unchecked);
    addMappedReplyRows("getBaseElement ",
                       {.operation = "getBaseElement",
                        .run = onProxy(&P::getBaseElement),
                        .answered = wrappedValue(QStringLiteral("label")),
                        .seen = QStringLiteral("label"),
                        .wrongType = QStringLiteral("label"),
                        .empty = QVariant()},
                       LogCheck::Unchecked, LogCheck::Unchecked);
}

void tst_SetupMapItemInterface::mapsEachReply()
{
    verifyMappedReply(*m_fake, proxy());
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

    const QVariant received = getter(proxy()).value;

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

    for (const QVariant &value : {proxy().getValue("ch1"), proxy().getBaseElement()}) {
        QCOMPARE(value.userType(), qMetaTypeId<QDBusArgument>());
        const QDBusArgument argument = qvariant_cast<QDBusArgument>(value);
        QCOMPARE(argument.currentSignature(), QStringLiteral("a{sv}"));
        QCOMPARE(wireText(argument), QStringLiteral("a{sv} {s \"colour\": v(s \"red\"), s \"width\": v(i 2)}"));
        SettingsMap read;
        DBusTypes::readSettingsMap(argument, read);
        QCOMPARE(read, entry);
    }
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

    const QDBusReply<int> removed = proxy().removeItem("ch1");
    QVERIFY(removed.isValid());
    QCOMPARE(removed.value(), 2);
    // The same int is a wrong type for the key query, which answers a bool.
    QVERIFY(!proxy().isKeyAvailable("ch1").isValid());

    m_fake->answer("removeItem", ScriptedAnswer::value(true));
    const QDBusReply<int> fromBool = proxy().removeItem("ch1");
    QVERIFY(!fromBool.isValid());
    QCOMPARE(fromBool.value(), 0);
    QCOMPARE(fromBool.error().type(), QDBusError::InvalidSignature);
}

void tst_SetupMapItemInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    verifyOwnMethods(proxy(), {"setupChanged()"},
                     {"setValue(QString,QVariant)", "setValueAsync(QString,QVariant)", "getAllKeys()",
                      "isKeyAvailable(QString)", "isChangeable()", "getValue(QString)", "getBaseElement()",
                      "getString()", "size()", "removeItem(QString)", "setToDefault()", "setToDefaultAsync()"});
    verifyReturnTypes<P>(
        {{"getValue(QString)", "QVariant"}, {"removeItem(QString)", "QDBusReply<int>"}, {"setToDefault()", "void"}});
}

void tst_SetupMapItemInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(proxy(), "SetupMapItemInterface");
    QCOMPARE(proxy().qt_metacast("SetupArrayItemInterface"), nullptr);
}

void tst_SetupMapItemInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(wrappedValue(11)));
    m_fake->answer("removeItem", ScriptedAnswer::value(1));

    QVariant value;
    QVERIFY(QMetaObject::invokeMethod(&proxy(), "getValue", Qt::DirectConnection, Q_RETURN_ARG(QVariant, value),
                                      Q_ARG(QString, QStringLiteral("ch1"))));
    QCOMPARE(value, proxy().getValue("ch1"));
    QCOMPARE(value, QVariant(11));

    QDBusReply<int> removed;
    QVERIFY(QMetaObject::invokeMethod(&proxy(), "removeItem", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<int>, removed), Q_ARG(QString, QStringLiteral("ch1"))));
    QVERIFY(removed.isValid());
    QCOMPARE(removed.value(), 1);
}

void tst_SetupMapItemInterface::relaysSetupChangedOfItsOwnObjectOnly()
{
    verifySignalRelay(proxy(), *m_fake, SIGNAL(setupChanged()), "setupChanged", {});
}

QTEST_GUILESS_MAIN(tst_SetupMapItemInterface)

#include "tst_setupmapiteminterface.moc"
