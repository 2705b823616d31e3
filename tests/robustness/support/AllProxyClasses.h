#ifndef TESTS_ALLPROXYCLASSES_H
#define TESTS_ALLPROXYCLASSES_H

#include "ProxyTestSupport.h"

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

#include <vector>

/// One proxy class of the library, for checks that hold for every class alike.
struct ProxyClass
{
    const char *name;
    ProxyFactory make;
    const QMetaObject *metaObject;
};

template<typename Proxy>
ProxyClass proxyClass(const char *name)
{
    return {name, factoryOf<Proxy>(), &Proxy::staticMetaObject};
}

inline std::vector<ProxyClass> allProxyClasses()
{
    return {
        proxyClass<RemoteCommandInterface>("RemoteCommandInterface"),
        proxyClass<ResultBoolInterface>("ResultBoolInterface"),
        proxyClass<ResultDoubleInterface>("ResultDoubleInterface"),
        proxyClass<ResultEnumInterface>("ResultEnumInterface"),
        proxyClass<ResultIntArrayInterface>("ResultIntArrayInterface"),
        proxyClass<ResultIntInterface>("ResultIntInterface"),
        proxyClass<ResultVarArrayInterface>("ResultVarArrayInterface"),
        proxyClass<SetupArrayItemInterface>("SetupArrayItemInterface"),
        proxyClass<SetupBoolInterface>("SetupBoolInterface"),
        proxyClass<SetupDevDataInterface>("SetupDevDataInterface"),
        proxyClass<SetupDoubleInterface>("SetupDoubleInterface"),
        proxyClass<SetupEnumInterface>("SetupEnumInterface"),
        proxyClass<SetupIntInterface>("SetupIntInterface"),
        proxyClass<SetupMapItemInterface>("SetupMapItemInterface"),
        proxyClass<SetupMapListInterface>("SetupMapListInterface"),
        proxyClass<SetupMapMapItemInterface>("SetupMapMapItemInterface"),
        proxyClass<SetupStringInterface>("SetupStringInterface"),
        proxyClass<SetupThresholdManagerInterface>("SetupThresholdManagerInterface"),
        proxyClass<StorageElemsMapInterface>("StorageElemsMapInterface"),
    };
}

/// A Qt signal of a proxy class that relays the bus signal of the same name.
struct RelayedSignal
{
    ProxyClass proxyClass;
    QMetaMethod method;

    QString member() const { return QString::fromLatin1(method.name()); }
    /// The form QSignalSpy and QObject::connect take.
    QByteArray signal() const { return QByteArray("2") + method.methodSignature(); }
    QString tag() const
    {
        return QString::fromLatin1(proxyClass.name) + QLatin1String("::") +
            QString::fromLatin1(method.methodSignature());
    }
};

/// Every signal of every proxy class.
inline std::vector<RelayedSignal> allRelayedSignals()
{
    std::vector<RelayedSignal> signals_;
    for (const ProxyClass &proxyClass : allProxyClasses()) {
        const QMetaObject &meta = *proxyClass.metaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            if (meta.method(i).methodType() == QMetaMethod::Signal)
                signals_.push_back({proxyClass, meta.method(i)});
        }
    }
    return signals_;
}

/**
 * Bus arguments for @p method, made from @p seed so that two senders can be told apart by
 * what arrives: a QVariant or QDBusVariant parameter travels as a D-Bus variant.
 */
inline QList<QVariant> signalArguments(const QMetaMethod &method, int seed)
{
    QList<QVariant> arguments;
    for (const QByteArray &type : method.parameterTypes()) {
        if (type == "int")
            arguments.append(seed);
        else if (type == "double")
            arguments.append(seed + 0.5);
        else if (type == "bool")
            arguments.append(seed % 2 == 1);
        else if (type == "QString")
            arguments.append(QString::number(seed));
        else if (type == "QStringList")
            arguments.append(QStringList{QString::number(seed)});
        else if (type == "QVariant" || type == "QDBusVariant")
            arguments.append(QVariant::fromValue(QDBusVariant(seed)));
        else
            arguments.append(QVariant()); // unknown: the row then fails on what arrives
    }
    return arguments;
}

/// Arguments as a receiver sees them, with D-Bus variants unwrapped, for comparing.
inline QList<QVariant> unwrappedArguments(const QList<QVariant> &arguments)
{
    QList<QVariant> unwrapped;
    for (const QVariant &argument : arguments) {
        if (argument.userType() == qMetaTypeId<QDBusVariant>())
            unwrapped.append(argument.value<QDBusVariant>().variant());
        else
            unwrapped.append(argument);
    }
    return unwrapped;
}

Q_DECLARE_METATYPE(ProxyClass)
Q_DECLARE_METATYPE(RelayedSignal)

#endif
