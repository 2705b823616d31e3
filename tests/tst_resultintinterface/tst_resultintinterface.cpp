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
const OperationRow getValue{.operation = "getValue", .run = onProxy(&P::getValue), .call = {.member = "getValue"},
                            .reply = {.answered = 42, .wrongType = true, .empty = 0}};

const QList<OperationRow> replies{
    {.operation = "getLowerLimit", .run = onProxy(&P::getLowerLimit), .call = {.member = "getLowerLimit"},
     .reply = {.answered = -100, .wrongType = QStringLiteral("-100"), .empty = 0}},
    {.operation = "getUpperLimit", .run = onProxy(&P::getUpperLimit), .call = {.member = "getUpperLimit"},
     .reply = {.answered = 100, .wrongType = 100.0, .empty = 0}},
    getValue,
    {.operation = "getString", .run = onProxy(&P::getString), .call = {.member = "getString"},
     .reply = {.answered = QStringLiteral("42 counts"), .wrongType = 42, .empty = QString()}},
    {.operation = "getMinValue", .run = onProxy(&P::getMinValue), .call = {.member = "getMinValue"},
     .reply = {.answered = -7, .wrongType = QStringLiteral("-7"), .empty = 0}},
    {.operation = "getMinString", .run = onProxy(&P::getMinString), .call = {.member = "getMinString"},
     .reply = {.answered = QStringLiteral("-7 counts"), .wrongType = -7, .empty = QString()}},
    {.operation = "getMaxValue", .run = onProxy(&P::getMaxValue), .call = {.member = "getMaxValue"},
     .reply = {.answered = 99, .wrongType = 99.0, .empty = 0}},
    {.operation = "getMaxString", .run = onProxy(&P::getMaxString), .call = {.member = "getMaxString"},
     .reply = {.answered = QStringLiteral("99 counts"), .wrongType = true, .empty = QString()}},
};

/// getMaxValueComp, getStringComp and getMinStringComp report under getMinValueComp's text,
/// but each calls its own member; four of the lines are also written out.
QList<OperationRow> comps()
{
    QList<OperationRow> rows = compRows<P>({"getValueComp", "getMinValueComp", "getMinValueComp", "getMinValueComp",
                                            "getMinValueComp", "getMaxStringComp"});
    rows[0].log.lines = QStringList{valueCompLine};
    for (int i : {2, 3, 4})
        rows[i].log.lines = QStringList{minValueCompLine};
    return rows;
}

const ProxyClassTable resultInt{
    .className = "ResultIntInterface",
    .path = QStringLiteral("/Result/Count"),
    .make = factoryOf<P>(),
    .replies = replies,
    .voidReplies = minMaxCommandRows<P>(), // resetMinMaxValues, stopMinMaxEval, continueMinMaxEval
    .comps = comps(),
    .reading = getValue,
    .otherClasses = {"ResultDoubleInterface"},
    .byName = invokedByName<P, QDBusReply<int>>(42, QStringLiteral("42 counts")),
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
