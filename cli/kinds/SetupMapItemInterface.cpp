#include "ProxyAdapter.h"

#include "SetupMapItemInterface.h"

namespace {

class SetupMapItemAdapter : public ProxyAdapter<SetupMapItemInterface>
{
public:
    using P = SetupMapItemInterface;

    SetupMapItemAdapter()
        : ProxyAdapter("map setting: values of any type under keys",
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
    CommandResult read(P &p, const QStringList &args) const override
    {
        Reading reading(p);
        if (args.size() == 1)
            return reading.field("value", "getValue", [&] { return p.getValue(args.first()); }).result();
        const auto keys = reading.value("getAllKeys", [&] { return p.getAllKeys(); });
        reading.add(QStringLiteral("value"),
                    reading.valuesByKey(keys, [&](const QString &key) { return p.getValue(key); }));
        return reading.result();
    }
    CommandResult write(P &p, const QStringList &args) const override
    {
        const auto value = Values::parseAny(args.at(1));
        if (!value)
            return badValue(args.at(1), Expected::value);
        return accepted(p, [&] { return p.setValue(args.at(0), *value); });
    }
};

} // namespace

template<>
std::unique_ptr<KindAdapter> adapterOf<SetupMapItemInterface>()
{
    return std::make_unique<SetupMapItemAdapter>();
}
