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
    /// Makes no bus call: @p service need not be on the bus yet.
    ResultEnumInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                        QObject *parent = nullptr);
    /// Sends nothing.
    ~ResultEnumInterface() override;

public Q_SLOTS:
    /// The number of the current enumerator.
    QDBusReply<int> getValue();
    /// The current enumerator as text.
    QDBusReply<QString> getString();
    /// The smallest enumerator number since the minimum and maximum were last reset.
    QDBusReply<int> getMinValue();
    /// The largest enumerator number since the minimum and maximum were last reset.
    QDBusReply<int> getMaxValue();
    /// The composite reading of the value, as the application sent it.
    ///
    /// @return the list, or an empty list after logging the failure through qDebug().
    QList<QVariant> getValueComp();

private:
    QString m_service;
    QString m_path;
};

#endif
