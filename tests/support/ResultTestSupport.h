#ifndef TESTS_RESULTTESTSUPPORT_H
#define TESTS_RESULTTESTSUPPORT_H

// The checks the array result tests share, over rows of the common vocabulary. A report line
// a check compares is written out whole in the test's rows or, where its error message comes
// from QtDBus at run time, made by reportLine() of the row's opening.

#include "FakeMeasApplication.h"
#include "LogCapture.h"
#include "ProxyTestSupport.h"

#include <QDBusAbstractInterface>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusVariant>
#include <QDateTime>
#include <QList>
#include <QMetaMethod>
#include <QMetaObject>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QtTest/QTest>

#include <functional>

namespace ResultTest {

/// The application answers @p member with an error of @p message: @p call gives @p nothing,
/// sends that one call without arguments, and logs exactly @p line.
inline void verifyErrorReplyReportedOnce(FakeMeasApplication &fake, const QString &path, const QString &member,
                                         const QString &message, const QString &line,
                                         const std::function<QVariant()> &call,
                                         const QVariant &nothing = QVariant(QList<QVariant>()))
{
    LogCapture log;
    fake.answer(member, ScriptedAnswer::error(failedErrorName(), message));

    QCOMPARE(call(), nothing);

    verifySingleCall(fake, path, member, "", {});
    QCOMPARE(log.lines(), debugLines({line}));
}

/// @p sent arrives as it was sent, each element unwrapped with its own type (@p types),
/// from one call and without a report.
inline void verifyListArrivesUnwrapped(FakeMeasApplication &fake, QDBusAbstractInterface &proxy, const QString &path,
                                       const QString &member, const ProxyOperation &getter, const QList<QVariant> &sent,
                                       const QList<int> &types)
{
    LogCapture log;
    fake.answer(member, ScriptedAnswer::value(sent));

    const QList<QVariant> received = getter(proxy).value.toList();

    QCOMPARE(received, sent);
    // Each element arrives unwrapped from its D-Bus variant, with its own type.
    QCOMPARE(received.size(), types.size());
    for (int i = 0; i < types.size(); ++i) {
        QCOMPARE(received.at(i).userType(), types.at(i));
        QVERIFY(received.at(i).userType() != qMetaTypeId<QDBusVariant>());
    }
    verifySingleCall(fake, path, member, "", {});
    QCOMPARE(log.lines(), QList<LogLine>());
}

/// The class declares exactly @p expected, all slots, in that order, and nothing else.
inline void verifyOwnMethodsAreExactlyTheseSlots(const QMetaObject &meta, const QObject &proxy,
                                                 const QStringList &expected, int count)
{
    verifySignalsThenSlots(meta, proxy, {}, expected);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), count);
}

/// The columns of a checked getter's rows: what the application answers @p member, the
/// getter's plain result, and the exact lines it logs.
inline void addCheckedGetterColumns()
{
    QTest::addColumn<ProxyOperation>("getter");
    QTest::addColumn<QString>("member");
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<QStringList>("lines");
}

/// The row's getter returns the row's result after one call and logs the row's lines.
inline void verifyCheckedGetter(FakeMeasApplication &fake, QDBusAbstractInterface &proxy)
{
    QFETCH(ProxyOperation, getter);
    QFETCH(QString, member);
    QFETCH(ScriptedAnswer, answer);
    QFETCH(QVariant, result);
    QFETCH(QStringList, lines);

    fake.answer(member, answer);
    LogCapture log;
    const QVariant value = getter(proxy).value;
    QCOMPARE(value.isValid(), result.isValid());
    QCOMPARE(value.userType(), result.userType());
    QCOMPARE(value, result);
    QCOMPARE(log.lines(), debugLines(lines));
    QCOMPARE(fake.callCount(), 1);
}

/// Each of @p stamps comes back as the application sent it, its Qt::TimeSpec included.
template<typename Proxy>
void verifyTimeStampsRoundTrip(FakeMeasApplication &fake, Proxy &proxy, const QList<QDateTime> &stamps)
{
    LogCapture log;
    for (const QDateTime &stamp : stamps) {
        fake.answer("getTimeStamp", ScriptedAnswer::value(stamp));
        const QDBusReply<QDateTime> reply = proxy.getTimeStamp();
        QVERIFY(reply.isValid());
        QCOMPARE(reply.value(), stamp);
        QCOMPARE(reply.value().timeSpec(), stamp.timeSpec());
    }
    QCOMPARE(log.lines(), QList<LogLine>());
}

/**
 * On a proxy of an absent service each of @p checked (.run shows the empty result as
 * invalid, .report opens its line) logs one line, in order, quoting QtDBus's message; each
 * of @p generated then gives an invalid reply holding its .empty value, silently.
 */
inline void verifyAbsentServiceGivesNothingAndOneReportPerCheckedGetter(QDBusAbstractInterface &proxy,
                                                                        const QList<OperationRow> &checked,
                                                                        const QList<OperationRow> &generated)
{
    LogCapture log;
    QStringList expected;
    for (const OperationRow &getter : checked) {
        QVERIFY2(!getter.run(proxy).valid, getter.operation);
        QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
        QVERIFY(proxy.lastError().message().contains(absentService()));
        expected.append(reportLine(getter.report, absentService(), proxy.path(), proxy.lastError().message()));
    }
    QCOMPARE(log.lines(), debugLines(expected));

    log.clear();
    for (const OperationRow &getter : generated) {
        const Seen seen = getter.run(proxy);
        QCOMPARE(seen.valid, false);
        QCOMPARE(seen.value, getter.empty);
        QCOMPARE(seen.value.userType(), getter.empty.userType());
        if (getter.empty.userType() == QMetaType::QString)
            QVERIFY(seen.value.toString().isNull());
        if (getter.empty.userType() == QMetaType::QDateTime)
            QVERIFY(seen.value.toDateTime().isNull());
        QCOMPARE(proxy.lastError().type(), QDBusError::ServiceUnknown);
    }
    QCOMPARE(log.lines(), QList<LogLine>());
}

} // namespace ResultTest

#endif
