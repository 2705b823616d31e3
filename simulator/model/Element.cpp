#include "Element.h"

#include "MeasApplNames_p.h"

Element::Element(const Binding &binding)
    : m_path(binding.path)
    , m_proxyClass(QString::fromLatin1(binding.kind.className))
    , m_kind(&binding.kind)
{
    const KindTable::Kind &kind = binding.kind;
    const Handlers &handlers = binding.handlers;
    for (const KindTable::Method &method : kind.methods()) {
        if (const MethodHandler *handler = handlers.handlerOf(kind, method)) {
            const auto run = handler->run;
            m_members.append({QString::fromLatin1(method.name), QString::fromLatin1(method.inSignature),
                              QString::fromLatin1(method.outSignature),
                              [this, run](const QVariantList &arguments) { return run(*this, arguments); }});
        }
    }
    for (const KindTable::BusSignal &busSignal : kind.busSignals()) {
        if (const SignalHandler *handler = handlers.handlerOf(kind, busSignal)) {
            const auto current = handler->current;
            m_signals.append({QString::fromLatin1(busSignal.name), QString::fromLatin1(busSignal.signature),
                              [this, current] { return current(*this); }});
        }
    }
}

Element::Element(const QString &path, const QString &className)
    : m_path(path)
    , m_proxyClass(className)
{
}

Element::~Element() = default;

QString Element::interfaceName() const
{
    return QString::fromLatin1(MeasAppl::interfaceName);
}

Outcome Element::invoke(const QString &member, const QString &signature, const QVariantList &arguments) const
{
    bool memberKnown = false;
    for (const MemberEntry &entry : m_members) {
        if (entry.member != member)
            continue;
        memberKnown = true;
        if (entry.inSignature == signature)
            return entry.operation(arguments);
    }
    if (memberKnown)
        return Outcome::error(ErrorNames::invalidArgs,
                              QStringLiteral("%1 does not take the signature \"%2\"").arg(member, signature));
    return Outcome::error(ErrorNames::unknownMethod,
                          QStringLiteral("No member \"%1\" on %2 (%3)").arg(member, m_path, m_proxyClass));
}

bool Element::signalArguments(const QString &member, QVariantList *arguments) const
{
    const auto last = m_lastSignal.constFind(member);
    if (last != m_lastSignal.constEnd()) {
        *arguments = *last;
        return true;
    }
    for (const SignalEntry &entry : m_signals) {
        if (entry.member == member) {
            *arguments = entry.currentArguments();
            return true;
        }
    }
    return false;
}

QString Element::text() const
{
    return {};
}

bool Element::setFromText(const QString &, QString *why)
{
    *why = QStringLiteral("%1 cannot be set by a command").arg(m_path);
    return false;
}

void Element::restoreDefault() { }

std::optional<bool> Element::storeName(const QString &, bool)
{
    return std::nullopt;
}

void Element::addMember(const QString &member, const QString &inSignature, const QString &outSignature,
                        const Operation &operation)
{
    m_members.append({member, inSignature, outSignature, operation});
}

void Element::emitSignal(const QString &member, const QVariantList &arguments)
{
    m_lastSignal.insert(member, arguments);
    if (m_sink)
        m_sink(m_path, member, arguments);
}

void Element::emitSignal(const QString &member)
{
    for (const SignalEntry &entry : m_signals) {
        if (entry.member == member) {
            emitSignal(member, entry.currentArguments());
            return;
        }
    }
}
