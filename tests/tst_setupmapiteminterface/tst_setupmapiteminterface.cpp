#include "SetupMapItemInterface.h"

#include "DBusTypes.h"
#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"
#include "WireText.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusVariant>
#include <QtTest/QTest>

#include <functional>
#include <memory>

using Operation = std::function<Outcome(SetupMapItemInterface &)>;
Q_DECLARE_METATYPE(Operation)

using VariantGetter = std::function<QVariant(SetupMapItemInterface &)>;
Q_DECLARE_METATYPE(VariantGetter)

namespace {
const QString path = QStringLiteral("/Setup/Labels");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");

QVariant wrappedValue(const QVariant &value)
{
    return QVariant::fromValue(QDBusVariant(value));
}

/// What a checked getter's caller sees: only the plain value, valid or not.
Outcome variantOutcome(const QVariant &value)
{
    return {value.isValid(), value};
}
} // namespace

class tst_SetupMapItemInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void mapsEachReply_data();
    void mapsEachReply();
    void givesInvalidRepliesWhenTheServiceIsAbsent();

    void variantGettersReturnTheValueInsideTheVariant_data();
    void variantGettersReturnTheValueInsideTheVariant();
    void variantGettersLeaveAMapValueAsAnArgument();
    void variantGettersLogOneLinePerFailure_data();
    void variantGettersLogOneLinePerFailure();
    void variantGettersLogOneLineWhenTheServiceIsAbsent_data();
    void variantGettersLogOneLineWhenTheServiceIsAbsent();
    void plainOperationsLogNothingOnFailure();

    void removeItemAnswersAnIntNotABool();
    void setToDefaultWaitsForTheAnswerAndDropsIt();
    void asyncOperationsReturnAtOnceAndLeaveLastErrorAlone();
    void asyncSetterToAnAbsentServiceReturnsAtOnceAndLogsNothing();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();
    void relaysSetupChangedOfItsOwnObjectOnly();

private:
    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<SetupMapItemInterface> m_proxy;
};

void tst_SetupMapItemInterface::init()
{
    m_fake.reset(new FakeMeasApplication);
    m_proxy.reset(new SetupMapItemInterface(m_fake->service(), path, QDBusConnection::sessionBus()));
}

void tst_SetupMapItemInterface::cleanup()
{
    m_proxy.reset();
    m_fake.reset();
}

void tst_SetupMapItemInterface::sendsEachOperationWithItsWireForm_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<QStringList>("arguments");

    const auto op = [](std::function<void(SetupMapItemInterface &)> call) {
        return Operation([call](SetupMapItemInterface &proxy) {
            call(proxy);
            return Outcome{};
        });
    };
    QTest::newRow("setValue int") << op([](SetupMapItemInterface &p) { p.setValue("ch1", QVariant(5)); }) << "setValue"
                                  << "sv" << QStringList{"s \"ch1\"", "v(i 5)"};
    QTest::newRow("setValue string") << op([](SetupMapItemInterface &p) {
        p.setValue("ch2", QVariant(QStringLiteral("Left")));
    }) << "setValue"
                                     << "sv" << QStringList{"s \"ch2\"", "v(s \"Left\")"};
    QTest::newRow("setValue list") << op([](SetupMapItemInterface &p) { p.setValue("ch3", QVariantList() << 1); })
                                   << "setValue"
                                   << "sv" << QStringList{"s \"ch3\"", "v(av [v(i 1)])"};
    QTest::newRow("setValueAsync") << op([](SetupMapItemInterface &p) { p.setValueAsync("ch4", QVariant(true)); })
                                   << "setValue"
                                   << "sv" << QStringList{"s \"ch4\"", "v(b true)"};
    QTest::newRow("getAllKeys") << op([](SetupMapItemInterface &p) { p.getAllKeys(); }) << "getAllKeys"
                                << "" << QStringList{};
    QTest::newRow("isKeyAvailable") << op([](SetupMapItemInterface &p) { p.isKeyAvailable("ch1"); }) << "isKeyAvailable"
                                    << "s" << QStringList{"s \"ch1\""};
    QTest::newRow("isChangeable") << op([](SetupMapItemInterface &p) { p.isChangeable(); }) << "isChangeable"
                                  << "" << QStringList{};
    QTest::newRow("getValue") << op([](SetupMapItemInterface &p) { p.getValue("ch1"); }) << "getValue"
                              << "s" << QStringList{"s \"ch1\""};
    QTest::newRow("getBaseElement") << op([](SetupMapItemInterface &p) { p.getBaseElement(); }) << "getBaseElement"
                                    << "" << QStringList{};
    QTest::newRow("getString") << op([](SetupMapItemInterface &p) { p.getString(); }) << "getString"
                               << "" << QStringList{};
    QTest::newRow("size") << op([](SetupMapItemInterface &p) { p.size(); }) << "size"
                          << "" << QStringList{};
    QTest::newRow("removeItem") << op([](SetupMapItemInterface &p) { p.removeItem("ch9"); }) << "removeItem"
                                << "s" << QStringList{"s \"ch9\""};
    QTest::newRow("setToDefault") << op([](SetupMapItemInterface &p) { p.setToDefault(); }) << "setToDefault"
                                  << "" << QStringList{};
    QTest::newRow("setToDefaultAsync") << op([](SetupMapItemInterface &p) { p.setToDefaultAsync(); }) << "setToDefault"
                                       << "" << QStringList{};
}

void tst_SetupMapItemInterface::sendsEachOperationWithItsWireForm()
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);
    QFETCH(QString, signature);
    QFETCH(QStringList, arguments);

    LogCapture log;
    m_fake->answer(member, ScriptedAnswer::reply());
    operation(*m_proxy);
    verifySingleWireCall(*m_fake, path, member, signature, arguments);
}

void tst_SetupMapItemInterface::mapsEachReply_data()
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
        "setValue", [](SetupMapItemInterface &p) { return outcomeOf(p.setValue("k", QVariant(1))); }, true, 1, false);
    rows(
        "getAllKeys", [](SetupMapItemInterface &p) { return outcomeOf(p.getAllKeys()); },
        QStringList{QStringLiteral("ch1"), QStringLiteral("ch2")}, QStringLiteral("ch1"), QStringList());
    rows(
        "isKeyAvailable", [](SetupMapItemInterface &p) { return outcomeOf(p.isKeyAvailable("ch1")); }, true, 1, false);
    rows(
        "isChangeable", [](SetupMapItemInterface &p) { return outcomeOf(p.isChangeable()); }, true,
        QStringLiteral("yes"), false);
    rows(
        "getString", [](SetupMapItemInterface &p) { return outcomeOf(p.getString()); },
        QStringLiteral("ch1=Left, ch2=Right"), 2, QString());
    rows(
        "size", [](SetupMapItemInterface &p) { return outcomeOf(p.size()); }, 2, 2.0, 0);
    rows(
        "removeItem", [](SetupMapItemInterface &p) { return outcomeOf(p.removeItem("ch1")); }, 1, true, 0);

    const Operation getValue = [](SetupMapItemInterface &p) { return variantOutcome(p.getValue("ch1")); };
    QTest::newRow("getValue answered") << getValue << "getValue" << ScriptedAnswer::value(wrappedValue(2.5)) << true
                                       << QVariant(2.5);
    QTest::newRow("getValue error") << getValue << "getValue" << error << false << QVariant();
    QTest::newRow("getValue wrong type") << getValue << "getValue" << ScriptedAnswer::value(2.5) << false << QVariant();
    const Operation getBaseElement = [](SetupMapItemInterface &p) { return variantOutcome(p.getBaseElement()); };
    QTest::newRow("getBaseElement answered")
        << getBaseElement << "getBaseElement" << ScriptedAnswer::value(wrappedValue(QStringLiteral("label"))) << true
        << QVariant(QStringLiteral("label"));
    QTest::newRow("getBaseElement error") << getBaseElement << "getBaseElement" << error << false << QVariant();
    QTest::newRow("getBaseElement wrong type")
        << getBaseElement << "getBaseElement" << ScriptedAnswer::value(QStringLiteral("label")) << false << QVariant();
}

void tst_SetupMapItemInterface::mapsEachReply()
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

void tst_SetupMapItemInterface::givesInvalidRepliesWhenTheServiceIsAbsent()
{
    LogCapture log;
    SetupMapItemInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const QDBusReply<bool> set = proxy.setValue("k", QVariant(1));
    QVERIFY(!set.isValid());
    QCOMPARE(set.value(), false);
    QCOMPARE(set.error().type(), QDBusError::ServiceUnknown);
    QVERIFY(!proxy.getAllKeys().isValid());
    QCOMPARE(proxy.getAllKeys().value(), QStringList());
    QVERIFY(!proxy.isKeyAvailable("k").isValid());
    QCOMPARE(proxy.isKeyAvailable("k").value(), false);
    QVERIFY(!proxy.isChangeable().isValid());
    QVERIFY(!proxy.getValue("k").isValid());
    QVERIFY(!proxy.getBaseElement().isValid());
    QCOMPARE(proxy.getString().value(), QString());
    QVERIFY(!proxy.size().isValid());
    const QDBusReply<int> removed = proxy.removeItem("k");
    QVERIFY(!removed.isValid());
    QCOMPARE(removed.value(), 0);
    proxy.setToDefault();
    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
}

void tst_SetupMapItemInterface::variantGettersReturnTheValueInsideTheVariant_data()
{
    QTest::addColumn<VariantGetter>("getter");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QVariant>("value");

    const VariantGetter getValue = [](SetupMapItemInterface &p) { return p.getValue("k"); };
    const VariantGetter getBaseElement = [](SetupMapItemInterface &p) { return p.getBaseElement(); };
    QTest::newRow("getValue int") << getValue << "getValue" << QVariant(5);
    QTest::newRow("getValue bool") << getValue << "getValue" << QVariant(false);
    QTest::newRow("getValue string") << getValue << "getValue" << QVariant(QStringLiteral("Left"));
    QTest::newRow("getValue string list") << getValue << "getValue" << QVariant(QStringList{"a", "b"});
    QTest::newRow("getBaseElement double") << getBaseElement << "getBaseElement" << QVariant(-0.25);
    QTest::newRow("getBaseElement string") << getBaseElement << "getBaseElement" << QVariant(QStringLiteral("x"));
}

void tst_SetupMapItemInterface::variantGettersReturnTheValueInsideTheVariant()
{
    QFETCH(VariantGetter, getter);
    QFETCH(QString, member);
    QFETCH(QVariant, value);

    m_fake->answer(member, ScriptedAnswer::value(wrappedValue(value)));

    const QVariant received = getter(*m_proxy);

    QCOMPARE(received.userType(), value.userType());
    QCOMPARE(received, value);
}

void tst_SetupMapItemInterface::variantGettersLeaveAMapValueAsAnArgument()
{
    SettingsMap entry;
    entry.insert(QStringLiteral("colour"), QStringLiteral("red"));
    entry.insert(QStringLiteral("width"), 2);
    m_fake->answer("getValue", ScriptedAnswer::value(wrappedValue(QVariant(entry))));
    m_fake->answer("getBaseElement", ScriptedAnswer::value(wrappedValue(QVariant(entry))));

    for (const QVariant &value : {m_proxy->getValue("ch1"), m_proxy->getBaseElement()}) {
        QCOMPARE(value.userType(), qMetaTypeId<QDBusArgument>());
        const QDBusArgument argument = qvariant_cast<QDBusArgument>(value);
        QCOMPARE(argument.currentSignature(), QStringLiteral("a{sv}"));
        QCOMPARE(wireText(argument), QStringLiteral("a{sv} {s \"colour\": v(s \"red\"), s \"width\": v(i 2)}"));
        SettingsMap read;
        DBusTypes::readSettingsMap(argument, read);
        QCOMPARE(read, entry);
    }
}

void tst_SetupMapItemInterface::variantGettersLogOneLinePerFailure_data()
{
    QTest::addColumn<VariantGetter>("getter");
    QTest::addColumn<QString>("member");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<QString>("literal");
    QTest::addColumn<QString>("message");

    const VariantGetter getValue = [](SetupMapItemInterface &p) { return p.getValue("ch1"); };
    const VariantGetter getBaseElement = [](SetupMapItemInterface &p) { return p.getBaseElement(); };
    const QString getValueLiteral = QStringLiteral("SetupMapItemInterface::getValue(): ");
    const QString getBaseElementLiteral = QStringLiteral("SetupMapItemInterface::getBaseElement(): ");

    QTest::newRow("getValue error") << getValue << "getValue"
                                    << ScriptedAnswer::error(failure, QStringLiteral("no such key")) << getValueLiteral
                                    << "no such key";
    QTest::newRow("getValue error with quotes")
        << getValue << "getValue" << ScriptedAnswer::error(failure, QStringLiteral("key \"ch1\" unknown"))
        << getValueLiteral << "key \"ch1\" unknown";
    QTest::newRow("getValue wrong type") << getValue << "getValue" << ScriptedAnswer::value(7) << getValueLiteral
                                         << replyTypeError<QDBusVariant>(7);
    QTest::newRow("getBaseElement error")
        << getBaseElement << "getBaseElement" << ScriptedAnswer::error(failure, QStringLiteral("no base"))
        << getBaseElementLiteral << "no base";
    QTest::newRow("getBaseElement wrong type")
        << getBaseElement << "getBaseElement" << ScriptedAnswer::value(QStringLiteral("base")) << getBaseElementLiteral
        << replyTypeError<QDBusVariant>(QStringLiteral("base"));
}

void tst_SetupMapItemInterface::variantGettersLogOneLinePerFailure()
{
    QFETCH(VariantGetter, getter);
    QFETCH(QString, member);
    QFETCH(ScriptedAnswer, answer);
    QFETCH(QString, literal);
    QFETCH(QString, message);

    LogCapture log;
    m_fake->answer(member, answer);

    const QVariant value = getter(*m_proxy);

    QVERIFY(!value.isValid());
    QVERIFY(message.size() > 0);
    QCOMPARE(log.lines(),
             debugLines({literal + " " + debugQuoted(m_fake->service()) +
                         "  /  \"/Setup/Labels\"  / Error: " + debugQuoted(message)}));
}

void tst_SetupMapItemInterface::variantGettersLogOneLineWhenTheServiceIsAbsent_data()
{
    QTest::addColumn<VariantGetter>("getter");
    QTest::addColumn<QString>("literal");

    QTest::newRow("getValue") << VariantGetter([](SetupMapItemInterface &p) { return p.getValue("ch1"); })
                              << "SetupMapItemInterface::getValue(): ";
    QTest::newRow("getBaseElement") << VariantGetter([](SetupMapItemInterface &p) { return p.getBaseElement(); })
                                    << "SetupMapItemInterface::getBaseElement(): ";
}

void tst_SetupMapItemInterface::variantGettersLogOneLineWhenTheServiceIsAbsent()
{
    QFETCH(VariantGetter, getter);
    QFETCH(QString, literal);

    LogCapture log;
    SetupMapItemInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    QVERIFY(!getter(proxy).isValid());

    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
    const QString message = proxy.lastError().message();
    QVERIFY(message.contains(absentService()));
    QCOMPARE(
        log.lines(),
        debugLines({literal + " \"com.velk.mqx.app.absent\"  /  \"/Setup/Labels\"  / Error: \"" + message + "\""}));
}

void tst_SetupMapItemInterface::plainOperationsLogNothingOnFailure()
{
    LogCapture log;
    SetupMapItemInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    proxy.setValue("k", QVariant(1));
    proxy.setValueAsync("k", QVariant(1));
    proxy.getAllKeys();
    proxy.isKeyAvailable("k");
    proxy.isChangeable();
    proxy.getString();
    proxy.size();
    proxy.removeItem("k");
    proxy.setToDefault();
    proxy.setToDefaultAsync();

    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupMapItemInterface::removeItemAnswersAnIntNotABool()
{
    m_fake->answer("removeItem", ScriptedAnswer::value(2));
    m_fake->answer("isKeyAvailable", ScriptedAnswer::value(2));

    const QDBusReply<int> removed = m_proxy->removeItem("ch1");
    QVERIFY(removed.isValid());
    QCOMPARE(removed.value(), 2);
    // The same int is a wrong type for the key query, which answers a bool.
    QVERIFY(!m_proxy->isKeyAvailable("ch1").isValid());

    m_fake->answer("removeItem", ScriptedAnswer::value(true));
    const QDBusReply<int> fromBool = m_proxy->removeItem("ch1");
    QVERIFY(!fromBool.isValid());
    QCOMPARE(fromBool.value(), 0);
    QCOMPARE(fromBool.error().type(), QDBusError::InvalidSignature);
}

void tst_SetupMapItemInterface::setToDefaultWaitsForTheAnswerAndDropsIt()
{
    // The error only reaches lastError() if the call waited for it.
    LogCapture log;
    m_fake->answer("setToDefault", ScriptedAnswer::error(failure, QStringLiteral("locked")));

    m_proxy->setToDefault();

    QCOMPARE(m_fake->callCount(), 1);
    QCOMPARE(m_proxy->lastError().name(), failure);
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("locked"));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupMapItemInterface::asyncOperationsReturnAtOnceAndLeaveLastErrorAlone()
{
    m_fake->answer("size", ScriptedAnswer::error(failure, QStringLiteral("earlier failure")));
    m_fake->answer("setValue", ScriptedAnswer::silence());
    m_fake->answer("setToDefault", ScriptedAnswer::silence());
    m_proxy->size();
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));

    // The application never answers: a call that waited would not come back in time
    // for the fake to see both messages.
    m_proxy->setValueAsync("ch1", QVariant(3));
    m_proxy->setToDefaultAsync();

    QVERIFY(m_fake->waitForCalls(3));
    QCOMPARE(m_fake->calls().at(1).member, QStringLiteral("setValue"));
    QCOMPARE(m_fake->calls().at(1).signature, QStringLiteral("sv"));
    QCOMPARE(m_fake->calls().at(2).member, QStringLiteral("setToDefault"));
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));
}

void tst_SetupMapItemInterface::asyncSetterToAnAbsentServiceReturnsAtOnceAndLogsNothing()
{
    LogCapture log;
    SetupMapItemInterface proxy(absentService(), path, QDBusConnection::sessionBus());
    const QDBusError before = proxy.lastError();

    proxy.setValueAsync("k", QVariant(5));
    proxy.setToDefaultAsync();

    QCOMPARE(proxy.lastError().type(), before.type());
    QCOMPARE(proxy.lastError().message(), before.message());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupMapItemInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    QCOMPARE(
        ownMethodSignatures(SetupMapItemInterface::staticMetaObject),
        QStringList({"setupChanged()", "setValue(QString,QVariant)", "setValueAsync(QString,QVariant)", "getAllKeys()",
                     "isKeyAvailable(QString)", "isChangeable()", "getValue(QString)", "getBaseElement()",
                     "getString()", "size()", "removeItem(QString)", "setToDefault()", "setToDefaultAsync()"}));
    QCOMPARE(ownMethodSignatures(SetupMapItemInterface::staticMetaObject, QMetaMethod::Signal),
             QStringList({"setupChanged()"}));
    const QMetaObject &meta = SetupMapItemInterface::staticMetaObject;
    QCOMPARE(meta.method(meta.indexOfMethod("getValue(QString)")).returnType(), int(QMetaType::QVariant));
    QCOMPARE(meta.method(meta.indexOfMethod("removeItem(QString)")).typeName(), "QDBusReply<int>");
    QCOMPARE(meta.method(meta.indexOfMethod("setToDefault()")).returnType(), int(QMetaType::Void));
    QCOMPARE(meta.superClass(), &QDBusAbstractInterface::staticMetaObject);
    QCOMPARE(m_proxy->metaObject(), &SetupMapItemInterface::staticMetaObject);
}

void tst_SetupMapItemInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    QCOMPARE(m_proxy->qt_metacast("SetupMapItemInterface"), static_cast<void *>(m_proxy.get()));
    QCOMPARE(m_proxy->qt_metacast("QDBusAbstractInterface"),
             static_cast<void *>(static_cast<QDBusAbstractInterface *>(m_proxy.get())));
    QCOMPARE(m_proxy->qt_metacast("SetupArrayItemInterface"), nullptr);
}

void tst_SetupMapItemInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(wrappedValue(11)));
    m_fake->answer("removeItem", ScriptedAnswer::value(1));

    QVariant value;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection, Q_RETURN_ARG(QVariant, value),
                                      Q_ARG(QString, QStringLiteral("ch1"))));
    QCOMPARE(value, m_proxy->getValue("ch1"));
    QCOMPARE(value, QVariant(11));

    QDBusReply<int> removed;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "removeItem", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<int>, removed), Q_ARG(QString, QStringLiteral("ch1"))));
    QVERIFY(removed.isValid());
    QCOMPARE(removed.value(), 1);
}

void tst_SetupMapItemInterface::relaysSetupChangedOfItsOwnObjectOnly()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupChanged()), "setupChanged", {});
}

QTEST_GUILESS_MAIN(tst_SetupMapItemInterface)

#include "tst_setupmapiteminterface.moc"
