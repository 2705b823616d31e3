#ifndef TESTS_SETUPTESTSUPPORT_H
#define TESTS_SETUPTESTSUPPORT_H

// Checks the tests of the scalar setup proxies share. Each test keeps what is its class's
// own (operations, wire members and signatures, answers, expected log lines) in tables and
// hands them to these checks.

#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"

#include <QDBusAbstractInterface>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusReply>
#include <QList>
#include <QMetaMethod>
#include <QMetaObject>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QtTest/QTest>

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

/// What a caller can see of a blocking call's reply, its error included.
struct ReplyState
{
    bool valid = false;
    QVariant value;
    QDBusError error;
};

template<typename T>
ReplyState stateOf(const QDBusReply<T> &reply)
{
    return {reply.isValid(), QVariant::fromValue(reply.value()), reply.error()};
}

inline ReplyState stateOf(const QDBusReply<void> &reply)
{
    return {reply.isValid(), QVariant(), reply.error()};
}

// A proxy's operation in a QTest data column. The columns hold the base type, so that one
// metatype serves every proxy; the tables hand in operations on their own proxy type.
using SetupAction = std::function<void(QDBusAbstractInterface &)>;
using SetupQuery = std::function<ReplyState(QDBusAbstractInterface &)>;
Q_DECLARE_METATYPE(SetupAction)
Q_DECLARE_METATYPE(SetupQuery)

template<typename Proxy>
SetupAction erasedAction(const std::function<void(Proxy &)> &action)
{
    return [action](QDBusAbstractInterface &proxy) { action(static_cast<Proxy &>(proxy)); };
}

template<typename Proxy>
SetupQuery erasedQuery(const std::function<ReplyState(Proxy &)> &query)
{
    return [query](QDBusAbstractInterface &proxy) { return query(static_cast<Proxy &>(proxy)); };
}

/// One message a proxy sends: what the test does, and what the fake must receive.
template<typename Proxy>
struct SentCall
{
    const char *name;
    std::function<void(Proxy &)> call;
    QString member;
    QString signature;
    QList<QVariant> arguments;
};

inline QStringList argumentTypeNames(const QList<QVariant> &arguments)
{
    QStringList names;
    for (const QVariant &argument : arguments)
        names.append(QString::fromLatin1(argument.typeName()));
    return names;
}

/// Compares one received call with the expected wire form.
inline void verifyReceivedCall(const ReceivedCall &call, const QString &path, const QString &member,
                               const QString &signature, const QList<QVariant> &arguments)
{
    QCOMPARE(call.path, path);
    QCOMPARE(call.interface, FakeMeasApplication::interfaceName);
    QCOMPARE(call.member, member);
    QCOMPARE(call.signature, signature);
    QCOMPARE(wireTexts(call.arguments), wireTexts(arguments));
    // An exact type check: QVariant would call an int argument equal to a double or a bool.
    QCOMPARE(argumentTypeNames(call.arguments), argumentTypeNames(arguments));
}

/// One blocking operation of a proxy and the answers its reply is judged by.
template<typename Proxy>
struct ReplyCase
{
    const char *name;
    QString member;
    std::function<ReplyState(Proxy &)> query;
    /// False for a void reply.
    bool carriesValue;
    /// A good answer, which comes back as it is; for a void reply, any answer it must accept.
    QVariant answered;
    /// A well-formed answer of another type, which makes the reply invalid.
    QVariant wrongType;
    /// What a failed reply carries.
    QVariant empty;
};

/// The blocking operations of one proxy class, named by their rows.
template<typename Proxy>
class ReplyTable
{
public:
    using Query = std::function<ReplyState(Proxy &)>;

    /// @p query's reply carries a value: @p answered comes back as it is, an answer of
    /// @p wrongType's type makes the reply invalid, and a failed reply carries @p empty.
    ReplyTable &value(const char *name, const QString &member, const QVariant &answered, const QVariant &wrongType,
                      const QVariant &empty, const Query &query)
    {
        m_cases.push_back({name, member, query, true, answered, wrongType, empty});
        return *this;
    }

    /// The same for an operation whose wire member is its name.
    ReplyTable &value(const char *name, const QVariant &answered, const QVariant &wrongType, const QVariant &empty,
                      const Query &query)
    {
        return value(name, QString::fromLatin1(name), answered, wrongType, empty, query);
    }

    /// @p query's void reply must accept any method return, @p anyAnswer among them.
    ReplyTable &voidReply(const char *name, const QVariant &anyAnswer, const Query &query)
    {
        m_cases.push_back({name, QString::fromLatin1(name), query, false, anyAnswer, QVariant(), QVariant()});
        return *this;
    }

    /// The row @p name; a name the table lacks is a mistake in the test.
    const ReplyCase<Proxy> &operator[](const char *name) const
    {
        for (const ReplyCase<Proxy> &replyCase : m_cases) {
            if (qstrcmp(replyCase.name, name) == 0)
                return replyCase;
        }
        qFatal("The reply table has no row %s", name);
    }

    /// The table without the rows @p names.
    ReplyTable without(const QList<const char *> &names) const
    {
        ReplyTable rest;
        for (const ReplyCase<Proxy> &replyCase : m_cases) {
            bool leftOut = false;
            for (const char *name : names)
                leftOut = leftOut || qstrcmp(replyCase.name, name) == 0;
            if (!leftOut)
                rest.m_cases.push_back(replyCase);
        }
        return rest;
    }

    const std::vector<ReplyCase<Proxy>> &cases() const { return m_cases; }

    /// Rows for SetupProxyFixture::verifyMappedReply: a value reply answered, refused and
    /// answered with the wrong type; a void reply answered without and with a value, and refused.
    void addMappingRows() const
    {
        QTest::addColumn<SetupQuery>("query");
        QTest::addColumn<QString>("member");
        QTest::addColumn<ScriptedAnswer>("answer");
        QTest::addColumn<bool>("valid");
        QTest::addColumn<QVariant>("value");

        const ScriptedAnswer error = ScriptedAnswer::error(failedErrorName(), QStringLiteral("refused"));
        for (const ReplyCase<Proxy> &c : m_cases) {
            const SetupQuery query = erasedQuery(c.query);
            if (c.carriesValue) {
                QTest::addRow("%s answered", c.name)
                    << query << c.member << ScriptedAnswer::value(c.answered) << true << c.answered;
                QTest::addRow("%s error", c.name) << query << c.member << error << false << c.empty;
                QTest::addRow("%s wrong type", c.name)
                    << query << c.member << ScriptedAnswer::value(c.wrongType) << false << c.empty;
            } else {
                // A void reply accepts any method return and only fails on an error.
                QTest::addRow("%s answered", c.name)
                    << query << c.member << ScriptedAnswer::reply() << true << QVariant();
                QTest::addRow("%s answered with a value", c.name)
                    << query << c.member << ScriptedAnswer::value(c.answered) << true << QVariant();
                QTest::addRow("%s error", c.name) << query << c.member << error << false << QVariant();
            }
        }
    }

    /// One more row after addMappingRows(), for the operation of row @p caseName.
    void addMappingRow(const char *rowName, const char *caseName, const ScriptedAnswer &answer, bool valid,
                       const QVariant &value) const
    {
        const ReplyCase<Proxy> &c = (*this)[caseName];
        QTest::newRow(rowName) << erasedQuery(c.query) << c.member << answer << valid << value;
    }

    /// Rows for SetupProxyFixture::verifyInvalidReplyFromAbsentService.
    void addAbsentServiceRows() const
    {
        QTest::addColumn<SetupQuery>("query");
        QTest::addColumn<QVariant>("empty");

        for (const ReplyCase<Proxy> &c : m_cases)
            QTest::newRow(c.name) << erasedQuery(c.query) << c.empty;
    }

private:
    std::vector<ReplyCase<Proxy>> m_cases;
};

/**
 * The fake application and a proxy on it for each test function, and the checks that need
 * them. A test class derives from it beside QObject and starts it in init().
 */
template<typename Proxy>
class SetupProxyFixture : protected ProxyFixture<Proxy>
{
protected:
    using Action = std::function<void(Proxy &)>;
    using Sent = SentCall<Proxy>;
    using Replies = ReplyTable<Proxy>;
    using Reply = ReplyCase<Proxy>;

    using ProxyFixture<Proxy>::m_fake;
    using ProxyFixture<Proxy>::m_proxy;

    void startFakeAndProxy(const QString &path)
    {
        m_path = path;
        ProxyFixture<Proxy>::startFakeAndProxy(path);
    }

    /// Rows for verifyWireForm().
    static void addWireFormRows(const std::vector<Sent> &calls)
    {
        QTest::addColumn<SetupAction>("action");
        QTest::addColumn<QString>("member");
        QTest::addColumn<QString>("signature");
        QTest::addColumn<QList<QVariant>>("arguments");

        for (const Sent &sent : calls)
            QTest::newRow(sent.name) << erasedAction(sent.call) << sent.member << sent.signature << sent.arguments;
    }

    /// The row's action sends exactly the row's message.
    void verifyWireForm()
    {
        QFETCH(SetupAction, action);
        QFETCH(QString, member);
        QFETCH(QString, signature);
        QFETCH(QList<QVariant>, arguments);

        // Getters that log on an empty answer are judged elsewhere.
        LogCapture log;
        m_fake->answer(member, ScriptedAnswer::reply());
        action(*m_proxy);

        QVERIFY(m_fake->waitForCalls(1));
        const QList<ReceivedCall> calls = m_fake->calls();
        QCOMPARE(calls.size(), 1);
        verifyReceivedCall(calls.first(), m_path, member, signature, arguments);
    }

    /// The row's query, answered as the row says, gives the row's validity and value.
    void verifyMappedReply(LogCheck logging)
    {
        QFETCH(SetupQuery, query);
        QFETCH(QString, member);
        QFETCH(ScriptedAnswer, answer);
        QFETCH(bool, valid);
        QFETCH(QVariant, value);

        LogCapture log;
        m_fake->answer(member, answer);
        const ReplyState reply = query(*m_proxy);
        QCOMPARE(reply.valid, valid);
        QCOMPARE(reply.value, value);
        QCOMPARE(reply.value.userType(), value.userType());
        if (logging == LogCheck::Nothing)
            QCOMPARE(log.lines(), QList<LogLine>());
    }

    /// The row's query to a service nobody owns gives an invalid reply with the empty value.
    void verifyInvalidReplyFromAbsentService()
    {
        QFETCH(SetupQuery, query);
        QFETCH(QVariant, empty);

        // Checked getters log here; their lines are judged elsewhere.
        LogCapture log;
        Proxy proxy(absentService(), m_path, QDBusConnection::sessionBus());
        const ReplyState reply = query(proxy);
        QVERIFY(!reply.valid);
        QCOMPARE(reply.value, empty);
        QCOMPARE(reply.value.userType(), empty.userType());
        QCOMPARE(reply.error.type(), QDBusError::ServiceUnknown);
    }

    /// @p reply, refused with @p message, gives an invalid empty reply and writes @p lines.
    void verifyErrorReplyLogs(const Reply &reply, const QString &message, const QList<LogLine> &lines)
    {
        LogCapture log;
        m_fake->answer(reply.member, ScriptedAnswer::error(failedErrorName(), message));

        const ReplyState state = reply.query(*m_proxy);

        QVERIFY(!state.valid);
        QCOMPARE(state.value, reply.empty);
        QCOMPARE(state.error.name(), failedErrorName());
        QCOMPARE(state.error.message(), message);
        QCOMPARE(log.lines(), lines);
    }

    /// @p reply to a service nobody owns writes the lines @p lines makes of QtDBus's message.
    void verifyAbsentServiceLogs(const Reply &reply, const std::function<QList<LogLine>(const QString &)> &lines)
    {
        LogCapture log;
        Proxy proxy(absentService(), m_path, QDBusConnection::sessionBus());

        const ReplyState state = reply.query(proxy);

        QVERIFY(!state.valid);
        QCOMPARE(state.value, reply.empty);
        QCOMPARE(state.error.type(), QDBusError::ServiceUnknown);
        const QString message = state.error.message();
        QVERIFY(message.contains(absentService()));
        QCOMPARE(log.lines(), lines(message));
    }

    /// @p reply, answered with @p wrongAnswer, is invalid but leaves lastError() unset and logs nothing.
    void verifyWrongTypedReplyLogsNothing(const Reply &reply, const QVariant &wrongAnswer)
    {
        LogCapture log;
        m_fake->answer(reply.member, ScriptedAnswer::value(wrongAnswer));

        const ReplyState state = reply.query(*m_proxy);

        QVERIFY(!state.valid);
        QCOMPARE(state.error.type(), QDBusError::InvalidSignature);
        QCOMPARE(state.value, reply.empty);
        QVERIFY(!m_proxy->lastError().isValid());
        QCOMPARE(log.lines(), QList<LogLine>());
    }

    /// Each of @p replies, refused by the application, is invalid and logs nothing.
    void verifyErrorRepliesLogNothing(const Replies &replies)
    {
        LogCapture log;
        for (const Reply &reply : replies.cases())
            m_fake->answer(reply.member, ScriptedAnswer::error(failedErrorName(), QStringLiteral("refused")));

        for (const Reply &reply : replies.cases())
            QVERIFY(!reply.query(*m_proxy).valid);

        QCOMPARE(m_fake->callCount(), int(replies.cases().size()));
        QCOMPARE(log.lines(), QList<LogLine>());
    }

    /// Every one of @p replies, @p asyncCalls and @p more to a service nobody owns logs nothing.
    void verifyNothingLoggedWithAbsentService(const Replies &replies, const std::vector<Sent> &asyncCalls,
                                              const std::vector<Action> &more = {})
    {
        LogCapture log;
        Proxy proxy(absentService(), m_path, QDBusConnection::sessionBus());

        for (const Reply &reply : replies.cases())
            reply.query(proxy);
        for (const Sent &sent : asyncCalls)
            sent.call(proxy);
        for (const Action &action : more)
            action(proxy);

        QCOMPARE(log.lines(), QList<LogLine>());
    }

    /**
     * @p asyncCalls return at once: the application never answers them, so calls that waited
     * would not come back in time for the fake to see them all. They leave the lastError()
     * that @p failingCall, which the application refuses, has set, and log nothing.
     */
    void verifyAsyncCallsReturnAtOnce(const Sent &failingCall, const std::vector<Sent> &asyncCalls)
    {
        m_fake->answer(failingCall.member, ScriptedAnswer::error(failedErrorName(), QStringLiteral("earlier failure")));
        for (const Sent &sent : asyncCalls)
            m_fake->answer(sent.member, ScriptedAnswer::silence());
        {
            // What the refused call logs is judged elsewhere.
            LogCapture earlierLog;
            failingCall.call(*m_proxy);
        }
        QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));

        LogCapture log;
        for (const Sent &sent : asyncCalls)
            sent.call(*m_proxy);

        const int expectedCalls = 1 + int(asyncCalls.size());
        QVERIFY(m_fake->waitForCalls(expectedCalls));
        const QList<ReceivedCall> calls = m_fake->calls();
        QCOMPARE(calls.size(), expectedCalls);
        verifyReceivedCall(calls.at(0), m_path, failingCall.member, failingCall.signature, failingCall.arguments);
        for (std::size_t i = 0; i < asyncCalls.size() && !QTest::currentTestFailed(); ++i) {
            const Sent &sent = asyncCalls.at(i);
            verifyReceivedCall(calls.at(int(i) + 1), m_path, sent.member, sent.signature, sent.arguments);
        }
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));
        QCOMPARE(log.lines(), QList<LogLine>());
    }

    /// @p asyncCalls to a service nobody owns leave lastError() as it was and log nothing.
    void verifyAsyncCallsToAnAbsentServiceShowNothing(const std::vector<Sent> &asyncCalls)
    {
        LogCapture log;
        Proxy proxy(absentService(), m_path, QDBusConnection::sessionBus());
        const QDBusError before = proxy.lastError();

        for (const Sent &sent : asyncCalls)
            sent.call(proxy);

        QCOMPARE(proxy.lastError().type(), before.type());
        QCOMPARE(proxy.lastError().message(), before.message());
        QCOMPARE(log.lines(), QList<LogLine>());
    }

    /// The class's own methods, signals first, each with its return type, on top of the base.
    void verifyOwnMethods(const QStringList &signatures, const QStringList &signalSignatures,
                          const QStringList &returnTypes)
    {
        const QMetaObject &meta = Proxy::staticMetaObject;
        QCOMPARE(ownMethodSignatures(meta), signatures);
        QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Signal), signalSignatures);
        QCOMPARE(ownMethodReturnTypes(meta), returnTypes);
        QCOMPARE(meta.superClass(), &QDBusAbstractInterface::staticMetaObject);
        QCOMPARE(m_proxy->metaObject(), &meta);
    }

    /// verifyMetaCast, and @p otherNames (near misses, other classes) are not the class.
    void verifyMetaCastOf(const char *className, const QList<const char *> &otherNames)
    {
        verifyMetaCast(*m_proxy, className);
        if (QTest::currentTestFailed())
            return;
        for (const char *name : otherNames)
            QCOMPARE(m_proxy->qt_metacast(name), nullptr);
    }

    QString m_path;
};

#endif
