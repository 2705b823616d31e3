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
    /// Makes no bus call: @p service need not be on the bus yet.
    SetupDoubleInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                         QObject *parent = nullptr);
    /// Sends nothing; the proxy's signal subscriptions end with it.
    ~SetupDoubleInterface() override;

Q_SIGNALS:
    /// The setting changed to @p newVal.
    void setupChanged(double newVal);
    /// The limits changed to @p minValue and @p maxValue.
    void setupBoundsChanged(double minValue, double maxValue);

public Q_SLOTS:
    /// Asks the application to take @p value.
    ///
    /// A NaN is refused without a bus call: one line is logged through qDebug() and the reply is
    /// valid and holds false. Infinities are sent.
    ///
    /// @return the application's answer: whether it took the value.
    QDBusReply<bool> setValue(double value);
    /// setValue() without waiting: sends "setValue" and returns at once; no answer or error is ever
    /// seen. Sends any value, NaN included.
    void setValueAsync(double value);
    /// The current value.
    QDBusReply<double> getValue();
    /// The value as the application writes it.
    QDBusReply<QString> getString();
    /// The smallest value the setting accepts.
    QDBusReply<double> getMinValue();
    /// The largest value the setting accepts.
    QDBusReply<double> getMaxValue();
    /// The step between accepted values.
    QDBusReply<double> getGranularity();
    /// Whether the application lets the setting be changed now.
    QDBusReply<bool> isChangeable();
    /// Resets the setting to its default. Waits for the application, but drops its answer, errors
    /// included.
    void setToDefault();
    /// setToDefault() without waiting: sends "setToDefault" and returns at once; no answer or error
    /// is ever seen.
    void setToDefaultAsync();
};

#endif
