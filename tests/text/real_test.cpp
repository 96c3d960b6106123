// Floating-point values to and from text, compared bit by bit with the C library's in the C locale.
#include <algorithm>
#include <bit>
#include <cfenv>
#include <cfloat>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <limits>
#include <locale.h>
#include <optional>
#include <ostream>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "support/comma_locale.h"
#include "support/exact_copy.h"
#include "text/real.h"

namespace {

using kvt_test::comma_locale_name;
using kvt_test::CommaLocale;
using kvt_test::exact_copy;
using kvt_test::ProcessInComma;
using kvt_test::ThreadIn;

using Random = std::mt19937_64;

/// What a variable holds before a scan, and after one that fails.
constexpr float untouched = -1234.5F;

/// What a scan leaves.
struct Scanned {
    bool found;
    float value;
};

/// Bit by bit, but for the bits of a NaN other than its sign.
bool operator==(const Scanned &a, const Scanned &b) {
    const bool same = std::isnan(a.value) && std::isnan(b.value)
                          ? std::signbit(a.value) == std::signbit(b.value)
                          : std::bit_cast<uint32_t>(a.value) == std::bit_cast<uint32_t>(b.value);
    return a.found == b.found && same;
}

void PrintTo(const Scanned &scanned, std::ostream *out) {
    char text[64];
    std::snprintf(text, sizeof text, "%s %a", scanned.found ? "found" : "not found",
                  static_cast<double>(scanned.value));
    *out << text;
}

Scanned scan_of_c_library(const std::string &text) {
    float value = untouched;
    const bool found = std::sscanf(text.c_str(), "%f", &value) == 1;
    return {found, value};
}

/// The text lies in a heap block of exactly its size, so that a sanitizer sees one byte too far.
Scanned scan(const std::string &text) {
    const auto copy = exact_copy(text);
    float value = untouched;
    const bool found = kvt_str::scan_real(copy.get(), value);
    return {found, value};
}

/// The value that is scanned from the text, if any. Fails where the C library's is another one, and
/// where a scan that fails does not leave the variable.
std::optional<float> scanned(const std::string &text) {
    const Scanned result = scan(text);
    EXPECT_EQ(result, scan_of_c_library(text)) << testing::PrintToString(text);
    EXPECT_TRUE(result.found || result.value == untouched) << testing::PrintToString(text);
    return result.found ? std::optional(result.value) : std::nullopt;
}

constexpr float infinity = std::numeric_limits<float>::infinity();

/// Texts of every form, well and badly formed.
std::vector<std::string> telling_texts() {
    std::istringstream words(
        "0 5 1.5 5. .5 . ..5 5.. 1.2.3 1,5 007.50 0.1 0.000001 1234567 123456789 16777217 16777219 "
        "1e5 1E5 1e+5 1e-5 1e 1e+ 1e- 1ex 1e++5 1e5.5 1e5e5 1.e5 .5e1 .e5 e5 1e05 100er "
        "inf INF Inf infinity INFINITY iNfInItY i in infi infin infini infinit infinitx infinityx "
        "infx inx ix nan NAN NaN n na nax nanx nan(1) nan() nan( nann "
        "0x 0X 0xg 0x-1 0x1 0X1F 0xff 0xFF.8 0x.8 0x. 0x.g 0x.p1 0x1. 0x1p3 0x1P3 0x1p+3 0x1p-3 "
        "0x1p 0x1p+ 0x1p- 0x1pf 0x1.8p1 0x1..8 0xp1 0x0x1 00x1 0x1e5 0x1e+5 0xinf "
        "0x1.fffffep127 0x1.ffffffp127 0x1.fffffeffp127 0x1p128 0x1p-126 0x1p-149 0x1p-150 "
        "0x1.8p-150 0x1.000001p0 0x1.000003p0 "
        "3.40282347e38 3.4028235677e38 3.4028236e38 1e38 1e39 1e999 1e99999999999999999999 "
        "1e-38 1e-45 1e-46 7e-46 8e-46 1e-999 1e-99999999999999999999 1.17549435e-38 1.4e-45 "
        "18446744073709551616 x abc \xb5 5\xb5");
    std::vector<std::string> texts(std::istream_iterator<std::string>(words), {});
    texts.insert(texts.end(), {"", " ", "1e 5", "1 e5", "inf 5", "nan 5", "0x 1"});
    texts.insert(texts.end(),
                 {std::string(400, '1'), std::string(400, '0') + "1.5",
                  "0." + std::string(400, '0') + "1", "0." + std::string(400, '0') + "1e401",
                  "1" + std::string(400, '0') + "e-400", "0x" + std::string(400, '0') + "1p3",
                  "0x" + std::string(40, 'f'), "0x." + std::string(40, '0') + "1p164",
                  // half-way between two floats, and a little more
                  "1.00000005960464477539062500000000000000000000000000000000000",
                  "1.00000005960464477539062500000000000000000000000000000000001"});
    return texts;
}

// --- scan_real -----------------------------------------------------------------------------------

TEST(ScanReal, TakesDecimals) {
    EXPECT_EQ(scanned("0"), 0.0F);
    EXPECT_EQ(scanned("5"), 5.0F);
    EXPECT_EQ(scanned("1.5"), 1.5F);
    EXPECT_EQ(scanned("0.1"), 0.1F);
    EXPECT_EQ(scanned("007.50"), 7.5F);
    EXPECT_EQ(scanned("5."), 5.0F);
    EXPECT_EQ(scanned(".5"), 0.5F);
}

TEST(ScanReal, TakesASign) {
    EXPECT_EQ(scanned("+1.5"), 1.5F);
    EXPECT_EQ(scanned("-1.5"), -1.5F);
    EXPECT_EQ(scanned("-.5"), -0.5F);
    EXPECT_EQ(scanned("-0"), 0.0F); // with its sign, as the comparison with the C library sees
    EXPECT_TRUE(std::signbit(scan("-0").value));
}

TEST(ScanReal, TakesOneSignWithTheNumberAfterItAtOnce) {
    EXPECT_EQ(scanned("--5"), std::nullopt);
    EXPECT_EQ(scanned("+-5"), std::nullopt);
    EXPECT_EQ(scanned("- 5"), std::nullopt);
    EXPECT_EQ(scanned("-\n5"), std::nullopt);
}

TEST(ScanReal, WantsADigit) {
    EXPECT_EQ(scanned(""), std::nullopt);
    EXPECT_EQ(scanned(" \n"), std::nullopt);
    EXPECT_EQ(scanned("."), std::nullopt);
    EXPECT_EQ(scanned("+"), std::nullopt);
    EXPECT_EQ(scanned("-"), std::nullopt);
    EXPECT_EQ(scanned("-."), std::nullopt);
    EXPECT_EQ(scanned("e5"), std::nullopt);
    EXPECT_EQ(scanned(".e5"), std::nullopt);
    EXPECT_EQ(scanned("x"), std::nullopt);
}

TEST(ScanReal, SkipsBlanksOfAllSixKinds) {
    for (const char *blank : {" ", "\t", "\n", "\v", "\f", "\r", " \t\n\v\f\r "}) {
        EXPECT_EQ(scanned(std::string(blank) + "1.5"), 1.5F);
        EXPECT_EQ(scanned(std::string(blank) + "inf"), infinity);
        EXPECT_EQ(scanned(std::string(blank) + "0x1p3"), 8.0F);
        EXPECT_EQ(scanned(std::string(blank)), std::nullopt);
    }
}

TEST(ScanReal, SkipsNoOtherCharacter) {
    for (int c = 1; c < 256; ++c) {
        const bool skipped = c == ' ' || (c >= '\t' && c <= '\r') || c == '+' || c == '-' ||
                             c == '.' || (c >= '0' && c <= '9');
        EXPECT_EQ(scanned(std::string(1, static_cast<char>(c)) + "5").has_value(), skipped)
            << "character " << c;
    }
}

TEST(ScanReal, TakesANumberOfALaterLine) {
    EXPECT_EQ(scanned("\n\n    1.5\n"), 1.5F);
}

TEST(ScanReal, TakesExponents) {
    EXPECT_EQ(scanned("1e5"), 1e5F);
    EXPECT_EQ(scanned("1E5"), 1e5F);
    EXPECT_EQ(scanned("1e+5"), 1e5F);
    EXPECT_EQ(scanned("1.5e-5"), 1.5e-5F);
    EXPECT_EQ(scanned("1.e2"), 100.0F);
    EXPECT_EQ(scanned(".5e1"), 5.0F);
}

TEST(ScanReal, TakesANumberWhoseExponentIsMissing) {
    EXPECT_EQ(scanned("1e"), 1.0F);
    EXPECT_EQ(scanned("1e+"), 1.0F);
    EXPECT_EQ(scanned("1e-"), 1.0F);
    EXPECT_EQ(scanned("1.5ex"), 1.5F);
    EXPECT_EQ(scanned("1e 5"), 1.0F);
    EXPECT_EQ(scanned("100er"), 100.0F);
}

TEST(ScanReal, EndsAfterTheNumber) {
    EXPECT_EQ(scanned("1.5 6"), 1.5F);
    EXPECT_EQ(scanned("1.5.5"), 1.5F);
    EXPECT_EQ(scanned("1,5"), 1.0F);
    EXPECT_EQ(scanned("1e5.5"), 1e5F);
    EXPECT_EQ(scanned("1e5e5"), 1e5F);
    EXPECT_EQ(scanned("5\xb5"), 5.0F);
}

TEST(ScanReal, IsInfiniteOrZeroBeyondAFloat) {
    EXPECT_EQ(scanned("1e39"), infinity);
    EXPECT_EQ(scanned("-1e999"), -infinity);
    EXPECT_EQ(scanned("1e99999999999999999999"), infinity);
    EXPECT_EQ(scanned("1e-46"), 0.0F);
    EXPECT_EQ(scanned("1e-99999999999999999999"), 0.0F);
    EXPECT_TRUE(std::signbit(scan("-1e-999").value));
}

TEST(ScanReal, RoundsToTheNearestFloatAtOnce) {
    EXPECT_EQ(scanned("16777217"), 16777216.0F);
    EXPECT_EQ(scanned("16777219"), 16777220.0F);
    // These two are one double: a scan by way of it would round the second one down as well.
    EXPECT_EQ(scanned("1.000000059604644775390625"), 1.0F);
    EXPECT_EQ(scanned("1.00000005960464477539062500000000001"), 0x1.000002p0F);
    EXPECT_EQ(scanned("1.4e-45"), std::numeric_limits<float>::denorm_min());
    EXPECT_EQ(scanned("3.40282347e38"), std::numeric_limits<float>::max());
}

TEST(ScanReal, TakesLongDigitStrings) {
    EXPECT_EQ(scanned(std::string(400, '1')), infinity);
    EXPECT_EQ(scanned("1" + std::string(400, '0') + "e-400"), 1.0F);
    EXPECT_EQ(scanned("0." + std::string(400, '0') + "1e401"), 1.0F);
    EXPECT_EQ(scanned(std::string(400, '0') + "1.5"), 1.5F);
}

TEST(ScanReal, TakesInfinityInLettersOfEitherCase) {
    EXPECT_EQ(scanned("inf"), infinity);
    EXPECT_EQ(scanned("INF"), infinity);
    EXPECT_EQ(scanned("infinity"), infinity);
    EXPECT_EQ(scanned("InFiNiTy"), infinity);
    EXPECT_EQ(scanned("+inf"), infinity);
    EXPECT_EQ(scanned("-inf"), -infinity);
    EXPECT_EQ(scanned("-INFINITY"), -infinity);
}

TEST(ScanReal, WantsAWordThatBeginsAsInfinityToBeOne) {
    EXPECT_EQ(scanned("i"), std::nullopt);
    EXPECT_EQ(scanned("in"), std::nullopt);
    EXPECT_EQ(scanned("infi"), std::nullopt);
    EXPECT_EQ(scanned("infinit"), std::nullopt);
    EXPECT_EQ(scanned("infinite"), std::nullopt);
    EXPECT_EQ(scanned("infx"), infinity);
    EXPECT_EQ(scanned("infinityx"), infinity);
}

TEST(ScanReal, TakesNanInLettersOfEitherCase) {
    for (const char *text : {"nan", "NAN", "NaN", "+nan", "nan(1)", "nan()", "nan(", "nanx"}) {
        const std::optional<float> value = scanned(text);
        ASSERT_TRUE(value.has_value()) << text;
        EXPECT_TRUE(std::isnan(*value)) << text;
        EXPECT_FALSE(std::signbit(*value)) << text;
    }
}

TEST(ScanReal, KeepsTheSignOfNan) {
    const std::optional<float> value = scanned("-nan");
    ASSERT_TRUE(value.has_value());
    EXPECT_TRUE(std::isnan(*value));
    EXPECT_TRUE(std::signbit(*value));
}

TEST(ScanReal, DoesNotTakeWhatStandsInParenthesesAfterNan) {
    const auto bits_of = [](const char *text) {
        return std::bit_cast<uint32_t>(scan(text).value);
    };
    EXPECT_EQ(bits_of("nan(1)"), bits_of("nan"));
    EXPECT_EQ(bits_of("-nan(0x5)"), bits_of("-nan"));
}

TEST(ScanReal, WantsAWordThatBeginsAsNanToBeOne) {
    EXPECT_EQ(scanned("n"), std::nullopt);
    EXPECT_EQ(scanned("na"), std::nullopt);
    EXPECT_EQ(scanned("-na"), std::nullopt);
    EXPECT_EQ(scanned("nax"), std::nullopt);
}

TEST(ScanReal, TakesHexadecimalForms) {
    EXPECT_EQ(scanned("0x10"), 16.0F);
    EXPECT_EQ(scanned("0XfF"), 255.0F);
    EXPECT_EQ(scanned("0x1p3"), 8.0F);
    EXPECT_EQ(scanned("0x1P-3"), 0.125F);
    EXPECT_EQ(scanned("0x1.8p+1"), 3.0F);
    EXPECT_EQ(scanned("0x.8"), 0.5F);
    EXPECT_EQ(scanned("-0x.8p1"), -1.0F);
    EXPECT_EQ(scanned("0x1e5"), 485.0F);
    EXPECT_EQ(scanned("0x1."), 1.0F);
}

TEST(ScanReal, TakesAHexadecimalFormWhoseExponentIsMissing) {
    EXPECT_EQ(scanned("0x1p"), 1.0F);
    EXPECT_EQ(scanned("0x1p+"), 1.0F);
    EXPECT_EQ(scanned("0x1pf"), 1.0F);
}

TEST(ScanReal, WantsADigitOrAPointAfterTheHexadecimalPrefix) {
    EXPECT_EQ(scanned("0x"), std::nullopt);
    EXPECT_EQ(scanned("-0X"), std::nullopt);
    EXPECT_EQ(scanned("0xg"), std::nullopt);
    EXPECT_EQ(scanned("0xp1"), std::nullopt);
    EXPECT_EQ(scanned("0x 1"), std::nullopt);
    EXPECT_EQ(scanned("0x-1"), std::nullopt);
    EXPECT_EQ(scanned("0x."), 0.0F);
    EXPECT_EQ(scanned("0x.p1"), 0.0F);
    EXPECT_EQ(scanned("00x1"), 0.0F);
}

TEST(ScanReal, TextsOfEveryFormAreScannedAsByTheCLibrary) {
    for (const std::string &text : telling_texts()) {
        for (const char *before : {"", "+", "-", " ", "\n\t-", "--", "- ", "0"}) {
            scanned(before + text);
            scanned(before + text + "\n");
        }
    }
}

TEST(ScanReal, RandomTextsAreScannedAsByTheCLibrary) {
    constexpr std::string_view characters = "0123456789+-.eExXpPabfFinINtyTYA()_ \n0000xp.e";
    Random random(1);
    for (unsigned i = 0; i < 40000 && !HasFailure(); ++i) {
        std::string text = i % 3 == 0 ? "0x" : "";
        for (size_t left = random() % 9; left-- > 0;) {
            text += characters[random() % characters.size()];
        }
        scanned(text);
    }
}

TEST(ScanReal, RandomMutationsAreScannedAsByTheCLibrary) {
    constexpr std::string_view characters = "0159+-.,eExXpPnNaAiIfFtTyY( \n\t\xb5";
    const std::vector<std::string> texts = telling_texts();
    Random random(2);
    for (unsigned i = 0; i < 40000 && !HasFailure(); ++i) {
        std::string text = texts[random() % texts.size()] + texts[random() % texts.size()];
        for (size_t left = random() % 4; left-- > 0 && !text.empty();) {
            const size_t at = random() % std::min(text.size(), size_t{12});
            switch (random() % 3) {
            case 0:
                text[at] = characters[random() % characters.size()];
                break;
            case 1:
                text.insert(at, 1, characters[random() % characters.size()]);
                break;
            default:
                text.erase(at, 1);
                break;
            }
        }
        scanned(text);
    }
}

TEST(ScanReal, RandomNumbersAreScannedAsByTheCLibrary) {
    Random random(3);
    for (unsigned i = 0; i < 20000 && !HasFailure(); ++i) {
        const auto value =
            static_cast<double>(std::bit_cast<float>(static_cast<uint32_t>(random())));
        const char *const formats[] = {"%g", "%.9g", "%.30g", "%f", "%a", "%e"};
        char text[400];
        std::snprintf(text, sizeof text, formats[i % std::size(formats)], value);
        scanned(text);
    }
}

// --- read_plain_real -----------------------------------------------------------------------------

/// The value that is read from a text's plain form, if it is in one. Fails where the scan reads
/// another value, and where the position is not after the newline.
std::optional<float> read_plain(const std::string &text) {
    const kvt_str::PlainReal real = kvt_str::read_plain_real(text.c_str());
    if (real.next == nullptr) {
        return std::nullopt;
    }
    EXPECT_EQ(real.next, text.c_str() + text.find('\n') + 1) << text;
    EXPECT_EQ((Scanned{true, real.value}), scan(text)) << text;
    return real.value;
}

TEST(ReadPlainReal, TakesDigitsWithAPointAndWithout) {
    if (FLT_EVAL_METHOD != 0) {
        EXPECT_EQ(read_plain("5\n"), std::nullopt);
        GTEST_SKIP() << "this machine computes floats with more digits: the plain form is not read";
    }
    EXPECT_EQ(read_plain("5\n"), 5.0F);
    EXPECT_EQ(read_plain("12.5\n  hosts_len: 4\n"), 12.5F);
    EXPECT_EQ(read_plain("0.1\n"), 0.1F);
    EXPECT_EQ(read_plain("0.0001\n"), 0.0001F);
    EXPECT_EQ(read_plain("3.\n"), 3.0F);
    EXPECT_EQ(read_plain(".25\n"), 0.25F);
    EXPECT_EQ(read_plain("0\n"), 0.0F);
    EXPECT_EQ(read_plain("999999\n"), 999999.0F);
    EXPECT_EQ(read_plain("16777216\n"), 16777216.0F);
    EXPECT_EQ(read_plain("0.1234567\n"), 0.1234567F);
}

TEST(ReadPlainReal, LeavesEveryOtherForm) {
    for (const char *text : {"",
                             "\n",
                             ".\n",
                             "5",
                             "-5\n",
                             "+5\n",
                             " 5\n",
                             "5 \n",
                             "5\r\n",
                             "1e5\n",
                             "0x1\n",
                             "inf\n",
                             "nan\n",
                             "1.2.3\n",
                             "1..2\n",
                             "5}\n",
                             "5,5\n",
                             "16777217\n",
                             "99999999999999999999\n",
                             "0.00000001\n"}) {
        EXPECT_EQ(read_plain(text), std::nullopt) << text;
    }
}

TEST(ReadPlainReal, RandomNumbersAreReadAsByTheScan) {
    Random random(7);
    for (unsigned i = 0; i < 100000 && !HasFailure(); ++i) {
        std::string digits = std::to_string(random() % (uint64_t{1} << (random() % 26)));
        if (random() % 4 != 0) {
            digits.insert(random() % (digits.size() + 1), 1, '.');
        }
        read_plain(digits + "\n");
    }
}

// --- format_real ---------------------------------------------------------------------------------

std::string format(float value) {
    char out[kvt_str::real_capacity];
    std::memset(out, '#', sizeof out);
    const size_t length = kvt_str::format_real(value, out);
    EXPECT_EQ(length, std::strlen(out));
    return out;
}

std::string format_of_c_library(float value) {
    char out[64];
    std::snprintf(out, sizeof out, "%g", static_cast<double>(value));
    return out;
}

/// The value as text. Fails where the C library's is another one.
std::string formatted(float value) {
    std::string text = format(value);
    EXPECT_EQ(text, format_of_c_library(value));
    return text;
}

TEST(FormatReal, ShowsSixDigits) {
    EXPECT_EQ(formatted(1.5F), "1.5");
    EXPECT_EQ(formatted(0.1F), "0.1");
    EXPECT_EQ(formatted(-2.25F), "-2.25");
    EXPECT_EQ(formatted(3.14159265F), "3.14159");
    EXPECT_EQ(formatted(123456.0F), "123456");
    EXPECT_EQ(formatted(999999.5F), "1e+06");
}

TEST(FormatReal, ShowsNoPointAfterAWholeNumber) {
    EXPECT_EQ(formatted(5.0F), "5");
    EXPECT_EQ(formatted(100000.0F), "100000");
}

TEST(FormatReal, ShowsExponentsOfLargeAndSmallValues) {
    EXPECT_EQ(formatted(1234567.0F), "1.23457e+06");
    EXPECT_EQ(formatted(1e-5F), "1e-05");
    EXPECT_EQ(formatted(0.0001F), "0.0001");
    EXPECT_EQ(formatted(std::numeric_limits<float>::max()), "3.40282e+38");
    EXPECT_EQ(formatted(std::numeric_limits<float>::lowest()), "-3.40282e+38");
    EXPECT_EQ(formatted(std::numeric_limits<float>::min()), "1.17549e-38");
}

TEST(FormatReal, ShowsDenormalValues) {
    EXPECT_EQ(formatted(std::numeric_limits<float>::denorm_min()), "1.4013e-45");
    EXPECT_EQ(formatted(-0x1p-140F), "-7.17465e-43");
}

TEST(FormatReal, ShowsZeroWithItsSign) {
    EXPECT_EQ(formatted(0.0F), "0");
    EXPECT_EQ(formatted(-0.0F), "-0");
}

TEST(FormatReal, ShowsInfinityAndNanAsWords) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(formatted(infinity), "inf");
    EXPECT_EQ(formatted(-infinity), "-inf");
    EXPECT_EQ(formatted(std::copysign(nan, 1.0F)), "nan");
    EXPECT_EQ(formatted(std::copysign(nan, -1.0F)), "-nan");
}

TEST(FormatReal, RandomValuesAreShownAsByTheCLibrary) {
    Random random(4);
    for (unsigned i = 0; i < 30000 && !HasFailure(); ++i) {
        formatted(std::bit_cast<float>(static_cast<uint32_t>(random())));
        formatted(static_cast<float>(random() % 2000000) / 8.0F);
        formatted(std::bit_cast<float>(static_cast<uint32_t>(random() % 0x800000))); // denormal
    }
}

TEST(FormatReal, NumbersHalfwayBetweenTwoGoToTheEvenOne) {
    EXPECT_EQ(formatted(100000.5F), "100000");
    EXPECT_EQ(formatted(100001.5F), "100002");
    EXPECT_EQ(formatted(10000.25F), "10000.2");
    EXPECT_EQ(formatted(10000.75F), "10000.8");
    EXPECT_EQ(formatted(0.001953125F), "0.00195312");
    EXPECT_EQ(formatted(0.005859375F), "0.00585938");
}

TEST(FormatReal, NumbersAroundPowersOfTenAreShownAsByTheCLibrary) {
    for (double power = 1e-6; power < 1e8; power *= 10) {
        auto below = static_cast<float>(power);
        float above = below;
        for (int i = 0; i < 500 && !HasFailure(); ++i) {
            formatted(below);
            formatted(above);
            below = std::nextafter(below, 0.0F);
            above = std::nextafter(above, infinity);
        }
    }
}

TEST(FormatReal, RandomNumbersWithoutAnExponentAreShownAsByTheCLibrary) {
    Random random(8);
    constexpr uint32_t least = 0x38000000;    // about 0.00003
    constexpr uint32_t greatest = 0x49800000; // about 1048576
    for (unsigned i = 0; i < 200000 && !HasFailure(); ++i) {
        formatted(
            std::bit_cast<float>(static_cast<uint32_t>(least + random() % (greatest - least))));
    }
}

TEST(FormatReal, FollowsTheRoundingThatIsSet) {
    Random random(9);
    for (const int rounding : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO, FE_TONEAREST}) {
        std::fesetround(rounding);
        for (unsigned i = 0; i < 1000 && !HasFailure(); ++i) {
            formatted(static_cast<float>(random() % 1000000) / 777.0F);
        }
    }
}

TEST(ReadPlainReal, FollowsTheRoundingThatIsSet) {
    Random random(10);
    for (const int rounding : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO, FE_TONEAREST}) {
        std::fesetround(rounding);
        for (unsigned i = 0; i < 1000 && !HasFailure(); ++i) {
            read_plain(std::to_string(random() % 1000) + "." + std::to_string(random() % 1000) +
                       "\n");
        }
    }
}

// --- Both under a locale with a decimal comma ----------------------------------------------------

TEST(ScanRealUnderADecimalComma, TakesThePointOnly) {
    SKIP_WITHOUT_COMMA_LOCALE();
    const ProcessInComma locale;
    EXPECT_EQ(scan("1.5"), (Scanned{true, 1.5F}));
    EXPECT_EQ(scan("1,5"), (Scanned{true, 1.0F}));
    EXPECT_EQ(scan(".5"), (Scanned{true, 0.5F}));
    EXPECT_EQ(scan(",5"), (Scanned{false, untouched}));
    EXPECT_EQ(scan("0x.8"), (Scanned{true, 0.5F}));
    EXPECT_EQ(scan("0x,8"), (Scanned{false, untouched}));
    EXPECT_EQ(scan("1.000,5"), (Scanned{true, 1.0F}));
}

TEST(ScanRealUnderADecimalComma, TextsOfEveryFormAreScannedAsInTheCLocale) {
    SKIP_WITHOUT_COMMA_LOCALE();
    const std::vector<std::string> texts = telling_texts();
    std::vector<Scanned> expected;
    expected.reserve(texts.size());
    for (const std::string &text : texts) {
        expected.push_back(scan_of_c_library(text));
    }
    const ProcessInComma locale;
    for (size_t i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(scan(texts[i]), expected[i]) << testing::PrintToString(texts[i]);
    }
}

TEST(FormatRealUnderADecimalComma, ShowsThePoint) {
    SKIP_WITHOUT_COMMA_LOCALE();
    const ProcessInComma locale;
    EXPECT_EQ(format(1.5F), "1.5");
    EXPECT_EQ(format(-1234567.0F), "-1.23457e+06");
    EXPECT_EQ(format(1e-5F), "1e-05");
    EXPECT_EQ(format(infinity), "inf");
}

TEST(FormatRealUnderADecimalComma, RandomValuesAreShownAsInTheCLocale) {
    SKIP_WITHOUT_COMMA_LOCALE();
    Random random(5);
    std::vector<float> values;
    std::vector<std::string> expected;
    for (unsigned i = 0; i < 5000; ++i) {
        values.push_back(std::bit_cast<float>(static_cast<uint32_t>(random())));
        expected.push_back(format_of_c_library(values.back()));
    }
    const ProcessInComma locale;
    for (size_t i = 0; i < values.size(); ++i) {
        ASSERT_EQ(format(values[i]), expected[i]);
    }
}

TEST(RealUnderADecimalComma, LeavesTheProcesssLocale) {
    SKIP_WITHOUT_COMMA_LOCALE();
    const ProcessInComma locale;
    scan("1.5");
    format(1.5F);
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), comma_locale_name());
    EXPECT_EQ(format_of_c_library(1.5F), "1,5");
}

TEST(RealUnderADecimalComma, IgnoresAndLeavesTheThreadsLocale) {
    SKIP_WITHOUT_COMMA_LOCALE();
    const CommaLocale comma;
    const ThreadIn thread(comma.get());
    EXPECT_EQ(format_of_c_library(1.5F), "1,5");
    EXPECT_EQ(scan("1.5"), (Scanned{true, 1.5F}));
    EXPECT_EQ(uselocale(nullptr), comma.get());
    EXPECT_EQ(format(1.5F), "1.5");
    EXPECT_EQ(uselocale(nullptr), comma.get());
}

} // namespace
