#include "ResultBoolInterface.h"

#include "MeasApplNames_p.h"
#include "ProxyCall_p.h"

ResultBoolInterface::ResultBoolInterface(const QString &service, const QString &path, const QDBusConnection &connection,
                                         QObject *parent)
    : QDBusAbstractInterface(service, path, MeasAppl::interfaceName, connection, parent)
    , m_service(service)
    , m_path(path)
    , m_classPrefix(QStringLiteral("ResultBoolInterface::"))
{
}

ResultBoolInterface::~ResultBoolInterface() = default;

QDBusReply<bool> ResultBoolInterface::getLowerLimit()
{
    return ProxyCall::blocking<bool>(*this, "getLowerLimit");
}

QDBusReply<bool> ResultBoolInterface::getUpperLimit()
{
    return ProxyCall::blocking<bool>(*this, "getUpperLimit");
}

QDBusReply<bool> ResultBoolInterface::getValue()
{
    return ProxyCall::blocking<bool>(*this, "getValue");
}

QDBusReply<QString> ResultBoolInterface::getString()
{
    return ProxyCall::blocking<QString>(*this, "getString");
}

QDBusReply<bool> ResultBoolInterface::getMinValue()
{
    return ProxyCall::blocking<bool>(*this, "getMinValue");
}

QDBusReply<QString> ResultBoolInterface::getMinString()
{
    return ProxyCall::blocking<QString>(*this, "getMinString");
}

QDBusReply<bool> ResultBoolInterface::getMaxValue()
{
    return ProxyCall::blocking<bool>(*this, "getMaxValue");
}

QDBusReply<QString> ResultBoolInterface::getMaxString()
{
    return ProxyCall::blocking<QString>(*this, "getMaxString");
}

QDBusReply<void> ResultBoolInterface::resetMinMaxValues()
{
    return ProxyCall::blocking<void>(*this, "resetMinMaxValues");
}

QDBusReply<void> ResultBoolInterface::stopMinMaxEval()
{
    return ProxyCall::blocking<void>(*this, "stopMinMaxEval");
}

QDBusReply<void> ResultBoolInterface::continueMinMaxEval()
{
    return ProxyCall::blocking<void>(*this, "continueMinMaxEval");
}

QList<QVariant> ResultBoolInterface::getValueComp()
{
    return ProxyCall::valueOrEmpty<QList<QVariant>>(*this, {m_classPrefix, "getValueComp(): ", m_service, m_path},
                                                    "getValueComp");
}

QList<QVariant> ResultBoolInterface::getMinValueComp()
{
    return ProxyCall::valueOrEmpty<QList<QVariant>>(*this, {m_classPrefix, "getMinValueComp(): ", m_service, m_path},
                                                    "getMinValueComp");
}

QList<QVariant> ResultBoolInterface::getMaxValueComp()
{
    return ProxyCall::valueOrEmpty<QList<QVariant>>(*this, {m_classPrefix, "getMaxValueComp(): ", m_service, m_path},
                                                    "getMaxValueComp");
}

QList<QVariant> ResultBoolInterface::getStringComp()
{
    return ProxyCall::valueOrEmpty<QList<QVariant>>(*this, {m_classPrefix, "getStringComp(): ", m_service, m_path},
                                                    "getStringComp");
}

QList<QVariant> ResultBoolInterface::getMinStringComp()
{
    return ProxyCall::valueOrEmpty<QList<QVariant>>(*this, {m_classPrefix, "getMinStringComp(): ", m_service, m_path},
                                                    "getMinStringComp");
}

QList<QVariant> ResultBoolInterface::getMaxStringComp()
{
    return ProxyCall::valueOrEmpty<QList<QVariant>>(*this, {m_classPrefix, "getMaxStringComp(): ", m_service, m_path},
                                                    "getMaxStringComp");
}
