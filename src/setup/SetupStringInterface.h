#ifndef DBUSINTERFACES_SETUPSTRINGINTERFACE_H
#define DBUSINTERFACES_SETUPSTRINGINTERFACE_H

#include "dbusinterfaces_export.h"

#include <QDBusAbstractInterface>
#include <QDBusReply>

/**
 * @brief Proxy of a text setting.
 */
class DBUSINTERFACES_EXPORT SetupStringInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    SetupStringInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                         QObject *parent = nullptr);
    ~SetupStringInterface() override;

Q_SIGNALS:
    void setupChanged(QString newVal);

public Q_SLOTS:
    QDBusReply<bool> setValue(QString str);
    QDBusReply<QString> getString();
    void setValueAsync(QString str);
    /// Logs three lines when the call fails.
    QDBusReply<QString> getValue();
    QDBusReply<bool> isChangeable();
    QDBusReply<void> setToDefault();
    void setToDefaultAsync();
};

#endif
