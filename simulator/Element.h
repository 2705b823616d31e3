#ifndef SIMULATOR_ELEMENT_H
#define SIMULATOR_ELEMENT_H

#include "Outcome.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QVariantList>

#include <functional>

/**
 * One object of the simulated application: a table of (member, signature) operations and
 * the bus signals it emits. Each kind fills the table in its constructor.
 */
class Element
{
public:
    using Operation = std::function<Outcome(const QVariantList &arguments)>;
    using SignalSink = std::function<void(const QString &path, const QString &member, const QVariantList &arguments)>;

    struct MemberEntry
    {
        QString member;
        QString inSignature;
        QString outSignature;
        Operation operation;
    };
    struct SignalEntry
    {
        QString member;
        QString signature;
        std::function<QVariantList()> currentArguments;
    };

    Element(const QString &path, const QString &proxyClass);
    virtual ~Element();

    QString path() const { return m_path; }
    /// The client proxy class that speaks to this kind; names its introspection document.
    QString proxyClass() const { return m_proxyClass; }
    virtual QString interfaceName() const;

    /// Runs the operation of @p member with @p signature; unknown members and signatures get errors.
    Outcome invoke(const QString &member, const QString &signature, const QVariantList &arguments) const;
    const QList<MemberEntry> &members() const { return m_members; }
    const QList<SignalEntry> &signalEntries() const { return m_signals; }

    void setSignalSink(const SignalSink &sink) { m_sink = sink; }
    /// The arguments the signal @p member was last emitted with, else its current ones;
    /// false if the element has no such signal.
    bool signalArguments(const QString &member, QVariantList *arguments) const;

    // The command language's view of an element.
    virtual QString text() const;
    virtual bool setFromText(const QString &text, QString *why);
    virtual void restoreDefault();

protected:
    void addMember(const QString &member, const QString &inSignature, const QString &outSignature,
                   const Operation &operation);
    void addSignal(const QString &member, const QString &signature, const std::function<QVariantList()> &current);
    /// isChangeable → b, answering @p changeable.
    void addChangeableMember(const std::function<bool()> &changeable);
    /// setToDefault, which runs restoreDefault().
    void addDefaultMember();
    void emitSignal(const QString &member, const QVariantList &arguments);
    /// Emits @p member with its current arguments.
    void emitSignal(const QString &member);

private:
    QString m_path;
    QString m_proxyClass;
    QList<MemberEntry> m_members;
    QList<SignalEntry> m_signals;
    QHash<QString, QVariantList> m_lastSignal;
    SignalSink m_sink;
};

#endif
