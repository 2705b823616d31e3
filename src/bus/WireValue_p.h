#ifndef DBUSINTERFACES_WIREVALUE_P_H
#define DBUSINTERFACES_WIREVALUE_P_H

#include <QString>
#include <QVariant>

// Values as they cross the bus and as a user interface holds them.
namespace WireValue {

/// @p wire with every D-Bus variant unwrapped and every container read into QVariantList
/// (arrays, structures) or QVariantMap (dictionaries), as QML and widgets take them.
QVariant plain(const QVariant &wire);

/// @p value as an argument of the single complete type @p signature ("i", "d", "b", "s",
/// "v", ...); an invalid QVariant when it does not convert without loss.
QVariant toWire(const QVariant &value, const QString &signature);

/// The D-Bus signature QtDBus writes for @p value's type; empty when it writes none.
QString signatureOf(const QVariant &value);

} // namespace WireValue

#endif
