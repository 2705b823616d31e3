#ifndef DBUSINTERFACES_SETUPARRAYITEMINTERFACE_H
#define DBUSINTERFACES_SETUPARRAYITEMINTERFACE_H

#include "dbusinterfaces_export.h"

#include <QList>
#include <QVariant>

#include <QDBusAbstractInterface>
#include <QDBusReply>

/**
 * @brief Proxy of an array setting: values of any type under an index, read and
 * written by index range or as a whole.
 */
class DBUSINTERFACES_EXPORT SetupArrayItemInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    SetupArrayItemInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                            QObject *parent = nullptr);
    ~SetupArrayItemInterface() override;

Q_SIGNALS:
    void setupChanged();

public Q_SLOTS:
    /// Sets the elements from @p start to @p end to @p value, sent in a D-Bus variant.
    QDBusReply<bool> setValue(QVariant value, int start, int end);
    /// Replaces the whole array; the list travels as it is (av).
    QDBusReply<bool> setValue(QVariantList value);
    /// The elements from @p start to @p end, or an empty list after logging the failure.
    QList<QVariant> getValue(int start, int end);
    QDBusReply<QString> getString();
    QDBusReply<int> size();
    void setValueAsync(QVariant value, int start, int end);
    QDBusReply<bool> isChangeable();
    /// Waits for the application, but drops its answer.
    void setToDefault();
    void setToDefaultAsync();

private:
    QString m_service;
    QString m_path;
};

#endif
