#include "ResultEnumInterface.h"

#include "LogCapture.h"
#include "ScalarResultTest.h"

#include <QtTest/QTest>

namespace {

using P = ResultEnumInterface;

// clang-format off
const QList<OperationRow> getters{
    {.operation = "getValue", .run = onProxy(&P::getValue), .answered = 2, .wrongType = QStringLiteral("2"),
     .empty = 0},
    {.operation = "getString", .run = onProxy(&P::getString), .answered = QStringLiteral("Range 2"), .wrongType = 2,
     .empty = QString()},
    {.operation = "getMinValue", .run = onProxy(&P::getMinValue), .answered = 1, .wrongType = true, .empty = 0},
    {.operation = "getMaxValue", .run = onProxy(&P::getMaxValue), .answered = 3, .wrongType = 3.0, .empty = 0},
};

const ScalarResultClass resultEnum{
    .className = "ResultEnumInterface",
    .path = QStringLiteral("/Result/Range"),
    .make = factoryOf<P>(),
    .getters = getters,
    // The report opens with the bare literal, without the quoted class prefix.
    .comps = {{.operation = "getValueComp", .run = onProxy(&P::getValueComp),
               .report = QStringLiteral("ResultEnumInterface::getValueComp(): ")}},
    .byName = invokedByName<QDBusReply<int>>(2, QStringLiteral("Range 2")),
    .otherClasses = {"ResultBoolInterface"},
};
// clang-format on

} // namespace

class tst_ResultEnumInterface : public ScalarResultTest
{
    Q_OBJECT

public:
    tst_ResultEnumInterface()
        : ScalarResultTest(resultEnum)
    {
    }

private Q_SLOTS:
    void failingValueCompReportBeginsWithTheBareClassLiteral();
    void cannotFindLimitsMinMaxTextOrMinMaxControlByName();
};

void tst_ResultEnumInterface::failingValueCompReportBeginsWithTheBareClassLiteral()
{
    LogCapture log;
    m_fake->answer("getValueComp", ScriptedAnswer::error(failedErrorName(), QStringLiteral("no range")));

    QCOMPARE(proxy<P>().getValueComp(), QList<QVariant>());

    const QList<LogLine> lines = log.lines();
    QCOMPARE(lines,
             debugLines({"ResultEnumInterface::getValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Range\"  / "
                         "Error: \"no range\""}));
    QVERIFY(lines.first().text.startsWith(QStringLiteral("ResultEnumInterface::getValueComp():  \"")));
}

void tst_ResultEnumInterface::cannotFindLimitsMinMaxTextOrMinMaxControlByName()
{
    verifyCannotBeFoundByName({"getLowerLimit", "getUpperLimit", "getMinString", "getMaxString", "resetMinMaxValues",
                               "stopMinMaxEval", "continueMinMaxEval", "getMinValueComp", "getMaxValueComp",
                               "getStringComp", "getMinStringComp", "getMaxStringComp"});
}

QTEST_GUILESS_MAIN(tst_ResultEnumInterface)

#include "tst_resultenuminterface.moc"
