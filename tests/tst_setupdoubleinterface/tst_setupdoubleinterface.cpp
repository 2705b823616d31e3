#include "SetupDoubleInterface.h"

#include "LogCapture.h"
#include "ProxyClassTest.h"

#include <QtTest/QTest>

#include <limits>

namespace {

using P = SetupDoubleInterface;

const double infinity = std::numeric_limits<double>::infinity();
const double quietNaN = std::numeric_limits<double>::quiet_NaN();
const QString nanLine = QStringLiteral("SetupDoubleInterface::setValue(): Value is NaN!");

// clang-format off
const QList<OperationRow> replies{
    {.operation = "setValue", .run = setValueOf<P>(5.5), .call = {.member = "setValue", .signature = "d",
     .arguments = {5.5}}, .reply = {.answered = true, .wrongType = 1, .empty = false}},
    // A false answer must come back valid, apart from the default of a failed reply.
    {.operation = "setValue answered false", .run = setValueOf<P>(5.5), .call = {.member = "setValue",
     .signature = "d", .arguments = {5.5}}, .reply = {.answered = false, .wrongType = 0.0, .empty = false}},
    {.operation = "getValue", .run = onProxy(&P::getValue), .call = {.member = "getValue"},
     .reply = {.answered = 3.25, .wrongType = 3, .empty = 0.0}},
    {.operation = "getString", .run = onProxy(&P::getString), .call = {.member = "getString"},
     .reply = {.answered = QStringLiteral("3.25 MHz"), .wrongType = 3.25, .empty = QString()}},
    {.operation = "getMinValue", .run = onProxy(&P::getMinValue), .call = {.member = "getMinValue"},
     .reply = {.answered = -10.5, .wrongType = QStringLiteral("-10.5"), .empty = 0.0}},
    {.operation = "getMaxValue", .run = onProxy(&P::getMaxValue), .call = {.member = "getMaxValue"},
     .reply = {.answered = 90.75, .wrongType = true, .empty = 0.0}},
    {.operation = "getGranularity", .run = onProxy(&P::getGranularity), .call = {.member = "getGranularity"},
     .reply = {.answered = 0.05, .wrongType = 5, .empty = 0.0}},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .call = {.member = "isChangeable"},
     .reply = {.answered = true, .wrongType = 1.0, .empty = false}},
    // Infinities, unlike a NaN, are sent as they are.
    {.operation = "setValue +inf", .run = setValueOf<P>(infinity), .call = {.member = "setValue", .signature = "d",
     .arguments = {infinity}}, .reply = {.answered = true, .wrongType = 1, .empty = false}},
    {.operation = "setValue -inf", .run = setValueOf<P>(-infinity), .call = {.member = "setValue", .signature = "d",
     .arguments = {-infinity}}, .reply = {.answered = true, .wrongType = 1, .empty = false}},
};

const QList<OperationRow> invokedByName{
    {.operation = "getValue", .run = byName<QDBusReply<double>>("getValue"), .call = {.member = "getValue"},
     .reply = {.answered = 17.5}, .direct = onProxy(&P::getValue)},
    {.operation = "getGranularity", .run = byName<QDBusReply<double>>("getGranularity"),
     .call = {.member = "getGranularity"}, .reply = {.answered = 0.5}, .direct = onProxy(&P::getGranularity)},
    {.operation = "setValue", .run = byName<QDBusReply<bool>>("setValue(double)", 4.75),
     .call = {.member = "setValue", .signature = "d", .arguments = {4.75}}, .reply = {.answered = true},
     .direct = setValueOf<P>(4.75)},
    {.operation = "setToDefault", .run = byName<void>("setToDefault"), .call = {.member = "setToDefault"},
     .direct = onProxy(&P::setToDefault)},
    {.operation = "setValueAsync", .run = byName<void>("setValueAsync(double)", -2.0),
     .call = {.member = "setValue", .signature = "d", .arguments = {-2.0}}, .direct = setValueAsyncOf<P>(-2.0)},
};

const ProxyClassTable setupDouble{
    .className = "SetupDoubleInterface",
    .path = QStringLiteral("/Setup/Frequency"),
    .make = factoryOf<P>(),
    .size = sizeof(P),
    .sent = {{.operation = "setValue zero", .run = setValueOf<P>(0.0),
              .call = {.member = "setValue", .signature = "d", .arguments = {0.0}}}},
    .replies = replies,
    .setToDefault = {.operation = "setToDefault", .run = onProxy(&P::setToDefault), .call = {.member = "setToDefault"}},
    .asyncs = {
        {.operation = "setValueAsync", .run = setValueAsyncOf<P>(9.5),
         .call = {.member = "setValue", .signature = "d", .arguments = {9.5}}},
        {.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .call = {.member = "setToDefault"}},
        // The fire-and-forget call sends even a NaN as it is.
        {.operation = "setValueAsync +inf", .run = setValueAsyncOf<P>(infinity),
         .call = {.member = "setValue", .signature = "d", .arguments = {infinity}}},
        {.operation = "setValueAsync -inf", .run = setValueAsyncOf<P>(-infinity),
         .call = {.member = "setValue", .signature = "d", .arguments = {-infinity}}},
        {.operation = "setValueAsync NaN", .run = setValueAsyncOf<P>(quietNaN),
         .call = {.member = "setValue", .signature = "d", .arguments = {quietNaN}}},
    },
    .failingCall = {.operation = "getMinValue", .run = onProxy(&P::getMinValue), .call = {.member = "getMinValue"}},
    .signalSignatures = {"void setupChanged(double)", "void setupBoundsChanged(double,double)"},
    .slotSignatures = {"QDBusReply<bool> setValue(double)", "void setValueAsync(double)",
                       "QDBusReply<double> getValue()", "QDBusReply<QString> getString()",
                       "QDBusReply<double> getMinValue()", "QDBusReply<double> getMaxValue()",
                       "QDBusReply<double> getGranularity()", "QDBusReply<bool> isChangeable()",
                       "void setToDefault()", "void setToDefaultAsync()"},
    .otherClasses = {"SetupIntInterface", "setupdoubleinterface"},
    .byName = invokedByName,
    .relayed = {
        {.operation = "setupChanged(double)", .call = {.member = "setupChanged", .arguments = {12.25}}},
        {.operation = "setupBoundsChanged(double,double)",
         .call = {.member = "setupBoundsChanged", .arguments = {-1.5, 99.0}}},
    },
};
// clang-format on

/// @p setValue, given a NaN, answers false at once, logs the one line and leaves lastError() alone.
void verifyNaNRefused(QDBusAbstractInterface &proxy, const ProxyOperation &setValue)
{
    const QDBusError before = proxy.lastError();
    LogCapture log;

    const Seen seen = setValue(proxy);

    QVERIFY(seen.valid);
    QCOMPARE(seen.value, QVariant(false));
    QVERIFY(seen.error && !seen.error->isValid());
    QCOMPARE(log.lines(), debugLines({nanLine}));
    QCOMPARE(proxy.lastError().type(), before.type());
    QCOMPARE(proxy.lastError().message(), before.message());
}

} // namespace

class tst_SetupDoubleInterface : public ProxyClassTest
{
    Q_OBJECT

public:
    tst_SetupDoubleInterface()
        : ProxyClassTest(setupDouble)
    {
    }

private Q_SLOTS:
    void setValueRefusesNaNWithoutSendingIt_data();
    void setValueRefusesNaNWithoutSendingIt();
    void setValueRefusesNaNAlsoWhenTheServiceIsAbsent();
};

void tst_SetupDoubleInterface::setValueRefusesNaNWithoutSendingIt_data()
{
    QTest::addColumn<double>("nan");
    QTest::addColumn<bool>("invokedByName");

    QTest::newRow("quiet NaN") << quietNaN << false;
    QTest::newRow("negative NaN") << -quietNaN << false;
    QTest::newRow("signalling NaN") << std::numeric_limits<double>::signaling_NaN() << false;
    QTest::newRow("computed NaN") << infinity - infinity << false;
    QTest::newRow("quiet NaN, invoked by name") << quietNaN << true;
}

void tst_SetupDoubleInterface::setValueRefusesNaNWithoutSendingIt()
{
    QFETCH(double, nan);
    QFETCH(bool, invokedByName);
    QVERIFY(qIsNaN(nan));

    m_fake->answer("getMinValue", ScriptedAnswer::error(failedErrorName(), QStringLiteral("earlier failure")));
    m_fake->answer("setValue", ScriptedAnswer::value(true));
    m_fake->answer("getValue", ScriptedAnswer::value(1.0));
    proxy<P>().getMinValue();
    QCOMPARE(proxy<P>().lastError().message(), QStringLiteral("earlier failure"));
    m_fake->clearCalls();

    verifyNaNRefused(*m_proxy, invokedByName ? byName<QDBusReply<bool>>("setValue(double)", nan) : setValueOf<P>(nan));

    // Messages of one connection arrive in order: had setValue gone out, it would stand
    // before this call.
    proxy<P>().getValue();
    const QList<ReceivedCall> calls = m_fake->calls();
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.first().member, QStringLiteral("getValue"));
}

void tst_SetupDoubleInterface::setValueRefusesNaNAlsoWhenTheServiceIsAbsent()
{
    const std::unique_ptr<QDBusAbstractInterface> absent = makeAbsent();

    verifyNaNRefused(*absent, setValueOf<P>(quietNaN));

    QVERIFY(!absent->lastError().isValid());
}

QTEST_GUILESS_MAIN(tst_SetupDoubleInterface)

#include "tst_setupdoubleinterface.moc"
