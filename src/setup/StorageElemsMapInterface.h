#ifndef DBUSINTERFACES_STORAGEELEMSMAPINTERFACE_H
#define DBUSINTERFACES_STORAGEELEMSMAPINTERFACE_H

#include "dbusinterfaces_export.h"

#include <QDBusAbstractInterface>
#include <QDBusReply>
#include <QStringList>

/**
 * @brief Proxy of the ordered list of stored elements and its sort order.
 */
class DBUSINTERFACES_EXPORT StorageElemsMapInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    /// Makes no bus call: @p service need not be on the bus yet.
    StorageElemsMapInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                             QObject *parent = nullptr);
    /// Sends nothing; the proxy's signal subscriptions end with it.
    ~StorageElemsMapInterface() override;

Q_SIGNALS:
    /// An edit of the list: what was done (@p action), where (@p index), to how many (@p count),
    /// and which elements (@p elemList). The values of @p action are the application's.
    void setupChanged(QString action, int index, int count, QStringList elemList);
    /// The sort order is now @p sortOrder.
    void sortOrderChanged(QString sortOrder);

public Q_SLOTS:
    /// The stored elements, in list order.
    QDBusReply<QStringList> getValues();
    /// The number of stored elements.
    QDBusReply<int> count();
    /// Resets the list to its default. Waits for the application, but drops its answer, errors
    /// included.
    void setToDefault();
    /// setToDefault() without waiting: sends "setToDefault" and returns at once; no answer or error
    /// is ever seen.
    void setToDefaultAsync();
    /// The sort order, named as the application names it.
    QDBusReply<QString> getSortOrder();
    /// Asks the application to sort by @p order; the reply holds only success or the error.
    QDBusReply<void> setSortOrder(QString order);
};

#endif
