#ifndef SIMULATOR_RESULTELEMENT_H
#define SIMULATOR_RESULTELEMENT_H

#include "Element.h"

#include <QRandomGenerator>
#include <QStringList>
#include <QVariant>
#include <QVariantList>

class ModelFields;

/// A measured quantity: read-only on the bus, renewed by the measurement engine.
class ResultElement : public Element
{
public:
    ResultElement(const Binding &binding, double rate);

    /// Own sample rate in Hz; 0 means the engine's default.
    double rate() const { return m_rate; }
    /// "rate" of a model file's element: positive if given, else 0.
    static double readRate(const ModelFields &fields);
    /// Takes a new sample from @p random, stamped @p timeStampMs (ms since the epoch).
    virtual void sample(QRandomGenerator &random, qint64 timeStampMs) = 0;
    bool resetMinMax() override { return true; }
    ResultElement *asResult() override { return this; }

private:
    double m_rate;
};

/// Lower and upper limit of a result; the status of a value against them.
struct Limits
{
    QVariant lower;
    QVariant upper;

    enum Status { Within = 0, Below = 1, Above = 2 };
    int status(const QVariant &value) const;

    /// "lowerLimit" and "upperLimit" of a model file's element, as ints with @p integers, else
    /// doubles; a missing one is the type's lowest or highest value.
    static Limits read(const ModelFields &fields, bool integers);
};

/// How a result draws its values: uniform in center ± spread, or true with a probability.
struct ValueSource
{
    double center = 0;
    double spread = 0;
    static constexpr int maxDecimals = 15; ///< as many as a double holds
    int decimals = 3;
    double probability = 0.5;
    QStringList choices;

    /// A value uniform in center ± spread.
    double uniform(QRandomGenerator &random) const;
    double rounded(double value) const;

    /// "center" and "spread" of a model file's element and, @p withDecimals, "decimals".
    static ValueSource read(const ModelFields &fields, bool withDecimals);
};

#endif
