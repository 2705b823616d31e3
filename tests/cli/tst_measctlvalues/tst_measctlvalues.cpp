#include "Values.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest/QTest>

#include <cmath>
#include <unistd.h>

Q_DECLARE_METATYPE(std::optional<QVariant>)

namespace {

QJsonValue json(const char *text)
{
    return QJsonDocument::fromJson(QByteArray("[") + text + "]").array().first();
}

/// What parseAny made of a text, written as type name and JSON, "none" when it refused it.
QString described(const std::optional<QVariant> &value)
{
    if (!value)
        return QStringLiteral("none");
    return QString::fromLatin1(value->typeName()) + QLatin1Char(' ') + Values::toText(Values::toJson(*value));
}

} // namespace

class tst_MeasctlValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parseIntAcceptsDecimalInt32Only_data();
    void parseIntAcceptsDecimalInt32Only();
    void parseDoubleAcceptsCNotationAndPassesNanOn();
    void parseBoolAcceptsTrueFalseOneZero_data();
    void parseBoolAcceptsTrueFalseOneZero();
    void parseAnyGivesEachTextItsType_data();
    void parseAnyGivesEachTextItsType();
    void structuredParsersAcceptOnlyTheirShape();
    void toJsonUnpacksWhatProxiesHandBack();
    void toJsonUnpacksStructuredReplies();
    void toTextWritesTextsBareAndTheRestAsJson_data();
    void toTextWritesTextsBareAndTheRestAsJson();
};

void tst_MeasctlValues::parseIntAcceptsDecimalInt32Only_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("parses");
    QTest::addColumn<int>("value");
    QTest::newRow("positive") << "42" << true << 42;
    QTest::newRow("negative") << "-7" << true << -7;
    QTest::newRow("blanks around") << " 5 " << true << 5;
    QTest::newRow("largest") << "2147483647" << true << 2147483647;
    QTest::newRow("too large") << "2147483648" << false << 0;
    QTest::newRow("fraction") << "4.5" << false << 0;
    QTest::newRow("hexadecimal") << "0x10" << false << 0;
    QTest::newRow("word") << "ten" << false << 0;
    QTest::newRow("empty") << "" << false << 0;
}

void tst_MeasctlValues::parseIntAcceptsDecimalInt32Only()
{
    QFETCH(QString, text);
    QFETCH(bool, parses);
    QFETCH(int, value);
    const auto parsed = Values::parseInt(text);
    QCOMPARE(parsed.has_value(), parses);
    if (parses)
        QCOMPARE(*parsed, value);
}

void tst_MeasctlValues::parseDoubleAcceptsCNotationAndPassesNanOn()
{
    QCOMPARE(Values::parseDouble("2.5").value_or(0), 2.5);
    QCOMPARE(Values::parseDouble("-1e3").value_or(0), -1000.0);
    QCOMPARE(Values::parseDouble("7").value_or(0), 7.0);
    QVERIFY(std::isnan(Values::parseDouble("nan").value_or(0)));
    QVERIFY(std::isinf(Values::parseDouble("inf").value_or(0)));
    QVERIFY(!Values::parseDouble("2,5"));
    QVERIFY(!Values::parseDouble("high"));
    QVERIFY(!Values::parseDouble(""));
}

void tst_MeasctlValues::parseBoolAcceptsTrueFalseOneZero_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("result");
    QTest::newRow("true") << "true"
                          << "true";
    QTest::newRow("TRUE") << "TRUE"
                          << "true";
    QTest::newRow("1") << "1"
                       << "true";
    QTest::newRow("false") << "false"
                           << "false";
    QTest::newRow("0") << "0"
                       << "false";
    QTest::newRow("yes") << "yes"
                         << "none";
    QTest::newRow("2") << "2"
                       << "none";
    QTest::newRow("empty") << ""
                           << "none";
}

void tst_MeasctlValues::parseBoolAcceptsTrueFalseOneZero()
{
    QFETCH(QString, text);
    QFETCH(QString, result);
    const auto parsed = Values::parseBool(text);
    QCOMPARE(parsed ? (*parsed ? QStringLiteral("true") : QStringLiteral("false")) : QStringLiteral("none"), result);
}

void tst_MeasctlValues::parseAnyGivesEachTextItsType_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("result");
    QTest::newRow("whole number") << "5"
                                  << "int 5";
    QTest::newRow("negative whole number") << "-12"
                                           << "int -12";
    QTest::newRow("beyond int32") << "5000000000"
                                  << "qlonglong 5000000000";
    QTest::newRow("real number") << "2.5"
                                 << "double 2.5";
    QTest::newRow("true") << "true"
                          << "bool true";
    QTest::newRow("JSON string of digits") << "\"5\""
                                           << "QString 5";
    QTest::newRow("JSON array") << "[1, \"a\", 2.5]"
                                << "QVariantList [1,\"a\",2.5]";
    QTest::newRow("JSON object") << "{\"a\": {\"b\": 1}}"
                                 << "QVariantMap {\"a\":{\"b\":1}}";
    QTest::newRow("plain text") << "hello world"
                                << "QString hello world";
    QTest::newRow("broken array") << "[1,"
                                  << "none";
    QTest::newRow("broken object") << "{"
                                   << "none";
    QTest::newRow("unterminated string") << "\"abc"
                                         << "none";
}

void tst_MeasctlValues::parseAnyGivesEachTextItsType()
{
    QFETCH(QString, text);
    QFETCH(QString, result);
    QCOMPARE(described(Values::parseAny(text)), result);
}

void tst_MeasctlValues::structuredParsersAcceptOnlyTheirShape()
{
    QCOMPARE(Values::parseArray("[1, 2]").value_or(QVariantList()), (QVariantList{1, 2}));
    QVERIFY(!Values::parseArray("{}"));
    QVERIFY(!Values::parseArray("1"));

    QCOMPARE(Values::parseObject("{\"k\": true}").value_or(QVariantMap()), (QVariantMap{{"k", true}}));
    QVERIFY(!Values::parseObject("[1]"));
    QVERIFY(!Values::parseObject("{\"k\": }"));

    const auto maps = Values::parseMapOfMaps("{\"a\": {\"x\": 1}, \"b\": {}}");
    QVERIFY(maps);
    QCOMPARE(maps->keys(), (QStringList{"a", "b"}));
    QCOMPARE(maps->value("a"), (QVariantMap{{"x", 1}}));
    QVERIFY(maps->value("b").isEmpty());
    QVERIFY(!Values::parseMapOfMaps("{\"a\": 1}"));
    QVERIFY(!Values::parseMapOfMaps("[{}]"));
}

void tst_MeasctlValues::toJsonUnpacksWhatProxiesHandBack()
{
    QCOMPARE(Values::toJson(QVariant()), QJsonValue());
    QCOMPARE(Values::toJson(QVariant(5)), QJsonValue(5));
    QCOMPARE(Values::toJson(QVariant(2.5)), QJsonValue(2.5));
    QCOMPARE(Values::toJson(QVariant(false)), QJsonValue(false));
    QCOMPARE(Values::toJson(QVariant(QStringLiteral("x"))), QJsonValue("x"));
    QCOMPARE(Values::toJson(QVariant(QStringList{"a", "b"})), json("[\"a\",\"b\"]"));
    QCOMPARE(Values::toJson(QVariant::fromValue(QList<int>{3, 7, 0})), json("[3,7,0]"));
    QCOMPARE(Values::toJson(QVariant::fromValue(QDBusVariant(QVariant(4)))), QJsonValue(4));
    QCOMPARE(Values::toJson(QVariant::fromValue(QMap<QString, QString>{{"k", "v"}})), json("{\"k\":\"v\"}"));
    QCOMPARE(Values::toJson(QVariantMap{{"list", QVariantList{1, true}}}), json("{\"list\":[1,true]}"));
    const QDateTime stamp(QDate(2026, 1, 2), QTime(3, 4, 5, 6), Qt::UTC);
    QCOMPARE(Values::toJson(stamp), QJsonValue("2026-01-02T03:04:05.006Z"));
}

void tst_MeasctlValues::toJsonUnpacksStructuredReplies()
{
    // The bus daemon answers a{sv}, which arrives as a QDBusArgument inside the QVariant.
    QDBusConnection bus = QDBusConnection::sessionBus();
    QDBusMessage call = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                       "org.freedesktop.DBus", "GetConnectionCredentials");
    call.setArguments({bus.baseService()});
    const QDBusMessage reply = bus.call(call);
    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    const QVariant credentials = reply.arguments().value(0);
    QCOMPARE(credentials.userType(), qMetaTypeId<QDBusArgument>());

    const QJsonObject object = Values::toJson(credentials).toObject();
    QCOMPARE(object.value("ProcessID"), QJsonValue(static_cast<int>(::getpid())));
    QCOMPARE(object.value("UnixUserID"), QJsonValue(static_cast<int>(::getuid())));
}

void tst_MeasctlValues::toTextWritesTextsBareAndTheRestAsJson_data()
{
    QTest::addColumn<QJsonValue>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("text") << QJsonValue("42 dB") << "42 dB";
    QTest::newRow("whole number") << QJsonValue(5) << "5";
    QTest::newRow("real number") << QJsonValue(2.5) << "2.5";
    QTest::newRow("bool") << QJsonValue(true) << "true";
    QTest::newRow("null") << QJsonValue() << "null";
    QTest::newRow("array") << json("[1,\"a\"]") << "[1,\"a\"]";
    QTest::newRow("object") << json("{\"a\":{\"b\":false}}") << "{\"a\":{\"b\":false}}";
}

void tst_MeasctlValues::toTextWritesTextsBareAndTheRestAsJson()
{
    QFETCH(QJsonValue, value);
    QFETCH(QString, text);
    QCOMPARE(Values::toText(value), text);
}

QTEST_GUILESS_MAIN(tst_MeasctlValues)
#include "tst_measctlvalues.moc"
