#include "DBusCompat_p.h"
#include "DBusTypes.h"
#include "ProxyCall_p.h"

#include "FakeMeasApplication.h"
#include "ProxyTestSupport.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QtTest/QTest>

#include <memory>

namespace {

class PlainProxy : public QDBusAbstractInterface
{
public:
    explicit PlainProxy(const QString &service)
        : QDBusAbstractInterface(service, "/Setup/Map", "com.velk.mqx.MeasApplInterface", QDBusConnection::sessionBus(),
                                 nullptr)
    {
    }
};

/// One entry as it stands on the wire.
struct WireEntry
{
    QString key;
    QVariant value;
};

} // namespace

class tst_DBusTypes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void settingsMapIsWrittenAsStringToVariantEntriesInAscendingKeyOrder();
    void emptySettingsMapIsWrittenWithoutEntriesAndReadBackEmpty();
    void settingsMapSurvivesARoundTrip();
    void readingASettingsMapEmptiesTheTargetFirst();
    void aKeyReceivedTwiceIsAddedAgain();
    void aNestedMapArrivesAsAnArgumentNotAsAMap();
    void settingsMapTravelsAsAnArgumentOnceRegistered();
    void noMetaTypeIsNamedSettingsMap();

    void settingsStringMapIsRegisteredOnceUnderItsName();
    void settingsStringMapIsWrittenAsStringPairsInAscendingKeyOrder();
    void readingASettingsStringMapEmptiesTheTargetFirst();

    void doubleListIsRegisteredOnceUnderItsName();
    void doubleListIsWrittenAsAnArrayOfDoublesInOrder();
    void readingADoubleListEmptiesTheTargetFirst();

    void dbusVariantIdIsTheRegisteredOne();

private:
    /// Sends @p written through the bus and hands back what the caller's side receives.
    QDBusArgument roundTrip(const QDBusArgument &written);
    QList<WireEntry> wireEntries(const QDBusArgument &received);

    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<PlainProxy> m_proxy;
};

void tst_DBusTypes::initTestCase()
{
    DBusTypes::registerSettingsMap();
}

void tst_DBusTypes::init()
{
    m_fake.reset(new FakeMeasApplication);
    m_proxy.reset(new PlainProxy(m_fake->service()));
}

void tst_DBusTypes::cleanup()
{
    m_proxy.reset();
    m_fake.reset();
}

QDBusArgument tst_DBusTypes::roundTrip(const QDBusArgument &written)
{
    m_fake->answer("echo", ScriptedAnswer::value(QVariant::fromValue(written)));
    const QDBusMessage reply = ProxyCall::callBlocking(*m_proxy, "echo", {});
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return QDBusArgument();
    return reply.arguments().first().value<QDBusArgument>();
}

QList<WireEntry> tst_DBusTypes::wireEntries(const QDBusArgument &received)
{
    QList<WireEntry> entries;
    received.beginMap();
    while (!received.atEnd()) {
        WireEntry entry;
        QDBusVariant value;
        received.beginMapEntry();
        received >> entry.key >> value;
        received.endMapEntry();
        entry.value = value.variant();
        entries.append(entry);
    }
    received.endMap();
    return entries;
}

void tst_DBusTypes::settingsMapIsWrittenAsStringToVariantEntriesInAscendingKeyOrder()
{
    SettingsMap map;
    map.insert(QStringLiteral("b"), 2.5);
    map.insert(QStringLiteral("a"), QStringLiteral("on"));
    QDBusArgument written;
    DBusTypes::writeSettingsMap(written, map);

    const QDBusArgument received = roundTrip(written);

    QCOMPARE(received.currentSignature(), QStringLiteral("a{sv}"));
    const QList<WireEntry> entries = wireEntries(received);
    QCOMPARE(entries.size(), 2);
    QCOMPARE(entries.at(0).key, QStringLiteral("a"));
    QCOMPARE(entries.at(0).value, QVariant(QStringLiteral("on")));
    QCOMPARE(entries.at(1).key, QStringLiteral("b"));
    QCOMPARE(entries.at(1).value.userType(), int(QMetaType::Double));
    QCOMPARE(entries.at(1).value.toDouble(), 2.5);
}

void tst_DBusTypes::emptySettingsMapIsWrittenWithoutEntriesAndReadBackEmpty()
{
    QDBusArgument written;
    DBusTypes::writeSettingsMap(written, SettingsMap());

    const QDBusArgument received = roundTrip(written);

    QCOMPARE(received.currentSignature(), QStringLiteral("a{sv}"));
    SettingsMap read{{"stale", 1}};
    DBusTypes::readSettingsMap(received, read);
    QVERIFY(read.isEmpty());
}

void tst_DBusTypes::settingsMapSurvivesARoundTrip()
{
    const SettingsMap map{{"gain", 3}, {"label", QStringLiteral("CH1")}, {"on", true}, {"scale", 0.25}};
    QDBusArgument written;
    DBusTypes::writeSettingsMap(written, map);

    SettingsMap read;
    DBusTypes::readSettingsMap(roundTrip(written), read);

    QCOMPARE(read, map);
    QCOMPARE(read.value("on").userType(), int(QMetaType::Bool));
}

void tst_DBusTypes::readingASettingsMapEmptiesTheTargetFirst()
{
    QDBusArgument written;
    DBusTypes::writeSettingsMap(written, SettingsMap{{"new", 1}});

    SettingsMap read{{"old", 0}, {"new", 5}};
    DBusTypes::readSettingsMap(roundTrip(written), read);

    QCOMPARE(read, (SettingsMap{{"new", 1}}));
}

void tst_DBusTypes::aKeyReceivedTwiceIsAddedAgain()
{
    QDBusArgument written;
    written.beginMap(QMetaType::QString, qMetaTypeId<QDBusVariant>());
    for (int value : {1, 2}) {
        written.beginMapEntry();
        written << QStringLiteral("k") << QDBusVariant(value);
        written.endMapEntry();
    }
    written.endMap();

    SettingsMap read;
    DBusTypes::readSettingsMap(roundTrip(written), read);

    if (DBusCompat::mapKeepsRepeatedKeys) {
        QCOMPARE(read.size(), 2);
        QCOMPARE(read.count(QStringLiteral("k")), 2);
    } else {
        QCOMPARE(read.size(), 1);
        QCOMPARE(read.value(QStringLiteral("k")), QVariant(2));
    }
}

void tst_DBusTypes::aNestedMapArrivesAsAnArgumentNotAsAMap()
{
    QDBusArgument written;
    DBusTypes::writeSettingsMap(written, SettingsMap{{"inner", SettingsMap{{"x", 1}}}});

    SettingsMap read;
    DBusTypes::readSettingsMap(roundTrip(written), read);

    const QVariant inner = read.value(QStringLiteral("inner"));
    QCOMPARE(inner.userType(), qMetaTypeId<QDBusArgument>());
    const QDBusArgument innerArgument = inner.value<QDBusArgument>();
    QCOMPARE(innerArgument.currentSignature(), QStringLiteral("a{sv}"));
    SettingsMap unpacked;
    DBusTypes::readSettingsMap(innerArgument, unpacked);
    QCOMPARE(unpacked, (SettingsMap{{"x", 1}}));
}

void tst_DBusTypes::settingsMapTravelsAsAnArgumentOnceRegistered()
{
    DBusTypes::registerSettingsMap();
    DBusTypes::registerSettingsMap();
    m_fake->answer("setValue", ScriptedAnswer::value(true));

    const QDBusReply<bool> reply = ProxyCall::blockingList<bool>(
        *m_proxy, "setValue", {QVariant::fromValue(SettingsMap{{"z", 1}, {"y", QStringLiteral("2")}})});

    QVERIFY(reply.isValid());
    const ReceivedCall call = m_fake->calls().first();
    QCOMPARE(call.signature, QStringLiteral("a{sv}"));
    const QList<WireEntry> entries = wireEntries(call.arguments.first().value<QDBusArgument>());
    QCOMPARE(entries.size(), 2);
    QCOMPARE(entries.at(0).key, QStringLiteral("y"));
    QCOMPARE(entries.at(1).key, QStringLiteral("z"));
}

void tst_DBusTypes::noMetaTypeIsNamedSettingsMap()
{
    QCOMPARE(DBusCompat::metaTypeIdByName("SettingsMap"), int(QMetaType::UnknownType));
    QCOMPARE(qMetaTypeId<SettingsMap>(), int(QMetaType::QVariantMap));
}

void tst_DBusTypes::settingsStringMapIsRegisteredOnceUnderItsName()
{
    const int first = DBusTypes::registerSettingsStringMap();
    const int second = DBusTypes::registerSettingsStringMap();

    QCOMPARE(second, first);
    QCOMPARE(DBusCompat::metaTypeIdByName("SettingsStringMap"), first);
    QCOMPARE(first, qMetaTypeId<SettingsStringMap>());
}

void tst_DBusTypes::settingsStringMapIsWrittenAsStringPairsInAscendingKeyOrder()
{
    DBusTypes::registerSettingsStringMap();
    QDBusArgument written;
    DBusTypes::writeSettingsStringMap(written, SettingsStringMap{{"mode", "fast"}, {"b", "x"}, {"a", ""}});

    const QDBusArgument received = roundTrip(written);

    QCOMPARE(received.currentSignature(), QStringLiteral("a{ss}"));
    QStringList keys;
    received.beginMap();
    while (!received.atEnd()) {
        QString key, value;
        received.beginMapEntry();
        received >> key >> value;
        received.endMapEntry();
        keys.append(key);
    }
    received.endMap();
    QCOMPARE(keys, (QStringList{"a", "b", "mode"}));
}

void tst_DBusTypes::readingASettingsStringMapEmptiesTheTargetFirst()
{
    QDBusArgument written;
    DBusTypes::writeSettingsStringMap(written, SettingsStringMap{{"mode", "fast"}});

    SettingsStringMap read{{"stale", "1"}};
    DBusTypes::readSettingsStringMap(roundTrip(written), read);

    QCOMPARE(read, (SettingsStringMap{{"mode", "fast"}}));
}

void tst_DBusTypes::doubleListIsRegisteredOnceUnderItsName()
{
    const int first = DBusTypes::registerDoubleList();
    QCOMPARE(DBusTypes::registerDoubleList(), first);
    QCOMPARE(DBusCompat::metaTypeIdByName("QList<double>"), first);
    QCOMPARE(first, qMetaTypeId<QList<double>>());
}

void tst_DBusTypes::doubleListIsWrittenAsAnArrayOfDoublesInOrder()
{
    DBusTypes::registerDoubleList();
    QDBusArgument written;
    DBusTypes::writeDoubleList(written, QList<double>{3.0, -1.5, 0.0});

    const QDBusArgument received = roundTrip(written);

    QCOMPARE(received.currentSignature(), QStringLiteral("ad"));
    QList<double> read;
    DBusTypes::readDoubleList(received, read);
    QCOMPARE(read, (QList<double>{3.0, -1.5, 0.0}));
}

void tst_DBusTypes::readingADoubleListEmptiesTheTargetFirst()
{
    QDBusArgument written;
    DBusTypes::writeDoubleList(written, QList<double>{7.0});

    QList<double> read{1.0, 2.0};
    DBusTypes::readDoubleList(roundTrip(written), read);

    QCOMPARE(read, QList<double>{7.0});
}

void tst_DBusTypes::dbusVariantIdIsTheRegisteredOne()
{
    const int id = DBusTypes::dbusVariantTypeId();
    QCOMPARE(DBusTypes::dbusVariantTypeId(), id);
    QCOMPARE(id, qMetaTypeId<QDBusVariant>());
    QCOMPARE(DBusCompat::metaTypeIdByName("QDBusVariant"), id);
}

QTEST_GUILESS_MAIN(tst_DBusTypes)

#include "tst_dbustypes.moc"
