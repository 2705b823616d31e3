#include "ResultIntInterface.h"

#include "MeasApplNames_p.h"
#include "ProxyCall_p.h"

ResultIntInterface::ResultIntInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                                       QObject *parent)
    : QDBusAbstractInterface(service, path, MeasAppl::interfaceName, connection, parent)
    , m_service(service)
    , m_path(path)
    , m_classPrefix(QStringLiteral("ResultIntInterface::"))
{
}

ResultIntInterface::~ResultIntInterface() = default;

QDBusReply<int> ResultIntInterface::getLowerLimit()
{
    return ProxyCall::blocking<int>(*this, "getLowerLimit");
}

QDBusReply<int> ResultIntInterface::getUpperLimit()
{
    return ProxyCall::blocking<int>(*this, "getUpperLimit");
}

QDBusReply<int> ResultIntInterface::getValue()
{
    return ProxyCall::blocking<int>(*this, "getValue");
}

QDBusReply<QString> ResultIntInterface::getString()
{
    return ProxyCall::blocking<QString>(*this, "getString");
}

QDBusReply<int> ResultIntInterface::getMinValue()
{
    return ProxyCall::blocking<int>(*this, "getMinValue");
}

QDBusReply<QString> ResultIntInterface::getMinString()
{
    return ProxyCall::blocking<QString>(*this, "getMinString");
}

QDBusReply<int> ResultIntInterface::getMaxValue()
{
    return ProxyCall::blocking<int>(*this, "getMaxValue");
}

QDBusReply<QString> ResultIntInterface::getMaxString()
{
    return ProxyCall::blocking<QString>(*this, "getMaxString");
}

QDBusReply<void> ResultIntInterface::resetMinMaxValues()
{
    return ProxyCall::blocking<void>(*this, "resetMinMaxValues");
}

QDBusReply<void> ResultIntInterface::stopMinMaxEval()
{
    return ProxyCall::blocking<void>(*this, "stopMinMaxEval");
}

QDBusReply<void> ResultIntInterface::continueMinMaxEval()
{
    return ProxyCall::blocking<void>(*this, "continueMinMaxEval");
}

QList<QVariant> ResultIntInterface::getValueComp()
{
    return ProxyCall::valueOrEmpty<QList<QVariant>>(*this, {m_classPrefix, "getValueComp(): ", m_service, m_path},
                                                    "getValueComp");
}

QList<QVariant> ResultIntInterface::getMinValueComp()
{
    return ProxyCall::valueOrEmpty<QList<QVariant>>(*this, {m_classPrefix, "getMinValueComp(): ", m_service, m_path},
                                                    "getMinValueComp");
}

QList<QVariant> ResultIntInterface::getMaxValueComp()
{
    // Deliberately reported under getMinValueComp's text.
    return ProxyCall::valueOrEmpty<QList<QVariant>>(*this, {m_classPrefix, "getMinValueComp(): ", m_service, m_path},
                                                    "getMaxValueComp");
}

QList<QVariant> ResultIntInterface::getStringComp()
{
    // Deliberately reported under getMinValueComp's text.
    return ProxyCall::valueOrEmpty<QList<QVariant>>(*this, {m_classPrefix, "getMinValueComp(): ", m_service, m_path},
                                                    "getStringComp");
}

QList<QVariant> ResultIntInterface::getMinStringComp()
{
    // Deliberately reported under getMinValueComp's text.
    return ProxyCall::valueOrEmpty<QList<QVariant>>(*this, {m_classPrefix, "getMinValueComp(): ", m_service, m_path},
                                                    "getMinStringComp");
}

QList<QVariant> ResultIntInterface::getMaxStringComp()
{
    return ProxyCall::valueOrEmpty<QList<QVariant>>(*this, {m_classPrefix, "getMaxStringComp(): ", m_service, m_path},
                                                    "getMaxStringComp");
}
