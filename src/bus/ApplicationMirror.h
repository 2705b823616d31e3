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
    Q_PROPERTY(QString applicationName READ applicationName CONSTANT)
    Q_PROPERTY(QString service READ service CONSTANT)
    Q_PROPERTY(bool onBus READ isOnBus NOTIFY onBusChanged)
    Q_PROPERTY(QString owner READ owner NOTIFY ownerChanged)
    Q_PROPERTY(int callTimeout READ callTimeout WRITE setCallTimeout NOTIFY callTimeoutChanged)

public:
    /// The deadline of every call unless setCallTimeout() says otherwise, in milliseconds.
    static constexpr int defaultCallTimeout = 2000;

    ApplicationMirror(const QString &applicationName, const QDBusConnection &connection, QObject *parent = nullptr);
    /// Destroys every LiveValue; answers still on their way are dropped.
    ~ApplicationMirror() override;

    QString applicationName() const;
    QString service() const;
    /// Whether the application's name has an owner on the bus.
    bool isOnBus() const;
    /// The unique name of the application's current owner; empty while it is off the bus.
    QString owner() const;

    int callTimeout() const;
    /// The deadline of calls sent from now on, in milliseconds.
    void setCallTimeout(int milliseconds);

    /**
     * The LiveValue of the element at @p path, made on first demand (the mirror owns it).
     * @p kind is the element's kind by class or short name ("SetupIntInterface", "int");
     * empty: inferred by introspecting the path. Null when @p kind names no kind.
     */
    Q_INVOKABLE LiveValue *value(const QString &path, const QString &kind = QString());
    /// The LiveValue of @p path if one was asked for, else null.
    LiveValue *find(const QString &path) const;
    QList<LiveValue *> values() const;

    /// Reads every element again, in one batch.
    Q_INVOKABLE void refresh();

Q_SIGNALS:
    void onBusChanged(bool onBus);
    void ownerChanged(const QString &owner);
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
