#ifndef SIMULATOR_ARRAYRESULT_H
#define SIMULATOR_ARRAYRESULT_H

#include "ResultElement.h"

#include <memory>

/// What the integer and the double (var) row of results share.
class ArrayResult : public ResultElement
{
public:
    ArrayResult(const Binding &binding, bool integers, int size, const ValueSource &source, const Limits &limits,
                const QString &unit, double rate);

    void sample(QRandomGenerator &random, qint64 timeStampMs) override;
    QString text() const override;

    /// getValues, size, getResultStatus and getTimeStamp.
    static Handlers rowHandlers();
    /// The most values a row may hold, so that a model file cannot exhaust the memory.
    static constexpr int maxSize = 65536;
    /// The status of each value, positions, the Comp list and the limits (in variants).
    static Handlers statusHandlers();
    /// The row of integers (@p integers) or doubles from "size", its source, limits, "unit" and "rate".
    static std::unique_ptr<Element> make(const Binding &binding, const ModelFields &fields, bool integers);

private:
    QVariantList statuses() const;
    int resultStatus() const;
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
