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
    {.operation = "setValue by index", .run = setValueOf<P>(1),
     .call = {.member = "setValue", .signature = "i", .arguments = {1}},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "setValue by text", .run = setValueOf<P>(autoMode),
     .call = {.member = "setValue", .signature = "s", .arguments = {autoMode}},
     .reply = {.answered = true, .wrongType = QStringLiteral("true"), .empty = false}},
    {.operation = "getEnumValueList", .run = onProxy(&P::getEnumValueList), .call = {.member = "getValueList"},
     .reply = {.answered = QStringLiteral("Off;Auto;Manual"), .wrongType = QStringList({"Off", "Auto"}),
               .empty = QString()}},
    {.operation = "getValue", .run = onProxy(&P::getValue), .call = {.member = "getValue"},
     .reply = {.answered = 2, .wrongType = QStringLiteral("2"), .empty = 0}},
    {.operation = "getString", .run = onProxy(&P::getString), .call = {.member = "getString"},
     .reply = {.answered = manual, .wrongType = 2, .empty = QString()}},
    {.operation = "getStringRepresentation", .run = onProxy<P>([](P &p) { return p.getStringRepresentation(1); }),
     .call = {.member = "getStringRepresentation", .signature = "i", .arguments = {1}},
     .reply = {.answered = autoMode, .wrongType = 1, .empty = QString()}},
    {.operation = "getEnumQuantity", .run = onProxy(&P::getEnumQuantity), .call = {.member = "getQuantity"},
     .reply = {.answered = 3, .wrongType = 3.0, .empty = 0}},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .call = {.member = "isChangeable"},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
};

const QList<OperationRow> asyncs{
    {.operation = "setValueAsync by index", .run = setValueAsyncOf<P>(2),
     .call = {.member = "setValue", .signature = "i", .arguments = {2}}},
    {.operation = "setValueAsync by text", .run = setValueAsyncOf<P>(autoMode),
     .call = {.member = "setValue", .signature = "s", .arguments = {autoMode}}},
    {.operation = "executeAsync", .run = onProxy(&P::executeAsync), .call = {.member = "execute"}},
    {.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .call = {.member = "setToDefault"}},
};

// setValue by name picks the overload by the argument's type.
const QList<OperationRow> invokedByName{
    {.operation = "getValue", .run = byName<QDBusReply<int>>("getValue"), .call = {.member = "getValue"},
     .reply = {.answered = 2}, .direct = onProxy(&P::getValue)},
    {.operation = "getEnumQuantity", .run = byName<QDBusReply<int>>("getEnumQuantity"),
     .call = {.member = "getQuantity"}, .reply = {.answered = 3}, .direct = onProxy(&P::getEnumQuantity)},
    {.operation = "getStringRepresentation", .run = byName<QDBusReply<QString>>("getStringRepresentation(int)", 2),
     .call = {.member = "getStringRepresentation", .signature = "i", .arguments = {2}}, .reply = {.answered = manual},
     .direct = onProxy<P>([](P &p) { return p.getStringRepresentation(2); })},
    {.operation = "execute", .run = byName<QDBusReply<void>>("execute"), .call = {.member = "execute"},
     .direct = onProxy(&P::execute)},
    {.operation = "executeAsync", .run = byName<void>("executeAsync"), .call = {.member = "execute"},
     .direct = onProxy(&P::executeAsync)},
    {.operation = "setValue by text", .run = byName<QDBusReply<bool>>("setValue(QString)", autoMode),
     .call = {.member = "setValue", .signature = "s", .arguments = {autoMode}}, .reply = {.answered = true},
     .direct = setValueOf<P>(autoMode)},
    {.operation = "setValue by index", .run = byName<QDBusReply<bool>>("setValue(int)", 1),
     .call = {.member = "setValue", .signature = "i", .arguments = {1}}, .reply = {.answered = true},
     .direct = setValueOf<P>(1)},
    {.operation = "setValueAsync by text", .run = byName<void>("setValueAsync(QString)", manual),
     .call = {.member = "setValue", .signature = "s", .arguments = {manual}}, .direct = setValueAsyncOf<P>(manual)},
    {.operation = "setValueAsync by index", .run = byName<void>("setValueAsync(int)", 2),
     .call = {.member = "setValue", .signature = "i", .arguments = {2}}, .direct = setValueAsyncOf<P>(2)},
};

const ProxyClassTable setupEnum{
    .className = "SetupEnumInterface",
    .path = QStringLiteral("/Setup/Mode"),
    .make = factoryOf<P>(),
    .size = sizeof(P),
    .sent = {{.operation = "getStringRepresentation negative",
              .run = onProxy<P>([](P &p) { return p.getStringRepresentation(-1); }),
              .call = {.member = "getStringRepresentation", .signature = "i", .arguments = {-1}}}},
    .replies = replies,
    .voidReplies = {
        {.operation = "execute", .run = onProxy(&P::execute), .call = {.member = "execute"}, .reply = {.answered = 3}},
        {.operation = "setToDefault", .run = onProxy(&P::setToDefault), .call = {.member = "setToDefault"},
         .reply = {.answered = 3}},
    },
    .asyncs = asyncs,
    .failingCall = {.operation = "getEnumQuantity", .run = onProxy(&P::getEnumQuantity),
                    .call = {.member = "getQuantity"}},
    .signalSignatures = {"void setupChanged(int,QString)"},
    .slotSignatures = {"QDBusReply<bool> setValue(int)", "void setValueAsync(int)",
                       "QDBusReply<bool> setValue(QString)", "void setValueAsync(QString)",
                       "QDBusReply<QString> getEnumValueList()", "QDBusReply<int> getValue()",
                       "QDBusReply<QString> getString()",
                       "QDBusReply<QString> getStringRepresentation(int)", "QDBusReply<int> getEnumQuantity()",
                       "QDBusReply<void> execute()", "void executeAsync()", "QDBusReply<bool> isChangeable()",
                       "QDBusReply<void> setToDefault()", "void setToDefaultAsync()"},
    .otherClasses = {"SetupIntInterface", "SetupEnumInterfaceX"},
    .byName = invokedByName,
    .relayed = {{.operation = "setupChanged(int,QString)",
                 .call = {.member = "setupChanged", .arguments = {2, manual}}}},
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
