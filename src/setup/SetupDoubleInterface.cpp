#include "SetupDoubleInterface.h"

#include "MeasApplNames_p.h"
#include "ProxyCall_p.h"

#include <QDebug>
#include <QtMath>

SetupDoubleInterface::SetupDoubleInterface(const QString &service, const QString &path,
                                           const QDBusConnection &connection, QObject *parent)
    : QDBusAbstractInterface(service, path, MeasAppl::interfaceName, connection, parent)
{
}

SetupDoubleInterface::~SetupDoubleInterface() = default;

QDBusReply<bool> SetupDoubleInterface::setValue(double value)
{
    if (qIsNaN(value)) {
        qDebug() << "SetupDoubleInterface::setValue(): Value is NaN!";
        return QDBusMessage().createReply(QVariant(false));
    }
    return ProxyCall::blocking<bool>(*this, "setValue", value);
}

void SetupDoubleInterface::setValueAsync(double value)
{
    ProxyCall::fireAndForget(*this, "setValue", value);
}

QDBusReply<double> SetupDoubleInterface::getValue()
{
    return ProxyCall::blocking<double>(*this, "getValue");
}

QDBusReply<QString> SetupDoubleInterface::getString()
{
    return ProxyCall::blocking<QString>(*this, "getString");
}

QDBusReply<double> SetupDoubleInterface::getMinValue()
{
    return ProxyCall::blocking<double>(*this, "getMinValue");
}

QDBusReply<double> SetupDoubleInterface::getMaxValue()
{
    return ProxyCall::blocking<double>(*this, "getMaxValue");
}

QDBusReply<double> SetupDoubleInterface::getGranularity()
{
    return ProxyCall::blocking<double>(*this, "getGranularity");
}

QDBusReply<bool> SetupDoubleInterface::isChangeable()
{
    return ProxyCall::blocking<bool>(*this, "isChangeable");
}

void SetupDoubleInterface::setToDefault()
{
    ProxyCall::blockingVoid(*this, "setToDefault");
}

void SetupDoubleInterface::setToDefaultAsync()
{
    ProxyCall::fireAndForget(*this, "setToDefault");
}
