#include "invisible.h"

#include "text/number.h"

namespace kvt_checking {

namespace {

/// A range of characters of UTF-8 that differ in their last byte.
struct Range {
    std::string_view lead; ///< the bytes before the last
    unsigned char first, last;
    std::string_view name;
};

constexpr Range ranges[] = {
    {"\xC2", 0x80, 0x9F, "a control character"},
    {"\xC2", 0xA0, 0xA0, "a no-break space"},
    {"\xC2", 0xAD, 0xAD, "a soft hyphen"},
    {"\xE2\x80", 0x80, 0x8A, "a space of another width"},
    {"\xE2\x80", 0x8B, 0x8D, "a character without width"},
    {"\xE2\x80", 0x8E, 0x8F, "a mark of direction"},
    {"\xE2\x80", 0xA8, 0xA9, "a separator of lines"},
    {"\xE2\x80", 0xAA, 0xAE, "a mark of direction"},
    {"\xE2\x80", 0xAF, 0xAF, "a no-break space"},
    {"\xE2\x81", 0x9F, 0x9F, "a space of another width"},
    {"\xE2\x81", 0xA0, 0xA0, "a character without width"},
    {"\xE3\x80", 0x80, 0x80, "a space of another width"},
    {"\xEF\xBB", 0xBF, 0xBF, "a byte order mark"},
};

bool begins_with(const char *at, const char *end, const Range &range) {
    const size_t lead = range.lead.size();
    if (static_cast<size_t>(end - at) <= lead || std::string_view(at, lead) != range.lead) {
        return false;
    }
    const auto last = static_cast<unsigned char>(at[lead]);
    return last >= range.first && last <= range.last;
}

} // namespace

Invisible invisible_at(const char *at, const char *end) {
    const auto byte = static_cast<unsigned char>(*at);
    if (byte < 0x80) {
        const bool is_plain = byte == '\t' || byte == '\n';
        const bool is_control = (byte < ' ' && !is_plain) || byte == 0x7F;
        return byte == '\r' ? Invisible{"a carriage return", 1}
               : is_control ? Invisible{"a control character", 1}
                            : Invisible{};
    }
    for (const Range &range : ranges) {
        if (begins_with(at, end, range)) {
            return {range.name, range.lead.size() + 1};
        }
    }
    return {};
}

const char *skip_invisible(const char *at, const char *end) {
    while (at != end) {
        const size_t bytes = kvt_str::is_space(*at) ? 1 : invisible_at(at, end).bytes;
        if (bytes == 0) {
            break;
        }
        at += bytes;
    }
    return at;
}

} // namespace kvt_checking
