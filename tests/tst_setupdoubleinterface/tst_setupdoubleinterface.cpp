#include "SetupDoubleInterface.h"

#include "LogCapture.h"
#include "ProxyClassTest.h"

#include <QtTest/QTest>

#include <limits>
#include <type_traits>

namespace {

using P = SetupDoubleInterface;

const double infinity = std::numeric_limits<double>::infinity();
const double quietNaN = std::numeric_limits<double>::quiet_NaN();
const QString nanLine = QStringLiteral("SetupDoubleInterface::setValue(): Value is NaN!");

// clang-format off
const QList<OperationRow> replies{
    {.operation = "setValue", .run = setValueOf<P>(5.5), .signature = "d", .arguments = {5.5}, .answered = true,
     .wrongType = 1, .empty = false},
    // A false answer must come back valid, apart from the default of a failed reply.
    {.operation = "setValue answered false", .run = setValueOf<P>(5.5), .member = "setValue", .signature = "d",
     .arguments = {5.5}, .answered = false, .wrongType = 0.0, .empty = false},
    {.operation = "getValue", .run = onProxy(&P::getValue), .answered = 3.25, .wrongType = 3, .empty = 0.0},
    {.operation = "getString", .run = onProxy(&P::getString), .answered = QStringLiteral("3.25 MHz"), .wrongType = 3.25,
     .empty = QString()},
    {.operation = "getMinValue", .run = onProxy(&P::getMinValue), .answered = -10.5,
     .wrongType = QStringLiteral("-10.5"), .empty = 0.0},
    {.operation = "getMaxValue", .run = onProxy(&P::getMaxValue), .answered = 90.75, .wrongType = true, .empty = 0.0},
    {.operation = "getGranularity", .run = onProxy(&P::getGranularity), .answered = 0.05, .wrongType = 5, .empty = 0.0},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .answered = true, .wrongType = 1.0, .empty = false},
    // Infinities, unlike a NaN, are sent as they are.
    {.operation = "setValue +inf", .run = setValueOf<P>(infinity), .member = "setValue", .signature = "d",
     .arguments = {infinity}, .answered = true, .wrongType = 1, .empty = false},
    {.operation = "setValue -inf", .run = setValueOf<P>(-infinity), .member = "setValue", .signature = "d",
     .arguments = {-infinity}, .answered = true, .wrongType = 1, .empty = false},
};

const QList<OperationRow> invokedByName{
    {.operation = "getValue", .run = byName<QDBusReply<double>>("getValue"), .answered = 17.5},
    {.operation = "getGranularity", .run = byName<QDBusReply<double>>("getGranularity"), .answered = 0.5},
    {.operation = "setValue", .run = byName<QDBusReply<bool>>("setValue(double)", 4.75), .signature = "d",
     .arguments = {4.75}, .answered = true},
    {.operation = "setToDefault", .run = byName<void>("setToDefault")},
    {.operation = "setValueAsync", .run = byName<void>("setValueAsync(double)", -2.0), .member = "setValue",
     .signature = "d", .arguments = {-2.0}},
};

const ProxyClass setupDouble{
    .className = "SetupDoubleInterface",
    .path = QStringLiteral("/Setup/Frequency"),
    .make = factoryOf<P>(),
    .size = sizeof(P),
    // setToDefault() returns no reply; its call is checked here.
    .sent = {
        {.operation = "setValue zero", .run = setValueOf<P>(0.0), .member = "setValue", .signature = "d",
         .arguments = {0.0}},
        {.operation = "setToDefault", .run = onProxy(&P::setToDefault)},
    },
    .replies = replies,
    .asyncs = {
        {.operation = "setValueAsync", .run = setValueAsyncOf<P>(9.5), .member = "setValue", .signature = "d",
         .arguments = {9.5}},
        {.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .member = "setToDefault"},
        // The fire-and-forget call sends even a NaN as it is.
        {.operation = "setValueAsync +inf", .run = setValueAsyncOf<P>(infinity), .member = "setValue",
         .signature = "d", .arguments = {infinity}},
        {.operation = "setValueAsync -inf", .run = setValueAsyncOf<P>(-infinity), .member = "setValue",
         .signature = "d", .arguments = {-infinity}},
        {.operation = "setValueAsync NaN", .run = setValueAsyncOf<P>(quietNaN), .member = "setValue",
         .signature = "d", .arguments = {quietNaN}},
    },
    .failingCall = {.operation = "getMinValue", .run = onProxy(&P::getMinValue)},
    .signalSignatures = {"setupChanged(double)", "setupBoundsChanged(double,double)"},
    .slotSignatures = {"setValue(double)", "setValueAsync(double)", "getValue()", "getString()", "getMinValue()",
                       "getMaxValue()", "getGranularity()", "isChangeable()", "setToDefault()", "setToDefaultAsync()"},
    .returnTypes = {"void", "void", "QDBusReply<bool>", "void", "QDBusReply<double>", "QDBusReply<QString>",
                    "QDBusReply<double>", "QDBusReply<double>", "QDBusReply<double>", "QDBusReply<bool>", "void",
                    "void"},
    .otherClasses = {"SetupIntInterface", "setupdoubleinterface"},
    .byName = invokedByName,
    .signalsRelayed = {
        {.operation = "setupChanged(double)", .member = "setupChanged", .arguments = {12.25}},
        {.operation = "setupBoundsChanged(double,double)", .member = "setupBoundsChanged", .arguments = {-1.5, 99.0}},
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
    void setToDefaultReturnsNothingButWaitsForTheAnswer();
    void setToDefaultToAnAbsentServiceShowsNothing();
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

void tst_SetupDoubleInterface::setToDefaultReturnsNothingButWaitsForTheAnswer()
{
    static_assert(std::is_void<decltype(std::declval<P>().setToDefault())>::value, "setToDefault() returns no reply");

    verifySetToDefaultWaitsAndDropsTheAnswer(*m_fake, *m_proxy, onProxy(&P::setToDefault), failedErrorName(),
                                             QStringLiteral("reset refused"));
    verifySingleCall(*m_fake, m_path, "setToDefault", "", {});

    // A good answer after a failed one clears the proxy's error again.
    m_fake->answer("setToDefault", ScriptedAnswer::reply());
    proxy<P>().setToDefault();
    QCOMPARE(m_fake->callCount(), 2);
    QVERIFY(!proxy<P>().lastError().isValid());
}

void tst_SetupDoubleInterface::setToDefaultToAnAbsentServiceShowsNothing()
{
    LogCapture log;
    const std::unique_ptr<QDBusAbstractInterface> absent = makeAbsent();

    static_cast<P &>(*absent).setToDefault();

    QCOMPARE(absent->lastError().type(), QDBusError::ServiceUnknown);
    QCOMPARE(log.lines(), QList<LogLine>());
}

QTEST_GUILESS_MAIN(tst_SetupDoubleInterface)

#include "tst_setupdoubleinterface.moc"
