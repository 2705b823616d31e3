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
    /// Makes no bus call: @p service need not be on the bus yet.
    ResultIntArrayInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                            QObject *parent = nullptr);
    /// Sends nothing.
    ~ResultIntArrayInterface() override;

public Q_SLOTS:
    /// The row, each value unwrapped from its D-Bus variant.
    ///
    /// @return the list, or an empty list after logging the failure through qDebug().
    QList<QVariant> getValues();
    /// The row as text.
    ///
    /// @return the text, or a null string after logging the failure through qDebug().
    QString getString();
    /// The number of values in the row.
    QDBusReply<int> size();
    /// The status of the result; what its numbers mean is the application's.
    QDBusReply<int> getResultStatus();
    /// When the result was taken; a null date-time in an invalid reply.
    QDBusReply<QDateTime> getTimeStamp();

private:
    QString m_service;
    QString m_path;
};

#endif
