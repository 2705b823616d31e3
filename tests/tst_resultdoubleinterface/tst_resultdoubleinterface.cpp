#include "ResultDoubleInterface.h"

#include "ProxyClassTest.h"

#include <QtTest/QTest>

namespace {

using P = ResultDoubleInterface;

const QString valueCompLine = QStringLiteral(
    "\"ResultDoubleInterface::\" getValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Voltage\"  / Error: %1");
const QString stringCompLine = QStringLiteral(
    "\"ResultDoubleInterface::\" getStringComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Voltage\"  / Error: %1");

// clang-format off
const OperationRow getValue{.operation = "getValue", .run = onProxy(&P::getValue), .call = {.member = "getValue"},
                            .reply = {.answered = 3.25, .wrongType = 3, .empty = 0.0}};

const QList<OperationRow> replies{
    {.operation = "getLowerLimit", .run = onProxy(&P::getLowerLimit), .call = {.member = "getLowerLimit"},
     .reply = {.answered = -0.5, .wrongType = -1, .empty = 0.0}},
    {.operation = "getUpperLimit", .run = onProxy(&P::getUpperLimit), .call = {.member = "getUpperLimit"},
     .reply = {.answered = 12.75, .wrongType = QStringLiteral("12.75"), .empty = 0.0}},
    getValue,
    {.operation = "getString", .run = onProxy(&P::getString), .call = {.member = "getString"},
     .reply = {.answered = QStringLiteral("3.25 V"), .wrongType = 3.25, .empty = QString()}},
    {.operation = "getMinValue", .run = onProxy(&P::getMinValue), .call = {.member = "getMinValue"},
     .reply = {.answered = -0.125, .wrongType = true, .empty = 0.0}},
    {.operation = "getMaxValue", .run = onProxy(&P::getMaxValue), .call = {.member = "getMaxValue"},
     .reply = {.answered = 11.5, .wrongType = QStringLiteral("11.5"), .empty = 0.0}},
};

/// Each Comp getter reports under its own name; two of the lines are also written out.
QList<OperationRow> comps()
{
    QList<OperationRow> rows = compRows<P>({"getValueComp", "getMinValueComp", "getMaxValueComp", "getStringComp",
                                            "getMinStringComp", "getMaxStringComp"});
    rows[0].log.lines = QStringList{valueCompLine};
    rows[3].log.lines = QStringList{stringCompLine};
    return rows;
}

const ProxyClassTable resultDouble{
    .className = "ResultDoubleInterface",
    .path = QStringLiteral("/Result/Voltage"),
    .make = factoryOf<P>(),
    .replies = replies,
    .voidReplies = minMaxCommandRows<P>(), // resetMinMaxValues, stopMinMaxEval, continueMinMaxEval
    .comps = comps(),
    .reading = getValue,
    .otherClasses = {"ResultIntInterface"},
    .byName = invokedByName<P, QDBusReply<double>>(3.25, QStringLiteral("3.25 V")),
    // Both text Comp getters, but no minimum or maximum as text.
    .noSuchSlots = {"getMinString", "getMaxString"},
};
// clang-format on

} // namespace

class tst_ResultDoubleInterface : public ProxyClassTest
{
    Q_OBJECT

public:
    tst_ResultDoubleInterface()
        : ProxyClassTest(resultDouble)
    {
    }
};

QTEST_GUILESS_MAIN(tst_ResultDoubleInterface)

#include "tst_resultdoubleinterface.moc"
