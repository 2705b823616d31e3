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
    StorageElemsMapInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                             QObject *parent = nullptr);
    ~StorageElemsMapInterface() override;

Q_SIGNALS:
    /// An edit of the list: what was done, where, to how many, and which elements.
    void setupChanged(QString action, int index, int count, QStringList elemList);
    void sortOrderChanged(QString sortOrder);

public Q_SLOTS:
    QDBusReply<QStringList> getValues();
    QDBusReply<int> count();
    /// Waits for the application, but returns nothing.
    void setToDefault();
    void setToDefaultAsync();
    QDBusReply<QString> getSortOrder();
    QDBusReply<void> setSortOrder(QString order);
};

#endif
