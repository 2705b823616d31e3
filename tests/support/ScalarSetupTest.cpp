#include "ScalarSetupTest.h"

#include "LogCapture.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QMetaMethod>
#include <QtTest/QTest>

QList<LogLine> linesOf(const QStringList &lines, const QString &quotedMessage)
{
    return debugLines(QStringList(lines).replaceInStrings(QStringLiteral("%1"), quotedMessage));
}

ScalarSetupTest::ScalarSetupTest(ScalarSetupClass tested)
    : ProxyTableTest(tested.className, tested.path, tested.make)
    , m_class(std::move(tested))
{
}

ScalarSetupTest::~ScalarSetupTest() = default;

QList<OperationRow> ScalarSetupTest::plainReplies() const
{
    QList<OperationRow> plain;
    for (const OperationRow &row : m_class.replies + m_class.voidReplies) {
        if (row.logLines.isEmpty())
            plain.append(row);
    }
    return plain;
}

void ScalarSetupTest::holdsNoDataOfItsOwn()
{
    QCOMPARE(m_class.size, sizeof(QDBusAbstractInterface));
}

void ScalarSetupTest::sendsEachOperationWithItsWireForm_data()
{
    QTest::addColumn<OperationRow>("row");
    for (const OperationRow &row : m_class.sent + m_class.replies + m_class.voidReplies + m_class.asyncs)
        QTest::newRow(tag(row, "sent")) << row;
}

void ScalarSetupTest::sendsEachOperationWithItsWireForm()
{
    QFETCH(OperationRow, row);
    verifySentAsItsRow(*m_fake, *m_proxy, row);
}

void ScalarSetupTest::mapsEachReply_data()
{
    addMappedReplyColumns();
    // What a checked getter logs is judged below.
    for (const OperationRow &row : m_class.replies)
        addMappedReplyRows(tag(row, ""), row, row.logLines.isEmpty() ? LogCheck::Nothing : LogCheck::Unchecked);
    for (const OperationRow &row : m_class.voidReplies)
        addMappedVoidReplyRows(tag(row, ""), row);
}

void ScalarSetupTest::mapsEachReply()
{
    verifyMappedReply(*m_fake, *m_proxy);
}

void ScalarSetupTest::givesInvalidRepliesWhenTheServiceIsAbsent_data()
{
    QTest::addColumn<OperationRow>("row");
    for (const OperationRow &row : m_class.replies + m_class.voidReplies)
        QTest::newRow(tag(row, "absent service")) << row;
}

void ScalarSetupTest::givesInvalidRepliesWhenTheServiceIsAbsent()
{
    QFETCH(OperationRow, row);

    LogCapture log;
    const std::unique_ptr<QDBusAbstractInterface> absent = makeAbsent();
    const Seen seen = row.run(*absent);
    QVERIFY(!seen.valid);
    QCOMPARE(seen.value, row.empty);
    QCOMPARE(seen.value.userType(), row.empty.userType());
    QVERIFY(seen.error);
    QCOMPARE(seen.error->type(), QDBusError::ServiceUnknown);
    // A checked getter writes its lines with QtDBus's message; any other operation nothing.
    const QString message = seen.error->message();
    QVERIFY(message.contains(absentService()));
    QCOMPARE(log.lines(), linesOf(row.logLines, QLatin1Char('"') + message + QLatin1Char('"')));
}

void ScalarSetupTest::checkedGettersLogTheirLinesOnAnErrorReply_data()
{
    QTest::addColumn<OperationRow>("row");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("quotedMessage");
    for (const OperationRow &row : m_class.replies) {
        if (row.logLines.isEmpty())
            continue;
        QTest::newRow(tag(row, "error reply"))
            << row << QStringLiteral("no value yet") << QStringLiteral("\"no value yet\"");
        QTest::newRow(tag(row, "message with quotes"))
            << row << QStringLiteral("say \"hi\"") << QStringLiteral("\"say \\\"hi\\\"\"");
    }
}

void ScalarSetupTest::checkedGettersLogTheirLinesOnAnErrorReply()
{
    if (!QTest::currentDataTag()) // an empty table runs the function once, without data
        QSKIP("The class has no checked getter.");
    QFETCH(OperationRow, row);
    QFETCH(QString, message);
    QFETCH(QString, quotedMessage);

    LogCapture log;
    m_fake->answer(row.wireMember(), ScriptedAnswer::error(failedErrorName(), message));

    const Seen seen = row.run(*m_proxy);

    QVERIFY(!seen.valid);
    QCOMPARE(seen.value, row.empty);
    QVERIFY(seen.error);
    QCOMPARE(seen.error->name(), failedErrorName());
    QCOMPARE(seen.error->message(), message);
    QCOMPARE(log.lines(), linesOf(row.logLines, quotedMessage));
}

void ScalarSetupTest::checkedGettersLogNothingForAWrongTypedReply_data()
{
    QTest::addColumn<OperationRow>("row");
    for (const OperationRow &row : m_class.replies) {
        if (!row.logLines.isEmpty())
            QTest::newRow(tag(row, "checked")) << row;
    }
}

void ScalarSetupTest::checkedGettersLogNothingForAWrongTypedReply()
{
    if (!QTest::currentDataTag()) // an empty table runs the function once, without data
        QSKIP("The class has no checked getter.");
    QFETCH(OperationRow, row);

    // The lines follow the proxy's lastError(), which a well-formed answer of the wrong
    // type does not set; the reply itself is still invalid.
    LogCapture log;
    m_fake->answer(row.wireMember(), ScriptedAnswer::value(row.wrongType));

    const Seen seen = row.run(*m_proxy);

    QVERIFY(!seen.valid);
    QVERIFY(seen.error);
    QCOMPARE(seen.error->type(), QDBusError::InvalidSignature);
    QCOMPARE(seen.value, row.empty);
    QVERIFY(!m_proxy->lastError().isValid());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void ScalarSetupTest::plainOperationsLogNothingOnAnErrorReply()
{
    const QList<OperationRow> plain = plainReplies();
    LogCapture log;
    for (const OperationRow &row : plain)
        m_fake->answer(row.wireMember(), ScriptedAnswer::error(failedErrorName(), QStringLiteral("refused")));

    for (const OperationRow &row : plain)
        QVERIFY2(!row.run(*m_proxy).valid, row.operation);

    QCOMPARE(m_fake->callCount(), int(plain.size()));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void ScalarSetupTest::plainOperationsLogNothingWhenTheServiceIsAbsent()
{
    LogCapture log;
    const std::unique_ptr<QDBusAbstractInterface> absent = makeAbsent();

    for (const OperationRow &row : plainReplies())
        row.run(*absent);
    for (const OperationRow &row : m_class.asyncs)
        row.run(*absent);

    QCOMPARE(log.lines(), QList<LogLine>());
}

void ScalarSetupTest::asyncOperationsReturnAtOnceAndLeaveLastErrorAlone()
{
    verifyAsyncCallsReturnAtOnce(*m_fake, *m_proxy, m_class.failingCall, m_class.asyncs);
}

void ScalarSetupTest::asyncOperationsToAnAbsentServiceShowNothing()
{
    const std::unique_ptr<QDBusAbstractInterface> absent = makeAbsent();
    verifyAsyncCallsShowNothing(*absent, m_class.asyncs);
}

void ScalarSetupTest::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    QCOMPARE(QByteArray(m_proxy->metaObject()->className()), QByteArray(m_class.className));
    verifyOwnMethods(*m_proxy->metaObject(), m_class.methods, m_class.signalSignatures, m_class.returnTypes);
}

void ScalarSetupTest::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(*m_proxy, m_class.className, m_class.otherClasses);
}

void ScalarSetupTest::invokingSlotsByNameGivesTheDirectResult_data()
{
    QTest::addColumn<OperationRow>("row");
    for (const OperationRow &row : m_class.byName)
        QTest::newRow(tag(row, "by name")) << row;
}

void ScalarSetupTest::invokingSlotsByNameGivesTheDirectResult()
{
    QFETCH(OperationRow, row);

    m_fake->answer(row.wireMember(),
                   row.answered.isValid() ? ScriptedAnswer::value(row.answered) : ScriptedAnswer::reply());

    const Seen seen = row.run(*m_proxy);
    QCOMPARE(seen.value, row.answered);
    QVERIFY(m_fake->waitForCalls(1));
    verifyReceivedCall(m_fake->calls().first(), m_path, row);

    // The direct call of an operation without arguments gives the same.
    for (const OperationRow &direct : m_class.replies) {
        if (row.arguments.isEmpty() && qstrcmp(direct.operation, row.operation) == 0) {
            const Seen called = direct.run(*m_proxy);
            QCOMPARE(called.valid, seen.valid);
            QCOMPARE(called.value, seen.value);
        }
    }
}

void ScalarSetupTest::relaysItsSignalsOfItsOwnObjectOnly_data()
{
    QTest::addColumn<OperationRow>("row");
    for (const OperationRow &row : m_class.signalsRelayed)
        QTest::newRow(tag(row, wireTexts(row.arguments).join(QStringLiteral(", ")).toUtf8().constData())) << row;
}

void ScalarSetupTest::relaysItsSignalsOfItsOwnObjectOnly()
{
    QFETCH(OperationRow, row);

    // The Qt signal as SIGNAL() writes it.
    const QByteArray qtSignal = QByteArray::number(QSIGNAL_CODE) + row.operation;
    verifySignalRelay(*m_proxy, *m_fake, qtSignal.constData(), row.wireMember(), row.arguments);
}
