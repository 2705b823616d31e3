// The instrument runs the library as a 32-bit build while development hosts are 64-bit.
// These tests state the type sizes the library depends on, check that the build is as
// wide as the run environment says, and send one value of each wire type the proxies
// use across the private bus, so that a 32-bit run shows its marshalling at work.

#include "FakeMeasApplication.h"
#include "MeasApplNames_p.h"
#include "ProxyCall_p.h"
#include "ProxyTestSupport.h"

#include <QDBusAbstractInterface>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusReply>
#include <QDBusVariant>
#include <QSysInfo>
#include <QVariantMap>
#include <QtTest/QTest>

#include <cstring>
#include <limits>
#include <memory>

namespace {
const QString echoPath = QStringLiteral("/Platform/Echo");
const QString member = QStringLiteral("echo");
const char expectWordSizeVariable[] = "DBUSINTERFACES_EXPECT_WORD_SIZE";

/// A bare proxy of the measurement application's interface: the call patterns need no more.
class EchoInterface : public QDBusAbstractInterface
{
public:
    EchoInterface(const QString &service, const QString &path, const QDBusConnection &connection)
        : QDBusAbstractInterface(service, path, MeasAppl::interfaceName, connection, nullptr)
    {
    }
};

/// The bit pattern of @p value: doubles must cross the bus exactly, not just nearly.
quint64 bitsOf(double value)
{
    quint64 bits;
    static_assert(sizeof bits == sizeof value, "a double is 64 bits wide");
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

/// A settings map as a variant carries it, read back from the bus.
QVariantMap mapIn(const QVariant &received, QString *signature)
{
    if (received.userType() != qMetaTypeId<QDBusArgument>())
        return QVariantMap();
    const QDBusArgument argument = received.value<QDBusArgument>();
    *signature = argument.currentSignature();
    return qdbus_cast<QVariantMap>(argument);
}

QVariantMap outgoingSettings()
{
    return QVariantMap{{QStringLiteral("gain"), qint32(-7)},
                       {QStringLiteral("offset"), 1.0 / 3.0},
                       {QStringLiteral("enabled"), true},
                       {QStringLiteral("unit"), QStringLiteral("dBµV")},
                       {QStringLiteral("samples"), qint64(1) << 40}};
}

QVariantMap returnedSettings()
{
    return QVariantMap{{QStringLiteral("limit"), std::numeric_limits<qint32>::max()},
                       {QStringLiteral("counter"), std::numeric_limits<qint64>::min()},
                       {QStringLiteral("label"), QStringLiteral("Ω")}};
}
} // namespace

class tst_Platform : public QObject, private ProxyFixture<EchoInterface>
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void wordSizeIsWhatTheEnvironmentExpects();
    void pointerIsOneWord();
    void longIsOneWord();
    void fixedWidthTypesKeepTheirWidth();
    void variantHoldsAWideValueInWholeWords();

    void int32CrossesTheBusBothWays();
    void doubleCrossesTheBusBothWaysBitForBit();
    void boolCrossesTheBusBothWays();
    void stringCrossesTheBusBothWays();
    void variantMapInAVariantCrossesTheBusBothWays();
};

void tst_Platform::initTestCase()
{
    qInfo().nospace() << "word size " << int(QSysInfo::WordSize) << " bits, build ABI " << QSysInfo::buildAbi()
                      << ", running on " << QSysInfo::currentCpuArchitecture();
    qInfo().nospace() << "sizes in bytes: void* " << sizeof(void *) << ", long " << sizeof(long) << ", int "
                      << sizeof(int) << ", qint64 " << sizeof(qint64) << ", qreal " << sizeof(qreal) << ", QVariant "
                      << sizeof(QVariant);
}

void tst_Platform::init()
{
    startFakeAndProxy(echoPath);
}

void tst_Platform::cleanup()
{
    stopFakeAndProxy();
}

void tst_Platform::wordSizeIsWhatTheEnvironmentExpects()
{
    if (!qEnvironmentVariableIsSet(expectWordSizeVariable))
        QSKIP("DBUSINTERFACES_EXPECT_WORD_SIZE is not set: no word size expected");
    bool ok = false;
    const int expected = qEnvironmentVariableIntValue(expectWordSizeVariable, &ok);
    QVERIFY2(ok, "DBUSINTERFACES_EXPECT_WORD_SIZE must be a number");
    QCOMPARE(int(QSysInfo::WordSize), expected);
}

void tst_Platform::pointerIsOneWord()
{
    QCOMPARE(int(sizeof(void *) * 8), int(QSysInfo::WordSize));
    QCOMPARE(sizeof(quintptr), sizeof(void *));
    QCOMPARE(sizeof(size_t), sizeof(void *));
}

void tst_Platform::longIsOneWord()
{
    // Linux is ILP32 or LP64: long grows with the word, so it never stands for a D-Bus int32.
    QCOMPARE(int(sizeof(long) * 8), int(QSysInfo::WordSize));
}

void tst_Platform::fixedWidthTypesKeepTheirWidth()
{
    // The bus types int32, int64 and double map onto these whatever the word size.
    QCOMPARE(sizeof(int), size_t(4));
    QCOMPARE(sizeof(qint32), size_t(4));
    QCOMPARE(sizeof(qint64), size_t(8));
    QCOMPARE(sizeof(double), size_t(8));
    QCOMPARE(sizeof(qreal), sizeof(double));
}

void tst_Platform::variantHoldsAWideValueInWholeWords()
{
    // A 64-bit payload and the type beside it, padded to whole words; 12 bytes on i386 with Qt 5.
    QVERIFY2(sizeof(QVariant) >= sizeof(qint64) + sizeof(void *), QByteArray::number(int(sizeof(QVariant))));
    QCOMPARE(sizeof(QVariant) % sizeof(void *), size_t(0));

    const QVariant wide = QVariant::fromValue(std::numeric_limits<qint64>::min());
    QCOMPARE(wide.toLongLong(), std::numeric_limits<qint64>::min());
    const QVariant real = QVariant::fromValue(std::numeric_limits<double>::denorm_min());
    QCOMPARE(bitsOf(real.toDouble()), bitsOf(std::numeric_limits<double>::denorm_min()));
}

void tst_Platform::int32CrossesTheBusBothWays()
{
    const qint32 sent = std::numeric_limits<qint32>::min();
    const qint32 returned = std::numeric_limits<qint32>::max();
    m_fake->answer(member, ScriptedAnswer::value(returned));

    const QDBusReply<qint32> reply = ProxyCall::blocking<qint32>(*m_proxy, member, sent);

    verifySingleCall(*m_fake, echoPath, member, QStringLiteral("i"), wireTexts({sent}));
    QVERIFY2(reply.isValid(), qPrintable(reply.error().message()));
    QCOMPARE(reply.value(), returned);
}

void tst_Platform::doubleCrossesTheBusBothWaysBitForBit()
{
    const double sent = 1.0 / 3.0;
    const double returned = -std::numeric_limits<double>::denorm_min();
    m_fake->answer(member, ScriptedAnswer::value(returned));

    const QDBusReply<double> reply = ProxyCall::blocking<double>(*m_proxy, member, sent);

    QVERIFY(m_fake->waitForCalls(1));
    const ReceivedCall call = m_fake->calls().first();
    QCOMPARE(call.signature, QStringLiteral("d"));
    QCOMPARE(call.arguments.size(), 1);
    QCOMPARE(call.arguments.first().userType(), int(QMetaType::Double));
    QCOMPARE(bitsOf(call.arguments.first().toDouble()), bitsOf(sent));
    QVERIFY2(reply.isValid(), qPrintable(reply.error().message()));
    QCOMPARE(bitsOf(reply.value()), bitsOf(returned));
}

void tst_Platform::boolCrossesTheBusBothWays()
{
    m_fake->answer(member, ScriptedAnswer::value(false));

    const QDBusReply<bool> reply = ProxyCall::blocking<bool>(*m_proxy, member, true);

    verifySingleCall(*m_fake, echoPath, member, QStringLiteral("b"), wireTexts({true}));
    QVERIFY2(reply.isValid(), qPrintable(reply.error().message()));
    QCOMPARE(reply.value(), false);
}

void tst_Platform::stringCrossesTheBusBothWays()
{
    const QString sent = QStringLiteral("Pegel in dBµV — Ω ✓");
    const QString returned = QStringLiteral("ä").repeated(5000);
    m_fake->answer(member, ScriptedAnswer::value(returned));

    const QDBusReply<QString> reply = ProxyCall::blocking<QString>(*m_proxy, member, sent);

    verifySingleCall(*m_fake, echoPath, member, QStringLiteral("s"), wireTexts({sent}));
    QVERIFY2(reply.isValid(), qPrintable(reply.error().message()));
    QCOMPARE(reply.value(), returned);
}

void tst_Platform::variantMapInAVariantCrossesTheBusBothWays()
{
    m_fake->answer(member, ScriptedAnswer::value(QVariant::fromValue(QDBusVariant(returnedSettings()))));

    const QDBusReply<QDBusVariant> reply =
        ProxyCall::blockingList<QDBusVariant>(*m_proxy, member, {ProxyCall::wrapped(outgoingSettings())});

    QVERIFY(m_fake->waitForCalls(1));
    const ReceivedCall call = m_fake->calls().first();
    QCOMPARE(call.signature, QStringLiteral("v"));
    QCOMPARE(call.arguments.size(), 1);
    QString innerSignature;
    QCOMPARE(mapIn(call.arguments.first().value<QDBusVariant>().variant(), &innerSignature), outgoingSettings());
    QCOMPARE(innerSignature, QStringLiteral("a{sv}"));

    QVERIFY2(reply.isValid(), qPrintable(reply.error().message()));
    innerSignature.clear();
    QCOMPARE(mapIn(reply.value().variant(), &innerSignature), returnedSettings());
    QCOMPARE(innerSignature, QStringLiteral("a{sv}"));
}

QTEST_GUILESS_MAIN(tst_Platform)

#include "tst_platform.moc"
