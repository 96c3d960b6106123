// The functions that step through a text, from many positions and with many lengths, against what
// kvt_str.h says of them, in the C library's words; and their fast forms against the plain ones.
#include <cstring>
#include <string_view>

#include "kvt/kvt_str.h"
#include "property.h"
#include "text/scanner.h"
#include "text/text.h"

using namespace kvt_fuzz;

namespace {

const char *expected_next_line(const char *text) {
    const char *newline = std::strchr(text, '\n');
    return newline != nullptr ? newline + std::strspn(newline, " \t\n") : std::strchr(text, '\0');
}

int expected_brace(const char *text, char brace) {
    const char *newline = std::strchr(text, '\n');
    return newline != nullptr &&
           std::memchr(text, brace, static_cast<size_t>(newline - text)) != nullptr;
}

const char *expected_block_end(const char *text) {
    // Line by line: the block is over after the first line at whose end nothing is open. A closing
    // brace too many opens nothing.
    long open = 0;
    for (const char *line = text;;) {
        const char *newline = std::strchr(line, '\n');
        if (newline == nullptr) {
            return std::strchr(line, '\0');
        }
        for (; line != newline; ++line) {
            open += *line == '{' ? 1 : *line == '}' ? -1 : 0;
        }
        if (open == 0) {
            return newline + std::strspn(newline, " \t\n");
        }
        line = newline + 1;
    }
}

const char *expected_next_message(const char *text, uint32_t length) {
    const size_t newline = std::string_view(text).substr(0, length).find('\n');
    if (newline == std::string_view::npos) {
        return nullptr;
    }
    for (size_t at = newline + 1; at <= length; ++at) {
        const bool is_blank = at < length && (text[at] == ' ' || text[at] == '\t');
        if (!is_blank && text[at] != '\n') {
            return text + at;
        }
    }
    return nullptr;
}

void check_steps(const char *at, const kvt_str::Text &text) {
    expect(next_line(at) == expected_next_line(at), "next_line");
    expect(check_start_msg(at) == expected_brace(at, '{'), "check_start_msg");
    expect(check_end_msg(at) == expected_brace(at, '}'), "check_end_msg");
    expect(find_end_msg(at) == expected_block_end(at), "find_end_msg");

    expect(text.after_line(at) == kvt_str::after_newline(at), "Text::after_line");
    expect(text.skip_blanks(at) == at + std::strspn(at, " \t\n"), "Text::skip_blanks");
    expect(text.find_block_end(at) == kvt_str::find_block_end(at), "Text::find_block_end");
    kvt_str::Text copy(text);
    expect(copy.find_quote(at) == at + std::strcspn(at, "\""), "Text::find_quote");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static constexpr uint64_t most_positions = 24;
    const InputText input(data, size);
    const kvt_str::Text text(input.get());
    const uint64_t length = input.length();
    for (uint64_t i = 0; i <= length && i < most_positions; ++i) {
        // Of a short text every position, of a longer one the first and some others.
        const uint64_t place =
            length < most_positions || i == 0 ? i : choice(input, i) % (length + 1);
        const char *at = input.get() + place;
        check_steps(at, text);

        const uint64_t rest = length - place;
        const uint64_t chosen = choice(input, i + 100);
        for (const uint64_t distance : {uint64_t{0}, rest, rest + 1, chosen % (rest + 1),
                                        chosen & 31, uint64_t{UINT32_MAX}}) {
            const auto steps = static_cast<uint32_t>(distance);
            expect(next_msg(at, steps) == expected_next_message(at, steps), "next_msg");
        }
    }
    return 0;
}
