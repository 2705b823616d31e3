#ifndef MEASCTL_KINDREGISTRY_H
#define MEASCTL_KINDREGISTRY_H

#include "KindAdapter.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

/**
 * measctl's adapters, each registered for its kind of the kind table: finds an adapter by
 * the kind's names and infers it from what an object introspects to.
 */
class KindRegistry
{
public:
    using Adapters = std::vector<std::unique_ptr<KindAdapter>>;

    /// One adapter per kind of the table, as kinds/<ProxyClass>.cpp make them.
    static Adapters builtInAdapters();
    /// The registry of the built-in adapters; stops the program when they do not cover
    /// the table once each, since measctl would then mistake kinds.
    static const KindRegistry &builtIn();

    explicit KindRegistry(Adapters adapters);

    /// Why the adapters do not cover the kinds of the table once each, one line per fault;
    /// empty when they do.
    QStringList problems() const;

    /// The adapter of @p kind; null when it has none.
    const KindAdapter *adapter(const KindTable::Kind &kind) const;
    /// The adapter of the kind with class name or short name @p name, in any letter case; null if none.
    const KindAdapter *find(const QString &name) const;
    /// The adapter of the one kind whose members the application interface in the
    /// introspected @p xml has exactly; null when no kind, or more than one, matches.
    const KindAdapter *inferred(const QString &xml) const;

    /// The kinds in the table's order with their short names and summaries, one per line, for --help.
    QString helpText() const;

private:
    Adapters m_adapters;
    QHash<const KindTable::Kind *, const KindAdapter *> m_byKind;
};

#endif
