// The word that was probably meant.
#include <gtest/gtest.h>

#include <string>

#include "nearest.h"

namespace kvt_test {
namespace {

using kvt_checking::Nearest;

/// A known word of some length, when a word that differs from it in one letter is looked for; else
/// nothing.
std::string found_by_one_letter(size_t length) {
    const std::string known(length, 'a');
    const std::string unknown = 'b' + known.substr(1);
    Nearest nearest(unknown);
    nearest.consider(known);
    return std::string(nearest.word());
}

TEST(NearestWord, HasTwoToNinetyNineCharacters) {
    EXPECT_EQ(found_by_one_letter(1), "");
    EXPECT_EQ(found_by_one_letter(2), "aa");
    EXPECT_EQ(found_by_one_letter(99), std::string(99, 'a'));
    EXPECT_EQ(found_by_one_letter(100), "");
}

} // namespace
} // namespace kvt_test
