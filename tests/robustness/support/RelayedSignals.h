#ifndef TESTS_RELAYEDSIGNALS_H
#define TESTS_RELAYEDSIGNALS_H

#include "ProxyClasses.h"

#include <QDBusVariant>
#include <QMetaMethod>

#include <vector>

/// A Qt signal of a proxy class that relays the bus signal of the same name.
struct RelayedSignal
{
    KindProxyClass proxyClass;
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
    for (const KindProxyClass &proxyClass : allProxyClasses()) {
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

Q_DECLARE_METATYPE(RelayedSignal)

#endif
