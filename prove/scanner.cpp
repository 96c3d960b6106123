// The functions that step through a text, for every short text of telling characters: alone, where
// a page ends after it, and at every place within and after the chunks in which texts are searched.
#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "claim.h"
#include "kvt/kvt_str.h"
#include "page_end.h"
#include "sequences_of.h"
#include "support/literal_scanner.h"
#include "text/chunk.h"
#include "text/scanner.h"
#include "text/text.h"

using namespace kvt_prove;
using namespace kvt_test;
using kvt_str::Text;

namespace {

/// One of each kind that a function tells from the others. A carriage return is no blank.
constexpr std::string_view characters[] = {" ", "\t", "\n", "{", "}", "\"", "\r", "a"};
constexpr SequencesOf short_texts(characters, 6);
constexpr SequencesOf shorter_texts(characters, 5);

void expect_steps(const char *at, const Text &text) {
    expect(next_line(at) == literal_next_line(at), "next_line", at);
    expect(check_start_msg(at) == literal_brace(at, '{'), "check_start_msg", at);
    expect(check_end_msg(at) == literal_brace(at, '}'), "check_end_msg", at);
    expect(find_end_msg(at) == literal_block_end(at), "find_end_msg", at);

    const char *newline = std::strchr(at, '\n');
    const char *after = newline != nullptr ? newline + 1 : text.end();
    const kvt_str::Line line = kvt_str::look_at_line(at);
    expect(line.next == after, "look_at_line ends", at);
    expect(line.opens == (literal_brace(at, '{') == 1), "look_at_line opens", at);
    expect(line.closes == (literal_brace(at, '}') == 1), "look_at_line closes", at);
    expect(kvt_str::after_newline(at) == after, "after_newline", at);
    expect(kvt_str::skip_blanks(at) == at + std::strspn(at, " \t\n"), "skip_blanks", at);

    expect(text.after_line(at) == after, "Text::after_line", at);
    expect(text.skip_blanks(at) == at + std::strspn(at, " \t\n"), "Text::skip_blanks", at);
    expect(text.find_block_end(at) == literal_block_end(at), "Text::find_block_end", at);
    Text searched(text);
    expect(searched.find_quote(at) == at + std::strcspn(at, "\""), "Text::find_quote", at);
}

/// What a plain quoted value is, given the position after its first quote: up to a quote and a
/// newline, one character at least, without newline and braces.
std::string_view literal_plain_quoted(const char *at) {
    const size_t length = std::strcspn(at, "\"{}\n");
    return std::strncmp(at + length, "\"\n", 2) == 0 ? std::string_view(at, length)
                                                     : std::string_view();
}

void expect_plain_quoted(const char *at, const Text &text) {
    const std::string_view value = kvt_str::plain_quoted(at, text.end());
    const std::string_view expected = literal_plain_quoted(at);
    expect(value == expected && (value.empty() || value.data() == at), "plain_quoted", at);
}

const PageEnd &page() {
    static const PageEnd only;
    return only;
}

void short_texts_hold(uint64_t first, uint64_t end) {
    std::string content;
    for (uint64_t i = first; i != end; ++i) {
        content.clear();
        short_texts.append(i, content);
        const char *at = page().place(content);
        const Text text(at);
        expect_steps(at, text);
        expect_plain_quoted(at, text);
    }
}

void every_length_holds(uint64_t first, uint64_t end) {
    std::string content;
    for (uint64_t i = first; i != end; ++i) {
        content.clear();
        short_texts.append(i, content);
        const char *at = page().place(content);
        const auto size = static_cast<uint32_t>(content.size());
        for (uint32_t length = 0; length <= size + 2; ++length) {
            expect(next_msg(at, length) == literal_next_message(at, length), "next_msg", content);
        }
        expect(next_msg(at, UINT32_MAX) == literal_next_message(at, UINT32_MAX),
               "next_msg, the greatest length", content);
    }
}

/// Places before a short text, so that it begins at each character of a chunk and ends in the next
/// one, and what may follow it: nothing, less than a chunk, more than one.
constexpr size_t places = kvt_str::Chunk::width + 1;
constexpr std::string_view followed_by[] = {"", "x}\n", "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx}\n\"\n"};
constexpr std::string_view led_by[] = {"x", " ", "{"};

void texts_in_chunks_hold(uint64_t first, uint64_t end) {
    std::string content;
    for (uint64_t i = first; i != end; ++i) {
        const uint64_t place = i % places;
        const uint64_t following = i / places % std::size(followed_by);
        const uint64_t leading = i / places / std::size(followed_by) % std::size(led_by);
        content.clear();
        for (uint64_t filled = 0; filled != place; ++filled) {
            content += filled == 0 ? led_by[leading] : led_by[leading % 2];
        }
        shorter_texts.append(i / places / std::size(followed_by) / std::size(led_by), content);
        content += followed_by[following];
        const char *at = page().place(content);
        const Text text(at);
        expect_steps(at, text);
        expect_plain_quoted(at, text);
    }
}

constexpr Claim claims[] = {
    {"every text of up to 6 of 8 characters: each function of the scanner", short_texts.count(),
     short_texts_hold},
    {"every text of up to 6 of 8 characters: next_msg with every length", short_texts.count(),
     every_length_holds},
    {"every text of up to 5 of 8 characters at every place of a chunk: each function",
     shorter_texts.count() * places *std::size(followed_by) * std::size(led_by),
     texts_in_chunks_hold},
};

} // namespace

int main(int argc, char **argv) {
    return prove(claims, argc, argv);
}
