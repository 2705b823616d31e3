#ifndef TESTS_FAKEMEASAPPLICATION_H
#define TESTS_FAKEMEASAPPLICATION_H

#include <QDBusArgument>
#include <QDBusMessage>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>

/// One method call as the fake application received it.
struct ReceivedCall
{
    QString path;
    QString interface;
    QString member;
    QString signature;
    QList<QVariant> arguments;
};

/// What the fake application does with a call of a scripted member.
class ScriptedAnswer
{
public:
    enum Kind { Reply, Error, Silence, Vanish };

    /// A method return carrying @p arguments (none for an empty return).
    static ScriptedAnswer reply(const QList<QVariant> &arguments = {});
    /// A method return carrying one argument.
    static ScriptedAnswer value(const QVariant &value);
    /// A D-Bus error reply.
    static ScriptedAnswer error(const QString &name, const QString &message);
    /// No answer at all: the caller waits for its time-out.
    static ScriptedAnswer silence();
    /// The application leaves the bus instead of answering.
    static ScriptedAnswer vanish();

    Kind kind = Reply;
    QList<QVariant> arguments;
    QString errorName;
    QString errorMessage;
};

class FakePeer;

/**
 * A measurement application on the test bus: a D-Bus peer on its own connection and
 * thread, so that the caller's blocking calls are answered while the caller waits.
 *
 * It owns its service name, answers any member on any path with what the test scripted
 * (unscripted members get the error "com.velk.mqx.Error.NotScripted"), records every
 * call it receives and emits signals, from its own connection or from a foreign one.
 */
class FakeMeasApplication
{
public:
    static const QString interfaceName;
    static const QString notScriptedError;

    /// "com.velk.mqx.app." + @p appName, unchanged.
    static QString serviceFor(const QString &appName);

    explicit FakeMeasApplication(const QString &service = serviceFor(QStringLiteral("fake")));
    ~FakeMeasApplication();

    QString service() const;
    /// The unique bus name of the connection that owns service().
    QString uniqueName() const;

    /// Answers @p member on every path.
    void answer(const QString &member, const ScriptedAnswer &answer);
    /// Answers @p member on @p path only; wins over an any-path answer.
    void answer(const QString &path, const QString &member, const ScriptedAnswer &answer);

    /// Answers every member that has no answer of its own (instead of the not-scripted error).
    void answerUnscripted(const ScriptedAnswer &answer);

    QList<ReceivedCall> calls() const;
    int callCount() const;
    /// Waits, running the caller's event loop, until @p count calls have arrived.
    bool waitForCalls(int count, int timeoutMs = 5000) const;
    void clearCalls();

    /// Emits a bus signal from the connection that owns the service; returns once the
    /// bus daemon has routed it.
    void emitSignal(const QString &path, const QString &member, const QList<QVariant> &arguments,
                    const QString &interface = interfaceName);
    /// The same from a second connection that does not own the service.
    void emitForeignSignal(const QString &path, const QString &member, const QList<QVariant> &arguments,
                           const QString &interface = interfaceName);

    /// The same from the second connection, addressed to @p destination only (a unicast signal).
    void emitForeignSignalTo(const QString &destination, const QString &path, const QString &member,
                             const QList<QVariant> &arguments, const QString &interface = interfaceName);
    /// The unique bus name of the second connection, which never owns the service.
    QString foreignUniqueName() const;

    /// Gives the service name up and stays on the bus, still able to emit signals, as an
    /// application does that another instance replaces; returns once the daemon confirmed it.
    void releaseService();

private:
    std::unique_ptr<FakePeer> m_peer;
};

Q_DECLARE_METATYPE(ScriptedAnswer)

// A readable, comparable text of what crossed the bus. QDBusVariant and QDBusArgument
// values have no usable operator==, so calls and replies are compared through these
// texts instead: "i 5", "s \"x\"", "v(d 2.5)", "av [v(i 1)]", "a{sv} {s \"a\": v(b true)}".
QString wireText(const QVariant &value);
/// Reads a copy of @p argument, which is left where it stands.
QString wireText(const QDBusArgument &argument);
QStringList wireTexts(const QList<QVariant> &values);

#endif
