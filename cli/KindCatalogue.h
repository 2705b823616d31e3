#ifndef MEASCTL_KINDCATALOGUE_H
#define MEASCTL_KINDCATALOGUE_H

#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

/// Reading of D-Bus introspection documents.
namespace Introspection {

/// The interface that every element of a measurement application speaks.
extern const QString applicationInterface;

/// The methods and signals of applicationInterface in @p xml, one canonical text each
/// ("method setValue(i)->(b)", "signal setupChanged(i)"), sorted; nothing when the document
/// does not parse or has no such interface.
std::optional<QStringList> interfaceMembers(const QString &xml);
/// The names of the child nodes of @p xml, as written there (relative).
QStringList childNodes(const QString &xml);

} // namespace Introspection

/**
 * The introspection document of every element kind, by proxy class name. An object is of
 * the kind whose document lists exactly the members that the object's interface has.
 */
class KindCatalogue
{
public:
    /// The documents built into measctl (docs/introspection/*.xml).
    static KindCatalogue builtIn();

    /// Files the document @p xml for @p kind; false when it has no applicationInterface.
    bool addDocument(const QString &kind, const QString &xml);
    QStringList kinds() const { return m_members.keys(); }

    /// The one kind whose document matches the introspected @p xml exactly; nothing when
    /// no document or more than one matches.
    std::optional<QString> infer(const QString &xml) const;

private:
    QMap<QString, QStringList> m_members;
};

#endif
