#ifndef DBUSINTERFACES_SETUPMAPMAPITEMINTERFACE_H
#define DBUSINTERFACES_SETUPMAPMAPITEMINTERFACE_H

#include "dbusinterfaces_export.h"

#include "DBusTypes.h"

#include <QMap>
#include <QStringList>
#include <QVariant>

#include <QDBusAbstractInterface>
#include <QDBusReply>
#include <QDBusVariant>

/**
 * @brief Proxy of a two-level map setting: entries under primary keys, each a
 * SettingsMap of cells under second keys.
 *
 * Whole structures travel as one SettingsMap of JSON texts, one per primary entry.
 * Changed cells arrive as setupChangedPart with the value already unwrapped.
 */
class DBUSINTERFACES_EXPORT SetupMapMapItemInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    SetupMapMapItemInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                             QObject *parent = nullptr);
    ~SetupMapMapItemInterface() override;

Q_SIGNALS:
    void setupChanged();
    /// A cell changed or, with @p deleted, was removed. Connect to this one.
    void setupChangedPart(QString primaryKey, QString secondKey, QVariant newValue, bool deleted);
    /// The bus signal as it arrives; the proxy re-emits it with the value unwrapped.
    void setupChangedPart(QString primaryKey, QString secondKey, QDBusVariant newValue, bool deleted);
    void mapEntryRemoved(QString primaryKey);
    void setupBoundsChanged();

public Q_SLOTS:
    /// Replaces the whole structure; each entry travels as the JSON text of its map.
    QDBusReply<bool> setValue(QMap<QString, QVariantMap> value);
    /// Sets one entry; the map travels bare (sa{sv}).
    QDBusReply<bool> setValue(QString primaryKey, QMap<QString, QVariant> value);
    /// Sets one entry from texts; sent like a map of variants, each holding a string.
    QDBusReply<bool> setValue(QString primaryKey, QMap<QString, QString> value);
    /// Sets one cell; the value travels in a D-Bus variant.
    QDBusReply<bool> setValue(QString primaryKey, QString secondKey, QVariant newValue);
    /// Sets one cell from its text.
    QDBusReply<bool> setValue(QString primaryKey, QString secondKey, QString newValue);
    QDBusReply<bool> setDefaultMap(QMap<QString, QVariantMap> value);
    QDBusReply<bool> setDefaultMap(QString primaryKey, QMap<QString, QVariant> value);
    QDBusReply<bool> mergeFromDefaultMap(QString primaryKey);
    QDBusReply<QStringList> mergeFromDefaultMap();
    /// Unlike the blocking setValue, sends the map inside a D-Bus variant (sv).
    void setValueAsync(QString primaryKey, QMap<QString, QVariant> value);
    QDBusReply<QStringList> getAllKeys();
    /// The second keys of one entry, or an empty list after logging the failure.
    QStringList getAllKeys(QString primaryKey);
    QDBusReply<bool> isKeyAvailable(QString key);
    QDBusReply<bool> isChangeable();
    /// One entry, or an empty map after logging the failure.
    SettingsMap getValue(QString primaryKey);
    /// One cell, or an invalid QVariant after logging the failure.
    QVariant getValue(QString primaryKey, QString secondKey);
    QString getStringValue(QString primaryKey, QString secondKey);
    /// One entry with every value turned into text; asks the application for getValue.
    SettingsStringMap getStringMap(QString primaryKey);
    QVariant getMin(QString primaryKey, QString secondKey);
    QVariant getMax(QString primaryKey, QString secondKey);
    QDBusReply<QStringList> getEnums(QString primaryKey, QString secondKey);
    QVariant getBaseElement();
    /// Not logged, unlike getString(QString).
    QDBusReply<QString> getString();
    QString getString(QString primaryKey);
    QDBusReply<int> size();
    QDBusReply<int> removeItem(QString primaryKey);
    QDBusReply<int> removeItem(QString primaryKey, QString secondaryKey);
    /// Waits for the application, but drops its answer.
    void setToDefault();
    void setToDefaultAsync();

private Q_SLOTS:
    void emitSetupChangedPart(QString primaryKey, QString secondKey, QDBusVariant newValue, bool deleted);

private:
    QString m_service;
    QString m_path;
};

#endif
