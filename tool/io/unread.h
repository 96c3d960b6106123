// What of the inputs is lost, for commands whose work is another. They say what leaves out a
// message, line by line, and of the rest how many findings there are: kvt check shows them.
#pragma once

#include <string>
#include <vector>

#include "io/findings.h"
#include "io/problems.h"

namespace kvt_tool {

/// What is lost of some units.
class Unread {
public:
    /// Takes note of a unit. `read` is what read_messages returned.
    void note(const Unit &unit, bool read);

private:
    friend class UnreadOfInput;

    std::vector<Finding> findings_; ///< with a text where it is said
    std::string words_;             ///< that memory is out
};

/// Says it, in the order of the input.
class UnreadOfInput {
public:
    void begin();
    void take(const Unread &unread);

    /// Says how many findings there were. Returns how it went with the input: well, too, where all
    /// messages were read, and only lines of them were lost.
    ExitStatus end(const std::string &input);

    ExitStatus status() const { return status_; }

    /// Something was lost of this input.
    bool has_findings() const { return findings_.count() != before_; }

private:
    FindingsOfInput findings_;
    size_t before_ = 0; ///< findings in the inputs before
    ExitStatus status_ = all_well;
};

} // namespace kvt_tool
