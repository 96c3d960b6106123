// Fields of records that are held in memory, to be looked up.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <set>
#include <span>

#include "model/field_path.h"

namespace kvt_tool {

/// A set of fields, and of elements of lists. It knows them by their place in memory: it is to be
/// forgotten with the records.
class FieldSet {
public:
    /// Adds what paths lead to in a message's record, or all of it where a path is that of its
    /// block.
    void add(std::span<const FieldPath> paths, const MessageKind &kind, const void *record);

    void add(const FieldSet &fields) {
        fields_.insert(fields.fields_.begin(), fields.fields_.end());
    }

    bool empty() const { return fields_.empty(); }

    /// True for the whole record of a message.
    bool has(const void *record) const { return has(nullptr, record, std::nullopt); }

    /// True for a field that is no list.
    bool has(const Row &row, const void *record) const { return has(&row, record, std::nullopt); }

    /// True for an element of a list.
    bool has(const Row &row, const void *record, uint64_t index) const {
        return has(&row, record, std::optional(index));
    }

private:
    struct Field {
        const Row *row;
        const void *record;
        std::optional<uint64_t> index;

        auto operator<=>(const Field &) const = default;
    };

    bool has(const Row *row, const void *record, std::optional<uint64_t> index) const {
        return fields_.contains({row, record, index});
    }

    std::set<Field> fields_;
};

} // namespace kvt_tool
