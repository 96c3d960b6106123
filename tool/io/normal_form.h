// Texts in normal form: what kvt fmt prints.
#pragma once

#include <string>
#include <vector>

#include "io/findings.h"
#include "io/unit.h"
#include "model/write_text.h"

namespace kvt_tool {

/// What became of a unit.
struct NormalForm {
    Likeness likeness = Likeness::same; ///< of the unit with its normal form
    std::vector<Finding> findings;      ///< none for a unit in normal form: that has lost nothing
    bool is_incomplete = false;         ///< a message is missing, and no finding says why
};

/// Adds the messages of a unit in normal form, an empty line after each. The normal form of what is
/// added is the same text.
NormalForm add_normal_form(const Unit &unit, std::string &text);

} // namespace kvt_tool
