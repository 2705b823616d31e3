#include "SetupBoolInterface.h"

#include "ProxyClassTest.h"

#include <QtTest/QTest>

namespace {

using P = SetupBoolInterface;

// clang-format off
const QList<OperationRow> sent{
    {.operation = "setValue false", .run = setValueOf<P>(false), .member = "setValue", .signature = "b",
     .arguments = {false}},
    {.operation = "setValueAsync false", .run = setValueAsyncOf<P>(false), .member = "setValue", .signature = "b",
     .arguments = {false}},
};

// An answered false is valid, unlike the false of a failed reply.
const QList<OperationRow> replies{
    {.operation = "setValue", .run = setValueOf<P>(true), .signature = "b", .arguments = {true}, .answered = true,
     .wrongType = 1, .empty = false},
    {.operation = "setValue answered false", .run = setValueOf<P>(true), .member = "setValue", .signature = "b",
     .arguments = {true}, .answered = false, .wrongType = 0.0, .empty = false},
    {.operation = "getValue", .run = onProxy(&P::getValue), .answered = true, .wrongType = QStringLiteral("true"),
     .empty = false},
    {.operation = "getValue answered false", .run = onProxy(&P::getValue), .member = "getValue", .answered = false,
     .wrongType = 0, .empty = false},
    {.operation = "getString", .run = onProxy(&P::getString), .answered = QStringLiteral("on"), .wrongType = true,
     .empty = QString()},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .answered = true, .wrongType = 1u, .empty = false},
    {.operation = "isChangeable answered false", .run = onProxy(&P::isChangeable), .member = "isChangeable",
     .answered = false, .wrongType = QStringLiteral("false"), .empty = false},
};

const QList<OperationRow> asyncs{
    {.operation = "setValueAsync", .run = setValueAsyncOf<P>(true), .member = "setValue", .signature = "b",
     .arguments = {true}},
    {.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .member = "setToDefault"},
};

const QList<OperationRow> invokedByName{
    {.operation = "getValue", .run = byName<QDBusReply<bool>>("getValue"), .answered = true},
    {.operation = "getString", .run = byName<QDBusReply<QString>>("getString"), .answered = QStringLiteral("on")},
    {.operation = "setValue", .run = byName<QDBusReply<bool>>("setValue(bool)", false), .signature = "b",
     .arguments = {false}, .answered = true},
    {.operation = "setToDefault", .run = byName<QDBusReply<void>>("setToDefault")},
    {.operation = "setToDefaultAsync", .run = byName<void>("setToDefaultAsync"), .member = "setToDefault"},
};

const ProxyClass setupBool{
    .className = "SetupBoolInterface",
    .path = QStringLiteral("/Setup/Enabled"),
    .make = factoryOf<P>(),
    .size = sizeof(P),
    .sent = sent,
    .replies = replies,
    .voidReplies = {{.operation = "setToDefault", .run = onProxy(&P::setToDefault), .answered = true}},
    .asyncs = asyncs,
    .failingCall = {.operation = "isChangeable", .run = onProxy(&P::isChangeable)},
    .signalSignatures = {"setupChanged(bool)"},
    .slotSignatures = {"setValue(bool)", "setValueAsync(bool)", "getValue()", "getString()", "isChangeable()",
                       "setToDefault()", "setToDefaultAsync()"},
    .returnTypes = {"void", "QDBusReply<bool>", "void", "QDBusReply<bool>", "QDBusReply<QString>", "QDBusReply<bool>",
                    "QDBusReply<void>", "void"},
    .otherClasses = {"SetupIntInterface", "SetupBoolInterface "},
    .byName = invokedByName,
    .signalsRelayed = {
        {.operation = "setupChanged(bool)", .member = "setupChanged", .arguments = {true}},
        {.operation = "setupChanged(bool)", .member = "setupChanged", .arguments = {false}},
    },
};
// clang-format on

} // namespace

class tst_SetupBoolInterface : public ProxyClassTest
{
    Q_OBJECT

public:
    tst_SetupBoolInterface()
        : ProxyClassTest(setupBool)
    {
    }
};

QTEST_GUILESS_MAIN(tst_SetupBoolInterface)

#include "tst_setupboolinterface.moc"
