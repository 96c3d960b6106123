// Characters that cannot be seen.
#include "invisible.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace kvt_test {
namespace {

using namespace kvt_checking;

/// The name of the character that a text begins with, and its bytes: "a soft hyphen, 2". "seen"
/// where it can be seen, or may stand anywhere.
std::string invisible(std::string_view text) {
    const Invisible found = invisible_at(text.data(), text.data() + text.size());
    return found.bytes != 0 ? std::string(found.name) + ", " + std::to_string(found.bytes) : "seen";
}

TEST(InvisibleCharacters, OfOneByteAreControlCharactersButForBlanksAndNewlines) {
    EXPECT_EQ(invisible("\r\n"), "a carriage return, 1");
    EXPECT_EQ(invisible("\x01"), "a control character, 1");
    EXPECT_EQ(invisible("\b"), "a control character, 1");
    EXPECT_EQ(invisible("\v"), "a control character, 1");
    EXPECT_EQ(invisible("\x1F"), "a control character, 1");
    EXPECT_EQ(invisible("\x7F"), "a control character, 1");
    EXPECT_EQ(invisible("\t"), "seen");
    EXPECT_EQ(invisible("\n"), "seen");
    EXPECT_EQ(invisible(" "), "seen");
    EXPECT_EQ(invisible("~"), "seen");
}

TEST(InvisibleCharacters, OfSeveralBytesHaveANameOfTheirOwn) {
    EXPECT_EQ(invisible("\xC2\x80"), "a control character, 2");
    EXPECT_EQ(invisible("\xC2\xA0 x"), "a no-break space, 2");
    EXPECT_EQ(invisible("\xC2\xAD"), "a soft hyphen, 2");
    EXPECT_EQ(invisible("\xE2\x80\x89"), "a space of another width, 3");
    EXPECT_EQ(invisible("\xE2\x80\x8B"), "a character without width, 3");
    EXPECT_EQ(invisible("\xE2\x80\x8F"), "a mark of direction, 3");
    EXPECT_EQ(invisible("\xE2\x80\xA8"), "a separator of lines, 3");
    EXPECT_EQ(invisible("\xE2\x80\xAF"), "a no-break space, 3");
    EXPECT_EQ(invisible("\xE3\x80\x80"), "a space of another width, 3");
    EXPECT_EQ(invisible("\xEF\xBB\xBF"), "a byte order mark, 3");
    EXPECT_EQ(invisible("\xC2\xA7"), "seen");
    EXPECT_EQ(invisible("\xE2\x80\x90"), "seen");
    EXPECT_EQ(invisible("\xE2\x80"), "seen"); // cut off
}

} // namespace
} // namespace kvt_test
