#include "finding_kinds.h"

#include <cstring>
#include <iterator>

namespace kvt_checking {

namespace {

constexpr FindingKind kinds[] = {
    {KVT_FINDING_NO_MESSAGE, "no-message", "The text holds no message."},
    {KVT_FINDING_OUTSIDE, "outside",
     "Something stands outside of the messages: the reader stops there, or refuses the text."},
    {KVT_FINDING_NUL, "nul", "A NUL character ends the text before its end."},
    {KVT_FINDING_CARRIAGE_RETURN, "carriage-return",
     "Lines end with a carriage return and a newline; told once for a text."},

    {KVT_FINDING_ENVELOPE, "envelope", "A message begins with another line than \"msg {\"."},
    {KVT_FINDING_NO_TYPE, "no-type", "A message does not say its kind on its second line."},
    {KVT_FINDING_UNKNOWN_KIND, "unknown-kind", "A message is of a kind that nobody knows."},
    {KVT_FINDING_LONGER_KIND, "longer-kind",
     "The type line goes on after the name of a known kind, which is what the message is read "
     "as."},
    {KVT_FINDING_NO_RECORD, "no-record", "A message is of a kind that carries no record."},
    {KVT_FINDING_BLOCK_NAME, "block-name",
     "The block of a message has another name than its kind's; the reader does not look at it."},
    {KVT_FINDING_NO_BLOCK, "no-block",
     "The block of a message is not opened; the reader skips the line where it should be."},
    {KVT_FINDING_NOT_CLOSED, "not-closed",
     "A block is not closed before the text ends or the next message begins."},

    {KVT_FINDING_UNKNOWN_KEY, "unknown-key", "A line has a key that its block does not know."},
    {KVT_FINDING_UNKNOWN_BLOCK, "unknown-block",
     "A block is skipped as a whole: the block around it does not know it."},
    {KVT_FINDING_STRAY_LINE, "stray-line", "A line holds neither a key nor a brace."},
    {KVT_FINDING_LONGER_KEY, "longer-key",
     "An unknown key begins with a known one, and is taken for that."},

    {KVT_FINDING_ONE_LINE_BLOCK, "one-line-block",
     "A block is opened and closed on one line: the reader closes the block around it."},
    {KVT_FINDING_BESIDE_BRACE, "beside-brace",
     "Something stands beside a brace on its line, and is not read."},
    {KVT_FINDING_BRACE_IN_TEXT, "brace-in-text",
     "A quoted text holds a brace: it opens or closes blocks for the reader."},
    {KVT_FINDING_BLOCK_FOR_VALUE, "block-for-value", "A block is opened where a value belongs."},
    {KVT_FINDING_NO_BRACE, "no-brace", "A block has no brace after its name."},

    {KVT_FINDING_NO_COLON, "no-colon", "No colon follows a key at once: its line is not read."},
    {KVT_FINDING_NO_VALUE, "no-value", "No value stands after a key on its line."},
    {KVT_FINDING_NOT_A_NUMBER, "not-a-number", "A value is no number where one belongs."},
    {KVT_FINDING_AFTER_NUMBER, "after-number",
     "Something stands after a number on its line, and is not read."},
    {KVT_FINDING_OUT_OF_RANGE, "out-of-range",
     "A number is too large for its field or must not be negative: another one is read."},
    {KVT_FINDING_ROUNDED, "rounded", "A number has more digits than are kept."},
    {KVT_FINDING_NO_QUOTES, "no-quotes", "A text stands without quotes."},
    {KVT_FINDING_BEFORE_TEXT, "before-text",
     "A quote stands directly after its colon, or something else before it."},
    {KVT_FINDING_EMPTY_TEXT, "empty-text", "An empty text is not read as a value."},
    {KVT_FINDING_OPEN_TEXT, "open-text", "The quotes of a text are not closed on its line."},
    {KVT_FINDING_AFTER_TEXT, "after-text",
     "Something stands after the second quote of a line, and is not read."},
    {KVT_FINDING_LONG_TEXT, "long-text", "A text is longer than its field can keep."},

    {KVT_FINDING_REPEATED_KEY, "repeated-key", "A key comes again, and its first value is lost."},
    {KVT_FINDING_REPEATED_BLOCK, "repeated-block", "A block comes again, and replaces the first."},
    {KVT_FINDING_REPEATED_ARRAY, "repeated-array",
     "An array comes again after other lines, and replaces the first."},
    {KVT_FINDING_KEY_IN_ARRAY, "key-in-array",
     "A line directly after an array begins with its key, and is taken for one more element."},

    {KVT_FINDING_WRONG_COUNT, "wrong-count",
     "A count is not the number of the elements below it; the reader counts these."},
    {KVT_FINDING_LATE_COUNT, "late-count",
     "A wrong count stands after its elements: the record promises elements that it has not."},
    {KVT_FINDING_LONE_COUNT, "lone-count",
     "A count has no elements: the record promises elements that it has not."},
    {KVT_FINDING_WRONG_LENGTH, "wrong-length",
     "A length is not that of its text with one more for its end."},
    {KVT_FINDING_TOO_MANY, "too-many", "An array has more elements than there are places."},
    {KVT_FINDING_AFTER_END, "after-end",
     "An array goes on after the value that ends it, and is written no further."},
};

constexpr bool kinds_are_in_order() {
    for (size_t i = 0; i < std::size(kinds); ++i) {
        if (kinds[i].kind != i) {
            return false;
        }
    }
    return true;
}

static_assert(std::size(kinds) == KVT_FINDING_KINDS, "one row for every kind");
static_assert(kinds_are_in_order(), "a row stands at the place of its value");

} // namespace

const FindingKind *find_finding_kind(kvt_finding_kind kind) {
    const auto index = static_cast<size_t>(kind);
    return index < std::size(kinds) ? &kinds[index] : nullptr;
}

const FindingKind *find_finding_kind(const char *name) {
    for (const FindingKind &kind : kinds) {
        if (std::strcmp(name, kind.name) == 0) {
            return &kind;
        }
    }
    return nullptr;
}

} // namespace kvt_checking
