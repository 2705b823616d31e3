#include "SetupStringInterface.h"

#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"

#include <QDBusConnection>
#include <QPointer>
#include <QtTest/QTest>

#include <functional>
#include <memory>

using Operation = std::function<Outcome(SetupStringInterface &)>;
Q_DECLARE_METATYPE(Operation)

namespace {
const QString path = QStringLiteral("/Setup/Label");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");

QList<LogLine> getValueLines(const QString &quotedMessage)
{
    return debugLines({
        "SetupStringInterface::getValue() Error!  " + quotedMessage,
        "SetupStringInterface::getValue() Interface  \"com.velk.mqx.MeasApplInterface\"",
        "SetupStringInterface::getValue() Path  \"/Setup/Label\"",
    });
}
} // namespace

class tst_SetupStringInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void constructorPassesItsArgumentsOnAndCallsNothing();
    void holdsNoDataOfItsOwn();

    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void mapsEachReply_data();
    void mapsEachReply();
    void givesInvalidRepliesWhenTheServiceIsAbsent();

    void getValueLogsThreeLinesOnAnErrorReply();
    void getValueLogsThreeLinesWhenTheServiceIsAbsent();
    void getValueLogsNothingForAWrongTypedReply();
    void getValueLogsNothingWhenOnlyAnEarlierCallFailed();
    void getValueQuotesAndEscapesTheErrorMessage();
    void plainOperationsLogNothingOnAnErrorReply();
    void plainOperationsLogNothingWhenTheServiceIsAbsent();

    void asyncOperationsReturnAtOnceAndLeaveLastErrorAlone();
    void asyncSetterToAnAbsentServiceLogsNothing();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();
    void invokingGetValueByNameLogsLikeTheDirectCall();
    void relaysSetupChangedOfItsOwnObjectOnly();

private:
    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<SetupStringInterface> m_proxy;
};

void tst_SetupStringInterface::init()
{
    m_fake.reset(new FakeMeasApplication);
    m_proxy.reset(new SetupStringInterface(m_fake->service(), path, QDBusConnection::sessionBus()));
}

void tst_SetupStringInterface::cleanup()
{
    m_proxy.reset();
    m_fake.reset();
}

void tst_SetupStringInterface::constructorPassesItsArgumentsOnAndCallsNothing()
{
    auto parent = std::make_unique<QObject>();
    m_fake->answer("isChangeable", ScriptedAnswer::value(true));

    auto *proxy = new SetupStringInterface(m_fake->service(), path, QDBusConnection::sessionBus(), parent.get());

    QCOMPARE(proxy->parent(), parent.get());
    QCOMPARE(proxy->service(), m_fake->service());
    QCOMPARE(proxy->path(), path);
    QCOMPARE(proxy->interface(), QStringLiteral("com.velk.mqx.MeasApplInterface"));
    QVERIFY(!proxy->lastError().isValid());

    // The fake handles messages in order: anything sent at construction would stand
    // before this call.
    proxy->isChangeable();
    const QList<ReceivedCall> calls = m_fake->calls();
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.first().member, QStringLiteral("isChangeable"));

    // Qt ownership: the parent deletes the proxy.
    QPointer<SetupStringInterface> watch(proxy);
    parent.reset();
    QVERIFY(watch.isNull());
}

void tst_SetupStringInterface::holdsNoDataOfItsOwn()
{
    QCOMPARE(sizeof(SetupStringInterface), sizeof(QDBusAbstractInterface));
}

void tst_SetupStringInterface::sendsEachOperationWithItsWireForm_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<QList<QVariant>>("arguments");

    const auto op = [](std::function<void(SetupStringInterface &)> call) {
        return Operation([call](SetupStringInterface &proxy) {
            call(proxy);
            return Outcome{};
        });
    };
    const QString unicode = QStringLiteral("Messkopf \u00b5V \u2126 \"A\"");
    QTest::newRow("setValue") << op([](SetupStringInterface &p) { p.setValue(QStringLiteral("Probe A")); })
                              << "setValue"
                              << "s" << QList<QVariant>{QStringLiteral("Probe A")};
    QTest::newRow("setValue empty") << op([](SetupStringInterface &p) { p.setValue(QString()); }) << "setValue"
                                    << "s" << QList<QVariant>{QString()};
    QTest::newRow("setValue unicode") << op([unicode](SetupStringInterface &p) { p.setValue(unicode); }) << "setValue"
                                      << "s" << QList<QVariant>{unicode};
    QTest::newRow("getString") << op([](SetupStringInterface &p) { p.getString(); }) << "getString"
                               << "" << QList<QVariant>{};
    QTest::newRow("setValueAsync") << op([](SetupStringInterface &p) { p.setValueAsync(QStringLiteral("Probe B")); })
                                   << "setValue"
                                   << "s" << QList<QVariant>{QStringLiteral("Probe B")};
    QTest::newRow("getValue") << op([](SetupStringInterface &p) { p.getValue(); }) << "getValue"
                              << "" << QList<QVariant>{};
    QTest::newRow("isChangeable") << op([](SetupStringInterface &p) { p.isChangeable(); }) << "isChangeable"
                                  << "" << QList<QVariant>{};
    QTest::newRow("setToDefault") << op([](SetupStringInterface &p) { p.setToDefault(); }) << "setToDefault"
                                  << "" << QList<QVariant>{};
    QTest::newRow("setToDefaultAsync") << op([](SetupStringInterface &p) { p.setToDefaultAsync(); }) << "setToDefault"
                                       << "" << QList<QVariant>{};
}

void tst_SetupStringInterface::sendsEachOperationWithItsWireForm()
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);
    QFETCH(QString, signature);
    QFETCH(QList<QVariant>, arguments);

    m_fake->answer(member, ScriptedAnswer::reply());
    operation(*m_proxy);
    verifySingleCall(*m_fake, path, member, signature, arguments);
}

void tst_SetupStringInterface::mapsEachReply_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QVariant>("value");

    const ScriptedAnswer error = ScriptedAnswer::error(failure, QStringLiteral("refused"));
    const auto rows = [&](const char *name, Operation op, const QVariant &good, const QVariant &wrongType,
                          const QVariant &defaultValue) {
        QTest::addRow("%s answered", name) << op << name << ScriptedAnswer::value(good) << true << good;
        QTest::addRow("%s error", name) << op << name << error << false << defaultValue;
        QTest::addRow("%s wrong type", name) << op << name << ScriptedAnswer::value(wrongType) << false << defaultValue;
    };
    rows(
        "setValue", [](SetupStringInterface &p) { return outcomeOf(p.setValue(QStringLiteral("x"))); }, true,
        QStringLiteral("true"), false);
    rows(
        "getString", [](SetupStringInterface &p) { return outcomeOf(p.getString()); }, QStringLiteral("Probe A"), 7,
        QString());
    rows(
        "getValue", [](SetupStringInterface &p) { return outcomeOf(p.getValue()); }, QStringLiteral("Probe A"), true,
        QString());
    rows(
        "isChangeable", [](SetupStringInterface &p) { return outcomeOf(p.isChangeable()); }, true, 1, false);

    const Operation getValue = [](SetupStringInterface &p) { return outcomeOf(p.getValue()); };
    QTest::newRow("getValue answered empty")
        << getValue << "getValue" << ScriptedAnswer::value(QString()) << true << QVariant(QString());
    QTest::newRow("getValue answered with an object path")
        << getValue << "getValue" << ScriptedAnswer::value(QVariant::fromValue(QDBusObjectPath(path))) << false
        << QVariant(QString());

    // A void reply accepts any method return and only fails on an error.
    const Operation setToDefault = [](SetupStringInterface &p) { return outcomeOf(p.setToDefault()); };
    QTest::newRow("setToDefault answered")
        << setToDefault << "setToDefault" << ScriptedAnswer::reply() << true << QVariant();
    QTest::newRow("setToDefault answered with a value")
        << setToDefault << "setToDefault" << ScriptedAnswer::value(QStringLiteral("done")) << true << QVariant();
    QTest::newRow("setToDefault error") << setToDefault << "setToDefault" << error << false << QVariant();
}

void tst_SetupStringInterface::mapsEachReply()
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);
    QFETCH(ScriptedAnswer, answer);
    QFETCH(bool, valid);
    QFETCH(QVariant, value);

    LogCapture log;
    m_fake->answer(member, answer);
    const Outcome outcome = operation(*m_proxy);
    QCOMPARE(outcome.valid, valid);
    QCOMPARE(outcome.value, value);
    QCOMPARE(outcome.value.userType(), value.userType());
}

void tst_SetupStringInterface::givesInvalidRepliesWhenTheServiceIsAbsent()
{
    LogCapture log;
    SetupStringInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const QDBusReply<bool> set = proxy.setValue(QStringLiteral("x"));
    QVERIFY(!set.isValid());
    QCOMPARE(set.value(), false);
    QCOMPARE(set.error().type(), QDBusError::ServiceUnknown);
    const QDBusReply<QString> text = proxy.getString();
    QVERIFY(!text.isValid());
    QCOMPARE(text.value(), QString());
    const QDBusReply<QString> value = proxy.getValue();
    QVERIFY(!value.isValid());
    QCOMPARE(value.value(), QString());
    QCOMPARE(value.error().type(), QDBusError::ServiceUnknown);
    QVERIFY(!proxy.isChangeable().isValid());
    QCOMPARE(proxy.isChangeable().value(), false);
    QVERIFY(!proxy.setToDefault().isValid());
}

void tst_SetupStringInterface::getValueLogsThreeLinesOnAnErrorReply()
{
    LogCapture log;
    m_fake->answer("getValue", ScriptedAnswer::error(failure, QStringLiteral("no label yet")));

    const QDBusReply<QString> reply = m_proxy->getValue();

    QVERIFY(!reply.isValid());
    QCOMPARE(reply.value(), QString());
    QCOMPARE(reply.error().name(), failure);
    QCOMPARE(reply.error().message(), QStringLiteral("no label yet"));
    QCOMPARE(log.lines(), getValueLines("\"no label yet\""));
}

void tst_SetupStringInterface::getValueLogsThreeLinesWhenTheServiceIsAbsent()
{
    LogCapture log;
    SetupStringInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const QDBusReply<QString> reply = proxy.getValue();

    QVERIFY(!reply.isValid());
    QCOMPARE(reply.error().type(), QDBusError::ServiceUnknown);
    const QString message = reply.error().message();
    QVERIFY(message.contains(absentService()));
    QCOMPARE(log.lines(), getValueLines("\"" + message + "\""));
}

void tst_SetupStringInterface::getValueLogsNothingForAWrongTypedReply()
{
    // The lines follow the proxy's lastError(), which a well-formed answer of the wrong
    // type does not set; the reply itself is still invalid.
    LogCapture log;
    m_fake->answer("getValue", ScriptedAnswer::value(42));

    const QDBusReply<QString> reply = m_proxy->getValue();

    QVERIFY(!reply.isValid());
    QCOMPARE(reply.error().type(), QDBusError::InvalidSignature);
    QCOMPARE(reply.value(), QString());
    QVERIFY(!m_proxy->lastError().isValid());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupStringInterface::getValueLogsNothingWhenOnlyAnEarlierCallFailed()
{
    m_fake->answer("getString", ScriptedAnswer::error(failure, QStringLiteral("earlier failure")));
    m_fake->answer("getValue", ScriptedAnswer::value(QStringLiteral("Probe A")));
    m_proxy->getString();
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));

    LogCapture log;
    const QDBusReply<QString> reply = m_proxy->getValue();

    QVERIFY(reply.isValid());
    QCOMPARE(reply.value(), QStringLiteral("Probe A"));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupStringInterface::getValueQuotesAndEscapesTheErrorMessage()
{
    LogCapture log;
    m_fake->answer("getValue", ScriptedAnswer::error(failure, QStringLiteral("say \"hi\"")));

    m_proxy->getValue();

    QCOMPARE(log.lines(), getValueLines("\"say \\\"hi\\\"\""));
}

void tst_SetupStringInterface::plainOperationsLogNothingOnAnErrorReply()
{
    // Only getValue is checked here; getString, unlike SetupIntInterface's, is not.
    LogCapture log;
    const ScriptedAnswer error = ScriptedAnswer::error(failure, QStringLiteral("refused"));
    for (const char *member : {"setValue", "getString", "isChangeable", "setToDefault"})
        m_fake->answer(member, error);

    QVERIFY(!m_proxy->setValue(QStringLiteral("x")).isValid());
    QVERIFY(!m_proxy->getString().isValid());
    QVERIFY(!m_proxy->isChangeable().isValid());
    QVERIFY(!m_proxy->setToDefault().isValid());

    QCOMPARE(m_fake->callCount(), 4);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupStringInterface::plainOperationsLogNothingWhenTheServiceIsAbsent()
{
    LogCapture log;
    SetupStringInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    proxy.setValue(QStringLiteral("x"));
    proxy.getString();
    proxy.setValueAsync(QStringLiteral("x"));
    proxy.isChangeable();
    proxy.setToDefault();
    proxy.setToDefaultAsync();

    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupStringInterface::asyncOperationsReturnAtOnceAndLeaveLastErrorAlone()
{
    m_fake->answer("isChangeable", ScriptedAnswer::error(failure, QStringLiteral("earlier failure")));
    m_fake->answer("setValue", ScriptedAnswer::silence());
    m_fake->answer("setToDefault", ScriptedAnswer::silence());
    m_proxy->isChangeable();
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));

    // The application never answers: a call that waited would not come back in time
    // for the fake to see both messages.
    LogCapture log;
    m_proxy->setValueAsync(QStringLiteral("Probe C"));
    m_proxy->setToDefaultAsync();

    QVERIFY(m_fake->waitForCalls(3));
    QCOMPARE(m_fake->calls().at(1).member, QStringLiteral("setValue"));
    QCOMPARE(m_fake->calls().at(1).arguments, QList<QVariant>{QStringLiteral("Probe C")});
    QCOMPARE(m_fake->calls().at(2).member, QStringLiteral("setToDefault"));
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupStringInterface::asyncSetterToAnAbsentServiceLogsNothing()
{
    LogCapture log;
    SetupStringInterface proxy(absentService(), path, QDBusConnection::sessionBus());
    const QDBusError before = proxy.lastError();

    proxy.setValueAsync(QStringLiteral("x"));
    proxy.setToDefaultAsync();

    QCOMPARE(proxy.lastError().type(), before.type());
    QCOMPARE(proxy.lastError().message(), before.message());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupStringInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    const QMetaObject &meta = SetupStringInterface::staticMetaObject;
    QCOMPARE(ownMethodSignatures(meta),
             QStringList({"setupChanged(QString)", "setValue(QString)", "getString()", "setValueAsync(QString)",
                          "getValue()", "isChangeable()", "setToDefault()", "setToDefaultAsync()"}));
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Signal), QStringList({"setupChanged(QString)"}));
    QCOMPARE(ownMethodReturnTypes(meta),
             QStringList({"void", "QDBusReply<bool>", "QDBusReply<QString>", "void", "QDBusReply<QString>",
                          "QDBusReply<bool>", "QDBusReply<void>", "void"}));
    QCOMPARE(meta.superClass(), &QDBusAbstractInterface::staticMetaObject);
    QCOMPARE(m_proxy->metaObject(), &meta);
}

void tst_SetupStringInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    QCOMPARE(m_proxy->qt_metacast("SetupStringInterface"), static_cast<void *>(m_proxy.get()));
    QCOMPARE(m_proxy->qt_metacast("QDBusAbstractInterface"),
             static_cast<void *>(static_cast<QDBusAbstractInterface *>(m_proxy.get())));
    QCOMPARE(m_proxy->qt_metacast("QObject"), static_cast<void *>(static_cast<QObject *>(m_proxy.get())));
    QCOMPARE(m_proxy->qt_metacast(nullptr), nullptr);
    QCOMPARE(m_proxy->qt_metacast("SetupEnumInterface"), nullptr);
    QCOMPARE(m_proxy->qt_metacast("SetupString"), nullptr);
}

void tst_SetupStringInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(QStringLiteral("Probe A")));
    m_fake->answer("getString", ScriptedAnswer::value(QStringLiteral("Probe A (2)")));
    m_fake->answer("setValue", ScriptedAnswer::value(true));

    QDBusReply<QString> value;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<QString>, value)));
    QVERIFY(value.isValid());
    QCOMPARE(value.value(), m_proxy->getValue().value());
    QCOMPARE(value.value(), QStringLiteral("Probe A"));

    QDBusReply<QString> text;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getString", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<QString>, text)));
    QCOMPARE(text.value(), QStringLiteral("Probe A (2)"));

    QDBusReply<bool> accepted;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<bool>, accepted), Q_ARG(QString, "Probe D")));
    QVERIFY(accepted.isValid());
    QCOMPARE(accepted.value(), true);
    QCOMPARE(m_fake->calls().last().arguments, QList<QVariant>{QStringLiteral("Probe D")});

    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValueAsync", Qt::DirectConnection, Q_ARG(QString, "Probe E")));
    QVERIFY(m_fake->waitForCalls(5));
    QCOMPARE(m_fake->calls().last().member, QStringLiteral("setValue"));
    QCOMPARE(m_fake->calls().last().arguments, QList<QVariant>{QStringLiteral("Probe E")});
}

void tst_SetupStringInterface::invokingGetValueByNameLogsLikeTheDirectCall()
{
    LogCapture log;
    m_fake->answer("getValue", ScriptedAnswer::error(failure, QStringLiteral("no label yet")));

    QDBusReply<QString> reply;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<QString>, reply)));

    QVERIFY(!reply.isValid());
    QCOMPARE(reply.error().message(), QStringLiteral("no label yet"));
    QCOMPARE(log.lines(), getValueLines("\"no label yet\""));
}

void tst_SetupStringInterface::relaysSetupChangedOfItsOwnObjectOnly()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupChanged(QString)), "setupChanged", {QStringLiteral("Probe B")});
}

QTEST_GUILESS_MAIN(tst_SetupStringInterface)

#include "tst_setupstringinterface.moc"
