#include "ResultIntInterface.h"

#include "ProxyClassTest.h"

#include <QtTest/QTest>

namespace {

using P = ResultIntInterface;

const QString valueCompLine = QStringLiteral(
    "\"ResultIntInterface::\" getValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Count\"  / Error: %1");
const QString minValueCompLine = QStringLiteral(
    "\"ResultIntInterface::\" getMinValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Count\"  / Error: %1");

// clang-format off
const QList<OperationRow> replies{
    {.operation = "getLowerLimit", .run = onProxy(&P::getLowerLimit), .answered = -100,
     .wrongType = QStringLiteral("-100"), .empty = 0},
    {.operation = "getUpperLimit", .run = onProxy(&P::getUpperLimit), .answered = 100, .wrongType = 100.0, .empty = 0},
    {.operation = "getValue", .run = onProxy(&P::getValue), .answered = 42, .wrongType = true, .empty = 0},
    {.operation = "getString", .run = onProxy(&P::getString), .answered = QStringLiteral("42 counts"), .wrongType = 42,
     .empty = QString()},
    {.operation = "getMinValue", .run = onProxy(&P::getMinValue), .answered = -7, .wrongType = QStringLiteral("-7"),
     .empty = 0},
    {.operation = "getMinString", .run = onProxy(&P::getMinString), .answered = QStringLiteral("-7 counts"),
     .wrongType = -7, .empty = QString()},
    {.operation = "getMaxValue", .run = onProxy(&P::getMaxValue), .answered = 99, .wrongType = 99.0, .empty = 0},
    {.operation = "getMaxString", .run = onProxy(&P::getMaxString), .answered = QStringLiteral("99 counts"),
     .wrongType = true, .empty = QString()},
};

const ProxyClass resultInt{
    .className = "ResultIntInterface",
    .path = QStringLiteral("/Result/Count"),
    .make = factoryOf<P>(),
    .replies = replies,
    .voidReplies = minMaxCommandRows<P>(), // resetMinMaxValues, stopMinMaxEval, continueMinMaxEval
    // getMaxValueComp, getStringComp and getMinStringComp report under getMinValueComp's text,
    // but each calls its own member.
    .comps = compRows<P>({"getValueComp", "getMinValueComp", "getMinValueComp", "getMinValueComp", "getMinValueComp",
                          "getMaxStringComp"}),
    .compLines = {
        {.operation = "getValueComp", .logLines = {valueCompLine}},
        {.operation = "getMaxValueComp", .logLines = {minValueCompLine}},
        {.operation = "getStringComp", .logLines = {minValueCompLine}},
        {.operation = "getMinStringComp", .logLines = {minValueCompLine}},
    },
    .otherClasses = {"ResultDoubleInterface"},
    .byName = invokedByName<QDBusReply<int>>(42, QStringLiteral("42 counts"), {"resetMinMaxValues"}),
};
// clang-format on

} // namespace

class tst_ResultIntInterface : public ProxyClassTest
{
    Q_OBJECT

public:
    tst_ResultIntInterface()
        : ProxyClassTest(resultInt)
    {
    }
};

QTEST_GUILESS_MAIN(tst_ResultIntInterface)

#include "tst_resultintinterface.moc"
