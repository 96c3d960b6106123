// What stands after a number on its line, and what was probably meant.
#include <gtest/gtest.h>

#include <string>

#include "check/found.h"

namespace kvt_test {
namespace {

/// What is found on the line of a whole number, and of a float.
std::string found_in(const std::string &value) {
    return found(begin_job("    job_id: " + value + "\n"));
}

std::string found_in_float(const std::string &value) {
    return found(begin_job("    quota_percentage: " + value + "\n"));
}

std::string said_in(const std::string &value) {
    return said_of(begin_job("    job_id: " + value + "\n"));
}

TEST(AfterNumbers, HexadecimalDigitsAreOfEitherCase) {
    EXPECT_EQ(said_in("0x9aF"), "the reader takes the 0 of '0x9aF' alone; in decimal it is 2479\n");
    EXPECT_EQ(said_in("0XfA9"), "the reader takes the 0 of '0XfA9' alone; in decimal it is 4009\n");
}

TEST(AfterNumbers, HexadecimalDigitsAreOneToSixteen) {
    EXPECT_EQ(said_in("0x0"), "the reader takes the 0 of '0x0' alone; in decimal it is 0\n");
    EXPECT_EQ(said_in("0xffffffffffffffff"), "the reader takes the 0 of '0xffffffffffffffff' "
                                             "alone; in decimal it is 18446744073709551615\n");
    EXPECT_EQ(found_in("0x00000000000000001"), "4:14 after-number 'x00000000000000001'\n");
    EXPECT_EQ(found_in("0x"), "4:14 unit 'x'\n");
}

TEST(AfterNumbers, HexadecimalDigitsAreNoOtherCharacters) {
    EXPECT_EQ(found_in("0xfg"), "4:14 unit 'xfg'\n");
    EXPECT_EQ(found_in("0xFG"), "4:14 unit 'xFG'\n");
    EXPECT_EQ(found_in("0x1g"), "4:14 after-number 'x1g'\n");
    EXPECT_EQ(found_in("0x1_0"), "4:14 after-number 'x1_0'\n");
    EXPECT_EQ(found_in("0y10"), "4:14 after-number 'y10'\n");
    EXPECT_EQ(found_in("1x10"), "4:14 after-number 'x10'\n");
    EXPECT_EQ(found_in("0 x10"), "4:15 after-number 'x10'\n");
}

TEST(AfterNumbers, DigitsMayStandInGroups) {
    EXPECT_EQ(found_in("1,234,567"), "4:13 grouped-digits '1,234,567'\n");
    EXPECT_EQ(found_in("1'234"), "4:13 grouped-digits '1'234'\n");
    EXPECT_EQ(found_in("1_234"), "4:13 grouped-digits '1_234'\n");
    EXPECT_EQ(found_in("0,000"), "4:13 grouped-digits '0,000'\n");
    EXPECT_EQ(said_in("1,234"),
              "the reader takes '1' of '1,234' alone; without groups it is 1234\n");
    EXPECT_EQ(found_in("1,23x"), "4:14 after-number ',23x'\n");
    EXPECT_EQ(found_in("1,"), "4:14 after-number ','\n");
}

TEST(AfterNumbers, GroupsHaveThirtyCharactersAtMost) {
    const std::string thirty = "234567890123456789012345678901";
    EXPECT_EQ(found_in("1," + thirty), "4:13 grouped-digits '1," + thirty + "'\n");
    EXPECT_EQ(found_in("1," + thirty + "2"), "4:14 after-number '," + thirty + "2'\n");
}

TEST(AfterNumbers, AFractionIsAPointWithDigitsOrWithout) {
    EXPECT_EQ(found_in("5."), "4:13 fraction '5.'\n");
    EXPECT_EQ(found_in("5.25"), "4:13 fraction '5.25'\n");
    EXPECT_EQ(found_in("5.2.5"), "4:14 after-number '.2.5'\n");
    EXPECT_EQ(found_in("5.x"), "4:14 after-number '.x'\n");
    EXPECT_EQ(said_in("5."), "the reader takes '5' of '5.' alone: a whole number belongs here\n");
}

TEST(AfterNumbers, AnExponentMayHaveASign) {
    EXPECT_EQ(found_in("5e3"), "4:13 exponent '5e3'\n");
    EXPECT_EQ(found_in("5E3"), "4:13 exponent '5E3'\n");
    EXPECT_EQ(found_in("5e+3"), "4:13 exponent '5e+3'\n");
    EXPECT_EQ(found_in("5E-3"), "4:13 exponent '5E-3'\n");
    EXPECT_EQ(said_in("5e3"),
              "the reader takes '5' of '5e3' alone: all digits of the number belong here\n");
}

TEST(AfterNumbers, AnExponentHasDigitsOnly) {
    EXPECT_EQ(found_in("5e3x"), "4:14 after-number 'e3x'\n");
    EXPECT_EQ(found_in("5e_3"), "4:14 after-number 'e_3'\n");
    EXPECT_EQ(found_in("5e"), "4:14 unit 'e'\n");
    EXPECT_EQ(found_in("5f3"), "4:14 after-number 'f3'\n");
}

TEST(AfterNumbers, AUnitIsAWordOrAPercentSign) {
    EXPECT_EQ(found_in("5%"), "4:14 unit '%'\n");
    EXPECT_EQ(found_in("5 hosts"), "4:15 unit 'hosts'\n");
    EXPECT_EQ(found_in("5GB"), "4:14 unit 'GB'\n");
    EXPECT_EQ(found_in("5 aAzZ"), "4:15 unit 'aAzZ'\n");
    EXPECT_EQ(found_in("5 %%"), "4:15 after-number '%%'\n");
}

TEST(AfterNumbers, AWordIsMadeOfLetters) {
    EXPECT_EQ(found_in("5 GB@"), "4:15 after-number 'GB@'\n"); // before A
    EXPECT_EQ(found_in("5 GB["), "4:15 after-number 'GB['\n"); // after Z
    EXPECT_EQ(found_in("5 GB`"), "4:15 after-number 'GB`'\n"); // before a
    EXPECT_EQ(found_in("5 GB|"), "4:15 after-number 'GB|'\n"); // after z
    EXPECT_EQ(found_in("5 x_y"), "4:15 after-number 'x_y'\n");
}

TEST(AfterNumbers, LettersThatAreJoinedToAFloatMayBeDigits) {
    EXPECT_EQ(found_in_float("5 GB"), "4:25 unit 'GB'\n");
    EXPECT_EQ(found_in_float("5GB"), "4:24 after-number 'GB'\n");
    EXPECT_EQ(found_in_float("5%"), "4:24 unit '%'\n");
    EXPECT_EQ(found_in("5GB"), "4:14 unit 'GB'\n");
}

TEST(AfterNumbers, ACommentBeginsInOneOfFourWays) {
    EXPECT_EQ(found_in("5 # five"), "4:15 comment '# five'\n");
    EXPECT_EQ(found_in("5 // five"), "4:15 comment '// five'\n");
    EXPECT_EQ(found_in("5 /* five */"), "4:15 comment '/* five */'\n");
    EXPECT_EQ(found_in("5 ; five"), "4:15 comment '; five'\n");
    EXPECT_EQ(found_in("5#"), "4:14 comment '#'\n");
    EXPECT_EQ(found_in("5 / five"), "4:15 after-number '/ five'\n");
    EXPECT_EQ(found_in("5 -- five"), "4:15 after-number '-- five'\n");
}

TEST(AfterNumbers, NeedlessBracesStandInARowOrWithBlanks) {
    EXPECT_EQ(found_in("5 {"), "4:15 needless-brace '{'\n");
    EXPECT_EQ(found_in("5 {{"), "4:15 needless-brace '{{'\n");
    EXPECT_EQ(found_in("5 { \t{"), "4:15 needless-brace '{ \t{'\n");
    EXPECT_EQ(found_in("5 { x"), "4:15 after-number '{ x'\n");
}

TEST(AfterNumbers, InvisibleCharactersAreTold) {
    EXPECT_EQ(said_in("5 \xC2\xA0"),
              "the reader takes '5' and skips what cannot be seen after it, '\\xc2\\xa0'; "
              "\\xc2\\xa0 is a no-break space\n");
    EXPECT_EQ(found_in("5 \xC2\xA0x"), "4:15 after-number '\xC2\xA0x'\n");
}

} // namespace
} // namespace kvt_test
