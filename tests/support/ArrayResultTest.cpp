#include "ArrayResultTest.h"

#include "LogCapture.h"

#include <QDBusReply>
#include <QtTest/QTest>

namespace {

/// The type of @p value and, for a list, of each element: an element left wrapped shows as QDBusVariant.
QStringList typesOf(const QVariant &value)
{
    QStringList types{QString::fromLatin1(value.typeName())};
    if (value.userType() == QMetaType::QVariantList) {
        for (const QVariant &element : value.toList())
            types.append(QString::fromLatin1(element.typeName()));
    }
    return types;
}

} // namespace

void addTaggedRows(const char *className, const QList<OperationRow> &rows, const char *situation)
{
    QTest::addColumn<OperationRow>("row");
    for (const OperationRow &row : rows)
        QTest::addRow("%s/%s/%s", className, row.operation, situation) << row;
}

void addAnsweredRows(const char *className, const QList<OperationRow> &rows)
{
    for (const OperationRow &row : rows) {
        addMappedReplyRow(QByteArray(className) + '/' + row.operation + "/answered", row.run, row.wireMember(),
                          ScriptedAnswer::value(row.answered), true, row.seen.isValid() ? row.seen : row.answered);
    }
}

void addCheckedGetterRows(const char *className, const QString &path, const QList<OperationRow> &checked,
                          const QList<LoggedError> &errors, const QList<OperationRow> &refused)
{
    QTest::addColumn<OperationRow>("row");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<QStringList>("lines");

    const auto addRow = [className](const OperationRow &getter, const QByteArray &situation,
                                    const ScriptedAnswer &answer, const QVariant &result, const QStringList &lines) {
        QTest::addRow("%s/%s/%s", className, getter.operation, situation.constData())
            << getter << answer << result << lines;
    };
    // reportLine() quotes an empty message as "", which gives way to the message quoted here.
    const QString service = FakeMeasApplication::serviceFor(QStringLiteral("fake"));
    const auto failure = [&](const OperationRow &getter, const QString &quotedMessage) {
        return QStringList{reportLine(getter.report, service, path, QString()).chopped(2) + quotedMessage};
    };
    const auto refuse = [&](const OperationRow &getter, const QByteArray &situation, const ScriptedAnswer &answer,
                            const QString &typeError) {
        addRow(getter, situation, answer, getter.empty, failure(getter, quoted(typeError)));
    };

    for (const OperationRow &getter : checked) {
        const QVariant seen = getter.seen.isValid() ? getter.seen : getter.answered;
        addRow(getter, "answered", ScriptedAnswer::value(getter.answered), seen, {});
        for (const LoggedError &error : errors) {
            addRow(getter, error.name, ScriptedAnswer::error(failedErrorName(), error.message), getter.empty,
                   failure(getter, error.quoted));
        }
        refuse(getter, "wrong type", ScriptedAnswer::value(getter.wrongType), getter.typeError);
        // QtDBus names the type it expected in the same words whatever it got.
        const QString expected = getter.typeError.section(QStringLiteral(", expected "), 1);
        refuse(getter, "empty return", ScriptedAnswer::reply(),
               QStringLiteral("Unexpected reply signature: got \"<empty signature>\", expected ") + expected);
    }
    for (const OperationRow &getter : refused)
        refuse(getter, "wrong type", ScriptedAnswer::value(getter.wrongType), getter.typeError);
}

void verifyCheckedGetter(FakeMeasApplication &fake, QDBusAbstractInterface &proxy)
{
    QFETCH(OperationRow, row);
    QFETCH(ScriptedAnswer, answer);
    QFETCH(QVariant, result);
    QFETCH(QStringList, lines);

    // The rows' lines name the application's default service.
    QCOMPARE(fake.service(), FakeMeasApplication::serviceFor(QStringLiteral("fake")));
    LogCapture log;
    fake.answer(row.wireMember(), answer);

    const QVariant value = row.run(proxy).value;

    QCOMPARE(typesOf(value), typesOf(result));
    QCOMPARE(value, result);
    if (result.userType() == QMetaType::QString && result.toString().isNull())
        QVERIFY(value.toString().isNull());
    QCOMPARE(log.lines(), debugLines(lines));
    // Only an error answer is the call's own failure; a refused answer is the getter's judgement.
    QCOMPARE(proxy.lastError().isValid(), answer.kind == ScriptedAnswer::Error);
    verifySingleCall(fake, proxy.path(), row.wireMember(), row.signature, wireTexts(row.arguments));
}

void addAbsentServiceRows(const char *className, const QList<OperationRow> &checked, const QList<OperationRow> &silent)
{
    QTest::addColumn<OperationRow>("row");
    QTest::addColumn<bool>("logs");
    for (const OperationRow &row : checked)
        QTest::addRow("%s/%s/absent service", className, row.operation) << row << true;
    for (const OperationRow &row : silent)
        QTest::addRow("%s/%s/absent service", className, row.operation) << row << false;
}

void verifyAbsentServiceFailure(const ProxyFactory &make, const QString &path)
{
    QFETCH(bool, logs);
    if (logs)
        verifyLoggedFailureWhenTheServiceIsAbsent(make, path);
    else
        verifyFailsWhenTheServiceIsAbsent(make, path, LogCheck::Nothing);
}

ArrayResultTest::ArrayResultTest(ArrayResultClass tested)
    : ProxyTableTest(tested.className, tested.path, tested.make)
    , m_class(std::move(tested))
{
}

ArrayResultTest::~ArrayResultTest() = default;

void ArrayResultTest::keepsServiceAndPathBesideTheBase()
{
    QCOMPARE(m_class.size, sizeof(QDBusAbstractInterface) + 2 * sizeof(QString));
}

void ArrayResultTest::sendsEachOperationWithItsWireForm_data()
{
    addTaggedRows(m_className, m_class.sent, "sent");
}

void ArrayResultTest::sendsEachOperationWithItsWireForm()
{
    verifySentAsItsRow(*m_fake, *m_proxy);
}

void ArrayResultTest::checkedGettersGiveTheAnswerOrEmptyAfterOneLine_data()
{
    addCheckedGetterRows(m_className, m_path, m_class.checked, m_class.errors, m_class.refused);
}

void ArrayResultTest::checkedGettersGiveTheAnswerOrEmptyAfterOneLine()
{
    verifyCheckedGetter(*m_fake, *m_proxy);
}

void ArrayResultTest::mapsEachAnswerWithoutLogging_data()
{
    addMappedReplyColumns();
    for (const OperationRow &getter : m_class.generated)
        addMappedReplyRows(tag(getter, ""), getter);
    addAnsweredRows(m_className, m_class.answers);
}

void ArrayResultTest::mapsEachAnswerWithoutLogging()
{
    verifyMappedReply(*m_fake, *m_proxy);
}

void ArrayResultTest::failsWhenTheServiceIsAbsent_data()
{
    addAbsentServiceRows(m_className, m_class.checked, m_class.generated);
}

void ArrayResultTest::failsWhenTheServiceIsAbsent()
{
    verifyAbsentServiceFailure(m_make, m_path);
}

void ArrayResultTest::getTimeStampKeepsTheApplicationsTimeSpec()
{
    LogCapture log;
    for (const QDateTime &stamp : m_class.timeStamps) {
        m_fake->answer("getTimeStamp", ScriptedAnswer::value(stamp));
        const Seen seen = byName<QDBusReply<QDateTime>>("getTimeStamp")(*m_proxy);
        QVERIFY(seen.valid);
        QCOMPARE(seen.value.toDateTime(), stamp);
        QCOMPARE(seen.value.toDateTime().timeSpec(), stamp.timeSpec());
    }
    QCOMPARE(log.lines(), QList<LogLine>());
}

void ArrayResultTest::metaObjectListsExactlyItsSlotsInOrder()
{
    const QMetaObject &meta = *m_proxy->metaObject();
    verifySignalsThenSlots(meta, *m_proxy, {}, m_class.slotSignatures);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), int(m_class.slotSignatures.size()));
    verifyReturnTypes(meta, m_class.returnTypes);
}

void ArrayResultTest::metaCastKnowsTheClassAndLeavesTheRestToTheBase()
{
    verifyMetaCast(*m_proxy, m_className, m_class.otherClasses);
}
