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
    SetupIntInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                      QObject *parent = nullptr);
    ~SetupIntInterface() override;

Q_SIGNALS:
    void setupChanged(int newVal);

public Q_SLOTS:
    QDBusReply<bool> setValue(int value);
    void setValueAsync(int value);
    /// Logs three lines when the call fails.
    QDBusReply<int> getValue();
    /// Logs one line when the call fails.
    QDBusReply<QString> getString();
    QDBusReply<int> getMinValue();
    QDBusReply<int> getMaxValue();
    QDBusReply<int> getGranularity();
    QDBusReply<bool> isChangeable();
    QDBusReply<void> setToDefault();
    void setToDefaultAsync();
};

#endif
