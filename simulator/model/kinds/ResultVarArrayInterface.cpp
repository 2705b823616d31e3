#include "ArrayResult.h"
#include "SimulatedKinds.h"

namespace {

std::unique_ptr<Element> read(const Element::Binding &binding, const ModelFields &fields)
{
    return ArrayResult::make(binding, fields, false);
}

} // namespace

void registerResultVarArrayInterface(SimulatedKinds &registry)
{
    registry.add(QStringLiteral("ResultVarArrayInterface"),
                 HandlersOf<ArrayResult>().with(ArrayResult::rowHandlers()).with(ArrayResult::statusHandlers()), read);
}
