#ifndef SIMULATOR_NUMERICRANGE_H
#define SIMULATOR_NUMERICRANGE_H

#include <QString>

/// A numeric range with an optional step; one place for the checks every kind shares.
struct NumericRange
{
    double min = -1e308;
    double max = 1e308;
    double granularity = 0;
    bool bounded = false;

    /// Empty when @p value is acceptable, else why not.
    QString refusal(double value) const;
};

#endif
