#include "ResultEnumInterface.h"

#include "ProxyClassTest.h"

#include <QtTest/QTest>

namespace {

using P = ResultEnumInterface;

// clang-format off
const OperationRow getValue{.operation = "getValue", .run = onProxy(&P::getValue), .call = {.member = "getValue"},
                            .reply = {.answered = 2, .wrongType = QStringLiteral("2"), .empty = 0}};

const QList<OperationRow> replies{
    getValue,
    {.operation = "getString", .run = onProxy(&P::getString), .call = {.member = "getString"},
     .reply = {.answered = QStringLiteral("Range 2"), .wrongType = 2, .empty = QString()}},
    {.operation = "getMinValue", .run = onProxy(&P::getMinValue), .call = {.member = "getMinValue"},
     .reply = {.answered = 1, .wrongType = true, .empty = 0}},
    {.operation = "getMaxValue", .run = onProxy(&P::getMaxValue), .call = {.member = "getMaxValue"},
     .reply = {.answered = 3, .wrongType = 3.0, .empty = 0}},
};

const ProxyClassTable resultEnum{
    .className = "ResultEnumInterface",
    .path = QStringLiteral("/Result/Range"),
    .make = factoryOf<P>(),
    .replies = replies,
    // The report opens with the bare literal, without the quoted class prefix.
    .comps = {{.operation = "getValueComp", .run = onProxy(&P::getValueComp), .call = {.member = "getValueComp"},
               .log = {.report = QStringLiteral("ResultEnumInterface::getValueComp(): "),
                       .lines = {"ResultEnumInterface::getValueComp():  \"com.velk.mqx.app.fake\"  /  "
                                 "\"/Result/Range\"  / Error: %1"}}}},
    .reading = getValue,
    .otherClasses = {"ResultBoolInterface"},
    .byName = invokedByName<P, QDBusReply<int>>(2, QStringLiteral("Range 2")),
    // No limits, no minimum or maximum as text, no control of the minimum and maximum, one Comp getter.
    .noSuchSlots = {"getLowerLimit", "getUpperLimit", "getMinString", "getMaxString", "resetMinMaxValues",
                    "stopMinMaxEval", "continueMinMaxEval", "getMinValueComp", "getMaxValueComp", "getStringComp",
                    "getMinStringComp", "getMaxStringComp"},
};
// clang-format on

} // namespace

class tst_ResultEnumInterface : public ProxyClassTest
{
    Q_OBJECT

public:
    tst_ResultEnumInterface()
        : ProxyClassTest(resultEnum)
    {
    }
};

QTEST_GUILESS_MAIN(tst_ResultEnumInterface)

#include "tst_resultenuminterface.moc"
