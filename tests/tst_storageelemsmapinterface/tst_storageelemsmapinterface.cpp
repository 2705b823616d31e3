#include "StorageElemsMapInterface.h"

#include "CompositeTest.h"

#include <QDBusConnection>
#include <QtTest/QTest>

#include <memory>

namespace {
using P = StorageElemsMapInterface;
const QString path = QStringLiteral("/Setup/StorageElems");
const QString failure = QStringLiteral("com.velk.mqx.Error.Failed");

// The class's own methods, in meta-object order.
const QStringList signalSignatures{"setupChanged(QString,int,int,QStringList)", "sortOrderChanged(QString)"};
const QStringList slotSignatures{"getValues()",         "count()",        "setToDefault()",
                                 "setToDefaultAsync()", "getSortOrder()", "setSortOrder(QString)"};

const OperationRow setToDefaultAsync{
    .operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .member = "setToDefault"};

CompositeClass storageElemsMap()
{
    return {
        .className = "StorageElemsMapInterface",
        .path = path,
        .make = factoryOf<P>(),
        .sent =
            {
                {.operation = "getValues", .run = onProxy(&P::getValues)},
                {.operation = "count", .run = onProxy(&P::count)},
                {.operation = "setToDefault", .run = onProxy(&P::setToDefault)},
                setToDefaultAsync,
                {.operation = "getSortOrder", .run = onProxy(&P::getSortOrder)},
                {.operation = "setSortOrder",
                 .run = onProxy<P>([](P &p) { return p.setSortOrder(QStringLiteral("byDate")); }),
                 .signature = "s",
                 .arguments = {QStringLiteral("byDate")}},
            },
        .absent =
            {
                {.operation = "getValues", .run = onProxy(&P::getValues), .empty = QStringList()},
                {.operation = "count", .run = onProxy(&P::count), .empty = 0},
                {.operation = "getSortOrder", .run = onProxy(&P::getSortOrder), .empty = QString()},
                {.operation = "setSortOrder",
                 .run = onProxy<P>([](P &p) { return p.setSortOrder(QStringLiteral("byName")); }),
                 .empty = QVariant()},
                {.operation = "setToDefault", .run = onProxy(&P::setToDefault), .empty = QVariant()},
            },
        .absentLog = LogCheck::Nothing,
        .setToDefault = onProxy(&P::setToDefault),
        .asyncs = {setToDefaultAsync},
        .failingCall = {.operation = "count", .run = onProxy(&P::count)},
        .signalSignatures = signalSignatures,
        .slotSignatures = slotSignatures,
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

private:
    P &proxy() { return ProxyTableTest::proxy<P>(); }

private Q_SLOTS:
    void constructionForAnAbsentServiceLogsNothing();

    void mapsEachReplyWithoutLogging_data();
    void mapsEachReplyWithoutLogging();

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void holdsNothingBesideTheBase();
    void invokingSlotsByNameGivesTheDirectResult();

    void relaysSetupChanged();
    void relaysSortOrderChanged();
};

void tst_StorageElemsMapInterface::constructionForAnAbsentServiceLogsNothing()
{
    verifyConstructionForAnAbsentService<StorageElemsMapInterface>(path);
    QVERIFY(proxy().isValid());
}

void tst_StorageElemsMapInterface::mapsEachReplyWithoutLogging_data()
{
    addMappedReplyColumns();
    addMappedReplyRows("getValues ",
                       {.operation = "getValues",
                        .run = onProxy(&P::getValues),
                        .answered = QStringList{QStringLiteral("Trace 2"), QStringLiteral("Trace 1")},
                        .wrongType = QStringLiteral("Trace 2"),
                        .empty = QStringList()});
    addMappedReplyRows(
        "count ",
        {.operation = "count", .run = onProxy(&P::count), .answered = 2, .wrongType = QStringLiteral("2"), .empty = 0});
    addMappedReplyRows("getSortOrder ",
                       {.operation = "getSortOrder",
                        .run = onProxy(&P::getSortOrder),
                        .answered = QStringLiteral("byName"),
                        .wrongType = 1,
                        .empty = QString()});
    // A void reply accepts any method return and only fails on an error.
    addMappedVoidReplyRows("setSortOrder ",
                           {.operation = "setSortOrder",
                            .run = onProxy<P>([](P &p) { return p.setSortOrder(QStringLiteral("byName")); }),
                            .answered = true});
}

void tst_StorageElemsMapInterface::mapsEachReplyWithoutLogging()
{
    verifyMappedReply(*m_fake, proxy());
}

void tst_StorageElemsMapInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    verifyOwnMethods(proxy(), signalSignatures, slotSignatures);
    verifyReturnTypes<P>({{"setSortOrder(QString)", "QDBusReply<void>"}, {"setToDefault()", "void"}});
}

void tst_StorageElemsMapInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(proxy(), "StorageElemsMapInterface");
    QCOMPARE(proxy().qt_metacast("SetupThresholdManagerInterface"), nullptr);
}

void tst_StorageElemsMapInterface::holdsNothingBesideTheBase()
{
    QCOMPARE(sizeof(StorageElemsMapInterface), sizeof(QDBusAbstractInterface));
}

void tst_StorageElemsMapInterface::invokingSlotsByNameGivesTheDirectResult()
{
    m_fake->answer("getValues", ScriptedAnswer::value(QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    m_fake->answer("setSortOrder", ScriptedAnswer::error(failure, QStringLiteral("unknown order")));

    QDBusReply<QStringList> values;
    QVERIFY(QMetaObject::invokeMethod(&proxy(), "getValues", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<QStringList>, values)));
    QCOMPARE(values.value(), proxy().getValues().value());
    QCOMPARE(values.value(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));

    QDBusReply<void> set;
    QVERIFY(QMetaObject::invokeMethod(&proxy(), "setSortOrder", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<void>, set), Q_ARG(QString, QStringLiteral("bogus"))));
    QVERIFY(!set.isValid());
    QCOMPARE(set.error().message(), QStringLiteral("unknown order"));
    QCOMPARE(m_fake->calls().last().arguments, QList<QVariant>{QStringLiteral("bogus")});
}

void tst_StorageElemsMapInterface::relaysSetupChanged()
{
    verifySignalRelay(proxy(), *m_fake, SIGNAL(setupChanged(QString, int, int, QStringList)), "setupChanged",
                      {QStringLiteral("insert"), 2, 3,
                       QStringList{QStringLiteral("Trace 4"), QStringLiteral("Trace 5"), QStringLiteral("Trace 6")}});
}

void tst_StorageElemsMapInterface::relaysSortOrderChanged()
{
    verifySignalRelay(proxy(), *m_fake, SIGNAL(sortOrderChanged(QString)), "sortOrderChanged",
                      {QStringLiteral("byDate")});
}

QTEST_GUILESS_MAIN(tst_StorageElemsMapInterface)

#include "tst_storageelemsmapinterface.moc"
