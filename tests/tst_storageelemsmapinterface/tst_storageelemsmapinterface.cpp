#include "StorageElemsMapInterface.h"

#include "ProxyClassTest.h"

#include <QtTest/QTest>

namespace {
using P = StorageElemsMapInterface;
const QString path = QStringLiteral("/Setup/StorageElems");

// clang-format off
// Slots invoked by name give what the direct call gives.
const QList<OperationRow> replies{
    {.operation = "getValues", .run = onProxy(&P::getValues), .call = {.member = "getValues"},
     .reply = {.answered = QStringList{"Trace 2", "Trace 1"}, .wrongType = QStringLiteral("Trace 2"),
               .empty = QStringList()}},
    {.operation = "getValues by name", .run = byName<QDBusReply<QStringList>>("getValues"),
     .call = {.member = "getValues"},
     .reply = {.answered = QStringList{"a", "b"}, .wrongType = QStringLiteral("a"), .empty = QStringList()}},
    {.operation = "count", .run = onProxy(&P::count), .call = {.member = "count"},
     .reply = {.answered = 2, .wrongType = QStringLiteral("2"), .empty = 0}},
    {.operation = "getSortOrder", .run = onProxy(&P::getSortOrder), .call = {.member = "getSortOrder"},
     .reply = {.answered = QStringLiteral("byName"), .wrongType = 1, .empty = QString()}},
};

// A void reply accepts any method return and only fails on an error.
const QList<OperationRow> voidReplies{
    {.operation = "setSortOrder", .run = onProxy<P>([](P &p) { return p.setSortOrder(QStringLiteral("byDate")); }),
     .call = {.member = "setSortOrder", .signature = "s", .arguments = {QStringLiteral("byDate")}},
     .reply = {.answered = true}},
    {.operation = "setSortOrder by name",
     .run = byName<QDBusReply<void>>("setSortOrder(QString)", QStringLiteral("bogus")),
     .call = {.member = "setSortOrder", .signature = "s", .arguments = {QStringLiteral("bogus")}},
     .reply = {.answered = true}},
};

const QList<OperationRow> relayed{
    {.operation = "setupChanged(QString,int,int,QStringList)",
     .call = {.member = "setupChanged",
              .arguments = {QStringLiteral("insert"), 2, 3, QStringList{"Trace 4", "Trace 5", "Trace 6"}}}},
    {.operation = "sortOrderChanged(QString)",
     .call = {.member = "sortOrderChanged", .arguments = {QStringLiteral("byDate")}}},
};
// clang-format on

ProxyClassTable storageElemsMap()
{
    return {
        .className = "StorageElemsMapInterface",
        .path = path,
        .make = factoryOf<P>(),
        .size = sizeof(P),
        .replies = replies,
        .voidReplies = voidReplies,
        .setToDefault = {.operation = "setToDefault",
                         .run = onProxy(&P::setToDefault),
                         .call = {.member = "setToDefault"}},
        .asyncs = {{.operation = "setToDefaultAsync",
                    .run = onProxy(&P::setToDefaultAsync),
                    .call = {.member = "setToDefault"}}},
        .failingCall = {.operation = "count", .run = onProxy(&P::count), .call = {.member = "count"}},
        .signalSignatures = {"setupChanged(QString,int,int,QStringList)", "sortOrderChanged(QString)"},
        .slotSignatures = {"getValues()", "count()", "void setToDefault()", "setToDefaultAsync()", "getSortOrder()",
                           "QDBusReply<void> setSortOrder(QString)"},
        .otherClasses = {"SetupThresholdManagerInterface"},
        .relayed = relayed,
    };
}
} // namespace

class tst_StorageElemsMapInterface : public ProxyClassTest
{
    Q_OBJECT

public:
    tst_StorageElemsMapInterface()
        : ProxyClassTest(storageElemsMap())
    {
    }
};

QTEST_GUILESS_MAIN(tst_StorageElemsMapInterface)

#include "tst_storageelemsmapinterface.moc"
