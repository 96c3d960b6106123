// sscanf with "%hhu", "%hu", "%u" or "%lu" as the format means it.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace kvt_test {

/// Scans a number with a format that ends with its conversion, and returns what sscanf returns.
///
/// The C library scans all of these as a long and cuts it to the width. In texts that is a long of
/// 64 bits, on every machine, since machines exchange them. Where it has 32, the C library would
/// stop at the greatest number of 32 bits, so there it is asked for 64 bits, which are cut here.
template <typename Number> int scan_as_long(const char *text, std::string format, Number *number) {
    if constexpr (sizeof(long) == sizeof(uint64_t)) {
        return std::sscanf(text, format.c_str(), number);
    }
    format.replace(format.rfind('%'), std::string::npos, "%llu");
    unsigned long long scanned = 0;
    const int found = std::sscanf(text, format.c_str(), &scanned);
    if (found == 1) {
        *number = static_cast<Number>(scanned);
    }
    return found;
}

} // namespace kvt_test
