#include "SimulatorProcess.h"

#include <KindTable.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

namespace {

/// A model element of each kind twice: with its required fields only, and with every optional one.
struct Sample
{
    const char *kind;
    const char *bare;
    const char *full;
};

// clang-format off
const Sample samples[] = {
    {"int", R"({"default": 4, "min": 0, "max": 8})",
     R"({"default": 4, "min": 0, "max": 8, "granularity": 2, "unit": "V", "changeable": false})"},
    {"double", R"({"default": 0.5, "min": 0, "max": 1})",
     R"({"default": 0.5, "min": 0, "max": 1, "granularity": 0.1, "unit": "V", "changeable": true})"},
    {"bool", R"({"default": true})", R"({"default": true, "unit": "on", "changeable": false})"},
    {"string", R"({"default": "x"})", R"({"default": "x", "maxLength": 8, "unit": "m", "changeable": true})"},
    {"enum", R"({"choices": ["a", "b"], "default": "b"})",
     R"({"choices": ["a", "b"], "default": 0, "unit": "m", "changeable": false})"},
    {"devData", R"({"default": 1.5})", R"({"default": "text", "unit": "m", "changeable": true})"},
    {"array", R"({"default": [0.5, 0.25]})",
     R"({"default": [0.5, 0.25], "min": -1, "max": 1, "changeable": false})"},
    {"map", R"({"default": {"A": "x"}, "baseElement": "y"})",
     R"({"default": {"A": "x"}, "baseElement": "y", "changeable": true})"},
    {"mapList", R"({"keyItem": "name", "items": {"name": {}, "level": {}}, "default": [{"name": "a", "level": 1}]})",
     R"({"keyItem": "name", "items": {"name": {}, "level": {"min": 0, "max": 2, "unit": "V"}},
         "default": [{"name": "a", "level": 1}], "changeable": false})"},
    {"mapMap", R"({"items": {"gain": {}}, "baseElement": {"gain": 1}, "default": {"A": {"gain": 1}}})",
     R"({"items": {"gain": {"min": 0, "max": 2, "unit": "V"}, "mode": {"enums": ["x", "y"]}},
         "baseElement": {"gain": 1, "mode": "x"}, "default": {"A": {"gain": 1, "mode": "y"}},
         "changeable": true})"},
    {"thresholds", R"({"elements": {"T": {"min": 0, "max": 10, "default": 5}}, "locations": [{"name": "L"}]})",
     R"({"elements": {"T": {"min": 0, "max": 10, "default": 5, "attributes": 3, "unit": "V"}},
         "locations": [{"name": "F", "description": "fixed", "editable": false, "values": {"T": 6}},
                       {"name": "L", "editable": true}],
         "maxNameLength": 8, "maxDescriptionLength": 20, "changeable": true})"},
    {"storage", R"({"default": ["a"], "sortOrders": ["up"], "sortOrder": "up"})",
     R"({"default": ["a", "b"], "sortOrders": ["up", "down"], "sortOrder": "down"})"},
    {"resultInt", R"({"center": 1, "spread": 1})",
     R"({"center": 1, "spread": 1, "lowerLimit": 0, "upperLimit": 2, "rate": 5, "unit": "V"})"},
    {"resultDouble", R"({"center": 1, "spread": 1})",
     R"({"center": 1, "spread": 1, "lowerLimit": 0, "upperLimit": 2, "decimals": 2, "rate": 5, "unit": "V"})"},
    {"resultBool", R"({"probability": 0.5})",
     R"({"probability": 0.5, "lowerLimit": false, "upperLimit": true, "rate": 5, "unit": "on"})"},
    {"resultEnum", R"({"choices": ["a", "b"]})", R"({"choices": ["a", "b"], "rate": 5, "unit": "m"})"},
    {"resultIntArray", R"({"size": 3, "center": 1, "spread": 1})",
     R"({"size": 3, "center": 1, "spread": 1, "lowerLimit": 0, "upperLimit": 2, "rate": 5, "unit": "V"})"},
    {"resultVarArray", R"({"size": 3, "center": 1, "spread": 1})",
     R"({"size": 3, "center": 1, "spread": 1, "lowerLimit": 0, "upperLimit": 2, "decimals": 2, "rate": 5,
         "unit": "V"})"},
};
// clang-format on

QJsonObject parsed(const char *json)
{
    return QJsonDocument::fromJson(QByteArray(json)).object();
}

/// A plain argument of each type in @p signature (complete types only: b, i, d, s, v, as, av, a{sv}).
QVariantList argumentsFor(const QString &signature)
{
    QVariantList arguments;
    for (int i = 0; i < signature.size(); ++i) {
        const QString rest = signature.mid(i);
        if (rest.startsWith(QLatin1String("a{sv}"))) {
            arguments.append(QVariant(QVariantMap()));
            i += 4;
        } else if (rest.startsWith(QLatin1String("as"))) {
            arguments.append(QVariant(QStringList()));
            ++i;
        } else if (rest.startsWith(QLatin1String("av"))) {
            arguments.append(QVariant(QVariantList()));
            ++i;
        } else if (rest.at(0) == QLatin1Char('b')) {
            arguments.append(false);
        } else if (rest.at(0) == QLatin1Char('i')) {
            arguments.append(0);
        } else if (rest.at(0) == QLatin1Char('d')) {
            arguments.append(0.0);
        } else if (rest.at(0) == QLatin1Char('s')) {
            arguments.append(QString());
        } else if (rest.at(0) == QLatin1Char('v')) {
            arguments.append(QVariant::fromValue(QDBusVariant(0)));
        } else {
            return {}; // a type this test cannot make: the caller reports it
        }
    }
    return arguments;
}

} // namespace

class tst_SimulatorAnswers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everySampleKindIsInTheKindTable();
    void everyMemberOfEveryElementAnswers();

private:
    QTemporaryDir m_dir;
};

void tst_SimulatorAnswers::everySampleKindIsInTheKindTable()
{
    // Every kind a model file can use has its sample, so the next test reaches it.
    QStringList sampled;
    for (const Sample &sample : samples)
        sampled.append(QLatin1String(sample.kind));
    for (const KindTable::Kind &kind : KindTable::all()) {
        if (kind.family != KindTable::Family::Command)
            QVERIFY2(sampled.contains(QLatin1String(kind.shortName)), kind.shortName);
    }
    QCOMPARE(sampled.size(), KindTable::count() - 1);
}

void tst_SimulatorAnswers::everyMemberOfEveryElementAnswers()
{
    QJsonArray elements;
    QList<QPair<QString, const KindTable::Kind *>> objects;
    for (const Sample &sample : samples) {
        for (const bool full : {false, true}) {
            QJsonObject element = parsed(full ? sample.full : sample.bare);
            QVERIFY2(!element.isEmpty(), sample.kind);
            const QString path = QStringLiteral("/%1/%2").arg(full ? "Full" : "Bare", QLatin1String(sample.kind));
            element.insert(QStringLiteral("path"), path);
            element.insert(QStringLiteral("kind"), QLatin1String(sample.kind));
            elements.append(element);
            objects.append({path, KindTable::find(QLatin1String(sample.kind))});
        }
    }
    objects.append({QStringLiteral("/MEAS_APPL_OBJ"), KindTable::find(QStringLiteral("command"))});
    const QString modelName = m_dir.filePath(QStringLiteral("every-kind.json"));
    QFile model(modelName);
    QVERIFY(model.open(QIODevice::WriteOnly | QIODevice::Truncate));
    model.write(QJsonDocument(QJsonObject{{QStringLiteral("elements"), elements}}).toJson());
    model.close();

    SimulatorProcess simulator({QStringLiteral("--model"), modelName});
    QVERIFY(simulator.waitForReady());

    QStringList unanswered;
    for (const auto &object : objects) {
        QVERIFY(object.second);
        for (const KindTable::Method &method : object.second->methods()) {
            const QString what = QStringLiteral("%1 %2(%3)")
                                     .arg(object.first, QLatin1String(method.name), QLatin1String(method.inSignature));
            const QVariantList arguments = argumentsFor(QLatin1String(method.inSignature));
            QVERIFY2(QString::fromLatin1(method.inSignature).isEmpty() || !arguments.isEmpty(), qPrintable(what));
            QDBusMessage call = QDBusMessage::createMethodCall(
                SimulatorProcess::service, object.first, QStringLiteral("com.velk.mqx.MeasApplInterface"), method.name);
            call.setArguments(arguments);
            // The bound only ends a call that gets no answer; each answered one returns at once.
            const QDBusMessage answer = QDBusConnection::sessionBus().call(call, QDBus::Block, 5000);
            if (answer.type() == QDBusMessage::ErrorMessage &&
                answer.errorName() == QLatin1String("org.freedesktop.DBus.Error.NoReply"))
                unanswered.append(what);
            else if (answer.type() == QDBusMessage::ReplyMessage && answer.signature() != method.outSignature)
                unanswered.append(QStringLiteral("%1: answered \"%2\", not \"%3\"")
                                      .arg(what, answer.signature(), QLatin1String(method.outSignature)));
        }
    }
    QVERIFY2(unanswered.isEmpty(), qPrintable(unanswered.join(QStringLiteral("\n"))));
}

QTEST_GUILESS_MAIN(tst_SimulatorAnswers)
#include "tst_simulatoranswers.moc"
