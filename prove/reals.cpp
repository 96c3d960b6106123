// Floats to and from text, against the C library: every float around those that "%g" writes without
// an exponent, and every short decimal that the fast way of reading takes.
#include <bit>
#include <cfloat>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "claim.h"
#include "text/real.h"

using namespace kvt_prove;
using namespace kvt_str;

namespace {

bool same_bits(float a, float b) {
    return std::bit_cast<uint32_t>(a) == std::bit_cast<uint32_t>(b);
}

/// Expects a float to be written as "%g" writes it. Its text stays in `out`.
void expect_written(float value, char (&out)[real_capacity]) {
    char expected[real_capacity];
    std::snprintf(expected, sizeof expected, "%g", static_cast<double>(value));
    const size_t length = format_real(value, out);
    expect(std::strcmp(out, expected) == 0, "format_real writes what \"%g\" writes", expected);
    expect(length == std::strlen(expected), "format_real tells the length", expected);
}

// All floats from one a little below 1e-4 to one a little above 1e6; a positive float is ordered as
// its bits are.
constexpr uint32_t first_bits = std::bit_cast<uint32_t>(0.9999e-4F);
constexpr uint32_t last_bits = std::bit_cast<uint32_t>(1.0001e6F);

void plain_floats_are_written(uint64_t first, uint64_t end) {
    for (uint64_t i = first; i != end; ++i) {
        char out[real_capacity];
        expect_written(std::bit_cast<float>(static_cast<uint32_t>(first_bits + i)), out);
    }
}

/// Every so many floats of all, signs, exponents and what is no number included. Odd, so that the
/// low bits differ.
constexpr uint64_t apart = 509;

void floats_of_all_kinds_survive(uint64_t first, uint64_t end) {
    for (uint64_t i = first; i != end; ++i) {
        const auto value = std::bit_cast<float>(static_cast<uint32_t>(i * apart));
        char out[real_capacity];
        expect_written(value, out);
        float read = 77;
        expect(scan_real(out, read), "what format_real writes can be read", out);
        float expected = 77;
        std::sscanf(out, "%f", &expected);
        expect(same_bits(read, expected), "scan_real reads what \"%f\" reads", out);
    }
}

/// The greatest number of digits that the fast way takes, and some that it refuses.
constexpr uint64_t most_digits = uint64_t{1} << 24;
constexpr uint64_t tried_digits = most_digits + 1000;
constexpr uint64_t most_decimals = 7;

/// Where floats are kept longer than they are, the fast way takes nothing.
constexpr bool fast_way = FLT_EVAL_METHOD == 0;

void expect_read(const std::string &line, bool short_decimal) {
    const bool plain = short_decimal && fast_way;
    const PlainReal read = read_plain_real(line.c_str());
    expect((read.next != nullptr) == plain, "read_plain_real takes short decimals alone", line);
    expect(!plain || read.next == line.c_str() + line.size(), "read_plain_real ends", line);
    expect(!plain || same_bits(read.value, std::strtof(line.c_str(), nullptr)),
           "read_plain_real reads what strtof reads", line);
}

void short_decimals_are_read(uint64_t first, uint64_t end) {
    for (uint64_t i = first; i != end; ++i) {
        const uint64_t digits = i % tried_digits;
        const uint64_t decimals = i / tried_digits;
        std::string line = std::to_string(digits);
        if (line.size() <= decimals) {
            line.insert(0, decimals + 1 - line.size(), '0');
        }
        if (decimals != 0) {
            line.insert(line.size() - decimals, 1, '.');
        }
        line += '\n';
        expect_read(line, digits <= most_digits && decimals <= most_decimals);
    }
}

constexpr Claim claims[] = {
    {"format_real: every float from 0.9999e-4 to 1.0001e6, against \"%g\"",
     last_bits - first_bits + 1, plain_floats_are_written},
    {"format_real and scan_real: every 509th float of all, against \"%g\" and \"%f\"",
     (uint64_t{1} << 32) / apart, floats_of_all_kinds_survive},
    {"read_plain_real: every number to 2^24 + 999 with 0 to 8 decimals, against strtof",
     tried_digits *(most_decimals + 2), short_decimals_are_read},
};

} // namespace

int main(int argc, char **argv) {
    return prove(claims, argc, argv);
}
