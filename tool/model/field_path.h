// The path of a field in a message, such as `conns[3].pr_sd_to_an.sl`.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "model/element_range.h"
#include "model/fields.h"
#include "model/value_text.h"

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
    std::string value(GuidForm guids = GuidForm::decimal) const;
};

/// A field that a path leads to in every message of a kind.
struct FieldPlace {
    const MessageKind *kind;
    std::string path;    ///< without indices, the name of the message's block in front
    const Record *table; ///< that has the row; of the whole record its own
    const Row *row;      ///< null for the whole record of a message
};

/// A path, by the keys of the format's tables: keys with dots between them, the name of the
/// message's block in front or not. In brackets after the key of a list stands which elements are
/// meant: `[3]` counted from 0, `[-1]` from the end, `[2:5]` those from 2 on and before 5; `[*]`,
/// or nothing, is all of them. `**` in place of a key is any number of blocks, even none; at the
/// end of a path it is all values, at any depth.
class FieldPath {
public:
    /// The path of a text, which some kind of message must have; else what is wrong and where:
    /// `column 10: "conns[3]" has no field "tre_id"; did you mean "tree_id"?`.
    static std::variant<FieldPath, std::string> parse(std::string_view text);

    /// True when messages of this kind have the field, even where a list on the way is empty.
    bool applies_to(const MessageKind &kind) const;

    using Callback = std::function<void(const FoundField &)>;

    /// Calls back for everything that the path leads to in a message's record, in the order of the
    /// text. Nothing for an index beyond a list's end, and for a kind that the path does not apply
    /// to. Numbers that are 0 and texts that are empty are found, too, though the writer leaves
    /// their lines out.
    void each(const MessageKind &kind, const void *record, const Callback &found) const;

    /// Where the path leads to in messages of all kinds, in the order of their texts.
    std::vector<FieldPlace> places() const;

private:
    friend class FieldPathParser;
    friend class FieldPathWalk;

    struct Step {
        std::string key;                      ///< empty for any number of blocks
        size_t offset;                        ///< in the path's text
        std::optional<ElementRange> elements; ///< what stands in brackets after the key

        bool is_any_depth() const { return key.empty(); }
    };

    /// The steps that may come next, a bit each, and after them one for the end of the path. A path
    /// with `**` may have come to several.
    using Steps = uint64_t;

    static constexpr size_t most_steps = 63;

    Steps end_of_path() const { return Steps{1} << steps_.size(); }

    /// Those to begin with in messages of a kind: without the name of the block. Only the end for
    /// a path that is no more than that.
    Steps first_steps(const MessageKind &kind) const;

    /// With those after steps that may stand for nothing.
    Steps with_skipped(Steps steps) const;

    /// Those after a row, and after its element `index` of so many; of any element when `count` is
    /// 0.
    Steps after(Steps steps, const Row &row, uint64_t index = 0, uint64_t count = 0) const;

    /// The elements of a list of so many that some of the steps mean.
    ElementRange::Bounds meant(Steps steps, const Row &row, uint64_t count) const;

    /// Whether these steps lead to a field of some record of this type.
    bool lead_on(Steps steps, const Record &table) const;

    /// Why a record does not have the field.
    struct Mismatch {
        enum class Reason : uint8_t { no_such_key, no_list, no_record };

        Reason reason;
        size_t step;         ///< that the record does not have, in `steps_`
        const Record *table; ///< where its key is looked for
        const Row *row;      ///< that of its key, if there is one
    };

    std::optional<Mismatch> mismatch_of(size_t step, const Record &table) const;

    std::vector<Step> steps_; ///< at least one
};

} // namespace kvt_tool
