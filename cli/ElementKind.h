#ifndef MEASCTL_ELEMENTKIND_H
#define MEASCTL_ELEMENTKIND_H

#include "Outcome.h"

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
 * What measctl does with one kind of element, through that kind's proxy class: one
 * instance per proxy class, found by its class name or short name.
 */
class ElementKind
{
public:
    ElementKind(const char *className, const char *shortName, const char *summary, KindSyntax syntax);
    virtual ~ElementKind();

    QString className() const { return m_className; }
    QString shortName() const { return m_shortName; }
    QString summary() const { return m_summary; }
    const KindSyntax &syntax() const { return m_syntax; }

    virtual std::unique_ptr<QDBusAbstractInterface> createProxy(const QString &service, const QString &path,
                                                                const QDBusConnection &connection) const = 0;
    /// @p args are the command's words after PATH; words that fit none of the kind's forms are a bad
    /// command line.
    virtual Outcome get(QDBusAbstractInterface &proxy, const QStringList &args) const = 0;
    virtual Outcome set(QDBusAbstractInterface &proxy, const QStringList &args) const = 0;
    virtual Outcome info(QDBusAbstractInterface &proxy, const QStringList &args) const = 0;
    /// Connects @p sink to each change signal of @p proxy; returns how many it connected.
    virtual int watch(QDBusAbstractInterface &proxy, const SignalSink &sink) const = 0;

protected:
    /// Whether @p args have as many words as one of this kind's forms of @p command.
    bool fits(const QString &command, const QStringList &args) const;
    /// The bad-command-line outcome that lists this kind's forms of @p command.
    Outcome usage(const QString &command) const;
    /// The bad-value outcome for @p text that should have been @p expected.
    static Outcome badValue(const QString &text, const QString &expected);

private:
    QString m_className;
    QString m_shortName;
    QString m_summary;
    KindSyntax m_syntax;
};

#endif
