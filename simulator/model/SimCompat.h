#ifndef SIMULATOR_SIMCOMPAT_H
#define SIMULATOR_SIMCOMPAT_H

// The one place where Qt 5 and Qt 6 differ for the simulator.

#include <QVariant>
#include <QtGlobal>

namespace SimCompat {

/// The meta-type id of the value a variant holds.
inline int typeId(const QVariant &value)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return value.typeId();
#else
    return value.userType();
#endif
}

} // namespace SimCompat

#endif
