// What differs between two records of one type, field by field.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "model/field_set.h"
#include "model/fields.h"

namespace kvt_tool {

/// Where a difference lies in one of the records.
struct DifferencePlace {
    std::string path;              ///< `conns[3].tree_id`; empty where the record has no such thing
    const void *record = nullptr;  ///< that has the field
    std::optional<uint64_t> index; ///< of an element of a list

    bool operator==(const DifferencePlace &) const = default;
};

/// An element of a list in which something lies.
struct Enclosing {
    const Row *list;
    const void *record; ///< the element in A, or in B where only B has it

    bool operator==(const Enclosing &) const = default;
};

/// One difference. It refers to both records.
struct Difference {
    enum class What : uint8_t {
        changed, ///< the value of a field, or of an element of a list of numbers
        removed, ///< an element that only A has
        added,   ///< an element that only B has
        order,   ///< elements of a list stand in another order
    };

    What what;
    const Row *row; ///< of the field
    DifferencePlace a;
    DifferencePlace b;
    std::vector<Enclosing> within; ///< outermost first; the removed or added record is the last

    bool operator==(const Difference &) const = default;

    /// The place in A, or in B where only B has it.
    const DifferencePlace &place() const { return a.record != nullptr ? a : b; }
};

/// All differences in what the writer writes of two records, in the order of their rows; within a
/// list, changed and removed elements in the order of A, then added ones in the order of B, then
/// their order. None when the writer writes the same for both. Fields that are in `ignored` have
/// none.
///
/// Elements of lists are matched as match_elements.h says, by the identities of identity.h. The
/// count of a list and the length of a text follow from what they count, and are reported only
/// where they say something else.
std::vector<Difference> diff_records(const Record &table, const void *a, const void *b,
                                     const FieldSet &ignored = {});

} // namespace kvt_tool
