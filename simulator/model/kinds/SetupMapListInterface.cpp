#include "ItemRule.h"
#include "ModelFields.h"
#include "SettingElement.h"
#include "SimCompat.h"
#include "SimulatedKinds.h"
#include "Wire.h"

namespace {

/// Why @p entry does not fit @p items, or empty.
QString entryRefusal(const QMap<QString, ItemRule> &items, const QVariantMap &entry);

Outcome noEntryAt(int position)
{
    return Outcome::outOfRange(QStringLiteral("No entry at position %1").arg(position));
}

/// An ordered list of maps, each entry named by its key item.
class MapListSetup : public SettingElement
{
public:
    static Handlers handlers();

    MapListSetup(const Binding &binding, bool changeable, const QString &keyItem, const QMap<QString, ItemRule> &items,
                 const QList<QVariantMap> &defaults);

    QString text() const override;
    void restoreDefault() override;

private:
    bool setEntry(const QString &name, const QVariantMap &entry);
    bool setItem(int position, const QString &item, const QVariant &value);
    QString refusal(const QVariantMap &entry) const;
    int position(const QString &name) const;
    bool hasPosition(int position) const;
    QString entryText(int position) const;
    /// Runs @p read on the entry at @p position and item @p item, or answers why it cannot.
    Outcome withItem(const QVariantList &arguments,
                     const std::function<Outcome(const QVariantMap &, const QString &)> &read) const;

    QString m_keyItem;
    QMap<QString, ItemRule> m_items;
    QList<QVariantMap> m_entries;
    QList<QVariantMap> m_defaults;
};

MapListSetup::MapListSetup(const Binding &binding, bool changeable, const QString &keyItem,
                           const QMap<QString, ItemRule> &items, const QList<QVariantMap> &defaults)
    : SettingElement(binding, changeable)
    , m_keyItem(keyItem)
    , m_items(items)
    , m_entries(defaults)
    , m_defaults(defaults)
{
}

Handlers MapListSetup::handlers()
{
    const auto limit = [](bool minimum) {
        return [minimum](MapListSetup &setup, const QVariantList &a) {
            return setup.withItem(a, [&setup, minimum](const QVariantMap &, const QString &item) {
                return setup.m_items.value(item).limit(minimum, item);
            });
        };
    };
    return HandlersOf<MapListSetup>()
        .method("setValue", "sv",
                [](MapListSetup &setup, const QVariantList &a) {
                    const QVariant entry = Wire::plain(a.at(1));
                    if (SimCompat::typeId(entry) != QMetaType::QVariantMap)
                        return Outcome::value(false);
                    return Outcome::value(setup.setEntry(a.at(0).toString(), entry.toMap()));
                })
        .method("setValue", "isv",
                [](MapListSetup &setup, const QVariantList &a) {
                    return Outcome::value(setup.setItem(a.at(0).toInt(), a.at(1).toString(), Wire::plain(a.at(2))));
                })
        .method("getAllKeys",
                [](MapListSetup &setup, const QVariantList &) {
                    QStringList names;
                    for (const QVariantMap &entry : setup.m_entries)
                        names.append(entry.value(setup.m_keyItem).toString());
                    return Outcome::value(names);
                })
        .method("isKeyAvailable",
                [](MapListSetup &setup, const QVariantList &a) {
                    return Outcome::value(setup.position(a.at(0).toString()) >= 0);
                })
        .method("getKeyPosition",
                [](MapListSetup &setup, const QVariantList &a) {
                    return Outcome::value(setup.position(a.at(0).toString()));
                })
        .method("getValue", "i",
                [](MapListSetup &setup, const QVariantList &a) {
                    const int pos = a.at(0).toInt();
                    if (!setup.hasPosition(pos))
                        return noEntryAt(pos);
                    return Outcome::value(setup.m_entries.at(pos));
                })
        .method("getValue", "is",
                [](MapListSetup &setup, const QVariantList &a) {
                    return setup.withItem(a, [](const QVariantMap &entry, const QString &item) {
                        return Outcome::value(Wire::variant(entry.value(item)));
                    });
                })
        .method("getStringValue",
                [](MapListSetup &setup, const QVariantList &a) {
                    return setup.withItem(a, [&setup](const QVariantMap &entry, const QString &item) {
                        return Outcome::value(Wire::text(entry.value(item), setup.m_items.value(item).unit));
                    });
                })
        .method("getString",
                [](MapListSetup &setup, const QVariantList &a) {
                    const int pos = a.at(0).toInt();
                    if (!setup.hasPosition(pos))
                        return noEntryAt(pos);
                    return Outcome::value(setup.entryText(pos));
                })
        .method("getMin", limit(true))
        .method("getMax", limit(false))
        .method("size",
                [](MapListSetup &setup, const QVariantList &) { return Outcome::value(int(setup.m_entries.size())); })
        .method("removeItem",
                [](MapListSetup &setup, const QVariantList &a) {
                    const int pos = a.at(0).toInt();
                    if (!setup.isChangeable() || !setup.hasPosition(pos))
                        return Outcome::value(false);
                    setup.m_entries.removeAt(pos);
                    setup.emitSignal(changedSignal, {});
                    return Outcome::value(true);
                })
        .with(changeableHandler())
        .with(defaultHandler())
        .busSignal("setupChanged", [](const MapListSetup &) { return QVariantList(); })
        .busSignal("setupBoundsChanged", [](const MapListSetup &) { return QVariantList(); });
}

Outcome MapListSetup::withItem(const QVariantList &arguments,
                               const std::function<Outcome(const QVariantMap &, const QString &)> &read) const
{
    const int pos = arguments.at(0).toInt();
    const QString item = arguments.at(1).toString();
    if (!hasPosition(pos))
        return noEntryAt(pos);
    if (!m_items.contains(item))
        return Outcome::unknownKey(QStringLiteral("item \"%1\"").arg(item));
    return read(m_entries.at(pos), item);
}

QString MapListSetup::refusal(const QVariantMap &entry) const
{
    return entryRefusal(m_items, entry);
}

QString entryRefusal(const QMap<QString, ItemRule> &items, const QVariantMap &entry)
{
    // An entry holds every item, so that each entry reads alike.
    for (auto it = items.cbegin(); it != items.cend(); ++it) {
        if (!entry.contains(it.key()))
            return QStringLiteral("missing item \"%1\"").arg(it.key());
    }
    for (auto it = entry.cbegin(); it != entry.cend(); ++it) {
        if (!items.contains(it.key()))
            return QStringLiteral("no item \"%1\" in \"items\"").arg(it.key());
        const QString why = items.value(it.key()).refusal(it.value());
        if (!why.isEmpty())
            return QStringLiteral("item \"%1\": %2").arg(it.key(), why);
    }
    return {};
}

bool MapListSetup::setEntry(const QString &name, const QVariantMap &entry)
{
    // The name given is the entry's key item; an entry naming itself otherwise is refused.
    if (entry.contains(m_keyItem) && entry.value(m_keyItem) != QVariant(name))
        return false;
    QVariantMap named = entry;
    named.insert(m_keyItem, name);
    if (!isChangeable() || name.isEmpty() || !refusal(named).isEmpty())
        return false;
    const int pos = position(name);
    if (pos >= 0) {
        if (m_entries.at(pos) == named)
            return true;
        m_entries[pos] = named;
    } else {
        m_entries.append(named);
    }
    emitSignal(changedSignal, {});
    return true;
}

bool MapListSetup::setItem(int pos, const QString &item, const QVariant &value)
{
    if (!isChangeable() || !hasPosition(pos) || item == m_keyItem)
        return false;
    QVariantMap entry = m_entries.at(pos);
    entry.insert(item, value);
    if (!refusal(entry).isEmpty())
        return false;
    if (entry != m_entries.at(pos)) {
        m_entries[pos] = entry;
        emitSignal(changedSignal, {});
    }
    return true;
}

bool MapListSetup::hasPosition(int pos) const
{
    return pos >= 0 && pos < m_entries.size();
}

int MapListSetup::position(const QString &name) const
{
    for (int i = 0; i < m_entries.size(); ++i) {
        if (m_entries.at(i).value(m_keyItem).toString() == name)
            return i;
    }
    return -1;
}

QString MapListSetup::entryText(int pos) const
{
    return Wire::keyValueText(m_entries.at(pos), [this](const QString &item) { return m_items.value(item).unit; });
}

QString MapListSetup::text() const
{
    QStringList parts;
    for (int i = 0; i < m_entries.size(); ++i)
        parts.append(QLatin1Char('{') + entryText(i) + QLatin1Char('}'));
    return parts.join(QStringLiteral(", "));
}

void MapListSetup::restoreDefault()
{
    restore(m_entries, m_defaults);
}

std::unique_ptr<Element> read(const Element::Binding &binding, const ModelFields &fields)
{
    const QString keyItem = fields.text(QStringLiteral("keyItem"));
    const QMap<QString, ItemRule> rules = ItemRule::read(fields.object(QStringLiteral("items")));
    if (!rules.contains(keyItem))
        throw ModelError{QStringLiteral("keyItem \"%1\" is not in \"items\"").arg(keyItem)};
    QList<QVariantMap> defaults;
    for (const QJsonValue &value : fields.array(QStringLiteral("default"))) {
        if (!value.isObject())
            throw ModelError{QStringLiteral("default must hold objects only")};
        const QVariantMap entry = Wire::fromJson(value).toMap();
        const QString where = QStringLiteral("default entry %1").arg(defaults.size());
        if (!Wire::isText(entry.value(keyItem)))
            throw ModelError{QStringLiteral("%1 has no text \"%2\"").arg(where, keyItem)};
        ModelFields::check(entryRefusal(rules, entry), where);
        defaults.append(entry);
    }
    return std::make_unique<MapListSetup>(binding, fields.flag(QStringLiteral("changeable"), true), keyItem, rules,
                                          defaults);
}

} // namespace

void registerSetupMapListInterface(SimulatedKinds &registry)
{
    registry.add(QStringLiteral("SetupMapListInterface"), MapListSetup::handlers(), read);
}
