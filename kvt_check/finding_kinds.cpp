#include "finding_kinds.h"

#include <cstring>
#include <iterator>

namespace kvt_checking {

namespace {

constexpr kvt_severity style = KVT_SEVERITY_STYLE;
constexpr kvt_severity lost = KVT_SEVERITY_LOST;
constexpr kvt_severity refused = KVT_SEVERITY_REFUSED;

constexpr FindingKind kinds[] = {
    {KVT_FINDING_NO_MESSAGE, refused, "no-message", "The text holds no message.",
     "Look whether the file was cut or is another one."},
    {KVT_FINDING_BYTE_ORDER_MARK, refused, "byte-order-mark",
     "An invisible byte order mark stands before the first message.",
     "Save the file as UTF-8 without a byte order mark."},
    {KVT_FINDING_BEFORE_MESSAGE, refused, "before-message",
     "Something stands before the first message, if only a blank or an empty line.",
     "Take away what stands before the first \"msg {\"."},
    {KVT_FINDING_OUTSIDE, lost, "outside",
     "Something stands outside of the messages: the reader stops there.",
     "Take the line away, or look for the brace that closes a message too early."},
    {KVT_FINDING_NUL, lost, "nul", "A NUL character ends the text before its end.",
     "Take the NUL away; look whether the file was damaged or joined."},
    {KVT_FINDING_CARRIAGE_RETURN, style, "carriage-return",
     "Lines end with a carriage return and a newline; told once for a text.",
     "Save the file with the line ends of Unix; \"kvt fmt -i\" does it."},

    {KVT_FINDING_ENVELOPE, lost, "envelope", "A message begins with another line than \"msg {\".",
     "Write \"msg {\"."},
    {KVT_FINDING_NO_TYPE, refused, "no-type", "A message does not say its kind on its second line.",
     "Write \"type:\" and the kind as the line after \"msg {\"; \"kvt kinds\" lists the kinds."},
    {KVT_FINDING_TYPE_BELOW, lost, "type-below",
     "The kind stands on a line of its own below \"type:\"; the block after it is skipped.",
     "Write the kind on the line of \"type:\"."},
    {KVT_FINDING_UNKNOWN_KIND, refused, "unknown-kind", "A message is of a kind that nobody knows.",
     "Correct the kind; \"kvt kinds\" lists the kinds."},
    {KVT_FINDING_LONGER_KIND, lost, "longer-kind",
     "The type line goes on after the name of a known kind, which is what the message is read "
     "as.",
     "Correct the kind, or take away what stands after it."},
    {KVT_FINDING_NO_RECORD, refused, "no-record", "A message is of a kind that carries no record.",
     "Correct the kind, or take the message away."},
    {KVT_FINDING_BLOCK_NAME, lost, "block-name",
     "The block of a message has another name than its kind's; the reader does not look at it.",
     "Correct the name of the block, or the kind."},
    {KVT_FINDING_NO_BLOCK, lost, "no-block",
     "The block of a message is not opened; the reader skips the line where it should be.",
     "Open the block on the line after the type, also where it is empty."},
    {KVT_FINDING_NOT_CLOSED, lost, "not-closed",
     "A block is not closed before the text ends, the next message begins or its lines end.",
     "Close the block with a brace on a line of its own; look whether the file was cut."},
    {KVT_FINDING_EXTRA_BRACE, lost, "extra-brace",
     "A brace closes a block before its last line, or is one more than there are blocks.",
     "Take the brace away."},

    {KVT_FINDING_UNKNOWN_KEY, lost, "unknown-key", "A line has a key that its block does not know.",
     "Correct the key, or update the program if a newer one wrote it; \"kvt describe\" lists "
     "keys."},
    {KVT_FINDING_UNKNOWN_BLOCK, lost, "unknown-block",
     "A block is skipped as a whole: the block around it does not know it.",
     "Correct the name of the block, or move it to the block where it belongs."},
    {KVT_FINDING_STRAY_LINE, lost, "stray-line", "A line holds neither a key nor a brace.",
     "Correct the line, or take it away."},
    {KVT_FINDING_COMMENT, lost, "comment", "A comment: the format has none, and it is skipped.",
     "Keep comments in another place."},
    {KVT_FINDING_INVISIBLE, lost, "invisible",
     "A character that cannot be seen keeps a key or a number from being read.",
     "Take the character away, or write a blank for it."},
    {KVT_FINDING_LONGER_KEY, lost, "longer-key",
     "An unknown key begins with a known one, and is taken for that.",
     "Correct the key, or take the line away."},

    {KVT_FINDING_ONE_LINE_BLOCK, lost, "one-line-block",
     "A block is opened and closed on one line, which the reader does not know.",
     "Write the opening line, each line within and the closing brace on lines of their own."},
    {KVT_FINDING_BESIDE_BRACE, lost, "beside-brace",
     "Something stands beside a brace on its line, and is not read.",
     "Write it on a line of its own."},
    {KVT_FINDING_NEEDLESS_BRACE, style, "needless-brace",
     "An opening brace stands where none belongs, and is skipped.", "Take the brace away."},
    {KVT_FINDING_BRACE_IN_TEXT, lost, "brace-in-text",
     "A quoted text holds a closing brace, which closes the block for the reader.",
     "Write the text without braces."},
    {KVT_FINDING_OPEN_BRACE_IN_TEXT, style, "open-brace-in-text",
     "A quoted text holds an opening brace: it is read, but programs that count braces go astray.",
     "Write the text without braces."},
    {KVT_FINDING_BLOCK_FOR_VALUE, lost, "block-for-value",
     "A block is opened where a value belongs.", "Write a colon and the value after the key."},
    {KVT_FINDING_NO_BRACE, lost, "no-brace",
     "A block has no brace after its name, and its lines are not read as they were meant.",
     "Write the name of the block, a blank and the brace on one line."},
    {KVT_FINDING_MISSING_BRACE, style, "missing-brace",
     "A block has no brace after its name; it is read all the same.",
     "Write a brace after the name, on its line."},

    {KVT_FINDING_NO_COLON, lost, "no-colon",
     "No colon follows a key at once: its line is not read.",
     "Write the colon directly after the key."},
    {KVT_FINDING_NO_VALUE, lost, "no-value", "No value stands after a key on its line.",
     "Write the value on the line of its key, or take the line away."},
    {KVT_FINDING_NOT_A_NUMBER, lost, "not-a-number", "A value is no number where one belongs.",
     "Write a number in decimal digits."},
    {KVT_FINDING_AFTER_NUMBER, lost, "after-number",
     "Something stands after a number on its line, and is not read.", "Write the number alone."},
    {KVT_FINDING_HEXADECIMAL, lost, "hexadecimal",
     "A whole number is written in hexadecimal, of which the 0 alone is read.",
     "Write the number in decimal."},
    {KVT_FINDING_GROUPED, lost, "grouped-digits",
     "The digits of a number stand in groups, of which the first alone is read.",
     "Write the digits without anything between them."},
    {KVT_FINDING_FRACTION, lost, "fraction",
     "A whole number is written with a point, and what stands after that is not read.",
     "Write a whole number."},
    {KVT_FINDING_EXPONENT, lost, "exponent",
     "A whole number is written with an exponent, which is not read.",
     "Write all digits of the number."},
    {KVT_FINDING_UNIT, lost, "unit", "A word or a unit stands after a number, and is not read.",
     "Write the number alone, in the unit of its key; \"kvt describe\" lists the keys."},
    {KVT_FINDING_OUT_OF_RANGE, lost, "out-of-range",
     "A number is too large for its field or must not be negative: another one is read.",
     "Write a number that the field can hold; \"kvt describe\" tells how many bits it has."},
    {KVT_FINDING_ROUNDED, lost, "rounded", "A number has more digits than are kept.",
     "Write the number with six digits at most."},
    {KVT_FINDING_NO_QUOTES, lost, "no-quotes", "A text stands without quotes.",
     "Write the text between double quotes."},
    {KVT_FINDING_BEFORE_TEXT, lost, "before-text",
     "A quote stands directly after its colon, or something else before it.",
     "Write a colon, a blank and the quoted text."},
    {KVT_FINDING_EMPTY_TEXT, style, "empty-text",
     "A text is empty, which nobody writes: it is read as if its line were not there.",
     "Take the line away."},
    {KVT_FINDING_OPEN_TEXT, lost, "open-text", "The quotes of a text are not closed on its line.",
     "Write the second quote on the same line; a text has no newlines."},
    {KVT_FINDING_AFTER_TEXT, lost, "after-text",
     "Something stands after the second quote of a line, and is not read.",
     "Write one text between two quotes; a text has no quotes within."},
    {KVT_FINDING_LONG_TEXT, lost, "long-text", "A text is longer than its field can keep.",
     "Write a shorter text."},

    {KVT_FINDING_REPEATED_KEY, lost, "repeated-key",
     "A key comes again with another value, and its first value is lost.",
     "Keep one of the lines."},
    {KVT_FINDING_REPEATED_VALUE, style, "repeated-value", "A key comes again with the same value.",
     "Keep one of the lines."},
    {KVT_FINDING_REPEATED_BLOCK, lost, "repeated-block",
     "A block comes again: it replaces the first, or what both hold.",
     "Put the lines of both into one block."},
    {KVT_FINDING_REPEATED_ARRAY, lost, "repeated-array",
     "An array comes again after other lines, and replaces the first.",
     "Put all elements directly after each other."},
    {KVT_FINDING_KEY_IN_ARRAY, lost, "key-in-array",
     "A line directly after an array begins with its key, and is taken for one more element.",
     "Move the line before the array."},

    {KVT_FINDING_NO_COUNT, style, "no-count",
     "An array has no line that says how many elements it has; the reader counts them.",
     "Nothing needs to be done; \"kvt fmt -i\" writes the line."},
    {KVT_FINDING_WRONG_COUNT, lost, "wrong-count",
     "A count is not the number of the elements below it; the reader counts these.",
     "Look whether elements are missing, and correct the count."},
    {KVT_FINDING_LATE_COUNT, lost, "late-count",
     "A wrong count stands after its elements: it is believed.",
     "Look whether elements are missing, and move the right count before them."},
    {KVT_FINDING_LONE_COUNT, lost, "lone-count",
     "A count has no elements: the record promises elements that it has not.",
     "Look whether elements are missing, or take the count away."},
    {KVT_FINDING_WRONG_LENGTH, lost, "wrong-length",
     "A length is not that of its text with one more for its end.",
     "Look whether the text was cut, and correct the length."},
    {KVT_FINDING_TOO_MANY, lost, "too-many", "An array has more elements than there are places.",
     "Take the last elements away."},
    {KVT_FINDING_AFTER_END, lost, "after-end",
     "An array goes on after the value that ends it, and is written no further.",
     "Take away the value that ends the array, or what stands after it."},
    {KVT_FINDING_END_MARK, style, "end-mark",
     "A line holds the value that ends its array when that is written; it is no element.",
     "Take the line away if it was meant as an element; else nothing needs to be done."},
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
