#ifndef SIMULATOR_INTROSPECTION_H
#define SIMULATOR_INTROSPECTION_H

#include <QString>
#include <QStringList>

class Element;

/// The answer to org.freedesktop.DBus.Introspectable.Introspect.
namespace Introspection {

/// The kind's document of @p element (null for a node that only leads to others), listing
/// @p children as child nodes. A kind without a shipped document gets one made from its tables.
QString document(const Element *element, const QStringList &children);
/// The complete types of a D-Bus signature, e.g. "sa{sv}" → "s", "a{sv}".
QStringList splitSignature(const QString &signature);

} // namespace Introspection

#endif
