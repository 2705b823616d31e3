#include "Model.h"

#include "MeasApplNames_p.h"
#include "ModelFields.h"
#include "ResultElement.h"
#include "SimulatedKinds.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>

const QString Model::controlPath = QStringLiteral("/Simulator");

void Model::add(std::unique_ptr<Element> element)
{
    m_byPath.insert(element->path(), element.get());
    elements.push_back(std::move(element));
}

Element *Model::find(const QString &path) const
{
    return m_byPath.value(path);
}

QList<ResultElement *> Model::results() const
{
    QList<ResultElement *> found;
    for (const auto &element : elements) {
        if (ResultElement *result = element->asResult())
            found.append(result);
    }
    return found;
}

QStringList Model::childNodes(const QString &path) const
{
    const QString prefix = path == QLatin1String("/") ? path : path + QLatin1Char('/');
    QStringList children;
    for (const auto &element : elements) {
        const QString candidate = element->path();
        if (!candidate.startsWith(prefix) || candidate.size() == prefix.size())
            continue;
        const QString child = candidate.mid(prefix.size()).section(QLatin1Char('/'), 0, 0);
        if (!children.contains(child))
            children.append(child);
    }
    return children;
}

QString Model::nameProblem(const QString &name)
{
    // One element of a well-known bus name, which is at most 255 characters long in all.
    static const QRegularExpression element(QStringLiteral("^[a-z_-][a-z0-9_-]*$"));
    const int maxLength = 255 - int(sizeof(MeasAppl::servicePrefix) - 1);
    if (element.match(name.toLower()).hasMatch() && name.size() <= maxLength)
        return {};
    return QStringLiteral("\"%1\" is not a valid application name (letters, digits, \"_\" and \"-\", not starting "
                          "with a digit, at most %2 characters)")
        .arg(name)
        .arg(maxLength);
}

static void initResources()
{
    Q_INIT_RESOURCE(simulator);
}

QByteArray defaultModelJson()
{
    initResources();
    QFile file(QStringLiteral(":/simulator/default-model.json"));
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

namespace {

Fault modelFault(const ModelFields &fields)
{
    const ModelFields given(fields.object(QStringLiteral("fault")));
    const QString kind = given.text(QStringLiteral("kind"));
    QString argument;
    if (kind == QLatin1String("delay"))
        argument = QString::number(given.integer(QStringLiteral("ms")));
    else if (kind == QLatin1String("error"))
        argument =
            given.text(QStringLiteral("name")) + QLatin1Char(' ') + given.text(QStringLiteral("message"), QString());
    else if (kind == QLatin1String("drop"))
        argument = given.text(QStringLiteral("mode"), QStringLiteral("release"));
    given.refuseUnread(QStringLiteral("fault"));
    Fault fault;
    QString why;
    if (!Fault::parse(kind, argument, &fault, &why))
        throw ModelError{QStringLiteral("fault: %1").arg(why)};
    return fault;
}

std::unique_ptr<Element> makeElement(const QString &kindName, const QString &path, const ModelFields &fields)
{
    const SimulatedKinds::Registered *kind = SimulatedKinds::builtIn().find(kindName);
    if (!kind)
        throw ModelError{QStringLiteral("unknown kind \"%1\"").arg(kindName)};
    if (!kind->read)
        throw ModelError{QStringLiteral("the kind \"%1\" is the root object's, which the simulator serves at %2")
                             .arg(kindName, QLatin1String(MeasAppl::rootPath))};
    return kind->read({path, *kind->kind, kind->handlers}, fields);
}

void checkPath(const QString &path, const QSet<QString> &seen)
{
    static const QRegularExpression objectPath(QStringLiteral("^(/[A-Za-z0-9_]+)+$"));
    if (!objectPath.match(path).hasMatch())
        throw ModelError{QStringLiteral("\"%1\" is not a D-Bus object path").arg(path)};
    for (const QString &reserved : {QString::fromLatin1(MeasAppl::rootPath), Model::controlPath}) {
        if (path == reserved || path.startsWith(reserved + QLatin1Char('/')))
            throw ModelError{QStringLiteral("the path %1 belongs to the simulator").arg(reserved)};
    }
    if (seen.contains(path))
        throw ModelError{QStringLiteral("the path is used twice")};
}

} // namespace

std::unique_ptr<Model> loadModel(const QByteArray &json, const QString &fileName, QString *error)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        *error = QStringLiteral("%1: not JSON: %2 at offset %3")
                     .arg(fileName, parseError.errorString())
                     .arg(parseError.offset);
        return nullptr;
    }
    if (!document.isObject()) {
        *error = QStringLiteral("%1: the model must be a JSON object").arg(fileName);
        return nullptr;
    }
    auto model = std::make_unique<Model>();
    QString where;
    try {
        const ModelFields top(document.object());
        model->application = top.text(QStringLiteral("application"), model->application);
        ModelFields::check(Model::nameProblem(model->application), QStringLiteral("application"));
        model->rate = top.number(QStringLiteral("rate"), model->rate);
        if (model->rate <= 0)
            throw ModelError{QStringLiteral("rate must be positive")};
        model->running = top.flag(QStringLiteral("running"), true);
        QSet<QString> seen;
        const QJsonArray elements = top.array(QStringLiteral("elements"));
        for (int i = 0; i < elements.size(); ++i) {
            where = QStringLiteral("element %1").arg(i);
            if (!elements.at(i).isObject())
                throw ModelError{QStringLiteral("must be an object")};
            const ModelFields fields(elements.at(i).toObject());
            const QString path = fields.text(QStringLiteral("path"));
            where = QStringLiteral("element '%1'").arg(path);
            checkPath(path, seen);
            seen.insert(path);
            model->add(makeElement(fields.text(QStringLiteral("kind")), path, fields));
            if (fields.has(QStringLiteral("fault")))
                model->faults.append({path, modelFault(fields)});
            fields.refuseUnread();
        }
        where.clear();
        top.refuseUnread();
    } catch (const ModelError &problem) {
        *error = where.isEmpty() ? QStringLiteral("%1: %2").arg(fileName, problem.problem)
                                 : QStringLiteral("%1: %2: %3").arg(fileName, where, problem.problem);
        return nullptr;
    }
    return model;
}
