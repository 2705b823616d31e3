#include "Introspection.h"
#include "MeasApplNames_p.h"
#include "MeasurementEngine.h"
#include "Model.h"
#include "RootElement.h"
#include "SimulatedKinds.h"
#include "SimulatorService.h"

#include <InterfaceDocument.h>
#include <KindTable.h>

#include <QDBusVariant>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <cmath>
#include <limits>

namespace {

struct Emitted
{
    QString path;
    QString member;
    QVariantList arguments;
};

/// The default model, with every signal its elements emit collected.
struct Instrument
{
    explicit Instrument(quint32 seed = 1)
    {
        QString error;
        model = loadModel(defaultModelJson(), QStringLiteral("default model"), &error);
        if (!model)
            qFatal("%s", qPrintable(error));
        for (const auto &element : model->elements) {
            element->setSignalSink([this](const QString &path, const QString &member, const QVariantList &arguments) {
                emitted.append({path, member, arguments});
            });
        }
        engine = std::make_unique<MeasurementEngine>(model->results(), seed, model->rate, epochMs);
        root = std::make_unique<RootElement>(*model, *engine);
    }

    Element &at(const QString &path) const
    {
        Element *element = model->find(path);
        if (!element)
            qFatal("no element %s", qPrintable(path));
        return *element;
    }

    Outcome call(const QString &path, const QString &member, const QString &signature,
                 const QVariantList &arguments = {}) const
    {
        return at(path).invoke(member, signature, arguments);
    }

    QVariant value(const QString &path, const QString &member, const QString &signature = {},
                   const QVariantList &arguments = {}) const
    {
        const Outcome outcome = call(path, member, signature, arguments);
        return outcome.values.value(0);
    }

    static constexpr qint64 epochMs = 1700000000000;
    std::unique_ptr<Model> model;
    std::unique_ptr<MeasurementEngine> engine;
    std::unique_ptr<RootElement> root;
    QList<Emitted> emitted;
};

QVariant variant(const QVariant &value)
{
    return QVariant::fromValue(QDBusVariant(value));
}

/// The canonical member texts of the application interface of @p xml, as the kind table has them.
QStringList documentedMembers(const QString &xml)
{
    const auto document = InterfaceDocument::parse(xml);
    return document ? document->memberTexts() : QStringList{QStringLiteral("(does not parse)")};
}

QStringList servedMembers(const Element &element)
{
    InterfaceDocument served;
    for (const Element::MemberEntry &entry : element.members())
        served.methods.append({entry.member, entry.inSignature, entry.outSignature});
    for (const Element::SignalEntry &entry : element.signalEntries())
        served.busSignals.append({entry.member, entry.signature});
    return served.memberTexts();
}

/// The complete types of a D-Bus signature, e.g. "sa{sv}" → "s", "a{sv}".
QStringList splitSignature(const QString &signature)
{
    QStringList types;
    int start = 0;
    while (start < signature.size()) {
        int end = start;
        while (signature.at(end) == QLatin1Char('a'))
            ++end;
        int depth = 0;
        do {
            const QChar c = signature.at(end++);
            if (c == QLatin1Char('(') || c == QLatin1Char('{'))
                ++depth;
            else if (c == QLatin1Char(')') || c == QLatin1Char('}'))
                --depth;
        } while (depth > 0);
        types.append(signature.mid(start, end - start));
        start = end;
    }
    return types;
}

/// A neutral argument of one complete D-Bus type.
QVariant neutral(const QString &type)
{
    static const QHash<QString, QVariant> values{{"i", 0},
                                                 {"d", 0.0},
                                                 {"s", QString()},
                                                 {"b", false},
                                                 {"x", qlonglong(0)},
                                                 {"v", QVariant::fromValue(QDBusVariant(0))},
                                                 {"av", QVariantList()},
                                                 {"as", QStringList()},
                                                 {"a{sv}", QVariantMap()}};
    return values.value(type);
}

/// The D-Bus type a reply value goes out as.
QString wireType(const QVariant &value)
{
    const int type = value.userType();
    if (type == qMetaTypeId<QDBusVariant>())
        return QStringLiteral("v");
    switch (type) {
    case QMetaType::Int:
        return QStringLiteral("i");
    case QMetaType::Double:
        return QStringLiteral("d");
    case QMetaType::QString:
        return QStringLiteral("s");
    case QMetaType::Bool:
        return QStringLiteral("b");
    case QMetaType::LongLong:
        return QStringLiteral("x");
    case QMetaType::QStringList:
        return QStringLiteral("as");
    case QMetaType::QVariantList:
        return QStringLiteral("av");
    case QMetaType::QVariantMap:
        return QStringLiteral("a{sv}");
    case QMetaType::QDateTime:
        return QStringLiteral("((iii)(iiii)i)");
    default:
        return QStringLiteral("?");
    }
}

/// The handlers of the built-in kind @p shortName.
Handlers builtInHandlers(const char *shortName)
{
    return SimulatedKinds::builtIn().find(QLatin1String(shortName))->handlers;
}

QList<MethodHandler>::iterator handlerNamed(Handlers &handlers, const QString &member)
{
    return std::find_if(handlers.methods.begin(), handlers.methods.end(),
                        [&member](const MethodHandler &handler) { return handler.member == member; });
}

} // namespace

Q_DECLARE_METATYPE(Handlers)

class tst_SimulatorModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyKindServesExactlyItsDocumentedMembersAndSignals();
    void everyElementServesItsKindsMembersFromTheTable();
    void theDefaultModelHasAnElementOfEveryKind();
    void theDefaultModelKeepsTheRangesItsDocumentationStates();
    void everyKindOfTheTableIsRegisteredUnderItsShortName();
    void kindsWhoseHandlersDoNotFitTheirTableAreRefused_data();
    void kindsWhoseHandlersDoNotFitTheirTableAreRefused();
    void aKindIsTakenOnceAndEveryKindIsRequired();
    void everyMemberAnswersWithItsDocumentedReplyTypes();

    void settersRefuseWhatTheInstrumentWouldRefuse_data();
    void settersRefuseWhatTheInstrumentWouldRefuse();
    void settersAcceptAndSignalValidValues_data();
    void settersAcceptAndSignalValidValues();
    void settingTheCurrentValueAgainSignalsNothing();
    void setToDefaultRestoresTheModelsDefaultAndSignals();
    void unknownMembersAndSignaturesGetErrors();
    void mapOfMapsSignalsEachChangedCellAndRemovedEntry();
    void thresholdLocationsCanBeCreatedRenamedAndDeleted();
    void storedElementsFollowTheSortOrder();

    void theSameSeedGivesTheSameMeasurement();
    void anotherSeedGivesAnotherMeasurement();
    void resultsTakeSamplesOnlyAtTheirRateAndWhileRunning();
    void statusesFollowTheLimits();
    void minMaxFollowResetStopAndContinue();
    void compListsHoldValueStatusAndTimeStamp();
    void arrayResultsCarryStatusesAndTimeStamp();

    void commandLanguageAnswers_data();
    void commandLanguageAnswers();
    void commandsActOnTheElements();

    void badModelsAreRefusedNamingFileElementAndProblem_data();
    void badModelsAreRefusedNamingFileElementAndProblem();
    void aValidModelFileLoads();
};

void tst_SimulatorModel::everyKindServesExactlyItsDocumentedMembersAndSignals()
{
    Instrument instrument;
    QString error;
    SimulatorService service(loadModel(defaultModelJson(), QStringLiteral("default model"), &error), {});
    QList<const Element *> elements{instrument.root.get(), service.elementAt(Model::controlPath)};
    for (const auto &element : instrument.model->elements)
        elements.append(element.get());
    for (const Element *element : elements) {
        QString document = Introspection::document(element, {});
        QVERIFY2(!document.contains(QLatin1String("<node name=")), qPrintable(element->path()));
        // The control interface is the simulator's own; read it as the one reader reads an application's.
        if (element->interfaceName() != QLatin1String(MeasAppl::interfaceName))
            document.replace(QStringLiteral("\"%1\"").arg(element->interfaceName()),
                             QStringLiteral("\"%1\"").arg(QLatin1String(MeasAppl::interfaceName)));
        QCOMPARE(servedMembers(*element), documentedMembers(document));
    }
}

void tst_SimulatorModel::everyElementServesItsKindsMembersFromTheTable()
{
    Instrument instrument;
    QList<const Element *> elements{instrument.root.get()};
    for (const auto &element : instrument.model->elements)
        elements.append(element.get());
    for (const Element *element : elements) {
        QVERIFY2(element->kind(), qPrintable(element->path()));
        QCOMPARE(element->proxyClass(), QString::fromLatin1(element->kind()->className));
        QCOMPARE(servedMembers(*element), element->kind()->memberTexts());
        // The kind's document as the table has it, followed by what every object adds.
        const QString document = KindTable::document(*element->kind());
        QVERIFY2(Introspection::document(element, {}).startsWith(document.left(document.lastIndexOf("</node>"))),
                 qPrintable(element->path()));
    }
}

void tst_SimulatorModel::theDefaultModelKeepsTheRangesItsDocumentationStates()
{
    // The rows of the default model's table: | `path` | `kind` description | `class` |
    QFile doc(QStringLiteral(SIMULATOR_SOURCE_DIR "/../docs/simulator.md"));
    QVERIFY(doc.open(QIODevice::ReadOnly | QIODevice::Text));
    const QString text = QString::fromUtf8(doc.readAll());
    static const QRegularExpression row(QStringLiteral("^\\| `(/[^`]+)` \\| `(\\w+)` ([^|]*)\\|"),
                                        QRegularExpression::MultilineOption);
    static const QRegularExpression range(QStringLiteral("(limits )?(-?\\d+(?:\\.\\d+)?)\\.\\.(-?\\d+(?:\\.\\d+)?)"));
    Instrument instrument;
    // Long enough that a value outside the range would have been drawn.
    instrument.engine->tick(5000);
    int checked = 0;
    for (auto rows = row.globalMatch(text); rows.hasNext();) {
        const QRegularExpressionMatch match = rows.next();
        const QString path = match.captured(1);
        const QString kind = match.captured(2);
        const QRegularExpressionMatch stated = range.match(match.captured(3));
        if (!stated.hasMatch())
            continue;
        const double low = stated.captured(2).toDouble();
        const double high = stated.captured(3).toDouble();
        const QString what = QStringLiteral("%1: %2").arg(path, stated.captured(0));
        if (!stated.captured(1).isEmpty()) {
            QVERIFY2(instrument.value(path, "getLowerLimit").toDouble() == low, qPrintable(what));
            QVERIFY2(instrument.value(path, "getUpperLimit").toDouble() == high, qPrintable(what));
        } else if (kind == QLatin1String("array")) {
            // The ends are accepted, a value beyond either refused.
            for (const double end : {low, high})
                QVERIFY2(instrument.value(path, "setValue", "vii", {variant(end), 0, 0}).toBool(), qPrintable(what));
            for (const double beyond : {low - 0.5, high + 0.5})
                QVERIFY2(!instrument.value(path, "setValue", "vii", {variant(beyond), 0, 0}).toBool(),
                         qPrintable(what));
        } else {
            // A setting's range, or the values a result takes (min and max so far).
            QVERIFY2(instrument.value(path, "getMinValue").toDouble() == low, qPrintable(what));
            QVERIFY2(instrument.value(path, "getMaxValue").toDouble() == high, qPrintable(what));
        }
        ++checked;
    }
    // SampleRate, Averages, Duration, TriggerLevel, Coefficients, RMS, Peak, Events, Overloads.
    QCOMPARE(checked, 9);
}

void tst_SimulatorModel::theDefaultModelHasAnElementOfEveryKind()
{
    Instrument instrument;
    QSet<QString> served{instrument.root->proxyClass()};
    for (const auto &element : instrument.model->elements)
        served.insert(element->proxyClass());
    QCOMPARE(int(served.size()), KindTable::count());
    for (const KindTable::Kind &kind : KindTable::all())
        QVERIFY2(served.contains(QLatin1String(kind.className)), kind.className);
}

void tst_SimulatorModel::everyKindOfTheTableIsRegisteredUnderItsShortName()
{
    QCOMPARE(SimulatedKinds::builtIn().problems(), QStringList());
    for (const KindTable::Kind &kind : KindTable::all()) {
        const SimulatedKinds::Registered *registered = SimulatedKinds::builtIn().find(QLatin1String(kind.shortName));
        QVERIFY2(registered, kind.shortName);
        QCOMPARE(registered->kind, &kind);
        // Only the root object is not made from a model file.
        QCOMPARE(bool(registered->read), kind.family != KindTable::Family::Command);
    }
}

void tst_SimulatorModel::kindsWhoseHandlersDoNotFitTheirTableAreRefused_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<Handlers>("handlers");
    QTest::addColumn<QStringList>("problems");

    Handlers incomplete = builtInHandlers("int");
    incomplete.methods.erase(handlerNamed(incomplete, QStringLiteral("getGranularity")));
    QTest::newRow("a member without a handler")
        << "SetupIntInterface" << incomplete
        << QStringList{"kind \"int\" (SetupIntInterface): no handler for method getGranularity()"};

    Handlers overComplete = builtInHandlers("int");
    overComplete.methods.append({"getStep", nullptr, [](Element &, const QVariantList &) { return Outcome::reply(); }});
    QTest::newRow("a handler for a member the table lacks")
        << "SetupIntInterface" << overComplete
        << QStringList{"kind \"int\" (SetupIntInterface): a handler for method getStep, which the kind table lacks"};

    Handlers noSignal = builtInHandlers("double");
    noSignal.busSignals.removeLast();
    QTest::newRow("a signal without a handler")
        << "SetupDoubleInterface" << noSignal
        << QStringList{"kind \"double\" (SetupDoubleInterface): no handler for signal setupBoundsChanged(dd)"};

    Handlers unnamed = builtInHandlers("enum");
    handlerNamed(unnamed, QStringLiteral("setValue"))->inSignature = nullptr;
    QTest::newRow("a signature left out where there are several")
        << "SetupEnumInterface" << unnamed
        << QStringList{"kind \"enum\" (SetupEnumInterface): no handler for method setValue(i)",
                       "kind \"enum\" (SetupEnumInterface): the handler for method setValue names no signature, "
                       "but it has several: i, s"};

    Handlers named = builtInHandlers("bool");
    handlerNamed(named, QStringLiteral("setValue"))->inSignature = "b";
    QTest::newRow("a signature named where there is one")
        << "SetupBoolInterface" << named
        << QStringList{"kind \"bool\" (SetupBoolInterface): no handler for method setValue(b)",
                       "kind \"bool\" (SetupBoolInterface): the handler for method setValue names a signature, "
                       "but it has only one"};

    Handlers unknownSignature = builtInHandlers("enum");
    handlerNamed(unknownSignature, QStringLiteral("setValue"))->inSignature = "d";
    QTest::newRow("a signature the table lacks")
        << "SetupEnumInterface" << unknownSignature
        << QStringList{"kind \"enum\" (SetupEnumInterface): no handler for method setValue(i)",
                       "kind \"enum\" (SetupEnumInterface): a handler for method setValue(d), which the kind table "
                       "lacks"};

    QTest::newRow("no class of the table")
        << "SetupFloatInterface" << Handlers() << QStringList{"SetupFloatInterface: no such class in the kind table"};
}

void tst_SimulatorModel::kindsWhoseHandlersDoNotFitTheirTableAreRefused()
{
    QFETCH(QString, className);
    QFETCH(Handlers, handlers);
    QFETCH(QStringList, problems);
    SimulatedKinds registry;
    QVERIFY(!registry.add(className, handlers));
    QCOMPARE(registry.problems(), problems);
    QVERIFY(!registry.find(QStringLiteral("int")));
}

void tst_SimulatorModel::aKindIsTakenOnceAndEveryKindIsRequired()
{
    SimulatedKinds registry;
    QVERIFY(registry.add(QStringLiteral("SetupIntInterface"), builtInHandlers("int")));
    QVERIFY(registry.find(QStringLiteral("int")));
    QVERIFY(!registry.find(QStringLiteral("SetupIntInterface")));
    QCOMPARE(registry.problems(), QStringList());
    QVERIFY(!registry.add(QStringLiteral("SetupIntInterface"), builtInHandlers("int")));
    QCOMPARE(registry.problems(), QStringList{"kind \"int\" (SetupIntInterface): registered twice"});

    registry.requireEveryKind();
    QCOMPARE(registry.problems().size(), KindTable::count());
    QVERIFY(registry.problems().contains(
        "kind \"storage\" (StorageElemsMapInterface): the simulator has no handlers for it"));
}

void tst_SimulatorModel::everyMemberAnswersWithItsDocumentedReplyTypes()
{
    Instrument instrument;
    QList<const Element *> elements{instrument.root.get()};
    for (const auto &element : instrument.model->elements)
        elements.append(element.get());
    const QSet<QString> knownErrors{"com.velk.mqx.Error.UnknownKey", "com.velk.mqx.Error.OutOfRange",
                                    "org.freedesktop.DBus.Error.InvalidArgs"};
    int replies = 0;
    for (const Element *element : elements) {
        for (const Element::MemberEntry &entry : element->members()) {
            QVariantList arguments;
            for (const QString &type : splitSignature(entry.inSignature))
                arguments.append(neutral(type));
            const Outcome outcome = element->invoke(entry.member, entry.inSignature, arguments);
            const QString where = element->path() + QLatin1Char(' ') + entry.member + QLatin1Char('(') +
                entry.inSignature + QLatin1Char(')');
            if (outcome.isError()) {
                // Only a key, position or text that names nothing is refused; a member without
                // arguments always answers.
                QVERIFY2(!entry.inSignature.isEmpty() && knownErrors.contains(outcome.errorName),
                         qPrintable(where + ": " + outcome.errorName));
                continue;
            }
            QString sent;
            for (const QVariant &value : outcome.values)
                sent += wireType(value);
            QVERIFY2(sent == entry.outSignature, qPrintable(where + " answered " + sent));
            ++replies;
        }
    }
    QVERIFY(replies > 0);
}

void tst_SimulatorModel::settersRefuseWhatTheInstrumentWouldRefuse_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<QVariantList>("arguments");

    const double nan = std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("int below min") << "/Setup/Acquisition/SampleRate"
                                   << "setValue"
                                   << "i" << QVariantList{999};
    QTest::newRow("int above max") << "/Setup/Acquisition/SampleRate"
                                   << "setValue"
                                   << "i" << QVariantList{193000};
    QTest::newRow("int off granularity") << "/Setup/Acquisition/SampleRate"
                                         << "setValue"
                                         << "i" << QVariantList{2500};
    QTest::newRow("double NaN") << "/Setup/Acquisition/Duration"
                                << "setValue"
                                << "d" << QVariantList{nan};
    QTest::newRow("double off granularity") << "/Setup/Acquisition/Duration"
                                            << "setValue"
                                            << "d" << QVariantList{1.05};
    QTest::newRow("double above max") << "/Setup/Acquisition/TriggerLevel"
                                      << "setValue"
                                      << "d" << QVariantList{10.01};
    QTest::newRow("string not changeable") << "/Setup/Device/SerialNumber"
                                           << "setValue"
                                           << "s" << QVariantList{"X"};
    QTest::newRow("string too long") << "/Setup/Device/Label"
                                     << "setValue"
                                     << "s" << QVariantList{QString(33, 'x')};
    QTest::newRow("enum index past the choices") << "/Setup/Acquisition/TriggerMode"
                                                 << "setValue"
                                                 << "i" << QVariantList{4};
    QTest::newRow("enum negative index") << "/Setup/Acquisition/TriggerMode"
                                         << "setValue"
                                         << "i" << QVariantList{-1};
    QTest::newRow("enum unknown text") << "/Setup/Acquisition/TriggerMode"
                                       << "setValue"
                                       << "s" << QVariantList{"Edge"};
    QTest::newRow("devData of another type") << "/Setup/Device/CalibrationFactor"
                                             << "setValue"
                                             << "v" << QVariantList{variant("x")};
    QTest::newRow("devData NaN") << "/Setup/Device/CalibrationFactor"
                                 << "setValue"
                                 << "v" << QVariantList{variant(nan)};
    QTest::newRow("array value out of range") << "/Setup/Filter/Coefficients"
                                              << "setValue"
                                              << "vii" << QVariantList{variant(1.5), 0, 1};
    QTest::newRow("array positions past the end") << "/Setup/Filter/Coefficients"
                                                  << "setValue"
                                                  << "vii" << QVariantList{variant(0.1), 7, 8};
    QTest::newRow("array positions reversed") << "/Setup/Filter/Coefficients"
                                              << "setValue"
                                              << "vii" << QVariantList{variant(0.1), 3, 2};
    QTest::newRow("array NaN") << "/Setup/Filter/Coefficients"
                               << "setValue"
                               << "vii" << QVariantList{variant(nan), 0, 0};
    QTest::newRow("array of another length") << "/Setup/Filter/Coefficients"
                                             << "setValue"
                                             << "av" << QVariantList{QVariant(QVariantList{0.1, 0.2})};
    QTest::newRow("map value of another type") << "/Setup/Display/ChannelColors"
                                               << "setValue"
                                               << "sv" << QVariantList{"A", variant(3)};
    QTest::newRow("map list item out of range") << "/Setup/Sequence/Steps"
                                                << "setValue"
                                                << "isv" << QVariantList{0, "level", variant(3.0)};
    QTest::newRow("map list unknown item") << "/Setup/Sequence/Steps"
                                           << "setValue"
                                           << "isv" << QVariantList{0, "colour", variant(3.0)};
    QTest::newRow("map list position past the end") << "/Setup/Sequence/Steps"
                                                    << "setValue"
                                                    << "isv" << QVariantList{3, "level", variant(-3.0)};
    QTest::newRow("map list entry without items") << "/Setup/Sequence/Steps"
                                                  << "setValue"
                                                  << "sv" << QVariantList{"X", variant(QVariantMap())};
    QTest::newRow("map list entry missing an item")
        << "/Setup/Sequence/Steps"
        << "setValue"
        << "sv" << QVariantList{"X", variant(QVariantMap{{"name", "X"}, {"frequency", 50.0}, {"level", -40.0}})};
    QTest::newRow("map list entry named otherwise")
        << "/Setup/Sequence/Steps"
        << "setValue"
        << "sv"
        << QVariantList{"X",
                        variant(QVariantMap{{"name", "Y"}, {"frequency", 50.0}, {"level", -40.0}, {"duration", 2.0}})};
    QTest::newRow("map of maps cell out of range") << "/Setup/Channels/Config"
                                                   << "setValue"
                                                   << "ssv" << QVariantList{"A", "gain", variant(100.5)};
    QTest::newRow("map of maps choice not offered") << "/Setup/Channels/Config"
                                                    << "setValue"
                                                    << "sss" << QVariantList{"A", "coupling", "GND"};
    QTest::newRow("map of maps unknown cell") << "/Setup/Channels/Config"
                                              << "setValue"
                                              << "ssv" << QVariantList{"A", "colour", variant(1.0)};
    QTest::newRow("map of maps text that is no number") << "/Setup/Channels/Config"
                                                        << "setValue"
                                                        << "sss" << QVariantList{"A", "gain", "high"};
    QTest::newRow("threshold of a fixed location") << "/Setup/Limits/Thresholds"
                                                   << "setValue"
                                                   << "sd" << QVariantList{"Factory/Temperature", 80.0};
    QTest::newRow("threshold out of range") << "/Setup/Limits/Thresholds"
                                            << "setValue"
                                            << "sd" << QVariantList{"Line 1/Pressure", 10.5};
    QTest::newRow("threshold unknown key") << "/Setup/Limits/Thresholds"
                                           << "setValue"
                                           << "sd" << QVariantList{"Line 1/Humidity", 1.0};
    QTest::newRow("threshold NaN") << "/Setup/Limits/Thresholds"
                                   << "setValue"
                                   << "sd" << QVariantList{"Line 1/Pressure", nan};
}

void tst_SimulatorModel::settersRefuseWhatTheInstrumentWouldRefuse()
{
    QFETCH(QString, path);
    QFETCH(QString, member);
    QFETCH(QString, signature);
    QFETCH(QVariantList, arguments);
    Instrument instrument;
    Element &element = instrument.at(path);
    const QString before = element.text();

    const Outcome outcome = element.invoke(member, signature, arguments);

    QVERIFY(!outcome.isError());
    QCOMPARE(outcome.values, QVariantList{false});
    QCOMPARE(element.text(), before);
    QCOMPARE(instrument.emitted.size(), 0);
}

void tst_SimulatorModel::settersAcceptAndSignalValidValues_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("signal");
    QTest::addColumn<QVariantList>("signalArguments");

    QTest::newRow("int") << "/Setup/Acquisition/SampleRate"
                         << "setValue"
                         << "i" << QVariantList{96000} << "96000 Hz"
                         << "setupChanged" << QVariantList{96000};
    QTest::newRow("double") << "/Setup/Acquisition/Duration"
                            << "setValue"
                            << "d" << QVariantList{2.5} << "2.5 s"
                            << "setupChanged" << QVariantList{2.5};
    QTest::newRow("bool") << "/Setup/Acquisition/AutoRange"
                          << "setValue"
                          << "b" << QVariantList{false} << "false"
                          << "setupChanged" << QVariantList{false};
    QTest::newRow("string") << "/Setup/Device/Label"
                            << "setValue"
                            << "s" << QVariantList{"Left"} << "Left"
                            << "setupChanged" << QVariantList{"Left"};
    QTest::newRow("enum by index") << "/Setup/Acquisition/TriggerMode"
                                   << "setValue"
                                   << "i" << QVariantList{2} << "Edge Falling"
                                   << "setupChanged" << QVariantList{2, "Edge Falling"};
    QTest::newRow("enum by text") << "/Setup/Acquisition/TriggerMode"
                                  << "setValue"
                                  << "s" << QVariantList{"External"} << "External"
                                  << "setupChanged" << QVariantList{3, "External"};
    QTest::newRow("array range") << "/Setup/Filter/Coefficients"
                                 << "setValue"
                                 << "vii" << QVariantList{variant(-1.0), 6, 7}
                                 << "[0.5, 0.25, 0.125, 0.0625, 0, 0, -1, -1]"
                                 << "setupChanged" << QVariantList{};
    QTest::newRow("map entry") << "/Setup/Display/ChannelColors"
                               << "setValue"
                               << "sv" << QVariantList{"D", variant("#000000")}
                               << "A=#e6194b, B=#3cb44b, C=#4363d8, D=#000000"
                               << "setupChanged" << QVariantList{};
    QTest::newRow("threshold") << "/Setup/Limits/Thresholds"
                               << "setValue"
                               << "sd" << QVariantList{"Line 2/Vibration", 20.0} << QString() << "setupChanged"
                               << QVariantList{"Line 2/Vibration", 20.0};
}

void tst_SimulatorModel::settersAcceptAndSignalValidValues()
{
    QFETCH(QString, path);
    QFETCH(QString, member);
    QFETCH(QString, signature);
    QFETCH(QVariantList, arguments);
    QFETCH(QString, text);
    QFETCH(QString, signal);
    QFETCH(QVariantList, signalArguments);
    Instrument instrument;

    QCOMPARE(instrument.call(path, member, signature, arguments).values, QVariantList{true});

    QCOMPARE(instrument.at(path).text(), text);
    QCOMPARE(instrument.emitted.size(), 1);
    QCOMPARE(instrument.emitted.at(0).member, signal);
    QCOMPARE(instrument.emitted.at(0).arguments, signalArguments);
}

void tst_SimulatorModel::settingTheCurrentValueAgainSignalsNothing()
{
    Instrument instrument;
    QCOMPARE(instrument.value("/Setup/Acquisition/Averages", "setValue", "i", {16}), QVariant(true));
    QCOMPARE(instrument.emitted.size(), 0);
}

void tst_SimulatorModel::setToDefaultRestoresTheModelsDefaultAndSignals()
{
    Instrument instrument;
    const QString path = QStringLiteral("/Setup/Acquisition/TriggerLevel");
    QCOMPARE(instrument.value(path, "setValue", "d", {-2.25}), QVariant(true));
    instrument.emitted.clear();

    QVERIFY(!instrument.call(path, "setToDefault", {}).isError());

    QCOMPARE(instrument.value(path, "getValue"), QVariant(0.5));
    QCOMPARE(instrument.emitted.size(), 1);
    QCOMPARE(instrument.emitted.at(0).arguments, QVariantList{0.5});
}

void tst_SimulatorModel::unknownMembersAndSignaturesGetErrors()
{
    Instrument instrument;
    QCOMPARE(instrument.call("/Setup/Acquisition/Averages", "getMinimum", {}).errorName,
             QStringLiteral("org.freedesktop.DBus.Error.UnknownMethod"));
    QCOMPARE(instrument.call("/Setup/Acquisition/Averages", "setValue", "d", {2.0}).errorName,
             QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs"));
    QCOMPARE(instrument.call("/Result/Voltage/RMS", "getMinString", {}).errorName,
             QStringLiteral("org.freedesktop.DBus.Error.UnknownMethod"));
    QCOMPARE(instrument.call("/Setup/Display/ChannelColors", "getValue", "s", {"Z"}).errorName,
             QStringLiteral("com.velk.mqx.Error.UnknownKey"));
    QCOMPARE(instrument.call("/Result/Spectrum/Peaks", "getValue", "i", {8}).errorName,
             QStringLiteral("com.velk.mqx.Error.OutOfRange"));
    // A cell or item that exists but has no range is not an unknown key.
    for (const char *member : {"getMin", "getMax"}) {
        QCOMPARE(instrument.call("/Setup/Channels/Config", member, "ss", {"A", "coupling"}).errorName,
                 QStringLiteral("com.velk.mqx.Error.NoRange"));
        QCOMPARE(instrument.call("/Setup/Channels/Config", member, "ss", {"Z", "coupling"}).errorName,
                 QStringLiteral("com.velk.mqx.Error.UnknownKey"));
        QCOMPARE(instrument.call("/Setup/Sequence/Steps", member, "is", {0, "name"}).errorName,
                 QStringLiteral("com.velk.mqx.Error.NoRange"));
    }
}

void tst_SimulatorModel::mapOfMapsSignalsEachChangedCellAndRemovedEntry()
{
    Instrument instrument;
    const QString path = QStringLiteral("/Setup/Channels/Config");
    QCOMPARE(instrument.value(path, "setValue", "ssv", {"B", "gain", variant(20.0)}), QVariant(true));
    QCOMPARE(instrument.emitted.size(), 2);
    QCOMPARE(instrument.emitted.at(0).member, QStringLiteral("setupChangedPart"));
    QCOMPARE(instrument.emitted.at(0).arguments.value(0), QVariant("B"));
    QCOMPARE(instrument.emitted.at(0).arguments.value(1), QVariant("gain"));
    QCOMPARE(instrument.emitted.at(0).arguments.value(2).value<QDBusVariant>().variant(), QVariant(20.0));
    QCOMPARE(instrument.emitted.at(0).arguments.value(3), QVariant(false));
    QCOMPARE(instrument.emitted.at(1).member, QStringLiteral("setupChanged"));
    instrument.emitted.clear();

    QCOMPARE(instrument.value(path, "removeItem", "s", {"B"}), QVariant(1));
    QCOMPARE(instrument.emitted.size(), 2);
    QCOMPARE(instrument.emitted.at(0).member, QStringLiteral("mapEntryRemoved"));
    QCOMPARE(instrument.emitted.at(0).arguments, QVariantList{"B"});
    QCOMPARE(instrument.value(path, "removeItem", "s", {"B"}), QVariant(0));
    QCOMPARE(instrument.value(path, "getAllKeys"), QVariant(QStringList{"A"}));

    QCOMPARE(instrument.value(path, "mergeFromDefaultMap"), QVariant(QStringList{"B"}));
    QCOMPARE(instrument.value(path, "getValue", "ss", {"B", "gain"}).value<QDBusVariant>().variant(), QVariant(10.0));
}

void tst_SimulatorModel::thresholdLocationsCanBeCreatedRenamedAndDeleted()
{
    Instrument instrument;
    const QString path = QStringLiteral("/Setup/Limits/Thresholds");
    QCOMPARE(instrument.value(path, "createLocation", "ss", {"Line 3", "Line 1"}), QVariant(true));
    QCOMPARE(instrument.value(path, "getValue", "s", {"Line 3/Temperature"}), QVariant(70.0));
    QCOMPARE(instrument.value(path, "createLocation", "ss", {"Line 3", "Line 1"}), QVariant(false));
    QCOMPARE(instrument.value(path, "createLocation", "ss", {QString(17, 'x'), "Line 1"}), QVariant(false));
    QCOMPARE(instrument.value(path, "renameLocation", "ss", {"Factory", "Plant"}), QVariant(false));
    instrument.emitted.clear();

    QCOMPARE(instrument.value(path, "renameLocation", "ss", {"Line 3", "Line 4"}), QVariant(true));
    QCOMPARE(instrument.emitted.size(), 2);
    QCOMPARE(instrument.emitted.at(0).member, QStringLiteral("locationNameChanged"));
    QCOMPARE(instrument.emitted.at(0).arguments, (QVariantList{"Line 3", "Line 4"}));
    QCOMPARE(instrument.emitted.at(1).member, QStringLiteral("locationsChanged"));

    QCOMPARE(instrument.value(path, "deleteLocation", "s", {"Factory"}), QVariant(false));
    QCOMPARE(instrument.value(path, "deleteLocation", "s", {"Line 4"}), QVariant(true));
    QCOMPARE(instrument.value(path, "getLocationNames"), QVariant(QStringList{"Factory", "Line 1", "Line 2"}));
    QCOMPARE(instrument.value(path, "getThresholdElementsForLocation", "s", {"Line 2"}),
             QVariant(R"({"Pressure":8,"Temperature":85,"Vibration":12})"));
    QCOMPARE(instrument.value(path, "getString", "s", {"Line 2/Pressure"}), QVariant("8 bar"));
}

void tst_SimulatorModel::storedElementsFollowTheSortOrder()
{
    Instrument instrument;
    const QString path = QStringLiteral("/Setup/Storage/Elements");
    QCOMPARE(instrument.root->execute({"store", path, "Run_0000"}), QStringLiteral("OK"));
    QCOMPARE(instrument.emitted.size(), 1);
    QCOMPARE(instrument.emitted.at(0).arguments, (QVariantList{"insert", 0, 1, QStringList{"Run_0000"}}));
    instrument.emitted.clear();

    QVERIFY(!instrument.call(path, "setSortOrder", "s", {"descending"}).isError());
    QCOMPARE(instrument.value(path, "getValues"),
             QVariant(QStringList{"Run_0003", "Run_0002", "Run_0001", "Run_0000"}));
    QCOMPARE(instrument.emitted.size(), 2);
    QCOMPARE(instrument.emitted.at(0).arguments, QVariantList{"descending"});
    QCOMPARE(instrument.call(path, "setSortOrder", "s", {"by size"}).errorName,
             QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs"));
    QCOMPARE(instrument.value(path, "getSortOrder"), QVariant("descending"));
}

static QVariantList readings(const Instrument &instrument)
{
    QVariantList all;
    for (const char *path :
         {"/Result/Voltage/RMS", "/Result/Counter/Events", "/Result/Status/Overload", "/Result/Status/RangeState"})
        all.append(instrument.value(path, "getValue"));
    all.append(instrument.value("/Result/Spectrum/Peaks", "getValues"));
    return all;
}

void tst_SimulatorModel::theSameSeedGivesTheSameMeasurement()
{
    Instrument first(7);
    Instrument second(7);
    for (int i = 0; i < 5; ++i) {
        first.engine->tick(3);
        second.engine->tick(3);
        QCOMPARE(readings(first), readings(second));
    }
}

void tst_SimulatorModel::anotherSeedGivesAnotherMeasurement()
{
    Instrument first(7);
    Instrument second(8);
    first.engine->tick(3);
    second.engine->tick(3);
    QVERIFY(readings(first) != readings(second));
}

void tst_SimulatorModel::resultsTakeSamplesOnlyAtTheirRateAndWhileRunning()
{
    Instrument instrument;
    const auto stamp = [&](const QString &path) {
        return instrument.value(path, "getValueComp").toList().value(2).toLongLong() - Instrument::epochMs;
    };
    QCOMPARE(stamp("/Result/Voltage/RMS"), 0);
    instrument.engine->tick(4);
    QCOMPARE(stamp("/Result/Voltage/RMS"), 400);
    // 2 Hz: one sample per five periods of 10 Hz.
    QCOMPARE(stamp("/Result/Frequency/Fundamental"), 0);
    instrument.engine->tick(1);
    QCOMPARE(stamp("/Result/Frequency/Fundamental"), 500);

    QCOMPARE(instrument.root->status(), QStringLiteral("running"));
    instrument.engine->setRunning(false);
    QCOMPARE(instrument.root->status(), QStringLiteral("idle"));
    const QVariantList frozen = readings(instrument);
    instrument.engine->tick(10);
    QCOMPARE(readings(instrument), frozen);
    QCOMPARE(stamp("/Result/Voltage/RMS"), 500);
}

void tst_SimulatorModel::statusesFollowTheLimits()
{
    Instrument instrument;
    const QString path = QStringLiteral("/Result/Voltage/Peak"); // 3.25 ± 0.2, upper limit 3.5
    QSet<int> seen;
    for (int i = 0; i < 50; ++i) {
        instrument.engine->tick(1);
        const QVariantList comp = instrument.value(path, "getValueComp").toList();
        const double value = comp.value(0).toDouble();
        QCOMPARE(comp.value(1).toInt(), value > 3.5 ? 2 : 0);
        seen.insert(comp.value(1).toInt());
    }
    QCOMPARE(seen, (QSet<int>{0, 2}));
    QCOMPARE(instrument.value(path, "getLowerLimit"), QVariant(0.0));
    QCOMPARE(instrument.value(path, "getUpperLimit"), QVariant(3.5));
}

void tst_SimulatorModel::minMaxFollowResetStopAndContinue()
{
    Instrument instrument;
    const QString path = QStringLiteral("/Result/Counter/Events");
    QList<int> values{instrument.value(path, "getValue").toInt()};
    for (int i = 0; i < 20; ++i) {
        instrument.engine->tick(1);
        values.append(instrument.value(path, "getValue").toInt());
    }
    QCOMPARE(instrument.value(path, "getMinValue").toInt(), *std::min_element(values.begin(), values.end()));
    QCOMPARE(instrument.value(path, "getMaxValue").toInt(), *std::max_element(values.begin(), values.end()));

    QVERIFY(!instrument.call(path, "resetMinMaxValues", {}).isError());
    const QVariant current = instrument.value(path, "getValue");
    QCOMPARE(instrument.value(path, "getMinValue"), current);
    QCOMPARE(instrument.value(path, "getMaxValue"), current);

    QVERIFY(!instrument.call(path, "stopMinMaxEval", {}).isError());
    instrument.engine->tick(20);
    QCOMPARE(instrument.value(path, "getMinValue"), current);
    QCOMPARE(instrument.value(path, "getMaxValue"), current);

    QVERIFY(!instrument.call(path, "continueMinMaxEval", {}).isError());
    values = {current.toInt()};
    for (int i = 0; i < 20; ++i) {
        instrument.engine->tick(1);
        values.append(instrument.value(path, "getValue").toInt());
    }
    QCOMPARE(instrument.value(path, "getMinValue").toInt(), *std::min_element(values.begin(), values.end()));
    QCOMPARE(instrument.value(path, "getMaxValue").toInt(), *std::max_element(values.begin(), values.end()));
    QCOMPARE(instrument.value(path, "getMinString"),
             QVariant(QString::number(*std::min_element(values.begin(), values.end()))));
}

void tst_SimulatorModel::compListsHoldValueStatusAndTimeStamp()
{
    Instrument instrument;
    instrument.engine->tick(2);
    const QString path = QStringLiteral("/Result/Voltage/RMS");
    const QVariant value = instrument.value(path, "getValue");
    const qint64 stamp = Instrument::epochMs + 200;
    QCOMPARE(instrument.value(path, "getValueComp").toList(), (QVariantList{value, 0, stamp}));
    QCOMPARE(instrument.value(path, "getStringComp").toList(),
             (QVariantList{QString::number(value.toDouble(), 'f', 4) + " V", 0, stamp}));
    QCOMPARE(instrument.value(path, "getString"), QVariant(QString::number(value.toDouble(), 'f', 4) + " V"));
    const QVariantList minComp = instrument.value(path, "getMinValueComp").toList();
    QCOMPARE(minComp.value(0), instrument.value(path, "getMinValue"));
    QCOMPARE(instrument.value(path, "getMinStringComp").toList().value(2), minComp.value(2));

    const QString rangeState = QStringLiteral("/Result/Status/RangeState");
    const int index = instrument.value(rangeState, "getValue").toInt();
    QCOMPARE(instrument.value(rangeState, "getString"),
             QVariant(QStringList({"Under Range", "In Range", "Over Range"}).value(index)));
    QCOMPARE(instrument.value(rangeState, "getValueComp").toList(), (QVariantList{index, 0, stamp}));
}

void tst_SimulatorModel::arrayResultsCarryStatusesAndTimeStamp()
{
    Instrument instrument;
    instrument.engine->tick(1);
    const QString path = QStringLiteral("/Result/Spectrum/Peaks");
    const QVariantList values = instrument.value(path, "getValues").toList();
    QCOMPARE(values.size(), 8);
    QVariantList statuses;
    int worst = 0;
    for (const QVariant &value : values) {
        const int status = value.toDouble() < -60.0 ? 1 : value.toDouble() > 0.0 ? 2 : 0;
        statuses.append(status);
        worst = qMax(worst, status);
    }
    QCOMPARE(instrument.value(path, "getValuesStatus").toList(), statuses);
    QCOMPARE(instrument.value(path, "getValueStatus", "i", {3}), statuses.at(3));
    QCOMPARE(instrument.value(path, "getValue", "i", {3}).value<QDBusVariant>().variant(), values.at(3));
    QCOMPARE(instrument.value(path, "getResultStatus"), QVariant(worst));
    QCOMPARE(instrument.value(path, "getValueComp").toList(),
             QVariantList({Instrument::epochMs + 100, worst}) + values);
    QCOMPARE(instrument.value(path, "getTimeStamp").toDateTime().toMSecsSinceEpoch(), Instrument::epochMs + 100);
    QCOMPARE(instrument.value("/Result/Spectrum/Bins", "size"), QVariant(16));
}

void tst_SimulatorModel::commandLanguageAnswers_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("answer");

    QTest::newRow("normal answer") << QStringList{"echo", "done"} << "done";
    QTest::newRow("empty answer") << QStringList{"echo"} << "";
    QTest::newRow("exactly the prefix") << QStringList{"echo", "Parser Error: "} << "Parser Error: ";
    QTest::newRow("parser error with text")
        << QStringList{"echo", "Parser Error: bad unit"} << "Parser Error: bad unit";
    QTest::newRow("prefix in other letter case") << QStringList{"echo", "parser error: x"} << "parser error: x";
    QTest::newRow("unknown command") << QStringList{"calibrate"} << "Parser Error: unknown command \"calibrate\"";
    QTest::newRow("empty command") << QStringList{} << "Parser Error: empty command";
    QTest::newRow("set without value") << QStringList{"set", "/Setup/Acquisition/Averages"}
                                       << "Parser Error: usage: set PATH VALUE";
    QTest::newRow("set of no element") << QStringList{"set", "/Setup/Nothing", "1"}
                                       << "Parser Error: no element \"/Setup/Nothing\"";
    QTest::newRow("set refused") << QStringList{"set", "/Setup/Acquisition/Averages", "0"}
                                 << "Refused: 0 is outside 1..1024";
    QTest::newRow("set") << QStringList{"set", "/Setup/Acquisition/Averages", "32"} << "OK";
    QTest::newRow("get") << QStringList{"get", "/Setup/Acquisition/SampleRate"} << "48000 Hz";
    QTest::newRow("status") << QStringList{"status"} << "running";
    QTest::newRow("stop with a word too many") << QStringList{"stop", "now"} << "Parser Error: usage: stop";
    QTest::newRow("resetMinMax of a setting") << QStringList{"resetMinMax", "/Setup/Acquisition/Averages"}
                                              << "Parser Error: /Setup/Acquisition/Averages is not a result";
}

void tst_SimulatorModel::commandLanguageAnswers()
{
    QFETCH(QStringList, words);
    QFETCH(QString, answer);
    Instrument instrument;
    QCOMPARE(instrument.root->execute(words), answer);
}

void tst_SimulatorModel::commandsActOnTheElements()
{
    Instrument instrument;
    const auto command = [&](const QString &c, const QString &p1 = {}, const QString &p2 = {}) {
        return instrument.root->invoke("executeRemoteCommand", "sssss", {c, p1, p2, QString(), QString()})
            .values.value(0);
    };
    QCOMPARE(command("set", "/Setup/Acquisition/Averages", "64"), QVariant("OK"));
    QCOMPARE(instrument.value("/Setup/Acquisition/Averages", "getValue"), QVariant(64));
    QCOMPARE(command("set /Setup/Acquisition/TriggerMode", "Edge Rising"), QVariant("OK"));
    QCOMPARE(instrument.value("/Setup/Acquisition/TriggerMode", "getValue"), QVariant(1));
    QCOMPARE(command("default", "/Setup/Acquisition/Averages"), QVariant("OK"));
    QCOMPARE(instrument.value("/Setup/Acquisition/Averages", "getValue"), QVariant(16));
    QCOMPARE(command("stop"), QVariant("OK"));
    QCOMPARE(instrument.root->invoke("getMeasApplicationStatus", {}, {}).values, QVariantList{"idle"});
    QCOMPARE(command("start"), QVariant("OK"));
    QCOMPARE(instrument.root->status(), QStringLiteral("running"));
    instrument.engine->tick(10);
    QCOMPARE(command("resetMinMax"), QVariant("OK"));
    QCOMPARE(instrument.value("/Result/Counter/Events", "getMinValue"),
             instrument.value("/Result/Counter/Events", "getValue"));
}

void tst_SimulatorModel::badModelsAreRefusedNamingFileElementAndProblem_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("message");

    const auto one = [](const QByteArray &element) { return R"({"elements": [)" + element + "]}"; };
    QTest::newRow("not JSON") << QByteArray("{elements") << "m.json: not JSON: ";
    QTest::newRow("not an object") << QByteArray("[]") << "m.json: the model must be a JSON object";
    QTest::newRow("no elements") << QByteArray("{}") << "m.json: missing field \"elements\"";
    QTest::newRow("unknown kind") << one(R"({"path": "/A", "kind": "float", "default": 1})")
                                  << "m.json: element '/A': unknown kind \"float\"";
    QTest::newRow("a class name is no kind") << one(R"({"path": "/A", "kind": "SetupIntInterface", "default": 1})")
                                             << "m.json: element '/A': unknown kind \"SetupIntInterface\"";
    QTest::newRow("the root object's kind")
        << one(R"({"path": "/A", "kind": "command"})")
        << "m.json: element '/A': the kind \"command\" is the root object's, which the simulator serves at "
           "/MEAS_APPL_OBJ";
    QTest::newRow("missing field") << one(R"({"path": "/A", "kind": "int", "default": 1, "min": 0})")
                                   << "m.json: element '/A': missing field \"max\"";
    QTest::newRow("missing path") << one(R"({"kind": "int"})") << "m.json: element 0: missing field \"path\"";
    QTest::newRow("default outside range")
        << one(R"({"path": "/A", "kind": "int", "default": 11, "min": 0, "max": 10})")
        << "m.json: element '/A': default: 11 is outside 0..10";
    QTest::newRow("default off granularity")
        << one(R"({"path": "/A", "kind": "double", "default": 0.3, "min": 0, "max": 1, "granularity": 0.25})")
        << "m.json: element '/A': default: 0.3 is not a multiple of 0.25";
    QTest::newRow("field of the wrong type") << one(R"({"path": "/A", "kind": "bool", "default": "yes"})")
                                             << "m.json: element '/A': default must be true or false";
    QTest::newRow("default not a choice")
        << one(R"({"path": "/A", "kind": "enum", "default": "C", "choices": ["A", "B"]})")
        << "m.json: element '/A': default is not one of the choices";
    QTest::newRow("path used twice")
        << QByteArray(
               R"({"elements": [{"path": "/A", "kind": "bool", "default": true}, {"path": "/A", "kind": "bool", "default": true}]})")
        << "m.json: element '/A': the path is used twice";
    QTest::newRow("not an object path") << one(R"({"path": "A/B", "kind": "bool", "default": true})")
                                        << "m.json: element 'A/B': \"A/B\" is not a D-Bus object path";
    QTest::newRow("reserved path")
        << one(R"({"path": "/MEAS_APPL_OBJ", "kind": "bool", "default": true})")
        << "m.json: element '/MEAS_APPL_OBJ': the path /MEAS_APPL_OBJ belongs to the simulator";
    QTest::newRow("bad fault")
        << one(R"({"path": "/A", "kind": "bool", "default": true, "fault": {"kind": "explode"}})")
        << "m.json: element '/A': fault: no fault kind \"explode\" (delay, error, silent, drop, restart)";
    QTest::newRow("threshold location value out of range")
        << one(R"({"path": "/T", "kind": "thresholds", "elements": {"P": {"min": 0, "max": 1, "default": 0}},
                   "locations": [{"name": "L", "values": {"P": 2}}]})")
        << "m.json: element '/T': location \"L\", threshold \"P\": 2 is outside 0..1";
}

void tst_SimulatorModel::badModelsAreRefusedNamingFileElementAndProblem()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, message);
    QString error;
    QVERIFY(!loadModel(json, QStringLiteral("m.json"), &error));
    QVERIFY2(error.startsWith(message), qPrintable(error));
    if (!message.endsWith(QLatin1String(": ")))
        QCOMPARE(error, message);
}

void tst_SimulatorModel::aValidModelFileLoads()
{
    QString error;
    const auto model = loadModel(R"({"application": "Bench", "rate": 4, "elements": [
        {"path": "/Setup/Gain", "kind": "int", "default": 2, "min": 0, "max": 8, "granularity": 2,
         "fault": {"kind": "delay", "ms": 250}},
        {"path": "/Result/Level", "kind": "resultDouble", "center": 1, "spread": 0}]})",
                                 QStringLiteral("m.json"), &error);
    QVERIFY2(model, qPrintable(error));
    QCOMPARE(model->application, QStringLiteral("Bench"));
    QCOMPARE(model->rate, 4.0);
    QCOMPARE(int(model->elements.size()), 2);
    QCOMPARE(model->find("/Setup/Gain")->invoke("getGranularity", {}, {}).values, QVariantList{2});
    QCOMPARE(model->faults.size(), 1);
    QCOMPARE(model->faults.at(0).first, QStringLiteral("/Setup/Gain"));
    QCOMPARE(model->faults.at(0).second.delayMs, 250);
    QCOMPARE(model->childNodes("/"), (QStringList{"Setup", "Result"}));
    QCOMPARE(model->childNodes("/Setup"), QStringList{"Gain"});
}

QTEST_GUILESS_MAIN(tst_SimulatorModel)
#include "tst_simulatormodel.moc"
