#include "ResultDoubleInterface.h"

#include "ResultTestSupport.h"

#include <QDBusConnection>
#include <QtTest/QTest>

#include <memory>

namespace {

using P = ResultDoubleInterface;
using ResultTest::generated;
using ResultTest::listGetter;

const QString path = QStringLiteral("/Result/Voltage");

ResultTest::ScalarResult operations()
{
    return {
        // member, operation, a reply it maps, a reply of another type, its value after a failure
        {
            {"getLowerLimit", generated(&P::getLowerLimit), -0.5, -1, 0.0},
            {"getUpperLimit", generated(&P::getUpperLimit), 12.75, QStringLiteral("12.75"), 0.0},
            {"getValue", generated(&P::getValue), 3.25, 3, 0.0},
            {"getString", generated(&P::getString), QStringLiteral("3.25 V"), 3.25, QString()},
            {"getMinValue", generated(&P::getMinValue), -0.125, true, 0.0},
            {"getMaxValue", generated(&P::getMaxValue), 11.5, QStringLiteral("11.5"), 0.0},
        },
        {
            {"resetMinMaxValues", generated(&P::resetMinMaxValues)},
            {"stopMinMaxEval", generated(&P::stopMinMaxEval)},
            {"continueMinMaxEval", generated(&P::continueMinMaxEval)},
        },
        // member, getter, opening of its reports, its report of the error "no reading"
        {
            {"getValueComp", listGetter(&P::getValueComp), "\"ResultDoubleInterface::\" getValueComp(): ",
             "\"ResultDoubleInterface::\" getValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Voltage\"  / "
             "Error: \"no reading\""},
            {"getMinValueComp", listGetter(&P::getMinValueComp), "\"ResultDoubleInterface::\" getMinValueComp(): ",
             "\"ResultDoubleInterface::\" getMinValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Voltage\"  / "
             "Error: \"no reading\""},
            {"getMaxValueComp", listGetter(&P::getMaxValueComp), "\"ResultDoubleInterface::\" getMaxValueComp(): ",
             "\"ResultDoubleInterface::\" getMaxValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Voltage\"  / "
             "Error: \"no reading\""},
            {"getStringComp", listGetter(&P::getStringComp), "\"ResultDoubleInterface::\" getStringComp(): ",
             "\"ResultDoubleInterface::\" getStringComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Voltage\"  / "
             "Error: \"no reading\""},
            {"getMinStringComp", listGetter(&P::getMinStringComp), "\"ResultDoubleInterface::\" getMinStringComp(): ",
             "\"ResultDoubleInterface::\" getMinStringComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Voltage\"  / "
             "Error: \"no reading\""},
            {"getMaxStringComp", listGetter(&P::getMaxStringComp), "\"ResultDoubleInterface::\" getMaxStringComp(): ",
             "\"ResultDoubleInterface::\" getMaxStringComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Voltage\"  / "
             "Error: \"no reading\""},
        },
    };
}

const ResultTest::Reading<double> reading{"QDBusReply<double>", 3.25, QStringLiteral("3.25 V")};

} // namespace

class tst_ResultDoubleInterface : public QObject, private ProxyFixture<ResultDoubleInterface>
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
    void failingStringCompReportsUnderItsOwnName();
    void hasNoMinOrMaxStringButBothStringComps();

    void aFailedCallLeavesTheProxyAsItWas();

    void metaObjectListsExactlyItsSlotsInOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();
};

void tst_ResultDoubleInterface::init()
{
    startFakeAndProxy(path);
}

void tst_ResultDoubleInterface::cleanup()
{
    stopFakeAndProxy();
}

void tst_ResultDoubleInterface::constructionPassesItsArgumentsOnAndSendsNothing()
{
    verifyConstructionContract<ResultDoubleInterface>(*m_fake, path);
}

void tst_ResultDoubleInterface::sendsEachOperationAsItsOwnMemberWithoutArguments_data()
{
    ResultTest::addSentRows(ResultTest::sentOperations(operations()));
}

void tst_ResultDoubleInterface::sendsEachOperationAsItsOwnMemberWithoutArguments()
{
    ResultTest::verifySentWithItsWireForm(*m_fake, *m_proxy, path);
}

void tst_ResultDoubleInterface::mapsEachGeneratedReply_data()
{
    ResultTest::addGeneratedReplyRows(operations().getters, operations().commands);
}

void tst_ResultDoubleInterface::mapsEachGeneratedReply()
{
    ResultTest::verifyGeneratedReply(*m_fake, *m_proxy);
}

void tst_ResultDoubleInterface::generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent_data()
{
    ResultTest::addAbsentServiceRows(operations().getters, operations().commands);
}

void tst_ResultDoubleInterface::generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent()
{
    ResultTest::verifyGeneratedOperationFailsSilentlyWithoutTheService<ResultDoubleInterface>(path);
}

void tst_ResultDoubleInterface::compGettersReturnTheElementsAsSent_data()
{
    ResultTest::addCompRows(operations().comps);
}

void tst_ResultDoubleInterface::compGettersReturnTheElementsAsSent()
{
    ResultTest::verifyCompReturnsTheElementsAsSent(*m_fake, *m_proxy, path);
}

void tst_ResultDoubleInterface::compGettersPassAnEmptyListOnWithoutAReport_data()
{
    ResultTest::addCompRows(operations().comps);
}

void tst_ResultDoubleInterface::compGettersPassAnEmptyListOnWithoutAReport()
{
    ResultTest::verifyCompPassesAnEmptyListOn(*m_fake, *m_proxy);
}

void tst_ResultDoubleInterface::compGettersReportAnErrorReplyInOneLine_data()
{
    ResultTest::addCompRows(operations().comps);
}

void tst_ResultDoubleInterface::compGettersReportAnErrorReplyInOneLine()
{
    ResultTest::verifyCompReportsAnErrorReply(*m_fake, *m_proxy, path);
}

void tst_ResultDoubleInterface::compGettersTreatAWrongTypedReplyAsAFailure_data()
{
    ResultTest::addCompWrongTypeRows(operations().comps);
}

void tst_ResultDoubleInterface::compGettersTreatAWrongTypedReplyAsAFailure()
{
    ResultTest::verifyCompTreatsAWrongTypedReplyAsAFailure(*m_fake, *m_proxy, path);
}

void tst_ResultDoubleInterface::compGettersReportAnAbsentServiceInOneLine_data()
{
    ResultTest::addCompRows(operations().comps);
}

void tst_ResultDoubleInterface::compGettersReportAnAbsentServiceInOneLine()
{
    ResultTest::verifyCompReportsAnAbsentService<ResultDoubleInterface>(path);
}

void tst_ResultDoubleInterface::compReportQuotesAndEscapesTheErrorMessage()
{
    ResultTest::verifyErrorReplyReportedOnce(
        *m_fake, path, "getValueComp", QStringLiteral("say \"hi\" \\ bye"),
        "\"ResultDoubleInterface::\" getValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Voltage\"  / "
        "Error: \"say \\\"hi\\\" \\\\ bye\"",
        [this] { return QVariant(m_proxy->getValueComp()); });
}

void tst_ResultDoubleInterface::failingStringCompReportsUnderItsOwnName()
{
    ResultTest::verifyErrorReplyReportedOnce(
        *m_fake, path, "getStringComp", QStringLiteral("no text"),
        "\"ResultDoubleInterface::\" getStringComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Voltage\"  / "
        "Error: \"no text\"",
        [this] { return QVariant(m_proxy->getStringComp()); });
}

void tst_ResultDoubleInterface::hasNoMinOrMaxStringButBothStringComps()
{
    const QMetaObject &meta = ResultDoubleInterface::staticMetaObject;
    QVERIFY(meta.indexOfMethod("getMinStringComp()") >= meta.methodOffset());
    QVERIFY(meta.indexOfMethod("getMaxStringComp()") >= meta.methodOffset());

    ResultTest::verifyCannotBeFoundByName(*m_fake, *m_proxy, path, {"getMinString", "getMaxString"});
}

void tst_ResultDoubleInterface::aFailedCallLeavesTheProxyAsItWas()
{
    ResultTest::verifyAFailedCallLeavesTheProxyAsItWas(*m_fake, *m_proxy, reading);
}

void tst_ResultDoubleInterface::metaObjectListsExactlyItsSlotsInOrder()
{
    ResultTest::verifyOwnMethodsAreExactlyTheseSlots(
        ResultDoubleInterface::staticMetaObject, *m_proxy,
        {"getLowerLimit()", "getUpperLimit()", "getValue()", "getString()", "getMinValue()", "getMaxValue()",
         "resetMinMaxValues()", "stopMinMaxEval()", "continueMinMaxEval()", "getValueComp()", "getMinValueComp()",
         "getMaxValueComp()", "getStringComp()", "getMinStringComp()", "getMaxStringComp()"},
        15);
}

void tst_ResultDoubleInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(*m_proxy, "ResultDoubleInterface");
    QCOMPARE(m_proxy->qt_metacast("ResultIntInterface"), nullptr);
}

void tst_ResultDoubleInterface::invokingSlotsByNameGivesTheDirectResult()
{
    ResultTest::verifySlotsInvokedByNameGiveTheDirectResult(*m_fake, *m_proxy, reading, "resetMinMaxValues");
}

QTEST_GUILESS_MAIN(tst_ResultDoubleInterface)

#include "tst_resultdoubleinterface.moc"
