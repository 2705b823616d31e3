#ifndef DBUSINTERFACES_SETUPDEVDATAINTERFACE_H
#define DBUSINTERFACES_SETUPDEVDATAINTERFACE_H

#include "dbusinterfaces_export.h"

#include <QDBusVariant>
#include <QVariant>

#include <QDBusAbstractInterface>
#include <QDBusReply>

/**
 * @brief Proxy of a device-specific setting whose value may be of any type.
 *
 * The value always travels wrapped in a D-Bus variant.
 */
class DBUSINTERFACES_EXPORT SetupDevDataInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    /// Makes no bus call: @p service need not be on the bus yet.
    SetupDevDataInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                          QObject *parent = nullptr);
    /// Sends nothing; the proxy's signal subscriptions end with it.
    ~SetupDevDataInterface() override;

Q_SIGNALS:
    /// The setting changed to @p newVal. The receiver gets the wrapper and unwraps the value itself
    /// (QDBusVariant::variant()).
    void setupChanged(QDBusVariant newVal);

public Q_SLOTS:
    /// Asks the application to take @p value, sent inside a D-Bus variant.
    ///
    /// @return the application's answer: whether it took the value.
    QDBusReply<bool> setValue(QVariant value);
    /// setValue() without waiting: sends "setValue" and returns at once; no answer or error is ever
    /// seen.
    void setValueAsync(QVariant value);
    /// The current value, unwrapped from its D-Bus variant; structured values stay a QDBusArgument
    /// inside the QVariant.
    ///
    /// @return the value, or an invalid QVariant after logging the failure through qDebug().
    QVariant getValue();
    /// The value as text.
    ///
    /// @return the text, or an empty string after logging the failure through qDebug(); the line
    /// names getValue(), not getString().
    QString getString();

private:
    QString m_service;
    QString m_path;
};

#endif
