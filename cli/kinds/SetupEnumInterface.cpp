#include "ProxyAdapter.h"

#include "SetupEnumInterface.h"

#include <QJsonArray>

namespace {

class SetupEnumAdapter : public ProxyAdapter<SetupEnumInterface>
{
public:
    using P = SetupEnumInterface;

    SetupEnumAdapter()
        : ProxyAdapter("choice from a list, by index or by text",
                       {{QString()}, {QStringLiteral("INDEX"), QStringLiteral("TEXT")}, {QString()}})
    {
        reads = {{"value", "getValue", &P::getValue}, {"text", "getString", &P::getString}};
        infos = {{"value", "getValue", &P::getValue},
                 {"text", "getString", &P::getString},
                 {"valueList", "getValueList", &P::getEnumValueList}};
        relays = {{&P::setupChanged, "setupChanged"}};
    }

protected:
    CommandResult write(P &p, const QStringList &args) const override
    {
        // A whole number chooses by index, anything else by text.
        if (const auto index = Values::parseInt(args.first()))
            return accepted(p, [&] { return p.setValue(*index); });
        return accepted(p, [&] { return p.setValue(args.first()); });
    }
    CommandResult describe(P &p, const QStringList &) const override
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
        return reading.result();
    }
};

} // namespace

template<>
std::unique_ptr<KindAdapter> adapterOf<SetupEnumInterface>()
{
    return std::make_unique<SetupEnumAdapter>();
}
