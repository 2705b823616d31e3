#include "ProxyTableTest.h"

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
