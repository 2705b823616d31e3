#ifndef MEASCTL_OUTPUT_H
#define MEASCTL_OUTPUT_H

#include "CommandResult.h"

/**
 * Everything measctl writes: answers on stdout, for people as "name: value" lines or for
 * scripts as exactly one JSON document (one JSON object per line while watching);
 * failures as one line on stderr, and in JSON also as the document's "error" member.
 */
class Output
{
public:
    explicit Output(bool json);

    /// Writes @p result and returns its exit code.
    int finish(const CommandResult &result) const;
    /// Writes one event of a watch at once.
    void event(const Record &record, const QString &text) const;
    /// A note for people on stderr (never on stdout).
    void note(const QString &text) const;

private:
    bool m_json;
};

#endif
