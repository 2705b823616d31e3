#ifndef DBUSINTERFACES_SETUPINTINTERFACE_H
#define DBUSINTERFACES_SETUPINTINTERFACE_H

#include "dbusinterfaces_export.h"

#include <QDBusAbstractInterface>
#include <QDBusReply>

/**
 * @brief Proxy of an integer setting.
 */
class DBUSINTERFACES_EXPORT SetupIntInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    /// Makes no bus call: @p service need not be on the bus yet.
    SetupIntInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                      QObject *parent = nullptr);
    /// Sends nothing; the proxy's signal subscriptions end with it.
    ~SetupIntInterface() override;

Q_SIGNALS:
    /// The setting changed to @p newVal.
    void setupChanged(int newVal);

public Q_SLOTS:
    /// Asks the application to take @p value.
    ///
    /// @return the application's answer: whether it took the value.
    QDBusReply<bool> setValue(int value);
    /// setValue() without waiting: sends "setValue" and returns at once; no answer or error is ever
    /// seen.
    void setValueAsync(int value);
    /// The current value.
    ///
    /// Logs three lines through qDebug() when the call fails: the error, the interface and the
    /// path.
    QDBusReply<int> getValue();
    /// The value as the application writes it.
    ///
    /// Logs one line through qDebug() when the call fails.
    QDBusReply<QString> getString();
    /// The smallest value the setting accepts.
    QDBusReply<int> getMinValue();
    /// The largest value the setting accepts.
    QDBusReply<int> getMaxValue();
    /// The step between accepted values.
    QDBusReply<int> getGranularity();
    /// Whether the application lets the setting be changed now.
    QDBusReply<bool> isChangeable();
    /// Resets the setting to its default; the reply holds only success or the error.
    QDBusReply<void> setToDefault();
    /// setToDefault() without waiting: sends "setToDefault" and returns at once; no answer or error
    /// is ever seen.
    void setToDefaultAsync();
};

#endif
