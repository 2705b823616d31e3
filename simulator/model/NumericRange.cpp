#include "NumericRange.h"

#include <cmath>

QString NumericRange::refusal(double value) const
{
    if (std::isnan(value))
        return QStringLiteral("NaN is not a value");
    if (bounded && (value < min || value > max))
        return QStringLiteral("%1 is outside %2..%3").arg(value).arg(min).arg(max);
    if (granularity > 0) {
        const double steps = (value - (bounded ? min : 0.0)) / granularity;
        if (std::fabs(steps - std::round(steps)) > 1e-6)
            return QStringLiteral("%1 is not a multiple of %2").arg(value).arg(granularity);
    }
    return {};
}
