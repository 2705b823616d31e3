#ifndef TESTS_WIRETEXT_H
#define TESTS_WIRETEXT_H

// A readable, comparable text of what crossed the bus. QDBusVariant and QDBusArgument
// values have no usable operator==, so calls and replies are compared through these
// texts instead: "i 5", "s \"x\"", "v(d 2.5)", "av [v(i 1)]", "a{sv} {s \"a\": v(b true)}".

#include "FakeMeasApplication.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVariant>
#include <QDebug>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QtTest/QTest>

inline QString wireText(const QVariant &value);

/// Reads a copy of @p argument, which is left where it stands.
inline QString wireText(const QDBusArgument &argument)
{
    const QDBusArgument copy = argument;
    const QString signature = copy.currentSignature();
    QStringList items;
    switch (copy.currentType()) {
    case QDBusArgument::BasicType:
    case QDBusArgument::VariantType:
        return wireText(copy.asVariant());
    case QDBusArgument::ArrayType:
        copy.beginArray();
        while (!copy.atEnd())
            items.append(wireText(copy.asVariant()));
        copy.endArray();
        return signature + QStringLiteral(" [") + items.join(QStringLiteral(", ")) + QLatin1Char(']');
    case QDBusArgument::MapType:
        copy.beginMap();
        while (!copy.atEnd()) {
            copy.beginMapEntry();
            const QString key = wireText(copy.asVariant());
            items.append(key + QStringLiteral(": ") + wireText(copy.asVariant()));
            copy.endMapEntry();
        }
        copy.endMap();
        return signature + QStringLiteral(" {") + items.join(QStringLiteral(", ")) + QLatin1Char('}');
    case QDBusArgument::StructureType:
        copy.beginStructure();
        while (!copy.atEnd())
            items.append(wireText(copy.asVariant()));
        copy.endStructure();
        return signature + QStringLiteral(" (") + items.join(QStringLiteral(", ")) + QLatin1Char(')');
    case QDBusArgument::MapEntryType:
    case QDBusArgument::UnknownType:
        break;
    }
    return QStringLiteral("<unreadable ") + signature + QLatin1Char('>');
}

inline QString wireText(const QVariant &value)
{
    const int type = value.userType();
    if (type == qMetaTypeId<QDBusVariant>())
        return QStringLiteral("v(") + wireText(qvariant_cast<QDBusVariant>(value).variant()) + QLatin1Char(')');
    if (type == qMetaTypeId<QDBusArgument>())
        return wireText(qvariant_cast<QDBusArgument>(value));
    if (type == qMetaTypeId<QDBusObjectPath>())
        return QStringLiteral("o ") + qvariant_cast<QDBusObjectPath>(value).path();
    switch (type) {
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("b true") : QStringLiteral("b false");
    case QMetaType::UChar:
        return QStringLiteral("y ") + QString::number(value.toUInt());
    case QMetaType::Short:
        return QStringLiteral("n ") + QString::number(value.toInt());
    case QMetaType::UShort:
        return QStringLiteral("q ") + QString::number(value.toUInt());
    case QMetaType::Int:
        return QStringLiteral("i ") + QString::number(value.toInt());
    case QMetaType::UInt:
        return QStringLiteral("u ") + QString::number(value.toUInt());
    case QMetaType::LongLong:
        return QStringLiteral("x ") + QString::number(value.toLongLong());
    case QMetaType::ULongLong:
        return QStringLiteral("t ") + QString::number(value.toULongLong());
    case QMetaType::Double:
        return QStringLiteral("d ") + QString::number(value.toDouble());
    case QMetaType::QString:
        return QStringLiteral("s \"") + value.toString() + QLatin1Char('"');
    case QMetaType::QStringList:
        return QStringLiteral("as [\"") + value.toStringList().join(QStringLiteral("\", \"")) + QStringLiteral("\"]");
    case QMetaType::QByteArray:
        return QStringLiteral("ay ") + QString::fromLatin1(value.toByteArray().toHex());
    default:
        break;
    }
    return QStringLiteral("<not a wire value: ") + QString::fromLatin1(value.typeName()) + QLatin1Char('>');
}

inline QStringList wireTexts(const QList<QVariant> &values)
{
    QStringList texts;
    for (const QVariant &value : values)
        texts.append(wireText(value));
    return texts;
}

/// The message of QtDBus's own error for a reply of @p value where an R was expected.
template<typename R>
QString replyTypeError(const QVariant &value)
{
    const QDBusMessage call = QDBusMessage::createMethodCall(QStringLiteral("com.velk.mqx.app.local"),
                                                             QStringLiteral("/"), QString(), QStringLiteral("get"));
    const QDBusReply<R> reply(call.createReply(value));
    return reply.error().message();
}

#endif
