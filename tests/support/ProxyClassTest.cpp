#include "ProxyClassTest.h"

#include "LogCapture.h"

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

/// The tables completed: the checked getters are tried with two errors where the test names
/// none, a Comp getter gives an empty list on any failure, and the slots are the tables'
/// operations where the test names none.
ProxyClassTable completed(ProxyClassTable tested)
{
    // Written out, not made by quoted(), which would share a mistake of the library's own quoting.
    if (tested.errors.isEmpty()) {
        tested.errors = {{"error reply", QStringLiteral("no value"), QStringLiteral("\"no value\"")},
                         {"message with quotes", QStringLiteral("say \"hi\" \\ bye"),
                          QStringLiteral("\"say \\\"hi\\\" \\\\ bye\"")}};
    }
    for (OperationRow &row : tested.comps)
        row.reply.empty = emptyList;
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

QStringList argumentTypeNames(const QList<QVariant> &arguments)
{
    QStringList names;
    for (const QVariant &argument : arguments)
        names.append(QString::fromLatin1(argument.typeName()));
    return names;
}

/// What the caller of the row's operation sees of a successful answer.
QVariant seenOfAnswer(const OperationRow &row)
{
    return row.reply.seen.isValid() ? row.reply.seen : row.reply.answered;
}

/// Whether the row's operation logs a failure of any kind (else it logs only when lastError() is set, if at all).
bool judgesItsReply(const OperationRow &row)
{
    return !row.log.report.isEmpty();
}

bool logsFailures(const OperationRow &row)
{
    return judgesItsReply(row) || !row.log.lines.isEmpty();
}

/// "ReturnType signature" or a bare signature, split.
QPair<QString, QString> returnTypeAndSignature(const QString &method)
{
    const int blank = int(method.indexOf(QLatin1Char(' ')));
    return blank < 0 ? qMakePair(QString(), method) : qMakePair(method.left(blank), method.mid(blank + 1));
}

QStringList signaturesOf(const QStringList &methods)
{
    QStringList signatures;
    for (const QString &method : methods)
        signatures.append(returnTypeAndSignature(method).second);
    return signatures;
}

// ---- what a reply is mapped to ----------------------------------------------------------

/// Whether a check also requires that nothing was logged.
enum class LogCheck { Unchecked, Nothing };

void addMappedReplyColumns()
{
    QTest::addColumn<OperationRow>("row");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<LogCheck>("log");
}

void addMappedReplyRow(const QByteArray &tag, const OperationRow &row, const ScriptedAnswer &answer, bool valid,
                       const QVariant &value, LogCheck log = LogCheck::Nothing)
{
    QTest::newRow(tag.constData()) << row << answer << valid << value << log;
}

const ScriptedAnswer refusal = ScriptedAnswer::error(failedErrorName(), QStringLiteral("refused"));

} // namespace

Q_DECLARE_METATYPE(LogCheck)

// ---- shared by the checks and the classes' own tests -------------------------------------

void verifyReceivedCall(const ReceivedCall &call, const QString &path, const OperationRow &row)
{
    QVERIFY2(!row.call.member.isEmpty(), row.operation);
    QCOMPARE(call.path, path);
    QCOMPARE(call.interface, FakeMeasApplication::interfaceName);
    QCOMPARE(call.member, row.call.member);
    QCOMPARE(call.signature, row.call.signature);
    if (!row.call.wireArguments.isEmpty()) {
        QCOMPARE(wireTexts(call.arguments), row.call.wireArguments);
        return;
    }
    QCOMPARE(wireTexts(call.arguments), wireTexts(row.call.arguments));
    // The Qt types as they arrive: a D-Bus variant stays a QDBusVariant.
    QCOMPARE(argumentTypeNames(call.arguments), argumentTypeNames(row.call.arguments));
}

void verifySingleCall(const FakeMeasApplication &fake, const QString &path, const OperationRow &row)
{
    QVERIFY(fake.waitForCalls(1));
    const QList<ReceivedCall> calls = fake.calls();
    QCOMPARE(calls.size(), 1);
    verifyReceivedCall(calls.first(), path, row);
}

void verifySentAsItsRow(FakeMeasApplication &fake, QDBusAbstractInterface &proxy, const OperationRow &row)
{
    // Getters that log on an empty answer are judged elsewhere.
    LogCapture log;
    fake.answer(row.call.member, ScriptedAnswer::reply());
    row.run(proxy);
    verifySingleCall(fake, proxy.path(), row);
}

// ---- the fixture ----------------------------------------------------------------------------

ProxyClassTest::ProxyClassTest(ProxyClassTable tested)
    : m_class(completed(std::move(tested)))
    , m_path(m_class.path)
{
}

ProxyClassTest::~ProxyClassTest() = default;

void ProxyClassTest::init()
{
    m_fake.reset(new FakeMeasApplication);
    m_proxy.reset(m_class.make(m_fake->service(), m_path, nullptr));
}

void ProxyClassTest::cleanup()
{
    // The proxy goes before the application it talks to.
    m_proxy.reset();
    m_fake.reset();
}

std::unique_ptr<QDBusAbstractInterface> ProxyClassTest::makeAbsent() const
{
    return std::unique_ptr<QDBusAbstractInterface>(m_class.make(absentService(), m_path, nullptr));
}

QByteArray ProxyClassTest::tag(const OperationRow &row, const char *situation) const
{
    return QByteArray(m_class.className) + '/' + row.operation + '/' + situation;
}

void ProxyClassTest::addRows(const QList<OperationRow> &rows, const char *situation) const
{
    QTest::addColumn<OperationRow>("row");
    for (const OperationRow &row : rows)
        QTest::newRow(tag(row, situation).constData()) << row;
}

QList<OperationRow> ProxyClassTest::sendingRows() const
{
    QList<OperationRow> rows = m_class.sent + m_class.replies + m_class.voidReplies + m_class.asyncs + m_class.comps;
    if (m_class.setToDefault.run)
        rows.append(m_class.setToDefault);
    return rows;
}

QList<LogLine> ProxyClassTest::failureLines(const OperationRow &row, const QString &service,
                                            const QString &message) const
{
    if (judgesItsReply(row))
        return debugLines({reportLine(row.log.report, service, m_path, message)});
    return debugLines(QStringList(row.log.lines).replaceInStrings(QStringLiteral("%1"), quoted(message)));
}

// ---- construction ---------------------------------------------------------------------------

void ProxyClassTest::constructionPassesItsArgumentsOnAndSendsNothing()
{
    verifyConstructionContract(m_class.make, *m_fake, m_path);
}

void ProxyClassTest::constructionForAnAbsentServiceKeepsItsArgumentsAndLogsNothing()
{
    LogCapture log;
    const std::unique_ptr<QDBusAbstractInterface> absent = makeAbsent();

    QCOMPARE(absent->service(), absentService());
    QCOMPARE(absent->path(), m_path);
    QCOMPARE(log.lines(), QList<LogLine>());
    QVERIFY(m_proxy->isValid());
}

void ProxyClassTest::keepsNoDataBesideTheBaseButItsOwn()
{
    if (m_class.size == 0)
        QSKIP("The test states no size.");
    QCOMPARE(m_class.size, sizeof(QDBusAbstractInterface) + m_class.ownData);
}

// ---- what goes out and what comes back ------------------------------------------------------

void ProxyClassTest::sendsEachOperationWithItsWireForm_data()
{
    addRows(sendingRows(), "sent");
}

void ProxyClassTest::sendsEachOperationWithItsWireForm()
{
    if (!QTest::currentDataTag()) // an empty table runs the function once, without data
        QSKIP("The class has no operation of that kind.");
    QFETCH(OperationRow, row);
    verifySentAsItsRow(*m_fake, *m_proxy, row);
}

void ProxyClassTest::mapsEachReply_data()
{
    addMappedReplyColumns();
    // What a checked getter logs is judged by the checks of checked getters; one following
    // lastError() logs only on an error reply.
    for (const OperationRow &row : m_class.replies) {
        const LogCheck onError = logsFailures(row) ? LogCheck::Unchecked : LogCheck::Nothing;
        const LogCheck onOtherFailures = judgesItsReply(row) ? LogCheck::Unchecked : LogCheck::Nothing;
        addMappedReplyRow(tag(row, "answered"), row, ScriptedAnswer::value(row.reply.answered), true,
                          seenOfAnswer(row));
        addMappedReplyRow(tag(row, "error reply"), row, refusal, false, row.reply.empty, onError);
        addMappedReplyRow(tag(row, "wrong type"), row, ScriptedAnswer::value(row.reply.wrongType), false,
                          row.reply.empty, onOtherFailures);
        addMappedReplyRow(tag(row, "empty return"), row, ScriptedAnswer::reply(), false, row.reply.empty,
                          onOtherFailures);
    }
    for (const OperationRow &row : m_class.voidReplies) {
        addMappedReplyRow(tag(row, "answered"), row, ScriptedAnswer::reply(), true, QVariant());
        addMappedReplyRow(tag(row, "answered with a value"), row, ScriptedAnswer::value(row.reply.answered), true,
                          QVariant());
        addMappedReplyRow(tag(row, "error reply"), row, refusal, false, QVariant());
    }
    for (const OperationRow &row : m_class.answers)
        addMappedReplyRow(tag(row, "answered"), row, ScriptedAnswer::value(row.reply.answered), true,
                          seenOfAnswer(row));
}

void ProxyClassTest::mapsEachReply()
{
    if (!QTest::currentDataTag())
        QSKIP("The class has no operation of that kind.");
    QFETCH(OperationRow, row);
    QFETCH(ScriptedAnswer, answer);
    QFETCH(bool, valid);
    QFETCH(QVariant, value);
    QFETCH(LogCheck, log);

    LogCapture capture;
    m_fake->answer(row.call.member, answer);
    const Seen seen = row.run(*m_proxy);
    if (seen.error) // a plain value shows a failure only as the empty value
        QCOMPARE(seen.valid, valid);
    QCOMPARE(seen.value.userType(), value.userType());
    QCOMPARE(seen.value, value);
    if (log == LogCheck::Nothing)
        QCOMPARE(capture.lines(), QList<LogLine>());
}

void ProxyClassTest::failsWhenTheServiceIsAbsentAndLogsOnlyItsOwnLines_data()
{
    QList<OperationRow> rows = m_class.replies + m_class.voidReplies + m_class.comps;
    if (m_class.setToDefault.run)
        rows.append(m_class.setToDefault);
    addRows(rows, "absent service");
}

void ProxyClassTest::failsWhenTheServiceIsAbsentAndLogsOnlyItsOwnLines()
{
    if (!QTest::currentDataTag())
        QSKIP("The class has no operation of that kind.");
    QFETCH(OperationRow, row);

    LogCapture log;
    const std::unique_ptr<QDBusAbstractInterface> absent = makeAbsent();
    const Seen seen = row.run(*absent);

    QCOMPARE(seen.value, row.reply.empty);
    QCOMPARE(seen.value.userType(), row.reply.empty.userType());
    if (row.reply.empty.userType() == QMetaType::QString)
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

void ProxyClassTest::plainOperationsLogNothingOnAnErrorReply()
{
    QList<OperationRow> plain;
    for (const OperationRow &row : m_class.replies + m_class.voidReplies) {
        if (!logsFailures(row))
            plain.append(row);
    }
    LogCapture log;
    for (const OperationRow &row : plain)
        m_fake->answer(row.call.member, ScriptedAnswer::error(failedErrorName(), QStringLiteral("refused")));

    for (const OperationRow &row : plain)
        QVERIFY2(!row.run(*m_proxy).valid, row.operation);

    QCOMPARE(m_fake->callCount(), int(plain.size()));
    QCOMPARE(log.lines(), QList<LogLine>());
}

// ---- checked getters, which log their failures ---------------------------------------------

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
    // A getter names its lines written out, or logs the one line its report opens;
    // reportLine() quotes an empty message as "", which gives way to the message quoted here.
    const QString service = FakeMeasApplication::serviceFor(QStringLiteral("fake"));
    const auto fail = [&](const OperationRow &getter, const char *situation, const ScriptedAnswer &answer,
                          const QString &quotedMessage) {
        const QStringList lines = getter.log.lines.isEmpty()
            ? QStringList{reportLine(getter.log.report, service, m_path, QString()).chopped(2) + quotedMessage}
            : QStringList(getter.log.lines).replaceInStrings(QStringLiteral("%1"), quotedMessage);
        addRow(getter, situation, answer, getter.reply.empty, lines);
    };
    const auto failOnErrors = [&](const OperationRow &getter) {
        for (const LoggedError &error : m_class.errors)
            fail(getter, error.name, ScriptedAnswer::error(failedErrorName(), error.message), error.quoted);
    };
    const auto refuse = [&](const OperationRow &getter) {
        QVERIFY2(!getter.log.typeError.isEmpty(), getter.operation);
        fail(getter, "wrong type", ScriptedAnswer::value(getter.reply.wrongType), quoted(getter.log.typeError));
    };

    for (const OperationRow &getter : m_class.replies) {
        if (judgesItsReply(getter)) {
            addRow(getter, "answered", ScriptedAnswer::value(getter.reply.answered), seenOfAnswer(getter), {});
            failOnErrors(getter);
            refuse(getter);
            // QtDBus names the type it expected in the same words whatever it got.
            const QString expected = getter.log.typeError.section(QStringLiteral(", expected "), 1);
            fail(getter, "empty return", ScriptedAnswer::reply(),
                 quoted(QStringLiteral("Unexpected reply signature: got \"<empty signature>\", expected ") + expected));
        } else if (logsFailures(getter)) {
            // These follow the proxy's lastError(), which a well-formed answer of the wrong type does not set.
            failOnErrors(getter);
            addRow(getter, "wrong type", ScriptedAnswer::value(getter.reply.wrongType), getter.reply.empty, {});
        }
    }
    for (const OperationRow &getter : m_class.refused)
        refuse(getter);
    for (const OperationRow &comp : m_class.comps) {
        if (!comp.log.lines.isEmpty())
            failOnErrors(comp);
    }
}

void ProxyClassTest::checkedGettersGiveTheAnswerOrEmptyAfterTheirLines()
{
    if (!QTest::currentDataTag())
        QSKIP("The class has no checked getter.");
    QFETCH(OperationRow, row);
    QFETCH(ScriptedAnswer, answer);
    QFETCH(QVariant, result);
    QFETCH(QStringList, lines);

    // The rows' lines name the application's default service.
    QCOMPARE(m_fake->service(), FakeMeasApplication::serviceFor(QStringLiteral("fake")));
    LogCapture log;
    m_fake->answer(row.call.member, answer);

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
    verifySingleCall(*m_fake, m_path, row);
}

void ProxyClassTest::checkedGettersLogTheirLinesWhenTheApplicationVanishes_data()
{
    QList<OperationRow> getters;
    for (const OperationRow &row : m_class.replies) {
        if (logsFailures(row))
            getters.append(row);
    }
    addRows(getters, "application vanishes");
}

void ProxyClassTest::checkedGettersLogTheirLinesWhenTheApplicationVanishes()
{
    if (!QTest::currentDataTag())
        QSKIP("The class has no checked getter.");
    QFETCH(OperationRow, row);
    LogCapture log;
    m_fake->answer(row.call.member, ScriptedAnswer::vanish());

    const QVariant value = row.run(*m_proxy).value;

    QCOMPARE(value, row.reply.empty);
    const QDBusError error = m_proxy->lastError();
    QVERIFY(error.isValid());
    QCOMPARE(log.lines(), failureLines(row, m_fake->service(), error.message()));
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

// ---- setToDefault() and the fire-and-forget operations --------------------------------------

void ProxyClassTest::setToDefaultWaitsForTheAnswerAndDropsIt()
{
    const OperationRow &row = m_class.setToDefault;
    if (!row.run)
        QSKIP("The class has no setToDefault() that returns nothing.");
    LogCapture log;
    m_fake->answer(row.call.member, ScriptedAnswer::error(failedErrorName(), QStringLiteral("reset refused")));

    row.run(*m_proxy);

    // Nothing was run in between: the call came back only once the application had answered.
    QCOMPARE(m_fake->callCount(), 1);
    verifySingleCall(*m_fake, m_path, row);
    QCOMPARE(m_proxy->lastError().name(), failedErrorName());
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("reset refused"));
    QCOMPARE(log.lines(), QList<LogLine>());

    // A good answer after a failed one clears the proxy's error again.
    m_fake->answer(row.call.member, ScriptedAnswer::reply());
    row.run(*m_proxy);
    QCOMPARE(m_fake->callCount(), 2);
    QVERIFY(!m_proxy->lastError().isValid());
}

void ProxyClassTest::asyncOperationsReturnAtOnceAndLeaveLastErrorAlone()
{
    if (m_class.asyncs.isEmpty())
        QSKIP("The class has no fire-and-forget operation.");
    // The application never answers them: calls that waited would not come back in time for
    // the fake to see them all.
    const OperationRow &failingCall = m_class.failingCall;
    m_fake->answer(failingCall.call.member,
                   ScriptedAnswer::error(failedErrorName(), QStringLiteral("earlier failure")));
    for (const OperationRow &row : m_class.asyncs)
        m_fake->answer(row.call.member, ScriptedAnswer::silence());
    {
        // What the refused call logs is judged elsewhere.
        LogCapture earlierLog;
        failingCall.run(*m_proxy);
    }
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));

    LogCapture log;
    for (const OperationRow &row : m_class.asyncs)
        row.run(*m_proxy);

    const int expectedCalls = 1 + int(m_class.asyncs.size());
    QVERIFY(m_fake->waitForCalls(expectedCalls));
    const QList<ReceivedCall> calls = m_fake->calls();
    QCOMPARE(calls.size(), expectedCalls);
    verifyReceivedCall(calls.at(0), m_path, failingCall);
    for (int i = 0; i < m_class.asyncs.size() && !QTest::currentTestFailed(); ++i)
        verifyReceivedCall(calls.at(i + 1), m_path, m_class.asyncs.at(i));
    if (QTest::currentTestFailed())
        return;
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));
    QCOMPARE(log.lines(), QList<LogLine>());
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
    LogCapture log;
    const std::unique_ptr<QDBusAbstractInterface> absent = makeAbsent();
    const QDBusError before = absent->lastError();

    row.run(*absent);

    QCOMPARE(absent->lastError().type(), before.type());
    QCOMPARE(absent->lastError().message(), before.message());
    QCOMPARE(log.lines(), QList<LogLine>());
}

// ---- the Comp getters -----------------------------------------------------------------------

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
    m_fake->answer(row.call.member, ScriptedAnswer::value(sent));

    const QList<QVariant> received = row.run(*m_proxy).value.toList();

    QCOMPARE(received, sent);
    // Each element arrives unwrapped from its D-Bus variant, with its own type.
    QCOMPARE(received.size(), types.size());
    for (int i = 0; i < types.size(); ++i) {
        QCOMPARE(received.at(i).userType(), types.at(i));
        QVERIFY(received.at(i).userType() != qMetaTypeId<QDBusVariant>());
    }
    verifySingleCall(*m_fake, m_path, row);
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
    m_fake->answer(row.call.member, answer);

    QCOMPARE(row.run(*m_proxy).value, emptyList);

    verifySingleCall(*m_fake, m_path, row);
    // The line quotes the message QDBusReply itself makes of the answer; an empty list is no failure.
    const QString message = listReplyErrorOf(m_fake->service(), m_path, row.call.member);
    QVERIFY2(message.startsWith(messageOpening), qPrintable(message));
    QCOMPARE(message.isEmpty(), messageOpening.isEmpty());
    QCOMPARE(log.lines(), message.isEmpty() ? QList<LogLine>() : failureLines(row, m_fake->service(), message));
}

void ProxyClassTest::aFailedCompCallLeavesTheProxyAsItWas()
{
    if (m_class.comps.isEmpty())
        QSKIP("The class has no Comp getter.");
    const OperationRow &comp = m_class.comps.first();
    const OperationRow &reading = m_class.reading;
    QVERIFY2(reading.run, "the table names no reading");
    const QList<QVariant> composite{reading.reply.answered, reading.reply.answered.toString()};
    const ScriptedAnswer notYet = ScriptedAnswer::error(failedErrorName(), QStringLiteral("not yet"));

    LogCapture log;
    m_fake->answer(comp.call.member, notYet);
    m_fake->answer(reading.call.member, notYet);
    QCOMPARE(comp.run(*m_proxy).value, emptyList);
    QVERIFY(!reading.run(*m_proxy).valid);

    m_fake->answer(comp.call.member, ScriptedAnswer::value(composite));
    m_fake->answer(reading.call.member, ScriptedAnswer::value(reading.reply.answered));
    QCOMPARE(comp.run(*m_proxy).value, QVariant::fromValue(composite));
    QCOMPARE(reading.run(*m_proxy).value, reading.reply.answered);

    // The calls after the failure go out as the ones before it did.
    QVERIFY(m_fake->waitForCalls(4));
    const QList<ReceivedCall> calls = m_fake->calls();
    QCOMPARE(calls.size(), 4);
    for (int i = 0; i < calls.size(); ++i)
        verifyReceivedCall(calls.at(i), m_path, i % 2 == 0 ? comp : reading);
    QCOMPARE(log.lines().size(), 1);
}

// ---- the meta-object, slots invoked by name and signals --------------------------------------

void ProxyClassTest::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    const QMetaObject &meta = *m_proxy->metaObject();
    QCOMPARE(QByteArray(meta.className()), QByteArray(m_class.className));
    verifySignalsThenSlots(meta, *m_proxy, signaturesOf(m_class.signalSignatures),
                           signaturesOf(m_class.slotSignatures));
    for (const QString &method : m_class.signalSignatures + m_class.slotSignatures) {
        const auto [returnType, signature] = returnTypeAndSignature(method);
        if (returnType.isEmpty())
            continue;
        const int index = meta.indexOfMethod(signature.toLatin1().constData());
        QVERIFY2(index >= meta.methodOffset(), qPrintable(signature));
        QCOMPARE(QString::fromLatin1(meta.method(index).typeName()), returnType);
    }
}

void ProxyClassTest::metaObjectPlacesEachMethodAtItsIndex_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<int>("type");
    const QStringList signalSignatures = signaturesOf(m_class.signalSignatures);
    int index = 0;
    for (const QString &signature : signalSignatures + signaturesOf(m_class.slotSignatures)) {
        const bool isSignal = index < signalSignatures.size();
        QTest::newRow((QByteArray(m_class.className) + '/' + signature.toLatin1() + "/placed").constData())
            << index << signature << int(isSignal ? QMetaMethod::Signal : QMetaMethod::Slot);
        ++index;
    }
}

void ProxyClassTest::metaObjectPlacesEachMethodAtItsIndex()
{
    QFETCH(int, index);
    QFETCH(QString, signature);
    QFETCH(int, type);

    const QMetaObject &meta = *m_proxy->metaObject();
    const QMetaMethod method = meta.method(meta.methodOffset() + index);
    QCOMPARE(QString::fromLatin1(method.methodSignature()), signature);
    QCOMPARE(int(method.methodType()), type);
    QCOMPARE(meta.indexOfMethod(signature.toLatin1().constData()), meta.methodOffset() + index);
}

void ProxyClassTest::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(*m_proxy, m_class.className, m_class.otherClasses);
}

void ProxyClassTest::invokingSlotsByNameGivesTheDirectResult_data()
{
    addRows(m_class.byName, "by name");
}

void ProxyClassTest::invokingSlotsByNameGivesTheDirectResult()
{
    if (!QTest::currentDataTag())
        QSKIP("The test invokes no slot by name.");
    QFETCH(OperationRow, row);
    QVERIFY2(row.direct, "no direct call");
    const QVariant &answered = row.reply.answered;
    m_fake->answer(row.call.member, answered.isValid() ? ScriptedAnswer::value(answered) : ScriptedAnswer::reply());

    const Seen byName = row.run(*m_proxy);
    QVERIFY(byName.valid || !answered.isValid());
    QCOMPARE(byName.value, seenOfAnswer(row));
    verifySingleCall(*m_fake, m_path, row);

    const Seen direct = row.direct(*m_proxy);
    QCOMPARE(direct.valid, byName.valid);
    QCOMPARE(direct.value, byName.value);
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

void ProxyClassTest::relaysEachSignalOfItsOwnObjectOnly_data()
{
    QTest::addColumn<OperationRow>("row");
    for (const OperationRow &row : m_class.relayed) {
        const QString arguments = wireTexts(row.call.arguments).join(QStringLiteral(", "));
        QTest::newRow(tag(row, arguments.isEmpty() ? "no arguments" : arguments.toUtf8().constData())) << row;
    }
}

void ProxyClassTest::relaysEachSignalOfItsOwnObjectOnly()
{
    if (!QTest::currentDataTag())
        QSKIP("The class relays no signal.");
    QFETCH(OperationRow, row);

    // The Qt signal as SIGNAL() writes it.
    const QByteArray qtSignal = QByteArray::number(QSIGNAL_CODE) + row.operation;
    verifySignalRelay(*m_proxy, *m_fake, qtSignal.constData(), row.call.member, row.call.arguments);
}
