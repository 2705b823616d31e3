#include "SimulatedKinds.h"

#include "RootElement.h"

bool SimulatedKinds::add(const QString &className, const Handlers &handlers, const Reader &read)
{
    const KindTable::Kind *kind = KindTable::find(className);
    if (!kind || className != QLatin1String(kind->className)) {
        m_problems.append(QStringLiteral("%1: no such class in the kind table").arg(className));
        return false;
    }
    const QString shortName = QString::fromLatin1(kind->shortName);
    const QString name = QStringLiteral("kind \"%1\" (%2)").arg(shortName, className);
    if (m_attempted.contains(className)) {
        m_problems.append(QStringLiteral("%1: registered twice").arg(name));
        return false;
    }
    m_attempted.append(className);
    const QStringList mismatches = handlers.mismatches(*kind);
    for (const QString &mismatch : mismatches)
        m_problems.append(QStringLiteral("%1: %2").arg(name, mismatch));
    if (!mismatches.isEmpty())
        return false;
    m_kinds.insert(shortName, {kind, handlers, read});
    return true;
}

const SimulatedKinds::Registered *SimulatedKinds::find(const QString &shortName) const
{
    const auto found = m_kinds.constFind(shortName);
    return found == m_kinds.constEnd() ? nullptr : &*found;
}

void SimulatedKinds::requireEveryKind()
{
    for (const KindTable::Kind &kind : KindTable::all()) {
        const QString className = QString::fromLatin1(kind.className);
        if (!m_attempted.contains(className))
            m_problems.append(QStringLiteral("kind \"%1\" (%2): the simulator has no handlers for it")
                                  .arg(QLatin1String(kind.shortName), className));
    }
}

const SimulatedKinds &SimulatedKinds::builtIn()
{
    static const SimulatedKinds registry = [] {
        SimulatedKinds kinds;
        registerKindFiles(kinds);
        kinds.add(RootElement::className, RootElement::handlers());
        kinds.requireEveryKind();
        return kinds;
    }();
    return registry;
}
