#ifndef SIMULATOR_EXITSIGNALS_H
#define SIMULATOR_EXITSIGNALS_H

#include <QObject>
#include <QSocketNotifier>

#include <initializer_list>
#include <memory>

/**
 * Turns POSIX signals into a Qt signal in the event loop: the handler only writes one byte to
 * a socket pair (async-signal-safe), whose other end a QSocketNotifier watches. One instance
 * per process.
 */
class ExitSignals : public QObject
{
    Q_OBJECT

public:
    explicit ExitSignals(std::initializer_list<int> signalNumbers, QObject *parent = nullptr);
    ~ExitSignals() override;

Q_SIGNALS:
    void received(int signalNumber);

private:
    static void handle(int signalNumber);
    void onReadable();

    std::unique_ptr<QSocketNotifier> m_notifier;
};

#endif
