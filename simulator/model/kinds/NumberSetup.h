#ifndef SIMULATOR_NUMBERSETUP_H
#define SIMULATOR_NUMBERSETUP_H

#include "NumericRange.h"
#include "SingleValueSetup.h"

#include <memory>

/// What the int and double settings share: a value in a range with a step.
class NumberSetup : public SingleValueSetup
{
public:
    NumberSetup(const Binding &binding, const Common &common, bool integer, const NumericRange &range);

    NumericRange range() const { return m_range; }
    /// @p number as the element's type.
    QVariant typed(double number) const;

    /// Every handler of the int setting; the double setting adds its bounds signal.
    static Handlers handlers();
    /// The setting in @p range with @p defaultValue (an int or a double) and the model file's
    /// common fields; throws ModelError when they do not fit together.
    static std::unique_ptr<Element> make(const Binding &binding, const ModelFields &fields, const NumericRange &range,
                                         const QVariant &defaultValue);

protected:
    QString refusal(const QVariant &candidate) const override;
    QVariant fromText(const QString &text) const override;
    QVariant normalized(const QVariant &candidate) const override;

private:
    bool m_integer;
    NumericRange m_range;
};

#endif
