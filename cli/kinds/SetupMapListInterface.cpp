#include "ProxyAdapter.h"

#include "SetupMapListInterface.h"

#include <QJsonArray>

namespace {

class SetupMapListAdapter : public ProxyAdapter<SetupMapListInterface>
{
public:
    using P = SetupMapListInterface;

    SetupMapListAdapter()
        : ProxyAdapter("ordered list of maps, by position",
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
    CommandResult read(P &p, const QStringList &args) const override
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
            return reading.result();
        }
        const auto position = Values::parseInt(args.first());
        if (!position)
            return badValue(args.first(), Expected::position);
        if (args.size() == 1) {
            reading.field("value", "getValue", [&] { return p.getValue(*position); });
            reading.field("text", "getString", [&] { return p.getString(*position); });
            return reading.result();
        }
        const QString item = args.at(1);
        reading.field("value", "getValue", [&] { return p.getValue(*position, item); });
        reading.field("text", "getStringValue", [&] { return p.getStringValue(*position, item); });
        return reading.result();
    }
    CommandResult write(P &p, const QStringList &args) const override
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
    CommandResult describe(P &p, const QStringList &args) const override
    {
        if (args.isEmpty())
            return ProxyAdapter::describe(p, args);
        const auto position = Values::parseInt(args.first());
        if (!position)
            return badValue(args.first(), Expected::position);
        const QString item = args.at(1);
        Reading reading(p);
        reading.field("text", "getStringValue", [&] { return p.getStringValue(*position, item); });
        reading.fieldIfKnown("min", "getMin", [&] { return p.getMin(*position, item); });
        reading.fieldIfKnown("max", "getMax", [&] { return p.getMax(*position, item); });
        return reading.result();
    }
};

} // namespace

template<>
std::unique_ptr<KindAdapter> adapterOf<SetupMapListInterface>()
{
    return std::make_unique<SetupMapListAdapter>();
}
