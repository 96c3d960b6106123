// The scan conversions for every short text of telling characters, against the C library's, and the
// fast forms against them. The texts end where a page ends.
#include <array>
#include <cfloat>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "claim.h"
#include "page_end.h"
#include "sequences_of.h"
#include "text/number.h"
#include "text/real.h"
#include "text/text.h"

using namespace kvt_prove;
using namespace kvt_str;

namespace {

const PageEnd &page() {
    static const PageEnd only;
    return only;
}

// --- Whole numbers -------------------------------------------------------------------------------

/// Digits, signs, what is skipped before a number, and a letter that ends it.
constexpr std::string_view number_characters[] = {"0",  "1",  "9",  "+", "-", " ",
                                                  "\n", "\v", "\r", "a", "/", ":"};
constexpr SequencesOf number_texts(number_characters, 6);

/// What leads to texts of 8, 16 and 20 digits and more, where the kernels and the limit are.
constexpr std::string_view first_digits[] = {"",
                                             "1234567",
                                             "123456789012345",
                                             "1844674407370955161",
                                             "-1844674407370955161",
                                             "000000000000000000000001"};

template <unsigned width> void expect_plain_number(const char *text) {
    const size_t digits = std::strspn(text, "0123456789");
    const PlainNumber number = read_plain_number<width>(text, std::strchr(text, '\0'));
    uint64_t expected = 0;
    bool fits = digits != 0;
    for (size_t i = 0; i < digits; ++i) {
        fits = fits && !__builtin_mul_overflow(expected, uint64_t{10}, &expected) &&
               !__builtin_add_overflow(expected, digit_value(text[i]), &expected);
    }
    fits = fits && text[digits] == '\n';
    expect(number.next == (fits ? text + digits + 1 : nullptr), "a plain number and a newline",
           text);
    expect(!fits || number.value == expected, "the value of a plain number", text);
}

void numbers_are_scanned(uint64_t first, uint64_t end) {
    std::string content;
    for (uint64_t i = first; i != end; ++i) {
        content = first_digits[i % std::size(first_digits)];
        number_texts.append(i / std::size(first_digits), content);
        const char *text = page().place(content);
        unsigned long long expected = 77; // 64 bits on every machine
        uint64_t value = 77;
        const bool scans = std::sscanf(text, "%llu", &expected) == 1;
        expect(scan_number(text, value) == scans, "scan_number takes what \"%lu\" takes", text);
        expect(value == expected, "scan_number reads what \"%lu\" reads", text);
        expect_plain_number<1>(text);
        expect_plain_number<4>(text);
        expect_plain_number<8>(text);
    }
}

// --- Floats --------------------------------------------------------------------------------------

bool same_bits(float a, float b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

void expect_real(const char *text) {
    float expected = 77;
    float value = 77;
    const bool scans = std::sscanf(text, "%f", &expected) == 1;
    expect(scan_real(text, value) == scans, "scan_real takes what \"%f\" takes", text);
    expect(same_bits(value, expected), "scan_real reads what \"%f\" reads", text);

    // The fast form takes digits, one of them at least, with a point or not, and a newline; nothing
    // where floats are kept longer than they are.
    const size_t length = std::strspn(text, "0123456789.");
    const std::string_view number(text, length);
    const bool plain = FLT_EVAL_METHOD == 0 && text[length] == '\n' &&
                       number.find_first_of("0123456789") != number.npos &&
                       number.find('.') == number.rfind('.');
    const PlainReal read = read_plain_real(text);
    expect(read.next == (plain ? text + length + 1 : nullptr), "read_plain_real and a newline",
           text);
    expect(!plain || same_bits(read.value, expected), "read_plain_real reads what \"%f\" reads",
           text);
}

constexpr std::string_view real_characters[] = {"0", "1", "9", ".", "+", "-", "e",
                                                "E", "x", "p", "a", "F", " ", "\n"};
constexpr SequencesOf real_texts(real_characters, 6);

/// Parts of words: of infinity and of what is no number, in either case.
constexpr std::string_view word_parts[] = {"i",  "n", "N",   "f", "in", "INF", "a", "nan",
                                           "it", "y", "ity", "(", ")",  "-",   " ", "1"};
constexpr SequencesOf word_texts(word_parts, 5);

template <const SequencesOf &texts> void reals_are_scanned(uint64_t first, uint64_t end) {
    std::string content;
    for (uint64_t i = first; i != end; ++i) {
        content.clear();
        texts.append(i, content);
        expect_real(page().place(content));
    }
}

// --- Quoted texts --------------------------------------------------------------------------------

constexpr std::string_view quoted_characters[] = {":", "\"", " ", "\n", "}", "a", "b"};
constexpr SequencesOf quoted_texts(quoted_characters, 7);

/// Room for so many characters.
template <size_t limit> void expect_quoted(const char *text) {
    std::array<char, limit + 1> expected{};
    const std::string format = R"(:%*[^"]"%)" + std::to_string(limit) + R"([^"]")";
    std::sscanf(text, format.c_str(), expected.data());
    Text whole(text);
    expect(whole.scan_quoted(text, limit) == expected.data(),
           "scan_quoted reads what the C library reads", text);
}

void quoted_texts_are_scanned(uint64_t first, uint64_t end) {
    std::string content;
    for (uint64_t i = first; i != end; ++i) {
        content.clear();
        quoted_texts.append(i, content);
        const char *text = page().place(content);
        expect_quoted<1>(text);
        expect_quoted<2>(text);
        expect_quoted<199>(text);
    }
}

constexpr Claim claims[] = {
    {"whole numbers: every text of up to 6 of 12 characters after 6 others, against \"%lu\"",
     number_texts.count() * std::size(first_digits), numbers_are_scanned},
    {"floats: every text of up to 6 of 14 characters, against \"%f\"", real_texts.count(),
     reals_are_scanned<real_texts>},
    {"floats: every text of up to 5 of 16 parts of words, against \"%f\"", word_texts.count(),
     reals_are_scanned<word_texts>},
    {"quoted texts: every text of up to 7 of 7 characters, 3 limits, against the C library",
     quoted_texts.count(), quoted_texts_are_scanned},
};

} // namespace

int main(int argc, char **argv) {
    return prove(claims, argc, argv);
}
