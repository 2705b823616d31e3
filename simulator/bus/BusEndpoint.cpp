#include "BusEndpoint.h"

#include "Element.h"
#include "Introspection.h"
#include "Model.h"
#include "SimulatorService.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QTimer>

namespace {
const QString introspectable = QStringLiteral("org.freedesktop.DBus.Introspectable");
}

BusEndpoint::BusEndpoint(SimulatorService &service)
    : m_service(service)
{
}

QString BusEndpoint::introspect(const QString &) const
{
    // Introspect calls reach handleMessage, which answers them whole.
    return {};
}

bool BusEndpoint::handleMessage(const QDBusMessage &message, const QDBusConnection &connection)
{
    if (message.type() != QDBusMessage::MethodCallMessage)
        return false;
    QElapsedTimer timer;
    timer.start();
    const QString path = message.path();
    const Element *element = m_service.elementAt(path);
    const QStringList children = m_service.childNodes(path);
    Outcome outcome;
    Fault fault;
    if (message.interface() == introspectable && message.member() == QLatin1String("Introspect")) {
        if (element || !children.isEmpty() || path == QLatin1String("/"))
            outcome = Outcome::value(Introspection::document(element, children));
        else
            outcome = Outcome::error(ErrorNames::unknownObject, QStringLiteral("No object at %1").arg(path));
    } else if (!element) {
        outcome = Outcome::error(ErrorNames::unknownObject, QStringLiteral("No object at %1").arg(path));
    } else if (!message.interface().isEmpty() && message.interface() != element->interfaceName()) {
        outcome = Outcome::error(ErrorNames::unknownMethod,
                                 QStringLiteral("No interface %1 at %2").arg(message.interface(), path));
    } else {
        if (path != Model::controlPath)
            fault = m_service.faults().faultFor(path);
        if (fault.kind == Fault::Error)
            outcome = Outcome::error(fault.errorName, fault.errorMessage);
        else if (fault.kind == Fault::None || fault.kind == Fault::Delay)
            outcome = element->invoke(message.member(), message.signature(), message.arguments());
    }
    m_service.callLog().record(message, outcome, fault, timer.nsecsElapsed() / 1000);

    switch (fault.kind) {
    case Fault::Silent:
        return true;
    case Fault::Drop:
        m_service.dropOffBus(fault.disconnect, -1);
        return true;
    case Fault::Restart:
        m_service.restart();
        return true;
    default:
        break;
    }
    const QDBusMessage reply = outcome.isError() ? message.createErrorReply(outcome.errorName, outcome.errorMessage)
                                                 : message.createReply(outcome.values);
    // An answer that cannot be sent still ends the call, as an error rather than in silence.
    const QDBusMessage unsendable =
        message.createErrorReply(QString::fromLatin1(ErrorNames::failed),
                                 QStringLiteral("The simulator could not send its answer to %1").arg(message.member()));
    QDBusConnection target(connection);
    auto send = [target, reply, unsendable]() mutable {
        if (!target.send(reply))
            target.send(unsendable);
    };
    if (fault.kind == Fault::Delay)
        QTimer::singleShot(fault.delayMs, this, send);
    else
        send();
    return true;
}
