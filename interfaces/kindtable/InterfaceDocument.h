#ifndef KINDTABLE_INTERFACEDOCUMENT_H
#define KINDTABLE_INTERFACEDOCUMENT_H

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

/**
 * What a D-Bus introspection document says of the application interface of one object:
 * the kind's names (from the project's annotations), its methods and signals, and the
 * object's child nodes. The one reader of such documents: the kind table is generated
 * with it, and measctl and the tests read what an object introspects to with it.
 */
struct InterfaceDocument
{
    struct Method
    {
        QString name;
        QString inSignature;
        QString outSignature;
    };
    struct Signal
    {
        QString name;
        QString signature;
    };

    /// The annotation that names a kind once for every program ("int", "mapList", ...).
    static const QString kindNameAnnotation;
    /// The annotation that files a kind under "setup", "result" or "command".
    static const QString familyAnnotation;

    QString kindName;
    QString family;
    QList<Method> methods;
    QList<Signal> busSignals;
    /// The child nodes, as written there (relative names).
    QStringList childNodes;
    /// The name of every interface the node declares, in document order.
    QStringList interfaces;
    /// Whether the document has the application interface at all.
    bool hasApplicationInterface = false;

    /// Reads @p xml; nothing, and the reason in @p why, when it is not a well-formed node.
    static std::optional<InterfaceDocument> parse(const QString &xml, QString *why = nullptr);

    /// One canonical text per member ("method setValue(i)->(b)", "signal setupChanged(i)"),
    /// sorted: two objects are of one kind when these lists are equal.
    QStringList memberTexts() const;
};

#endif
