#include "ResultIntInterface.h"

#include "ResultTestSupport.h"

#include <QDBusConnection>
#include <QtTest/QTest>

#include <memory>

namespace {

using P = ResultIntInterface;
using ResultTest::generated;
using ResultTest::listGetter;

const QString path = QStringLiteral("/Result/Count");

ResultTest::ScalarResult operations()
{
    return {
        // member, operation, a reply it maps, a reply of another type, its value after a failure
        {
            {"getLowerLimit", generated(&P::getLowerLimit), -100, QStringLiteral("-100"), 0},
            {"getUpperLimit", generated(&P::getUpperLimit), 100, 100.0, 0},
            {"getValue", generated(&P::getValue), 42, true, 0},
            {"getString", generated(&P::getString), QStringLiteral("42 counts"), 42, QString()},
            {"getMinValue", generated(&P::getMinValue), -7, QStringLiteral("-7"), 0},
            {"getMinString", generated(&P::getMinString), QStringLiteral("-7 counts"), -7, QString()},
            {"getMaxValue", generated(&P::getMaxValue), 99, 99.0, 0},
            {"getMaxString", generated(&P::getMaxString), QStringLiteral("99 counts"), true, QString()},
        },
        {
            {"resetMinMaxValues", generated(&P::resetMinMaxValues)},
            {"stopMinMaxEval", generated(&P::stopMinMaxEval)},
            {"continueMinMaxEval", generated(&P::continueMinMaxEval)},
        },
        // member, getter, opening of its reports, its report of the error "no reading".
        // Three rows report under getMinValueComp's text while calling their own member.
        {
            {"getValueComp", listGetter(&P::getValueComp), "\"ResultIntInterface::\" getValueComp(): ",
             "\"ResultIntInterface::\" getValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Count\"  / Error: "
             "\"no reading\""},
            {"getMinValueComp", listGetter(&P::getMinValueComp), "\"ResultIntInterface::\" getMinValueComp(): ",
             "\"ResultIntInterface::\" getMinValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Count\"  / Error: "
             "\"no reading\""},
            {"getMaxValueComp", listGetter(&P::getMaxValueComp), "\"ResultIntInterface::\" getMinValueComp(): ",
             "\"ResultIntInterface::\" getMinValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Count\"  / Error: "
             "\"no reading\""},
            {"getStringComp", listGetter(&P::getStringComp), "\"ResultIntInterface::\" getMinValueComp(): ",
             "\"ResultIntInterface::\" getMinValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Count\"  / Error: "
             "\"no reading\""},
            {"getMinStringComp", listGetter(&P::getMinStringComp), "\"ResultIntInterface::\" getMinValueComp(): ",
             "\"ResultIntInterface::\" getMinValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Count\"  / Error: "
             "\"no reading\""},
            {"getMaxStringComp", listGetter(&P::getMaxStringComp), "\"ResultIntInterface::\" getMaxStringComp(): ",
             "\"ResultIntInterface::\" getMaxStringComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Count\"  / Error: "
             "\"no reading\""},
        },
    };
}

const ResultTest::Reading<int> reading{"QDBusReply<int>", 42, QStringLiteral("42 counts")};

} // namespace

class tst_ResultIntInterface : public QObject, private ProxyFixture<ResultIntInterface>
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void constructionPassesItsArgumentsOnAndSendsNothing();
    void sendsEachOperationAsItsOwnMemberWithoutArguments_data();
    void sendsEachOperationAsItsOwnMemberWithoutArguments();
    void mapsEachGeneratedReply_data();
    void mapsEachGeneratedReply();
    void generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent_data();
    void generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent();

    void compGettersReturnTheElementsAsSent_data();
    void compGettersReturnTheElementsAsSent();
    void compGettersPassAnEmptyListOnWithoutAReport_data();
    void compGettersPassAnEmptyListOnWithoutAReport();
    void compGettersReportAnErrorReplyInOneLine_data();
    void compGettersReportAnErrorReplyInOneLine();
    void compGettersTreatAWrongTypedReplyAsAFailure_data();
    void compGettersTreatAWrongTypedReplyAsAFailure();
    void compGettersReportAnAbsentServiceInOneLine_data();
    void compGettersReportAnAbsentServiceInOneLine();
    void compReportQuotesAndEscapesTheErrorMessage();
    void failingStringCompReportsUnderMinValueCompTextButCallsItsOwnMember();
    void failingMaxValueCompAndMinStringCompReportUnderMinValueCompText();

    void aFailedCallLeavesTheProxyAsItWas();

    void metaObjectListsExactlyItsSlotsInOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();
};

void tst_ResultIntInterface::init()
{
    startFakeAndProxy(path);
}

void tst_ResultIntInterface::cleanup()
{
    stopFakeAndProxy();
}

void tst_ResultIntInterface::constructionPassesItsArgumentsOnAndSendsNothing()
{
    verifyConstructionContract<ResultIntInterface>(*m_fake, path);
}

void tst_ResultIntInterface::sendsEachOperationAsItsOwnMemberWithoutArguments_data()
{
    ResultTest::addSentRows(ResultTest::sentOperations(operations()));
}

void tst_ResultIntInterface::sendsEachOperationAsItsOwnMemberWithoutArguments()
{
    ResultTest::verifySentWithItsWireForm(*m_fake, *m_proxy, path);
}

void tst_ResultIntInterface::mapsEachGeneratedReply_data()
{
    ResultTest::addGeneratedReplyRows(operations().getters, operations().commands);
}

void tst_ResultIntInterface::mapsEachGeneratedReply()
{
    ResultTest::verifyGeneratedReply(*m_fake, *m_proxy);
}

void tst_ResultIntInterface::generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent_data()
{
    ResultTest::addAbsentServiceRows(operations().getters, operations().commands);
}

void tst_ResultIntInterface::generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent()
{
    ResultTest::verifyGeneratedOperationFailsSilentlyWithoutTheService<ResultIntInterface>(path);
}

void tst_ResultIntInterface::compGettersReturnTheElementsAsSent_data()
{
    ResultTest::addCompRows(operations().comps);
}

void tst_ResultIntInterface::compGettersReturnTheElementsAsSent()
{
    ResultTest::verifyCompReturnsTheElementsAsSent(*m_fake, *m_proxy, path);
}

void tst_ResultIntInterface::compGettersPassAnEmptyListOnWithoutAReport_data()
{
    ResultTest::addCompRows(operations().comps);
}

void tst_ResultIntInterface::compGettersPassAnEmptyListOnWithoutAReport()
{
    ResultTest::verifyCompPassesAnEmptyListOn(*m_fake, *m_proxy);
}

void tst_ResultIntInterface::compGettersReportAnErrorReplyInOneLine_data()
{
    ResultTest::addCompRows(operations().comps);
}

void tst_ResultIntInterface::compGettersReportAnErrorReplyInOneLine()
{
    ResultTest::verifyCompReportsAnErrorReply(*m_fake, *m_proxy, path);
}

void tst_ResultIntInterface::compGettersTreatAWrongTypedReplyAsAFailure_data()
{
    ResultTest::addCompWrongTypeRows(operations().comps);
}

void tst_ResultIntInterface::compGettersTreatAWrongTypedReplyAsAFailure()
{
    ResultTest::verifyCompTreatsAWrongTypedReplyAsAFailure(*m_fake, *m_proxy, path);
}

void tst_ResultIntInterface::compGettersReportAnAbsentServiceInOneLine_data()
{
    ResultTest::addCompRows(operations().comps);
}

void tst_ResultIntInterface::compGettersReportAnAbsentServiceInOneLine()
{
    ResultTest::verifyCompReportsAnAbsentService<ResultIntInterface>(path);
}

void tst_ResultIntInterface::compReportQuotesAndEscapesTheErrorMessage()
{
    ResultTest::verifyErrorReplyReportedOnce(
        *m_fake, path, "getValueComp", QStringLiteral("say \"hi\" \\ bye"),
        "\"ResultIntInterface::\" getValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Count\"  / "
        "Error: \"say \\\"hi\\\" \\\\ bye\"",
        [this] { return QVariant(m_proxy->getValueComp()); });
}

void tst_ResultIntInterface::failingStringCompReportsUnderMinValueCompTextButCallsItsOwnMember()
{
    ResultTest::verifyErrorReplyReportedOnce(
        *m_fake, path, "getStringComp", QStringLiteral("no text"),
        "\"ResultIntInterface::\" getMinValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Count\"  / Error: "
        "\"no text\"",
        [this] { return QVariant(m_proxy->getStringComp()); });
}

void tst_ResultIntInterface::failingMaxValueCompAndMinStringCompReportUnderMinValueCompText()
{
    LogCapture log;
    m_fake->answer("getMaxValueComp", ScriptedAnswer::error(ResultTest::failure(), QStringLiteral("no maximum")));
    m_fake->answer("getMinStringComp", ScriptedAnswer::error(ResultTest::failure(), QStringLiteral("no minimum")));

    m_proxy->getMaxValueComp();
    m_proxy->getMinStringComp();

    QVERIFY(m_fake->waitForCalls(2));
    QCOMPARE(m_fake->calls().at(0).member, QStringLiteral("getMaxValueComp"));
    QCOMPARE(m_fake->calls().at(1).member, QStringLiteral("getMinStringComp"));
    QCOMPARE(log.lines(),
             debugLines({"\"ResultIntInterface::\" getMinValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Count\" "
                         " / Error: \"no maximum\"",
                         "\"ResultIntInterface::\" getMinValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Count\" "
                         " / Error: \"no minimum\""}));
}

void tst_ResultIntInterface::aFailedCallLeavesTheProxyAsItWas()
{
    ResultTest::verifyAFailedCallLeavesTheProxyAsItWas(*m_fake, *m_proxy, reading);
}

void tst_ResultIntInterface::metaObjectListsExactlyItsSlotsInOrder()
{
    ResultTest::verifyOwnMethodsAreExactlyTheseSlots(
        ResultIntInterface::staticMetaObject, *m_proxy,
        {"getLowerLimit()", "getUpperLimit()", "getValue()", "getString()", "getMinValue()", "getMinString()",
         "getMaxValue()", "getMaxString()", "resetMinMaxValues()", "stopMinMaxEval()", "continueMinMaxEval()",
         "getValueComp()", "getMinValueComp()", "getMaxValueComp()", "getStringComp()", "getMinStringComp()",
         "getMaxStringComp()"},
        17);
}

void tst_ResultIntInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(*m_proxy, "ResultIntInterface");
    QCOMPARE(m_proxy->qt_metacast("ResultDoubleInterface"), nullptr);
}

void tst_ResultIntInterface::invokingSlotsByNameGivesTheDirectResult()
{
    ResultTest::verifySlotsInvokedByNameGiveTheDirectResult(*m_fake, *m_proxy, reading, "resetMinMaxValues");
}

QTEST_GUILESS_MAIN(tst_ResultIntInterface)

#include "tst_resultintinterface.moc"
