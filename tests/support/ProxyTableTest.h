#ifndef TESTS_PROXYTABLETEST_H
#define TESTS_PROXYTABLETEST_H

// What the family tests share: a fresh fake application and a proxy on it for each test
// function, made by the class's factory, and row tags that name class, operation and case.

#include "FakeMeasApplication.h"
#include "ProxyTestSupport.h"

#include <QByteArray>
#include <QDBusAbstractInterface>
#include <QObject>
#include <QString>

#include <memory>

class ProxyTableTest : public QObject
{
    Q_OBJECT

public:
    ProxyTableTest(const char *className, const QString &path, const ProxyFactory &make);
    ~ProxyTableTest() override;

protected:
    template<typename Proxy>
    Proxy &proxy()
    {
        return static_cast<Proxy &>(*m_proxy);
    }

    /// A proxy of the class for a service nobody owns.
    std::unique_ptr<QDBusAbstractInterface> makeAbsent() const;
    /// "ClassName/operation/situation".
    QByteArray tag(const OperationRow &row, const char *situation) const;

    const char *const m_className;
    const QString m_path;
    const ProxyFactory m_make;
    std::unique_ptr<FakeMeasApplication> m_fake;
    std::unique_ptr<QDBusAbstractInterface> m_proxy;

private Q_SLOTS:
    void init();
    void cleanup();
    void constructionPassesItsArgumentsOnAndSendsNothing();
};

#endif
