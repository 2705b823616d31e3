#include "ModelFields.h"
#include "SettingElement.h"
#include "SimulatedKinds.h"
#include "Wire.h"

#include <QJsonDocument>

namespace {

/// Threshold values of named elements, grouped under named locations.
class ThresholdSetup : public SettingElement
{
public:
    struct ThresholdElement
    {
        NumericRange range;
        double defaultValue = 0;
        int attributes = 0;
        QString unit;
    };
    struct Location
    {
        QString name;
        QString description;
        bool editable = true;
        QMap<QString, double> values;
    };

    static Handlers handlers();

    ThresholdSetup(const Binding &binding, bool changeable, const QMap<QString, ThresholdElement> &elements,
                   const QList<Location> &locations, int maxNameLength, int maxDescriptionLength);

    void restoreDefault() override;

private:
    bool setValue(const QString &key, double value);
    bool createLocation(const QString &name, const QString &source);
    bool deleteLocation(const QString &name);
    bool renameLocation(const QString &name, const QString &newName);
    bool setDescription(const QString &name, const QString &description);
    int locationIndex(const QString &name) const;
    bool validName(const QString &name) const;
    /// Splits "location/element"; false if either part is unknown.
    bool resolve(const QString &key, int *location, QString *element) const;
    double valueAt(int location, const QString &element) const;
    QJsonObject locationObject(int location) const;
    Outcome withKey(const QVariantList &arguments, const std::function<Outcome(int, const QString &)> &read) const;

    QMap<QString, ThresholdElement> m_elements;
    QList<Location> m_locations;
    QList<Location> m_defaults;
    int m_maxNameLength;
    int m_maxDescriptionLength;
};

ThresholdSetup::ThresholdSetup(const Binding &binding, bool changeable, const QMap<QString, ThresholdElement> &elements,
                               const QList<Location> &locations, int maxNameLength, int maxDescriptionLength)
    : SettingElement(binding, changeable)
    , m_elements(elements)
    , m_locations(locations)
    , m_defaults(locations)
    , m_maxNameLength(maxNameLength)
    , m_maxDescriptionLength(maxDescriptionLength)
{
}

Handlers ThresholdSetup::handlers()
{
    const auto limit = [](bool minimum) {
        return [minimum](ThresholdSetup &setup, const QVariantList &a) {
            return setup.withKey(a, [&setup, minimum](int, const QString &element) {
                const NumericRange range = setup.m_elements.value(element).range;
                return Outcome::value(minimum ? range.min : range.max);
            });
        };
    };
    return HandlersOf<ThresholdSetup>()
        .method("setValue",
                [](ThresholdSetup &setup, const QVariantList &a) {
                    return Outcome::value(setup.setValue(a.at(0).toString(), a.at(1).toDouble()));
                })
        .method("getAllThresholdElements",
                [](ThresholdSetup &setup, const QVariantList &) {
                    QJsonObject all;
                    for (int i = 0; i < setup.m_locations.size(); ++i)
                        all.insert(setup.m_locations.at(i).name, setup.locationObject(i));
                    return Outcome::value(QString::fromUtf8(QJsonDocument(all).toJson(QJsonDocument::Compact)));
                })
        .method("getAttributes",
                [](ThresholdSetup &setup, const QVariantList &a) {
                    return setup.withKey(a, [&setup](int, const QString &element) {
                        return Outcome::value(setup.m_elements.value(element).attributes);
                    });
                })
        .method(
            "getMaxLocationDescriptionCharacterCount",
            [](ThresholdSetup &setup, const QVariantList &) { return Outcome::value(setup.m_maxDescriptionLength); })
        .method("getMaxLocationNameCharacterCount",
                [](ThresholdSetup &setup, const QVariantList &) { return Outcome::value(setup.m_maxNameLength); })
        .method("getMinValue", limit(true))
        .method("getMaxValue", limit(false))
        .method("getThresholdElementsForLocation",
                [](ThresholdSetup &setup, const QVariantList &a) {
                    const int location = setup.locationIndex(a.at(0).toString());
                    if (location < 0)
                        return Outcome::unknownKey(QStringLiteral("location \"%1\"").arg(a.at(0).toString()));
                    return Outcome::value(QString::fromUtf8(
                        QJsonDocument(setup.locationObject(location)).toJson(QJsonDocument::Compact)));
                })
        .method("getValue",
                [](ThresholdSetup &setup, const QVariantList &a) {
                    return setup.withKey(a, [&setup](int location, const QString &element) {
                        return Outcome::value(setup.valueAt(location, element));
                    });
                })
        .method("getString",
                [](ThresholdSetup &setup, const QVariantList &a) {
                    return setup.withKey(a, [&setup](int location, const QString &element) {
                        return Outcome::value(
                            Wire::text(setup.valueAt(location, element), setup.m_elements.value(element).unit));
                    });
                })
        .method("getLocationNames",
                [](ThresholdSetup &setup, const QVariantList &) {
                    QStringList names;
                    for (const Location &location : setup.m_locations)
                        names.append(location.name);
                    return Outcome::value(names);
                })
        .method("getLocationDescription",
                [](ThresholdSetup &setup, const QVariantList &a) {
                    const int location = setup.locationIndex(a.at(0).toString());
                    if (location < 0)
                        return Outcome::unknownKey(QStringLiteral("location \"%1\"").arg(a.at(0).toString()));
                    return Outcome::value(setup.m_locations.at(location).description);
                })
        .method("isLocationEditable",
                [](ThresholdSetup &setup, const QVariantList &a) {
                    const int location = setup.locationIndex(a.at(0).toString());
                    return Outcome::value(setup.isChangeable() && location >= 0 &&
                                          setup.m_locations.at(location).editable);
                })
        .method("size",
                [](ThresholdSetup &setup, const QVariantList &) {
                    return Outcome::value(int(setup.m_locations.size() * setup.m_elements.size()));
                })
        .method("setLocationDescription",
                [](ThresholdSetup &setup, const QVariantList &a) {
                    return Outcome::value(setup.setDescription(a.at(0).toString(), a.at(1).toString()));
                })
        .method("createLocation",
                [](ThresholdSetup &setup, const QVariantList &a) {
                    return Outcome::value(setup.createLocation(a.at(0).toString(), a.at(1).toString()));
                })
        .method("deleteLocation",
                [](ThresholdSetup &setup, const QVariantList &a) {
                    return Outcome::value(setup.deleteLocation(a.at(0).toString()));
                })
        .method("renameLocation",
                [](ThresholdSetup &setup, const QVariantList &a) {
                    return Outcome::value(setup.renameLocation(a.at(0).toString(), a.at(1).toString()));
                })
        .with(changeableHandler())
        .with(defaultHandler())
        .busSignal("locationNameChanged",
                   [](const ThresholdSetup &setup) {
                       const QString name =
                           setup.m_locations.isEmpty() ? QString() : setup.m_locations.constLast().name;
                       return QVariantList{name, name};
                   })
        .busSignal("locationsChanged", [](const ThresholdSetup &) { return QVariantList(); })
        .busSignal("setupChanged", "", [](const ThresholdSetup &) { return QVariantList(); })
        .busSignal("setupChanged", "sd", [](const ThresholdSetup &setup) {
            if (setup.m_locations.isEmpty() || setup.m_elements.isEmpty())
                return QVariantList{QString(), 0.0};
            const QString element = setup.m_elements.firstKey();
            return QVariantList{setup.m_locations.constFirst().name + QLatin1Char('/') + element,
                                setup.valueAt(0, element)};
        });
}

Outcome ThresholdSetup::withKey(const QVariantList &arguments,
                                const std::function<Outcome(int, const QString &)> &read) const
{
    int location = -1;
    QString element;
    if (!resolve(arguments.at(0).toString(), &location, &element))
        return Outcome::unknownKey(
            QStringLiteral("threshold \"%1\" (keys are \"<location>/<element>\")").arg(arguments.at(0).toString()));
    return read(location, element);
}

bool ThresholdSetup::resolve(const QString &key, int *location, QString *element) const
{
    const int slash = key.lastIndexOf(QLatin1Char('/'));
    if (slash < 0)
        return false;
    *location = locationIndex(key.left(slash));
    *element = key.mid(slash + 1);
    return *location >= 0 && m_elements.contains(*element);
}

int ThresholdSetup::locationIndex(const QString &name) const
{
    for (int i = 0; i < m_locations.size(); ++i) {
        if (m_locations.at(i).name == name)
            return i;
    }
    return -1;
}

double ThresholdSetup::valueAt(int location, const QString &element) const
{
    return m_locations.at(location).values.value(element, m_elements.value(element).defaultValue);
}

QJsonObject ThresholdSetup::locationObject(int location) const
{
    QJsonObject object;
    for (auto it = m_elements.cbegin(); it != m_elements.cend(); ++it)
        object.insert(it.key(), valueAt(location, it.key()));
    return object;
}

bool ThresholdSetup::validName(const QString &name) const
{
    return !name.isEmpty() && name.size() <= m_maxNameLength && !name.contains(QLatin1Char('/')) &&
        locationIndex(name) < 0;
}

bool ThresholdSetup::setValue(const QString &key, double value)
{
    int location = -1;
    QString element;
    if (!isChangeable() || !resolve(key, &location, &element) || !m_locations.at(location).editable ||
        !m_elements.value(element).range.refusal(value).isEmpty())
        return false;
    if (valueAt(location, element) == value)
        return true;
    m_locations[location].values.insert(element, value);
    emitSignal(changedSignal, {key, value});
    return true;
}

bool ThresholdSetup::createLocation(const QString &name, const QString &source)
{
    const int from = locationIndex(source);
    if (!isChangeable() || from < 0 || !validName(name))
        return false;
    Location location;
    location.name = name;
    for (auto it = m_elements.cbegin(); it != m_elements.cend(); ++it)
        location.values.insert(it.key(), valueAt(from, it.key()));
    m_locations.append(location);
    emitSignal(QStringLiteral("locationsChanged"), {});
    return true;
}

bool ThresholdSetup::deleteLocation(const QString &name)
{
    const int location = locationIndex(name);
    if (!isChangeable() || location < 0 || !m_locations.at(location).editable)
        return false;
    m_locations.removeAt(location);
    emitSignal(QStringLiteral("locationsChanged"), {});
    return true;
}

bool ThresholdSetup::renameLocation(const QString &name, const QString &newName)
{
    const int location = locationIndex(name);
    if (!isChangeable() || location < 0 || !m_locations.at(location).editable || !validName(newName))
        return false;
    m_locations[location].name = newName;
    emitSignal(QStringLiteral("locationNameChanged"), {name, newName});
    emitSignal(QStringLiteral("locationsChanged"), {});
    return true;
}

bool ThresholdSetup::setDescription(const QString &name, const QString &description)
{
    const int location = locationIndex(name);
    if (!isChangeable() || location < 0 || !m_locations.at(location).editable ||
        description.size() > m_maxDescriptionLength)
        return false;
    if (m_locations.at(location).description != description) {
        m_locations[location].description = description;
        emitSignal(QStringLiteral("locationsChanged"), {});
    }
    return true;
}

void ThresholdSetup::restoreDefault()
{
    m_locations = m_defaults;
    emitSignal(QStringLiteral("locationsChanged"), {});
    emitSignal(changedSignal, {});
}

std::unique_ptr<Element> read(const Element::Binding &binding, const ModelFields &fields)
{
    QMap<QString, ThresholdSetup::ThresholdElement> elements;
    const QJsonObject given = fields.object(QStringLiteral("elements"));
    for (auto it = given.constBegin(); it != given.constEnd(); ++it) {
        if (!it.value().isObject())
            throw ModelError{QStringLiteral("threshold \"%1\" must be an object").arg(it.key())};
        const ModelFields threshold(it.value().toObject());
        ThresholdSetup::ThresholdElement element;
        element.range = threshold.range(true);
        element.defaultValue = threshold.number(QStringLiteral("default"));
        element.attributes = threshold.integer(QStringLiteral("attributes"), 0);
        element.unit = threshold.text(QStringLiteral("unit"), QString());
        ModelFields::check(element.range.refusal(element.defaultValue),
                           QStringLiteral("threshold \"%1\" default").arg(it.key()));
        threshold.refuseUnread(QStringLiteral("threshold \"%1\"").arg(it.key()));
        elements.insert(it.key(), element);
    }
    QList<ThresholdSetup::Location> locations;
    for (const QJsonValue &value : fields.array(QStringLiteral("locations"))) {
        if (!value.isObject())
            throw ModelError{QStringLiteral("locations must hold objects only")};
        const ModelFields fieldsOfLocation(value.toObject());
        ThresholdSetup::Location location;
        location.name = fieldsOfLocation.text(QStringLiteral("name"));
        location.description = fieldsOfLocation.text(QStringLiteral("description"), QString());
        location.editable = fieldsOfLocation.flag(QStringLiteral("editable"), true);
        const QJsonObject values = fieldsOfLocation.has(QStringLiteral("values"))
            ? fieldsOfLocation.object(QStringLiteral("values"))
            : QJsonObject();
        for (auto it = values.constBegin(); it != values.constEnd(); ++it) {
            const QString where = QStringLiteral("location \"%1\", threshold \"%2\"").arg(location.name, it.key());
            if (!elements.contains(it.key()))
                throw ModelError{QStringLiteral("%1: no such threshold").arg(where)};
            if (!it.value().isDouble())
                throw ModelError{QStringLiteral("%1: must be a number").arg(where)};
            ModelFields::check(elements.value(it.key()).range.refusal(it.value().toDouble()), where);
            location.values.insert(it.key(), it.value().toDouble());
        }
        fieldsOfLocation.refuseUnread(QStringLiteral("location \"%1\"").arg(location.name));
        locations.append(location);
    }
    return std::make_unique<ThresholdSetup>(binding, fields.flag(QStringLiteral("changeable"), true), elements,
                                            locations, fields.integer(QStringLiteral("maxNameLength"), 16),
                                            fields.integer(QStringLiteral("maxDescriptionLength"), 64));
}

} // namespace

void registerSetupThresholdManagerInterface(SimulatedKinds &registry)
{
    registry.add(QStringLiteral("SetupThresholdManagerInterface"), ThresholdSetup::handlers(), read);
}
