#include "ResultVarArrayInterface.h"

#include "ResultTestSupport.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QDateTime>
#include <QtTest/QTest>

#include <memory>

namespace {

using P = ResultVarArrayInterface;

const QString path = QStringLiteral("/Result/Spectrum");
const QString outOfRange = QStringLiteral("com.velk.mqx.Error.OutOfRange");

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

QList<OperationRow> generatedGetters()
{
    return {
        {.operation = "size", .run = onProxy(&P::size), .answered = 1024, .wrongType = wrapped(1024), .empty = 0},
        {.operation = "getResultStatus",
         .run = onProxy(&P::getResultStatus),
         .answered = 1,
         .wrongType = true,
         .empty = 0},
        {.operation = "getTimeStamp",
         .run = onProxy(&P::getTimeStamp),
         .answered = QDateTime(QDate(2021, 3, 28), QTime(1, 30, 0, 500), Qt::UTC),
         .wrongType = QStringLiteral("2021-03-28T01:30:00.500Z"),
         .empty = QDateTime()},
    };
}

} // namespace

class tst_ResultVarArrayInterface : public QObject, private ProxyFixture<ResultVarArrayInterface>
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
};

void tst_ResultVarArrayInterface::init()
{
    startFakeAndProxy(path);
    QCOMPARE(m_fake->service(), QStringLiteral("com.velk.mqx.app.fake"));
}

void tst_ResultVarArrayInterface::cleanup()
{
    stopFakeAndProxy();
}

void tst_ResultVarArrayInterface::constructionMakesNoBusCallAndLogsNothing()
{
    verifyConstructionContract<ResultVarArrayInterface>(*m_fake, path);
    verifyConstructionForAnAbsentService<ResultVarArrayInterface>(path);
}

void tst_ResultVarArrayInterface::sendsEachOperationWithItsWireForm_data()
{
    QTest::addColumn<OperationRow>("row");
    for (const OperationRow &row : QList<OperationRow>{
             {.operation = "getValues", .run = onProxy(&P::getValues)},
             {.operation = "getValuesStatus", .run = onProxy(&P::getValuesStatus)},
             {.operation = "getValueComp", .run = onProxy(&P::getValueComp)},
             {.operation = "getValue",
             .run = onProxy<P>([](P &p) { return p.getValue(2); }),
             .signature = "i",
             .arguments = {2}},
             {.operation = "getValueStatus",
             .run = onProxy<P>([](P &p) { return p.getValueStatus(5); }),
             .signature = "i",
             .arguments = {5}},
             {.operation = "getLowerLimit", .run = onProxy(&P::getLowerLimit)},
             {.operation = "getUpperLimit", .run = onProxy(&P::getUpperLimit)},
             {.operation = "size", .run = onProxy(&P::size)},
             {.operation = "getResultStatus", .run = onProxy(&P::getResultStatus)},
             {.operation = "getTimeStamp", .run = onProxy(&P::getTimeStamp)},
         })
        QTest::newRow(row.operation) << row;
}

void tst_ResultVarArrayInterface::sendsEachOperationWithItsWireForm()
{
    QFETCH(OperationRow, row);
    verifySentAsItsRow(*m_fake, *m_proxy, row);
}

void tst_ResultVarArrayInterface::checkedGettersReturnTheValueOrReportOnce_data()
{
    ResultTest::addCheckedGetterColumns();

    const ScriptedAnswer error = ScriptedAnswer::error(failedErrorName(), QStringLiteral("no row yet"));
    const ScriptedAnswer intArray = ScriptedAnswer::value(QVariant::fromValue(QList<int>{3, 1, 4}));
    const QVariantList row{3, QStringLiteral("x"), 4.5};
    const QVariantList none;

    const ProxyOperation getValues = onProxy<P>([](P &p) { return QVariant(p.getValues()); });
    QTest::newRow("getValues answered") << getValues << "getValues" << ScriptedAnswer::value(row) << QVariant(row)
                                        << QStringList();
    QTest::newRow("getValues error")
        << getValues << "getValues" << error << QVariant(none)
        << QStringList{"ResultVarArrayInterface::getValues():  \"com.velk.mqx.app.fake\"  /  \"/Result/Spectrum\"  / "
                       "Error: \"no row yet\""};
    QTest::newRow("getValues array of integers")
        << getValues << "getValues" << intArray << QVariant(none)
        << QStringList{"ResultVarArrayInterface::getValues():  \"com.velk.mqx.app.fake\"  /  \"/Result/Spectrum\"  / "
                       "Error: \"Unexpected reply signature: got \\\"ai\\\", expected \\\"av\\\" (QVariantList)\""};

    // Reports under the integer row's class name.
    const ProxyOperation getValuesStatus = onProxy<P>([](P &p) { return QVariant(asVariants(p.getValuesStatus())); });
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
        << QStringList{"ResultIntArrayInterface::getValuesStatus():  \"com.velk.mqx.app.fake\"  /  "
                       "\"/Result/Spectrum\"  / Error: \"Unexpected reply signature: got \\\"ai\\\", expected "
                       "\\\"av\\\" (QVariantList)\""};

    // Its literal has no colon of its own: one blank, then the quoted service.
    const ProxyOperation getValueComp = onProxy<P>([](P &p) { return QVariant(p.getValueComp()); });
    QTest::newRow("getValueComp answered")
        << getValueComp << "getValueComp" << ScriptedAnswer::value(row) << QVariant(row) << QStringList();
    QTest::newRow("getValueComp error")
        << getValueComp << "getValueComp" << error << QVariant(none)
        << QStringList{"ResultVarArrayInterface::getValueComp() \"com.velk.mqx.app.fake\"  /  \"/Result/Spectrum\"  / "
                       "Error: \"no row yet\""};
    QTest::newRow("getValueComp array of integers")
        << getValueComp << "getValueComp" << intArray << QVariant(none)
        << QStringList{"ResultVarArrayInterface::getValueComp() \"com.velk.mqx.app.fake\"  /  \"/Result/Spectrum\"  / "
                       "Error: \"Unexpected reply signature: got \\\"ai\\\", expected \\\"av\\\" (QVariantList)\""};

    const ProxyOperation getValue = onProxy<P>([](P &p) { return p.getValue(1); });
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
        << QStringList{"ResultVarArrayInterface::getValue():  \"com.velk.mqx.app.fake\"  /  \"/Result/Spectrum\"  / "
                       "Error: \"Unexpected reply signature: got \\\"d\\\" (double), expected \\\"v\\\" "
                       "(QDBusVariant)\""};

    const ProxyOperation getValueStatus = onProxy<P>([](P &p) { return QVariant(p.getValueStatus(1)); });
    QTest::newRow("getValueStatus answered")
        << getValueStatus << "getValueStatus" << ScriptedAnswer::value(4) << QVariant(4) << QStringList();
    QTest::newRow("getValueStatus error")
        << getValueStatus << "getValueStatus" << error << QVariant(0)
        << QStringList{"ResultVarArrayInterface::getValueStatus():  \"com.velk.mqx.app.fake\"  /  "
                       "\"/Result/Spectrum\"  / Error: \"no row yet\""};
    QTest::newRow("getValueStatus wrapped")
        << getValueStatus << "getValueStatus" << ScriptedAnswer::value(wrapped(4)) << QVariant(0)
        << QStringList{"ResultVarArrayInterface::getValueStatus():  \"com.velk.mqx.app.fake\"  /  "
                       "\"/Result/Spectrum\"  / Error: \"Unexpected reply signature: got \\\"v\\\" (QDBusVariant), "
                       "expected \\\"i\\\" (int)\""};

    const ProxyOperation getLowerLimit = onProxy<P>([](P &p) { return p.getLowerLimit(); });
    QTest::newRow("getLowerLimit answered") << getLowerLimit << "getLowerLimit" << ScriptedAnswer::value(wrapped(-40.0))
                                            << QVariant(-40.0) << QStringList();
    QTest::newRow("getLowerLimit error")
        << getLowerLimit << "getLowerLimit" << error << QVariant()
        << QStringList{"ResultVarArrayInterface::getLowerLimit():  \"com.velk.mqx.app.fake\"  /  "
                       "\"/Result/Spectrum\"  / Error: \"no row yet\""};
    QTest::newRow("getLowerLimit empty return")
        << getLowerLimit << "getLowerLimit" << ScriptedAnswer::reply() << QVariant()
        << QStringList{"ResultVarArrayInterface::getLowerLimit():  \"com.velk.mqx.app.fake\"  /  "
                       "\"/Result/Spectrum\"  / Error: \"Unexpected reply signature: got \\\"<empty signature>\\\", "
                       "expected \\\"v\\\" (QDBusVariant)\""};

    const ProxyOperation getUpperLimit = onProxy<P>([](P &p) { return p.getUpperLimit(); });
    QTest::newRow("getUpperLimit answered")
        << getUpperLimit << "getUpperLimit" << ScriptedAnswer::value(wrapped(40)) << QVariant(40) << QStringList();
    QTest::newRow("getUpperLimit error")
        << getUpperLimit << "getUpperLimit" << error << QVariant()
        << QStringList{"ResultVarArrayInterface::getUpperLimit():  \"com.velk.mqx.app.fake\"  /  "
                       "\"/Result/Spectrum\"  / Error: \"no row yet\""};
    QTest::newRow("getUpperLimit wrong type")
        << getUpperLimit << "getUpperLimit" << ScriptedAnswer::value(QStringLiteral("40")) << QVariant()
        << QStringList{"ResultVarArrayInterface::getUpperLimit():  \"com.velk.mqx.app.fake\"  /  "
                       "\"/Result/Spectrum\"  / Error: \"Unexpected reply signature: got \\\"s\\\" (QString), "
                       "expected \\\"v\\\" (QDBusVariant)\""};
}

void tst_ResultVarArrayInterface::checkedGettersReturnTheValueOrReportOnce()
{
    ResultTest::verifyCheckedGetter(*m_fake, *m_proxy);
}

void tst_ResultVarArrayInterface::generatedOperationsMapEachReplyWithoutLogging_data()
{
    addMappedReplyColumns();
    for (const OperationRow &getter : generatedGetters())
        addMappedReplyRows(QByteArray(getter.operation) + ' ', getter);
}

void tst_ResultVarArrayInterface::generatedOperationsMapEachReplyWithoutLogging()
{
    verifyMappedReply(*m_fake, *m_proxy);
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
    m_fake->answer("getValuesStatus", ScriptedAnswer::error(failedErrorName(), QStringLiteral("busy")));
    LogCapture log;

    QCOMPARE(m_proxy->getValuesStatus(), QList<int>());

    QCOMPARE(log.lines().size(), 1);
    QVERIFY(log.lines().first().text.startsWith(QStringLiteral("ResultIntArrayInterface::getValuesStatus():  ")));
    QCOMPARE(log.lines(),
             debugLines({"ResultIntArrayInterface::getValuesStatus():  \"com.velk.mqx.app.fake\"  /  "
                         "\"/Result/Spectrum\"  / Error: \"busy\""}));
}

void tst_ResultVarArrayInterface::getValueCompReportsItsLiteralWithoutAColon()
{
    // The literal, the stream's one blank, then the quoted service straight away.
    ResultTest::verifyErrorReplyReportedOnce(
        *m_fake, path, "getValueComp", QStringLiteral("busy"),
        "ResultVarArrayInterface::getValueComp() \"com.velk.mqx.app.fake\"  /  \"/Result/Spectrum\"  / Error: "
        "\"busy\"",
        [this] { return QVariant(m_proxy->getValueComp()); });
}

void tst_ResultVarArrayInterface::getValueCompKeepsTheOrderAndUnwrapsEachElement()
{
    ResultTest::verifyListArrivesUnwrapped(*m_fake, *m_proxy, path, "getValueComp",
                                           onProxy<P>([](P &p) { return p.getValueComp(); }),
                                           {-3.5, QStringLiteral("dBm"), 12, false},
                                           {QMetaType::Double, QMetaType::QString, QMetaType::Int, QMetaType::Bool});
}

void tst_ResultVarArrayInterface::getValueSendsThePositionAndReturnsTheInnerValue()
{
    m_fake->answer("getValue", ScriptedAnswer::value(wrapped(2.5)));
    LogCapture log;

    const QVariant value = m_proxy->getValue(2);

    verifySingleCall(*m_fake, path, "getValue", "i", wireTexts({2}));
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
             debugLines({"ResultVarArrayInterface::getValue():  \"com.velk.mqx.app.fake\"  /  \"/Result/Spectrum\"  / "
                         "Error: \"position 99 outside 0..3\"",
                         "ResultVarArrayInterface::getValueStatus():  \"com.velk.mqx.app.fake\"  /  "
                         "\"/Result/Spectrum\"  / Error: \"position -1 outside 0..3\""}));
}

void tst_ResultVarArrayInterface::getTimeStampRoundTripsTheApplicationsDateTime()
{
    ResultTest::verifyTimeStampsRoundTrip(*m_fake, *m_proxy,
                                          {QDateTime(QDate(2038, 1, 19), QTime(3, 14, 8, 1), Qt::UTC)});
}

void tst_ResultVarArrayInterface::reportsQuoteAndEscapeTheErrorMessage()
{
    ResultTest::verifyErrorReplyReportedOnce(
        *m_fake, path, "getLowerLimit", QStringLiteral("limit \"L1\" unset"),
        "ResultVarArrayInterface::getLowerLimit():  \"com.velk.mqx.app.fake\"  /  \"/Result/Spectrum\"  / "
        "Error: \"limit \\\"L1\\\" unset\"",
        [this] { return m_proxy->getLowerLimit(); }, QVariant());
}

void tst_ResultVarArrayInterface::absentServiceGivesEmptyValuesAndOneReportPerCheckedGetter()
{
    ResultVarArrayInterface absent(absentService(), path, QDBusConnection::sessionBus());
    ResultTest::verifyAbsentServiceGivesNothingAndOneReportPerCheckedGetter(
        absent,
        {
            {.operation = "getValues",
             .run = onProxy(&P::getValues),
             .report = "ResultVarArrayInterface::getValues(): "},
            {.operation = "getValuesStatus",
             .run = onProxy(&P::getValuesStatus),
             .report = "ResultIntArrayInterface::getValuesStatus(): "},
            {.operation = "getValueComp",
             .run = onProxy(&P::getValueComp),
             .report = "ResultVarArrayInterface::getValueComp()"},
            {.operation = "getValue",
             .run = onProxy<P>([](P &p) { return p.getValue(0); }),
             .report = "ResultVarArrayInterface::getValue(): "},
            {.operation = "getValueStatus",
             .run = onProxy<P>([](P &p) {
                 const int status = p.getValueStatus(0);
                 return status == 0 ? QVariant() : QVariant(status);
             }),
             .report = "ResultVarArrayInterface::getValueStatus(): "},
            {.operation = "getLowerLimit",
             .run = onProxy(&P::getLowerLimit),
             .report = "ResultVarArrayInterface::getLowerLimit(): "},
            {.operation = "getUpperLimit",
             .run = onProxy(&P::getUpperLimit),
             .report = "ResultVarArrayInterface::getUpperLimit(): "},
        },
        generatedGetters());
}

void tst_ResultVarArrayInterface::metaObjectListsItsTenSlotsInOrder()
{
    const QMetaObject &meta = ResultVarArrayInterface::staticMetaObject;
    ResultTest::verifyOwnMethodsAreExactlyTheseSlots(
        meta, *m_proxy,
        {"getValues()", "getValuesStatus()", "getValueComp()", "getValue(int)", "getValueStatus(int)",
         "getLowerLimit()", "getUpperLimit()", "size()", "getResultStatus()", "getTimeStamp()"},
        10);
    QCOMPARE(meta.method(meta.methodOffset() + 1).typeName(), "QList<int>");
    QCOMPARE(meta.method(meta.methodOffset() + 3).typeName(), "QVariant");
    QCOMPARE(meta.method(meta.methodOffset() + 4).typeName(), "int");
    QCOMPARE(meta.method(meta.methodOffset() + 9).typeName(), "QDBusReply<QDateTime>");
}

void tst_ResultVarArrayInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(*m_proxy, "ResultVarArrayInterface");
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
