#include "ProxyAdapter.h"

#include "SetupStringInterface.h"

namespace {

class SetupStringAdapter : public ProxyAdapter<SetupStringInterface>
{
public:
    using P = SetupStringInterface;

    SetupStringAdapter()
        : ProxyAdapter("text setting", {{QString()}, {QStringLiteral("TEXT")}, {QString()}})
    {
        reads = {{"value", "getValue", &P::getValue}};
        infos = {{"text", "getString", &P::getString}, {"changeable", "isChangeable", &P::isChangeable}};
        relays = {{&P::setupChanged, "setupChanged"}};
    }

protected:
    CommandResult write(P &p, const QStringList &args) const override
    {
        return accepted(p, [&] { return p.setValue(args.first()); });
    }
};

} // namespace

template<>
std::unique_ptr<KindAdapter> adapterOf<SetupStringInterface>()
{
    return std::make_unique<SetupStringAdapter>();
}
