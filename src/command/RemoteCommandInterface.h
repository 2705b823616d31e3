#ifndef DBUSINTERFACES_REMOTECOMMANDINTERFACE_H
#define DBUSINTERFACES_REMOTECOMMANDINTERFACE_H

#include "dbusinterfaces_export.h"

#include <QDBusAbstractInterface>
#include <QString>
#include <QStringList>

/**
 * @brief Hands textual remote commands to a measurement application.
 *
 * Commands always travel over the connector's connection (DBusConnector), whatever
 * connection the proxy was constructed with.
 *
 * @code
 * RemoteCommandInterface remote(service, "/MEAS_APPL_OBJ", bus);
 * bool ok = false;
 * QString error;
 * const QString answer = remote.executeCommand("SET:GAIN", {"12"}, &ok, &error);
 * if (!ok)
 *     qDebug() << "rejected:" << error;
 * @endcode
 */
class DBUSINTERFACES_EXPORT RemoteCommandInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    /// Makes no bus call. @p connection is only handed to QDBusAbstractInterface: commands
    /// travel over DBusConnector's connection.
    RemoteCommandInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                           QObject *parent = nullptr);
    /// Sends nothing.
    ~RemoteCommandInterface() override;

public Q_SLOTS:
    /**
     * Sends @p command with up to four @p params and returns the application's answer.
     *
     * A null string comes back when the command was rejected by the application's parser
     * (then @p ok is false and the parser's text, without its "Parser Error: " prefix, is
     * appended to @p errorCode), when the call failed, or when more than four parameters
     * were given (nothing is sent); in the last two cases @p ok stays true.
     *
     * The bus member is "executeRemoteCommand", with five strings: @p command and four
     * parameter slots, the unused ones empty. Only a parser error is logged, through qDebug().
     *
     * @param command the command text.
     * @param params at most four parameters.
     * @param ok if not null, set to false on a parser error and to true otherwise.
     * @param errorCode if not null, receives the parser's text after what it already holds;
     *        every "Parser Error: " in it is removed then.
     * @return the application's answer, or a null string.
     */
    QString executeCommand(QString command, QStringList params, bool *ok = nullptr, QString *errorCode = nullptr);

private:
    QString m_service;
    QString m_path;
};

#endif
