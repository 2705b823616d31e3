#ifndef TESTS_PROXYTABLETEST_H
#define TESTS_PROXYTABLETEST_H

// What the family tests share: a fresh fake application and a proxy on it for each test
// function, made by the class's factory, row tags that name class, operation and case, and
// the check of a slot invoked by name.

#include "FakeMeasApplication.h"
#include "ProxyTestSupport.h"

#include <QByteArray>
#include <QDBusAbstractInterface>
#include <QList>
#include <QObject>
#include <QString>

#include <memory>

/// The first of @p rows whose operation is @p operation; one naming only it where none is.
OperationRow rowNamed(const QList<OperationRow> &rows, const char *operation);

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
    /// A row per operation of @p rows in the column "row", tagged tag(row, @p situation).
    void addRows(const QList<OperationRow> &rows, const char *situation) const;

    /// The row's slot invoked by name (byName()) sends the row's call and gives .answered (as
    /// .seen, where given), as the direct call of that name among @p direct does.
    void verifyInvokedByName(const QList<OperationRow> &direct);

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
