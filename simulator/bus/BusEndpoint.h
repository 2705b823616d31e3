#ifndef SIMULATOR_BUSENDPOINT_H
#define SIMULATOR_BUSENDPOINT_H

#include <QDBusVirtualObject>

class SimulatorService;

/// Answers every path of the simulator from one place: routing, faults and the call log.
class BusEndpoint : public QDBusVirtualObject
{
    Q_OBJECT

public:
    explicit BusEndpoint(SimulatorService &service);

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;
    QString introspect(const QString &path) const override;

private:
    SimulatorService &m_service;
};

#endif
