#include "SetupDevDataInterface.h"

#include "LogCapture.h"
#include "ProxyClassTest.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QtTest/QTest>

namespace {

using P = SetupDevDataInterface;

const QString path = QStringLiteral("/Setup/DeviceData");
const QVariantMap settings{{QStringLiteral("gain"), 2}, {QStringLiteral("unit"), QStringLiteral("dB")}};

enum class Sent { Waiting, Async };

/// The call setValue() or setValueAsync() sends of @p value: the wrapped value keeps its own type.
OperationRow setValueCall(const char *name, const QVariant &value, Sent how = Sent::Waiting)
{
    const ProxyOperation run = how == Sent::Async ? onProxy<P>([value](P &p) { p.setValueAsync(value); })
                                                  : onProxy<P>([value](P &p) { return p.setValue(value); });
    return {.operation = name,
            .run = run,
            .call = {.member = "setValue", .signature = "v", .arguments = {wrappedValue(value)}}};
}

const ProxyOperation getValue = onProxy(&P::getValue);
const ProxyOperation getString = onProxy(&P::getString);
const ProxyOperation setValue = onProxy<P>([](P &p) { return p.setValue(1.25); });

// Both getters, and getString() invoked by name, report under getValue's name. Unlike the
// getters of the integer and text proxies, they judge the reply themselves, so a well-formed
// answer of the wrong type is reported too.
const QString report = QStringLiteral("SetupDevDataInterface::getValue(): ");

// clang-format off
// An int stays an int32 inside the variant, a double a double.
const QList<OperationRow> sent{
    setValueCall("setValue double", 3.5),
    setValueCall("setValue int", 7),
    setValueCall("setValue bool", false),
    setValueCall("setValue string", QStringLiteral("rack 2")),
    setValueCall("setValue string list", QStringList{QStringLiteral("CH1"), QStringLiteral("CH2")}),
    setValueCall("setValue long long", qlonglong(1) << 40),
    {.operation = "setValueAsync by name",
     .run = byName<void>("setValueAsync(QVariant)", QVariant(QStringLiteral("async"))),
     .call = {.member = "setValue", .signature = "v", .arguments = {wrappedValue(QStringLiteral("async"))}}},
};

const QList<OperationRow> replies{
    {.operation = "setValue", .run = setValue, .call = {.member = "setValue", .signature = "v",
     .arguments = {wrappedValue(1.25)}}, .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "setValue wrapped bool", .run = setValue, .call = {.member = "setValue", .signature = "v",
     .arguments = {wrappedValue(1.25)}}, .reply = {.answered = true, .wrongType = wrappedValue(true), .empty = false}},
    {.operation = "getValue", .run = getValue, .call = {.member = "getValue"},
     .reply = {.answered = wrappedValue(2.5), .seen = 2.5, .wrongType = 42, .empty = QVariant()},
     .log = {.report = report,
             .typeError = "Unexpected reply signature: got \"i\" (int), expected \"v\" (QDBusVariant)"}},
    {.operation = "getString", .run = getString, .call = {.member = "getString"},
     .reply = {.answered = QStringLiteral("2.5 V"), .wrongType = 42, .empty = QString()},
     .log = {.report = report, .typeError = "Unexpected reply signature: got \"i\" (int), expected \"s\" (QString)"}},
    {.operation = "getString by name", .run = byName<QString>("getString"), .call = {.member = "getString"},
     .reply = {.answered = QStringLiteral("2.5 V"), .wrongType = 42, .empty = QString()},
     .log = {.report = report, .typeError = "Unexpected reply signature: got \"i\" (int), expected \"s\" (QString)"}},
};

const QList<OperationRow> answers{
    {.operation = "setValue refused", .run = setValue, .call = {.member = "setValue"}, .reply = {.answered = false}},
    {.operation = "getValue double", .run = getValue, .call = {.member = "getValue"},
     .reply = {.answered = wrappedValue(3.5), .seen = 3.5}},
    {.operation = "getValue int", .run = getValue, .call = {.member = "getValue"},
     .reply = {.answered = wrappedValue(-7), .seen = -7}},
    {.operation = "getValue bool", .run = getValue, .call = {.member = "getValue"},
     .reply = {.answered = wrappedValue(true), .seen = true}},
    {.operation = "getValue string", .run = getValue, .call = {.member = "getValue"},
     .reply = {.answered = wrappedValue(QStringLiteral("rack 2")), .seen = QStringLiteral("rack 2")}},
    {.operation = "getValue empty string", .run = getValue, .call = {.member = "getValue"},
     .reply = {.answered = wrappedValue(QString("")), .seen = QString("")}},
    {.operation = "getValue string list", .run = getValue, .call = {.member = "getValue"},
     .reply = {.answered = wrappedValue(QStringList{QStringLiteral("CH1"), QStringLiteral("CH2")}),
               .seen = QStringList{QStringLiteral("CH1"), QStringLiteral("CH2")}}},
    {.operation = "getValue unsigned", .run = getValue, .call = {.member = "getValue"},
     .reply = {.answered = wrappedValue(42u), .seen = 42u}},
    {.operation = "getString text", .run = getString, .call = {.member = "getString"},
     .reply = {.answered = QStringLiteral("3.5 V")}},
    {.operation = "getString empty", .run = getString, .call = {.member = "getString"},
     .reply = {.answered = QString("")}},
};

const QList<OperationRow> refused{
    {.operation = "getValue plain string", .run = getValue, .call = {.member = "getValue"},
     .reply = {.wrongType = QStringLiteral("42"), .empty = QVariant()},
     .log = {.report = report,
             .typeError = "Unexpected reply signature: got \"s\" (QString), expected \"v\" (QDBusVariant)"}},
    {.operation = "getString wrapped", .run = getString, .call = {.member = "getString"},
     .reply = {.wrongType = wrappedValue(QStringLiteral("42")), .empty = QString()},
     .log = {.report = report,
             .typeError = "Unexpected reply signature: got \"v\" (QDBusVariant), expected \"s\" (QString)"}},
};

const QList<OperationRow> slotsByName{
    {.operation = "getValue", .run = byName<QVariant>("getValue"), .call = {.member = "getValue"},
     .reply = {.answered = wrappedValue(17.5), .seen = 17.5}, .direct = getValue},
    {.operation = "getString", .run = byName<QString>("getString"), .call = {.member = "getString"},
     .reply = {.answered = QStringLiteral("17.5 V")}, .direct = getString},
    {.operation = "setValue", .run = byName<QDBusReply<bool>>("setValue(QVariant)", QVariant(4.5)),
     .call = {.member = "setValue", .signature = "v", .arguments = {wrappedValue(4.5)}}, .reply = {.answered = true},
     .direct = onProxy<P>([](P &p) { return p.setValue(4.5); })},
};

const ProxyClassTable devData{
    .className = "SetupDevDataInterface",
    .path = path,
    .make = factoryOf<P>(),
    .size = sizeof(P),
    .ownData = 2 * sizeof(QString), // service and path, for the error lines
    .sent = sent,
    .replies = replies,
    .answers = answers,
    .refused = refused,
    .errors = {
        {"error", "no device data", "\"no device data\""},
        {"error with quotes", "say \"hi\"", "\"say \\\"hi\\\"\""},
    },
    .asyncs = {setValueCall("setValueAsync double", 9.5, Sent::Async),
               setValueCall("setValueAsync string", QStringLiteral("nine"), Sent::Async)},
    .failingCall = {.operation = "getString", .run = getString, .call = {.member = "getString"}},
    .signalSignatures = {"void setupChanged(QDBusVariant)"},
    .slotSignatures = {"QDBusReply<bool> setValue(QVariant)", "void setValueAsync(QVariant)", "QVariant getValue()",
                       "QString getString()"},
    .otherClasses = {"SetupStringInterface", "SetupDevData"},
    .byName = slotsByName,
    .relayed = {{.operation = "setupChanged(QDBusVariant)",
                 .call = {.member = "setupChanged", .arguments = {wrappedValue(4.25)}}}},
};
// clang-format on

/// @p received is what was sent as @p sent: a structured value as the QDBusArgument it arrived in.
void verifyArrivedAsSent(const QVariant &received, const QVariant &sent)
{
    if (sent.userType() != QMetaType::QVariantMap) {
        QCOMPARE(received.userType(), sent.userType());
        QCOMPARE(received, sent);
        return;
    }
    QCOMPARE(received.userType(), qMetaTypeId<QDBusArgument>());
    const QDBusArgument argument = qvariant_cast<QDBusArgument>(received);
    QCOMPARE(argument.currentSignature(), QStringLiteral("a{sv}"));
    QVariantMap map;
    argument >> map;
    QCOMPARE(QVariant(map), sent);
}

} // namespace

class tst_SetupDevDataInterface : public ProxyClassTest
{
    Q_OBJECT

public:
    tst_SetupDevDataInterface()
        : ProxyClassTest(devData)
    {
    }

private Q_SLOTS:
    void setValueOfAnInvalidVariantSendsNothing();
    void getValueLeavesAStructuredValueAsQDBusArgument();
    void gettersLogNothingWhenOnlyAnEarlierCallFailed();
    void setupChangedHandsTheReceiverTheWrapper_data();
    void setupChangedHandsTheReceiverTheWrapper();
};

void tst_SetupDevDataInterface::setValueOfAnInvalidVariantSendsNothing()
{
    // D-Bus has no empty variant: QtDBus refuses to marshal the message and reports that
    // itself at warning level; the proxy adds no line of its own.
    LogCapture log;
    m_fake->answer("setValue", ScriptedAnswer::value(true));

    const QDBusReply<bool> reply = proxy<P>().setValue(QVariant());
    proxy<P>().setValueAsync(QVariant());

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
    verifySentAsItsRow(*m_fake, *m_proxy,
                       {.operation = "getString", .run = getString, .call = {.member = "getString"}});
}

void tst_SetupDevDataInterface::getValueLeavesAStructuredValueAsQDBusArgument()
{
    LogCapture log;
    m_fake->answer("getValue", ScriptedAnswer::value(wrappedValue(settings)));

    verifyArrivedAsSent(proxy<P>().getValue(), settings);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupDevDataInterface::gettersLogNothingWhenOnlyAnEarlierCallFailed()
{
    m_fake->answer("setValue", ScriptedAnswer::error(failedErrorName(), QStringLiteral("earlier failure")));
    m_fake->answer("getValue", ScriptedAnswer::value(wrappedValue(2.5)));
    m_fake->answer("getString", ScriptedAnswer::value(QStringLiteral("2.5 V")));
    proxy<P>().setValue(QVariant(1.0));
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));

    LogCapture log;
    QCOMPARE(proxy<P>().getValue(), QVariant(2.5));
    QCOMPARE(proxy<P>().getString(), QStringLiteral("2.5 V"));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupDevDataInterface::setupChangedHandsTheReceiverTheWrapper_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("SetupDevDataInterface/setupChanged/text") << QVariant(QStringLiteral("rack 4"));
    QTest::newRow("SetupDevDataInterface/setupChanged/structured") << QVariant(settings);
}

void tst_SetupDevDataInterface::setupChangedHandsTheReceiverTheWrapper()
{
    QFETCH(QVariant, value);
    QList<QDBusVariant> received;
    QObject receiver;
    connect(&proxy<P>(), &P::setupChanged, &receiver,
            [&received](const QDBusVariant &newVal) { received.append(newVal); });
    QSignalSpy spy(m_proxy.get(), SIGNAL(setupChanged(QDBusVariant)));
    syncWithBus(m_proxy->connection());

    m_fake->emitSignal(path, "setupChanged", {wrappedValue(value)});

    QVERIFY(spy.wait(5000));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().size(), 1);
    QCOMPARE(spy.first().first().userType(), qMetaTypeId<QDBusVariant>());
    QCOMPARE(received.size(), 1);
    verifyArrivedAsSent(received.first().variant(), value);
}

QTEST_GUILESS_MAIN(tst_SetupDevDataInterface)

#include "tst_setupdevdatainterface.moc"
