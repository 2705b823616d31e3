#include "ModelFields.h"
#include "ScalarResult.h"
#include "SimulatedKinds.h"

namespace {

std::unique_ptr<Element> read(const Element::Binding &binding, const ModelFields &fields)
{
    return ScalarResult::make(binding, fields, ScalarResult::Double, ValueSource::read(fields, true),
                              Limits::read(fields, false));
}

} // namespace

void registerResultDoubleInterface(SimulatedKinds &registry)
{
    // The double result goes without the min/max texts, but has their Comp lists.
    registry.add(QStringLiteral("ResultDoubleInterface"), ScalarResult::trackedHandlers({false, true, true}), read);
}
