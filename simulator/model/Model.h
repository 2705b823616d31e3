#ifndef SIMULATOR_MODEL_H
#define SIMULATOR_MODEL_H

#include "Element.h"
#include "Faults.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class ResultElement;

/// The elements of a simulated instrument, as read from a model file.
class Model
{
public:
    /// The simulator's own control object, which no model element may take.
    static const QString controlPath;

    QString application = QStringLiteral("sim");
    double rate = 10;
    bool running = true;
    /// In the order of the model file; filled through add().
    std::vector<std::unique_ptr<Element>> elements;
    /// Faults the model file gives its elements.
    QList<QPair<QString, Fault>> faults;

    /// Appends @p element; its path must be new.
    void add(std::unique_ptr<Element> element);
    /// The element at @p path, null if none; a lookup, not a walk, since every call needs one.
    Element *find(const QString &path) const;
    QList<ResultElement *> results() const;
    /// Names of the nodes directly below @p path that lead to elements.
    QStringList childNodes(const QString &path) const;

    /// Why @p name cannot be an application name (its service name would be no valid bus
    /// name); empty if it can.
    static QString nameProblem(const QString &name);

private:
    QHash<QString, Element *> m_byPath;
};

/// Reads a model from JSON; on failure @p error names the file, the element and the problem.
std::unique_ptr<Model> loadModel(const QByteArray &json, const QString &fileName, QString *error);
/// The built-in model of a plausible instrument.
QByteArray defaultModelJson();

#endif
