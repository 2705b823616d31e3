#include "ProxyAdapter.h"

#include "SetupThresholdManagerInterface.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

class SetupThresholdManagerAdapter : public ProxyAdapter<SetupThresholdManagerInterface>
{
public:
    using P = SetupThresholdManagerInterface;

    SetupThresholdManagerAdapter()
        : ProxyAdapter(
              "threshold elements by key, in named locations",
              {{QString(), QStringLiteral("KEY")}, {QStringLiteral("KEY NUMBER")}, {QString(), QStringLiteral("KEY")}})
    {
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
    CommandResult read(P &p, const QStringList &args) const override
    {
        Reading reading(p);
        if (args.isEmpty()) {
            // The application packs the elements into a JSON text; they are shown as JSON.
            if (const auto elements =
                    reading.value("getAllThresholdElements", [&] { return p.getAllThresholdElements(); }))
                reading.add(QStringLiteral("elements"), Values::fromJsonText(*elements));
            reading.field("locations", "getLocationNames", [&] { return p.getLocationNames(); });
            return reading.result();
        }
        reading.field("value", "getValue", [&] { return p.getValue(args.first()); });
        reading.field("text", "getString", [&] { return p.getString(args.first()); });
        return reading.result();
    }
    CommandResult write(P &p, const QStringList &args) const override
    {
        const auto value = Values::parseDouble(args.at(1));
        if (!value)
            return badValue(args.at(1), Expected::realNumber);
        return accepted(p, [&] { return p.setValue(args.at(0), *value); });
    }
    CommandResult describe(P &p, const QStringList &args) const override
    {
        Reading reading(p);
        if (args.size() == 1) {
            const QString key = args.first();
            reading.field("value", "getValue", [&] { return p.getValue(key); });
            reading.field("text", "getString", [&] { return p.getString(key); });
            reading.field("min", "getMinValue", [&] { return p.getMinValue(key); });
            reading.field("max", "getMaxValue", [&] { return p.getMaxValue(key); });
            reading.field("attributes", "getAttributes", [&] { return p.getAttributes(key); });
            return reading.result();
        }
        readFields(reading, p, infos);
        reading.add(QStringLiteral("locations"), locations(reading, p));
        return reading.result();
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
                                         {QStringLiteral("elements"), Values::fromJsonText(*elements)}});
        }
        return locations;
    }
};

} // namespace

template<>
std::unique_ptr<KindAdapter> adapterOf<SetupThresholdManagerInterface>()
{
    return std::make_unique<SetupThresholdManagerAdapter>();
}
