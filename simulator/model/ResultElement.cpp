#include "ResultElement.h"

#include "ModelFields.h"

#include <cmath>
#include <limits>

ResultElement::ResultElement(const Binding &binding, double rate)
    : Element(binding)
    , m_rate(rate)
{
}

int Limits::status(const QVariant &value) const
{
    if (lower.isValid() && value.toDouble() < lower.toDouble())
        return Below;
    if (upper.isValid() && value.toDouble() > upper.toDouble())
        return Above;
    return Within;
}

Limits Limits::read(const ModelFields &fields, bool integers)
{
    Limits result;
    const QString lower = QStringLiteral("lowerLimit");
    const QString upper = QStringLiteral("upperLimit");
    // Without a limit the type's lowest or highest value: nothing is below or above it, and
    // getLowerLimit/getUpperLimit still have a value to answer.
    if (integers) {
        result.lower = fields.integer(lower, std::numeric_limits<int>::min());
        result.upper = fields.integer(upper, std::numeric_limits<int>::max());
    } else {
        result.lower = fields.number(lower, std::numeric_limits<double>::lowest());
        result.upper = fields.number(upper, std::numeric_limits<double>::max());
    }
    return result;
}

double ValueSource::uniform(QRandomGenerator &random) const
{
    return center + spread * (2.0 * random.generateDouble() - 1.0);
}

double ValueSource::rounded(double value) const
{
    const double scale = std::pow(10.0, decimals);
    return std::round(value * scale) / scale;
}

ValueSource ValueSource::read(const ModelFields &fields, bool withDecimals)
{
    ValueSource source;
    source.center = fields.number(QStringLiteral("center"));
    source.spread = fields.number(QStringLiteral("spread"));
    if (source.spread < 0)
        throw ModelError{QStringLiteral("spread must not be negative")};
    if (!withDecimals)
        return source;
    source.decimals = fields.integer(QStringLiteral("decimals"), 3);
    if (source.decimals < 0 || source.decimals > maxDecimals)
        throw ModelError{QStringLiteral("decimals must lie in 0..%1").arg(maxDecimals)};
    return source;
}

double ResultElement::readRate(const ModelFields &fields)
{
    const double rate = fields.number(QStringLiteral("rate"), 0);
    if (fields.has(QStringLiteral("rate")) && rate <= 0)
        throw ModelError{QStringLiteral("rate must be positive")};
    return rate;
}
