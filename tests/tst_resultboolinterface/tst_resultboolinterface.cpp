#include "ResultBoolInterface.h"

#include "ResultTestSupport.h"

#include <QDBusConnection>
#include <QtTest/QTest>

#include <memory>

namespace {

using P = ResultBoolInterface;
using ResultTest::generated;
using ResultTest::listGetter;

const QString path = QStringLiteral("/Result/Overload");

ResultTest::ScalarResult operations()
{
    return {
        // member, operation, a reply it maps, a reply of another type, its value after a failure
        {
            {"getLowerLimit", generated(&P::getLowerLimit), false, 0, false},
            {"getUpperLimit", generated(&P::getUpperLimit), true, 1, false},
            {"getValue", generated(&P::getValue), true, QStringLiteral("true"), false},
            {"getString", generated(&P::getString), QStringLiteral("overload"), true, QString()},
            {"getMinValue", generated(&P::getMinValue), true, 1.0, false},
            {"getMinString", generated(&P::getMinString), QStringLiteral("no overload"), false, QString()},
            {"getMaxValue", generated(&P::getMaxValue), true, 1, false},
            {"getMaxString", generated(&P::getMaxString), QStringLiteral("overload"), 1, QString()},
        },
        {
            {"resetMinMaxValues", generated(&P::resetMinMaxValues)},
            {"stopMinMaxEval", generated(&P::stopMinMaxEval)},
            {"continueMinMaxEval", generated(&P::continueMinMaxEval)},
        },
        // member, getter, opening of its reports, its report of the error "no reading"
        {
            {"getValueComp", listGetter(&P::getValueComp), "\"ResultBoolInterface::\" getValueComp(): ",
             "\"ResultBoolInterface::\" getValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Overload\"  / "
             "Error: \"no reading\""},
            {"getMinValueComp", listGetter(&P::getMinValueComp), "\"ResultBoolInterface::\" getMinValueComp(): ",
             "\"ResultBoolInterface::\" getMinValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Overload\"  / "
             "Error: \"no reading\""},
            {"getMaxValueComp", listGetter(&P::getMaxValueComp), "\"ResultBoolInterface::\" getMaxValueComp(): ",
             "\"ResultBoolInterface::\" getMaxValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Overload\"  / "
             "Error: \"no reading\""},
            {"getStringComp", listGetter(&P::getStringComp), "\"ResultBoolInterface::\" getStringComp(): ",
             "\"ResultBoolInterface::\" getStringComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Overload\"  / "
             "Error: \"no reading\""},
            {"getMinStringComp", listGetter(&P::getMinStringComp), "\"ResultBoolInterface::\" getMinStringComp(): ",
             "\"ResultBoolInterface::\" getMinStringComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Overload\"  / "
             "Error: \"no reading\""},
            {"getMaxStringComp", listGetter(&P::getMaxStringComp), "\"ResultBoolInterface::\" getMaxStringComp(): ",
             "\"ResultBoolInterface::\" getMaxStringComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Overload\"  / "
             "Error: \"no reading\""},
        },
    };
}

const ResultTest::Reading<bool> reading{"QDBusReply<bool>", true, QStringLiteral("overload")};

} // namespace

class tst_ResultBoolInterface : public QObject, private ProxyFixture<ResultBoolInterface>
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

    void aFailedCallLeavesTheProxyAsItWas();

    void metaObjectListsExactlyItsSlotsInOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();
};

void tst_ResultBoolInterface::init()
{
    startFakeAndProxy(path);
}

void tst_ResultBoolInterface::cleanup()
{
    stopFakeAndProxy();
}

void tst_ResultBoolInterface::constructionPassesItsArgumentsOnAndSendsNothing()
{
    verifyConstructionContract<ResultBoolInterface>(*m_fake, path);
}

void tst_ResultBoolInterface::sendsEachOperationAsItsOwnMemberWithoutArguments_data()
{
    ResultTest::addSentRows(ResultTest::sentOperations(operations()));
}

void tst_ResultBoolInterface::sendsEachOperationAsItsOwnMemberWithoutArguments()
{
    ResultTest::verifySentWithItsWireForm(*m_fake, *m_proxy, path);
}

void tst_ResultBoolInterface::mapsEachGeneratedReply_data()
{
    ResultTest::addGeneratedReplyRows(operations().getters, operations().commands);
}

void tst_ResultBoolInterface::mapsEachGeneratedReply()
{
    ResultTest::verifyGeneratedReply(*m_fake, *m_proxy);
}

void tst_ResultBoolInterface::generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent_data()
{
    ResultTest::addAbsentServiceRows(operations().getters, operations().commands);
}

void tst_ResultBoolInterface::generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent()
{
    ResultTest::verifyGeneratedOperationFailsSilentlyWithoutTheService<ResultBoolInterface>(path);
}

void tst_ResultBoolInterface::compGettersReturnTheElementsAsSent_data()
{
    ResultTest::addCompRows(operations().comps);
}

void tst_ResultBoolInterface::compGettersReturnTheElementsAsSent()
{
    ResultTest::verifyCompReturnsTheElementsAsSent(*m_fake, *m_proxy, path);
}

void tst_ResultBoolInterface::compGettersPassAnEmptyListOnWithoutAReport_data()
{
    ResultTest::addCompRows(operations().comps);
}

void tst_ResultBoolInterface::compGettersPassAnEmptyListOnWithoutAReport()
{
    ResultTest::verifyCompPassesAnEmptyListOn(*m_fake, *m_proxy);
}

void tst_ResultBoolInterface::compGettersReportAnErrorReplyInOneLine_data()
{
    ResultTest::addCompRows(operations().comps);
}

void tst_ResultBoolInterface::compGettersReportAnErrorReplyInOneLine()
{
    ResultTest::verifyCompReportsAnErrorReply(*m_fake, *m_proxy, path);
}

void tst_ResultBoolInterface::compGettersTreatAWrongTypedReplyAsAFailure_data()
{
    ResultTest::addCompWrongTypeRows(operations().comps);
}

void tst_ResultBoolInterface::compGettersTreatAWrongTypedReplyAsAFailure()
{
    ResultTest::verifyCompTreatsAWrongTypedReplyAsAFailure(*m_fake, *m_proxy, path);
}

void tst_ResultBoolInterface::compGettersReportAnAbsentServiceInOneLine_data()
{
    ResultTest::addCompRows(operations().comps);
}

void tst_ResultBoolInterface::compGettersReportAnAbsentServiceInOneLine()
{
    ResultTest::verifyCompReportsAnAbsentService<ResultBoolInterface>(path);
}

void tst_ResultBoolInterface::compReportQuotesAndEscapesTheErrorMessage()
{
    ResultTest::verifyErrorReplyReportedOnce(
        *m_fake, path, "getValueComp", QStringLiteral("say \"hi\" \\ bye"),
        "\"ResultBoolInterface::\" getValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Overload\"  / "
        "Error: \"say \\\"hi\\\" \\\\ bye\"",
        [this] { return QVariant(m_proxy->getValueComp()); });
}

void tst_ResultBoolInterface::aFailedCallLeavesTheProxyAsItWas()
{
    ResultTest::verifyAFailedCallLeavesTheProxyAsItWas(*m_fake, *m_proxy, reading);
}

void tst_ResultBoolInterface::metaObjectListsExactlyItsSlotsInOrder()
{
    ResultTest::verifyOwnMethodsAreExactlyTheseSlots(
        ResultBoolInterface::staticMetaObject, *m_proxy,
        {"getLowerLimit()", "getUpperLimit()", "getValue()", "getString()", "getMinValue()", "getMinString()",
         "getMaxValue()", "getMaxString()", "resetMinMaxValues()", "stopMinMaxEval()", "continueMinMaxEval()",
         "getValueComp()", "getMinValueComp()", "getMaxValueComp()", "getStringComp()", "getMinStringComp()",
         "getMaxStringComp()"},
        17);
}

void tst_ResultBoolInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(*m_proxy, "ResultBoolInterface");
    QCOMPARE(m_proxy->qt_metacast("ResultEnumInterface"), nullptr);
}

void tst_ResultBoolInterface::invokingSlotsByNameGivesTheDirectResult()
{
    ResultTest::verifySlotsInvokedByNameGiveTheDirectResult(*m_fake, *m_proxy, reading, "resetMinMaxValues");
}

QTEST_GUILESS_MAIN(tst_ResultBoolInterface)

#include "tst_resultboolinterface.moc"
