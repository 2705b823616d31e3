#ifndef SIMULATOR_COLLECTIONSETUPS_H
#define SIMULATOR_COLLECTIONSETUPS_H

#include "Element.h"
#include "Wire.h"

#include <QJsonObject>
#include <QMap>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

/// What every setting holding several values shares: changeability, its default and the reset.
class CollectionSetup : public Element
{
public:
    CollectionSetup(const QString &path, const QString &proxyClass, bool changeable);

    bool isChangeable() const { return m_changeable; }

protected:
    /// isChangeable → b and setToDefault, which calls restoreDefault().
    void addChangeableAndDefaultMembers();

private:
    bool m_changeable;
};

/// A fixed-length row of numbers in one range.
class ArraySetup : public CollectionSetup
{
public:
    ArraySetup(const QString &path, bool changeable, const QVariantList &defaults, const NumericRange &range);

    QVariantList values() const { return m_values; }
    bool setRange(const QVariant &value, int start, int end);
    bool setAll(const QVariantList &values);
    QString text() const override { return Wire::text(m_values); }
    void restoreDefault() override;

private:
    bool store(const QVariantList &values);
    QVariantList m_values;
    QVariantList m_defaults;
    NumericRange m_range;
};

/// Values under string keys; every value of the base element's type.
class MapSetup : public CollectionSetup
{
public:
    MapSetup(const QString &path, bool changeable, const QVariantMap &defaults, const QVariant &baseElement);

    bool setEntry(const QString &key, const QVariant &value);
    int removeEntry(const QString &key);
    QString text() const override;
    void restoreDefault() override;

private:
    QVariantMap m_entries;
    QVariantMap m_defaults;
    QVariant m_baseElement;
};

/// The range and choices of one item of a map list or one cell column of a map of maps.
struct ItemRule
{
    NumericRange range;
    QStringList enums;
    QString unit;

    QString refusal(const QVariant &value) const;
};

/// An ordered list of maps, each entry named by its key item.
class MapListSetup : public CollectionSetup
{
public:
    MapListSetup(const QString &path, bool changeable, const QString &keyItem, const QMap<QString, ItemRule> &items,
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
    QString itemText(int position, const QString &item) const;
    /// Runs @p read on the entry at @p position and item @p item, or answers why it cannot.
    Outcome withItem(const QVariantList &arguments,
                     const std::function<Outcome(const QVariantMap &, const QString &)> &read) const;

    QString m_keyItem;
    QMap<QString, ItemRule> m_items;
    QList<QVariantMap> m_entries;
    QList<QVariantMap> m_defaults;
};

/// Entries under primary keys, each a map of cells under second keys.
class MapMapSetup : public CollectionSetup
{
public:
    using MapOfMaps = QMap<QString, QVariantMap>;

    MapMapSetup(const QString &path, bool changeable, const QMap<QString, ItemRule> &items,
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

/// Threshold values of named elements, grouped under named locations.
class ThresholdSetup : public CollectionSetup
{
public:
    struct ThresholdElement
    {
        NumericRange range;
        double defaultValue = 0;
        int attributes = 0;
        QString unit;
    };
    struct Location
    {
        QString name;
        QString description;
        bool editable = true;
        QMap<QString, double> values;
    };

    ThresholdSetup(const QString &path, bool changeable, const QMap<QString, ThresholdElement> &elements,
                   const QList<Location> &locations, int maxNameLength, int maxDescriptionLength);

    void restoreDefault() override;

private:
    bool setValue(const QString &key, double value);
    bool createLocation(const QString &name, const QString &source);
    bool deleteLocation(const QString &name);
    bool renameLocation(const QString &name, const QString &newName);
    bool setDescription(const QString &name, const QString &description);
    int locationIndex(const QString &name) const;
    bool validName(const QString &name) const;
    /// Splits "location/element"; false if either part is unknown.
    bool resolve(const QString &key, int *location, QString *element) const;
    double valueAt(int location, const QString &element) const;
    QJsonObject locationObject(int location) const;
    Outcome withKey(const QVariantList &arguments, const std::function<Outcome(int, const QString &)> &read) const;

    QMap<QString, ThresholdElement> m_elements;
    QList<Location> m_locations;
    QList<Location> m_defaults;
    int m_maxNameLength;
    int m_maxDescriptionLength;
};

/// The names of stored elements with a sort order.
class StorageListSetup : public CollectionSetup
{
public:
    StorageListSetup(const QString &path, const QStringList &defaults, const QStringList &sortOrders,
                     const QString &sortOrder);

    QStringList values() const;
    bool store(const QString &name);
    bool unstore(const QString &name);
    QString text() const override { return values().join(QStringLiteral(", ")); }
    void restoreDefault() override;

private:
    QStringList m_names;
    QStringList m_defaults;
    QStringList m_sortOrders;
    QString m_sortOrder;
    QString m_defaultSortOrder;
};

#endif
