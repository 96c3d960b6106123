#include "text/number.h"

namespace kvt_str {

bool scan_number(const char *at, uint64_t &value) {
    while (is_space(*at)) {
        ++at;
    }
    const bool negative = *at == '-';
    if (*at == '-' || *at == '+') {
        ++at;
    }
    if (!is_digit(*at)) {
        return false;
    }
    uint64_t number = 0;
    bool overflow = false;
    for (; is_digit(*at); ++at) {
        overflow |= __builtin_mul_overflow(number, uint64_t{10}, &number);
        overflow |= __builtin_add_overflow(number, static_cast<uint64_t>(*at - '0'), &number);
    }
    // Too large a number is the greatest one, whatever its sign.
    value = overflow ? UINT64_MAX : negative ? 0 - number : number;
    return true;
}

} // namespace kvt_str
