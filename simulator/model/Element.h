#ifndef SIMULATOR_ELEMENT_H
#define SIMULATOR_ELEMENT_H

#include "Handlers.h"
#include "Outcome.h"

#include <KindTable.h>

#include <QHash>
#include <QList>
#include <QString>
#include <QVariantList>

#include <functional>
#include <optional>

class ResultElement;

/**
 * One object of the simulated application. Its members are those of its kind in the kind
 * table, each bound to the handler its kind supplies for it; the control object, which is
 * no kind, lists its own.
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

    /// Where an element of a kind sits and what its members run.
    struct Binding
    {
        QString path;
        const KindTable::Kind &kind;
        /// Checked against the kind by SimulatedKinds before any element is made.
        const Handlers &handlers;
    };

    explicit Element(const Binding &binding);
    virtual ~Element();

    QString path() const { return m_path; }
    /// The client proxy class that speaks to this kind.
    QString proxyClass() const { return m_proxyClass; }
    /// The element's kind; null for the control object.
    const KindTable::Kind *kind() const { return m_kind; }
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
    /// Restarts min/max tracking; false for an element that is no result.
    virtual bool resetMinMax() { return false; }
    /// Adds (@p store) or removes a stored element's name; nothing for an element that keeps none.
    virtual std::optional<bool> storeName(const QString &name, bool store);
    /// This element as a result the measurement renews; null for the others.
    virtual ResultElement *asResult() { return nullptr; }

protected:
    /// An element outside the kind table, which adds its members itself.
    Element(const QString &path, const QString &className);
    void addMember(const QString &member, const QString &inSignature, const QString &outSignature,
                   const Operation &operation);
    void emitSignal(const QString &member, const QVariantList &arguments);
    /// Emits @p member with its current arguments.
    void emitSignal(const QString &member);

private:
    QString m_path;
    QString m_proxyClass;
    const KindTable::Kind *m_kind = nullptr;
    QList<MemberEntry> m_members;
    QList<SignalEntry> m_signals;
    QHash<QString, QVariantList> m_lastSignal;
    SignalSink m_sink;
};

#endif
