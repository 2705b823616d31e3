#ifndef MEASCTL_KINDSUPPORT_H
#define MEASCTL_KINDSUPPORT_H

// Shared pieces of the element kinds' adapters.

#include "ElementKind.h"
#include "Reading.h"
#include "Values.h"

#include <QJsonArray>
#include <QObject>

#include <memory>
#include <vector>

using KindList = std::vector<std::unique_ptr<ElementKind>>;

void addSetupKinds(KindList &kinds);
void addResultKinds(KindList &kinds);
void addCommandKind(KindList &kinds);

/// Relays the Qt signal @p signal of @p proxy to @p sink under @p name, each argument in its JSON form.
template<class P, typename... A>
void relaySignal(P &proxy, void (P::*signal)(A...), const char *name, const SignalSink &sink)
{
    QObject::connect(&proxy, signal, &proxy, [sink, name](A... arguments) {
        sink(QString::fromLatin1(name), QJsonArray{Values::toJson(QVariant::fromValue(arguments))...});
    });
}

#endif
