#include "ResultVarArrayInterface.h"

#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QDateTime>
#include <QtTest/QTest>

#include <functional>
#include <memory>

using Operation = std::function<Outcome(ResultVarArrayInterface &)>;
/// A hand-written getter's plain result.
using Getter = std::function<QVariant(ResultVarArrayInterface &)>;
Q_DECLARE_METATYPE(Operation)
Q_DECLARE_METATYPE(Getter)

namespace {
const QString path = QStringLiteral("/Result/Spectrum");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");
const QString outOfRange = QStringLiteral("com.velk.mqx.Error.OutOfRange");

/// The report of a failed getter on the fake's service and this path, for a message
/// without double quotes.
QString report(const QString &literal, const QString &message)
{
    return literal + QStringLiteral(" \"com.velk.mqx.app.fake\"  /  \"/Result/Spectrum\"  / Error: \"") + message +
        QStringLiteral("\"");
}

QVariant wrapped(const QVariant &value)
{
    return QVariant::fromValue(QDBusVariant(value));
}

QVariantList asVariants(const QList<int> &numbers)
{
    QVariantList list;
    for (int number : numbers)
        list.append(number);
    return list;
}

const char unexpectedIntArray[] = "Unexpected reply signature: got \\\"ai\\\", expected \\\"av\\\" (QVariantList)";
} // namespace

class tst_ResultVarArrayInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void constructionMakesNoBusCallAndLogsNothing();

    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void checkedGettersReturnTheValueOrReportOnce_data();
    void checkedGettersReturnTheValueOrReportOnce();
    void generatedOperationsMapEachReplyWithoutLogging_data();
    void generatedOperationsMapEachReplyWithoutLogging();

    void getValuesStatusConvertsEachElementToAnInteger();
    void getValuesStatusReportsUnderTheIntegerRowsName();
    void getValueCompReportsItsLiteralWithoutAColon();
    void getValueCompKeepsTheOrderAndUnwrapsEachElement();
    void getValueSendsThePositionAndReturnsTheInnerValue();
    void positionsOutsideTheRowAreSentUnchangedAndTheErrorReported();
    void getTimeStampRoundTripsTheApplicationsDateTime();
    void reportsQuoteAndEscapeTheErrorMessage();
    void absentServiceGivesEmptyValuesAndOneReportPerCheckedGetter();

    void metaObjectListsItsTenSlotsInOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void keepsServiceAndPathBesideTheBase();
    void invokingSlotsByNameGivesTheDirectResult();

private:
    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<ResultVarArrayInterface> m_proxy;
};

void tst_ResultVarArrayInterface::init()
{
    m_fake.reset(new FakeMeasApplication);
    QCOMPARE(m_fake->service(), QStringLiteral("com.velk.mqx.app.fake"));
    m_proxy.reset(new ResultVarArrayInterface(m_fake->service(), path, QDBusConnection::sessionBus()));
}

void tst_ResultVarArrayInterface::cleanup()
{
    m_proxy.reset();
    m_fake.reset();
}

void tst_ResultVarArrayInterface::constructionMakesNoBusCallAndLogsNothing()
{
    LogCapture log;
    ResultVarArrayInterface proxy(m_fake->service(), path, QDBusConnection::sessionBus());
    ResultVarArrayInterface absent(absentService(), path, QDBusConnection::sessionBus());

    QCOMPARE(proxy.service(), m_fake->service());
    QCOMPARE(proxy.path(), path);
    QCOMPARE(proxy.interface(), FakeMeasApplication::interfaceName);
    QCOMPARE(absent.service(), absentService());
    syncWithBus(proxy.connection());
    QCOMPARE(m_fake->callCount(), 0);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ResultVarArrayInterface::sendsEachOperationWithItsWireForm_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<QList<QVariant>>("arguments");

    const auto op = [](std::function<void(ResultVarArrayInterface &)> call) {
        return Operation([call](ResultVarArrayInterface &proxy) {
            call(proxy);
            return Outcome{};
        });
    };
    using P = ResultVarArrayInterface;
    QTest::newRow("getValues") << op([](P &p) { p.getValues(); }) << "getValues"
                               << "" << QList<QVariant>{};
    QTest::newRow("getValuesStatus") << op([](P &p) { p.getValuesStatus(); }) << "getValuesStatus"
                                     << "" << QList<QVariant>{};
    QTest::newRow("getValueComp") << op([](P &p) { p.getValueComp(); }) << "getValueComp"
                                  << "" << QList<QVariant>{};
    QTest::newRow("getValue") << op([](P &p) { p.getValue(2); }) << "getValue"
                              << "i" << QList<QVariant>{2};
    QTest::newRow("getValueStatus") << op([](P &p) { p.getValueStatus(5); }) << "getValueStatus"
                                    << "i" << QList<QVariant>{5};
    QTest::newRow("getLowerLimit") << op([](P &p) { p.getLowerLimit(); }) << "getLowerLimit"
                                   << "" << QList<QVariant>{};
    QTest::newRow("getUpperLimit") << op([](P &p) { p.getUpperLimit(); }) << "getUpperLimit"
                                   << "" << QList<QVariant>{};
    QTest::newRow("size") << op([](P &p) { p.size(); }) << "size"
                          << "" << QList<QVariant>{};
    QTest::newRow("getResultStatus") << op([](P &p) { p.getResultStatus(); }) << "getResultStatus"
                                     << "" << QList<QVariant>{};
    QTest::newRow("getTimeStamp") << op([](P &p) { p.getTimeStamp(); }) << "getTimeStamp"
                                  << "" << QList<QVariant>{};
}

void tst_ResultVarArrayInterface::sendsEachOperationWithItsWireForm()
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);
    QFETCH(QString, signature);
    QFETCH(QList<QVariant>, arguments);

    m_fake->answer(member, ScriptedAnswer::reply());
    LogCapture log;
    operation(*m_proxy);
    verifySingleCall(*m_fake, path, member, signature, arguments);
}

void tst_ResultVarArrayInterface::checkedGettersReturnTheValueOrReportOnce_data()
{
    QTest::addColumn<Getter>("getter");
    QTest::addColumn<QString>("member");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<QStringList>("lines");

    using P = ResultVarArrayInterface;
    const ScriptedAnswer error = ScriptedAnswer::error(failure, QStringLiteral("no row yet"));
    const ScriptedAnswer intArray = ScriptedAnswer::value(QVariant::fromValue(QList<int>{3, 1, 4}));
    const QVariantList row{3, QStringLiteral("x"), 4.5};
    const QVariantList none;

    const Getter getValues = [](P &p) { return QVariant(p.getValues()); };
    QTest::newRow("getValues answered") << getValues << "getValues" << ScriptedAnswer::value(row) << QVariant(row)
                                        << QStringList();
    QTest::newRow("getValues error")
        << getValues << "getValues" << error << QVariant(none)
        << QStringList{"ResultVarArrayInterface::getValues():  \"com.velk.mqx.app.fake\"  /  \"/Result/Spectrum\"  / "
                       "Error: \"no row yet\""};
    QTest::newRow("getValues array of integers")
        << getValues << "getValues" << intArray << QVariant(none)
        << QStringList{report("ResultVarArrayInterface::getValues(): ", unexpectedIntArray)};

    const Getter getValuesStatus = [](P &p) { return QVariant(asVariants(p.getValuesStatus())); };
    QTest::newRow("getValuesStatus answered")
        << getValuesStatus << "getValuesStatus" << ScriptedAnswer::value(QVariantList{0, 2, 1})
        << QVariant(QVariantList{0, 2, 1}) << QStringList();
    QTest::newRow("getValuesStatus answered empty")
        << getValuesStatus << "getValuesStatus" << ScriptedAnswer::value(none) << QVariant(none) << QStringList();
    QTest::newRow("getValuesStatus error")
        << getValuesStatus << "getValuesStatus" << error << QVariant(none)
        << QStringList{"ResultIntArrayInterface::getValuesStatus():  \"com.velk.mqx.app.fake\"  /  "
                       "\"/Result/Spectrum\"  / Error: \"no row yet\""};
    QTest::newRow("getValuesStatus array of integers")
        << getValuesStatus << "getValuesStatus" << intArray << QVariant(none)
        << QStringList{report("ResultIntArrayInterface::getValuesStatus(): ", unexpectedIntArray)};

    const Getter getValueComp = [](P &p) { return QVariant(p.getValueComp()); };
    QTest::newRow("getValueComp answered")
        << getValueComp << "getValueComp" << ScriptedAnswer::value(row) << QVariant(row) << QStringList();
    QTest::newRow("getValueComp error")
        << getValueComp << "getValueComp" << error << QVariant(none)
        << QStringList{"ResultVarArrayInterface::getValueComp() \"com.velk.mqx.app.fake\"  /  \"/Result/Spectrum\"  / "
                       "Error: \"no row yet\""};
    QTest::newRow("getValueComp array of integers")
        << getValueComp << "getValueComp" << intArray << QVariant(none)
        << QStringList{report("ResultVarArrayInterface::getValueComp()", unexpectedIntArray)};

    const Getter getValue = [](P &p) { return p.getValue(1); };
    QTest::newRow("getValue answered") << getValue << "getValue" << ScriptedAnswer::value(wrapped(-7)) << QVariant(-7)
                                       << QStringList();
    QTest::newRow("getValue answered with text")
        << getValue << "getValue" << ScriptedAnswer::value(wrapped(QStringLiteral("overload")))
        << QVariant(QStringLiteral("overload")) << QStringList();
    QTest::newRow("getValue error")
        << getValue << "getValue" << error << QVariant()
        << QStringList{"ResultVarArrayInterface::getValue():  \"com.velk.mqx.app.fake\"  /  \"/Result/Spectrum\"  / "
                       "Error: \"no row yet\""};
    QTest::newRow("getValue unwrapped double")
        << getValue << "getValue" << ScriptedAnswer::value(2.5) << QVariant()
        << QStringList{report("ResultVarArrayInterface::getValue(): ",
                              "Unexpected reply signature: got \\\"d\\\" (double), expected \\\"v\\\" (QDBusVariant)")};

    const Getter getValueStatus = [](P &p) { return QVariant(p.getValueStatus(1)); };
    QTest::newRow("getValueStatus answered")
        << getValueStatus << "getValueStatus" << ScriptedAnswer::value(4) << QVariant(4) << QStringList();
    QTest::newRow("getValueStatus error")
        << getValueStatus << "getValueStatus" << error << QVariant(0)
        << QStringList{"ResultVarArrayInterface::getValueStatus():  \"com.velk.mqx.app.fake\"  /  "
                       "\"/Result/Spectrum\"  / Error: \"no row yet\""};
    QTest::newRow("getValueStatus wrapped")
        << getValueStatus << "getValueStatus" << ScriptedAnswer::value(wrapped(4)) << QVariant(0)
        << QStringList{report("ResultVarArrayInterface::getValueStatus(): ",
                              "Unexpected reply signature: got \\\"v\\\" (QDBusVariant), expected \\\"i\\\" (int)")};

    const Getter getLowerLimit = [](P &p) { return p.getLowerLimit(); };
    QTest::newRow("getLowerLimit answered") << getLowerLimit << "getLowerLimit" << ScriptedAnswer::value(wrapped(-40.0))
                                            << QVariant(-40.0) << QStringList();
    QTest::newRow("getLowerLimit error")
        << getLowerLimit << "getLowerLimit" << error << QVariant()
        << QStringList{"ResultVarArrayInterface::getLowerLimit():  \"com.velk.mqx.app.fake\"  /  "
                       "\"/Result/Spectrum\"  / Error: \"no row yet\""};
    QTest::newRow("getLowerLimit empty return")
        << getLowerLimit << "getLowerLimit" << ScriptedAnswer::reply() << QVariant()
        << QStringList{report("ResultVarArrayInterface::getLowerLimit(): ",
                              "Unexpected reply signature: got \\\"<empty signature>\\\", expected \\\"v\\\" "
                              "(QDBusVariant)")};

    const Getter getUpperLimit = [](P &p) { return p.getUpperLimit(); };
    QTest::newRow("getUpperLimit answered")
        << getUpperLimit << "getUpperLimit" << ScriptedAnswer::value(wrapped(40)) << QVariant(40) << QStringList();
    QTest::newRow("getUpperLimit error")
        << getUpperLimit << "getUpperLimit" << error << QVariant()
        << QStringList{"ResultVarArrayInterface::getUpperLimit():  \"com.velk.mqx.app.fake\"  /  "
                       "\"/Result/Spectrum\"  / Error: \"no row yet\""};
    QTest::newRow("getUpperLimit wrong type")
        << getUpperLimit << "getUpperLimit" << ScriptedAnswer::value(QStringLiteral("40")) << QVariant()
        << QStringList{report("ResultVarArrayInterface::getUpperLimit(): ",
                              "Unexpected reply signature: got \\\"s\\\" (QString), expected \\\"v\\\" "
                              "(QDBusVariant)")};
}

void tst_ResultVarArrayInterface::checkedGettersReturnTheValueOrReportOnce()
{
    QFETCH(Getter, getter);
    QFETCH(QString, member);
    QFETCH(ScriptedAnswer, answer);
    QFETCH(QVariant, result);
    QFETCH(QStringList, lines);

    m_fake->answer(member, answer);
    LogCapture log;
    const QVariant value = getter(*m_proxy);
    QCOMPARE(value.isValid(), result.isValid());
    QCOMPARE(value.userType(), result.userType());
    QCOMPARE(value, result);
    QCOMPARE(log.lines(), debugLines(lines));
    QCOMPARE(m_fake->callCount(), 1);
}

void tst_ResultVarArrayInterface::generatedOperationsMapEachReplyWithoutLogging_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QVariant>("value");

    using P = ResultVarArrayInterface;
    const ScriptedAnswer error = ScriptedAnswer::error(failure, QStringLiteral("refused"));
    const auto rows = [&](const char *name, Operation op, const QVariant &good, const QVariant &wrongType,
                          const QVariant &defaultValue) {
        QTest::addRow("%s answered", name) << op << name << ScriptedAnswer::value(good) << true << good;
        QTest::addRow("%s error", name) << op << name << error << false << defaultValue;
        QTest::addRow("%s wrong type", name) << op << name << ScriptedAnswer::value(wrongType) << false << defaultValue;
        QTest::addRow("%s empty return", name) << op << name << ScriptedAnswer::reply() << false << defaultValue;
    };
    rows(
        "size", [](P &p) { return outcomeOf(p.size()); }, 1024, wrapped(1024), 0);
    rows(
        "getResultStatus", [](P &p) { return outcomeOf(p.getResultStatus()); }, 1, true, 0);
    rows(
        "getTimeStamp", [](P &p) { return outcomeOf(p.getTimeStamp()); },
        QDateTime(QDate(2021, 3, 28), QTime(1, 30, 0, 500), Qt::UTC), QStringLiteral("2021-03-28T01:30:00.500Z"),
        QDateTime());
}

void tst_ResultVarArrayInterface::generatedOperationsMapEachReplyWithoutLogging()
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);
    QFETCH(ScriptedAnswer, answer);
    QFETCH(bool, valid);
    QFETCH(QVariant, value);

    LogCapture log;
    m_fake->answer(member, answer);
    const Outcome outcome = operation(*m_proxy);
    QCOMPARE(outcome.valid, valid);
    QCOMPARE(outcome.value.userType(), value.userType());
    QCOMPARE(outcome.value, value);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ResultVarArrayInterface::getValuesStatusConvertsEachElementToAnInteger()
{
    m_fake->answer("getValuesStatus", ScriptedAnswer::value(QVariantList{3, QStringLiteral("7"), QStringLiteral("x")}));
    LogCapture log;

    QCOMPARE(m_proxy->getValuesStatus(), QList<int>({3, 7, 0}));

    m_fake->answer("getValuesStatus",
                   ScriptedAnswer::value(QVariantList{true, QStringLiteral("-12"), QStringLiteral(""), 65535u}));
    QCOMPARE(m_proxy->getValuesStatus(), QList<int>({1, -12, 0, 65535}));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ResultVarArrayInterface::getValuesStatusReportsUnderTheIntegerRowsName()
{
    m_fake->answer("getValuesStatus", ScriptedAnswer::error(failure, QStringLiteral("busy")));
    LogCapture log;

    QCOMPARE(m_proxy->getValuesStatus(), QList<int>());

    QCOMPARE(log.lines().size(), 1);
    QVERIFY(log.lines().first().text.startsWith(QStringLiteral("ResultIntArrayInterface::getValuesStatus():  ")));
    QCOMPARE(log.lines(), debugLines({report("ResultIntArrayInterface::getValuesStatus(): ", "busy")}));
}

void tst_ResultVarArrayInterface::getValueCompReportsItsLiteralWithoutAColon()
{
    m_fake->answer("getValueComp", ScriptedAnswer::error(failure, QStringLiteral("busy")));
    LogCapture log;

    QCOMPARE(m_proxy->getValueComp(), QList<QVariant>());

    // The literal, the stream's one blank, then the quoted service straight away.
    QCOMPARE(log.lines(),
             debugLines({"ResultVarArrayInterface::getValueComp() \"com.velk.mqx.app.fake\"  /  \"/Result/Spectrum\"  "
                         "/ Error: \"busy\""}));
}

void tst_ResultVarArrayInterface::getValueCompKeepsTheOrderAndUnwrapsEachElement()
{
    m_fake->answer("getValueComp", ScriptedAnswer::value(QVariantList{-3.5, QStringLiteral("dBm"), 12, false}));
    LogCapture log;

    const QList<QVariant> comp = m_proxy->getValueComp();

    QCOMPARE(comp.size(), 4);
    QCOMPARE(comp.at(0).userType(), int(QMetaType::Double));
    QCOMPARE(comp.at(0).toDouble(), -3.5);
    QCOMPARE(comp.at(1).userType(), int(QMetaType::QString));
    QCOMPARE(comp.at(1).toString(), QStringLiteral("dBm"));
    QCOMPARE(comp.at(2).userType(), int(QMetaType::Int));
    QCOMPARE(comp.at(2).toInt(), 12);
    QCOMPARE(comp.at(3).userType(), int(QMetaType::Bool));
    QCOMPARE(comp.at(3).toBool(), false);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ResultVarArrayInterface::getValueSendsThePositionAndReturnsTheInnerValue()
{
    m_fake->answer("getValue", ScriptedAnswer::value(QVariant::fromValue(QDBusVariant(2.5))));
    LogCapture log;

    const QVariant value = m_proxy->getValue(2);

    verifySingleCall(*m_fake, path, "getValue", "i", {2});
    QCOMPARE(m_fake->calls().first().arguments.first().userType(), int(QMetaType::Int));
    QVERIFY(value.isValid());
    QCOMPARE(value.userType(), int(QMetaType::Double));
    QCOMPARE(value.toDouble(), 2.5);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ResultVarArrayInterface::positionsOutsideTheRowAreSentUnchangedAndTheErrorReported()
{
    m_fake->answer("getValue", ScriptedAnswer::error(outOfRange, QStringLiteral("position 99 outside 0..3")));
    m_fake->answer("getValueStatus", ScriptedAnswer::error(outOfRange, QStringLiteral("position -1 outside 0..3")));
    LogCapture log;

    const QVariant value = m_proxy->getValue(99);
    const int status = m_proxy->getValueStatus(-1);

    QVERIFY(!value.isValid());
    QCOMPARE(status, 0);
    const QList<ReceivedCall> calls = m_fake->calls();
    QCOMPARE(calls.size(), 2);
    QCOMPARE(calls.at(0).signature, QStringLiteral("i"));
    QCOMPARE(calls.at(0).arguments, QList<QVariant>{99});
    QCOMPARE(calls.at(1).signature, QStringLiteral("i"));
    QCOMPARE(calls.at(1).arguments, QList<QVariant>{-1});
    QCOMPARE(log.lines(),
             debugLines({report("ResultVarArrayInterface::getValue(): ", "position 99 outside 0..3"),
                         report("ResultVarArrayInterface::getValueStatus(): ", "position -1 outside 0..3")}));
}

void tst_ResultVarArrayInterface::getTimeStampRoundTripsTheApplicationsDateTime()
{
    const QDateTime stamp(QDate(2038, 1, 19), QTime(3, 14, 8, 1), Qt::UTC);
    m_fake->answer("getTimeStamp", ScriptedAnswer::value(stamp));
    LogCapture log;

    const QDBusReply<QDateTime> reply = m_proxy->getTimeStamp();

    QVERIFY(reply.isValid());
    QCOMPARE(reply.value(), stamp);
    QCOMPARE(reply.value().timeSpec(), Qt::UTC);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ResultVarArrayInterface::reportsQuoteAndEscapeTheErrorMessage()
{
    m_fake->answer("getLowerLimit", ScriptedAnswer::error(failure, QStringLiteral("limit \"L1\" unset")));
    LogCapture log;

    m_proxy->getLowerLimit();

    QCOMPARE(log.lines(),
             debugLines({"ResultVarArrayInterface::getLowerLimit():  \"com.velk.mqx.app.fake\"  /  "
                         "\"/Result/Spectrum\"  / Error: \"limit \\\"L1\\\" unset\""}));
}

void tst_ResultVarArrayInterface::absentServiceGivesEmptyValuesAndOneReportPerCheckedGetter()
{
    LogCapture log;
    ResultVarArrayInterface proxy(absentService(), path, QDBusConnection::sessionBus());
    QStringList expected;
    const auto expectReport = [&](const QString &literal) {
        QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
        expected.append(literal + QStringLiteral(" \"com.velk.mqx.app.absent\"  /  \"/Result/Spectrum\"  / Error: \"") +
                        proxy.lastError().message() + QStringLiteral("\""));
    };

    QCOMPARE(proxy.getValues(), QList<QVariant>());
    expectReport("ResultVarArrayInterface::getValues(): ");
    QCOMPARE(proxy.getValuesStatus(), QList<int>());
    expectReport("ResultIntArrayInterface::getValuesStatus(): ");
    QCOMPARE(proxy.getValueComp(), QList<QVariant>());
    expectReport("ResultVarArrayInterface::getValueComp()");
    QVERIFY(!proxy.getValue(0).isValid());
    expectReport("ResultVarArrayInterface::getValue(): ");
    QCOMPARE(proxy.getValueStatus(0), 0);
    expectReport("ResultVarArrayInterface::getValueStatus(): ");
    QVERIFY(!proxy.getLowerLimit().isValid());
    expectReport("ResultVarArrayInterface::getLowerLimit(): ");
    QVERIFY(!proxy.getUpperLimit().isValid());
    expectReport("ResultVarArrayInterface::getUpperLimit(): ");
    QVERIFY(proxy.lastError().message().contains(absentService()));
    QCOMPARE(log.lines(), debugLines(expected));

    log.clear();
    const QDBusReply<int> size = proxy.size();
    QVERIFY(!size.isValid());
    QCOMPARE(size.value(), 0);
    QCOMPARE(size.error().type(), QDBusError::ServiceUnknown);
    const QDBusReply<int> status = proxy.getResultStatus();
    QVERIFY(!status.isValid());
    QCOMPARE(status.value(), 0);
    const QDBusReply<QDateTime> stamp = proxy.getTimeStamp();
    QVERIFY(!stamp.isValid());
    QVERIFY(stamp.value().isNull());
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ResultVarArrayInterface::metaObjectListsItsTenSlotsInOrder()
{
    const QMetaObject &meta = ResultVarArrayInterface::staticMetaObject;
    QCOMPARE(ownMethodSignatures(meta),
             QStringList({"getValues()", "getValuesStatus()", "getValueComp()", "getValue(int)", "getValueStatus(int)",
                          "getLowerLimit()", "getUpperLimit()", "size()", "getResultStatus()", "getTimeStamp()"}));
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Slot), ownMethodSignatures(meta));
    QCOMPARE(meta.method(meta.methodOffset() + 1).typeName(), "QList<int>");
    QCOMPARE(meta.method(meta.methodOffset() + 3).typeName(), "QVariant");
    QCOMPARE(meta.method(meta.methodOffset() + 4).typeName(), "int");
    QCOMPARE(meta.method(meta.methodOffset() + 9).typeName(), "QDBusReply<QDateTime>");
    QCOMPARE(meta.superClass(), &QDBusAbstractInterface::staticMetaObject);
    QCOMPARE(m_proxy->metaObject(), &meta);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
    QCOMPARE(meta.classInfoCount(), meta.classInfoOffset());
}

void tst_ResultVarArrayInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    QCOMPARE(m_proxy->qt_metacast("ResultVarArrayInterface"), static_cast<void *>(m_proxy.get()));
    QCOMPARE(m_proxy->qt_metacast("QDBusAbstractInterface"),
             static_cast<void *>(static_cast<QDBusAbstractInterface *>(m_proxy.get())));
    QCOMPARE(m_proxy->qt_metacast(nullptr), nullptr);
    QCOMPARE(m_proxy->qt_metacast("ResultIntArrayInterface"), nullptr);
}

void tst_ResultVarArrayInterface::keepsServiceAndPathBesideTheBase()
{
    QCOMPARE(sizeof(ResultVarArrayInterface), sizeof(QDBusAbstractInterface) + 2 * sizeof(QString));
}

void tst_ResultVarArrayInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValue", ScriptedAnswer::value(wrapped(2.5)));
    m_fake->answer("getValuesStatus", ScriptedAnswer::value(QVariantList{1, QStringLiteral("2")}));
    m_fake->answer("getValueStatus", ScriptedAnswer::value(6));

    QVariant value;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValue", Qt::DirectConnection, Q_RETURN_ARG(QVariant, value),
                                      Q_ARG(int, 2)));
    QCOMPARE(value, m_proxy->getValue(2));
    QCOMPARE(value.userType(), int(QMetaType::Double));
    QCOMPARE(value.toDouble(), 2.5);
    QCOMPARE(m_fake->calls().first().arguments, QList<QVariant>{2});

    QList<int> statuses;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValuesStatus", Qt::DirectConnection,
                                      Q_RETURN_ARG(QList<int>, statuses)));
    QCOMPARE(statuses, QList<int>({1, 2}));

    int status = -1;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValueStatus", Qt::DirectConnection, Q_RETURN_ARG(int, status),
                                      Q_ARG(int, 3)));
    QCOMPARE(status, 6);
    QCOMPARE(m_fake->calls().last().arguments, QList<QVariant>{3});
}

QTEST_GUILESS_MAIN(tst_ResultVarArrayInterface)

#include "tst_resultvararrayinterface.moc"
