#include "ProxyAdapter.h"

#include "SetupMapMapItemInterface.h"

namespace {

class SetupMapMapItemAdapter : public ProxyAdapter<SetupMapMapItemInterface>
{
public:
    using P = SetupMapMapItemInterface;

    SetupMapMapItemAdapter()
        : ProxyAdapter("two-level map: entries of cells",
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
    CommandResult read(P &p, const QStringList &args) const override
    {
        Reading reading(p);
        if (args.isEmpty()) {
            const auto keys = reading.value("getAllKeys", [&] { return p.getAllKeys(); });
            reading.add(QStringLiteral("value"),
                        reading.valuesByKey(keys, [&](const QString &key) { return p.getValue(key); }));
        } else if (args.size() == 1) {
            reading.field("value", "getValue", [&] { return p.getValue(args.at(0)); });
            reading.field("text", "getString", [&] { return p.getString(args.at(0)); });
        } else {
            reading.field("value", "getValue", [&] { return p.getValue(args.at(0), args.at(1)); });
            reading.field("text", "getStringValue", [&] { return p.getStringValue(args.at(0), args.at(1)); });
        }
        return reading.result();
    }
    CommandResult write(P &p, const QStringList &args) const override
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
    CommandResult describe(P &p, const QStringList &args) const override
    {
        if (args.isEmpty())
            return ProxyAdapter::describe(p, args);
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
        return reading.result();
    }
};

} // namespace

template<>
std::unique_ptr<KindAdapter> adapterOf<SetupMapMapItemInterface>()
{
    return std::make_unique<SetupMapMapItemAdapter>();
}
