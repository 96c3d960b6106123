// Texts that are safe on a terminal.
#include "model/printable.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "graph/text.h"
#include "kvt_check/characters.h"
#include "model/value_text.h"

namespace {

using namespace kvt_tool;
using namespace std::string_literals;

TEST(Printable, ControlCharactersBecomeDots) {
    EXPECT_EQ(printable("a\x1b[31mb\x7f"), "a.[31mb.");
    EXPECT_EQ(printable("a\0b\nc\td\re"s), "a.b.c.d.e");
}

TEST(Printable, ControlCharactersBeyondAsciiBecomeOneDotEach) {
    EXPECT_EQ(printable("a\xc2\x9b"
                        "31mb\xc2\x80\xc2\x9f"),
              "a.31mb..");
    EXPECT_EQ(printable("\xc2\xa0"), "\xc2\xa0") << "the first that is none";
}

TEST(Printable, BytesThatAreNoCharactersBecomeDots) {
    EXPECT_EQ(printable("\x9b"
                        "31m"),
              ".31m")
        << "begins a command for a terminal of 8 bits";
    EXPECT_EQ(printable("\xc3("), ".(");
    EXPECT_EQ(printable("\xed\xa0\x80\xf4\x90\x80\x80\xc0\xaf"), ".........");
    EXPECT_EQ(printable("\xe2\x82"), "..") << "cut at the end";
}

TEST(Printable, OtherCharactersStay) {
    EXPECT_EQ(printable("Böhme €𝄞~ "), "Böhme €𝄞~ ");
    EXPECT_EQ(printable("a\nb\tc", "\n"), "a\nb.c");
}

TEST(Printable, JsonKeepsItsValueAndLosesItsControlCharacters) {
    const std::string text = "a\x1b\x7f\xc2\x9b\xc2\x85\xc2\xa0€";
    const std::string json = printable_json(nlohmann::json(text).dump());
    EXPECT_EQ(json, "\"a\\u001b\\u007f\\u009b\\u0085\xc2\xa0€\"");
    EXPECT_EQ(nlohmann::json::parse(json), text);
    EXPECT_EQ(printable_json("[\n  \"\x7f\"\n]"), "[\n  \"\\u007f\"\n]") << "lines stay";
}

/// Every command and the checker ask the same question.
TEST(Printable, QuotedTextsAndNamesInDrawingsMaskTheSameCharacters) {
    for (uint32_t value = 1; value < 0x100; ++value) {
        const std::string text = value < 0x80
                                     ? std::string(1, static_cast<char>(value))
                                     : std::string{static_cast<char>(0xC0 | value >> 6),
                                                   static_cast<char>(0x80 | (value & 0x3F))};
        const bool shown = printable(text) == text;
        EXPECT_EQ(visible(text) == text, shown) << value;
        if (value != '"' && value != '\\') {
            EXPECT_EQ(quoted_text(text) == "\"" + text + "\"", shown) << value;
        }
        EXPECT_EQ(shown, (value >= 0x20 && value < 0x7F) || value >= 0xA0) << value;
    }
}

} // namespace
