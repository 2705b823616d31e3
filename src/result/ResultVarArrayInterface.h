#ifndef DBUSINTERFACES_RESULTVARARRAYINTERFACE_H
#define DBUSINTERFACES_RESULTVARARRAYINTERFACE_H

#include "dbusinterfaces_export.h"

#include <QDBusAbstractInterface>
#include <QDBusReply>
#include <QDateTime>
#include <QList>
#include <QVariant>

/**
 * @brief Proxy of a result that holds a row of values of any type.
 *
 * Positions are sent unchanged; the application decides what they count from and
 * answers a position outside the row with an error.
 */
class DBUSINTERFACES_EXPORT ResultVarArrayInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    /// Makes no bus call: @p service need not be on the bus yet.
    ResultVarArrayInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                            QObject *parent = nullptr);
    /// Sends nothing.
    ~ResultVarArrayInterface() override;

public Q_SLOTS:
    /// The row, each value unwrapped from its D-Bus variant.
    ///
    /// @return the list, or an empty list after logging the failure through qDebug().
    QList<QVariant> getValues();
    /// The status of every value, converted from the variants the application sends; an element
    /// that is no number gives 0.
    ///
    /// @return one status per value, or an empty list after logging the failure through qDebug();
    /// the line names ResultIntArrayInterface.
    QList<int> getValuesStatus();
    /// The composite reading, as the application sent it.
    ///
    /// @return the list, or an empty list after logging the failure through qDebug().
    QList<QVariant> getValueComp();
    /// The value at @p pos, unwrapped from its D-Bus variant.
    ///
    /// @return the value, or an invalid QVariant after logging the failure through qDebug().
    QVariant getValue(int pos);
    /// The status of the value at @p pos.
    ///
    /// @return the status, or 0 after logging the failure through qDebug(), which a status 0 cannot
    /// be told from.
    int getValueStatus(int pos);
    /// The lower limit of the values.
    ///
    /// @return the limit, or an invalid QVariant after logging the failure through qDebug().
    QVariant getLowerLimit();
    /// The upper limit of the values.
    ///
    /// @return the limit, or an invalid QVariant after logging the failure through qDebug().
    QVariant getUpperLimit();
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
