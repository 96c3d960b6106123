// What differs between two records of one type, field by field.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/fields.h"

namespace kvt_tool {

/// One difference. Values are as people read them: texts in double quotes, GUIDs in hexadecimal.
struct Difference {
    enum class What : uint8_t {
        changed, ///< the value of a field, or of an element of a list of numbers
        removed, ///< an element that only A has
        added,   ///< an element that only B has
        order,   ///< elements of a list stand in another order
    };

    What what;
    std::string path;     ///< `conns[3].tree_id`, with the indexes of A, for what is added of B
    std::string before;   ///< the value in A; empty for added elements, records and order
    std::string after;    ///< the value in B; empty for removed elements, records and order
    std::string identity; ///< of a removed or added record: `tree_id 1, vemrad_id 99`

    bool operator==(const Difference &) const = default;
};

/// All differences in what the writer writes of two records, in the order of their rows; within a
/// list, changed and removed elements in the order of A, then added ones in the order of B, then
/// their order. None when the writer writes the same for both.
///
/// Elements of lists are matched as match_elements.h says, by the identities of identity.h. The
/// count of a list and the length of a text follow from what they count, and are reported only
/// where they say something else.
std::vector<Difference> diff_records(const Record &table, const void *a, const void *b);

} // namespace kvt_tool
