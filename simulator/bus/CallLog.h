#ifndef SIMULATOR_CALLLOG_H
#define SIMULATOR_CALLLOG_H

#include "Faults.h"
#include "Outcome.h"

#include <QDBusMessage>
#include <QFile>
#include <QJsonValue>

/// One JSON object per call received, one per line, flushed per line.
class CallLog
{
public:
    /// Opens @p fileName for appending; false with @p error if it cannot.
    bool open(const QString &fileName, QString *error);
    bool isOpen() const { return m_file.isOpen(); }

    /// Records @p call and what was done with it: @p outcome, or the fault that replaced it.
    void record(const QDBusMessage &call, const Outcome &outcome, const Fault &fault, qint64 micros);

    /// A bus value as JSON: variants by their content, maps as objects, lists as arrays.
    static QJsonValue toJson(const QVariant &value);

private:
    QFile m_file;
};

#endif
