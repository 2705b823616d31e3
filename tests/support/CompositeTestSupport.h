#ifndef TESTS_COMPOSITETESTSUPPORT_H
#define TESTS_COMPOSITETESTSUPPORT_H

// Checks shared by the tests of the array, map, map list, map of maps, threshold manager and
// storage elements proxies. Each test states its class as tables (operations with the call
// they send, replies, checked getters with the line they log, signatures); these run them.
// Log lines, wire forms, signatures and values all come from the tables in the test files.

#include "DBusCompat_p.h"
#include "DBusTypes.h"
#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"
#include "WireText.h"

#include <QDBusAbstractInterface>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusReply>
#include <QDBusVariant>
#include <QList>
#include <QMetaMethod>
#include <QMetaObject>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QtTest/QTest>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

// Table rows hold operations of any proxy class in these forms.

// ---- fixture ----------------------------------------------------------------------------

// ---- plain values -------------------------------------------------------------------------

inline QVariant wrappedValue(const QVariant &value)
{
    return QVariant::fromValue(QDBusVariant(value));
}

/// An a{sv} with @p entries in this order, repeated keys included, as only a peer can send it.
inline QDBusArgument settingsMapArgument(const QList<QPair<QString, QVariant>> &entries)
{
    QDBusArgument argument;
    argument.beginMap(QMetaType::QString, qMetaTypeId<QDBusVariant>());
    for (const auto &entry : entries) {
        argument.beginMapEntry();
        argument << entry.first << QDBusVariant(entry.second);
        argument.endMapEntry();
    }
    argument.endMap();
    return argument;
}

/**
 * @p get reads a map that the application answers to @p member with @p entries, in this
 * order, some keys repeated. The result is what QMap makes of them: Qt 5's keeps every entry
 * of a repeated key, Qt 6's the later one; so the expectation is built by the insertion the
 * reader uses. Nothing is logged.
 */
inline void verifyRepeatedKeysKeptAsQMapDoes(FakeMeasApplication &fake, const QString &member,
                                             const std::function<SettingsMap()> &get,
                                             const QList<QPair<QString, QVariant>> &entries)
{
    fake.answer(member, ScriptedAnswer::value(QVariant::fromValue(settingsMapArgument(entries))));
    SettingsMap expected;
    SettingsMap lastValues;
    for (const auto &entry : entries) {
        DBusCompat::insertMulti(expected, entry.first, entry.second);
        lastValues.insert(entry.first, entry.second);
    }

    LogCapture log;
    const SettingsMap map = get();

    QCOMPARE(map, expected);
    for (auto last = lastValues.constBegin(); last != lastValues.constEnd(); ++last) {
        QCOMPARE(map.count(last.key()), expected.count(last.key()));
        QCOMPARE(map.value(last.key()), last.value());
    }
    QCOMPARE(log.lines(), QList<LogLine>());
}

// ---- wire form ----------------------------------------------------------------------------

/**
 * An operation and the one call it sends: member, signature and arguments, these as wire
 * texts (QStringList, see WireText.h) or as the values the application receives (QList<QVariant>).
 */
template<typename Proxy, typename Arguments = QStringList>
struct WireRow
{
    const char *name;
    std::function<void(Proxy &)> call;
    QString member;
    QString signature;
    Arguments arguments;
};

template<typename Proxy, typename Arguments = QStringList>
void addWireRows(const std::vector<WireRow<Proxy, Arguments>> &rows)
{
    QTest::addColumn<OperationRow>("row");
    for (const auto &wire : rows) {
        OperationRow row{.operation = wire.name,
                         .run = onProxy<Proxy>(wire.call),
                         .member = wire.member,
                         .signature = wire.signature};
        if constexpr (std::is_same_v<Arguments, QStringList>)
            row.wireArguments = wire.arguments;
        else
            row.arguments = wire.arguments;
        QTest::newRow(wire.name) << row;
    }
}

/// Runs the current row of addWireRows() and compares the call the application received.
inline void verifyWireRow(FakeMeasApplication &fake, QDBusAbstractInterface &proxy)
{
    QFETCH(OperationRow, row);
    verifySentAsItsRow(fake, proxy, row);
}

// ---- replies ------------------------------------------------------------------------------

/// Rows of what each operation makes of an answer: whether the caller sees it valid, and the value.
template<typename Proxy>
class ReplyTable
{
public:
    using Call = std::function<Seen(Proxy &)>;

    /// Adds the columns; @p error is what the application answers in every "error" row, and
    /// @p log says whether the rows may log.
    explicit ReplyTable(const ScriptedAnswer &error, LogCheck log = LogCheck::Unchecked)
        : m_error(error)
        , m_log(log)
    {
        addMappedReplyColumns();
    }

    /// An operation that hands back its reply: valid with @p good when answered so; invalid,
    /// with @p defaultValue, on an error, on @p wrongType and on a return without a value.
    void reply(const char *name, const char *member, const Call &call, const QVariant &good, const QVariant &wrongType,
               const QVariant &defaultValue)
    {
        row(name, "answered", member, call, ScriptedAnswer::value(good), true, good);
        row(name, "error", member, call, m_error, false, defaultValue);
        row(name, "wrong type", member, call, ScriptedAnswer::value(wrongType), false, defaultValue);
        row(name, "empty return", member, call, ScriptedAnswer::reply(), false, defaultValue);
    }

    void reply(const char *member, const Call &call, const QVariant &good, const QVariant &wrongType,
               const QVariant &defaultValue)
    {
        reply(member, member, call, good, wrongType, defaultValue);
    }

    /// A checked getter (see seenOf()): @p good from @p answered; @p empty on an error,
    /// on @p wrongType and on a return without a value.
    void checked(const char *name, const char *member, const Call &call, const QVariant &answered, const QVariant &good,
                 const QVariant &wrongType, const QVariant &empty)
    {
        row(name, "answered", member, call, ScriptedAnswer::value(answered), true, good);
        row(name, "error", member, call, m_error, false, empty);
        row(name, "wrong type", member, call, ScriptedAnswer::value(wrongType), false, empty);
        row(name, "no value", member, call, ScriptedAnswer::reply(), false, empty);
    }

    void row(const char *name, const char *kind, const char *member, const Call &call, const ScriptedAnswer &answer,
             bool valid, const QVariant &value)
    {
        addMappedReplyRow(QByteArray(name) + ' ' + kind, onProxy<Proxy>(call), QString::fromLatin1(member), answer,
                          valid, value, m_log);
    }

    /// The error of the "error" rows.
    const ScriptedAnswer &error() const { return m_error; }

private:
    ScriptedAnswer m_error;
    LogCheck m_log;
};

/// An operation called on a proxy of a service nobody owns, and the value its caller gets.
template<typename Proxy>
struct AbsentRow
{
    const char *name;
    std::function<Seen(Proxy &)> call;
    QVariant empty;
};

template<typename Proxy>
void addAbsentRows(const std::vector<AbsentRow<Proxy>> &rows)
{
    QTest::addColumn<ProxyOperation>("call");
    QTest::addColumn<QVariant>("empty");
    for (const auto &row : rows)
        QTest::newRow(row.name) << onProxy<Proxy>(row.call) << row.empty;
}

/// The current row of addAbsentRows() fails: an invalid reply with the empty value, the bus's
/// ServiceUnknown error in the reply (if there is one) and in lastError().
template<typename Proxy>
void verifyAbsentRow(const QString &path, LogCheck logging = LogCheck::Unchecked)
{
    QFETCH(ProxyOperation, call);
    QFETCH(QVariant, empty);

    LogCapture log;
    Proxy proxy(absentService(), path, QDBusConnection::sessionBus());
    const Seen seen = call(proxy);

    QVERIFY(!seen.valid);
    QCOMPARE(seen.value.userType(), empty.userType());
    QCOMPARE(seen.value, empty);
    if (seen.error) {
        QCOMPARE(seen.error->type(), QDBusError::ServiceUnknown);
        QVERIFY(seen.error->message().contains(absentService()));
    }
    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
    QVERIFY(proxy.lastError().message().contains(absentService()));
    if (logging == LogCheck::Nothing)
        QCOMPARE(log.lines(), QList<LogLine>());
}

// ---- checked getters and their log lines --------------------------------------------------

/**
 * A getter that checks its reply: on a failure it hands back @p empty and logs one line.
 * @p line is that line to the letter, with %1 for the quoted service and %2 for the quoted
 * error message. @p wrongType is an answer of the wrong type, @p typeError QtDBus's message for it.
 */
template<typename Proxy>
struct CheckedGetter
{
    const char *name;
    QString member;
    std::function<QVariant(Proxy &)> get;
    QVariant empty;
    QString line;
    QVariant wrongType = QVariant();
    QString typeError = QString();
};

/**
 * @p get fails on @p answer to @p member: it hands back @p empty and logs exactly @p line,
 * filled in with the application's service and @p quotedMessage. The application is the
 * default fake one.
 */
inline void verifyLoggedFailure(FakeMeasApplication &fake, QDBusAbstractInterface &proxy, const ProxyOperation &get,
                                const QString &member, const QVariant &empty, const QString &line,
                                const ScriptedAnswer &answer, const QString &quotedMessage)
{
    QCOMPARE(fake.service(), FakeMeasApplication::serviceFor(QStringLiteral("fake")));
    QVERIFY(quotedMessage.size() > 2);
    LogCapture log;
    fake.answer(member, answer);

    const QVariant value = get(proxy).value;

    QCOMPARE(value.userType(), empty.userType());
    QCOMPARE(value, empty);
    QCOMPARE(log.lines(), debugLines({line.arg(quoted(fake.service()), quotedMessage)}));
}

template<typename Proxy>
void verifyLoggedFailure(FakeMeasApplication &fake, Proxy &proxy, const CheckedGetter<Proxy> &get,
                         const ScriptedAnswer &answer, const QString &quotedMessage)
{
    verifyLoggedFailure(fake, proxy, onProxy<Proxy>(get.get), get.member, get.empty, get.line, answer, quotedMessage);
}

/// @p get on a proxy of a service nobody owns: @p empty, ServiceUnknown, and @p line.
template<typename Proxy>
void verifyLoggedFailureWhenTheServiceIsAbsent(const QString &path, const ProxyOperation &get, const QVariant &empty,
                                               const QString &line)
{
    LogCapture log;
    Proxy proxy(absentService(), path, QDBusConnection::sessionBus());

    const QVariant value = get(proxy).value;

    QCOMPARE(value.userType(), empty.userType());
    QCOMPARE(value, empty);
    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
    const QString message = proxy.lastError().message();
    QVERIFY(message.contains(absentService()));
    QCOMPARE(log.lines(),
             debugLines({line.arg(quoted(absentService()), QLatin1Char('"') + message + QLatin1Char('"'))}));
}

template<typename Proxy>
void verifyLoggedFailureWhenTheServiceIsAbsent(const QString &path, const CheckedGetter<Proxy> &get)
{
    verifyLoggedFailureWhenTheServiceIsAbsent<Proxy>(path, onProxy<Proxy>(get.get), get.empty, get.line);
}

/// Per getter, a row per error in @p errors (named @p errorName) and one for its wrong-typed answer.
template<typename Proxy>
void addLoggedFailureRows(const std::vector<CheckedGetter<Proxy>> &getters, const QString &errorName,
                          const std::vector<LoggedError> &errors)
{
    QTest::addColumn<ProxyOperation>("getter");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QVariant>("empty");
    QTest::addColumn<QString>("line");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<QString>("quotedMessage");
    for (const auto &get : getters) {
        const auto row = [&](const char *kind, const ScriptedAnswer &answer, const QString &quoted) {
            QTest::addRow("%s %s", get.name, kind)
                << onProxy<Proxy>(get.get) << get.member << get.empty << get.line << answer << quoted;
        };
        for (const LoggedError &error : errors)
            row(error.name, ScriptedAnswer::error(errorName, error.message), error.quoted);
        QVERIFY(!get.typeError.isEmpty());
        row("wrong type", ScriptedAnswer::value(get.wrongType), quoted(get.typeError));
    }
}

/// Runs the current row of addLoggedFailureRows().
inline void verifyLoggedFailureRow(FakeMeasApplication &fake, QDBusAbstractInterface &proxy)
{
    QFETCH(ProxyOperation, getter);
    QFETCH(QString, member);
    QFETCH(QVariant, empty);
    QFETCH(QString, line);
    QFETCH(ScriptedAnswer, answer);
    QFETCH(QString, quotedMessage);

    verifyLoggedFailure(fake, proxy, getter, member, empty, line, answer, quotedMessage);
}

/// A row per getter, for a proxy of a service nobody owns.
template<typename Proxy>
void addLoggedAbsentRows(const std::vector<CheckedGetter<Proxy>> &getters)
{
    QTest::addColumn<ProxyOperation>("getter");
    QTest::addColumn<QVariant>("empty");
    QTest::addColumn<QString>("line");
    for (const auto &get : getters)
        QTest::newRow(get.name) << onProxy<Proxy>(get.get) << get.empty << get.line;
}

/// Runs the current row of addLoggedAbsentRows().
template<typename Proxy>
void verifyLoggedAbsentRow(const QString &path)
{
    QFETCH(ProxyOperation, getter);
    QFETCH(QVariant, empty);
    QFETCH(QString, line);

    verifyLoggedFailureWhenTheServiceIsAbsent<Proxy>(path, getter, empty, line);
}

// ---- blocking and asynchronous calls ------------------------------------------------------

/// setToDefault() waits for the answer: its error is in lastError() when it returns, and is not logged.
template<typename Proxy>
void verifySetToDefaultWaitsAndDropsTheAnswer(FakeMeasApplication &fake, Proxy &proxy, const QString &errorName,
                                              const QString &message)
{
    LogCapture log;
    fake.answer(QStringLiteral("setToDefault"), ScriptedAnswer::error(errorName, message));

    proxy.setToDefault();

    // Nothing was run in between: the call came back only once the application had answered.
    QCOMPARE(fake.callCount(), 1);
    QCOMPARE(proxy.lastError().name(), errorName);
    QCOMPARE(proxy.lastError().message(), message);
    QCOMPARE(log.lines(), QList<LogLine>());
}

/// A call that sends @p member with @p signature and does not wait for the answer.
template<typename Proxy>
struct AsyncCall
{
    std::function<void(Proxy &)> call;
    QString member;
    QString signature;
};

/// An operation that fails on an error answer to @p member, to leave an error in lastError().
template<typename Proxy>
struct EarlierFailure
{
    QString member;
    std::function<void(Proxy &)> call;
};

/**
 * The application never answers @p calls. Each returns at once and the application receives
 * them in order. lastError() keeps the earlier failure: a call that waited would return only
 * after its time-out, and leave that error there. Nothing is logged.
 */
template<typename Proxy>
void verifyAsyncCallsReturnAtOnce(FakeMeasApplication &fake, Proxy &proxy, const QString &path,
                                  const EarlierFailure<Proxy> &earlier, const std::vector<AsyncCall<Proxy>> &calls)
{
    const QString earlierMessage = QStringLiteral("earlier failure");
    LogCapture log;
    fake.answer(earlier.member, ScriptedAnswer::error(QStringLiteral("com.velk.mqx.Error.Failed"), earlierMessage));
    for (const auto &call : calls)
        fake.answer(call.member, ScriptedAnswer::silence());
    earlier.call(proxy);
    QCOMPARE(proxy.lastError().message(), earlierMessage);

    for (const auto &call : calls)
        call.call(proxy);

    const int expected = 1 + int(calls.size());
    QVERIFY(fake.waitForCalls(expected));
    QCOMPARE(fake.callCount(), expected);
    const QList<ReceivedCall> received = fake.calls();
    for (int i = 0; i < int(calls.size()); ++i) {
        QCOMPARE(received.at(i + 1).path, path);
        QCOMPARE(received.at(i + 1).interface, FakeMeasApplication::interfaceName);
        QCOMPARE(received.at(i + 1).member, calls.at(i).member);
        QCOMPARE(received.at(i + 1).signature, calls.at(i).signature);
    }
    QCOMPARE(proxy.lastError().message(), earlierMessage);
    QCOMPARE(log.lines(), QList<LogLine>());
}

/// @p calls to a service nobody owns return, leave lastError() as it was and log nothing.
template<typename Proxy>
void verifyAsyncCallsToAnAbsentServiceLogNothing(const QString &path, const std::function<void(Proxy &)> &calls)
{
    LogCapture log;
    Proxy proxy(absentService(), path, QDBusConnection::sessionBus());
    const QDBusError before = proxy.lastError();

    calls(proxy);

    QCOMPARE(proxy.lastError().type(), before.type());
    QCOMPARE(proxy.lastError().message(), before.message());
    QCOMPARE(log.lines(), QList<LogLine>());
}

// ---- meta-object --------------------------------------------------------------------------

/**
 * The class declares @p signalSignatures, then @p slotSignatures, in this order and nothing
 * else; it derives from QDBusAbstractInterface directly and adds no property, enumerator or
 * class info.
 */
template<typename Proxy>
void verifyOwnMethods(const Proxy &proxy, const QStringList &signalSignatures, const QStringList &slotSignatures)
{
    const QMetaObject &meta = Proxy::staticMetaObject;
    QCOMPARE(ownMethodSignatures(meta), signalSignatures + slotSignatures);
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Signal), signalSignatures);
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Slot), slotSignatures);
    QCOMPARE(meta.superClass(), &QDBusAbstractInterface::staticMetaObject);
    QCOMPARE(proxy.metaObject(), &meta);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
    QCOMPARE(meta.classInfoCount(), meta.classInfoOffset());
}

/// Each method (by signature) returns the type of that name.
template<typename Proxy>
void verifyReturnTypes(const QList<QPair<const char *, const char *>> &returnTypes)
{
    const QMetaObject &meta = Proxy::staticMetaObject;
    for (const auto &expected : returnTypes) {
        const int index = meta.indexOfMethod(expected.first);
        QVERIFY2(index >= meta.methodOffset(), expected.first);
        QCOMPARE(meta.method(index).typeName(), expected.second);
    }
}

/// A row per own method: its index after the base's, its signature and its kind.
inline void addMethodPlacementRows(const QStringList &signalSignatures, const QStringList &slotSignatures)
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<int>("type");
    int index = 0;
    for (const QString &signature : signalSignatures) {
        QTest::addRow("%d", index) << index << signature << int(QMetaMethod::Signal);
        ++index;
    }
    for (const QString &signature : slotSignatures) {
        QTest::addRow("%d", index) << index << signature << int(QMetaMethod::Slot);
        ++index;
    }
}

/// Runs the current row of addMethodPlacementRows(): the method at that index, found by its signature too.
template<typename Proxy>
void verifyMethodPlacementRow()
{
    QFETCH(int, index);
    QFETCH(QString, signature);
    QFETCH(int, type);

    const QMetaObject &meta = Proxy::staticMetaObject;
    const QMetaMethod method = meta.method(meta.methodOffset() + index);
    QCOMPARE(QString::fromLatin1(method.methodSignature()), signature);
    QCOMPARE(int(method.methodType()), type);
    QCOMPARE(meta.indexOfMethod(signature.toLatin1().constData()), meta.methodOffset() + index);
}

#endif
