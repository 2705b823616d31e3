#include "ControlElement.h"

#include "MeasurementEngine.h"
#include "Model.h"
#include "SimulatorService.h"

ControlElement::ControlElement(SimulatorService &service)
    : Element(Model::controlPath, QStringLiteral("Simulator"))
{
    SimulatorService *s = &service;
    addMember(QStringLiteral("setFault"), QStringLiteral("sss"), QStringLiteral("b"), [s](const QVariantList &a) {
        return Outcome::value(s->setFault(a.at(0).toString(), a.at(1).toString(), a.at(2).toString()));
    });
    addMember(QStringLiteral("clearFault"), QStringLiteral("s"), QStringLiteral("b"),
              [s](const QVariantList &a) { return Outcome::value(s->faults().clear(a.at(0).toString())); });
    addMember(QStringLiteral("clearFaults"), QString(), QString(), [s](const QVariantList &) {
        s->faults().clearAll();
        return Outcome::reply();
    });
    addMember(QStringLiteral("dropOffBus"), QStringLiteral("si"), QString(), [s](const QVariantList &a) {
        const QString mode = a.at(0).toString();
        if (mode != QLatin1String("release") && mode != QLatin1String("disconnect"))
            return Outcome::error(ErrorNames::invalidArgs, QStringLiteral("mode is \"release\" or \"disconnect\""));
        s->dropOffBus(mode == QLatin1String("disconnect"), a.at(1).toInt());
        return Outcome::reply();
    });
    addMember(QStringLiteral("restart"), QString(), QString(), [s](const QVariantList &) {
        s->restart();
        return Outcome::reply();
    });
    for (const bool spoofed : {true, false}) {
        addMember(spoofed ? QStringLiteral("spoofSignal") : QStringLiteral("emitSignal"), QStringLiteral("ss"),
                  QStringLiteral("b"), [s, spoofed](const QVariantList &a) {
                      return Outcome::value(s->sendSignal(a.at(0).toString(), a.at(1).toString(), spoofed));
                  });
    }
    addMember(QStringLiteral("tick"), QStringLiteral("i"), QStringLiteral("x"), [s](const QVariantList &a) {
        const int periods = a.at(0).toInt();
        if (periods < 0)
            return Outcome::error(ErrorNames::invalidArgs,
                                  QStringLiteral("tick needs a count of periods of 0 or more, not %1").arg(periods));
        return Outcome::value(s->engine().tick(periods));
    });
    addMember(QStringLiteral("setMeasurementRunning"), QStringLiteral("b"), QString(), [s](const QVariantList &a) {
        s->engine().setRunning(a.at(0).toBool());
        return Outcome::reply();
    });
    addMember(QStringLiteral("isMeasurementRunning"), QString(), QStringLiteral("b"),
              [s](const QVariantList &) { return Outcome::value(s->engine().isRunning()); });
    addMember(QStringLiteral("quit"), QString(), QString(), [s](const QVariantList &) {
        s->quitSoon();
        return Outcome::reply();
    });
}

QString ControlElement::interfaceName() const
{
    return SimulatorService::controlInterface;
}
