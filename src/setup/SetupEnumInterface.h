#ifndef DBUSINTERFACES_SETUPENUMINTERFACE_H
#define DBUSINTERFACES_SETUPENUMINTERFACE_H

#include "dbusinterfaces_export.h"

#include <QDBusAbstractInterface>
#include <QDBusReply>

/**
 * @brief Proxy of a setting that chooses from a list, by index or by text.
 */
class DBUSINTERFACES_EXPORT SetupEnumInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    /// Makes no bus call: @p service need not be on the bus yet.
    SetupEnumInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                       QObject *parent = nullptr);
    /// Sends nothing; the proxy's signal subscriptions end with it.
    ~SetupEnumInterface() override;

Q_SIGNALS:
    /// The choice changed to index @p newVal, whose text is @p newStr.
    void setupChanged(int newVal, QString newStr);

public Q_SLOTS:
    /// Asks the application to choose the entry with index @p value.
    ///
    /// @return the application's answer: whether it took the choice.
    QDBusReply<bool> setValue(int value);
    /// setValue(int) without waiting: sends "setValue" and returns at once; no answer or error is
    /// ever seen.
    void setValueAsync(int value);
    /// Asks the application to choose the entry whose text is @p str; the same member as
    /// setValue(int), with a string.
    ///
    /// @return the application's answer: whether it took the choice.
    QDBusReply<bool> setValue(QString str);
    /// setValue(QString) without waiting: sends "setValue" and returns at once; no answer or error
    /// is ever seen.
    void setValueAsync(QString str);
    /// The list of choices as one text, in the application's format. Sends "getValueList".
    QDBusReply<QString> getEnumValueList();
    /// The index of the current choice.
    QDBusReply<int> getValue();
    /// The text of the current choice.
    QDBusReply<QString> getString();
    /// The text of the choice with index @p val.
    QDBusReply<QString> getStringRepresentation(int val);
    /// The number of choices. Sends "getQuantity".
    QDBusReply<int> getEnumQuantity();
    /// Sends "execute"; what it sets off is the application's. The reply holds only success or the
    /// error.
    QDBusReply<void> execute();
    /// execute() without waiting: sends "execute" and returns at once; no answer or error is ever
    /// seen.
    void executeAsync();
    /// Whether the application lets the setting be changed now.
    QDBusReply<bool> isChangeable();
    /// Resets the setting to its default; the reply holds only success or the error.
    QDBusReply<void> setToDefault();
    /// setToDefault() without waiting: sends "setToDefault" and returns at once; no answer or error
    /// is ever seen.
    void setToDefaultAsync();
};

#endif
