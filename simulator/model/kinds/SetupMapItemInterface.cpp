#include "ModelFields.h"
#include "SettingElement.h"
#include "SimulatedKinds.h"
#include "Wire.h"

namespace {

/// Values under string keys; every value of the base element's type.
class MapSetup : public SettingElement
{
public:
    static Handlers handlers();

    MapSetup(const Binding &binding, bool changeable, const QVariantMap &defaults, const QVariant &baseElement);

    QString text() const override;
    void restoreDefault() override;

private:
    bool setEntry(const QString &key, const QVariant &value);
    int removeEntry(const QString &key);

    QVariantMap m_entries;
    QVariantMap m_defaults;
    QVariant m_baseElement;
};

MapSetup::MapSetup(const Binding &binding, bool changeable, const QVariantMap &defaults, const QVariant &baseElement)
    : SettingElement(binding, changeable)
    , m_entries(defaults)
    , m_defaults(defaults)
    , m_baseElement(baseElement)
{
}

Handlers MapSetup::handlers()
{
    return HandlersOf<MapSetup>()
        .method("setValue",
                [](MapSetup &setup, const QVariantList &a) {
                    return Outcome::value(setup.setEntry(a.at(0).toString(), Wire::plain(a.at(1))));
                })
        .method(
            "getAllKeys",
            [](MapSetup &setup, const QVariantList &) { return Outcome::value(QStringList(setup.m_entries.keys())); })
        .method("isKeyAvailable",
                [](MapSetup &setup, const QVariantList &a) {
                    return Outcome::value(setup.m_entries.contains(a.at(0).toString()));
                })
        .method("getValue",
                [](MapSetup &setup, const QVariantList &a) {
                    const QString key = a.at(0).toString();
                    if (!setup.m_entries.contains(key))
                        return Outcome::unknownKey(QStringLiteral("key \"%1\"").arg(key));
                    return Outcome::value(Wire::variant(setup.m_entries.value(key)));
                })
        .method(
            "getBaseElement",
            [](MapSetup &setup, const QVariantList &) { return Outcome::value(Wire::variant(setup.m_baseElement)); })
        .method("getString", [](MapSetup &setup, const QVariantList &) { return Outcome::value(setup.text()); })
        .method("size",
                [](MapSetup &setup, const QVariantList &) { return Outcome::value(int(setup.m_entries.size())); })
        .method("removeItem",
                [](MapSetup &setup, const QVariantList &a) {
                    return Outcome::value(setup.removeEntry(a.at(0).toString()));
                })
        .with(changeableHandler())
        .with(defaultHandler())
        .busSignal("setupChanged", [](const MapSetup &) { return QVariantList(); });
}

bool MapSetup::setEntry(const QString &key, const QVariant &value)
{
    if (!isChangeable() || key.isEmpty() || !Wire::sameFamily(m_baseElement, value))
        return false;
    if (m_entries.value(key) == value && m_entries.contains(key))
        return true;
    m_entries.insert(key, value);
    emitSignal(changedSignal, {});
    return true;
}

int MapSetup::removeEntry(const QString &key)
{
    if (!isChangeable() || !m_entries.remove(key))
        return 0;
    emitSignal(changedSignal, {});
    return 1;
}

QString MapSetup::text() const
{
    return Wire::keyValueText(m_entries, [](const QString &) { return QString(); });
}

void MapSetup::restoreDefault()
{
    restore(m_entries, m_defaults);
}

std::unique_ptr<Element> read(const Element::Binding &binding, const ModelFields &fields)
{
    const QVariant base = fields.scalar(QStringLiteral("baseElement"));
    const QVariantMap defaults = Wire::fromJson(fields.object(QStringLiteral("default"))).toMap();
    for (auto it = defaults.cbegin(); it != defaults.cend(); ++it) {
        if (!Wire::sameFamily(base, it.value()))
            throw ModelError{QStringLiteral("default entry \"%1\" is not of the base element's type").arg(it.key())};
    }
    return std::make_unique<MapSetup>(binding, fields.flag(QStringLiteral("changeable"), true), defaults, base);
}

} // namespace

void registerSetupMapItemInterface(SimulatedKinds &registry)
{
    registry.add(QStringLiteral("SetupMapItemInterface"), MapSetup::handlers(), read);
}
