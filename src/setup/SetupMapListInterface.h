#ifndef DBUSINTERFACES_SETUPMAPLISTINTERFACE_H
#define DBUSINTERFACES_SETUPMAPLISTINTERFACE_H

#include "dbusinterfaces_export.h"

#include "DBusTypes.h"

#include <QMap>
#include <QStringList>
#include <QVariant>

#include <QDBusAbstractInterface>
#include <QDBusReply>

/**
 * @brief Proxy of a setting that is an ordered list of maps.
 *
 * Each entry, addressed by its position, is a SettingsMap of items; each item has a
 * value, a minimum, a maximum and a text.
 */
class DBUSINTERFACES_EXPORT SetupMapListInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    SetupMapListInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                          QObject *parent = nullptr);
    ~SetupMapListInterface() override;

Q_SIGNALS:
    void setupChanged();
    void setupBoundsChanged();

public Q_SLOTS:
    /// Sets the entry @p mapName; the map travels inside a D-Bus variant.
    QDBusReply<bool> setValue(QString mapName, QMap<QString, QVariant> value);
    /// Sets one item of the entry at @p position; the value travels in a D-Bus variant.
    QDBusReply<bool> setValue(int position, QString item, QVariant newValue);
    QDBusReply<QStringList> getAllKeys();
    QDBusReply<bool> isKeyAvailable(QString key);
    QDBusReply<int> getKeyPosition(QString key);
    QDBusReply<bool> isChangeable();
    /// The entry at @p position, or an empty map after logging the failure.
    SettingsMap getValue(int position);
    /// The item's value, or an invalid QVariant after logging the failure.
    QVariant getValue(int position, QString item);
    /// The item as text, or a null string after logging the failure.
    QString getStringValue(int position, QString item);
    /// The entry as text, or a null string after logging the failure.
    QString getString(int position);
    QVariant getMin(int position, QString item);
    QVariant getMax(int position, QString item);
    QDBusReply<int> size();
    QDBusReply<bool> removeItem(int position);
    /// Waits for the application, but drops its answer.
    void setToDefault();

private:
    QString m_service;
    QString m_path;
};

#endif
