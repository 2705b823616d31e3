#include "ProxyTableTest.h"

#include <QtTest/QTest>

ProxyTableTest::ProxyTableTest(const char *className, const QString &path, const ProxyFactory &make)
    : m_className(className)
    , m_path(path)
    , m_make(make)
{
}

ProxyTableTest::~ProxyTableTest() = default;

void ProxyTableTest::init()
{
    m_fake.reset(new FakeMeasApplication);
    m_proxy.reset(m_make(m_fake->service(), m_path, nullptr));
}

void ProxyTableTest::cleanup()
{
    // The proxy goes before the application it talks to.
    m_proxy.reset();
    m_fake.reset();
}

void ProxyTableTest::constructionPassesItsArgumentsOnAndSendsNothing()
{
    verifyConstructionContract(m_make, *m_fake, m_path);
}

std::unique_ptr<QDBusAbstractInterface> ProxyTableTest::makeAbsent() const
{
    return std::unique_ptr<QDBusAbstractInterface>(m_make(absentService(), m_path, nullptr));
}

QByteArray ProxyTableTest::tag(const OperationRow &row, const char *situation) const
{
    return QByteArray(m_className) + '/' + row.operation + '/' + situation;
}

void ProxyTableTest::addRows(const QList<OperationRow> &rows, const char *situation) const
{
    QTest::addColumn<OperationRow>("row");
    for (const OperationRow &row : rows)
        QTest::newRow(tag(row, situation).constData()) << row;
}

OperationRow rowNamed(const QList<OperationRow> &rows, const char *operation)
{
    for (const OperationRow &row : rows) {
        if (qstrcmp(row.operation, operation) == 0)
            return row;
    }
    return OperationRow{operation};
}

void ProxyTableTest::verifyInvokedByName(const QList<OperationRow> &direct)
{
    QFETCH(OperationRow, row);
    const ProxyOperation called = rowNamed(direct, row.operation).run;
    QVERIFY2(called, "no direct call of that name");
    m_fake->answer(row.wireMember(),
                   row.answered.isValid() ? ScriptedAnswer::value(row.answered) : ScriptedAnswer::reply());

    const Seen byName = row.run(*m_proxy);
    QVERIFY(byName.valid || !row.answered.isValid());
    QCOMPARE(byName.value, row.seen.isValid() ? row.seen : row.answered);
    QVERIFY(m_fake->waitForCalls(1));
    verifyReceivedCall(m_fake->calls().first(), m_path, row);

    const Seen seen = called(*m_proxy);
    QCOMPARE(seen.valid, byName.valid);
    QCOMPARE(seen.value, byName.value);
}
