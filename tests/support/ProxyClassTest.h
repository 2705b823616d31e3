#ifndef TESTS_PROXYCLASSTEST_H
#define TESTS_PROXYCLASSTEST_H

// The test every proxy class shares. A class's test states the class as a ProxyClassTable and
// derives from ProxyClassTest, adding only what is the class's own. Each test function starts
// with a fresh fake application and a proxy on it; row tags name class, operation and case
// ("SetupIntInterface/getValue/error reply"), so `ctest -R` and -v2 output name the class.

#include "FakeMeasApplication.h"
#include "ProxyClassTable.h"

#include <QByteArray>
#include <QDBusAbstractInterface>
#include <QList>
#include <QObject>

#include <memory>

/// One received call against the row's wire form: member, signature and arguments.
void verifyReceivedCall(const ReceivedCall &call, const QString &path, const OperationRow &row);

/// The one call the application received is the row's.
void verifySingleCall(const FakeMeasApplication &fake, const QString &path, const OperationRow &row);

/// The row's operation sends exactly the row's call, and nothing else.
void verifySentAsItsRow(FakeMeasApplication &fake, QDBusAbstractInterface &proxy, const OperationRow &row);

class ProxyClassTest : public QObject
{
    Q_OBJECT

public:
    explicit ProxyClassTest(ProxyClassTable tested);
    ~ProxyClassTest() override;

protected:
    template<typename Proxy>
    Proxy &proxy()
    {
        return static_cast<Proxy &>(*m_proxy);
    }

    /// A proxy of the class for a service nobody owns.
    std::unique_ptr<QDBusAbstractInterface> makeAbsent() const;

    const ProxyClassTable m_class;
    const QString m_path;
    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<QDBusAbstractInterface> m_proxy;

protected Q_SLOTS:
    void init();
    void cleanup();

private Q_SLOTS:
    void constructionPassesItsArgumentsOnAndSendsNothing();
    void constructionForAnAbsentServiceKeepsItsArgumentsAndLogsNothing();
    void keepsNoDataBesideTheBaseButItsOwn();

    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void mapsEachReply_data();
    void mapsEachReply();
    void failsWhenTheServiceIsAbsentAndLogsOnlyItsOwnLines_data();
    void failsWhenTheServiceIsAbsentAndLogsOnlyItsOwnLines();
    void plainOperationsLogNothingOnAnErrorReply();

    void checkedGettersGiveTheAnswerOrEmptyAfterTheirLines_data();
    void checkedGettersGiveTheAnswerOrEmptyAfterTheirLines();
    void checkedGettersLogTheirLinesWhenTheApplicationVanishes_data();
    void checkedGettersLogTheirLinesWhenTheApplicationVanishes();
    void getTimeStampKeepsTheApplicationsTimeSpec();

    void setToDefaultWaitsForTheAnswerAndDropsIt();
    void asyncOperationsReturnAtOnceAndLeaveLastErrorAlone();
    void asyncOperationsToAnAbsentServiceShowNothing_data();
    void asyncOperationsToAnAbsentServiceShowNothing();

    void compGettersReturnTheElementsAsSent_data();
    void compGettersReturnTheElementsAsSent();
    void compGettersGiveAnEmptyListAndReportAnyFailureInOneLine_data();
    void compGettersGiveAnEmptyListAndReportAnyFailureInOneLine();
    void aFailedCompCallLeavesTheProxyAsItWas();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaObjectPlacesEachMethodAtItsIndex_data();
    void metaObjectPlacesEachMethodAtItsIndex();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult_data();
    void invokingSlotsByNameGivesTheDirectResult();
    void namesThatAreNoSlotCannotBeInvoked();
    void relaysEachSignalOfItsOwnObjectOnly_data();
    void relaysEachSignalOfItsOwnObjectOnly();

private:
    /// "ClassName/operation/situation".
    QByteArray tag(const OperationRow &row, const char *situation) const;
    /// A row per operation of @p rows in the column "row", tagged tag(row, @p situation).
    void addRows(const QList<OperationRow> &rows, const char *situation) const;
    /// Every row that sends a call.
    QList<OperationRow> sendingRows() const;
    /// The lines the row's operation logs when its call to @p service fails with @p message.
    QList<LogLine> failureLines(const OperationRow &row, const QString &service, const QString &message) const;
};

#endif
