#ifndef KINDTABLE_KINDTABLE_H
#define KINDTABLE_KINDTABLE_H

#include <QString>
#include <QStringList>

#include <initializer_list>

/**
 * Every kind of element, generated at build time from the interface documents in
 * interfaces/: its proxy class, its one short name, and the methods and signals of
 * com.velk.mqx.MeasApplInterface that its proxy class sends and relays. The simulator
 * binds its handlers to these members, measctl infers kinds and parses arguments with
 * them, and the tests take their lists of classes from here.
 */
namespace KindTable {

struct Method
{
    const char *name;
    const char *inSignature;
    const char *outSignature;
};

struct BusSignal
{
    const char *name;
    const char *signature;
};

enum class Family { Setup, Result, Command };

struct Kind
{
    const char *className;
    /// The kind's name in model files, measctl's --kind and the docs ("int", "mapList").
    const char *shortName;
    Family family;
    const Method *methodBegin;
    const Method *methodEnd;
    const BusSignal *signalBegin;
    const BusSignal *signalEnd;

    /// What a range-for loop needs of a stretch of the generated arrays.
    template<typename T>
    struct Span
    {
        const T *b;
        const T *e;
        const T *begin() const { return b; }
        const T *end() const { return e; }
    };
    Span<Method> methods() const { return {methodBegin, methodEnd}; }
    Span<BusSignal> busSignals() const { return {signalBegin, signalEnd}; }

    /// The method @p name sent with @p inSignature; null when the kind has none.
    const Method *method(const QString &name, const QString &inSignature) const;
    /// Every input signature that @p name is sent with, in document order.
    QStringList inSignatures(const QString &name) const;
    const BusSignal *busSignal(const QString &name) const;
    /// As InterfaceDocument::memberTexts(): sorted canonical texts of all members.
    QStringList memberTexts() const;
};

/// Every kind, setups first, then results, then the remote command, each group by class name.
const Kind *begin();
const Kind *end();
struct AllKinds
{
    const Kind *begin() const { return KindTable::begin(); }
    const Kind *end() const { return KindTable::end(); }
};
inline AllKinds all()
{
    return {};
}
int count();

/// The kind with class name or short name @p name, compared without regard to case; null if none.
const Kind *find(const QString &name);
/// The class names of every kind of the given families.
QStringList classNames(std::initializer_list<Family> families = {Family::Setup, Family::Result, Family::Command});
QString familyName(Family family);

/// The text of @p kind's interface document, as the build took it in (for Introspect).
QString document(const Kind &kind);

/// The one kind whose members are exactly those that the application interface in the
/// introspected @p xml has; null when none or more than one matches, or it does not parse.
const Kind *inferred(const QString &xml);

} // namespace KindTable

#endif
