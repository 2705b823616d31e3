#include "ProxyClasses.h"

#include "RemoteCommandInterface.h"
#include "ResultBoolInterface.h"
#include "ResultDoubleInterface.h"
#include "ResultEnumInterface.h"
#include "ResultIntArrayInterface.h"
#include "ResultIntInterface.h"
#include "ResultVarArrayInterface.h"
#include "SetupArrayItemInterface.h"
#include "SetupBoolInterface.h"
#include "SetupDevDataInterface.h"
#include "SetupDoubleInterface.h"
#include "SetupEnumInterface.h"
#include "SetupIntInterface.h"
#include "SetupMapItemInterface.h"
#include "SetupMapListInterface.h"
#include "SetupMapMapItemInterface.h"
#include "SetupStringInterface.h"
#include "SetupThresholdManagerInterface.h"
#include "StorageElemsMapInterface.h"

#include <QtTest/QTest>

namespace {

template<typename Proxy>
KindProxyClass kindProxyClass()
{
    const char *name = Proxy::staticMetaObject.className();
    return {name, factoryOf<Proxy>(), &Proxy::staticMetaObject, KindTable::find(QString::fromLatin1(name))};
}

// Classes are types, so each needs its line here (kept one a line); the kind table says
// which there must be.
const std::vector<KindProxyClass> &proxyClasses()
{
    // clang-format off
    static const std::vector<KindProxyClass> classes = {
        kindProxyClass<RemoteCommandInterface>(),
        kindProxyClass<ResultBoolInterface>(),
        kindProxyClass<ResultDoubleInterface>(),
        kindProxyClass<ResultEnumInterface>(),
        kindProxyClass<ResultIntArrayInterface>(),
        kindProxyClass<ResultIntInterface>(),
        kindProxyClass<ResultVarArrayInterface>(),
        kindProxyClass<SetupArrayItemInterface>(),
        kindProxyClass<SetupBoolInterface>(),
        kindProxyClass<SetupDevDataInterface>(),
        kindProxyClass<SetupDoubleInterface>(),
        kindProxyClass<SetupEnumInterface>(),
        kindProxyClass<SetupIntInterface>(),
        kindProxyClass<SetupMapItemInterface>(),
        kindProxyClass<SetupMapListInterface>(),
        kindProxyClass<SetupMapMapItemInterface>(),
        kindProxyClass<SetupStringInterface>(),
        kindProxyClass<SetupThresholdManagerInterface>(),
        kindProxyClass<StorageElemsMapInterface>(),
    };
    // clang-format on
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
