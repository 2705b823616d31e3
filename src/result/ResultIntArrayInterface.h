#ifndef DBUSINTERFACES_RESULTINTARRAYINTERFACE_H
#define DBUSINTERFACES_RESULTINTARRAYINTERFACE_H

#include "dbusinterfaces_export.h"

#include <QDBusAbstractInterface>
#include <QDBusReply>
#include <QDateTime>
#include <QList>
#include <QVariant>

/**
 * @brief Proxy of a result that holds a row of integers, delivered as variants.
 */
class DBUSINTERFACES_EXPORT ResultIntArrayInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    ResultIntArrayInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                            QObject *parent = nullptr);
    ~ResultIntArrayInterface() override;

public Q_SLOTS:
    /// The row, or an empty list after logging the failure.
    QList<QVariant> getValues();
    /// The row as text, or a null string after logging the failure.
    QString getString();
    QDBusReply<int> size();
    QDBusReply<int> getResultStatus();
    QDBusReply<QDateTime> getTimeStamp();

private:
    QString m_service;
    QString m_path;
};

#endif
