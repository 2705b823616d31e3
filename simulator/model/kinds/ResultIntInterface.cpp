#include "ModelFields.h"
#include "ScalarResult.h"
#include "SimulatedKinds.h"

namespace {

std::unique_ptr<Element> read(const Element::Binding &binding, const ModelFields &fields)
{
    return ScalarResult::make(binding, fields, ScalarResult::Int, ValueSource::read(fields, false),
                              Limits::read(fields, true));
}

} // namespace

void registerResultIntInterface(SimulatedKinds &registry)
{
    registry.add(QStringLiteral("ResultIntInterface"), ScalarResult::trackedHandlers({true, true, true}), read);
}
