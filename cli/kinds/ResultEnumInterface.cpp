#include "ProxyAdapter.h"

#include "ResultEnumInterface.h"

namespace {

class ResultEnumAdapter : public ProxyAdapter<ResultEnumInterface>
{
public:
    using P = ResultEnumInterface;

    ResultEnumAdapter()
        : ProxyAdapter("measured enumerated result", KindSyntax::readOnly())
    {
        reads = {{"value", "getValue", &P::getValue}, {"text", "getString", &P::getString}};
        infos = {{"value", "getValue", &P::getValue},
                 {"text", "getString", &P::getString},
                 {"min", "getMinValue", &P::getMinValue},
                 {"max", "getMaxValue", &P::getMaxValue},
                 {"valueComp", "getValueComp", &P::getValueComp}};
    }
};

} // namespace

template<>
std::unique_ptr<KindAdapter> adapterOf<ResultEnumInterface>()
{
    return std::make_unique<ResultEnumAdapter>();
}
