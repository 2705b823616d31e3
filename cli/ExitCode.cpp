#include "ExitCode.h"

#include <QDBusError>

namespace ExitCodes {

const QVector<ExitCodeInfo> &all()
{
    static const QVector<ExitCodeInfo> table{
        {ExitCode::Success, "success", "success"},
        {ExitCode::BusError, "bus-error", "the bus or the application answered with another error"},
        {ExitCode::BadCommandLine, "bad-command-line", "bad command line"},
        {ExitCode::NoApplication, "no-application", "the application is not on the bus"},
        {ExitCode::UnknownElement, "unknown-element", "unknown path or member, or no kind inferable"},
        {ExitCode::BadValue, "bad-value", "the value does not parse for the element's kind"},
        {ExitCode::Refused, "refused", "the application refused the value (answered false)"},
        {ExitCode::ParserError, "parser-error", "the application's parser rejected the remote command"},
        {ExitCode::Timeout, "timeout", "no answer in time"},
        {ExitCode::Disconnected, "disconnected", "the application left the bus without answering"},
        {ExitCode::NoBus, "no-bus", "the bus cannot be reached, or was lost"},
    };
    return table;
}

const ExitCodeInfo &info(ExitCode code)
{
    return all().at(static_cast<int>(code));
}

ExitCode fromError(const QDBusError &error)
{
    switch (error.type()) {
    case QDBusError::ServiceUnknown:
        return ExitCode::NoApplication;
    case QDBusError::UnknownObject:
    case QDBusError::UnknownMethod:
    case QDBusError::UnknownInterface:
        return ExitCode::UnknownElement;
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
        return ExitCode::Timeout;
    default:
        return ExitCode::BusError;
    }
}

QString helpText()
{
    QString text;
    for (const ExitCodeInfo &entry : all())
        text += QStringLiteral("  %1  %2\n").arg(static_cast<int>(entry.code)).arg(QString::fromLatin1(entry.meaning));
    return text;
}

} // namespace ExitCodes
