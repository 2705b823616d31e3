#ifndef DBUSINTERFACES_APPLICATIONMIRROR_H
#define DBUSINTERFACES_APPLICATIONMIRROR_H

#include "dbusinterfaces_export.h"

#include <QDBusConnection>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>

class LiveValue;
class MirrorLink;
class QDBusMessage;
class QTimer;

/**
 * @brief A mirror of one measurement application for a user interface: one LiveValue per
 * element asked for, kept current by the application's change signals, and never a call
 * that blocks the caller's thread.
 *
 * Every call goes out without waiting and has a deadline (callTimeout(), 2000 ms unless
 * set); answers arrive through the event loop. The first reads of all elements asked for
 * go out together, in slices small enough to keep the event loop running, and values fill
 * in as answers arrive. One subscription covers every change signal of the application;
 * each is handed to the LiveValue of its path, and only signals of the application's
 * current owner count.
 *
 * When the application leaves the bus every value turns Stale (Absent if it never had
 * one) and keeps what it showed; when an owner appears again (a restart has a new unique
 * name) everything is read again from it, and nothing of the former owner is taken
 * afterwards.
 *
 * Construction subscribes with QtDBus, which asks the bus daemon (never the application)
 * once for the service's owner. The proxy classes are unaffected: they keep blocking.
 *
 * @code
 * auto *mirror = new ApplicationMirror(QStringLiteral("scope"), bus, this);
 * LiveValue *gain = mirror->value(QStringLiteral("/Setup/Gain"));   // kind from introspection
 * connect(gain, &LiveValue::valueChanged, this, [=] { spinBox->setValue(gain->value().toInt()); });
 * @endcode
 */
class DBUSINTERFACES_EXPORT ApplicationMirror : public QObject
{
    Q_OBJECT
    /// The application's name as given to the constructor ("scope").
    Q_PROPERTY(QString applicationName READ applicationName CONSTANT)
    /// The bus name followed: "com.velk.mqx.app." and the application's name in lower case.
    Q_PROPERTY(QString service READ service CONSTANT)
    /// Whether the application's name has an owner on the bus.
    Q_PROPERTY(bool onBus READ isOnBus NOTIFY onBusChanged)
    /// The unique name of the application's current owner; empty while it is off the bus.
    Q_PROPERTY(QString owner READ owner NOTIFY ownerChanged)
    /// The deadline of every call sent from now on, in milliseconds.
    Q_PROPERTY(int callTimeout READ callTimeout WRITE setCallTimeout NOTIFY callTimeoutChanged)

public:
    /// The deadline of every call unless setCallTimeout() says otherwise, in milliseconds.
    static constexpr int defaultCallTimeout = 2000;

    /// Follows the application at once; values fill in once they are asked for with value().
    /// Waits only for the bus daemon, once, for the service's owner (never for the application).
    /// @param applicationName the application's name ("scope"); its service is named after it.
    /// @param connection the bus the application is on.
    /// @param parent the QObject parent.
    ApplicationMirror(const QString &applicationName, const QDBusConnection &connection, QObject *parent = nullptr);
    /// Destroys every LiveValue; answers still on their way are dropped.
    ~ApplicationMirror() override;

    /// The application's name as given to the constructor.
    QString applicationName() const;
    /// The bus name followed: "com.velk.mqx.app." and the application's name in lower case.
    QString service() const;
    /// Whether the application's name has an owner on the bus.
    bool isOnBus() const;
    /// The unique name of the application's current owner; empty while it is off the bus.
    QString owner() const;

    /// The deadline of calls sent from now on, in milliseconds; defaultCallTimeout unless set.
    int callTimeout() const;
    /// The deadline of calls sent from now on, in milliseconds; calls already sent keep theirs.
    void setCallTimeout(int milliseconds);

    /**
     * The LiveValue of the element at @p path, made on first demand (the mirror owns it).
     * @p kind is the element's kind by class or short name ("SetupIntInterface", "int");
     * empty: inferred by introspecting the path. Asking again for a path returns the same
     * value, whatever @p kind says.
     * @return the value, or null when @p kind names no kind.
     */
    Q_INVOKABLE LiveValue *value(const QString &path, const QString &kind = QString());
    /// The LiveValue of @p path if one was asked for, else null.
    LiveValue *find(const QString &path) const;
    /// Every LiveValue asked for and not destroyed, in no particular order.
    QList<LiveValue *> values() const;

    /// Reads every element again, in one batch.
    Q_INVOKABLE void refresh();

Q_SIGNALS:
    /// The application appeared on the bus or left it.
    void onBusChanged(bool onBus);
    /// The owner changed: @p owner is the new unique name, empty when the application left.
    void ownerChanged(const QString &owner);
    /// setCallTimeout() changed the deadline.
    void callTimeoutChanged(int milliseconds);
    /// A call or signal of @p value was counted (LiveValue::callCount() and the rest).
    void trafficChanged(LiveValue *value);

private Q_SLOTS:
    void takeBusSignal(const QDBusMessage &message);

private:
    void followOwner(const QString &newOwner);
    void learnInitialOwner(const QDBusMessage &reply);
    void scheduleRead(LiveValue *value);
    void sendScheduledReads();

    std::shared_ptr<MirrorLink> m_link;
    QString m_applicationName;
    QHash<QString, LiveValue *> m_values;
    QList<QPointer<LiveValue>> m_toRead;
    QTimer *m_readPump;
};

#endif
