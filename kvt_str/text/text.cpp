#include "text/text.h"

#include <bit>

#include "text/number.h"

namespace kvt_str {

std::string_view plain_quoted(const char *at, const char *end) {
    constexpr uint64_t each = 0x0101010101010101;
    // The lowest byte that is set is the first character that is searched for.
    const auto found = [](uint64_t characters, char wanted) {
        const uint64_t zero = characters ^ (each * static_cast<uint8_t>(wanted));
        return (zero - each) & ~zero & (each * 0x80);
    };
    for (const char *stop = at; end - stop >= 8; stop += 8) {
        const uint64_t characters = load_eight(stop);
        const uint64_t stops =
            found(characters, '"') | found(characters, '}') | found(characters, '\n');
        if (stops != 0) {
            stop += std::countr_zero(stops) / 8;
            return stop[0] == '"' && stop[1] == '\n'
                       ? std::string_view(at, static_cast<size_t>(stop - at))
                       : std::string_view();
        }
    }
    return {};
}

} // namespace kvt_str
