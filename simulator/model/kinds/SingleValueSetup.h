#ifndef SIMULATOR_SINGLEVALUESETUP_H
#define SIMULATOR_SINGLEVALUESETUP_H

#include "SettingElement.h"
#include "Wire.h"

#include <QVariant>

class ModelFields;

/**
 * A setting holding one value: validation, storage, the change signal and the handlers of
 * setValue, getValue and getString shared by every single-value kind.
 */
class SingleValueSetup : public SettingElement
{
public:
    struct Common
    {
        QVariant defaultValue;
        bool changeable = true;
        QString unit;

        /// "changeable" and "unit" of a model file's element, with @p defaultValue.
        static Common read(const ModelFields &fields, const QVariant &defaultValue);
    };

    SingleValueSetup(const Binding &binding, const Common &common);

    QVariant value() const { return m_value; }
    /// Stores @p candidate if the element accepts it and signals a change; false otherwise.
    bool assign(const QVariant &candidate, QString *why = nullptr);

    QString text() const override;
    bool setFromText(const QString &text, QString *why) override;
    void restoreDefault() override;

    /// setValue with the member's one signature.
    static Handlers setHandler();
    /// getValue (in a D-Bus variant with @p inVariant) and getString.
    static Handlers readHandlers(bool inVariant = false);
    /// The setupChanged signal with changeArguments().
    static Handlers changeSignal();
    /// The handlers of a kind that has nothing beyond set, read and change, and isChangeable and setToDefault.
    static Handlers plainHandlers();

protected:
    /// Empty when @p candidate is acceptable, else why not.
    virtual QString refusal(const QVariant &candidate) const = 0;
    /// The candidate value a command's text stands for.
    virtual QVariant fromText(const QString &text) const = 0;
    /// The value in its stored type (int, double, ...) after acceptance.
    virtual QVariant normalized(const QVariant &candidate) const { return candidate; }
    virtual QVariantList changeArguments() const { return {m_value}; }
    QString unit() const { return m_unit; }

private:
    QVariant m_value;
    QVariant m_default;
    QString m_unit;
};

#endif
