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

/**
 * What keeps the proxy classes here from matching the kind table exactly: the kinds
 * without a proxy class and the classes without a kind, by name. Empty when they match;
 * a test that goes over allProxyClasses() fails unless it is.
 */
QString proxyClassesUnlikeTheKindTable();

Q_DECLARE_METATYPE(KindProxyClass)

#endif
