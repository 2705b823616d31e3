#include "CallLog.h"

#include "SimCompat.h"
#include "Wire.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

bool CallLog::open(const QString &fileName, QString *error)
{
    m_file.setFileName(fileName);
    if (m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text))
        return true;
    *error = QStringLiteral("%1: %2").arg(fileName, m_file.errorString());
    return false;
}

static QJsonArray toJsonArray(const QVariantList &values)
{
    QJsonArray array;
    for (const QVariant &value : values)
        array.append(CallLog::toJson(value));
    return array;
}

QJsonValue CallLog::toJson(const QVariant &value)
{
    const QVariant plain = Wire::plain(value);
    const int type = SimCompat::typeId(plain);
    if (type == QMetaType::QVariantMap) {
        QJsonObject object;
        const QVariantMap map = plain.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            object.insert(it.key(), toJson(it.value()));
        return object;
    }
    if (type == QMetaType::QVariantList)
        return toJsonArray(plain.toList());
    if (type == QMetaType::QDateTime)
        return plain.toDateTime().toString(Qt::ISODateWithMs);
    return QJsonValue::fromVariant(plain);
}

void CallLog::record(const QDBusMessage &call, const Outcome &outcome, const Fault &fault, qint64 micros)
{
    if (!m_file.isOpen())
        return;
    QJsonObject answer;
    if (fault.kind == Fault::Silent || fault.kind == Fault::Drop || fault.kind == Fault::Restart) {
        answer.insert(QStringLiteral("kind"), QStringLiteral("none"));
        answer.insert(QStringLiteral("fault"), fault.kindName());
    } else if (outcome.isError()) {
        answer.insert(QStringLiteral("kind"), QStringLiteral("error"));
        answer.insert(QStringLiteral("name"), outcome.errorName);
        answer.insert(QStringLiteral("message"), outcome.errorMessage);
    } else {
        answer.insert(QStringLiteral("kind"), QStringLiteral("reply"));
        answer.insert(QStringLiteral("values"), toJsonArray(outcome.values));
    }
    if (fault.kind == Fault::Delay)
        answer.insert(QStringLiteral("delayMs"), fault.delayMs);
    const QJsonObject line{
        {QStringLiteral("time"), QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs)},
        {QStringLiteral("sender"), call.service()},
        {QStringLiteral("path"), call.path()},
        {QStringLiteral("interface"), call.interface()},
        {QStringLiteral("member"), call.member()},
        {QStringLiteral("signature"), call.signature()},
        {QStringLiteral("arguments"), toJsonArray(call.arguments())},
        {QStringLiteral("answer"), answer},
        {QStringLiteral("us"), micros},
    };
    m_file.write(QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n');
    m_file.flush();
}
