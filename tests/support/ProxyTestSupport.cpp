#include "ProxyTestSupport.h"

#include "DBusCompat_p.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusVariant>

void verifyConstructionContract(const ProxyFactory &make, FakeMeasApplication &fake, const QString &path)
{
    LogCapture log;
    auto parent = std::make_unique<QObject>();
    fake.clearCalls();

    QPointer<QDBusAbstractInterface> proxy = make(fake.service(), path, parent.get());

    QCOMPARE(proxy->parent(), parent.get());
    QCOMPARE(proxy->service(), fake.service());
    QCOMPARE(proxy->path(), path);
    QCOMPARE(proxy->interface(), FakeMeasApplication::interfaceName);
    QVERIFY(!proxy->lastError().isValid());
    // A message sent at construction would have reached the fake before this round trip ends.
    syncWithBus(proxy->connection());
    QCOMPARE(fake.callCount(), 0);
    QCOMPARE(log.lines(), QList<LogLine>());

    parent.reset();
    QVERIFY(proxy.isNull());
}

void verifySignalRelay(QDBusAbstractInterface &proxy, FakeMeasApplication &fake, const char *qtSignal,
                       const QString &member, const QList<QVariant> &arguments)
{
    const QString path = proxy.path();
    DeliveryCounter deliveries(&proxy);
    {
        QSignalSpy spy(&proxy, qtSignal);
        QVERIFY(spy.isValid());
        syncWithBus(proxy.connection());

        // Sent before the proxy's own signal: by the time that one arrives these have been
        // dropped, or they would stand before it in the spy.
        fake.emitSignal(path + QStringLiteral("/Other"), member, arguments);
        fake.emitSignal(path, member, arguments, QStringLiteral("com.velk.mqx.OtherInterface"));
        fake.emitForeignSignal(path, member, arguments);
        fake.emitSignal(path, member, arguments);

        QVERIFY(spy.wait(5000));
        QCOMPARE(spy.count(), 1);
        QCOMPARE(wireTexts(spy.first()), wireTexts(arguments));
        QCOMPARE(deliveries.count(), 1);
    }

    // The spy was the last receiver; QtDBus drops the subscription from the event loop.
    QCoreApplication::sendPostedEvents();
    syncWithBus(proxy.connection());
    const int deliveredBefore = deliveries.count();

    // The witness keeps the bus delivering the signal to this connection, but the proxy
    // must no longer relay it.
    BusSignalWitness witness(proxy.connection(), proxy.service(), path, proxy.interface(), member);
    fake.emitSignal(path, member, arguments);
    QTRY_COMPARE(witness.count(), 1);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(deliveries.count(), deliveredBefore);
}

namespace {

QStringList argumentTypeNames(const QList<QVariant> &arguments)
{
    QStringList names;
    for (const QVariant &argument : arguments)
        names.append(QString::fromLatin1(argument.typeName()));
    return names;
}

} // namespace

void verifyMetaCast(QDBusAbstractInterface &proxy, const char *className, const QList<const char *> &otherNames)
{
    QCOMPARE(proxy.qt_metacast(className), static_cast<void *>(&proxy));
    QCOMPARE(proxy.qt_metacast("QDBusAbstractInterface"), static_cast<void *>(&proxy));
    QCOMPARE(proxy.qt_metacast("QObject"), static_cast<void *>(static_cast<QObject *>(&proxy)));
    QCOMPARE(proxy.qt_metacast(nullptr), nullptr);
    QCOMPARE(proxy.qt_metacast("NoSuchInterface"), nullptr);
    for (const char *name : otherNames)
        QCOMPARE(proxy.qt_metacast(name), nullptr);
}

void verifyReceivedCall(const ReceivedCall &call, const QString &path, const OperationRow &row)
{
    QCOMPARE(call.path, path);
    QCOMPARE(call.interface, FakeMeasApplication::interfaceName);
    QCOMPARE(call.member, row.wireMember());
    QCOMPARE(call.signature, row.signature);
    if (!row.wireArguments.isEmpty()) {
        QCOMPARE(wireTexts(call.arguments), row.wireArguments);
        return;
    }
    QCOMPARE(wireTexts(call.arguments), wireTexts(row.arguments));
    // The Qt types as they arrive: a D-Bus variant stays a QDBusVariant.
    QCOMPARE(argumentTypeNames(call.arguments), argumentTypeNames(row.arguments));
}

void verifySentAsItsRow(FakeMeasApplication &fake, QDBusAbstractInterface &proxy, const OperationRow &row)
{
    // Getters that log on an empty answer are judged elsewhere.
    LogCapture log;
    fake.answer(row.wireMember(), ScriptedAnswer::reply());
    row.run(proxy);

    QVERIFY(fake.waitForCalls(1));
    const QList<ReceivedCall> calls = fake.calls();
    QCOMPARE(calls.size(), 1);
    verifyReceivedCall(calls.first(), proxy.path(), row);
}

void verifySentAsItsRow(FakeMeasApplication &fake, QDBusAbstractInterface &proxy)
{
    QFETCH(OperationRow, row);
    verifySentAsItsRow(fake, proxy, row);
}

void verifyAsyncCallsReturnAtOnce(FakeMeasApplication &fake, QDBusAbstractInterface &proxy,
                                  const OperationRow &failingCall, const QList<OperationRow> &asyncs)
{
    fake.answer(failingCall.wireMember(), ScriptedAnswer::error(failedErrorName(), QStringLiteral("earlier failure")));
    for (const OperationRow &row : asyncs)
        fake.answer(row.wireMember(), ScriptedAnswer::silence());
    {
        // What the refused call logs is judged elsewhere.
        LogCapture earlierLog;
        failingCall.run(proxy);
    }
    QCOMPARE(proxy.lastError().message(), QStringLiteral("earlier failure"));

    LogCapture log;
    for (const OperationRow &row : asyncs)
        row.run(proxy);

    const int expectedCalls = 1 + int(asyncs.size());
    QVERIFY(fake.waitForCalls(expectedCalls));
    const QList<ReceivedCall> calls = fake.calls();
    QCOMPARE(calls.size(), expectedCalls);
    verifyReceivedCall(calls.at(0), proxy.path(), failingCall);
    for (int i = 0; i < asyncs.size() && !QTest::currentTestFailed(); ++i)
        verifyReceivedCall(calls.at(i + 1), proxy.path(), asyncs.at(i));
    if (QTest::currentTestFailed())
        return;
    QCOMPARE(proxy.lastError().message(), QStringLiteral("earlier failure"));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void verifyAsyncCallsShowNothing(QDBusAbstractInterface &absent, const QList<OperationRow> &asyncs)
{
    LogCapture log;
    const QDBusError before = absent.lastError();

    for (const OperationRow &row : asyncs)
        row.run(absent);

    QCOMPARE(absent.lastError().type(), before.type());
    QCOMPARE(absent.lastError().message(), before.message());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void addMappedReplyColumns()
{
    QTest::addColumn<ProxyOperation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<LogCheck>("log");
}

void addMappedReplyRow(const QByteArray &tag, const ProxyOperation &operation, const QString &member,
                       const ScriptedAnswer &answer, bool valid, const QVariant &value, LogCheck log)
{
    QTest::newRow(tag.constData()) << operation << member << answer << valid << value << log;
}

void addMappedReplyRows(const QByteArray &prefix, const OperationRow &row, LogCheck errorLogs,
                        LogCheck otherFailureLogs)
{
    const QString member = row.wireMember();
    const ScriptedAnswer error = ScriptedAnswer::error(failedErrorName(), QStringLiteral("refused"));
    const QVariant seen = row.seen.isValid() ? row.seen : row.answered;
    addMappedReplyRow(prefix + "answered", row.run, member, ScriptedAnswer::value(row.answered), true, seen);
    addMappedReplyRow(prefix + "error reply", row.run, member, error, false, row.empty, errorLogs);
    addMappedReplyRow(prefix + "wrong type", row.run, member, ScriptedAnswer::value(row.wrongType), false, row.empty,
                      otherFailureLogs);
    addMappedReplyRow(prefix + "empty return", row.run, member, ScriptedAnswer::reply(), false, row.empty,
                      otherFailureLogs);
}

void addMappedVoidReplyRows(const QByteArray &prefix, const OperationRow &row)
{
    const QString member = row.wireMember();
    const ScriptedAnswer error = ScriptedAnswer::error(failedErrorName(), QStringLiteral("refused"));
    addMappedReplyRow(prefix + "answered", row.run, member, ScriptedAnswer::reply(), true, QVariant());
    addMappedReplyRow(prefix + "answered with a value", row.run, member, ScriptedAnswer::value(row.answered), true,
                      QVariant());
    addMappedReplyRow(prefix + "error reply", row.run, member, error, false, QVariant());
}

void verifyMappedReply(FakeMeasApplication &fake, QDBusAbstractInterface &proxy)
{
    QFETCH(ProxyOperation, operation);
    QFETCH(QString, member);
    QFETCH(ScriptedAnswer, answer);
    QFETCH(bool, valid);
    QFETCH(QVariant, value);
    QFETCH(LogCheck, log);

    LogCapture capture;
    fake.answer(member, answer);
    const Seen seen = operation(proxy);
    QCOMPARE(seen.valid, valid);
    QCOMPARE(seen.value.userType(), value.userType());
    QCOMPARE(seen.value, value);
    if (log == LogCheck::Nothing)
        QCOMPARE(capture.lines(), QList<LogLine>());
}

void addOperationRows(const QList<OperationRow> &rows)
{
    QTest::addColumn<OperationRow>("row");
    for (const OperationRow &row : rows)
        QTest::newRow(row.operation) << row;
}

void verifyFailsWhenTheServiceIsAbsent(const ProxyFactory &make, const QString &path, LogCheck logCheck)
{
    QFETCH(OperationRow, row);

    LogCapture log;
    const std::unique_ptr<QDBusAbstractInterface> proxy(make(absentService(), path, nullptr));
    const Seen seen = row.run(*proxy);

    QVERIFY(!seen.valid);
    QCOMPARE(seen.value.userType(), row.empty.userType());
    QCOMPARE(seen.value, row.empty);
    if (seen.error) {
        QCOMPARE(seen.error->type(), QDBusError::ServiceUnknown);
        QVERIFY(seen.error->message().contains(absentService()));
    }
    QCOMPARE(proxy->lastError().type(), QDBusError::ServiceUnknown);
    QVERIFY(proxy->lastError().message().contains(absentService()));
    if (logCheck == LogCheck::Nothing)
        QCOMPARE(log.lines(), QList<LogLine>());
}

void addLoggedFailureRows(const QList<OperationRow> &getters, const QList<LoggedError> &errors)
{
    QTest::addColumn<OperationRow>("row");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<QString>("quotedMessage");
    for (const OperationRow &getter : getters) {
        for (const LoggedError &error : errors) {
            QTest::addRow("%s %s", getter.operation, error.name)
                << getter << ScriptedAnswer::error(failedErrorName(), error.message) << error.quoted;
        }
        QVERIFY(!getter.typeError.isEmpty());
        QTest::addRow("%s wrong type", getter.operation)
            << getter << ScriptedAnswer::value(getter.wrongType) << quoted(getter.typeError);
    }
}

void verifyLoggedFailure(FakeMeasApplication &fake, QDBusAbstractInterface &proxy)
{
    QFETCH(OperationRow, row);
    QFETCH(ScriptedAnswer, answer);
    QFETCH(QString, quotedMessage);

    QCOMPARE(fake.service(), FakeMeasApplication::serviceFor(QStringLiteral("fake")));
    QVERIFY(quotedMessage.size() > 2);
    LogCapture log;
    fake.answer(row.wireMember(), answer);

    const QVariant value = row.run(proxy).value;

    QCOMPARE(value.userType(), row.empty.userType());
    QCOMPARE(value, row.empty);
    QCOMPARE(log.lines(), debugLines({reportLineQuoting(row.report, fake.service(), proxy.path(), quotedMessage)}));
}

void verifyLoggedFailureWhenTheServiceIsAbsent(const ProxyFactory &make, const QString &path)
{
    QFETCH(OperationRow, row);
    const std::unique_ptr<QDBusAbstractInterface> absent(make(absentService(), path, nullptr));
    LogCapture log;

    const QVariant value = row.run(*absent).value;

    QCOMPARE(value.userType(), row.empty.userType());
    QCOMPARE(value, row.empty);
    QCOMPARE(absent->lastError().type(), QDBusError::ServiceUnknown);
    const QString message = absent->lastError().message();
    QVERIFY(message.contains(absentService()));
    QCOMPARE(log.lines(), debugLines({reportLine(row.report, absentService(), path, message)}));
}

QDBusArgument settingsMapArgument(const QList<QPair<QString, QVariant>> &entries)
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

void verifyRepeatedKeysKeptAsQMapDoes(FakeMeasApplication &fake, const QString &member,
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

void verifySetToDefaultWaitsAndDropsTheAnswer(FakeMeasApplication &fake, QDBusAbstractInterface &proxy,
                                              const ProxyOperation &setToDefault, const QString &errorName,
                                              const QString &message)
{
    LogCapture log;
    fake.answer(QStringLiteral("setToDefault"), ScriptedAnswer::error(errorName, message));

    setToDefault(proxy);

    // Nothing was run in between: the call came back only once the application had answered.
    QCOMPARE(fake.callCount(), 1);
    QCOMPARE(proxy.lastError().name(), errorName);
    QCOMPARE(proxy.lastError().message(), message);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void verifySignalsThenSlots(const QMetaObject &meta, const QObject &proxy, const QStringList &signalSignatures,
                            const QStringList &slotSignatures)
{
    QCOMPARE(ownMethodSignatures(meta), signalSignatures + slotSignatures);
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Signal), signalSignatures);
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Slot), slotSignatures);
    QCOMPARE(meta.superClass(), &QDBusAbstractInterface::staticMetaObject);
    QCOMPARE(proxy.metaObject(), &meta);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
    QCOMPARE(meta.classInfoCount(), meta.classInfoOffset());
}

void verifyReturnTypes(const QMetaObject &meta, const QList<QPair<const char *, const char *>> &returnTypes)
{
    for (const auto &expected : returnTypes) {
        const int index = meta.indexOfMethod(expected.first);
        QVERIFY2(index >= meta.methodOffset(), expected.first);
        QCOMPARE(meta.method(index).typeName(), expected.second);
    }
}

void addMethodPlacementRows(const QStringList &signalSignatures, const QStringList &slotSignatures)
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<int>("type");
    int index = 0;
    for (const QString &signature : signalSignatures + slotSignatures) {
        const bool isSignal = index < signalSignatures.size();
        QTest::addRow("%d", index) << index << signature << int(isSignal ? QMetaMethod::Signal : QMetaMethod::Slot);
        ++index;
    }
}

void verifyMethodPlacementRow(const QMetaObject &meta)
{
    QFETCH(int, index);
    QFETCH(QString, signature);
    QFETCH(int, type);

    const QMetaMethod method = meta.method(meta.methodOffset() + index);
    QCOMPARE(QString::fromLatin1(method.methodSignature()), signature);
    QCOMPARE(int(method.methodType()), type);
    QCOMPARE(meta.indexOfMethod(signature.toLatin1().constData()), meta.methodOffset() + index);
}
