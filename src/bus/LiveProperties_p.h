#ifndef DBUSINTERFACES_LIVEPROPERTIES_P_H
#define DBUSINTERFACES_LIVEPROPERTIES_P_H

#include "KindTable.h"

#include <QString>
#include <QVariant>

#include <array>

/**
 * Which member of a kind feeds which property of a LiveValue: the one table of it. A
 * property is available for a kind when the kind has one of its members with an empty
 * input signature (the first that it has, in the order listed).
 */
namespace LiveProperties {

enum Property { Value, Text, Minimum, Maximum, Granularity, LowerLimit, UpperLimit, Changeable, Choices, Count };

/// When a property is read again, besides at start-up, after a restart and on refresh().
enum class Refresh {
    OnChange,       ///< on every change signal of the element but "setupBoundsChanged"
    OnBoundsChange, ///< on "setupBoundsChanged"
    Never           ///< the application has no signal for it
};

struct Source
{
    Property property;
    /// The Q_PROPERTY's name.
    const char *name;
    /// Candidate members, first match wins; null-terminated.
    std::array<const char *, 3> members;
    Refresh refresh;
    /// The signal that carries the new value, and at which argument; null when none does.
    const char *carriedBy;
    int carriedAt;
};

const Source &source(Property property);

/// For each property, the method of @p kind that feeds it, or null.
using Methods = std::array<const KindTable::Method *, Count>;
Methods methodsOf(const KindTable::Kind &kind);

/// Whether a change signal named @p member makes @p property be read again.
bool isRefreshedBy(Property property, const QString &member);

/// The answer @p wire of @p property's member as the property holds it.
QVariant fromWire(Property property, const QVariant &wire);

} // namespace LiveProperties

#endif
