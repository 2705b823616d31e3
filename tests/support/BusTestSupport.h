#ifndef TESTS_BUSTESTSUPPORT_H
#define TESTS_BUSTESTSUPPORT_H

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QEvent>
#include <QObject>
#include <QtTest/QTest>

/// Returns once the bus daemon has handled everything @p connection sent before, such
/// as the match rule added when a receiver connected to a proxy's signal.
void syncWithBus(const QDBusConnection &connection);

/**
 * Sees the bus daemon announce that @p service has lost its owner (NameOwnerChanged). Once
 * wait() has returned true, every later query on @p connection finds the name gone.
 */
class NameReleaseWatch : public QObject
{
public:
    NameReleaseWatch(const QDBusConnection &connection, const QString &service);
    /// Runs the event loop until the announcement has arrived; false if it did not in time.
    bool wait(int timeoutMs = 5000);

private:
    QDBusServiceWatcher m_watcher;
    bool m_released = false;
};

/**
 * Counts the deliveries QtDBus posts to an object. A relayed bus signal reaches a proxy
 * as such an event, so this shows relaying without connecting to the proxy's signal
 * (which would subscribe it again).
 */
class DeliveryCounter : public QObject
{
public:
    explicit DeliveryCounter(QObject *watched);
    int count() const { return m_count; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    int m_count = 0;
};

/// Counts bus signals received through a plain QDBusConnection::connect.
class BusSignalWitness : public QObject
{
    Q_OBJECT

public:
    BusSignalWitness(const QDBusConnection &connection, const QString &service, const QString &path,
                     const QString &interface, const QString &member);
    int count() const { return m_count; }

private Q_SLOTS:
    void onSignal(const QDBusMessage &message);

private:
    int m_count = 0;
};

/**
 * The singleton contract of the bus classes: getInstance() hands out one object, which
 * Probe::instance() (the protected m_pInstance) shows, until releaseInstance() empties it;
 * the next getInstance() makes another.
 */
template<typename Singleton, typename Probe>
void verifyOneInstanceUntilReleased()
{
    QCOMPARE(Probe::instance(), nullptr);
    Singleton *first = Singleton::getInstance();
    QVERIFY(first);
    QCOMPARE(Singleton::getInstance(), first);
    QCOMPARE(Probe::instance(), first);

    Singleton::releaseInstance();
    QCOMPARE(Probe::instance(), nullptr);

    Singleton *second = Singleton::getInstance();
    QVERIFY(second);
    QCOMPARE(Probe::instance(), second);
}

#endif
