#include "SendableArguments_p.h"

#include "DBusCompat_p.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusSignature>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QVariantHash>
#include <QVariantList>
#include <QVariantMap>

#include <algorithm>

namespace SendableArguments {

namespace {

/// How deeply the containers of the complete type at @p pos nest; @p pos moves past it.
int nestingOf(const QByteArray &signature, int &pos, int depth)
{
    if (pos >= signature.size())
        return depth;
    const char code = signature.at(pos++);
    switch (code) {
    case 'a':
        return nestingOf(signature, pos, depth + 1);
    case 'v':
        return depth + 1;
    case '(':
    case '{': {
        int deepest = depth + 1;
        while (pos < signature.size() && signature.at(pos) != ')' && signature.at(pos) != '}')
            deepest = std::max(deepest, nestingOf(signature, pos, depth + 1));
        ++pos;
        return deepest;
    }
    default:
        return depth;
    }
}

/// How deeply the containers of a signature of complete types nest.
int nestingOf(const QByteArray &signature)
{
    int deepest = 0;
    int pos = 0;
    while (pos < signature.size())
        deepest = std::max(deepest, nestingOf(signature, pos, 0));
    return deepest;
}

/**
 * The first problem found in a value that QtDBus would meet inside a container, or a null
 * string. A problem at the top level of an argument, or in variants directly around it, is
 * left to QtDBus, which refuses it cleanly there, as it always has.
 */
class Inspection
{
public:
    QString problem;
    int deepest = 0;

    void inspect(const QVariant &value, int depth, bool inContainer)
    {
        if (!problem.isNull())
            return;
        deepest = std::max(deepest, depth);
        // Stop here rather than follow a caller's nesting as deep as it goes.
        if (deepest > maximumNesting)
            return;
        if (!value.isValid()) {
            found(QStringLiteral("it holds an invalid QVariant"), inContainer);
            return;
        }
        const int type = value.userType();
        if (type == qMetaTypeId<QDBusVariant>()) {
            inspect(value.value<QDBusVariant>().variant(), depth + 1, inContainer);
        } else if (type == QMetaType::QVariantList) {
            // av: the array, then each element's variant.
            deepest = std::max(deepest, depth + 1);
            for (const QVariant &element : value.toList())
                inspect(element, depth + 2, true);
        } else if (type == QMetaType::QVariantMap) {
            // a{sv}: the array, the entry, then each value's variant.
            deepest = std::max(deepest, depth + 2);
            for (const QVariant &entry : value.toMap())
                inspect(entry, depth + 3, true);
        } else if (type == QMetaType::QVariantHash) {
            deepest = std::max(deepest, depth + 2);
            for (const QVariant &entry : value.toHash())
                inspect(entry, depth + 3, true);
        } else if (type == qMetaTypeId<QDBusArgument>()) {
            const QString signature = value.value<QDBusArgument>().currentSignature();
            // QtDBus does not survive writing an empty one, at any level.
            if (signature.isEmpty())
                found(QStringLiteral("it holds an empty QDBusArgument"), true);
            else
                deepest = std::max(deepest, depth + nestingOf(signature.toLatin1()));
        } else if (type == qMetaTypeId<QDBusObjectPath>()) {
            if (value.value<QDBusObjectPath>().path().isEmpty())
                found(QStringLiteral("it holds an empty object path"), inContainer);
        } else if (type == qMetaTypeId<QDBusSignature>()) {
            if (value.value<QDBusSignature>().signature().isEmpty())
                found(QStringLiteral("it holds an empty signature"), inContainer);
        } else if (type == qMetaTypeId<QDBusUnixFileDescriptor>()) {
            if (!value.value<QDBusUnixFileDescriptor>().isValid())
                found(QStringLiteral("it holds an invalid file descriptor"), inContainer);
        } else {
            const char *signature = DBusCompat::signatureOf(type);
            if (!signature)
                found(QStringLiteral("it holds a value of type %1, which D-Bus cannot carry")
                          .arg(QString::fromLatin1(value.typeName())),
                      inContainer);
            else
                deepest = std::max(deepest, depth + nestingOf(QByteArray(signature)));
        }
    }

private:
    void found(const QString &text, bool inContainer)
    {
        if (inContainer)
            problem = text;
    }
};

} // namespace

QString whyNotSendable(const QString &member, const QList<QVariant> &args)
{
    for (int i = 0; i < args.size(); ++i) {
        Inspection inspection;
        inspection.inspect(args.at(i), 0, false);
        if (inspection.problem.isNull() && inspection.deepest > maximumNesting)
            inspection.problem = QStringLiteral("its values nest deeper than the bus allows");
        if (!inspection.problem.isNull())
            return QStringLiteral("Argument %1 of \"%2\" cannot be sent: %3")
                .arg(i + 1)
                .arg(member, inspection.problem);
    }
    return QString();
}

} // namespace SendableArguments
