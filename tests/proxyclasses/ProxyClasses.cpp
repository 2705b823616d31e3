#include "ProxyClasses.h"

#define DBUSINTERFACES_KIND_CLASS_HEADERS
#include "KindClasses.h"

#include <QtTest/QTest>

namespace {

template<typename Proxy>
KindProxyClass kindProxyClass()
{
    const char *name = Proxy::staticMetaObject.className();
    return {name, factoryOf<Proxy>(), &Proxy::staticMetaObject, KindTable::find(QString::fromLatin1(name))};
}

// One per class of the generated list; the checks below still hold the list to the table.
const std::vector<KindProxyClass> &proxyClasses()
{
#define DBUSINTERFACES_KIND_PROXY_CLASS(Class) kindProxyClass<Class>(),
    static const std::vector<KindProxyClass> classes = {
        DBUSINTERFACES_FOR_EACH_KIND_CLASS(DBUSINTERFACES_KIND_PROXY_CLASS)};
#undef DBUSINTERFACES_KIND_PROXY_CLASS
    return classes;
}

const KindProxyClass *proxyClassOf(const KindTable::Kind &kind)
{
    for (const KindProxyClass &proxyClass : proxyClasses()) {
        if (proxyClass.kind == &kind)
            return &proxyClass;
    }
    return nullptr;
}

} // namespace

std::vector<KindProxyClass> allProxyClasses()
{
    std::vector<KindProxyClass> classes;
    for (const KindTable::Kind &kind : KindTable::all()) {
        if (const KindProxyClass *proxyClass = proxyClassOf(kind))
            classes.push_back(*proxyClass);
    }
    return classes;
}

void verifyProxyClassesAreThoseOfTheKindTable()
{
    QStringList kindsWithoutClass;
    for (const KindTable::Kind &kind : KindTable::all()) {
        if (!proxyClassOf(kind))
            kindsWithoutClass.append(QString::fromLatin1(kind.className));
    }
    QStringList classesWithoutKind;
    QStringList classesListedTwice;
    for (const KindProxyClass &proxyClass : proxyClasses()) {
        if (!proxyClass.kind)
            classesWithoutKind.append(QString::fromLatin1(proxyClass.name));
        else if (proxyClassOf(*proxyClass.kind) != &proxyClass)
            classesListedTwice.append(QString::fromLatin1(proxyClass.name));
    }
    QStringList differences;
    if (!kindsWithoutClass.isEmpty())
        differences.append(QStringLiteral("kinds with no proxy class in tests/proxyclasses: ") +
                           kindsWithoutClass.join(QStringLiteral(", ")));
    if (!classesWithoutKind.isEmpty())
        differences.append(QStringLiteral("proxy classes of no kind in the kind table: ") +
                           classesWithoutKind.join(QStringLiteral(", ")));
    if (!classesListedTwice.isEmpty())
        differences.append(QStringLiteral("proxy classes listed twice: ") +
                           classesListedTwice.join(QStringLiteral(", ")));
    QVERIFY2(differences.isEmpty(), qPrintable(differences.join(QStringLiteral("; "))));
}
