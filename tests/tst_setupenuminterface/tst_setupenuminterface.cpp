#include "SetupEnumInterface.h"

#include "ProxyClassTest.h"

#include <QtTest/QTest>

namespace {

using P = SetupEnumInterface;

const QString autoMode = QStringLiteral("Auto");
const QString manual = QStringLiteral("Manual");

// The enum operations send members without "Enum"; both setValue overloads send "setValue".
// clang-format off
const QList<OperationRow> replies{
    {.operation = "setValue by index", .run = setValueOf<P>(1), .member = "setValue", .signature = "i",
     .arguments = {1}, .answered = true, .wrongType = 1, .empty = false},
    {.operation = "setValue by text", .run = setValueOf<P>(autoMode), .member = "setValue", .signature = "s",
     .arguments = {autoMode}, .answered = true, .wrongType = QStringLiteral("true"), .empty = false},
    {.operation = "getEnumValueList", .run = onProxy(&P::getEnumValueList), .member = "getValueList",
     .answered = QStringLiteral("Off;Auto;Manual"), .wrongType = QStringList({"Off", "Auto"}), .empty = QString()},
    {.operation = "getValue", .run = onProxy(&P::getValue), .answered = 2, .wrongType = QStringLiteral("2"),
     .empty = 0},
    {.operation = "getString", .run = onProxy(&P::getString), .answered = manual, .wrongType = 2, .empty = QString()},
    {.operation = "getStringRepresentation", .run = onProxy<P>([](P &p) { return p.getStringRepresentation(1); }),
     .signature = "i", .arguments = {1}, .answered = autoMode, .wrongType = 1, .empty = QString()},
    {.operation = "getEnumQuantity", .run = onProxy(&P::getEnumQuantity), .member = "getQuantity", .answered = 3,
     .wrongType = 3.0, .empty = 0},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .answered = true, .wrongType = 1, .empty = false},
};

const QList<OperationRow> asyncs{
    {.operation = "setValueAsync by index", .run = setValueAsyncOf<P>(2), .member = "setValue", .signature = "i",
     .arguments = {2}},
    {.operation = "setValueAsync by text", .run = setValueAsyncOf<P>(autoMode), .member = "setValue", .signature = "s",
     .arguments = {autoMode}},
    {.operation = "executeAsync", .run = onProxy(&P::executeAsync), .member = "execute"},
    {.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .member = "setToDefault"},
};

// setValue by name picks the overload by the argument's type.
const QList<OperationRow> invokedByName{
    {.operation = "getValue", .run = byName<QDBusReply<int>>("getValue"), .answered = 2},
    {.operation = "getEnumQuantity", .run = byName<QDBusReply<int>>("getEnumQuantity"), .member = "getQuantity",
     .answered = 3},
    {.operation = "getStringRepresentation", .run = byName<QDBusReply<QString>>("getStringRepresentation(int)", 2),
     .signature = "i", .arguments = {2}, .answered = manual},
    {.operation = "execute", .run = byName<QDBusReply<void>>("execute")},
    {.operation = "executeAsync", .run = byName<void>("executeAsync"), .member = "execute"},
    {.operation = "setValue by text", .run = byName<QDBusReply<bool>>("setValue(QString)", autoMode),
     .member = "setValue", .signature = "s", .arguments = {autoMode}, .answered = true},
    {.operation = "setValue by index", .run = byName<QDBusReply<bool>>("setValue(int)", 1), .member = "setValue",
     .signature = "i", .arguments = {1}, .answered = true},
    {.operation = "setValueAsync by text", .run = byName<void>("setValueAsync(QString)", manual), .member = "setValue",
     .signature = "s", .arguments = {manual}},
    {.operation = "setValueAsync by index", .run = byName<void>("setValueAsync(int)", 2), .member = "setValue",
     .signature = "i", .arguments = {2}},
};

const ProxyClass setupEnum{
    .className = "SetupEnumInterface",
    .path = QStringLiteral("/Setup/Mode"),
    .make = factoryOf<P>(),
    .size = sizeof(P),
    .sent = {{.operation = "getStringRepresentation negative",
              .run = onProxy<P>([](P &p) { return p.getStringRepresentation(-1); }),
              .member = "getStringRepresentation", .signature = "i", .arguments = {-1}}},
    .replies = replies,
    .voidReplies = {
        {.operation = "execute", .run = onProxy(&P::execute), .answered = 3},
        {.operation = "setToDefault", .run = onProxy(&P::setToDefault), .answered = 3},
    },
    .asyncs = asyncs,
    .failingCall = {.operation = "getEnumQuantity", .run = onProxy(&P::getEnumQuantity), .member = "getQuantity"},
    .signalSignatures = {"setupChanged(int,QString)"},
    .slotSignatures = {"setValue(int)", "setValueAsync(int)", "setValue(QString)", "setValueAsync(QString)",
                       "getEnumValueList()", "getValue()", "getString()", "getStringRepresentation(int)",
                       "getEnumQuantity()", "execute()", "executeAsync()", "isChangeable()", "setToDefault()",
                       "setToDefaultAsync()"},
    .returnTypes = {"void", "QDBusReply<bool>", "void", "QDBusReply<bool>", "void", "QDBusReply<QString>",
                    "QDBusReply<int>", "QDBusReply<QString>", "QDBusReply<QString>", "QDBusReply<int>",
                    "QDBusReply<void>", "void", "QDBusReply<bool>", "QDBusReply<void>", "void"},
    .otherClasses = {"SetupIntInterface", "SetupEnumInterfaceX"},
    .byName = invokedByName,
    .signalsRelayed = {{.operation = "setupChanged(int,QString)", .member = "setupChanged", .arguments = {2, manual}}},
};
// clang-format on

} // namespace

class tst_SetupEnumInterface : public ProxyClassTest
{
    Q_OBJECT

public:
    tst_SetupEnumInterface()
        : ProxyClassTest(setupEnum)
    {
    }
};

QTEST_GUILESS_MAIN(tst_SetupEnumInterface)

#include "tst_setupenuminterface.moc"
