// The characters of UTF-8, and which of them a terminal shows.
#include "characters.h"

#include <gtest/gtest.h>

#include <string_view>

namespace kvt_test {
namespace {

using namespace kvt_checking;

/// Expects that a text begins with a character, which takes some bytes.
void expect_character(std::string_view text, uint32_t value, size_t bytes) {
    const Character character = first_character(text);
    EXPECT_TRUE(character.is_valid) << text;
    EXPECT_EQ(character.value, value) << text;
    EXPECT_EQ(character.bytes, bytes) << text;
}

/// Expects that a text begins with a byte that begins no character.
void expect_byte(std::string_view text) {
    const Character character = first_character(text);
    EXPECT_FALSE(character.is_valid) << text;
    EXPECT_EQ(character.value, static_cast<unsigned char>(text.front())) << text;
    EXPECT_EQ(character.bytes, 1U) << text;
}

TEST(Characters, TakeOneToFourBytes) {
    expect_character("ab", 'a', 1);
    expect_character("\xC3\xA9x", 0xE9, 2);
    expect_character("\xE2\x82\xACx", 0x20AC, 3);
    expect_character("\xF0\x9F\x98\x80x", 0x1F600, 4);
}

TEST(Characters, AreTheFirstAndTheLastOfEveryLength) {
    expect_character(std::string_view("\0", 1), 0, 1);
    expect_character("\x7F", 0x7F, 1);
    expect_character("\xC2\x80", 0x80, 2);
    expect_character("\xDF\xBF", 0x7FF, 2);
    expect_character("\xE0\xA0\x80", 0x800, 3);
    expect_character("\xEF\xBF\xBF", 0xFFFF, 3);
    expect_character("\xF0\x90\x80\x80", 0x10000, 4);
    expect_character("\xF4\x8F\xBF\xBF", 0x10FFFF, 4);
}

TEST(Characters, HaveTheirShortestForm) {
    expect_byte("\xC0\x80");
    expect_byte("\xC1\xBF");
    expect_byte("\xE0\x9F\xBF");
    expect_byte("\xF0\x8F\xBF\xBF");
}

TEST(Characters, AreNoSurrogates) {
    expect_character("\xED\x9F\xBF", 0xD7FF, 3);
    expect_byte("\xED\xA0\x80");
    expect_byte("\xED\xBF\xBF");
    expect_character("\xEE\x80\x80", 0xE000, 3);
}

TEST(Characters, DoNotGoBeyondTheLastPlane) {
    expect_byte("\xF4\x90\x80\x80");
    expect_byte("\xF5\x80\x80\x80");
    expect_byte("\xFF");
}

TEST(Characters, HaveAllOfTheirBytes) {
    expect_byte("\x80");
    expect_byte("\xC3");
    expect_byte("\xE2\x82");
    expect_byte("\xF0\x9F\x98");
    expect_byte("\xC3x");
    expect_byte("\xE2\x82x");
    expect_byte("\xF0\x9F\x98\xC0");
}

bool is_shown(std::string_view text) {
    return is_printable(first_character(text));
}

TEST(PrintableCharacters, AreNoControlCharacters) {
    EXPECT_FALSE(is_shown("\n"));
    EXPECT_FALSE(is_shown("\x1F"));
    EXPECT_TRUE(is_shown(" "));
    EXPECT_TRUE(is_shown("~"));
    EXPECT_FALSE(is_shown("\x7F"));
    EXPECT_FALSE(is_shown("\xC2\x80"));
    EXPECT_FALSE(is_shown("\xC2\x9F"));
    EXPECT_TRUE(is_shown("\xC2\xA0"));
    EXPECT_TRUE(is_shown("\xF4\x8F\xBF\xBF"));
}

TEST(PrintableCharacters, AreNoSingleBytes) {
    EXPECT_FALSE(is_shown("\xE9"));
    EXPECT_FALSE(is_shown("\xFF"));
}

} // namespace
} // namespace kvt_test
