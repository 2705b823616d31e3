#include "ResultDoubleInterface.h"

#include "MeasApplNames_p.h"
#include "ProxyCall_p.h"

ResultDoubleInterface::ResultDoubleInterface(const QString &service, const QString &path,
                                             const QDBusConnection &connection, QObject *parent)
    : QDBusAbstractInterface(service, path, MeasAppl::interfaceName, connection, parent)
    , m_service(service)
    , m_path(path)
    , m_classPrefix(QStringLiteral("ResultDoubleInterface::"))
{
}

ResultDoubleInterface::~ResultDoubleInterface() = default;

QDBusReply<double> ResultDoubleInterface::getLowerLimit()
{
    return ProxyCall::blocking<double>(*this, "getLowerLimit");
}

QDBusReply<double> ResultDoubleInterface::getUpperLimit()
{
    return ProxyCall::blocking<double>(*this, "getUpperLimit");
}

QDBusReply<double> ResultDoubleInterface::getValue()
{
    return ProxyCall::blocking<double>(*this, "getValue");
}

QDBusReply<QString> ResultDoubleInterface::getString()
{
    return ProxyCall::blocking<QString>(*this, "getString");
}

QDBusReply<double> ResultDoubleInterface::getMinValue()
{
    return ProxyCall::blocking<double>(*this, "getMinValue");
}

QDBusReply<double> ResultDoubleInterface::getMaxValue()
{
    return ProxyCall::blocking<double>(*this, "getMaxValue");
}

QDBusReply<void> ResultDoubleInterface::resetMinMaxValues()
{
    return ProxyCall::blocking<void>(*this, "resetMinMaxValues");
}

QDBusReply<void> ResultDoubleInterface::stopMinMaxEval()
{
    return ProxyCall::blocking<void>(*this, "stopMinMaxEval");
}

QDBusReply<void> ResultDoubleInterface::continueMinMaxEval()
{
    return ProxyCall::blocking<void>(*this, "continueMinMaxEval");
}

QList<QVariant> ResultDoubleInterface::getValueComp()
{
    return ProxyCall::valueOrEmpty<QList<QVariant>>(*this, {m_classPrefix, "getValueComp(): ", m_service, m_path},
                                                    "getValueComp");
}

QList<QVariant> ResultDoubleInterface::getMinValueComp()
{
    return ProxyCall::valueOrEmpty<QList<QVariant>>(*this, {m_classPrefix, "getMinValueComp(): ", m_service, m_path},
                                                    "getMinValueComp");
}

QList<QVariant> ResultDoubleInterface::getMaxValueComp()
{
    return ProxyCall::valueOrEmpty<QList<QVariant>>(*this, {m_classPrefix, "getMaxValueComp(): ", m_service, m_path},
                                                    "getMaxValueComp");
}

QList<QVariant> ResultDoubleInterface::getStringComp()
{
    return ProxyCall::valueOrEmpty<QList<QVariant>>(*this, {m_classPrefix, "getStringComp(): ", m_service, m_path},
                                                    "getStringComp");
}

QList<QVariant> ResultDoubleInterface::getMinStringComp()
{
    return ProxyCall::valueOrEmpty<QList<QVariant>>(*this, {m_classPrefix, "getMinStringComp(): ", m_service, m_path},
                                                    "getMinStringComp");
}

QList<QVariant> ResultDoubleInterface::getMaxStringComp()
{
    return ProxyCall::valueOrEmpty<QList<QVariant>>(*this, {m_classPrefix, "getMaxStringComp(): ", m_service, m_path},
                                                    "getMaxStringComp");
}
