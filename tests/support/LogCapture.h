#ifndef TESTS_LOGCAPTURE_H
#define TESTS_LOGCAPTURE_H

#include <QList>
#include <QString>
#include <QStringList>
#include <QtGlobal>

/// One message as Qt's message handler received it.
struct LogLine
{
    QtMsgType level;
    QString text;

    bool operator==(const LogLine &other) const { return level == other.level && text == other.text; }
};

/// Lines at debug level, the only level the library writes at.
QList<LogLine> debugLines(const QStringList &texts);

namespace QTest {
char *toString(const LogLine &line);
}

/// Collects every message written while it exists, in place of the usual output. Captures
/// nest: an inner one sees only what came after it, the outer one sees everything.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();

    QList<LogLine> lines() const;
    void clear();

private:
    Q_DISABLE_COPY(LogCapture)
    QtMessageHandler m_previous;
    int m_start;
};

#endif
