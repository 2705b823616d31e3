#include "ProxyCall_p.h"

#include "DBusTypes.h"
#include "SendableArguments_p.h"

#include <QDebug>

namespace ProxyCall {

QDBusMessage callBlocking(QDBusAbstractInterface &proxy, const QString &member, const QList<QVariant> &args)
{
    const QString refusal = SendableArguments::whyNotSendable(member, args);
    if (!refusal.isNull()) {
        // A lone invalid argument QtDBus refuses cleanly; that records the failure as the
        // proxy's last error, as for any failed call, and sends nothing.
        proxy.callWithArgumentList(QDBus::Block, member, {QVariant()});
        return QDBusMessage::createError(QDBusError::InvalidArgs, refusal);
    }
    // Block, never AutoDetect: a proxy must not run the caller's event loop while it waits.
    return proxy.callWithArgumentList(QDBus::Block, member, args);
}

void fireAndForgetList(QDBusAbstractInterface &proxy, const QString &member, const QList<QVariant> &args)
{
    if (SendableArguments::whyNotSendable(member, args).isNull())
        proxy.asyncCallWithArgumentList(member, args);
}

QVariant wrapped(const QVariant &value)
{
    DBusTypes::dbusVariantTypeId();
    return QVariant::fromValue(QDBusVariant(value));
}

void logLastError(const QDBusAbstractInterface &proxy, const LastErrorLines &lines)
{
    const QDBusError error = proxy.lastError();
    if (!error.isValid())
        return;
    // Literals go out bare, QString values quoted: the stream's own formatting.
    qDebug() << lines.errorLine << error.message();
    if (lines.interfaceLine)
        qDebug() << lines.interfaceLine << proxy.interface();
    if (lines.pathLine)
        qDebug() << lines.pathLine << proxy.path();
}

FailureReport::FailureReport(const char *literal, const QString &service, const QString &path)
    : m_classPrefix(nullptr)
    , m_literal(literal)
    , m_service(service)
    , m_path(path)
{
}

FailureReport::FailureReport(const QString &classPrefix, const char *literal, const QString &service,
                             const QString &path)
    : m_classPrefix(&classPrefix)
    , m_literal(literal)
    , m_service(service)
    , m_path(path)
{
}

void FailureReport::write(const QDBusError &error) const
{
    QDebug line = qDebug();
    if (m_classPrefix)
        line << *m_classPrefix;
    line << m_literal << m_service << " / " << m_path << " / Error:" << error.message();
}

QList<int> toIntList(const QList<QVariant> &values)
{
    QList<int> numbers;
    numbers.reserve(values.size());
    for (const QVariant &value : values)
        numbers.append(value.toInt());
    return numbers;
}

} // namespace ProxyCall
