#include "ModelFields.h"
#include "SimulatedKinds.h"
#include "SingleValueSetup.h"

namespace {

class StringSetup : public SingleValueSetup
{
public:
    StringSetup(const Binding &binding, const Common &common, int maxLength)
        : SingleValueSetup(binding, common)
        , m_maxLength(maxLength)
    {
    }

protected:
    QString refusal(const QVariant &candidate) const override
    {
        if (!Wire::isText(candidate))
            return QStringLiteral("not a text");
        if (m_maxLength >= 0 && candidate.toString().size() > m_maxLength)
            return QStringLiteral("longer than %1 characters").arg(m_maxLength);
        return {};
    }

    QVariant fromText(const QString &text) const override { return text; }

private:
    int m_maxLength;
};

std::unique_ptr<Element> read(const Element::Binding &binding, const ModelFields &fields)
{
    const int maxLength = fields.integer(QStringLiteral("maxLength"), -1);
    const QString defaultValue = fields.text(QStringLiteral("default"));
    if (maxLength >= 0 && defaultValue.size() > maxLength)
        throw ModelError{QStringLiteral("default is longer than maxLength %1").arg(maxLength)};
    return std::make_unique<StringSetup>(binding, SingleValueSetup::Common::read(fields, defaultValue), maxLength);
}

} // namespace

void registerSetupStringInterface(SimulatedKinds &registry)
{
    registry.add(QStringLiteral("SetupStringInterface"), SingleValueSetup::plainHandlers(), read);
}
