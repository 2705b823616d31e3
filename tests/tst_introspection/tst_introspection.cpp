#include "DBusConnector.h"
#include "DBusInterfaceManager.h"
#include "DBusTypes.h"
#include "RemoteCommandInterface.h"
#include "ResultBoolInterface.h"
#include "ResultDoubleInterface.h"
#include "ResultEnumInterface.h"
#include "ResultIntArrayInterface.h"
#include "ResultIntInterface.h"
#include "ResultVarArrayInterface.h"
#include "SetupArrayItemInterface.h"
#include "SetupBoolInterface.h"
#include "SetupDevDataInterface.h"
#include "SetupDoubleInterface.h"
#include "SetupEnumInterface.h"
#include "SetupIntInterface.h"
#include "SetupMapItemInterface.h"
#include "SetupMapListInterface.h"
#include "SetupMapMapItemInterface.h"
#include "SetupStringInterface.h"
#include "SetupThresholdManagerInterface.h"
#include "StorageElemsMapInterface.h"

#include "BusTestSupport.h"
#include "FakeMeasApplication.h"
#include "LogCapture.h"

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
#include <QXmlStreamReader>
#include <QtTest/QTest>

#include <functional>
#include <memory>
#include <vector>

namespace {

const QString applicationInterface = QStringLiteral("com.velk.mqx.MeasApplInterface");
const QString elementPath = QStringLiteral("/Introspection/Element");
const QString rootPath = QStringLiteral("/MEAS_APPL_OBJ");
const QString servicePrefix = QStringLiteral("com.velk.mqx.app.");

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

/// A method or signal as a document states it.
struct DocumentMember
{
    QString name;
    QStringList argumentTypes; ///< of a method's "in" arguments, or of a signal's
    QString replyType;         ///< of a method's "out" arguments; empty for an empty reply

    QString wireForm() const { return ::wireForm(name, argumentTypes.join(QString())); }
};

struct Document
{
    QString parseError;
    QStringList interfaces;
    QList<DocumentMember> methods;
    QList<DocumentMember> signalList;
};

QString documentPath(const QString &kindName)
{
    return QStringLiteral(INTROSPECTION_DOCUMENTS_DIR "/") + kindName + QStringLiteral(".xml");
}

Document readDocument(const QString &kindName)
{
    Document document;
    QFile file(documentPath(kindName));
    if (!file.open(QIODevice::ReadOnly)) {
        document.parseError = file.errorString();
        return document;
    }
    QXmlStreamReader xml(&file);
    DocumentMember *member = nullptr;
    bool inMethod = false;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QXmlStreamAttributes attributes = xml.attributes();
        const QString name = attributes.value(QLatin1String("name")).toString();
        if (xml.name() == QLatin1String("interface")) {
            document.interfaces.append(name);
        } else if (xml.name() == QLatin1String("method")) {
            document.methods.append({name, {}, QString()});
            member = &document.methods.last();
            inMethod = true;
        } else if (xml.name() == QLatin1String("signal")) {
            document.signalList.append({name, {}, QString()});
            member = &document.signalList.last();
            inMethod = false;
        } else if (xml.name() == QLatin1String("arg") && member) {
            const QString type = attributes.value(QLatin1String("type")).toString();
            if (inMethod && attributes.value(QLatin1String("direction")) == QLatin1String("out"))
                member->replyType += type;
            else
                member->argumentTypes.append(type);
        }
    }
    if (xml.hasError())
        document.parseError = QStringLiteral("line %1: %2").arg(xml.lineNumber()).arg(xml.errorString());
    return document;
}

QStringList wireForms(const QList<DocumentMember> &members)
{
    QStringList forms;
    for (const DocumentMember &member : members)
        forms.append(member.wireForm());
    return forms;
}

// ---------------------------------------------------------------------------------------------
// Values for the wire

/// A value of each type a document can name; none is empty, so a getter that unwraps it
/// returns something.
QVariant sampleValue(const QString &type)
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
    return samples.value(type);
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
    QString name; ///< the proxy class, and the document's file name
    QString path;
    std::function<std::unique_ptr<QDBusAbstractInterface>(const QString &service, const QString &path)> makeProxy;
    /// Operations that reach the element from outside its proxy.
    std::function<QList<Operation>(const FakeMeasApplication &)> outsideOperations;
};

template<typename Proxy>
ElementKind kind(const QString &path = elementPath,
                 std::function<QList<Operation>(const FakeMeasApplication &)> outsideOperations = {})
{
    return {QString::fromLatin1(Proxy::staticMetaObject.className()), path,
            [](const QString &service, const QString &path) {
                return std::unique_ptr<QDBusAbstractInterface>(new Proxy(service, path, QDBusConnection::sessionBus()));
            },
            outsideOperations};
}

QList<ElementKind> elementKinds()
{
    return {
        kind<SetupIntInterface>(),
        kind<SetupDoubleInterface>(),
        kind<SetupBoolInterface>(),
        kind<SetupStringInterface>(),
        kind<SetupEnumInterface>(),
        kind<SetupDevDataInterface>(),
        kind<SetupArrayItemInterface>(),
        kind<SetupMapItemInterface>(),
        kind<SetupMapListInterface>(),
        kind<SetupMapMapItemInterface>(),
        kind<SetupThresholdManagerInterface>(),
        kind<StorageElemsMapInterface>(),
        kind<ResultIntInterface>(),
        kind<ResultDoubleInterface>(),
        kind<ResultBoolInterface>(),
        kind<ResultEnumInterface>(),
        kind<ResultIntArrayInterface>(),
        kind<ResultVarArrayInterface>(),
        kind<RemoteCommandInterface>(rootPath, statusQuery),
    };
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
        , m_proxy(kind.makeProxy(m_fake.service(), kind.path))
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
        QTest::newRow(qPrintable(kind.name)) << kind;
}

void tst_Introspection::cleanupTestCase()
{
    DBusInterfaceManager::releaseInstance();
    DBusConnector::releaseInstance();
}

void tst_Introspection::everyDocumentDescribesAnElementKind()
{
    QStringList kindDocuments;
    for (const ElementKind &kind : elementKinds())
        kindDocuments.append(kind.name + QStringLiteral(".xml"));

    const QStringList documents =
        QDir(QStringLiteral(INTROSPECTION_DOCUMENTS_DIR)).entryList({QStringLiteral("*.xml")}, QDir::Files);

    QCOMPARE(sorted(documents), sorted(kindDocuments));
}

void tst_Introspection::documentIsOneInterfaceOfTheApplication()
{
    QFETCH(ElementKind, kind);

    const Document document = readDocument(kind.name);

    QVERIFY2(document.parseError.isEmpty(), qPrintable(document.parseError));
    QCOMPARE(document.interfaces, QStringList{applicationInterface});
}

void tst_Introspection::documentMethodsAreExactlyWhatTheProxySends()
{
    QFETCH(ElementKind, kind);
    const Document document = readDocument(kind.name);
    ElementUnderTest element(kind);

    QList<SentMessage> sent;
    element.sendEachOperation(sent);
    if (QTest::currentTestFailed())
        return;
    QStringList sentForms;
    for (const SentMessage &message : sent)
        sentForms.append(message.wireForm);

    const QStringList documentForms = wireForms(document.methods);
    QCOMPARE(sorted(documentForms), sorted(withoutRepeats(documentForms)));
    QCOMPARE(sorted(documentForms), sorted(withoutRepeats(sentForms)));
}

void tst_Introspection::documentReplyTypesAreWhatTheProxyAccepts()
{
    QFETCH(ElementKind, kind);
    const Document document = readDocument(kind.name);
    QVERIFY(!document.methods.isEmpty());
    ElementUnderTest element(kind);
    QList<SentMessage> sent;
    element.sendEachOperation(sent);
    if (QTest::currentTestFailed())
        return;

    for (const DocumentMember &method : document.methods) {
        const QList<Operation> readers = replyReaders(sent, element.operations(), method.wireForm());
        if (readers.isEmpty()) {
            QVERIFY2(method.replyType.isEmpty(),
                     qPrintable(method.wireForm() + QStringLiteral(": no operation reads the reply")));
            continue;
        }
        const QVariant reply = sampleValue(method.replyType);
        QVERIFY2(method.replyType.isEmpty() || reply.isValid(),
                 qPrintable(method.wireForm() + QStringLiteral(": no sample reply of type ") + method.replyType));
        for (const Operation &reader : readers) {
            LogCapture failuresOfRefusedReplies;
            const QString what = method.wireForm() + QStringLiteral(" read by ") + reader.name;

            element.fake().answer(method.name,
                                  method.replyType.isEmpty() ? ScriptedAnswer::reply() : ScriptedAnswer::value(reply));
            QVERIFY2(reader.invoke() == Verdict::Accepted,
                     qPrintable(what + QStringLiteral(" refuses a reply of type \"") + method.replyType + '"'));

            if (method.replyType.isEmpty())
                continue;
            element.fake().answer(method.name, ScriptedAnswer::value(replyOtherThan(method.replyType)));
            QVERIFY2(
                reader.invoke() == Verdict::Refused,
                qPrintable(what + QStringLiteral(" accepts a reply of a type other than \"") + method.replyType + '"'));
        }
    }
}

void tst_Introspection::documentSignalsAreExactlyWhatTheProxyRelays()
{
    QFETCH(ElementKind, kind);
    const Document document = readDocument(kind.name);
    ElementUnderTest element(kind);

    QStringList proxyForms;
    for (const QMetaMethod &signal : proxySignals(element.proxy()))
        proxyForms.append(wireForm(QString::fromLatin1(signal.name()), dbusSignatureOf(signal)));
    const QStringList documentForms = wireForms(document.signalList);
    QCOMPARE(sorted(documentForms), sorted(withoutRepeats(documentForms)));
    QCOMPARE(sorted(documentForms), sorted(withoutRepeats(proxyForms)));

    for (const DocumentMember &signal : document.signalList) {
        std::vector<std::unique_ptr<QSignalSpy>> spies;
        for (const QMetaMethod &relay : proxySignals(element.proxy(), signal.wireForm()))
            spies.emplace_back(new QSignalSpy(&element.proxy(), "2" + relay.methodSignature()));
        // The proxy's match rules are in place before the application emits.
        syncWithBus(element.proxy().connection());

        QVariantList arguments;
        for (const QString &type : signal.argumentTypes)
            arguments.append(sampleValue(type));
        element.fake().emitSignal(element.path(), signal.name, arguments);

        for (const auto &spy : spies) {
            const QString what = signal.wireForm() + QStringLiteral(" as ") + QString::fromLatin1(spy->signal());
            QVERIFY2(!spy->isEmpty() || spy->wait(), qPrintable(what + QStringLiteral(" was not relayed")));
            QCOMPARE(spy->first().size(), arguments.size());
        }
    }
}

QTEST_GUILESS_MAIN(tst_Introspection)

#include "tst_introspection.moc"
