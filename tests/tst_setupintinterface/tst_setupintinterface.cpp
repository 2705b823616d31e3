#include "SetupIntInterface.h"

#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"

#include <QDBusConnection>
#include <QtTest/QTest>

#include <functional>
#include <memory>

using Operation = std::function<Outcome(SetupIntInterface &)>;
Q_DECLARE_METATYPE(Operation)

namespace {
const QString path = QStringLiteral("/Setup/Gain");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");
} // namespace

class tst_SetupIntInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void constructionPassesItsArgumentsOnAndSendsNothing();
    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void mapsEachReply_data();
    void mapsEachReply();
    void givesInvalidRepliesWhenTheServiceIsAbsent();

    void getValueLogsThreeLinesOnAnErrorReply();
    void getValueLogsThreeLinesWhenTheServiceIsAbsent();
    void getStringLogsOneLineOnAnErrorReply();
    void getStringLogsOneLineWhenTheServiceIsAbsent();
    void checkedGettersLogNothingForAWrongTypedReply();
    void checkedGettersQuoteAndEscapeTheErrorMessage();
    void plainOperationsLogNothingOnFailure();

    void asyncOperationsReturnAtOnceAndLeaveLastErrorAlone();
    void asyncSetterToAnAbsentServiceLogsNothing();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();
    void relaysSetupChangedOfItsOwnObjectOnly();

private:
    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<SetupIntInterface> m_proxy;
};

void tst_SetupIntInterface::init()
{
    m_fake.reset(new FakeMeasApplication);
    m_proxy.reset(new SetupIntInterface(m_fake->service(), path, QDBusConnection::sessionBus()));
}

void tst_SetupIntInterface::cleanup()
{
    m_proxy.reset();
    m_fake.reset();
}

void tst_SetupIntInterface::constructionPassesItsArgumentsOnAndSendsNothing()
{
    verifyConstructionContract<SetupIntInterface>(*m_fake, path);
}

void tst_SetupIntInterface::sendsEachOperationWithItsWireForm_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<QList<QVariant>>("arguments");

    const auto op = [](std::function<void(SetupIntInterface &)> call) {
        return Operation([call](SetupIntInterface &proxy) {
            call(proxy);
            return Outcome{};
        });
    };
    QTest::newRow("setValue") << op([](SetupIntInterface &p) { p.setValue(7); }) << "setValue"
                              << "i" << QList<QVariant>{7};
    QTest::newRow("setValueAsync") << op([](SetupIntInterface &p) { p.setValueAsync(-3); }) << "setValue"
                                   << "i" << QList<QVariant>{-3};
    QTest::newRow("getValue") << op([](SetupIntInterface &p) { p.getValue(); }) << "getValue"
                              << "" << QList<QVariant>{};
    QTest::newRow("getString") << op([](SetupIntInterface &p) { p.getString(); }) << "getString"
                               << "" << QList<QVariant>{};
    QTest::newRow("getMinValue") << op([](SetupIntInterface &p) { p.getMinValue(); }) << "getMinValue"
                                 << "" << QList<QVariant>{};
    QTest::newRow("getMaxValue") << op([](SetupIntInterface &p) { p.getMaxValue(); }) << "getMaxValue"
                                 << "" << QList<QVariant>{};
    QTest::newRow("getGranularity") << op([](SetupIntInterface &p) { p.getGranularity(); }) << "getGranularity"
                                    << "" << QList<QVariant>{};
    QTest::newRow("isChangeable") << op([](SetupIntInterface &p) { p.isChangeable(); }) << "isChangeable"
                                  << "" << QList<QVariant>{};
    QTest::newRow("setToDefault") << op([](SetupIntInterface &p) { p.setToDefault(); }) << "setToDefault"
                                  << "" << QList<QVariant>{};
    QTest::newRow("setToDefaultAsync") << op([](SetupIntInterface &p) { p.setToDefaultAsync(); }) << "setToDefault"
                                       << "" << QList<QVariant>{};
}

void tst_SetupIntInterface::sendsEachOperationWithItsWireForm()
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);
    QFETCH(QString, signature);
    QFETCH(QList<QVariant>, arguments);

    m_fake->answer(member, ScriptedAnswer::reply());
    operation(*m_proxy);
    verifySingleCall(*m_fake, path, member, signature, arguments);
}

void tst_SetupIntInterface::mapsEachReply_data()
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
        "setValue", [](SetupIntInterface &p) { return outcomeOf(p.setValue(5)); }, true, 1, false);
    rows(
        "getValue", [](SetupIntInterface &p) { return outcomeOf(p.getValue()); }, 42, QStringLiteral("42"), 0);
    rows(
        "getString", [](SetupIntInterface &p) { return outcomeOf(p.getString()); }, QStringLiteral("42 dB"), 42,
        QString());
    rows(
        "getMinValue", [](SetupIntInterface &p) { return outcomeOf(p.getMinValue()); }, -10, 2.5, 0);
    rows(
        "getMaxValue", [](SetupIntInterface &p) { return outcomeOf(p.getMaxValue()); }, 90, true, 0);
    rows(
        "getGranularity", [](SetupIntInterface &p) { return outcomeOf(p.getGranularity()); }, 5, 5.0, 0);
    rows(
        "isChangeable", [](SetupIntInterface &p) { return outcomeOf(p.isChangeable()); }, true, 1, false);

    // A void reply accepts any method return and only fails on an error.
    const Operation setToDefault = [](SetupIntInterface &p) { return outcomeOf(p.setToDefault()); };
    QTest::newRow("setToDefault answered")
        << setToDefault << "setToDefault" << ScriptedAnswer::reply() << true << QVariant();
    QTest::newRow("setToDefault answered with a value")
        << setToDefault << "setToDefault" << ScriptedAnswer::value(3) << true << QVariant();
    QTest::newRow("setToDefault error") << setToDefault << "setToDefault" << error << false << QVariant();
}

void tst_SetupIntInterface::mapsEachReply()
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
}

void tst_SetupIntInterface::givesInvalidRepliesWhenTheServiceIsAbsent()
{
    LogCapture log;
    SetupIntInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const QDBusReply<bool> set = proxy.setValue(1);
    QVERIFY(!set.isValid());
    QCOMPARE(set.value(), false);
    QCOMPARE(set.error().type(), QDBusError::ServiceUnknown);
    QVERIFY(!proxy.getValue().isValid());
    QCOMPARE(proxy.getValue().value(), 0);
    QCOMPARE(proxy.getString().value(), QString());
    QCOMPARE(proxy.getMinValue().value(), 0);
    QCOMPARE(proxy.getMaxValue().value(), 0);
    QCOMPARE(proxy.getGranularity().value(), 0);
    QVERIFY(!proxy.isChangeable().isValid());
    QCOMPARE(proxy.isChangeable().value(), false);
    QVERIFY(!proxy.setToDefault().isValid());
}

void tst_SetupIntInterface::getValueLogsThreeLinesOnAnErrorReply()
{
    LogCapture log;
    m_fake->answer("getValue", ScriptedAnswer::error(failure, QStringLiteral("no value yet")));

    const QDBusReply<int> reply = m_proxy->getValue();

    QVERIFY(!reply.isValid());
    QCOMPARE(reply.value(), 0);
    QCOMPARE(reply.error().message(), QStringLiteral("no value yet"));
    QCOMPARE(log.lines(),
             debugLines({
                 "SetupIntInterface::getValue() Error!  \"no value yet\"",
                 "SetupIntInterface::getValue() Interface  \"com.velk.mqx.MeasApplInterface\"",
                 "SetupIntInterface::getValue() Path  \"/Setup/Gain\"",
             }));
}

void tst_SetupIntInterface::getValueLogsThreeLinesWhenTheServiceIsAbsent()
{
    LogCapture log;
    SetupIntInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const QDBusReply<int> reply = proxy.getValue();

    QVERIFY(!reply.isValid());
    QCOMPARE(reply.value(), 0);
    const QString message = reply.error().message();
    QVERIFY(message.contains(absentService()));
    QCOMPARE(log.lines(),
             debugLines({
                 "SetupIntInterface::getValue() Error!  \"" + message + "\"",
                 "SetupIntInterface::getValue() Interface  \"com.velk.mqx.MeasApplInterface\"",
                 "SetupIntInterface::getValue() Path  \"/Setup/Gain\"",
             }));
}

void tst_SetupIntInterface::getStringLogsOneLineOnAnErrorReply()
{
    LogCapture log;
    m_fake->answer("getString", ScriptedAnswer::error(failure, QStringLiteral("no text")));

    const QDBusReply<QString> reply = m_proxy->getString();

    QVERIFY(!reply.isValid());
    QCOMPARE(reply.value(), QString());
    QCOMPARE(log.lines(), debugLines({"SetupIntInterface::getString() Error!  \"no text\""}));
}

void tst_SetupIntInterface::getStringLogsOneLineWhenTheServiceIsAbsent()
{
    LogCapture log;
    SetupIntInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const QDBusReply<QString> reply = proxy.getString();

    QVERIFY(!reply.isValid());
    QCOMPARE(log.lines(), debugLines({"SetupIntInterface::getString() Error!  \"" + reply.error().message() + "\""}));
}

void tst_SetupIntInterface::checkedGettersLogNothingForAWrongTypedReply()
{
    // The lines follow the proxy's lastError(), which a well-formed answer of the wrong
    // type does not set; the reply itself is still invalid.
    LogCapture log;
    m_fake->answer("getValue", ScriptedAnswer::value(QStringLiteral("forty-two")));
    m_fake->answer("getString", ScriptedAnswer::value(42));

    const QDBusReply<int> value = m_proxy->getValue();
    const QDBusReply<QString> text = m_proxy->getString();

    QVERIFY(!value.isValid());
    QCOMPARE(value.value(), 0);
    QVERIFY(!text.isValid());
    QCOMPARE(text.value(), QString());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupIntInterface::checkedGettersQuoteAndEscapeTheErrorMessage()
{
    LogCapture log;
    m_fake->answer("getString", ScriptedAnswer::error(failure, QStringLiteral("say \"hi\"")));

    m_proxy->getString();

    QCOMPARE(log.lines(), debugLines({"SetupIntInterface::getString() Error!  \"say \\\"hi\\\"\""}));
}

void tst_SetupIntInterface::plainOperationsLogNothingOnFailure()
{
    LogCapture log;
    SetupIntInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    proxy.setValue(1);
    proxy.setValueAsync(1);
    proxy.getMinValue();
    proxy.getMaxValue();
    proxy.getGranularity();
    proxy.isChangeable();
    proxy.setToDefault();
    proxy.setToDefaultAsync();

    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupIntInterface::asyncOperationsReturnAtOnceAndLeaveLastErrorAlone()
{
    m_fake->answer("getMinValue", ScriptedAnswer::error(failure, QStringLiteral("earlier failure")));
    m_fake->answer("setValue", ScriptedAnswer::silence());
    m_fake->answer("setToDefault", ScriptedAnswer::silence());
    m_proxy->getMinValue();
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));

    // The application never answers: a call that waited would not come back in time
    // for the fake to see both messages.
    m_proxy->setValueAsync(9);
    m_proxy->setToDefaultAsync();

    QVERIFY(m_fake->waitForCalls(3));
    QCOMPARE(m_fake->calls().at(1).member, QStringLiteral("setValue"));
    QCOMPARE(m_fake->calls().at(2).member, QStringLiteral("setToDefault"));
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));
}

void tst_SetupIntInterface::asyncSetterToAnAbsentServiceLogsNothing()
{
    LogCapture log;
    SetupIntInterface proxy(absentService(), path, QDBusConnection::sessionBus());
    const QDBusError before = proxy.lastError();

    proxy.setValueAsync(5);

    QCOMPARE(proxy.lastError().type(), before.type());
    QCOMPARE(proxy.lastError().message(), before.message());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupIntInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    QCOMPARE(ownMethodSignatures(SetupIntInterface::staticMetaObject),
             QStringList({"setupChanged(int)", "setValue(int)", "setValueAsync(int)", "getValue()", "getString()",
                          "getMinValue()", "getMaxValue()", "getGranularity()", "isChangeable()", "setToDefault()",
                          "setToDefaultAsync()"}));
    QCOMPARE(ownMethodSignatures(SetupIntInterface::staticMetaObject, QMetaMethod::Signal),
             QStringList({"setupChanged(int)"}));
    QCOMPARE(SetupIntInterface::staticMetaObject.superClass(), &QDBusAbstractInterface::staticMetaObject);
    QCOMPARE(m_proxy->metaObject(), &SetupIntInterface::staticMetaObject);
}

void tst_SetupIntInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(*m_proxy, "SetupIntInterface");
    QCOMPARE(m_proxy->qt_metacast("SetupDoubleInterface"), nullptr);
}

void tst_SetupIntInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(17));
    m_fake->answer("getString", ScriptedAnswer::value(QStringLiteral("17 dB")));
    m_fake->answer("setValue", ScriptedAnswer::value(true));

    QDBusReply<int> value;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<int>, value)));
    QCOMPARE(value.value(), m_proxy->getValue().value());
    QCOMPARE(value.value(), 17);

    QDBusReply<QString> text;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getString", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<QString>, text)));
    QCOMPARE(text.value(), QStringLiteral("17 dB"));

    QDBusReply<bool> accepted;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<bool>, accepted), Q_ARG(int, 4)));
    QVERIFY(accepted.isValid());
    QCOMPARE(accepted.value(), true);
    QCOMPARE(m_fake->calls().last().arguments, QList<QVariant>{4});

    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setToDefaultAsync", Qt::DirectConnection));
    QVERIFY(m_fake->waitForCalls(5));
    QCOMPARE(m_fake->calls().last().member, QStringLiteral("setToDefault"));
}

void tst_SetupIntInterface::relaysSetupChangedOfItsOwnObjectOnly()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupChanged(int)), "setupChanged", {12});
}

QTEST_GUILESS_MAIN(tst_SetupIntInterface)

#include "tst_setupintinterface.moc"
