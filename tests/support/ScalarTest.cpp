#include "ScalarTest.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusReply>
#include <QtTest/QTest>

namespace {

const QVariant emptyList = QVariant::fromValue(QList<QVariant>());

/// The error that QDBusReply<QList<QVariant>> itself makes of what @p member answers now.
QString listReplyErrorOf(const QString &service, const QString &path, const QString &member)
{
    const QDBusMessage call = QDBusMessage::createMethodCall(service, path, FakeMeasApplication::interfaceName, member);
    const QDBusReply<QList<QVariant>> reply = QDBusConnection::sessionBus().call(call, QDBus::Block);
    return reply.error().message();
}

/// The tables completed: a Comp getter gives an empty list on any failure, one of .compLines
/// is the .comps row of its name, and the slots are the tables' operations where the test does
/// not list them.
ScalarClass completed(ScalarClass tested)
{
    for (OperationRow &row : tested.comps)
        row.empty = emptyList;
    for (OperationRow &row : tested.compLines) {
        row.run = rowNamed(tested.comps, row.operation).run;
        row.empty = emptyList;
    }
    if (tested.slotSignatures.isEmpty()) {
        for (const OperationRow &row : tested.replies + tested.voidReplies + tested.comps)
            tested.slotSignatures.append(QLatin1String(row.operation) + QStringLiteral("()"));
    }
    return tested;
}

} // namespace

QList<LogLine> linesOf(const QStringList &lines, const QString &quotedMessage)
{
    return debugLines(QStringList(lines).replaceInStrings(QStringLiteral("%1"), quotedMessage));
}

ScalarTest::ScalarTest(ScalarClass tested)
    : ProxyTableTest(tested.className, tested.path, tested.make)
    , m_class(completed(std::move(tested)))
{
}

ScalarTest::~ScalarTest() = default;

QList<LogLine> ScalarTest::failureLines(const OperationRow &row, const QString &service, const QString &message) const
{
    const QStringList report{reportLine(row.report, service, m_path, message)};
    return debugLines(row.report.isEmpty() ? QStringList() : report) + linesOf(row.logLines, quoted(message));
}

void ScalarTest::holdsNoDataOfItsOwn()
{
    if (m_class.size == 0)
        QSKIP("The class keeps data of its own.");
    QCOMPARE(m_class.size, sizeof(QDBusAbstractInterface));
}

void ScalarTest::sendsEachOperationWithItsWireForm_data()
{
    addRows(m_class.sent + m_class.replies + m_class.voidReplies + m_class.asyncs + m_class.comps, "sent");
}

void ScalarTest::sendsEachOperationWithItsWireForm()
{
    verifySentAsItsRow(*m_fake, *m_proxy);
}

void ScalarTest::mapsEachReply_data()
{
    addMappedReplyColumns();
    // What a checked getter logs is judged below.
    for (const OperationRow &row : m_class.replies)
        addMappedReplyRows(tag(row, ""), row, row.logLines.isEmpty() ? LogCheck::Nothing : LogCheck::Unchecked);
    for (const OperationRow &row : m_class.voidReplies)
        addMappedVoidReplyRows(tag(row, ""), row);
}

void ScalarTest::mapsEachReply()
{
    verifyMappedReply(*m_fake, *m_proxy);
}

void ScalarTest::failsWhenTheServiceIsAbsentAndLogsOnlyItsOwnLines_data()
{
    addRows(m_class.replies + m_class.voidReplies + m_class.comps, "absent service");
}

void ScalarTest::failsWhenTheServiceIsAbsentAndLogsOnlyItsOwnLines()
{
    QFETCH(OperationRow, row);

    LogCapture log;
    const std::unique_ptr<QDBusAbstractInterface> absent = makeAbsent();
    const Seen seen = row.run(*absent);

    QVERIFY(!seen.valid);
    QCOMPARE(seen.value, row.empty);
    QCOMPARE(seen.value.userType(), row.empty.userType());
    if (row.empty.userType() == QMetaType::QString)
        QVERIFY(seen.value.toString().isNull());
    if (seen.error) // a plain value carries none
        QCOMPARE(seen.error->type(), QDBusError::ServiceUnknown);
    QCOMPARE(absent->lastError().type(), QDBusError::ServiceUnknown);
    const QString message = absent->lastError().message();
    QVERIFY(message.contains(absentService()));
    QCOMPARE(log.lines(), failureLines(row, absentService(), message));
}

void ScalarTest::checkedGettersLogTheirLinesOnAnErrorReply_data()
{
    QTest::addColumn<OperationRow>("row");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("quotedMessage");
    for (const OperationRow &row : m_class.replies + m_class.compLines) {
        if (row.logLines.isEmpty())
            continue;
        QTest::newRow(tag(row, "error reply")) << row << QStringLiteral("no value") << QStringLiteral("\"no value\"");
        // Written out, not made by quoted(), which would share a mistake of the library's own quoting.
        QTest::newRow(tag(row, "message with quotes"))
            << row << QStringLiteral("say \"hi\" \\ bye") << QStringLiteral("\"say \\\"hi\\\" \\\\ bye\"");
    }
}

void ScalarTest::checkedGettersLogTheirLinesOnAnErrorReply()
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
    if (seen.error) {
        QCOMPARE(seen.error->name(), failedErrorName());
        QCOMPARE(seen.error->message(), message);
    }
    verifySingleCall(*m_fake, m_path, row.wireMember(), row.signature, wireTexts(row.arguments));
    QCOMPARE(log.lines(), linesOf(row.logLines, quotedMessage));
}

void ScalarTest::checkedGettersLogNothingForAWrongTypedReply_data()
{
    QTest::addColumn<OperationRow>("row");
    for (const OperationRow &row : m_class.replies) {
        if (!row.logLines.isEmpty())
            QTest::newRow(tag(row, "wrong type")) << row;
    }
}

void ScalarTest::checkedGettersLogNothingForAWrongTypedReply()
{
    if (!QTest::currentDataTag())
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

void ScalarTest::plainOperationsLogNothingOnAnErrorReply()
{
    QList<OperationRow> plain;
    for (const OperationRow &row : m_class.replies + m_class.voidReplies) {
        if (row.logLines.isEmpty())
            plain.append(row);
    }
    LogCapture log;
    for (const OperationRow &row : plain)
        m_fake->answer(row.wireMember(), ScriptedAnswer::error(failedErrorName(), QStringLiteral("refused")));

    for (const OperationRow &row : plain)
        QVERIFY2(!row.run(*m_proxy).valid, row.operation);

    QCOMPARE(m_fake->callCount(), int(plain.size()));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void ScalarTest::asyncOperationsReturnAtOnceAndLeaveLastErrorAlone()
{
    if (m_class.asyncs.isEmpty())
        QSKIP("The class has no fire-and-forget operation.");
    verifyAsyncCallsReturnAtOnce(*m_fake, *m_proxy, m_class.failingCall, m_class.asyncs);
}

void ScalarTest::asyncOperationsToAnAbsentServiceShowNothing_data()
{
    addRows(m_class.asyncs, "absent service");
}

void ScalarTest::asyncOperationsToAnAbsentServiceShowNothing()
{
    if (!QTest::currentDataTag())
        QSKIP("The class has no fire-and-forget operation.");
    QFETCH(OperationRow, row);
    verifyAsyncCallsShowNothing(*makeAbsent(), {row});
}

void ScalarTest::compGettersReturnTheElementsAsSent_data()
{
    addRows(m_class.comps, "comp");
}

void ScalarTest::compGettersReturnTheElementsAsSent()
{
    if (!QTest::currentDataTag())
        QSKIP("The class has no Comp getter.");
    QFETCH(OperationRow, row);

    const QList<QVariant> sent{3, QStringLiteral("3 counts"), -1.5, true, 1};
    const QList<int> types{QMetaType::Int, QMetaType::QString, QMetaType::Double, QMetaType::Bool, QMetaType::Int};
    LogCapture log;
    m_fake->answer(row.wireMember(), ScriptedAnswer::value(sent));

    const QList<QVariant> received = row.run(*m_proxy).value.toList();

    QCOMPARE(received, sent);
    // Each element arrives unwrapped from its D-Bus variant, with its own type.
    QCOMPARE(received.size(), types.size());
    for (int i = 0; i < types.size(); ++i) {
        QCOMPARE(received.at(i).userType(), types.at(i));
        QVERIFY(received.at(i).userType() != qMetaTypeId<QDBusVariant>());
    }
    verifySingleCall(*m_fake, m_path, row.wireMember(), "", {});
    QCOMPARE(log.lines(), QList<LogLine>());
}

void ScalarTest::compGettersGiveAnEmptyListAndReportAnyFailureInOneLine_data()
{
    QTest::addColumn<OperationRow>("row");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<QString>("messageOpening");

    const QString wrongSignature = QStringLiteral("Unexpected reply signature");
    for (const OperationRow &comp : m_class.comps) {
        QTest::newRow(tag(comp, "empty list")) << comp << ScriptedAnswer::value(QList<QVariant>()) << QString();
        QTest::newRow(tag(comp, "error reply"))
            << comp << ScriptedAnswer::error(failedErrorName(), QStringLiteral("no reading"))
            << QStringLiteral("no reading");
        QTest::newRow(tag(comp, "integer array"))
            << comp << ScriptedAnswer::value(QVariant::fromValue(QList<int>{1, 2})) << wrongSignature;
        QTest::newRow(tag(comp, "string")) << comp << ScriptedAnswer::value(QStringLiteral("1 2")) << wrongSignature;
        QTest::newRow(tag(comp, "string list"))
            << comp << ScriptedAnswer::value(QStringList{"1", "2"}) << wrongSignature;
        QTest::newRow(tag(comp, "nothing")) << comp << ScriptedAnswer::reply() << wrongSignature;
    }
}

void ScalarTest::compGettersGiveAnEmptyListAndReportAnyFailureInOneLine()
{
    if (!QTest::currentDataTag())
        QSKIP("The class has no Comp getter.");
    QFETCH(OperationRow, row);
    QFETCH(ScriptedAnswer, answer);
    QFETCH(QString, messageOpening);

    LogCapture log;
    m_fake->answer(row.wireMember(), answer);

    QCOMPARE(row.run(*m_proxy).value, emptyList);

    verifySingleCall(*m_fake, m_path, row.wireMember(), "", {});
    // The line quotes the message QDBusReply itself makes of the answer; an empty list is no failure.
    const QString message = listReplyErrorOf(m_fake->service(), m_path, row.wireMember());
    QVERIFY2(message.startsWith(messageOpening), qPrintable(message));
    QCOMPARE(message.isEmpty(), messageOpening.isEmpty());
    QCOMPARE(log.lines(), message.isEmpty() ? QList<LogLine>() : failureLines(row, m_fake->service(), message));
}

void ScalarTest::aFailedCompCallLeavesTheProxyAsItWas()
{
    if (m_class.comps.isEmpty())
        QSKIP("The class has no Comp getter.");
    const OperationRow getValueComp = rowNamed(m_class.comps, "getValueComp");
    const OperationRow getValue = rowNamed(m_class.replies, "getValue");
    QVERIFY(getValueComp.run && getValue.run);
    // One reading: the value and the text the table's getters are answered with.
    const QList<QVariant> composite{getValue.answered, rowNamed(m_class.replies, "getString").answered};

    LogCapture log;
    m_fake->answer("getValueComp", ScriptedAnswer::error(failedErrorName(), QStringLiteral("not yet")));
    m_fake->answer("getValue", ScriptedAnswer::error(failedErrorName(), QStringLiteral("not yet")));
    QCOMPARE(getValueComp.run(*m_proxy).value, emptyList);
    QVERIFY(!getValue.run(*m_proxy).valid);

    m_fake->answer("getValueComp", ScriptedAnswer::value(composite));
    m_fake->answer("getValue", ScriptedAnswer::value(getValue.answered));
    QCOMPARE(getValueComp.run(*m_proxy).value, QVariant::fromValue(composite));
    QCOMPARE(getValue.run(*m_proxy).value, getValue.answered);

    // The calls after the failure go out as the ones before it did.
    QVERIFY(m_fake->waitForCalls(4));
    const QList<ReceivedCall> calls = m_fake->calls();
    QCOMPARE(calls.size(), 4);
    for (int i = 0; i < calls.size(); ++i)
        verifyReceivedCall(calls.at(i), m_path, i % 2 == 0 ? getValueComp : getValue);
    QCOMPARE(log.lines().size(), 1);
}

void ScalarTest::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    const QMetaObject &meta = *m_proxy->metaObject();
    QCOMPARE(QByteArray(meta.className()), QByteArray(m_className));
    verifySignalsThenSlots(meta, *m_proxy, m_class.signalSignatures, m_class.slotSignatures);
    if (!m_class.returnTypes.isEmpty())
        QCOMPARE(ownMethodReturnTypes(meta), m_class.returnTypes);
}

void ScalarTest::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(*m_proxy, m_className, m_class.otherClasses);
}

void ScalarTest::invokingSlotsByNameGivesTheDirectResult_data()
{
    addRows(m_class.byName, "by name");
}

void ScalarTest::invokingSlotsByNameGivesTheDirectResult()
{
    verifyInvokedByName(m_class.sent + m_class.replies + m_class.voidReplies + m_class.asyncs + m_class.comps);
}

void ScalarTest::namesThatAreNoSlotCannotBeInvoked()
{
    if (m_class.noSuchSlots.isEmpty())
        QSKIP("The test names no missing slot.");
    const QMetaObject &meta = *m_proxy->metaObject();

    LogCapture log;
    for (const char *name : m_class.noSuchSlots) {
        QCOMPARE(meta.indexOfMethod((QByteArray(name) + "()").constData()), -1);
        QVERIFY2(!QMetaObject::invokeMethod(m_proxy.get(), name, Qt::DirectConnection), name);
    }
    QList<LogLine> debug;
    for (const LogLine &line : log.lines()) {
        if (line.level == QtDebugMsg)
            debug.append(line);
    }
    QCOMPARE(debug, QList<LogLine>());

    // Nothing went out: the next call is the first the application sees.
    m_fake->answer("getValue", ScriptedAnswer::reply());
    QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection);
    verifySingleCall(*m_fake, m_path, "getValue", "", {});
}

void ScalarTest::relaysItsSignalsOfItsOwnObjectOnly_data()
{
    QTest::addColumn<OperationRow>("row");
    for (const OperationRow &row : m_class.signalsRelayed)
        QTest::newRow(tag(row, wireTexts(row.arguments).join(QStringLiteral(", ")).toUtf8().constData())) << row;
}

void ScalarTest::relaysItsSignalsOfItsOwnObjectOnly()
{
    if (!QTest::currentDataTag())
        QSKIP("The class relays no signal.");
    QFETCH(OperationRow, row);

    // The Qt signal as SIGNAL() writes it.
    const QByteArray qtSignal = QByteArray::number(QSIGNAL_CODE) + row.operation;
    verifySignalRelay(*m_proxy, *m_fake, qtSignal.constData(), row.wireMember(), row.arguments);
}
