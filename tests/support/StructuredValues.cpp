#include "StructuredValues.h"

#include "LogCapture.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QtTest/QTest>

QDBusArgument settingsMapArgument(const QList<QPair<QString, QVariant>> &entries)
{
    QDBusArgument argument;
    argument.beginMap(QMetaType::QString, qMetaTypeId<QDBusVariant>());
    for (const auto &entry : entries) {
        argument.beginMapEntry();
        argument << entry.first << QDBusVariant(entry.second);
        argument.endMapEntry();
    }
    argument.endMap();
    return argument;
}

void verifyRepeatedKeysKeptAsQMapDoes(FakeMeasApplication &fake, const QString &member,
                                      const std::function<SettingsMap()> &get,
                                      const QList<QPair<QString, QVariant>> &entries)
{
    fake.answer(member, ScriptedAnswer::value(QVariant::fromValue(settingsMapArgument(entries))));
    SettingsMap expected;
    SettingsMap lastValues;
    for (const auto &entry : entries) {
        DBusCompat::insertMulti(expected, entry.first, entry.second);
        lastValues.insert(entry.first, entry.second);
    }

    LogCapture log;
    const SettingsMap map = get();

    QCOMPARE(map, expected);
    for (auto last = lastValues.constBegin(); last != lastValues.constEnd(); ++last) {
        QCOMPARE(map.count(last.key()), expected.count(last.key()));
        QCOMPARE(map.value(last.key()), last.value());
    }
    QCOMPARE(log.lines(), QList<LogLine>());
}

void verifyLeftAsArgument(const QVariant &value, const QString &wire)
{
    QCOMPARE(value.userType(), qMetaTypeId<QDBusArgument>());
    QCOMPARE(wireText(value), wire);
}

ReceivedCall probeCall(FakeMeasApplication &fake, const QString &path, const QList<QVariant> &arguments)
{
    fake.clearCalls();
    QDBusMessage probe = QDBusMessage::createMethodCall(fake.service(), path, FakeMeasApplication::interfaceName,
                                                        QStringLiteral("probe"));
    probe.setArguments(arguments);
    QDBusConnection::sessionBus().call(probe);
    return fake.waitForCalls(1) ? fake.calls().first() : ReceivedCall();
}
