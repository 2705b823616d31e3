#include "ArrayResult.h"
#include "KindRegistry.h"

namespace {

std::unique_ptr<Element> read(const Element::Binding &binding, const ModelFields &fields)
{
    return ArrayResult::make(binding, fields, false);
}

} // namespace

void registerResultVarArrayInterface(KindRegistry &registry)
{
    registry.add(QStringLiteral("ResultVarArrayInterface"),
                 HandlersOf<ArrayResult>().with(ArrayResult::rowHandlers()).with(ArrayResult::statusHandlers()), read);
}
