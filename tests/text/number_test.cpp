// Numbers to and from text, compared with the C library. Texts that are read lie in heap blocks of
// exactly their size, so that a sanitizer sees one byte too far.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <limits>
#include <memory>
#include <optional>
#include <ostream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "support/exact_copy.h"
#include "support/scan_as_long.h"
#include "text/number.h"

namespace {

using kvt_test::exact_copy;
using Random = std::mt19937_64;

/// What a variable holds before a scan, and after one that fails.
constexpr uint64_t untouched = 0xA5B6C7D8E9FAABBC;

/// The numbers that many tests go through: all powers of two and of ten with their neighbours.
std::vector<uint64_t> telling_numbers() {
    std::vector<uint64_t> numbers = {0, UINT64_MAX};
    const auto add = [&](uint64_t number) {
        numbers.insert(numbers.end(), {number - 1, number, number + 1});
    };
    for (unsigned bit = 0; bit < 64; ++bit) {
        add(uint64_t{1} << bit);
    }
    for (const uint64_t power : kvt_str::powers_of_ten) {
        add(power);
    }
    return numbers;
}

/// A number of a random length, short ones as often as long ones.
uint64_t random_number(Random &random) {
    return random() >> (random() % 64);
}

// --- scan_number ---------------------------------------------------------------------------------

/// True when the C library scans the text with `format` into a variable of that type as scan_number
/// did: `found` is what it returned, `value` what the variable held then.
template <typename Number>
bool agrees(const char *text, const char *format, bool found, uint64_t value) {
    auto number = static_cast<Number>(untouched);
    return (kvt_test::scan_as_long(text, format, &number) == 1) == found &&
           number == static_cast<Number>(value);
}

/// The number that is scanned from the text, if any. Fails where the C library's is another one,
/// and where a scan that fails does not leave the variable.
std::optional<uint64_t> scanned(std::string_view text) {
    const auto copy = exact_copy(text);
    uint64_t value = untouched;
    const bool found = kvt_str::scan_number(copy.get(), value);
    EXPECT_TRUE(found || value == untouched) << testing::PrintToString(text);
    EXPECT_TRUE(agrees<unsigned char>(copy.get(), "%hhu", found, value))
        << testing::PrintToString(text);
    EXPECT_TRUE(agrees<unsigned short>(copy.get(), "%hu", found, value))
        << testing::PrintToString(text);
    EXPECT_TRUE(agrees<unsigned int>(copy.get(), "%u", found, value))
        << testing::PrintToString(text);
    EXPECT_TRUE(agrees<unsigned long>(copy.get(), "%lu", found, value))
        << testing::PrintToString(text);
    return found ? std::optional(value) : std::nullopt;
}

TEST(ScanNumber, TakesDigits) {
    EXPECT_EQ(scanned("0"), 0U);
    EXPECT_EQ(scanned("7"), 7U);
    EXPECT_EQ(scanned("1234567890"), 1234567890U);
    EXPECT_EQ(scanned("18446744073709551614"), UINT64_MAX - 1);
}

TEST(ScanNumber, ValuesBeyondAFieldsWidthAreToBeCut) {
    // That the C library cuts them so is checked for every text here.
    EXPECT_EQ(static_cast<uint8_t>(*scanned("300")), 44);
    EXPECT_EQ(static_cast<uint8_t>(*scanned("256")), 0);
    EXPECT_EQ(static_cast<uint16_t>(*scanned("65537")), 1);
    EXPECT_EQ(static_cast<uint32_t>(*scanned("4294967298")), 2U);
    EXPECT_EQ(static_cast<uint8_t>(*scanned("-1")), 255);
    EXPECT_EQ(static_cast<uint16_t>(*scanned("99999999999999999999")), 65535);
}

TEST(ScanNumber, SkipsBlanksOfAllSixKinds) {
    EXPECT_EQ(scanned(" 5"), 5U);
    EXPECT_EQ(scanned("\t5"), 5U);
    EXPECT_EQ(scanned("\n5"), 5U);
    EXPECT_EQ(scanned("\v5"), 5U);
    EXPECT_EQ(scanned("\f5"), 5U);
    EXPECT_EQ(scanned("\r5"), 5U);
    EXPECT_EQ(scanned(" \t\n\v\f\r 5"), 5U);
}

TEST(ScanNumber, TakesANumberOfALaterLine) {
    EXPECT_EQ(scanned("\n\n    5\n"), 5U);
}

TEST(ScanNumber, SkipsNoOtherCharacter) {
    for (int c = 1; c < 256; ++c) {
        const bool skipped =
            c == ' ' || (c >= '\t' && c <= '\r') || c == '+' || c == '-' || (c >= '0' && c <= '9');
        EXPECT_EQ(scanned(std::string(1, static_cast<char>(c)) + "5").has_value(), skipped)
            << "character " << c;
    }
}

TEST(ScanNumber, TakesASign) {
    EXPECT_EQ(scanned("+5"), 5U);
    EXPECT_EQ(scanned(" +0"), 0U);
    EXPECT_EQ(scanned("-0"), 0U);
}

TEST(ScanNumber, WrapsANegativeNumber) {
    EXPECT_EQ(scanned("-1"), UINT64_MAX);
    EXPECT_EQ(scanned(" -5"), UINT64_MAX - 4);
    EXPECT_EQ(scanned("-18446744073709551615"), 1U);
    EXPECT_EQ(scanned("-18446744073709551614"), 2U);
}

TEST(ScanNumber, WantsTheDigitsAfterTheSignAtOnce) {
    EXPECT_EQ(scanned("- 5"), std::nullopt);
    EXPECT_EQ(scanned("+ 5"), std::nullopt);
    EXPECT_EQ(scanned("-\n5"), std::nullopt);
}

TEST(ScanNumber, TakesOneSignOnly) {
    EXPECT_EQ(scanned("--5"), std::nullopt);
    EXPECT_EQ(scanned("++5"), std::nullopt);
    EXPECT_EQ(scanned("-+5"), std::nullopt);
    EXPECT_EQ(scanned("+-5"), std::nullopt);
}

TEST(ScanNumber, WantsADigit) {
    EXPECT_EQ(scanned(""), std::nullopt);
    EXPECT_EQ(scanned(" \n"), std::nullopt);
    EXPECT_EQ(scanned("-"), std::nullopt);
    EXPECT_EQ(scanned("+"), std::nullopt);
    EXPECT_EQ(scanned("-\n"), std::nullopt);
    EXPECT_EQ(scanned("a5"), std::nullopt);
    EXPECT_EQ(scanned(".5"), std::nullopt);
    EXPECT_EQ(scanned("x10"), std::nullopt);
}

TEST(ScanNumber, IsGreatestBeyond64Bits) {
    EXPECT_EQ(scanned("18446744073709551615"), UINT64_MAX);
    EXPECT_EQ(scanned("18446744073709551616"), UINT64_MAX);
    EXPECT_EQ(scanned("18446744073709551617"), UINT64_MAX);
    EXPECT_EQ(scanned("99999999999999999999"), UINT64_MAX);
    EXPECT_EQ(scanned("184467440737095516150"), UINT64_MAX);
    EXPECT_EQ(scanned("184467440737095516160"), UINT64_MAX); // ten times 2^64
    EXPECT_EQ(scanned("100000000000000000000000000000"), UINT64_MAX);
    EXPECT_EQ(scanned(std::string(1000, '9')), UINT64_MAX);
}

TEST(ScanNumber, IsGreatestBeyond64BitsWithASignToo) {
    EXPECT_EQ(scanned("-18446744073709551616"), UINT64_MAX);
    EXPECT_EQ(scanned("-18446744073709551617"), UINT64_MAX);
    EXPECT_EQ(scanned("-100000000000000000000000000000"), UINT64_MAX);
    EXPECT_EQ(scanned("+18446744073709551616"), UINT64_MAX);
}

TEST(ScanNumber, TakesLeadingZeros) {
    EXPECT_EQ(scanned("007"), 7U);
    EXPECT_EQ(scanned("010"), 10U);
    EXPECT_EQ(scanned("0000000000000000000000000000018446744073709551615"), UINT64_MAX);
    EXPECT_EQ(scanned(std::string(100, '0')), 0U);
}

TEST(ScanNumber, EndsAtTheFirstCharacterThatIsNoDigit) {
    EXPECT_EQ(scanned("5a"), 5U);
    EXPECT_EQ(scanned("5 6"), 5U);
    EXPECT_EQ(scanned("5-6"), 5U);
    EXPECT_EQ(scanned("1.5"), 1U);
    EXPECT_EQ(scanned("1e5"), 1U);
    EXPECT_EQ(scanned("1,000"), 1U);
    EXPECT_EQ(scanned("5\n6"), 5U);
    EXPECT_EQ(scanned("5\xff"), 5U);
}

TEST(ScanNumber, TakesNoHexadecimalForm) {
    EXPECT_EQ(scanned("0x10"), 0U);
    EXPECT_EQ(scanned("0X1f"), 0U);
    EXPECT_EQ(scanned("-0x10"), 0U);
    EXPECT_EQ(scanned("ff"), std::nullopt);
}

TEST(ScanNumber, TakesNoOtherDigitsThanAscii) {
    EXPECT_EQ(scanned("\xd9\xa5"), std::nullopt);     // U+0665
    EXPECT_EQ(scanned("\xef\xbc\x95"), std::nullopt); // U+FF15
    EXPECT_EQ(scanned("\xb5"), std::nullopt);         // '5' with the high bit
    EXPECT_EQ(scanned("\xc2\xa0\x35"), std::nullopt); // a no-break space and "5"
    EXPECT_EQ(scanned("1\xb5"), 1U);
}

TEST(ScanNumber, EveryBitBoundaryAndPowerOfTenIsScannedAsByTheCLibrary) {
    for (const uint64_t number : telling_numbers()) {
        EXPECT_EQ(scanned(std::to_string(number)), number);
        EXPECT_EQ(scanned("-" + std::to_string(number)), 0 - number);
        scanned(std::to_string(number) + "0");
        scanned("-" + std::to_string(number) + "9");
    }
}

TEST(ScanNumber, RandomNumbersAreScannedAsByTheCLibrary) {
    Random random(1);
    for (unsigned i = 0; i < 10000 && !HasFailure(); ++i) {
        const uint64_t number = random_number(random);
        EXPECT_EQ(scanned(" " + std::to_string(number) + "\n"), number);
        EXPECT_EQ(scanned(" -" + std::to_string(number) + "\n"), 0 - number);
    }
}

TEST(ScanNumber, RandomTextsAreScannedAsByTheCLibrary) {
    constexpr std::string_view characters = "0123456789012345678900 \t\n\v\f\r+-+-xea,.\xb5\x01";
    Random random(2);
    for (unsigned i = 0; i < 30000 && !HasFailure(); ++i) {
        std::string text(random() % 9, '\0');
        for (char &c : text) {
            c = characters[random() % characters.size()];
        }
        scanned(text);
    }
}

TEST(ScanNumber, RandomDigitsAroundTheGreatestNumberAreScannedAsByTheCLibrary) {
    Random random(3);
    for (unsigned i = 0; i < 10000 && !HasFailure(); ++i) {
        std::string text = "18446744073709551615";
        for (size_t left = random() % 3; left-- > 0;) {
            text[random() % text.size()] = static_cast<char>('0' + random() % 10);
        }
        scanned(text);
        scanned("-" + text);
    }
}

// --- count_leading_digits and value_of_digits ---------------------------------------------------

TEST(CountLeadingDigits, StopsAtEveryCharacterThatIsNoDigit) {
    for (unsigned position = 0; position < 8; ++position) {
        for (int c = 0; c < 256; ++c) {
            for (const char other : {'0', '5', '9'}) {
                std::string characters(8, other);
                characters[position] = static_cast<char>(c);
                const unsigned digits = c >= '0' && c <= '9' ? 8 : position;
                ASSERT_EQ(kvt_str::count_leading_digits(kvt_str::load_eight(characters.data())),
                          digits)
                    << testing::PrintToString(characters);
            }
        }
    }
}

TEST(CountLeadingDigits, DoesNotMindWhatFollows) {
    for (int c = 0; c < 256; ++c) {
        const std::string characters = "12\n" + std::string(5, static_cast<char>(c));
        ASSERT_EQ(kvt_str::count_leading_digits(kvt_str::load_eight(characters.data())), 2U)
            << testing::PrintToString(characters);
    }
}

TEST(ValueOfDigits, GivesEachDigitItsPlace) {
    const auto value_of = [](std::string_view digits) {
        const std::string characters = std::string(digits) + "\n9?\xFF 12345";
        return kvt_str::value_of_digits(kvt_str::load_eight(characters.data()),
                                        static_cast<unsigned>(digits.size()));
    };
    EXPECT_EQ(value_of("12345678"), 12345678U);
    EXPECT_EQ(value_of("00000000"), 0U);
    EXPECT_EQ(value_of("99999999"), 99999999U);
    EXPECT_EQ(value_of("1234567"), 1234567U);
    for (unsigned length = 1; length <= 8; ++length) {
        for (unsigned position = 0; position < length; ++position) {
            for (char digit = '1'; digit <= '9'; ++digit) {
                std::string digits(length, '0');
                digits[position] = digit;
                EXPECT_EQ(value_of(digits), std::stoull(digits));
            }
        }
    }
}

// --- read_sixteen_digits -------------------------------------------------------------------------

TEST(ReadSixteenDigits, GivesEachDigitItsPlace) {
    const auto value_of = [](const std::string &digits) {
        uint64_t value = untouched;
        EXPECT_TRUE(kvt_str::read_sixteen_digits(digits.data(), value)) << digits;
        return value;
    };
    EXPECT_EQ(value_of("1234567890123456"), 1234567890123456U);
    EXPECT_EQ(value_of("0000000000000000"), 0U);
    EXPECT_EQ(value_of("9999999999999999"), 9999999999999999U);
    for (unsigned position = 0; position < 16; ++position) {
        for (char digit = '1'; digit <= '9'; ++digit) {
            std::string digits(16, '0');
            digits[position] = digit;
            EXPECT_EQ(value_of(digits), std::stoull(digits));
        }
    }
}

TEST(ReadSixteenDigits, RefusesEveryOtherCharacterAtEveryPlace) {
    for (unsigned position = 0; position < 16; ++position) {
        for (int c = 0; c < 256; ++c) {
            for (const char other : {'0', '5', '9'}) {
                std::string characters(16, other);
                characters[position] = static_cast<char>(c);
                uint64_t value = untouched;
                const bool is_digit = c >= '0' && c <= '9';
                ASSERT_EQ(kvt_str::read_sixteen_digits(characters.data(), value), is_digit)
                    << testing::PrintToString(characters);
                ASSERT_EQ(value != untouched, is_digit);
            }
        }
    }
}

// --- read_plain_number ---------------------------------------------------------------------------

struct PlainNumber {
    uint64_t value;
    std::string rest; ///< the text from the position that was returned on

    bool operator==(const PlainNumber &) const = default;
};

void PrintTo(const PlainNumber &number, std::ostream *out) {
    *out << number.value << " before " << testing::PrintToString(number.rest);
}

/// The plain number that the text begins with, if any. Fails where the readers of numbers of the
/// different widths differ, and where scan_number reads another one.
std::optional<PlainNumber> read_plain(std::string_view text) {
    const auto copy = exact_copy(text);
    const char *end = copy.get() + text.size();
    const kvt_str::PlainNumber number = kvt_str::read_plain_number<4>(copy.get(), end);
    for (const auto &other : {kvt_str::read_plain_number<1>(copy.get(), end),
                              kvt_str::read_plain_number<8>(copy.get(), end)}) {
        EXPECT_EQ(other.next, number.next) << testing::PrintToString(text);
        if (number.next != nullptr) {
            EXPECT_EQ(other.value, number.value) << testing::PrintToString(text);
        }
    }
    if (number.next == nullptr) {
        return std::nullopt;
    }
    uint64_t scanned_value = untouched;
    EXPECT_TRUE(kvt_str::scan_number(copy.get(), scanned_value)) << testing::PrintToString(text);
    EXPECT_EQ(number.value, scanned_value) << testing::PrintToString(text);
    return PlainNumber{number.value, number.next};
}

/// The same from the description: digits, as few or many as may be, that fit 64 bits, and a
/// newline.
std::optional<PlainNumber> read_plain_literally(std::string_view text) {
    const size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
    if (digits == 0 || digits == text.size() || text[digits] != '\n') {
        return std::nullopt;
    }
    std::string_view number = text.substr(0, digits);
    number.remove_prefix(std::min(number.find_first_not_of('0'), number.size() - 1));
    constexpr std::string_view greatest = "18446744073709551615";
    if (number.size() > greatest.size() ||
        (number.size() == greatest.size() && number > greatest)) {
        return std::nullopt;
    }
    return PlainNumber{std::stoull(std::string(number)), std::string(text.substr(digits + 1))};
}

TEST(ReadPlainNumber, TakesOneDigitAndANewline) {
    for (unsigned digit = 0; digit < 10; ++digit) {
        EXPECT_EQ(read_plain(std::to_string(digit) + "\n"), (PlainNumber{digit, ""}));
        EXPECT_EQ(read_plain(std::to_string(digit) + "\n  state: 1\n"),
                  (PlainNumber{digit, "  state: 1\n"}));
    }
}

TEST(ReadPlainNumber, TakesTwoToTwentyDigits) {
    const std::string digits = "12345678901234567890";
    for (size_t count = 2; count <= digits.size(); ++count) {
        const std::string number = digits.substr(0, count);
        EXPECT_EQ(read_plain(number + "\n"), (PlainNumber{std::stoull(number), ""}));
        EXPECT_EQ(read_plain(number + "\n  state: 1\n"),
                  (PlainNumber{std::stoull(number), "  state: 1\n"}));
    }
}

TEST(ReadPlainNumber, TakesAnyNumberWhateverLengthOfTextFollows) {
    const std::string digits = "98765432101234567890";
    for (size_t count = 1; count < digits.size(); ++count) {
        const std::string number = digits.substr(0, count);
        for (size_t more = 0; more < 20; ++more) {
            const std::string rest(more, '7');
            std::string text = number;
            text.append("\n").append(rest);
            EXPECT_EQ(read_plain(text), (PlainNumber{std::stoull(number), rest}));
        }
    }
}

TEST(ReadPlainNumber, TakesWhatFits64BitsOnly) {
    EXPECT_EQ(read_plain("18446744073709551615\n"), (PlainNumber{UINT64_MAX, ""}));
    EXPECT_EQ(read_plain("18446744073709551616\n"), std::nullopt);
    EXPECT_EQ(read_plain("18446744073709551617\n"), std::nullopt);
    EXPECT_EQ(read_plain("18446744073709551620\n"), std::nullopt);
    EXPECT_EQ(read_plain("18446744080000000000\n"), std::nullopt);
    EXPECT_EQ(read_plain("20000000000000000000\n"), std::nullopt);
    EXPECT_EQ(read_plain("99999999999999999999\n"), std::nullopt);
    EXPECT_EQ(read_plain("100000000000000000000\n"), std::nullopt);
    EXPECT_EQ(read_plain("184467440737095516160\n"), std::nullopt); // ten times 2^64
    EXPECT_EQ(read_plain(std::string(30, '9') + "\n"), std::nullopt);
}

TEST(ReadPlainNumber, TakesWhatFits64BitsOnlyWhateverLengthOfTextFollows) {
    for (size_t more = 0; more < 20; ++more) {
        const std::string rest(more, ' ');
        EXPECT_EQ(read_plain("18446744073709551615\n" + rest), (PlainNumber{UINT64_MAX, rest}));
        EXPECT_EQ(read_plain("18446744073709551616\n" + rest), std::nullopt);
        EXPECT_EQ(read_plain("184467440737095516160\n" + rest), std::nullopt);
    }
}

TEST(ReadPlainNumber, TakesLeadingZeros) {
    EXPECT_EQ(read_plain("00\n"), (PlainNumber{0, ""}));
    EXPECT_EQ(read_plain("0010\n"), (PlainNumber{10, ""}));
    EXPECT_EQ(read_plain("000000000001\n"), (PlainNumber{1, ""}));
    EXPECT_EQ(read_plain("0000018446744073709551615\n"), (PlainNumber{UINT64_MAX, ""}));
    EXPECT_EQ(read_plain("0000018446744073709551616\n"), std::nullopt);
}

TEST(ReadPlainNumber, TakesMoreThanTwentyZeros) {
    for (size_t zeros = 21; zeros < 50; ++zeros) {
        EXPECT_EQ(read_plain(std::string(zeros, '0') + "\n"), (PlainNumber{0, ""}));
        EXPECT_EQ(read_plain(std::string(zeros, '0') + "9\n"), (PlainNumber{9, ""}));
    }
}

TEST(ReadPlainNumber, RefusesATextWithoutDigits) {
    EXPECT_EQ(read_plain(""), std::nullopt);
    EXPECT_EQ(read_plain("\n"), std::nullopt);
    EXPECT_EQ(read_plain("\n5\n"), std::nullopt);
    EXPECT_EQ(read_plain("a\n"), std::nullopt);
    EXPECT_EQ(read_plain("state: 1\n"), std::nullopt);
}

TEST(ReadPlainNumber, RefusesBlanksAndSignsBeforeTheDigits) {
    for (const char *before : {" ", "\t", "\n", "\v", "\f", "\r", "+", "-", "x", "\xb5"}) {
        EXPECT_EQ(read_plain(std::string(before) + "5\n"), std::nullopt);
        EXPECT_EQ(read_plain(std::string(before) + "1234567890\n"), std::nullopt);
    }
}

TEST(ReadPlainNumber, RefusesAnyOtherCharacterAfterTheDigits) {
    const std::string digits = "1234567890123456789";
    for (int c = 1; c < 256; ++c) {
        if (c == '\n' || (c >= '0' && c <= '9')) {
            continue;
        }
        for (size_t count = 1; count <= digits.size(); ++count) {
            const std::string text = digits.substr(0, count) + static_cast<char>(c);
            EXPECT_EQ(read_plain(text + "\n"), std::nullopt) << testing::PrintToString(text);
            EXPECT_EQ(read_plain(text + "1\n  state: 1\n"), std::nullopt)
                << testing::PrintToString(text);
        }
    }
}

TEST(ReadPlainNumber, RefusesDigitsThatTheTextEndsWith) {
    const std::string digits = "12345678901234567890123456";
    for (size_t count = 1; count <= digits.size(); ++count) {
        EXPECT_EQ(read_plain(digits.substr(0, count)), std::nullopt) << count << " digits";
    }
}

TEST(ReadPlainNumber, RandomTextsAreReadAsDescribed) {
    constexpr std::string_view characters = "0123456789";
    constexpr std::string_view others = "\n\n\n\n \r-/:\xb5\x01";
    Random random(4);
    for (unsigned i = 0; i < 60000; ++i) {
        std::string text;
        for (size_t left = random() % 24; left-- > 0;) {
            text += characters[random() % characters.size()];
        }
        for (size_t left = random() % 12; left-- > 0;) {
            text += others[random() % others.size()];
            text += characters[random() % characters.size()];
        }
        ASSERT_EQ(read_plain(text), read_plain_literally(text)) << testing::PrintToString(text);
    }
}

TEST(ReadPlainNumber, RandomDigitsAroundTheGreatestNumberAreReadAsDescribed) {
    Random random(5);
    for (unsigned i = 0; i < 20000; ++i) {
        std::string text = "18446744073709551615";
        for (size_t left = random() % 3; left-- > 0;) {
            text[random() % text.size()] = static_cast<char>('0' + random() % 10);
        }
        text.insert(0, random() % 5, '0');
        text += '\n' + std::string(random() % 10, ' ');
        ASSERT_EQ(read_plain(text), read_plain_literally(text)) << testing::PrintToString(text);
    }
}

// --- put_number_line and count_digits ------------------------------------------------------------

/// What follows a number's line in every text: the closing lines of its block and of the message.
constexpr size_t least_after = std::string_view("  }\n}\n").size() + 1;

/// True when put_number_line puts a number's digits and a newline, and touches no more than what
/// follows anyway, and count_digits counts the digits.
testing::AssertionResult is_put(uint64_t number) {
    constexpr size_t before = 8;
    constexpr char pattern = '#';
    char out[before + 40];
    std::memset(out, pattern, sizeof out);
    const char *after = kvt_str::put_number_line(out + before, number);
    const std::string line = std::to_string(number) + "\n";
    if (after != out + before + line.size()) {
        return testing::AssertionFailure()
               << number << ": returned " << after - (out + before) << " characters";
    }
    if (std::memcmp(out + before, line.data(), line.size()) != 0) {
        return testing::AssertionFailure()
               << number << ": wrote " << std::string(out + before, line.size());
    }
    const auto is_pattern = [](char c) {
        return c == pattern;
    };
    if (!std::all_of(out, out + before, is_pattern) ||
        !std::all_of(out + before + line.size() + least_after, std::end(out), is_pattern)) {
        return testing::AssertionFailure() << number << ": touched other characters";
    }
    if (kvt_str::count_digits(number) != line.size() - 1) {
        return testing::AssertionFailure()
               << number << ": counted " << kvt_str::count_digits(number) << " digits";
    }
    return testing::AssertionSuccess();
}

TEST(PutNumberLine, PutsTheDigitsAndANewline) {
    const auto put = [](uint64_t number) {
        char out[32] = "";
        return std::string(out, kvt_str::put_number_line(out, number));
    };
    EXPECT_EQ(put(0), "0\n");
    EXPECT_EQ(put(5), "5\n");
    EXPECT_EQ(put(10), "10\n");
    EXPECT_EQ(put(1200000034), "1200000034\n");
    EXPECT_EQ(put(UINT64_MAX), "18446744073709551615\n");
}

TEST(PutNumberLine, NeedsNoMoreRoomThanTheShortestMessageHas) {
    for (const uint64_t number : telling_numbers()) {
        const std::string line = std::to_string(number) + "\n";
        const auto out = std::make_unique<char[]>(line.size() + least_after);
        kvt_str::put_number_line(out.get(), number);
        EXPECT_EQ(std::string(out.get(), line.size()), line);
    }
}

TEST(PutNumberLine, SmallNumbersAreThoseOfTheStandardLibrary) {
    for (uint64_t number = 0; number < 100000; ++number) {
        ASSERT_TRUE(is_put(number));
    }
    for (uint64_t number = 100000; number < 1000000; number += 17) {
        ASSERT_TRUE(is_put(number));
    }
}

TEST(PutNumberLine, EveryGroupOfFourDigitsIsThatOfTheStandardLibrary) {
    for (uint64_t group = 0; group < 10000; ++group) {
        const uint64_t eight = group * 10000 + (9999 - group);
        ASSERT_TRUE(is_put(eight));
        ASSERT_TRUE(is_put(1200000000 + eight));
        ASSERT_TRUE(is_put(eight * 100000000 + eight));
        ASSERT_TRUE(is_put((group % 1844 + 1) * 10000000000000000 + eight * 100000000 + eight));
    }
}

TEST(PutNumberLine, EveryBitBoundaryAndPowerOfTenIsThatOfTheStandardLibrary) {
    for (const uint64_t number : telling_numbers()) {
        ASSERT_TRUE(is_put(number));
    }
}

TEST(PutNumberLine, RandomNumbersAreThoseOfTheStandardLibrary) {
    Random random(6);
    for (unsigned i = 0; i < 100000; ++i) {
        ASSERT_TRUE(is_put(random_number(random)));
    }
}

template <typename Number> void expect_all_counted(uint64_t step) {
    for (uint64_t number = 0; number <= std::numeric_limits<Number>::max(); number += step) {
        ASSERT_EQ(kvt_str::count_digits(static_cast<Number>(number)),
                  std::to_string(number).size());
    }
}

TEST(CountDigits, CountsAsManyAsThereAreInEveryWidth) {
    expect_all_counted<uint8_t>(1);
    expect_all_counted<uint16_t>(1);
    expect_all_counted<uint32_t>(65537);
    for (const uint64_t number : telling_numbers()) {
        EXPECT_EQ(kvt_str::count_digits(number), std::to_string(number).size()) << number;
        const auto low = static_cast<uint32_t>(number);
        EXPECT_EQ(kvt_str::count_digits(low), std::to_string(low).size()) << low;
    }
    uint64_t power = 1;
    for (unsigned digits = 2; digits <= 20; ++digits) {
        power *= 10;
        EXPECT_EQ(kvt_str::count_digits(power - 1), digits - 1) << power - 1;
        EXPECT_EQ(kvt_str::count_digits(power), digits) << power;
        EXPECT_EQ(kvt_str::count_digits(power + 1), digits) << power + 1;
    }
    EXPECT_EQ(kvt_str::count_digits(UINT64_MAX), 20U);
}

} // namespace
