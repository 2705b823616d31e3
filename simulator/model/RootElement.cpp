#include "RootElement.h"

#include "MeasApplNames_p.h"
#include "MeasurementEngine.h"
#include "Model.h"
#include "ResultElement.h"

const QString RootElement::parserErrorPrefix = QStringLiteral("Parser Error: ");

namespace {

const QString ok = QStringLiteral("OK");

QString parserError(const QString &reason)
{
    return RootElement::parserErrorPrefix + reason;
}

/// Checks the number of words after the command; empty when it fits.
QString arity(const QStringList &words, int least, int most, const QString &usage)
{
    const int given = words.size() - 1;
    if (given < least || given > most)
        return parserError(QStringLiteral("usage: %1").arg(usage));
    return {};
}

} // namespace

const QString RootElement::className = QStringLiteral("RemoteCommandInterface");

RootElement::RootElement(Model &model, MeasurementEngine &engine)
    : Element({QString::fromLatin1(MeasAppl::rootPath), *KindTable::find(className), handlers()})
    , m_model(model)
    , m_engine(engine)
{
}

Handlers RootElement::handlers()
{
    return HandlersOf<RootElement>()
        .method("getMeasApplicationStatus",
                [](RootElement &root, const QVariantList &) { return Outcome::value(root.status()); })
        .method("executeRemoteCommand", [](RootElement &root, const QVariantList &arguments) {
            QStringList words = arguments.at(0).toString().split(QLatin1Char(' '), Qt::SkipEmptyParts);
            for (int i = 1; i < arguments.size(); ++i) {
                if (!arguments.at(i).toString().isEmpty())
                    words.append(arguments.at(i).toString());
            }
            return Outcome::value(root.execute(words));
        });
}

QString RootElement::status() const
{
    return m_engine.isRunning() ? QStringLiteral("running") : QStringLiteral("idle");
}

Element *RootElement::element(const QStringList &words, QString *answer) const
{
    Element *found = m_model.find(words.value(1));
    if (!found)
        *answer = parserError(QStringLiteral("no element \"%1\"").arg(words.value(1)));
    return found;
}

QString RootElement::execute(const QStringList &words)
{
    const QString command = words.value(0);
    QString answer;
    if (command == QLatin1String("echo"))
        return words.mid(1).join(QLatin1Char(' '));
    if (command == QLatin1String("help")) {
        return QStringLiteral("set PATH VALUE | get PATH | default PATH | resetMinMax [PATH] | start | stop | status | "
                              "store PATH NAME | unstore PATH NAME | echo [TEXT...] | help");
    }
    if (command == QLatin1String("start") || command == QLatin1String("stop")) {
        if (!(answer = arity(words, 0, 0, command)).isEmpty())
            return answer;
        m_engine.setRunning(command == QLatin1String("start"));
        return ok;
    }
    if (command == QLatin1String("status"))
        return (answer = arity(words, 0, 0, command)).isEmpty() ? status() : answer;
    if (command == QLatin1String("set")) {
        if (!(answer = arity(words, 2, 2, QStringLiteral("set PATH VALUE"))).isEmpty())
            return answer;
        Element *target = element(words, &answer);
        QString why;
        if (target && !target->setFromText(words.at(2), &why))
            return QStringLiteral("Refused: ") + why;
        return target ? ok : answer;
    }
    if (command == QLatin1String("get") || command == QLatin1String("default")) {
        if (!(answer = arity(words, 1, 1, command + QStringLiteral(" PATH"))).isEmpty())
            return answer;
        Element *target = element(words, &answer);
        if (!target)
            return answer;
        if (command == QLatin1String("get"))
            return target->text();
        target->restoreDefault();
        return ok;
    }
    if (command == QLatin1String("resetMinMax")) {
        if (!(answer = arity(words, 0, 1, QStringLiteral("resetMinMax [PATH]"))).isEmpty())
            return answer;
        if (words.size() == 1) {
            for (ResultElement *result : m_model.results())
                result->resetMinMax();
            return ok;
        }
        Element *target = element(words, &answer);
        if (!target)
            return answer;
        return target->resetMinMax() ? ok : parserError(QStringLiteral("%1 is not a result").arg(words.at(1)));
    }
    if (command == QLatin1String("store") || command == QLatin1String("unstore")) {
        if (!(answer = arity(words, 2, 2, command + QStringLiteral(" PATH NAME"))).isEmpty())
            return answer;
        Element *target = element(words, &answer);
        if (!target)
            return answer;
        const std::optional<bool> done = target->storeName(words.at(2), command == QLatin1String("store"));
        if (!done)
            return parserError(QStringLiteral("%1 is not a stored-element list").arg(words.at(1)));
        return *done ? ok : QStringLiteral("Refused: ") + words.at(2);
    }
    if (command.isEmpty())
        return parserError(QStringLiteral("empty command"));
    return parserError(QStringLiteral("unknown command \"%1\"").arg(command));
}
