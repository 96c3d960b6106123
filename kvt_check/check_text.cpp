// Quoted texts: what of a line, or of a line below, the reader takes for one.
#include <cstring>

#include "check_value.h"
#include "engine/text_limits.h"
#include "text/boundary.h"

namespace kvt_checking {

using namespace kvt_str;

namespace {

/// What the reader takes where no quoted text stands on the line: the next one below, wherever that
/// is. The end of the text serves for its second quote.
struct TextBelow {
    std::string_view value; ///< empty where there is none
    size_t line = 0;
};

TextBelow find_text_below(Check &check, const char *at, size_t longest) {
    const Place quote = check.find_quote(at);
    if (quote.at == check.cursor.end()) {
        return {};
    }
    const char *begin = quote.at + 1;
    const std::string_view rest =
        first_of({begin, static_cast<size_t>(check.cursor.end() - begin)}, longest);
    const char *closing = find_character('"', begin, begin + rest.size());
    return {closing != nullptr ? first_of(rest, static_cast<size_t>(closing - begin)) : rest,
            quote.line};
}

/// Tells of a line without quotes.
template <typename... Parts>
void report_no_text(Check &check, kvt_finding_kind kind, const Mark &mark, const Line &line,
                    const TextReading &reading, const Parts &...parts) {
    const TextBelow below = find_text_below(check, line.end, reading.longest);
    if (below.value.empty()) {
        check.findings.report(kind, mark, parts..., ": ", reading.unread);
    } else {
        check.findings.report(kind, mark, parts..., ": the reader takes the text of line ",
                              uint64_t{below.line}, ", ", Quoted{below.value});
    }
}

/// Tells of what stands between the colon and the first quote, which the reader skips; it wants one
/// character there at least. False where there is none.
bool check_before_text(Check &check, const char *after_colon, const char *quote,
                       const TextReading &reading) {
    if (quote == after_colon) {
        check.findings.report(KVT_FINDING_BEFORE_TEXT, check.mark(quote - 1, quote + 1),
                              "a blank belongs between the colon and the quote: the reader does "
                              "not read the text: ",
                              reading.unread);
        return false;
    }
    const std::string_view before = trimmed(after_colon, quote);
    if (!before.empty()) {
        check.findings.report(KVT_FINDING_BEFORE_TEXT, check.mark(before),
                              "the reader skips what stands before the quote, ", Quoted{before});
    }
    return true;
}

void report_open_text(Check &check, const char *quote, const Line &line,
                      const TextReading &reading) {
    const TextBelow taken = find_text_below(check, quote, reading.longest);
    check.findings.report(KVT_FINDING_OPEN_TEXT, check.mark(quote, line.end),
                          "no second quote closes this text on its line: the reader goes on below, "
                          "and takes ",
                          Quoted{taken.value});
}

void check_braces(Check &check, std::string_view value, const TextReading &reading) {
    const char *end = value.data() + value.size();
    if (find_character('}', value.data(), end) == nullptr) {
        if (find_character('{', value.data(), end) != nullptr) {
            check.findings.report(KVT_FINDING_OPEN_BRACE_IN_TEXT, check.mark(value),
                                  "the reader takes the text, but programs that count braces take "
                                  "this one for a block's");
        }
    } else if (reading.closes) {
        check.findings.report(KVT_FINDING_BRACE_IN_TEXT, check.mark(value),
                              "a brace counts also within quotes: the reader closes ",
                              Quoted{reading.block}, " at this line, and does not read the text");
    } else {
        check.findings.report(KVT_FINDING_BRACE_IN_TEXT, check.mark(value),
                              "the reader takes the text here, but where it is written below "
                              "another line the brace closes ",
                              Quoted{reading.block});
    }
}

void check_after_text(Check &check, const Line &line, const char *after) {
    const std::string_view rest = trimmed(after, line.end);
    if (!rest.empty() && !report_usual_rest(check, rest)) {
        check.findings.report(KVT_FINDING_AFTER_TEXT, check.mark(rest),
                              "a text ends at its second quote: the reader skips what stands after "
                              "it, ",
                              Quoted{rest});
    }
}

} // namespace

void report_no_text_value(Check &check, const Row &row, const Line &line,
                          const TextReading &reading) {
    report_no_text(check, KVT_FINDING_NO_VALUE, check.mark(line), line, reading,
                   "no value stands after ", Quoted{key_of(row)});
}

TextLine check_text(Check &check, const Row &row, const Line &line, const TextReading &reading) {
    const size_t longest = reading.longest;
    const char *after_colon = value_of(row, line);
    const char *quote = find_character('"', after_colon, line.end);
    if (quote == nullptr) {
        const std::string_view value = trimmed(after_colon, line.end);
        if (value.empty()) {
            report_no_text_value(check, row, line, reading);
        } else {
            report_no_text(check, KVT_FINDING_NO_QUOTES, check.mark(value), line, reading,
                           Quoted{value}, " stands without quotes");
        }
        return {};
    }
    if (!check_before_text(check, after_colon, quote, reading)) {
        return {};
    }
    const char *begin = quote + 1;
    const char *closing = find_character('"', begin, line.end);
    if (closing == nullptr) {
        report_open_text(check, quote, line, reading);
        return {};
    }
    std::string_view value(begin, static_cast<size_t>(closing - begin));
    if (value.empty()) {
        check.findings.report(
            KVT_FINDING_EMPTY_TEXT, check.mark(quote, closing + 1),
            "the reader does not take an empty text for a value: ", reading.unread);
    }
    KVT_BOUNDARY(value.size() == longest);
    KVT_BOUNDARY(value.size() == longest + 1);
    if (value.size() > longest) {
        check.findings.report(KVT_FINDING_LONG_TEXT, check.mark(begin + longest, closing),
                              Quoted{key_of(row)}, " holds ", uint64_t{longest},
                              " bytes: the reader cuts what stands after them");
    }
    check_braces(check, value, reading);
    check_after_text(check, line, closing + 1);
    return {true, first_of(value, longest)};
}

const char *end_of_plain_text(const char *at, const char *end, size_t longest) {
    if (at == end || *at != '"') {
        return nullptr;
    }
    const char *begin = ++at;
    while (at != end && *at != '"' && *at != '{' && *at != '}' && *at != '\n') {
        ++at;
    }
    const auto length = static_cast<size_t>(at - begin);
    KVT_BOUNDARY(length == longest);
    KVT_BOUNDARY(length == longest + 1);
    return length != 0 && length <= longest && end - at >= 2 && at[0] == '"' && at[1] == '\n'
               ? at + 1
               : nullptr;
}

} // namespace kvt_checking
