#ifndef DBUSINTERFACES_SETUPDEVDATAINTERFACE_H
#define DBUSINTERFACES_SETUPDEVDATAINTERFACE_H

#include "dbusinterfaces_export.h"

#include <QDBusVariant>
#include <QVariant>

#include <QDBusAbstractInterface>
#include <QDBusReply>

/**
 * @brief Proxy of a device-specific setting whose value may be of any type.
 *
 * The value always travels wrapped in a D-Bus variant.
 */
class DBUSINTERFACES_EXPORT SetupDevDataInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    SetupDevDataInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                          QObject *parent = nullptr);
    ~SetupDevDataInterface() override;

Q_SIGNALS:
    /// The receiver gets the wrapper and unwraps the value itself.
    void setupChanged(QDBusVariant newVal);

public Q_SLOTS:
    QDBusReply<bool> setValue(QVariant value);
    void setValueAsync(QVariant value);
    /// The value, or an invalid QVariant after logging the failure.
    QVariant getValue();
    /// The value as text, or an empty string after logging the failure.
    QString getString();

private:
    QString m_service;
    QString m_path;
};

#endif
