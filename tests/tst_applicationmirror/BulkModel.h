#ifndef TESTS_BULKMODEL_H
#define TESTS_BULKMODEL_H

#include <QString>
#include <QVariant>

/**
 * A simulator model of many elements of five scalar kinds in turn ("/Setup/Bulk/E0",
 * "/Setup/Bulk/E1", ...), each with a default of its own: for the mirror's test of many
 * elements and its benchmark.
 */
namespace BulkModel {

QString path(int index);
/// The short name of element @p index's kind.
QString kind(int index);
/// The value that element @p index shows at start, as a LiveValue holds it.
QVariant initialValue(int index);
/// Writes a model of @p count elements to @p fileName; false if it cannot.
bool write(const QString &fileName, int count);

} // namespace BulkModel

#endif
