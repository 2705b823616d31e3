#include "ResultIntArrayInterface.h"

#include "ResultTestSupport.h"

#include <QDBusConnection>
#include <QDateTime>
#include <QtTest/QTest>

#include <memory>

namespace {

using P = ResultIntArrayInterface;

const QString path = QStringLiteral("/Result/Counts");

QList<OperationRow> generatedGetters()
{
    return {
        {.operation = "size", .run = onProxy(&P::size), .answered = 3, .wrongType = QStringLiteral("3"), .empty = 0},
        {.operation = "getResultStatus",
         .run = onProxy(&P::getResultStatus),
         .answered = 2,
         .wrongType = 2.0,
         .empty = 0},
        {.operation = "getTimeStamp",
         .run = onProxy(&P::getTimeStamp),
         .answered = QDateTime(QDate(2024, 2, 29), QTime(23, 59, 58, 125), Qt::UTC),
         .wrongType = 1709251198,
         .empty = QDateTime()},
    };
}

} // namespace

class tst_ResultIntArrayInterface : public QObject, private ProxyFixture<ResultIntArrayInterface>
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
};

void tst_ResultIntArrayInterface::init()
{
    startFakeAndProxy(path);
    QCOMPARE(m_fake->service(), QStringLiteral("com.velk.mqx.app.fake"));
}

void tst_ResultIntArrayInterface::cleanup()
{
    stopFakeAndProxy();
}

void tst_ResultIntArrayInterface::constructionMakesNoBusCallAndLogsNothing()
{
    verifyConstructionContract<ResultIntArrayInterface>(*m_fake, path);
    verifyConstructionForAnAbsentService<ResultIntArrayInterface>(path);
}

void tst_ResultIntArrayInterface::sendsEachOperationWithItsWireForm_data()
{
    QTest::addColumn<OperationRow>("row");
    for (const OperationRow &row : QList<OperationRow>{
             {.operation = "getValues", .run = onProxy(&P::getValues)},
             {.operation = "getString", .run = onProxy(&P::getString)},
             {.operation = "size", .run = onProxy(&P::size)},
             {.operation = "getResultStatus", .run = onProxy(&P::getResultStatus)},
             {.operation = "getTimeStamp", .run = onProxy(&P::getTimeStamp)},
         })
        QTest::newRow(row.operation) << row;
}

void tst_ResultIntArrayInterface::sendsEachOperationWithItsWireForm()
{
    QFETCH(OperationRow, row);
    verifySentAsItsRow(*m_fake, *m_proxy, row);
}

void tst_ResultIntArrayInterface::checkedGettersReturnTheValueOrReportOnce_data()
{
    ResultTest::addCheckedGetterColumns();

    const ScriptedAnswer error = ScriptedAnswer::error(failedErrorName(), QStringLiteral("no row yet"));
    const ProxyOperation getValues = onProxy<P>([](P &p) { return QVariant(p.getValues()); });
    const ProxyOperation getString = onProxy<P>([](P &p) { return QVariant(p.getString()); });
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
        << QStringList{"ResultIntArrayInterface::getValues():  \"com.velk.mqx.app.fake\"  /  \"/Result/Counts\"  / "
                       "Error: \"Unexpected reply signature: got \\\"ai\\\", expected \\\"av\\\" (QVariantList)\""};
    QTest::newRow("getValues empty return")
        << getValues << "getValues" << ScriptedAnswer::reply() << QVariant(QVariantList())
        << QStringList{"ResultIntArrayInterface::getValues():  \"com.velk.mqx.app.fake\"  /  \"/Result/Counts\"  / "
                       "Error: \"Unexpected reply signature: got \\\"<empty signature>\\\", expected \\\"av\\\" "
                       "(QVariantList)\""};

    QTest::newRow("getString answered") << getString << "getString" << ScriptedAnswer::value(QStringLiteral("3 1 4"))
                                        << QVariant(QStringLiteral("3 1 4")) << QStringList();
    QTest::newRow("getString error")
        << getString << "getString" << error << QVariant(QString())
        << QStringList{"ResultIntArrayInterface::getString():  \"com.velk.mqx.app.fake\"  /  \"/Result/Counts\"  / "
                       "Error: \"no row yet\""};
    QTest::newRow("getString wrong type")
        << getString << "getString" << ScriptedAnswer::value(314) << QVariant(QString())
        << QStringList{"ResultIntArrayInterface::getString():  \"com.velk.mqx.app.fake\"  /  \"/Result/Counts\"  / "
                       "Error: \"Unexpected reply signature: got \\\"i\\\" (int), expected \\\"s\\\" (QString)\""};
}

void tst_ResultIntArrayInterface::checkedGettersReturnTheValueOrReportOnce()
{
    ResultTest::verifyCheckedGetter(*m_fake, *m_proxy);
}

void tst_ResultIntArrayInterface::generatedOperationsMapEachReplyWithoutLogging_data()
{
    addMappedReplyColumns();
    for (const OperationRow &getter : generatedGetters())
        addMappedReplyRows(QByteArray(getter.operation) + ' ', getter);
}

void tst_ResultIntArrayInterface::generatedOperationsMapEachReplyWithoutLogging()
{
    verifyMappedReply(*m_fake, *m_proxy);
}

void tst_ResultIntArrayInterface::getValuesKeepsTheOrderAndUnwrapsEachElement()
{
    ResultTest::verifyListArrivesUnwrapped(
        *m_fake, *m_proxy, path, "getValues", onProxy<P>([](P &p) { return p.getValues(); }),
        {7, -2, QStringLiteral("n/a"), 2.5}, {QMetaType::Int, QMetaType::Int, QMetaType::QString, QMetaType::Double});
}

void tst_ResultIntArrayInterface::getStringReturnsANullStringAfterAFailureWithOneReport()
{
    m_fake->answer("getString", ScriptedAnswer::error(failedErrorName(), QStringLiteral("gone")));
    LogCapture log;

    const QString text = m_proxy->getString();

    QVERIFY(text.isNull());
    QCOMPARE(log.lines(),
             debugLines({"ResultIntArrayInterface::getString():  \"com.velk.mqx.app.fake\"  /  \"/Result/Counts\"  / "
                         "Error: \"gone\""}));
}

void tst_ResultIntArrayInterface::getTimeStampRoundTripsTheApplicationsDateTime()
{
    ResultTest::verifyTimeStampsRoundTrip(*m_fake, *m_proxy,
                                          {QDateTime(QDate(1999, 12, 31), QTime(23, 59, 59, 999), Qt::UTC),
                                           QDateTime(QDate(2030, 7, 1), QTime(6, 5, 4, 3), Qt::LocalTime)});
}

void tst_ResultIntArrayInterface::reportsQuoteAndEscapeTheErrorMessage()
{
    ResultTest::verifyErrorReplyReportedOnce(
        *m_fake, path, "getValues", QStringLiteral("row \"A\" locked"),
        "ResultIntArrayInterface::getValues():  \"com.velk.mqx.app.fake\"  /  \"/Result/Counts\"  / "
        "Error: \"row \\\"A\\\" locked\"",
        [this] { return QVariant(m_proxy->getValues()); });
}

void tst_ResultIntArrayInterface::absentServiceGivesEmptyValuesAndOneReportPerCheckedGetter()
{
    ResultIntArrayInterface absent(absentService(), path, QDBusConnection::sessionBus());
    ResultTest::verifyAbsentServiceGivesNothingAndOneReportPerCheckedGetter(
        absent,
        {
            {.operation = "getValues",
             .run = onProxy(&P::getValues),
             .report = "ResultIntArrayInterface::getValues(): "},
            {.operation = "getString",
             .run = onProxy(&P::getString),
             .report = "ResultIntArrayInterface::getString(): "},
        },
        generatedGetters());
}

void tst_ResultIntArrayInterface::applicationLeavingTheBusMidCallIsReported()
{
    m_fake->answer("getValues", ScriptedAnswer::vanish());
    LogCapture log;

    const QList<QVariant> values = m_proxy->getValues();

    QVERIFY(values.isEmpty());
    QVERIFY(m_proxy->lastError().isValid());
    QCOMPARE(log.lines(),
             debugLines({reportLine("ResultIntArrayInterface::getValues(): ", QStringLiteral("com.velk.mqx.app.fake"),
                                    path, m_proxy->lastError().message())}));
}

void tst_ResultIntArrayInterface::metaObjectListsItsFiveSlotsInOrder()
{
    const QMetaObject &meta = ResultIntArrayInterface::staticMetaObject;
    ResultTest::verifyOwnMethodsAreExactlyTheseSlots(
        meta, *m_proxy, {"getValues()", "getString()", "size()", "getResultStatus()", "getTimeStamp()"}, 5);
    QCOMPARE(meta.method(meta.methodOffset() + 4).typeName(), "QDBusReply<QDateTime>");
    QCOMPARE(meta.indexOfMethod("getValuesStatus()"), -1);
}

void tst_ResultIntArrayInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(*m_proxy, "ResultIntArrayInterface");
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
