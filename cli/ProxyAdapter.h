#ifndef MEASCTL_PROXYADAPTER_H
#define MEASCTL_PROXYADAPTER_H

#include "KindAdapter.h"
#include "Reading.h"
#include "Values.h"

#include <QJsonArray>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

/// What a word should have been, as the adapters' bad-value answers say it.
namespace Expected {
inline const QString value = QStringLiteral("a value");
inline const QString wholeNumber = QStringLiteral("a whole number");
inline const QString realNumber = QStringLiteral("a real number");
inline const QString position = QStringLiteral("a position (whole number)");
inline const QString range = QStringLiteral("a range START END of whole numbers");
inline const QString jsonObject = QStringLiteral("a JSON object");
} // namespace Expected

/// Relays the Qt signal @p signal of @p proxy to @p sink under @p name, each argument in its JSON form.
template<class P, typename... A>
void relaySignal(P &proxy, void (P::*signal)(A...), const char *name, const SignalSink &sink)
{
    QObject::connect(&proxy, signal, &proxy, [sink, name](A... arguments) {
        sink(QString::fromLatin1(name), QJsonArray{Values::toJson(QVariant::fromValue(arguments))...});
    });
}

/**
 * The KindAdapter of proxy class P, declared as tables: the fields that get and info read
 * when given no words after PATH, and the signals that watch relays. An adapter overrides
 * the typed operations only for what its tables do not say; each is called only with words
 * that fit one of the kind's forms of its command.
 */
template<class P>
class ProxyAdapter : public KindAdapter
{
public:
    ProxyAdapter(const char *summary, KindSyntax syntax)
        : KindAdapter(P::staticMetaObject.className(), summary, std::move(syntax))
    {
    }

    std::unique_ptr<QDBusAbstractInterface> createProxy(const QString &service, const QString &path,
                                                        const QDBusConnection &connection) const final
    {
        return std::make_unique<P>(service, path, connection);
    }
    CommandResult get(QDBusAbstractInterface &proxy, const QStringList &args) const final
    {
        return perform(QStringLiteral("get"), &ProxyAdapter::read, proxy, args);
    }
    CommandResult set(QDBusAbstractInterface &proxy, const QStringList &args) const final
    {
        return perform(QStringLiteral("set"), &ProxyAdapter::write, proxy, args);
    }
    CommandResult info(QDBusAbstractInterface &proxy, const QStringList &args) const final
    {
        return perform(QStringLiteral("info"), &ProxyAdapter::describe, proxy, args);
    }
    int watch(QDBusAbstractInterface &proxy, const SignalSink &sink) const final
    {
        for (const Relay &relay : relays)
            relay.connect(static_cast<P &>(proxy), sink);
        return static_cast<int>(relays.size());
    }

protected:
    /// One field of an answer: its name, the wire member that gives it and the proxy's getter.
    struct Field
    {
        template<class C, typename R>
        Field(const char *name, const char *member, R (C::*getter)())
            : readInto([name, member, getter](Reading &reading, P &p) {
                reading.field(name, member, [&] { return (p.*getter)(); });
            })
        {
        }
        std::function<void(Reading &, P &)> readInto;
    };
    using Fields = std::vector<Field>;

    /// One change signal: the proxy's Qt signal and the name that watch prints.
    struct Relay
    {
        template<typename... A>
        Relay(void (P::*signal)(A...), const char *name)
            : connect([signal, name](P &p, const SignalSink &sink) { relaySignal(p, signal, name, sink); })
        {
        }
        std::function<void(P &, const SignalSink &)> connect;
    };

    /// What get and info read without words after PATH.
    Fields reads;
    Fields infos;
    /// What watch relays.
    std::vector<Relay> relays;

    virtual CommandResult read(P &p, const QStringList &) const { return readFields(p, reads); }
    // Only a kind that declares forms of set without saying what they do gets here.
    virtual CommandResult write(P &, const QStringList &) const { return usage(QStringLiteral("set")); }
    virtual CommandResult describe(P &p, const QStringList &) const { return readFields(p, infos); }

    static void readFields(Reading &reading, P &p, const Fields &fields)
    {
        for (const Field &field : fields)
            field.readInto(reading, p);
    }
    static CommandResult readFields(P &p, const Fields &fields)
    {
        Reading reading(p);
        readFields(reading, p, fields);
        return reading.result();
    }
    /// The application's answer to a change that @p call asks for.
    template<typename Call>
    static CommandResult accepted(P &p, Call &&call)
    {
        return Reading(p).accepted("setValue", call).result();
    }
    /// Sets the whole value to @p value, parsed from @p word; a bad value, @p expected, when it did not parse.
    template<typename T>
    static CommandResult setParsed(P &p, const QString &word, const std::optional<T> &value, const QString &expected)
    {
        if (!value)
            return badValue(word, expected);
        return accepted(p, [&] { return p.setValue(*value); });
    }

private:
    using Operation = CommandResult (ProxyAdapter::*)(P &, const QStringList &) const;

    /// The kind's @p operation when @p args fit one of its forms of @p command; else the forms it takes.
    CommandResult perform(const QString &command, Operation operation, QDBusAbstractInterface &proxy,
                          const QStringList &args) const
    {
        return fits(command, args) ? (this->*operation)(static_cast<P &>(proxy), args) : usage(command);
    }
};

/// The adapter of proxy class P: defined in kinds/<P>.cpp, one for each kind of the table.
template<class P>
std::unique_ptr<KindAdapter> adapterOf();

#endif
