#include "ResultIntArrayInterface.h"

#include "LogCapture.h"
#include "ProxyClassTest.h"

#include <QDateTime>
#include <QtTest/QTest>

namespace {

using P = ResultIntArrayInterface;

const QString path = QStringLiteral("/Result/Counts");
const QVariant none = QVariant(QVariantList());

// clang-format off
ProxyClass intArray()
{
    const ProxyOperation getValues = onProxy<P>([](P &p) { return QVariant(p.getValues()); });
    const ProxyOperation getString = onProxy<P>([](P &p) { return QVariant(p.getString()); });
    return {
        .className = "ResultIntArrayInterface",
        .path = path,
        .make = factoryOf<P>(),
        .size = sizeof(P),
        .ownData = 2 * sizeof(QString), // service and path, for the error lines
        .sent = {
            {.operation = "getValues", .run = onProxy(&P::getValues)},
            {.operation = "getString", .run = onProxy(&P::getString)},
        },
        .checked = {
            {.operation = "getValues", .run = getValues, .answered = QVariantList{7, -2, QStringLiteral("n/a"), 2.5},
             .wrongType = QVariant::fromValue(QList<int>{3, 1, 4}), .empty = none,
             .report = "ResultIntArrayInterface::getValues(): ",
             .typeError = "Unexpected reply signature: got \"ai\", expected \"av\" (QVariantList)"},
            {.operation = "getString", .run = getString, .answered = QStringLiteral("3 1 4"), .wrongType = 314,
             .empty = QString(), .report = "ResultIntArrayInterface::getString(): ",
             .typeError = "Unexpected reply signature: got \"i\" (int), expected \"s\" (QString)"},
        },
        .errors = {
            {"error", "no row yet", "\"no row yet\""},
            {"error with quotes", "row \"A\" locked", "\"row \\\"A\\\" locked\""},
        },
        .replies = {
            {.operation = "size", .run = onProxy(&P::size), .answered = 3, .wrongType = QStringLiteral("3"),
             .empty = 0},
            {.operation = "getResultStatus", .run = onProxy(&P::getResultStatus), .answered = 2, .wrongType = 2.0,
             .empty = 0},
            {.operation = "getTimeStamp", .run = onProxy(&P::getTimeStamp),
             .answered = QDateTime(QDate(2024, 2, 29), QTime(23, 59, 58, 125), Qt::UTC), .wrongType = 1709251198,
             .empty = QDateTime()},
        },
        .answers = {
            {.operation = "getValues integers", .run = getValues, .member = "getValues",
             .answered = QVariantList{3, 1, 4}},
            {.operation = "getValues none", .run = getValues, .member = "getValues", .answered = QVariantList()},
        },
        .timeStamps = {
            QDateTime(QDate(1999, 12, 31), QTime(23, 59, 59, 999), Qt::UTC),
            QDateTime(QDate(2030, 7, 1), QTime(6, 5, 4, 3), Qt::LocalTime),
        },
        .slotSignatures = {"getValues()", "getString()", "size()", "getResultStatus()", "getTimeStamp()"},
        .returnTypes = {"QVariantList", "QString", "QDBusReply<int>", "QDBusReply<int>", "QDBusReply<QDateTime>"},
        .otherClasses = {"ResultVarArrayInterface"},
        .byName = {
            {.operation = "getValues", .run = byName<QList<QVariant>>("getValues"), .answered = QVariantList{5, 6}},
            {.operation = "getString", .run = byName<QString>("getString"), .answered = QStringLiteral("5 6")},
            {.operation = "size", .run = byName<QDBusReply<int>>("size"), .answered = 2},
        },
    };
}
// clang-format on

} // namespace

class tst_ResultIntArrayInterface : public ProxyClassTest
{
    Q_OBJECT

public:
    tst_ResultIntArrayInterface()
        : ProxyClassTest(intArray())
    {
    }

private Q_SLOTS:
    void constructionForAnAbsentServiceKeepsItsArgumentsAndLogsNothing();
    void hasNoStatusPerValue();
    void applicationLeavingTheBusMidCallIsReported();
};

void tst_ResultIntArrayInterface::constructionForAnAbsentServiceKeepsItsArgumentsAndLogsNothing()
{
    verifyConstructionForAnAbsentService<P>(path);
}

void tst_ResultIntArrayInterface::hasNoStatusPerValue()
{
    QCOMPARE(P::staticMetaObject.indexOfMethod("getValuesStatus()"), -1);
}

void tst_ResultIntArrayInterface::applicationLeavingTheBusMidCallIsReported()
{
    m_fake->answer("getValues", ScriptedAnswer::vanish());
    LogCapture log;

    QVERIFY(proxy<P>().getValues().isEmpty());

    QVERIFY(m_proxy->lastError().isValid());
    QCOMPARE(log.lines(),
             debugLines({reportLine("ResultIntArrayInterface::getValues(): ", m_fake->service(), path,
                                    m_proxy->lastError().message())}));
}

QTEST_GUILESS_MAIN(tst_ResultIntArrayInterface)

#include "tst_resultintarrayinterface.moc"
