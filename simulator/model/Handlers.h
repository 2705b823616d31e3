#ifndef SIMULATOR_HANDLERS_H
#define SIMULATOR_HANDLERS_H

#include "Outcome.h"

#include <KindTable.h>

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <functional>

class Element;

/// What a kind does on one method of its table. Signatures come from the table: a handler
/// names the input signature only of a member sent with several.
struct MethodHandler
{
    QString member;
    const char *inSignature; ///< null: the member's one input signature
    std::function<Outcome(Element &, const QVariantList &)> run;
};

/// The current arguments of one bus signal of a kind (emitted or spoofed on request).
struct SignalHandler
{
    QString member;
    const char *signature; ///< null: the signal's one signature
    std::function<QVariantList(const Element &)> current;
};

/// Everything a kind answers, keyed by member name (and input signature where there are several).
struct Handlers
{
    QList<MethodHandler> methods;
    QList<SignalHandler> busSignals;

    /// Why these handlers do not cover exactly the members of @p kind; empty when they do.
    QStringList mismatches(const KindTable::Kind &kind) const;
    /// The handler of @p method of @p kind; null if there is none.
    const MethodHandler *handlerOf(const KindTable::Kind &kind, const KindTable::Method &method) const;
    const SignalHandler *handlerOf(const KindTable::Kind &kind, const KindTable::BusSignal &busSignal) const;
};

/// Builds the Handlers of element class @p E; each handler gets the element as an @p E.
template<class E>
class HandlersOf
{
public:
    using Run = std::function<Outcome(E &, const QVariantList &)>;
    using Current = std::function<QVariantList(const E &)>;

    HandlersOf &method(const char *member, const Run &run) { return method(QString::fromLatin1(member), run); }
    HandlersOf &method(const QString &member, const Run &run) { return method(member, nullptr, run); }
    HandlersOf &method(const char *member, const char *inSignature, const Run &run)
    {
        return method(QString::fromLatin1(member), inSignature, run);
    }
    HandlersOf &method(const QString &member, const char *inSignature, const Run &run)
    {
        m_handlers.methods.append({member, inSignature, [run](Element &element, const QVariantList &arguments) {
                                       return run(static_cast<E &>(element), arguments);
                                   }});
        return *this;
    }
    HandlersOf &busSignal(const char *member, const Current &current) { return busSignal(member, nullptr, current); }
    HandlersOf &busSignal(const char *member, const char *signature, const Current &current)
    {
        m_handlers.busSignals.append({QString::fromLatin1(member), signature, [current](const Element &element) {
                                          return current(static_cast<const E &>(element));
                                      }});
        return *this;
    }
    /// Adds handlers a base class supplies.
    HandlersOf &with(const Handlers &more)
    {
        m_handlers.methods += more.methods;
        m_handlers.busSignals += more.busSignals;
        return *this;
    }
    operator Handlers() const { return m_handlers; }

private:
    Handlers m_handlers;
};

#endif
