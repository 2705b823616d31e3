#include "StorageElemsMapInterface.h"

#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"

#include <QDBusConnection>
#include <QElapsedTimer>
#include <QtTest/QTest>

#include <functional>
#include <memory>

using Operation = std::function<Outcome(StorageElemsMapInterface &)>;
Q_DECLARE_METATYPE(Operation)

namespace {
const QString path = QStringLiteral("/Setup/StorageElems");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");
} // namespace

class tst_StorageElemsMapInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void constructionMakesNoBusCallAndLogsNothing();

    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void mapsEachReplyWithoutLogging_data();
    void mapsEachReplyWithoutLogging();
    void givesInvalidRepliesAndLogsNothingWhenTheServiceIsAbsent();

    void setToDefaultWaitsForTheAnswerAndDropsIt();
    void setToDefaultAsyncReturnsAtOnceAndSendsSetToDefault();
    void setToDefaultAsyncReturnsAtOnceWhenTheServiceIsAbsent();

    void metaObjectPlacesEachMethodAtItsIndex_data();
    void metaObjectPlacesEachMethodAtItsIndex();
    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void holdsNothingBesideTheBase();
    void invokingSlotsByNameGivesTheDirectResult();

    void relaysSetupChanged();
    void relaysSortOrderChanged();

private:
    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<StorageElemsMapInterface> m_proxy;
};

void tst_StorageElemsMapInterface::init()
{
    m_fake.reset(new FakeMeasApplication);
    m_proxy.reset(new StorageElemsMapInterface(m_fake->service(), path, QDBusConnection::sessionBus()));
}

void tst_StorageElemsMapInterface::cleanup()
{
    m_proxy.reset();
    m_fake.reset();
}

void tst_StorageElemsMapInterface::constructionMakesNoBusCallAndLogsNothing()
{
    LogCapture log;
    StorageElemsMapInterface proxy(m_fake->service(), path, QDBusConnection::sessionBus());
    StorageElemsMapInterface absent(absentService(), path, QDBusConnection::sessionBus());

    QVERIFY(proxy.isValid());
    QCOMPARE(proxy.service(), m_fake->service());
    QCOMPARE(proxy.path(), path);
    QCOMPARE(proxy.interface(), FakeMeasApplication::interfaceName);
    QCOMPARE(absent.service(), absentService());
    syncWithBus(proxy.connection());
    QCOMPARE(m_fake->callCount(), 0);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_StorageElemsMapInterface::sendsEachOperationWithItsWireForm_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<QList<QVariant>>("arguments");

    const auto op = [](std::function<void(StorageElemsMapInterface &)> call) {
        return Operation([call](StorageElemsMapInterface &proxy) {
            call(proxy);
            return Outcome{};
        });
    };
    using P = StorageElemsMapInterface;
    QTest::newRow("getValues") << op([](P &p) { p.getValues(); }) << "getValues"
                               << "" << QList<QVariant>{};
    QTest::newRow("count") << op([](P &p) { p.count(); }) << "count"
                           << "" << QList<QVariant>{};
    QTest::newRow("setToDefault") << op([](P &p) { p.setToDefault(); }) << "setToDefault"
                                  << "" << QList<QVariant>{};
    QTest::newRow("setToDefaultAsync") << op([](P &p) { p.setToDefaultAsync(); }) << "setToDefault"
                                       << "" << QList<QVariant>{};
    QTest::newRow("getSortOrder") << op([](P &p) { p.getSortOrder(); }) << "getSortOrder"
                                  << "" << QList<QVariant>{};
    QTest::newRow("setSortOrder") << op([](P &p) { p.setSortOrder(QStringLiteral("byDate")); }) << "setSortOrder"
                                  << "s" << QList<QVariant>{QStringLiteral("byDate")};
}

void tst_StorageElemsMapInterface::sendsEachOperationWithItsWireForm()
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);
    QFETCH(QString, signature);
    QFETCH(QList<QVariant>, arguments);

    m_fake->answer(member, ScriptedAnswer::reply());
    operation(*m_proxy);
    verifySingleCall(*m_fake, path, member, signature, arguments);
}

void tst_StorageElemsMapInterface::mapsEachReplyWithoutLogging_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QVariant>("value");

    using P = StorageElemsMapInterface;
    const ScriptedAnswer error = ScriptedAnswer::error(failure, QStringLiteral("refused"));
    const auto rows = [&](const char *name, Operation op, const QVariant &good, const QVariant &wrongType,
                          const QVariant &defaultValue) {
        QTest::addRow("%s answered", name) << op << name << ScriptedAnswer::value(good) << true << good;
        QTest::addRow("%s error", name) << op << name << error << false << defaultValue;
        QTest::addRow("%s wrong type", name) << op << name << ScriptedAnswer::value(wrongType) << false << defaultValue;
        QTest::addRow("%s empty return", name) << op << name << ScriptedAnswer::reply() << false << defaultValue;
    };
    rows(
        "getValues", [](P &p) { return outcomeOf(p.getValues()); },
        QStringList{QStringLiteral("Trace 2"), QStringLiteral("Trace 1")}, QStringLiteral("Trace 2"), QStringList());
    rows(
        "count", [](P &p) { return outcomeOf(p.count()); }, 2, QStringLiteral("2"), 0);
    rows(
        "getSortOrder", [](P &p) { return outcomeOf(p.getSortOrder()); }, QStringLiteral("byName"), 1, QString());

    // A void reply accepts any method return and only fails on an error.
    const Operation setSortOrder = [](P &p) { return outcomeOf(p.setSortOrder(QStringLiteral("byName"))); };
    QTest::newRow("setSortOrder answered")
        << setSortOrder << "setSortOrder" << ScriptedAnswer::reply() << true << QVariant();
    QTest::newRow("setSortOrder answered with a value")
        << setSortOrder << "setSortOrder" << ScriptedAnswer::value(true) << true << QVariant();
    QTest::newRow("setSortOrder error") << setSortOrder << "setSortOrder" << error << false << QVariant();
}

void tst_StorageElemsMapInterface::mapsEachReplyWithoutLogging()
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
    QCOMPARE(outcome.value.userType(), value.userType());
    QCOMPARE(outcome.value, value);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_StorageElemsMapInterface::givesInvalidRepliesAndLogsNothingWhenTheServiceIsAbsent()
{
    LogCapture log;
    StorageElemsMapInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const QDBusReply<QStringList> values = proxy.getValues();
    QVERIFY(!values.isValid());
    QCOMPARE(values.value(), QStringList());
    QCOMPARE(values.error().type(), QDBusError::ServiceUnknown);
    QVERIFY(values.error().message().contains(absentService()));

    const QDBusReply<int> count = proxy.count();
    QVERIFY(!count.isValid());
    QCOMPARE(count.value(), 0);

    const QDBusReply<QString> order = proxy.getSortOrder();
    QVERIFY(!order.isValid());
    QVERIFY(order.value().isEmpty());

    const QDBusReply<void> setOrder = proxy.setSortOrder(QStringLiteral("byName"));
    QVERIFY(!setOrder.isValid());
    QCOMPARE(setOrder.error().type(), QDBusError::ServiceUnknown);

    proxy.setToDefault();
    proxy.setToDefaultAsync();
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_StorageElemsMapInterface::setToDefaultWaitsForTheAnswerAndDropsIt()
{
    LogCapture log;
    m_fake->answer("setToDefault", ScriptedAnswer::error(failure, QStringLiteral("reset refused")));

    m_proxy->setToDefault();

    // Nothing was run in between: the call came back only once the application had answered.
    QCOMPARE(m_fake->callCount(), 1);
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("reset refused"));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_StorageElemsMapInterface::setToDefaultAsyncReturnsAtOnceAndSendsSetToDefault()
{
    LogCapture log;
    m_fake->answer("count", ScriptedAnswer::error(failure, QStringLiteral("earlier failure")));
    m_fake->answer("setToDefault", ScriptedAnswer::silence());
    m_fake->answer("setToDefaultAsync", ScriptedAnswer::reply());
    m_proxy->count();

    // The application never answers: a call that waited would take the whole time-out.
    QElapsedTimer timer;
    timer.start();
    m_proxy->setToDefaultAsync();
    QVERIFY(timer.elapsed() < 5000);

    QVERIFY(m_fake->waitForCalls(2));
    QCOMPARE(m_fake->callCount(), 2);
    const ReceivedCall call = m_fake->calls().at(1);
    QCOMPARE(call.path, path);
    QCOMPARE(call.interface, FakeMeasApplication::interfaceName);
    QCOMPARE(call.member, QStringLiteral("setToDefault"));
    QCOMPARE(call.signature, QString());
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_StorageElemsMapInterface::setToDefaultAsyncReturnsAtOnceWhenTheServiceIsAbsent()
{
    LogCapture log;
    StorageElemsMapInterface proxy(absentService(), path, QDBusConnection::sessionBus());
    const QDBusError before = proxy.lastError();

    QElapsedTimer timer;
    timer.start();
    proxy.setToDefaultAsync();
    QVERIFY(timer.elapsed() < 5000);

    QCOMPARE(proxy.lastError().type(), before.type());
    QCOMPARE(proxy.lastError().message(), before.message());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_StorageElemsMapInterface::metaObjectPlacesEachMethodAtItsIndex_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<int>("type");

    const int signal = QMetaMethod::Signal;
    const int slot = QMetaMethod::Slot;
    QTest::newRow("0") << 0 << "setupChanged(QString,int,int,QStringList)" << signal;
    QTest::newRow("1") << 1 << "sortOrderChanged(QString)" << signal;
    QTest::newRow("2") << 2 << "getValues()" << slot;
    QTest::newRow("3") << 3 << "count()" << slot;
    QTest::newRow("4") << 4 << "setToDefault()" << slot;
    QTest::newRow("5") << 5 << "setToDefaultAsync()" << slot;
    QTest::newRow("6") << 6 << "getSortOrder()" << slot;
    QTest::newRow("7") << 7 << "setSortOrder(QString)" << slot;
}

void tst_StorageElemsMapInterface::metaObjectPlacesEachMethodAtItsIndex()
{
    QFETCH(int, index);
    QFETCH(QString, signature);
    QFETCH(int, type);

    const QMetaObject &meta = StorageElemsMapInterface::staticMetaObject;
    const QMetaMethod method = meta.method(meta.methodOffset() + index);
    QCOMPARE(QString::fromLatin1(method.methodSignature()), signature);
    QCOMPARE(int(method.methodType()), type);
}

void tst_StorageElemsMapInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    const QMetaObject &meta = StorageElemsMapInterface::staticMetaObject;
    QCOMPARE(
        ownMethodSignatures(meta),
        QStringList({"setupChanged(QString,int,int,QStringList)", "sortOrderChanged(QString)", "getValues()", "count()",
                     "setToDefault()", "setToDefaultAsync()", "getSortOrder()", "setSortOrder(QString)"}));
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Signal),
             QStringList({"setupChanged(QString,int,int,QStringList)", "sortOrderChanged(QString)"}));
    QCOMPARE(QString::fromLatin1(meta.method(meta.indexOfMethod("setSortOrder(QString)")).typeName()),
             QStringLiteral("QDBusReply<void>"));
    QCOMPARE(QString::fromLatin1(meta.method(meta.indexOfMethod("setToDefault()")).typeName()), QStringLiteral("void"));
    QCOMPARE(meta.superClass(), &QDBusAbstractInterface::staticMetaObject);
    QCOMPARE(m_proxy->metaObject(), &meta);
}

void tst_StorageElemsMapInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    QCOMPARE(m_proxy->qt_metacast("StorageElemsMapInterface"), static_cast<void *>(m_proxy.get()));
    QCOMPARE(m_proxy->qt_metacast("QDBusAbstractInterface"),
             static_cast<void *>(static_cast<QDBusAbstractInterface *>(m_proxy.get())));
    QCOMPARE(m_proxy->qt_metacast(nullptr), nullptr);
    QCOMPARE(m_proxy->qt_metacast("SetupThresholdManagerInterface"), nullptr);
}

void tst_StorageElemsMapInterface::holdsNothingBesideTheBase()
{
    QCOMPARE(sizeof(StorageElemsMapInterface), sizeof(QDBusAbstractInterface));
}

void tst_StorageElemsMapInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValues", ScriptedAnswer::value(QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    m_fake->answer("setSortOrder", ScriptedAnswer::error(failure, QStringLiteral("unknown order")));

    QDBusReply<QStringList> values;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValues", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<QStringList>, values)));
    QCOMPARE(values.value(), m_proxy->getValues().value());
    QCOMPARE(values.value(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));

    QDBusReply<void> set;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setSortOrder", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<void>, set), Q_ARG(QString, QStringLiteral("bogus"))));
    QVERIFY(!set.isValid());
    QCOMPARE(set.error().message(), QStringLiteral("unknown order"));
    QCOMPARE(m_fake->calls().last().arguments, QList<QVariant>{QStringLiteral("bogus")});
}

void tst_StorageElemsMapInterface::relaysSetupChanged()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupChanged(QString, int, int, QStringList)), "setupChanged",
                      {QStringLiteral("insert"), 2, 3,
                       QStringList{QStringLiteral("Trace 4"), QStringLiteral("Trace 5"), QStringLiteral("Trace 6")}});
}

void tst_StorageElemsMapInterface::relaysSortOrderChanged()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(sortOrderChanged(QString)), "sortOrderChanged",
                      {QStringLiteral("byDate")});
}

QTEST_GUILESS_MAIN(tst_StorageElemsMapInterface)

#include "tst_storageelemsmapinterface.moc"
