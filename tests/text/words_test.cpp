// Copying and comparing in whole words: exactly the characters that are asked for, whatever the
// length.
#include <cstring>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "support/exact_copy.h"
#include "text/words.h"

namespace {

using kvt_str::copy_words;
using kvt_str::equal_words;
using kvt_test::exact_copy_without_nul;

constexpr unsigned greatest_length = 60;

/// Characters that all differ from their neighbours: 'A', 'B', ... to '|'.
std::string different_characters(unsigned length) {
    std::string text(length, '\0');
    for (unsigned i = 0; i < length; ++i) {
        text[i] = static_cast<char>('A' + i);
    }
    return text;
}

TEST(CopyWords, CopiesExactlyTheLength) {
    constexpr unsigned guard = 24;
    for (unsigned length = 0; length <= greatest_length; ++length) {
        const std::string from = different_characters(length);
        std::string out(guard + length + guard, '#');
        const char *after =
            copy_words(out.data() + guard, exact_copy_without_nul(from).get(), length);
        EXPECT_EQ(out, std::string(guard, '#') + from + std::string(guard, '#'))
            << "length " << length;
        EXPECT_EQ(after - out.data(), guard + length);
    }
}

TEST(CopyWords, StaysWithinBlocksOfExactlyTheLength) {
    for (unsigned length = 0; length <= greatest_length; ++length) {
        const std::string from = different_characters(length);
        const auto out = std::make_unique<char[]>(length);
        copy_words(out.get(), exact_copy_without_nul(from).get(), length);
        EXPECT_EQ(std::string(out.get(), length), from);
    }
}

TEST(EqualWords, FindsEqualCharactersEqual) {
    for (unsigned length = 4; length <= greatest_length; ++length) {
        const std::string characters = different_characters(length);
        EXPECT_TRUE(equal_words(exact_copy_without_nul(characters).get(),
                                exact_copy_without_nul(characters).get(), length))
            << "length " << length;
    }
}

TEST(EqualWords, FindsADifferenceAtEveryPosition) {
    for (unsigned length = 4; length <= greatest_length; ++length) {
        const auto a = exact_copy_without_nul(different_characters(length));
        const auto b = exact_copy_without_nul(different_characters(length));
        for (unsigned i = 0; i < length; ++i) {
            for (const int difference : {0x01, 0x80}) {
                b[i] = static_cast<char>(a[i] ^ difference);
                ASSERT_NE(std::memcmp(a.get(), b.get(), length), 0);
                EXPECT_FALSE(equal_words(a.get(), b.get(), length) ||
                             equal_words(b.get(), a.get(), length))
                    << "length " << length << " position " << i;
            }
            b[i] = a[i];
        }
    }
}

TEST(EqualWords, DoesNotLookBeforeOrAfterTheLength) {
    for (unsigned length = 4; length <= greatest_length; ++length) {
        const std::string same = different_characters(length);
        const std::string a = "01234567" + same + "89abcdef";
        const std::string b = "!!!!!!!!" + same + "????????";
        EXPECT_TRUE(equal_words(a.data() + 8, b.data() + 8, length)) << "length " << length;
    }
}

} // namespace
