#include "ScalarResultTest.h"

#include "LogCapture.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusReply>
#include <QMetaMethod>
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

} // namespace

ScalarResultTest::ScalarResultTest(ScalarResultClass tested)
    : ProxyTableTest(tested.className, tested.path, tested.make)
    , m_class(std::move(tested))
{
}

ScalarResultTest::~ScalarResultTest() = default;

void ScalarResultTest::sendsEachOperationAsItsOwnMemberWithoutArguments_data()
{
    QTest::addColumn<OperationRow>("row");
    for (const OperationRow &row : m_class.getters + m_class.commands + m_class.comps)
        QTest::newRow(tag(row, "sent")) << row;
}

void ScalarResultTest::sendsEachOperationAsItsOwnMemberWithoutArguments()
{
    verifySentAsItsRow(*m_fake, *m_proxy);
}

void ScalarResultTest::mapsEachGeneratedReply_data()
{
    addMappedReplyColumns();
    for (const OperationRow &getter : m_class.getters)
        addMappedReplyRows(tag(getter, ""), getter);
    for (const OperationRow &command : m_class.commands)
        addMappedVoidReplyRows(tag(command, ""), command);
}

void ScalarResultTest::mapsEachGeneratedReply()
{
    verifyMappedReply(*m_fake, *m_proxy);
}

void ScalarResultTest::failsWhenTheServiceIsAbsentAndOnlyCompGettersReportIt_data()
{
    QTest::addColumn<OperationRow>("row");
    for (const OperationRow &row : m_class.getters + m_class.commands)
        QTest::newRow(tag(row, "absent service")) << row;
    for (OperationRow comp : m_class.comps) {
        comp.empty = emptyList;
        QTest::newRow(tag(comp, "absent service")) << comp;
    }
}

void ScalarResultTest::failsWhenTheServiceIsAbsentAndOnlyCompGettersReportIt()
{
    QFETCH(OperationRow, row);

    LogCapture log;
    const std::unique_ptr<QDBusAbstractInterface> absent = makeAbsent();
    const Seen seen = row.run(*absent);

    QCOMPARE(seen.valid, false);
    QCOMPARE(seen.value, row.empty);
    QCOMPARE(seen.value.userType(), row.empty.userType());
    if (row.empty.userType() == QMetaType::QString)
        QVERIFY(seen.value.toString().isNull());
    QCOMPARE(absent->lastError().type(), QDBusError::ServiceUnknown);
    const QString message = absent->lastError().message();
    QCOMPARE(log.lines(),
             row.report.isEmpty() ? QList<LogLine>()
                                  : debugLines({reportLine(row.report, absentService(), m_path, message)}));
}

void ScalarResultTest::compGettersReturnTheElementsAsSent_data()
{
    QTest::addColumn<OperationRow>("row");
    for (const OperationRow &comp : m_class.comps)
        QTest::newRow(tag(comp, "comp")) << comp;
}

void ScalarResultTest::compGettersReturnTheElementsAsSent()
{
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

void ScalarResultTest::compGettersGiveAnEmptyListAndReportAnyFailureInOneLine_data()
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

void ScalarResultTest::compGettersGiveAnEmptyListAndReportAnyFailureInOneLine()
{
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
    QCOMPARE(log.lines(),
             message.isEmpty() ? QList<LogLine>()
                               : debugLines({reportLine(row.report, m_fake->service(), m_path, message)}));
}

void ScalarResultTest::verifyOneReportLine(const ProxyOperation &operation, const QString &member,
                                           const QString &message, const QString &line)
{
    LogCapture log;
    m_fake->answer(member, ScriptedAnswer::error(failedErrorName(), message));

    QCOMPARE(operation(*m_proxy).value, QVariant(QList<QVariant>()));

    verifySingleCall(*m_fake, m_path, member, "", {});
    QCOMPARE(log.lines(), debugLines({line}));
}

void ScalarResultTest::compReportQuotesAndEscapesTheErrorMessage()
{
    const OperationRow &getValueComp = m_class.comps.first();
    QCOMPARE(getValueComp.operation, "getValueComp");
    // Written out, not made by quoted(), which would share a mistake of the library's own quoting.
    const QString line = getValueComp.report + QStringLiteral(" \"com.velk.mqx.app.fake\"  /  \"") + m_path +
        QStringLiteral("\"  / Error: \"say \\\"hi\\\" \\\\ bye\"");
    verifyOneReportLine(getValueComp.run, "getValueComp", QStringLiteral("say \"hi\" \\ bye"), line);
}

OperationRow ScalarResultTest::rowNamed(const char *name) const
{
    for (const OperationRow &row : m_class.getters + m_class.commands + m_class.comps) {
        if (qstrcmp(row.operation, name) == 0)
            return row;
    }
    return OperationRow{name};
}

void ScalarResultTest::aFailedCallLeavesTheProxyAsItWas()
{
    const OperationRow getValueComp = rowNamed("getValueComp");
    const OperationRow getValue = rowNamed("getValue");
    QVERIFY(getValueComp.run && getValue.run);
    // One reading: the value and the text the table's getters are answered with.
    const QList<QVariant> composite{getValue.answered, rowNamed("getString").answered};

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

void ScalarResultTest::metaObjectListsExactlyItsSlotsInOrder()
{
    const QMetaObject &meta = *m_proxy->metaObject();
    QCOMPARE(QByteArray(meta.className()), QByteArray(m_class.className));
    QStringList slotSignatures;
    for (const OperationRow &row : m_class.getters + m_class.commands + m_class.comps)
        slotSignatures.append(QLatin1String(row.operation) + QStringLiteral("()"));
    verifySignalsThenSlots(meta, *m_proxy, {}, slotSignatures);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), int(slotSignatures.size()));
}

void ScalarResultTest::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(*m_proxy, m_class.className, m_class.otherClasses);
}

void ScalarResultTest::invokingSlotsByNameGivesTheDirectResult_data()
{
    QTest::addColumn<OperationRow>("row");
    for (const OperationRow &row : m_class.byName)
        QTest::newRow(tag(row, "by name")) << row;
}

void ScalarResultTest::invokingSlotsByNameGivesTheDirectResult()
{
    QFETCH(OperationRow, row);
    const ProxyOperation direct = rowNamed(row.operation).run;

    QVERIFY(direct);
    m_fake->answer(row.wireMember(),
                   row.answered.isValid() ? ScriptedAnswer::value(row.answered) : ScriptedAnswer::reply());

    const Seen byName = row.run(*m_proxy);
    QVERIFY(byName.valid || !row.answered.isValid());
    QCOMPARE(byName.value, row.answered);
    const Seen called = direct(*m_proxy);
    QCOMPARE(byName.valid, called.valid);
    QCOMPARE(byName.value, called.value);
    QVERIFY(m_fake->waitForCalls(2));
    QCOMPARE(m_fake->calls().first().member, row.wireMember());
}

void ScalarResultTest::verifyCannotBeFoundByName(const QList<const char *> &names)
{
    const QMetaObject &meta = *m_proxy->metaObject();

    LogCapture log;
    for (const char *name : names) {
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
