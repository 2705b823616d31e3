#include "SetupIntInterface.h"

#include "ProxyClassTest.h"

#include <QtTest/QTest>

namespace {

using P = SetupIntInterface;

// clang-format off
const QList<OperationRow> replies{
    {.operation = "setValue", .run = setValueOf<P>(5), .signature = "i", .arguments = {5}, .answered = true,
     .wrongType = 1, .empty = false},
    {.operation = "getValue", .run = onProxy(&P::getValue), .answered = 42, .wrongType = QStringLiteral("forty-two"),
     .empty = 0, .logLines = {"SetupIntInterface::getValue() Error!  %1",
                              "SetupIntInterface::getValue() Interface  \"com.velk.mqx.MeasApplInterface\"",
                              "SetupIntInterface::getValue() Path  \"/Setup/Gain\""}},
    {.operation = "getString", .run = onProxy(&P::getString), .answered = QStringLiteral("42 dB"), .wrongType = 42,
     .empty = QString(), .logLines = {"SetupIntInterface::getString() Error!  %1"}},
    {.operation = "getMinValue", .run = onProxy(&P::getMinValue), .answered = -10, .wrongType = 2.5, .empty = 0},
    {.operation = "getMaxValue", .run = onProxy(&P::getMaxValue), .answered = 90, .wrongType = true, .empty = 0},
    {.operation = "getGranularity", .run = onProxy(&P::getGranularity), .answered = 5, .wrongType = 5.0, .empty = 0},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .answered = true, .wrongType = 1, .empty = false},
};

const QList<OperationRow> asyncs{
    {.operation = "setValueAsync", .run = setValueAsyncOf<P>(9), .member = "setValue", .signature = "i",
     .arguments = {9}},
    {.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .member = "setToDefault"},
};

const QList<OperationRow> invokedByName{
    {.operation = "getValue", .run = byName<QDBusReply<int>>("getValue"), .answered = 17},
    {.operation = "getString", .run = byName<QDBusReply<QString>>("getString"), .answered = QStringLiteral("17 dB")},
    {.operation = "setValue", .run = byName<QDBusReply<bool>>("setValue(int)", 4), .signature = "i", .arguments = {4},
     .answered = true},
    {.operation = "setToDefaultAsync", .run = byName<void>("setToDefaultAsync"), .member = "setToDefault"},
};

const ProxyClass setupInt{
    .className = "SetupIntInterface",
    .path = QStringLiteral("/Setup/Gain"),
    .make = factoryOf<P>(),
    .size = sizeof(P),
    .replies = replies,
    .voidReplies = {{.operation = "setToDefault", .run = onProxy(&P::setToDefault), .answered = 3}},
    .asyncs = asyncs,
    .failingCall = {.operation = "getMinValue", .run = onProxy(&P::getMinValue)},
    .signalSignatures = {"setupChanged(int)"},
    .slotSignatures = {"setValue(int)", "setValueAsync(int)", "getValue()", "getString()", "getMinValue()",
                       "getMaxValue()", "getGranularity()", "isChangeable()", "setToDefault()", "setToDefaultAsync()"},
    .returnTypes = {"void", "QDBusReply<bool>", "void", "QDBusReply<int>", "QDBusReply<QString>", "QDBusReply<int>",
                    "QDBusReply<int>", "QDBusReply<int>", "QDBusReply<bool>", "QDBusReply<void>", "void"},
    .otherClasses = {"SetupDoubleInterface"},
    .byName = invokedByName,
    .signalsRelayed = {{.operation = "setupChanged(int)", .member = "setupChanged", .arguments = {12}}},
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
