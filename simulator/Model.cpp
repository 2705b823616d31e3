#include "Model.h"

#include "CollectionSetups.h"
#include "Results.h"
#include "SetupElements.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>

#include <cmath>

Element *Model::find(const QString &path) const
{
    for (const auto &element : elements) {
        if (element->path() == path)
            return element.get();
    }
    return nullptr;
}

QList<ResultElement *> Model::results() const
{
    QList<ResultElement *> found;
    for (const auto &element : elements) {
        if (auto *result = dynamic_cast<ResultElement *>(element.get()))
            found.append(result);
    }
    return found;
}

QStringList Model::childNodes(const QString &path) const
{
    const QString prefix = path == QLatin1String("/") ? path : path + QLatin1Char('/');
    QStringList children;
    for (const auto &element : elements) {
        const QString candidate = element->path();
        if (!candidate.startsWith(prefix) || candidate.size() == prefix.size())
            continue;
        const QString child = candidate.mid(prefix.size()).section(QLatin1Char('/'), 0, 0);
        if (!children.contains(child))
            children.append(child);
    }
    return children;
}

static void initResources()
{
    Q_INIT_RESOURCE(simulator);
}

QByteArray defaultModelJson()
{
    initResources();
    QFile file(QStringLiteral(":/simulator/default-model.json"));
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

namespace {

/// A problem in the model file; carries the text of the message.
struct ModelError
{
    QString problem;
};

/// Typed access to the fields of one JSON object, failing with the field's name.
class Fields
{
public:
    explicit Fields(const QJsonObject &object)
        : m_object(object)
    {
    }

    bool has(const QString &key) const { return m_object.contains(key); }

    QJsonValue required(const QString &key) const
    {
        if (!m_object.contains(key))
            throw ModelError{QStringLiteral("missing field \"%1\"").arg(key)};
        return m_object.value(key);
    }

    double number(const QString &key) const
    {
        const QJsonValue value = required(key);
        if (!value.isDouble())
            throw ModelError{QStringLiteral("field \"%1\" must be a number").arg(key)};
        return value.toDouble();
    }
    double number(const QString &key, double fallback) const { return has(key) ? number(key) : fallback; }

    int integer(const QString &key) const
    {
        const double value = number(key);
        if (value != std::floor(value) || std::fabs(value) > 2147483647.0)
            throw ModelError{QStringLiteral("field \"%1\" must be an integer").arg(key)};
        return int(value);
    }
    int integer(const QString &key, int fallback) const { return has(key) ? integer(key) : fallback; }

    QString text(const QString &key) const
    {
        const QJsonValue value = required(key);
        if (!value.isString())
            throw ModelError{QStringLiteral("field \"%1\" must be a text").arg(key)};
        return value.toString();
    }
    QString text(const QString &key, const QString &fallback) const { return has(key) ? text(key) : fallback; }

    bool flag(const QString &key, bool fallback) const
    {
        if (!has(key))
            return fallback;
        if (!m_object.value(key).isBool())
            throw ModelError{QStringLiteral("field \"%1\" must be true or false").arg(key)};
        return m_object.value(key).toBool();
    }

    QJsonArray array(const QString &key) const
    {
        const QJsonValue value = required(key);
        if (!value.isArray())
            throw ModelError{QStringLiteral("field \"%1\" must be an array").arg(key)};
        return value.toArray();
    }

    QJsonObject object(const QString &key) const
    {
        const QJsonValue value = required(key);
        if (!value.isObject())
            throw ModelError{QStringLiteral("field \"%1\" must be an object").arg(key)};
        return value.toObject();
    }

    QStringList texts(const QString &key) const
    {
        QStringList result;
        for (const QJsonValue &value : array(key)) {
            if (!value.isString())
                throw ModelError{QStringLiteral("field \"%1\" must hold texts only").arg(key)};
            result.append(value.toString());
        }
        return result;
    }

    /// A JSON scalar as the value the element holds: integral numbers of an int field as int.
    QVariant scalar(const QString &key) const
    {
        const QJsonValue value = required(key);
        if (value.isArray() || value.isObject() || value.isNull())
            throw ModelError{QStringLiteral("field \"%1\" must be a number, text or true/false").arg(key)};
        return Wire::fromJson(value);
    }

    NumericRange range(bool required) const
    {
        NumericRange range;
        if (!required && !has(QStringLiteral("min")) && !has(QStringLiteral("max")))
            return range;
        range.min = number(QStringLiteral("min"));
        range.max = number(QStringLiteral("max"));
        range.bounded = true;
        if (range.min > range.max)
            throw ModelError{QStringLiteral("min %1 is above max %2").arg(range.min).arg(range.max)};
        return range;
    }

private:
    QJsonObject m_object;
};

void check(const QString &refusal, const QString &what)
{
    if (!refusal.isEmpty())
        throw ModelError{QStringLiteral("%1: %2").arg(what, refusal)};
}

SetupElement::Common setupCommon(const QString &path, const Fields &fields, const QVariant &defaultValue)
{
    return {path, defaultValue, fields.flag(QStringLiteral("changeable"), true),
            fields.text(QStringLiteral("unit"), QString())};
}

QMap<QString, ItemRule> itemRules(const QJsonObject &items)
{
    QMap<QString, ItemRule> rules;
    for (auto it = items.constBegin(); it != items.constEnd(); ++it) {
        if (!it.value().isObject())
            throw ModelError{QStringLiteral("item \"%1\" must be an object").arg(it.key())};
        const Fields item(it.value().toObject());
        ItemRule rule;
        rule.range = item.range(false);
        rule.enums = item.has(QStringLiteral("enums")) ? item.texts(QStringLiteral("enums")) : QStringList();
        rule.unit = item.text(QStringLiteral("unit"), QString());
        rules.insert(it.key(), rule);
    }
    return rules;
}

Limits limits(const Fields &fields)
{
    Limits result;
    if (fields.has(QStringLiteral("lowerLimit")))
        result.lower = fields.scalar(QStringLiteral("lowerLimit"));
    if (fields.has(QStringLiteral("upperLimit")))
        result.upper = fields.scalar(QStringLiteral("upperLimit"));
    return result;
}

ValueSource valueSource(const Fields &fields, bool spreadRequired)
{
    ValueSource source;
    if (spreadRequired) {
        source.center = fields.number(QStringLiteral("center"));
        source.spread = fields.number(QStringLiteral("spread"));
        if (source.spread < 0)
            throw ModelError{QStringLiteral("spread must not be negative")};
    }
    source.decimals = fields.integer(QStringLiteral("decimals"), 3);
    return source;
}

Limits typedLimits(const Fields &fields, bool integers)
{
    Limits result = limits(fields);
    if (integers) {
        if (result.lower.isValid())
            result.lower = fields.integer(QStringLiteral("lowerLimit"));
        if (result.upper.isValid())
            result.upper = fields.integer(QStringLiteral("upperLimit"));
    } else {
        if (result.lower.isValid())
            result.lower = fields.number(QStringLiteral("lowerLimit"));
        if (result.upper.isValid())
            result.upper = fields.number(QStringLiteral("upperLimit"));
    }
    return result;
}

std::unique_ptr<Element> numberSetup(const QString &path, const Fields &fields, bool integer)
{
    NumericRange range = fields.range(true);
    range.granularity =
        integer ? fields.integer(QStringLiteral("granularity"), 1) : fields.number(QStringLiteral("granularity"), 0);
    if (range.granularity < 0)
        throw ModelError{QStringLiteral("granularity must not be negative")};
    const QVariant defaultValue = integer ? QVariant(fields.integer(QStringLiteral("default")))
                                          : QVariant(fields.number(QStringLiteral("default")));
    check(range.refusal(defaultValue.toDouble()), QStringLiteral("default"));
    return std::make_unique<NumberSetup>(setupCommon(path, fields, defaultValue), integer, range);
}

std::unique_ptr<Element> enumSetup(const QString &path, const Fields &fields)
{
    const QStringList choices = fields.texts(QStringLiteral("choices"));
    if (choices.isEmpty())
        throw ModelError{QStringLiteral("\"choices\" is empty")};
    const QJsonValue given = fields.required(QStringLiteral("default"));
    const int index = given.isString() ? choices.indexOf(given.toString()) : fields.integer(QStringLiteral("default"));
    if (index < 0 || index >= choices.size())
        throw ModelError{QStringLiteral("default is not one of the choices")};
    return std::make_unique<EnumSetup>(setupCommon(path, fields, index), choices);
}

std::unique_ptr<Element> arraySetup(const QString &path, const Fields &fields)
{
    const NumericRange range = fields.range(false);
    QVariantList defaults;
    for (const QJsonValue &value : fields.array(QStringLiteral("default"))) {
        if (!value.isDouble())
            throw ModelError{QStringLiteral("default must hold numbers only")};
        check(range.refusal(value.toDouble()), QStringLiteral("default"));
        defaults.append(value.toDouble());
    }
    if (defaults.isEmpty())
        throw ModelError{QStringLiteral("default is empty")};
    return std::make_unique<ArraySetup>(path, fields.flag(QStringLiteral("changeable"), true), defaults, range);
}

std::unique_ptr<Element> mapSetup(const QString &path, const Fields &fields)
{
    const QVariant base = fields.scalar(QStringLiteral("baseElement"));
    const QVariantMap defaults = Wire::fromJson(fields.object(QStringLiteral("default"))).toMap();
    for (auto it = defaults.cbegin(); it != defaults.cend(); ++it) {
        if (!Wire::sameFamily(base, it.value()))
            throw ModelError{QStringLiteral("default entry \"%1\" is not of the base element's type").arg(it.key())};
    }
    return std::make_unique<MapSetup>(path, fields.flag(QStringLiteral("changeable"), true), defaults, base);
}

void checkCells(const QMap<QString, ItemRule> &rules, const QVariantMap &cells, const QString &where)
{
    for (auto it = cells.cbegin(); it != cells.cend(); ++it) {
        if (!rules.contains(it.key()))
            throw ModelError{QStringLiteral("%1: no item \"%2\" in \"items\"").arg(where, it.key())};
        check(rules.value(it.key()).refusal(it.value()), QStringLiteral("%1, item \"%2\"").arg(where, it.key()));
    }
}

std::unique_ptr<Element> mapListSetup(const QString &path, const Fields &fields)
{
    const QString keyItem = fields.text(QStringLiteral("keyItem"));
    const QMap<QString, ItemRule> rules = itemRules(fields.object(QStringLiteral("items")));
    if (!rules.contains(keyItem))
        throw ModelError{QStringLiteral("keyItem \"%1\" is not in \"items\"").arg(keyItem)};
    QList<QVariantMap> defaults;
    for (const QJsonValue &value : fields.array(QStringLiteral("default"))) {
        if (!value.isObject())
            throw ModelError{QStringLiteral("default must hold objects only")};
        const QVariantMap entry = Wire::fromJson(value).toMap();
        const QString where = QStringLiteral("default entry %1").arg(defaults.size());
        if (!Wire::isText(entry.value(keyItem)))
            throw ModelError{QStringLiteral("%1 has no text \"%2\"").arg(where, keyItem)};
        checkCells(rules, entry, where);
        defaults.append(entry);
    }
    return std::make_unique<MapListSetup>(path, fields.flag(QStringLiteral("changeable"), true), keyItem, rules,
                                          defaults);
}

std::unique_ptr<Element> mapMapSetup(const QString &path, const Fields &fields)
{
    const QMap<QString, ItemRule> rules = itemRules(fields.object(QStringLiteral("items")));
    const QVariantMap base = Wire::fromJson(fields.object(QStringLiteral("baseElement"))).toMap();
    checkCells(rules, base, QStringLiteral("baseElement"));
    MapMapSetup::MapOfMaps defaults;
    const QJsonObject given = fields.object(QStringLiteral("default"));
    for (auto it = given.constBegin(); it != given.constEnd(); ++it) {
        if (!it.value().isObject())
            throw ModelError{QStringLiteral("default entry \"%1\" must be an object").arg(it.key())};
        const QVariantMap entry = Wire::fromJson(it.value()).toMap();
        checkCells(rules, entry, QStringLiteral("default entry \"%1\"").arg(it.key()));
        defaults.insert(it.key(), entry);
    }
    return std::make_unique<MapMapSetup>(path, fields.flag(QStringLiteral("changeable"), true), rules, base, defaults);
}

std::unique_ptr<Element> thresholdSetup(const QString &path, const Fields &fields)
{
    QMap<QString, ThresholdSetup::ThresholdElement> elements;
    const QJsonObject given = fields.object(QStringLiteral("elements"));
    for (auto it = given.constBegin(); it != given.constEnd(); ++it) {
        if (!it.value().isObject())
            throw ModelError{QStringLiteral("threshold \"%1\" must be an object").arg(it.key())};
        const Fields threshold(it.value().toObject());
        ThresholdSetup::ThresholdElement element;
        element.range = threshold.range(true);
        element.defaultValue = threshold.number(QStringLiteral("default"));
        element.attributes = threshold.integer(QStringLiteral("attributes"), 0);
        element.unit = threshold.text(QStringLiteral("unit"), QString());
        check(element.range.refusal(element.defaultValue), QStringLiteral("threshold \"%1\" default").arg(it.key()));
        elements.insert(it.key(), element);
    }
    QList<ThresholdSetup::Location> locations;
    for (const QJsonValue &value : fields.array(QStringLiteral("locations"))) {
        if (!value.isObject())
            throw ModelError{QStringLiteral("locations must hold objects only")};
        const Fields fieldsOfLocation(value.toObject());
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
            check(elements.value(it.key()).range.refusal(it.value().toDouble()), where);
            location.values.insert(it.key(), it.value().toDouble());
        }
        locations.append(location);
    }
    return std::make_unique<ThresholdSetup>(path, fields.flag(QStringLiteral("changeable"), true), elements, locations,
                                            fields.integer(QStringLiteral("maxNameLength"), 16),
                                            fields.integer(QStringLiteral("maxDescriptionLength"), 64));
}

std::unique_ptr<Element> storageListSetup(const QString &path, const Fields &fields)
{
    const QStringList orders = fields.texts(QStringLiteral("sortOrders"));
    const QString order = fields.text(QStringLiteral("sortOrder"));
    if (!orders.contains(order))
        throw ModelError{QStringLiteral("sortOrder \"%1\" is not one of \"sortOrders\"").arg(order)};
    return std::make_unique<StorageListSetup>(path, fields.texts(QStringLiteral("default")), orders, order);
}

std::unique_ptr<Element> scalarResult(const QString &path, const Fields &fields, ScalarResult::Type type)
{
    ValueSource source = valueSource(fields, type == ScalarResult::Int || type == ScalarResult::Double);
    Limits bounds;
    if (type == ScalarResult::Bool) {
        source.probability = fields.number(QStringLiteral("probability"));
        if (source.probability < 0 || source.probability > 1)
            throw ModelError{QStringLiteral("probability must lie in 0..1")};
        bounds.lower = fields.flag(QStringLiteral("lowerLimit"), false);
        bounds.upper = fields.flag(QStringLiteral("upperLimit"), true);
    } else if (type == ScalarResult::Enum) {
        source.choices = fields.texts(QStringLiteral("choices"));
        if (source.choices.isEmpty())
            throw ModelError{QStringLiteral("\"choices\" is empty")};
    } else {
        bounds = typedLimits(fields, type == ScalarResult::Int);
    }
    return std::make_unique<ScalarResult>(path, type, source, bounds, fields.text(QStringLiteral("unit"), QString()),
                                          fields.number(QStringLiteral("rate"), 0));
}

std::unique_ptr<Element> arrayResult(const QString &path, const Fields &fields, bool integers)
{
    const int size = fields.integer(QStringLiteral("size"));
    if (size <= 0)
        throw ModelError{QStringLiteral("size must be positive")};
    return std::make_unique<ArrayResult>(path, integers, size, valueSource(fields, true), typedLimits(fields, integers),
                                         fields.text(QStringLiteral("unit"), QString()),
                                         fields.number(QStringLiteral("rate"), 0));
}

std::unique_ptr<Element> makeElement(const QString &kind, const QString &path, const Fields &fields)
{
    const QString defaultKey = QStringLiteral("default");
    if (kind == QLatin1String("int"))
        return numberSetup(path, fields, true);
    if (kind == QLatin1String("double"))
        return numberSetup(path, fields, false);
    if (kind == QLatin1String("bool")) {
        if (!fields.required(defaultKey).isBool())
            throw ModelError{QStringLiteral("default must be true or false")};
        return std::make_unique<BoolSetup>(setupCommon(path, fields, fields.flag(defaultKey, false)));
    }
    if (kind == QLatin1String("string")) {
        const int maxLength = fields.integer(QStringLiteral("maxLength"), -1);
        const QString defaultValue = fields.text(defaultKey);
        if (maxLength >= 0 && defaultValue.size() > maxLength)
            throw ModelError{QStringLiteral("default is longer than maxLength %1").arg(maxLength)};
        return std::make_unique<StringSetup>(setupCommon(path, fields, defaultValue), maxLength);
    }
    if (kind == QLatin1String("enum"))
        return enumSetup(path, fields);
    if (kind == QLatin1String("devData"))
        return std::make_unique<DevDataSetup>(setupCommon(path, fields, fields.scalar(defaultKey)));
    if (kind == QLatin1String("array"))
        return arraySetup(path, fields);
    if (kind == QLatin1String("map"))
        return mapSetup(path, fields);
    if (kind == QLatin1String("mapList"))
        return mapListSetup(path, fields);
    if (kind == QLatin1String("mapMap"))
        return mapMapSetup(path, fields);
    if (kind == QLatin1String("thresholds"))
        return thresholdSetup(path, fields);
    if (kind == QLatin1String("storageList"))
        return storageListSetup(path, fields);
    if (kind == QLatin1String("resultInt"))
        return scalarResult(path, fields, ScalarResult::Int);
    if (kind == QLatin1String("resultDouble"))
        return scalarResult(path, fields, ScalarResult::Double);
    if (kind == QLatin1String("resultBool"))
        return scalarResult(path, fields, ScalarResult::Bool);
    if (kind == QLatin1String("resultEnum"))
        return scalarResult(path, fields, ScalarResult::Enum);
    if (kind == QLatin1String("resultIntArray"))
        return arrayResult(path, fields, true);
    if (kind == QLatin1String("resultVarArray"))
        return arrayResult(path, fields, false);
    throw ModelError{QStringLiteral("unknown kind \"%1\"").arg(kind)};
}

Fault modelFault(const Fields &fields)
{
    const Fields given(fields.object(QStringLiteral("fault")));
    const QString kind = given.text(QStringLiteral("kind"));
    QString argument;
    if (kind == QLatin1String("delay"))
        argument = QString::number(given.integer(QStringLiteral("ms")));
    else if (kind == QLatin1String("error"))
        argument =
            given.text(QStringLiteral("name")) + QLatin1Char(' ') + given.text(QStringLiteral("message"), QString());
    else if (kind == QLatin1String("drop"))
        argument = given.text(QStringLiteral("mode"), QStringLiteral("release"));
    Fault fault;
    QString why;
    if (!Fault::parse(kind, argument, &fault, &why))
        throw ModelError{QStringLiteral("fault: %1").arg(why)};
    return fault;
}

void checkPath(const QString &path, const QSet<QString> &seen)
{
    static const QRegularExpression objectPath(QStringLiteral("^(/[A-Za-z0-9_]+)+$"));
    if (!objectPath.match(path).hasMatch())
        throw ModelError{QStringLiteral("\"%1\" is not a D-Bus object path").arg(path)};
    for (const QString &reserved : {QStringLiteral("/MEAS_APPL_OBJ"), QStringLiteral("/Simulator")}) {
        if (path == reserved || path.startsWith(reserved + QLatin1Char('/')))
            throw ModelError{QStringLiteral("the path %1 belongs to the simulator").arg(reserved)};
    }
    if (seen.contains(path))
        throw ModelError{QStringLiteral("the path is used twice")};
}

} // namespace

std::unique_ptr<Model> loadModel(const QByteArray &json, const QString &fileName, QString *error)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        *error = QStringLiteral("%1: not JSON: %2 at offset %3")
                     .arg(fileName, parseError.errorString())
                     .arg(parseError.offset);
        return nullptr;
    }
    if (!document.isObject()) {
        *error = QStringLiteral("%1: the model must be a JSON object").arg(fileName);
        return nullptr;
    }
    auto model = std::make_unique<Model>();
    QString where;
    try {
        const Fields top(document.object());
        model->application = top.text(QStringLiteral("application"), model->application);
        model->rate = top.number(QStringLiteral("rate"), model->rate);
        if (model->rate <= 0)
            throw ModelError{QStringLiteral("rate must be positive")};
        model->running = top.flag(QStringLiteral("running"), true);
        QSet<QString> seen;
        const QJsonArray elements = top.array(QStringLiteral("elements"));
        for (int i = 0; i < elements.size(); ++i) {
            where = QStringLiteral("element %1").arg(i);
            if (!elements.at(i).isObject())
                throw ModelError{QStringLiteral("must be an object")};
            const Fields fields(elements.at(i).toObject());
            const QString path = fields.text(QStringLiteral("path"));
            where = QStringLiteral("element '%1'").arg(path);
            checkPath(path, seen);
            seen.insert(path);
            model->elements.push_back(makeElement(fields.text(QStringLiteral("kind")), path, fields));
            if (fields.has(QStringLiteral("fault")))
                model->faults.append({path, modelFault(fields)});
        }
    } catch (const ModelError &problem) {
        *error = where.isEmpty() ? QStringLiteral("%1: %2").arg(fileName, problem.problem)
                                 : QStringLiteral("%1: %2: %3").arg(fileName, where, problem.problem);
        return nullptr;
    }
    return model;
}
