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

int Output::finish(const CommandResult &result) const
{
    if (m_json) {
        QJsonObject document = result.record.toJson();
        if (result.failure) {
            const ExitCodeInfo &info = ExitCodes::info(result.failure->code);
            document.insert(QStringLiteral("error"),
                            QJsonObject{{QStringLiteral("code"), static_cast<int>(info.code)},
                                        {QStringLiteral("name"), QString::fromLatin1(info.name)},
                                        {QStringLiteral("message"), result.failure->message}});
        }
        write(stdout, QString::fromUtf8(QJsonDocument(document).toJson(QJsonDocument::Compact)) + QLatin1Char('\n'));
    } else {
        write(stdout, result.text.isEmpty() ? result.record.toText() : result.text);
    }
    if (result.failure)
        note(result.failure->message);
    return static_cast<int>(result.exitCode());
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
