// A claim about each of a number of cases, and a program that goes through all of them on all
// processors. A case that does not hold ends the program.
//
//   PROGRAM             every case
//   PROGRAM --sample N  every N-th stretch of cases, the first and the last
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace kvt_prove {

struct Claim {
    const char *text; ///< what holds for every case
    uint64_t cases;
    void (*check)(uint64_t first, uint64_t end); ///< checks the cases from `first` to before `end`
};

/// Goes through the claims, for main. Each process has its own memory and log.
int prove(std::span<const Claim> claims, int argc, char **argv);

/// Ends the program: the claim does not hold for `input`.
[[noreturn]] void refute(const char *broken, std::string_view input);

inline void expect(bool holds, const char *property, std::string_view input) {
    if (!holds) {
        refute(property, input);
    }
}

/// Ends the program: the claim does not hold for a number.
[[noreturn]] void refute(const char *broken, uint64_t input);

inline void expect(bool holds, const char *property, uint64_t input) {
    if (!holds) {
        refute(property, input);
    }
}

} // namespace kvt_prove
