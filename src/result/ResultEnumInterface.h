#ifndef DBUSINTERFACES_RESULTENUMINTERFACE_H
#define DBUSINTERFACES_RESULTENUMINTERFACE_H

#include "dbusinterfaces_export.h"

#include <QDBusAbstractInterface>
#include <QDBusReply>
#include <QList>
#include <QString>
#include <QVariant>

/**
 * @brief Proxy of a measured enumerated result; the value is the enumerator's number.
 *
 * Read-only. getValueComp() returns the application's composite reading as it sent it,
 * or an empty list after logging the failure.
 */
class DBUSINTERFACES_EXPORT ResultEnumInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    ResultEnumInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                        QObject *parent = nullptr);
    ~ResultEnumInterface() override;

public Q_SLOTS:
    QDBusReply<int> getValue();
    QDBusReply<QString> getString();
    QDBusReply<int> getMinValue();
    QDBusReply<int> getMaxValue();
    QList<QVariant> getValueComp();

private:
    QString m_service;
    QString m_path;
};

#endif
