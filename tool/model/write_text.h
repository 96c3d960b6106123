// Messages in the text form, an empty line after each.
#pragma once

#include <string>
#include <string_view>

#include "message_kinds.h"

namespace kvt_tool {

/// Adds a message's text and an empty line. False when it takes 4 GiB or more.
bool add_text(const kvt_str::MessageKind &kind, const void *record, std::string &text);

/// How a part of a text compares with its normal form, in which an empty line stands between
/// messages.
enum class Likeness {
    same,  ///< with an empty line after every message
    ended, ///< the same, and without the empty line after the last message: nothing may follow
    other,
};

/// Compares a part with what add_text has made of its messages.
Likeness compare(std::string_view part, std::string_view formatted);

/// What two parts are together.
Likeness followed_by(Likeness before, Likeness next);

} // namespace kvt_tool
