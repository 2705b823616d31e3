#ifndef MEASCTL_EXITCODE_H
#define MEASCTL_EXITCODE_H

#include <QString>
#include <QVector>

class QDBusError;

/// The exit status of measctl; each failure class has its own, so that scripts can tell them apart.
enum class ExitCode {
    Success = 0,
    BusError = 1, ///< any other error answer from the bus or the application
    BadCommandLine = 2,
    NoApplication = 3,
    UnknownElement = 4, ///< unknown path or member, or no kind inferable
    BadValue = 5,       ///< the value does not parse for the element's kind
    Refused = 6,        ///< the application answered false
    ParserError = 7,    ///< the remote command was rejected by the application's parser
    Timeout = 8,
    Disconnected = 9, ///< the application left the bus (or restarted) without answering
    NoBus = 10,       ///< the bus cannot be reached, or was lost
};

struct ExitCodeInfo
{
    ExitCode code;
    const char *name; ///< short, stable name used in JSON error objects
    const char *meaning;
};

namespace ExitCodes {
/// Every exit code in ascending order: the one table that --help and the JSON errors read.
const QVector<ExitCodeInfo> &all();
const ExitCodeInfo &info(ExitCode code);
/// Which exit code a failed bus call stands for.
ExitCode fromError(const QDBusError &error);
/// The exit codes as help text, one per line.
QString helpText();
} // namespace ExitCodes

#endif
