// kvt check: says what the reader would lose of texts.
#pragma once

#include <string>
#include <vector>

#include "findings.h"
#include "problems.h"

namespace kvt_tool {

struct CheckOptions {
    FindingKinds wanted = FindingKinds().set();
    FindingForm form = FindingForm::marked;
    bool quiet = false; ///< the exit status alone
    unsigned threads = 1;
};

/// Prints the findings of all inputs.
ExitStatus check(const std::vector<std::string> &inputs, const CheckOptions &options);

/// Prints the kinds of findings.
ExitStatus list_findings();

} // namespace kvt_tool
