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
    ResultVarArrayInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                            QObject *parent = nullptr);
    ~ResultVarArrayInterface() override;

public Q_SLOTS:
    /// The row, or an empty list after logging the failure.
    QList<QVariant> getValues();
    /// The status of every value, converted from the variants the application sends; an
    /// element that is no number gives 0. Empty after logging a failure.
    QList<int> getValuesStatus();
    /// The composite reading, or an empty list after logging the failure.
    QList<QVariant> getValueComp();
    /// The value at @p pos, or an invalid QVariant after logging the failure.
    QVariant getValue(int pos);
    /// The status of the value at @p pos, or 0 after logging the failure.
    int getValueStatus(int pos);
    /// The limit, or an invalid QVariant after logging the failure.
    QVariant getLowerLimit();
    /// The limit, or an invalid QVariant after logging the failure.
    QVariant getUpperLimit();
    QDBusReply<int> size();
    QDBusReply<int> getResultStatus();
    QDBusReply<QDateTime> getTimeStamp();

private:
    QString m_service;
    QString m_path;
};

#endif
