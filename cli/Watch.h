#ifndef MEASCTL_WATCH_H
#define MEASCTL_WATCH_H

#include <QObject>

class QSocketNotifier;

/**
 * Ends an event loop cleanly on SIGINT or SIGTERM: the signal handler only writes a byte
 * to a socket pair, and the loop learns of it through a socket notifier.
 */
class StopOnSignal : public QObject
{
    Q_OBJECT

public:
    explicit StopOnSignal(QObject *parent = nullptr);
    ~StopOnSignal() override;

Q_SIGNALS:
    void stopRequested();

private:
    void onReadable();

    QSocketNotifier *m_notifier = nullptr;
};

#endif
