#include "ResultDoubleInterface.h"

#include "ScalarResultTest.h"

#include <QMetaObject>
#include <QtTest/QTest>

namespace {

using P = ResultDoubleInterface;

// clang-format off
const QList<OperationRow> getters{
    {.operation = "getLowerLimit", .run = onProxy(&P::getLowerLimit), .answered = -0.5, .wrongType = -1, .empty = 0.0},
    {.operation = "getUpperLimit", .run = onProxy(&P::getUpperLimit), .answered = 12.75,
     .wrongType = QStringLiteral("12.75"), .empty = 0.0},
    {.operation = "getValue", .run = onProxy(&P::getValue), .answered = 3.25, .wrongType = 3, .empty = 0.0},
    {.operation = "getString", .run = onProxy(&P::getString), .answered = QStringLiteral("3.25 V"), .wrongType = 3.25,
     .empty = QString()},
    {.operation = "getMinValue", .run = onProxy(&P::getMinValue), .answered = -0.125, .wrongType = true, .empty = 0.0},
    {.operation = "getMaxValue", .run = onProxy(&P::getMaxValue), .answered = 11.5, .wrongType = QStringLiteral("11.5"),
     .empty = 0.0},
};

const ScalarResultClass resultDouble{
    .className = "ResultDoubleInterface",
    .path = QStringLiteral("/Result/Voltage"),
    .make = factoryOf<P>(),
    .getters = getters,
    .commands = minMaxCommandRows<P>(), // resetMinMaxValues, stopMinMaxEval, continueMinMaxEval
    // Each Comp getter reports under its own name.
    .comps = compRows<P>({"getValueComp", "getMinValueComp", "getMaxValueComp", "getStringComp", "getMinStringComp",
                          "getMaxStringComp"}),
    .byName = invokedByName<QDBusReply<double>>(3.25, QStringLiteral("3.25 V"), {"resetMinMaxValues"}),
    .otherClasses = {"ResultIntInterface"},
};
// clang-format on

} // namespace

class tst_ResultDoubleInterface : public ScalarResultTest
{
    Q_OBJECT

public:
    tst_ResultDoubleInterface()
        : ScalarResultTest(resultDouble)
    {
    }

private Q_SLOTS:
    void failingStringCompReportsUnderItsOwnName();
    void hasNoMinOrMaxStringButBothStringComps();
};

void tst_ResultDoubleInterface::failingStringCompReportsUnderItsOwnName()
{
    verifyOneReportLine(onProxy(&P::getStringComp), "getStringComp", QStringLiteral("no text"),
                        "\"ResultDoubleInterface::\" getStringComp():  \"com.velk.mqx.app.fake\"  /  "
                        "\"/Result/Voltage\"  / Error: \"no text\"");
}

void tst_ResultDoubleInterface::hasNoMinOrMaxStringButBothStringComps()
{
    const QMetaObject &meta = ResultDoubleInterface::staticMetaObject;
    QVERIFY(meta.indexOfMethod("getMinStringComp()") >= meta.methodOffset());
    QVERIFY(meta.indexOfMethod("getMaxStringComp()") >= meta.methodOffset());

    verifyCannotBeFoundByName({"getMinString", "getMaxString"});
}

QTEST_GUILESS_MAIN(tst_ResultDoubleInterface)

#include "tst_resultdoubleinterface.moc"
