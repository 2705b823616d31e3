#include "ModelFields.h"
#include "SimulatedKinds.h"
#include "SingleValueSetup.h"

namespace {

class BoolSetup : public SingleValueSetup
{
public:
    using SingleValueSetup::SingleValueSetup;

protected:
    QString refusal(const QVariant &candidate) const override
    {
        return Wire::isBool(candidate) ? QString() : QStringLiteral("not true or false");
    }

    QVariant fromText(const QString &text) const override
    {
        if (text == QLatin1String("true") || text == QLatin1String("1") || text == QLatin1String("on"))
            return true;
        if (text == QLatin1String("false") || text == QLatin1String("0") || text == QLatin1String("off"))
            return false;
        return text;
    }
};

std::unique_ptr<Element> read(const Element::Binding &binding, const ModelFields &fields)
{
    if (!fields.required(QStringLiteral("default")).isBool())
        throw ModelError{QStringLiteral("default must be true or false")};
    return std::make_unique<BoolSetup>(
        binding, SingleValueSetup::Common::read(fields, fields.flag(QStringLiteral("default"), false)));
}

} // namespace

void registerSetupBoolInterface(SimulatedKinds &registry)
{
    registry.add(QStringLiteral("SetupBoolInterface"), SingleValueSetup::plainHandlers(), read);
}
