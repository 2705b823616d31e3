#include "DBusConnector.h"
#include "DBusInterfaceManager.h"
#include "DBusTypes.h"
#include "InterfaceDocument.h"
#include "KindTable.h"
#include "MeasApplNames_p.h"

#include "BusTestSupport.h"
#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyClasses.h"

#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusReply>
#include <QDBusVariant>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QtTest/QTest>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace {

const QString applicationInterface = QLatin1String(MeasAppl::interfaceName);
const QString elementPath = QStringLiteral("/Introspection/Element");
const QString rootPath = QLatin1String(MeasAppl::rootPath);
const QString servicePrefix = QLatin1String(MeasAppl::servicePrefix);

/// A wire member with its signature, written "member(signature)" so that lists of them compare readably.
QString wireForm(const QString &member, const QString &signature)
{
    return member + QLatin1Char('(') + signature + QLatin1Char(')');
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

QStringList withoutRepeats(QStringList list)
{
    list.removeDuplicates();
    return list;
}

// ---------------------------------------------------------------------------------------------
// The documents

QString documentPath(const QString &className)
{
    return QStringLiteral(INTROSPECTION_DOCUMENTS_DIR "/") + className + QStringLiteral(".xml");
}

/// The document of @p className as it is kept; nothing, and the reason in @p why, when it
/// cannot be read.
std::optional<InterfaceDocument> readDocument(const QString &className, QString *why)
{
    QFile file(documentPath(className));
    if (!file.open(QIODevice::ReadOnly)) {
        *why = file.fileName() + QStringLiteral(": ") + file.errorString();
        return std::nullopt;
    }
    return InterfaceDocument::parse(QString::fromUtf8(file.readAll()), why);
}

QString wireForm(const InterfaceDocument::Method &method)
{
    return wireForm(method.name, method.inSignature);
}

QString wireForm(const InterfaceDocument::Signal &signal)
{
    return wireForm(signal.name, signal.signature);
}

template<typename Member>
QStringList wireForms(const QList<Member> &members)
{
    QStringList forms;
    for (const Member &member : members)
        forms.append(wireForm(member));
    return forms;
}

// ---------------------------------------------------------------------------------------------
// Values for the wire

/// A value of each type a document can name; none is empty, so a getter that unwraps it
/// returns something.
const QHash<QString, QVariant> &samples()
{
    static const QHash<QString, QVariant> samples = {
        {QStringLiteral("b"), true},
        {QStringLiteral("i"), 7},
        {QStringLiteral("d"), 2.5},
        {QStringLiteral("s"), QStringLiteral("text")},
        {QStringLiteral("as"), QStringList{QStringLiteral("text")}},
        {QStringLiteral("v"), QVariant::fromValue(QDBusVariant(7))},
        {QStringLiteral("av"), QVariantList{7}},
        {QStringLiteral("a{sv}"), QVariantMap{{QStringLiteral("key"), 7}}},
        {QStringLiteral("((iii)(iiii)i)"), QDateTime(QDate(2026, 11, 22), QTime(8, 30))},
    };
    return samples;
}

QVariant sampleValue(const QString &type)
{
    return samples().value(type);
}

/// A sample for each argument of @p signature, read as a sequence of the sampled types;
/// nothing when some part of it is none of them.
std::optional<QVariantList> sampleArguments(QString signature)
{
    QVariantList arguments;
    while (!signature.isEmpty()) {
        QString type;
        for (auto sample = samples().cbegin(); sample != samples().cend(); ++sample) {
            if (signature.startsWith(sample.key()) && sample.key().size() > type.size())
                type = sample.key();
        }
        if (type.isEmpty())
            return std::nullopt;
        arguments.append(sampleValue(type));
        signature.remove(0, type.size());
    }
    return arguments;
}

/// A reply value of a type other than @p type.
QVariant replyOtherThan(const QString &type)
{
    return type == QLatin1String("s") ? QVariant(7) : QVariant(QStringLiteral("text"));
}

/// The D-Bus signature of a Qt signal's parameters. A plain QVariant parameter stands for
/// the content of a received variant (the map-of-maps proxy re-emits "setupChangedPart"
/// unwrapped), so it counts as "v", for which QtDBus itself has no plain-QVariant mapping.
QString dbusSignatureOf(const QMetaMethod &method)
{
    QString signature;
    for (int i = 0; i < method.parameterCount(); ++i) {
        const int type = method.parameterType(i);
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
        const char *dbusType = QDBusMetaType::typeToSignature(QMetaType(type));
#else
        const char *dbusType = QDBusMetaType::typeToSignature(type);
#endif
        signature += type == QMetaType::QVariant ? QStringLiteral("v") : QString::fromLatin1(dbusType);
    }
    return signature;
}

/// A sample argument for every parameter type the proxies' slots take.
class SampleArguments
{
public:
    SampleArguments()
    {
        m_byType = {
            {"int", &m_int},
            {"double", &m_double},
            {"bool", &m_bool},
            {"QString", &m_string},
            {"QStringList", &m_strings},
            {"QVariant", &m_variant},
            {"QVariantList", &m_variants},
            {"QList<QVariant>", &m_variants},
            {"QVariantMap", &m_map},
            {"QMap<QString,QVariant>", &m_map},
            {"QMap<QString,QString>", &m_stringMap},
            {"QMap<QString,QVariantMap>", &m_mapOfMaps},
            {"bool*", &m_noFlag},
            {"QString*", &m_noText},
        };
    }

    /// Null when there is no sample of that type.
    void *forType(const QByteArray &typeName) const { return m_byType.value(typeName); }

private:
    Q_DISABLE_COPY(SampleArguments)

    int m_int = 2;
    double m_double = 1.5;
    bool m_bool = true;
    QString m_string = QStringLiteral("key");
    QStringList m_strings = {QStringLiteral("first")};
    QVariant m_variant = 5;
    QVariantList m_variants = {1, 2};
    QVariantMap m_map = {{QStringLiteral("key"), 1}};
    QMap<QString, QString> m_stringMap = {{QStringLiteral("key"), QStringLiteral("value")}};
    QMap<QString, QVariantMap> m_mapOfMaps = {{QStringLiteral("primary"), {{QStringLiteral("key"), 1}}}};
    bool *m_noFlag = nullptr;
    QString *m_noText = nullptr;
    QHash<QByteArray, void *> m_byType;
};

// ---------------------------------------------------------------------------------------------
// Operations: what a caller can do to reach an element, and how it takes the reply

/// How an operation took the reply: as a value, as a failure, or not at all.
enum class Verdict { Accepted, Refused, NotRead };

template<typename T>
Verdict verdictOn(const QDBusReply<T> &reply)
{
    return reply.isValid() ? Verdict::Accepted : Verdict::Refused;
}

Verdict verdictOn(const QDBusReply<void> &reply)
{
    return reply.isValid() ? Verdict::Accepted : Verdict::Refused;
}

/// A plain value: a getter that unwraps its reply returns an empty value on failure.
template<typename T>
auto verdictOn(const T &value) -> decltype(value.isEmpty(), Verdict())
{
    return value.isEmpty() ? Verdict::Refused : Verdict::Accepted;
}

Verdict verdictOn(const QVariant &value)
{
    return value.isValid() ? Verdict::Accepted : Verdict::Refused;
}

Verdict verdictOn(int value)
{
    return value != 0 ? Verdict::Accepted : Verdict::Refused;
}

using SlotInvoker = Verdict (*)(QObject *object, int methodIndex, void **argv);

template<typename R>
Verdict invokeReturning(QObject *object, int methodIndex, void **argv)
{
    R result{};
    argv[0] = &result;
    QMetaObject::metacall(object, QMetaObject::InvokeMetaMethod, methodIndex, argv);
    return verdictOn(result);
}

Verdict invokeReturningNothing(QObject *object, int methodIndex, void **argv)
{
    argv[0] = nullptr;
    QMetaObject::metacall(object, QMetaObject::InvokeMetaMethod, methodIndex, argv);
    return Verdict::NotRead;
}

/// Null for a return type the test does not know.
SlotInvoker invokerFor(const QByteArray &returnType)
{
    static const QHash<QByteArray, SlotInvoker> invokers = {
        {"void", &invokeReturningNothing},
        {"QDBusReply<void>", &invokeReturning<QDBusReply<void>>},
        {"QDBusReply<bool>", &invokeReturning<QDBusReply<bool>>},
        {"QDBusReply<int>", &invokeReturning<QDBusReply<int>>},
        {"QDBusReply<double>", &invokeReturning<QDBusReply<double>>},
        {"QDBusReply<QString>", &invokeReturning<QDBusReply<QString>>},
        {"QDBusReply<QStringList>", &invokeReturning<QDBusReply<QStringList>>},
        {"QDBusReply<QDateTime>", &invokeReturning<QDBusReply<QDateTime>>},
        {"int", &invokeReturning<int>},
        {"QString", &invokeReturning<QString>},
        {"QStringList", &invokeReturning<QStringList>},
        {"QVariant", &invokeReturning<QVariant>},
        {"QList<QVariant>", &invokeReturning<QVariantList>},
        {"QVariantList", &invokeReturning<QVariantList>},
        {"QList<int>", &invokeReturning<QList<int>>},
        {"SettingsMap", &invokeReturning<SettingsMap>},
        {"SettingsStringMap", &invokeReturning<SettingsStringMap>},
    };
    return invokers.value(returnType);
}

/// One way to reach an element: a slot of its proxy, or a query made about the application.
struct Operation
{
    QString name; ///< "setValue(int)"
    bool readsReply;
    std::function<Verdict()> invoke;

    /// The blocking operation that an "...Async" one sends the same message as.
    QString blockingTwinName() const
    {
        return name.contains(QLatin1String("Async("))
            ? QString(name).replace(QLatin1String("Async("), QLatin1String("("))
            : QString();
    }
};

/// Every slot a caller can invoke on @p proxy, through the meta-object, with sample arguments.
QList<Operation> slotOperations(QDBusAbstractInterface &proxy, const SampleArguments &samples)
{
    QList<Operation> operations;
    const QMetaObject *metaObject = proxy.metaObject();
    for (int index = metaObject->methodOffset(); index < metaObject->methodCount(); ++index) {
        const QMetaMethod method = metaObject->method(index);
        if (method.methodType() != QMetaMethod::Slot || method.access() == QMetaMethod::Private)
            continue;
        const QString name = QString::fromLatin1(method.methodSignature());
        QStringList unknownTypes;
        const SlotInvoker invoker = invokerFor(method.typeName());
        if (!invoker)
            unknownTypes.append(QString::fromLatin1(method.typeName()));
        std::vector<void *> argv(method.parameterCount() + 1, nullptr);
        for (int i = 0; i < method.parameterCount(); ++i) {
            argv[i + 1] = samples.forType(method.parameterTypes().at(i));
            if (!argv[i + 1])
                unknownTypes.append(QString::fromLatin1(method.parameterTypes().at(i)));
        }
        if (!unknownTypes.isEmpty()) {
            const QString failure =
                name + QStringLiteral(": the test has no values of type ") + unknownTypes.join(", ");
            operations.append({name, false, [failure] {
                                   QTest::qFail(qPrintable(failure), __FILE__, __LINE__);
                                   return Verdict::NotRead;
                               }});
            continue;
        }
        QObject *object = &proxy;
        operations.append({name, invoker != &invokeReturningNothing,
                           [object, index, invoker, argv]() mutable { return invoker(object, index, argv.data()); }});
    }
    return operations;
}

/// The status query reaches the root object from outside any proxy.
QList<Operation> statusQuery(const FakeMeasApplication &fake)
{
    const QString applicationName = fake.service().mid(servicePrefix.size());
    return {{QStringLiteral("DBusInterfaceManager::getMeasAppStatus(QString)"), true, [applicationName] {
                 return verdictOn(DBusInterfaceManager::getInstance()->getMeasAppStatus(applicationName));
             }}};
}

// ---------------------------------------------------------------------------------------------
// The element kinds

struct ElementKind
{
    KindProxyClass proxyClass;
    QString path;
    /// Operations that reach the element from outside its proxy.
    std::function<QList<Operation>(const FakeMeasApplication &)> outsideOperations;

    /// The proxy class, and the document's file name.
    QString name() const { return QString::fromLatin1(proxyClass.name); }
};

QList<ElementKind> elementKinds()
{
    QList<ElementKind> kinds;
    for (const KindProxyClass &proxyClass : allProxyClasses()) {
        // The remote command is the root object, which the status query reaches too.
        if (proxyClass.kind->family == KindTable::Family::Command)
            kinds.append({proxyClass, rootPath, statusQuery});
        else
            kinds.append({proxyClass, elementPath, {}});
    }
    return kinds;
}

/// An operation together with the one message it sent.
struct SentMessage
{
    Operation operation;
    QString wireForm;
};

/// A fake application holding one element, and the proxy of the element's kind on it.
class ElementUnderTest
{
public:
    explicit ElementUnderTest(const ElementKind &kind)
        : m_kind(kind)
        , m_proxy(kind.proxyClass.make(m_fake.service(), kind.path, nullptr))
        , m_operations(slotOperations(*m_proxy, m_samples))
    {
        if (kind.outsideOperations)
            m_operations += kind.outsideOperations(m_fake);
    }

    FakeMeasApplication &fake() { return m_fake; }
    QDBusAbstractInterface &proxy() { return *m_proxy; }
    const QString &path() const { return m_kind.path; }
    const QList<Operation> &operations() const { return m_operations; }

    /// Runs every operation once and notes the message each sent: exactly one, to the element.
    void sendEachOperation(QList<SentMessage> &sent)
    {
        for (const Operation &operation : m_operations) {
            LogCapture failuresOfUnscriptedCalls;
            operation.invoke();
            const QList<ReceivedCall> calls = takeCalls();
            QVERIFY2(calls.size() == 1,
                     qPrintable(operation.name + QStringLiteral(" sent %1 messages").arg(calls.size())));
            QCOMPARE(calls.first().path, m_kind.path);
            QCOMPARE(calls.first().interface, applicationInterface);
            sent.append({operation, wireForm(calls.first().member, calls.first().signature)});
        }
    }

private:
    /// The calls received so far. A blocking call on the proxies' connection is answered
    /// only after the application has handled everything sent before it.
    QList<ReceivedCall> takeCalls()
    {
        const QString marker = QStringLiteral("roundTripMarker");
        QDBusConnection::sessionBus().call(
            QDBusMessage::createMethodCall(m_fake.service(), m_kind.path, applicationInterface, marker));
        QList<ReceivedCall> calls = m_fake.calls();
        m_fake.clearCalls();
        if (!calls.isEmpty() && calls.last().member == marker)
            calls.removeLast();
        return calls;
    }

    const ElementKind m_kind;
    FakeMeasApplication m_fake;
    SampleArguments m_samples;
    std::unique_ptr<QDBusAbstractInterface> m_proxy; // goes before the application it talks to
    QList<Operation> m_operations;
};

/// The operations whose way of reading the reply decides a document method's reply type:
/// those that sent it and read the reply, and the blocking twins of "...Async" senders.
QList<Operation> replyReaders(const QList<SentMessage> &sent, const QList<Operation> &all, const QString &form)
{
    QList<Operation> readers;
    QStringList names;
    for (const SentMessage &message : sent) {
        if (message.wireForm != form)
            continue;
        for (const Operation &operation : all) {
            const bool decides =
                operation.name == message.operation.name || operation.name == message.operation.blockingTwinName();
            if (decides && operation.readsReply && !names.contains(operation.name)) {
                readers.append(operation);
                names.append(operation.name);
            }
        }
    }
    return readers;
}

/// The proxy's own signals whose bus form is @p form.
QList<QMetaMethod> proxySignals(const QDBusAbstractInterface &proxy, const QString &form = QString())
{
    QList<QMetaMethod> found;
    const QMetaObject *metaObject = proxy.metaObject();
    for (int index = metaObject->methodOffset(); index < metaObject->methodCount(); ++index) {
        const QMetaMethod method = metaObject->method(index);
        if (method.methodType() != QMetaMethod::Signal)
            continue;
        if (form.isNull() || wireForm(QString::fromLatin1(method.name()), dbusSignatureOf(method)) == form)
            found.append(method);
    }
    return found;
}

} // namespace

Q_DECLARE_METATYPE(ElementKind)

class tst_Introspection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanupTestCase();

    void everyKindHasItsProxyClassHere();
    void everyDocumentDescribesAnElementKind();
    void documentIsOneInterfaceOfTheApplication_data() { addKindRows(); }
    void documentIsOneInterfaceOfTheApplication();
    void documentMethodsAreExactlyWhatTheProxySends_data() { addKindRows(); }
    void documentMethodsAreExactlyWhatTheProxySends();
    void documentReplyTypesAreWhatTheProxyAccepts_data() { addKindRows(); }
    void documentReplyTypesAreWhatTheProxyAccepts();
    void documentSignalsAreExactlyWhatTheProxyRelays_data() { addKindRows(); }
    void documentSignalsAreExactlyWhatTheProxyRelays();

private:
    static void addKindRows();
};

void tst_Introspection::addKindRows()
{
    QTest::addColumn<ElementKind>("kind");
    for (const ElementKind &kind : elementKinds())
        QTest::newRow(qPrintable(kind.name())) << kind;
}

void tst_Introspection::cleanupTestCase()
{
    DBusInterfaceManager::releaseInstance();
    DBusConnector::releaseInstance();
}

void tst_Introspection::everyKindHasItsProxyClassHere()
{
    verifyProxyClassesAreThoseOfTheKindTable();
}

void tst_Introspection::everyDocumentDescribesAnElementKind()
{
    QStringList kindDocuments;
    for (const ElementKind &kind : elementKinds())
        kindDocuments.append(kind.name() + QStringLiteral(".xml"));

    const QStringList documents =
        QDir(QStringLiteral(INTROSPECTION_DOCUMENTS_DIR)).entryList({QStringLiteral("*.xml")}, QDir::Files);

    QCOMPARE(sorted(documents), sorted(kindDocuments));
}

void tst_Introspection::documentIsOneInterfaceOfTheApplication()
{
    QFETCH(ElementKind, kind);

    QString why;
    const std::optional<InterfaceDocument> document = readDocument(kind.name(), &why);

    QVERIFY2(document, qPrintable(why));
    QVERIFY2(document->hasApplicationInterface, qPrintable(QStringLiteral("no ") + applicationInterface));
    QCOMPARE(document->interfaces, QStringList{applicationInterface});
}

void tst_Introspection::documentMethodsAreExactlyWhatTheProxySends()
{
    QFETCH(ElementKind, kind);
    QString why;
    const std::optional<InterfaceDocument> document = readDocument(kind.name(), &why);
    QVERIFY2(document, qPrintable(why));
    ElementUnderTest element(kind);

    QList<SentMessage> sent;
    element.sendEachOperation(sent);
    if (QTest::currentTestFailed())
        return;
    QStringList sentForms;
    for (const SentMessage &message : sent)
        sentForms.append(message.wireForm);

    const QStringList documentForms = wireForms(document->methods);
    QCOMPARE(sorted(documentForms), sorted(withoutRepeats(documentForms)));
    QCOMPARE(sorted(documentForms), sorted(withoutRepeats(sentForms)));
}

void tst_Introspection::documentReplyTypesAreWhatTheProxyAccepts()
{
    QFETCH(ElementKind, kind);
    QString why;
    const std::optional<InterfaceDocument> document = readDocument(kind.name(), &why);
    QVERIFY2(document, qPrintable(why));
    QVERIFY(!document->methods.isEmpty());
    ElementUnderTest element(kind);
    QList<SentMessage> sent;
    element.sendEachOperation(sent);
    if (QTest::currentTestFailed())
        return;

    for (const InterfaceDocument::Method &method : document->methods) {
        const QString form = wireForm(method);
        const QString &replyType = method.outSignature;
        const QList<Operation> readers = replyReaders(sent, element.operations(), form);
        if (readers.isEmpty()) {
            QVERIFY2(replyType.isEmpty(), qPrintable(form + QStringLiteral(": no operation reads the reply")));
            continue;
        }
        const QVariant reply = sampleValue(replyType);
        QVERIFY2(replyType.isEmpty() || reply.isValid(),
                 qPrintable(form + QStringLiteral(": no sample reply of type ") + replyType));
        for (const Operation &reader : readers) {
            LogCapture failuresOfRefusedReplies;
            const QString what = form + QStringLiteral(" read by ") + reader.name;

            element.fake().answer(method.name,
                                  replyType.isEmpty() ? ScriptedAnswer::reply() : ScriptedAnswer::value(reply));
            QVERIFY2(reader.invoke() == Verdict::Accepted,
                     qPrintable(what + QStringLiteral(" refuses a reply of type \"") + replyType + '"'));

            if (replyType.isEmpty())
                continue;
            element.fake().answer(method.name, ScriptedAnswer::value(replyOtherThan(replyType)));
            QVERIFY2(reader.invoke() == Verdict::Refused,
                     qPrintable(what + QStringLiteral(" accepts a reply of a type other than \"") + replyType + '"'));
        }
    }
}

void tst_Introspection::documentSignalsAreExactlyWhatTheProxyRelays()
{
    QFETCH(ElementKind, kind);
    QString why;
    const std::optional<InterfaceDocument> document = readDocument(kind.name(), &why);
    QVERIFY2(document, qPrintable(why));
    ElementUnderTest element(kind);

    QStringList proxyForms;
    for (const QMetaMethod &signal : proxySignals(element.proxy()))
        proxyForms.append(wireForm(QString::fromLatin1(signal.name()), dbusSignatureOf(signal)));
    const QStringList documentForms = wireForms(document->busSignals);
    QCOMPARE(sorted(documentForms), sorted(withoutRepeats(documentForms)));
    QCOMPARE(sorted(documentForms), sorted(withoutRepeats(proxyForms)));

    for (const InterfaceDocument::Signal &signal : document->busSignals) {
        const std::optional<QVariantList> arguments = sampleArguments(signal.signature);
        QVERIFY2(arguments, qPrintable(wireForm(signal) + QStringLiteral(": no sample arguments of these types")));
        std::vector<std::unique_ptr<QSignalSpy>> spies;
        for (const QMetaMethod &relay : proxySignals(element.proxy(), wireForm(signal)))
            spies.emplace_back(new QSignalSpy(&element.proxy(), "2" + relay.methodSignature()));
        // The proxy's match rules are in place before the application emits.
        syncWithBus(element.proxy().connection());

        element.fake().emitSignal(element.path(), signal.name, *arguments);

        for (const auto &spy : spies) {
            const QString what = wireForm(signal) + QStringLiteral(" as ") + QString::fromLatin1(spy->signal());
            QVERIFY2(!spy->isEmpty() || spy->wait(), qPrintable(what + QStringLiteral(" was not relayed")));
            QCOMPARE(spy->first().size(), arguments->size());
        }
    }
}

QTEST_GUILESS_MAIN(tst_Introspection)

#include "tst_introspection.moc"
