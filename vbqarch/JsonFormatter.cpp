#include "JsonFormatter.h"

#include <QJsonDocument>
#include <QJsonObject>

QString JsonFormatter::getJson(QMap<QString, QVariant> map)
{
    const QJsonDocument document(QJsonObject::fromVariantMap(map));
    return QString::fromUtf8(document.toJson(QJsonDocument::Compact));
}
