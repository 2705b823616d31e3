#include "DBusConnector.h"
#include "FakeMeasApplication.h"
#include "HostileReplyGenerator.h"
#include "LogCapture.h"
#include "ProxyClasses.h"
#include "RemoteCommandInterface.h"
#include "SlotInvocation.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QRandomGenerator>
#include <QtTest/QTest>

#include <cstdio>
#include <functional>
#include <map>
#include <memory>

namespace {

const QString path = QStringLiteral("/Element");

/// What the caller saw of a reply of T: validity, value and error.
template<typename T>
Seen seenOfReply(const void *result)
{
    return seenOf(*static_cast<const QDBusReply<T> *>(result));
}

/// What the caller saw of a plain value of T.
template<typename T>
Seen seenOfValue(const void *result)
{
    return seenOf(*static_cast<const T *>(result));
}

template<>
Seen seenOfValue<int>(const void *result)
{
    return {true, *static_cast<const int *>(result), std::nullopt};
}

/// How each result type is read, what the operation expects on the bus and what it gives after a failure.
struct ResultKind
{
    std::function<Seen(const void *)> read;
    QString signature;
    QVariant empty;
    /// Qt's own message for a failed reply read as this kind, for the report lines.
    std::function<QString(const QDBusMessage &)> failureMessage;
};

template<typename R>
QString failureOf(const QDBusMessage &reply)
{
    return QDBusReply<R>(reply).error().message();
}

const std::map<QByteArray, ResultKind> &resultKinds()
{
    static const std::map<QByteArray, ResultKind> kinds = {
        {"QDBusReply<int>", {seenOfReply<int>, QStringLiteral("i"), 0, failureOf<int>}},
        {"QDBusReply<bool>", {seenOfReply<bool>, QStringLiteral("b"), false, failureOf<bool>}},
        {"QDBusReply<double>", {seenOfReply<double>, QStringLiteral("d"), 0.0, failureOf<double>}},
        {"QDBusReply<QString>", {seenOfReply<QString>, QStringLiteral("s"), QString(), failureOf<QString>}},
        {"QDBusReply<QStringList>",
         {seenOfReply<QStringList>, QStringLiteral("as"), QStringList(), failureOf<QStringList>}},
        {"QDBusReply<QDateTime>",
         {seenOfReply<QDateTime>, QStringLiteral("((iii)(iiii)i)"), QDateTime(), failureOf<QDateTime>}},
        {"QDBusReply<void>", {seenOfReply<void>, QString(), QVariant(), failureOf<void>}},
        {"QVariant", {seenOfValue<QVariant>, QStringLiteral("v"), QVariant(), failureOf<QDBusVariant>}},
        {"QString", {seenOfValue<QString>, QStringLiteral("s"), QString(), failureOf<QString>}},
        {"QStringList", {seenOfValue<QStringList>, QStringLiteral("as"), QStringList(), failureOf<QStringList>}},
        {"QList<QVariant>", {seenOfValue<QVariantList>, QStringLiteral("av"), QVariantList(), failureOf<QVariantList>}},
        {"QVariantList", {seenOfValue<QVariantList>, QStringLiteral("av"), QVariantList(), failureOf<QVariantList>}},
        {"QList<int>",
         {seenOfValue<QList<int>>, QStringLiteral("av"), QVariant::fromValue(QList<int>()), failureOf<QVariantList>}},
        {"SettingsMap", {seenOfValue<SettingsMap>, QStringLiteral("a{sv}"), SettingsMap(), failureOf<SettingsMap>}},
        {"SettingsStringMap",
         {seenOfValue<SettingsStringMap>, QStringLiteral("a{sv}"), QVariant::fromValue(SettingsStringMap()),
          failureOf<SettingsMap>}},
        {"int", {seenOfValue<int>, QStringLiteral("i"), 0, failureOf<int>}},
    };
    return kinds;
}

/// The operations that log from the proxy's last error: their literal's stem and form.
const std::map<QString, bool> &lastErrorLoggers()
{
    // true: three lines (error, interface, path); false: the error line alone.
    static const std::map<QString, bool> loggers = {
        {QStringLiteral("SetupIntInterface::getValue()"), true},
        {QStringLiteral("SetupIntInterface::getString()"), false},
        {QStringLiteral("SetupStringInterface::getValue()"), true},
    };
    return loggers;
}

/// The opening of the one report line each plain-value getter writes after a failure.
const std::map<QString, QString> &reportOpenings()
{
    auto prefixed = [](const char *className, const char *literal) {
        return quoted(QString::fromLatin1(className)) + QLatin1Char(' ') + QString::fromLatin1(literal);
    };
    static const std::map<QString, QString> openings = {
        {QStringLiteral("SetupArrayItemInterface::getValue(int,int)"),
         QStringLiteral("SetupArrayItemInterface::getValue(): ")},
        {QStringLiteral("SetupDevDataInterface::getValue()"), QStringLiteral("SetupDevDataInterface::getValue(): ")},
        {QStringLiteral("SetupDevDataInterface::getString()"), QStringLiteral("SetupDevDataInterface::getValue(): ")},
        {QStringLiteral("SetupMapItemInterface::getValue(QString)"),
         QStringLiteral("SetupMapItemInterface::getValue(): ")},
        {QStringLiteral("SetupMapItemInterface::getBaseElement()"),
         QStringLiteral("SetupMapItemInterface::getBaseElement(): ")},
        {QStringLiteral("SetupMapListInterface::getValue(int)"), QStringLiteral("SetupMapListInterface::getValue(): ")},
        {QStringLiteral("SetupMapListInterface::getValue(int,QString)"),
         QStringLiteral("SetupMapListInterface::getValue(): ")},
        {QStringLiteral("SetupMapListInterface::getStringValue(int,QString)"),
         QStringLiteral("SetupMapListInterface::getStringValue(): ")},
        {QStringLiteral("SetupMapListInterface::getString(int)"),
         QStringLiteral("SetupMapListInterface::getString(): ")},
        {QStringLiteral("SetupMapListInterface::getMin(int,QString)"),
         QStringLiteral("SetupMapListInterface::getMin(): ")},
        {QStringLiteral("SetupMapListInterface::getMax(int,QString)"),
         QStringLiteral("SetupMapListInterface::getMax(): ")},
        {QStringLiteral("SetupMapMapItemInterface::getAllKeys(QString)"),
         QStringLiteral("SetupMapMapItemInterface::getAllKeys(): ")},
        {QStringLiteral("SetupMapMapItemInterface::getValue(QString)"),
         QStringLiteral("SetupMapMapItemInterface::getValue(): ")},
        {QStringLiteral("SetupMapMapItemInterface::getValue(QString,QString)"),
         QStringLiteral("SetupMapMapItemInterface::getValue(): ")},
        {QStringLiteral("SetupMapMapItemInterface::getStringValue(QString,QString)"),
         QStringLiteral("SetupMapMapItemInterface::getStringValue(): ")},
        {QStringLiteral("SetupMapMapItemInterface::getStringMap(QString)"),
         QStringLiteral("SetupMapMapItemInterface::getStringMap(): ")},
        {QStringLiteral("SetupMapMapItemInterface::getMin(QString,QString)"),
         QStringLiteral("SetupMapMapItemInterface::getMin(): ")},
        {QStringLiteral("SetupMapMapItemInterface::getMax(QString,QString)"),
         QStringLiteral("SetupMapMapItemInterface::getMax(): ")},
        {QStringLiteral("SetupMapMapItemInterface::getBaseElement()"),
         QStringLiteral("SetupMapMapItemInterface::getBaseElement(): ")},
        {QStringLiteral("SetupMapMapItemInterface::getString(QString)"),
         QStringLiteral("SetupMapMapItemInterface::getString(): ")},
        {QStringLiteral("ResultIntInterface::getValueComp()"), prefixed("ResultIntInterface::", "getValueComp(): ")},
        {QStringLiteral("ResultIntInterface::getMinValueComp()"),
         prefixed("ResultIntInterface::", "getMinValueComp(): ")},
        {QStringLiteral("ResultIntInterface::getMaxValueComp()"),
         prefixed("ResultIntInterface::", "getMinValueComp(): ")},
        {QStringLiteral("ResultIntInterface::getStringComp()"),
         prefixed("ResultIntInterface::", "getMinValueComp(): ")},
        {QStringLiteral("ResultIntInterface::getMinStringComp()"),
         prefixed("ResultIntInterface::", "getMinValueComp(): ")},
        {QStringLiteral("ResultIntInterface::getMaxStringComp()"),
         prefixed("ResultIntInterface::", "getMaxStringComp(): ")},
        {QStringLiteral("ResultDoubleInterface::getValueComp()"),
         prefixed("ResultDoubleInterface::", "getValueComp(): ")},
        {QStringLiteral("ResultDoubleInterface::getMinValueComp()"),
         prefixed("ResultDoubleInterface::", "getMinValueComp(): ")},
        {QStringLiteral("ResultDoubleInterface::getMaxValueComp()"),
         prefixed("ResultDoubleInterface::", "getMaxValueComp(): ")},
        {QStringLiteral("ResultDoubleInterface::getStringComp()"),
         prefixed("ResultDoubleInterface::", "getStringComp(): ")},
        {QStringLiteral("ResultDoubleInterface::getMinStringComp()"),
         prefixed("ResultDoubleInterface::", "getMinStringComp(): ")},
        {QStringLiteral("ResultDoubleInterface::getMaxStringComp()"),
         prefixed("ResultDoubleInterface::", "getMaxStringComp(): ")},
        {QStringLiteral("ResultBoolInterface::getValueComp()"), prefixed("ResultBoolInterface::", "getValueComp(): ")},
        {QStringLiteral("ResultBoolInterface::getMinValueComp()"),
         prefixed("ResultBoolInterface::", "getMinValueComp(): ")},
        {QStringLiteral("ResultBoolInterface::getMaxValueComp()"),
         prefixed("ResultBoolInterface::", "getMaxValueComp(): ")},
        {QStringLiteral("ResultBoolInterface::getStringComp()"),
         prefixed("ResultBoolInterface::", "getStringComp(): ")},
        {QStringLiteral("ResultBoolInterface::getMinStringComp()"),
         prefixed("ResultBoolInterface::", "getMinStringComp(): ")},
        {QStringLiteral("ResultBoolInterface::getMaxStringComp()"),
         prefixed("ResultBoolInterface::", "getMaxStringComp(): ")},
        {QStringLiteral("ResultEnumInterface::getValueComp()"),
         QStringLiteral("ResultEnumInterface::getValueComp(): ")},
        {QStringLiteral("ResultIntArrayInterface::getValues()"),
         QStringLiteral("ResultIntArrayInterface::getValues(): ")},
        {QStringLiteral("ResultIntArrayInterface::getString()"),
         QStringLiteral("ResultIntArrayInterface::getString(): ")},
        {QStringLiteral("ResultVarArrayInterface::getValues()"),
         QStringLiteral("ResultVarArrayInterface::getValues(): ")},
        {QStringLiteral("ResultVarArrayInterface::getValuesStatus()"),
         QStringLiteral("ResultIntArrayInterface::getValuesStatus(): ")},
        {QStringLiteral("ResultVarArrayInterface::getValueComp()"),
         QStringLiteral("ResultVarArrayInterface::getValueComp()")},
        {QStringLiteral("ResultVarArrayInterface::getValue(int)"),
         QStringLiteral("ResultVarArrayInterface::getValue(): ")},
        {QStringLiteral("ResultVarArrayInterface::getValueStatus(int)"),
         QStringLiteral("ResultVarArrayInterface::getValueStatus(): ")},
        {QStringLiteral("ResultVarArrayInterface::getLowerLimit()"),
         QStringLiteral("ResultVarArrayInterface::getLowerLimit(): ")},
        {QStringLiteral("ResultVarArrayInterface::getUpperLimit()"),
         QStringLiteral("ResultVarArrayInterface::getUpperLimit(): ")},
    };
    return openings;
}

/// One operation of one proxy class, as the hostile cases run it.
struct Operation
{
    QString name;
    int proxyIndex;
    QMetaMethod method;
    ResultKind kind;
    ProxyOperation run;
};

/// The slot @p method called by name with default arguments, its result read as @p kind says.
ProxyOperation bySlot(const QMetaMethod &method, const ResultKind &kind)
{
    return [method, read = kind.read](QDBusAbstractInterface &proxy) {
        SlotInvocation invocation(method);
        if (!invocation.invoke(&proxy))
            return Seen{false, QStringLiteral("<not callable>"), std::nullopt};
        return read ? read(invocation.result()) : Seen{};
    };
}

bool isBasic(const QString &signature)
{
    return signature.size() == 1 && QStringLiteral("ybnqiuxtdsog").contains(signature);
}

/// Whether @p received is what a receiver must find of @p sent inside a variant.
bool matches(const QVariant &received, const GeneratedValue &sent)
{
    if (sent.signature == QLatin1String("v")) {
        return received.userType() == qMetaTypeId<QDBusVariant>() &&
            matches(received.value<QDBusVariant>().variant(), sent.elements.first());
    }
    if (sent.signature == QLatin1String("o"))
        return received.userType() == qMetaTypeId<QDBusObjectPath>() &&
            received.value<QDBusObjectPath>().path() == sent.value.value<QDBusObjectPath>().path();
    if (sent.signature == QLatin1String("g"))
        return received.userType() == qMetaTypeId<QDBusSignature>() &&
            received.value<QDBusSignature>().signature() == sent.value.value<QDBusSignature>().signature();
    if (isBasic(sent.signature) || sent.signature == QLatin1String("as") || sent.signature == QLatin1String("ay"))
        return received.userType() == sent.value.userType() && received == sent.value;
    // Structured values stay QDBusArguments for the caller to read.
    return received.userType() == qMetaTypeId<QDBusArgument>() &&
        received.value<QDBusArgument>().currentSignature() == sent.signature;
}

/// Why the list @p received is not the contents of @p sent, or a null string.
QString listMismatch(const QVariantList &received, const GeneratedValue &sent)
{
    if (received.size() != sent.elements.size())
        return QStringLiteral("%1 elements instead of %2").arg(received.size()).arg(sent.elements.size());
    for (int i = 0; i < received.size(); ++i) {
        if (!matches(received.at(i), sent.elements.at(i)))
            return QStringLiteral("element %1 differs").arg(i);
    }
    return QString();
}

/// The entries of @p sent under @p key, the last one sent first, as a multi-map hands them out.
QList<GeneratedValue> entriesUnder(const GeneratedValue &sent, const QString &key)
{
    QList<GeneratedValue> entries;
    for (int i = sent.keys.size() - 1; i >= 0; --i) {
        if (sent.keys.at(i) == key)
            entries.append(sent.elements.at(i));
    }
    return entries;
}

QStringList distinctKeys(const GeneratedValue &sent)
{
    QStringList keys = sent.keys;
    keys.removeDuplicates();
    std::sort(keys.begin(), keys.end());
    return keys;
}

QString mapMismatch(const SettingsMap &received, const GeneratedValue &sent)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    // A repeated key yields one entry per arrival.
    const int expectedSize = sent.keys.size();
#else
    // A repeated key keeps the value that arrived last.
    const int expectedSize = distinctKeys(sent).size();
#endif
    if (received.size() != expectedSize)
        return QStringLiteral("%1 entries instead of %2").arg(received.size()).arg(expectedSize);
    for (const QString &key : distinctKeys(sent)) {
        const QList<GeneratedValue> entries = entriesUnder(sent, key);
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
        QVariantList values;
        // find() gives the last arrival; the earlier ones follow it.
        for (auto entry = received.constFind(key); entry != received.constEnd() && entry.key() == key; ++entry)
            values.append(entry.value());
#else
        const QVariantList values = {received.value(key)};
#endif
        for (int i = 0; i < values.size(); ++i) {
            if (!matches(values.at(i), entries.at(i)))
                return QStringLiteral("the value under %1 differs").arg(key);
        }
    }
    return QString();
}

QString stringMapMismatch(const SettingsStringMap &received, const GeneratedValue &sent)
{
    if (received.keys() != distinctKeys(sent))
        return QStringLiteral("other keys");
    for (const QString &key : distinctKeys(sent)) {
        const GeneratedValue last = entriesUnder(sent, key).first();
        if (isBasic(last.signature) && last.signature != QLatin1String("o") && last.signature != QLatin1String("g") &&
            received.value(key) != last.value.toString())
            return QStringLiteral("the text under %1 differs").arg(key);
    }
    return QString();
}

QString statusMismatch(const QList<int> &received, const GeneratedValue &sent)
{
    if (received.size() != sent.elements.size())
        return QStringLiteral("%1 statuses instead of %2").arg(received.size()).arg(sent.elements.size());
    for (int i = 0; i < received.size(); ++i) {
        const GeneratedValue &element = sent.elements.at(i);
        if (isBasic(element.signature) && received.at(i) != element.value.toInt())
            return QStringLiteral("status %1 differs").arg(i);
    }
    return QString();
}

/// Why the accepted value @p outcome is not what @p sent described, or a null string.
QString valueMismatch(const Operation &operation, const Seen &outcome, const GeneratedValue &sent)
{
    const QByteArray type = operation.method.typeName();
    if (type == "QVariant")
        return matches(outcome.value, sent.elements.first()) ? QString() : QStringLiteral("another value");
    if (type == "QList<QVariant>" || type == "QVariantList")
        return listMismatch(outcome.value.toList(), sent);
    if (type == "QList<int>")
        return statusMismatch(outcome.value.value<QList<int>>(), sent);
    if (type == "SettingsMap")
        return mapMismatch(outcome.value.toMap(), sent);
    if (type == "SettingsStringMap")
        return stringMapMismatch(outcome.value.value<SettingsStringMap>(), sent);
    return outcome.value == sent.value ? QString() : QStringLiteral("another value");
}

/// The seed of this run: the environment's, or one drawn once for the whole run.
quint32 seedFromEnvironment()
{
    static const quint32 seed = [] {
        bool ok = false;
        const quint32 given = qEnvironmentVariable("DBUSINTERFACES_HOSTILE_SEED").toUInt(&ok);
        return ok ? given : QRandomGenerator::global()->generate();
    }();
    return seed;
}

int casesFromEnvironment()
{
    bool ok = false;
    const int cases = qEnvironmentVariable("DBUSINTERFACES_HOSTILE_CASES").toInt(&ok);
    return ok && cases > 0 ? cases : 2000;
}

} // namespace

/**
 * Whatever an application answers, every operation of every proxy class gives the value it
 * describes or its empty value, writes exactly its described lines, and never crashes.
 * DBUSINTERFACES_HOSTILE_SEED and DBUSINTERFACES_HOSTILE_CASES choose the cases.
 */
class tst_HostileReplies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void everyOperationGivesTheDescribedValueOrItsEmptyValueWithItsLinesWhateverTheAnswer();
    void theRemoteCommandGivesTheAnswerOrANullStringWhateverTheAnswer();

private:
    QString checkCase(const Operation &operation, const HostileAnswer &hostile);
    QString checkRemoteCommand(RemoteCommandInterface &remote, const HostileAnswer &hostile);
    QList<LogLine> expectedLines(const Operation &operation, const HostileAnswer &hostile, bool accepted,
                                 QDBusAbstractInterface &proxy);

    std::unique_ptr<FakeMeasApplication> m_fake;
    std::vector<std::unique_ptr<QDBusAbstractInterface>> m_proxies;
    std::vector<Operation> m_operations;
};

void tst_HostileReplies::initTestCase()
{
    verifyProxyClassesAreThoseOfTheKindTable();
    registerOperationTypes();
    HostileReplyGenerator::registerTypes();
    m_fake.reset(new FakeMeasApplication);
    for (const KindProxyClass &proxyClass : allProxyClasses()) {
        m_proxies.emplace_back(proxyClass.make(m_fake->service(), path, nullptr));
        const QMetaObject &meta = *proxyClass.metaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            const QMetaMethod method = meta.method(i);
            // The remote command goes through the connector and reads its answer its own way.
            if (method.methodType() != QMetaMethod::Slot || method.access() != QMetaMethod::Public ||
                (method.attributes() & QMetaMethod::Cloned) || method.name() == "executeCommand")
                continue;
            const auto kind = resultKinds().find(QByteArray(method.typeName()));
            const QString name = QString::fromLatin1(proxyClass.name) + QLatin1String("::") +
                QString::fromLatin1(method.methodSignature());
            QVERIFY2(SlotInvocation(method).complete(), qPrintable(name + QLatin1String(" cannot be called by name")));
            if (method.returnType() == QMetaType::Void) {
                m_operations.push_back({name, int(m_proxies.size()) - 1, method, ResultKind(), bySlot(method, {})});
                continue;
            }
            QVERIFY2(kind != resultKinds().end(), qPrintable(name + QLatin1String(" returns an unknown type")));
            m_operations.push_back(
                {name, int(m_proxies.size()) - 1, method, kind->second, bySlot(method, kind->second)});
        }
    }
}

void tst_HostileReplies::cleanupTestCase()
{
    m_proxies.clear();
    m_fake.reset();
    DBusConnector::releaseInstance();
}

QList<LogLine> tst_HostileReplies::expectedLines(const Operation &operation, const HostileAnswer &hostile,
                                                 bool accepted, QDBusAbstractInterface &proxy)
{
    const auto logger = lastErrorLoggers().find(operation.name);
    if (logger != lastErrorLoggers().end()) {
        // Only an error reply sets the last error; a wrong type does not.
        if (!hostile.isError())
            return {};
        const QString stem = operation.name;
        QStringList lines{stem + QStringLiteral(" Error!  ") + quoted(hostile.answer.errorMessage)};
        if (logger->second) {
            lines.append(stem + QStringLiteral(" Interface  ") + quoted(proxy.interface()));
            lines.append(stem + QStringLiteral(" Path  ") + quoted(proxy.path()));
        }
        return debugLines(lines);
    }
    const auto opening = reportOpenings().find(operation.name);
    if (opening == reportOpenings().end() || accepted)
        return {};
    // The same answer read by Qt's own rules gives the message the report quotes.
    const QDBusMessage raw = proxy.connection().call(
        QDBusMessage::createMethodCall(proxy.service(), proxy.path(), proxy.interface(), QStringLiteral("raw")));
    return debugLines({reportLine(opening->second, proxy.service(), proxy.path(), operation.kind.failureMessage(raw))});
}

QString tst_HostileReplies::checkCase(const Operation &operation, const HostileAnswer &hostile)
{
    QDBusAbstractInterface &proxy = *m_proxies.at(operation.proxyIndex);
    m_fake->answerUnscripted(hostile.answer);
    QList<LogLine> lines;
    Seen outcome;
    {
        LogCapture log;
        outcome = operation.run(proxy);
        lines = log.lines();
    }
    if (operation.method.returnType() == QMetaType::Void) {
        return lines.isEmpty() ? QString() : QStringLiteral("a void operation logged %1").arg(lines.first().text);
    }

    const bool accepted = !hostile.isError() &&
        (operation.kind.signature.isEmpty() ||
         (!hostile.arguments.isEmpty() && hostile.firstSignature() == operation.kind.signature));
    const bool isReply = outcome.error.has_value();
    if (isReply && outcome.valid != accepted)
        return QStringLiteral("the reply is %1").arg(outcome.valid ? "valid" : "invalid");
    if (isReply && !accepted && hostile.isError() && outcome.error->name() != hostile.answer.errorName)
        return QStringLiteral("the reply carries the error %1").arg(outcome.error->name());
    if (!accepted && outcome.value != operation.kind.empty)
        return QStringLiteral("a failure gave a value that is not the empty one");
    // An operation without a result accepts any return, with or without arguments.
    if (accepted && !operation.kind.signature.isEmpty()) {
        const QString mismatch = valueMismatch(operation, outcome, hostile.arguments.first());
        if (!mismatch.isNull())
            return mismatch;
    }
    const QList<LogLine> expected = expectedLines(operation, hostile, accepted, proxy);
    if (lines != expected) {
        return QStringLiteral("logged %1 line(s) [%2] instead of [%3]")
            .arg(lines.size())
            .arg(lines.isEmpty() ? QString() : lines.first().text,
                 expected.isEmpty() ? QString() : expected.first().text);
    }
    return QString();
}

void tst_HostileReplies::everyOperationGivesTheDescribedValueOrItsEmptyValueWithItsLinesWhateverTheAnswer()
{
    const quint32 seed = seedFromEnvironment();
    const int cases = casesFromEnvironment();
    std::printf("hostile replies: seed %u, %d cases over %d operations\n", seed, cases, int(m_operations.size()));
    std::fflush(stdout);
    HostileReplyGenerator generator(seed);

    for (int i = 0; i < cases; ++i) {
        const Operation &operation = m_operations.at(std::size_t(i) % m_operations.size());
        // The first rounds give every operation an error, an empty and a well-typed answer.
        const int round = i / int(m_operations.size());
        const auto shape = round == 0 ? HostileReplyGenerator::Shape::Error
            : round == 1              ? HostileReplyGenerator::Shape::Empty
            : round == 2              ? HostileReplyGenerator::Shape::WellTyped
                                      : HostileReplyGenerator::Shape::Any;
        const HostileAnswer hostile = generator.answer(operation.kind.signature, shape);
        const QString problem = checkCase(operation, hostile);
        if (!problem.isNull()) {
            QFAIL(
                qPrintable(QStringLiteral("seed %1, case %2: %3 answered %4: %5 "
                                          "(DBUSINTERFACES_HOSTILE_SEED=%1 DBUSINTERFACES_HOSTILE_CASES=%6 repeats it)")
                               .arg(seed)
                               .arg(i)
                               .arg(operation.name, hostile.describe(), problem)
                               .arg(i + 1)));
        }
        if (i % 200 == 199)
            m_fake->clearCalls();
    }
}

QString tst_HostileReplies::checkRemoteCommand(RemoteCommandInterface &remote, const HostileAnswer &hostile)
{
    static const QString prefix = QStringLiteral("Parser Error: ");
    const QString command = QStringLiteral("SET:GAIN");
    const QString earlier = QStringLiteral("earlier ") + prefix;
    m_fake->answerUnscripted(hostile.answer);
    bool ok = false;
    QString errorCode = earlier;
    LogCapture log;

    const QString result = remote.executeCommand(command, {QStringLiteral("1")}, &ok, &errorCode);

    const QList<LogLine> lines = log.lines();
    const bool accepted = !hostile.isError() && hostile.firstSignature() == QLatin1String("s");
    const QString answer = accepted ? hostile.arguments.first().value.toString() : QString();
    if (accepted && answer.startsWith(prefix)) {
        if (!result.isNull() || ok)
            return QStringLiteral("a parser error was not reported as one");
        if (errorCode != QString(earlier + answer).remove(prefix))
            return QStringLiteral("the error code reads %1").arg(errorCode);
        const QList<LogLine> expected =
            debugLines({QStringLiteral("RemoteCommandInterface::executeCommand()  ") + quoted(command) +
                        QStringLiteral("  / Error PARSER_ERROR:  ") + quoted(answer)});
        return lines == expected ? QString() : QStringLiteral("the parser error was logged otherwise");
    }
    if (!ok || errorCode != earlier || !lines.isEmpty())
        return QStringLiteral("ok, the error code or the log changed without a parser error");
    if (accepted && result != answer)
        return QStringLiteral("the answer was not handed back as it came");
    if (!accepted && !result.isNull())
        return QStringLiteral("a failure gave a string that is not null");
    return QString();
}

void tst_HostileReplies::theRemoteCommandGivesTheAnswerOrANullStringWhateverTheAnswer()
{
    const quint32 seed = seedFromEnvironment();
    const int cases = std::max(1, casesFromEnvironment() / 8);
    std::printf("hostile replies to the remote command: seed %u, %d cases\n", seed, cases);
    std::fflush(stdout);
    HostileReplyGenerator generator(seed);
    RemoteCommandInterface remote(m_fake->service(), path, QDBusConnection::sessionBus());

    for (int i = 0; i < cases; ++i) {
        const auto shape = i % 2 == 0 ? HostileReplyGenerator::Shape::WellTyped : HostileReplyGenerator::Shape::Any;
        const HostileAnswer hostile = generator.answer(QStringLiteral("s"), shape);
        const QString problem = checkRemoteCommand(remote, hostile);
        if (!problem.isNull()) {
            QFAIL(qPrintable(QStringLiteral("seed %1, case %2: executeCommand answered %3: %4 "
                                            "(DBUSINTERFACES_HOSTILE_SEED=%1 repeats it)")
                                 .arg(seed)
                                 .arg(i)
                                 .arg(hostile.describe(), problem)));
        }
    }
}

QTEST_GUILESS_MAIN(tst_HostileReplies)

#include "tst_hostilereplies.moc"
