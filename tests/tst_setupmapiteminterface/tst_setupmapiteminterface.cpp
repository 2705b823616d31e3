#include "SetupMapItemInterface.h"

#include "DBusTypes.h"
#include "ProxyClassTest.h"
#include "StructuredValues.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QtTest/QTest>

namespace {
using P = SetupMapItemInterface;
using IntReply = QDBusReply<int>;

const ProxyOperation getValue = onProxy<P>([](P &p) { return p.getValue("ch1"); });
const QStringList ch1{"s \"ch1\""};

/// The variant getters give an invalid variant and log one line on any failure.
FailureLog loggedAs(const char *getter, const QVariant &wrongType)
{
    return judgedAs<P, QDBusVariant>(getter, wrongType);
}

// clang-format off
// The variant getters hand back the value inside the variant, keeping its type; slots invoked
// by name give what the direct call gives.
const QList<OperationRow> replies{
    {.operation = "setValue", .run = onProxy<P>([](P &p) { return p.setValue("ch1", QVariant(5)); }),
     .call = {.member = "setValue", .signature = "sv", .wireArguments = {"s \"ch1\"", "v(i 5)"}},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "getAllKeys", .run = onProxy(&P::getAllKeys), .call = {.member = "getAllKeys"},
     .reply = {.answered = QStringList{"ch1", "ch2"}, .wrongType = QStringLiteral("ch1"), .empty = QStringList()}},
    {.operation = "isKeyAvailable", .run = onProxy<P>([](P &p) { return p.isKeyAvailable("ch1"); }),
     .call = {.member = "isKeyAvailable", .signature = "s", .wireArguments = ch1},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .call = {.member = "isChangeable"},
     .reply = {.answered = true, .wrongType = QStringLiteral("yes"), .empty = false}},
    {.operation = "getString", .run = onProxy(&P::getString), .call = {.member = "getString"},
     .reply = {.answered = QStringLiteral("ch1=Left, ch2=Right"), .wrongType = 2, .empty = QString()}},
    {.operation = "size", .run = onProxy(&P::size), .call = {.member = "size"},
     .reply = {.answered = 2, .wrongType = 2.0, .empty = 0}},
    {.operation = "removeItem", .run = onProxy<P>([](P &p) { return p.removeItem("ch1"); }),
     .call = {.member = "removeItem", .signature = "s", .wireArguments = ch1},
     .reply = {.answered = 1, .wrongType = true, .empty = 0}},
    {.operation = "removeItem by name", .run = byName<IntReply>("removeItem(QString)", QStringLiteral("ch1")),
     .call = {.member = "removeItem", .signature = "s", .wireArguments = ch1},
     .reply = {.answered = 1, .wrongType = true, .empty = 0}},
    {.operation = "getValue", .run = getValue, .call = {.member = "getValue", .signature = "s", .wireArguments = ch1},
     .reply = {.answered = wrappedValue(2.5), .seen = 2.5, .wrongType = 2.5}, .log = loggedAs("getValue", 2.5)},
    {.operation = "getValue int", .run = getValue,
     .call = {.member = "getValue", .signature = "s", .wireArguments = ch1},
     .reply = {.answered = wrappedValue(5), .seen = 5, .wrongType = 5}, .log = loggedAs("getValue", 5)},
    {.operation = "getValue bool", .run = getValue,
     .call = {.member = "getValue", .signature = "s", .wireArguments = ch1},
     .reply = {.answered = wrappedValue(false), .seen = false, .wrongType = false}, .log = loggedAs("getValue", false)},
    {.operation = "getValue string", .run = getValue,
     .call = {.member = "getValue", .signature = "s", .wireArguments = ch1},
     .reply = {.answered = wrappedValue(QStringLiteral("Left")), .seen = QStringLiteral("Left"),
               .wrongType = QStringLiteral("Left")},
     .log = loggedAs("getValue", QStringLiteral("Left"))},
    {.operation = "getValue string list", .run = getValue,
     .call = {.member = "getValue", .signature = "s", .wireArguments = ch1},
     .reply = {.answered = wrappedValue(QStringList{"a", "b"}), .seen = QStringList{"a", "b"},
               .wrongType = QStringList{"a", "b"}},
     .log = loggedAs("getValue", QStringList{"a", "b"})},
    {.operation = "getValue by name", .run = byName<QVariant>("getValue(QString)", QStringLiteral("ch1")),
     .call = {.member = "getValue", .signature = "s", .wireArguments = ch1},
     .reply = {.answered = wrappedValue(11), .seen = 11, .wrongType = 11}, .log = loggedAs("getValue", 11)},
    {.operation = "getBaseElement", .run = onProxy(&P::getBaseElement), .call = {.member = "getBaseElement"},
     .reply = {.answered = wrappedValue(QStringLiteral("label")), .seen = QStringLiteral("label"),
               .wrongType = QStringLiteral("label")},
     .log = loggedAs("getBaseElement", QStringLiteral("label"))},
    {.operation = "getBaseElement double", .run = onProxy(&P::getBaseElement), .call = {.member = "getBaseElement"},
     .reply = {.answered = wrappedValue(-0.25), .seen = -0.25, .wrongType = -0.25},
     .log = loggedAs("getBaseElement", -0.25)},
};

const QList<OperationRow> sent{
    {.operation = "setValue string",
     .run = onProxy<P>([](P &p) { p.setValue("ch2", QVariant(QStringLiteral("Left"))); }),
     .call = {.member = "setValue", .signature = "sv", .wireArguments = {"s \"ch2\"", "v(s \"Left\")"}}},
    {.operation = "setValue list", .run = onProxy<P>([](P &p) { p.setValue("ch3", QVariantList() << 1); }),
     .call = {.member = "setValue", .signature = "sv", .wireArguments = {"s \"ch3\"", "v(av [v(i 1)])"}}},
};

const QList<OperationRow> asyncs{
    {.operation = "setValueAsync", .run = onProxy<P>([](P &p) { p.setValueAsync("ch4", QVariant(true)); }),
     .call = {.member = "setValue", .signature = "sv", .wireArguments = {"s \"ch4\"", "v(b true)"}}},
    {.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .call = {.member = "setToDefault"}},
};
// clang-format on

ProxyClassTable mapItem()
{
    return {
        .className = "SetupMapItemInterface",
        .path = QStringLiteral("/Setup/Labels"),
        .make = factoryOf<P>(),
        .sent = sent,
        .replies = replies,
        .errors = {{"error", "no such key", "\"no such key\""},
                   {"error with quotes", "key \"ch1\" unknown", "\"key \\\"ch1\\\" unknown\""}},
        .setToDefault = {.operation = "setToDefault",
                         .run = onProxy(&P::setToDefault),
                         .call = {.member = "setToDefault"}},
        .asyncs = asyncs,
        .failingCall = {.operation = "size", .run = onProxy(&P::size), .call = {.member = "size"}},
        .signalSignatures = {"setupChanged()"},
        .slotSignatures = {"setValue(QString,QVariant)", "setValueAsync(QString,QVariant)", "getAllKeys()",
                           "isKeyAvailable(QString)", "isChangeable()", "QVariant getValue(QString)",
                           "getBaseElement()", "getString()", "size()", "QDBusReply<int> removeItem(QString)",
                           "void setToDefault()", "setToDefaultAsync()"},
        .otherClasses = {"SetupArrayItemInterface"},
        .relayed = {{.operation = "setupChanged()", .call = {.member = "setupChanged"}}},
    };
}
} // namespace

class tst_SetupMapItemInterface : public ProxyClassTest
{
    Q_OBJECT

public:
    tst_SetupMapItemInterface()
        : ProxyClassTest(mapItem())
    {
    }

private:
    P &proxy() { return ProxyClassTest::proxy<P>(); }

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
