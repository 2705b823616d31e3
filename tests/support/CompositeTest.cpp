#include "CompositeTest.h"

#include <QtTest/QTest>

#include <algorithm>
#include <memory>

namespace {

QString firstWord(const char *operation)
{
    return QString::fromLatin1(operation).section(QLatin1Char(' '), 0, 0);
}

void nameMembers(QList<OperationRow> &rows)
{
    for (OperationRow &row : rows) {
        if (row.member.isEmpty())
            row.member = firstWord(row.operation);
    }
}

/// @p rows and those of @p more whose operation they do not name.
QList<OperationRow> joined(QList<OperationRow> rows, const QList<OperationRow> &more)
{
    for (const OperationRow &row : more) {
        if (std::none_of(rows.cbegin(), rows.cend(),
                         [&row](const OperationRow &known) { return qstrcmp(known.operation, row.operation) == 0; }))
            rows.append(row);
    }
    return rows;
}

/// The tables completed: each row's member is the first word of its operation where the row
/// names none; the fire-and-forget calls and setToDefault() are sent, and setToDefault() tried
/// on an absent service, where the tables leave them out; and a checked getter stated by name
/// takes its call and empty value from the reply row of that name, its line opening with
/// "Class::operation(): ".
CompositeClass completed(CompositeClass tested)
{
    const OperationRow setToDefault{.operation = "setToDefault", .run = tested.setToDefault};
    tested.sent = joined(tested.sent, tested.asyncs + QList<OperationRow>{setToDefault});
    tested.absent = joined(tested.absent, {setToDefault});
    for (QList<OperationRow> *rows :
         {&tested.sent, &tested.replies, &tested.voidReplies, &tested.absent, &tested.checkedGetters, &tested.asyncs})
        nameMembers(*rows);
    for (OperationRow &getter : tested.checkedGetters) {
        for (const OperationRow &reply : std::as_const(tested.replies)) {
            if (!getter.run && qstrcmp(reply.operation, getter.operation) == 0) {
                getter.run = reply.run;
                getter.member = reply.member;
                getter.empty = reply.empty;
            }
        }
        if (getter.report.isEmpty())
            getter.report = QLatin1String(tested.className) + QStringLiteral("::") + firstWord(getter.operation) +
                QStringLiteral("(): ");
    }
    return tested;
}

} // namespace

CompositeTest::CompositeTest(CompositeClass tested)
    : ProxyTableTest(tested.className, tested.path, tested.make)
    , m_class(completed(std::move(tested)))
{
}

CompositeTest::~CompositeTest() = default;

bool CompositeTest::isCheckedGetter(const char *operation) const
{
    const QByteArray name(operation);
    return std::any_of(m_class.checkedGetters.cbegin(), m_class.checkedGetters.cend(),
                       [&name](const OperationRow &getter) {
                           return name == getter.operation || name.startsWith(QByteArray(getter.operation) + ' ');
                       });
}

void CompositeTest::sendsEachOperationWithItsWireForm_data()
{
    addOperationRows(m_class.sent + m_class.replies + m_class.voidReplies);
}

void CompositeTest::sendsEachOperationWithItsWireForm()
{
    verifySentAsItsRow(*m_fake, *m_proxy);
}

void CompositeTest::mapsEachAnswerToWhatTheCallerSees_data()
{
    addMappedReplyColumns();
    for (const OperationRow &row : m_class.replies) {
        const LogCheck failureLogs = isCheckedGetter(row.operation) ? LogCheck::Unchecked : LogCheck::Nothing;
        addMappedReplyRows(tag(row, ""), row, failureLogs, failureLogs);
    }
    for (const OperationRow &row : m_class.voidReplies)
        addMappedVoidReplyRows(tag(row, ""), row);
}

void CompositeTest::mapsEachAnswerToWhatTheCallerSees()
{
    if (m_class.replies.isEmpty() && m_class.voidReplies.isEmpty())
        QSKIP("The test maps the class's answers in its own words.");
    verifyMappedReply(*m_fake, *m_proxy);
}

void CompositeTest::givesInvalidRepliesWhenTheServiceIsAbsent_data()
{
    addOperationRows(m_class.absent + m_class.replies + m_class.voidReplies);
}

void CompositeTest::givesInvalidRepliesWhenTheServiceIsAbsent()
{
    const bool logs = isCheckedGetter(QTest::currentDataTag());
    verifyFailsWhenTheServiceIsAbsent(m_make, m_path, logs ? LogCheck::Unchecked : m_class.absentLog);
}

void CompositeTest::checkedGettersLogOneLinePerFailure_data()
{
    for (const OperationRow &getter : m_class.checkedGetters)
        QVERIFY2(getter.run, getter.operation);
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
    for (const OperationRow &getter : m_class.checkedGetters)
        QVERIFY2(getter.run, getter.operation);
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

void CompositeTest::relaysEachSignalOfItsOwnObjectOnly_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < m_class.relayed.size(); ++i)
        QTest::addRow("%s/%s", m_className, qPrintable(m_class.relayed.at(i).member)) << i;
}

void CompositeTest::relaysEachSignalOfItsOwnObjectOnly()
{
    if (m_class.relayed.isEmpty())
        QSKIP("The test relays the class's signals in its own words.");
    QFETCH(int, index);
    const RelayedSignal &relayed = m_class.relayed.at(index);
    verifySignalRelay(*m_proxy, *m_fake, relayed.qtSignal, relayed.member, relayed.arguments);
}

void CompositeTest::metaCastAnswersForTheClassAndItsBasesOnly()
{
    if (m_class.otherClassNames.isEmpty())
        QSKIP("The test casts the class in its own words.");
    verifyMetaCast(*m_proxy, m_className, m_class.otherClassNames);
}

void CompositeTest::metaObjectDeclaresSignalsThenSlotsOnly()
{
    if (m_class.returnTypes.isEmpty())
        QSKIP("The test lists the class's methods in its own words.");
    const QMetaObject &meta = *m_proxy->metaObject();
    verifySignalsThenSlots(meta, *m_proxy, m_class.signalSignatures, m_class.slotSignatures);
    verifyReturnTypes(meta, m_class.returnTypes);
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
