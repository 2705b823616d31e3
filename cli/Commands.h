#ifndef MEASCTL_COMMANDS_H
#define MEASCTL_COMMANDS_H

#include "CommandResult.h"

#include <QCommandLineOption>
#include <QList>
#include <QString>
#include <QStringList>

class Output;
class Session;

/// The options and words of one command line, after parsing.
struct Invocation
{
    QString kind;       ///< --kind, empty to infer the kind
    int count = 0;      ///< --count, 0 for no limit
    int intervalMs = 0; ///< --interval, 0 when not given
    QStringList args;   ///< the words after the command's name
    QString usage;      ///< the command's name and synopsis
};

/// One verb of measctl.
struct Command
{
    QString name;
    QString synopsis; ///< the words after the name, for --help
    QString summary;
    QList<QCommandLineOption> options;
    int (*run)(const Session &session, const Invocation &invocation, const Output &output);
};

namespace Commands {

/// The verbs in the order --help lists them.
const QList<Command> &all();
const Command *find(const QString &name);

extern const QCommandLineOption kindOption;
extern const QCommandLineOption countOption;
extern const QCommandLineOption intervalOption;

} // namespace Commands

#endif
