#ifndef TESTS_PROXYCLASSES_H
#define TESTS_PROXYCLASSES_H

#include "KindTable.h"
#include "ProxyTestSupport.h"

#include <QMetaType>

#include <vector>

/// The hand-written proxy class of one kind, for checks that hold for every class alike.
struct KindProxyClass
{
    const char *name = nullptr;
    ProxyFactory make;
    const QMetaObject *metaObject = nullptr;
    const KindTable::Kind *kind = nullptr;
};

/// The proxy class of every kind of the kind table that has one, in the table's order.
std::vector<KindProxyClass> allProxyClasses();

/// Fails the current test unless the proxy classes here are exactly those of the kinds of
/// the kind table, naming each kind without a class and each class without a kind; a test
/// that goes over allProxyClasses() calls it first.
void verifyProxyClassesAreThoseOfTheKindTable();

Q_DECLARE_METATYPE(KindProxyClass)

#endif
