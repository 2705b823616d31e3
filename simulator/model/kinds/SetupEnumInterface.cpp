#include "ModelFields.h"
#include "SimCompat.h"
#include "SimulatedKinds.h"
#include "SingleValueSetup.h"

namespace {

/// A choice from a list, set by index or by text; the stored value is the index.
class EnumSetup : public SingleValueSetup
{
public:
    EnumSetup(const Binding &binding, const Common &common, const QStringList &choices)
        : SingleValueSetup(binding, common)
        , m_choices(choices)
    {
    }

    QString text() const override { return m_choices.value(value().toInt()); }

    static Handlers handlers()
    {
        return HandlersOf<EnumSetup>()
            .method("setValue", "i",
                    [](EnumSetup &setup, const QVariantList &a) { return Outcome::value(setup.assign(a.at(0))); })
            .method("setValue", "s",
                    [](EnumSetup &setup, const QVariantList &a) {
                        return Outcome::value(setup.assign(setup.fromText(a.at(0).toString())));
                    })
            .method("getValueList",
                    [](EnumSetup &setup, const QVariantList &) {
                        return Outcome::value(setup.m_choices.join(QLatin1Char(';')));
                    })
            .method("getStringRepresentation",
                    [](EnumSetup &setup, const QVariantList &a) {
                        const int index = a.at(0).toInt();
                        if (index < 0 || index >= setup.m_choices.size())
                            return Outcome::error(ErrorNames::outOfRange, QStringLiteral("No choice %1").arg(index));
                        return Outcome::value(setup.m_choices.at(index));
                    })
            .method("getQuantity",
                    [](EnumSetup &setup, const QVariantList &) { return Outcome::value(int(setup.m_choices.size())); })
            // The application runs the chosen action; the simulator has none to run.
            .method("execute", [](EnumSetup &, const QVariantList &) { return Outcome::reply(); })
            .with(readHandlers())
            .with(changeSignal())
            .with(changeableHandler())
            .with(defaultHandler());
    }

protected:
    QString refusal(const QVariant &candidate) const override
    {
        if (SimCompat::typeId(candidate) != QMetaType::Int)
            return QStringLiteral("not one of the choices");
        const int index = candidate.toInt();
        if (index < 0 || index >= m_choices.size())
            return QStringLiteral("no choice %1").arg(index);
        return {};
    }

    QVariant fromText(const QString &text) const override
    {
        const int index = m_choices.indexOf(text);
        return index >= 0 ? QVariant(index) : QVariant(text);
    }

    QVariantList changeArguments() const override { return {value(), text()}; }

private:
    QStringList m_choices;
};

std::unique_ptr<Element> read(const Element::Binding &binding, const ModelFields &fields)
{
    const QStringList choices = fields.choices(QStringLiteral("choices"));
    const QJsonValue given = fields.required(QStringLiteral("default"));
    const int index = given.isString() ? choices.indexOf(given.toString()) : fields.integer(QStringLiteral("default"));
    if (index < 0 || index >= choices.size())
        throw ModelError{QStringLiteral("default is not one of the choices")};
    return std::make_unique<EnumSetup>(binding, SingleValueSetup::Common::read(fields, index), choices);
}

} // namespace

void registerSetupEnumInterface(SimulatedKinds &registry)
{
    registry.add(QStringLiteral("SetupEnumInterface"), EnumSetup::handlers(), read);
}
