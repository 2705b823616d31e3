#include "ProxyAdapter.h"

#include "StorageElemsMapInterface.h"

namespace {

class StorageElemsMapAdapter : public ProxyAdapter<StorageElemsMapInterface>
{
public:
    using P = StorageElemsMapInterface;

    StorageElemsMapAdapter()
        : ProxyAdapter("ordered list of stored elements and its sort order",
                       {{QString()}, {QStringLiteral("SORT-ORDER")}, {QString()}})
    {
        reads = {{"value", "getValues", &P::getValues}};
        infos = {{"count", "count", &P::count}, {"sortOrder", "getSortOrder", &P::getSortOrder}};
        relays = {{&P::setupChanged, "setupChanged"}, {&P::sortOrderChanged, "sortOrderChanged"}};
    }

protected:
    CommandResult write(P &p, const QStringList &args) const override
    {
        return Reading(p).done("setSortOrder", [&] { return p.setSortOrder(args.first()); }).result();
    }
};

} // namespace

template<>
std::unique_ptr<KindAdapter> adapterOf<StorageElemsMapInterface>()
{
    return std::make_unique<StorageElemsMapAdapter>();
}
