#include "JsonFormatter.h"

#include <QtTest/QTest>

class tst_JsonFormatter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void formatsAMapAsCompactJsonText_data();
    void formatsAMapAsCompactJsonText();
};

void tst_JsonFormatter::formatsAMapAsCompactJsonText_data()
{
    QTest::addColumn<QVariantMap>("map");
    QTest::addColumn<QString>("json");

    QTest::newRow("empty") << QVariantMap() << "{}";
    QTest::newRow("keys in ascending order") << QVariantMap{{"b", 1}, {"a", 2}} << R"({"a":2,"b":1})";
    QTest::newRow("numbers") << QVariantMap{{"int", 3}, {"real", 1.5}, {"negative", -0.25}}
                             << R"({"int":3,"negative":-0.25,"real":1.5})";
    QTest::newRow("bools") << QVariantMap{{"on", true}, {"off", false}} << R"({"off":false,"on":true})";
    QTest::newRow("strings") << QVariantMap{{"label", QStringLiteral("say \"hi\"")}, {"unit", QStringLiteral("dB")}}
                             << R"({"label":"say \"hi\"","unit":"dB"})";
    QTest::newRow("nested map") << QVariantMap{{"outer", QVariantMap{{"y", 2}, {"x", true}}}}
                                << R"({"outer":{"x":true,"y":2}})";
    QTest::newRow("list") << QVariantMap{{"values", QVariantList{1, QStringLiteral("two"), 3.5}}}
                          << R"({"values":[1,"two",3.5]})";
}

void tst_JsonFormatter::formatsAMapAsCompactJsonText()
{
    QFETCH(QVariantMap, map);
    QFETCH(QString, json);

    QCOMPARE(JsonFormatter::getJson(map), json);
}

QTEST_GUILESS_MAIN(tst_JsonFormatter)

#include "tst_jsonformatter.moc"
