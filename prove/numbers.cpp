// Whole numbers to and from text: each step of the arithmetic for every input that it takes, and
// the functions made of them for every number of 32 bits. What is expected comes from an odometer.
#include <cstring>
#include <string_view>

#include "claim.h"
#include "odometer.h"
#include "page_end.h"
#include "text/digits.h"
#include "text/number.h"

using namespace kvt_prove;
using namespace kvt_str;

namespace {

/// What the other half of sixteen digits is while one half goes through all numbers.
constexpr struct {
    uint64_t number;
    char digits[9];
} other_halves[] = {{0, "00000000"},
                    {1, "00000001"},
                    {12345678, "12345678"},
                    {90000009, "90000009"},
                    {99999999, "99999999"}};

/// Digits '0' to '9' as they are stored, eight of them, as the numbers 0 to 9.
uint64_t values_at(const char *digits) {
    return load_eight(digits) ^ in_each_byte('0');
}

// --- From text -----------------------------------------------------------------------------------

/// How many numbers there are of 1 to 8 digits, leading zeros counting.
constexpr uint64_t numbers_of_one_to_eight_digits = 111111110;

void value_of_digits_holds(uint64_t first, uint64_t end) {
    unsigned count = 1;
    uint64_t least = 0;
    while (first - least >= powers_of_ten[count]) {
        least += powers_of_ten[count++];
    }
    char memory[Odometer::capacity + 8] = {};
    Odometer odometer(memory + Odometer::capacity, first - least);
    for (uint64_t i = first; i != end; ++i) {
        if (i - least == powers_of_ten[count]) {
            least += powers_of_ten[count++];
            odometer.show(i - least);
        }
        const uint64_t digits = load_eight(odometer.end() - count);
        const uint64_t after = count == 8 ? 0 : UINT64_MAX << (8 * count);
        for (const uint64_t others :
             {in_each_byte('\n'), in_each_byte('9'), UINT64_MAX, uint64_t{0}}) {
            const uint64_t characters = (digits & ~after) | (others & after);
            expect(value_of_digits(characters, count) == i - least, "value_of_digits", i - least);
        }
        odometer.step();
    }
}

/// Characters around the digits, and those whose bits carry farthest.
constexpr uint8_t telling[] = {'0', '9', '/', ':', 0x00, 0x7F, 0x80, 0xFF};

void expect_leading_digits(uint64_t characters) {
    char text[8];
    store_eight(text, characters);
    unsigned digits = 0;
    while (digits != 8 && text[digits] >= '0' && text[digits] <= '9') {
        ++digits;
    }
    expect(count_leading_digits(characters) == digits, "count_leading_digits",
           std::string_view(text, sizeof text));
}

void count_leading_digits_holds_for_telling_characters(uint64_t first, uint64_t end) {
    for (uint64_t i = first; i != end; ++i) {
        uint64_t characters = 0;
        for (unsigned place = 0; place != 8; ++place) {
            characters = characters << 8 | telling[i >> (3 * place) & 7];
        }
        expect_leading_digits(characters);
    }
}

void count_leading_digits_holds_for_neighbours(uint64_t first, uint64_t end) {
    for (uint64_t i = first; i != end; ++i) {
        const unsigned shift = 8 * static_cast<unsigned>(i >> 16);
        for (const uint8_t others : telling) {
            const uint64_t rest = in_each_byte(others) & ~(uint64_t{0xFFFF} << shift);
            expect_leading_digits(rest | (i & 0xFFFF) << shift);
        }
    }
}

void read_sixteen_digits_holds(uint64_t first, uint64_t end) {
    char memory[Odometer::capacity];
    Odometer odometer(memory + sizeof memory, first);
    for (uint64_t number = first; number != end; ++number) {
        for (const auto &other : other_halves) {
            char text[16];
            uint64_t value = 77;
            std::memcpy(text, other.digits, 8);
            std::memcpy(text + 8, odometer.end() - 8, 8);
            expect(read_sixteen_digits(text, value) && value == other.number * ten_to_8 + number,
                   "read_sixteen_digits, the last eight", number);
            std::memcpy(text, odometer.end() - 8, 8);
            std::memcpy(text + 8, other.digits, 8);
            expect(read_sixteen_digits(text, value) && value == number * ten_to_8 + other.number,
                   "read_sixteen_digits, the first eight", number);
        }
        odometer.step();
    }
}

void read_sixteen_digits_refuses_others(uint64_t first, uint64_t end) {
    for (uint64_t i = first; i != end; ++i) {
        const auto character = static_cast<char>(i & 0xFF);
        const uint64_t place = i >> 8 & 15;
        char text[16];
        std::memset(text, "059"[i >> 12], sizeof text);
        text[place] = character;
        uint64_t value = 77;
        const bool taken = read_sixteen_digits(text, value);
        expect(taken == is_digit(character), "read_sixteen_digits takes digits alone",
               std::string_view(text, sizeof text));
        expect(taken || value == 77, "read_sixteen_digits leaves the value",
               std::string_view(text, sizeof text));
    }
}

// --- To text -------------------------------------------------------------------------------------

void four_digits_holds(uint64_t first, uint64_t end) {
    char memory[Odometer::capacity];
    Odometer odometer(memory + sizeof memory, first);
    for (uint64_t number = first; number != end; ++number) {
        const uint64_t digits = four_digits(static_cast<uint32_t>(number));
        expect(digits << 32 == values_at(odometer.end() - 8), "four_digits", number);
        odometer.step();
    }
}

void eight_digits_holds(uint64_t first, uint64_t end) {
    char memory[Odometer::capacity];
    Odometer odometer(memory + sizeof memory, first);
    for (uint64_t number = first; number != end; ++number) {
        const uint64_t digits = values_at(odometer.end() - 8);
        expect(eight_digits(number) == digits, "eight_digits", number);
        for (const auto &other : other_halves) {
            const uint64_t other_digits = values_at(other.digits);
            const SixteenDigits as_first(number * ten_to_8 + other.number);
            expect(as_first.first() == digits && as_first.second() == other_digits,
                   "SixteenDigits, the first half", number);
            const SixteenDigits as_second(other.number * ten_to_8 + number);
            expect(as_second.first() == other_digits && as_second.second() == digits,
                   "SixteenDigits, the second half", number);
        }
        odometer.step();
    }
}

// --- Both ways -----------------------------------------------------------------------------------

/// A number's line twice: where the text ends after it, and where it goes on.
class Lines {
public:
    explicit Lines(uint64_t number)
        : at_end_(last_.end() - 2, number), within_(within_memory_ + Odometer::capacity, number) {
        std::memcpy(at_end_.end(), "\n", 2);
        std::strcpy(within_.end(), "\n    \"9}{123456789012345678\n");
        std::memset(out_, kept, sizeof out_);
    }

    void show(uint64_t number) {
        at_end_.show(number);
        within_.show(number);
        std::memset(out_, kept, sizeof out_);
    }

    void step() {
        at_end_.step();
        within_.step();
    }

    /// Expects the number to be written and read as the odometers show it. From one show to the
    /// next the numbers grow: what is stored too far stays to be seen.
    void expect_number(uint64_t number) {
        const size_t length = within_.length();
        expect(put_number_line(out_, number) == out_ + length + 1, "put_number_line ends", number);
        expect(std::memcmp(out_, within_.begin(), length + 1) == 0, "put_number_line", number);
        expect(out_[length + 5] == kept, "put_number_line stores four more at most", number);
        expect(count_digits(number) == length, "count_digits", number);
        if (number <= UINT32_MAX) {
            expect(count_digits(static_cast<uint32_t>(number)) == length, "count_digits of 32 bits",
                   number);
        }
        expect_read(at_end_, last_.end() - 1, true, number);
        expect_read(within_, within_memory_ + std::strlen(within_memory_), true, number);
    }

    /// Expects the line that the odometers show to be more than any number.
    void expect_too_large() const {
        expect_read(at_end_, last_.end() - 1, false, 0);
        expect_read(within_, within_memory_ + std::strlen(within_memory_), false, 0);
        uint64_t value = 77;
        expect(scan_number(at_end_.begin(), value) && value == UINT64_MAX, "scan_number saturates",
               at_end_.begin());
    }

private:
    static void expect_read(const Odometer &shown, const char *end, bool fits, uint64_t number) {
        const char *at = shown.begin();
        const char *next = fits ? shown.end() + 1 : nullptr;
        const auto expect_same = [=](PlainNumber read) {
            expect(read.next == next && (!fits || read.value == number),
                   "a plain number is read as it is written", at);
        };
        expect_same(read_plain_number<4>(at, end));
        expect_same(read_plain_number<8>(at, end));
        if (shown.length() <= 4) {
            // Beyond few digits the widths differ no more, and call these.
            expect_same(read_plain_number<1>(at, end));
            expect_same(read_plain_digits(at, end));
            expect_same(read_plain_long_digits(at, end));
        }
    }

    static constexpr char kept = '~';

    PageEnd last_;
    char within_memory_[64] = "000000000000000000000000\n";
    Odometer at_end_;
    Odometer within_;
    char out_[40];
};

void numbers_of_32_bits_hold(uint64_t first, uint64_t end) {
    Lines lines(first);
    for (uint64_t number = first; number != end; ++number) {
        lines.expect_number(number);
        lines.step();
    }
}

/// How far the numbers of 64 bits that are tried lie apart.
constexpr uint64_t apart = UINT64_MAX / 10000000;

void numbers_of_64_bits_hold(uint64_t first, uint64_t end) {
    Lines lines(0);
    for (uint64_t i = first; i != end; ++i) {
        lines.show(i * apart + i % apart);
        lines.expect_number(i * apart + i % apart);
    }
}

/// Numbers of more than sixteen digits by their first digits, 1 to 1844, and by what follows.
void numbers_by_their_first_digits_hold(uint64_t first, uint64_t end) {
    Lines lines(0);
    for (uint64_t i = first; i != end; ++i) {
        for (const uint64_t rest :
             {uint64_t{0}, uint64_t{1}, ten_to_8 - 1, ten_to_8, ten_to_16 / 2, ten_to_16 - 1}) {
            uint64_t number = 0;
            if (!__builtin_mul_overflow(i + 1, ten_to_16, &number) &&
                !__builtin_add_overflow(number, rest, &number)) {
                lines.show(number);
                lines.expect_number(number);
            }
        }
    }
}

/// How many numbers on each side of a limit are tried.
constexpr uint64_t around = 2000;

void numbers_around_powers_hold(uint64_t first, uint64_t end) {
    Lines lines(0);
    for (uint64_t i = first; i != end; ++i) {
        const uint64_t power = i / (2 * around);
        const uint64_t limit = power < 64 ? uint64_t{1} << power : powers_of_ten[power - 64];
        const uint64_t number = limit - around + i % (2 * around); // wraps: tries the greatest, too
        lines.show(number);
        lines.expect_number(number);
    }
}

void numbers_beyond_64_bits_are_refused(uint64_t first, uint64_t end) {
    Lines lines(UINT64_MAX);
    for (uint64_t i = 0; i != end; ++i) {
        lines.step();
        if (i >= first) {
            lines.expect_too_large();
        }
    }
}

constexpr Claim claims[] = {
    {"value_of_digits: every number of 1 to 8 digits, four things after it",
     numbers_of_one_to_eight_digits, value_of_digits_holds},
    {"count_leading_digits: every 8 of 8 telling characters", 1 << 24,
     count_leading_digits_holds_for_telling_characters},
    {"count_leading_digits: every pair of characters, at 7 places, among 8 others", 7 << 16,
     count_leading_digits_holds_for_neighbours},
    {"read_sixteen_digits: every number in each half, five in the other", ten_to_8,
     read_sixteen_digits_holds},
    {"read_sixteen_digits: every character at 16 places, among three others", 3 << 12,
     read_sixteen_digits_refuses_others},
    {"four_digits: every number", ten_to_4, four_digits_holds},
    {"eight_digits, SixteenDigits: every number, in each half, five in the other", ten_to_8,
     eight_digits_holds},
    {"lines of numbers, written, counted and read: 10,000,001 of 64 bits, equally apart", 10000001,
     numbers_of_64_bits_hold},
    {"lines of numbers: six of more than 16 digits for all first digits", 1844,
     numbers_by_their_first_digits_hold},
    {"lines of numbers: 4,000 around every power of two and of ten", 84 * 2 * around,
     numbers_around_powers_hold},
    {"lines of numbers: the 2,000 beyond 64 bits are refused", around,
     numbers_beyond_64_bits_are_refused},
    {"lines of numbers, written, counted and read: every number of 32 bits", uint64_t{1} << 32,
     numbers_of_32_bits_hold},
};

} // namespace

int main(int argc, char **argv) {
    return prove(claims, argc, argv);
}
