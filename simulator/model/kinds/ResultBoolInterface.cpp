#include "ModelFields.h"
#include "ScalarResult.h"
#include "SimulatedKinds.h"

namespace {

std::unique_ptr<Element> read(const Element::Binding &binding, const ModelFields &fields)
{
    ValueSource source;
    source.probability = fields.number(QStringLiteral("probability"));
    if (source.probability < 0 || source.probability > 1)
        throw ModelError{QStringLiteral("probability must lie in 0..1")};
    Limits bounds;
    bounds.lower = fields.flag(QStringLiteral("lowerLimit"), false);
    bounds.upper = fields.flag(QStringLiteral("upperLimit"), true);
    return ScalarResult::make(binding, fields, ScalarResult::Bool, source, bounds);
}

} // namespace

void registerResultBoolInterface(SimulatedKinds &registry)
{
    registry.add(QStringLiteral("ResultBoolInterface"), ScalarResult::trackedHandlers({true, true, true}), read);
}
