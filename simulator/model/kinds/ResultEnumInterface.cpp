#include "ModelFields.h"
#include "ScalarResult.h"
#include "SimulatedKinds.h"

namespace {

std::unique_ptr<Element> read(const Element::Binding &binding, const ModelFields &fields)
{
    ValueSource source;
    source.choices = fields.choices(QStringLiteral("choices"));
    return ScalarResult::make(binding, fields, ScalarResult::Enum, source);
}

} // namespace

void registerResultEnumInterface(SimulatedKinds &registry)
{
    // Text and value Comp list of the current value only; no limits, no min/max control.
    const ScalarResult::ReadingMembers getterOnly{false, false, false};
    registry.add(QStringLiteral("ResultEnumInterface"),
                 HandlersOf<ScalarResult>()
                     .with(ScalarResult::readingHandlers(ScalarResult::Current, {true, true, false}))
                     .with(ScalarResult::readingHandlers(ScalarResult::Minimum, getterOnly))
                     .with(ScalarResult::readingHandlers(ScalarResult::Maximum, getterOnly)),
                 read);
}
