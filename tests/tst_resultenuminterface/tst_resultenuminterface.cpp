#include "ResultEnumInterface.h"

#include "ResultTestSupport.h"

#include <QDBusConnection>
#include <QtTest/QTest>

#include <memory>

namespace {

using P = ResultEnumInterface;
using ResultTest::generated;
using ResultTest::listGetter;

const QString path = QStringLiteral("/Result/Range");

ResultTest::ScalarResult operations()
{
    return {
        // member, operation, a reply it maps, a reply of another type, its value after a failure
        {
            {"getValue", generated(&P::getValue), 2, QStringLiteral("2"), 0},
            {"getString", generated(&P::getString), QStringLiteral("Range 2"), 2, QString()},
            {"getMinValue", generated(&P::getMinValue), 1, true, 0},
            {"getMaxValue", generated(&P::getMaxValue), 3, 3.0, 0},
        },
        {},
        // member, getter, opening of its reports, its report of the error "no reading".
        // The report opens with the bare literal, without the quoted class prefix.
        {
            {"getValueComp", listGetter(&P::getValueComp), "ResultEnumInterface::getValueComp(): ",
             "ResultEnumInterface::getValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Range\"  / Error: "
             "\"no reading\""},
        },
    };
}

const ResultTest::Reading<int> reading{"QDBusReply<int>", 2, QStringLiteral("Range 2")};

} // namespace

class tst_ResultEnumInterface : public QObject, private ProxyFixture<ResultEnumInterface>
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
    void failingValueCompReportBeginsWithTheBareClassLiteral();
    void cannotFindLimitsMinMaxTextOrMinMaxControlByName();

    void aFailedCallLeavesTheProxyAsItWas();

    void metaObjectListsExactlyItsSlotsInOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();
};

void tst_ResultEnumInterface::init()
{
    startFakeAndProxy(path);
}

void tst_ResultEnumInterface::cleanup()
{
    stopFakeAndProxy();
}

void tst_ResultEnumInterface::constructionPassesItsArgumentsOnAndSendsNothing()
{
    verifyConstructionContract<ResultEnumInterface>(*m_fake, path);
}

void tst_ResultEnumInterface::sendsEachOperationAsItsOwnMemberWithoutArguments_data()
{
    ResultTest::addSentRows(ResultTest::sentOperations(operations()));
}

void tst_ResultEnumInterface::sendsEachOperationAsItsOwnMemberWithoutArguments()
{
    ResultTest::verifySentWithItsWireForm(*m_fake, *m_proxy, path);
}

void tst_ResultEnumInterface::mapsEachGeneratedReply_data()
{
    ResultTest::addGeneratedReplyRows(operations().getters);
}

void tst_ResultEnumInterface::mapsEachGeneratedReply()
{
    ResultTest::verifyGeneratedReply(*m_fake, *m_proxy);
}

void tst_ResultEnumInterface::generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent_data()
{
    ResultTest::addAbsentServiceRows(operations().getters);
}

void tst_ResultEnumInterface::generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent()
{
    ResultTest::verifyGeneratedOperationFailsSilentlyWithoutTheService<ResultEnumInterface>(path);
}

void tst_ResultEnumInterface::compGettersReturnTheElementsAsSent_data()
{
    ResultTest::addCompRows(operations().comps);
}

void tst_ResultEnumInterface::compGettersReturnTheElementsAsSent()
{
    ResultTest::verifyCompReturnsTheElementsAsSent(*m_fake, *m_proxy, path);
}

void tst_ResultEnumInterface::compGettersPassAnEmptyListOnWithoutAReport_data()
{
    ResultTest::addCompRows(operations().comps);
}

void tst_ResultEnumInterface::compGettersPassAnEmptyListOnWithoutAReport()
{
    ResultTest::verifyCompPassesAnEmptyListOn(*m_fake, *m_proxy);
}

void tst_ResultEnumInterface::compGettersReportAnErrorReplyInOneLine_data()
{
    ResultTest::addCompRows(operations().comps);
}

void tst_ResultEnumInterface::compGettersReportAnErrorReplyInOneLine()
{
    ResultTest::verifyCompReportsAnErrorReply(*m_fake, *m_proxy, path);
}

void tst_ResultEnumInterface::compGettersTreatAWrongTypedReplyAsAFailure_data()
{
    ResultTest::addCompWrongTypeRows(operations().comps);
}

void tst_ResultEnumInterface::compGettersTreatAWrongTypedReplyAsAFailure()
{
    ResultTest::verifyCompTreatsAWrongTypedReplyAsAFailure(*m_fake, *m_proxy, path);
}

void tst_ResultEnumInterface::compGettersReportAnAbsentServiceInOneLine_data()
{
    ResultTest::addCompRows(operations().comps);
}

void tst_ResultEnumInterface::compGettersReportAnAbsentServiceInOneLine()
{
    ResultTest::verifyCompReportsAnAbsentService<ResultEnumInterface>(path);
}

void tst_ResultEnumInterface::compReportQuotesAndEscapesTheErrorMessage()
{
    ResultTest::verifyErrorReplyReportedOnce(
        *m_fake, path, "getValueComp", QStringLiteral("say \"hi\" \\ bye"),
        "ResultEnumInterface::getValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Range\"  / "
        "Error: \"say \\\"hi\\\" \\\\ bye\"",
        [this] { return QVariant(m_proxy->getValueComp()); });
}

void tst_ResultEnumInterface::failingValueCompReportBeginsWithTheBareClassLiteral()
{
    LogCapture log;
    m_fake->answer("getValueComp", ScriptedAnswer::error(ResultTest::failure(), QStringLiteral("no range")));

    QCOMPARE(m_proxy->getValueComp(), QList<QVariant>());

    const QList<LogLine> lines = log.lines();
    QCOMPARE(lines,
             debugLines({"ResultEnumInterface::getValueComp():  \"com.velk.mqx.app.fake\"  /  \"/Result/Range\"  / "
                         "Error: \"no range\""}));
    QVERIFY(lines.first().text.startsWith(QStringLiteral("ResultEnumInterface::getValueComp():  \"")));
}

void tst_ResultEnumInterface::cannotFindLimitsMinMaxTextOrMinMaxControlByName()
{
    ResultTest::verifyCannotBeFoundByName(*m_fake, *m_proxy, path,
                                          {"getLowerLimit", "getUpperLimit", "getMinString", "getMaxString",
                                           "resetMinMaxValues", "stopMinMaxEval", "continueMinMaxEval",
                                           "getMinValueComp", "getMaxValueComp", "getStringComp", "getMinStringComp",
                                           "getMaxStringComp"});
}

void tst_ResultEnumInterface::aFailedCallLeavesTheProxyAsItWas()
{
    ResultTest::verifyAFailedCallLeavesTheProxyAsItWas(*m_fake, *m_proxy, reading);
}

void tst_ResultEnumInterface::metaObjectListsExactlyItsSlotsInOrder()
{
    ResultTest::verifyOwnMethodsAreExactlyTheseSlots(
        ResultEnumInterface::staticMetaObject, *m_proxy,
        {"getValue()", "getString()", "getMinValue()", "getMaxValue()", "getValueComp()"}, 5);
}

void tst_ResultEnumInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(*m_proxy, "ResultEnumInterface");
    QCOMPARE(m_proxy->qt_metacast("ResultBoolInterface"), nullptr);
}

void tst_ResultEnumInterface::invokingSlotsByNameGivesTheDirectResult()
{
    ResultTest::verifySlotsInvokedByNameGiveTheDirectResult(*m_fake, *m_proxy, reading);
}

QTEST_GUILESS_MAIN(tst_ResultEnumInterface)

#include "tst_resultenuminterface.moc"
