#include "ScalarResult.h"

#include "ModelFields.h"
#include "Wire.h"

#include <cmath>

ScalarResult::ScalarResult(const Binding &binding, Type type, const ValueSource &source, const Limits &limits,
                           const QString &unit, double rate)
    : ResultElement(binding, rate)
    , m_type(type)
    , m_source(source)
    , m_limits(limits)
    , m_unit(unit)
{
}

Handlers ScalarResult::readingHandlers(Reading reading, ReadingMembers with)
{
    // The current reading names getValue/getString, the others getMinValue/getMinString and so on.
    const QString prefix = reading == Current ? QString()
        : reading == Minimum                  ? QStringLiteral("Min")
                                              : QStringLiteral("Max");
    const QString value = QStringLiteral("get%1Value").arg(prefix);
    const QString text = QStringLiteral("get%1String").arg(prefix);
    HandlersOf<ScalarResult> handlers;
    handlers.method(value, [reading](ScalarResult &result, const QVariantList &) {
        return Outcome::value(result.sampleOf(reading).value);
    });
    if (with.text) {
        handlers.method(text, [reading](ScalarResult &result, const QVariantList &) {
            return Outcome::value(result.textOf(result.sampleOf(reading).value));
        });
    }
    for (const bool asText : {false, true}) {
        if (asText ? with.textComp : with.valueComp) {
            handlers.method((asText ? text : value) + QStringLiteral("Comp"),
                            [reading, asText](ScalarResult &result, const QVariantList &) {
                                return Outcome::value(result.comp(result.sampleOf(reading), asText));
                            });
        }
    }
    return handlers;
}

Handlers ScalarResult::limitHandlers()
{
    return HandlersOf<ScalarResult>()
        .method("getLowerLimit",
                [](ScalarResult &result, const QVariantList &) { return Outcome::value(result.m_limits.lower); })
        .method("getUpperLimit",
                [](ScalarResult &result, const QVariantList &) { return Outcome::value(result.m_limits.upper); });
}

Handlers ScalarResult::minMaxHandlers()
{
    return HandlersOf<ScalarResult>()
        .method("resetMinMaxValues",
                [](ScalarResult &result, const QVariantList &) {
                    result.resetMinMax();
                    return Outcome::reply();
                })
        .method("stopMinMaxEval",
                [](ScalarResult &result, const QVariantList &) {
                    result.m_evaluating = false;
                    return Outcome::reply();
                })
        .method("continueMinMaxEval", [](ScalarResult &result, const QVariantList &) {
            result.m_evaluating = true;
            return Outcome::reply();
        });
}

Handlers ScalarResult::trackedHandlers(ReadingMembers minMax)
{
    return HandlersOf<ScalarResult>()
        .with(readingHandlers(Current, {true, true, true}))
        .with(readingHandlers(Minimum, minMax))
        .with(readingHandlers(Maximum, minMax))
        .with(limitHandlers())
        .with(minMaxHandlers());
}

std::unique_ptr<Element> ScalarResult::make(const Binding &binding, const ModelFields &fields, Type type,
                                            const ValueSource &source, const Limits &limits)
{
    return std::make_unique<ScalarResult>(binding, type, source, limits, fields.text(QStringLiteral("unit"), QString()),
                                          ResultElement::readRate(fields));
}

const ScalarResult::Sample &ScalarResult::sampleOf(Reading reading) const
{
    switch (reading) {
    case Minimum:
        return m_min;
    case Maximum:
        return m_max;
    case Current:
        break;
    }
    return m_value;
}
QVariant ScalarResult::draw(QRandomGenerator &random) const
{
    switch (m_type) {
    case Int:
        return int(std::lround(m_source.uniform(random)));
    case Double:
        return m_source.rounded(m_source.uniform(random));
    case Bool:
        return random.generateDouble() < m_source.probability;
    case Enum:
        break;
    }
    return int(random.bounded(quint32(m_source.choices.size())));
}

void ScalarResult::sample(QRandomGenerator &random, qint64 timeStampMs)
{
    m_value = {draw(random), timeStampMs};
    if (!m_min.value.isValid()) {
        resetMinMax();
        return;
    }
    if (!m_evaluating)
        return;
    if (m_value.value.toDouble() < m_min.value.toDouble())
        m_min = m_value;
    if (m_value.value.toDouble() > m_max.value.toDouble())
        m_max = m_value;
}

bool ScalarResult::resetMinMax()
{
    m_min = m_value;
    m_max = m_value;
    return true;
}

QString ScalarResult::textOf(const QVariant &value) const
{
    if (m_type == Enum)
        return m_source.choices.value(value.toInt());
    if (m_type == Double)
        return QString::number(value.toDouble(), 'f', m_source.decimals) +
            (m_unit.isEmpty() ? QString() : QLatin1Char(' ') + m_unit);
    return Wire::text(value, m_unit);
}

QVariantList ScalarResult::comp(const Sample &sample, bool asText) const
{
    return {asText ? QVariant(textOf(sample.value)) : sample.value, m_limits.status(sample.value), sample.timeStampMs};
}
