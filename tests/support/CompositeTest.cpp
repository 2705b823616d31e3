#include "CompositeTest.h"

#include <QtTest/QTest>

CompositeTest::CompositeTest(CompositeClass tested)
    : ProxyTableTest(tested.className, tested.path, tested.make)
    , m_class(std::move(tested))
{
}

CompositeTest::~CompositeTest() = default;

void CompositeTest::sendsEachOperationWithItsWireForm_data()
{
    addOperationRows(m_class.sent);
}

void CompositeTest::sendsEachOperationWithItsWireForm()
{
    verifySentAsItsRow(*m_fake, *m_proxy);
}

void CompositeTest::givesInvalidRepliesWhenTheServiceIsAbsent_data()
{
    addOperationRows(m_class.absent);
}

void CompositeTest::givesInvalidRepliesWhenTheServiceIsAbsent()
{
    verifyFailsWhenTheServiceIsAbsent(m_make, m_path, m_class.absentLog);
}

void CompositeTest::checkedGettersLogOneLinePerFailure_data()
{
    addLoggedFailureRows(m_class.checkedGetters, m_class.loggedErrors);
}

void CompositeTest::checkedGettersLogOneLinePerFailure()
{
    if (m_class.checkedGetters.isEmpty())
        QSKIP("The class has no checked getter.");
    verifyLoggedFailure(*m_fake, *m_proxy);
}

void CompositeTest::checkedGettersLogOneLineWhenTheServiceIsAbsent_data()
{
    addOperationRows(m_class.checkedGetters);
}

void CompositeTest::checkedGettersLogOneLineWhenTheServiceIsAbsent()
{
    if (m_class.checkedGetters.isEmpty())
        QSKIP("The class has no checked getter.");
    verifyLoggedFailureWhenTheServiceIsAbsent(m_make, m_path);
}

void CompositeTest::setToDefaultWaitsForTheAnswerAndDropsIt()
{
    verifySetToDefaultWaitsAndDropsTheAnswer(*m_fake, *m_proxy, m_class.setToDefault, failedErrorName(),
                                             QStringLiteral("reset refused"));
}

void CompositeTest::asyncOperationsReturnAtOnceAndLeaveLastErrorAlone()
{
    if (m_class.asyncs.isEmpty())
        QSKIP("The class has no fire-and-forget operation.");
    verifyAsyncCallsReturnAtOnce(*m_fake, *m_proxy, m_class.failingCall, m_class.asyncs);
}

void CompositeTest::asyncOperationsToAnAbsentServiceShowNothing()
{
    if (m_class.asyncs.isEmpty())
        QSKIP("The class has no fire-and-forget operation.");
    verifyAsyncCallsShowNothing(*makeAbsent(), m_class.asyncs);
}

void CompositeTest::metaObjectPlacesEachMethodAtItsIndex_data()
{
    addMethodPlacementRows(m_class.signalSignatures, m_class.slotSignatures);
}

void CompositeTest::metaObjectPlacesEachMethodAtItsIndex()
{
    if (m_class.signalSignatures.isEmpty() && m_class.slotSignatures.isEmpty())
        QSKIP("The test lists the class's methods in its own words.");
    verifyMethodPlacementRow(*m_proxy->metaObject());
}
