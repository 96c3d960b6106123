// The characters and lines that the check steps over.
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <string_view>

#include "cursor.h"

namespace kvt_test {
namespace {

using namespace kvt_checking;

TEST(Cursor, AWordIsMadeOfLettersDigitsUnderscoresHyphensAndDots) {
    constexpr std::string_view word = "abcdefghijklmnopqrstuvwxyz"
                                      "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                      "0123456789"
                                      "_-.";
    for (int code = CHAR_MIN; code <= CHAR_MAX; ++code) {
        const auto c = static_cast<char>(code);
        EXPECT_EQ(is_word_character(c), word.find(c) != word.npos) << "character " << code;
    }
}

} // namespace
} // namespace kvt_test
