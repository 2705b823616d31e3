#include "BulkModel.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

namespace BulkModel {

namespace {
const QStringList kinds{"int", "double", "bool", "enum", "string"};
const QJsonArray choices{"A", "B", "C"};
} // namespace

QString path(int index)
{
    return QStringLiteral("/Setup/Bulk/E%1").arg(index);
}

QString kind(int index)
{
    return kinds.at(index % kinds.size());
}

QVariant initialValue(int index)
{
    switch (index % kinds.size()) {
    case 0:
        return index;
    case 1:
        return double(index);
    case 2:
        return index % 2 == 0;
    case 3:
        return index % choices.size();
    default:
        return QStringLiteral("text %1").arg(index);
    }
}

bool write(const QString &fileName, int count)
{
    QJsonArray elements;
    for (int i = 0; i < count; ++i) {
        QJsonObject element{{"path", path(i)}, {"kind", kind(i)}};
        const QVariant value = initialValue(i);
        if (kind(i) == QLatin1String("int") || kind(i) == QLatin1String("double")) {
            element.insert(QStringLiteral("min"), 0);
            element.insert(QStringLiteral("max"), count);
        } else if (kind(i) == QLatin1String("enum")) {
            element.insert(QStringLiteral("choices"), choices);
        }
        element.insert(QStringLiteral("default"), QJsonValue::fromVariant(value));
        elements.append(element);
    }
    QFile model(fileName);
    return model.open(QIODevice::WriteOnly) &&
        model.write(QJsonDocument(QJsonObject{{"elements", elements}}).toJson(QJsonDocument::Compact)) > 0;
}

} // namespace BulkModel
