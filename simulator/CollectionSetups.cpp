#include "CollectionSetups.h"

#include "SimCompat.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

const QString changedSignal = QStringLiteral("setupChanged");

Outcome unknownKey(const QString &what)
{
    return Outcome::error(ErrorNames::unknownKey, QStringLiteral("No %1").arg(what));
}

Outcome outOfRange(const QString &what)
{
    return Outcome::error(ErrorNames::outOfRange, what);
}

Outcome noEntryAt(int position)
{
    return outOfRange(QStringLiteral("No entry at position %1").arg(position));
}

/// The lower or upper end of an item's range, in a variant.
Outcome rangeLimit(const ItemRule &rule, bool minimum, const QString &item)
{
    if (!rule.range.bounded)
        return unknownKey(QStringLiteral("range for \"%1\"").arg(item));
    return Outcome::value(Wire::variant(minimum ? rule.range.min : rule.range.max));
}

QString keyValueText(const QVariantMap &map, const std::function<QString(const QString &)> &unitOf)
{
    QStringList parts;
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        parts.append(it.key() + QLatin1Char('=') + Wire::text(it.value(), unitOf(it.key())));
    return parts.join(QStringLiteral(", "));
}

} // namespace

CollectionSetup::CollectionSetup(const QString &path, const QString &proxyClass, bool changeable)
    : Element(path, proxyClass)
    , m_changeable(changeable)
{
}

void CollectionSetup::addChangeableAndDefaultMembers()
{
    addChangeableMember([this] { return m_changeable; });
    addDefaultMember();
}

QString ItemRule::refusal(const QVariant &value) const
{
    if (!enums.isEmpty() && !enums.contains(value.toString()))
        return QStringLiteral("%1 is not one of %2").arg(value.toString(), enums.join(QStringLiteral(", ")));
    if (range.bounded) {
        if (!Wire::isNumber(value))
            return QStringLiteral("not a number");
        return range.refusal(value.toDouble());
    }
    return {};
}

// ---- ArraySetup

ArraySetup::ArraySetup(const QString &path, bool changeable, const QVariantList &defaults, const NumericRange &range)
    : CollectionSetup(path, QStringLiteral("SetupArrayItemInterface"), changeable)
    , m_values(defaults)
    , m_defaults(defaults)
    , m_range(range)
{
    addMember(QStringLiteral("setValue"), QStringLiteral("vii"), QStringLiteral("b"), [this](const QVariantList &a) {
        return Outcome::value(setRange(Wire::plain(a.at(0)), a.at(1).toInt(), a.at(2).toInt()));
    });
    addMember(QStringLiteral("setValue"), QStringLiteral("av"), QStringLiteral("b"),
              [this](const QVariantList &a) { return Outcome::value(setAll(Wire::plain(a.at(0)).toList())); });
    addMember(QStringLiteral("getValue"), QStringLiteral("ii"), QStringLiteral("av"), [this](const QVariantList &a) {
        const int start = a.at(0).toInt();
        const int end = a.at(1).toInt();
        if (start < 0 || end >= m_values.size() || start > end)
            return outOfRange(
                QStringLiteral("Positions %1..%2 outside 0..%3").arg(start).arg(end).arg(m_values.size() - 1));
        return Outcome::value(m_values.mid(start, end - start + 1));
    });
    addMember(QStringLiteral("getString"), QString(), QStringLiteral("s"),
              [this](const QVariantList &) { return Outcome::value(text()); });
    addMember(QStringLiteral("size"), QString(), QStringLiteral("i"),
              [this](const QVariantList &) { return Outcome::value(int(m_values.size())); });
    addChangeableAndDefaultMembers();
    addSignal(changedSignal, QString(), [] { return QVariantList(); });
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
    if (m_values == m_defaults)
        return;
    m_values = m_defaults;
    emitSignal(changedSignal, {});
}

// ---- MapSetup

MapSetup::MapSetup(const QString &path, bool changeable, const QVariantMap &defaults, const QVariant &baseElement)
    : CollectionSetup(path, QStringLiteral("SetupMapItemInterface"), changeable)
    , m_entries(defaults)
    , m_defaults(defaults)
    , m_baseElement(baseElement)
{
    addMember(QStringLiteral("setValue"), QStringLiteral("sv"), QStringLiteral("b"), [this](const QVariantList &a) {
        return Outcome::value(setEntry(a.at(0).toString(), Wire::plain(a.at(1))));
    });
    addMember(QStringLiteral("getAllKeys"), QString(), QStringLiteral("as"),
              [this](const QVariantList &) { return Outcome::value(QStringList(m_entries.keys())); });
    addMember(QStringLiteral("isKeyAvailable"), QStringLiteral("s"), QStringLiteral("b"),
              [this](const QVariantList &a) { return Outcome::value(m_entries.contains(a.at(0).toString())); });
    addMember(QStringLiteral("getValue"), QStringLiteral("s"), QStringLiteral("v"), [this](const QVariantList &a) {
        const QString key = a.at(0).toString();
        if (!m_entries.contains(key))
            return unknownKey(QStringLiteral("key \"%1\"").arg(key));
        return Outcome::value(Wire::variant(m_entries.value(key)));
    });
    addMember(QStringLiteral("getBaseElement"), QString(), QStringLiteral("v"),
              [this](const QVariantList &) { return Outcome::value(Wire::variant(m_baseElement)); });
    addMember(QStringLiteral("getString"), QString(), QStringLiteral("s"),
              [this](const QVariantList &) { return Outcome::value(text()); });
    addMember(QStringLiteral("size"), QString(), QStringLiteral("i"),
              [this](const QVariantList &) { return Outcome::value(int(m_entries.size())); });
    addMember(QStringLiteral("removeItem"), QStringLiteral("s"), QStringLiteral("i"),
              [this](const QVariantList &a) { return Outcome::value(removeEntry(a.at(0).toString())); });
    addChangeableAndDefaultMembers();
    addSignal(changedSignal, QString(), [] { return QVariantList(); });
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
    return keyValueText(m_entries, [](const QString &) { return QString(); });
}

void MapSetup::restoreDefault()
{
    if (m_entries == m_defaults)
        return;
    m_entries = m_defaults;
    emitSignal(changedSignal, {});
}

// ---- MapListSetup

MapListSetup::MapListSetup(const QString &path, bool changeable, const QString &keyItem,
                           const QMap<QString, ItemRule> &items, const QList<QVariantMap> &defaults)
    : CollectionSetup(path, QStringLiteral("SetupMapListInterface"), changeable)
    , m_keyItem(keyItem)
    , m_items(items)
    , m_entries(defaults)
    , m_defaults(defaults)
{
    addMember(QStringLiteral("setValue"), QStringLiteral("sv"), QStringLiteral("b"), [this](const QVariantList &a) {
        const QVariant entry = Wire::plain(a.at(1));
        if (SimCompat::typeId(entry) != QMetaType::QVariantMap)
            return Outcome::value(false);
        return Outcome::value(setEntry(a.at(0).toString(), entry.toMap()));
    });
    addMember(QStringLiteral("setValue"), QStringLiteral("isv"), QStringLiteral("b"), [this](const QVariantList &a) {
        return Outcome::value(setItem(a.at(0).toInt(), a.at(1).toString(), Wire::plain(a.at(2))));
    });
    addMember(QStringLiteral("getAllKeys"), QString(), QStringLiteral("as"), [this](const QVariantList &) {
        QStringList names;
        for (const QVariantMap &entry : m_entries)
            names.append(entry.value(m_keyItem).toString());
        return Outcome::value(names);
    });
    addMember(QStringLiteral("isKeyAvailable"), QStringLiteral("s"), QStringLiteral("b"),
              [this](const QVariantList &a) { return Outcome::value(position(a.at(0).toString()) >= 0); });
    addMember(QStringLiteral("getKeyPosition"), QStringLiteral("s"), QStringLiteral("i"),
              [this](const QVariantList &a) { return Outcome::value(position(a.at(0).toString())); });
    addMember(QStringLiteral("getValue"), QStringLiteral("i"), QStringLiteral("a{sv}"), [this](const QVariantList &a) {
        const int pos = a.at(0).toInt();
        if (!hasPosition(pos))
            return noEntryAt(pos);
        return Outcome::value(m_entries.at(pos));
    });
    addMember(QStringLiteral("getValue"), QStringLiteral("is"), QStringLiteral("v"), [this](const QVariantList &a) {
        return withItem(a, [](const QVariantMap &entry, const QString &item) {
            return Outcome::value(Wire::variant(entry.value(item)));
        });
    });
    addMember(QStringLiteral("getStringValue"), QStringLiteral("is"), QStringLiteral("s"),
              [this](const QVariantList &a) {
                  return withItem(a, [this](const QVariantMap &entry, const QString &item) {
                      return Outcome::value(Wire::text(entry.value(item), m_items.value(item).unit));
                  });
              });
    addMember(QStringLiteral("getString"), QStringLiteral("i"), QStringLiteral("s"), [this](const QVariantList &a) {
        const int pos = a.at(0).toInt();
        if (!hasPosition(pos))
            return noEntryAt(pos);
        return Outcome::value(entryText(pos));
    });
    for (const bool minimum : {true, false}) {
        addMember(minimum ? QStringLiteral("getMin") : QStringLiteral("getMax"), QStringLiteral("is"),
                  QStringLiteral("v"), [this, minimum](const QVariantList &a) {
                      return withItem(a, [this, minimum](const QVariantMap &, const QString &item) {
                          return rangeLimit(m_items.value(item), minimum, item);
                      });
                  });
    }
    addMember(QStringLiteral("size"), QString(), QStringLiteral("i"),
              [this](const QVariantList &) { return Outcome::value(int(m_entries.size())); });
    addMember(QStringLiteral("removeItem"), QStringLiteral("i"), QStringLiteral("b"), [this](const QVariantList &a) {
        const int pos = a.at(0).toInt();
        if (!isChangeable() || !hasPosition(pos))
            return Outcome::value(false);
        m_entries.removeAt(pos);
        emitSignal(changedSignal, {});
        return Outcome::value(true);
    });
    addChangeableAndDefaultMembers();
    addSignal(changedSignal, QString(), [] { return QVariantList(); });
    addSignal(QStringLiteral("setupBoundsChanged"), QString(), [] { return QVariantList(); });
}

Outcome MapListSetup::withItem(const QVariantList &arguments,
                               const std::function<Outcome(const QVariantMap &, const QString &)> &read) const
{
    const int pos = arguments.at(0).toInt();
    const QString item = arguments.at(1).toString();
    if (!hasPosition(pos))
        return noEntryAt(pos);
    if (!m_items.contains(item))
        return unknownKey(QStringLiteral("item \"%1\"").arg(item));
    return read(m_entries.at(pos), item);
}

QString MapListSetup::refusal(const QVariantMap &entry) const
{
    for (auto it = entry.cbegin(); it != entry.cend(); ++it) {
        if (!m_items.contains(it.key()))
            return QStringLiteral("no item \"%1\"").arg(it.key());
        const QString why = m_items.value(it.key()).refusal(it.value());
        if (!why.isEmpty())
            return why;
    }
    return {};
}

bool MapListSetup::setEntry(const QString &name, const QVariantMap &entry)
{
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
    return keyValueText(m_entries.at(pos), [this](const QString &item) { return m_items.value(item).unit; });
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
    if (m_entries == m_defaults)
        return;
    m_entries = m_defaults;
    emitSignal(changedSignal, {});
}

// ---- MapMapSetup

MapMapSetup::MapMapSetup(const QString &path, bool changeable, const QMap<QString, ItemRule> &items,
                         const QVariantMap &baseElement, const MapOfMaps &defaults)
    : CollectionSetup(path, QStringLiteral("SetupMapMapItemInterface"), changeable)
    , m_items(items)
    , m_baseElement(baseElement)
    , m_entries(defaults)
    , m_defaults(defaults)
{
    const QString sig_s = QStringLiteral("s");
    const QString sig_ss = QStringLiteral("ss");
    addMember(QStringLiteral("setValue"), QStringLiteral("a{sv}"), QStringLiteral("b"), [this](const QVariantList &a) {
        MapOfMaps entries;
        return Outcome::value(fromJsonTexts(Wire::plain(a.at(0)).toMap(), &entries) && replaceAll(entries));
    });
    addMember(QStringLiteral("setValue"), QStringLiteral("sa{sv}"), QStringLiteral("b"), [this](const QVariantList &a) {
        return Outcome::value(setEntry(a.at(0).toString(), Wire::plain(a.at(1)).toMap()));
    });
    // The fire-and-forget form sends the entry inside a variant.
    addMember(QStringLiteral("setValue"), QStringLiteral("sv"), QStringLiteral("b"), [this](const QVariantList &a) {
        const QVariant entry = Wire::plain(a.at(1));
        return Outcome::value(SimCompat::typeId(entry) == QMetaType::QVariantMap &&
                              setEntry(a.at(0).toString(), entry.toMap()));
    });
    addMember(QStringLiteral("setValue"), QStringLiteral("ssv"), QStringLiteral("b"), [this](const QVariantList &a) {
        return Outcome::value(setCell(a.at(0).toString(), a.at(1).toString(), Wire::plain(a.at(2))));
    });
    addMember(QStringLiteral("setValue"), QStringLiteral("sss"), QStringLiteral("b"), [this](const QVariantList &a) {
        return Outcome::value(setCellFromText(a.at(0).toString(), a.at(1).toString(), a.at(2).toString()));
    });
    addMember(QStringLiteral("setDefaultMap"), QStringLiteral("a{sv}"), QStringLiteral("b"),
              [this](const QVariantList &a) {
                  MapOfMaps entries;
                  if (!isChangeable() || !fromJsonTexts(Wire::plain(a.at(0)).toMap(), &entries))
                      return Outcome::value(false);
                  m_defaults = entries;
                  return Outcome::value(true);
              });
    addMember(QStringLiteral("setDefaultMap"), QStringLiteral("sa{sv}"), QStringLiteral("b"),
              [this](const QVariantList &a) {
                  const QVariantMap entry = Wire::plain(a.at(1)).toMap();
                  for (auto it = entry.cbegin(); it != entry.cend(); ++it) {
                      if (!refusal(it.key(), it.value()).isEmpty())
                          return Outcome::value(false);
                  }
                  if (!isChangeable() || a.at(0).toString().isEmpty())
                      return Outcome::value(false);
                  m_defaults.insert(a.at(0).toString(), entry);
                  return Outcome::value(true);
              });
    addMember(QStringLiteral("mergeFromDefaultMap"), sig_s, QStringLiteral("b"),
              [this](const QVariantList &a) { return Outcome::value(mergeFromDefault(a.at(0).toString())); });
    addMember(QStringLiteral("mergeFromDefaultMap"), QString(), QStringLiteral("as"), [this](const QVariantList &) {
        QStringList merged;
        for (const QString &primaryKey : m_defaults.keys()) {
            const QVariantMap before = m_entries.value(primaryKey);
            if (mergeFromDefault(primaryKey) && m_entries.value(primaryKey) != before)
                merged.append(primaryKey);
        }
        return Outcome::value(merged);
    });
    addMember(QStringLiteral("getAllKeys"), QString(), QStringLiteral("as"),
              [this](const QVariantList &) { return Outcome::value(QStringList(m_entries.keys())); });
    addMember(QStringLiteral("getAllKeys"), sig_s, QStringLiteral("as"), [this](const QVariantList &a) {
        const QString primaryKey = a.at(0).toString();
        if (!m_entries.contains(primaryKey))
            return unknownKey(QStringLiteral("entry \"%1\"").arg(primaryKey));
        return Outcome::value(QStringList(m_entries.value(primaryKey).keys()));
    });
    addMember(QStringLiteral("isKeyAvailable"), sig_s, QStringLiteral("b"),
              [this](const QVariantList &a) { return Outcome::value(m_entries.contains(a.at(0).toString())); });
    addMember(QStringLiteral("getValue"), sig_s, QStringLiteral("a{sv}"), [this](const QVariantList &a) {
        const QString primaryKey = a.at(0).toString();
        if (!m_entries.contains(primaryKey))
            return unknownKey(QStringLiteral("entry \"%1\"").arg(primaryKey));
        return Outcome::value(m_entries.value(primaryKey));
    });
    addMember(QStringLiteral("getValue"), sig_ss, QStringLiteral("v"), [this](const QVariantList &a) {
        return withCell(a, [](const QString &, const QString &, const QVariant &value) {
            return Outcome::value(Wire::variant(value));
        });
    });
    addMember(QStringLiteral("getStringValue"), sig_ss, QStringLiteral("s"), [this](const QVariantList &a) {
        return withCell(a, [this](const QString &, const QString &secondKey, const QVariant &value) {
            return Outcome::value(Wire::text(value, m_items.value(secondKey).unit));
        });
    });
    for (const bool minimum : {true, false}) {
        addMember(minimum ? QStringLiteral("getMin") : QStringLiteral("getMax"), sig_ss, QStringLiteral("v"),
                  [this, minimum](const QVariantList &a) {
                      return withCell(a, [this, minimum](const QString &, const QString &secondKey, const QVariant &) {
                          return rangeLimit(m_items.value(secondKey), minimum, secondKey);
                      });
                  });
    }
    addMember(QStringLiteral("getEnums"), sig_ss, QStringLiteral("as"), [this](const QVariantList &a) {
        return withCell(a, [this](const QString &, const QString &secondKey, const QVariant &) {
            return Outcome::value(m_items.value(secondKey).enums);
        });
    });
    addMember(QStringLiteral("getBaseElement"), QString(), QStringLiteral("v"),
              [this](const QVariantList &) { return Outcome::value(Wire::variant(m_baseElement)); });
    addMember(QStringLiteral("getString"), QString(), QStringLiteral("s"),
              [this](const QVariantList &) { return Outcome::value(text()); });
    addMember(QStringLiteral("getString"), sig_s, QStringLiteral("s"), [this](const QVariantList &a) {
        const QString primaryKey = a.at(0).toString();
        if (!m_entries.contains(primaryKey))
            return unknownKey(QStringLiteral("entry \"%1\"").arg(primaryKey));
        return Outcome::value(entryText(primaryKey));
    });
    addMember(QStringLiteral("size"), QString(), QStringLiteral("i"),
              [this](const QVariantList &) { return Outcome::value(int(m_entries.size())); });
    addMember(QStringLiteral("removeItem"), sig_s, QStringLiteral("i"),
              [this](const QVariantList &a) { return Outcome::value(removeEntry(a.at(0).toString())); });
    addMember(QStringLiteral("removeItem"), sig_ss, QStringLiteral("i"), [this](const QVariantList &a) {
        return Outcome::value(removeCell(a.at(0).toString(), a.at(1).toString()));
    });
    addChangeableAndDefaultMembers();
    addSignal(changedSignal, QString(), [] { return QVariantList(); });
    addSignal(QStringLiteral("setupChangedPart"), QStringLiteral("ssvb"), [this] {
        const QString primaryKey = m_entries.isEmpty() ? QString() : m_entries.firstKey();
        const QVariantMap entry = m_entries.value(primaryKey);
        const QString secondKey = entry.isEmpty() ? QString() : entry.firstKey();
        return QVariantList{primaryKey, secondKey, Wire::variant(entry.value(secondKey, QString())), false};
    });
    addSignal(QStringLiteral("mapEntryRemoved"), sig_s,
              [this] { return QVariantList{m_entries.isEmpty() ? QString() : m_entries.firstKey()}; });
    addSignal(QStringLiteral("setupBoundsChanged"), QString(), [] { return QVariantList(); });
}

Outcome
MapMapSetup::withCell(const QVariantList &arguments,
                      const std::function<Outcome(const QString &, const QString &, const QVariant &)> &read) const
{
    const QString primaryKey = arguments.at(0).toString();
    const QString secondKey = arguments.at(1).toString();
    const auto entry = m_entries.constFind(primaryKey);
    if (entry == m_entries.constEnd())
        return unknownKey(QStringLiteral("entry \"%1\"").arg(primaryKey));
    if (!entry->contains(secondKey))
        return unknownKey(QStringLiteral("cell \"%1\" / \"%2\"").arg(primaryKey, secondKey));
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
    return keyValueText(m_entries.value(primaryKey), [this](const QString &key) { return m_items.value(key).unit; });
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

// ---- ThresholdSetup

ThresholdSetup::ThresholdSetup(const QString &path, bool changeable, const QMap<QString, ThresholdElement> &elements,
                               const QList<Location> &locations, int maxNameLength, int maxDescriptionLength)
    : CollectionSetup(path, QStringLiteral("SetupThresholdManagerInterface"), changeable)
    , m_elements(elements)
    , m_locations(locations)
    , m_defaults(locations)
    , m_maxNameLength(maxNameLength)
    , m_maxDescriptionLength(maxDescriptionLength)
{
    const QString s = QStringLiteral("s");
    const QString ss = QStringLiteral("ss");
    addMember(QStringLiteral("setValue"), QStringLiteral("sd"), QStringLiteral("b"), [this](const QVariantList &a) {
        return Outcome::value(setValue(a.at(0).toString(), a.at(1).toDouble()));
    });
    addMember(QStringLiteral("getAllThresholdElements"), QString(), s, [this](const QVariantList &) {
        QJsonObject all;
        for (int i = 0; i < m_locations.size(); ++i)
            all.insert(m_locations.at(i).name, locationObject(i));
        return Outcome::value(QString::fromUtf8(QJsonDocument(all).toJson(QJsonDocument::Compact)));
    });
    addMember(QStringLiteral("getAttributes"), s, QStringLiteral("i"), [this](const QVariantList &a) {
        return withKey(
            a, [this](int, const QString &element) { return Outcome::value(m_elements.value(element).attributes); });
    });
    addMember(QStringLiteral("getMaxLocationDescriptionCharacterCount"), QString(), QStringLiteral("i"),
              [this](const QVariantList &) { return Outcome::value(m_maxDescriptionLength); });
    addMember(QStringLiteral("getMaxLocationNameCharacterCount"), QString(), QStringLiteral("i"),
              [this](const QVariantList &) { return Outcome::value(m_maxNameLength); });
    for (const bool minimum : {true, false}) {
        addMember(minimum ? QStringLiteral("getMinValue") : QStringLiteral("getMaxValue"), s, QStringLiteral("d"),
                  [this, minimum](const QVariantList &a) {
                      return withKey(a, [this, minimum](int, const QString &element) {
                          const NumericRange range = m_elements.value(element).range;
                          return Outcome::value(minimum ? range.min : range.max);
                      });
                  });
    }
    addMember(QStringLiteral("getThresholdElementsForLocation"), s, s, [this](const QVariantList &a) {
        const int location = locationIndex(a.at(0).toString());
        if (location < 0)
            return unknownKey(QStringLiteral("location \"%1\"").arg(a.at(0).toString()));
        return Outcome::value(
            QString::fromUtf8(QJsonDocument(locationObject(location)).toJson(QJsonDocument::Compact)));
    });
    addMember(QStringLiteral("getValue"), s, QStringLiteral("d"), [this](const QVariantList &a) {
        return withKey(
            a, [this](int location, const QString &element) { return Outcome::value(valueAt(location, element)); });
    });
    addMember(QStringLiteral("getString"), s, s, [this](const QVariantList &a) {
        return withKey(a, [this](int location, const QString &element) {
            return Outcome::value(Wire::text(valueAt(location, element), m_elements.value(element).unit));
        });
    });
    addMember(QStringLiteral("getLocationNames"), QString(), QStringLiteral("as"), [this](const QVariantList &) {
        QStringList names;
        for (const Location &location : m_locations)
            names.append(location.name);
        return Outcome::value(names);
    });
    addMember(QStringLiteral("getLocationDescription"), s, s, [this](const QVariantList &a) {
        const int location = locationIndex(a.at(0).toString());
        if (location < 0)
            return unknownKey(QStringLiteral("location \"%1\"").arg(a.at(0).toString()));
        return Outcome::value(m_locations.at(location).description);
    });
    addMember(QStringLiteral("isLocationEditable"), s, QStringLiteral("b"), [this](const QVariantList &a) {
        const int location = locationIndex(a.at(0).toString());
        return Outcome::value(isChangeable() && location >= 0 && m_locations.at(location).editable);
    });
    addMember(QStringLiteral("size"), QString(), QStringLiteral("i"),
              [this](const QVariantList &) { return Outcome::value(int(m_locations.size() * m_elements.size())); });
    addMember(QStringLiteral("setLocationDescription"), ss, QStringLiteral("b"), [this](const QVariantList &a) {
        return Outcome::value(setDescription(a.at(0).toString(), a.at(1).toString()));
    });
    addMember(QStringLiteral("createLocation"), ss, QStringLiteral("b"), [this](const QVariantList &a) {
        return Outcome::value(createLocation(a.at(0).toString(), a.at(1).toString()));
    });
    addMember(QStringLiteral("deleteLocation"), s, QStringLiteral("b"),
              [this](const QVariantList &a) { return Outcome::value(deleteLocation(a.at(0).toString())); });
    addMember(QStringLiteral("renameLocation"), ss, QStringLiteral("b"), [this](const QVariantList &a) {
        return Outcome::value(renameLocation(a.at(0).toString(), a.at(1).toString()));
    });
    addChangeableAndDefaultMembers();
    addSignal(QStringLiteral("locationNameChanged"), ss, [this] {
        const QString name = m_locations.isEmpty() ? QString() : m_locations.constLast().name;
        return QVariantList{name, name};
    });
    addSignal(QStringLiteral("locationsChanged"), QString(), [] { return QVariantList(); });
    addSignal(changedSignal, QString(), [] { return QVariantList(); });
    addSignal(changedSignal, QStringLiteral("sd"), [this] {
        if (m_locations.isEmpty() || m_elements.isEmpty())
            return QVariantList{QString(), 0.0};
        const QString element = m_elements.firstKey();
        return QVariantList{m_locations.constFirst().name + QLatin1Char('/') + element, valueAt(0, element)};
    });
}

Outcome ThresholdSetup::withKey(const QVariantList &arguments,
                                const std::function<Outcome(int, const QString &)> &read) const
{
    int location = -1;
    QString element;
    if (!resolve(arguments.at(0).toString(), &location, &element))
        return unknownKey(
            QStringLiteral("threshold \"%1\" (keys are \"<location>/<element>\")").arg(arguments.at(0).toString()));
    return read(location, element);
}

bool ThresholdSetup::resolve(const QString &key, int *location, QString *element) const
{
    const int slash = key.lastIndexOf(QLatin1Char('/'));
    if (slash < 0)
        return false;
    *location = locationIndex(key.left(slash));
    *element = key.mid(slash + 1);
    return *location >= 0 && m_elements.contains(*element);
}

int ThresholdSetup::locationIndex(const QString &name) const
{
    for (int i = 0; i < m_locations.size(); ++i) {
        if (m_locations.at(i).name == name)
            return i;
    }
    return -1;
}

double ThresholdSetup::valueAt(int location, const QString &element) const
{
    return m_locations.at(location).values.value(element, m_elements.value(element).defaultValue);
}

QJsonObject ThresholdSetup::locationObject(int location) const
{
    QJsonObject object;
    for (auto it = m_elements.cbegin(); it != m_elements.cend(); ++it)
        object.insert(it.key(), valueAt(location, it.key()));
    return object;
}

bool ThresholdSetup::validName(const QString &name) const
{
    return !name.isEmpty() && name.size() <= m_maxNameLength && !name.contains(QLatin1Char('/')) &&
        locationIndex(name) < 0;
}

bool ThresholdSetup::setValue(const QString &key, double value)
{
    int location = -1;
    QString element;
    if (!isChangeable() || !resolve(key, &location, &element) || !m_locations.at(location).editable ||
        !m_elements.value(element).range.refusal(value).isEmpty())
        return false;
    if (valueAt(location, element) == value)
        return true;
    m_locations[location].values.insert(element, value);
    emitSignal(changedSignal, {key, value});
    return true;
}

bool ThresholdSetup::createLocation(const QString &name, const QString &source)
{
    const int from = locationIndex(source);
    if (!isChangeable() || from < 0 || !validName(name))
        return false;
    Location location;
    location.name = name;
    for (auto it = m_elements.cbegin(); it != m_elements.cend(); ++it)
        location.values.insert(it.key(), valueAt(from, it.key()));
    m_locations.append(location);
    emitSignal(QStringLiteral("locationsChanged"), {});
    return true;
}

bool ThresholdSetup::deleteLocation(const QString &name)
{
    const int location = locationIndex(name);
    if (!isChangeable() || location < 0 || !m_locations.at(location).editable)
        return false;
    m_locations.removeAt(location);
    emitSignal(QStringLiteral("locationsChanged"), {});
    return true;
}

bool ThresholdSetup::renameLocation(const QString &name, const QString &newName)
{
    const int location = locationIndex(name);
    if (!isChangeable() || location < 0 || !m_locations.at(location).editable || !validName(newName))
        return false;
    m_locations[location].name = newName;
    emitSignal(QStringLiteral("locationNameChanged"), {name, newName});
    emitSignal(QStringLiteral("locationsChanged"), {});
    return true;
}

bool ThresholdSetup::setDescription(const QString &name, const QString &description)
{
    const int location = locationIndex(name);
    if (!isChangeable() || location < 0 || !m_locations.at(location).editable ||
        description.size() > m_maxDescriptionLength)
        return false;
    if (m_locations.at(location).description != description) {
        m_locations[location].description = description;
        emitSignal(QStringLiteral("locationsChanged"), {});
    }
    return true;
}

void ThresholdSetup::restoreDefault()
{
    m_locations = m_defaults;
    emitSignal(QStringLiteral("locationsChanged"), {});
    emitSignal(changedSignal, {});
}

// ---- StorageListSetup

StorageListSetup::StorageListSetup(const QString &path, const QStringList &defaults, const QStringList &sortOrders,
                                   const QString &sortOrder)
    : CollectionSetup(path, QStringLiteral("StorageElemsMapInterface"), true)
    , m_names(defaults)
    , m_defaults(defaults)
    , m_sortOrders(sortOrders)
    , m_sortOrder(sortOrder)
    , m_defaultSortOrder(sortOrder)
{
    addMember(QStringLiteral("getValues"), QString(), QStringLiteral("as"),
              [this](const QVariantList &) { return Outcome::value(values()); });
    addMember(QStringLiteral("count"), QString(), QStringLiteral("i"),
              [this](const QVariantList &) { return Outcome::value(int(m_names.size())); });
    addDefaultMember();
    addMember(QStringLiteral("getSortOrder"), QString(), QStringLiteral("s"),
              [this](const QVariantList &) { return Outcome::value(m_sortOrder); });
    addMember(QStringLiteral("setSortOrder"), QStringLiteral("s"), QString(), [this](const QVariantList &a) {
        const QString order = a.at(0).toString();
        if (!m_sortOrders.contains(order))
            return Outcome::error(
                ErrorNames::invalidArgs,
                QStringLiteral("No sort order \"%1\"; known: %2").arg(order, m_sortOrders.join(QStringLiteral(", "))));
        if (order != m_sortOrder) {
            m_sortOrder = order;
            emitSignal(QStringLiteral("sortOrderChanged"), {order});
            emitSignal(changedSignal, {QStringLiteral("sort"), 0, int(m_names.size()), values()});
        }
        return Outcome::reply();
    });
    addSignal(changedSignal, QStringLiteral("siias"), [this] {
        return QVariantList{QStringLiteral("reset"), 0, int(m_names.size()), values()};
    });
    addSignal(QStringLiteral("sortOrderChanged"), QStringLiteral("s"), [this] { return QVariantList{m_sortOrder}; });
}

QStringList StorageListSetup::values() const
{
    QStringList sorted = m_names;
    if (m_sortOrder == QLatin1String("ascending"))
        std::sort(sorted.begin(), sorted.end());
    else if (m_sortOrder == QLatin1String("descending"))
        std::sort(sorted.begin(), sorted.end(), std::greater<QString>());
    return sorted;
}

bool StorageListSetup::store(const QString &name)
{
    if (name.isEmpty() || m_names.contains(name))
        return false;
    m_names.append(name);
    emitSignal(changedSignal, {QStringLiteral("insert"), int(values().indexOf(name)), 1, QStringList{name}});
    return true;
}

bool StorageListSetup::unstore(const QString &name)
{
    const int index = values().indexOf(name);
    if (index < 0)
        return false;
    m_names.removeAll(name);
    emitSignal(changedSignal, {QStringLiteral("remove"), index, 1, QStringList{name}});
    return true;
}

void StorageListSetup::restoreDefault()
{
    m_names = m_defaults;
    if (m_sortOrder != m_defaultSortOrder) {
        m_sortOrder = m_defaultSortOrder;
        emitSignal(QStringLiteral("sortOrderChanged"), {m_sortOrder});
    }
    emitSignal(changedSignal, {QStringLiteral("reset"), 0, int(m_names.size()), values()});
}
