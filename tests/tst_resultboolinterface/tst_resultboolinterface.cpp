#include "ResultBoolInterface.h"

#include "ScalarResultTest.h"

#include <QtTest/QTest>

namespace {

using P = ResultBoolInterface;

// clang-format off
const QList<OperationRow> getters{
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

const ScalarResultClass resultBool{
    .className = "ResultBoolInterface",
    .path = QStringLiteral("/Result/Overload"),
    .make = factoryOf<P>(),
    .getters = getters,
    .commands = minMaxCommandRows<P>(), // resetMinMaxValues, stopMinMaxEval, continueMinMaxEval
    // Each Comp getter reports under its own name.
    .comps = compRows<P>({"getValueComp", "getMinValueComp", "getMaxValueComp", "getStringComp", "getMinStringComp",
                          "getMaxStringComp"}),
    .byName = invokedByName<QDBusReply<bool>>(true, QStringLiteral("overload"), {"resetMinMaxValues"}),
    .otherClasses = {"ResultEnumInterface"},
};
// clang-format on

} // namespace

class tst_ResultBoolInterface : public ScalarResultTest
{
    Q_OBJECT

public:
    tst_ResultBoolInterface()
        : ScalarResultTest(resultBool)
    {
    }
};

QTEST_GUILESS_MAIN(tst_ResultBoolInterface)

#include "tst_resultboolinterface.moc"
