#include "SetupMapItemInterface.h"

#include "CompositeTest.h"
#include "DBusTypes.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QtTest/QTest>

namespace {
using P = SetupMapItemInterface;
using IntReply = QDBusReply<int>;

const ProxyOperation getValue = onProxy<P>([](P &p) { return p.getValue("ch1"); });
const QStringList ch1{"s \"ch1\""};

// clang-format off
// The variant getters hand back the value inside the variant, keeping its type; slots invoked
// by name give what the direct call gives.
const QList<OperationRow> replies{
    {.operation = "setValue", .run = onProxy<P>([](P &p) { return p.setValue("ch1", QVariant(5)); }), .signature = "sv",
     .answered = true, .wrongType = 1, .empty = false, .wireArguments = {"s \"ch1\"", "v(i 5)"}},
    {.operation = "getAllKeys", .run = onProxy(&P::getAllKeys), .answered = QStringList{"ch1", "ch2"},
     .wrongType = QStringLiteral("ch1"), .empty = QStringList()},
    {.operation = "isKeyAvailable", .run = onProxy<P>([](P &p) { return p.isKeyAvailable("ch1"); }), .signature = "s",
     .answered = true, .wrongType = 1, .empty = false, .wireArguments = ch1},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .answered = true,
     .wrongType = QStringLiteral("yes"), .empty = false},
    {.operation = "getString", .run = onProxy(&P::getString), .answered = QStringLiteral("ch1=Left, ch2=Right"),
     .wrongType = 2, .empty = QString()},
    {.operation = "size", .run = onProxy(&P::size), .answered = 2, .wrongType = 2.0, .empty = 0},
    {.operation = "removeItem", .run = onProxy<P>([](P &p) { return p.removeItem("ch1"); }), .signature = "s",
     .answered = 1, .wrongType = true, .empty = 0, .wireArguments = ch1},
    {.operation = "removeItem by name", .run = byName<IntReply>("removeItem(QString)", QStringLiteral("ch1")),
     .signature = "s", .answered = 1, .wrongType = true, .empty = 0, .wireArguments = ch1},
    {.operation = "getValue", .run = getValue, .signature = "s", .answered = wrappedValue(2.5), .seen = 2.5,
     .wrongType = 2.5, .wireArguments = ch1},
    {.operation = "getValue int", .run = getValue, .signature = "s", .answered = wrappedValue(5), .seen = 5,
     .wrongType = 5, .wireArguments = ch1},
    {.operation = "getValue bool", .run = getValue, .signature = "s", .answered = wrappedValue(false), .seen = false,
     .wrongType = false, .wireArguments = ch1},
    {.operation = "getValue string", .run = getValue, .signature = "s",
     .answered = wrappedValue(QStringLiteral("Left")), .seen = QStringLiteral("Left"),
     .wrongType = QStringLiteral("Left"), .wireArguments = ch1},
    {.operation = "getValue string list", .run = getValue, .signature = "s",
     .answered = wrappedValue(QStringList{"a", "b"}), .seen = QStringList{"a", "b"}, .wrongType = QStringList{"a", "b"},
     .wireArguments = ch1},
    {.operation = "getValue by name", .run = byName<QVariant>("getValue(QString)", QStringLiteral("ch1")),
     .signature = "s", .answered = wrappedValue(11), .seen = 11, .wrongType = 11, .wireArguments = ch1},
    {.operation = "getBaseElement", .run = onProxy(&P::getBaseElement),
     .answered = wrappedValue(QStringLiteral("label")), .seen = QStringLiteral("label"),
     .wrongType = QStringLiteral("label")},
    {.operation = "getBaseElement double", .run = onProxy(&P::getBaseElement), .answered = wrappedValue(-0.25),
     .seen = -0.25, .wrongType = -0.25},
};

const QList<OperationRow> sent{
    {.operation = "setValue string",
     .run = onProxy<P>([](P &p) { p.setValue("ch2", QVariant(QStringLiteral("Left"))); }), .signature = "sv",
     .wireArguments = {"s \"ch2\"", "v(s \"Left\")"}},
    {.operation = "setValue list", .run = onProxy<P>([](P &p) { p.setValue("ch3", QVariantList() << 1); }),
     .signature = "sv", .wireArguments = {"s \"ch3\"", "v(av [v(i 1)])"}},
};

// An invalid variant and one line on any failure.
const QList<OperationRow> checkedGetters{
    {.operation = "getValue", .wrongType = 7, .typeError = replyTypeError<QDBusVariant>(7)},
    {.operation = "getBaseElement", .wrongType = QStringLiteral("base"),
     .typeError = replyTypeError<QDBusVariant>(QStringLiteral("base"))},
};

const QList<OperationRow> asyncs{
    {.operation = "setValueAsync", .run = onProxy<P>([](P &p) { p.setValueAsync("ch4", QVariant(true)); }),
     .member = "setValue", .signature = "sv", .wireArguments = {"s \"ch4\"", "v(b true)"}},
    {.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .member = "setToDefault"},
};
// clang-format on

CompositeClass mapItem()
{
    return {
        .className = "SetupMapItemInterface",
        .path = QStringLiteral("/Setup/Labels"),
        .make = factoryOf<P>(),
        .sent = sent,
        .replies = replies,
        .checkedGetters = checkedGetters,
        .loggedErrors = {{"error", "no such key", "\"no such key\""},
                         {"error with quotes", "key \"ch1\" unknown", "\"key \\\"ch1\\\" unknown\""}},
        .setToDefault = onProxy(&P::setToDefault),
        .asyncs = asyncs,
        .failingCall = {.operation = "size", .run = onProxy(&P::size)},
        .relayed = {{.operation = "setupChanged()"}},
        .otherClassNames = {"SetupArrayItemInterface"},
        .signalSignatures = {"setupChanged()"},
        .slotSignatures = {"setValue(QString,QVariant)", "setValueAsync(QString,QVariant)", "getAllKeys()",
                           "isKeyAvailable(QString)", "isChangeable()", "getValue(QString)", "getBaseElement()",
                           "getString()", "size()", "removeItem(QString)", "setToDefault()", "setToDefaultAsync()"},
        .returnTypes = {{"getValue(QString)", "QVariant"},
                        {"removeItem(QString)", "QDBusReply<int>"},
                        {"setToDefault()", "void"}},
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
    void variantGettersLeaveAMapValueAsAnArgument();
    void removeItemRefusesABoolAsAnInvalidSignature();
};

void tst_SetupMapItemInterface::variantGettersLeaveAMapValueAsAnArgument()
{
    const SettingsMap entry{{"colour", QStringLiteral("red")}, {"width", 2}};
    m_fake->answer("getValue", ScriptedAnswer::value(wrappedValue(QVariant(entry))));
    m_fake->answer("getBaseElement", ScriptedAnswer::value(wrappedValue(QVariant(entry))));

    for (const QVariant &value : {proxy().getValue("ch1"), proxy().getBaseElement()}) {
        verifyLeftAsArgument(value, "a{sv} {s \"colour\": v(s \"red\"), s \"width\": v(i 2)}");
        SettingsMap read;
        DBusTypes::readSettingsMap(qvariant_cast<QDBusArgument>(value), read);
        QCOMPARE(read, entry);
    }
}

void tst_SetupMapItemInterface::removeItemRefusesABoolAsAnInvalidSignature()
{
    m_fake->answer("removeItem", ScriptedAnswer::value(true));

    QCOMPARE(proxy().removeItem("ch1").error().type(), QDBusError::InvalidSignature);
}

QTEST_GUILESS_MAIN(tst_SetupMapItemInterface)

#include "tst_setupmapiteminterface.moc"
