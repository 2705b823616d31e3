#ifndef TESTS_SIMULATORPROCESS_H
#define TESTS_SIMULATORPROCESS_H

#include <QDBusMessage>
#include <QProcess>
#include <QStringList>
#include <QVariantList>

/// The simulator program, started on the test bus and stopped again by its own process id.
class SimulatorProcess
{
public:
    static const QString name;
    static const QString service;

    enum Start { Plain, SigintIgnored };

    /// Starts it with a manual clock under the name "simtest" plus @p arguments; with
    /// SigintIgnored as a script's background job is, SIGINT ignored from the start.
    explicit SimulatorProcess(const QStringList &arguments = {}, Start start = Plain);
    ~SimulatorProcess();

    /// Waits for the next "ready" line; false if the program ended or printed none in time.
    bool waitForReady();
    /// A call on the simulator's control interface (at @p destination, else its service); the reply.
    QDBusMessage control(const QString &member, const QVariantList &arguments = {},
                         const QString &destination = QString()) const;
    QProcess &process() { return m_process; }

private:
    QProcess m_process;
};

#endif
