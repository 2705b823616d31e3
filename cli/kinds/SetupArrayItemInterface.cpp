#include "ProxyAdapter.h"

#include "SetupArrayItemInterface.h"

#include <QJsonArray>

namespace {

class SetupArrayItemAdapter : public ProxyAdapter<SetupArrayItemInterface>
{
public:
    using P = SetupArrayItemInterface;

    SetupArrayItemAdapter()
        : ProxyAdapter("array setting of values of any type",
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
    CommandResult read(P &p, const QStringList &args) const override
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
            return reading.result();
        }
        const auto start = Values::parseInt(args.at(0));
        const auto end = Values::parseInt(args.at(1));
        if (!start || !end)
            return badValue(args.join(QLatin1Char(' ')), Expected::range);
        return reading.field("value", "getValue", [&] { return p.getValue(*start, *end); }).result();
    }
    CommandResult write(P &p, const QStringList &args) const override
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

} // namespace

template<>
std::unique_ptr<KindAdapter> adapterOf<SetupArrayItemInterface>()
{
    return std::make_unique<SetupArrayItemAdapter>();
}
