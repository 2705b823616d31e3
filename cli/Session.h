#ifndef MEASCTL_SESSION_H
#define MEASCTL_SESSION_H

#include "CommandResult.h"
#include "KindAdapter.h"

#include <QDBusAbstractInterface>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>
#include <optional>

/// One element found on the application's object tree; adapter is null when no kind is inferable.
struct ListedElement
{
    QString path;
    const KindAdapter *adapter = nullptr;
};

/// A proxy of one element together with its kind's adapter.
struct BoundElement
{
    QString path;
    const KindAdapter *adapter = nullptr;
    std::unique_ptr<QDBusAbstractInterface> proxy;
    std::optional<Failure> failure;
};

/// The paths of the child nodes that the introspected @p xml of the object at @p path lists.
QStringList childPaths(const QString &path, const QString &xml);

/**
 * The measurement application that measctl talks to: its bus service, the proxies of its
 * elements (with the call time-out applied) and the kinds of its elements.
 */
class Session
{
public:
    /// @p timeoutMs: each proxy call's time-out; -1 for the connection's default.
    Session(const QString &appName, int timeoutMs);

    QString appName() const { return m_appName; }
    /// The service prefix + the lower-cased name, as the library builds it.
    QString service() const;
    QDBusConnection connection() const;

    int timeoutMs() const { return m_timeoutMs; }

    /// A failure when the bus cannot be reached.
    std::optional<Failure> requireBus() const;
    /// A failure when the application's service is not on the bus; else remembers its owner,
    /// so that explained() can tell a departure from silence.
    std::optional<Failure> requireApplication() const;
    /// @p failure, told more precisely: no answer because the application left the bus or
    /// restarted (its owner changed) is a disconnection, not a time-out.
    Failure explained(const Failure &failure) const;
    CommandResult explained(CommandResult result) const;
    /// The bus's unique name that owns the application's service now; empty when none.
    QString currentOwner() const;

    /// Calls @p member of the application interface on @p path with the session's time-out.
    QDBusMessage call(const QString &path, const QString &member, const QVariantList &arguments = {}) const;

    /// A proxy of @p path, of the kind named @p kindName or else of the kind inferred by introspection.
    BoundElement bind(const QString &path, const QString &kindName) const;
    /// Every object of the application's tree that speaks its interface, from "/".
    std::optional<Failure> list(QVector<ListedElement> &elements) const;

private:
    std::optional<Failure> introspect(const QString &path, QString &xml) const;
    std::optional<Failure> walk(const QString &path, QVector<ListedElement> &elements) const;

    QString m_appName;
    int m_timeoutMs;
    mutable QString m_owner;
};

#endif
