#include "ModelFields.h"
#include "NumberSetup.h"
#include "SimulatedKinds.h"

namespace {

std::unique_ptr<Element> read(const Element::Binding &binding, const ModelFields &fields)
{
    NumericRange range = fields.range(true);
    range.granularity = fields.number(QStringLiteral("granularity"), 0);
    return NumberSetup::make(binding, fields, range, fields.number(QStringLiteral("default")));
}

Handlers handlers()
{
    return HandlersOf<NumberSetup>()
        .with(NumberSetup::handlers())
        .busSignal("setupBoundsChanged", [](const NumberSetup &setup) {
            return QVariantList{setup.range().min, setup.range().max};
        });
}

} // namespace

void registerSetupDoubleInterface(SimulatedKinds &registry)
{
    registry.add(QStringLiteral("SetupDoubleInterface"), handlers(), read);
}
