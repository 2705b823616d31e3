#include "HostileReplyGenerator.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusSignature>
#include <QDBusVariant>
#include <QDateTime>
#include <QDebug>
#include <QTimeZone>

#include <limits>
#include <utility>

namespace {

/// A structure (is).
struct NumberedText
{
    int number = 0;
    QString text;
};

QDBusArgument &operator<<(QDBusArgument &argument, const NumberedText &value)
{
    argument.beginStructure();
    argument << value.number << value.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, NumberedText &value)
{
    argument.beginStructure();
    argument >> value.number >> value.text;
    argument.endStructure();
    return argument;
}

/// An a{sv} that repeats keys, which a QMap cannot hold in Qt 6.
struct RepeatedKeys
{
    QList<QPair<QString, QVariant>> entries;
};

QDBusArgument &operator<<(QDBusArgument &argument, const RepeatedKeys &value)
{
    argument.beginMap(QMetaType::QString, qMetaTypeId<QDBusVariant>());
    for (const auto &entry : value.entries) {
        argument.beginMapEntry();
        argument << entry.first << QDBusVariant(entry.second);
        argument.endMapEntry();
    }
    argument.endMap();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, RepeatedKeys &value)
{
    argument.beginMap();
    value.entries.clear();
    while (!argument.atEnd()) {
        QString key;
        QDBusVariant content;
        argument.beginMapEntry();
        argument >> key >> content;
        argument.endMapEntry();
        value.entries.append({key, content.variant()});
    }
    argument.endMap();
    return argument;
}

const QString basicCodes = QStringLiteral("ybnqiuxtdsog");

} // namespace

Q_DECLARE_METATYPE(NumberedText)
Q_DECLARE_METATYPE(RepeatedKeys)

QString HostileAnswer::describe() const
{
    QString text;
    QDebug stream(&text);
    switch (answer.kind) {
    case ScriptedAnswer::Error:
        stream << "error" << answer.errorName << answer.errorMessage;
        break;
    default:
        stream << "return";
        for (const GeneratedValue &argument : arguments)
            stream << argument.signature;
        break;
    }
    return text;
}

HostileReplyGenerator::HostileReplyGenerator(std::uint32_t seed)
    : m_random(seed)
{
}

void HostileReplyGenerator::registerTypes()
{
    qDBusRegisterMetaType<NumberedText>();
    qDBusRegisterMetaType<QList<NumberedText>>();
    qDBusRegisterMetaType<QMap<int, QString>>();
    qDBusRegisterMetaType<QList<QList<int>>>();
    qDBusRegisterMetaType<RepeatedKeys>();
    qDBusRegisterMetaType<QMap<QString, QString>>();
    qDBusRegisterMetaType<QList<double>>();
}

int HostileReplyGenerator::uniform(int low, int high)
{
    return std::uniform_int_distribution<int>(low, high)(m_random);
}

bool HostileReplyGenerator::chance(int percent)
{
    return uniform(1, 100) <= percent;
}

int HostileReplyGenerator::count()
{
    // Mostly short, sometimes empty, now and then large.
    if (chance(3))
        return uniform(500, 3000);
    return uniform(0, 4);
}

QString HostileReplyGenerator::text()
{
    static const QStringList pieces = {QStringLiteral(""),
                                       QStringLiteral("x"),
                                       QStringLiteral("\""),
                                       QStringLiteral("\\"),
                                       QStringLiteral("\n"),
                                       QStringLiteral("Parser Error: "),
                                       QStringLiteral("\u00e9\u4e2d"),
                                       QStringLiteral("%1"),
                                       QStringLiteral("12"),
                                       QStringLiteral("-3.5"),
                                       QStringLiteral("true")};
    QString result;
    const int length = chance(2) ? uniform(1000, 20000) : uniform(0, 3);
    for (int i = 0; i < length; ++i)
        result += pieces.at(uniform(0, pieces.size() - 1));
    return result;
}

GeneratedValue HostileReplyGenerator::basicValue()
{
    return basicValue(basicCodes.at(uniform(0, basicCodes.size() - 1)).toLatin1());
}

GeneratedValue HostileReplyGenerator::basicValue(char code)
{
    GeneratedValue generated;
    generated.signature = QString(QLatin1Char(code));
    switch (code) {
    case 'y':
        generated.value = QVariant::fromValue(static_cast<uchar>(uniform(0, 255)));
        break;
    case 'b':
        generated.value = chance(50);
        break;
    case 'n':
        generated.value = QVariant::fromValue(static_cast<short>(uniform(-32768, 32767)));
        break;
    case 'q':
        generated.value = QVariant::fromValue(static_cast<ushort>(uniform(0, 65535)));
        break;
    case 'i':
        generated.value = chance(20) ? (chance(50) ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max())
                                     : uniform(-1000, 1000);
        break;
    case 'u':
        generated.value = static_cast<uint>(m_random());
        break;
    case 'x':
        generated.value = static_cast<qlonglong>((static_cast<quint64>(m_random()) << 32) | m_random());
        break;
    case 't':
        generated.value = static_cast<qulonglong>((static_cast<quint64>(m_random()) << 32) | m_random());
        break;
    case 'd': {
        static const double specials[] = {0.0,
                                          -0.0,
                                          1e308,
                                          -1e-308,
                                          std::numeric_limits<double>::infinity(),
                                          -std::numeric_limits<double>::infinity()};
        generated.value = chance(30) ? specials[uniform(0, 5)] : uniform(-100000, 100000) / 8.0;
        break;
    }
    case 's':
        generated.value = text();
        break;
    case 'o':
        generated.value = QVariant::fromValue(
            QDBusObjectPath(chance(50) ? QStringLiteral("/") : QStringLiteral("/a/b%1").arg(uniform(0, 9))));
        break;
    case 'g':
        generated.value =
            QVariant::fromValue(QDBusSignature(chance(50) ? QStringLiteral("i") : QStringLiteral("a{sv}")));
        break;
    }
    return generated;
}

GeneratedValue HostileReplyGenerator::variantOf(const GeneratedValue &inner)
{
    GeneratedValue generated;
    generated.signature = QStringLiteral("v");
    generated.value = QVariant::fromValue(QDBusVariant(inner.value));
    generated.elements.append(inner);
    return generated;
}

GeneratedValue HostileReplyGenerator::container(const QString &signature, int depth, int maxDepth)
{
    GeneratedValue generated;
    generated.signature = signature;
    const int size = count();
    // Large containers stay flat: the size is what they try.
    for (int i = 0; i < size; ++i)
        generated.elements.append(size > 4 ? basicValue() : anyValue(depth, maxDepth));
    return generated;
}

GeneratedValue HostileReplyGenerator::arrayOfVariants(int depth, int maxDepth)
{
    GeneratedValue generated = container(QStringLiteral("av"), depth + 2, maxDepth);
    QVariantList list;
    for (const GeneratedValue &element : std::as_const(generated.elements))
        list.append(element.value);
    generated.value = list;
    return generated;
}

GeneratedValue HostileReplyGenerator::dictionary(int depth, int maxDepth)
{
    GeneratedValue generated = container(QStringLiteral("a{sv}"), depth + 3, maxDepth);
    RepeatedKeys entries;
    for (int i = 0; i < generated.elements.size(); ++i) {
        const QString key = chance(30) ? QStringLiteral("k") : QStringLiteral("k%1").arg(i);
        entries.entries.append({key, generated.elements.at(i).value});
        generated.keys.append(key);
    }
    generated.value = QVariant::fromValue(entries);
    return generated;
}

GeneratedValue HostileReplyGenerator::fixedComplex()
{
    GeneratedValue generated;
    switch (uniform(0, 8)) {
    case 0: {
        QStringList list;
        const int size = count();
        for (int i = 0; i < size; ++i)
            list.append(text());
        generated.value = list;
        generated.signature = QStringLiteral("as");
        break;
    }
    case 1:
        generated.value = QByteArray(chance(5) ? uniform(10000, 200000) : uniform(0, 8), 'z');
        generated.signature = QStringLiteral("ay");
        break;
    case 2:
        generated.value = QVariant::fromValue(NumberedText{uniform(-5, 5), text()});
        generated.signature = QStringLiteral("(is)");
        break;
    case 3:
        generated.value = QVariant::fromValue(QList<NumberedText>{{1, text()}, {2, text()}});
        generated.signature = QStringLiteral("a(is)");
        break;
    case 4:
        generated.value = QVariant::fromValue(QMap<int, QString>{{1, text()}, {-1, text()}});
        generated.signature = QStringLiteral("a{is}");
        break;
    case 5:
        generated.value = QVariant::fromValue(QList<QList<int>>{{}, {1, 2}});
        generated.signature = QStringLiteral("aai");
        break;
    case 6:
        generated.value = QVariant::fromValue(QMap<QString, QString>{{QStringLiteral("a"), text()}});
        generated.signature = QStringLiteral("a{ss}");
        break;
    case 7:
        generated.value = QVariant::fromValue(QList<double>{1.5, -2.0});
        generated.signature = QStringLiteral("ad");
        break;
    default:
        generated.value = QDateTime(QDate(2000 + uniform(0, 50), uniform(1, 12), uniform(1, 28)),
                                    QTime(uniform(0, 23), uniform(0, 59)), Qt::UTC);
        generated.signature = QStringLiteral("((iii)(iiii)i)");
        break;
    }
    return generated;
}

GeneratedValue HostileReplyGenerator::anyValue(int depth, int maxDepth)
{
    if (depth >= maxDepth)
        return basicValue();
    const int pick = uniform(1, 100);
    if (pick <= 35)
        return basicValue();
    if (pick <= 60)
        return variantOf(anyValue(depth + 1, maxDepth));
    if (pick <= 75)
        return arrayOfVariants(depth, maxDepth);
    if (pick <= 90)
        return dictionary(depth, maxDepth);
    return fixedComplex();
}

GeneratedValue HostileReplyGenerator::valueOf(const QString &signature, int maxDepth)
{
    if (signature.size() == 1 && basicCodes.contains(signature))
        return basicValue(signature.at(0).toLatin1());
    if (signature == QLatin1String("v"))
        return variantOf(anyValue(1, maxDepth));
    if (signature == QLatin1String("av"))
        return arrayOfVariants(0, maxDepth);
    if (signature == QLatin1String("a{sv}"))
        return dictionary(0, maxDepth);
    if (signature == QLatin1String("as")) {
        GeneratedValue generated;
        generated.value = QStringList{text(), text()};
        generated.signature = signature;
        return generated;
    }
    GeneratedValue generated;
    do
        generated = fixedComplex();
    while (generated.signature != signature);
    return generated;
}

HostileAnswer HostileReplyGenerator::answer(const QString &expectedSignature, Shape shape)
{
    static const QStringList errorNames = {
        QStringLiteral("com.velk.mqx.Error.Failed"), QStringLiteral("org.freedesktop.DBus.Error.UnknownMethod"),
        QStringLiteral("org.freedesktop.DBus.Error.InvalidSignature"), QStringLiteral("a.b")};
    HostileAnswer hostile;
    const int pick = shape == Shape::Error ? 1
        : shape == Shape::Empty            ? 15
        : shape == Shape::WellTyped        ? 100
                                           : uniform(1, 100);
    if (pick <= 10) {
        hostile.answer = ScriptedAnswer::error(errorNames.at(uniform(0, errorNames.size() - 1)), text());
        return hostile;
    }
    if (pick <= 16) {
        hostile.answer = ScriptedAnswer::reply();
        return hostile;
    }
    const int maxDepth = uniform(0, 32);
    const int arguments = chance(80) ? 1 : uniform(2, 3);
    for (int i = 0; i < arguments; ++i) {
        if (i == 0 && !expectedSignature.isEmpty() && (shape == Shape::WellTyped || chance(40)))
            hostile.arguments.append(valueOf(expectedSignature, maxDepth));
        else
            hostile.arguments.append(anyValue(0, maxDepth));
    }
    QList<QVariant> values;
    for (const GeneratedValue &argument : hostile.arguments)
        values.append(argument.value);
    hostile.answer = ScriptedAnswer::reply(values);
    return hostile;
}
