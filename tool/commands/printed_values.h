// What the commands that print values have in common.
#pragma once

#include <string>

#include "io/input.h"
#include "io/output.h"
#include "io/unread.h"

namespace kvt_tool {

/// Prints what was found in units, in the order of the input, and keeps in mind whether it was
/// anything: the half of a job (io/pipeline.h) that takes results.
class PrintedValues {
public:
    struct Result {
        std::string text;
        Unread unread;
    };

    void begin(const InputFile &) { unread_.begin(); }

    void take(Result &&result) {
        unread_.take(result.unread);
        found_ = found_ || !result.text.empty();
        print(result.text);
    }

    bool found() const { return found_; }

protected:
    UnreadOfInput unread_;

private:
    bool found_ = false;
};

} // namespace kvt_tool
