// The conversions of numbers alone, against the C and C++ libraries': numbers/put/guid/kvt_str and
// so on. Times are those of one number, of 4,096 in turn, so that their lengths cannot be foreseen.
#include <benchmark/benchmark.h>

#include <array>
#include <charconv>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "benchmarks.h"
#include "codec.h"
#include "text/number.h"

namespace kvt_bench {

namespace {

constexpr size_t numbers_in_turn = 4096;

/// Numbers of one kind.
struct Numbers {
    const char *name;
    uint64_t low;
    uint64_t high;
};

constexpr Numbers digits = {"digit", 0, 9};
constexpr Numbers bytes = {"byte", 0, 255};
constexpr Numbers words = {"32_bits", 0, UINT32_MAX};
constexpr Numbers guids = {"guid", 10000000000000000, UINT64_MAX};

/// The numbers and their text, a line each.
struct Values {
    std::vector<uint64_t> values;
    std::string text;
    std::vector<size_t> begins;
};

Values make_values(const Numbers &numbers) {
    constexpr uint64_t multiplier = 0x5851F42D4C957F2D; // of Knuth's 64-bit generator
    uint64_t state = 1;
    Values made;
    while (made.values.size() < numbers_in_turn) {
        state = state * multiplier + 1;
        const uint64_t mixed = state ^ (state >> 29);
        const uint64_t range = numbers.high - numbers.low + 1;
        made.values.push_back(numbers.low + mixed % range);
        made.begins.push_back(made.text.size());
        made.text += std::to_string(made.values.back()) + "\n";
    }
    // The readers may look further than a number.
    made.text.append(document_padding, '\0');
    return made;
}

/// Room for any number and what a writer may touch after it.
using Room = std::array<char, 40>;

char *put_kvt(Room &room, uint64_t number) {
    return kvt_str::put_number_line(room.data(), number);
}

char *put_sprintf(Room &room, uint64_t number) {
    return room.data() + std::sprintf(room.data(), "%" PRIu64 "\n", number);
}

char *put_to_chars(Room &room, uint64_t number) {
    char *end = std::to_chars(room.data(), room.data() + room.size() - 1, number).ptr;
    *end = '\n';
    return end + 1;
}

/// The readers get the end of the whole text, as the codec has it. It reads by the width of the
/// number that a value is stored in.
template <unsigned width> uint64_t scan_kvt(const char *at, const char *end) {
    return kvt_str::read_plain_number<width>(at, end).value;
}

uint64_t scan_kvt_general(const char *at, const char *) {
    uint64_t number = 0;
    kvt_str::scan_number(at, number);
    return number;
}

uint64_t scan_strtoul(const char *at, const char *) {
    return std::strtoul(at, nullptr, 10);
}

uint64_t scan_from_chars(const char *at, const char *end) {
    uint64_t number = 0;
    std::from_chars(at, end, number);
    return number;
}

template <char *(*put)(Room &, uint64_t)>
void measure_put(benchmark::State &state, const Numbers &numbers) {
    const Values values = make_values(numbers);
    Room room{};
    for (const uint64_t value : values.values) {
        if (std::string(room.data(), put(room, value)) != std::to_string(value) + "\n") {
            fail("a number is not written as it should be");
        }
    }
    size_t next = 0;
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(put(room, values.values[next]));
        benchmark::ClobberMemory();
        next = (next + 1) % numbers_in_turn;
    }
}

template <uint64_t (*scan)(const char *, const char *)>
void measure_scan(benchmark::State &state, const Numbers &numbers) {
    const Values values = make_values(numbers);
    const char *text = values.text.c_str();
    const char *end = text + values.text.size();
    for (size_t i = 0; i < numbers_in_turn; ++i) {
        if (scan(text + values.begins[i], end) != values.values[i]) {
            fail("a number is not read as it should be");
        }
    }
    size_t next = 0;
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(scan(text + values.begins[next], end));
        next = (next + 1) % numbers_in_turn;
    }
}

void add(const char *what, const Numbers &numbers, const char *who,
         void (*measure)(benchmark::State &, const Numbers &)) {
    benchmark::RegisterBenchmark(
        (std::string("numbers/") + what + "/" + numbers.name + "/" + who).c_str(),
        [&numbers, measure](benchmark::State &state) { measure(state, numbers); });
}

} // namespace

void register_numbers() {
    add("scan", digits, "kvt_str", measure_scan<scan_kvt<1>>);
    add("scan", bytes, "kvt_str", measure_scan<scan_kvt<1>>);
    add("scan", words, "kvt_str", measure_scan<scan_kvt<4>>);
    add("scan", guids, "kvt_str", measure_scan<scan_kvt<8>>);
    for (const Numbers *numbers : {&digits, &bytes, &words, &guids}) {
        add("put", *numbers, "kvt_str", measure_put<put_kvt>);
        add("put", *numbers, "sprintf", measure_put<put_sprintf>);
        add("put", *numbers, "to_chars", measure_put<put_to_chars>);
        add("scan", *numbers, "kvt_str_general", measure_scan<scan_kvt_general>);
        add("scan", *numbers, "strtoul", measure_scan<scan_strtoul>);
        add("scan", *numbers, "from_chars", measure_scan<scan_from_chars>);
    }
}

} // namespace kvt_bench
