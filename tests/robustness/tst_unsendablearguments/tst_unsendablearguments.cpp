#include "SetupArrayItemInterface.h"
#include "SetupDevDataInterface.h"
#include "SetupMapItemInterface.h"
#include "SetupMapListInterface.h"
#include "SetupMapMapItemInterface.h"

#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusVariant>
#include <QtTest/QTest>

#include <memory>

/// A type nobody told QtDBus how to write. Outside any namespace, so that Qt 5 and Qt 6 name it alike.
struct Unregistered
{
    int value = 0;
};

namespace {

const QString path = QStringLiteral("/Setup/Element");

/// @p value inside @p levels D-Bus variants.
QVariant wrappedLevels(const QVariant &value, int levels)
{
    QVariant nested = value;
    for (int i = 0; i < levels; ++i)
        nested = QVariant::fromValue(QDBusVariant(nested));
    return nested;
}

/// @p value at the bottom of maps, lists and variants in turn, @p rounds of each.
QVariant mixedNesting(const QVariant &value, int rounds)
{
    QVariant nested = value;
    for (int i = 0; i < rounds; ++i) {
        nested = QVariantMap{{QStringLiteral("k"), nested}, {QStringLiteral("fine"), i}};
        nested = QVariantList{i, nested};
        nested = QVariant::fromValue(QDBusVariant(nested));
    }
    return nested;
}

QList<LogLine> debugLevelLines(const QList<LogLine> &lines)
{
    QList<LogLine> debug;
    for (const LogLine &line : lines) {
        if (line.level == QtDebugMsg)
            debug.append(line);
    }
    return debug;
}

/// How an operation takes the value under test: as it is, as a map value or as a list element.
enum class Place { AsIs, InMap, InList };

QVariant placed(const QVariant &value, Place place)
{
    switch (place) {
    case Place::InMap:
        return QVariantMap{{QStringLiteral("k"), value}};
    case Place::InList:
        return QVariantList{value};
    case Place::AsIs:
        break;
    }
    return value;
}

/// One operation that sends a caller's QVariant, map or list: it makes its proxy and runs.
struct Sender
{
    const char *name;
    const char *member;
    /// Which argument of the call carries the caller's value.
    int argument;
    Place place;
    /// Fire-and-forget and void operations show the caller nothing.
    bool answers;
    std::function<QDBusAbstractInterface *(const QString &service)> makeProxy;
    std::function<Seen(QDBusAbstractInterface &, const QVariant &)> send;
};

template<typename Proxy>
std::function<QDBusAbstractInterface *(const QString &)> proxyOf()
{
    return [](const QString &service) { return new Proxy(service, path, QDBusConnection::sessionBus()); };
}

template<typename Proxy, typename Call>
std::function<Seen(QDBusAbstractInterface &, const QVariant &)> sending(Call call)
{
    return [call](QDBusAbstractInterface &proxy, const QVariant &value) {
        return onProxy<Proxy>([&](Proxy &typed) { return call(typed, value); })(proxy);
    };
}

std::vector<Sender> senders()
{
    using Array = SetupArrayItemInterface;
    using DevData = SetupDevDataInterface;
    using MapItem = SetupMapItemInterface;
    using MapList = SetupMapListInterface;
    using MapMap = SetupMapMapItemInterface;
    return {
        {"SetupArrayItemInterface::setValue(QVariant,int,int)", "setValue", 1, Place::AsIs, true, proxyOf<Array>(),
         sending<Array>([](Array &p, const QVariant &v) { return p.setValue(v, 0, 1); })},
        {"SetupArrayItemInterface::setValue(QVariantList)", "setValue", 1, Place::InList, true, proxyOf<Array>(),
         sending<Array>([](Array &p, const QVariant &v) { return p.setValue(v.toList()); })},
        {"SetupArrayItemInterface::setValueAsync", "setValue", 1, Place::AsIs, false, proxyOf<Array>(),
         sending<Array>([](Array &p, const QVariant &v) { p.setValueAsync(v, 0, 1); })},
        {"SetupDevDataInterface::setValue", "setValue", 1, Place::AsIs, true, proxyOf<DevData>(),
         sending<DevData>([](DevData &p, const QVariant &v) { return p.setValue(v); })},
        {"SetupDevDataInterface::setValueAsync", "setValue", 1, Place::AsIs, false, proxyOf<DevData>(),
         sending<DevData>([](DevData &p, const QVariant &v) { p.setValueAsync(v); })},
        {"SetupMapItemInterface::setValue", "setValue", 2, Place::AsIs, true, proxyOf<MapItem>(),
         sending<MapItem>([](MapItem &p, const QVariant &v) { return p.setValue(QStringLiteral("key"), v); })},
        {"SetupMapItemInterface::setValueAsync", "setValue", 2, Place::AsIs, false, proxyOf<MapItem>(),
         sending<MapItem>([](MapItem &p, const QVariant &v) { p.setValueAsync(QStringLiteral("key"), v); })},
        {"SetupMapListInterface::setValue(QString,SettingsMap)", "setValue", 2, Place::InMap, true, proxyOf<MapList>(),
         sending<MapList>([](MapList &p, const QVariant &v) { return p.setValue(QStringLiteral("map"), v.toMap()); })},
        {"SetupMapListInterface::setValue(int,QString,QVariant)", "setValue", 3, Place::AsIs, true, proxyOf<MapList>(),
         sending<MapList>([](MapList &p, const QVariant &v) { return p.setValue(0, QStringLiteral("item"), v); })},
        {"SetupMapMapItemInterface::setValue(QString,SettingsMap)", "setValue", 2, Place::InMap, true,
         proxyOf<MapMap>(),
         sending<MapMap>([](MapMap &p, const QVariant &v) { return p.setValue(QStringLiteral("p"), v.toMap()); })},
        {"SetupMapMapItemInterface::setValue(QString,QString,QVariant)", "setValue", 3, Place::AsIs, true,
         proxyOf<MapMap>(), sending<MapMap>([](MapMap &p, const QVariant &v) {
             return p.setValue(QStringLiteral("p"), QStringLiteral("s"), v);
         })},
        {"SetupMapMapItemInterface::setDefaultMap(QString,SettingsMap)", "setDefaultMap", 2, Place::InMap, true,
         proxyOf<MapMap>(),
         sending<MapMap>([](MapMap &p, const QVariant &v) { return p.setDefaultMap(QStringLiteral("p"), v.toMap()); })},
        {"SetupMapMapItemInterface::setValueAsync", "setValue", 2, Place::InMap, false, proxyOf<MapMap>(),
         sending<MapMap>([](MapMap &p, const QVariant &v) { p.setValueAsync(QStringLiteral("p"), v.toMap()); })},
    };
}

/// A value a caller can pass that cannot go on the bus, and the reason a refusal gives.
struct Unsendable
{
    const char *name;
    QVariant value;
    QString reason;
    /// Not in a container: at the top level of an argument QtDBus refuses it by itself.
    bool refusedByQtDBus = false;
};

std::vector<Unsendable> unsendables()
{
    const QString invalid = QStringLiteral("it holds an invalid QVariant");
    return {
        {"an invalid QVariant", QVariant(), invalid, true},
        {"an invalid QVariant in a map", QVariantMap{{QStringLiteral("k"), QVariant()}}, invalid},
        {"an invalid QVariant in a list", QVariantList{1, QVariant()}, invalid},
        {"an invalid QVariant wrapped", QVariant::fromValue(QDBusVariant(QVariant())), invalid, true},
        {"an invalid QVariant ten levels down", mixedNesting(QVariant(), 3), invalid},
        {"an unregistered type in a map", QVariantMap{{QStringLiteral("k"), QVariant::fromValue(Unregistered())}},
         QStringLiteral("it holds a value of type Unregistered, which D-Bus cannot carry")},
        {"an empty QDBusArgument in a list", QVariantList{QVariant::fromValue(QDBusArgument())},
         QStringLiteral("it holds an empty QDBusArgument")},
        {"values nested beyond the bus's limit", wrappedLevels(1, 70),
         QStringLiteral("its values nest deeper than the bus allows")},
        {"values nested a thousand levels deep", mixedNesting(1, 333),
         QStringLiteral("its values nest deeper than the bus allows")},
    };
}

} // namespace

Q_DECLARE_METATYPE(Unregistered)
Q_DECLARE_METATYPE(Sender)
Q_DECLARE_METATYPE(Unsendable)

class tst_UnsendableArguments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void anUnsendableArgumentFailsTheCallAndSendsNothing_data();
    void anUnsendableArgumentFailsTheCallAndSendsNothing();
    void aDeeplyNestedValidArgumentIsStillSent_data();
    void aDeeplyNestedValidArgumentIsStillSent();
    void nestingUpToTheBusLimitIsSentAndOneLevelMoreIsRefused();

private:
    /// The calls that reached the application, up to a marker call sent last.
    QStringList membersReceivedBefore(QDBusAbstractInterface &proxy);

    std::unique_ptr<FakeMeasApplication> m_fake;
};

void tst_UnsendableArguments::init()
{
    m_fake.reset(new FakeMeasApplication);
    m_fake->answer(QStringLiteral("setValue"), ScriptedAnswer::value(true));
    m_fake->answer(QStringLiteral("setDefaultMap"), ScriptedAnswer::value(true));
    m_fake->answer(QStringLiteral("marker"), ScriptedAnswer::reply());
}

void tst_UnsendableArguments::cleanup()
{
    m_fake.reset();
}

QStringList tst_UnsendableArguments::membersReceivedBefore(QDBusAbstractInterface &proxy)
{
    // One connection delivers in order: once the marker is answered, anything sent before it has arrived.
    proxy.call(QDBus::Block, QStringLiteral("marker"));
    QStringList members;
    for (const ReceivedCall &call : m_fake->calls())
        members.append(call.member);
    return members;
}

void tst_UnsendableArguments::anUnsendableArgumentFailsTheCallAndSendsNothing_data()
{
    QTest::addColumn<Sender>("sender");
    QTest::addColumn<Unsendable>("unsendable");
    for (const Sender &sender : senders()) {
        for (const Unsendable &unsendable : unsendables())
            QTest::addRow("%s/%s", sender.name, unsendable.name) << sender << unsendable;
    }
}

void tst_UnsendableArguments::anUnsendableArgumentFailsTheCallAndSendsNothing()
{
    QFETCH(Sender, sender);
    QFETCH(Unsendable, unsendable);
    std::unique_ptr<QDBusAbstractInterface> proxy(sender.makeProxy(m_fake->service()));
    const QVariant argument = placed(unsendable.value, sender.place);

    LogCapture log;
    const Seen seen = sender.send(*proxy, argument);
    const QDBusError lastError = proxy->lastError();

    // QtDBus itself warns of what it refuses; the library writes no line of its own.
    QCOMPARE(debugLevelLines(log.lines()), QList<LogLine>());
    QCOMPARE(membersReceivedBefore(*proxy), QStringList{QStringLiteral("marker")});
    QVERIFY(!seen.valid);
    if (!sender.answers) {
        QVERIFY(!seen.error.has_value());
        return;
    }
    QVERIFY(seen.error.has_value());
    QCOMPARE(seen.value, QVariant(false));
    // Failed like any call: the proxy's last error tells of it.
    QVERIFY(lastError.isValid());
    if (sender.place == Place::AsIs && unsendable.refusedByQtDBus) {
        // At the top level QtDBus refuses it cleanly by itself, as it always has.
        QCOMPARE(seen.error->message(), lastError.message());
    } else {
        QCOMPARE(seen.error->type(), QDBusError::InvalidArgs);
        QCOMPARE(seen.error->message(),
                 QStringLiteral("Argument %1 of \"%2\" cannot be sent: %3")
                     .arg(sender.argument)
                     .arg(QLatin1String(sender.member), unsendable.reason));
    }
}

void tst_UnsendableArguments::aDeeplyNestedValidArgumentIsStillSent_data()
{
    QTest::addColumn<Sender>("sender");
    for (const Sender &sender : senders())
        QTest::addRow("%s", sender.name) << sender;
}

void tst_UnsendableArguments::aDeeplyNestedValidArgumentIsStillSent()
{
    QFETCH(Sender, sender);
    std::unique_ptr<QDBusAbstractInterface> proxy(sender.makeProxy(m_fake->service()));

    const Seen seen = sender.send(*proxy, placed(mixedNesting(QStringLiteral("deep"), 6), sender.place));

    QCOMPARE(membersReceivedBefore(*proxy), (QStringList{QLatin1String(sender.member), QStringLiteral("marker")}));
    if (sender.answers) {
        QVERIFY(seen.valid);
        QCOMPARE(seen.value, QVariant(true));
    }
}

void tst_UnsendableArguments::nestingUpToTheBusLimitIsSentAndOneLevelMoreIsRefused()
{
    // The device-data setter wraps its value once more: 63 levels plus its own make the 64 the bus allows.
    SetupDevDataInterface proxy(m_fake->service(), path, QDBusConnection::sessionBus());

    const QDBusReply<bool> atTheLimit = proxy.setValue(wrappedLevels(1, 63));
    const QDBusReply<bool> beyond = proxy.setValue(wrappedLevels(1, 64));

    QVERIFY(atTheLimit.isValid());
    QVERIFY(!beyond.isValid());
    QCOMPARE(membersReceivedBefore(proxy), (QStringList{QStringLiteral("setValue"), QStringLiteral("marker")}));
    QVERIFY(proxy.connection().isConnected());
}

QTEST_GUILESS_MAIN(tst_UnsendableArguments)

#include "tst_unsendablearguments.moc"
