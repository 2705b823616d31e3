#include "CompositeTest.h"

#include <QtTest/QTest>

#include <algorithm>
#include <memory>

namespace {

OperationRow setToDefaultRow(const CompositeClass &tested)
{
    return {.operation = "setToDefault", .run = tested.setToDefault};
}

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

/// The tables completed: each row's member is the first word of its operation where the row
/// names none; the fire-and-forget calls and setToDefault() are sent too; and a checked getter takes its call and empty
/// value from the reply row of its name, its line opening with "Class::operation(): ".
CompositeClass completed(CompositeClass tested)
{
    tested.sent += tested.asyncs + QList<OperationRow>{setToDefaultRow(tested)};
    for (QList<OperationRow> *rows : {&tested.sent, &tested.replies, &tested.voidReplies, &tested.asyncs})
        nameMembers(*rows);
    for (OperationRow &getter : tested.checkedGetters) {
        for (const OperationRow &reply : std::as_const(tested.replies)) {
            if (qstrcmp(reply.operation, getter.operation) == 0) {
                getter.run = reply.run;
                getter.member = reply.member;
                getter.empty = reply.empty;
            }
        }
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

void CompositeTest::constructionForAnAbsentServiceKeepsItsArgumentsAndLogsNothing()
{
    LogCapture log;
    const std::unique_ptr<QDBusAbstractInterface> absent = makeAbsent();

    QCOMPARE(absent->service(), absentService());
    QCOMPARE(absent->path(), m_path);
    QCOMPARE(log.lines(), QList<LogLine>());
    QVERIFY(m_proxy->isValid());
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
    verifyMappedReply(*m_fake, *m_proxy);
}

void CompositeTest::givesInvalidRepliesAndLogsNothingWhenTheServiceIsAbsent_data()
{
    addOperationRows(m_class.replies + m_class.voidReplies + QList<OperationRow>{setToDefaultRow(m_class)});
}

void CompositeTest::givesInvalidRepliesAndLogsNothingWhenTheServiceIsAbsent()
{
    // What the checked getters log is judged by their own rows.
    const bool logs = isCheckedGetter(QTest::currentDataTag());
    verifyFailsWhenTheServiceIsAbsent(m_make, m_path, logs ? LogCheck::Unchecked : LogCheck::Nothing);
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

void CompositeTest::checkedGettersLogOneLineWhenTheApplicationVanishes_data()
{
    addOperationRows(m_class.checkedGetters);
}

void CompositeTest::checkedGettersLogOneLineWhenTheApplicationVanishes()
{
    if (m_class.checkedGetters.isEmpty())
        QSKIP("The class has no checked getter.");
    QFETCH(OperationRow, row);
    LogCapture log;
    m_fake->answer(row.wireMember(), ScriptedAnswer::vanish());

    const QVariant value = row.run(*m_proxy).value;

    QCOMPARE(value, row.empty);
    const QDBusError error = m_proxy->lastError();
    QVERIFY(error.isValid());
    QCOMPARE(log.lines(), debugLines({reportLine(row.report, m_fake->service(), m_path, error.message())}));
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
    QTest::addColumn<OperationRow>("row");
    for (const OperationRow &row : m_class.relayed)
        QTest::newRow(tag(row, "relayed").constData()) << row;
}

void CompositeTest::relaysEachSignalOfItsOwnObjectOnly()
{
    QFETCH(OperationRow, row);
    // The Qt signal as SIGNAL() writes it, relaying the bus signal of its name.
    const QByteArray qtSignal = QByteArray::number(QSIGNAL_CODE) + row.operation;
    const QString member = QString::fromLatin1(row.operation).section(QLatin1Char('('), 0, 0);
    verifySignalRelay(*m_proxy, *m_fake, qtSignal.constData(), member, row.arguments);
}

void CompositeTest::metaCastAnswersForTheClassAndItsBasesOnly()
{
    verifyMetaCast(*m_proxy, m_className, m_class.otherClassNames);
}

void CompositeTest::metaObjectDeclaresSignalsThenSlotsOnly()
{
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
    verifyMethodPlacementRow(*m_proxy->metaObject());
}

// ---- what the composite classes' own tests share -------------------------------------

void verifyLeftAsArgument(const QVariant &value, const QString &wire)
{
    QCOMPARE(value.userType(), qMetaTypeId<QDBusArgument>());
    QCOMPARE(wireText(value), wire);
}

ReceivedCall probeCall(FakeMeasApplication &fake, const QString &path, const QList<QVariant> &arguments)
{
    fake.clearCalls();
    QDBusMessage probe = QDBusMessage::createMethodCall(fake.service(), path, FakeMeasApplication::interfaceName,
                                                        QStringLiteral("probe"));
    probe.setArguments(arguments);
    QDBusConnection::sessionBus().call(probe);
    return fake.waitForCalls(1) ? fake.calls().first() : ReceivedCall();
}
