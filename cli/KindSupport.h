#ifndef MEASCTL_KINDSUPPORT_H
#define MEASCTL_KINDSUPPORT_H

// What the element kinds' adapters share, and where each group of them is added.

#include "KindOf.h"

#include <memory>
#include <vector>

using KindList = std::vector<std::unique_ptr<ElementKind>>;

void addSetupKinds(KindList &kinds);
void addResultKinds(KindList &kinds);
void addCommandKind(KindList &kinds);

#endif
