#include "Handlers.h"

namespace {

/// A method or signal of the table, or a handler for one, reduced to what matching needs.
struct Member
{
    QString name;
    const char *signature; ///< a handler's named signature (or null); the table's always
};

QStringList signaturesOf(const QString &name, const QList<Member> &table)
{
    QStringList found;
    for (const Member &entry : table) {
        if (entry.name == name)
            found.append(QString::fromLatin1(entry.signature));
    }
    return found;
}

/// Whether @p handler is the one of table entry @p entry, among the @p signatures of its name.
bool matches(const Member &handler, const Member &entry, const QStringList &signatures)
{
    if (handler.name != entry.name)
        return false;
    if (!handler.signature)
        return signatures.size() == 1;
    return signatures.size() > 1 && qstrcmp(handler.signature, entry.signature) == 0;
}

/// The index of the handler of table entry @p entry; -1 if none.
int handlerFor(const Member &entry, const QList<Member> &handlers, const QList<Member> &table)
{
    const QStringList signatures = signaturesOf(entry.name, table);
    for (int i = 0; i < handlers.size(); ++i) {
        if (matches(handlers.at(i), entry, signatures))
            return i;
    }
    return -1;
}

/// Both directions: every table entry has exactly one handler, every handler has its entry.
void compare(const QString &what, const QList<Member> &handlers, const QList<Member> &table, QStringList *problems)
{
    for (const Member &entry : table) {
        const QStringList signatures = signaturesOf(entry.name, table);
        int found = 0;
        for (const Member &handler : handlers)
            found += matches(handler, entry, signatures) ? 1 : 0;
        const QString text = QStringLiteral("%1 %2(%3)").arg(what, entry.name, QLatin1String(entry.signature));
        if (found == 0)
            problems->append(QStringLiteral("no handler for %1").arg(text));
        else if (found > 1)
            problems->append(QStringLiteral("%1 handlers for %2").arg(found).arg(text));
    }
    for (const Member &handler : handlers) {
        const QStringList signatures = signaturesOf(handler.name, table);
        if (signatures.isEmpty())
            problems->append(QStringLiteral("a handler for %1 %2, which the kind table lacks").arg(what, handler.name));
        else if (!handler.signature && signatures.size() > 1)
            problems->append(QStringLiteral("the handler for %1 %2 names no signature, but it has several: %3")
                                 .arg(what, handler.name, signatures.join(QStringLiteral(", "))));
        else if (handler.signature && signatures.size() == 1)
            problems->append(
                QStringLiteral("the handler for %1 %2 names a signature, but it has only one").arg(what, handler.name));
        else if (handler.signature && !signatures.contains(QLatin1String(handler.signature)))
            problems->append(QStringLiteral("a handler for %1 %2(%3), which the kind table lacks")
                                 .arg(what, handler.name, QLatin1String(handler.signature)));
    }
}

QList<Member> tableMethods(const KindTable::Kind &kind)
{
    QList<Member> members;
    for (const KindTable::Method &method : kind.methods())
        members.append({QString::fromLatin1(method.name), method.inSignature});
    return members;
}

QList<Member> tableSignals(const KindTable::Kind &kind)
{
    QList<Member> members;
    for (const KindTable::BusSignal &busSignal : kind.busSignals())
        members.append({QString::fromLatin1(busSignal.name), busSignal.signature});
    return members;
}

QList<Member> methodHandlers(const QList<MethodHandler> &handlers)
{
    QList<Member> members;
    for (const MethodHandler &handler : handlers)
        members.append({handler.member, handler.inSignature});
    return members;
}

QList<Member> signalHandlers(const QList<SignalHandler> &handlers)
{
    QList<Member> members;
    for (const SignalHandler &handler : handlers)
        members.append({handler.member, handler.signature});
    return members;
}

} // namespace

QStringList Handlers::mismatches(const KindTable::Kind &kind) const
{
    QStringList problems;
    compare(QStringLiteral("method"), methodHandlers(methods), tableMethods(kind), &problems);
    compare(QStringLiteral("signal"), signalHandlers(busSignals), tableSignals(kind), &problems);
    return problems;
}

const MethodHandler *Handlers::handlerOf(const KindTable::Kind &kind, const KindTable::Method &method) const
{
    const int found =
        handlerFor({QString::fromLatin1(method.name), method.inSignature}, methodHandlers(methods), tableMethods(kind));
    return found < 0 ? nullptr : &methods.at(found);
}

const SignalHandler *Handlers::handlerOf(const KindTable::Kind &kind, const KindTable::BusSignal &busSignal) const
{
    const int found = handlerFor({QString::fromLatin1(busSignal.name), busSignal.signature}, signalHandlers(busSignals),
                                 tableSignals(kind));
    return found < 0 ? nullptr : &busSignals.at(found);
}
