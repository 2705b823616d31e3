#ifndef SIMULATOR_SIMULATORSERVICE_H
#define SIMULATOR_SIMULATORSERVICE_H

#include "CallLog.h"
#include "Faults.h"

#include <QDBusConnection>
#include <QObject>
#include <QTimer>

#include <memory>

class BusEndpoint;
class ControlElement;
class Element;
class MeasurementEngine;
class Model;
class RootElement;

/**
 * The simulated application on the bus: owns the model, the measurement, the faults and the
 * connection, and can leave the bus, come back and restart under the same name.
 */
class SimulatorService : public QObject
{
    Q_OBJECT

public:
    struct Options
    {
        QString name;    ///< application name; empty: the model's
        QString address; ///< empty: the session bus
        quint32 seed = 1;
        double rate = 0; ///< default sample rate; 0: the model's
        bool manualClock = false;
        QString logFile;
    };

    static const QString controlInterface;

    SimulatorService(std::unique_ptr<Model> model, const Options &options, QObject *parent = nullptr);
    ~SimulatorService() override;

    /// Connects and asks for the name; ready() follows once it is owned.
    bool start(QString *error);
    QString serviceName() const { return m_serviceName; }

    Element *elementAt(const QString &path) const;
    QStringList childNodes(const QString &path) const;
    FaultPlan &faults() { return m_faults; }
    CallLog &callLog() { return m_log; }
    MeasurementEngine &engine() { return *m_engine; }

    // What the control interface offers.
    bool setFault(const QString &path, const QString &kind, const QString &argument);
    /// Leaves the bus once the current call is answered; back after @p backAfterMs unless negative.
    void dropOffBus(bool disconnect, int backAfterMs);
    void restart();
    bool sendSignal(const QString &path, const QString &member, bool spoofed);
    void quitSoon();
    /// Releases the name and closes the connection, at once.
    void leave();

Q_SIGNALS:
    void ready();
    void failed(const QString &reason);

private Q_SLOTS:
    void onNameAcquired(const QString &name);
    void onDisconnected();

private:
    bool connectToBus(QString *error);
    bool ownName(bool queue, QString *error);
    void leaveBus(bool disconnect);
    void sendOn(QDBusConnection connection, const QString &path, const QString &member, const QVariantList &arguments);
    /// Runs @p step after everything sent so far has reached the bus daemon.
    void afterAnswer(const std::function<void()> &step);

    Options m_options;
    std::unique_ptr<Model> m_model;
    std::unique_ptr<MeasurementEngine> m_engine;
    std::unique_ptr<RootElement> m_root;
    std::unique_ptr<ControlElement> m_control;
    std::unique_ptr<BusEndpoint> m_endpoint;
    FaultPlan m_faults;
    CallLog m_log;
    QTimer m_clock;
    QString m_serviceName;
    QString m_connectionName;
    QDBusConnection m_connection;
    int m_generation = 0;
    bool m_connected = false;
    bool m_awaitingName = false;
};

#endif
