#include "Session.h"

#include "KindRegistry.h"

#include "DBusConnector.h"
#include "DBusInterfaceManager.h"
#include "InterfaceDocument.h"
#include "MeasApplNames_p.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QRegularExpression>

QStringList childPaths(const QString &path, const QString &xml)
{
    const auto document = InterfaceDocument::parse(xml);
    if (!document)
        return {};
    const QString prefix = path.endsWith(QLatin1Char('/')) ? path : path + QLatin1Char('/');
    QStringList paths;
    for (const QString &child : document->childNodes)
        paths.append(prefix + child);
    return paths;
}

Session::Session(const QString &appName, int timeoutMs)
    : m_appName(appName)
    , m_timeoutMs(timeoutMs)
{
}

QString Session::service() const
{
    return QLatin1String(MeasAppl::servicePrefix) + m_appName.toLower();
}

QDBusConnection Session::connection() const
{
    return DBusConnector::getInstance()->getDBusConnection();
}

std::optional<Failure> Session::requireBus() const
{
    const QDBusConnection bus = connection();
    if (bus.isConnected())
        return std::nullopt;
    const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    return Failure{
        ExitCode::NoBus,
        QStringLiteral("cannot reach the bus%1: %2")
            .arg(address.isEmpty() ? QString() : QStringLiteral(" at ") + address, bus.lastError().message())};
}

std::optional<Failure> Session::requireApplication() const
{
    if (auto failure = requireBus())
        return failure;
    if (DBusInterfaceManager::getInstance()->isMeasAppAvailable(m_appName)) {
        m_owner = currentOwner();
        return std::nullopt;
    }
    return Failure{ExitCode::NoApplication,
                   QStringLiteral("application '%1' (%2) is not on the bus").arg(m_appName, service())};
}

QString Session::currentOwner() const
{
    if (!connection().isConnected())
        return QString();
    const QDBusReply<QString> owner = connection().interface()->serviceOwner(service());
    return owner.isValid() ? owner.value() : QString();
}

Failure Session::explained(const Failure &failure) const
{
    if (failure.code != ExitCode::Timeout && failure.code != ExitCode::BusError)
        return failure;
    if (!connection().isConnected())
        return {ExitCode::NoBus, failure.message + QStringLiteral("; the bus was lost")};
    if (failure.code == ExitCode::Timeout && !m_owner.isEmpty() && currentOwner() != m_owner)
        return {ExitCode::Disconnected,
                failure.message + QStringLiteral("; the application left the bus (disconnected) without answering")};
    return failure;
}

CommandResult Session::explained(CommandResult result) const
{
    if (result.failure)
        result.failure = explained(*result.failure);
    return result;
}

QDBusMessage Session::call(const QString &path, const QString &member, const QVariantList &arguments) const
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(service(), path, QLatin1String(MeasAppl::interfaceName), member);
    message.setArguments(arguments);
    return connection().call(message, QDBus::Block, m_timeoutMs);
}

BoundElement Session::bind(const QString &path, const QString &kindName) const
{
    BoundElement element;
    element.path = path;
    static const QRegularExpression objectPath(QStringLiteral("^/([A-Za-z0-9_]+(/[A-Za-z0-9_]+)*)?$"));
    if (!objectPath.match(path).hasMatch()) {
        element.failure =
            Failure{ExitCode::BadCommandLine, QStringLiteral("'%1' is not a D-Bus object path").arg(path)};
    } else if (!kindName.isEmpty()) {
        element.adapter = KindRegistry::builtIn().find(kindName);
        if (!element.adapter)
            element.failure = Failure{ExitCode::BadCommandLine, QStringLiteral("unknown kind '%1'").arg(kindName)};
    } else {
        QString xml;
        element.failure = introspect(path, xml);
        if (!element.failure) {
            element.adapter = KindRegistry::builtIn().inferred(xml);
            if (!element.adapter)
                element.failure =
                    Failure{ExitCode::UnknownElement,
                            QStringLiteral("%1: no element kind matches this object; give --kind").arg(path)};
        }
    }
    if (element.adapter) {
        element.proxy = element.adapter->createProxy(service(), path, connection());
        element.proxy->setTimeout(m_timeoutMs);
    }
    return element;
}

std::optional<Failure> Session::list(QVector<ListedElement> &elements) const
{
    return walk(QStringLiteral("/"), elements);
}

std::optional<Failure> Session::introspect(const QString &path, QString &xml) const
{
    // No proxy offers introspection; this is the one hand-made call.
    const QDBusMessage message = QDBusMessage::createMethodCall(
        service(), path, QStringLiteral("org.freedesktop.DBus.Introspectable"), QStringLiteral("Introspect"));
    const QDBusReply<QString> reply = connection().call(message, QDBus::Block, m_timeoutMs);
    if (!reply.isValid())
        return Failure::fromError(reply.error(), path + QStringLiteral(": Introspect"));
    xml = reply.value();
    return std::nullopt;
}

std::optional<Failure> Session::walk(const QString &path, QVector<ListedElement> &elements) const
{
    QString xml;
    if (auto failure = introspect(path, xml))
        return failure;
    const auto document = InterfaceDocument::parse(xml);
    if (document && document->hasApplicationInterface)
        elements.append({path, KindRegistry::builtIn().inferred(xml)});
    for (const QString &child : childPaths(path, xml)) {
        if (auto failure = walk(child, elements))
            return failure;
    }
    return std::nullopt;
}
