#include "ProxyAdapter.h"

#include "ResultIntArrayInterface.h"

namespace {

class ResultIntArrayAdapter : public ProxyAdapter<ResultIntArrayInterface>
{
public:
    using P = ResultIntArrayInterface;

    ResultIntArrayAdapter()
        : ProxyAdapter("measured row of integers", KindSyntax::readOnly())
    {
        reads = {{"value", "getValues", &P::getValues}, {"text", "getString", &P::getString}};
        infos = {{"size", "size", &P::size},
                 {"text", "getString", &P::getString},
                 {"resultStatus", "getResultStatus", &P::getResultStatus},
                 {"timeStamp", "getTimeStamp", &P::getTimeStamp}};
    }
};

} // namespace

template<>
std::unique_ptr<KindAdapter> adapterOf<ResultIntArrayInterface>()
{
    return std::make_unique<ResultIntArrayAdapter>();
}
