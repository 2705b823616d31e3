#include "Results.h"

#include "Wire.h"

#include <QDateTime>

#include <cmath>

ResultElement::ResultElement(const QString &path, const QString &proxyClass, double rate)
    : Element(path, proxyClass)
    , m_rate(rate)
{
}

int Limits::status(const QVariant &value) const
{
    if (lower.isValid() && value.toDouble() < lower.toDouble())
        return Below;
    if (upper.isValid() && value.toDouble() > upper.toDouble())
        return Above;
    return Within;
}

static double uniform(QRandomGenerator &random, const ValueSource &source)
{
    return source.center + source.spread * (2.0 * random.generateDouble() - 1.0);
}

static double rounded(double value, int decimals)
{
    const double scale = std::pow(10.0, decimals);
    return std::round(value * scale) / scale;
}

static const char *proxyClassOf(ScalarResult::Type type)
{
    switch (type) {
    case ScalarResult::Int:
        return "ResultIntInterface";
    case ScalarResult::Double:
        return "ResultDoubleInterface";
    case ScalarResult::Bool:
        return "ResultBoolInterface";
    case ScalarResult::Enum:
        break;
    }
    return "ResultEnumInterface";
}

static QString signatureOf(ScalarResult::Type type)
{
    switch (type) {
    case ScalarResult::Double:
        return QStringLiteral("d");
    case ScalarResult::Bool:
        return QStringLiteral("b");
    case ScalarResult::Int:
    case ScalarResult::Enum:
        break;
    }
    return QStringLiteral("i");
}

ScalarResult::ScalarResult(const QString &path, Type type, const ValueSource &source, const Limits &limits,
                           const QString &unit, double rate)
    : ResultElement(path, QString::fromLatin1(proxyClassOf(type)), rate)
    , m_type(type)
    , m_source(source)
    , m_limits(limits)
    , m_unit(unit)
{
    const QString signature = signatureOf(type);
    const bool full = type != Enum;
    if (full) {
        addMember(QStringLiteral("getLowerLimit"), QString(), signature,
                  [this](const QVariantList &) { return Outcome::value(m_limits.lower); });
        addMember(QStringLiteral("getUpperLimit"), QString(), signature,
                  [this](const QVariantList &) { return Outcome::value(m_limits.upper); });
    }
    // Only the double result goes without the min/max texts; the enumeration has no text Comp lists.
    addReading(QStringLiteral("Value"), &ScalarResult::m_value, {true, true, full});
    addReading(QStringLiteral("MinValue"), &ScalarResult::m_min, {type == Int || type == Bool, full, full});
    addReading(QStringLiteral("MaxValue"), &ScalarResult::m_max, {type == Int || type == Bool, full, full});
    if (!full)
        return;
    addMember(QStringLiteral("resetMinMaxValues"), QString(), QString(), [this](const QVariantList &) {
        resetMinMax();
        return Outcome::reply();
    });
    addMember(QStringLiteral("stopMinMaxEval"), QString(), QString(), [this](const QVariantList &) {
        stopMinMax();
        return Outcome::reply();
    });
    addMember(QStringLiteral("continueMinMaxEval"), QString(), QString(), [this](const QVariantList &) {
        continueMinMax();
        return Outcome::reply();
    });
}

void ScalarResult::addReading(const QString &name, const Reading ScalarResult::*reading, ReadingMembers with)
{
    // "Value" names getValue/getString; "MinValue" names getMinValue/getMinString and their Comp lists.
    const QString textName =
        name == QLatin1String("Value") ? QStringLiteral("String") : name.left(3) + QStringLiteral("String");
    addMember(QStringLiteral("get") + name, QString(), signatureOf(m_type),
              [this, reading](const QVariantList &) { return Outcome::value((this->*reading).value); });
    if (with.text) {
        addMember(QStringLiteral("get") + textName, QString(), QStringLiteral("s"),
                  [this, reading](const QVariantList &) { return Outcome::value(textOf((this->*reading).value)); });
    }
    if (with.valueComp) {
        addMember(QStringLiteral("get") + name + QStringLiteral("Comp"), QString(), QStringLiteral("av"),
                  [this, reading](const QVariantList &) { return Outcome::value(comp(this->*reading, false)); });
    }
    if (with.textComp) {
        addMember(QStringLiteral("get") + textName + QStringLiteral("Comp"), QString(), QStringLiteral("av"),
                  [this, reading](const QVariantList &) { return Outcome::value(comp(this->*reading, true)); });
    }
}

QVariant ScalarResult::draw(QRandomGenerator &random) const
{
    switch (m_type) {
    case Int:
        return int(std::lround(uniform(random, m_source)));
    case Double:
        return rounded(uniform(random, m_source), m_source.decimals);
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

void ScalarResult::resetMinMax()
{
    m_min = m_value;
    m_max = m_value;
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

QVariantList ScalarResult::comp(const Reading &reading, bool asText) const
{
    return {asText ? QVariant(textOf(reading.value)) : reading.value, m_limits.status(reading.value),
            reading.timeStampMs};
}

ArrayResult::ArrayResult(const QString &path, bool integers, int size, const ValueSource &source, const Limits &limits,
                         const QString &unit, double rate)
    : ResultElement(
          path, integers ? QStringLiteral("ResultIntArrayInterface") : QStringLiteral("ResultVarArrayInterface"), rate)
    , m_integers(integers)
    , m_size(size)
    , m_source(source)
    , m_limits(limits)
    , m_unit(unit)
{
    addMember(QStringLiteral("getValues"), QString(), QStringLiteral("av"),
              [this](const QVariantList &) { return Outcome::value(m_values); });
    if (integers) {
        addMember(QStringLiteral("getString"), QString(), QStringLiteral("s"),
                  [this](const QVariantList &) { return Outcome::value(text()); });
    } else {
        addMember(QStringLiteral("getValuesStatus"), QString(), QStringLiteral("av"),
                  [this](const QVariantList &) { return Outcome::value(statuses()); });
        addMember(QStringLiteral("getValueComp"), QString(), QStringLiteral("av"), [this](const QVariantList &) {
            return Outcome::value(QVariantList{m_timeStampMs, resultStatus()} + m_values);
        });
        addMember(QStringLiteral("getValue"), QStringLiteral("i"), QStringLiteral("v"), [this](const QVariantList &a) {
            return atPosition(a, [this](int pos) { return Outcome::value(Wire::variant(m_values.at(pos))); });
        });
        addMember(
            QStringLiteral("getValueStatus"), QStringLiteral("i"), QStringLiteral("i"), [this](const QVariantList &a) {
                return atPosition(a, [this](int pos) { return Outcome::value(m_limits.status(m_values.at(pos))); });
            });
        addMember(QStringLiteral("getLowerLimit"), QString(), QStringLiteral("v"),
                  [this](const QVariantList &) { return Outcome::value(Wire::variant(m_limits.lower)); });
        addMember(QStringLiteral("getUpperLimit"), QString(), QStringLiteral("v"),
                  [this](const QVariantList &) { return Outcome::value(Wire::variant(m_limits.upper)); });
    }
    addMember(QStringLiteral("size"), QString(), QStringLiteral("i"),
              [this](const QVariantList &) { return Outcome::value(int(m_values.size())); });
    addMember(QStringLiteral("getResultStatus"), QString(), QStringLiteral("i"),
              [this](const QVariantList &) { return Outcome::value(resultStatus()); });
    addMember(QStringLiteral("getTimeStamp"), QString(), QStringLiteral("((iii)(iiii)i)"),
              [this](const QVariantList &) {
                  return Outcome::value(QDateTime::fromMSecsSinceEpoch(m_timeStampMs, Qt::UTC));
              });
}

Outcome ArrayResult::atPosition(const QVariantList &arguments, const std::function<Outcome(int)> &read) const
{
    const int pos = arguments.at(0).toInt();
    if (pos < 0 || pos >= m_values.size())
        return Outcome::error(ErrorNames::outOfRange,
                              QStringLiteral("Position %1 outside 0..%2").arg(pos).arg(m_values.size() - 1));
    return read(pos);
}

QVariantList ArrayResult::statuses() const
{
    QVariantList result;
    for (const QVariant &value : m_values)
        result.append(m_limits.status(value));
    return result;
}

int ArrayResult::resultStatus() const
{
    int worst = Limits::Within;
    for (const QVariant &status : statuses())
        worst = qMax(worst, status.toInt());
    return worst;
}

void ArrayResult::sample(QRandomGenerator &random, qint64 timeStampMs)
{
    m_values.clear();
    for (int i = 0; i < m_size; ++i) {
        const double value = uniform(random, m_source);
        m_values.append(m_integers ? QVariant(int(std::lround(value))) : QVariant(rounded(value, m_source.decimals)));
    }
    m_timeStampMs = timeStampMs;
}

QString ArrayResult::text() const
{
    return Wire::text(m_values, m_unit);
}
