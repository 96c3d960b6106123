// What of the inputs could not be read as messages, for commands that only look at those that can.
#pragma once

#include <string>
#include <vector>

#include "io/findings.h"
#include "io/problems.h"

namespace kvt_tool {

/// The findings that leave out a message, or something where a message should be.
FindingKinds unread_findings();

/// What could not be read of some units.
class Unread {
public:
    /// Takes note of a unit of which not all was read. `read` is what read_messages returned.
    void note(const Unit &unit, bool read);

private:
    friend class UnreadOfInput;

    std::vector<Finding> findings_;
    std::string words_;
};

/// Says it, in the order of the input.
class UnreadOfInput {
public:
    void begin();
    void take(const Unread &unread);

    /// How it went with the input so far.
    ExitStatus status() const { return status_; }

private:
    FindingsOfInput findings_;
    ExitStatus status_ = all_well;
};

} // namespace kvt_tool
