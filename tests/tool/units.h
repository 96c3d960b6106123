// The units of texts in memory.
#pragma once

#include <string>
#include <vector>

#include "io/normal_form.h"
#include "io/unit_stream.h"

namespace kvt_tool {

/// Calls `work(const Unit &)` for each unit of a text, which comes in pieces.
template <typename Work>
void each_unit(const std::string &text, Work work, size_t piece = SIZE_MAX,
               const UnitSizes &sizes = {}) {
    TextSource source(text, piece);
    UnitStream stream(source, sizes);
    while (const auto batch = stream.next()) {
        batch->for_each(work);
    }
}

/// What a unit says of itself, to be compared and shown.
struct UnitFacts {
    std::string text;
    uint64_t line;
    uint64_t offset;
    bool is_cut;
    bool is_before_message;

    bool operator==(const UnitFacts &) const = default;
};

inline std::vector<UnitFacts> facts_of_units(const std::string &text, size_t piece = SIZE_MAX,
                                             const UnitSizes &sizes = {}) {
    std::vector<UnitFacts> facts;
    each_unit(
        text,
        [&](const Unit &unit) {
            facts.push_back({std::string(unit.text, unit.length), unit.first_line, unit.offset,
                             unit.is_cut, unit.is_before_message});
        },
        piece, sizes);
    return facts;
}

/// What kvt fmt prints of a text, and an empty line.
inline std::string normal_form_of(const std::string &text) {
    std::string formatted;
    each_unit(text, [&](const Unit &unit) { add_normal_form(unit, formatted); });
    return formatted;
}

} // namespace kvt_tool
