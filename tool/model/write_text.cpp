#include "model/write_text.h"

#include "kvt/kvt_str.h"

namespace kvt_tool {

bool add_text(const kvt_str::MessageKind &kind, const void *record, std::string &text) {
    const auto type = static_cast<int32_t>(kind.value);
    const uint32_t size = kvt_str_get_buf_size(type, record);
    if (size == 0) {
        return false;
    }
    const size_t before = text.size();
    text.resize(before + size);
    kvt_msg_to_str(type, record, text.data() + before);
    text.back() = '\n'; // in place of the NUL
    return true;
}

Likeness compare(std::string_view part, std::string_view formatted) {
    if (part == formatted) {
        return Likeness::same;
    }
    return !formatted.empty() && part == formatted.substr(0, formatted.size() - 1)
               ? Likeness::ended
               : Likeness::other;
}

Likeness followed_by(Likeness before, Likeness next) {
    return before == Likeness::same ? next : Likeness::other;
}

} // namespace kvt_tool
