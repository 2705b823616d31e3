#ifndef DBUSINTERFACES_SENDABLEARGUMENTS_P_H
#define DBUSINTERFACES_SENDABLEARGUMENTS_P_H

// Arguments that QtDBus cannot write. At the top level of a call it refuses them cleanly,
// but inside a container it leaves the container half written and libdbus ends the
// process; a value nested deeper than the bus allows makes the bus daemon drop the
// connection. So every argument is looked through before anything is written.

#include <QList>
#include <QString>
#include <QVariant>

namespace SendableArguments {

/// The deepest nesting of containers (arrays, dictionary entries, structures, variants)
/// that the bus daemon accepts in a message body.
constexpr int maximumNesting = 64;

/// Why @p args cannot be sent as the arguments of @p member, or a null string when they can
/// (or when QtDBus refuses them cleanly by itself).
QString whyNotSendable(const QString &member, const QList<QVariant> &args);

} // namespace SendableArguments

#endif
