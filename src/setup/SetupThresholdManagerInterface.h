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
    /// Also makes "QList<double>" usable on the bus.
    SetupThresholdManagerInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                                   QObject *parent = nullptr);
    ~SetupThresholdManagerInterface() override;

Q_SIGNALS:
    void locationNameChanged(QString oldLocationName, QString newLocationName);
    void locationsChanged();
    void setupChanged();
    void setupChanged(QString key, double value);

public Q_SLOTS:
    QDBusReply<bool> setValue(QString key, double value);
    /// The application's own text, passed through.
    QDBusReply<QString> getAllThresholdElements();
    virtual QDBusReply<int> getAttributes(QString key);
    virtual QDBusReply<int> getMaxLocationDescriptionCharacterCount();
    virtual QDBusReply<int> getMaxLocationNameCharacterCount();
    QDBusReply<double> getMaxValue(QString key);
    QDBusReply<double> getMinValue(QString key);
    /// The application's own text, passed through.
    QDBusReply<QString> getThresholdElementsForLocation(QString location);
    QDBusReply<double> getValue(QString key);
    QDBusReply<QString> getString(QString key);
    QDBusReply<QStringList> getLocationNames();
    QDBusReply<QString> getLocationDescription(QString location);
    QDBusReply<bool> isLocationEditable(QString location);
    QDBusReply<int> size();
    QDBusReply<bool> isChangeable();
    QDBusReply<bool> setLocationDescription(QString location, QString description);
    /// Waits for the application, but returns nothing.
    void setToDefault();
    void setToDefaultAsync();
    QDBusReply<bool> createLocation(QString location, QString srcLocation);
    QDBusReply<bool> deleteLocation(QString location);
    QDBusReply<bool> renameLocation(QString locationName, QString newLocationName);

private:
    // Kept for the object's identity, though no operation reads them.
    QString m_service;
    QString m_path;
};

#endif
