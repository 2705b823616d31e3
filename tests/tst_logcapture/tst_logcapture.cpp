#include "LogCapture.h"

#include <QDebug>
#include <QtTest/QTest>

// The tests of every proxy lean on the capture; it must see exactly what was written.
class tst_LogCapture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordsTextAndLevelAsTheStreamDeliversThem();
    void clearForgetsWhatCameBefore();
    void nestedCapturesSeeOnlyWhatCameAfterThem();
};

void tst_LogCapture::recordsTextAndLevelAsTheStreamDeliversThem()
{
    LogCapture log;
    qDebug() << "literal " << QStringLiteral("say \"hi\"");
    qWarning() << "warned";

    QCOMPARE(log.lines(), (QList<LogLine>{{QtDebugMsg, "literal  \"say \\\"hi\\\"\""}, {QtWarningMsg, "warned"}}));
}

void tst_LogCapture::clearForgetsWhatCameBefore()
{
    LogCapture log;
    qDebug() << "before";
    log.clear();
    qDebug() << "after";

    QCOMPARE(log.lines(), debugLines({"after"}));
}

void tst_LogCapture::nestedCapturesSeeOnlyWhatCameAfterThem()
{
    LogCapture outer;
    qDebug() << "first";
    {
        LogCapture inner;
        qDebug() << "second";
        QCOMPARE(inner.lines(), debugLines({"second"}));
    }
    qDebug() << "third";

    QCOMPARE(outer.lines(), debugLines({"first", "second", "third"}));
}

QTEST_GUILESS_MAIN(tst_LogCapture)

#include "tst_logcapture.moc"
