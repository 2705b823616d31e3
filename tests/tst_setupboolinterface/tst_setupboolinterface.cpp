#include "SetupBoolInterface.h"

#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"

#include <QDBusConnection>
#include <QPointer>
#include <QtTest/QTest>

#include <functional>
#include <memory>

using Operation = std::function<Outcome(SetupBoolInterface &)>;
Q_DECLARE_METATYPE(Operation)

namespace {
const QString path = QStringLiteral("/Setup/Enabled");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");
} // namespace

class tst_SetupBoolInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void constructorPassesItsArgumentsOnAndCallsNothing();
    void holdsNoDataOfItsOwn();

    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void mapsEachReplyWithoutLogging_data();
    void mapsEachReplyWithoutLogging();
    void givesInvalidRepliesWhenTheServiceIsAbsent();
    void operationsLogNothingWhenTheServiceIsAbsent();

    void asyncOperationsReturnAtOnceAndLeaveLastErrorAlone();
    void asyncSetterToAnAbsentServiceLogsNothing();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();
    void relaysSetupChangedOfItsOwnObjectOnly_data();
    void relaysSetupChangedOfItsOwnObjectOnly();

private:
    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<SetupBoolInterface> m_proxy;
};

void tst_SetupBoolInterface::init()
{
    m_fake.reset(new FakeMeasApplication);
    m_proxy.reset(new SetupBoolInterface(m_fake->service(), path, QDBusConnection::sessionBus()));
}

void tst_SetupBoolInterface::cleanup()
{
    m_proxy.reset();
    m_fake.reset();
}

void tst_SetupBoolInterface::constructorPassesItsArgumentsOnAndCallsNothing()
{
    auto parent = std::make_unique<QObject>();
    m_fake->answer("isChangeable", ScriptedAnswer::value(true));

    auto *proxy = new SetupBoolInterface(m_fake->service(), path, QDBusConnection::sessionBus(), parent.get());

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
    QPointer<SetupBoolInterface> watch(proxy);
    parent.reset();
    QVERIFY(watch.isNull());
}

void tst_SetupBoolInterface::holdsNoDataOfItsOwn()
{
    QCOMPARE(sizeof(SetupBoolInterface), sizeof(QDBusAbstractInterface));
}

void tst_SetupBoolInterface::sendsEachOperationWithItsWireForm_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<QList<QVariant>>("arguments");

    const auto op = [](std::function<void(SetupBoolInterface &)> call) {
        return Operation([call](SetupBoolInterface &proxy) {
            call(proxy);
            return Outcome{};
        });
    };
    QTest::newRow("setValue true") << op([](SetupBoolInterface &p) { p.setValue(true); }) << "setValue"
                                   << "b" << QList<QVariant>{true};
    QTest::newRow("setValue false") << op([](SetupBoolInterface &p) { p.setValue(false); }) << "setValue"
                                    << "b" << QList<QVariant>{false};
    QTest::newRow("setValueAsync true") << op([](SetupBoolInterface &p) { p.setValueAsync(true); }) << "setValue"
                                        << "b" << QList<QVariant>{true};
    QTest::newRow("setValueAsync false") << op([](SetupBoolInterface &p) { p.setValueAsync(false); }) << "setValue"
                                         << "b" << QList<QVariant>{false};
    QTest::newRow("getValue") << op([](SetupBoolInterface &p) { p.getValue(); }) << "getValue"
                              << "" << QList<QVariant>{};
    QTest::newRow("getString") << op([](SetupBoolInterface &p) { p.getString(); }) << "getString"
                               << "" << QList<QVariant>{};
    QTest::newRow("isChangeable") << op([](SetupBoolInterface &p) { p.isChangeable(); }) << "isChangeable"
                                  << "" << QList<QVariant>{};
    QTest::newRow("setToDefault") << op([](SetupBoolInterface &p) { p.setToDefault(); }) << "setToDefault"
                                  << "" << QList<QVariant>{};
    QTest::newRow("setToDefaultAsync") << op([](SetupBoolInterface &p) { p.setToDefaultAsync(); }) << "setToDefault"
                                       << "" << QList<QVariant>{};
}

void tst_SetupBoolInterface::sendsEachOperationWithItsWireForm()
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);
    QFETCH(QString, signature);
    QFETCH(QList<QVariant>, arguments);

    m_fake->answer(member, ScriptedAnswer::reply());
    operation(*m_proxy);
    verifySingleCall(*m_fake, path, member, signature, arguments);
    const QList<ReceivedCall> calls = m_fake->calls();
    for (const QVariant &argument : calls.first().arguments)
        QCOMPARE(argument.userType(), int(QMetaType::Bool));
}

void tst_SetupBoolInterface::mapsEachReplyWithoutLogging_data()
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
    const Operation setValue = [](SetupBoolInterface &p) { return outcomeOf(p.setValue(true)); };
    const Operation getValue = [](SetupBoolInterface &p) { return outcomeOf(p.getValue()); };
    const Operation isChangeable = [](SetupBoolInterface &p) { return outcomeOf(p.isChangeable()); };
    rows("setValue", setValue, true, 1, false);
    rows("getValue", getValue, true, QStringLiteral("true"), false);
    rows(
        "getString", [](SetupBoolInterface &p) { return outcomeOf(p.getString()); }, QStringLiteral("on"), true,
        QString());
    rows("isChangeable", isChangeable, true, 1u, false);

    // An answered false is valid, unlike the false of a failed reply.
    QTest::newRow("setValue answered false")
        << setValue << "setValue" << ScriptedAnswer::value(false) << true << QVariant(false);
    QTest::newRow("getValue answered false")
        << getValue << "getValue" << ScriptedAnswer::value(false) << true << QVariant(false);
    QTest::newRow("isChangeable answered false")
        << isChangeable << "isChangeable" << ScriptedAnswer::value(false) << true << QVariant(false);

    // A void reply accepts any method return and only fails on an error.
    const Operation setToDefault = [](SetupBoolInterface &p) { return outcomeOf(p.setToDefault()); };
    QTest::newRow("setToDefault answered")
        << setToDefault << "setToDefault" << ScriptedAnswer::reply() << true << QVariant();
    QTest::newRow("setToDefault answered with a value")
        << setToDefault << "setToDefault" << ScriptedAnswer::value(true) << true << QVariant();
    QTest::newRow("setToDefault error") << setToDefault << "setToDefault" << error << false << QVariant();
}

void tst_SetupBoolInterface::mapsEachReplyWithoutLogging()
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
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupBoolInterface::givesInvalidRepliesWhenTheServiceIsAbsent()
{
    SetupBoolInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const QDBusReply<bool> set = proxy.setValue(true);
    QVERIFY(!set.isValid());
    QCOMPARE(set.value(), false);
    QCOMPARE(set.error().type(), QDBusError::ServiceUnknown);
    QVERIFY(!proxy.getValue().isValid());
    QCOMPARE(proxy.getValue().value(), false);
    const QDBusReply<QString> text = proxy.getString();
    QVERIFY(!text.isValid());
    QCOMPARE(text.value(), QString());
    QCOMPARE(text.error().type(), QDBusError::ServiceUnknown);
    QVERIFY(!proxy.isChangeable().isValid());
    QCOMPARE(proxy.isChangeable().value(), false);
    const QDBusReply<void> reset = proxy.setToDefault();
    QVERIFY(!reset.isValid());
    QCOMPARE(reset.error().type(), QDBusError::ServiceUnknown);
}

void tst_SetupBoolInterface::operationsLogNothingWhenTheServiceIsAbsent()
{
    LogCapture log;
    SetupBoolInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    proxy.setValue(true);
    proxy.setValueAsync(true);
    proxy.getValue();
    proxy.getString();
    proxy.isChangeable();
    proxy.setToDefault();
    proxy.setToDefaultAsync();

    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupBoolInterface::asyncOperationsReturnAtOnceAndLeaveLastErrorAlone()
{
    m_fake->answer("isChangeable", ScriptedAnswer::error(failure, QStringLiteral("earlier failure")));
    m_fake->answer("setValue", ScriptedAnswer::silence());
    m_fake->answer("setToDefault", ScriptedAnswer::silence());
    m_proxy->isChangeable();
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));

    // The application never answers: a call that waited would not come back in time
    // for the fake to see both messages.
    LogCapture log;
    m_proxy->setValueAsync(true);
    m_proxy->setToDefaultAsync();

    QVERIFY(m_fake->waitForCalls(3));
    QCOMPARE(m_fake->calls().at(1).member, QStringLiteral("setValue"));
    QCOMPARE(m_fake->calls().at(1).arguments, QList<QVariant>{true});
    QCOMPARE(m_fake->calls().at(2).member, QStringLiteral("setToDefault"));
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupBoolInterface::asyncSetterToAnAbsentServiceLogsNothing()
{
    LogCapture log;
    SetupBoolInterface proxy(absentService(), path, QDBusConnection::sessionBus());
    const QDBusError before = proxy.lastError();

    proxy.setValueAsync(false);
    proxy.setToDefaultAsync();

    QCOMPARE(proxy.lastError().type(), before.type());
    QCOMPARE(proxy.lastError().message(), before.message());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupBoolInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    const QMetaObject &meta = SetupBoolInterface::staticMetaObject;
    QCOMPARE(ownMethodSignatures(meta),
             QStringList({"setupChanged(bool)", "setValue(bool)", "setValueAsync(bool)", "getValue()", "getString()",
                          "isChangeable()", "setToDefault()", "setToDefaultAsync()"}));
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Signal), QStringList({"setupChanged(bool)"}));
    QCOMPARE(ownMethodReturnTypes(meta),
             QStringList({"void", "QDBusReply<bool>", "void", "QDBusReply<bool>", "QDBusReply<QString>",
                          "QDBusReply<bool>", "QDBusReply<void>", "void"}));
    QCOMPARE(meta.superClass(), &QDBusAbstractInterface::staticMetaObject);
    QCOMPARE(m_proxy->metaObject(), &meta);
}

void tst_SetupBoolInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    QCOMPARE(m_proxy->qt_metacast("SetupBoolInterface"), static_cast<void *>(m_proxy.get()));
    QCOMPARE(m_proxy->qt_metacast("QDBusAbstractInterface"),
             static_cast<void *>(static_cast<QDBusAbstractInterface *>(m_proxy.get())));
    QCOMPARE(m_proxy->qt_metacast("QObject"), static_cast<void *>(static_cast<QObject *>(m_proxy.get())));
    QCOMPARE(m_proxy->qt_metacast(nullptr), nullptr);
    QCOMPARE(m_proxy->qt_metacast("SetupIntInterface"), nullptr);
    QCOMPARE(m_proxy->qt_metacast("SetupBoolInterface "), nullptr);
}

void tst_SetupBoolInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(true));
    m_fake->answer("getString", ScriptedAnswer::value(QStringLiteral("on")));
    m_fake->answer("setValue", ScriptedAnswer::value(true));
    m_fake->answer("setToDefault", ScriptedAnswer::error(failure, QStringLiteral("reset refused")));

    QDBusReply<bool> value;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<bool>, value)));
    QVERIFY(value.isValid());
    QCOMPARE(value.value(), m_proxy->getValue().value());
    QCOMPARE(value.value(), true);

    QDBusReply<QString> text;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getString", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<QString>, text)));
    QCOMPARE(text.value(), QStringLiteral("on"));

    QDBusReply<bool> accepted;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<bool>, accepted), Q_ARG(bool, false)));
    QVERIFY(accepted.isValid());
    QCOMPARE(accepted.value(), true);
    QCOMPARE(m_fake->calls().last().arguments, QList<QVariant>{false});

    QDBusReply<void> reset;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setToDefault", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<void>, reset)));
    QVERIFY(!reset.isValid());
    QCOMPARE(reset.error().message(), QStringLiteral("reset refused"));
    QCOMPARE(reset.error().message(), m_proxy->setToDefault().error().message());

    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setToDefaultAsync", Qt::DirectConnection));
    QVERIFY(m_fake->waitForCalls(7));
    QCOMPARE(m_fake->calls().last().member, QStringLiteral("setToDefault"));
}

void tst_SetupBoolInterface::relaysSetupChangedOfItsOwnObjectOnly_data()
{
    QTest::addColumn<bool>("newVal");

    QTest::newRow("true") << true;
    QTest::newRow("false") << false;
}

void tst_SetupBoolInterface::relaysSetupChangedOfItsOwnObjectOnly()
{
    QFETCH(bool, newVal);

    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupChanged(bool)), "setupChanged", {newVal});
}

QTEST_GUILESS_MAIN(tst_SetupBoolInterface)

#include "tst_setupboolinterface.moc"
