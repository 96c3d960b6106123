// Any characters, read as a number, and any number, written: as the C library does.
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "property.h"
#include "text/number.h"
#include "text/real.h"

using namespace kvt_fuzz;
using namespace kvt_str;

namespace {

void check_scan_number(const char *text) {
    unsigned long long expected = 77; // 64 bits on every machine
    uint64_t value = 77;
    const bool scans = std::sscanf(text, "%llu", &expected) == 1;
    expect(scan_number(text, value) == scans, "scan_number takes what %llu takes");
    expect(value == expected, "scan_number reads what %llu reads");
}

bool same_bits(float a, float b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

void check_scan_real(const char *text) {
    float expected = 77;
    float value = 77;
    const bool scans = std::sscanf(text, "%f", &expected) == 1;
    expect(scan_real(text, value) == scans, "scan_real takes what %f takes");
    expect(same_bits(value, expected), "scan_real reads what %f reads");

    const PlainReal plain = read_plain_real(text);
    if (plain.next != nullptr) {
        const std::string_view line(text, static_cast<size_t>(plain.next - text));
        expect(line.find_first_not_of("0123456789.") == line.size() - 1 && line.back() == '\n',
               "read_plain_real takes a line of digits");
        expect(same_bits(plain.value, expected), "read_plain_real reads what %f reads");
    }
}

template <unsigned width> void check_plain_number(const char *text) {
    const char *end = std::strchr(text, '\0');
    const PlainNumber number = read_plain_number<width>(text, end);
    const size_t digits = std::strspn(text, "0123456789");
    uint64_t expected = 0;
    bool fits = digits != 0;
    for (size_t i = 0; i < digits; ++i) {
        fits = fits && !__builtin_mul_overflow(expected, uint64_t{10}, &expected) &&
               !__builtin_add_overflow(expected, static_cast<uint64_t>(text[i] - '0'), &expected);
    }
    if (fits && text[digits] == '\n') {
        expect(number.next == text + digits + 1, "a plain number ends after its line");
        expect(number.value == expected, "a plain number has the value of its digits");
    } else {
        expect(number.next == nullptr, "nothing but digits and a newline is a plain number");
    }
}

template <typename Number> void check_written_number(Number number) {
    const std::string line = std::to_string(number) + "\n";
    expect(count_digits(number) == line.size() - 1, "count_digits");
    // The line, and the seven characters at least that follow any line of a message.
    const std::unique_ptr<char[]> out(new char[line.size() + 7]);
    const char *after = put_number_line(out.get(), number);
    expect(std::string_view(out.get(), static_cast<size_t>(after - out.get())) == line,
           "put_number_line writes what %llu writes");
}

void check_written_real(float value) {
    char expected[real_capacity];
    std::snprintf(expected, sizeof expected, "%g", static_cast<double>(value));
    char out[real_capacity];
    const size_t length = format_real(value, out);
    expect(length == std::strlen(expected) && std::strcmp(out, expected) == 0,
           "format_real writes what %g writes");

    float back;
    expect(scan_real(out, back), "what format_real writes can be read");
    char again[real_capacity];
    format_real(back, again);
    expect(std::strcmp(again, out) == 0, "what was read is written the same again");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const InputText text(data, size);
    check_scan_number(text.get());
    check_scan_real(text.get());
    check_plain_number<1>(text.get());
    check_plain_number<4>(text.get());
    check_plain_number<8>(text.get());

    uint64_t number = 0;
    std::memcpy(&number, data, size < sizeof number ? size : sizeof number);
    check_written_number(number);
    check_written_number(static_cast<uint32_t>(number));
    check_written_number(static_cast<uint16_t>(number));
    check_written_number(static_cast<uint8_t>(number));
    // As many digits as the first byte says: most numbers of 64 bits have the most.
    check_written_number(number >> (number & 63));
    const auto bits = static_cast<uint32_t>(number);
    float real;
    std::memcpy(&real, &bits, sizeof real);
    check_written_real(real);
    return 0;
}
