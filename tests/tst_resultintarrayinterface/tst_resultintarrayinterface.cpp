#include "ResultIntArrayInterface.h"

#include "ProxyClassTest.h"

#include <QDateTime>
#include <QtTest/QTest>

namespace {

using P = ResultIntArrayInterface;

const QString path = QStringLiteral("/Result/Counts");
const QVariant none = QVariant(QVariantList());

// clang-format off
ProxyClassTable intArray()
{
    const ProxyOperation getValues = onProxy<P>([](P &p) { return QVariant(p.getValues()); });
    const ProxyOperation getString = onProxy(&P::getString);
    return {
        .className = "ResultIntArrayInterface",
        .path = path,
        .make = factoryOf<P>(),
        .size = sizeof(P),
        .ownData = 2 * sizeof(QString), // service and path, for the error lines
        .replies = {
            {.operation = "getValues", .run = getValues, .call = {.member = "getValues"},
             .reply = {.answered = QVariantList{7, -2, QStringLiteral("n/a"), 2.5},
                       .wrongType = QVariant::fromValue(QList<int>{3, 1, 4}), .empty = none},
             .log = {.report = "ResultIntArrayInterface::getValues(): ",
                     .typeError = "Unexpected reply signature: got \"ai\", expected \"av\" (QVariantList)"}},
            {.operation = "getString", .run = getString, .call = {.member = "getString"},
             .reply = {.answered = QStringLiteral("3 1 4"), .wrongType = 314, .empty = QString()},
             .log = {.report = "ResultIntArrayInterface::getString(): ",
                     .typeError = "Unexpected reply signature: got \"i\" (int), expected \"s\" (QString)"}},
            {.operation = "size", .run = onProxy(&P::size), .call = {.member = "size"},
             .reply = {.answered = 3, .wrongType = QStringLiteral("3"), .empty = 0}},
            {.operation = "getResultStatus", .run = onProxy(&P::getResultStatus), .call = {.member = "getResultStatus"},
             .reply = {.answered = 2, .wrongType = 2.0, .empty = 0}},
            {.operation = "getTimeStamp", .run = onProxy(&P::getTimeStamp), .call = {.member = "getTimeStamp"},
             .reply = {.answered = QDateTime(QDate(2024, 2, 29), QTime(23, 59, 58, 125), Qt::UTC),
                       .wrongType = 1709251198, .empty = QDateTime()}},
        },
        .answers = {
            {.operation = "getValues integers", .run = getValues, .call = {.member = "getValues"},
             .reply = {.answered = QVariantList{3, 1, 4}}},
            {.operation = "getValues none", .run = getValues, .call = {.member = "getValues"},
             .reply = {.answered = QVariantList()}},
        },
        .errors = {
            {"error", "no row yet", "\"no row yet\""},
            {"error with quotes", "row \"A\" locked", "\"row \\\"A\\\" locked\""},
        },
        .timeStamps = {
            QDateTime(QDate(1999, 12, 31), QTime(23, 59, 59, 999), Qt::UTC),
            QDateTime(QDate(2030, 7, 1), QTime(6, 5, 4, 3), Qt::LocalTime),
        },
        .slotSignatures = {"QVariantList getValues()", "QString getString()", "QDBusReply<int> size()",
                           "QDBusReply<int> getResultStatus()", "QDBusReply<QDateTime> getTimeStamp()"},
        .otherClasses = {"ResultVarArrayInterface"},
        .byName = {
            {.operation = "getValues", .run = byName<QList<QVariant>>("getValues"), .call = {.member = "getValues"},
             .reply = {.answered = QVariantList{5, 6}}, .direct = getValues},
            {.operation = "getString", .run = byName<QString>("getString"), .call = {.member = "getString"},
             .reply = {.answered = QStringLiteral("5 6")}, .direct = getString},
            {.operation = "size", .run = byName<QDBusReply<int>>("size"), .call = {.member = "size"},
             .reply = {.answered = 2}, .direct = onProxy(&P::size)},
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
    void hasNoStatusPerValue();
};

void tst_ResultIntArrayInterface::hasNoStatusPerValue()
{
    QCOMPARE(P::staticMetaObject.indexOfMethod("getValuesStatus()"), -1);
}

QTEST_GUILESS_MAIN(tst_ResultIntArrayInterface)

#include "tst_resultintarrayinterface.moc"
