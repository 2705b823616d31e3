#include "ResultVarArrayInterface.h"

#include "MeasApplNames_p.h"
#include "ProxyCall_p.h"

ResultVarArrayInterface::ResultVarArrayInterface(const QString &service, const QString &path,
                                                 const QDBusConnection &connection, QObject *parent)
    : QDBusAbstractInterface(service, path, MeasAppl::interfaceName, connection, parent)
    , m_service(service)
    , m_path(path)
{
}

ResultVarArrayInterface::~ResultVarArrayInterface() = default;

QList<QVariant> ResultVarArrayInterface::getValues()
{
    return ProxyCall::valueOrEmpty<QList<QVariant>>(
        *this, {"ResultVarArrayInterface::getValues(): ", m_service, m_path}, "getValues");
}

QList<int> ResultVarArrayInterface::getValuesStatus()
{
    // Deliberately reports under the integer row's class name.
    return ProxyCall::toIntList(ProxyCall::valueOrEmpty<QList<QVariant>>(
        *this, {"ResultIntArrayInterface::getValuesStatus(): ", m_service, m_path}, "getValuesStatus"));
}

QList<QVariant> ResultVarArrayInterface::getValueComp()
{
    // Deliberately without ": " of its own, unlike the other texts.
    return ProxyCall::valueOrEmpty<QList<QVariant>>(
        *this, {"ResultVarArrayInterface::getValueComp()", m_service, m_path}, "getValueComp");
}

QVariant ResultVarArrayInterface::getValue(int pos)
{
    return ProxyCall::variantOrEmpty(*this, {"ResultVarArrayInterface::getValue(): ", m_service, m_path}, "getValue",
                                     pos);
}

int ResultVarArrayInterface::getValueStatus(int pos)
{
    return ProxyCall::valueOrEmpty<int>(*this, {"ResultVarArrayInterface::getValueStatus(): ", m_service, m_path},
                                        "getValueStatus", pos);
}

QVariant ResultVarArrayInterface::getLowerLimit()
{
    return ProxyCall::variantOrEmpty(*this, {"ResultVarArrayInterface::getLowerLimit(): ", m_service, m_path},
                                     "getLowerLimit");
}

QVariant ResultVarArrayInterface::getUpperLimit()
{
    return ProxyCall::variantOrEmpty(*this, {"ResultVarArrayInterface::getUpperLimit(): ", m_service, m_path},
                                     "getUpperLimit");
}

QDBusReply<int> ResultVarArrayInterface::size()
{
    return ProxyCall::blocking<int>(*this, "size");
}

QDBusReply<int> ResultVarArrayInterface::getResultStatus()
{
    return ProxyCall::blocking<int>(*this, "getResultStatus");
}

QDBusReply<QDateTime> ResultVarArrayInterface::getTimeStamp()
{
    return ProxyCall::blocking<QDateTime>(*this, "getTimeStamp");
}
