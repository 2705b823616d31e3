#include "SetupIntInterface.h"

#include "ProxyClassTest.h"

#include <QtTest/QTest>

namespace {

using P = SetupIntInterface;

// clang-format off
const QList<OperationRow> replies{
    {.operation = "setValue", .run = setValueOf<P>(5),
     .call = {.member = "setValue", .signature = "i", .arguments = {5}},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "getValue", .run = onProxy(&P::getValue), .call = {.member = "getValue"},
     .reply = {.answered = 42, .wrongType = QStringLiteral("forty-two"), .empty = 0},
     .log = {.lines = {"SetupIntInterface::getValue() Error!  %1",
                       "SetupIntInterface::getValue() Interface  \"com.velk.mqx.MeasApplInterface\"",
                       "SetupIntInterface::getValue() Path  \"/Setup/Gain\""}}},
    {.operation = "getString", .run = onProxy(&P::getString), .call = {.member = "getString"},
     .reply = {.answered = QStringLiteral("42 dB"), .wrongType = 42, .empty = QString()},
     .log = {.lines = {"SetupIntInterface::getString() Error!  %1"}}},
    {.operation = "getMinValue", .run = onProxy(&P::getMinValue), .call = {.member = "getMinValue"},
     .reply = {.answered = -10, .wrongType = 2.5, .empty = 0}},
    {.operation = "getMaxValue", .run = onProxy(&P::getMaxValue), .call = {.member = "getMaxValue"},
     .reply = {.answered = 90, .wrongType = true, .empty = 0}},
    {.operation = "getGranularity", .run = onProxy(&P::getGranularity), .call = {.member = "getGranularity"},
     .reply = {.answered = 5, .wrongType = 5.0, .empty = 0}},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .call = {.member = "isChangeable"},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
};

const QList<OperationRow> asyncs{
    {.operation = "setValueAsync", .run = setValueAsyncOf<P>(9),
     .call = {.member = "setValue", .signature = "i", .arguments = {9}}},
    {.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .call = {.member = "setToDefault"}},
};

const QList<OperationRow> invokedByName{
    {.operation = "getValue", .run = byName<QDBusReply<int>>("getValue"), .call = {.member = "getValue"},
     .reply = {.answered = 17}, .direct = onProxy(&P::getValue)},
    {.operation = "getString", .run = byName<QDBusReply<QString>>("getString"), .call = {.member = "getString"},
     .reply = {.answered = QStringLiteral("17 dB")}, .direct = onProxy(&P::getString)},
    {.operation = "setValue", .run = byName<QDBusReply<bool>>("setValue(int)", 4),
     .call = {.member = "setValue", .signature = "i", .arguments = {4}}, .reply = {.answered = true},
     .direct = setValueOf<P>(4)},
    {.operation = "setToDefaultAsync", .run = byName<void>("setToDefaultAsync"), .call = {.member = "setToDefault"},
     .direct = onProxy(&P::setToDefaultAsync)},
};

const ProxyClassTable setupInt{
    .className = "SetupIntInterface",
    .path = QStringLiteral("/Setup/Gain"),
    .make = factoryOf<P>(),
    .size = sizeof(P),
    .replies = replies,
    .voidReplies = {{.operation = "setToDefault", .run = onProxy(&P::setToDefault), .call = {.member = "setToDefault"},
                     .reply = {.answered = 3}}},
    .asyncs = asyncs,
    .failingCall = {.operation = "getMinValue", .run = onProxy(&P::getMinValue), .call = {.member = "getMinValue"}},
    .signalSignatures = {"void setupChanged(int)"},
    .slotSignatures = {"QDBusReply<bool> setValue(int)", "void setValueAsync(int)", "QDBusReply<int> getValue()",
                       "QDBusReply<QString> getString()", "QDBusReply<int> getMinValue()",
                       "QDBusReply<int> getMaxValue()", "QDBusReply<int> getGranularity()",
                       "QDBusReply<bool> isChangeable()", "QDBusReply<void> setToDefault()",
                       "void setToDefaultAsync()"},
    .otherClasses = {"SetupDoubleInterface"},
    .byName = invokedByName,
    .relayed = {{.operation = "setupChanged(int)", .call = {.member = "setupChanged", .arguments = {12}}}},
};
// clang-format on

} // namespace

class tst_SetupIntInterface : public ProxyClassTest
{
    Q_OBJECT

public:
    tst_SetupIntInterface()
        : ProxyClassTest(setupInt)
    {
    }
};

QTEST_GUILESS_MAIN(tst_SetupIntInterface)

#include "tst_setupintinterface.moc"
