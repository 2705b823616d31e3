#ifndef SIMULATOR_ROOTELEMENT_H
#define SIMULATOR_ROOTELEMENT_H

#include "Element.h"

#include <QStringList>

class MeasurementEngine;
class Model;

/// "/MEAS_APPL_OBJ": the application's status and its remote command language.
class RootElement : public Element
{
public:
    static const QString parserErrorPrefix;
    /// The root object's proxy class in the kind table.
    static const QString className;

    RootElement(Model &model, MeasurementEngine &engine);

    /// getMeasApplicationStatus and executeRemoteCommand.
    static Handlers handlers();

    QString status() const;
    /// Runs one remote command given as its words; answers its text.
    QString execute(const QStringList &words);

private:
    Element *element(const QStringList &words, QString *answer) const;

    Model &m_model;
    MeasurementEngine &m_engine;
};

#endif
