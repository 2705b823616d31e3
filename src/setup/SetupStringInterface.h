#ifndef DBUSINTERFACES_SETUPSTRINGINTERFACE_H
#define DBUSINTERFACES_SETUPSTRINGINTERFACE_H

#include "dbusinterfaces_export.h"

#include <QDBusAbstractInterface>
#include <QDBusReply>

/**
 * @brief Proxy of a text setting.
 */
class DBUSINTERFACES_EXPORT SetupStringInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    /// Makes no bus call: @p service need not be on the bus yet.
    SetupStringInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                         QObject *parent = nullptr);
    /// Sends nothing; the proxy's signal subscriptions end with it.
    ~SetupStringInterface() override;

Q_SIGNALS:
    /// The setting changed to @p newVal.
    void setupChanged(QString newVal);

public Q_SLOTS:
    /// Asks the application to take @p str.
    ///
    /// @return the application's answer: whether it took the text.
    QDBusReply<bool> setValue(QString str);
    /// The value as the application displays it.
    QDBusReply<QString> getString();
    /// setValue() without waiting: sends "setValue" and returns at once; no answer or error is ever
    /// seen.
    void setValueAsync(QString str);
    /// The current text.
    ///
    /// Logs three lines through qDebug() when the call fails: the error, the interface and the
    /// path.
    QDBusReply<QString> getValue();
    /// Whether the application lets the setting be changed now.
    QDBusReply<bool> isChangeable();
    /// Resets the setting to its default; the reply holds only success or the error.
    QDBusReply<void> setToDefault();
    /// setToDefault() without waiting: sends "setToDefault" and returns at once; no answer or error
    /// is ever seen.
    void setToDefaultAsync();
};

#endif
