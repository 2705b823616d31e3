#include "ProxyAdapter.h"

#include "ResultVarArrayInterface.h"

namespace {

class ResultVarArrayAdapter : public ProxyAdapter<ResultVarArrayInterface>
{
public:
    using P = ResultVarArrayInterface;

    ResultVarArrayAdapter()
        : ProxyAdapter("measured row of values of any type", {{QString(), QStringLiteral("POSITION")}, {}, {QString()}})
    {
        reads = {{"value", "getValues", &P::getValues}};
        infos = {{"size", "size", &P::size},
                 {"lowerLimit", "getLowerLimit", &P::getLowerLimit},
                 {"upperLimit", "getUpperLimit", &P::getUpperLimit},
                 {"resultStatus", "getResultStatus", &P::getResultStatus},
                 {"timeStamp", "getTimeStamp", &P::getTimeStamp},
                 {"valuesStatus", "getValuesStatus", &P::getValuesStatus},
                 {"valueComp", "getValueComp", &P::getValueComp}};
    }

protected:
    CommandResult read(P &p, const QStringList &args) const override
    {
        if (args.isEmpty())
            return ProxyAdapter::read(p, args);
        const auto position = Values::parseInt(args.first());
        if (!position)
            return badValue(args.first(), Expected::position);
        Reading reading(p);
        reading.field("value", "getValue", [&] { return p.getValue(*position); });
        reading.field("status", "getValueStatus", [&] { return p.getValueStatus(*position); });
        return reading.result();
    }
};

} // namespace

template<>
std::unique_ptr<KindAdapter> adapterOf<ResultVarArrayInterface>()
{
    return std::make_unique<ResultVarArrayAdapter>();
}
