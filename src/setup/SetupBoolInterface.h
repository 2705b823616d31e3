#ifndef DBUSINTERFACES_SETUPBOOLINTERFACE_H
#define DBUSINTERFACES_SETUPBOOLINTERFACE_H

#include "dbusinterfaces_export.h"

#include <QDBusAbstractInterface>
#include <QDBusReply>

/**
 * @brief Proxy of an on/off setting.
 */
class DBUSINTERFACES_EXPORT SetupBoolInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    /// Makes no bus call: @p service need not be on the bus yet.
    SetupBoolInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                       QObject *parent = nullptr);
    /// Sends nothing; the proxy's signal subscriptions end with it.
    ~SetupBoolInterface() override;

Q_SIGNALS:
    /// The setting was switched to @p newVal.
    void setupChanged(bool newVal);

public Q_SLOTS:
    /// Asks the application to switch the setting to @p value.
    ///
    /// @return the application's answer: whether it took the value.
    QDBusReply<bool> setValue(bool value);
    /// setValue() without waiting: sends "setValue" and returns at once; no answer or error is ever
    /// seen.
    void setValueAsync(bool value);
    /// The current state.
    QDBusReply<bool> getValue();
    /// The state as the application writes it.
    QDBusReply<QString> getString();
    /// Whether the application lets the setting be changed now.
    QDBusReply<bool> isChangeable();
    /// Resets the setting to its default; the reply holds only success or the error.
    QDBusReply<void> setToDefault();
    /// setToDefault() without waiting: sends "setToDefault" and returns at once; no answer or error
    /// is ever seen.
    void setToDefaultAsync();
};

#endif
