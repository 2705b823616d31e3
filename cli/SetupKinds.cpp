// The adapters of the setting kinds.

#include "KindSupport.h"

#include "SetupArrayItemInterface.h"
#include "SetupBoolInterface.h"
#include "SetupDevDataInterface.h"
#include "SetupDoubleInterface.h"
#include "SetupEnumInterface.h"
#include "SetupIntInterface.h"
#include "SetupMapItemInterface.h"
#include "SetupMapListInterface.h"
#include "SetupMapMapItemInterface.h"
#include "SetupStringInterface.h"
#include "SetupThresholdManagerInterface.h"
#include "StorageElemsMapInterface.h"

#include <QJsonObject>

#include <type_traits>

namespace {

/// The value under each of @p keys, read one by one with @p valueOf, as one JSON object.
template<typename ValueOf>
QJsonObject readEntries(Reading &reading, const std::optional<QStringList> &keys, ValueOf &&valueOf)
{
    QJsonObject entries;
    for (const QString &key : keys.value_or(QStringList())) {
        if (const auto value = reading.value("getValue", [&] { return valueOf(key); }))
            entries.insert(key, Values::toJson(*value));
    }
    return entries;
}

/// Integer and real-number settings: value and text, limits, granularity.
template<class P, typename T>
class NumberSetupKind : public KindOf<P>
{
public:
    NumberSetupKind(const char *className, const char *shortName, const char *summary)
        : KindOf<P>(className, shortName, summary, {{QString()}, {QStringLiteral("NUMBER")}, {QString()}})
    {
        this->reads = {{"value", "getValue", &P::getValue}, {"text", "getString", &P::getString}};
        this->infos = {{"text", "getString", &P::getString},
                       {"min", "getMinValue", &P::getMinValue},
                       {"max", "getMaxValue", &P::getMaxValue},
                       {"granularity", "getGranularity", &P::getGranularity},
                       {"changeable", "isChangeable", &P::isChangeable}};
        this->relays = {{&P::setupChanged, "setupChanged"}};
        if constexpr (std::is_same<P, SetupDoubleInterface>::value)
            this->relays.push_back({&P::setupBoundsChanged, "setupBoundsChanged"});
    }

protected:
    Outcome write(P &p, const QStringList &args) const override
    {
        return this->setParsed(p, args.first(), parse(args.first()),
                               whole ? Expected::wholeNumber : Expected::realNumber);
    }

private:
    static constexpr bool whole = std::is_same<T, int>::value;

    static std::optional<T> parse(const QString &text)
    {
        if constexpr (whole)
            return Values::parseInt(text);
        else
            return Values::parseDouble(text);
    }
};

class BoolSetupKind : public KindOf<SetupBoolInterface>
{
public:
    using P = SetupBoolInterface;

    BoolSetupKind()
        : KindOf("SetupBoolInterface", "bool", "on/off setting",
                 {{QString()}, {QStringLiteral("true|false|1|0")}, {QString()}})
    {
        reads = {{"value", "getValue", &P::getValue}, {"text", "getString", &P::getString}};
        infos = {{"text", "getString", &P::getString}, {"changeable", "isChangeable", &P::isChangeable}};
        relays = {{&P::setupChanged, "setupChanged"}};
    }

protected:
    Outcome write(P &p, const QStringList &args) const override
    {
        return setParsed(p, args.first(), Values::parseBool(args.first()), QStringLiteral("true, false, 1 or 0"));
    }
};

class StringSetupKind : public KindOf<SetupStringInterface>
{
public:
    using P = SetupStringInterface;

    StringSetupKind()
        : KindOf("SetupStringInterface", "string", "text setting", {{QString()}, {QStringLiteral("TEXT")}, {QString()}})
    {
        reads = {{"value", "getValue", &P::getValue}};
        infos = {{"text", "getString", &P::getString}, {"changeable", "isChangeable", &P::isChangeable}};
        relays = {{&P::setupChanged, "setupChanged"}};
    }

protected:
    Outcome write(P &p, const QStringList &args) const override
    {
        return accepted(p, [&] { return p.setValue(args.first()); });
    }
};

class EnumSetupKind : public KindOf<SetupEnumInterface>
{
public:
    using P = SetupEnumInterface;

    EnumSetupKind()
        : KindOf("SetupEnumInterface", "enum", "choice from a list, by index or by text",
                 {{QString()}, {QStringLiteral("INDEX"), QStringLiteral("TEXT")}, {QString()}})
    {
        reads = {{"value", "getValue", &P::getValue}, {"text", "getString", &P::getString}};
        infos = {{"value", "getValue", &P::getValue},
                 {"text", "getString", &P::getString},
                 {"valueList", "getValueList", &P::getEnumValueList}};
        relays = {{&P::setupChanged, "setupChanged"}};
    }

protected:
    Outcome write(P &p, const QStringList &args) const override
    {
        // A whole number chooses by index, anything else by text.
        if (const auto index = Values::parseInt(args.first()))
            return accepted(p, [&] { return p.setValue(*index); });
        return accepted(p, [&] { return p.setValue(args.first()); });
    }
    Outcome describe(P &p, const QStringList &) const override
    {
        Reading reading(p);
        readFields(reading, p, infos);
        const auto quantity = reading.value("getQuantity", [&] { return p.getEnumQuantity(); });
        QJsonArray choices;
        for (int index = 0; quantity && index < *quantity; ++index) {
            if (const auto choice =
                    reading.value("getStringRepresentation", [&] { return p.getStringRepresentation(index); }))
                choices.append(*choice);
        }
        reading.add(QStringLiteral("choices"), choices);
        reading.field("changeable", "isChangeable", [&] { return p.isChangeable(); });
        return reading.outcome();
    }
};

class DevDataSetupKind : public KindOf<SetupDevDataInterface>
{
public:
    using P = SetupDevDataInterface;

    DevDataSetupKind()
        : KindOf("SetupDevDataInterface", "devdata", "device-specific setting of any type",
                 {{QString()}, {QStringLiteral("VALUE")}, {QString()}})
    {
        reads = {{"value", "getValue", &P::getValue}, {"text", "getString", &P::getString}};
        infos = {{"text", "getString", &P::getString}};
        relays = {{&P::setupChanged, "setupChanged"}};
    }

protected:
    Outcome write(P &p, const QStringList &args) const override
    {
        return setParsed(p, args.first(), Values::parseAny(args.first()),
                         QStringLiteral("a value (number, true/false, JSON or text)"));
    }
};

class ArraySetupKind : public KindOf<SetupArrayItemInterface>
{
public:
    using P = SetupArrayItemInterface;

    ArraySetupKind()
        : KindOf("SetupArrayItemInterface", "array", "array setting of values of any type",
                 {{QString(), QStringLiteral("START END")},
                  {QStringLiteral("JSON-ARRAY"), QStringLiteral("VALUE START END")},
                  {QString()}})
    {
        infos = {{"size", "size", &P::size},
                 {"text", "getString", &P::getString},
                 {"changeable", "isChangeable", &P::isChangeable}};
        relays = {{&P::setupChanged, "setupChanged"}};
    }

protected:
    Outcome read(P &p, const QStringList &args) const override
    {
        Reading reading(p);
        if (args.isEmpty()) {
            // The whole array: from the first to the last index.
            const auto size = reading.value("size", [&] { return p.size(); });
            if (size && *size == 0)
                reading.add(QStringLiteral("value"), QJsonArray());
            else if (size)
                reading.field("value", "getValue", [&] { return p.getValue(0, *size - 1); });
            reading.field("text", "getString", [&] { return p.getString(); });
            return reading.outcome();
        }
        const auto start = Values::parseInt(args.at(0));
        const auto end = Values::parseInt(args.at(1));
        if (!start || !end)
            return badValue(args.join(QLatin1Char(' ')), Expected::range);
        return reading.field("value", "getValue", [&] { return p.getValue(*start, *end); }).outcome();
    }
    Outcome write(P &p, const QStringList &args) const override
    {
        if (args.size() == 1)
            return setParsed(p, args.first(), Values::parseArray(args.first()), QStringLiteral("a JSON array"));
        const auto value = Values::parseAny(args.at(0));
        const auto start = Values::parseInt(args.at(1));
        const auto end = Values::parseInt(args.at(2));
        if (!value)
            return badValue(args.at(0), Expected::value);
        if (!start || !end)
            return badValue(args.mid(1).join(QLatin1Char(' ')), Expected::range);
        return accepted(p, [&] { return p.setValue(*value, *start, *end); });
    }
};

class MapSetupKind : public KindOf<SetupMapItemInterface>
{
public:
    using P = SetupMapItemInterface;

    MapSetupKind()
        : KindOf("SetupMapItemInterface", "map", "map setting: values of any type under keys",
                 {{QString(), QStringLiteral("KEY")}, {QStringLiteral("KEY VALUE")}, {QString()}})
    {
        infos = {{"size", "size", &P::size},
                 {"keys", "getAllKeys", &P::getAllKeys},
                 {"text", "getString", &P::getString},
                 {"changeable", "isChangeable", &P::isChangeable},
                 {"baseElement", "getBaseElement", &P::getBaseElement}};
        relays = {{&P::setupChanged, "setupChanged"}};
    }

protected:
    Outcome read(P &p, const QStringList &args) const override
    {
        Reading reading(p);
        if (args.size() == 1)
            return reading.field("value", "getValue", [&] { return p.getValue(args.first()); }).outcome();
        const auto keys = reading.value("getAllKeys", [&] { return p.getAllKeys(); });
        reading.add(QStringLiteral("value"),
                    readEntries(reading, keys, [&](const QString &key) { return p.getValue(key); }));
        return reading.outcome();
    }
    Outcome write(P &p, const QStringList &args) const override
    {
        const auto value = Values::parseAny(args.at(1));
        if (!value)
            return badValue(args.at(1), Expected::value);
        return accepted(p, [&] { return p.setValue(args.at(0), *value); });
    }
};

class MapListSetupKind : public KindOf<SetupMapListInterface>
{
public:
    using P = SetupMapListInterface;

    MapListSetupKind()
        : KindOf("SetupMapListInterface", "map-list", "ordered list of maps, by position",
                 {{QString(), QStringLiteral("POSITION"), QStringLiteral("POSITION ITEM")},
                  {QStringLiteral("NAME JSON-OBJECT"), QStringLiteral("POSITION ITEM VALUE")},
                  {QString(), QStringLiteral("POSITION ITEM")}})
    {
        infos = {{"size", "size", &P::size},
                 {"keys", "getAllKeys", &P::getAllKeys},
                 {"changeable", "isChangeable", &P::isChangeable}};
        relays = {{&P::setupChanged, "setupChanged"}, {&P::setupBoundsChanged, "setupBoundsChanged"}};
    }

protected:
    Outcome read(P &p, const QStringList &args) const override
    {
        Reading reading(p);
        if (args.isEmpty()) {
            const auto size = reading.value("size", [&] { return p.size(); });
            QJsonArray entries;
            for (int position = 0; size && position < *size; ++position) {
                if (const auto entry = reading.value("getValue", [&] { return p.getValue(position); }))
                    entries.append(Values::toJson(*entry));
            }
            reading.add(QStringLiteral("value"), entries);
            return reading.outcome();
        }
        const auto position = Values::parseInt(args.first());
        if (!position)
            return badValue(args.first(), Expected::position);
        if (args.size() == 1) {
            reading.field("value", "getValue", [&] { return p.getValue(*position); });
            reading.field("text", "getString", [&] { return p.getString(*position); });
            return reading.outcome();
        }
        const QString item = args.at(1);
        reading.field("value", "getValue", [&] { return p.getValue(*position, item); });
        reading.field("text", "getStringValue", [&] { return p.getStringValue(*position, item); });
        return reading.outcome();
    }
    Outcome write(P &p, const QStringList &args) const override
    {
        if (args.size() == 2) {
            const auto map = Values::parseObject(args.at(1));
            if (!map)
                return badValue(args.at(1), Expected::jsonObject);
            return accepted(p, [&] { return p.setValue(args.at(0), *map); });
        }
        const auto position = Values::parseInt(args.at(0));
        const auto value = Values::parseAny(args.at(2));
        if (!position)
            return badValue(args.at(0), Expected::position);
        if (!value)
            return badValue(args.at(2), Expected::value);
        return accepted(p, [&] { return p.setValue(*position, args.at(1), *value); });
    }
    Outcome describe(P &p, const QStringList &args) const override
    {
        if (args.isEmpty())
            return KindOf::describe(p, args);
        const auto position = Values::parseInt(args.first());
        if (!position)
            return badValue(args.first(), Expected::position);
        const QString item = args.at(1);
        Reading reading(p);
        reading.field("text", "getStringValue", [&] { return p.getStringValue(*position, item); });
        reading.fieldIfKnown("min", "getMin", [&] { return p.getMin(*position, item); });
        reading.fieldIfKnown("max", "getMax", [&] { return p.getMax(*position, item); });
        return reading.outcome();
    }
};

class MapMapSetupKind : public KindOf<SetupMapMapItemInterface>
{
public:
    using P = SetupMapMapItemInterface;

    MapMapSetupKind()
        : KindOf("SetupMapMapItemInterface", "map-map", "two-level map: entries of cells",
                 {{QString(), QStringLiteral("PRIMARY"), QStringLiteral("PRIMARY SECOND")},
                  {QStringLiteral("JSON-OBJECT-OF-OBJECTS"), QStringLiteral("PRIMARY JSON-OBJECT"),
                   QStringLiteral("PRIMARY SECOND VALUE")},
                  {QString(), QStringLiteral("PRIMARY"), QStringLiteral("PRIMARY SECOND")}})
    {
        infos = {{"size", "size", &P::size},
                 {"keys", "getAllKeys", &P::getAllKeys},
                 {"text", "getString", &P::getString},
                 {"changeable", "isChangeable", &P::isChangeable},
                 {"baseElement", "getBaseElement", &P::getBaseElement}};
        relays = {{&P::setupChanged, "setupChanged"},
                  {QOverload<QString, QString, QVariant, bool>::of(&P::setupChangedPart), "setupChangedPart"},
                  {&P::mapEntryRemoved, "mapEntryRemoved"},
                  {&P::setupBoundsChanged, "setupBoundsChanged"}};
    }

protected:
    Outcome read(P &p, const QStringList &args) const override
    {
        Reading reading(p);
        if (args.isEmpty()) {
            const auto keys = reading.value("getAllKeys", [&] { return p.getAllKeys(); });
            reading.add(QStringLiteral("value"),
                        readEntries(reading, keys, [&](const QString &key) { return p.getValue(key); }));
        } else if (args.size() == 1) {
            reading.field("value", "getValue", [&] { return p.getValue(args.at(0)); });
            reading.field("text", "getString", [&] { return p.getString(args.at(0)); });
        } else {
            reading.field("value", "getValue", [&] { return p.getValue(args.at(0), args.at(1)); });
            reading.field("text", "getStringValue", [&] { return p.getStringValue(args.at(0), args.at(1)); });
        }
        return reading.outcome();
    }
    Outcome write(P &p, const QStringList &args) const override
    {
        if (args.size() == 1)
            return setParsed(p, args.first(), Values::parseMapOfMaps(args.first()),
                             QStringLiteral("a JSON object of JSON objects"));
        if (args.size() == 2) {
            const auto map = Values::parseObject(args.at(1));
            if (!map)
                return badValue(args.at(1), Expected::jsonObject);
            return accepted(p, [&] { return p.setValue(args.at(0), *map); });
        }
        const auto value = Values::parseAny(args.at(2));
        if (!value)
            return badValue(args.at(2), Expected::value);
        return accepted(p, [&] { return p.setValue(args.at(0), args.at(1), *value); });
    }
    Outcome describe(P &p, const QStringList &args) const override
    {
        if (args.isEmpty())
            return KindOf::describe(p, args);
        Reading reading(p);
        if (args.size() == 1) {
            reading.field("keys", "getAllKeys", [&] { return p.getAllKeys(args.at(0)); });
            reading.field("text", "getString", [&] { return p.getString(args.at(0)); });
        } else {
            reading.field("text", "getStringValue", [&] { return p.getStringValue(args.at(0), args.at(1)); });
            reading.fieldIfKnown("min", "getMin", [&] { return p.getMin(args.at(0), args.at(1)); });
            reading.fieldIfKnown("max", "getMax", [&] { return p.getMax(args.at(0), args.at(1)); });
            reading.fieldIfKnown("enums", "getEnums", [&] { return p.getEnums(args.at(0), args.at(1)); });
        }
        return reading.outcome();
    }
};

class ThresholdSetupKind : public KindOf<SetupThresholdManagerInterface>
{
public:
    using P = SetupThresholdManagerInterface;

    ThresholdSetupKind()
        : KindOf(
              "SetupThresholdManagerInterface", "threshold", "threshold elements by key, in named locations",
              {{QString(), QStringLiteral("KEY")}, {QStringLiteral("KEY NUMBER")}, {QString(), QStringLiteral("KEY")}})
    {
        reads = {{"elements", "getAllThresholdElements", &P::getAllThresholdElements},
                 {"locations", "getLocationNames", &P::getLocationNames}};
        infos = {{"size", "size", &P::size},
                 {"changeable", "isChangeable", &P::isChangeable},
                 {"maxLocationNameLength", "getMaxLocationNameCharacterCount", &P::getMaxLocationNameCharacterCount},
                 {"maxLocationDescriptionLength", "getMaxLocationDescriptionCharacterCount",
                  &P::getMaxLocationDescriptionCharacterCount}};
        relays = {{&P::locationNameChanged, "locationNameChanged"},
                  {&P::locationsChanged, "locationsChanged"},
                  {QOverload<>::of(&P::setupChanged), "setupChanged"},
                  {QOverload<QString, double>::of(&P::setupChanged), "setupChanged"}};
    }

protected:
    Outcome read(P &p, const QStringList &args) const override
    {
        if (args.isEmpty())
            return KindOf::read(p, args);
        Reading reading(p);
        reading.field("value", "getValue", [&] { return p.getValue(args.first()); });
        reading.field("text", "getString", [&] { return p.getString(args.first()); });
        return reading.outcome();
    }
    Outcome write(P &p, const QStringList &args) const override
    {
        const auto value = Values::parseDouble(args.at(1));
        if (!value)
            return badValue(args.at(1), Expected::realNumber);
        return accepted(p, [&] { return p.setValue(args.at(0), *value); });
    }
    Outcome describe(P &p, const QStringList &args) const override
    {
        Reading reading(p);
        if (args.size() == 1) {
            const QString key = args.first();
            reading.field("value", "getValue", [&] { return p.getValue(key); });
            reading.field("text", "getString", [&] { return p.getString(key); });
            reading.field("min", "getMinValue", [&] { return p.getMinValue(key); });
            reading.field("max", "getMaxValue", [&] { return p.getMaxValue(key); });
            reading.field("attributes", "getAttributes", [&] { return p.getAttributes(key); });
            return reading.outcome();
        }
        readFields(reading, p, infos);
        reading.add(QStringLiteral("locations"), locations(reading, p));
        return reading.outcome();
    }

private:
    /// Each named location with its description, editability and elements.
    static QJsonArray locations(Reading &reading, P &p)
    {
        const auto names = reading.value("getLocationNames", [&] { return p.getLocationNames(); });
        QJsonArray locations;
        for (const QString &name : names.value_or(QStringList())) {
            const auto description =
                reading.value("getLocationDescription", [&] { return p.getLocationDescription(name); });
            const auto editable = reading.value("isLocationEditable", [&] { return p.isLocationEditable(name); });
            const auto elements = reading.value("getThresholdElementsForLocation",
                                                [&] { return p.getThresholdElementsForLocation(name); });
            if (reading.failed())
                break;
            locations.append(QJsonObject{{QStringLiteral("name"), name},
                                         {QStringLiteral("description"), *description},
                                         {QStringLiteral("editable"), *editable},
                                         {QStringLiteral("elements"), *elements}});
        }
        return locations;
    }
};

class StorageSetupKind : public KindOf<StorageElemsMapInterface>
{
public:
    using P = StorageElemsMapInterface;

    StorageSetupKind()
        : KindOf("StorageElemsMapInterface", "storage", "ordered list of stored elements and its sort order",
                 {{QString()}, {QStringLiteral("SORT-ORDER")}, {QString()}})
    {
        reads = {{"value", "getValues", &P::getValues}};
        infos = {{"count", "count", &P::count}, {"sortOrder", "getSortOrder", &P::getSortOrder}};
        relays = {{&P::setupChanged, "setupChanged"}, {&P::sortOrderChanged, "sortOrderChanged"}};
    }

protected:
    Outcome write(P &p, const QStringList &args) const override
    {
        return Reading(p).done("setSortOrder", [&] { return p.setSortOrder(args.first()); }).outcome();
    }
};

} // namespace

void addSetupKinds(KindList &kinds)
{
    kinds.push_back(
        std::make_unique<NumberSetupKind<SetupIntInterface, int>>("SetupIntInterface", "int", "integer setting"));
    kinds.push_back(std::make_unique<NumberSetupKind<SetupDoubleInterface, double>>("SetupDoubleInterface", "double",
                                                                                    "real-number setting"));
    kinds.push_back(std::make_unique<BoolSetupKind>());
    kinds.push_back(std::make_unique<StringSetupKind>());
    kinds.push_back(std::make_unique<EnumSetupKind>());
    kinds.push_back(std::make_unique<DevDataSetupKind>());
    kinds.push_back(std::make_unique<ArraySetupKind>());
    kinds.push_back(std::make_unique<MapSetupKind>());
    kinds.push_back(std::make_unique<MapListSetupKind>());
    kinds.push_back(std::make_unique<MapMapSetupKind>());
    kinds.push_back(std::make_unique<ThresholdSetupKind>());
    kinds.push_back(std::make_unique<StorageSetupKind>());
}
