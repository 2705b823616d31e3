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
    {.operation = "setValue empty", .run = setValueOf<P>(QString()),
     .call = {.member = "setValue", .signature = "s", .arguments = {QString()}}},
    {.operation = "setValue unicode", .run = setValueOf<P>(unicode),
     .call = {.member = "setValue", .signature = "s", .arguments = {unicode}}},
};

// Only getValue logs; getString, unlike SetupIntInterface's, does not.
const QList<OperationRow> replies{
    {.operation = "setValue", .run = setValueOf<P>(QStringLiteral("x")),
     .call = {.member = "setValue", .signature = "s", .arguments = {QStringLiteral("x")}},
     .reply = {.answered = true, .wrongType = QStringLiteral("true"), .empty = false}},
    {.operation = "getString", .run = onProxy(&P::getString), .call = {.member = "getString"},
     .reply = {.answered = QStringLiteral("Probe A"), .wrongType = 7, .empty = QString()}},
    {.operation = "getValue", .run = onProxy(&P::getValue), .call = {.member = "getValue"},
     .reply = {.answered = QStringLiteral("Probe A"), .wrongType = 42, .empty = QString()},
     .log = {.lines = getValueLines}},
    {.operation = "getValue answered empty", .run = onProxy(&P::getValue), .call = {.member = "getValue"},
     .reply = {.answered = QString(), .wrongType = QVariant::fromValue(QDBusObjectPath(path)), .empty = QString()},
     .log = {.lines = getValueLines}},
    {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .call = {.member = "isChangeable"},
     .reply = {.answered = true, .wrongType = 1, .empty = false}},
    // Invoked by name, it logs as the direct call does.
    {.operation = "getValue by name", .run = byName<QDBusReply<QString>>("getValue"), .call = {.member = "getValue"},
     .reply = {.answered = QStringLiteral("Probe A"), .wrongType = 42, .empty = QString()},
     .log = {.lines = getValueLines}},
};

const QList<OperationRow> asyncs{
    {.operation = "setValueAsync", .run = setValueAsyncOf<P>(QStringLiteral("Probe C")),
     .call = {.member = "setValue", .signature = "s", .arguments = {QStringLiteral("Probe C")}}},
    {.operation = "setToDefaultAsync", .run = onProxy(&P::setToDefaultAsync), .call = {.member = "setToDefault"}},
};

const QList<OperationRow> invokedByName{
    {.operation = "getValue", .run = byName<QDBusReply<QString>>("getValue"), .call = {.member = "getValue"},
     .reply = {.answered = QStringLiteral("Probe A")}, .direct = onProxy(&P::getValue)},
    {.operation = "getString", .run = byName<QDBusReply<QString>>("getString"), .call = {.member = "getString"},
     .reply = {.answered = QStringLiteral("Probe A (2)")}, .direct = onProxy(&P::getString)},
    {.operation = "setValue", .run = byName<QDBusReply<bool>>("setValue(QString)", QStringLiteral("Probe D")),
     .call = {.member = "setValue", .signature = "s", .arguments = {QStringLiteral("Probe D")}},
     .reply = {.answered = true}, .direct = setValueOf<P>(QStringLiteral("Probe D"))},
    {.operation = "setValueAsync", .run = byName<void>("setValueAsync(QString)", QStringLiteral("Probe E")),
     .call = {.member = "setValue", .signature = "s", .arguments = {QStringLiteral("Probe E")}},
     .direct = setValueAsyncOf<P>(QStringLiteral("Probe E"))},
};

const ProxyClassTable setupString{
    .className = "SetupStringInterface",
    .path = path,
    .make = factoryOf<P>(),
    .size = sizeof(P),
    .sent = sent,
    .replies = replies,
    .voidReplies = {{.operation = "setToDefault", .run = onProxy(&P::setToDefault), .call = {.member = "setToDefault"},
                     .reply = {.answered = QStringLiteral("done")}}},
    .asyncs = asyncs,
    .failingCall = {.operation = "isChangeable", .run = onProxy(&P::isChangeable), .call = {.member = "isChangeable"}},
    .signalSignatures = {"void setupChanged(QString)"},
    .slotSignatures = {"QDBusReply<bool> setValue(QString)", "QDBusReply<QString> getString()",
                       "void setValueAsync(QString)", "QDBusReply<QString> getValue()",
                       "QDBusReply<bool> isChangeable()", "QDBusReply<void> setToDefault()",
                       "void setToDefaultAsync()"},
    .otherClasses = {"SetupEnumInterface", "SetupString"},
    .byName = invokedByName,
    .relayed = {{.operation = "setupChanged(QString)",
                 .call = {.member = "setupChanged", .arguments = {QStringLiteral("Probe B")}}}},
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
