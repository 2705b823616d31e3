#ifndef MEASCTL_ELEMENTKINDS_H
#define MEASCTL_ELEMENTKINDS_H

#include "ElementKind.h"

#include <memory>
#include <vector>

/// The table of element kinds, one per proxy class.
namespace ElementKinds {

const std::vector<std::unique_ptr<ElementKind>> &all();
/// The kind named @p name: its class name or its short name, in any letter case; null if none.
const ElementKind *find(const QString &name);
/// The kinds with their short names and summaries, one per line, for --help.
QString helpText();

} // namespace ElementKinds

#endif
