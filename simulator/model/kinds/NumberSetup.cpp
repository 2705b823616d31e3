#include "NumberSetup.h"

#include "ModelFields.h"
#include "SimCompat.h"

#include <cmath>

NumberSetup::NumberSetup(const Binding &binding, const Common &common, bool integer, const NumericRange &range)
    : SingleValueSetup(binding, common)
    , m_integer(integer)
    , m_range(range)
{
}

Handlers NumberSetup::handlers()
{
    return HandlersOf<NumberSetup>()
        .with(plainHandlers())
        .method("getMinValue",
                [](NumberSetup &setup, const QVariantList &) { return Outcome::value(setup.typed(setup.m_range.min)); })
        .method("getMaxValue",
                [](NumberSetup &setup, const QVariantList &) { return Outcome::value(setup.typed(setup.m_range.max)); })
        .method("getGranularity", [](NumberSetup &setup, const QVariantList &) {
            return Outcome::value(setup.typed(setup.m_range.granularity));
        });
}

std::unique_ptr<Element> NumberSetup::make(const Binding &binding, const ModelFields &fields, const NumericRange &range,
                                           const QVariant &defaultValue)
{
    if (range.granularity < 0)
        throw ModelError{QStringLiteral("granularity must not be negative")};
    ModelFields::check(range.refusal(defaultValue.toDouble()), QStringLiteral("default"));
    const bool integer = SimCompat::typeId(defaultValue) == QMetaType::Int;
    return std::make_unique<NumberSetup>(binding, Common::read(fields, defaultValue), integer, range);
}

QString NumberSetup::refusal(const QVariant &candidate) const
{
    if (!Wire::isNumber(candidate))
        return QStringLiteral("not a number");
    return m_range.refusal(candidate.toDouble());
}

QVariant NumberSetup::fromText(const QString &text) const
{
    bool ok = false;
    const double number = text.toDouble(&ok);
    return ok ? QVariant(number) : QVariant(text);
}

QVariant NumberSetup::normalized(const QVariant &candidate) const
{
    return typed(candidate.toDouble());
}

QVariant NumberSetup::typed(double number) const
{
    return m_integer ? QVariant(int(std::lround(number))) : QVariant(number);
}
