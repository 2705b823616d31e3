#include "LogCapture.h"

#include <QMutex>
#include <QMutexLocker>
#include <QtTest/QTest>

namespace {

QMutex captureMutex;
QList<LogLine> capturedLines;

void capture(QtMsgType level, const QMessageLogContext &, const QString &text)
{
    QMutexLocker lock(&captureMutex);
    capturedLines.append({level, text});
}

const char *levelName(QtMsgType level)
{
    switch (level) {
    case QtDebugMsg:
        return "debug";
    case QtInfoMsg:
        return "info";
    case QtWarningMsg:
        return "warning";
    case QtCriticalMsg:
        return "critical";
    case QtFatalMsg:
        return "fatal";
    }
    return "unknown";
}

} // namespace

QList<LogLine> debugLines(const QStringList &texts)
{
    QList<LogLine> lines;
    for (const QString &text : texts)
        lines.append({QtDebugMsg, text});
    return lines;
}

char *QTest::toString(const LogLine &line)
{
    return qstrdup(QByteArray(QByteArray(levelName(line.level)) + ": " + line.text.toUtf8()).constData());
}

LogCapture::LogCapture()
    : m_previous(qInstallMessageHandler(capture))
{
    QMutexLocker lock(&captureMutex);
    if (m_previous != capture)
        capturedLines.clear();
    m_start = capturedLines.size();
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(m_previous);
}

QList<LogLine> LogCapture::lines() const
{
    QMutexLocker lock(&captureMutex);
    return capturedLines.mid(m_start);
}

void LogCapture::clear()
{
    QMutexLocker lock(&captureMutex);
    m_start = capturedLines.size();
}
