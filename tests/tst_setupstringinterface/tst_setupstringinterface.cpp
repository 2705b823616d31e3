#include "SetupStringInterface.h"

#include "LogCapture.h"
#include "ProxyClassTest.h"

#include <QDBusObjectPath>
#include <QtTest/QTest>

namespace {

using P = SetupStringInterface;

const QString path = QStringLiteral("/Setup/Label");
const QString unicode = QStringLiteral("Messkopf \u00b5V \u2126 \"A\"");
const QStringList getValueLines{"SetupStringInterface::getValue() Error!  %1",
                                "SetupStringInterface::getValue() Interface  \"com.velk.mqx.MeasApplInterface\"",
                                "SetupStringInterface::getValue() Path  \"/Setup/Label\""};

// clang-format off
const QList<OperationRow> sent{
    {.operation = "setValue empty", .run = setValueOf<P>(QString()), .member = "setValue", .signature = "s",
     .arguments = {QString()}},
    {.operation = "setValue unicode", .run = setValueOf<P>(unicode), .member = "setValue", .signature = "s",
     .arguments = {unicode}},
};

// Only getValue is a checked getter; getString, unlike SetupIntInterface's, is not.
const QList<OperationRow> replies{
    {.operation = "setValue", .run = setValueOf<P>(QStringLiteral("x")), .signature = "s",
     .arguments = {QStringLiteral("x")}, .answered = true, .wrongType = QStringLiteral("true"), .empty = false},
    {.operation = "getString", .run = onProxy(&P::getString), .answered = QStringLiteral("Probe A"), .wrongType = 7,
     .empty = QString()},
    {.operation = "getValue", .run = onProxy(&P::getValue), .answered = QStringLiteral("Probe A"), .wrongType = 42,
     .empty = QString(), .logLines = getValueLines},
    {.operation = "getValue answered empty", .run = onProxy(&P::getValue), .member = "getValue", .answered = QString(),
     .wrongType = QVariant::fromValue(QDBusObjectPath(path)), .empty = QString(), .logLines = getValueLines},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .answered = true, .wrongType = 1, .empty = false},
    // Invoked by name, it logs as the direct call does.
    {.operation = "getValue by name", .run = byName<QDBusReply<QString>>("getValue"), .member = "getValue",
     .answered = QStringLiteral("Probe A"), .wrongType = 42, .empty = QString(), .logLines = getValueLines},
};

const QList<OperationRow> asyncs{
    {.operation = "setValueAsync", .run = setValueAsyncOf<P>(QStringLiteral("Probe C")), .member = "setValue",
     .signature = "s", .arguments = {QStringLiteral("Probe C")}},
    {.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .member = "setToDefault"},
};

const QList<OperationRow> invokedByName{
    {.operation = "getValue", .run = byName<QDBusReply<QString>>("getValue"), .answered = QStringLiteral("Probe A")},
    {.operation = "getString", .run = byName<QDBusReply<QString>>("getString"),
     .answered = QStringLiteral("Probe A (2)")},
    {.operation = "setValue", .run = byName<QDBusReply<bool>>("setValue(QString)", QStringLiteral("Probe D")),
     .signature = "s", .arguments = {QStringLiteral("Probe D")}, .answered = true},
    {.operation = "setValueAsync", .run = byName<void>("setValueAsync(QString)", QStringLiteral("Probe E")),
     .member = "setValue", .signature = "s", .arguments = {QStringLiteral("Probe E")}},
};

const ProxyClass setupString{
    .className = "SetupStringInterface",
    .path = path,
    .make = factoryOf<P>(),
    .size = sizeof(P),
    .sent = sent,
    .replies = replies,
    .voidReplies = {{.operation = "setToDefault", .run = onProxy(&P::setToDefault),
                     .answered = QStringLiteral("done")}},
    .asyncs = asyncs,
    .failingCall = {.operation = "isChangeable", .run = onProxy(&P::isChangeable)},
    .signalSignatures = {"setupChanged(QString)"},
    .slotSignatures = {"setValue(QString)", "getString()", "setValueAsync(QString)", "getValue()", "isChangeable()",
                       "setToDefault()", "setToDefaultAsync()"},
    .returnTypes = {"void", "QDBusReply<bool>", "QDBusReply<QString>", "void", "QDBusReply<QString>",
                    "QDBusReply<bool>", "QDBusReply<void>", "void"},
    .otherClasses = {"SetupEnumInterface", "SetupString"},
    .byName = invokedByName,
    .signalsRelayed = {{.operation = "setupChanged(QString)", .member = "setupChanged",
                        .arguments = {QStringLiteral("Probe B")}}},
};
// clang-format on

} // namespace

class tst_SetupStringInterface : public ProxyClassTest
{
    Q_OBJECT

public:
    tst_SetupStringInterface()
        : ProxyClassTest(setupString)
    {
    }

private Q_SLOTS:
    void getValueLogsNothingWhenOnlyAnEarlierCallFailed();
};

void tst_SetupStringInterface::getValueLogsNothingWhenOnlyAnEarlierCallFailed()
{
    m_fake->answer("getString", ScriptedAnswer::error(failedErrorName(), QStringLiteral("earlier failure")));
    m_fake->answer("getValue", ScriptedAnswer::value(QStringLiteral("Probe A")));
    proxy<P>().getString();
    QCOMPARE(m_proxy->lastError().message(), QStringLiteral("earlier failure"));

    LogCapture log;
    const QDBusReply<QString> reply = proxy<P>().getValue();

    QVERIFY(reply.isValid());
    QCOMPARE(reply.value(), QStringLiteral("Probe A"));
    QCOMPARE(log.lines(), QList<LogLine>());
}

QTEST_GUILESS_MAIN(tst_SetupStringInterface)

#include "tst_setupstringinterface.moc"
