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
ProxyClassTable varArray()
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
            {.operation = "getValue 2", .run = onProxy<P>([](P &p) { return p.getValue(2); }),
             .call = {.member = "getValue", .signature = "i", .arguments = {2}}},
            {.operation = "getValueStatus 5", .run = onProxy<P>([](P &p) { return p.getValueStatus(5); }),
             .call = {.member = "getValueStatus", .signature = "i", .arguments = {5}}},
            {.operation = "getValue by name", .run = byName<QVariant>("getValue(int)", 2),
             .call = {.member = "getValue", .signature = "i", .arguments = {2}}},
            {.operation = "getValueStatus by name", .run = byName<int>("getValueStatus(int)", 3),
             .call = {.member = "getValueStatus", .signature = "i", .arguments = {3}}},
        },
        .replies = {
            {.operation = "getValues", .run = getValues, .call = {.member = "getValues"},
             .reply = {.answered = QVariantList{3, QStringLiteral("x"), 4.5}, .wrongType = integers, .empty = none},
             .log = {.report = "ResultVarArrayInterface::getValues(): ", .typeError = listError}},
            // Reports under the integer row's class name.
            {.operation = "getValuesStatus", .run = getValuesStatus, .call = {.member = "getValuesStatus"},
             .reply = {.answered = QVariantList{0, 2, 1}, .wrongType = integers, .empty = none},
             .log = {.report = "ResultIntArrayInterface::getValuesStatus(): ", .typeError = listError}},
            // Its literal has no colon of its own: one blank, then the quoted service.
            {.operation = "getValueComp", .run = getValueComp, .call = {.member = "getValueComp"},
             .reply = {.answered = QVariantList{-3.5, QStringLiteral("dBm"), 12, false}, .wrongType = integers,
                       .empty = none},
             .log = {.report = "ResultVarArrayInterface::getValueComp()", .typeError = listError}},
            {.operation = "getValue", .run = getValue,
             .call = {.member = "getValue", .signature = "i", .arguments = {99}},
             .reply = {.answered = wrappedValue(-7), .seen = -7, .wrongType = 2.5, .empty = QVariant()},
             .log = {.report = "ResultVarArrayInterface::getValue(): ",
                     .typeError = "Unexpected reply signature: got \"d\" (double), expected \"v\" (QDBusVariant)"}},
            {.operation = "getValueStatus", .run = getValueStatus,
             .call = {.member = "getValueStatus", .signature = "i", .arguments = {-1}},
             .reply = {.answered = 4, .wrongType = wrappedValue(4), .empty = 0},
             .log = {.report = "ResultVarArrayInterface::getValueStatus(): ",
                     .typeError = "Unexpected reply signature: got \"v\" (QDBusVariant), expected \"i\" (int)"}},
            {.operation = "getLowerLimit", .run = onProxy(&P::getLowerLimit), .call = {.member = "getLowerLimit"},
             .reply = {.answered = wrappedValue(-40.0), .seen = -40.0, .wrongType = QStringLiteral("-40"),
                       .empty = QVariant()},
             .log = {.report = "ResultVarArrayInterface::getLowerLimit(): ",
                     .typeError = "Unexpected reply signature: got \"s\" (QString), expected \"v\" (QDBusVariant)"}},
            {.operation = "getUpperLimit", .run = onProxy(&P::getUpperLimit), .call = {.member = "getUpperLimit"},
             .reply = {.answered = wrappedValue(40), .seen = 40, .wrongType = QStringLiteral("40"),
                       .empty = QVariant()},
             .log = {.report = "ResultVarArrayInterface::getUpperLimit(): ",
                     .typeError = "Unexpected reply signature: got \"s\" (QString), expected \"v\" (QDBusVariant)"}},
            {.operation = "size", .run = onProxy(&P::size), .call = {.member = "size"},
             .reply = {.answered = 1024, .wrongType = wrappedValue(1024), .empty = 0}},
            {.operation = "getResultStatus", .run = onProxy(&P::getResultStatus), .call = {.member = "getResultStatus"},
             .reply = {.answered = 1, .wrongType = true, .empty = 0}},
            {.operation = "getTimeStamp", .run = onProxy(&P::getTimeStamp), .call = {.member = "getTimeStamp"},
             .reply = {.answered = QDateTime(QDate(2021, 3, 28), QTime(1, 30, 0, 500), Qt::UTC),
                       .wrongType = QStringLiteral("2021-03-28T01:30:00.500Z"), .empty = QDateTime()}},
        },
        .answers = {
            {.operation = "getValue text", .run = getValue, .call = {.member = "getValue", .signature = "i",
             .arguments = {99}}, .reply = {.answered = wrappedValue(QStringLiteral("overload")),
             .seen = QStringLiteral("overload")}},
            {.operation = "getValuesStatus none", .run = getValuesStatus, .call = {.member = "getValuesStatus"},
             .reply = {.answered = none}},
            // Each element is converted to an integer, as QVariant::toInt() does.
            {.operation = "getValuesStatus texts", .run = getValuesStatus, .call = {.member = "getValuesStatus"},
             .reply = {.answered = QVariantList{3, QStringLiteral("7"), QStringLiteral("x")},
                       .seen = asVariants({3, 7, 0})}},
            {.operation = "getValuesStatus mixed", .run = getValuesStatus, .call = {.member = "getValuesStatus"},
             .reply = {.answered = QVariantList{true, QStringLiteral("-12"), QStringLiteral(""), 65535u},
                       .seen = asVariants({1, -12, 0, 65535})}},
        },
        .errors = {
            {"error", "no row yet", "\"no row yet\""},
            {"error with quotes", "limit \"L1\" unset", "\"limit \\\"L1\\\" unset\""},
        },
        .timeStamps = {QDateTime(QDate(2038, 1, 19), QTime(3, 14, 8, 1), Qt::UTC)},
        .slotSignatures = {"QVariantList getValues()", "QList<int> getValuesStatus()", "QVariantList getValueComp()",
                           "QVariant getValue(int)", "int getValueStatus(int)", "QVariant getLowerLimit()",
                           "QVariant getUpperLimit()", "QDBusReply<int> size()", "QDBusReply<int> getResultStatus()",
                           "QDBusReply<QDateTime> getTimeStamp()"},
        .otherClasses = {"ResultIntArrayInterface"},
        .byName = {
            {.operation = "getValue", .run = byName<QVariant>("getValue(int)", 2),
             .call = {.member = "getValue", .signature = "i", .arguments = {2}},
             .reply = {.answered = wrappedValue(2.5), .seen = 2.5},
             .direct = onProxy<P>([](P &p) { return p.getValue(2); })},
            {.operation = "getValuesStatus", .run = statusesByName, .call = {.member = "getValuesStatus"},
             .reply = {.answered = QVariantList{1, QStringLiteral("2")}, .seen = asVariants({1, 2})},
             .direct = getValuesStatus},
            {.operation = "getValueStatus", .run = byName<int>("getValueStatus(int)", 3),
             .call = {.member = "getValueStatus", .signature = "i", .arguments = {3}}, .reply = {.answered = 6},
             .direct = onProxy<P>([](P &p) { return p.getValueStatus(3); })},
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
};

QTEST_GUILESS_MAIN(tst_ResultVarArrayInterface)

#include "tst_resultvararrayinterface.moc"
