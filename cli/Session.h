#ifndef MEASCTL_SESSION_H
#define MEASCTL_SESSION_H

#include "ElementKind.h"
#include "KindCatalogue.h"
#include "Outcome.h"

#include <QDBusAbstractInterface>
#include <QDBusConnection>
#include <QString>
#include <QVector>

#include <memory>
#include <optional>

/// One element found on the application's object tree; kind is null when none is inferable.
struct ListedElement
{
    QString path;
    const ElementKind *kind = nullptr;
};

/// A proxy of one element together with its kind.
struct BoundElement
{
    QString path;
    const ElementKind *kind = nullptr;
    std::unique_ptr<QDBusAbstractInterface> proxy;
    std::optional<Failure> failure;
};

/**
 * The measurement application that measctl talks to: its bus service, the proxies of its
 * elements (with the call time-out applied) and the kinds of its elements.
 */
class Session
{
public:
    static const QString rootPath;

    /// @p timeoutMs: each proxy call's time-out; -1 for the connection's default.
    Session(const QString &appName, int timeoutMs);

    QString appName() const { return m_appName; }
    /// "com.velk.mqx.app." + the lower-cased name, as the library builds it.
    QString service() const;
    QDBusConnection connection() const;

    /// A failure when the application's service is not on the bus.
    std::optional<Failure> requireApplication() const;

    /// A proxy of @p path, of the kind named @p kindName or else of the kind inferred by introspection.
    BoundElement bind(const QString &path, const QString &kindName) const;
    /// Every object of the application's tree that speaks its interface, from "/".
    std::optional<Failure> list(QVector<ListedElement> &elements) const;

private:
    std::optional<Failure> introspect(const QString &path, QString &xml) const;
    std::optional<Failure> walk(const QString &path, QVector<ListedElement> &elements) const;

    QString m_appName;
    int m_timeoutMs;
    KindCatalogue m_catalogue;
};

#endif
