#ifndef MEASCTL_KINDSUPPORT_H
#define MEASCTL_KINDSUPPORT_H

// What the element kinds' adapters share, and where each group of them is added.

#include "KindOf.h"

#include <QString>

#include <memory>
#include <vector>

/// What a word should have been, as the kinds' bad-value answers say it.
namespace Expected {
inline const QString value = QStringLiteral("a value");
inline const QString wholeNumber = QStringLiteral("a whole number");
inline const QString realNumber = QStringLiteral("a real number");
inline const QString position = QStringLiteral("a position (whole number)");
inline const QString range = QStringLiteral("a range START END of whole numbers");
inline const QString jsonObject = QStringLiteral("a JSON object");
} // namespace Expected

using KindList = std::vector<std::unique_ptr<ElementKind>>;

void addSetupKinds(KindList &kinds);
void addResultKinds(KindList &kinds);
void addCommandKind(KindList &kinds);

#endif
