#include "SetupArrayItemInterface.h"

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

using Operation = std::function<Outcome(SetupArrayItemInterface &)>;
Q_DECLARE_METATYPE(Operation)

namespace {
const QString path = QStringLiteral("/Setup/Channels");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");
const char getValueLiteral[] = "SetupArrayItemInterface::getValue():  ";

Outcome listOutcome(const QVariantList &list)
{
    return {true, QVariant(list)};
}
} // namespace

class tst_SetupArrayItemInterface : public QObject
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

    void getValueReturnsTheElementsUnwrapped();
    void getValueLeavesStructuredElementsAsArguments();
    void getValueLogsOneLineOnAnErrorReply();
    void getValueLogsOneLineForAWrongTypedReply();
    void getValueLogsOneLineWhenTheServiceIsAbsent();
    void getValueQuotesAndEscapesTheErrorMessage();
    void plainOperationsLogNothingOnFailure();

    void setToDefaultWaitsForTheAnswerAndDropsIt();
    void asyncOperationsReturnAtOnceAndLeaveLastErrorAlone();
    void asyncSetterToAnAbsentServiceLogsNothing();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult();
    void relaysSetupChangedOfItsOwnObjectOnly();

private:
    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<SetupArrayItemInterface> m_proxy;
};

void tst_SetupArrayItemInterface::init()
{
    m_fake.reset(new FakeMeasApplication);
    m_proxy.reset(new SetupArrayItemInterface(m_fake->service(), path, QDBusConnection::sessionBus()));
}

void tst_SetupArrayItemInterface::cleanup()
{
    m_proxy.reset();
    m_fake.reset();
}

void tst_SetupArrayItemInterface::sendsEachOperationWithItsWireForm_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<QStringList>("arguments");

    const auto op = [](std::function<void(SetupArrayItemInterface &)> call) {
        return Operation([call](SetupArrayItemInterface &proxy) {
            call(proxy);
            return Outcome{};
        });
    };
    QTest::newRow("setValue range, int") << op([](SetupArrayItemInterface &p) { p.setValue(QVariant(5), 0, 3); })
                                         << "setValue"
                                         << "vii" << QStringList{"v(i 5)", "i 0", "i 3"};
    QTest::newRow("setValue range, string")
        << op([](SetupArrayItemInterface &p) { p.setValue(QVariant(QStringLiteral("on")), 2, 2); }) << "setValue"
        << "vii" << QStringList{"v(s \"on\")", "i 2", "i 2"};
    QTest::newRow("setValue range, negative bounds passed through")
        << op([](SetupArrayItemInterface &p) { p.setValue(QVariant(2.5), -1, 7); }) << "setValue"
        << "vii" << QStringList{"v(d 2.5)", "i -1", "i 7"};
    QTest::newRow("setValue list") << op([](SetupArrayItemInterface &p) { p.setValue(QVariantList() << 1 << 2); })
                                   << "setValue"
                                   << "av" << QStringList{"av [v(i 1), v(i 2)]"};
    QTest::newRow("setValue mixed list") << op([](SetupArrayItemInterface &p) {
        p.setValue(QVariantList() << true << QStringLiteral("x") << 0.5);
    }) << "setValue"
                                         << "av" << QStringList{"av [v(b true), v(s \"x\"), v(d 0.5)]"};
    QTest::newRow("setValue empty list") << op([](SetupArrayItemInterface &p) { p.setValue(QVariantList()); })
                                         << "setValue"
                                         << "av" << QStringList{"av []"};
    QTest::newRow("getValue") << op([](SetupArrayItemInterface &p) { p.getValue(1, 4); }) << "getValue"
                              << "ii" << QStringList{"i 1", "i 4"};
    QTest::newRow("getString") << op([](SetupArrayItemInterface &p) { p.getString(); }) << "getString"
                               << "" << QStringList{};
    QTest::newRow("size") << op([](SetupArrayItemInterface &p) { p.size(); }) << "size"
                          << "" << QStringList{};
    QTest::newRow("setValueAsync") << op([](SetupArrayItemInterface &p) { p.setValueAsync(QVariant(9), 3, 5); })
                                   << "setValue"
                                   << "vii" << QStringList{"v(i 9)", "i 3", "i 5"};
    QTest::newRow("isChangeable") << op([](SetupArrayItemInterface &p) { p.isChangeable(); }) << "isChangeable"
                                  << "" << QStringList{};
    QTest::newRow("setToDefault") << op([](SetupArrayItemInterface &p) { p.setToDefault(); }) << "setToDefault"
                                  << "" << QStringList{};
    QTest::newRow("setToDefaultAsync") << op([](SetupArrayItemInterface &p) { p.setToDefaultAsync(); })
                                       << "setToDefault"
                                       << "" << QStringList{};
}

void tst_SetupArrayItemInterface::sendsEachOperationWithItsWireForm()
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

void tst_SetupArrayItemInterface::mapsEachReply_data()
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
        "setValue range", "setValue",
        [](SetupArrayItemInterface &p) { return outcomeOf(p.setValue(QVariant(1), 0, 1)); }, true, 1, false);
    rows(
        "setValue list", "setValue",
        [](SetupArrayItemInterface &p) { return outcomeOf(p.setValue(QVariantList() << 1)); }, true,
        QStringLiteral("yes"), false);
    rows(
        "getString", "getString", [](SetupArrayItemInterface &p) { return outcomeOf(p.getString()); },
        QStringLiteral("1, 2, 3"), 3, QString());
    rows(
        "size", "size", [](SetupArrayItemInterface &p) { return outcomeOf(p.size()); }, 12, 12.0, 0);
    rows(
        "isChangeable", "isChangeable", [](SetupArrayItemInterface &p) { return outcomeOf(p.isChangeable()); }, true,
        QStringLiteral("true"), false);

    // The list getter hands back a plain list: the caller sees no validity, only emptiness.
    const Operation getValue = [](SetupArrayItemInterface &p) { return listOutcome(p.getValue(0, 2)); };
    QTest::newRow("getValue answered") << getValue << "getValue"
                                       << ScriptedAnswer::value(QVariantList() << 1 << QStringLiteral("a") << 2.5)
                                       << true << QVariant(QVariantList() << 1 << QStringLiteral("a") << 2.5);
    QTest::newRow("getValue answered empty")
        << getValue << "getValue" << ScriptedAnswer::value(QVariantList()) << true << QVariant(QVariantList());
    QTest::newRow("getValue error") << getValue << "getValue" << error << true << QVariant(QVariantList());
    QTest::newRow("getValue wrong type") << getValue << "getValue"
                                         << ScriptedAnswer::value(QStringList{QStringLiteral("a")}) << true
                                         << QVariant(QVariantList());
    QTest::newRow("getValue no answer value")
        << getValue << "getValue" << ScriptedAnswer::reply() << true << QVariant(QVariantList());
}

void tst_SetupArrayItemInterface::mapsEachReply()
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

void tst_SetupArrayItemInterface::givesInvalidRepliesWhenTheServiceIsAbsent()
{
    LogCapture log;
    SetupArrayItemInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const QDBusReply<bool> setRange = proxy.setValue(QVariant(1), 0, 0);
    QVERIFY(!setRange.isValid());
    QCOMPARE(setRange.value(), false);
    QCOMPARE(setRange.error().type(), QDBusError::ServiceUnknown);
    const QDBusReply<bool> setList = proxy.setValue(QVariantList() << 1);
    QVERIFY(!setList.isValid());
    QCOMPARE(setList.error().type(), QDBusError::ServiceUnknown);
    QCOMPARE(proxy.getValue(0, 0), QVariantList());
    QVERIFY(!proxy.getString().isValid());
    QCOMPARE(proxy.getString().value(), QString());
    QVERIFY(!proxy.size().isValid());
    QCOMPARE(proxy.size().value(), 0);
    QVERIFY(!proxy.isChangeable().isValid());
    QCOMPARE(proxy.isChangeable().value(), false);
    proxy.setToDefault();
    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
}

void tst_SetupArrayItemInterface::getValueReturnsTheElementsUnwrapped()
{
    m_fake->answer("getValue", ScriptedAnswer::value(QVariantList() << 7 << true << QStringLiteral("x")));

    const QVariantList elements = m_proxy->getValue(0, 2);

    QCOMPARE(elements.size(), 3);
    QCOMPARE(elements.at(0).userType(), int(QMetaType::Int));
    QCOMPARE(elements.at(0), QVariant(7));
    QCOMPARE(elements.at(1).userType(), int(QMetaType::Bool));
    QCOMPARE(elements.at(1), QVariant(true));
    QCOMPARE(elements.at(2).userType(), int(QMetaType::QString));
    QCOMPARE(elements.at(2), QVariant(QStringLiteral("x")));
}

void tst_SetupArrayItemInterface::getValueLeavesStructuredElementsAsArguments()
{
    SettingsMap nested;
    nested.insert(QStringLiteral("gain"), 3);
    const QVariantList inner = QVariantList() << 1 << 2;
    m_fake->answer("getValue", ScriptedAnswer::value(QVariantList() << QVariant(nested) << QVariant(inner) << 4));

    const QVariantList elements = m_proxy->getValue(0, 2);

    QCOMPARE(elements.size(), 3);
    QCOMPARE(elements.at(0).userType(), qMetaTypeId<QDBusArgument>());
    const QDBusArgument mapArgument = qvariant_cast<QDBusArgument>(elements.at(0));
    QCOMPARE(mapArgument.currentSignature(), QStringLiteral("a{sv}"));
    SettingsMap received;
    DBusTypes::readSettingsMap(mapArgument, received);
    QCOMPARE(received, nested);
    QCOMPARE(elements.at(1).userType(), qMetaTypeId<QDBusArgument>());
    const QDBusArgument listArgument = qvariant_cast<QDBusArgument>(elements.at(1));
    QCOMPARE(listArgument.currentSignature(), QStringLiteral("av"));
    QCOMPARE(qdbus_cast<QVariantList>(listArgument), inner);
    QCOMPARE(elements.at(2), QVariant(4));
}

void tst_SetupArrayItemInterface::getValueLogsOneLineOnAnErrorReply()
{
    LogCapture log;
    m_fake->answer("getValue", ScriptedAnswer::error(failure, QStringLiteral("index out of range")));

    QCOMPARE(m_proxy->getValue(3, 9), QVariantList());
    QCOMPARE(log.lines(),
             debugLines({QString::fromLatin1(getValueLiteral) + "\"" + m_fake->service() +
                         "\"  /  \"/Setup/Channels\"  / Error: \"index out of range\""}));
}

void tst_SetupArrayItemInterface::getValueLogsOneLineForAWrongTypedReply()
{
    LogCapture log;
    const QVariant wrong = QStringList{QStringLiteral("a")};
    m_fake->answer("getValue", ScriptedAnswer::value(wrong));

    QCOMPARE(m_proxy->getValue(0, 0), QVariantList());

    const QString message = replyTypeError<QVariantList>(wrong);
    QVERIFY(message.contains(QStringLiteral("av")));
    QCOMPARE(log.lines(),
             debugLines({QString::fromLatin1(getValueLiteral) + debugQuoted(m_fake->service()) +
                         "  /  \"/Setup/Channels\"  / Error: " + debugQuoted(message)}));
}

void tst_SetupArrayItemInterface::getValueLogsOneLineWhenTheServiceIsAbsent()
{
    LogCapture log;
    SetupArrayItemInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    QCOMPARE(proxy.getValue(0, 0), QVariantList());

    const QString message = proxy.lastError().message();
    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
    QVERIFY(message.contains(absentService()));
    QCOMPARE(log.lines(),
             debugLines({"SetupArrayItemInterface::getValue():  \"com.velk.mqx.app.absent\"  /  \"/Setup/Channels\""
                         "  / Error: \"" +
                         message + "\""}));
}

void tst_SetupArrayItemInterface::getValueQuotesAndEscapesTheErrorMessage()
{
    LogCapture log;
    m_fake->answer("getValue", ScriptedAnswer::error(failure, QStringLiteral("no \"row\" here")));

    m_proxy->getValue(0, 0);

    QCOMPARE(log.lines(),
             debugLines({QString::fromLatin1(getValueLiteral) + "\"" + m_fake->service() +
                         "\"  /  \"/Setup/Channels\"  / Error: \"no \\\"row\\\" here\""}));
}

void tst_SetupArrayItemInterface::plainOperationsLogNothingOnFailure()
{
    LogCapture log;
    SetupArrayItemInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    proxy.setValue(QVariant(1), 0, 0);
    proxy.setValue(QVariantList() << 1);
    proxy.getString();
    proxy.size();
    proxy.setValueAsync(QVariant(1), 0, 0);
    proxy.isChangeable();
    proxy.setToDefault();
    proxy.setToDefaultAsync();

    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupArrayItemInterface::setToDefaultWaitsForTheAnswerAndDropsIt()
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

void tst_SetupArrayItemInterface::asyncOperationsReturnAtOnceAndLeaveLastErrorAlone()
{
    m_fake->answer("size", ScriptedAnswer::error(failure, QStringLiteral("earlier failure")));
    m_fake->answer("setValue", ScriptedAnswer::silence());
    m_fake->answer("setToDefault", ScriptedAnswer::silence());
    m_proxy->size();
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));

    // The application never answers: a call that waited would not come back in time
    // for the fake to see both messages.
    m_proxy->setValueAsync(QVariant(4), 0, 1);
    m_proxy->setToDefaultAsync();

    QVERIFY(m_fake->waitForCalls(3));
    QCOMPARE(m_fake->calls().at(1).member, QStringLiteral("setValue"));
    QCOMPARE(m_fake->calls().at(1).signature, QStringLiteral("vii"));
    QCOMPARE(m_fake->calls().at(2).member, QStringLiteral("setToDefault"));
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));
}

void tst_SetupArrayItemInterface::asyncSetterToAnAbsentServiceLogsNothing()
{
    LogCapture log;
    SetupArrayItemInterface proxy(absentService(), path, QDBusConnection::sessionBus());
    const QDBusError before = proxy.lastError();

    proxy.setValueAsync(QVariant(5), 0, 0);
    proxy.setToDefaultAsync();

    QCOMPARE(proxy.lastError().type(), before.type());
    QCOMPARE(proxy.lastError().message(), before.message());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupArrayItemInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    QCOMPARE(ownMethodSignatures(SetupArrayItemInterface::staticMetaObject),
             QStringList({"setupChanged()", "setValue(QVariant,int,int)", "setValue(QVariantList)", "getValue(int,int)",
                          "getString()", "size()", "setValueAsync(QVariant,int,int)", "isChangeable()",
                          "setToDefault()", "setToDefaultAsync()"}));
    QCOMPARE(ownMethodSignatures(SetupArrayItemInterface::staticMetaObject, QMetaMethod::Signal),
             QStringList({"setupChanged()"}));
    const QMetaObject &meta = SetupArrayItemInterface::staticMetaObject;
    QCOMPARE(meta.method(meta.indexOfMethod("getValue(int,int)")).returnType(), int(QMetaType::QVariantList));
    QCOMPARE(meta.method(meta.indexOfMethod("setToDefault()")).returnType(), int(QMetaType::Void));
    QCOMPARE(meta.superClass(), &QDBusAbstractInterface::staticMetaObject);
    QCOMPARE(m_proxy->metaObject(), &SetupArrayItemInterface::staticMetaObject);
}

void tst_SetupArrayItemInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    QCOMPARE(m_proxy->qt_metacast("SetupArrayItemInterface"), static_cast<void *>(m_proxy.get()));
    QCOMPARE(m_proxy->qt_metacast("QDBusAbstractInterface"),
             static_cast<void *>(static_cast<QDBusAbstractInterface *>(m_proxy.get())));
    QCOMPARE(m_proxy->qt_metacast("SetupMapItemInterface"), nullptr);
}

void tst_SetupArrayItemInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(QVariantList() << 3 << 4));
    m_fake->answer("setValue", ScriptedAnswer::value(true));
    m_fake->answer("size", ScriptedAnswer::value(2));

    QList<QVariant> elements;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QList<QVariant>, elements), Q_ARG(int, 0), Q_ARG(int, 1)));
    QCOMPARE(elements, m_proxy->getValue(0, 1));
    QCOMPARE(elements, QVariantList() << 3 << 4);

    QDBusReply<int> size;
    QVERIFY(
        QMetaObject::invokeMethod(m_proxy.get(), "size", Qt::DirectConnection, Q_RETURN_ARG(QDBusReply<int>, size)));
    QCOMPARE(size.value(), 2);

    m_fake->clearCalls();
    QDBusReply<bool> accepted;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<bool>, accepted),
                                      Q_ARG(QVariantList, QVariantList() << 8)));
    QVERIFY(accepted.isValid());
    QCOMPARE(accepted.value(), true);
    QCOMPARE(m_fake->calls().last().signature, QStringLiteral("av"));
}

void tst_SetupArrayItemInterface::relaysSetupChangedOfItsOwnObjectOnly()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupChanged()), "setupChanged", {});
}

QTEST_GUILESS_MAIN(tst_SetupArrayItemInterface)

#include "tst_setuparrayiteminterface.moc"
