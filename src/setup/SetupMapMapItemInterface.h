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
    /// Makes no bus call: @p service need not be on the bus yet. Also makes SettingsMap and
    /// SettingsStringMap usable on the bus, and listens for the bus signal "setupChangedPart" at
    /// once.
    SetupMapMapItemInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                             QObject *parent = nullptr);
    /// Sends nothing; the proxy's signal subscriptions end with it.
    ~SetupMapMapItemInterface() override;

Q_SIGNALS:
    /// The structure changed; read it again to see how.
    void setupChanged();
    /// The cell under @p primaryKey and @p secondKey changed to @p newValue or, with @p deleted,
    /// was removed. Connect to this one.
    ///
    /// The proxy listens for it from its construction on, whoever is connected; a structured value
    /// arrives as a QDBusArgument inside the QVariant.
    void setupChangedPart(QString primaryKey, QString secondKey, QVariant newValue, bool deleted);
    /// The bus signal as it arrives; the proxy re-emits it with @p newValue unwrapped as the
    /// QVariant overload.
    void setupChangedPart(QString primaryKey, QString secondKey, QDBusVariant newValue, bool deleted);
    /// The entry under @p primaryKey was removed.
    void mapEntryRemoved(QString primaryKey);
    /// The limits of some cell changed.
    void setupBoundsChanged();

public Q_SLOTS:
    /// Asks the application to replace the whole structure with @p value; each entry travels as the
    /// JSON text of its map, in one a{sv}.
    ///
    /// @return the application's answer: whether it took the structure.
    QDBusReply<bool> setValue(QMap<QString, QVariantMap> value);
    /// Asks the application to set the entry under @p primaryKey to @p value; the map travels bare
    /// (sa{sv}).
    ///
    /// @return the application's answer: whether it took the entry.
    QDBusReply<bool> setValue(QString primaryKey, QMap<QString, QVariant> value);
    /// Asks the application to set the entry under @p primaryKey from texts; sent like a map of
    /// variants, each holding a string (sa{sv}).
    ///
    /// @return the application's answer: whether it took the entry.
    QDBusReply<bool> setValue(QString primaryKey, QMap<QString, QString> value);
    /// Asks the application to set one cell to @p newValue, sent inside a D-Bus variant (ssv).
    ///
    /// @return the application's answer: whether it took the value.
    QDBusReply<bool> setValue(QString primaryKey, QString secondKey, QVariant newValue);
    /// Asks the application to set one cell from its text @p newValue, sent as a plain string
    /// (sss).
    ///
    /// @return the application's answer: whether it took the value.
    QDBusReply<bool> setValue(QString primaryKey, QString secondKey, QString newValue);
    /// Asks the application to replace the whole default structure with @p value, sent as
    /// setValue(QMap<QString, QVariantMap>) sends a structure.
    ///
    /// @return the application's answer: whether it took the defaults.
    QDBusReply<bool> setDefaultMap(QMap<QString, QVariantMap> value);
    /// Asks the application to set the default of the entry under @p primaryKey; the map travels
    /// bare (sa{sv}).
    ///
    /// @return the application's answer: whether it took the default.
    QDBusReply<bool> setDefaultMap(QString primaryKey, QMap<QString, QVariant> value);
    /// Asks the application to merge the default of the entry under @p primaryKey into it.
    ///
    /// @return the application's answer: whether it merged.
    QDBusReply<bool> mergeFromDefaultMap(QString primaryKey);
    /// Asks the application to merge the defaults into every entry.
    ///
    /// @return the list of texts the application answers; what they name is the application's.
    QDBusReply<QStringList> mergeFromDefaultMap();
    /// Sends "setValue" for the entry under @p primaryKey and returns at once; no answer or error
    /// is ever seen. Unlike the blocking setValue(), the map travels inside a D-Bus variant (sv).
    void setValueAsync(QString primaryKey, QMap<QString, QVariant> value);
    /// The primary keys of all entries.
    QDBusReply<QStringList> getAllKeys();
    /// The second keys of the entry under @p primaryKey.
    ///
    /// @return the keys, or an empty list after logging the failure through qDebug().
    QStringList getAllKeys(QString primaryKey);
    /// Whether the structure has an entry under @p key.
    QDBusReply<bool> isKeyAvailable(QString key);
    /// Whether the application lets the setting be changed now.
    QDBusReply<bool> isChangeable();
    /// The entry under @p primaryKey; structured cell values stay QDBusArgument values inside their
    /// QVariant.
    ///
    /// @return the entry, or an empty map after logging the failure through qDebug().
    SettingsMap getValue(QString primaryKey);
    /// The cell under @p primaryKey and @p secondKey, unwrapped from its D-Bus variant.
    ///
    /// @return the value, or an invalid QVariant after logging the failure through qDebug().
    QVariant getValue(QString primaryKey, QString secondKey);
    /// The cell under @p primaryKey and @p secondKey as text.
    ///
    /// @return the text, or a null string after logging the failure through qDebug().
    QString getStringValue(QString primaryKey, QString secondKey);
    /// The entry under @p primaryKey with every value turned into text (QVariant::toString(); a
    /// structured value gives an empty string). Sends "getValue": the conversion is made here.
    ///
    /// @return the texts, or an empty map after logging the failure through qDebug().
    SettingsStringMap getStringMap(QString primaryKey);
    /// The smallest value the cell under @p primaryKey and @p secondKey accepts.
    ///
    /// @return the value, or an invalid QVariant after logging the failure through qDebug().
    QVariant getMin(QString primaryKey, QString secondKey);
    /// The largest value the cell under @p primaryKey and @p secondKey accepts.
    ///
    /// @return the value, or an invalid QVariant after logging the failure through qDebug().
    QVariant getMax(QString primaryKey, QString secondKey);
    /// The texts the cell under @p primaryKey and @p secondKey may take.
    QDBusReply<QStringList> getEnums(QString primaryKey, QString secondKey);
    /// The element every entry is made from.
    ///
    /// @return the element, or an invalid QVariant after logging the failure through qDebug().
    QVariant getBaseElement();
    /// The whole structure as text. Not logged, unlike getString(QString).
    QDBusReply<QString> getString();
    /// The entry under @p primaryKey as text.
    ///
    /// @return the text, or a null string after logging the failure through qDebug().
    QString getString(QString primaryKey);
    /// The number of entries.
    QDBusReply<int> size();
    /// Asks the application to remove the entry under @p primaryKey.
    ///
    /// @return the application's answer, an int; its meaning is the application's.
    QDBusReply<int> removeItem(QString primaryKey);
    /// Asks the application to remove the cell under @p primaryKey and @p secondaryKey.
    ///
    /// @return the application's answer, an int; its meaning is the application's.
    QDBusReply<int> removeItem(QString primaryKey, QString secondaryKey);
    /// Resets the setting to its default. Waits for the application, but drops its answer, errors
    /// included.
    void setToDefault();
    /// setToDefault() without waiting: sends "setToDefault" and returns at once; no answer or error
    /// is ever seen.
    void setToDefaultAsync();

private Q_SLOTS:
    void emitSetupChangedPart(QString primaryKey, QString secondKey, QDBusVariant newValue, bool deleted);

private:
    QString m_service;
    QString m_path;
};

#endif
