#include "KindRegistry.h"

#include "ProxyAdapter.h"

#include <cstdio>
#include <cstdlib>

// The kinds' adapters, one line per interface document (KindAdapterList.h is written from
// the file names in interfaces/): a kind without its kinds/<ProxyClass>.cpp does not build.
#define MEASCTL_KIND_ADAPTER(ProxyClass)                                                                               \
    class ProxyClass;                                                                                                  \
    template<>                                                                                                         \
    std::unique_ptr<KindAdapter> adapterOf<ProxyClass>();
#include "KindAdapterList.h"
#undef MEASCTL_KIND_ADAPTER

KindRegistry::Adapters KindRegistry::builtInAdapters()
{
    Adapters adapters;
#define MEASCTL_KIND_ADAPTER(ProxyClass) adapters.push_back(adapterOf<ProxyClass>());
#include "KindAdapterList.h"
#undef MEASCTL_KIND_ADAPTER
    return adapters;
}

const KindRegistry &KindRegistry::builtIn()
{
    static const KindRegistry registry = [] {
        KindRegistry built(builtInAdapters());
        const QStringList problems = built.problems();
        if (!problems.isEmpty()) {
            std::fprintf(stderr, "measctl: the kind adapters do not fit the kind table:\n  %s\n",
                         qPrintable(problems.join(QStringLiteral("\n  "))));
            std::abort();
        }
        return built;
    }();
    return registry;
}

KindRegistry::KindRegistry(Adapters adapters)
    : m_adapters(std::move(adapters))
{
    for (const auto &adapter : m_adapters) {
        if (adapter->kind() && !m_byKind.contains(adapter->kind()))
            m_byKind.insert(adapter->kind(), adapter.get());
    }
}

QStringList KindRegistry::problems() const
{
    QStringList problems;
    for (const KindTable::Kind &kind : KindTable::all()) {
        int count = 0;
        for (const auto &adapter : m_adapters)
            count += adapter->kind() == &kind ? 1 : 0;
        if (count != 1)
            problems.append(QStringLiteral("%1 (%2) has %3 adapters")
                                .arg(QLatin1String(kind.className), QLatin1String(kind.shortName))
                                .arg(count));
    }
    for (const auto &adapter : m_adapters) {
        if (!adapter->kind())
            problems.append(QStringLiteral("%1 is no kind of the table").arg(adapter->className()));
    }
    return problems;
}

const KindAdapter *KindRegistry::adapter(const KindTable::Kind &kind) const
{
    return m_byKind.value(&kind);
}

const KindAdapter *KindRegistry::find(const QString &name) const
{
    const KindTable::Kind *kind = KindTable::find(name);
    return kind ? adapter(*kind) : nullptr;
}

const KindAdapter *KindRegistry::inferred(const QString &xml) const
{
    const KindTable::Kind *kind = KindTable::inferred(xml);
    return kind ? adapter(*kind) : nullptr;
}

QString KindRegistry::helpText() const
{
    QString text;
    for (const KindTable::Kind &kind : KindTable::all()) {
        const KindAdapter *kindAdapter = adapter(kind);
        text += QStringLiteral("  %1 %2 %3\n")
                    .arg(QLatin1String(kind.shortName), -15)
                    .arg(QLatin1String(kind.className), -31)
                    .arg(kindAdapter ? kindAdapter->summary() : QString());
    }
    return text;
}
