#include "Element.h"

Element::Element(const QString &path, const QString &proxyClass)
    : m_path(path)
    , m_proxyClass(proxyClass)
{
}

Element::~Element() = default;

QString Element::interfaceName() const
{
    return QStringLiteral("com.velk.mqx.MeasApplInterface");
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

void Element::addMember(const QString &member, const QString &inSignature, const QString &outSignature,
                        const Operation &operation)
{
    m_members.append({member, inSignature, outSignature, operation});
}

void Element::addSignal(const QString &member, const QString &signature, const std::function<QVariantList()> &current)
{
    m_signals.append({member, signature, current});
}

void Element::addChangeableMember(const std::function<bool()> &changeable)
{
    addMember(QStringLiteral("isChangeable"), QString(), QStringLiteral("b"),
              [changeable](const QVariantList &) { return Outcome::value(changeable()); });
}

void Element::addDefaultMember()
{
    addMember(QStringLiteral("setToDefault"), QString(), QString(), [this](const QVariantList &) {
        restoreDefault();
        return Outcome::reply();
    });
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
