#include "ArrayResult.h"

#include "ModelFields.h"
#include "Wire.h"

#include <QDateTime>

#include <cmath>

ArrayResult::ArrayResult(const Binding &binding, bool integers, int size, const ValueSource &source,
                         const Limits &limits, const QString &unit, double rate)
    : ResultElement(binding, rate)
    , m_integers(integers)
    , m_size(size)
    , m_source(source)
    , m_limits(limits)
    , m_unit(unit)
{
}

Handlers ArrayResult::rowHandlers()
{
    return HandlersOf<ArrayResult>()
        .method("getValues", [](ArrayResult &row, const QVariantList &) { return Outcome::value(row.m_values); })
        .method("size", [](ArrayResult &row, const QVariantList &) { return Outcome::value(int(row.m_values.size())); })
        .method("getResultStatus",
                [](ArrayResult &row, const QVariantList &) { return Outcome::value(row.resultStatus()); })
        .method("getTimeStamp", [](ArrayResult &row, const QVariantList &) {
            return Outcome::value(QDateTime::fromMSecsSinceEpoch(row.m_timeStampMs, Qt::UTC));
        });
}

Handlers ArrayResult::statusHandlers()
{
    return HandlersOf<ArrayResult>()
        .method("getValuesStatus",
                [](ArrayResult &row, const QVariantList &) { return Outcome::value(row.statuses()); })
        .method("getValueComp",
                [](ArrayResult &row, const QVariantList &) {
                    return Outcome::value(QVariantList{row.m_timeStampMs, row.resultStatus()} + row.m_values);
                })
        .method("getValue",
                [](ArrayResult &row, const QVariantList &a) {
                    return row.atPosition(
                        a, [&row](int pos) { return Outcome::value(Wire::variant(row.m_values.at(pos))); });
                })
        .method("getValueStatus",
                [](ArrayResult &row, const QVariantList &a) {
                    return row.atPosition(
                        a, [&row](int pos) { return Outcome::value(row.m_limits.status(row.m_values.at(pos))); });
                })
        .method(
            "getLowerLimit",
            [](ArrayResult &row, const QVariantList &) { return Outcome::value(Wire::variant(row.m_limits.lower)); })
        .method("getUpperLimit", [](ArrayResult &row, const QVariantList &) {
            return Outcome::value(Wire::variant(row.m_limits.upper));
        });
}

std::unique_ptr<Element> ArrayResult::make(const Binding &binding, const ModelFields &fields, bool integers)
{
    const int size = fields.integer(QStringLiteral("size"));
    if (size <= 0 || size > maxSize)
        throw ModelError{QStringLiteral("size must lie in 1..%1").arg(maxSize)};
    return std::make_unique<ArrayResult>(binding, integers, size, ValueSource::read(fields, !integers),
                                         Limits::read(fields, integers), fields.text(QStringLiteral("unit"), QString()),
                                         ResultElement::readRate(fields));
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
        const double value = m_source.uniform(random);
        m_values.append(m_integers ? QVariant(int(std::lround(value))) : QVariant(m_source.rounded(value)));
    }
    m_timeStampMs = timeStampMs;
}

QString ArrayResult::text() const
{
    return Wire::text(m_values, m_unit);
}
