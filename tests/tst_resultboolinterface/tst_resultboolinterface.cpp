#include "ResultBoolInterface.h"

#include "ProxyClassTest.h"

#include <QtTest/QTest>

namespace {

using P = ResultBoolInterface;

const QString valueCompLine = QStringLiteral(
    "\"ResultBoolInterface::\" getValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Overload\"  / Error: %1");

// clang-format off
const QList<OperationRow> replies{
    {.operation = "getLowerLimit", .run = onProxy(&P::getLowerLimit), .answered = false, .wrongType = 0,
     .empty = false},
    {.operation = "getUpperLimit", .run = onProxy(&P::getUpperLimit), .answered = true, .wrongType = 1, .empty = false},
    {.operation = "getValue", .run = onProxy(&P::getValue), .answered = true, .wrongType = QStringLiteral("true"),
     .empty = false},
    {.operation = "getString", .run = onProxy(&P::getString), .answered = QStringLiteral("overload"), .wrongType = true,
     .empty = QString()},
    {.operation = "getMinValue", .run = onProxy(&P::getMinValue), .answered = true, .wrongType = 1.0, .empty = false},
    {.operation = "getMinString", .run = onProxy(&P::getMinString), .answered = QStringLiteral("no overload"),
     .wrongType = false, .empty = QString()},
    {.operation = "getMaxValue", .run = onProxy(&P::getMaxValue), .answered = true, .wrongType = 1, .empty = false},
    {.operation = "getMaxString", .run = onProxy(&P::getMaxString), .answered = QStringLiteral("overload"),
     .wrongType = 1, .empty = QString()},
};

const ProxyClass resultBool{
    .className = "ResultBoolInterface",
    .path = QStringLiteral("/Result/Overload"),
    .make = factoryOf<P>(),
    .replies = replies,
    .voidReplies = minMaxCommandRows<P>(), // resetMinMaxValues, stopMinMaxEval, continueMinMaxEval
    // Each Comp getter reports under its own name.
    .comps = compRows<P>({"getValueComp", "getMinValueComp", "getMaxValueComp", "getStringComp", "getMinStringComp",
                          "getMaxStringComp"}),
    .compLines = {{.operation = "getValueComp", .logLines = {valueCompLine}}},
    .otherClasses = {"ResultEnumInterface"},
    .byName = invokedByName<QDBusReply<bool>>(true, QStringLiteral("overload"), {"resetMinMaxValues"}),
};
// clang-format on

} // namespace

class tst_ResultBoolInterface : public ProxyClassTest
{
    Q_OBJECT

public:
    tst_ResultBoolInterface()
        : ProxyClassTest(resultBool)
    {
    }
};

QTEST_GUILESS_MAIN(tst_ResultBoolInterface)

#include "tst_resultboolinterface.moc"
