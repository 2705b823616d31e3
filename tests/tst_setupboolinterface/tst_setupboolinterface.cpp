#include "SetupBoolInterface.h"

#include "ProxyClassTest.h"

#include <QtTest/QTest>

namespace {

using P = SetupBoolInterface;

// clang-format off
const QList<OperationRow> sent{
    {.operation = "setValue false", .run = setValueOf<P>(false),
     .call = {.member = "setValue", .signature = "b", .arguments = {false}}},
    {.operation = "setValueAsync false", .run = setValueAsyncOf<P>(false),
     .call = {.member = "setValue", .signature = "b", .arguments = {false}}},
};

// An answered false is valid, unlike the false of a failed reply.
const QList<OperationRow> replies{
    {.operation = "setValue", .run = setValueOf<P>(true), .call = {.member = "setValue", .signature = "b",
     .arguments = {true}}, .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "setValue answered false", .run = setValueOf<P>(true), .call = {.member = "setValue",
     .signature = "b", .arguments = {true}}, .reply = {.answered = false, .wrongType = 0.0, .empty = false}},
    {.operation = "getValue", .run = onProxy(&P::getValue), .call = {.member = "getValue"},
     .reply = {.answered = true, .wrongType = QStringLiteral("true"), .empty = false}},
    {.operation = "getValue answered false", .run = onProxy(&P::getValue), .call = {.member = "getValue"},
     .reply = {.answered = false, .wrongType = 0, .empty = false}},
    {.operation = "getString", .run = onProxy(&P::getString), .call = {.member = "getString"},
     .reply = {.answered = QStringLiteral("on"), .wrongType = true, .empty = QString()}},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .call = {.member = "isChangeable"},
     .reply = {.answered = true, .wrongType = 1u, .empty = false}},
    {.operation = "isChangeable answered false", .run = onProxy(&P::isChangeable), .call = {.member = "isChangeable"},
     .reply = {.answered = false, .wrongType = QStringLiteral("false"), .empty = false}},
};

const QList<OperationRow> asyncs{
    {.operation = "setValueAsync", .run = setValueAsyncOf<P>(true),
     .call = {.member = "setValue", .signature = "b", .arguments = {true}}},
    {.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .call = {.member = "setToDefault"}},
};

const QList<OperationRow> invokedByName{
    {.operation = "getValue", .run = byName<QDBusReply<bool>>("getValue"), .call = {.member = "getValue"},
     .reply = {.answered = true}, .direct = onProxy(&P::getValue)},
    {.operation = "getString", .run = byName<QDBusReply<QString>>("getString"), .call = {.member = "getString"},
     .reply = {.answered = QStringLiteral("on")}, .direct = onProxy(&P::getString)},
    {.operation = "setValue", .run = byName<QDBusReply<bool>>("setValue(bool)", false),
     .call = {.member = "setValue", .signature = "b", .arguments = {false}}, .reply = {.answered = true},
     .direct = setValueOf<P>(false)},
    {.operation = "setToDefault", .run = byName<QDBusReply<void>>("setToDefault"), .call = {.member = "setToDefault"},
     .direct = onProxy(&P::setToDefault)},
    {.operation = "setToDefaultAsync", .run = byName<void>("setToDefaultAsync"), .call = {.member = "setToDefault"},
     .direct = onProxy(&P::setToDefaultAsync)},
};

const ProxyClassTable setupBool{
    .className = "SetupBoolInterface",
    .path = QStringLiteral("/Setup/Enabled"),
    .make = factoryOf<P>(),
    .size = sizeof(P),
    .sent = sent,
    .replies = replies,
    .voidReplies = {{.operation = "setToDefault", .run = onProxy(&P::setToDefault), .call = {.member = "setToDefault"},
                     .reply = {.answered = true}}},
    .asyncs = asyncs,
    .failingCall = {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .call = {.member = "isChangeable"}},
    .signalSignatures = {"void setupChanged(bool)"},
    .slotSignatures = {"QDBusReply<bool> setValue(bool)", "void setValueAsync(bool)", "QDBusReply<bool> getValue()",
                       "QDBusReply<QString> getString()", "QDBusReply<bool> isChangeable()",
                       "QDBusReply<void> setToDefault()", "void setToDefaultAsync()"},
    .otherClasses = {"SetupIntInterface", "SetupBoolInterface "},
    .byName = invokedByName,
    .relayed = {
        {.operation = "setupChanged(bool)", .call = {.member = "setupChanged", .arguments = {true}}},
        {.operation = "setupChanged(bool)", .call = {.member = "setupChanged", .arguments = {false}}},
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
