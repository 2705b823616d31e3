#ifndef DBUSINTERFACES_RESULTINTINTERFACE_H
#define DBUSINTERFACES_RESULTINTINTERFACE_H

#include "dbusinterfaces_export.h"

#include <QDBusAbstractInterface>
#include <QDBusReply>
#include <QList>
#include <QString>
#include <QVariant>

/**
 * @brief Proxy of a measured integer result.
 *
 * Read-only. The Comp getters return the application's composite reading as it sent
 * it, or an empty list after logging the failure.
 */
class DBUSINTERFACES_EXPORT ResultIntInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    ResultIntInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                       QObject *parent = nullptr);
    ~ResultIntInterface() override;

public Q_SLOTS:
    QDBusReply<int> getLowerLimit();
    QDBusReply<int> getUpperLimit();
    QDBusReply<int> getValue();
    QDBusReply<QString> getString();
    QDBusReply<int> getMinValue();
    QDBusReply<QString> getMinString();
    QDBusReply<int> getMaxValue();
    QDBusReply<QString> getMaxString();
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
