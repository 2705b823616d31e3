#ifndef DBUSINTERFACES_SETUPDOUBLEINTERFACE_H
#define DBUSINTERFACES_SETUPDOUBLEINTERFACE_H

#include "dbusinterfaces_export.h"

#include <QDBusAbstractInterface>
#include <QDBusReply>

/**
 * @brief Proxy of a real-number setting.
 */
class DBUSINTERFACES_EXPORT SetupDoubleInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    SetupDoubleInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                         QObject *parent = nullptr);
    ~SetupDoubleInterface() override;

Q_SIGNALS:
    void setupChanged(double newVal);
    /// The limits have changed.
    void setupBoundsChanged(double minValue, double maxValue);

public Q_SLOTS:
    /// A NaN is refused without a bus call: logged, answered with a valid reply holding false.
    QDBusReply<bool> setValue(double value);
    /// Sends any value, NaN included.
    void setValueAsync(double value);
    QDBusReply<double> getValue();
    QDBusReply<QString> getString();
    QDBusReply<double> getMinValue();
    QDBusReply<double> getMaxValue();
    QDBusReply<double> getGranularity();
    QDBusReply<bool> isChangeable();
    /// Waits for the application, but returns nothing.
    void setToDefault();
    void setToDefaultAsync();
};

#endif
