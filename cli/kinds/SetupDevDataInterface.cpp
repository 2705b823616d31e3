#include "ProxyAdapter.h"

#include "SetupDevDataInterface.h"

namespace {

class SetupDevDataAdapter : public ProxyAdapter<SetupDevDataInterface>
{
public:
    using P = SetupDevDataInterface;

    SetupDevDataAdapter()
        : ProxyAdapter("device-specific setting of any type", {{QString()}, {QStringLiteral("VALUE")}, {QString()}})
    {
        reads = {{"value", "getValue", &P::getValue}, {"text", "getString", &P::getString}};
        infos = {{"text", "getString", &P::getString}};
        relays = {{&P::setupChanged, "setupChanged"}};
    }

protected:
    CommandResult write(P &p, const QStringList &args) const override
    {
        return setParsed(p, args.first(), Values::parseAny(args.first()),
                         QStringLiteral("a value (number, true/false, JSON or text)"));
    }
};

} // namespace

template<>
std::unique_ptr<KindAdapter> adapterOf<SetupDevDataInterface>()
{
    return std::make_unique<SetupDevDataAdapter>();
}
