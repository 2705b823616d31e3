#include "SetupDevDataInterface.h"

#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusVariant>
#include <QtTest/QTest>

#include <functional>

using Operation = std::function<QVariant(SetupDevDataInterface &)>;
Q_DECLARE_METATYPE(Operation)

namespace {
const QString path = QStringLiteral("/Setup/DeviceData");

QVariant wrap(const QVariant &value)
{
    return QVariant::fromValue(QDBusVariant(value));
}

/// The value a received call carried in its one D-Bus variant argument.
QVariant unwrappedSingleArgument(const ReceivedCall &call)
{
    if (call.arguments.size() != 1 || call.arguments.first().userType() != qMetaTypeId<QDBusVariant>())
        return QVariant();
    return qvariant_cast<QDBusVariant>(call.arguments.first()).variant();
}

using P = SetupDevDataInterface;

/// A setValue() call of @p value: the wrapped value keeps its own type.
OperationRow setValueCall(const char *name, const QVariant &value)
{
    return {.operation = name,
            .run = onProxy<P>([value](P &p) { return p.setValue(value); }),
            .member = "setValue",
            .signature = "v",
            .arguments = {wrap(value)}};
}

OperationRow setValueAsyncCall(const char *name, const QVariant &value)
{
    return {.operation = name,
            .run = onProxy<P>([value](P &p) { p.setValueAsync(value); }),
            .member = "setValue",
            .signature = "v",
            .arguments = {wrap(value)}};
}

QList<OperationRow> asyncCalls()
{
    return {setValueAsyncCall("setValueAsync double", 9.5),
            setValueAsyncCall("setValueAsync string", QStringLiteral("nine"))};
}

/// Whether quoted() renders @p text as the debug stream does.
bool printableAscii(const QString &text)
{
    for (const QChar c : text) {
        if (c.unicode() < 0x20 || c.unicode() >= 0x7f)
            return false;
    }
    return true;
}

/// The one line either getter writes on failure; both name getValue.
QList<LogLine> failureLines(const QString &service, const QString &message)
{
    return debugLines({"SetupDevDataInterface::getValue():  " + quoted(service) + "  /  " + quoted(path) +
                       "  / Error: " + quoted(message)});
}

/// What Qt's own reply conversion says of the answer the fake gives to @p member when it
/// is read as R: the error a checked getter must report for a wrong-typed reply.
template<typename R>
QDBusError conversionError(const FakeMeasApplication &fake, const QString &member)
{
    const QDBusMessage call = QDBusMessage::createMethodCall(fake.service(), QStringLiteral("/Reference"),
                                                             FakeMeasApplication::interfaceName, member);
    const QDBusReply<R> reply = QDBusConnection::sessionBus().call(call, QDBus::Block);
    return reply.error();
}
} // namespace

class tst_SetupDevDataInterface : public QObject, private ProxyFixture<SetupDevDataInterface>
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void constructorPassesItsArgumentsOnAndCallsNothing();
    void keepsServiceAndPathBesideTheBase();

    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void setValueSendsADoubleInsideOneVariant();
    void setValueMapsEachReplyWithoutLogging_data();
    void setValueMapsEachReplyWithoutLogging();
    void setValueGivesAnInvalidReplyWhenTheServiceIsAbsent();
    void setValueOfAnInvalidVariantSendsNothing();

    void getValueUnwrapsTheVariantReply_data();
    void getValueUnwrapsTheVariantReply();
    void getValueLeavesAStructuredValueAsQDBusArgument();
    void getStringReturnsTheText_data();
    void getStringReturnsTheText();

    void gettersLogOneLineOnAnErrorReply_data();
    void gettersLogOneLineOnAnErrorReply();
    void gettersLogOneLineForAWrongTypedReply_data();
    void gettersLogOneLineForAWrongTypedReply();
    void gettersLogOneLineWhenTheServiceIsAbsent_data();
    void gettersLogOneLineWhenTheServiceIsAbsent();
    void gettersQuoteAndEscapeTheErrorMessage();
    void gettersLogNothingWhenOnlyAnEarlierCallFailed();

    void asyncSetterReturnsAtOnceAndLeavesLastErrorAlone();
    void asyncSetterToAnAbsentServiceLogsNothing();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();
    void invokingGetStringByNameLogsLikeTheDirectCall();
    void relaysSetupChangedOfItsOwnObjectOnly();
    void setupChangedHandsTheReceiverTheWrapper();
    void setupChangedLeavesAStructuredValueAsQDBusArgument();
};

void tst_SetupDevDataInterface::init()
{
    startFakeAndProxy(path);
}

void tst_SetupDevDataInterface::cleanup()
{
    stopFakeAndProxy();
}

void tst_SetupDevDataInterface::constructorPassesItsArgumentsOnAndCallsNothing()
{
    verifyConstructionContract<SetupDevDataInterface>(*m_fake, path);
}

void tst_SetupDevDataInterface::keepsServiceAndPathBesideTheBase()
{
    // Service and path are kept for the error lines, and nothing else.
    QCOMPARE(sizeof(SetupDevDataInterface), sizeof(QDBusAbstractInterface) + 2 * sizeof(QString));
}

void tst_SetupDevDataInterface::sendsEachOperationWithItsWireForm_data()
{
    QTest::addColumn<OperationRow>("row");
    // An int stays an int32 inside the variant, a double a double.
    for (const OperationRow &row : QList<OperationRow>{
             setValueCall("setValue double", 3.5),
             setValueCall("setValue int", 7),
             setValueCall("setValue bool", false),
             setValueCall("setValue string", QStringLiteral("rack 2")),
             setValueCall("setValue string list", QStringList{QStringLiteral("CH1"), QStringLiteral("CH2")}),
             setValueCall("setValue long long", qlonglong(1) << 40),
             setValueAsyncCall("setValueAsync double", -0.25),
             setValueAsyncCall("setValueAsync string", QStringLiteral("rack 3")),
             {.operation = "getValue", .run = onProxy(&P::getValue)},
             {.operation = "getString", .run = onProxy(&P::getString)},
         })
        QTest::newRow(row.operation) << row;
}

void tst_SetupDevDataInterface::sendsEachOperationWithItsWireForm()
{
    QFETCH(OperationRow, row);
    verifySentAsItsRow(*m_fake, *m_proxy, row);
}

void tst_SetupDevDataInterface::setValueSendsADoubleInsideOneVariant()
{
    m_fake->answer("setValue", ScriptedAnswer::value(true));

    const QDBusReply<bool> reply = m_proxy->setValue(QVariant(3.5));

    QVERIFY(reply.isValid());
    QCOMPARE(reply.value(), true);
    const QList<ReceivedCall> calls = m_fake->calls();
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.first().member, QStringLiteral("setValue"));
    QCOMPARE(calls.first().signature, QStringLiteral("v"));
    QCOMPARE(calls.first().arguments.size(), 1);
    QCOMPARE(calls.first().arguments.first().userType(), qMetaTypeId<QDBusVariant>());
    const QVariant inner = qvariant_cast<QDBusVariant>(calls.first().arguments.first()).variant();
    QCOMPARE(inner.userType(), int(QMetaType::Double));
    QCOMPARE(inner.toDouble(), 3.5);
}

void tst_SetupDevDataInterface::setValueMapsEachReplyWithoutLogging_data()
{
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<bool>("value");

    QTest::newRow("answered true") << ScriptedAnswer::value(true) << true << true;
    QTest::newRow("answered false") << ScriptedAnswer::value(false) << true << false;
    QTest::newRow("error") << ScriptedAnswer::error(failedErrorName(), QStringLiteral("refused")) << false << false;
    QTest::newRow("wrong type") << ScriptedAnswer::value(1) << false << false;
    QTest::newRow("wrapped bool") << ScriptedAnswer::value(wrap(true)) << false << false;
    QTest::newRow("no value") << ScriptedAnswer::reply() << false << false;
}

void tst_SetupDevDataInterface::setValueMapsEachReplyWithoutLogging()
{
    QFETCH(ScriptedAnswer, answer);
    QFETCH(bool, valid);
    QFETCH(bool, value);

    LogCapture log;
    m_fake->answer("setValue", answer);

    const QDBusReply<bool> reply = m_proxy->setValue(QVariant(1.25));

    QCOMPARE(reply.isValid(), valid);
    QCOMPARE(reply.value(), value);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupDevDataInterface::setValueGivesAnInvalidReplyWhenTheServiceIsAbsent()
{
    LogCapture log;
    SetupDevDataInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const QDBusReply<bool> reply = proxy.setValue(QVariant(3.5));

    QVERIFY(!reply.isValid());
    QCOMPARE(reply.value(), false);
    QCOMPARE(reply.error().type(), QDBusError::ServiceUnknown);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupDevDataInterface::setValueOfAnInvalidVariantSendsNothing()
{
    // D-Bus has no empty variant: QtDBus refuses to marshal the message and reports that
    // itself at warning level; the proxy adds no line of its own.
    LogCapture log;
    m_fake->answer("setValue", ScriptedAnswer::value(true));
    m_fake->answer("getString", ScriptedAnswer::value(QStringLiteral("x")));

    const QDBusReply<bool> reply = m_proxy->setValue(QVariant());
    m_proxy->setValueAsync(QVariant());

    QVERIFY(!reply.isValid());
    QCOMPARE(reply.value(), false);
    QVERIFY(reply.error().isValid());
    QCOMPARE(m_proxy->lastError().message(), reply.error().message());
    int debugLineCount = 0;
    for (const LogLine &line : log.lines())
        debugLineCount += line.level == QtDebugMsg ? 1 : 0;
    QCOMPARE(debugLineCount, 0);

    // Messages of one connection arrive in order: had either gone out, it would stand
    // before this call.
    m_proxy->getString();
    const QList<ReceivedCall> calls = m_fake->calls();
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.first().member, QStringLiteral("getString"));
}

void tst_SetupDevDataInterface::getValueUnwrapsTheVariantReply_data()
{
    QTest::addColumn<QVariant>("value");

    QTest::newRow("double") << QVariant(3.5);
    QTest::newRow("int") << QVariant(-7);
    QTest::newRow("bool") << QVariant(true);
    QTest::newRow("string") << QVariant(QStringLiteral("rack 2"));
    QTest::newRow("empty string") << QVariant(QString(""));
    QTest::newRow("string list") << QVariant(QStringList{QStringLiteral("CH1"), QStringLiteral("CH2")});
    QTest::newRow("unsigned") << QVariant(42u);
}

void tst_SetupDevDataInterface::getValueUnwrapsTheVariantReply()
{
    QFETCH(QVariant, value);

    LogCapture log;
    m_fake->answer("getValue", ScriptedAnswer::value(wrap(value)));

    const QVariant result = m_proxy->getValue();

    QVERIFY(result.isValid());
    QCOMPARE(result.userType(), value.userType());
    QCOMPARE(result, value);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupDevDataInterface::getValueLeavesAStructuredValueAsQDBusArgument()
{
    LogCapture log;
    const QVariantMap settings{{QStringLiteral("gain"), 2}, {QStringLiteral("unit"), QStringLiteral("dB")}};
    m_fake->answer("getValue", ScriptedAnswer::value(wrap(settings)));

    const QVariant result = m_proxy->getValue();

    QCOMPARE(result.userType(), qMetaTypeId<QDBusArgument>());
    const QDBusArgument argument = qvariant_cast<QDBusArgument>(result);
    QCOMPARE(argument.currentSignature(), QStringLiteral("a{sv}"));
    QVariantMap received;
    argument >> received;
    QCOMPARE(received, settings);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupDevDataInterface::getStringReturnsTheText_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("text") << QStringLiteral("3.5 V");
    QTest::newRow("empty") << QString("");
}

void tst_SetupDevDataInterface::getStringReturnsTheText()
{
    QFETCH(QString, text);

    LogCapture log;
    m_fake->answer("getString", ScriptedAnswer::value(text));

    const QString result = m_proxy->getString();

    QCOMPARE(result, text);
    QCOMPARE(log.lines(), QList<LogLine>());
}

namespace {
void addGetterColumns()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QVariant>("empty");
}

/// @p result is exactly what the row's failed getter returns, type included.
void verifyEmptyResult(const QVariant &result, const QVariant &empty)
{
    QCOMPARE(result.isValid(), empty.isValid());
    QCOMPARE(result.userType(), empty.userType());
    QCOMPARE(result, empty);
}

void addGetterRow(const char *name, const QString &member)
{
    if (member == QLatin1String("getValue"))
        QTest::newRow(name) << Operation([](SetupDevDataInterface &p) { return p.getValue(); }) << member << QVariant();
    else
        QTest::newRow(name) << Operation([](SetupDevDataInterface &p) { return QVariant(p.getString()); }) << member
                            << QVariant(QString());
}
} // namespace

void tst_SetupDevDataInterface::gettersLogOneLineOnAnErrorReply_data()
{
    addGetterColumns();
    addGetterRow("getValue", QStringLiteral("getValue"));
    addGetterRow("getString", QStringLiteral("getString"));
}

void tst_SetupDevDataInterface::gettersLogOneLineOnAnErrorReply()
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);
    QFETCH(QVariant, empty);

    LogCapture log;
    m_fake->answer(member, ScriptedAnswer::error(failedErrorName(), QStringLiteral("no device data")));

    const QVariant result = operation(*m_proxy);

    verifyEmptyResult(result, empty);
    QCOMPARE(log.lines(), failureLines(m_fake->service(), QStringLiteral("no device data")));
}

void tst_SetupDevDataInterface::gettersLogOneLineForAWrongTypedReply_data()
{
    addGetterColumns();
    QTest::addColumn<ScriptedAnswer>("answer");

    const auto getValue = [](SetupDevDataInterface &p) { return p.getValue(); };
    const auto getString = [](SetupDevDataInterface &p) { return QVariant(p.getString()); };
    QTest::newRow("getValue answered a plain int")
        << Operation(getValue) << "getValue" << QVariant() << ScriptedAnswer::value(42);
    QTest::newRow("getValue answered a plain string")
        << Operation(getValue) << "getValue" << QVariant() << ScriptedAnswer::value(QStringLiteral("42"));
    QTest::newRow("getValue answered nothing")
        << Operation(getValue) << "getValue" << QVariant() << ScriptedAnswer::reply();
    QTest::newRow("getString answered an int")
        << Operation(getString) << "getString" << QVariant(QString()) << ScriptedAnswer::value(42);
    QTest::newRow("getString answered a wrapped string") << Operation(getString) << "getString" << QVariant(QString())
                                                         << ScriptedAnswer::value(wrap(QStringLiteral("42")));
}

void tst_SetupDevDataInterface::gettersLogOneLineForAWrongTypedReply()
{
    // Unlike the checked getters of the integer and text proxies, these judge the reply
    // itself, so a well-formed answer of the wrong type is reported too.
    QFETCH(Operation, operation);
    QFETCH(QString, member);
    QFETCH(QVariant, empty);
    QFETCH(ScriptedAnswer, answer);

    LogCapture log;
    m_fake->answer(member, answer);

    const QVariant result = operation(*m_proxy);
    const QList<LogLine> lines = log.lines();

    verifyEmptyResult(result, empty);
    QVERIFY(!m_proxy->lastError().isValid());
    const QDBusError expected = member == QLatin1String("getValue") ? conversionError<QDBusVariant>(*m_fake, member)
                                                                    : conversionError<QString>(*m_fake, member);
    QCOMPARE(expected.type(), QDBusError::InvalidSignature);
    QVERIFY(printableAscii(expected.message()));
    QCOMPARE(lines, failureLines(m_fake->service(), expected.message()));
}

void tst_SetupDevDataInterface::gettersLogOneLineWhenTheServiceIsAbsent_data()
{
    addGetterColumns();
    addGetterRow("getValue", QStringLiteral("getValue"));
    addGetterRow("getString", QStringLiteral("getString"));
}

void tst_SetupDevDataInterface::gettersLogOneLineWhenTheServiceIsAbsent()
{
    QFETCH(Operation, operation);
    QFETCH(QVariant, empty);

    LogCapture log;
    SetupDevDataInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const QVariant result = operation(proxy);

    verifyEmptyResult(result, empty);
    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
    const QString message = proxy.lastError().message();
    QVERIFY(message.contains(absentService()));
    QVERIFY(printableAscii(message));
    const QList<LogLine> lines = log.lines();
    QCOMPARE(lines.size(), 1);
    QVERIFY(lines.first().text.startsWith(QStringLiteral("SetupDevDataInterface::getValue(): ")));
    QCOMPARE(lines, failureLines(absentService(), message));
}

void tst_SetupDevDataInterface::gettersQuoteAndEscapeTheErrorMessage()
{
    LogCapture log;
    m_fake->answer("getString", ScriptedAnswer::error(failedErrorName(), QStringLiteral("say \"hi\"")));

    QCOMPARE(m_proxy->getString(), QString());

    QCOMPARE(log.lines(),
             debugLines({"SetupDevDataInterface::getValue():  \"com.velk.mqx.app.fake\"  /  "
                         "\"/Setup/DeviceData\"  / Error: \"say \\\"hi\\\"\""}));
}

void tst_SetupDevDataInterface::gettersLogNothingWhenOnlyAnEarlierCallFailed()
{
    m_fake->answer("setValue", ScriptedAnswer::error(failedErrorName(), QStringLiteral("earlier failure")));
    m_fake->answer("getValue", ScriptedAnswer::value(wrap(2.5)));
    m_fake->answer("getString", ScriptedAnswer::value(QStringLiteral("2.5 V")));
    m_proxy->setValue(QVariant(1.0));
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));

    LogCapture log;
    QCOMPARE(m_proxy->getValue(), QVariant(2.5));
    QCOMPARE(m_proxy->getString(), QStringLiteral("2.5 V"));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupDevDataInterface::asyncSetterReturnsAtOnceAndLeavesLastErrorAlone()
{
    verifyAsyncCallsReturnAtOnce(*m_fake, *m_proxy, {.operation = "getString", .run = onProxy(&P::getString)},
                                 asyncCalls());
}

void tst_SetupDevDataInterface::asyncSetterToAnAbsentServiceLogsNothing()
{
    SetupDevDataInterface absent(absentService(), path, QDBusConnection::sessionBus());
    verifyAsyncCallsShowNothing(absent, asyncCalls());
}

void tst_SetupDevDataInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    verifyOwnMethods(
        SetupDevDataInterface::staticMetaObject,
        {"setupChanged(QDBusVariant)", "setValue(QVariant)", "setValueAsync(QVariant)", "getValue()", "getString()"},
        {"setupChanged(QDBusVariant)"}, {"void", "QDBusReply<bool>", "void", "QVariant", "QString"});
}

void tst_SetupDevDataInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    QCOMPARE(m_proxy->metaObject(), &SetupDevDataInterface::staticMetaObject);
    verifyMetaCast(*m_proxy, "SetupDevDataInterface", {"SetupStringInterface", "SetupDevData"});
}

void tst_SetupDevDataInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(wrap(17.5)));
    m_fake->answer("getString", ScriptedAnswer::value(QStringLiteral("17.5 V")));
    m_fake->answer("setValue", ScriptedAnswer::value(true));

    QVariant value;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection, Q_RETURN_ARG(QVariant, value)));
    QCOMPARE(value, m_proxy->getValue());
    QCOMPARE(value.userType(), int(QMetaType::Double));
    QCOMPARE(value, QVariant(17.5));

    QString text;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getString", Qt::DirectConnection, Q_RETURN_ARG(QString, text)));
    QCOMPARE(text, m_proxy->getString());
    QCOMPARE(text, QStringLiteral("17.5 V"));

    QDBusReply<bool> accepted;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<bool>, accepted), Q_ARG(QVariant, QVariant(4.5))));
    QVERIFY(accepted.isValid());
    QCOMPARE(accepted.value(), true);
    QCOMPARE(m_fake->calls().last().signature, QStringLiteral("v"));
    QCOMPARE(unwrappedSingleArgument(m_fake->calls().last()), QVariant(4.5));

    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValueAsync", Qt::DirectConnection,
                                      Q_ARG(QVariant, QVariant(QStringLiteral("async")))));
    QVERIFY(m_fake->waitForCalls(6));
    QCOMPARE(m_fake->calls().last().member, QStringLiteral("setValue"));
    QCOMPARE(unwrappedSingleArgument(m_fake->calls().last()), QVariant(QStringLiteral("async")));
}

void tst_SetupDevDataInterface::invokingGetStringByNameLogsLikeTheDirectCall()
{
    LogCapture log;
    m_fake->answer("getString", ScriptedAnswer::error(failedErrorName(), QStringLiteral("no device data")));

    QString text = QStringLiteral("stale");
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getString", Qt::DirectConnection, Q_RETURN_ARG(QString, text)));

    QCOMPARE(text, QString());
    QCOMPARE(log.lines(), failureLines(m_fake->service(), QStringLiteral("no device data")));
}

void tst_SetupDevDataInterface::relaysSetupChangedOfItsOwnObjectOnly()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupChanged(QDBusVariant)), "setupChanged", {wrap(4.25)});
}

void tst_SetupDevDataInterface::setupChangedHandsTheReceiverTheWrapper()
{
    QList<QDBusVariant> received;
    QObject receiver;
    connect(m_proxy.get(), &SetupDevDataInterface::setupChanged, &receiver,
            [&received](const QDBusVariant &newVal) { received.append(newVal); });
    QSignalSpy spy(m_proxy.get(), SIGNAL(setupChanged(QDBusVariant)));
    syncWithBus(m_proxy->connection());

    m_fake->emitSignal(path, "setupChanged", {wrap(QStringLiteral("rack 4"))});

    QVERIFY(spy.wait(5000));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().size(), 1);
    QCOMPARE(spy.first().first().userType(), qMetaTypeId<QDBusVariant>());
    QCOMPARE(received.size(), 1);
    QCOMPARE(received.first().variant().userType(), int(QMetaType::QString));
    QCOMPARE(received.first().variant(), QVariant(QStringLiteral("rack 4")));
}

void tst_SetupDevDataInterface::setupChangedLeavesAStructuredValueAsQDBusArgument()
{
    QSignalSpy spy(m_proxy.get(), SIGNAL(setupChanged(QDBusVariant)));
    syncWithBus(m_proxy->connection());
    const QVariantMap settings{{QStringLiteral("gain"), 3.0}};

    m_fake->emitSignal(path, "setupChanged", {wrap(settings)});

    QVERIFY(spy.wait(5000));
    QCOMPARE(spy.count(), 1);
    const QVariant inner = qvariant_cast<QDBusVariant>(spy.first().first()).variant();
    QCOMPARE(inner.userType(), qMetaTypeId<QDBusArgument>());
    QVariantMap received;
    qvariant_cast<QDBusArgument>(inner) >> received;
    QCOMPARE(received, settings);
}

QTEST_GUILESS_MAIN(tst_SetupDevDataInterface)

#include "tst_setupdevdatainterface.moc"
