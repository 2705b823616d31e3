#include "ResultVarArrayInterface.h"

#include "ProxyClassTest.h"

#include <QDateTime>
#include <QtTest/QTest>

namespace {

using P = ResultVarArrayInterface;

const QString path = QStringLiteral("/Result/Spectrum");
const QVariant none = QVariant(QVariantList());
/// A well-formed list of another type, and QtDBus's words for it.
const QVariant integers = QVariant::fromValue(QList<int>{3, 1, 4});
const QString listError = QStringLiteral("Unexpected reply signature: got \"ai\", expected \"av\" (QVariantList)");

/// The statuses as a list of variants, which compares by value in Qt 5 as QList<int> does not.
QVariant asVariants(const QList<int> &numbers)
{
    QVariantList list;
    for (int number : numbers)
        list.append(number);
    return list;
}

QVariant statuses(P &p)
{
    return asVariants(p.getValuesStatus());
}

Seen statusesByName(QDBusAbstractInterface &proxy)
{
    Seen seen = byName<QList<int>>("getValuesStatus")(proxy);
    seen.value = asVariants(seen.value.value<QList<int>>());
    return seen;
}

// clang-format off
ProxyClass varArray()
{
    const ProxyOperation getValues = onProxy<P>([](P &p) { return QVariant(p.getValues()); });
    const ProxyOperation getValuesStatus = onProxy<P>(statuses);
    const ProxyOperation getValueComp = onProxy<P>([](P &p) { return QVariant(p.getValueComp()); });
    // Positions outside the row go out unchanged; the application judges them.
    const ProxyOperation getValue = onProxy<P>([](P &p) { return p.getValue(99); });
    const ProxyOperation getValueStatus = onProxy<P>([](P &p) { return p.getValueStatus(-1); });
    return {
        .className = "ResultVarArrayInterface",
        .path = path,
        .make = factoryOf<P>(),
        .size = sizeof(P),
        .ownData = 2 * sizeof(QString), // service and path, for the error lines
        .sent = {
            {.operation = "getValues", .run = onProxy(&P::getValues)},
            {.operation = "getValuesStatus", .run = getValuesStatus},
            {.operation = "getValueComp", .run = onProxy(&P::getValueComp)},
            {.operation = "getValue", .run = onProxy<P>([](P &p) { return p.getValue(2); }), .signature = "i",
             .arguments = {2}},
            {.operation = "getValueStatus", .run = onProxy<P>([](P &p) { return p.getValueStatus(5); }),
             .signature = "i", .arguments = {5}},
            {.operation = "getLowerLimit", .run = onProxy(&P::getLowerLimit)},
            {.operation = "getUpperLimit", .run = onProxy(&P::getUpperLimit)},
            {.operation = "getValue by name", .run = byName<QVariant>("getValue(int)", 2), .member = "getValue",
             .signature = "i", .arguments = {2}},
            {.operation = "getValueStatus by name", .run = byName<int>("getValueStatus(int)", 3),
             .member = "getValueStatus", .signature = "i", .arguments = {3}},
        },
        .checked = {
            {.operation = "getValues", .run = getValues, .answered = QVariantList{3, QStringLiteral("x"), 4.5},
             .wrongType = integers, .empty = none,
             .report = "ResultVarArrayInterface::getValues(): ", .typeError = listError},
            // Reports under the integer row's class name.
            {.operation = "getValuesStatus", .run = getValuesStatus, .answered = QVariantList{0, 2, 1},
             .wrongType = integers, .empty = none,
             .report = "ResultIntArrayInterface::getValuesStatus(): ", .typeError = listError},
            // Its literal has no colon of its own: one blank, then the quoted service.
            {.operation = "getValueComp", .run = getValueComp,
             .answered = QVariantList{-3.5, QStringLiteral("dBm"), 12, false}, .wrongType = integers, .empty = none,
             .report = "ResultVarArrayInterface::getValueComp()", .typeError = listError},
            {.operation = "getValue", .run = getValue, .signature = "i", .arguments = {99},
             .answered = wrappedValue(-7), .seen = -7, .wrongType = 2.5, .empty = QVariant(),
             .report = "ResultVarArrayInterface::getValue(): ",
             .typeError = "Unexpected reply signature: got \"d\" (double), expected \"v\" (QDBusVariant)"},
            {.operation = "getValueStatus", .run = getValueStatus, .signature = "i", .arguments = {-1}, .answered = 4,
             .wrongType = wrappedValue(4), .empty = 0, .report = "ResultVarArrayInterface::getValueStatus(): ",
             .typeError = "Unexpected reply signature: got \"v\" (QDBusVariant), expected \"i\" (int)"},
            {.operation = "getLowerLimit", .run = onProxy(&P::getLowerLimit), .answered = wrappedValue(-40.0),
             .seen = -40.0, .wrongType = QStringLiteral("-40"), .empty = QVariant(),
             .report = "ResultVarArrayInterface::getLowerLimit(): ",
             .typeError = "Unexpected reply signature: got \"s\" (QString), expected \"v\" (QDBusVariant)"},
            {.operation = "getUpperLimit", .run = onProxy(&P::getUpperLimit), .answered = wrappedValue(40), .seen = 40,
             .wrongType = QStringLiteral("40"), .empty = QVariant(),
             .report = "ResultVarArrayInterface::getUpperLimit(): ",
             .typeError = "Unexpected reply signature: got \"s\" (QString), expected \"v\" (QDBusVariant)"},
        },
        .errors = {
            {"error", "no row yet", "\"no row yet\""},
            {"error with quotes", "limit \"L1\" unset", "\"limit \\\"L1\\\" unset\""},
        },
        .replies = {
            {.operation = "size", .run = onProxy(&P::size), .answered = 1024, .wrongType = wrappedValue(1024),
             .empty = 0},
            {.operation = "getResultStatus", .run = onProxy(&P::getResultStatus), .answered = 1, .wrongType = true,
             .empty = 0},
            {.operation = "getTimeStamp", .run = onProxy(&P::getTimeStamp),
             .answered = QDateTime(QDate(2021, 3, 28), QTime(1, 30, 0, 500), Qt::UTC),
             .wrongType = QStringLiteral("2021-03-28T01:30:00.500Z"), .empty = QDateTime()},
        },
        .answers = {
            {.operation = "getValue text", .run = getValue, .member = "getValue",
             .answered = wrappedValue(QStringLiteral("overload")), .seen = QStringLiteral("overload")},
            {.operation = "getValuesStatus none", .run = getValuesStatus, .member = "getValuesStatus",
             .answered = none},
            // Each element is converted to an integer, as QVariant::toInt() does.
            {.operation = "getValuesStatus texts", .run = getValuesStatus, .member = "getValuesStatus",
             .answered = QVariantList{3, QStringLiteral("7"), QStringLiteral("x")}, .seen = asVariants({3, 7, 0})},
            {.operation = "getValuesStatus mixed", .run = getValuesStatus, .member = "getValuesStatus",
             .answered = QVariantList{true, QStringLiteral("-12"), QStringLiteral(""), 65535u},
             .seen = asVariants({1, -12, 0, 65535})},
        },
        .timeStamps = {QDateTime(QDate(2038, 1, 19), QTime(3, 14, 8, 1), Qt::UTC)},
        .slotSignatures = {"getValues()", "getValuesStatus()", "getValueComp()", "getValue(int)", "getValueStatus(int)",
                           "getLowerLimit()", "getUpperLimit()", "size()", "getResultStatus()", "getTimeStamp()"},
        .returnTypes = {"QVariantList", "QList<int>", "QVariantList", "QVariant", "int", "QVariant", "QVariant",
                        "QDBusReply<int>", "QDBusReply<int>", "QDBusReply<QDateTime>"},
        .otherClasses = {"ResultIntArrayInterface"},
        .byName = {
            {.operation = "getValue", .run = byName<QVariant>("getValue(int)", 2), .signature = "i", .arguments = {2},
             .answered = wrappedValue(2.5), .seen = 2.5},
            {.operation = "getValuesStatus", .run = statusesByName, .answered = QVariantList{1, QStringLiteral("2")},
             .seen = asVariants({1, 2})},
            {.operation = "getValueStatus", .run = byName<int>("getValueStatus(int)", 3), .signature = "i",
             .arguments = {3}, .answered = 6},
        },
    };
}
// clang-format on

} // namespace

class tst_ResultVarArrayInterface : public ProxyClassTest
{
    Q_OBJECT

public:
    tst_ResultVarArrayInterface()
        : ProxyClassTest(varArray())
    {
    }

private Q_SLOTS:
    void constructionForAnAbsentServiceKeepsItsArgumentsAndLogsNothing();
};

void tst_ResultVarArrayInterface::constructionForAnAbsentServiceKeepsItsArgumentsAndLogsNothing()
{
    verifyConstructionForAnAbsentService<P>(path);
}

QTEST_GUILESS_MAIN(tst_ResultVarArrayInterface)

#include "tst_resultvararrayinterface.moc"
