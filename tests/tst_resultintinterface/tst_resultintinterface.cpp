#include "ResultIntInterface.h"

#include "LogCapture.h"
#include "ScalarResultTest.h"

#include <QtTest/QTest>

namespace {

using P = ResultIntInterface;

// clang-format off
const QList<OperationRow> getters{
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

const ScalarResultClass resultInt{
    .className = "ResultIntInterface",
    .path = QStringLiteral("/Result/Count"),
    .make = factoryOf<P>(),
    .getters = getters,
    .commands = minMaxCommandRows<P>(), // resetMinMaxValues, stopMinMaxEval, continueMinMaxEval
    // getMaxValueComp, getStringComp and getMinStringComp report under getMinValueComp's text.
    .comps = compRows<P>({"getValueComp", "getMinValueComp", "getMinValueComp", "getMinValueComp", "getMinValueComp",
                          "getMaxStringComp"}),
    .byName = invokedByName<QDBusReply<int>>(42, QStringLiteral("42 counts"), {"resetMinMaxValues"}),
    .otherClasses = {"ResultDoubleInterface"},
};
// clang-format on

const QString minValueCompLine = QStringLiteral(
    "\"ResultIntInterface::\" getMinValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Count\"  / Error: \"%1\"");

} // namespace

class tst_ResultIntInterface : public ScalarResultTest
{
    Q_OBJECT

public:
    tst_ResultIntInterface()
        : ScalarResultTest(resultInt)
    {
    }

private Q_SLOTS:
    void failingStringCompReportsUnderMinValueCompTextButCallsItsOwnMember();
    void failingMaxValueCompAndMinStringCompReportUnderMinValueCompText();
};

void tst_ResultIntInterface::failingStringCompReportsUnderMinValueCompTextButCallsItsOwnMember()
{
    verifyOneReportLine(onProxy(&P::getStringComp), "getStringComp", QStringLiteral("no text"),
                        minValueCompLine.arg("no text"));
}

void tst_ResultIntInterface::failingMaxValueCompAndMinStringCompReportUnderMinValueCompText()
{
    LogCapture log;
    m_fake->answer("getMaxValueComp", ScriptedAnswer::error(failedErrorName(), QStringLiteral("no maximum")));
    m_fake->answer("getMinStringComp", ScriptedAnswer::error(failedErrorName(), QStringLiteral("no minimum")));

    proxy<P>().getMaxValueComp();
    proxy<P>().getMinStringComp();

    QVERIFY(m_fake->waitForCalls(2));
    QCOMPARE(m_fake->calls().at(0).member, QStringLiteral("getMaxValueComp"));
    QCOMPARE(m_fake->calls().at(1).member, QStringLiteral("getMinStringComp"));
    QCOMPARE(log.lines(), debugLines({minValueCompLine.arg("no maximum"), minValueCompLine.arg("no minimum")}));
}

QTEST_GUILESS_MAIN(tst_ResultIntInterface)

#include "tst_resultintinterface.moc"
