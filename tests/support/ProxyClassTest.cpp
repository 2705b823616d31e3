#include "ProxyClassTest.h"

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
/// is the .comps row of its name, the slots are the tables' operations and the checked getters
/// are tried with two errors where the test does not list them.
ProxyClass completed(ProxyClass tested)
{
    // Written out, not made by quoted(), which would share a mistake of the library's own quoting.
    if (tested.errors.isEmpty()) {
        tested.errors = {{"error reply", QStringLiteral("no value"), QStringLiteral("\"no value\"")},
                         {"message with quotes", QStringLiteral("say \"hi\" \\ bye"),
                          QStringLiteral("\"say \\\"hi\\\" \\\\ bye\"")}};
    }
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

/// The type of @p value and, for a list, of each element: an element left wrapped shows as QDBusVariant.
QStringList typesOf(const QVariant &value)
{
    QStringList types{QString::fromLatin1(value.typeName())};
    if (value.userType() == QMetaType::QVariantList) {
        for (const QVariant &element : value.toList())
            types.append(QString::fromLatin1(element.typeName()));
    }
    return types;
}

} // namespace

ProxyClassTest::ProxyClassTest(ProxyClass tested)
    : ProxyTableTest(tested.className, tested.path, tested.make)
    , m_class(completed(std::move(tested)))
{
}

ProxyClassTest::~ProxyClassTest() = default;

QList<LogLine> ProxyClassTest::failureLines(const OperationRow &row, const QString &service,
                                            const QString &message) const
{
    const QStringList report{reportLine(row.report, service, m_path, message)};
    const QStringList lines = QStringList(row.logLines).replaceInStrings(QStringLiteral("%1"), quoted(message));
    return debugLines(row.report.isEmpty() ? lines : report + lines);
}

void ProxyClassTest::keepsNoDataBesideTheBaseButItsOwn()
{
    if (m_class.size == 0)
        QSKIP("The test states no size.");
    QCOMPARE(m_class.size, sizeof(QDBusAbstractInterface) + m_class.ownData);
}

void ProxyClassTest::sendsEachOperationWithItsWireForm_data()
{
    addRows(m_class.sent + m_class.replies + m_class.voidReplies + m_class.asyncs + m_class.comps, "sent");
}

void ProxyClassTest::sendsEachOperationWithItsWireForm()
{
    verifySentAsItsRow(*m_fake, *m_proxy);
}

void ProxyClassTest::mapsEachReply_data()
{
    addMappedReplyColumns();
    // What a checked getter logs is judged below.
    for (const OperationRow &row : m_class.replies)
        addMappedReplyRows(tag(row, ""), row, row.logLines.isEmpty() ? LogCheck::Nothing : LogCheck::Unchecked);
    for (const OperationRow &row : m_class.voidReplies)
        addMappedVoidReplyRows(tag(row, ""), row);
    for (const OperationRow &row : m_class.answers) {
        addMappedReplyRow(tag(row, "answered"), row.run, row.wireMember(), ScriptedAnswer::value(row.answered), true,
                          row.seen.isValid() ? row.seen : row.answered);
    }
}

void ProxyClassTest::mapsEachReply()
{
    verifyMappedReply(*m_fake, *m_proxy);
}

void ProxyClassTest::failsWhenTheServiceIsAbsentAndLogsOnlyItsOwnLines_data()
{
    addRows(m_class.checked + m_class.replies + m_class.voidReplies + m_class.comps, "absent service");
}

void ProxyClassTest::failsWhenTheServiceIsAbsentAndLogsOnlyItsOwnLines()
{
    QFETCH(OperationRow, row);

    LogCapture log;
    const std::unique_ptr<QDBusAbstractInterface> absent = makeAbsent();
    const Seen seen = row.run(*absent);

    QCOMPARE(seen.value, row.empty);
    QCOMPARE(seen.value.userType(), row.empty.userType());
    if (row.empty.userType() == QMetaType::QString)
        QVERIFY(seen.value.toString().isNull());
    if (seen.error) { // a plain value carries none, and shows its failure only as the empty value
        QVERIFY(!seen.valid);
        QCOMPARE(seen.error->type(), QDBusError::ServiceUnknown);
        QVERIFY(seen.error->message().contains(absentService()));
    }
    QCOMPARE(absent->lastError().type(), QDBusError::ServiceUnknown);
    const QString message = absent->lastError().message();
    QVERIFY(message.contains(absentService()));
    QCOMPARE(log.lines(), failureLines(row, absentService(), message));
}

void ProxyClassTest::checkedGettersGiveTheAnswerOrEmptyAfterTheirLines_data()
{
    QTest::addColumn<OperationRow>("row");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<QStringList>("lines");

    const auto addRow = [this](const OperationRow &getter, const char *situation, const ScriptedAnswer &answer,
                               const QVariant &result, const QStringList &lines) {
        QTest::newRow(tag(getter, situation).constData()) << getter << answer << result << lines;
    };
    // A getter names its lines in .logLines, or logs the one line .report opens; reportLine()
    // quotes an empty message as "", which gives way to the message quoted here.
    const QString service = FakeMeasApplication::serviceFor(QStringLiteral("fake"));
    const auto fail = [&](const OperationRow &getter, const char *situation, const ScriptedAnswer &answer,
                          const QString &quotedMessage) {
        const QStringList lines = getter.logLines.isEmpty()
            ? QStringList{reportLine(getter.report, service, m_path, QString()).chopped(2) + quotedMessage}
            : QStringList(getter.logLines).replaceInStrings(QStringLiteral("%1"), quotedMessage);
        addRow(getter, situation, answer, getter.empty, lines);
    };
    const auto failOnErrors = [&](const OperationRow &getter) {
        for (const LoggedError &error : m_class.errors)
            fail(getter, error.name, ScriptedAnswer::error(failedErrorName(), error.message), error.quoted);
    };

    for (const OperationRow &getter : m_class.checked) {
        addRow(getter, "answered", ScriptedAnswer::value(getter.answered),
               getter.seen.isValid() ? getter.seen : getter.answered, {});
        failOnErrors(getter);
        fail(getter, "wrong type", ScriptedAnswer::value(getter.wrongType), quoted(getter.typeError));
        // QtDBus names the type it expected in the same words whatever it got.
        const QString expected = getter.typeError.section(QStringLiteral(", expected "), 1);
        fail(getter, "empty return", ScriptedAnswer::reply(),
             quoted(QStringLiteral("Unexpected reply signature: got \"<empty signature>\", expected ") + expected));
    }
    for (const OperationRow &getter : m_class.refused)
        fail(getter, "wrong type", ScriptedAnswer::value(getter.wrongType), quoted(getter.typeError));
    // These follow the proxy's lastError(), which a well-formed answer of the wrong type does not set.
    for (const OperationRow &getter : m_class.replies + m_class.compLines) {
        if (getter.logLines.isEmpty())
            continue;
        failOnErrors(getter);
        if (getter.wrongType.isValid())
            addRow(getter, "wrong type", ScriptedAnswer::value(getter.wrongType), getter.empty, {});
    }
}

void ProxyClassTest::checkedGettersGiveTheAnswerOrEmptyAfterTheirLines()
{
    if (!QTest::currentDataTag()) // an empty table runs the function once, without data
        QSKIP("The class has no checked getter.");
    QFETCH(OperationRow, row);
    QFETCH(ScriptedAnswer, answer);
    QFETCH(QVariant, result);
    QFETCH(QStringList, lines);

    // The rows' lines name the application's default service.
    QCOMPARE(m_fake->service(), FakeMeasApplication::serviceFor(QStringLiteral("fake")));
    LogCapture log;
    m_fake->answer(row.wireMember(), answer);

    const Seen seen = row.run(*m_proxy);

    QCOMPARE(typesOf(seen.value), typesOf(result));
    QCOMPARE(seen.value, result);
    if (result.userType() == QMetaType::QString && result.toString().isNull())
        QVERIFY(seen.value.toString().isNull());
    if (seen.error) { // a reply handed back: only failures have rows here
        QVERIFY(!seen.valid);
        if (answer.kind == ScriptedAnswer::Error) {
            QCOMPARE(seen.error->name(), answer.errorName);
            QCOMPARE(seen.error->message(), answer.errorMessage);
        } else {
            QCOMPARE(seen.error->type(), QDBusError::InvalidSignature);
        }
    }
    QCOMPARE(log.lines(), debugLines(lines));
    // Only an error answer is the call's own failure; a refused answer is the getter's judgement.
    QCOMPARE(m_proxy->lastError().isValid(), answer.kind == ScriptedAnswer::Error);
    verifySingleCall(*m_fake, m_path, row.wireMember(), row.signature, wireTexts(row.arguments));
}

void ProxyClassTest::getTimeStampKeepsTheApplicationsTimeSpec()
{
    if (m_class.timeStamps.isEmpty())
        QSKIP("The class hands on no time stamp.");
    LogCapture log;
    for (const QDateTime &stamp : m_class.timeStamps) {
        m_fake->answer("getTimeStamp", ScriptedAnswer::value(stamp));
        const Seen seen = byName<QDBusReply<QDateTime>>("getTimeStamp")(*m_proxy);
        QVERIFY(seen.valid);
        QCOMPARE(seen.value.toDateTime(), stamp);
        QCOMPARE(seen.value.toDateTime().timeSpec(), stamp.timeSpec());
    }
    QCOMPARE(log.lines(), QList<LogLine>());
}

void ProxyClassTest::plainOperationsLogNothingOnAnErrorReply()
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

void ProxyClassTest::asyncOperationsReturnAtOnceAndLeaveLastErrorAlone()
{
    if (m_class.asyncs.isEmpty())
        QSKIP("The class has no fire-and-forget operation.");
    verifyAsyncCallsReturnAtOnce(*m_fake, *m_proxy, m_class.failingCall, m_class.asyncs);
}

void ProxyClassTest::asyncOperationsToAnAbsentServiceShowNothing_data()
{
    addRows(m_class.asyncs, "absent service");
}

void ProxyClassTest::asyncOperationsToAnAbsentServiceShowNothing()
{
    if (!QTest::currentDataTag())
        QSKIP("The class has no fire-and-forget operation.");
    QFETCH(OperationRow, row);
    verifyAsyncCallsShowNothing(*makeAbsent(), {row});
}

void ProxyClassTest::compGettersReturnTheElementsAsSent_data()
{
    addRows(m_class.comps, "comp");
}

void ProxyClassTest::compGettersReturnTheElementsAsSent()
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

void ProxyClassTest::compGettersGiveAnEmptyListAndReportAnyFailureInOneLine_data()
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

void ProxyClassTest::compGettersGiveAnEmptyListAndReportAnyFailureInOneLine()
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

void ProxyClassTest::aFailedCompCallLeavesTheProxyAsItWas()
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

void ProxyClassTest::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    const QMetaObject &meta = *m_proxy->metaObject();
    QCOMPARE(QByteArray(meta.className()), QByteArray(m_className));
    verifySignalsThenSlots(meta, *m_proxy, m_class.signalSignatures, m_class.slotSignatures);
    if (!m_class.returnTypes.isEmpty())
        QCOMPARE(ownMethodReturnTypes(meta), m_class.returnTypes);
}

void ProxyClassTest::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(*m_proxy, m_className, m_class.otherClasses);
}

void ProxyClassTest::invokingSlotsByNameGivesTheDirectResult_data()
{
    addRows(m_class.byName, "by name");
}

void ProxyClassTest::invokingSlotsByNameGivesTheDirectResult()
{
    verifyInvokedByName(m_class.sent + m_class.replies + m_class.voidReplies + m_class.asyncs + m_class.comps);
}

void ProxyClassTest::namesThatAreNoSlotCannotBeInvoked()
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

void ProxyClassTest::relaysItsSignalsOfItsOwnObjectOnly_data()
{
    QTest::addColumn<OperationRow>("row");
    for (const OperationRow &row : m_class.signalsRelayed)
        QTest::newRow(tag(row, wireTexts(row.arguments).join(QStringLiteral(", ")).toUtf8().constData())) << row;
}

void ProxyClassTest::relaysItsSignalsOfItsOwnObjectOnly()
{
    if (!QTest::currentDataTag())
        QSKIP("The class relays no signal.");
    QFETCH(OperationRow, row);

    // The Qt signal as SIGNAL() writes it.
    const QByteArray qtSignal = QByteArray::number(QSIGNAL_CODE) + row.operation;
    verifySignalRelay(*m_proxy, *m_fake, qtSignal.constData(), row.wireMember(), row.arguments);
}
