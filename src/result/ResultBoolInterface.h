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
    ResultBoolInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                        QObject *parent = nullptr);
    ~ResultBoolInterface() override;

public Q_SLOTS:
    QDBusReply<bool> getLowerLimit();
    QDBusReply<bool> getUpperLimit();
    QDBusReply<bool> getValue();
    QDBusReply<QString> getString();
    QDBusReply<bool> getMinValue();
    QDBusReply<QString> getMinString();
    QDBusReply<bool> getMaxValue();
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
