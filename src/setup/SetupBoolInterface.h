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
    SetupBoolInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                       QObject *parent = nullptr);
    ~SetupBoolInterface() override;

Q_SIGNALS:
    void setupChanged(bool newVal);

public Q_SLOTS:
    QDBusReply<bool> setValue(bool value);
    void setValueAsync(bool value);
    QDBusReply<bool> getValue();
    QDBusReply<QString> getString();
    QDBusReply<bool> isChangeable();
    QDBusReply<void> setToDefault();
    void setToDefaultAsync();
};

#endif
