#ifndef TESTS_RESULTTESTSUPPORT_H
#define TESTS_RESULTTESTSUPPORT_H

// The checks the result-proxy tests share. Each test names its class's operations, wire
// members, replies and report lines in tables; the checks here run a table against the
// proxy. A report line a check compares is either written out whole in the test's table or,
// where its error message comes from QtDBus at run time, the table's opening text followed
// by reportLine()'s rendering of service, path and message, which is written here and not
// taken from the library.

#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"

#include <QByteArray>
#include <QDBusAbstractInterface>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QDateTime>
#include <QList>
#include <QMetaMethod>
#include <QMetaObject>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QtTest/QTest>

#include <functional>

namespace ResultTest {

/// Any operation of a proxy, run for the call it sends.
using Call = std::function<void(QDBusAbstractInterface &)>;
/// A generated operation (one returning QDBusReply), with what its caller sees.
using Operation = std::function<Seen(QDBusAbstractInterface &)>;
/// A getter returning a list: a composite reading or a row.
using ListGetter = std::function<QList<QVariant>(QDBusAbstractInterface &)>;
/// A hand-written getter's plain result.
using Getter = std::function<QVariant(QDBusAbstractInterface &)>;
/// Whether an operation gave its empty result.
using Check = std::function<bool(QDBusAbstractInterface &)>;

} // namespace ResultTest

Q_DECLARE_METATYPE(ResultTest::Call)
Q_DECLARE_METATYPE(ResultTest::ListGetter)
Q_DECLARE_METATYPE(ResultTest::Getter)

namespace ResultTest {

// ---------------------------------------------------------------------------------------
// Building tables

/// @p function, written for the proxy class, as a function of the base the tables hold.
template<typename Proxy, typename Function>
auto on(Function function)
{
    return [function](QDBusAbstractInterface &proxy) { return function(static_cast<Proxy &>(proxy)); };
}

/// The generated operation @p method, with what its caller sees.
template<typename Proxy, typename R>
Operation generated(QDBusReply<R> (Proxy::*method)())
{
    return [method](QDBusAbstractInterface &proxy) { return seenOf((static_cast<Proxy &>(proxy).*method)()); };
}

/// The list getter @p method.
template<typename Proxy>
ListGetter listGetter(QList<QVariant> (Proxy::*method)())
{
    return [method](QDBusAbstractInterface &proxy) { return (static_cast<Proxy &>(proxy).*method)(); };
}

/// The error every failing scripted answer of these tests carries.
inline QString failure()
{
    return QStringLiteral("com.velk.mqx.Error.Failed");
}

/// A generated getter: a reply of its type, a reply of another type, and the value its
/// QDBusReply holds after any failure.
struct GeneratedGetter
{
    const char *member;
    Operation operation;
    QVariant answered;
    QVariant wrongType;
    QVariant failed;
};

/// A generated command (QDBusReply<void>): valid whatever the application answers.
struct GeneratedCommand
{
    const char *member;
    Operation operation;
};

/// A Comp getter: its member, the opening of its failure reports, and its whole report for
/// the error reply "no reading" from the fake application (com.velk.mqx.app.fake).
struct CompGetter
{
    const char *member;
    ListGetter getter;
    const char *opening;
    const char *errorLine;
};

/// The operations of a scalar result class, each list in the class's declaration order.
struct ScalarResult
{
    QList<GeneratedGetter> getters;
    QList<GeneratedCommand> commands;
    QList<CompGetter> comps;
};

/// An operation with the wire form of its call.
struct SentOperation
{
    const char *member;
    Call call;
    QString signature;
    QList<QVariant> arguments;
};

/// A checked getter on an absent service: whether it gave its empty result, and the
/// opening of its report.
struct AbsentReport
{
    Check givesNothing;
    const char *opening;
};

/// A scalar class's reading: the value, its text and the composite reading made of both.
template<typename T>
struct Reading
{
    /// The return type of getValue() as its slot declares it, e.g. "QDBusReply<int>".
    const char *replyType;
    T value;
    QString text;

    QList<QVariant> composite() const { return {value, text}; }
};

// ---------------------------------------------------------------------------------------
// Expected report lines and other helpers

/// The error that QDBusReply<QList<QVariant>> itself makes of what @p member answers now.
inline QString replyErrorOf(const QString &service, const QString &path, const QString &member)
{
    const QDBusMessage call = QDBusMessage::createMethodCall(service, path, FakeMeasApplication::interfaceName, member);
    const QDBusReply<QList<QVariant>> reply = QDBusConnection::sessionBus().call(call, QDBus::Block);
    return reply.error().message();
}

/// The debug lines of @p lines; Qt's own warnings are left out.
inline QList<LogLine> debugLinesOnly(const QList<LogLine> &lines)
{
    QList<LogLine> debug;
    for (const LogLine &line : lines) {
        if (line.level == QtDebugMsg)
            debug.append(line);
    }
    return debug;
}

// ---------------------------------------------------------------------------------------
// Every operation's call

/// Every operation of a scalar class, called without arguments, in table order.
inline QList<SentOperation> sentOperations(const ScalarResult &result)
{
    QList<SentOperation> operations;
    for (const GeneratedGetter &getter : result.getters)
        operations.append({getter.member, getter.operation, QString(), {}});
    for (const GeneratedCommand &command : result.commands)
        operations.append({command.member, command.operation, QString(), {}});
    for (const CompGetter &comp : result.comps)
        operations.append({comp.member, comp.getter, QString(), {}});
    return operations;
}

inline void addSentRows(const QList<SentOperation> &operations)
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<QList<QVariant>>("arguments");

    for (const SentOperation &operation : operations) {
        QTest::newRow(operation.member) << operation.call << QString::fromLatin1(operation.member)
                                        << operation.signature << operation.arguments;
    }
}

/// The row's operation sends one call: its own member on the proxy's path and interface,
/// with the row's signature and arguments.
inline void verifySentWithItsWireForm(FakeMeasApplication &fake, QDBusAbstractInterface &proxy, const QString &path)
{
    QFETCH(Call, call);
    QFETCH(QString, member);
    QFETCH(QString, signature);
    QFETCH(QList<QVariant>, arguments);

    fake.answer(member, ScriptedAnswer::reply());
    LogCapture log; // an empty reply is a failure to the checked getters
    call(proxy);
    verifySingleCall(fake, path, member, signature, wireTexts(arguments));
}

// ---------------------------------------------------------------------------------------
// Generated operations

/// Per getter: answered, error, wrong type, empty return; per command: answered, answered
/// with a value, error.
inline void addGeneratedReplyRows(const QList<GeneratedGetter> &getters, const QList<GeneratedCommand> &commands = {})
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QVariant>("value");

    const ScriptedAnswer error = ScriptedAnswer::error(failure(), QStringLiteral("refused"));
    for (const GeneratedGetter &g : getters) {
        const QString member = QString::fromLatin1(g.member);
        QTest::addRow("%s answered", g.member)
            << g.operation << member << ScriptedAnswer::value(g.answered) << true << g.answered;
        QTest::addRow("%s error", g.member) << g.operation << member << error << false << g.failed;
        QTest::addRow("%s wrong type", g.member)
            << g.operation << member << ScriptedAnswer::value(g.wrongType) << false << g.failed;
        QTest::addRow("%s empty return", g.member)
            << g.operation << member << ScriptedAnswer::reply() << false << g.failed;
    }
    for (const GeneratedCommand &c : commands) {
        const QString member = QString::fromLatin1(c.member);
        QTest::addRow("%s answered", c.member)
            << c.operation << member << ScriptedAnswer::reply() << true << QVariant();
        QTest::addRow("%s answered with a value", c.member)
            << c.operation << member << ScriptedAnswer::value(1) << true << QVariant();
        QTest::addRow("%s error", c.member) << c.operation << member << error << false << QVariant();
    }
}

/// The row's reply reaches the caller as the row says, and nothing is logged.
inline void verifyGeneratedReply(FakeMeasApplication &fake, QDBusAbstractInterface &proxy)
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);
    QFETCH(ScriptedAnswer, answer);
    QFETCH(bool, valid);
    QFETCH(QVariant, value);

    LogCapture log;
    fake.answer(member, answer);
    const Seen outcome = operation(proxy);
    QCOMPARE(outcome.valid, valid);
    QCOMPARE(outcome.value.userType(), value.userType());
    QCOMPARE(outcome.value, value);
    QCOMPARE(log.lines(), QList<LogLine>());
}

/// @p operation on a proxy of an absent service gives an invalid reply holding @p failed.
/// Logs nothing itself; the caller judges the log.
inline void verifyFailedWithoutTheService(QDBusAbstractInterface &proxy, const Operation &operation,
                                          const QVariant &failed)
{
    const Seen outcome = operation(proxy);

    QCOMPARE(outcome.valid, false);
    QCOMPARE(outcome.value, failed);
    QCOMPARE(outcome.value.userType(), failed.userType());
    if (failed.userType() == QMetaType::QString)
        QVERIFY(outcome.value.toString().isNull());
    if (failed.userType() == QMetaType::QDateTime)
        QVERIFY(outcome.value.toDateTime().isNull());
    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
}

inline void addAbsentServiceRows(const QList<GeneratedGetter> &getters, const QList<GeneratedCommand> &commands = {})
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QVariant>("value");

    for (const GeneratedGetter &getter : getters)
        QTest::newRow(getter.member) << getter.operation << getter.failed;
    for (const GeneratedCommand &command : commands)
        QTest::newRow(command.member) << command.operation << QVariant();
}

/// The row's operation on a proxy of an absent service gives an invalid reply, silently.
template<typename Proxy>
void verifyGeneratedOperationFailsSilentlyWithoutTheService(const QString &path)
{
    QFETCH(Operation, operation);
    QFETCH(QVariant, value);

    LogCapture log;
    Proxy proxy(absentService(), path, QDBusConnection::sessionBus());
    verifyFailedWithoutTheService(proxy, operation, value);
    if (QTest::currentTestFailed())
        return;
    QCOMPARE(log.lines(), QList<LogLine>());
}

// ---------------------------------------------------------------------------------------
// Reports

/// The application answers @p member with an error of @p message: @p call gives @p nothing,
/// sends that one call without arguments, and logs exactly @p line.
inline void verifyErrorReplyReportedOnce(FakeMeasApplication &fake, const QString &path, const QString &member,
                                         const QString &message, const QString &line,
                                         const std::function<QVariant()> &call,
                                         const QVariant &nothing = QVariant(QList<QVariant>()))
{
    LogCapture log;
    fake.answer(member, ScriptedAnswer::error(failure(), message));

    QCOMPARE(call(), nothing);

    verifySingleCall(fake, path, member, "", {});
    QCOMPARE(log.lines(), debugLines({line}));
}

/// @p sent arrives as it was sent, each element unwrapped with its own type (@p types),
/// from one call and without a report.
inline void verifyListArrivesUnwrapped(FakeMeasApplication &fake, QDBusAbstractInterface &proxy, const QString &path,
                                       const QString &member, const ListGetter &getter, const QList<QVariant> &sent,
                                       const QList<int> &types)
{
    LogCapture log;
    fake.answer(member, ScriptedAnswer::value(sent));

    const QList<QVariant> received = getter(proxy);

    QCOMPARE(received, sent);
    // Each element arrives unwrapped from its D-Bus variant, with its own type.
    QCOMPARE(received.size(), types.size());
    for (int i = 0; i < types.size(); ++i) {
        QCOMPARE(received.at(i).userType(), types.at(i));
        QVERIFY(received.at(i).userType() != qMetaTypeId<QDBusVariant>());
    }
    verifySingleCall(fake, path, member, "", {});
    QCOMPARE(log.lines(), QList<LogLine>());
}

// ---------------------------------------------------------------------------------------
// Comp getters

/// One row per Comp getter, named by its member.
inline void addCompRows(const QList<CompGetter> &comps)
{
    QTest::addColumn<ListGetter>("getter");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("opening");
    QTest::addColumn<QString>("line");

    for (const CompGetter &comp : comps) {
        QTest::newRow(comp.member) << comp.getter << QString::fromLatin1(comp.member)
                                   << QString::fromLatin1(comp.opening) << QString::fromLatin1(comp.errorLine);
    }
}

/// The row's Comp getter returns what the application sent, element by element.
inline void verifyCompReturnsTheElementsAsSent(FakeMeasApplication &fake, QDBusAbstractInterface &proxy,
                                               const QString &path)
{
    QFETCH(ListGetter, getter);
    QFETCH(QString, member);

    verifyListArrivesUnwrapped(
        fake, proxy, path, member, getter, {3, QStringLiteral("3 counts"), -1.5, true, 1},
        {QMetaType::Int, QMetaType::QString, QMetaType::Double, QMetaType::Bool, QMetaType::Int});
}

/// An empty reading is no failure: the row's Comp getter passes it on and logs nothing.
inline void verifyCompPassesAnEmptyListOn(FakeMeasApplication &fake, QDBusAbstractInterface &proxy)
{
    QFETCH(ListGetter, getter);
    QFETCH(QString, member);

    LogCapture log;
    fake.answer(member, ScriptedAnswer::value(QList<QVariant>()));

    QCOMPARE(getter(proxy), QList<QVariant>());
    QCOMPARE(log.lines(), QList<LogLine>());
}

/// An error reply "no reading" makes the row's Comp getter return an empty list and log
/// the row's line.
inline void verifyCompReportsAnErrorReply(FakeMeasApplication &fake, QDBusAbstractInterface &proxy, const QString &path)
{
    QFETCH(ListGetter, getter);
    QFETCH(QString, member);
    QFETCH(QString, line);

    verifyErrorReplyReportedOnce(fake, path, member, QStringLiteral("no reading"), line,
                                 [&] { return QVariant(getter(proxy)); });
}

/// Per Comp getter: a reply of integers, a string, a string list, and no value at all.
inline void addCompWrongTypeRows(const QList<CompGetter> &comps)
{
    QTest::addColumn<ListGetter>("getter");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("opening");
    QTest::addColumn<ScriptedAnswer>("answer");

    for (const CompGetter &comp : comps) {
        const QString member = QString::fromLatin1(comp.member);
        const QString opening = QString::fromLatin1(comp.opening);
        QTest::addRow("%s integer array", comp.member)
            << comp.getter << member << opening << ScriptedAnswer::value(QVariant::fromValue(QList<int>{1, 2}));
        QTest::addRow("%s string", comp.member)
            << comp.getter << member << opening << ScriptedAnswer::value(QStringLiteral("1 2"));
        QTest::addRow("%s string list", comp.member)
            << comp.getter << member << opening << ScriptedAnswer::value(QStringList{"1", "2"});
        QTest::addRow("%s nothing", comp.member) << comp.getter << member << opening << ScriptedAnswer::reply();
    }
}

/// A reply that is no list of variants is a failure, reported with QtDBus's own message.
inline void verifyCompTreatsAWrongTypedReplyAsAFailure(FakeMeasApplication &fake, QDBusAbstractInterface &proxy,
                                                       const QString &path)
{
    QFETCH(ListGetter, getter);
    QFETCH(QString, member);
    QFETCH(QString, opening);
    QFETCH(ScriptedAnswer, answer);

    LogCapture log;
    fake.answer(member, answer);

    QCOMPARE(getter(proxy), QList<QVariant>());

    const QString message = replyErrorOf(fake.service(), path, member);
    QVERIFY(message.startsWith(QStringLiteral("Unexpected reply signature")));
    QCOMPARE(log.lines(), debugLines({reportLine(opening, fake.service(), path, message)}));
}

/// On a proxy of an absent service the row's Comp getter returns an empty list and logs one line.
template<typename Proxy>
void verifyCompReportsAnAbsentService(const QString &path)
{
    QFETCH(ListGetter, getter);
    QFETCH(QString, opening);

    LogCapture log;
    Proxy proxy(absentService(), path, QDBusConnection::sessionBus());

    QCOMPARE(getter(proxy), QList<QVariant>());

    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
    QCOMPARE(log.lines(), debugLines({reportLine(opening, absentService(), path, proxy.lastError().message())}));
}

// ---------------------------------------------------------------------------------------
// The scalar classes' reading

/// A failed getValueComp and getValue leave nothing behind: the same calls succeed next.
template<typename Proxy, typename T>
void verifyAFailedCallLeavesTheProxyAsItWas(FakeMeasApplication &fake, Proxy &proxy, const Reading<T> &reading)
{
    LogCapture log;
    fake.answer("getValueComp", ScriptedAnswer::error(failure(), QStringLiteral("not yet")));
    fake.answer("getValue", ScriptedAnswer::error(failure(), QStringLiteral("not yet")));
    QCOMPARE(proxy.getValueComp(), QList<QVariant>());
    QVERIFY(!proxy.getValue().isValid());

    fake.answer("getValueComp", ScriptedAnswer::value(reading.composite()));
    fake.answer("getValue", ScriptedAnswer::value(reading.value));
    QCOMPARE(proxy.getValueComp(), reading.composite());
    QCOMPARE(proxy.getValue().value(), reading.value);

    QVERIFY(fake.waitForCalls(4));
    const QList<ReceivedCall> calls = fake.calls();
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(calls.at(i + 2).path, calls.at(i).path);
        QCOMPARE(calls.at(i + 2).interface, calls.at(i).interface);
        QCOMPARE(calls.at(i + 2).member, calls.at(i).member);
        QCOMPARE(calls.at(i + 2).signature, calls.at(i).signature);
        QCOMPARE(calls.at(i + 2).arguments, calls.at(i).arguments);
    }
    QCOMPARE(log.lines().size(), 1);
}

/// getValue, getString and getValueComp invoked by name give what direct calls give; so
/// does @p command (a QDBusReply<void> slot), if given.
template<typename Proxy, typename T>
void verifySlotsInvokedByNameGiveTheDirectResult(FakeMeasApplication &fake, Proxy &proxy, const Reading<T> &reading,
                                                 const char *command = nullptr)
{
    fake.answer("getValue", ScriptedAnswer::value(reading.value));
    fake.answer("getString", ScriptedAnswer::value(reading.text));
    fake.answer("getValueComp", ScriptedAnswer::value(reading.composite()));

    QDBusReply<T> value;
    QVERIFY(QMetaObject::invokeMethod(&proxy, "getValue", Qt::DirectConnection,
                                      QReturnArgument<QDBusReply<T>>(reading.replyType, value)));
    QVERIFY(value.isValid());
    QCOMPARE(value.value(), proxy.getValue().value());
    QCOMPARE(value.value(), reading.value);

    QDBusReply<QString> text;
    QVERIFY(
        QMetaObject::invokeMethod(&proxy, "getString", Qt::DirectConnection, Q_RETURN_ARG(QDBusReply<QString>, text)));
    QCOMPARE(text.value(), reading.text);

    QList<QVariant> composite;
    QVERIFY(QMetaObject::invokeMethod(&proxy, "getValueComp", Qt::DirectConnection,
                                      Q_RETURN_ARG(QList<QVariant>, composite)));
    QCOMPARE(composite, proxy.getValueComp());
    QCOMPARE(composite, reading.composite());

    if (!command)
        return;
    fake.answer(command, ScriptedAnswer::reply());
    QDBusReply<void> done;
    QVERIFY(QMetaObject::invokeMethod(&proxy, command, Qt::DirectConnection, Q_RETURN_ARG(QDBusReply<void>, done)));
    QVERIFY(done.isValid());
    QVERIFY(fake.waitForCalls(6));
    QCOMPARE(fake.calls().last().member, QString::fromLatin1(command));
}

/// None of @p names is a method of the class: each is unknown to the meta-object, cannot be
/// invoked, and sends nothing.
template<typename Proxy>
void verifyCannotBeFoundByName(FakeMeasApplication &fake, Proxy &proxy, const QString &path,
                               const QList<const char *> &names)
{
    const QMetaObject &meta = Proxy::staticMetaObject;

    LogCapture log;
    for (const char *name : names) {
        QCOMPARE(meta.indexOfMethod((QByteArray(name) + "()").constData()), -1);
        QVERIFY2(!QMetaObject::invokeMethod(&proxy, name, Qt::DirectConnection), name);
    }
    QCOMPARE(debugLinesOnly(log.lines()), QList<LogLine>());

    // Nothing went out: the next call is the first the application sees.
    fake.answer("getValue", ScriptedAnswer::reply());
    proxy.getValue();
    verifySingleCall(fake, path, "getValue", "", {});
}

// ---------------------------------------------------------------------------------------
// The meta-object

/// The class declares exactly @p expected, all slots, in that order, and nothing else.
inline void verifyOwnMethodsAreExactlyTheseSlots(const QMetaObject &meta, const QObject &proxy,
                                                 const QStringList &expected, int count)
{
    QCOMPARE(ownMethodSignatures(meta), expected);
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Slot), expected);
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Signal), QStringList());
    QCOMPARE(meta.methodCount() - meta.methodOffset(), count);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
    QCOMPARE(meta.classInfoCount(), meta.classInfoOffset());
    QCOMPARE(meta.superClass(), &QDBusAbstractInterface::staticMetaObject);
    QCOMPARE(proxy.metaObject(), &meta);
}

// ---------------------------------------------------------------------------------------
// The row classes

/// The columns of a checked getter's rows: what the application answers @p member, the
/// getter's plain result, and the exact lines it logs.
inline void addCheckedGetterColumns()
{
    QTest::addColumn<Getter>("getter");
    QTest::addColumn<QString>("member");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<QStringList>("lines");
}

/// The row's getter returns the row's result after one call and logs the row's lines.
inline void verifyCheckedGetter(FakeMeasApplication &fake, QDBusAbstractInterface &proxy)
{
    QFETCH(Getter, getter);
    QFETCH(QString, member);
    QFETCH(ScriptedAnswer, answer);
    QFETCH(QVariant, result);
    QFETCH(QStringList, lines);

    fake.answer(member, answer);
    LogCapture log;
    const QVariant value = getter(proxy);
    QCOMPARE(value.isValid(), result.isValid());
    QCOMPARE(value.userType(), result.userType());
    QCOMPARE(value, result);
    QCOMPARE(log.lines(), debugLines(lines));
    QCOMPARE(fake.callCount(), 1);
}

/// Each of @p stamps comes back as the application sent it, its Qt::TimeSpec included.
template<typename Proxy>
void verifyTimeStampsRoundTrip(FakeMeasApplication &fake, Proxy &proxy, const QList<QDateTime> &stamps)
{
    LogCapture log;
    for (const QDateTime &stamp : stamps) {
        fake.answer("getTimeStamp", ScriptedAnswer::value(stamp));
        const QDBusReply<QDateTime> reply = proxy.getTimeStamp();
        QVERIFY(reply.isValid());
        QCOMPARE(reply.value(), stamp);
        QCOMPARE(reply.value().timeSpec(), stamp.timeSpec());
    }
    QCOMPARE(log.lines(), QList<LogLine>());
}

/**
 * On a proxy of an absent service each of @p checked gives its empty result and logs one
 * line, in order, quoting QtDBus's message; each of @p generated then fails silently.
 */
template<typename Proxy>
void verifyAbsentServiceGivesNothingAndOneReportPerCheckedGetter(const QString &path,
                                                                 const QList<AbsentReport> &checked,
                                                                 const QList<GeneratedGetter> &generated)
{
    LogCapture log;
    Proxy proxy(absentService(), path, QDBusConnection::sessionBus());

    QStringList expected;
    for (const AbsentReport &getter : checked) {
        QVERIFY2(getter.givesNothing(proxy), getter.opening);
        QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
        QVERIFY(proxy.lastError().message().contains(absentService()));
        expected.append(
            reportLine(QString::fromLatin1(getter.opening), absentService(), path, proxy.lastError().message()));
    }
    QCOMPARE(log.lines(), debugLines(expected));

    log.clear();
    for (const GeneratedGetter &getter : generated) {
        verifyFailedWithoutTheService(proxy, getter.operation, getter.failed);
        if (QTest::currentTestFailed())
            return;
    }
    QCOMPARE(log.lines(), QList<LogLine>());
}

} // namespace ResultTest

#endif
