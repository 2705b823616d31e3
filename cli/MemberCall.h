#ifndef MEASCTL_MEMBERCALL_H
#define MEASCTL_MEMBERCALL_H

#include <QStringList>
#include <QVariantList>

#include <optional>

/// Turning command-line words into the arguments of a bus member, by its D-Bus signature.
namespace MemberCall {

/// The complete types of @p signature in order ("sa{sv}" gives "s", "a{sv}"); empty when it
/// does not parse.
QStringList completeTypes(const QString &signature);

/**
 * @p words as the arguments of @p signature, one word per complete type: i, x, u, d, b as
 * numbers and truth values, s as the word itself, v as any value (Values::parseAny), a{sv}
 * as a JSON object, av/as/ai/ad as a JSON array. Nothing, and @p problem said, when a word
 * does not fit its type.
 */
std::optional<QVariantList> arguments(const QString &signature, const QStringList &words, QString &problem);

} // namespace MemberCall

#endif
