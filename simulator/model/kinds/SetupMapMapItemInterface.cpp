#include "ItemRule.h"
#include "ModelFields.h"
#include "SettingElement.h"
#include "SimCompat.h"
#include "SimulatedKinds.h"
#include "Wire.h"

#include <QJsonDocument>

namespace {

/// Entries under primary keys, each a map of cells under second keys.
class MapMapSetup : public SettingElement
{
public:
    using MapOfMaps = QMap<QString, QVariantMap>;

    static Handlers handlers();

    MapMapSetup(const Binding &binding, bool changeable, const QMap<QString, ItemRule> &items,
                const QVariantMap &baseElement, const MapOfMaps &defaults);

    QString text() const override;
    void restoreDefault() override;

private:
    bool replaceAll(const MapOfMaps &entries);
    bool setEntry(const QString &primaryKey, const QVariantMap &entry);
    bool setCell(const QString &primaryKey, const QString &secondKey, const QVariant &value);
    bool setCellFromText(const QString &primaryKey, const QString &secondKey, const QString &text);
    int removeEntry(const QString &primaryKey);
    int removeCell(const QString &primaryKey, const QString &secondKey);
    bool mergeFromDefault(const QString &primaryKey);
    QString refusal(const QString &secondKey, const QVariant &value) const;
    QString entryText(const QString &primaryKey) const;
    /// Emits one setupChangedPart per cell that differs between @p before and the current entries.
    void signalDifferences(const MapOfMaps &before);
    static bool fromJsonTexts(const QVariantMap &texts, MapOfMaps *entries);
    Outcome withCell(const QVariantList &arguments,
                     const std::function<Outcome(const QString &, const QString &, const QVariant &)> &read) const;

    QMap<QString, ItemRule> m_items;
    QVariantMap m_baseElement;
    MapOfMaps m_entries;
    MapOfMaps m_defaults;
};

MapMapSetup::MapMapSetup(const Binding &binding, bool changeable, const QMap<QString, ItemRule> &items,
                         const QVariantMap &baseElement, const MapOfMaps &defaults)
    : SettingElement(binding, changeable)
    , m_items(items)
    , m_baseElement(baseElement)
    , m_entries(defaults)
    , m_defaults(defaults)
{
}

Handlers MapMapSetup::handlers()
{
    const auto limit = [](bool minimum) {
        return [minimum](MapMapSetup &setup, const QVariantList &a) {
            return setup.withCell(a, [&setup, minimum](const QString &, const QString &secondKey, const QVariant &) {
                return setup.m_items.value(secondKey).limit(minimum, secondKey);
            });
        };
    };
    return HandlersOf<MapMapSetup>()
        .method("setValue", "a{sv}",
                [](MapMapSetup &setup, const QVariantList &a) {
                    MapOfMaps entries;
                    return Outcome::value(setup.fromJsonTexts(Wire::plain(a.at(0)).toMap(), &entries) &&
                                          setup.replaceAll(entries));
                })
        .method("setValue", "sa{sv}",
                [](MapMapSetup &setup, const QVariantList &a) {
                    return Outcome::value(setup.setEntry(a.at(0).toString(), Wire::plain(a.at(1)).toMap()));
                })
        .method("setValue", "sv",
                [](MapMapSetup &setup, const QVariantList &a) {
                    const QVariant entry = Wire::plain(a.at(1));
                    return Outcome::value(SimCompat::typeId(entry) == QMetaType::QVariantMap &&
                                          setup.setEntry(a.at(0).toString(), entry.toMap()));
                })
        .method("setValue", "ssv",
                [](MapMapSetup &setup, const QVariantList &a) {
                    return Outcome::value(setup.setCell(a.at(0).toString(), a.at(1).toString(), Wire::plain(a.at(2))));
                })
        .method("setValue", "sss",
                [](MapMapSetup &setup, const QVariantList &a) {
                    return Outcome::value(
                        setup.setCellFromText(a.at(0).toString(), a.at(1).toString(), a.at(2).toString()));
                })
        .method("setDefaultMap", "a{sv}",
                [](MapMapSetup &setup, const QVariantList &a) {
                    MapOfMaps entries;
                    if (!setup.isChangeable() || !setup.fromJsonTexts(Wire::plain(a.at(0)).toMap(), &entries))
                        return Outcome::value(false);
                    setup.m_defaults = entries;
                    return Outcome::value(true);
                })
        .method("setDefaultMap", "sa{sv}",
                [](MapMapSetup &setup, const QVariantList &a) {
                    const QVariantMap entry = Wire::plain(a.at(1)).toMap();
                    for (auto it = entry.cbegin(); it != entry.cend(); ++it) {
                        if (!setup.refusal(it.key(), it.value()).isEmpty())
                            return Outcome::value(false);
                    }
                    if (!setup.isChangeable() || a.at(0).toString().isEmpty())
                        return Outcome::value(false);
                    setup.m_defaults.insert(a.at(0).toString(), entry);
                    return Outcome::value(true);
                })
        .method("mergeFromDefaultMap", "s",
                [](MapMapSetup &setup, const QVariantList &a) {
                    return Outcome::value(setup.mergeFromDefault(a.at(0).toString()));
                })
        .method("mergeFromDefaultMap", "",
                [](MapMapSetup &setup, const QVariantList &) {
                    QStringList merged;
                    for (const QString &primaryKey : setup.m_defaults.keys()) {
                        const QVariantMap before = setup.m_entries.value(primaryKey);
                        if (setup.mergeFromDefault(primaryKey) && setup.m_entries.value(primaryKey) != before)
                            merged.append(primaryKey);
                    }
                    return Outcome::value(merged);
                })
        .method("getAllKeys", "",
                [](MapMapSetup &setup, const QVariantList &) {
                    return Outcome::value(QStringList(setup.m_entries.keys()));
                })
        .method("getAllKeys", "s",
                [](MapMapSetup &setup, const QVariantList &a) {
                    const QString primaryKey = a.at(0).toString();
                    if (!setup.m_entries.contains(primaryKey))
                        return Outcome::unknownKey(QStringLiteral("entry \"%1\"").arg(primaryKey));
                    return Outcome::value(QStringList(setup.m_entries.value(primaryKey).keys()));
                })
        .method("isKeyAvailable",
                [](MapMapSetup &setup, const QVariantList &a) {
                    return Outcome::value(setup.m_entries.contains(a.at(0).toString()));
                })
        .method("getValue", "s",
                [](MapMapSetup &setup, const QVariantList &a) {
                    const QString primaryKey = a.at(0).toString();
                    if (!setup.m_entries.contains(primaryKey))
                        return Outcome::unknownKey(QStringLiteral("entry \"%1\"").arg(primaryKey));
                    return Outcome::value(setup.m_entries.value(primaryKey));
                })
        .method("getValue", "ss",
                [](MapMapSetup &setup, const QVariantList &a) {
                    return setup.withCell(a, [](const QString &, const QString &, const QVariant &value) {
                        return Outcome::value(Wire::variant(value));
                    });
                })
        .method("getStringValue",
                [](MapMapSetup &setup, const QVariantList &a) {
                    return setup.withCell(
                        a, [&setup](const QString &, const QString &secondKey, const QVariant &value) {
                            return Outcome::value(Wire::text(value, setup.m_items.value(secondKey).unit));
                        });
                })
        .method("getMin", limit(true))
        .method("getMax", limit(false))
        .method("getEnums",
                [](MapMapSetup &setup, const QVariantList &a) {
                    return setup.withCell(a, [&setup](const QString &, const QString &secondKey, const QVariant &) {
                        return Outcome::value(setup.m_items.value(secondKey).enums);
                    });
                })
        .method(
            "getBaseElement",
            [](MapMapSetup &setup, const QVariantList &) { return Outcome::value(Wire::variant(setup.m_baseElement)); })
        .method("getString", "", [](MapMapSetup &setup, const QVariantList &) { return Outcome::value(setup.text()); })
        .method("getString", "s",
                [](MapMapSetup &setup, const QVariantList &a) {
                    const QString primaryKey = a.at(0).toString();
                    if (!setup.m_entries.contains(primaryKey))
                        return Outcome::unknownKey(QStringLiteral("entry \"%1\"").arg(primaryKey));
                    return Outcome::value(setup.entryText(primaryKey));
                })
        .method("size",
                [](MapMapSetup &setup, const QVariantList &) { return Outcome::value(int(setup.m_entries.size())); })
        .method("removeItem", "s",
                [](MapMapSetup &setup, const QVariantList &a) {
                    return Outcome::value(setup.removeEntry(a.at(0).toString()));
                })
        .method("removeItem", "ss",
                [](MapMapSetup &setup, const QVariantList &a) {
                    return Outcome::value(setup.removeCell(a.at(0).toString(), a.at(1).toString()));
                })
        .with(changeableHandler())
        .with(defaultHandler())
        .busSignal("setupChanged", [](const MapMapSetup &) { return QVariantList(); })
        .busSignal(
            "setupChangedPart",
            [](const MapMapSetup &setup) {
                const QString primaryKey = setup.m_entries.isEmpty() ? QString() : setup.m_entries.firstKey();
                const QVariantMap entry = setup.m_entries.value(primaryKey);
                const QString secondKey = entry.isEmpty() ? QString() : entry.firstKey();
                return QVariantList{primaryKey, secondKey, Wire::variant(entry.value(secondKey, QString())), false};
            })
        .busSignal("mapEntryRemoved",
                   [](const MapMapSetup &setup) {
                       return QVariantList{setup.m_entries.isEmpty() ? QString() : setup.m_entries.firstKey()};
                   })
        .busSignal("setupBoundsChanged", [](const MapMapSetup &) { return QVariantList(); });
}

Outcome
MapMapSetup::withCell(const QVariantList &arguments,
                      const std::function<Outcome(const QString &, const QString &, const QVariant &)> &read) const
{
    const QString primaryKey = arguments.at(0).toString();
    const QString secondKey = arguments.at(1).toString();
    const auto entry = m_entries.constFind(primaryKey);
    if (entry == m_entries.constEnd())
        return Outcome::unknownKey(QStringLiteral("entry \"%1\"").arg(primaryKey));
    if (!entry->contains(secondKey))
        return Outcome::unknownKey(QStringLiteral("cell \"%1\" / \"%2\"").arg(primaryKey, secondKey));
    return read(primaryKey, secondKey, entry->value(secondKey));
}

bool MapMapSetup::fromJsonTexts(const QVariantMap &texts, MapOfMaps *entries)
{
    for (auto it = texts.cbegin(); it != texts.cend(); ++it) {
        if (!Wire::isText(it.value()))
            return false;
        const QJsonDocument document = QJsonDocument::fromJson(it.value().toString().toUtf8());
        if (!document.isObject())
            return false;
        entries->insert(it.key(), Wire::fromJson(document.object()).toMap());
    }
    return true;
}

QString MapMapSetup::refusal(const QString &secondKey, const QVariant &value) const
{
    if (!m_items.contains(secondKey))
        return QStringLiteral("no cell \"%1\"").arg(secondKey);
    if (m_baseElement.contains(secondKey) && !Wire::sameFamily(m_baseElement.value(secondKey), value))
        return QStringLiteral("\"%1\" of another type").arg(secondKey);
    return m_items.value(secondKey).refusal(value);
}

bool MapMapSetup::replaceAll(const MapOfMaps &entries)
{
    if (!isChangeable())
        return false;
    for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry) {
        for (auto cell = entry->cbegin(); cell != entry->cend(); ++cell) {
            if (!refusal(cell.key(), cell.value()).isEmpty())
                return false;
        }
    }
    const MapOfMaps before = m_entries;
    m_entries = entries;
    signalDifferences(before);
    return true;
}

bool MapMapSetup::setEntry(const QString &primaryKey, const QVariantMap &entry)
{
    if (primaryKey.isEmpty())
        return false;
    MapOfMaps entries = m_entries;
    entries.insert(primaryKey, entry);
    return replaceAll(entries);
}

bool MapMapSetup::setCell(const QString &primaryKey, const QString &secondKey, const QVariant &value)
{
    if (primaryKey.isEmpty())
        return false;
    MapOfMaps entries = m_entries;
    entries[primaryKey].insert(secondKey, value);
    return replaceAll(entries);
}

bool MapMapSetup::setCellFromText(const QString &primaryKey, const QString &secondKey, const QString &text)
{
    const QVariant model = m_baseElement.value(secondKey);
    QVariant value = text;
    if (Wire::isNumber(model)) {
        bool ok = false;
        const double number = text.toDouble(&ok);
        if (!ok)
            return false;
        value = number;
    } else if (Wire::isBool(model)) {
        if (text != QLatin1String("true") && text != QLatin1String("false"))
            return false;
        value = text == QLatin1String("true");
    }
    return setCell(primaryKey, secondKey, value);
}

int MapMapSetup::removeEntry(const QString &primaryKey)
{
    if (!isChangeable() || !m_entries.contains(primaryKey))
        return 0;
    const MapOfMaps before = m_entries;
    m_entries.remove(primaryKey);
    signalDifferences(before);
    return 1;
}

int MapMapSetup::removeCell(const QString &primaryKey, const QString &secondKey)
{
    if (!isChangeable() || !m_entries.value(primaryKey).contains(secondKey))
        return 0;
    const MapOfMaps before = m_entries;
    m_entries[primaryKey].remove(secondKey);
    signalDifferences(before);
    return 1;
}

bool MapMapSetup::mergeFromDefault(const QString &primaryKey)
{
    if (!isChangeable() || !m_defaults.contains(primaryKey))
        return false;
    MapOfMaps entries = m_entries;
    QVariantMap &entry = entries[primaryKey];
    const QVariantMap defaults = m_defaults.value(primaryKey);
    for (auto it = defaults.cbegin(); it != defaults.cend(); ++it) {
        if (!entry.contains(it.key()))
            entry.insert(it.key(), it.value());
    }
    return replaceAll(entries);
}

void MapMapSetup::signalDifferences(const MapOfMaps &before)
{
    bool changed = false;
    for (auto entry = m_entries.cbegin(); entry != m_entries.cend(); ++entry) {
        const QVariantMap old = before.value(entry.key());
        for (auto cell = entry->cbegin(); cell != entry->cend(); ++cell) {
            if (old.contains(cell.key()) && old.value(cell.key()) == cell.value())
                continue;
            emitSignal(QStringLiteral("setupChangedPart"),
                       {entry.key(), cell.key(), Wire::variant(cell.value()), false});
            changed = true;
        }
        for (auto cell = old.cbegin(); cell != old.cend(); ++cell) {
            if (entry->contains(cell.key()))
                continue;
            emitSignal(QStringLiteral("setupChangedPart"),
                       {entry.key(), cell.key(), Wire::variant(cell.value()), true});
            changed = true;
        }
    }
    for (auto entry = before.cbegin(); entry != before.cend(); ++entry) {
        if (m_entries.contains(entry.key()))
            continue;
        emitSignal(QStringLiteral("mapEntryRemoved"), {entry.key()});
        changed = true;
    }
    if (changed)
        emitSignal(changedSignal, {});
}

QString MapMapSetup::entryText(const QString &primaryKey) const
{
    return Wire::keyValueText(m_entries.value(primaryKey),
                              [this](const QString &key) { return m_items.value(key).unit; });
}

QString MapMapSetup::text() const
{
    QStringList parts;
    for (const QString &primaryKey : m_entries.keys())
        parts.append(primaryKey + QStringLiteral(": {") + entryText(primaryKey) + QLatin1Char('}'));
    return parts.join(QStringLiteral(", "));
}

void MapMapSetup::restoreDefault()
{
    const MapOfMaps before = m_entries;
    m_entries = m_defaults;
    signalDifferences(before);
}

std::unique_ptr<Element> read(const Element::Binding &binding, const ModelFields &fields)
{
    const QMap<QString, ItemRule> rules = ItemRule::read(fields.object(QStringLiteral("items")));
    const QVariantMap base = Wire::fromJson(fields.object(QStringLiteral("baseElement"))).toMap();
    ItemRule::checkCells(rules, base, QStringLiteral("baseElement"));
    MapMapSetup::MapOfMaps defaults;
    const QJsonObject given = fields.object(QStringLiteral("default"));
    for (auto it = given.constBegin(); it != given.constEnd(); ++it) {
        if (!it.value().isObject())
            throw ModelError{QStringLiteral("default entry \"%1\" must be an object").arg(it.key())};
        const QVariantMap entry = Wire::fromJson(it.value()).toMap();
        ItemRule::checkCells(rules, entry, QStringLiteral("default entry \"%1\"").arg(it.key()));
        defaults.insert(it.key(), entry);
    }
    return std::make_unique<MapMapSetup>(binding, fields.flag(QStringLiteral("changeable"), true), rules, base,
                                         defaults);
}

} // namespace

void registerSetupMapMapItemInterface(SimulatedKinds &registry)
{
    registry.add(QStringLiteral("SetupMapMapItemInterface"), MapMapSetup::handlers(), read);
}
