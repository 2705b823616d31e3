#ifndef SIMULATOR_SETTINGELEMENT_H
#define SIMULATOR_SETTINGELEMENT_H

#include "Element.h"

/// What every setting shares: whether it may be changed, and going back to the model's default.
class SettingElement : public Element
{
public:
    /// The signal every setting emits when it changed.
    static const QString changedSignal;

    SettingElement(const Binding &binding, bool changeable);

    bool isChangeable() const { return m_changeable; }
    void restoreDefault() override = 0;

    /// isChangeable, answering isChangeable().
    static Handlers changeableHandler();
    /// setToDefault, which runs restoreDefault().
    static Handlers defaultHandler();

protected:
    /// Puts @p defaults into @p values and emits setupChanged() if that changed them.
    template<class Values>
    void restore(Values &values, const Values &defaults)
    {
        if (values == defaults)
            return;
        values = defaults;
        emitSignal(changedSignal, {});
    }

private:
    bool m_changeable;
};

#endif
