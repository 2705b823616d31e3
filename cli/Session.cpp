#include "Session.h"

#include "ElementKinds.h"

#include "DBusConnector.h"
#include "DBusInterfaceManager.h"

#include <QDBusMessage>
#include <QDBusReply>
#include <QRegularExpression>

const QString Session::rootPath = QStringLiteral("/MEAS_APPL_OBJ");

Session::Session(const QString &appName, int timeoutMs)
    : m_appName(appName)
    , m_timeoutMs(timeoutMs)
    , m_catalogue(KindCatalogue::builtIn())
{
}

QString Session::service() const
{
    return QStringLiteral("com.velk.mqx.app.") + m_appName.toLower();
}

QDBusConnection Session::connection() const
{
    return DBusConnector::getInstance()->getDBusConnection();
}

std::optional<Failure> Session::requireApplication() const
{
    if (DBusInterfaceManager::getInstance()->isMeasAppAvailable(m_appName))
        return std::nullopt;
    return Failure{ExitCode::NoApplication,
                   QStringLiteral("application '%1' (%2) is not on the bus").arg(m_appName, service())};
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
        element.kind = ElementKinds::find(kindName);
        if (!element.kind)
            element.failure = Failure{ExitCode::BadCommandLine, QStringLiteral("unknown kind '%1'").arg(kindName)};
    } else {
        QString xml;
        element.failure = introspect(path, xml);
        if (!element.failure) {
            const auto inferred = m_catalogue.infer(xml);
            element.kind = inferred ? ElementKinds::find(*inferred) : nullptr;
            if (!element.kind)
                element.failure =
                    Failure{ExitCode::UnknownElement,
                            QStringLiteral("%1: no element kind matches this object; give --kind").arg(path)};
        }
    }
    if (element.kind) {
        element.proxy = element.kind->createProxy(service(), path, connection());
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
    if (Introspection::interfaceMembers(xml)) {
        const auto inferred = m_catalogue.infer(xml);
        elements.append({path, inferred ? ElementKinds::find(*inferred) : nullptr});
    }
    const QString prefix = path.endsWith(QLatin1Char('/')) ? path : path + QLatin1Char('/');
    for (const QString &child : Introspection::childNodes(xml)) {
        if (auto failure = walk(prefix + child, elements))
            return failure;
    }
    return std::nullopt;
}
