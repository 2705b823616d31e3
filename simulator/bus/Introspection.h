#ifndef SIMULATOR_INTROSPECTION_H
#define SIMULATOR_INTROSPECTION_H

#include <QString>
#include <QStringList>

class Element;

/// The answer to org.freedesktop.DBus.Introspectable.Introspect.
namespace Introspection {

/// The document of @p element's kind from the kind table (the control object's own for it; an
/// empty node for a path that only leads to others), listing @p children as child nodes.
QString document(const Element *element, const QStringList &children);

} // namespace Introspection

#endif
