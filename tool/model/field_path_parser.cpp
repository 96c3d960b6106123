// Reads the text of a path, and says what is wrong with it.
#include <charconv>
#include <vector>

#include "kvt_check/nearest.h"
#include "model/field_path.h"

namespace kvt_tool {

namespace {

bool is_key_character(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

std::string in_quotes(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

std::string_view what_it_is(const Row &row) {
    switch (shape_of(row)) {
    case Shape::number:
    case Shape::real:
        return "a number";
    case Shape::text:
        return "a text";
    case Shape::numbers:
        return "a list of numbers";
    case Shape::block:
    case Shape::records:
        break;
    }
    return "a block";
}

/// The way to a key further down, with dots between the keys; empty when it is nowhere.
std::string path_below(const Record &table, std::string_view key) {
    if (find_row(table, key) != nullptr) {
        return std::string(key);
    }
    for (const Row &row : table.rows) {
        const std::string below = row.element != nullptr ? path_below(*row.element, key) : "";
        if (!below.empty()) {
            return std::string(key_of(row)) + "." + below;
        }
    }
    return {};
}

} // namespace

class FieldPathParser {
public:
    explicit FieldPathParser(std::string_view text) : text_(text) {}

    std::variant<FieldPath, std::string> parse();

private:
    using Mismatch = FieldPath::Mismatch;
    using Reason = Mismatch::Reason;

    bool take_step();
    bool take_elements(FieldPath::Step &step);
    bool take_place(std::optional<ListPlace> &place);
    bool fail(std::string reason);

    char next() const { return at_ < text_.size() ? text_[at_] : '\0'; }

    bool applies_to_any_kind();
    void collect(FieldPath::Steps steps, const Record &table,
                 std::vector<Mismatch> &furthest) const;
    std::string explain(const std::vector<Mismatch> &furthest) const;
    std::string suggestion(const std::vector<Mismatch> &furthest) const;
    std::string_view text_before(const FieldPath::Step &step) const;

    std::string_view text_;
    size_t at_ = 0;
    FieldPath path_;
    std::string error_;
};

bool FieldPathParser::fail(std::string reason) {
    error_ = "column " + std::to_string(at_ + 1) + ": " + std::move(reason);
    return false;
}

/// A number, with a minus sign from the list's end. Takes nothing where no number stands.
bool FieldPathParser::take_place(std::optional<ListPlace> &place) {
    const size_t sign = next() == '-' ? 1 : 0;
    const char *begin = text_.data() + at_ + sign;
    uint64_t distance = 0;
    const auto [after, error] = std::from_chars(begin, text_.data() + text_.size(), distance);
    if (error == std::errc::result_out_of_range) {
        return fail("this index is too large");
    }
    if (error == std::errc()) {
        place = ListPlace{distance, sign != 0 && distance != 0};
        at_ += sign + static_cast<size_t>(after - begin);
    }
    return true;
}

bool FieldPathParser::take_elements(FieldPath::Step &step) {
    if (next() != '[') {
        return true;
    }
    ++at_;
    ElementRange elements;
    if (next() == '*') {
        ++at_;
    } else {
        if (!take_place(elements.begin)) {
            return false;
        }
        elements.is_one = next() != ':';
        if (elements.is_one && !elements.begin.has_value()) {
            return fail("an index is a number, a range such as 2:5, or *");
        }
        if (!elements.is_one) {
            ++at_;
            if (!take_place(elements.end)) {
                return false;
            }
        }
    }
    if (next() != ']') {
        return fail("\"]\" is missing");
    }
    ++at_;
    step.elements = elements;
    return true;
}

bool FieldPathParser::take_step() {
    constexpr std::string_view any_depth = "**";
    if (path_.steps_.size() == FieldPath::most_steps) {
        return fail("this path is too long");
    }
    const size_t begin = at_;
    if (text_.substr(at_).starts_with(any_depth)) {
        at_ += any_depth.size();
        path_.steps_.push_back({"", begin, std::nullopt});
        return true;
    }
    while (is_key_character(next())) {
        ++at_;
    }
    if (at_ == begin) {
        return fail("a key is missing");
    }
    FieldPath::Step step = {std::string(text_.substr(begin, at_ - begin)), begin, std::nullopt};
    if (!take_elements(step)) {
        return false;
    }
    path_.steps_.push_back(std::move(step));
    return true;
}

/// What stands before a key and its dot; empty for the first key.
std::string_view FieldPathParser::text_before(const FieldPath::Step &step) const {
    return text_.substr(0, step.offset == 0 ? 0 : step.offset - 1);
}

std::string FieldPathParser::suggestion(const std::vector<Mismatch> &furthest) const {
    const FieldPath::Step &step = path_.steps_[furthest.front().step];
    const std::string before(text_.substr(0, step.offset));
    for (const Mismatch &mismatch : furthest) {
        const std::string below = path_below(*mismatch.table, step.key);
        if (!below.empty()) {
            return before + below;
        }
    }
    kvt_checking::Nearest nearest(step.key);
    for (const Mismatch &mismatch : furthest) {
        for (const Row &row : mismatch.table->rows) {
            nearest.consider(key_of(row));
        }
    }
    if (step.offset == 0) {
        for (const MessageKind &kind : kvt_str::message_kinds()) {
            nearest.consider(kind.block != nullptr ? kind.block : "");
        }
    }
    return nearest.word().empty() ? "" : before + std::string(nearest.word());
}

/// `furthest` are the kinds that have most of the path; they lack the same step of it.
std::string FieldPathParser::explain(const std::vector<Mismatch> &furthest) const {
    const Mismatch &first = furthest.front();
    const FieldPath::Step &step = path_.steps_[first.step];
    if (first.reason == Reason::no_list) {
        return in_quotes(step.key) + " is no list and takes no index";
    }
    if (first.reason == Reason::no_record) {
        return in_quotes(step.key) + " is " + std::string(what_it_is(*first.row)) +
               " and has no fields";
    }
    const std::string meant = suggestion(furthest);
    const bool at_any_depth = first.step > 0 && path_.steps_[first.step - 1].is_any_depth();
    const std::string_view before = text_before(at_any_depth ? path_.steps_[first.step - 1] : step);
    return (before.empty() ? "no message has a field " : in_quotes(before) + " has no field ") +
           in_quotes(step.key) + (at_any_depth ? " at any depth" : "") +
           (meant.empty() ? "" : "; did you mean " + in_quotes(meant) + "?");
}

/// Keeps what a table does not have, if the path has come as far as anywhere before.
void FieldPathParser::collect(FieldPath::Steps steps, const Record &table,
                              std::vector<Mismatch> &furthest) const {
    const auto rank = [](const Mismatch &mismatch) {
        return 2 * mismatch.step + (mismatch.reason != Reason::no_such_key ? 1 : 0);
    };
    for (size_t i = 0; i < path_.steps_.size(); ++i) {
        if ((steps >> i & 1) == 0 || path_.steps_[i].is_any_depth()) {
            continue;
        }
        const std::optional<Mismatch> mismatch = path_.mismatch_of(i, table);
        if (!mismatch.has_value()) {
            continue;
        }
        if (!furthest.empty() && rank(*mismatch) > rank(furthest.front())) {
            furthest.clear();
        }
        if (furthest.empty() || rank(*mismatch) == rank(furthest.front())) {
            furthest.push_back(*mismatch);
        }
    }
    for (const Row &row : table.rows) {
        if (const FieldPath::Steps next = path_.after(steps, row);
            row.element != nullptr && next != 0) {
            collect(next, *row.element, furthest);
        }
    }
}

bool FieldPathParser::applies_to_any_kind() {
    std::vector<Mismatch> furthest;
    for (const MessageKind &kind : kvt_str::message_kinds()) {
        if (path_.applies_to(kind)) {
            return true;
        }
        if (kind.record != nullptr) {
            collect(path_.first_steps(kind), *kind.record, furthest);
        }
    }
    if (furthest.empty()) {
        return fail("there is nothing below this block");
    }
    const Mismatch &first = furthest.front();
    const FieldPath::Step &step = path_.steps_[first.step];
    switch (first.reason) {
    case Reason::no_such_key:
        at_ = step.offset;
        break;
    case Reason::no_list:
        at_ = step.offset + step.key.size();
        break;
    case Reason::no_record:
        at_ = path_.steps_[first.step + 1].offset;
        break;
    }
    return fail(explain(furthest));
}

std::variant<FieldPath, std::string> FieldPathParser::parse() {
    bool goes_on = take_step();
    while (goes_on && at_ < text_.size()) {
        if (next() != '.') {
            fail(std::string("a key, an index or the end of the path should stand here"));
            return error_;
        }
        ++at_;
        goes_on = take_step();
    }
    if (!goes_on || !applies_to_any_kind()) {
        return error_;
    }
    return path_;
}

std::variant<FieldPath, std::string> FieldPath::parse(std::string_view text) {
    return FieldPathParser(text).parse();
}

} // namespace kvt_tool
