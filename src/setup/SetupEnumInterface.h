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
    SetupEnumInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                       QObject *parent = nullptr);
    ~SetupEnumInterface() override;

Q_SIGNALS:
    /// Index and text of the new choice.
    void setupChanged(int newVal, QString newStr);

public Q_SLOTS:
    QDBusReply<bool> setValue(int value);
    void setValueAsync(int value);
    QDBusReply<bool> setValue(QString str);
    void setValueAsync(QString str);
    /// The list of choices as one text (member "getValueList").
    QDBusReply<QString> getEnumValueList();
    QDBusReply<int> getValue();
    QDBusReply<QString> getString();
    QDBusReply<QString> getStringRepresentation(int val);
    /// The number of choices (member "getQuantity").
    QDBusReply<int> getEnumQuantity();
    QDBusReply<void> execute();
    void executeAsync();
    QDBusReply<bool> isChangeable();
    QDBusReply<void> setToDefault();
    void setToDefaultAsync();
};

#endif
