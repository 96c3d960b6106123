// The path of a field in a message, such as `conns[3].pr_sd_to_an.sl`.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "model/fields.h"

namespace kvt_tool {

/// Something that a path leads to in a message's record.
struct FoundField {
    std::string_view path; ///< with the index of every element: `conns[3].tree_id`; the name of the
                           ///< message's block for its whole record
    const Row *row;        ///< null for the whole record of a message
    const void *record;    ///< that holds the row, or the whole record
    std::optional<uint64_t> index; ///< of an element of a list
    const Record *block;           ///< the table of `content`; null when a value was found
    const void *content;           ///< the record that was found; null when a value was

    /// A number or text as the writer writes it, without key and quotes. Of a record the lines of
    /// its block, without the indentation of the block and from "{" to "}". No newline at the end.
    std::string value() const;
};

/// A path, by the keys of the format's tables: keys with dots between them, the name of the
/// message's block in front or not. `[3]` after the key of a list is its element 3, counted from
/// 0; `[*]`, or no index, is all its elements.
class FieldPath {
public:
    /// The path of a text, which some kind of message must have; else what is wrong and where:
    /// `column 10: "conns[3]" has no field "tre_id"; did you mean "tree_id"?`.
    static std::variant<FieldPath, std::string> parse(std::string_view text);

    /// True when messages of this kind have the field, even where a list on the way is empty.
    bool applies_to(const MessageKind &kind) const { return !find_mismatch(kind).has_value(); }

    using Callback = std::function<void(const FoundField &)>;

    /// Calls back for everything that the path leads to in a message's record, in the order of the
    /// text. Nothing for an index beyond a list's end, and for a kind that the path does not apply
    /// to. Numbers that are 0 and texts that are empty are found, too, though the writer leaves
    /// their lines out.
    void each(const MessageKind &kind, const void *record, const Callback &found) const;

private:
    friend class FieldPathParser;

    struct Step {
        std::string key;
        size_t offset;                 ///< of the key in the path's text
        bool has_index;                ///< something stands in brackets after the key
        std::optional<uint64_t> index; ///< none for all elements
    };

    /// Why a kind does not have the field.
    struct Mismatch {
        enum class Reason : uint8_t { no_such_key, no_list, no_record };

        Reason reason;
        size_t step;         ///< the first that the kind does not have, in `steps_`
        const Record *table; ///< where its key is looked for; null for a kind without a record
        const Row *row;      ///< that of its key, if there is one
    };

    std::optional<Mismatch> find_mismatch(const MessageKind &kind) const;
    std::span<const Step> steps_within(const MessageKind &kind) const;

    std::vector<Step> steps_; ///< at least one
};

} // namespace kvt_tool
