#include "ProxyAdapter.h"

#include "SetupBoolInterface.h"

namespace {

class SetupBoolAdapter : public ProxyAdapter<SetupBoolInterface>
{
public:
    using P = SetupBoolInterface;

    SetupBoolAdapter()
        : ProxyAdapter("on/off setting", {{QString()}, {QStringLiteral("true|false|1|0")}, {QString()}})
    {
        reads = {{"value", "getValue", &P::getValue}, {"text", "getString", &P::getString}};
        infos = {{"text", "getString", &P::getString}, {"changeable", "isChangeable", &P::isChangeable}};
        relays = {{&P::setupChanged, "setupChanged"}};
    }

protected:
    CommandResult write(P &p, const QStringList &args) const override
    {
        return setParsed(p, args.first(), Values::parseBool(args.first()), QStringLiteral("true, false, 1 or 0"));
    }
};

} // namespace

template<>
std::unique_ptr<KindAdapter> adapterOf<SetupBoolInterface>()
{
    return std::make_unique<SetupBoolAdapter>();
}
