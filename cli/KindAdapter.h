#ifndef MEASCTL_KINDADAPTER_H
#define MEASCTL_KINDADAPTER_H

#include "CommandResult.h"

#include "KindTable.h"

#include <QDBusAbstractInterface>
#include <QDBusConnection>
#include <QJsonArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

/// Receives one change signal of a watched element: its name and its arguments.
using SignalSink = std::function<void(const QString &signal, const QJsonArray &arguments)>;

/// The forms that a kind accepts after PATH, per command; empty when it does not offer the command.
struct KindSyntax
{
    QStringList get;
    QStringList set;
    QStringList info;

    /// get and info without words, no set: what a measured result offers.
    static KindSyntax readOnly() { return {{QString()}, {}, {QString()}}; }

    /// The forms of the command named @p command; none for commands that address no element.
    QStringList of(const QString &command) const
    {
        if (command == QLatin1String("get"))
            return get;
        if (command == QLatin1String("set"))
            return set;
        if (command == QLatin1String("info"))
            return info;
        return {};
    }
};

/**
 * What measctl does with one kind of element, through that kind's proxy class. The kind
 * is the one of the kind table whose class name is the proxy class's; its names come from
 * there.
 */
class KindAdapter
{
public:
    KindAdapter(const char *proxyClass, const char *summary, KindSyntax syntax);
    virtual ~KindAdapter();

    /// The kind of the table this adapter serves; null only for a proxy class the table lacks.
    const KindTable::Kind *kind() const { return m_kind; }
    QString className() const { return m_className; }
    QString shortName() const;
    QString summary() const { return m_summary; }
    const KindSyntax &syntax() const { return m_syntax; }

    virtual std::unique_ptr<QDBusAbstractInterface> createProxy(const QString &service, const QString &path,
                                                                const QDBusConnection &connection) const = 0;
    /// @p args are the command's words after PATH; words that fit none of the kind's forms are a bad
    /// command line.
    virtual CommandResult get(QDBusAbstractInterface &proxy, const QStringList &args) const = 0;
    virtual CommandResult set(QDBusAbstractInterface &proxy, const QStringList &args) const = 0;
    virtual CommandResult info(QDBusAbstractInterface &proxy, const QStringList &args) const = 0;
    /// Connects @p sink to each change signal of @p proxy; returns how many it connected.
    virtual int watch(QDBusAbstractInterface &proxy, const SignalSink &sink) const = 0;

protected:
    /// Whether @p args have as many words as one of this kind's forms of @p command.
    bool fits(const QString &command, const QStringList &args) const;
    /// The bad-command-line result that lists this kind's forms of @p command.
    CommandResult usage(const QString &command) const;
    /// The bad-value result for @p text that should have been @p expected.
    static CommandResult badValue(const QString &text, const QString &expected);

private:
    QString m_className;
    const KindTable::Kind *m_kind;
    QString m_summary;
    KindSyntax m_syntax;
};

#endif
