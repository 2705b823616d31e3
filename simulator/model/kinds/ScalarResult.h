#ifndef SIMULATOR_SCALARRESULT_H
#define SIMULATOR_SCALARRESULT_H

#include "ResultElement.h"

#include <memory>

/// What the int, double, bool and enumeration results share: one value with min/max tracking.
class ScalarResult : public ResultElement
{
public:
    enum Type { Int, Double, Bool, Enum };
    /// The three readings of a result, each with its getter and, as the kind has them, its text and Comp lists.
    enum Reading { Current, Minimum, Maximum };
    /// Which members one reading has besides its getter.
    struct ReadingMembers
    {
        bool text;      ///< getString, getMinString, getMaxString
        bool valueComp; ///< getValueComp, getMinValueComp, getMaxValueComp
        bool textComp;  ///< getStringComp, getMinStringComp, getMaxStringComp
    };

    ScalarResult(const Binding &binding, Type type, const ValueSource &source, const Limits &limits,
                 const QString &unit, double rate);

    void sample(QRandomGenerator &random, qint64 timeStampMs) override;
    bool resetMinMax() override;
    QString text() const override { return textOf(m_value.value); }

    /// The getter of @p reading and the members @p with names.
    static Handlers readingHandlers(Reading reading, ReadingMembers with);
    /// getLowerLimit and getUpperLimit.
    static Handlers limitHandlers();
    /// resetMinMaxValues, stopMinMaxEval and continueMinMaxEval.
    static Handlers minMaxHandlers();
    /// Every member of a result with limits and min/max control: the current reading with all
    /// its members, the minimum and maximum with @p minMax.
    static Handlers trackedHandlers(ReadingMembers minMax);
    /// The result of @p type drawing from @p source, with "unit" and "rate" of the model file.
    static std::unique_ptr<Element> make(const Binding &binding, const ModelFields &fields, Type type,
                                         const ValueSource &source, const Limits &limits = {});

private:
    struct Sample
    {
        QVariant value;
        qint64 timeStampMs = 0;
    };
    QVariant draw(QRandomGenerator &random) const;
    QString textOf(const QVariant &value) const;
    const Sample &sampleOf(Reading reading) const;
    /// [value, status, time stamp] or, with @p asText, [text, status, time stamp].
    QVariantList comp(const Sample &sample, bool asText) const;

    Type m_type;
    ValueSource m_source;
    Limits m_limits;
    QString m_unit;
    Sample m_value;
    Sample m_min;
    Sample m_max;
    bool m_evaluating = true;
};

#endif
