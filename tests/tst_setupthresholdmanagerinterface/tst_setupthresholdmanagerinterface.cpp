#include "SetupThresholdManagerInterface.h"

#include "CompositeTestSupport.h"
#include "DBusCompat_p.h"
#include "DBusTypes.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QtTest/QTest>

#include <memory>

namespace {
using P = SetupThresholdManagerInterface;
const QString path = QStringLiteral("/Setup/Thresholds");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");

// The class's own methods, in meta-object order.
const QStringList signalSignatures{"locationNameChanged(QString,QString)", "locationsChanged()", "setupChanged()",
                                   "setupChanged(QString,double)"};
const QStringList slotSignatures{"setValue(QString,double)",
                                 "getAllThresholdElements()",
                                 "getAttributes(QString)",
                                 "getMaxLocationDescriptionCharacterCount()",
                                 "getMaxLocationNameCharacterCount()",
                                 "getMaxValue(QString)",
                                 "getMinValue(QString)",
                                 "getThresholdElementsForLocation(QString)",
                                 "getValue(QString)",
                                 "getString(QString)",
                                 "getLocationNames()",
                                 "getLocationDescription(QString)",
                                 "isLocationEditable(QString)",
                                 "size()",
                                 "isChangeable()",
                                 "setLocationDescription(QString,QString)",
                                 "setToDefault()",
                                 "setToDefaultAsync()",
                                 "createLocation(QString,QString)",
                                 "deleteLocation(QString)",
                                 "renameLocation(QString,QString)"};

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

class tst_SetupThresholdManagerInterface : public QObject, private ProxyFixture<SetupThresholdManagerInterface>
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
    void givesInvalidDefaultRepliesAndLogsNothingWhenTheServiceIsAbsent_data();
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
};

void tst_SetupThresholdManagerInterface::init()
{
    startFakeAndProxy(path);
}

void tst_SetupThresholdManagerInterface::cleanup()
{
    stopFakeAndProxy();
}

void tst_SetupThresholdManagerInterface::constructionMakesNoBusCallAndLogsNothing()
{
    verifyConstructionContract<SetupThresholdManagerInterface>(*m_fake, path);
    verifyConstructionForAnAbsentService<SetupThresholdManagerInterface>(path);
    QVERIFY(m_proxy->isValid());
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
    const QString key = QStringLiteral("Limits/Upper/3");
    const QString location = QStringLiteral("Hall A");
    const QString other = QStringLiteral("Hall B");

    addWireRows<P, QList<QVariant>>({
        {"setValue", [=](P &p) { p.setValue(key, 2.5); }, "setValue", "sd", {key, 2.5}},
        {"getAllThresholdElements", [](P &p) { p.getAllThresholdElements(); }, "getAllThresholdElements", "", {}},
        {"getAttributes", [=](P &p) { p.getAttributes(key); }, "getAttributes", "s", {key}},
        {"getMaxLocationDescriptionCharacterCount",
         [](P &p) { p.getMaxLocationDescriptionCharacterCount(); },
         "getMaxLocationDescriptionCharacterCount",
         "",
         {}},
        {"getMaxLocationNameCharacterCount",
         [](P &p) { p.getMaxLocationNameCharacterCount(); },
         "getMaxLocationNameCharacterCount",
         "",
         {}},
        {"getMaxValue", [=](P &p) { p.getMaxValue(key); }, "getMaxValue", "s", {key}},
        {"getMinValue", [=](P &p) { p.getMinValue(key); }, "getMinValue", "s", {key}},
        {"getThresholdElementsForLocation",
         [=](P &p) { p.getThresholdElementsForLocation(location); },
         "getThresholdElementsForLocation",
         "s",
         {location}},
        {"getValue", [=](P &p) { p.getValue(key); }, "getValue", "s", {key}},
        {"getString", [=](P &p) { p.getString(key); }, "getString", "s", {key}},
        {"getLocationNames", [](P &p) { p.getLocationNames(); }, "getLocationNames", "", {}},
        {"getLocationDescription",
         [=](P &p) { p.getLocationDescription(location); },
         "getLocationDescription",
         "s",
         {location}},
        {"isLocationEditable", [=](P &p) { p.isLocationEditable(location); }, "isLocationEditable", "s", {location}},
        {"size", [](P &p) { p.size(); }, "size", "", {}},
        {"isChangeable", [](P &p) { p.isChangeable(); }, "isChangeable", "", {}},
        {"setLocationDescription",
         [=](P &p) { p.setLocationDescription(location, QStringLiteral("north wall")); },
         "setLocationDescription",
         "ss",
         {location, QStringLiteral("north wall")}},
        {"setToDefault", [](P &p) { p.setToDefault(); }, "setToDefault", "", {}},
        {"setToDefaultAsync", [](P &p) { p.setToDefaultAsync(); }, "setToDefault", "", {}},
        {"createLocation", [=](P &p) { p.createLocation(other, location); }, "createLocation", "ss", {other, location}},
        {"deleteLocation", [=](P &p) { p.deleteLocation(other); }, "deleteLocation", "s", {other}},
        {"renameLocation", [=](P &p) { p.renameLocation(location, other); }, "renameLocation", "ss", {location, other}},
    });
}

void tst_SetupThresholdManagerInterface::sendsEachOperationWithItsWireForm()
{
    verifyWireRow(*m_fake, *m_proxy);
}

void tst_SetupThresholdManagerInterface::mapsEachReplyWithoutLogging_data()
{
    const QString key = QStringLiteral("k");
    ReplyTable<P> table(ScriptedAnswer::error(failure, QStringLiteral("refused")), LogCheck::Nothing);
    table.reply(
        "setValue", [key](P &p) { return seenOf(p.setValue(key, 1.0)); }, true, 1, false);
    table.reply(
        "getAllThresholdElements", [](P &p) { return seenOf(p.getAllThresholdElements()); }, QStringLiteral("k=1;j=2"),
        12, QString());
    table.reply(
        "getAttributes", [key](P &p) { return seenOf(p.getAttributes(key)); }, 0x13, 19.0, 0);
    table.reply(
        "getMaxLocationDescriptionCharacterCount",
        [](P &p) { return seenOf(p.getMaxLocationDescriptionCharacterCount()); }, 80, QStringLiteral("80"), 0);
    table.reply(
        "getMaxLocationNameCharacterCount", [](P &p) { return seenOf(p.getMaxLocationNameCharacterCount()); }, 16, true,
        0);
    table.reply(
        "getMaxValue", [key](P &p) { return seenOf(p.getMaxValue(key)); }, 99.5, 99, 0.0);
    table.reply(
        "getMinValue", [key](P &p) { return seenOf(p.getMinValue(key)); }, -3.25, QStringLiteral("-3.25"), 0.0);
    table.reply(
        "getThresholdElementsForLocation",
        [](P &p) { return seenOf(p.getThresholdElementsForLocation(QStringLiteral("Hall A"))); }, QStringLiteral("k=1"),
        QStringList{QStringLiteral("k=1")}, QString());
    table.reply(
        "getValue", [key](P &p) { return seenOf(p.getValue(key)); }, 12.75, 12, 0.0);
    table.reply(
        "getString", [key](P &p) { return seenOf(p.getString(key)); }, QStringLiteral("12.75 dB"), 12.75, QString());
    table.reply(
        "getLocationNames", [](P &p) { return seenOf(p.getLocationNames()); },
        QStringList{QStringLiteral("Hall A"), QStringLiteral("Hall B")}, QStringLiteral("Hall A"), QStringList());
    table.reply(
        "getLocationDescription", [](P &p) { return seenOf(p.getLocationDescription(QStringLiteral("Hall A"))); },
        QStringLiteral("north wall"), 1, QString());
    table.reply(
        "isLocationEditable", [](P &p) { return seenOf(p.isLocationEditable(QStringLiteral("Hall A"))); }, true,
        QStringLiteral("true"), false);
    table.reply(
        "size", [](P &p) { return seenOf(p.size()); }, 7, 7.0, 0);
    table.reply(
        "isChangeable", [](P &p) { return seenOf(p.isChangeable()); }, true, 1, false);
    table.reply(
        "setLocationDescription",
        [](P &p) { return seenOf(p.setLocationDescription(QStringLiteral("Hall A"), QStringLiteral("d"))); }, true,
        QStringLiteral("yes"), false);
    table.reply(
        "createLocation",
        [](P &p) { return seenOf(p.createLocation(QStringLiteral("Hall B"), QStringLiteral("Hall A"))); }, true, 1,
        false);
    table.reply(
        "deleteLocation", [](P &p) { return seenOf(p.deleteLocation(QStringLiteral("Hall B"))); }, true, 0, false);
    table.reply(
        "renameLocation",
        [](P &p) { return seenOf(p.renameLocation(QStringLiteral("Hall A"), QStringLiteral("Hall C"))); }, true, 2.0,
        false);
}

void tst_SetupThresholdManagerInterface::mapsEachReplyWithoutLogging()
{
    verifyMappedReply(*m_fake, *m_proxy);
}

void tst_SetupThresholdManagerInterface::givesInvalidDefaultRepliesAndLogsNothingWhenTheServiceIsAbsent_data()
{
    const QString key = QStringLiteral("k");
    const QString location = QStringLiteral("Hall A");
    addAbsentRows<P>({
        {"setValue", [=](P &p) { return seenOf(p.setValue(key, 1.0)); }, false},
        {"getAllThresholdElements", [](P &p) { return seenOf(p.getAllThresholdElements()); }, QString()},
        {"getAttributes", [=](P &p) { return seenOf(p.getAttributes(key)); }, 0},
        {"getMaxLocationDescriptionCharacterCount",
         [](P &p) { return seenOf(p.getMaxLocationDescriptionCharacterCount()); }, 0},
        {"getMaxLocationNameCharacterCount", [](P &p) { return seenOf(p.getMaxLocationNameCharacterCount()); }, 0},
        {"getMaxValue", [=](P &p) { return seenOf(p.getMaxValue(key)); }, 0.0},
        {"getMinValue", [=](P &p) { return seenOf(p.getMinValue(key)); }, 0.0},
        {"getThresholdElementsForLocation", [=](P &p) { return seenOf(p.getThresholdElementsForLocation(location)); },
         QString()},
        {"getValue", [=](P &p) { return seenOf(p.getValue(key)); }, 0.0},
        {"getString", [=](P &p) { return seenOf(p.getString(key)); }, QString()},
        {"getLocationNames", [](P &p) { return seenOf(p.getLocationNames()); }, QStringList()},
        {"getLocationDescription", [=](P &p) { return seenOf(p.getLocationDescription(location)); }, QString()},
        {"isLocationEditable", [=](P &p) { return seenOf(p.isLocationEditable(location)); }, false},
        {"size", [](P &p) { return seenOf(p.size()); }, 0},
        {"isChangeable", [](P &p) { return seenOf(p.isChangeable()); }, false},
        {"setLocationDescription",
         [=](P &p) { return seenOf(p.setLocationDescription(location, QStringLiteral("d"))); }, false},
        {"setToDefault",
         [](P &p) {
             p.setToDefault();
             return Seen{};
         },
         QVariant()},
        {"createLocation", [=](P &p) { return seenOf(p.createLocation(location, QStringLiteral("Hall B"))); }, false},
        {"deleteLocation", [=](P &p) { return seenOf(p.deleteLocation(location)); }, false},
        {"renameLocation", [=](P &p) { return seenOf(p.renameLocation(location, QStringLiteral("Hall B"))); }, false},
    });
}

void tst_SetupThresholdManagerInterface::givesInvalidDefaultRepliesAndLogsNothingWhenTheServiceIsAbsent()
{
    verifyAbsentRow<P>(path, LogCheck::Nothing);
}

void tst_SetupThresholdManagerInterface::setToDefaultWaitsForTheAnswerAndDropsIt()
{
    verifySetToDefaultWaitsAndDropsTheAnswer(*m_fake, *m_proxy, failure, QStringLiteral("reset refused"));
}

void tst_SetupThresholdManagerInterface::setToDefaultAsyncReturnsAtOnceWithoutWaiting()
{
    verifyAsyncCallsReturnAtOnce(*m_fake, *m_proxy, path, {"getValue", [](P &p) { p.getValue(QStringLiteral("k")); }},
                                 {{[](P &p) { p.setToDefaultAsync(); }, "setToDefault", ""}});
}

void tst_SetupThresholdManagerInterface::setToDefaultAsyncReturnsAtOnceWhenTheServiceIsAbsent()
{
    verifyAsyncCallsToAnAbsentServiceLogNothing<P>(path, [](P &p) { p.setToDefaultAsync(); });
}

void tst_SetupThresholdManagerInterface::metaObjectPlacesEachMethodAtItsIndex_data()
{
    addMethodPlacementRows(signalSignatures, slotSignatures);
}

void tst_SetupThresholdManagerInterface::metaObjectPlacesEachMethodAtItsIndex()
{
    verifyMethodPlacementRow<P>();
}

void tst_SetupThresholdManagerInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    verifyOwnMethods(*m_proxy, signalSignatures, slotSignatures);
    const QMetaObject &meta = SetupThresholdManagerInterface::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 25);
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Slot).size(), 21);
}

void tst_SetupThresholdManagerInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(*m_proxy, "SetupThresholdManagerInterface");
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
