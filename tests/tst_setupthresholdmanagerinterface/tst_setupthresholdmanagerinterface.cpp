#include "SetupThresholdManagerInterface.h"

#include "DBusCompat_p.h"
#include "DBusTypes.h"
#include "ProxyClassTest.h"
#include "StructuredValues.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QtTest/QTest>

namespace {
using P = SetupThresholdManagerInterface;
const QString path = QStringLiteral("/Setup/Thresholds");

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

const QString key = QStringLiteral("Limits/Upper/3");
const QString location = QStringLiteral("Hall A");
const QString other = QStringLiteral("Hall B");

// clang-format off
// Every operation that hands back a reply: a value, or the empty one on any failure, logging
// nothing. Slots invoked by name give what the direct call gives.
const QList<OperationRow> replies{
    {.operation = "setValue", .run = calling(&P::setValue, key, 2.5),
     .call = {.member = "setValue", .signature = "sd", .arguments = {key, 2.5}},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "setValue by name", .run = byName<QDBusReply<bool>>("setValue(QString,double)", key, 6.0),
     .call = {.member = "setValue", .signature = "sd", .arguments = {key, 6.0}},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "getAllThresholdElements", .run = onProxy(&P::getAllThresholdElements),
     .call = {.member = "getAllThresholdElements"},
     .reply = {.answered = QStringLiteral("k=1;j=2"), .wrongType = 12, .empty = QString()}},
    {.operation = "getAttributes", .run = calling(&P::getAttributes, key),
     .call = {.member = "getAttributes", .signature = "s", .arguments = {key}},
     .reply = {.answered = 0x13, .wrongType = 19.0, .empty = 0}},
    {.operation = "getMaxLocationDescriptionCharacterCount",
     .run = onProxy(&P::getMaxLocationDescriptionCharacterCount),
     .call = {.member = "getMaxLocationDescriptionCharacterCount"},
     .reply = {.answered = 80, .wrongType = QStringLiteral("80"), .empty = 0}},
    {.operation = "getMaxLocationNameCharacterCount", .run = onProxy(&P::getMaxLocationNameCharacterCount),
     .call = {.member = "getMaxLocationNameCharacterCount"}, .reply = {.answered = 16, .wrongType = true, .empty = 0}},
    {.operation = "getMaxValue", .run = calling(&P::getMaxValue, key),
     .call = {.member = "getMaxValue", .signature = "s", .arguments = {key}},
     .reply = {.answered = 99.5, .wrongType = 99, .empty = 0.0}},
    {.operation = "getMinValue", .run = calling(&P::getMinValue, key),
     .call = {.member = "getMinValue", .signature = "s", .arguments = {key}},
     .reply = {.answered = -3.25, .wrongType = QStringLiteral("-3.25"), .empty = 0.0}},
    {.operation = "getThresholdElementsForLocation", .run = calling(&P::getThresholdElementsForLocation, location),
     .call = {.member = "getThresholdElementsForLocation", .signature = "s", .arguments = {location}},
     .reply = {.answered = QStringLiteral("k=1"), .wrongType = QStringList{QStringLiteral("k=1")}, .empty = QString()}},
    {.operation = "getValue", .run = calling(&P::getValue, key),
     .call = {.member = "getValue", .signature = "s", .arguments = {key}},
     .reply = {.answered = 12.75, .wrongType = 12, .empty = 0.0}},
    {.operation = "getValue by name", .run = byName<QDBusReply<double>>("getValue(QString)", key),
     .call = {.member = "getValue", .signature = "s", .arguments = {key}},
     .reply = {.answered = 4.5, .wrongType = 4, .empty = 0.0}},
    {.operation = "getString", .run = calling(&P::getString, key),
     .call = {.member = "getString", .signature = "s", .arguments = {key}},
     .reply = {.answered = QStringLiteral("12.75 dB"), .wrongType = 12.75, .empty = QString()}},
    {.operation = "getLocationNames", .run = onProxy(&P::getLocationNames), .call = {.member = "getLocationNames"},
     .reply = {.answered = QStringList{location, other}, .wrongType = location, .empty = QStringList()}},
    {.operation = "getLocationNames by name", .run = byName<QDBusReply<QStringList>>("getLocationNames"),
     .call = {.member = "getLocationNames"},
     .reply = {.answered = QStringList{location}, .wrongType = location, .empty = QStringList()}},
    {.operation = "getLocationDescription", .run = calling(&P::getLocationDescription, location),
     .call = {.member = "getLocationDescription", .signature = "s", .arguments = {location}},
     .reply = {.answered = QStringLiteral("north wall"), .wrongType = 1, .empty = QString()}},
    {.operation = "isLocationEditable", .run = calling(&P::isLocationEditable, location),
     .call = {.member = "isLocationEditable", .signature = "s", .arguments = {location}},
     .reply = {.answered = true, .wrongType = QStringLiteral("true"), .empty = false}},
    {.operation = "size", .run = onProxy(&P::size), .call = {.member = "size"},
     .reply = {.answered = 7, .wrongType = 7.0, .empty = 0}},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .call = {.member = "isChangeable"},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "setLocationDescription",
     .run = calling(&P::setLocationDescription, location, QStringLiteral("north wall")),
     .call = {.member = "setLocationDescription", .signature = "ss",
              .arguments = {location, QStringLiteral("north wall")}},
     .reply = {.answered = true, .wrongType = QStringLiteral("yes"), .empty = false}},
    {.operation = "createLocation", .run = calling(&P::createLocation, other, location),
     .call = {.member = "createLocation", .signature = "ss", .arguments = {other, location}},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "deleteLocation", .run = calling(&P::deleteLocation, other),
     .call = {.member = "deleteLocation", .signature = "s", .arguments = {other}},
     .reply = {.answered = true, .wrongType = 0, .empty = false}},
    {.operation = "renameLocation", .run = calling(&P::renameLocation, location, other),
     .call = {.member = "renameLocation", .signature = "ss", .arguments = {location, other}},
     .reply = {.answered = true, .wrongType = 2.0, .empty = false}},
};

const QList<OperationRow> asyncs{
    {.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .call = {.member = "setToDefault"}},
    {.operation = "setToDefaultAsync by name", .run = byName<void>("setToDefaultAsync"),
     .call = {.member = "setToDefault"}},
};

const QList<OperationRow> relayed{
    {.operation = "locationNameChanged(QString,QString)",
     .call = {.member = "locationNameChanged", .arguments = {location, QStringLiteral("Hall C")}}},
    {.operation = "locationsChanged()", .call = {.member = "locationsChanged"}},
    {.operation = "setupChanged()", .call = {.member = "setupChanged"}},
    {.operation = "setupChanged(QString,double)", .call = {.member = "setupChanged", .arguments = {key, 7.5}}},
};
// clang-format on

ProxyClassTable thresholdManager()
{
    return {
        .className = "SetupThresholdManagerInterface",
        .path = path,
        .make = factoryOf<P>(),
        .size = sizeof(P),
        .ownData = 2 * sizeof(QString), // service and path
        .replies = replies,
        .setToDefault = {.operation = "setToDefault",
                         .run = onProxy(&P::setToDefault),
                         .call = {.member = "setToDefault"}},
        .asyncs = asyncs,
        .failingCall = {.operation = "size", .run = onProxy(&P::size), .call = {.member = "size"}},
        .signalSignatures = {"locationNameChanged(QString,QString)", "locationsChanged()", "setupChanged()",
                             "setupChanged(QString,double)"},
        .slotSignatures = {"setValue(QString,double)",
                           "getAllThresholdElements()",
                           "QDBusReply<int> getAttributes(QString)",
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
                           "void setToDefault()",
                           "setToDefaultAsync()",
                           "createLocation(QString,QString)",
                           "deleteLocation(QString)",
                           "renameLocation(QString,QString)"},
        .otherClasses = {"StorageElemsMapInterface"},
        .relayed = relayed,
    };
}
} // namespace

class tst_SetupThresholdManagerInterface : public ProxyClassTest
{
    Q_OBJECT

public:
    tst_SetupThresholdManagerInterface()
        : ProxyClassTest(thresholdManager())
    {
    }

private:
    P &proxy() { return ProxyClassTest::proxy<P>(); }

private Q_SLOTS:
    void everyConstructionKeepsTheOneDoubleListTypeAndRestoresItsMarshalling();
    void overriddenVirtualGettersAreWhatTheMetaObjectInvokes();
    void setupChangedOverloadsShareTheBusSignalByItsArguments();
};

void tst_SetupThresholdManagerInterface::everyConstructionKeepsTheOneDoubleListTypeAndRestoresItsMarshalling()
{
    const int id = DBusCompat::metaTypeIdByName("QList<double>");
    QVERIFY(id != QMetaType::UnknownType);
    QCOMPARE(DBusTypes::registerDoubleList(), id);

    const QList<double> sent{1.5, -2.0, 3.25};
    LogCapture log;
    for (int round = 0; round < 3; ++round) {
        // Something else in the process replaced the writer; the next construction must
        // put the library's own back, and must not register the type anew.
        DBusCompat::registerMarshallOperators(id, writeDoublesBackwards, readDoubles);
        SetupThresholdManagerInterface constructed(m_fake->service(), path, QDBusConnection::sessionBus());

        const ReceivedCall call = probeCall(*m_fake, path, {QVariant::fromValue(sent)});
        QCOMPARE(call.signature, QStringLiteral("ad"));
        QCOMPARE(qdbus_cast<QList<double>>(call.arguments.first()), sent);
        QCOMPARE(DBusCompat::metaTypeIdByName("QList<double>"), id);
    }
    QCOMPARE(DBusTypes::registerDoubleList(), id);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupThresholdManagerInterface::overriddenVirtualGettersAreWhatTheMetaObjectInvokes()
{
    LocalThresholdManager local(m_fake->service(), path, QDBusConnection::sessionBus());
    SetupThresholdManagerInterface &proxy = local;
    const auto invoked = [&proxy](const char *slot, auto... arguments) {
        return byName<QDBusReply<int>>(slot, arguments...)(proxy).value;
    };

    QCOMPARE(invoked("getAttributes(QString)", QStringLiteral("k9")), QVariant(0x5a));
    QCOMPARE(local.lastKey, QStringLiteral("k9"));

    // The same through the slot at its index, as a queued or scripted caller would reach it.
    const QMetaObject &meta = SetupThresholdManagerInterface::staticMetaObject;
    QDBusReply<int> byIndex;
    QVERIFY(meta.method(meta.methodOffset() + 6)
                .invoke(&proxy, Qt::DirectConnection, Q_RETURN_ARG(QDBusReply<int>, byIndex),
                        Q_ARG(QString, QStringLiteral("k10"))));
    QCOMPARE(byIndex.value(), 0x5a);
    QCOMPARE(local.lastKey, QStringLiteral("k10"));

    QCOMPARE(invoked("getMaxLocationDescriptionCharacterCount"), QVariant(120));
    QCOMPARE(invoked("getMaxLocationNameCharacterCount"), QVariant(24));
    QCOMPARE(proxy.getAttributes(QStringLiteral("k11")).value(), 0x5a);

    // Only the overridden getters stay local; the rest still go to the application.
    m_fake->answer("size", ScriptedAnswer::value(3));
    QCOMPARE(invoked("size"), QVariant(3));
    QCOMPARE(m_fake->callCount(), 1);
    QCOMPARE(m_fake->calls().first().member, QStringLiteral("size"));
}

void tst_SetupThresholdManagerInterface::setupChangedOverloadsShareTheBusSignalByItsArguments()
{
    QSignalSpy plain(&proxy(), SIGNAL(setupChanged()));
    QSignalSpy keyed(&proxy(), SIGNAL(setupChanged(QString, double)));
    syncWithBus(proxy().connection());

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
