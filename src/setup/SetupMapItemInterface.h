#ifndef DBUSINTERFACES_SETUPMAPITEMINTERFACE_H
#define DBUSINTERFACES_SETUPMAPITEMINTERFACE_H

#include "dbusinterfaces_export.h"

#include <QStringList>
#include <QVariant>

#include <QDBusAbstractInterface>
#include <QDBusReply>

/**
 * @brief Proxy of a map setting: values of any type under string keys.
 */
class DBUSINTERFACES_EXPORT SetupMapItemInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    SetupMapItemInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                          QObject *parent = nullptr);
    ~SetupMapItemInterface() override;

Q_SIGNALS:
    void setupChanged();

public Q_SLOTS:
    /// Sets the entry under @p key; the value travels in a D-Bus variant.
    QDBusReply<bool> setValue(QString key, QVariant value);
    void setValueAsync(QString key, QVariant value);
    QDBusReply<QStringList> getAllKeys();
    QDBusReply<bool> isKeyAvailable(QString key);
    QDBusReply<bool> isChangeable();
    /// The value under @p key, or an invalid QVariant after logging the failure.
    QVariant getValue(QString key);
    /// The element every entry is made from, or an invalid QVariant after logging the failure.
    QVariant getBaseElement();
    QDBusReply<QString> getString();
    QDBusReply<int> size();
    /// The application answers an int here, not a bool.
    QDBusReply<int> removeItem(QString key);
    /// Waits for the application, but drops its answer.
    void setToDefault();
    void setToDefaultAsync();

private:
    QString m_service;
    QString m_path;
};

#endif
