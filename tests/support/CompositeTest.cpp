#include "CompositeTest.h"

#include <QtTest/QTest>

#include <algorithm>
#include <memory>

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

// ---- checks the composite classes' own tests share -----------------------------------

void addMappedReplyTable(const QList<OperationRow> &rows, LogCheck errorLogs, LogCheck otherFailureLogs)
{
    for (const OperationRow &row : rows)
        addMappedReplyRows(QByteArray(row.operation) + ' ', row, errorLogs, otherFailureLogs);
}

void verifyPlainOperationsLogNothingWhenTheServiceIsAbsent(const CompositeClass &tested)
{
    const auto isChecked = [&tested](const OperationRow &row) {
        return std::any_of(
            tested.checkedGetters.cbegin(), tested.checkedGetters.cend(),
            [&row](const OperationRow &getter) { return qstrcmp(getter.operation, row.operation) == 0; });
    };
    LogCapture log;
    const std::unique_ptr<QDBusAbstractInterface> absent(tested.make(absentService(), tested.path, nullptr));

    for (const OperationRow &row : tested.absent) {
        if (!isChecked(row))
            row.run(*absent);
    }
    for (const OperationRow &row : tested.asyncs)
        row.run(*absent);

    QCOMPARE(log.lines(), QList<LogLine>());
}

void addByNameRows(const char *className, const QList<OperationRow> &invoked, const QList<OperationRow> &direct)
{
    QTest::addColumn<OperationRow>("row");
    QTest::addColumn<ProxyOperation>("direct");
    for (const OperationRow &row : invoked) {
        const auto called = std::find_if(direct.cbegin(), direct.cend(), [&row](const OperationRow &candidate) {
            return qstrcmp(candidate.operation, row.operation) == 0;
        });
        QTest::addRow("%s/%s/by name", className, row.operation)
            << row << (called == direct.cend() ? ProxyOperation() : called->run);
    }
}

void verifyByNameRow(FakeMeasApplication &fake, QDBusAbstractInterface &proxy)
{
    QFETCH(OperationRow, row);
    QFETCH(ProxyOperation, direct);
    QVERIFY2(direct, "no direct call of that name");
    fake.answer(row.wireMember(),
                row.answered.isValid() ? ScriptedAnswer::value(row.answered) : ScriptedAnswer::reply());

    const Seen byName = row.run(proxy);
    QVERIFY(byName.valid || !row.answered.isValid());
    QCOMPARE(byName.value, row.seen.isValid() ? row.seen : row.answered);
    QVERIFY(fake.waitForCalls(1));
    verifyReceivedCall(fake.calls().first(), proxy.path(), row);

    const Seen called = direct(proxy);
    QCOMPARE(byName.valid, called.valid);
    QCOMPARE(byName.value, called.value);
}

void verifyLeftAsArgument(const QVariant &value, const QString &wire)
{
    QCOMPARE(value.userType(), qMetaTypeId<QDBusArgument>());
    QCOMPARE(wireText(value), wire);
}

void addSignalRelayRows(const char *className, const QList<OperationRow> &relayed)
{
    QTest::addColumn<OperationRow>("row");
    for (const OperationRow &row : relayed)
        QTest::addRow("%s/%s/relayed", className, row.operation) << row;
}

void verifySignalRelayRow(FakeMeasApplication &fake, QDBusAbstractInterface &proxy)
{
    QFETCH(OperationRow, row);
    // The Qt signal as SIGNAL() writes it, relaying the bus signal of its name.
    const QByteArray qtSignal = QByteArray::number(QSIGNAL_CODE) + row.operation;
    const QString member = QString::fromLatin1(row.operation).section(QLatin1Char('('), 0, 0);
    verifySignalRelay(proxy, fake, qtSignal.constData(), member, row.arguments);
}
