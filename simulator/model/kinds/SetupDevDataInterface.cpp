#include "ModelFields.h"
#include "SimulatedKinds.h"
#include "SingleValueSetup.h"

#include <cmath>

namespace {

/// A device-specific value of any type, always in a D-Bus variant on the bus.
class DevDataSetup : public SingleValueSetup
{
public:
    using SingleValueSetup::SingleValueSetup;

    static Handlers handlers()
    {
        return HandlersOf<DevDataSetup>().with(setHandler()).with(readHandlers(true)).with(changeSignal());
    }

protected:
    QString refusal(const QVariant &candidate) const override
    {
        if (!Wire::sameFamily(value(), candidate))
            return QStringLiteral("not of the element's type");
        if (Wire::isNumber(candidate) && std::isnan(candidate.toDouble()))
            return QStringLiteral("NaN is not a value");
        return {};
    }

    QVariant fromText(const QString &text) const override
    {
        if (Wire::isNumber(value())) {
            bool ok = false;
            const double number = text.toDouble(&ok);
            if (ok)
                return number;
        }
        return text;
    }

    QVariant normalized(const QVariant &candidate) const override
    {
        // A number keeps the element's own type, whichever integer or real type it came as.
        return Wire::isNumber(value()) ? QVariant(candidate.toDouble()) : candidate;
    }

    QVariantList changeArguments() const override { return {Wire::variant(value())}; }
};

std::unique_ptr<Element> read(const Element::Binding &binding, const ModelFields &fields)
{
    return std::make_unique<DevDataSetup>(
        binding, SingleValueSetup::Common::read(fields, fields.scalar(QStringLiteral("default"))));
}

} // namespace

void registerSetupDevDataInterface(SimulatedKinds &registry)
{
    registry.add(QStringLiteral("SetupDevDataInterface"), DevDataSetup::handlers(), read);
}
