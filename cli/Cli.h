#ifndef MEASCTL_CLI_H
#define MEASCTL_CLI_H

#include <QStringList>

namespace Cli {

/// The environment variable that names the default application.
extern const char *const appVariable;

/// Runs measctl with @p arguments (the program name first); returns the exit code.
int run(const QStringList &arguments);

} // namespace Cli

#endif
