#include "Output.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

namespace {

void write(FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stream);
    std::fflush(stream);
}

} // namespace

Output::Output(bool json)
    : m_json(json)
{
}

int Output::finish(const Outcome &outcome) const
{
    if (m_json) {
        QJsonObject document = outcome.record.toJson();
        if (outcome.failure) {
            const ExitCodeInfo &info = ExitCodes::info(outcome.failure->code);
            document.insert(QStringLiteral("error"),
                            QJsonObject{{QStringLiteral("code"), static_cast<int>(info.code)},
                                        {QStringLiteral("name"), QString::fromLatin1(info.name)},
                                        {QStringLiteral("message"), outcome.failure->message}});
        }
        write(stdout, QString::fromUtf8(QJsonDocument(document).toJson(QJsonDocument::Indented)));
    } else {
        write(stdout, outcome.text.isEmpty() ? outcome.record.toText() : outcome.text);
    }
    if (outcome.failure)
        note(outcome.failure->message);
    return static_cast<int>(outcome.exitCode());
}

void Output::event(const Record &record, const QString &text) const
{
    if (m_json)
        write(stdout, QString::fromUtf8(QJsonDocument(record.toJson()).toJson(QJsonDocument::Compact)) + '\n');
    else
        write(stdout, text + QLatin1Char('\n'));
}

void Output::note(const QString &text) const
{
    write(stderr, QStringLiteral("measctl: ") + text + QLatin1Char('\n'));
}
