#ifndef DBUSINTERFACES_SETUPARRAYITEMINTERFACE_H
#define DBUSINTERFACES_SETUPARRAYITEMINTERFACE_H

#include "dbusinterfaces_export.h"

#include <QList>
#include <QVariant>

#include <QDBusAbstractInterface>
#include <QDBusReply>

/**
 * @brief Proxy of an array setting: values of any type under an index, read and
 * written by index range or as a whole.
 */
class DBUSINTERFACES_EXPORT SetupArrayItemInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    /// Makes no bus call: @p service need not be on the bus yet.
    SetupArrayItemInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                            QObject *parent = nullptr);
    /// Sends nothing; the proxy's signal subscriptions end with it.
    ~SetupArrayItemInterface() override;

Q_SIGNALS:
    /// The array changed; read it again to see how.
    void setupChanged();

public Q_SLOTS:
    /// Asks the application to set the elements from @p start to @p end to @p value, sent inside a
    /// D-Bus variant. What the bounds count from and whether @p end is included is the
    /// application's.
    ///
    /// @return the application's answer: whether it took the value.
    QDBusReply<bool> setValue(QVariant value, int start, int end);
    /// Asks the application to replace the whole array with @p value; the list travels as it is
    /// (av), each element in a variant of its own.
    ///
    /// @return the application's answer: whether it took the array.
    QDBusReply<bool> setValue(QVariantList value);
    /// The elements from @p start to @p end, each unwrapped from its D-Bus variant.
    ///
    /// @return the elements, or an empty list after logging the failure through qDebug().
    QList<QVariant> getValue(int start, int end);
    /// The whole array as text.
    QDBusReply<QString> getString();
    /// The number of elements.
    QDBusReply<int> size();
    /// setValue(QVariant, int, int) without waiting: sends "setValue" and returns at once; no
    /// answer or error is ever seen.
    void setValueAsync(QVariant value, int start, int end);
    /// Whether the application lets the setting be changed now.
    QDBusReply<bool> isChangeable();
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
