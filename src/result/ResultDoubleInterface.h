#ifndef DBUSINTERFACES_RESULTDOUBLEINTERFACE_H
#define DBUSINTERFACES_RESULTDOUBLEINTERFACE_H

#include "dbusinterfaces_export.h"

#include <QDBusAbstractInterface>
#include <QDBusReply>
#include <QList>
#include <QString>
#include <QVariant>

/**
 * @brief Proxy of a measured floating-point result.
 *
 * Read-only. The Comp getters return the application's composite reading as it sent
 * it, or an empty list after logging the failure.
 */
class DBUSINTERFACES_EXPORT ResultDoubleInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    ResultDoubleInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                          QObject *parent = nullptr);
    ~ResultDoubleInterface() override;

public Q_SLOTS:
    QDBusReply<double> getLowerLimit();
    QDBusReply<double> getUpperLimit();
    QDBusReply<double> getValue();
    QDBusReply<QString> getString();
    QDBusReply<double> getMinValue();
    QDBusReply<double> getMaxValue();
    QDBusReply<void> resetMinMaxValues();
    QDBusReply<void> stopMinMaxEval();
    QDBusReply<void> continueMinMaxEval();
    QList<QVariant> getValueComp();
    QList<QVariant> getMinValueComp();
    QList<QVariant> getMaxValueComp();
    QList<QVariant> getStringComp();
    QList<QVariant> getMinStringComp();
    QList<QVariant> getMaxStringComp();

private:
    QString m_service;
    QString m_path;
    /// Opens the Comp getters' failure reports.
    QString m_classPrefix;
};

#endif
