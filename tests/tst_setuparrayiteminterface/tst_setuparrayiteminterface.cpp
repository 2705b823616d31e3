#include "SetupArrayItemInterface.h"

#include "DBusTypes.h"
#include "ProxyClassTest.h"
#include "StructuredValues.h"

#include <QtTest/QTest>

namespace {
using P = SetupArrayItemInterface;
const QString path = QStringLiteral("/Setup/Channels");

const QString report = QStringLiteral("SetupArrayItemInterface::getValue(): ");

// clang-format off
// Slots invoked by name give what the direct call gives; getValue gives an empty list and
// logs one line on any failure.
const QList<OperationRow> replies{
    {.operation = "setValue range", .run = onProxy<P>([](P &p) { return p.setValue(QVariant(5), 0, 3); }),
     .call = {.member = "setValue", .signature = "vii", .wireArguments = {"v(i 5)", "i 0", "i 3"}},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "setValue list", .run = onProxy<P>([](P &p) { return p.setValue(QVariantList() << 1 << 2); }),
     .call = {.member = "setValue", .signature = "av", .wireArguments = {"av [v(i 1), v(i 2)]"}},
     .reply = {.answered = true, .wrongType = QStringLiteral("yes"), .empty = false}},
    {.operation = "setValue list by name", .run = byName<QDBusReply<bool>>("setValue(QVariantList)", QVariantList{8}),
     .call = {.member = "setValue", .signature = "av", .wireArguments = {"av [v(i 8)]"}},
     .reply = {.answered = true, .wrongType = 8, .empty = false}},
    {.operation = "getValue", .run = calling(&P::getValue, 1, 4),
     .call = {.member = "getValue", .signature = "ii", .wireArguments = {"i 1", "i 4"}},
     .reply = {.answered = QVariantList{1, QStringLiteral("a"), 2.5}, .wrongType = QStringList{QStringLiteral("a")},
               .empty = QVariantList()},
     .log = {.report = report, .typeError = replyTypeError<QVariantList>(QStringList{QStringLiteral("a")})}},
    {.operation = "getValue by name", .run = byName<QList<QVariant>>("getValue(int,int)", 0, 1),
     .call = {.member = "getValue", .signature = "ii", .wireArguments = {"i 0", "i 1"}},
     .reply = {.answered = QVariantList{3, 4}, .wrongType = 3, .empty = QVariantList()},
     .log = {.report = report, .typeError = replyTypeError<QVariantList>(3)}},
    {.operation = "getString", .run = onProxy(&P::getString), .call = {.member = "getString"},
     .reply = {.answered = QStringLiteral("1, 2, 3"), .wrongType = 3, .empty = QString()}},
    {.operation = "size", .run = onProxy(&P::size), .call = {.member = "size"},
     .reply = {.answered = 12, .wrongType = 12.0, .empty = 0}},
    {.operation = "size by name", .run = byName<QDBusReply<int>>("size"), .call = {.member = "size"},
     .reply = {.answered = 2, .wrongType = 2.0, .empty = 0}},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .call = {.member = "isChangeable"},
     .reply = {.answered = true, .wrongType = QStringLiteral("true"), .empty = false}},
};

// A range takes its value in a variant, a list each element in one.
const QList<OperationRow> sent{
    {.operation = "setValue range, string",
     .run = onProxy<P>([](P &p) { p.setValue(QVariant(QStringLiteral("on")), 2, 2); }),
     .call = {.member = "setValue", .signature = "vii", .wireArguments = {"v(s \"on\")", "i 2", "i 2"}}},
    {.operation = "setValue range, negative bounds passed through",
     .run = onProxy<P>([](P &p) { p.setValue(QVariant(2.5), -1, 7); }),
     .call = {.member = "setValue", .signature = "vii", .wireArguments = {"v(d 2.5)", "i -1", "i 7"}}},
    {.operation = "setValue mixed list",
     .run = onProxy<P>([](P &p) { p.setValue(QVariantList() << true << QStringLiteral("x") << 0.5); }),
     .call = {.member = "setValue", .signature = "av", .wireArguments = {"av [v(b true), v(s \"x\"), v(d 0.5)]"}}},
    {.operation = "setValue empty list", .run = onProxy<P>([](P &p) { p.setValue(QVariantList()); }),
     .call = {.member = "setValue", .signature = "av", .wireArguments = {"av []"}}},
};

const QList<OperationRow> asyncs{
    {.operation = "setValueAsync", .run = calling(&P::setValueAsync, QVariant(9), 3, 5),
     .call = {.member = "setValue", .signature = "vii", .wireArguments = {"v(i 9)", "i 3", "i 5"}}},
    {.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .call = {.member = "setToDefault"}},
};
// clang-format on

ProxyClassTable arrayItem()
{
    return {
        .className = "SetupArrayItemInterface",
        .path = path,
        .make = factoryOf<P>(),
        .sent = sent,
        .replies = replies,
        .errors = {{"error", "index out of range", "\"index out of range\""},
                   {"error with quotes", "no \"row\" here", "\"no \\\"row\\\" here\""}},
        .setToDefault = {.operation = "setToDefault",
                         .run = onProxy(&P::setToDefault),
                         .call = {.member = "setToDefault"}},
        .asyncs = asyncs,
        .failingCall = {.operation = "size", .run = onProxy(&P::size), .call = {.member = "size"}},
        .signalSignatures = {"setupChanged()"},
        .slotSignatures = {"setValue(QVariant,int,int)", "setValue(QVariantList)", "QVariantList getValue(int,int)",
                           "getString()", "size()", "setValueAsync(QVariant,int,int)", "isChangeable()",
                           "void setToDefault()", "setToDefaultAsync()"},
        .otherClasses = {"SetupMapItemInterface"},
        .relayed = {{.operation = "setupChanged()", .call = {.member = "setupChanged"}}},
    };
}
} // namespace

class tst_SetupArrayItemInterface : public ProxyClassTest
{
    Q_OBJECT

public:
    tst_SetupArrayItemInterface()
        : ProxyClassTest(arrayItem())
    {
    }

private:
    P &proxy() { return ProxyClassTest::proxy<P>(); }

private Q_SLOTS:
    void getValueReturnsTheElementsUnwrapped();
    void getValueLeavesStructuredElementsAsArguments();
};

void tst_SetupArrayItemInterface::getValueReturnsTheElementsUnwrapped()
{
    m_fake->answer("getValue", ScriptedAnswer::value(QVariantList() << 7 << true << QStringLiteral("x")));

    const QVariantList elements = proxy().getValue(0, 2);

    QCOMPARE(elements.size(), 3);
    QCOMPARE(elements.at(0).userType(), int(QMetaType::Int));
    QCOMPARE(elements.at(0), QVariant(7));
    QCOMPARE(elements.at(1).userType(), int(QMetaType::Bool));
    QCOMPARE(elements.at(1), QVariant(true));
    QCOMPARE(elements.at(2).userType(), int(QMetaType::QString));
    QCOMPARE(elements.at(2), QVariant(QStringLiteral("x")));

    m_fake->answer("getValue", ScriptedAnswer::value(QVariantList()));
    QCOMPARE(proxy().getValue(0, 2), QVariantList());
}

void tst_SetupArrayItemInterface::getValueLeavesStructuredElementsAsArguments()
{
    const SettingsMap nested{{"gain", 3}};
    m_fake->answer("getValue", ScriptedAnswer::value(QVariantList{nested, QVariantList{1, 2}, 4}));

    const QVariantList elements = proxy().getValue(0, 2);

    QCOMPARE(elements.size(), 3);
    verifyLeftAsArgument(elements.at(0), "a{sv} {s \"gain\": v(i 3)}");
    verifyLeftAsArgument(elements.at(1), "av [v(i 1), v(i 2)]");
    QCOMPARE(elements.at(2), QVariant(4));
}

QTEST_GUILESS_MAIN(tst_SetupArrayItemInterface)

#include "tst_setuparrayiteminterface.moc"
