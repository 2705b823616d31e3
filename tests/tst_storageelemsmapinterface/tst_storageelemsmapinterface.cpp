#include "StorageElemsMapInterface.h"

#include "CompositeTestSupport.h"

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
} // namespace

class tst_StorageElemsMapInterface : public QObject, private ProxyFixture<StorageElemsMapInterface>
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void constructionMakesNoBusCallAndLogsNothing();

    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void mapsEachReplyWithoutLogging_data();
    void mapsEachReplyWithoutLogging();
    void givesInvalidRepliesAndLogsNothingWhenTheServiceIsAbsent_data();
    void givesInvalidRepliesAndLogsNothingWhenTheServiceIsAbsent();

    void setToDefaultWaitsForTheAnswerAndDropsIt();
    void setToDefaultAsyncReturnsAtOnceAndSendsSetToDefault();
    void setToDefaultAsyncReturnsAtOnceWhenTheServiceIsAbsent();

    void metaObjectPlacesEachMethodAtItsIndex_data();
    void metaObjectPlacesEachMethodAtItsIndex();
    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void holdsNothingBesideTheBase();
    void invokingSlotsByNameGivesTheDirectResult();

    void relaysSetupChanged();
    void relaysSortOrderChanged();
};

void tst_StorageElemsMapInterface::init()
{
    startFakeAndProxy(path);
}

void tst_StorageElemsMapInterface::cleanup()
{
    stopFakeAndProxy();
}

void tst_StorageElemsMapInterface::constructionMakesNoBusCallAndLogsNothing()
{
    verifyConstructionContract<StorageElemsMapInterface>(*m_fake, path);
    verifyConstructionForAnAbsentService<StorageElemsMapInterface>(path);
    QVERIFY(m_proxy->isValid());
}

void tst_StorageElemsMapInterface::sendsEachOperationWithItsWireForm_data()
{
    addWireRows<P, QList<QVariant>>({
        {"getValues", [](P &p) { p.getValues(); }, "getValues", "", {}},
        {"count", [](P &p) { p.count(); }, "count", "", {}},
        {"setToDefault", [](P &p) { p.setToDefault(); }, "setToDefault", "", {}},
        {"setToDefaultAsync", [](P &p) { p.setToDefaultAsync(); }, "setToDefault", "", {}},
        {"getSortOrder", [](P &p) { p.getSortOrder(); }, "getSortOrder", "", {}},
        {"setSortOrder",
         [](P &p) { p.setSortOrder(QStringLiteral("byDate")); },
         "setSortOrder",
         "s",
         {QStringLiteral("byDate")}},
    });
}

void tst_StorageElemsMapInterface::sendsEachOperationWithItsWireForm()
{
    verifyWireRow(*m_fake, *m_proxy);
}

void tst_StorageElemsMapInterface::mapsEachReplyWithoutLogging_data()
{
    ReplyTable<P> table(ScriptedAnswer::error(failure, QStringLiteral("refused")), LogCheck::Nothing);
    table.reply(
        "getValues", [](P &p) { return seenOf(p.getValues()); },
        QStringList{QStringLiteral("Trace 2"), QStringLiteral("Trace 1")}, QStringLiteral("Trace 2"), QStringList());
    table.reply(
        "count", [](P &p) { return seenOf(p.count()); }, 2, QStringLiteral("2"), 0);
    table.reply(
        "getSortOrder", [](P &p) { return seenOf(p.getSortOrder()); }, QStringLiteral("byName"), 1, QString());

    // A void reply accepts any method return and only fails on an error.
    const auto setSortOrder = [](P &p) { return seenOf(p.setSortOrder(QStringLiteral("byName"))); };
    table.row("setSortOrder", "answered", "setSortOrder", setSortOrder, ScriptedAnswer::reply(), true, QVariant());
    table.row("setSortOrder", "answered with a value", "setSortOrder", setSortOrder, ScriptedAnswer::value(true), true,
              QVariant());
    table.row("setSortOrder", "error", "setSortOrder", setSortOrder, table.error(), false, QVariant());
}

void tst_StorageElemsMapInterface::mapsEachReplyWithoutLogging()
{
    verifyMappedReply(*m_fake, *m_proxy);
}

void tst_StorageElemsMapInterface::givesInvalidRepliesAndLogsNothingWhenTheServiceIsAbsent_data()
{
    addAbsentRows<P>({
        {"getValues", [](P &p) { return seenOf(p.getValues()); }, QStringList()},
        {"count", [](P &p) { return seenOf(p.count()); }, 0},
        {"getSortOrder", [](P &p) { return seenOf(p.getSortOrder()); }, QString()},
        {"setSortOrder", [](P &p) { return seenOf(p.setSortOrder(QStringLiteral("byName"))); }, QVariant()},
        {"setToDefault",
         [](P &p) {
             p.setToDefault();
             return Seen{};
         },
         QVariant()},
    });
}

void tst_StorageElemsMapInterface::givesInvalidRepliesAndLogsNothingWhenTheServiceIsAbsent()
{
    verifyAbsentRow<P>(path, LogCheck::Nothing);
}

void tst_StorageElemsMapInterface::setToDefaultWaitsForTheAnswerAndDropsIt()
{
    verifySetToDefaultWaitsAndDropsTheAnswer(*m_fake, *m_proxy, failure, QStringLiteral("reset refused"));
}

void tst_StorageElemsMapInterface::setToDefaultAsyncReturnsAtOnceAndSendsSetToDefault()
{
    // Should the proxy send its own name instead, that call gets its answer at once.
    m_fake->answer("setToDefaultAsync", ScriptedAnswer::reply());
    verifyAsyncCallsReturnAtOnce(*m_fake, *m_proxy, path, {"count", [](P &p) { p.count(); }},
                                 {{[](P &p) { p.setToDefaultAsync(); }, "setToDefault", ""}});
}

void tst_StorageElemsMapInterface::setToDefaultAsyncReturnsAtOnceWhenTheServiceIsAbsent()
{
    verifyAsyncCallsToAnAbsentServiceLogNothing<P>(path, [](P &p) { p.setToDefaultAsync(); });
}

void tst_StorageElemsMapInterface::metaObjectPlacesEachMethodAtItsIndex_data()
{
    addMethodPlacementRows(signalSignatures, slotSignatures);
}

void tst_StorageElemsMapInterface::metaObjectPlacesEachMethodAtItsIndex()
{
    verifyMethodPlacementRow<P>();
}

void tst_StorageElemsMapInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    verifyOwnMethods(*m_proxy, signalSignatures, slotSignatures);
    verifyReturnTypes<P>({{"setSortOrder(QString)", "QDBusReply<void>"}, {"setToDefault()", "void"}});
}

void tst_StorageElemsMapInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(*m_proxy, "StorageElemsMapInterface");
    QCOMPARE(m_proxy->qt_metacast("SetupThresholdManagerInterface"), nullptr);
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
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "getValues", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<QStringList>, values)));
    QCOMPARE(values.value(), m_proxy->getValues().value());
    QCOMPARE(values.value(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));

    QDBusReply<void> set;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setSortOrder", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<void>, set), Q_ARG(QString, QStringLiteral("bogus"))));
    QVERIFY(!set.isValid());
    QCOMPARE(set.error().message(), QStringLiteral("unknown order"));
    QCOMPARE(m_fake->calls().last().arguments, QList<QVariant>{QStringLiteral("bogus")});
}

void tst_StorageElemsMapInterface::relaysSetupChanged()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(setupChanged(QString, int, int, QStringList)), "setupChanged",
                      {QStringLiteral("insert"), 2, 3,
                       QStringList{QStringLiteral("Trace 4"), QStringLiteral("Trace 5"), QStringLiteral("Trace 6")}});
}

void tst_StorageElemsMapInterface::relaysSortOrderChanged()
{
    verifySignalRelay(*m_proxy, *m_fake, SIGNAL(sortOrderChanged(QString)), "sortOrderChanged",
                      {QStringLiteral("byDate")});
}

QTEST_GUILESS_MAIN(tst_StorageElemsMapInterface)

#include "tst_storageelemsmapinterface.moc"
