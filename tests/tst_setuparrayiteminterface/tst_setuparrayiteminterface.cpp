#include "SetupArrayItemInterface.h"

#include "CompositeTest.h"
#include "DBusTypes.h"

#include <QtTest/QTest>

namespace {
using P = SetupArrayItemInterface;
const QString path = QStringLiteral("/Setup/Channels");

/// The list getter hands back a plain list: the caller sees no validity, only emptiness.
Seen listOutcome(const QVariantList &list)
{
    return {true, QVariant(list), std::nullopt};
}

// clang-format off
const QList<OperationRow> sent{
    {.operation = "setValue range, int", .run = onProxy<P>([](P &p) { p.setValue(QVariant(5), 0, 3); }),
     .member = "setValue", .signature = "vii", .wireArguments = {"v(i 5)", "i 0", "i 3"}},
    {.operation = "setValue range, string",
     .run = onProxy<P>([](P &p) { p.setValue(QVariant(QStringLiteral("on")), 2, 2); }), .member = "setValue",
     .signature = "vii", .wireArguments = {"v(s \"on\")", "i 2", "i 2"}},
    {.operation = "setValue range, negative bounds passed through",
     .run = onProxy<P>([](P &p) { p.setValue(QVariant(2.5), -1, 7); }), .member = "setValue", .signature = "vii",
     .wireArguments = {"v(d 2.5)", "i -1", "i 7"}},
    {.operation = "setValue list", .run = onProxy<P>([](P &p) { p.setValue(QVariantList() << 1 << 2); }),
     .member = "setValue", .signature = "av", .wireArguments = {"av [v(i 1), v(i 2)]"}},
    {.operation = "setValue mixed list",
     .run = onProxy<P>([](P &p) { p.setValue(QVariantList() << true << QStringLiteral("x") << 0.5); }),
     .member = "setValue", .signature = "av", .wireArguments = {"av [v(b true), v(s \"x\"), v(d 0.5)]"}},
    {.operation = "setValue empty list", .run = onProxy<P>([](P &p) { p.setValue(QVariantList()); }),
     .member = "setValue", .signature = "av", .wireArguments = {"av []"}},
    {.operation = "getValue", .run = calling(&P::getValue, 1, 4), .signature = "ii", .wireArguments = {"i 1", "i 4"}},
    {.operation = "getString", .run = onProxy(&P::getString)},
    {.operation = "size", .run = onProxy(&P::size)},
    {.operation = "setValueAsync", .run = calling(&P::setValueAsync, QVariant(9), 3, 5), .member = "setValue",
     .signature = "vii", .wireArguments = {"v(i 9)", "i 3", "i 5"}},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable)},
    {.operation = "setToDefault", .run = onProxy(&P::setToDefault)},
    {.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .member = "setToDefault"},
};

const QList<OperationRow> absent{
    {.operation = "setValue range", .run = onProxy<P>([](P &p) { return p.setValue(QVariant(1), 0, 0); }),
     .empty = false},
    {.operation = "setValue list", .run = onProxy<P>([](P &p) { return p.setValue(QVariantList() << 1); }),
     .empty = false},
    {.operation = "getValue", .run = calling(&P::getValue, 0, 0), .empty = QVariantList()},
    {.operation = "getString", .run = onProxy(&P::getString), .empty = QString()},
    {.operation = "size", .run = onProxy(&P::size), .empty = 0},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .empty = false},
    {.operation = "setToDefault", .run = onProxy(&P::setToDefault), .empty = QVariant()},
};

/// The one checked operation: an empty list and one line on any failure.
const OperationRow checkedGetValue{.operation = "getValue",
                                   .run = onProxy<P>([](P &p) { return QVariant(p.getValue(3, 9)); }),
                                   .wrongType = QStringList{QStringLiteral("a")}, .empty = QVariant(QVariantList()),
                                   .report = "SetupArrayItemInterface::getValue(): ",
                                   .typeError = replyTypeError<QVariantList>(QStringList{QStringLiteral("a")})};

const QList<OperationRow> asyncCalls{
    {.operation = "setValueAsync", .run = calling(&P::setValueAsync, QVariant(4), 0, 1), .member = "setValue",
     .signature = "vii", .wireArguments = {"v(i 4)", "i 0", "i 1"}},
    {.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .member = "setToDefault"},
};

const QList<OperationRow> replies{
    {.operation = "setValue range", .run = onProxy<P>([](P &p) { return p.setValue(QVariant(1), 0, 1); }),
     .member = "setValue", .answered = true, .wrongType = 1, .empty = false},
    {.operation = "setValue list", .run = onProxy<P>([](P &p) { return p.setValue(QVariantList() << 1); }),
     .member = "setValue", .answered = true, .wrongType = QStringLiteral("yes"), .empty = false},
    {.operation = "getString", .run = onProxy(&P::getString), .answered = QStringLiteral("1, 2, 3"), .wrongType = 3,
     .empty = QString()},
    {.operation = "size", .run = onProxy(&P::size), .answered = 12, .wrongType = 12.0, .empty = 0},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .answered = true,
     .wrongType = QStringLiteral("true"), .empty = false},
};

const QList<OperationRow> invokedByName{
    {.operation = "getValue", .run = byName<QList<QVariant>>("getValue(int,int)", 0, 1), .signature = "ii",
     .answered = QVariantList{3, 4}, .wireArguments = {"i 0", "i 1"}},
    {.operation = "size", .run = byName<QDBusReply<int>>("size"), .answered = 2},
    {.operation = "setValue list", .run = byName<QDBusReply<bool>>("setValue(QVariantList)", QVariantList{8}),
     .member = "setValue", .signature = "av", .answered = true, .wireArguments = {"av [v(i 8)]"}},
};

const QList<OperationRow> calledDirectly = replies + QList<OperationRow>{
    {.operation = "getValue", .run = calling(&P::getValue, 0, 1)},
};
// clang-format on

CompositeClass arrayItem()
{
    return {
        .className = "SetupArrayItemInterface",
        .path = path,
        .make = factoryOf<P>(),
        .sent = sent,
        .absent = absent,
        .checkedGetters = {checkedGetValue},
        .loggedErrors = {{"error", "index out of range", "\"index out of range\""},
                         {"error with quotes", "no \"row\" here", "\"no \\\"row\\\" here\""}},
        .setToDefault = onProxy(&P::setToDefault),
        .asyncs = asyncCalls,
        .failingCall = {.operation = "size", .run = onProxy(&P::size)},
    };
}
} // namespace

class tst_SetupArrayItemInterface : public CompositeTest
{
    Q_OBJECT

public:
    tst_SetupArrayItemInterface()
        : CompositeTest(arrayItem())
    {
    }

private:
    P &proxy() { return ProxyTableTest::proxy<P>(); }

private Q_SLOTS:
    void mapsEachReply_data();
    void mapsEachReply() { verifyMappedReply(*m_fake, proxy()); }

    void getValueReturnsTheElementsUnwrapped();
    void getValueLeavesStructuredElementsAsArguments();
    void plainOperationsLogNothingOnFailure() { verifyPlainOperationsLogNothingWhenTheServiceIsAbsent(m_class); }

    void metaObjectListsSignalsThenSlotsInDeclarationOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
    void invokingSlotsByNameGivesTheDirectResult_data() { addByNameRows(m_className, invokedByName, calledDirectly); }
    void invokingSlotsByNameGivesTheDirectResult() { verifyByNameRow(*m_fake, proxy()); }
    void relaysSetupChangedOfItsOwnObjectOnly_data()
    {
        addSignalRelayRows(m_className, {{.operation = "setupChanged()"}});
    }
    void relaysSetupChangedOfItsOwnObjectOnly() { verifySignalRelayRow(*m_fake, proxy()); }
};

void tst_SetupArrayItemInterface::mapsEachReply_data()
{
    addMappedReplyColumns();
    addMappedReplyTable(replies);

    const ProxyOperation getValue = onProxy<P>([](P &p) { return listOutcome(p.getValue(0, 2)); });
    const QVariantList elements = QVariantList() << 1 << QStringLiteral("a") << 2.5;
    const QVariant none = QVariant(QVariantList());
    const auto row = [&](const char *tag, const ScriptedAnswer &answer, const QVariant &value) {
        addMappedReplyRow(tag, getValue, "getValue", answer, true, value, LogCheck::Unchecked);
    };
    row("getValue answered", ScriptedAnswer::value(elements), QVariant(elements));
    row("getValue answered empty", ScriptedAnswer::value(QVariantList()), none);
    row("getValue error", ScriptedAnswer::error(failedErrorName(), QStringLiteral("refused")), none);
    row("getValue wrong type", ScriptedAnswer::value(QStringList{QStringLiteral("a")}), none);
    row("getValue no answer value", ScriptedAnswer::reply(), none);
}

void tst_SetupArrayItemInterface::getValueReturnsTheElementsUnwrapped()
{
    m_fake->answer("getValue", ScriptedAnswer::value(QVariantList() << 7 << true << QStringLiteral("x")));

    const QVariantList elements = proxy().getValue(0, 2);

    QCOMPARE(elements.size(), 3);
    QCOMPARE(elements.at(0).userType(), int(QMetaType::Int));
    QCOMPARE(elements.at(0), QVariant(7));
    QCOMPARE(elements.at(1).userType(), int(QMetaType::Bool));
    QCOMPARE(elements.at(1), QVariant(true));
    QCOMPARE(elements.at(2).userType(), int(QMetaType::QString));
    QCOMPARE(elements.at(2), QVariant(QStringLiteral("x")));
}

void tst_SetupArrayItemInterface::getValueLeavesStructuredElementsAsArguments()
{
    SettingsMap nested;
    nested.insert(QStringLiteral("gain"), 3);
    const QVariantList inner = QVariantList() << 1 << 2;
    m_fake->answer("getValue", ScriptedAnswer::value(QVariantList() << QVariant(nested) << QVariant(inner) << 4));

    const QVariantList elements = proxy().getValue(0, 2);

    QCOMPARE(elements.size(), 3);
    verifyLeftAsArgument(elements.at(0), "a{sv} {s \"gain\": v(i 3)}");
    verifyLeftAsArgument(elements.at(1), "av [v(i 1), v(i 2)]");
    QCOMPARE(elements.at(2), QVariant(4));
}

void tst_SetupArrayItemInterface::metaObjectListsSignalsThenSlotsInDeclarationOrder()
{
    verifyOwnMethods(proxy(), {"setupChanged()"},
                     {"setValue(QVariant,int,int)", "setValue(QVariantList)", "getValue(int,int)", "getString()",
                      "size()", "setValueAsync(QVariant,int,int)", "isChangeable()", "setToDefault()",
                      "setToDefaultAsync()"});
    verifyReturnTypes<P>({{"getValue(int,int)", "QVariantList"}, {"setToDefault()", "void"}});
}

void tst_SetupArrayItemInterface::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(proxy(), "SetupArrayItemInterface");
    QCOMPARE(proxy().qt_metacast("SetupMapItemInterface"), nullptr);
}

QTEST_GUILESS_MAIN(tst_SetupArrayItemInterface)

#include "tst_setuparrayiteminterface.moc"
