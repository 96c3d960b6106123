#include "model/printable.h"

#include "kvt_check/characters.h"

namespace kvt_tool {

std::string printable(std::string_view text, std::string_view kept) {
    std::string shown;
    shown.reserve(text.size());
    while (!text.empty()) {
        const kvt_checking::Character character = kvt_checking::first_character(text);
        const bool stays = is_printable(character) || kept.find(text.front()) != kept.npos;
        shown += stays ? text.substr(0, character.bytes) : ".";
        text.remove_prefix(character.bytes);
    }
    return shown;
}

std::string printable_json(std::string json) {
    constexpr char del = '\x7F';
    constexpr char lead_of_others = '\xC2';
    if (json.find(del) == json.npos && json.find(lead_of_others) == json.npos) {
        return json;
    }
    std::string shown;
    std::string_view rest = json;
    while (!rest.empty()) {
        const kvt_checking::Character character = kvt_checking::first_character(rest);
        if (is_printable(character) || rest.front() == '\n') {
            shown += rest.substr(0, character.bytes);
        } else {
            constexpr char digits[] = "0123456789abcdef";
            shown += "\\u00";
            shown += {digits[character.value >> 4 & 15], digits[character.value & 15]};
        }
        rest.remove_prefix(character.bytes);
    }
    return shown;
}

} // namespace kvt_tool
