#ifndef SIMULATOR_RESULTS_H
#define SIMULATOR_RESULTS_H

#include "Element.h"

#include <QRandomGenerator>
#include <QStringList>
#include <QVariant>
#include <QVariantList>

/// A measured quantity: read-only on the bus, renewed by the measurement engine.
class ResultElement : public Element
{
public:
    ResultElement(const QString &path, const QString &proxyClass, double rate);

    /// Own sample rate in Hz; 0 means the engine's default.
    double rate() const { return m_rate; }
    /// Takes a new sample from @p random, stamped @p timeStampMs (ms since the epoch).
    virtual void sample(QRandomGenerator &random, qint64 timeStampMs) = 0;
    virtual void resetMinMax() { }

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
};

/// How a result draws its values: uniform in center ± spread, or true with a probability.
struct ValueSource
{
    double center = 0;
    double spread = 0;
    int decimals = 3;
    double probability = 0.5;
    QStringList choices;
};

/// A single-value result of type int, double, bool or enumeration, with min/max tracking.
class ScalarResult : public ResultElement
{
public:
    enum Type { Int, Double, Bool, Enum };

    ScalarResult(const QString &path, Type type, const ValueSource &source, const Limits &limits, const QString &unit,
                 double rate);

    QVariant value() const { return m_value.value; }
    QVariant minValue() const { return m_min.value; }
    QVariant maxValue() const { return m_max.value; }
    bool isEvaluatingMinMax() const { return m_evaluating; }
    void sample(QRandomGenerator &random, qint64 timeStampMs) override;
    void resetMinMax() override;
    void stopMinMax() { m_evaluating = false; }
    void continueMinMax() { m_evaluating = true; }
    QString text() const override { return textOf(m_value.value); }

private:
    struct Reading
    {
        QVariant value;
        qint64 timeStampMs = 0;
    };
    QVariant draw(QRandomGenerator &random) const;
    QString textOf(const QVariant &value) const;
    /// [value, status, time stamp] or, with @p asText, [text, status, time stamp].
    QVariantList comp(const Reading &reading, bool asText) const;
    /// Which members one reading (value, minimum or maximum) has besides its getter.
    struct ReadingMembers
    {
        bool text;      ///< getString, getMinString, getMaxString
        bool valueComp; ///< getValueComp, getMinValueComp, getMaxValueComp
        bool textComp;  ///< getStringComp, getMinStringComp, getMaxStringComp
    };
    void addReading(const QString &name, const Reading ScalarResult::*reading, ReadingMembers with);

    Type m_type;
    ValueSource m_source;
    Limits m_limits;
    QString m_unit;
    Reading m_value;
    Reading m_min;
    Reading m_max;
    bool m_evaluating = true;
};

/// A row of results: integers (ResultIntArrayInterface) or doubles (ResultVarArrayInterface).
class ArrayResult : public ResultElement
{
public:
    ArrayResult(const QString &path, bool integers, int size, const ValueSource &source, const Limits &limits,
                const QString &unit, double rate);

    QVariantList values() const { return m_values; }
    QVariantList statuses() const;
    int resultStatus() const;
    void sample(QRandomGenerator &random, qint64 timeStampMs) override;
    QString text() const override;

private:
    Outcome atPosition(const QVariantList &arguments, const std::function<Outcome(int)> &read) const;

    bool m_integers;
    int m_size;
    ValueSource m_source;
    Limits m_limits;
    QString m_unit;
    QVariantList m_values;
    qint64 m_timeStampMs = 0;
};

#endif
