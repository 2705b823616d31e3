#include "ResultIntArrayInterface.h"

#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"

#include <QDBusConnection>
#include <QDateTime>
#include <QtTest/QTest>

#include <functional>
#include <memory>

using Operation = std::function<Outcome(ResultIntArrayInterface &)>;
/// A hand-written getter's plain result.
using Getter = std::function<QVariant(ResultIntArrayInterface &)>;
Q_DECLARE_METATYPE(Operation)
Q_DECLARE_METATYPE(Getter)

namespace {
const QString path = QStringLiteral("/Result/Counts");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");

/// The report of a failed getter on the fake's service and this path, for a message
/// without double quotes.
QString report(const QString &literal, const QString &message)
{
    return literal + QStringLiteral(" \"com.velk.mqx.app.fake\"  /  \"/Result/Counts\"  / Error: \"") + message +
        QStringLiteral("\"");
}
} // namespace

class tst_ResultIntArrayInterface : public QObject
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

    void getValuesKeepsTheOrderAndUnwrapsEachElement();
    void getStringReturnsANullStringAfterAFailureWithOneReport();
    void getTimeStampRoundTripsTheApplicationsDateTime();
    void reportsQuoteAndEscapeTheErrorMessage();
    void absentServiceGivesEmptyValuesAndOneReportPerCheckedGetter();
    void applicationLeavingTheBusMidCallIsReported();

    void metaObjectListsItsFiveSlotsInOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void keepsServiceAndPathBesideTheBase();
    void invokingSlotsByNameGivesTheDirectResult();

private:
    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<ResultIntArrayInterface> m_proxy;
};

void tst_ResultIntArrayInterface::init()
{
    m_fake.reset(new FakeMeasApplication);
    QCOMPARE(m_fake->service(), QStringLiteral("com.velk.mqx.app.fake"));
    m_proxy.reset(new ResultIntArrayInterface(m_fake->service(), path, QDBusConnection::sessionBus()));
}

void tst_ResultIntArrayInterface::cleanup()
{
    m_proxy.reset();
    m_fake.reset();
}

void tst_ResultIntArrayInterface::constructionMakesNoBusCallAndLogsNothing()
{
    LogCapture log;
    ResultIntArrayInterface proxy(m_fake->service(), path, QDBusConnection::sessionBus());
    ResultIntArrayInterface absent(absentService(), path, QDBusConnection::sessionBus());

    QCOMPARE(proxy.service(), m_fake->service());
    QCOMPARE(proxy.path(), path);
    QCOMPARE(proxy.interface(), FakeMeasApplication::interfaceName);
    QCOMPARE(absent.service(), absentService());
    syncWithBus(proxy.connection());
    QCOMPARE(m_fake->callCount(), 0);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ResultIntArrayInterface::sendsEachOperationWithItsWireForm_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");

    const auto op = [](std::function<void(ResultIntArrayInterface &)> call) {
        return Operation([call](ResultIntArrayInterface &proxy) {
            call(proxy);
            return Outcome{};
        });
    };
    using P = ResultIntArrayInterface;
    QTest::newRow("getValues") << op([](P &p) { p.getValues(); }) << "getValues";
    QTest::newRow("getString") << op([](P &p) { p.getString(); }) << "getString";
    QTest::newRow("size") << op([](P &p) { p.size(); }) << "size";
    QTest::newRow("getResultStatus") << op([](P &p) { p.getResultStatus(); }) << "getResultStatus";
    QTest::newRow("getTimeStamp") << op([](P &p) { p.getTimeStamp(); }) << "getTimeStamp";
}

void tst_ResultIntArrayInterface::sendsEachOperationWithItsWireForm()
{
    QFETCH(Operation, operation);
    QFETCH(QString, member);

    m_fake->answer(member, ScriptedAnswer::reply());
    LogCapture log;
    operation(*m_proxy);
    verifySingleCall(*m_fake, path, member, QString(), {});
}

void tst_ResultIntArrayInterface::checkedGettersReturnTheValueOrReportOnce_data()
{
    QTest::addColumn<Getter>("getter");
    QTest::addColumn<QString>("member");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<QStringList>("lines");

    using P = ResultIntArrayInterface;
    const ScriptedAnswer error = ScriptedAnswer::error(failure, QStringLiteral("no row yet"));
    const Getter getValues = [](P &p) { return QVariant(p.getValues()); };
    const Getter getString = [](P &p) { return QVariant(p.getString()); };
    const QVariantList row{3, 1, 4};

    QTest::newRow("getValues answered") << getValues << "getValues" << ScriptedAnswer::value(row) << QVariant(row)
                                        << QStringList();
    QTest::newRow("getValues answered empty") << getValues << "getValues" << ScriptedAnswer::value(QVariantList())
                                              << QVariant(QVariantList()) << QStringList();
    QTest::newRow("getValues error")
        << getValues << "getValues" << error << QVariant(QVariantList())
        << QStringList{"ResultIntArrayInterface::getValues():  \"com.velk.mqx.app.fake\"  /  \"/Result/Counts\"  / "
                       "Error: \"no row yet\""};
    QTest::newRow("getValues array of integers")
        << getValues << "getValues" << ScriptedAnswer::value(QVariant::fromValue(QList<int>{3, 1, 4}))
        << QVariant(QVariantList())
        << QStringList{report("ResultIntArrayInterface::getValues(): ",
                              "Unexpected reply signature: got \\\"ai\\\", expected \\\"av\\\" (QVariantList)")};
    QTest::newRow("getValues empty return")
        << getValues << "getValues" << ScriptedAnswer::reply() << QVariant(QVariantList())
        << QStringList{report("ResultIntArrayInterface::getValues(): ",
                              "Unexpected reply signature: got \\\"<empty signature>\\\", expected \\\"av\\\" "
                              "(QVariantList)")};

    QTest::newRow("getString answered") << getString << "getString" << ScriptedAnswer::value(QStringLiteral("3 1 4"))
                                        << QVariant(QStringLiteral("3 1 4")) << QStringList();
    QTest::newRow("getString error")
        << getString << "getString" << error << QVariant(QString())
        << QStringList{"ResultIntArrayInterface::getString():  \"com.velk.mqx.app.fake\"  /  \"/Result/Counts\"  / "
                       "Error: \"no row yet\""};
    QTest::newRow("getString wrong type")
        << getString << "getString" << ScriptedAnswer::value(314) << QVariant(QString())
        << QStringList{report("ResultIntArrayInterface::getString(): ",
                              "Unexpected reply signature: got \\\"i\\\" (int), expected \\\"s\\\" (QString)")};
}

void tst_ResultIntArrayInterface::checkedGettersReturnTheValueOrReportOnce()
{
    QFETCH(Getter, getter);
    QFETCH(QString, member);
    QFETCH(ScriptedAnswer, answer);
    QFETCH(QVariant, result);
    QFETCH(QStringList, lines);

    m_fake->answer(member, answer);
    LogCapture log;
    const QVariant value = getter(*m_proxy);
    QCOMPARE(value.userType(), result.userType());
    QCOMPARE(value, result);
    QCOMPARE(log.lines(), debugLines(lines));
    QCOMPARE(m_fake->callCount(), 1);
}

void tst_ResultIntArrayInterface::generatedOperationsMapEachReplyWithoutLogging_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("member");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QVariant>("value");

    using P = ResultIntArrayInterface;
    const ScriptedAnswer error = ScriptedAnswer::error(failure, QStringLiteral("refused"));
    const auto rows = [&](const char *name, Operation op, const QVariant &good, const QVariant &wrongType,
                          const QVariant &defaultValue) {
        QTest::addRow("%s answered", name) << op << name << ScriptedAnswer::value(good) << true << good;
        QTest::addRow("%s error", name) << op << name << error << false << defaultValue;
        QTest::addRow("%s wrong type", name) << op << name << ScriptedAnswer::value(wrongType) << false << defaultValue;
        QTest::addRow("%s empty return", name) << op << name << ScriptedAnswer::reply() << false << defaultValue;
    };
    rows(
        "size", [](P &p) { return outcomeOf(p.size()); }, 3, QStringLiteral("3"), 0);
    rows(
        "getResultStatus", [](P &p) { return outcomeOf(p.getResultStatus()); }, 2, 2.0, 0);
    rows(
        "getTimeStamp", [](P &p) { return outcomeOf(p.getTimeStamp()); },
        QDateTime(QDate(2024, 2, 29), QTime(23, 59, 58, 125), Qt::UTC), 1709251198, QDateTime());
}

void tst_ResultIntArrayInterface::generatedOperationsMapEachReplyWithoutLogging()
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

void tst_ResultIntArrayInterface::getValuesKeepsTheOrderAndUnwrapsEachElement()
{
    m_fake->answer("getValues", ScriptedAnswer::value(QVariantList{7, -2, QStringLiteral("n/a"), 2.5}));

    const QList<QVariant> values = m_proxy->getValues();

    QCOMPARE(values.size(), 4);
    QCOMPARE(values.at(0).userType(), int(QMetaType::Int));
    QCOMPARE(values.at(0).toInt(), 7);
    QCOMPARE(values.at(1).toInt(), -2);
    QCOMPARE(values.at(2).userType(), int(QMetaType::QString));
    QCOMPARE(values.at(2).toString(), QStringLiteral("n/a"));
    QCOMPARE(values.at(3).userType(), int(QMetaType::Double));
    QCOMPARE(values.at(3).toDouble(), 2.5);
}

void tst_ResultIntArrayInterface::getStringReturnsANullStringAfterAFailureWithOneReport()
{
    m_fake->answer("getString", ScriptedAnswer::error(failure, QStringLiteral("gone")));
    LogCapture log;

    const QString text = m_proxy->getString();

    QVERIFY(text.isNull());
    QCOMPARE(log.lines(), debugLines({report("ResultIntArrayInterface::getString(): ", "gone")}));
}

void tst_ResultIntArrayInterface::getTimeStampRoundTripsTheApplicationsDateTime()
{
    const QDateTime utc(QDate(1999, 12, 31), QTime(23, 59, 59, 999), Qt::UTC);
    const QDateTime local(QDate(2030, 7, 1), QTime(6, 5, 4, 3), Qt::LocalTime);
    LogCapture log;

    m_fake->answer("getTimeStamp", ScriptedAnswer::value(utc));
    const QDBusReply<QDateTime> first = m_proxy->getTimeStamp();
    QVERIFY(first.isValid());
    QCOMPARE(first.value(), utc);
    QCOMPARE(first.value().timeSpec(), Qt::UTC);

    m_fake->answer("getTimeStamp", ScriptedAnswer::value(local));
    const QDBusReply<QDateTime> second = m_proxy->getTimeStamp();
    QVERIFY(second.isValid());
    QCOMPARE(second.value(), local);
    QCOMPARE(second.value().timeSpec(), Qt::LocalTime);

    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_ResultIntArrayInterface::reportsQuoteAndEscapeTheErrorMessage()
{
    m_fake->answer("getValues", ScriptedAnswer::error(failure, QStringLiteral("row \"A\" locked")));
    LogCapture log;

    m_proxy->getValues();

    QCOMPARE(log.lines(),
             debugLines({"ResultIntArrayInterface::getValues():  \"com.velk.mqx.app.fake\"  /  \"/Result/Counts\"  / "
                         "Error: \"row \\\"A\\\" locked\""}));
}

void tst_ResultIntArrayInterface::absentServiceGivesEmptyValuesAndOneReportPerCheckedGetter()
{
    LogCapture log;
    ResultIntArrayInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const QList<QVariant> values = proxy.getValues();
    const QString valuesError = proxy.lastError().message();
    const QString text = proxy.getString();
    const QString textError = proxy.lastError().message();

    QVERIFY(values.isEmpty());
    QVERIFY(text.isNull());
    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
    QVERIFY(valuesError.contains(absentService()));
    QCOMPARE(log.lines(),
             debugLines({"ResultIntArrayInterface::getValues():  \"com.velk.mqx.app.absent\"  /  \"/Result/Counts\" "
                         " / Error: \"" +
                             valuesError + "\"",
                         "ResultIntArrayInterface::getString():  \"com.velk.mqx.app.absent\"  /  \"/Result/Counts\" "
                         " / Error: \"" +
                             textError + "\""}));

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

void tst_ResultIntArrayInterface::applicationLeavingTheBusMidCallIsReported()
{
    m_fake->answer("getValues", ScriptedAnswer::vanish());
    LogCapture log;

    const QList<QVariant> values = m_proxy->getValues();

    QVERIFY(values.isEmpty());
    QVERIFY(m_proxy->lastError().isValid());
    QCOMPARE(log.lines(),
             debugLines({report("ResultIntArrayInterface::getValues(): ", m_proxy->lastError().message())}));
}

void tst_ResultIntArrayInterface::metaObjectListsItsFiveSlotsInOrder()
{
    const QMetaObject &meta = ResultIntArrayInterface::staticMetaObject;
    QCOMPARE(ownMethodSignatures(meta),
             QStringList({"getValues()", "getString()", "size()", "getResultStatus()", "getTimeStamp()"}));
    QCOMPARE(ownMethodSignatures(meta, QMetaMethod::Slot), ownMethodSignatures(meta));
    QCOMPARE(meta.method(meta.methodOffset() + 4).typeName(), "QDBusReply<QDateTime>");
    QCOMPARE(meta.indexOfMethod("getValuesStatus()"), -1);
    QCOMPARE(meta.superClass(), &QDBusAbstractInterface::staticMetaObject);
    QCOMPARE(m_proxy->metaObject(), &meta);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
    QCOMPARE(meta.classInfoCount(), meta.classInfoOffset());
}

void tst_ResultIntArrayInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    QCOMPARE(m_proxy->qt_metacast("ResultIntArrayInterface"), static_cast<void *>(m_proxy.get()));
    QCOMPARE(m_proxy->qt_metacast("QDBusAbstractInterface"),
             static_cast<void *>(static_cast<QDBusAbstractInterface *>(m_proxy.get())));
    QCOMPARE(m_proxy->qt_metacast(nullptr), nullptr);
    QCOMPARE(m_proxy->qt_metacast("ResultVarArrayInterface"), nullptr);
}

void tst_ResultIntArrayInterface::keepsServiceAndPathBesideTheBase()
{
    QCOMPARE(sizeof(ResultIntArrayInterface), sizeof(QDBusAbstractInterface) + 2 * sizeof(QString));
}

void tst_ResultIntArrayInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValues", ScriptedAnswer::value(QVariantList{5, 6}));
    m_fake->answer("getString", ScriptedAnswer::value(QStringLiteral("5 6")));
    m_fake->answer("size", ScriptedAnswer::value(2));

    QList<QVariant> values;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValues", Qt::DirectConnection,
                                      Q_RETURN_ARG(QList<QVariant>, values)));
    QCOMPARE(values, m_proxy->getValues());
    QCOMPARE(values, QVariantList({5, 6}));

    QString text;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getString", Qt::DirectConnection, Q_RETURN_ARG(QString, text)));
    QCOMPARE(text, QStringLiteral("5 6"));

    QDBusReply<int> size;
    QVERIFY(
        QMetaObject::invokeMethod(m_proxy.get(), "size", Qt::DirectConnection, Q_RETURN_ARG(QDBusReply<int>, size)));
    QCOMPARE(size.value(), 2);
}

QTEST_GUILESS_MAIN(tst_ResultIntArrayInterface)

#include "tst_resultintarrayinterface.moc"
