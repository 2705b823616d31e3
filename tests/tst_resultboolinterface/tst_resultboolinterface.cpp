#include "ResultBoolInterface.h"

#include "ProxyClassTest.h"

#include <QtTest/QTest>

namespace {

using P = ResultBoolInterface;

const QString valueCompLine = QStringLiteral(
    "\"ResultBoolInterface::\" getValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Overload\"  / Error: %1");

// clang-format off
const OperationRow getValue{.operation = "getValue", .run = onProxy(&P::getValue), .call = {.member = "getValue"},
                            .reply = {.answered = true, .wrongType = QStringLiteral("true"), .empty = false}};

const QList<OperationRow> replies{
    {.operation = "getLowerLimit", .run = onProxy(&P::getLowerLimit), .call = {.member = "getLowerLimit"},
     .reply = {.answered = false, .wrongType = 0, .empty = false}},
    {.operation = "getUpperLimit", .run = onProxy(&P::getUpperLimit), .call = {.member = "getUpperLimit"},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
    getValue,
    {.operation = "getString", .run = onProxy(&P::getString), .call = {.member = "getString"},
     .reply = {.answered = QStringLiteral("overload"), .wrongType = true, .empty = QString()}},
    {.operation = "getMinValue", .run = onProxy(&P::getMinValue), .call = {.member = "getMinValue"},
     .reply = {.answered = true, .wrongType = 1.0, .empty = false}},
    {.operation = "getMinString", .run = onProxy(&P::getMinString), .call = {.member = "getMinString"},
     .reply = {.answered = QStringLiteral("no overload"), .wrongType = false, .empty = QString()}},
    {.operation = "getMaxValue", .run = onProxy(&P::getMaxValue), .call = {.member = "getMaxValue"},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "getMaxString", .run = onProxy(&P::getMaxString), .call = {.member = "getMaxString"},
     .reply = {.answered = QStringLiteral("overload"), .wrongType = 1, .empty = QString()}},
};

/// Each Comp getter reports under its own name; getValueComp's line is also written out.
QList<OperationRow> comps()
{
    QList<OperationRow> rows = compRows<P>({"getValueComp", "getMinValueComp", "getMaxValueComp", "getStringComp",
                                            "getMinStringComp", "getMaxStringComp"});
    rows[0].log.lines = QStringList{valueCompLine};
    return rows;
}

const ProxyClassTable resultBool{
    .className = "ResultBoolInterface",
    .path = QStringLiteral("/Result/Overload"),
    .make = factoryOf<P>(),
    .replies = replies,
    .voidReplies = minMaxCommandRows<P>(), // resetMinMaxValues, stopMinMaxEval, continueMinMaxEval
    .comps = comps(),
    .reading = getValue,
    .otherClasses = {"ResultEnumInterface"},
    .byName = invokedByName<P, QDBusReply<bool>>(true, QStringLiteral("overload")),
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
