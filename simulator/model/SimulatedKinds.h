#ifndef SIMULATOR_SIMULATEDKINDS_H
#define SIMULATOR_SIMULATEDKINDS_H

#include "Element.h"
#include "Handlers.h"

#include <KindTable.h>

#include <QHash>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class ModelFields;

/**
 * The kinds the simulator serves, keyed by the kind table's short names (the "kind" of a
 * model file). A kind is taken only when its handlers cover its members in the table
 * exactly; what was refused is kept in problems(), which the program checks at start-up.
 */
class SimulatedKinds
{
public:
    /// Makes one element of a kind from its fields in a model file; throws ModelError.
    using Reader = std::function<std::unique_ptr<Element>(const Element::Binding &binding, const ModelFields &fields)>;

    struct Registered
    {
        const KindTable::Kind *kind;
        Handlers handlers;
        Reader read; ///< empty for the root object, which no model file makes
    };

    /// Registers the kind of proxy class @p className; false, and why in problems(), if refused.
    bool add(const QString &className, const Handlers &handlers, const Reader &read = {});
    /// The kind of short name @p shortName (exactly as in the table); null if not registered.
    const Registered *find(const QString &shortName) const;
    /// Every refusal so far, each naming the kind and the member.
    QStringList problems() const { return m_problems; }
    /// Counts every kind of the table that was never registered as a problem.
    void requireEveryKind();

    /// The simulator's kinds, registered and checked on first use.
    static const SimulatedKinds &builtIn();

private:
    QHash<QString, Registered> m_kinds;
    QStringList m_attempted; ///< class names
    QStringList m_problems;
};

/// Registers every kind file of simulator/model/kinds/ (generated from the list of them).
void registerKindFiles(SimulatedKinds &registry);

#endif
