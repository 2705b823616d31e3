#ifndef DBUSINTERFACES_SETUPTHRESHOLDMANAGERINTERFACE_H
#define DBUSINTERFACES_SETUPTHRESHOLDMANAGERINTERFACE_H

#include "dbusinterfaces_export.h"

#include <QDBusAbstractInterface>
#include <QDBusReply>
#include <QStringList>

/**
 * @brief Proxy of the threshold setting: threshold elements by key, grouped in named locations.
 *
 * Every reply is handed back as it comes; nothing is logged. The three getters declared
 * virtual may be overridden, and the meta-object dispatch then reaches the override.
 */
class DBUSINTERFACES_EXPORT SetupThresholdManagerInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    /// Makes no bus call: @p service need not be on the bus yet. Also makes "QList<double>" usable
    /// on the bus.
    SetupThresholdManagerInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                                   QObject *parent = nullptr);
    /// Sends nothing; the proxy's signal subscriptions end with it.
    ~SetupThresholdManagerInterface() override;

Q_SIGNALS:
    /// The location @p oldLocationName is now called @p newLocationName.
    void locationNameChanged(QString oldLocationName, QString newLocationName);
    /// Locations were added, removed or changed.
    void locationsChanged();
    /// The setting changed; read it again to see how.
    void setupChanged();
    /// The threshold element @p key changed to @p value.
    void setupChanged(QString key, double value);

public Q_SLOTS:
    /// Asks the application to set the threshold element @p key to @p value.
    ///
    /// @return the application's answer: whether it took the value.
    QDBusReply<bool> setValue(QString key, double value);
    /// Every threshold element, as one text in the application's format.
    QDBusReply<QString> getAllThresholdElements();
    /// The attribute word of the threshold element @p key; what it means is the application's.
    virtual QDBusReply<int> getAttributes(QString key);
    /// The longest location description the application accepts, in characters; the proxy enforces
    /// nothing.
    virtual QDBusReply<int> getMaxLocationDescriptionCharacterCount();
    /// The longest location name the application accepts, in characters; the proxy enforces
    /// nothing.
    virtual QDBusReply<int> getMaxLocationNameCharacterCount();
    /// The largest value the threshold element @p key accepts.
    QDBusReply<double> getMaxValue(QString key);
    /// The smallest value the threshold element @p key accepts.
    QDBusReply<double> getMinValue(QString key);
    /// The threshold elements of @p location, as one text in the application's format.
    QDBusReply<QString> getThresholdElementsForLocation(QString location);
    /// The value of the threshold element @p key.
    QDBusReply<double> getValue(QString key);
    /// The threshold element @p key as text.
    QDBusReply<QString> getString(QString key);
    /// The names of all locations.
    QDBusReply<QStringList> getLocationNames();
    /// The description of @p location.
    QDBusReply<QString> getLocationDescription(QString location);
    /// Whether the application lets @p location be edited.
    QDBusReply<bool> isLocationEditable(QString location);
    /// The number of threshold elements.
    QDBusReply<int> size();
    /// Whether the application lets the setting be changed now.
    QDBusReply<bool> isChangeable();
    /// Asks the application to describe @p location as @p description.
    ///
    /// @return the application's answer: whether it took the description.
    QDBusReply<bool> setLocationDescription(QString location, QString description);
    /// Resets the setting to its default. Waits for the application, but drops its answer, errors
    /// included.
    void setToDefault();
    /// setToDefault() without waiting: sends "setToDefault" and returns at once; no answer or error
    /// is ever seen.
    void setToDefaultAsync();
    /// Asks the application to create @p location from the location @p srcLocation.
    ///
    /// @return the application's answer: whether it created the location.
    QDBusReply<bool> createLocation(QString location, QString srcLocation);
    /// Asks the application to delete @p location.
    ///
    /// @return the application's answer: whether it deleted the location.
    QDBusReply<bool> deleteLocation(QString location);
    /// Asks the application to rename the location @p locationName to @p newLocationName.
    ///
    /// @return the application's answer: whether it renamed the location.
    QDBusReply<bool> renameLocation(QString locationName, QString newLocationName);

private:
    // Kept for the object's identity, though no operation reads them.
    QString m_service;
    QString m_path;
};

#endif
