#include "ScalarResultTest.h"

#include "LogCapture.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QMetaMethod>
#include <QtTest/QTest>

namespace {

QList<QVariant> composite(const ScalarResultClass &tested)
{
    return {tested.value, tested.text};
}

/// The error that QDBusReply<QList<QVariant>> itself makes of what @p member answers now.
QString listReplyErrorOf(const QString &service, const QString &path, const QString &member)
{
    const QDBusMessage call = QDBusMessage::createMethodCall(service, path, FakeMeasApplication::interfaceName, member);
    const QDBusReply<QList<QVariant>> reply = QDBusConnection::sessionBus().call(call, QDBus::Block);
    return reply.error().message();
}

void addOperationColumns()
{
    QTest::addColumn<ProxyOperation>("operation");
    QTest::addColumn<QString>("member");
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
    addOperationColumns();
    for (const QList<OperationRow> *rows : {&m_class.getters, &m_class.commands, &m_class.comps}) {
        for (const OperationRow &row : *rows)
            QTest::newRow(tag(row, "sent")) << row.run << row.wireMember();
    }
}

void ScalarResultTest::sendsEachOperationAsItsOwnMemberWithoutArguments()
{
    QFETCH(ProxyOperation, operation);
    QFETCH(QString, member);

    m_fake->answer(member, ScriptedAnswer::reply());
    LogCapture log; // an empty reply is a failure to the Comp getters
    operation(*m_proxy);
    verifySingleCall(*m_fake, m_path, member, "", {});
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

void ScalarResultTest::generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent_data()
{
    QTest::addColumn<ProxyOperation>("operation");
    QTest::addColumn<QVariant>("empty");

    for (const OperationRow &getter : m_class.getters)
        QTest::newRow(tag(getter, "absent service")) << getter.run << getter.empty;
    for (const OperationRow &command : m_class.commands)
        QTest::newRow(tag(command, "absent service")) << command.run << QVariant();
}

void ScalarResultTest::generatedOperationsGiveInvalidRepliesSilentlyWhenTheServiceIsAbsent()
{
    QFETCH(ProxyOperation, operation);
    QFETCH(QVariant, empty);

    LogCapture log;
    const std::unique_ptr<QDBusAbstractInterface> absent = makeAbsent();
    const Seen seen = operation(*absent);

    QCOMPARE(seen.valid, false);
    QCOMPARE(seen.value, empty);
    QCOMPARE(seen.value.userType(), empty.userType());
    if (empty.userType() == QMetaType::QString)
        QVERIFY(seen.value.toString().isNull());
    QCOMPARE(absent->lastError().type(), QDBusError::ServiceUnknown);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void ScalarResultTest::addCompRows()
{
    addOperationColumns();
    QTest::addColumn<QString>("opening");
    for (const OperationRow &comp : m_class.comps)
        QTest::newRow(tag(comp, "comp")) << comp.run << comp.wireMember() << comp.report;
}

void ScalarResultTest::compGettersReturnTheElementsAsSent_data()
{
    addCompRows();
}

void ScalarResultTest::compGettersReturnTheElementsAsSent()
{
    QFETCH(ProxyOperation, operation);
    QFETCH(QString, member);

    const QList<QVariant> sent{3, QStringLiteral("3 counts"), -1.5, true, 1};
    const QList<int> types{QMetaType::Int, QMetaType::QString, QMetaType::Double, QMetaType::Bool, QMetaType::Int};
    LogCapture log;
    m_fake->answer(member, ScriptedAnswer::value(sent));

    const QList<QVariant> received = operation(*m_proxy).value.toList();

    QCOMPARE(received, sent);
    // Each element arrives unwrapped from its D-Bus variant, with its own type.
    QCOMPARE(received.size(), types.size());
    for (int i = 0; i < types.size(); ++i) {
        QCOMPARE(received.at(i).userType(), types.at(i));
        QVERIFY(received.at(i).userType() != qMetaTypeId<QDBusVariant>());
    }
    verifySingleCall(*m_fake, m_path, member, "", {});
    QCOMPARE(log.lines(), QList<LogLine>());
}

void ScalarResultTest::compGettersPassAnEmptyListOnWithoutAReport_data()
{
    addCompRows();
}

void ScalarResultTest::compGettersPassAnEmptyListOnWithoutAReport()
{
    QFETCH(ProxyOperation, operation);
    QFETCH(QString, member);

    LogCapture log;
    m_fake->answer(member, ScriptedAnswer::value(QList<QVariant>()));

    QCOMPARE(operation(*m_proxy).value, QVariant::fromValue(QList<QVariant>()));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void ScalarResultTest::compGettersReportAnErrorReplyInOneLine_data()
{
    addCompRows();
}

void ScalarResultTest::compGettersReportAnErrorReplyInOneLine()
{
    QFETCH(ProxyOperation, operation);
    QFETCH(QString, member);
    QFETCH(QString, opening);

    const QString message = QStringLiteral("no reading");
    verifyOneReportLine(operation, member, message, reportLine(opening, m_fake->service(), m_path, message));
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

void ScalarResultTest::compGettersTreatAWrongTypedReplyAsAFailure_data()
{
    addOperationColumns();
    QTest::addColumn<QString>("opening");
    QTest::addColumn<ScriptedAnswer>("answer");

    for (const OperationRow &comp : m_class.comps) {
        const QString member = comp.wireMember();
        QTest::newRow(tag(comp, "integer array"))
            << comp.run << member << comp.report << ScriptedAnswer::value(QVariant::fromValue(QList<int>{1, 2}));
        QTest::newRow(tag(comp, "string"))
            << comp.run << member << comp.report << ScriptedAnswer::value(QStringLiteral("1 2"));
        QTest::newRow(tag(comp, "string list"))
            << comp.run << member << comp.report << ScriptedAnswer::value(QStringList{"1", "2"});
        QTest::newRow(tag(comp, "nothing")) << comp.run << member << comp.report << ScriptedAnswer::reply();
    }
}

void ScalarResultTest::compGettersTreatAWrongTypedReplyAsAFailure()
{
    QFETCH(ProxyOperation, operation);
    QFETCH(QString, member);
    QFETCH(QString, opening);
    QFETCH(ScriptedAnswer, answer);

    LogCapture log;
    m_fake->answer(member, answer);

    QCOMPARE(operation(*m_proxy).value, QVariant::fromValue(QList<QVariant>()));

    const QString message = listReplyErrorOf(m_fake->service(), m_path, member);
    QVERIFY(message.startsWith(QStringLiteral("Unexpected reply signature")));
    QCOMPARE(log.lines(), debugLines({reportLine(opening, m_fake->service(), m_path, message)}));
}

void ScalarResultTest::compGettersReportAnAbsentServiceInOneLine_data()
{
    addCompRows();
}

void ScalarResultTest::compGettersReportAnAbsentServiceInOneLine()
{
    QFETCH(ProxyOperation, operation);
    QFETCH(QString, opening);

    LogCapture log;
    const std::unique_ptr<QDBusAbstractInterface> absent = makeAbsent();

    QCOMPARE(operation(*absent).value, QVariant::fromValue(QList<QVariant>()));

    QCOMPARE(absent->lastError().type(), QDBusError::ServiceUnknown);
    QCOMPARE(log.lines(), debugLines({reportLine(opening, absentService(), m_path, absent->lastError().message())}));
}

void ScalarResultTest::compReportQuotesAndEscapesTheErrorMessage()
{
    verifyOneReportLine(operationNamed("getValueComp"), "getValueComp", QStringLiteral("say \"hi\" \\ bye"),
                        m_class.escapedReport);
}

ProxyOperation ScalarResultTest::operationNamed(const char *name) const
{
    for (const QList<OperationRow> *rows : {&m_class.getters, &m_class.commands, &m_class.comps}) {
        for (const OperationRow &row : *rows) {
            if (qstrcmp(row.operation, name) == 0)
                return row.run;
        }
    }
    return ProxyOperation();
}

void ScalarResultTest::aFailedCallLeavesTheProxyAsItWas()
{
    const ProxyOperation getValueComp = operationNamed("getValueComp");
    const ProxyOperation getValue = operationNamed("getValue");
    QVERIFY(getValueComp && getValue);

    LogCapture log;
    m_fake->answer("getValueComp", ScriptedAnswer::error(failedErrorName(), QStringLiteral("not yet")));
    m_fake->answer("getValue", ScriptedAnswer::error(failedErrorName(), QStringLiteral("not yet")));
    QCOMPARE(getValueComp(*m_proxy).value, QVariant::fromValue(QList<QVariant>()));
    QVERIFY(!getValue(*m_proxy).valid);

    m_fake->answer("getValueComp", ScriptedAnswer::value(composite(m_class)));
    m_fake->answer("getValue", ScriptedAnswer::value(m_class.value));
    QCOMPARE(getValueComp(*m_proxy).value, QVariant::fromValue(composite(m_class)));
    QCOMPARE(getValue(*m_proxy).value, m_class.value);

    QVERIFY(m_fake->waitForCalls(4));
    const QList<ReceivedCall> calls = m_fake->calls();
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(calls.at(i + 2).path, calls.at(i).path);
        QCOMPARE(calls.at(i + 2).interface, calls.at(i).interface);
        QCOMPARE(calls.at(i + 2).member, calls.at(i).member);
        QCOMPARE(calls.at(i + 2).signature, calls.at(i).signature);
        QCOMPARE(calls.at(i + 2).arguments, calls.at(i).arguments);
    }
    QCOMPARE(log.lines().size(), 1);
}

void ScalarResultTest::metaObjectListsExactlyItsSlotsInOrder()
{
    const QMetaObject &meta = *m_proxy->metaObject();
    QCOMPARE(QByteArray(meta.className()), QByteArray(m_class.className));
    verifySignalsThenSlots(meta, *m_proxy, {}, m_class.slotSignatures);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), int(m_class.slotSignatures.size()));
}

void ScalarResultTest::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(*m_proxy, m_class.className, m_class.otherClasses);
}

void ScalarResultTest::invokingSlotsByNameGivesTheDirectResult_data()
{
    QTest::addColumn<ProxyOperation>("invoked");
    QTest::addColumn<ProxyOperation>("direct");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QVariant>("answered");

    for (const OperationRow &row : m_class.byName) {
        QTest::newRow(tag(row, "by name"))
            << row.run << operationNamed(row.operation) << row.wireMember() << row.answered;
    }
}

void ScalarResultTest::invokingSlotsByNameGivesTheDirectResult()
{
    QFETCH(ProxyOperation, invoked);
    QFETCH(ProxyOperation, direct);
    QFETCH(QString, member);
    QFETCH(QVariant, answered);

    QVERIFY(direct);
    m_fake->answer(member, answered.isValid() ? ScriptedAnswer::value(answered) : ScriptedAnswer::reply());

    const Seen byName = invoked(*m_proxy);
    QVERIFY(byName.valid || !answered.isValid());
    QCOMPARE(byName.value, answered);
    const Seen called = direct(*m_proxy);
    QCOMPARE(byName.valid, called.valid);
    QCOMPARE(byName.value, called.value);
    QVERIFY(m_fake->waitForCalls(2));
    QCOMPARE(m_fake->calls().first().member, member);
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
