#include "ItemRule.h"

#include "ModelFields.h"
#include "Wire.h"

QString ItemRule::refusal(const QVariant &value) const
{
    if (!enums.isEmpty() && !enums.contains(value.toString()))
        return QStringLiteral("%1 is not one of %2").arg(value.toString(), enums.join(QStringLiteral(", ")));
    if (range.bounded) {
        if (!Wire::isNumber(value))
            return QStringLiteral("not a number");
        return range.refusal(value.toDouble());
    }
    return {};
}

Outcome ItemRule::limit(bool minimum, const QString &item) const
{
    if (!range.bounded)
        return Outcome::error(ErrorNames::noRange, QStringLiteral("\"%1\" has no range").arg(item));
    return Outcome::value(Wire::variant(minimum ? range.min : range.max));
}

QMap<QString, ItemRule> ItemRule::read(const QJsonObject &items)
{
    QMap<QString, ItemRule> rules;
    for (auto it = items.constBegin(); it != items.constEnd(); ++it) {
        if (!it.value().isObject())
            throw ModelError{QStringLiteral("item \"%1\" must be an object").arg(it.key())};
        const ModelFields item(it.value().toObject());
        ItemRule rule;
        rule.range = item.range(false);
        rule.enums = item.has(QStringLiteral("enums")) ? item.texts(QStringLiteral("enums")) : QStringList();
        rule.unit = item.text(QStringLiteral("unit"), QString());
        item.refuseUnread(QStringLiteral("item \"%1\"").arg(it.key()));
        rules.insert(it.key(), rule);
    }
    return rules;
}

void ItemRule::checkCells(const QMap<QString, ItemRule> &rules, const QVariantMap &cells, const QString &where)
{
    for (auto it = cells.cbegin(); it != cells.cend(); ++it) {
        if (!rules.contains(it.key()))
            throw ModelError{QStringLiteral("%1: no item \"%2\" in \"items\"").arg(where, it.key())};
        ModelFields::check(rules.value(it.key()).refusal(it.value()),
                           QStringLiteral("%1, item \"%2\"").arg(where, it.key()));
    }
}
