#include "ModelFields.h"
#include "NumberSetup.h"
#include "SimulatedKinds.h"

namespace {

std::unique_ptr<Element> read(const Element::Binding &binding, const ModelFields &fields)
{
    NumericRange range = fields.range(true);
    range.granularity = fields.integer(QStringLiteral("granularity"), 1);
    return NumberSetup::make(binding, fields, range, fields.integer(QStringLiteral("default")));
}

} // namespace

void registerSetupIntInterface(SimulatedKinds &registry)
{
    registry.add(QStringLiteral("SetupIntInterface"), NumberSetup::handlers(), read);
}
