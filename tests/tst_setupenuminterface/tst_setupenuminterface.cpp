#include "SetupEnumInterface.h"

#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"

#include <QDBusConnection>
#include <QPointer>
#include <QtTest/QTest>

#include <functional>
#include <memory>

using Operation = std::function<Outcome(SetupEnumInterface &)>;
Q_DECLARE_METATYPE(Operation)

namespace {
const QString path = QStringLiteral("/Setup/Mode");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");
} // namespace

class tst_SetupEnumInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void constructorPassesItsArgumentsOnAndCallsNothing();
    void holdsNoDataOfItsOwn();

    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void enumOperationsSendMembersWithoutEnum();
    void setValueByTextAndByIndexShareTheMember();
    void mapsEachReplyWithoutLogging_data();
    void mapsEachReplyWithoutLogging();
    void givesInvalidRepliesWhenTheServiceIsAbsent();
    void operationsLogNothingWhenTheServiceIsAbsent();

    void asyncOperationsReturnAtOnceAndLeaveLastErrorAlone();
    void asyncSettersToAnAbsentServiceLogNothing();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();
    void invokingSetValueByNamePicksTheOverloadByArgumentType();
    void relaysSetupChangedOfItsOwnObjectOnly();

private:
    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<SetupEnumInterface> m_proxy;
};

void tst_SetupEnumInterface::init()
{
    m_fake.reset(new FakeMeasApplication);
    m_proxy.reset(new SetupEnumInterface(m_fake->service(), path, QDBusConnection::sessionBus()));
}

void tst_SetupEnumInterface::cleanup()
{
    m_proxy.reset();
    m_fake.reset();
}

void tst_SetupEnumInterface::constructorPassesItsArgumentsOnAndCallsNothing()
{
    auto parent = std::make_unique<QObject>();
    m_fake->answer("isChangeable", ScriptedAnswer::value(true));

    auto *proxy = new SetupEnumInterface(m_fake->service(), path, QDBusConnection::sessionBus(), parent.get());

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
    QPointer<SetupEnumInterface> watch(proxy);
    parent.reset();
    QVERIFY(watch.isNull());
}

void tst_SetupEnumInterface::holdsNoDataOfItsOwn()
{
    QCOMPARE(sizeof(SetupEnumInterface), sizeof(QDBusAbstractInterface));
}

void tst_SetupEnumInterface::sendsEachOperationWithItsWireForm_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<QList<QVariant>>("arguments");

    const auto op = [](std::function<void(SetupEnumInterface &)> call) {
        return Operation([call](SetupEnumInterface &proxy) {
            call(proxy);
            return Outcome{};
        });
    };
    QTest::newRow("setValue by index") << op([](SetupEnumInterface &p) { p.setValue(2); }) << "setValue"
                                       << "i" << QList<QVariant>{2};
    QTest::newRow("setValueAsync by index") << op([](SetupEnumInterface &p) { p.setValueAsync(3); }) << "setValue"
                                            << "i" << QList<QVariant>{3};
    QTest::newRow("setValue by text") << op([](SetupEnumInterface &p) { p.setValue(QStringLiteral("Auto")); })
                                      << "setValue"
                                      << "s" << QList<QVariant>{QStringLiteral("Auto")};
    QTest::newRow("setValueAsync by text")
        << op([](SetupEnumInterface &p) { p.setValueAsync(QStringLiteral("Manual")); }) << "setValue"
        << "s" << QList<QVariant>{QStringLiteral("Manual")};
    QTest::newRow("getEnumValueList") << op([](SetupEnumInterface &p) { p.getEnumValueList(); }) << "getValueList"
                                      << "" << QList<QVariant>{};
    QTest::newRow("getValue") << op([](SetupEnumInterface &p) { p.getValue(); }) << "getValue"
                              << "" << QList<QVariant>{};
    QTest::newRow("getString") << op([](SetupEnumInterface &p) { p.getString(); }) << "getString"
                               << "" << QList<QVariant>{};
    QTest::newRow("getStringRepresentation")
        << op([](SetupEnumInterface &p) { p.getStringRepresentation(4); }) << "getStringRepresentation"
        << "i" << QList<QVariant>{4};
    QTest::newRow("getStringRepresentation negative")
        << op([](SetupEnumInterface &p) { p.getStringRepresentation(-1); }) << "getStringRepresentation"
        << "i" << QList<QVariant>{-1};
    QTest::newRow("getEnumQuantity") << op([](SetupEnumInterface &p) { p.getEnumQuantity(); }) << "getQuantity"
                                     << "" << QList<QVariant>{};
    QTest::newRow("execute") << op([](SetupEnumInterface &p) { p.execute(); }) << "execute"
                             << "" << QList<QVariant>{};
    QTest::newRow("executeAsync") << op([](SetupEnumInterface &p) { p.executeAsync(); }) << "execute"
                                  << "" << QList<QVariant>{};
    QTest::newRow("isChangeable") << op([](SetupEnumInterface &p) { p.isChangeable(); }) << "isChangeable"
                                  << "" << QList<QVariant>{};
    QTest::newRow("setToDefault") << op([](SetupEnumInterface &p) { p.setToDefault(); }) << "setToDefault"
                                  << "" << QList<QVariant>{};
    QTest::newRow("setToDefaultAsync") << op([](SetupEnumInterface &p) { p.setToDefaultAsync(); }) << "setToDefault"
                                       << "" << QList<QVariant>{};
}

void tst_SetupEnumInterface::sendsEachOperationWithItsWireForm()
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);
    QFETCH(QString, signature);
    QFETCH(QList<QVariant>, arguments);

    m_fake->answer(member, ScriptedAnswer::reply());
    operation(*m_proxy);
    verifySingleCall(*m_fake, path, member, signature, arguments);
}

void tst_SetupEnumInterface::enumOperationsSendMembersWithoutEnum()
{
    m_fake->answer("getQuantity", ScriptedAnswer::value(3));
    m_fake->answer("getValueList", ScriptedAnswer::value(QStringLiteral("Off;Auto;Manual")));

    const QDBusReply<int> quantity = m_proxy->getEnumQuantity();
    const QDBusReply<QString> list = m_proxy->getEnumValueList();

    QVERIFY(quantity.isValid());
    QCOMPARE(quantity.value(), 3);
    QVERIFY(list.isValid());
    QCOMPARE(list.value(), QStringLiteral("Off;Auto;Manual"));
    const QList<ReceivedCall> calls = m_fake->calls();
    QCOMPARE(calls.size(), 2);
    QCOMPARE(calls.at(0).member, QStringLiteral("getQuantity"));
    QCOMPARE(calls.at(1).member, QStringLiteral("getValueList"));
}

void tst_SetupEnumInterface::setValueByTextAndByIndexShareTheMember()
{
    m_fake->answer("setValue", ScriptedAnswer::value(true));

    QVERIFY(m_proxy->setValue(QStringLiteral("Manual")).value());
    QVERIFY(m_proxy->setValue(1).value());

    const QList<ReceivedCall> calls = m_fake->calls();
    QCOMPARE(calls.size(), 2);
    QCOMPARE(calls.at(0).member, QStringLiteral("setValue"));
    QCOMPARE(calls.at(0).signature, QStringLiteral("s"));
    QCOMPARE(calls.at(0).arguments, QList<QVariant>{QStringLiteral("Manual")});
    QCOMPARE(calls.at(1).member, QStringLiteral("setValue"));
    QCOMPARE(calls.at(1).signature, QStringLiteral("i"));
    QCOMPARE(calls.at(1).arguments, QList<QVariant>{1});
}

void tst_SetupEnumInterface::mapsEachReplyWithoutLogging_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QVariant>("value");

    const ScriptedAnswer error = ScriptedAnswer::error(failure, QStringLiteral("refused"));
    const auto rows = [&](const char *name, const char *member, Operation op, const QVariant &good,
                          const QVariant &wrongType, const QVariant &defaultValue) {
        QTest::addRow("%s answered", name) << op << member << ScriptedAnswer::value(good) << true << good;
        QTest::addRow("%s error", name) << op << member << error << false << defaultValue;
        QTest::addRow("%s wrong type", name)
            << op << member << ScriptedAnswer::value(wrongType) << false << defaultValue;
    };
    rows(
        "setValue by index", "setValue", [](SetupEnumInterface &p) { return outcomeOf(p.setValue(1)); }, true, 1,
        false);
    rows(
        "setValue by text", "setValue",
        [](SetupEnumInterface &p) { return outcomeOf(p.setValue(QStringLiteral("Auto"))); }, true,
        QStringLiteral("true"), false);
    rows(
        "getEnumValueList", "getValueList", [](SetupEnumInterface &p) { return outcomeOf(p.getEnumValueList()); },
        QStringLiteral("Off;Auto;Manual"), QStringList({"Off", "Auto"}), QString());
    rows(
        "getValue", "getValue", [](SetupEnumInterface &p) { return outcomeOf(p.getValue()); }, 2, QStringLiteral("2"),
        0);
    rows(
        "getString", "getString", [](SetupEnumInterface &p) { return outcomeOf(p.getString()); },
        QStringLiteral("Manual"), 2, QString());
    rows(
        "getStringRepresentation", "getStringRepresentation",
        [](SetupEnumInterface &p) { return outcomeOf(p.getStringRepresentation(1)); }, QStringLiteral("Auto"), 1,
        QString());
    rows(
        "getEnumQuantity", "getQuantity", [](SetupEnumInterface &p) { return outcomeOf(p.getEnumQuantity()); }, 3, 3.0,
        0);
    rows(
        "isChangeable", "isChangeable", [](SetupEnumInterface &p) { return outcomeOf(p.isChangeable()); }, true, 1,
        false);

    // A void reply accepts any method return and only fails on an error.
    for (const char *name : {"execute", "setToDefault"}) {
        const Operation op = qstrcmp(name, "execute") == 0
            ? Operation([](SetupEnumInterface &p) { return outcomeOf(p.execute()); })
            : Operation([](SetupEnumInterface &p) { return outcomeOf(p.setToDefault()); });
        QTest::addRow("%s answered", name) << op << name << ScriptedAnswer::reply() << true << QVariant();
        QTest::addRow("%s answered with a value", name) << op << name << ScriptedAnswer::value(3) << true << QVariant();
        QTest::addRow("%s error", name) << op << name << error << false << QVariant();
    }
}

void tst_SetupEnumInterface::mapsEachReplyWithoutLogging()
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

void tst_SetupEnumInterface::givesInvalidRepliesWhenTheServiceIsAbsent()
{
    SetupEnumInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const QDBusReply<bool> byIndex = proxy.setValue(1);
    QVERIFY(!byIndex.isValid());
    QCOMPARE(byIndex.value(), false);
    QCOMPARE(byIndex.error().type(), QDBusError::ServiceUnknown);
    QVERIFY(!proxy.setValue(QStringLiteral("Auto")).isValid());
    QCOMPARE(proxy.getEnumValueList().value(), QString());
    const QDBusReply<int> value = proxy.getValue();
    QVERIFY(!value.isValid());
    QCOMPARE(value.value(), 0);
    QCOMPARE(value.error().type(), QDBusError::ServiceUnknown);
    QCOMPARE(proxy.getString().value(), QString());
    QVERIFY(!proxy.getStringRepresentation(0).isValid());
    QCOMPARE(proxy.getStringRepresentation(0).value(), QString());
    QVERIFY(!proxy.getEnumQuantity().isValid());
    QCOMPARE(proxy.getEnumQuantity().value(), 0);
    QVERIFY(!proxy.execute().isValid());
    QVERIFY(!proxy.isChangeable().isValid());
    QCOMPARE(proxy.isChangeable().value(), false);
    QVERIFY(!proxy.setToDefault().isValid());
}

void tst_SetupEnumInterface::operationsLogNothingWhenTheServiceIsAbsent()
{
    LogCapture log;
    SetupEnumInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    proxy.setValue(1);
    proxy.setValueAsync(1);
    proxy.setValue(QStringLiteral("Auto"));
    proxy.setValueAsync(QStringLiteral("Auto"));
    proxy.getEnumValueList();
    proxy.getValue();
    proxy.getString();
    proxy.getStringRepresentation(0);
    proxy.getEnumQuantity();
    proxy.execute();
    proxy.executeAsync();
    proxy.isChangeable();
    proxy.setToDefault();
    proxy.setToDefaultAsync();

    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupEnumInterface::asyncOperationsReturnAtOnceAndLeaveLastErrorAlone()
{
    m_fake->answer("getQuantity", ScriptedAnswer::error(failure, QStringLiteral("earlier failure")));
    m_fake->answer("setValue", ScriptedAnswer::silence());
    m_fake->answer("execute", ScriptedAnswer::silence());
    m_fake->answer("setToDefault", ScriptedAnswer::silence());
    m_proxy->getEnumQuantity();
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));

    // The application never answers: a call that waited would not come back in time
    // for the fake to see all messages.
    LogCapture log;
    m_proxy->setValueAsync(2);
    m_proxy->setValueAsync(QStringLiteral("Auto"));
    m_proxy->executeAsync();
    m_proxy->setToDefaultAsync();

    QVERIFY(m_fake->waitForCalls(5));
    const QList<ReceivedCall> calls = m_fake->calls();
    QCOMPARE(calls.at(1).member, QStringLiteral("setValue"));
    QCOMPARE(calls.at(1).signature, QStringLiteral("i"));
    QCOMPARE(calls.at(1).arguments, QList<QVariant>{2});
    QCOMPARE(calls.at(2).member, QStringLiteral("setValue"));
    QCOMPARE(calls.at(2).signature, QStringLiteral("s"));
    QCOMPARE(calls.at(2).arguments, QList<QVariant>{QStringLiteral("Auto")});
    QCOMPARE(calls.at(3).member, QStringLiteral("execute"));
    QCOMPARE(calls.at(4).member, QStringLiteral("setToDefault"));
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupEnumInterface::asyncSettersToAnAbsentServiceLogNothing()
{
    LogCapture log;
    SetupEnumInterface proxy(absentService(), path, QDBusConnection::sessionBus());
    const QDBusError before = proxy.lastError();

    proxy.setValueAsync(5);
    proxy.setValueAsync(QStringLiteral("Auto"));
    proxy.executeAsync();
    proxy.setToDefaultAsync();

    QCOMPARE(proxy.lastError().type(), before.type());
    QCOMPARE(proxy.lastError().message(), before.message());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupEnumInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    const QMetaObject &meta = SetupEnumInterface::staticMetaObject;
    QCOMPARE(ownMethodSignatures(meta),
             QStringList({"setupChanged(int,QString)", "setValue(int)", "setValueAsync(int)", "setValue(QString)",
                          "setValueAsync(QString)", "getEnumValueList()", "getValue()", "getString()",
                          "getStringRepresentation(int)", "getEnumQuantity()", "execute()", "executeAsync()",
                          "isChangeable()", "setToDefault()", "setToDefaultAsync()"}));
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Signal), QStringList({"setupChanged(int,QString)"}));
    QCOMPARE(ownMethodReturnTypes(meta),
             QStringList({"void", "QDBusReply<bool>", "void", "QDBusReply<bool>", "void", "QDBusReply<QString>",
                          "QDBusReply<int>", "QDBusReply<QString>", "QDBusReply<QString>", "QDBusReply<int>",
                          "QDBusReply<void>", "void", "QDBusReply<bool>", "QDBusReply<void>", "void"}));
    QCOMPARE(meta.superClass(), &QDBusAbstractInterface::staticMetaObject);
    QCOMPARE(m_proxy->metaObject(), &meta);
}

void tst_SetupEnumInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    QCOMPARE(m_proxy->qt_metacast("SetupEnumInterface"), static_cast<void *>(m_proxy.get()));
    QCOMPARE(m_proxy->qt_metacast("QDBusAbstractInterface"),
             static_cast<void *>(static_cast<QDBusAbstractInterface *>(m_proxy.get())));
    QCOMPARE(m_proxy->qt_metacast("QObject"), static_cast<void *>(static_cast<QObject *>(m_proxy.get())));
    QCOMPARE(m_proxy->qt_metacast(nullptr), nullptr);
    QCOMPARE(m_proxy->qt_metacast("SetupIntInterface"), nullptr);
    QCOMPARE(m_proxy->qt_metacast("SetupEnumInterfaceX"), nullptr);
}

void tst_SetupEnumInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(2));
    m_fake->answer("getQuantity", ScriptedAnswer::value(3));
    m_fake->answer("getStringRepresentation", ScriptedAnswer::value(QStringLiteral("Manual")));
    m_fake->answer("execute", ScriptedAnswer::error(failure, QStringLiteral("busy")));

    QDBusReply<int> value;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<int>, value)));
    QVERIFY(value.isValid());
    QCOMPARE(value.value(), m_proxy->getValue().value());
    QCOMPARE(value.value(), 2);

    QDBusReply<int> quantity;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getEnumQuantity", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<int>, quantity)));
    QCOMPARE(quantity.value(), 3);
    QCOMPARE(m_fake->calls().last().member, QStringLiteral("getQuantity"));

    QDBusReply<QString> text;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getStringRepresentation", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<QString>, text), Q_ARG(int, 2)));
    QCOMPARE(text.value(), QStringLiteral("Manual"));
    QCOMPARE(m_fake->calls().last().arguments, QList<QVariant>{2});

    QDBusReply<void> executed;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "execute", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<void>, executed)));
    QVERIFY(!executed.isValid());
    QCOMPARE(executed.error().message(), QStringLiteral("busy"));

    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "executeAsync", Qt::DirectConnection));
    QVERIFY(m_fake->waitForCalls(6));
    QCOMPARE(m_fake->calls().last().member, QStringLiteral("execute"));
}

void tst_SetupEnumInterface::invokingSetValueByNamePicksTheOverloadByArgumentType()
{
    m_fake->answer("setValue", ScriptedAnswer::value(true));

    QDBusReply<bool> byText;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<bool>, byText), Q_ARG(QString, "Auto")));
    QDBusReply<bool> byIndex;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<bool>, byIndex), Q_ARG(int, 1)));
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValueAsync", Qt::DirectConnection, Q_ARG(QString, "Manual")));
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValueAsync", Qt::DirectConnection, Q_ARG(int, 2)));

    QVERIFY(byText.isValid());
    QCOMPARE(byText.value(), true);
    QVERIFY(byIndex.isValid());
    QCOMPARE(byIndex.value(), true);
    QVERIFY(m_fake->waitForCalls(4));
    const QList<ReceivedCall> calls = m_fake->calls();
    QCOMPARE(calls.at(0).signature, QStringLiteral("s"));
    QCOMPARE(calls.at(0).arguments, QList<QVariant>{QStringLiteral("Auto")});
    QCOMPARE(calls.at(1).signature, QStringLiteral("i"));
    QCOMPARE(calls.at(1).arguments, QList<QVariant>{1});
    QCOMPARE(calls.at(2).signature, QStringLiteral("s"));
    QCOMPARE(calls.at(2).arguments, QList<QVariant>{QStringLiteral("Manual")});
    QCOMPARE(calls.at(3).signature, QStringLiteral("i"));
    QCOMPARE(calls.at(3).arguments, QList<QVariant>{2});
    for (const ReceivedCall &call : calls)
        QCOMPARE(call.member, QStringLiteral("setValue"));
}

void tst_SetupEnumInterface::relaysSetupChangedOfItsOwnObjectOnly()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupChanged(int, QString)), "setupChanged",
                      {2, QStringLiteral("Manual")});
}

QTEST_GUILESS_MAIN(tst_SetupEnumInterface)

#include "tst_setupenuminterface.moc"
