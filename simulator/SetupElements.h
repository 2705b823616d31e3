#ifndef SIMULATOR_SETUPELEMENTS_H
#define SIMULATOR_SETUPELEMENTS_H

#include "Element.h"
#include "Wire.h"

#include <QStringList>
#include <QVariant>

/**
 * A setting holding one value: validation, storage, the change signal and the setup trio
 * (setValue, getValue, setToDefault) shared by every single-value kind.
 */
class SetupElement : public Element
{
public:
    struct Common
    {
        QString path;
        QVariant defaultValue;
        bool changeable = true;
        QString unit;
    };

    SetupElement(const QString &proxyClass, const Common &common);

    QVariant value() const { return m_value; }
    bool isChangeable() const { return m_changeable; }
    /// Stores @p candidate if the element accepts it and signals a change; false otherwise.
    bool assign(const QVariant &candidate, QString *why = nullptr);

    QString text() const override;
    bool setFromText(const QString &text, QString *why) override;
    void restoreDefault() override;

protected:
    /// Empty when @p candidate is acceptable, else why not.
    virtual QString refusal(const QVariant &candidate) const = 0;
    /// The candidate value a command's text stands for.
    virtual QVariant fromText(const QString &text) const = 0;
    /// The value in its stored type (int, double, ...) after acceptance.
    virtual QVariant normalized(const QVariant &candidate) const { return candidate; }
    virtual QVariantList changeArguments() const { return {m_value}; }

    /// setValue(@p signature) → b, getValue → @p signature, getString → s, and, with
    /// @p withChangeableAndDefault, isChangeable → b and setToDefault.
    void addSetupMembers(const QString &signature, bool withChangeableAndDefault = true);
    void addChangeSignal(const QString &signature);
    QString unit() const { return m_unit; }

private:
    QVariant m_value;
    QVariant m_default;
    bool m_changeable;
    QString m_unit;
};

/// An int or double setting with a range and a step.
class NumberSetup : public SetupElement
{
public:
    NumberSetup(const Common &common, bool integer, const NumericRange &range);

protected:
    QString refusal(const QVariant &candidate) const override;
    QVariant fromText(const QString &text) const override;
    QVariant normalized(const QVariant &candidate) const override;

private:
    QVariant typed(double number) const;
    bool m_integer;
    NumericRange m_range;
};

class BoolSetup : public SetupElement
{
public:
    explicit BoolSetup(const Common &common);

protected:
    QString refusal(const QVariant &candidate) const override;
    QVariant fromText(const QString &text) const override;
};

class StringSetup : public SetupElement
{
public:
    StringSetup(const Common &common, int maxLength);

protected:
    QString refusal(const QVariant &candidate) const override;
    QVariant fromText(const QString &text) const override { return text; }

private:
    int m_maxLength;
};

/// A choice from a list, set by index or by text; the stored value is the index.
class EnumSetup : public SetupElement
{
public:
    EnumSetup(const Common &common, const QStringList &choices);

    QString text() const override;

protected:
    QString refusal(const QVariant &candidate) const override;
    QVariant fromText(const QString &text) const override;
    QVariantList changeArguments() const override;

private:
    QStringList m_choices;
};

/// A device-specific value of any type, always in a D-Bus variant on the bus.
class DevDataSetup : public SetupElement
{
public:
    explicit DevDataSetup(const Common &common);

protected:
    QString refusal(const QVariant &candidate) const override;
    QVariant fromText(const QString &text) const override;
    QVariant normalized(const QVariant &candidate) const override;
    QVariantList changeArguments() const override { return {Wire::variant(value())}; }
};

#endif
