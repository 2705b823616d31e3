#include "SetupDoubleInterface.h"

#include "LogCapture.h"
#include "ScalarSetupTest.h"

#include <QDBusConnection>
#include <QtMath>
#include <QtTest/QTest>

#include <limits>
#include <type_traits>

namespace {

using P = SetupDoubleInterface;

const QString path = QStringLiteral("/Setup/Frequency");
const double infinity = std::numeric_limits<double>::infinity();
const QString nanLine = QStringLiteral("SetupDoubleInterface::setValue(): Value is NaN!");

ScalarSetupClass setupDouble()
{
    return {
        .className = "SetupDoubleInterface",
        .path = path,
        .make = factoryOf<P>(),
        .size = sizeof(P),
        // setToDefault() returns no reply; its call is checked here.
        .sent =
            {
                {.operation = "setValue zero",
                 .run = onProxy<P>([](P &p) { return p.setValue(0.0); }),
                 .member = "setValue",
                 .signature = "d",
                 .arguments = {0.0}},
                {.operation = "setToDefault", .run = onProxy(&P::setToDefault)},
            },

        .replies =
            {
                {.operation = "setValue",
                 .run = onProxy<P>([](P &p) { return p.setValue(5.5); }),
                 .signature = "d",
                 .arguments = {5.5},
                 .answered = true,
                 .wrongType = 1,
                 .empty = false},
                // A false answer must come back valid, apart from the default of a failed reply.
                {.operation = "setValue answered false",
                 .run = onProxy<P>([](P &p) { return p.setValue(5.5); }),
                 .member = "setValue",
                 .signature = "d",
                 .arguments = {5.5},
                 .answered = false,
                 .wrongType = 0.0,
                 .empty = false},
                {.operation = "getValue", .run = onProxy(&P::getValue), .answered = 3.25, .wrongType = 3, .empty = 0.0},
                {.operation = "getString",
                 .run = onProxy(&P::getString),
                 .answered = QStringLiteral("3.25 MHz"),
                 .wrongType = 3.25,
                 .empty = QString()},
                {.operation = "getMinValue",
                 .run = onProxy(&P::getMinValue),
                 .answered = -10.5,
                 .wrongType = QStringLiteral("-10.5"),
                 .empty = 0.0},
                {.operation = "getMaxValue",
                 .run = onProxy(&P::getMaxValue),
                 .answered = 90.75,
                 .wrongType = true,
                 .empty = 0.0},
                {.operation = "getGranularity",
                 .run = onProxy(&P::getGranularity),
                 .answered = 0.05,
                 .wrongType = 5,
                 .empty = 0.0},
                {.operation = "isChangeable",
                 .run = onProxy(&P::isChangeable),
                 .answered = true,
                 .wrongType = 1.0,
                 .empty = false},
            },
        .voidReplies = {},
        .asyncs =
            {
                {.operation = "setValueAsync",
                 .run = onProxy<P>([](P &p) { p.setValueAsync(9.5); }),
                 .member = "setValue",
                 .signature = "d",
                 .arguments = {9.5}},
                {.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .member = "setToDefault"},
            },
        .failingCall = {.operation = "getMinValue", .run = onProxy(&P::getMinValue)},
        .methods = {"setupChanged(double)", "setupBoundsChanged(double,double)", "setValue(double)",
                    "setValueAsync(double)", "getValue()", "getString()", "getMinValue()", "getMaxValue()",
                    "getGranularity()", "isChangeable()", "setToDefault()", "setToDefaultAsync()"},
        .signalSignatures = {"setupChanged(double)", "setupBoundsChanged(double,double)"},
        .returnTypes = {"void", "void", "QDBusReply<bool>", "void", "QDBusReply<double>", "QDBusReply<QString>",
                        "QDBusReply<double>", "QDBusReply<double>", "QDBusReply<double>", "QDBusReply<bool>", "void",
                        "void"},
        .otherClasses = {"SetupIntInterface", "setupdoubleinterface"},
        .byName =
            {
                {.operation = "getValue", .run = byName<QDBusReply<double>>("getValue"), .answered = 17.5},
                {.operation = "getGranularity", .run = byName<QDBusReply<double>>("getGranularity"), .answered = 0.5},
                {.operation = "setValue",
                 .run = byName<QDBusReply<bool>>("setValue(double)", 4.75),
                 .signature = "d",
                 .arguments = {4.75},
                 .answered = true},
                {.operation = "setToDefault", .run = byName<void>("setToDefault")},
                {.operation = "setValueAsync",
                 .run = byName<void>("setValueAsync(double)", -2.0),
                 .member = "setValue",
                 .signature = "d",
                 .arguments = {-2.0}},
            },
        .signalsRelayed =
            {
                {.operation = "setupChanged(double)", .member = "setupChanged", .arguments = {12.25}},
                {.operation = "setupBoundsChanged(double,double)",
                 .member = "setupBoundsChanged",
                 .arguments = {-1.5, 99.0}},
            },
    };
}

} // namespace

class tst_SetupDoubleInterface : public ScalarSetupTest
{
    Q_OBJECT

public:
    tst_SetupDoubleInterface()
        : ScalarSetupTest(setupDouble())
    {
    }

private Q_SLOTS:
    void setValueRefusesNaNWithoutSendingIt_data();
    void setValueRefusesNaNWithoutSendingIt();
    void setValueRefusesNaNAlsoWhenTheServiceIsAbsent();
    void setValueAsyncSendsNaN();
    void infinitiesAreSent_data();
    void infinitiesAreSent();
    void setToDefaultReturnsNothingButWaitsForTheAnswer();
    void setToDefaultToAnAbsentServiceShowsNothing();
    void invokingSetValueByNameRefusesNaNToo();
};

void tst_SetupDoubleInterface::setValueRefusesNaNWithoutSendingIt_data()
{
    QTest::addColumn<double>("nan");

    QTest::newRow("quiet NaN") << std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("negative NaN") << -std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("signalling NaN") << std::numeric_limits<double>::signaling_NaN();
    QTest::newRow("computed NaN") << infinity - infinity;
}

void tst_SetupDoubleInterface::setValueRefusesNaNWithoutSendingIt()
{
    QFETCH(double, nan);
    QVERIFY(qIsNaN(nan));

    m_fake->answer("getMinValue", ScriptedAnswer::error(failedErrorName(), QStringLiteral("earlier failure")));
    m_fake->answer("setValue", ScriptedAnswer::value(true));
    m_fake->answer("getValue", ScriptedAnswer::value(1.0));
    proxy<P>().getMinValue();
    QCOMPARE(proxy<P>().lastError().message(), QStringLiteral("earlier failure"));
    m_fake->clearCalls();

    LogCapture log;
    const QDBusReply<bool> reply = proxy<P>().setValue(nan);

    QVERIFY(reply.isValid());
    QCOMPARE(reply.value(), false);
    QVERIFY(!reply.error().isValid());
    QCOMPARE(log.lines(), debugLines({nanLine}));
    QCOMPARE(proxy<P>().lastError().type(), QDBusError::Other);
    QCOMPARE(proxy<P>().lastError().message(), QStringLiteral("earlier failure"));

    // Messages of one connection arrive in order: had setValue gone out, it would stand
    // before this call.
    proxy<P>().getValue();
    const QList<ReceivedCall> calls = m_fake->calls();
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.first().member, QStringLiteral("getValue"));
}

void tst_SetupDoubleInterface::setValueRefusesNaNAlsoWhenTheServiceIsAbsent()
{
    LogCapture log;
    SetupDoubleInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    const QDBusReply<bool> reply = proxy.setValue(std::numeric_limits<double>::quiet_NaN());

    QVERIFY(reply.isValid());
    QCOMPARE(reply.value(), false);
    QVERIFY(!proxy.lastError().isValid());
    QCOMPARE(log.lines(), debugLines({nanLine}));
}

void tst_SetupDoubleInterface::setValueAsyncSendsNaN()
{
    LogCapture log;
    m_fake->answer("setValue", ScriptedAnswer::value(false));

    proxy<P>().setValueAsync(std::numeric_limits<double>::quiet_NaN());

    QVERIFY(m_fake->waitForCalls(1));
    const ReceivedCall call = m_fake->calls().first();
    QCOMPARE(call.path, path);
    QCOMPARE(call.interface, FakeMeasApplication::interfaceName);
    QCOMPARE(call.member, QStringLiteral("setValue"));
    QCOMPARE(call.signature, QStringLiteral("d"));
    QCOMPARE(call.arguments.size(), 1);
    QCOMPARE(call.arguments.first().userType(), int(QMetaType::Double));
    QVERIFY(qIsNaN(call.arguments.first().toDouble()));
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupDoubleInterface::infinitiesAreSent_data()
{
    QTest::addColumn<bool>("async");
    QTest::addColumn<double>("value");

    QTest::newRow("setValue +inf") << false << infinity;
    QTest::newRow("setValue -inf") << false << -infinity;
    QTest::newRow("setValueAsync +inf") << true << infinity;
    QTest::newRow("setValueAsync -inf") << true << -infinity;
}

void tst_SetupDoubleInterface::infinitiesAreSent()
{
    QFETCH(bool, async);
    QFETCH(double, value);

    LogCapture log;
    m_fake->answer("setValue", ScriptedAnswer::value(true));

    if (async) {
        proxy<P>().setValueAsync(value);
    } else {
        const QDBusReply<bool> reply = proxy<P>().setValue(value);
        QVERIFY(reply.isValid());
        QCOMPARE(reply.value(), true);
    }

    QVERIFY(m_fake->waitForCalls(1));
    const ReceivedCall call = m_fake->calls().first();
    QCOMPARE(call.member, QStringLiteral("setValue"));
    QCOMPARE(call.signature, QStringLiteral("d"));
    QCOMPARE(call.arguments.size(), 1);
    const double received = call.arguments.first().toDouble();
    QVERIFY(qIsInf(received));
    QCOMPARE(received > 0, value > 0);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupDoubleInterface::setToDefaultReturnsNothingButWaitsForTheAnswer()
{
    static_assert(std::is_void<decltype(std::declval<P>().setToDefault())>::value, "setToDefault() returns no reply");

    LogCapture log;
    m_fake->answer("setToDefault", ScriptedAnswer::error(failedErrorName(), QStringLiteral("reset refused")));

    proxy<P>().setToDefault();

    // Only a caller that waited for the answer knows of the error, and the fake has
    // the call without anyone waiting for it here.
    QCOMPARE(m_fake->callCount(), 1);
    QCOMPARE(proxy<P>().lastError().name(), failedErrorName());
    QCOMPARE(proxy<P>().lastError().message(), QStringLiteral("reset refused"));
    verifySingleCall(*m_fake, path, "setToDefault", "", {});
    QCOMPARE(log.lines(), QList<LogLine>());

    // A good answer after a failed one clears the proxy's error again.
    m_fake->answer("setToDefault", ScriptedAnswer::reply());
    proxy<P>().setToDefault();
    QCOMPARE(m_fake->callCount(), 2);
    QVERIFY(!proxy<P>().lastError().isValid());
}

void tst_SetupDoubleInterface::setToDefaultToAnAbsentServiceShowsNothing()
{
    LogCapture log;
    SetupDoubleInterface proxy(absentService(), path, QDBusConnection::sessionBus());

    proxy.setToDefault();

    QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
    QCOMPARE(log.lines(), QList<LogLine>());
}

void tst_SetupDoubleInterface::invokingSetValueByNameRefusesNaNToo()
{
    LogCapture log;

    QDBusReply<bool> reply;
    QVERIFY(QMetaObject::invokeMethod(m_proxy.get(), "setValue", Qt::DirectConnection,
                                      Q_RETURN_ARG(QDBusReply<bool>, reply),
                                      Q_ARG(double, std::numeric_limits<double>::quiet_NaN())));

    QVERIFY(reply.isValid());
    QCOMPARE(reply.value(), false);
    QCOMPARE(log.lines(), debugLines({nanLine}));
    QCOMPARE(m_fake->callCount(), 0);
}

QTEST_GUILESS_MAIN(tst_SetupDoubleInterface)

#include "tst_setupdoubleinterface.moc"
