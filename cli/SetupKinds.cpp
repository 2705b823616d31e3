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

const QString wholeNumber = QStringLiteral("a whole number");
const QString realNumber = QStringLiteral("a real number");

/// Integer and real-number settings: value and text, limits, granularity.
template<class P, typename T>
class NumberSetupKind : public KindOf<P>
{
public:
    NumberSetupKind(const char *className, const char *shortName, const char *summary)
        : KindOf<P>(className, shortName, summary, {{QString()}, {QStringLiteral("NUMBER")}, {QString()}})
    {
    }

protected:
    Outcome read(P &p, const QStringList &args) const override
    {
        if (!args.isEmpty())
            return this->usageOfGet();
        Reading reading(p);
        reading.field("value", "getValue", [&] { return p.getValue(); });
        reading.field("text", "getString", [&] { return p.getString(); });
        return reading.outcome();
    }
    Outcome write(P &p, const QStringList &args) const override
    {
        if (args.size() != 1)
            return this->usageOfSet();
        const auto value = parse(args.first());
        if (!value)
            return ElementKind::badValue(args.first(), std::is_same<T, int>::value ? wholeNumber : realNumber);
        return Reading(p).accepted("setValue", [&] { return p.setValue(*value); }).outcome();
    }
    Outcome describe(P &p, const QStringList &args) const override
    {
        if (!args.isEmpty())
            return this->usageOfInfo();
        Reading reading(p);
        reading.field("text", "getString", [&] { return p.getString(); });
        reading.field("min", "getMinValue", [&] { return p.getMinValue(); });
        reading.field("max", "getMaxValue", [&] { return p.getMaxValue(); });
        reading.field("granularity", "getGranularity", [&] { return p.getGranularity(); });
        reading.field("changeable", "isChangeable", [&] { return p.isChangeable(); });
        return reading.outcome();
    }
    int relay(P &p, const SignalSink &sink) const override
    {
        relaySignal(p, &P::setupChanged, "setupChanged", sink);
        if constexpr (std::is_same<P, SetupDoubleInterface>::value) {
            relaySignal(p, &P::setupBoundsChanged, "setupBoundsChanged", sink);
            return 2;
        }
        return 1;
    }

private:
    static std::optional<T> parse(const QString &text)
    {
        if constexpr (std::is_same<T, int>::value)
            return Values::parseInt(text);
        else
            return Values::parseDouble(text);
    }
};

class BoolSetupKind : public KindOf<SetupBoolInterface>
{
public:
    BoolSetupKind()
        : KindOf("SetupBoolInterface", "bool", "on/off setting",
                 {{QString()}, {QStringLiteral("true|false|1|0")}, {QString()}})
    {
    }

protected:
    Outcome read(SetupBoolInterface &p, const QStringList &args) const override
    {
        if (!args.isEmpty())
            return usageOfGet();
        Reading reading(p);
        reading.field("value", "getValue", [&] { return p.getValue(); });
        reading.field("text", "getString", [&] { return p.getString(); });
        return reading.outcome();
    }
    Outcome write(SetupBoolInterface &p, const QStringList &args) const override
    {
        if (args.size() != 1)
            return usageOfSet();
        const auto value = Values::parseBool(args.first());
        if (!value)
            return badValue(args.first(), QStringLiteral("true, false, 1 or 0"));
        return Reading(p).accepted("setValue", [&] { return p.setValue(*value); }).outcome();
    }
    Outcome describe(SetupBoolInterface &p, const QStringList &args) const override
    {
        if (!args.isEmpty())
            return usageOfInfo();
        Reading reading(p);
        reading.field("text", "getString", [&] { return p.getString(); });
        reading.field("changeable", "isChangeable", [&] { return p.isChangeable(); });
        return reading.outcome();
    }
    int relay(SetupBoolInterface &p, const SignalSink &sink) const override
    {
        relaySignal(p, &SetupBoolInterface::setupChanged, "setupChanged", sink);
        return 1;
    }
};

class StringSetupKind : public KindOf<SetupStringInterface>
{
public:
    StringSetupKind()
        : KindOf("SetupStringInterface", "string", "text setting", {{QString()}, {QStringLiteral("TEXT")}, {QString()}})
    {
    }

protected:
    Outcome read(SetupStringInterface &p, const QStringList &args) const override
    {
        if (!args.isEmpty())
            return usageOfGet();
        return Reading(p).field("value", "getValue", [&] { return p.getValue(); }).outcome();
    }
    Outcome write(SetupStringInterface &p, const QStringList &args) const override
    {
        if (args.size() != 1)
            return usageOfSet();
        return Reading(p).accepted("setValue", [&] { return p.setValue(args.first()); }).outcome();
    }
    Outcome describe(SetupStringInterface &p, const QStringList &args) const override
    {
        if (!args.isEmpty())
            return usageOfInfo();
        Reading reading(p);
        reading.field("text", "getString", [&] { return p.getString(); });
        reading.field("changeable", "isChangeable", [&] { return p.isChangeable(); });
        return reading.outcome();
    }
    int relay(SetupStringInterface &p, const SignalSink &sink) const override
    {
        relaySignal(p, &SetupStringInterface::setupChanged, "setupChanged", sink);
        return 1;
    }
};

class EnumSetupKind : public KindOf<SetupEnumInterface>
{
public:
    EnumSetupKind()
        : KindOf("SetupEnumInterface", "enum", "choice from a list, by index or by text",
                 {{QString()}, {QStringLiteral("INDEX"), QStringLiteral("TEXT")}, {QString()}})
    {
    }

protected:
    Outcome read(SetupEnumInterface &p, const QStringList &args) const override
    {
        if (!args.isEmpty())
            return usageOfGet();
        Reading reading(p);
        reading.field("value", "getValue", [&] { return p.getValue(); });
        reading.field("text", "getString", [&] { return p.getString(); });
        return reading.outcome();
    }
    Outcome write(SetupEnumInterface &p, const QStringList &args) const override
    {
        if (args.size() != 1)
            return usageOfSet();
        // A whole number chooses by index, anything else by text.
        if (const auto index = Values::parseInt(args.first()))
            return Reading(p).accepted("setValue", [&] { return p.setValue(*index); }).outcome();
        return Reading(p).accepted("setValue", [&] { return p.setValue(args.first()); }).outcome();
    }
    Outcome describe(SetupEnumInterface &p, const QStringList &args) const override
    {
        if (!args.isEmpty())
            return usageOfInfo();
        Reading reading(p);
        reading.field("value", "getValue", [&] { return p.getValue(); });
        reading.field("text", "getString", [&] { return p.getString(); });
        reading.field("valueList", "getValueList", [&] { return p.getEnumValueList(); });
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
    int relay(SetupEnumInterface &p, const SignalSink &sink) const override
    {
        relaySignal(p, &SetupEnumInterface::setupChanged, "setupChanged", sink);
        return 1;
    }
};

class DevDataSetupKind : public KindOf<SetupDevDataInterface>
{
public:
    DevDataSetupKind()
        : KindOf("SetupDevDataInterface", "devdata", "device-specific setting of any type",
                 {{QString()}, {QStringLiteral("VALUE")}, {QString()}})
    {
    }

protected:
    Outcome read(SetupDevDataInterface &p, const QStringList &args) const override
    {
        if (!args.isEmpty())
            return usageOfGet();
        Reading reading(p);
        reading.field("value", "getValue", [&] { return p.getValue(); });
        reading.field("text", "getString", [&] { return p.getString(); });
        return reading.outcome();
    }
    Outcome write(SetupDevDataInterface &p, const QStringList &args) const override
    {
        if (args.size() != 1)
            return usageOfSet();
        const auto value = Values::parseAny(args.first());
        if (!value)
            return badValue(args.first(), QStringLiteral("a value (number, true/false, JSON or text)"));
        return Reading(p).accepted("setValue", [&] { return p.setValue(*value); }).outcome();
    }
    Outcome describe(SetupDevDataInterface &p, const QStringList &args) const override
    {
        if (!args.isEmpty())
            return usageOfInfo();
        return Reading(p).field("text", "getString", [&] { return p.getString(); }).outcome();
    }
    int relay(SetupDevDataInterface &p, const SignalSink &sink) const override
    {
        relaySignal(p, &SetupDevDataInterface::setupChanged, "setupChanged", sink);
        return 1;
    }
};

class ArraySetupKind : public KindOf<SetupArrayItemInterface>
{
public:
    ArraySetupKind()
        : KindOf("SetupArrayItemInterface", "array", "array setting of values of any type",
                 {{QString(), QStringLiteral("START END")},
                  {QStringLiteral("JSON-ARRAY"), QStringLiteral("VALUE START END")},
                  {QString()}})
    {
    }

protected:
    Outcome read(SetupArrayItemInterface &p, const QStringList &args) const override
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
        if (args.size() != 2)
            return usageOfGet();
        const auto start = Values::parseInt(args.at(0));
        const auto end = Values::parseInt(args.at(1));
        if (!start || !end)
            return badValue(args.join(QLatin1Char(' ')), QStringLiteral("a range START END of whole numbers"));
        return reading.field("value", "getValue", [&] { return p.getValue(*start, *end); }).outcome();
    }
    Outcome write(SetupArrayItemInterface &p, const QStringList &args) const override
    {
        if (args.size() == 1) {
            const auto list = Values::parseArray(args.first());
            if (!list)
                return badValue(args.first(), QStringLiteral("a JSON array"));
            return Reading(p).accepted("setValue", [&] { return p.setValue(*list); }).outcome();
        }
        if (args.size() != 3)
            return usageOfSet();
        const auto value = Values::parseAny(args.at(0));
        const auto start = Values::parseInt(args.at(1));
        const auto end = Values::parseInt(args.at(2));
        if (!value)
            return badValue(args.at(0), QStringLiteral("a value"));
        if (!start || !end)
            return badValue(args.mid(1).join(QLatin1Char(' ')), QStringLiteral("a range START END of whole numbers"));
        return Reading(p).accepted("setValue", [&] { return p.setValue(*value, *start, *end); }).outcome();
    }
    Outcome describe(SetupArrayItemInterface &p, const QStringList &args) const override
    {
        if (!args.isEmpty())
            return usageOfInfo();
        Reading reading(p);
        reading.field("size", "size", [&] { return p.size(); });
        reading.field("text", "getString", [&] { return p.getString(); });
        reading.field("changeable", "isChangeable", [&] { return p.isChangeable(); });
        return reading.outcome();
    }
    int relay(SetupArrayItemInterface &p, const SignalSink &sink) const override
    {
        relaySignal(p, &SetupArrayItemInterface::setupChanged, "setupChanged", sink);
        return 1;
    }
};

class MapSetupKind : public KindOf<SetupMapItemInterface>
{
public:
    MapSetupKind()
        : KindOf("SetupMapItemInterface", "map", "map setting: values of any type under keys",
                 {{QString(), QStringLiteral("KEY")}, {QStringLiteral("KEY VALUE")}, {QString()}})
    {
    }

protected:
    Outcome read(SetupMapItemInterface &p, const QStringList &args) const override
    {
        Reading reading(p);
        if (args.size() == 1)
            return reading.field("value", "getValue", [&] { return p.getValue(args.first()); }).outcome();
        if (!args.isEmpty())
            return usageOfGet();
        const auto keys = reading.value("getAllKeys", [&] { return p.getAllKeys(); });
        QJsonObject entries;
        for (const QString &key : keys.value_or(QStringList())) {
            if (const auto value = reading.value("getValue", [&] { return p.getValue(key); }))
                entries.insert(key, Values::toJson(*value));
        }
        reading.add(QStringLiteral("value"), entries);
        return reading.outcome();
    }
    Outcome write(SetupMapItemInterface &p, const QStringList &args) const override
    {
        if (args.size() != 2)
            return usageOfSet();
        const auto value = Values::parseAny(args.at(1));
        if (!value)
            return badValue(args.at(1), QStringLiteral("a value"));
        return Reading(p).accepted("setValue", [&] { return p.setValue(args.at(0), *value); }).outcome();
    }
    Outcome describe(SetupMapItemInterface &p, const QStringList &args) const override
    {
        if (!args.isEmpty())
            return usageOfInfo();
        Reading reading(p);
        reading.field("size", "size", [&] { return p.size(); });
        reading.field("keys", "getAllKeys", [&] { return p.getAllKeys(); });
        reading.field("text", "getString", [&] { return p.getString(); });
        reading.field("changeable", "isChangeable", [&] { return p.isChangeable(); });
        reading.field("baseElement", "getBaseElement", [&] { return p.getBaseElement(); });
        return reading.outcome();
    }
    int relay(SetupMapItemInterface &p, const SignalSink &sink) const override
    {
        relaySignal(p, &SetupMapItemInterface::setupChanged, "setupChanged", sink);
        return 1;
    }
};

class MapListSetupKind : public KindOf<SetupMapListInterface>
{
public:
    MapListSetupKind()
        : KindOf("SetupMapListInterface", "map-list", "ordered list of maps, by position",
                 {{QString(), QStringLiteral("POSITION"), QStringLiteral("POSITION ITEM")},
                  {QStringLiteral("NAME JSON-OBJECT"), QStringLiteral("POSITION ITEM VALUE")},
                  {QString(), QStringLiteral("POSITION ITEM")}})
    {
    }

protected:
    Outcome read(SetupMapListInterface &p, const QStringList &args) const override
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
            return badValue(args.first(), QStringLiteral("a position (whole number)"));
        if (args.size() == 1) {
            reading.field("value", "getValue", [&] { return p.getValue(*position); });
            reading.field("text", "getString", [&] { return p.getString(*position); });
            return reading.outcome();
        }
        if (args.size() != 2)
            return usageOfGet();
        const QString item = args.at(1);
        reading.field("value", "getValue", [&] { return p.getValue(*position, item); });
        reading.field("text", "getStringValue", [&] { return p.getStringValue(*position, item); });
        return reading.outcome();
    }
    Outcome write(SetupMapListInterface &p, const QStringList &args) const override
    {
        if (args.size() == 2) {
            const auto map = Values::parseObject(args.at(1));
            if (!map)
                return badValue(args.at(1), QStringLiteral("a JSON object"));
            return Reading(p).accepted("setValue", [&] { return p.setValue(args.at(0), *map); }).outcome();
        }
        if (args.size() != 3)
            return usageOfSet();
        const auto position = Values::parseInt(args.at(0));
        const auto value = Values::parseAny(args.at(2));
        if (!position)
            return badValue(args.at(0), QStringLiteral("a position (whole number)"));
        if (!value)
            return badValue(args.at(2), QStringLiteral("a value"));
        return Reading(p).accepted("setValue", [&] { return p.setValue(*position, args.at(1), *value); }).outcome();
    }
    Outcome describe(SetupMapListInterface &p, const QStringList &args) const override
    {
        Reading reading(p);
        if (args.isEmpty()) {
            reading.field("size", "size", [&] { return p.size(); });
            reading.field("keys", "getAllKeys", [&] { return p.getAllKeys(); });
            reading.field("changeable", "isChangeable", [&] { return p.isChangeable(); });
            return reading.outcome();
        }
        if (args.size() != 2)
            return usageOfInfo();
        const auto position = Values::parseInt(args.first());
        if (!position)
            return badValue(args.first(), QStringLiteral("a position (whole number)"));
        const QString item = args.at(1);
        reading.field("text", "getStringValue", [&] { return p.getStringValue(*position, item); });
        reading.fieldIfKnown("min", "getMin", [&] { return p.getMin(*position, item); });
        reading.fieldIfKnown("max", "getMax", [&] { return p.getMax(*position, item); });
        return reading.outcome();
    }
    int relay(SetupMapListInterface &p, const SignalSink &sink) const override
    {
        relaySignal(p, &SetupMapListInterface::setupChanged, "setupChanged", sink);
        relaySignal(p, &SetupMapListInterface::setupBoundsChanged, "setupBoundsChanged", sink);
        return 2;
    }
};

class MapMapSetupKind : public KindOf<SetupMapMapItemInterface>
{
public:
    MapMapSetupKind()
        : KindOf("SetupMapMapItemInterface", "map-map", "two-level map: entries of cells",
                 {{QString(), QStringLiteral("PRIMARY"), QStringLiteral("PRIMARY SECOND")},
                  {QStringLiteral("JSON-OBJECT-OF-OBJECTS"), QStringLiteral("PRIMARY JSON-OBJECT"),
                   QStringLiteral("PRIMARY SECOND VALUE")},
                  {QString(), QStringLiteral("PRIMARY"), QStringLiteral("PRIMARY SECOND")}})
    {
    }

protected:
    using P = SetupMapMapItemInterface;

    Outcome read(P &p, const QStringList &args) const override
    {
        Reading reading(p);
        if (args.isEmpty()) {
            const auto keys = reading.value("getAllKeys", [&] { return p.getAllKeys(); });
            QJsonObject entries;
            for (const QString &key : keys.value_or(QStringList())) {
                if (const auto entry = reading.value("getValue", [&] { return p.getValue(key); }))
                    entries.insert(key, Values::toJson(*entry));
            }
            reading.add(QStringLiteral("value"), entries);
        } else if (args.size() == 1) {
            reading.field("value", "getValue", [&] { return p.getValue(args.at(0)); });
            reading.field("text", "getString", [&] { return p.getString(args.at(0)); });
        } else if (args.size() == 2) {
            reading.field("value", "getValue", [&] { return p.getValue(args.at(0), args.at(1)); });
            reading.field("text", "getStringValue", [&] { return p.getStringValue(args.at(0), args.at(1)); });
        } else {
            return usageOfGet();
        }
        return reading.outcome();
    }
    Outcome write(P &p, const QStringList &args) const override
    {
        if (args.size() == 1) {
            const auto maps = Values::parseMapOfMaps(args.first());
            if (!maps)
                return badValue(args.first(), QStringLiteral("a JSON object of JSON objects"));
            return Reading(p).accepted("setValue", [&] { return p.setValue(*maps); }).outcome();
        }
        if (args.size() == 2) {
            const auto map = Values::parseObject(args.at(1));
            if (!map)
                return badValue(args.at(1), QStringLiteral("a JSON object"));
            return Reading(p).accepted("setValue", [&] { return p.setValue(args.at(0), *map); }).outcome();
        }
        if (args.size() != 3)
            return usageOfSet();
        const auto value = Values::parseAny(args.at(2));
        if (!value)
            return badValue(args.at(2), QStringLiteral("a value"));
        return Reading(p).accepted("setValue", [&] { return p.setValue(args.at(0), args.at(1), *value); }).outcome();
    }
    Outcome describe(P &p, const QStringList &args) const override
    {
        Reading reading(p);
        if (args.isEmpty()) {
            reading.field("size", "size", [&] { return p.size(); });
            reading.field("keys", "getAllKeys", [&] { return p.getAllKeys(); });
            reading.field("text", "getString", [&] { return p.getString(); });
            reading.field("changeable", "isChangeable", [&] { return p.isChangeable(); });
            reading.field("baseElement", "getBaseElement", [&] { return p.getBaseElement(); });
        } else if (args.size() == 1) {
            reading.field("keys", "getAllKeys", [&] { return p.getAllKeys(args.at(0)); });
            reading.field("text", "getString", [&] { return p.getString(args.at(0)); });
        } else if (args.size() == 2) {
            reading.field("text", "getStringValue", [&] { return p.getStringValue(args.at(0), args.at(1)); });
            reading.fieldIfKnown("min", "getMin", [&] { return p.getMin(args.at(0), args.at(1)); });
            reading.fieldIfKnown("max", "getMax", [&] { return p.getMax(args.at(0), args.at(1)); });
            reading.fieldIfKnown("enums", "getEnums", [&] { return p.getEnums(args.at(0), args.at(1)); });
        } else {
            return usageOfInfo();
        }
        return reading.outcome();
    }
    int relay(P &p, const SignalSink &sink) const override
    {
        relaySignal(p, &P::setupChanged, "setupChanged", sink);
        relaySignal(p, QOverload<QString, QString, QVariant, bool>::of(&P::setupChangedPart), "setupChangedPart", sink);
        relaySignal(p, &P::mapEntryRemoved, "mapEntryRemoved", sink);
        relaySignal(p, &P::setupBoundsChanged, "setupBoundsChanged", sink);
        return 4;
    }
};

class ThresholdSetupKind : public KindOf<SetupThresholdManagerInterface>
{
public:
    ThresholdSetupKind()
        : KindOf(
              "SetupThresholdManagerInterface", "threshold", "threshold elements by key, in named locations",
              {{QString(), QStringLiteral("KEY")}, {QStringLiteral("KEY NUMBER")}, {QString(), QStringLiteral("KEY")}})
    {
    }

protected:
    using P = SetupThresholdManagerInterface;

    Outcome read(P &p, const QStringList &args) const override
    {
        Reading reading(p);
        if (args.isEmpty()) {
            reading.field("elements", "getAllThresholdElements", [&] { return p.getAllThresholdElements(); });
            reading.field("locations", "getLocationNames", [&] { return p.getLocationNames(); });
        } else if (args.size() == 1) {
            reading.field("value", "getValue", [&] { return p.getValue(args.first()); });
            reading.field("text", "getString", [&] { return p.getString(args.first()); });
        } else {
            return usageOfGet();
        }
        return reading.outcome();
    }
    Outcome write(P &p, const QStringList &args) const override
    {
        if (args.size() != 2)
            return usageOfSet();
        const auto value = Values::parseDouble(args.at(1));
        if (!value)
            return badValue(args.at(1), realNumber);
        return Reading(p).accepted("setValue", [&] { return p.setValue(args.at(0), *value); }).outcome();
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
        if (!args.isEmpty())
            return usageOfInfo();
        reading.field("size", "size", [&] { return p.size(); });
        reading.field("changeable", "isChangeable", [&] { return p.isChangeable(); });
        reading.field("maxLocationNameLength", "getMaxLocationNameCharacterCount",
                      [&] { return p.getMaxLocationNameCharacterCount(); });
        reading.field("maxLocationDescriptionLength", "getMaxLocationDescriptionCharacterCount",
                      [&] { return p.getMaxLocationDescriptionCharacterCount(); });
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
        reading.add(QStringLiteral("locations"), locations);
        return reading.outcome();
    }
    int relay(P &p, const SignalSink &sink) const override
    {
        relaySignal(p, &P::locationNameChanged, "locationNameChanged", sink);
        relaySignal(p, &P::locationsChanged, "locationsChanged", sink);
        relaySignal(p, QOverload<>::of(&P::setupChanged), "setupChanged", sink);
        relaySignal(p, QOverload<QString, double>::of(&P::setupChanged), "setupChanged", sink);
        return 4;
    }
};

class StorageSetupKind : public KindOf<StorageElemsMapInterface>
{
public:
    StorageSetupKind()
        : KindOf("StorageElemsMapInterface", "storage", "ordered list of stored elements and its sort order",
                 {{QString()}, {QStringLiteral("SORT-ORDER")}, {QString()}})
    {
    }

protected:
    using P = StorageElemsMapInterface;

    Outcome read(P &p, const QStringList &args) const override
    {
        if (!args.isEmpty())
            return usageOfGet();
        return Reading(p).field("value", "getValues", [&] { return p.getValues(); }).outcome();
    }
    Outcome write(P &p, const QStringList &args) const override
    {
        if (args.size() != 1)
            return usageOfSet();
        return Reading(p).done("setSortOrder", [&] { return p.setSortOrder(args.first()); }).outcome();
    }
    Outcome describe(P &p, const QStringList &args) const override
    {
        if (!args.isEmpty())
            return usageOfInfo();
        Reading reading(p);
        reading.field("count", "count", [&] { return p.count(); });
        reading.field("sortOrder", "getSortOrder", [&] { return p.getSortOrder(); });
        return reading.outcome();
    }
    int relay(P &p, const SignalSink &sink) const override
    {
        relaySignal(p, &P::setupChanged, "setupChanged", sink);
        relaySignal(p, &P::sortOrderChanged, "sortOrderChanged", sink);
        return 2;
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
