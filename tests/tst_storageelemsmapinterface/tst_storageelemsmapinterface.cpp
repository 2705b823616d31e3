#include "StorageElemsMapInterface.h"

#include "CompositeTest.h"

#include <QtTest/QTest>

namespace {
using P = StorageElemsMapInterface;
const QString path = QStringLiteral("/Setup/StorageElems");

// clang-format off
// Slots invoked by name give what the direct call gives.
const QList<OperationRow> replies{
    {.operation = "getValues", .run = onProxy(&P::getValues), .answered = QStringList{"Trace 2", "Trace 1"},
     .wrongType = QStringLiteral("Trace 2"), .empty = QStringList()},
    {.operation = "getValues by name", .run = byName<QDBusReply<QStringList>>("getValues"),
     .answered = QStringList{"a", "b"}, .wrongType = QStringLiteral("a"), .empty = QStringList()},
    {.operation = "count", .run = onProxy(&P::count), .answered = 2, .wrongType = QStringLiteral("2"), .empty = 0},
    {.operation = "getSortOrder", .run = onProxy(&P::getSortOrder), .answered = QStringLiteral("byName"),
     .wrongType = 1, .empty = QString()},
};

// A void reply accepts any method return and only fails on an error.
const QList<OperationRow> voidReplies{
    {.operation = "setSortOrder", .run = onProxy<P>([](P &p) { return p.setSortOrder(QStringLiteral("byDate")); }),
     .signature = "s", .arguments = {QStringLiteral("byDate")}, .answered = true},
    {.operation = "setSortOrder by name",
     .run = byName<QDBusReply<void>>("setSortOrder(QString)", QStringLiteral("bogus")), .signature = "s",
     .arguments = {QStringLiteral("bogus")}, .answered = true},
};

const QList<OperationRow> relayed{
    {.operation = "setupChanged(QString,int,int,QStringList)",
     .arguments = {QStringLiteral("insert"), 2, 3, QStringList{"Trace 4", "Trace 5", "Trace 6"}}},
    {.operation = "sortOrderChanged(QString)", .arguments = {QStringLiteral("byDate")}},
};
// clang-format on

CompositeClass storageElemsMap()
{
    return {
        .className = "StorageElemsMapInterface",
        .path = path,
        .make = factoryOf<P>(),
        .replies = replies,
        .voidReplies = voidReplies,
        .setToDefault = onProxy(&P::setToDefault),
        .asyncs = {{.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .member = "setToDefault"}},
        .failingCall = {.operation = "count", .run = onProxy(&P::count)},
        .relayed = relayed,
        .otherClassNames = {"SetupThresholdManagerInterface"},
        .signalSignatures = {"setupChanged(QString,int,int,QStringList)", "sortOrderChanged(QString)"},
        .slotSignatures = {"getValues()", "count()", "setToDefault()", "setToDefaultAsync()", "getSortOrder()",
                           "setSortOrder(QString)"},
        .returnTypes = {{"setSortOrder(QString)", "QDBusReply<void>"}, {"setToDefault()", "void"}},
    };
}
} // namespace

class tst_StorageElemsMapInterface : public CompositeTest
{
    Q_OBJECT

public:
    tst_StorageElemsMapInterface()
        : CompositeTest(storageElemsMap())
    {
    }

private Q_SLOTS:
    void holdsNothingBesideTheBase();
};

void tst_StorageElemsMapInterface::holdsNothingBesideTheBase()
{
    QCOMPARE(sizeof(StorageElemsMapInterface), sizeof(QDBusAbstractInterface));
}

QTEST_GUILESS_MAIN(tst_StorageElemsMapInterface)

#include "tst_storageelemsmapinterface.moc"
