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
    /// Makes no bus call: @p service need not be on the bus yet. Also makes SettingsMap usable on
    /// the bus.
    SetupMapListInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                          QObject *parent = nullptr);
    /// Sends nothing; the proxy's signal subscriptions end with it.
    ~SetupMapListInterface() override;

Q_SIGNALS:
    /// The list or one of its entries changed; read it again to see how.
    void setupChanged();
    /// The limits of some item changed.
    void setupBoundsChanged();

public Q_SLOTS:
    /// Asks the application to set the entry named @p mapName to @p value; the map travels inside a
    /// D-Bus variant.
    ///
    /// @return the application's answer: whether it took the entry.
    QDBusReply<bool> setValue(QString mapName, QMap<QString, QVariant> value);
    /// Asks the application to set @p item of the entry at @p position to @p newValue, sent inside
    /// a D-Bus variant.
    ///
    /// @return the application's answer: whether it took the value.
    QDBusReply<bool> setValue(int position, QString item, QVariant newValue);
    /// The names of all entries.
    QDBusReply<QStringList> getAllKeys();
    /// Whether the list has an entry named @p key.
    QDBusReply<bool> isKeyAvailable(QString key);
    /// The position of the entry named @p key.
    QDBusReply<int> getKeyPosition(QString key);
    /// Whether the application lets the setting be changed now.
    QDBusReply<bool> isChangeable();
    /// The entry at @p position.
    ///
    /// @return the entry, or an empty map after logging the failure through qDebug().
    SettingsMap getValue(int position);
    /// The value of @p item in the entry at @p position, unwrapped from its D-Bus variant.
    ///
    /// @return the value, or an invalid QVariant after logging the failure through qDebug().
    QVariant getValue(int position, QString item);
    /// The value of @p item in the entry at @p position as text.
    ///
    /// @return the text, or a null string after logging the failure through qDebug().
    QString getStringValue(int position, QString item);
    /// The entry at @p position as text.
    ///
    /// @return the text, or a null string after logging the failure through qDebug().
    QString getString(int position);
    /// The smallest value @p item of the entry at @p position accepts.
    ///
    /// @return the value, or an invalid QVariant after logging the failure through qDebug().
    QVariant getMin(int position, QString item);
    /// The largest value @p item of the entry at @p position accepts.
    ///
    /// @return the value, or an invalid QVariant after logging the failure through qDebug().
    QVariant getMax(int position, QString item);
    /// The number of entries.
    QDBusReply<int> size();
    /// Asks the application to remove the entry at @p position.
    ///
    /// @return the application's answer: whether it removed the entry.
    QDBusReply<bool> removeItem(int position);
    /// Resets the setting to its default. Waits for the application, but drops its answer, errors
    /// included.
    void setToDefault();

private:
    QString m_service;
    QString m_path;
};

#endif
