#ifndef SIMULATOR_ITEMRULE_H
#define SIMULATOR_ITEMRULE_H

#include "NumericRange.h"
#include "Outcome.h"

#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantMap>

/// The range and choices of one item of a map list or one cell column of a map of maps.
struct ItemRule
{
    NumericRange range;
    QStringList enums;
    QString unit;

    QString refusal(const QVariant &value) const;
    /// The lower (@p minimum) or upper end of the range of @p item, in a variant.
    Outcome limit(bool minimum, const QString &item) const;

    /// The rules of a model file's "items" object, by item name; throws ModelError.
    static QMap<QString, ItemRule> read(const QJsonObject &items);
    /// Fails unless every cell of @p cells has a rule in @p rules that accepts it; throws ModelError.
    static void checkCells(const QMap<QString, ItemRule> &rules, const QVariantMap &cells, const QString &where);
};

#endif
