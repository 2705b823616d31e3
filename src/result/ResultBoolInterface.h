#ifndef DBUSINTERFACES_RESULTBOOLINTERFACE_H
#define DBUSINTERFACES_RESULTBOOLINTERFACE_H

#include "dbusinterfaces_export.h"

#include <QDBusAbstractInterface>
#include <QDBusReply>
#include <QList>
#include <QString>
#include <QVariant>

/**
 * @brief Proxy of a measured boolean result.
 *
 * Read-only. The Comp getters return the application's composite reading as it sent
 * it, or an empty list after logging the failure.
 */
class DBUSINTERFACES_EXPORT ResultBoolInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    /// Makes no bus call: @p service need not be on the bus yet.
    ResultBoolInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                        QObject *parent = nullptr);
    /// Sends nothing.
    ~ResultBoolInterface() override;

public Q_SLOTS:
    /// The lower limit of the result.
    QDBusReply<bool> getLowerLimit();
    /// The upper limit of the result.
    QDBusReply<bool> getUpperLimit();
    /// The current value.
    QDBusReply<bool> getValue();
    /// The current value as text.
    QDBusReply<QString> getString();
    /// The smallest value since the minimum and maximum were last reset.
    QDBusReply<bool> getMinValue();
    /// getMinValue() as text.
    QDBusReply<QString> getMinString();
    /// The largest value since the minimum and maximum were last reset.
    QDBusReply<bool> getMaxValue();
    /// getMaxValue() as text.
    QDBusReply<QString> getMaxString();
    /// Asks the application to start the minimum and maximum afresh; the reply holds only success
    /// or the error.
    QDBusReply<void> resetMinMaxValues();
    /// Asks the application to stop updating the minimum and maximum; the reply holds only success
    /// or the error.
    QDBusReply<void> stopMinMaxEval();
    /// Asks the application to resume updating the minimum and maximum; the reply holds only
    /// success or the error.
    QDBusReply<void> continueMinMaxEval();
    /// The composite reading of the value, as the application sent it.
    ///
    /// @return the list, or an empty list after logging the failure through qDebug().
    QList<QVariant> getValueComp();
    /// The composite reading of the minimum.
    ///
    /// @return the list, or an empty list after logging the failure through qDebug().
    QList<QVariant> getMinValueComp();
    /// The composite reading of the maximum.
    ///
    /// @return the list, or an empty list after logging the failure through qDebug().
    QList<QVariant> getMaxValueComp();
    /// The composite reading of the value as text.
    ///
    /// @return the list, or an empty list after logging the failure through qDebug().
    QList<QVariant> getStringComp();
    /// The composite reading of the minimum as text.
    ///
    /// @return the list, or an empty list after logging the failure through qDebug().
    QList<QVariant> getMinStringComp();
    /// The composite reading of the maximum as text.
    ///
    /// @return the list, or an empty list after logging the failure through qDebug().
    QList<QVariant> getMaxStringComp();

private:
    QString m_service;
    QString m_path;
    /// Opens the Comp getters' failure reports.
    QString m_classPrefix;
};

#endif
