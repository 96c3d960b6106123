// The units of texts in memory.
#pragma once

#include <string>

#include "io/normal_form.h"
#include "io/unit_stream.h"

namespace kvt_tool {

/// Calls `work(const Unit &)` for each unit of a text.
template <typename Work> void each_unit(const std::string &text, Work work) {
    TextSource source(text);
    UnitStream stream(source);
    while (const auto batch = stream.next()) {
        batch->for_each(work);
    }
}

/// What kvt fmt prints of a text, and an empty line.
inline std::string normal_form_of(const std::string &text) {
    std::string formatted;
    each_unit(text, [&](const Unit &unit) { add_normal_form(unit, formatted); });
    return formatted;
}

} // namespace kvt_tool
