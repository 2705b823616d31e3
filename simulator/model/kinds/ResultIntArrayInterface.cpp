#include "ArrayResult.h"
#include "SimulatedKinds.h"

namespace {

std::unique_ptr<Element> read(const Element::Binding &binding, const ModelFields &fields)
{
    return ArrayResult::make(binding, fields, true);
}

} // namespace

void registerResultIntArrayInterface(SimulatedKinds &registry)
{
    registry.add(
        QStringLiteral("ResultIntArrayInterface"),
        HandlersOf<ArrayResult>()
            .with(ArrayResult::rowHandlers())
            .method("getString", [](ArrayResult &row, const QVariantList &) { return Outcome::value(row.text()); }),
        read);
}
