#ifndef TESTS_ARRAYRESULTTEST_H
#define TESTS_ARRAYRESULTTEST_H

// The data-driven test the two array result classes share, and the table checks they share
// with the device-data test: getters that hand back a plain value, or its empty form after
// one line, and rows tagged "ClassName/operation/situation".

#include "ProxyTableTest.h"

#include <QDateTime>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

#include <cstddef>

/// A row per operation of @p rows in the column "row", tagged with @p className and @p situation.
void addTaggedRows(const char *className, const QList<OperationRow> &rows, const char *situation);

/// Rows of verifyMappedReply() (its columns added before): each of @p rows answered with
/// .answered, seen valid as .seen, or as .answered where .seen is not given, and silently.
void addAnsweredRows(const char *className, const QList<OperationRow> &rows);

/**
 * Rows of verifyCheckedGetter(), per getter of @p checked: its .answered (seen as .seen where
 * given), each of @p errors, its .wrongType (QtDBus refuses it with .typeError) and an empty
 * return; per getter of @p refused only its .wrongType. A failure gives .empty and the one
 * line that .report opens, for the application's default service and @p path.
 */
void addCheckedGetterRows(const char *className, const QString &path, const QList<OperationRow> &checked,
                          const QList<LoggedError> &errors, const QList<OperationRow> &refused = {});

/// The row's getter sends its one call (.signature, .arguments) and gives the row's result,
/// its elements of the same types, after exactly the row's lines.
void verifyCheckedGetter(FakeMeasApplication &fake, QDBusAbstractInterface &proxy);

/// Rows of verifyAbsentServiceFailure(): @p checked log their one line, @p silent nothing.
void addAbsentServiceRows(const char *className, const QList<OperationRow> &checked, const QList<OperationRow> &silent);

/// The row's operation on a proxy of a service nobody owns gives .empty and ServiceUnknown.
void verifyAbsentServiceFailure(const ProxyFactory &make, const QString &path);

/// An array result class as its test states it.
struct ArrayResultClass
{
    const char *className;
    QString path;
    ProxyFactory make;
    /// The class's size: service and path beside the base, nothing else.
    std::size_t size;
    /// Every operation, by name too, with the call it sends.
    QList<OperationRow> sent;
    /// The checked getters, the errors they are tried with, and further answers they refuse.
    QList<OperationRow> checked;
    QList<LoggedError> errors;
    QList<OperationRow> refused = {};
    /// The generated getters: .answered, .wrongType and the .empty value of a failure.
    QList<OperationRow> generated;
    /// Further answers and what the caller sees of them, by name too.
    QList<OperationRow> answers = {};
    /// Time stamps getTimeStamp() hands on as sent, Qt::TimeSpec included.
    QList<QDateTime> timeStamps;
    /// The class's own slots in declaration order, and some of their return types.
    QStringList slotSignatures;
    QList<QPair<const char *, const char *>> returnTypes = {};
    /// Class names qt_metacast must not take for this class.
    QList<const char *> otherClasses = {};
};

class ArrayResultTest : public ProxyTableTest
{
    Q_OBJECT

public:
    explicit ArrayResultTest(ArrayResultClass tested);
    ~ArrayResultTest() override;

protected:
    const ArrayResultClass m_class;

private Q_SLOTS:
    void keepsServiceAndPathBesideTheBase();
    void sendsEachOperationWithItsWireForm_data();
    void sendsEachOperationWithItsWireForm();
    void checkedGettersGiveTheAnswerOrEmptyAfterOneLine_data();
    void checkedGettersGiveTheAnswerOrEmptyAfterOneLine();
    void mapsEachAnswerWithoutLogging_data();
    void mapsEachAnswerWithoutLogging();
    void failsWhenTheServiceIsAbsent_data();
    void failsWhenTheServiceIsAbsent();
    void getTimeStampKeepsTheApplicationsTimeSpec();
    void metaObjectListsExactlyItsSlotsInOrder();
    void metaCastKnowsTheClassAndLeavesTheRestToTheBase();
};

#endif
