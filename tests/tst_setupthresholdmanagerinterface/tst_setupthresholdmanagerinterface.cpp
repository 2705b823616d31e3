#include "SetupThresholdManagerInterface.h"

#include "DBusCompat_p.h"
#include "DBusTypes.h"
#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QElapsedTimer>
#include <QtTest/QTest>

#include <functional>
#include <memory>

using Operation = std::function<Outcome(SetupThresholdManagerInterface &)>;
Q_DECLARE_METATYPE(Operation)

namespace {
const QString path = QStringLiteral("/Setup/Thresholds");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");

/// A reply as the application would give it, made without a bus.
QDBusReply<int> localReply(int value)
{
    return QDBusReply<int>(QDBusMessage::createMethodCall(QStringLiteral("com.velk.mqx.app.local"), path,
                                                          QStringLiteral("local.If"), QStringLiteral("local"))
                               .createReply(QVariant(value)));
}

/// Overrides the three virtual getters without going to the bus.
class LocalThresholdManager : public SetupThresholdManagerInterface
{
public:
    using SetupThresholdManagerInterface::SetupThresholdManagerInterface;

    QDBusReply<int> getAttributes(QString key) override
    {
        lastKey = key;
        return localReply(0x5a);
    }
    QDBusReply<int> getMaxLocationDescriptionCharacterCount() override { return localReply(120); }
    QDBusReply<int> getMaxLocationNameCharacterCount() override { return localReply(24); }

    QString lastKey;
};

/// Writes the list backwards: shows whether a construction put the library's writer back.
void writeDoublesBackwards(QDBusArgument &argument, const void *value)
{
    const QList<double> &list = *static_cast<const QList<double> *>(value);
    argument.beginArray(QMetaType::Double);
    for (auto it = list.crbegin(); it != list.crend(); ++it)
        argument << *it;
    argument.endArray();
}

void readDoubles(const QDBusArgument &argument, void *value)
{
    DBusTypes::readDoubleList(argument, *static_cast<QList<double> *>(value));
}
} // namespace

class tst_SetupThresholdManagerInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void constructionMakesNoBusCallAndLogsNothing();
    void everyConstructionKeepsTheOneDoubleListTypeAndRestoresItsMarshalling();

    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void mapsEachReplyWithoutLogging_data();
    void mapsEachReplyWithoutLogging();
    void givesInvalidDefaultRepliesAndLogsNothingWhenTheServiceIsAbsent();

    void setToDefaultWaitsForTheAnswerAndDropsIt();
    void setToDefaultAsyncReturnsAtOnceWithoutWaiting();
    void setToDefaultAsyncReturnsAtOnceWhenTheServiceIsAbsent();

    void metaObjectPlacesEachMethodAtItsIndex_data();
    void metaObjectPlacesEachMethodAtItsIndex();
    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void keepsServiceAndPathBesideTheBase();
    void invokingSlotsByNameGivesTheDirectResult();
    void overriddenVirtualGettersAreWhatTheMetaObjectInvokes();

    void relaysLocationNameChanged();
    void relaysLocationsChanged();
    void relaysSetupChangedWithoutArguments();
    void relaysSetupChangedWithKeyAndValue();
    void setupChangedOverloadsShareTheBusSignalByItsArguments();

private:
    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<SetupThresholdManagerInterface> m_proxy;
};

void tst_SetupThresholdManagerInterface::init()
{
    m_fake.reset(new FakeMeasApplication);
    m_proxy.reset(new SetupThresholdManagerInterface(m_fake->service(), path, QDBusConnection::sessionBus()));
}

void tst_SetupThresholdManagerInterface::cleanup()
{
    m_proxy.reset();
    m_fake.reset();
}

void tst_SetupThresholdManagerInterface::constructionMakesNoBusCallAndLogsNothing()
{
    LogCapture log;
    SetupThresholdManagerInterface proxy(m_fake->service(), path, QDBusConnection::sessionBus());
    SetupThresholdManagerInterface absent(absentService(), path, QDBusConnection::sessionBus());

    QVERIFY(proxy.isValid());
    QCOMPARE(proxy.service(), m_fake->service());
    QCOMPARE(proxy.path(), path);
    QCOMPARE(proxy.interface(), FakeMeasApplication::interfaceName);
    QCOMPARE(absent.service(), absentService());
    syncWithBus(proxy.connection());
    QCOMPARE(m_fake->callCount(), 0);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupThresholdManagerInterface::everyConstructionKeepsTheOneDoubleListTypeAndRestoresItsMarshalling()
{
    const int id = DBusCompat::metaTypeIdByName("QList<double>");
    QVERIFY(id != QMetaType::UnknownType);
    QCOMPARE(DBusTypes::registerDoubleList(), id);

    m_fake->answer("takeDoubles", ScriptedAnswer::reply());
    const QList<double> sent{1.5, -2.0, 3.25};
    LogCapture log;
    for (int round = 0; round < 3; ++round) {
        // Something else in the process replaced the writer; the next construction must
        // put the library's own back, and must not register the type anew.
        DBusCompat::registerMarshallOperators(id, writeDoublesBackwards, readDoubles);
        SetupThresholdManagerInterface proxy(m_fake->service(), path, QDBusConnection::sessionBus());

        m_fake->clearCalls();
        proxy.callWithArgumentList(QDBus::Block, "takeDoubles", {QVariant::fromValue(sent)});
        QCOMPARE(m_fake->callCount(), 1);
        const ReceivedCall call = m_fake->calls().first();
        QCOMPARE(call.signature, QStringLiteral("ad"));
        QCOMPARE(qdbus_cast<QList<double>>(call.arguments.first()), sent);
        QCOMPARE(DBusCompat::metaTypeIdByName("QList<double>"), id);
    }
    QCOMPARE(DBusTypes::registerDoubleList(), id);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupThresholdManagerInterface::sendsEachOperationWithItsWireForm_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<QList<QVariant>>("arguments");

    const auto op = [](std::function<void(SetupThresholdManagerInterface &)> call) {
        return Operation([call](SetupThresholdManagerInterface &proxy) {
            call(proxy);
            return Outcome{};
        });
    };
    using P = SetupThresholdManagerInterface;
    const QString key = QStringLiteral("Limits/Upper/3");
    const QString location = QStringLiteral("Hall A");
    const QString other = QStringLiteral("Hall B");

    QTest::newRow("setValue") << op([=](P &p) { p.setValue(key, 2.5); }) << "setValue"
                              << "sd" << QList<QVariant>{key, 2.5};
    QTest::newRow("getAllThresholdElements")
        << op([](P &p) { p.getAllThresholdElements(); }) << "getAllThresholdElements"
        << "" << QList<QVariant>{};
    QTest::newRow("getAttributes") << op([=](P &p) { p.getAttributes(key); }) << "getAttributes"
                                   << "s" << QList<QVariant>{key};
    QTest::newRow("getMaxLocationDescriptionCharacterCount")
        << op([](P &p) { p.getMaxLocationDescriptionCharacterCount(); }) << "getMaxLocationDescriptionCharacterCount"
        << "" << QList<QVariant>{};
    QTest::newRow("getMaxLocationNameCharacterCount")
        << op([](P &p) { p.getMaxLocationNameCharacterCount(); }) << "getMaxLocationNameCharacterCount"
        << "" << QList<QVariant>{};
    QTest::newRow("getMaxValue") << op([=](P &p) { p.getMaxValue(key); }) << "getMaxValue"
                                 << "s" << QList<QVariant>{key};
    QTest::newRow("getMinValue") << op([=](P &p) { p.getMinValue(key); }) << "getMinValue"
                                 << "s" << QList<QVariant>{key};
    QTest::newRow("getThresholdElementsForLocation")
        << op([=](P &p) { p.getThresholdElementsForLocation(location); }) << "getThresholdElementsForLocation"
        << "s" << QList<QVariant>{location};
    QTest::newRow("getValue") << op([=](P &p) { p.getValue(key); }) << "getValue"
                              << "s" << QList<QVariant>{key};
    QTest::newRow("getString") << op([=](P &p) { p.getString(key); }) << "getString"
                               << "s" << QList<QVariant>{key};
    QTest::newRow("getLocationNames") << op([](P &p) { p.getLocationNames(); }) << "getLocationNames"
                                      << "" << QList<QVariant>{};
    QTest::newRow("getLocationDescription")
        << op([=](P &p) { p.getLocationDescription(location); }) << "getLocationDescription"
        << "s" << QList<QVariant>{location};
    QTest::newRow("isLocationEditable") << op([=](P &p) { p.isLocationEditable(location); }) << "isLocationEditable"
                                        << "s" << QList<QVariant>{location};
    QTest::newRow("size") << op([](P &p) { p.size(); }) << "size"
                          << "" << QList<QVariant>{};
    QTest::newRow("isChangeable") << op([](P &p) { p.isChangeable(); }) << "isChangeable"
                                  << "" << QList<QVariant>{};
    QTest::newRow("setLocationDescription")
        << op([=](P &p) { p.setLocationDescription(location, QStringLiteral("north wall")); })
        << "setLocationDescription"
        << "ss" << QList<QVariant>{location, QStringLiteral("north wall")};
    QTest::newRow("setToDefault") << op([](P &p) { p.setToDefault(); }) << "setToDefault"
                                  << "" << QList<QVariant>{};
    QTest::newRow("setToDefaultAsync") << op([](P &p) { p.setToDefaultAsync(); }) << "setToDefault"
                                       << "" << QList<QVariant>{};
    QTest::newRow("createLocation") << op([=](P &p) { p.createLocation(other, location); }) << "createLocation"
                                    << "ss" << QList<QVariant>{other, location};
    QTest::newRow("deleteLocation") << op([=](P &p) { p.deleteLocation(other); }) << "deleteLocation"
                                    << "s" << QList<QVariant>{other};
    QTest::newRow("renameLocation") << op([=](P &p) { p.renameLocation(location, other); }) << "renameLocation"
                                    << "ss" << QList<QVariant>{location, other};
}

void tst_SetupThresholdManagerInterface::sendsEachOperationWithItsWireForm()
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);
    QFETCH(QString, signature);
    QFETCH(QList<QVariant>, arguments);

    m_fake->answer(member, ScriptedAnswer::reply());
    operation(*m_proxy);
    verifySingleCall(*m_fake, path, member, signature, arguments);
}

void tst_SetupThresholdManagerInterface::mapsEachReplyWithoutLogging_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QVariant>("value");

    using P = SetupThresholdManagerInterface;
    const QString key = QStringLiteral("k");
    const ScriptedAnswer error = ScriptedAnswer::error(failure, QStringLiteral("refused"));
    const auto rows = [&](const char *name, Operation op, const QVariant &good, const QVariant &wrongType,
                          const QVariant &defaultValue) {
        QTest::addRow("%s answered", name) << op << name << ScriptedAnswer::value(good) << true << good;
        QTest::addRow("%s error", name) << op << name << error << false << defaultValue;
        QTest::addRow("%s wrong type", name) << op << name << ScriptedAnswer::value(wrongType) << false << defaultValue;
        QTest::addRow("%s empty return", name) << op << name << ScriptedAnswer::reply() << false << defaultValue;
    };
    rows(
        "setValue", [key](P &p) { return outcomeOf(p.setValue(key, 1.0)); }, true, 1, false);
    rows(
        "getAllThresholdElements", [](P &p) { return outcomeOf(p.getAllThresholdElements()); },
        QStringLiteral("k=1;j=2"), 12, QString());
    rows(
        "getAttributes", [key](P &p) { return outcomeOf(p.getAttributes(key)); }, 0x13, 19.0, 0);
    rows(
        "getMaxLocationDescriptionCharacterCount",
        [](P &p) { return outcomeOf(p.getMaxLocationDescriptionCharacterCount()); }, 80, QStringLiteral("80"), 0);
    rows(
        "getMaxLocationNameCharacterCount", [](P &p) { return outcomeOf(p.getMaxLocationNameCharacterCount()); }, 16,
        true, 0);
    rows(
        "getMaxValue", [key](P &p) { return outcomeOf(p.getMaxValue(key)); }, 99.5, 99, 0.0);
    rows(
        "getMinValue", [key](P &p) { return outcomeOf(p.getMinValue(key)); }, -3.25, QStringLiteral("-3.25"), 0.0);
    rows(
        "getThresholdElementsForLocation",
        [](P &p) { return outcomeOf(p.getThresholdElementsForLocation(QStringLiteral("Hall A"))); },
        QStringLiteral("k=1"), QStringList{QStringLiteral("k=1")}, QString());
    rows(
        "getValue", [key](P &p) { return outcomeOf(p.getValue(key)); }, 12.75, 12, 0.0);
    rows(
        "getString", [key](P &p) { return outcomeOf(p.getString(key)); }, QStringLiteral("12.75 dB"), 12.75, QString());
    rows(
        "getLocationNames", [](P &p) { return outcomeOf(p.getLocationNames()); },
        QStringList{QStringLiteral("Hall A"), QStringLiteral("Hall B")}, QStringLiteral("Hall A"), QStringList());
    rows(
        "getLocationDescription", [](P &p) { return outcomeOf(p.getLocationDescription(QStringLiteral("Hall A"))); },
        QStringLiteral("north wall"), 1, QString());
    rows(
        "isLocationEditable", [](P &p) { return outcomeOf(p.isLocationEditable(QStringLiteral("Hall A"))); }, true,
        QStringLiteral("true"), false);
    rows(
        "size", [](P &p) { return outcomeOf(p.size()); }, 7, 7.0, 0);
    rows(
        "isChangeable", [](P &p) { return outcomeOf(p.isChangeable()); }, true, 1, false);
    rows(
        "setLocationDescription",
        [](P &p) { return outcomeOf(p.setLocationDescription(QStringLiteral("Hall A"), QStringLiteral("d"))); }, true,
        QStringLiteral("yes"), false);
    rows(
        "createLocation",
        [](P &p) { return outcomeOf(p.createLocation(QStringLiteral("Hall B"), QStringLiteral("Hall A"))); }, true, 1,
        false);
    rows(
        "deleteLocation", [](P &p) { return outcomeOf(p.deleteLocation(QStringLiteral("Hall B"))); }, true, 0, false);
    rows(
        "renameLocation",
        [](P &p) { return outcomeOf(p.renameLocation(QStringLiteral("Hall A"), QStringLiteral("Hall C"))); }, true, 2.0,
        false);
}

void tst_SetupThresholdManagerInterface::mapsEachReplyWithoutLogging()
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

void tst_SetupThresholdManagerInterface::givesInvalidDefaultRepliesAndLogsNothingWhenTheServiceIsAbsent()
{
    LogCapture log;
    SetupThresholdManagerInterface proxy(absentService(), path, QDBusConnection::sessionBus());
    const QString key = QStringLiteral("k");
    const QString location = QStringLiteral("Hall A");

    const QDBusReply<bool> set = proxy.setValue(key, 1.0);
    QVERIFY(!set.isValid());
    QCOMPARE(set.value(), false);
    QCOMPARE(set.error().type(), QDBusError::ServiceUnknown);
    QVERIFY(set.error().message().contains(absentService()));

    const auto checkInt = [](const QDBusReply<int> &reply) {
        QVERIFY(!reply.isValid());
        QCOMPARE(reply.value(), 0);
        QCOMPARE(reply.error().type(), QDBusError::ServiceUnknown);
    };
    const auto checkDouble = [](const QDBusReply<double> &reply) {
        QVERIFY(!reply.isValid());
        QCOMPARE(reply.value(), 0.0);
        QCOMPARE(reply.error().type(), QDBusError::ServiceUnknown);
    };
    const auto checkString = [](const QDBusReply<QString> &reply) {
        QVERIFY(!reply.isValid());
        QVERIFY(reply.value().isEmpty());
        QCOMPARE(reply.error().type(), QDBusError::ServiceUnknown);
    };
    const auto checkBool = [](const QDBusReply<bool> &reply) {
        QVERIFY(!reply.isValid());
        QCOMPARE(reply.value(), false);
        QCOMPARE(reply.error().type(), QDBusError::ServiceUnknown);
    };
    checkString(proxy.getAllThresholdElements());
    checkInt(proxy.getAttributes(key));
    checkInt(proxy.getMaxLocationDescriptionCharacterCount());
    checkInt(proxy.getMaxLocationNameCharacterCount());
    checkDouble(proxy.getMaxValue(key));
    checkDouble(proxy.getMinValue(key));
    checkString(proxy.getThresholdElementsForLocation(location));
    checkDouble(proxy.getValue(key));
    checkString(proxy.getString(key));
    const QDBusReply<QStringList> names = proxy.getLocationNames();
    QVERIFY(!names.isValid());
    QCOMPARE(names.value(), QStringList());
    checkString(proxy.getLocationDescription(location));
    checkBool(proxy.isLocationEditable(location));
    checkInt(proxy.size());
    checkBool(proxy.isChangeable());
    checkBool(proxy.setLocationDescription(location, QStringLiteral("d")));
    proxy.setToDefault();
    proxy.setToDefaultAsync();
    checkBool(proxy.createLocation(location, QStringLiteral("Hall B")));
    checkBool(proxy.deleteLocation(location));
    checkBool(proxy.renameLocation(location, QStringLiteral("Hall B")));

    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupThresholdManagerInterface::setToDefaultWaitsForTheAnswerAndDropsIt()
{
    LogCapture log;
    m_fake->answer("setToDefault", ScriptedAnswer::error(failure, QStringLiteral("reset refused")));

    m_proxy->setToDefault();

    // Nothing was run in between: the call came back only once the application had answered.
    QCOMPARE(m_fake->callCount(), 1);
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("reset refused"));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupThresholdManagerInterface::setToDefaultAsyncReturnsAtOnceWithoutWaiting()
{
    LogCapture log;
    m_fake->answer("getValue", ScriptedAnswer::error(failure, QStringLiteral("earlier failure")));
    m_fake->answer("setToDefault", ScriptedAnswer::silence());
    m_proxy->getValue(QStringLiteral("k"));

    // The application never answers: a call that waited would take the whole time-out.
    QElapsedTimer timer;
    timer.start();
    m_proxy->setToDefaultAsync();
    QVERIFY(timer.elapsed() < 5000);

    QVERIFY(m_fake->waitForCalls(2));
    QCOMPARE(m_fake->calls().at(1).member, QStringLiteral("setToDefault"));
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupThresholdManagerInterface::setToDefaultAsyncReturnsAtOnceWhenTheServiceIsAbsent()
{
    LogCapture log;
    SetupThresholdManagerInterface proxy(absentService(), path, QDBusConnection::sessionBus());
    const QDBusError before = proxy.lastError();

    QElapsedTimer timer;
    timer.start();
    proxy.setToDefaultAsync();
    QVERIFY(timer.elapsed() < 5000);

    QCOMPARE(proxy.lastError().type(), before.type());
    QCOMPARE(proxy.lastError().message(), before.message());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupThresholdManagerInterface::metaObjectPlacesEachMethodAtItsIndex_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<int>("type");

    const int signal = QMetaMethod::Signal;
    const int slot = QMetaMethod::Slot;
    QTest::newRow("0") << 0 << "locationNameChanged(QString,QString)" << signal;
    QTest::newRow("1") << 1 << "locationsChanged()" << signal;
    QTest::newRow("2") << 2 << "setupChanged()" << signal;
    QTest::newRow("3") << 3 << "setupChanged(QString,double)" << signal;
    QTest::newRow("4") << 4 << "setValue(QString,double)" << slot;
    QTest::newRow("5") << 5 << "getAllThresholdElements()" << slot;
    QTest::newRow("6") << 6 << "getAttributes(QString)" << slot;
    QTest::newRow("7") << 7 << "getMaxLocationDescriptionCharacterCount()" << slot;
    QTest::newRow("8") << 8 << "getMaxLocationNameCharacterCount()" << slot;
    QTest::newRow("9") << 9 << "getMaxValue(QString)" << slot;
    QTest::newRow("10") << 10 << "getMinValue(QString)" << slot;
    QTest::newRow("11") << 11 << "getThresholdElementsForLocation(QString)" << slot;
    QTest::newRow("12") << 12 << "getValue(QString)" << slot;
    QTest::newRow("13") << 13 << "getString(QString)" << slot;
    QTest::newRow("14") << 14 << "getLocationNames()" << slot;
    QTest::newRow("15") << 15 << "getLocationDescription(QString)" << slot;
    QTest::newRow("16") << 16 << "isLocationEditable(QString)" << slot;
    QTest::newRow("17") << 17 << "size()" << slot;
    QTest::newRow("18") << 18 << "isChangeable()" << slot;
    QTest::newRow("19") << 19 << "setLocationDescription(QString,QString)" << slot;
    QTest::newRow("20") << 20 << "setToDefault()" << slot;
    QTest::newRow("21") << 21 << "setToDefaultAsync()" << slot;
    QTest::newRow("22") << 22 << "createLocation(QString,QString)" << slot;
    QTest::newRow("23") << 23 << "deleteLocation(QString)" << slot;
    QTest::newRow("24") << 24 << "renameLocation(QString,QString)" << slot;
}

void tst_SetupThresholdManagerInterface::metaObjectPlacesEachMethodAtItsIndex()
{
    QFETCH(int, index);
    QFETCH(QString, signature);
    QFETCH(int, type);

    const QMetaObject &meta = SetupThresholdManagerInterface::staticMetaObject;
    const QMetaMethod method = meta.method(meta.methodOffset() + index);
    QCOMPARE(QString::fromLatin1(method.methodSignature()), signature);
    QCOMPARE(int(method.methodType()), type);
    QCOMPARE(meta.indexOfMethod(signature.toLatin1().constData()), meta.methodOffset() + index);
}

void tst_SetupThresholdManagerInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    const QMetaObject &meta = SetupThresholdManagerInterface::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 25);
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Signal),
             QStringList({"locationNameChanged(QString,QString)", "locationsChanged()", "setupChanged()",
                          "setupChanged(QString,double)"}));
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Slot).size(), 21);
    QCOMPARE(meta.superClass(), &QDBusAbstractInterface::staticMetaObject);
    QCOMPARE(m_proxy->metaObject(), &meta);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
    QCOMPARE(meta.classInfoCount(), meta.classInfoOffset());
}

void tst_SetupThresholdManagerInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    QCOMPARE(m_proxy->qt_metacast("SetupThresholdManagerInterface"), static_cast<void *>(m_proxy.get()));
    QCOMPARE(m_proxy->qt_metacast("QDBusAbstractInterface"),
             static_cast<void *>(static_cast<QDBusAbstractInterface *>(m_proxy.get())));
    QCOMPARE(m_proxy->qt_metacast(nullptr), nullptr);
    QCOMPARE(m_proxy->qt_metacast("StorageElemsMapInterface"), nullptr);
}

void tst_SetupThresholdManagerInterface::keepsServiceAndPathBesideTheBase()
{
    QCOMPARE(sizeof(SetupThresholdManagerInterface), sizeof(QDBusAbstractInterface) + 2 * sizeof(QString));
}

void tst_SetupThresholdManagerInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(4.5));
    m_fake->answer("setValue", ScriptedAnswer::value(true));
    m_fake->answer("getLocationNames", ScriptedAnswer::value(QStringList{QStringLiteral("Hall A")}));

    QDBusReply<double> value;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<double>, value), Q_ARG(QString, QStringLiteral("k"))));
    QVERIFY(value.isValid());
    QCOMPARE(value.value(), m_proxy->getValue(QStringLiteral("k")).value());
    QCOMPARE(value.value(), 4.5);

    QDBusReply<bool> accepted;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<bool>, accepted), Q_ARG(QString, QStringLiteral("k")),
                                      Q_ARG(double, 6.0)));
    QCOMPARE(accepted.value(), true);
    QCOMPARE(m_fake->calls().last().arguments, QList<QVariant>({QStringLiteral("k"), 6.0}));

    QDBusReply<QStringList> names;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getLocationNames", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<QStringList>, names)));
    QCOMPARE(names.value(), QStringList{QStringLiteral("Hall A")});

    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setToDefaultAsync", Qt::DirectConnection));
    QVERIFY(m_fake->waitForCalls(5));
    QCOMPARE(m_fake->calls().last().member, QStringLiteral("setToDefault"));
}

void tst_SetupThresholdManagerInterface::overriddenVirtualGettersAreWhatTheMetaObjectInvokes()
{
    LocalThresholdManager local(m_fake->service(), path, QDBusConnection::sessionBus());
    SetupThresholdManagerInterface &proxy = local;
    const QMetaObject &meta = SetupThresholdManagerInterface::staticMetaObject;

    QDBusReply<int> attributes;
    QVERIFY(QMetaObject::invokeMethod(&proxy, "getAttributes", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<int>, attributes), Q_ARG(QString, QStringLiteral("k9"))));
    QVERIFY(attributes.isValid());
    QCOMPARE(attributes.value(), 0x5a);
    QCOMPARE(local.lastKey, QStringLiteral("k9"));

    // The same through the slot at its index, as a queued or scripted caller would reach it.
    QDBusReply<int> byIndex;
    QVERIFY(meta.method(meta.methodOffset() + 6)
                .invoke(&proxy, Qt::DirectConnection, Q_RETURN_ARG(QDBusReply<int>, byIndex),
                        Q_ARG(QString, QStringLiteral("k10"))));
    QCOMPARE(byIndex.value(), 0x5a);
    QCOMPARE(local.lastKey, QStringLiteral("k10"));

    QDBusReply<int> description;
    QVERIFY(QMetaObject::invokeMethod(&proxy, "getMaxLocationDescriptionCharacterCount", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<int>, description)));
    QCOMPARE(description.value(), 120);
    QDBusReply<int> name;
    QVERIFY(QMetaObject::invokeMethod(&proxy, "getMaxLocationNameCharacterCount", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<int>, name)));
    QCOMPARE(name.value(), 24);
    QCOMPARE(proxy.getAttributes(QStringLiteral("k11")).value(), 0x5a);

    // Only the overridden getters stay local; the rest still go to the application.
    m_fake->answer("size", ScriptedAnswer::value(3));
    QDBusReply<int> size;
    QVERIFY(QMetaObject::invokeMethod(&proxy, "size", Qt::DirectConnection, Q_RETURN_ARG(QDBusReply<int>, size)));
    QCOMPARE(size.value(), 3);
    QCOMPARE(m_fake->callCount(), 1);
    QCOMPARE(m_fake->calls().first().member, QStringLiteral("size"));
}

void tst_SetupThresholdManagerInterface::relaysLocationNameChanged()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(locationNameChanged(QString, QString)), "locationNameChanged",
                      {QStringLiteral("Hall A"), QStringLiteral("Hall C")});
}

void tst_SetupThresholdManagerInterface::relaysLocationsChanged()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(locationsChanged()), "locationsChanged", {});
}

void tst_SetupThresholdManagerInterface::relaysSetupChangedWithoutArguments()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupChanged()), "setupChanged", {});
}

void tst_SetupThresholdManagerInterface::relaysSetupChangedWithKeyAndValue()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupChanged(QString, double)), "setupChanged",
                      {QStringLiteral("Limits/Upper/3"), 7.5});
}

void tst_SetupThresholdManagerInterface::setupChangedOverloadsShareTheBusSignalByItsArguments()
{
    QSignalSpy plain(m_proxy.get(), SIGNAL(setupChanged()));
    QSignalSpy keyed(m_proxy.get(), SIGNAL(setupChanged(QString, double)));
    syncWithBus(m_proxy->connection());

    m_fake->emitSignal(path, "setupChanged", {});
    m_fake->emitSignal(path, "setupChanged", {QStringLiteral("k"), 1.25});

    // The keyed overload takes only a bus signal that carries a key and a value; the
    // argument-free one, like any Qt receiver of fewer arguments, takes both.
    QTRY_COMPARE(keyed.count(), 1);
    QCOMPARE(keyed.first(), QList<QVariant>({QStringLiteral("k"), 1.25}));
    QTRY_COMPARE(plain.count(), 2);
    QCOMPARE(plain.at(0), QList<QVariant>());
    QCOMPARE(plain.at(1), QList<QVariant>());
}

QTEST_GUILESS_MAIN(tst_SetupThresholdManagerInterface)

#include "tst_setupthresholdmanagerinterface.moc"
