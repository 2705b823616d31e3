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
    /// Makes no bus call: @p service need not be on the bus yet.
    SetupMapItemInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                          QObject *parent = nullptr);
    /// Sends nothing; the proxy's signal subscriptions end with it.
    ~SetupMapItemInterface() override;

Q_SIGNALS:
    /// The map changed; read it again to see how.
    void setupChanged();

public Q_SLOTS:
    /// Asks the application to set the entry under @p key to @p value, sent inside a D-Bus variant.
    ///
    /// @return the application's answer: whether it took the value.
    QDBusReply<bool> setValue(QString key, QVariant value);
    /// setValue() without waiting: sends "setValue" and returns at once; no answer or error is ever
    /// seen.
    void setValueAsync(QString key, QVariant value);
    /// The keys of all entries.
    QDBusReply<QStringList> getAllKeys();
    /// Whether the map has an entry under @p key.
    QDBusReply<bool> isKeyAvailable(QString key);
    /// Whether the application lets the setting be changed now.
    QDBusReply<bool> isChangeable();
    /// The value under @p key, unwrapped from its D-Bus variant; a structured value stays a
    /// QDBusArgument inside the QVariant.
    ///
    /// @return the value, or an invalid QVariant after logging the failure through qDebug().
    QVariant getValue(QString key);
    /// The element every entry is made from.
    ///
    /// @return the element, or an invalid QVariant after logging the failure through qDebug().
    QVariant getBaseElement();
    /// The whole map as text.
    QDBusReply<QString> getString();
    /// The number of entries.
    QDBusReply<int> size();
    /// Asks the application to remove the entry under @p key.
    ///
    /// @return the application's answer, an int here rather than a bool; its meaning is the
    /// application's.
    QDBusReply<int> removeItem(QString key);
    /// Resets the setting to its default. Waits for the application, but drops its answer, errors
    /// included.
    void setToDefault();
    /// setToDefault() without waiting: sends "setToDefault" and returns at once; no answer or error
    /// is ever seen.
    void setToDefaultAsync();

private:
    QString m_service;
    QString m_path;
};

#endif
