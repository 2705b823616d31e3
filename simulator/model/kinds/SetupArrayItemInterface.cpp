#include "ModelFields.h"
#include "SettingElement.h"
#include "SimulatedKinds.h"
#include "Wire.h"

namespace {

/// A fixed-length row of numbers in one range.
class ArraySetup : public SettingElement
{
public:
    static Handlers handlers();

    ArraySetup(const Binding &binding, bool changeable, const QVariantList &defaults, const NumericRange &range);

    QString text() const override { return Wire::text(m_values); }
    void restoreDefault() override;

private:
    bool setRange(const QVariant &value, int start, int end);
    bool setAll(const QVariantList &values);
    bool store(const QVariantList &values);
    QVariantList m_values;
    QVariantList m_defaults;
    NumericRange m_range;
};

ArraySetup::ArraySetup(const Binding &binding, bool changeable, const QVariantList &defaults, const NumericRange &range)
    : SettingElement(binding, changeable)
    , m_values(defaults)
    , m_defaults(defaults)
    , m_range(range)
{
}

Handlers ArraySetup::handlers()
{
    return HandlersOf<ArraySetup>()
        .method("setValue", "vii",
                [](ArraySetup &setup, const QVariantList &a) {
                    return Outcome::value(setup.setRange(Wire::plain(a.at(0)), a.at(1).toInt(), a.at(2).toInt()));
                })
        .method("setValue", "av",
                [](ArraySetup &setup, const QVariantList &a) {
                    return Outcome::value(setup.setAll(Wire::plain(a.at(0)).toList()));
                })
        .method("getValue",
                [](ArraySetup &setup, const QVariantList &a) {
                    const int start = a.at(0).toInt();
                    const int end = a.at(1).toInt();
                    if (start < 0 || end >= setup.m_values.size() || start > end)
                        return Outcome::outOfRange(QStringLiteral("Positions %1..%2 outside 0..%3")
                                                       .arg(start)
                                                       .arg(end)
                                                       .arg(setup.m_values.size() - 1));
                    return Outcome::value(setup.m_values.mid(start, end - start + 1));
                })
        .method("getString", [](ArraySetup &setup, const QVariantList &) { return Outcome::value(setup.text()); })
        .method("size",
                [](ArraySetup &setup, const QVariantList &) { return Outcome::value(int(setup.m_values.size())); })
        .with(changeableHandler())
        .with(defaultHandler())
        .busSignal("setupChanged", [](const ArraySetup &) { return QVariantList(); });
}

bool ArraySetup::setRange(const QVariant &value, int start, int end)
{
    if (start < 0 || end >= m_values.size() || start > end)
        return false;
    QVariantList values = m_values;
    for (int i = start; i <= end; ++i)
        values[i] = value;
    return store(values);
}

bool ArraySetup::setAll(const QVariantList &values)
{
    return values.size() == m_values.size() && store(values);
}

bool ArraySetup::store(const QVariantList &values)
{
    if (!isChangeable())
        return false;
    QVariantList accepted;
    for (const QVariant &value : values) {
        if (!Wire::isNumber(value) || !m_range.refusal(value.toDouble()).isEmpty())
            return false;
        accepted.append(value.toDouble());
    }
    if (accepted != m_values) {
        m_values = accepted;
        emitSignal(changedSignal, {});
    }
    return true;
}

void ArraySetup::restoreDefault()
{
    restore(m_values, m_defaults);
}

std::unique_ptr<Element> read(const Element::Binding &binding, const ModelFields &fields)
{
    const NumericRange range = fields.range(false);
    QVariantList defaults;
    for (const QJsonValue &value : fields.array(QStringLiteral("default"))) {
        if (!value.isDouble())
            throw ModelError{QStringLiteral("default must hold numbers only")};
        ModelFields::check(range.refusal(value.toDouble()), QStringLiteral("default"));
        defaults.append(value.toDouble());
    }
    if (defaults.isEmpty())
        throw ModelError{QStringLiteral("default is empty")};
    return std::make_unique<ArraySetup>(binding, fields.flag(QStringLiteral("changeable"), true), defaults, range);
}

} // namespace

void registerSetupArrayItemInterface(SimulatedKinds &registry)
{
    registry.add(QStringLiteral("SetupArrayItemInterface"), ArraySetup::handlers(), read);
}
