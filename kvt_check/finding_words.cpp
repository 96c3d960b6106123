#include "finding_words.h"

#include "characters.h"
#include "invisible.h"

namespace kvt_checking {

namespace {

/// The bytes of a text that are shown, at most.
constexpr size_t longest_quote = 60;

} // namespace

void Words::add_escaped(unsigned char byte) {
    static constexpr char hexadecimal[] = "0123456789abcdef";
    const char escaped[] = {'\\', 'x', hexadecimal[byte >> 4], hexadecimal[byte & 15]};
    add(byte == '\r'   ? std::string_view("\\r")
        : byte == '\t' ? std::string_view("\\t")
        : byte == '\n' ? std::string_view("\\n")
                       : std::string_view(escaped, sizeof escaped));
}

void Words::add_escaped(std::string_view bytes) {
    for (const char byte : bytes) {
        add_escaped(static_cast<unsigned char>(byte));
    }
}

void Words::add(Quoted quoted) {
    std::string_view rest = first_of(quoted.text, longest_quote);
    add(std::string_view("'"));
    while (!rest.empty()) {
        const auto byte = static_cast<unsigned char>(*rest.data());
        const Character character = first_character(rest);
        size_t bytes = 1;
        const Invisible invisible = invisible_at(rest.data(), rest.data() + rest.size());
        if (invisible.bytes != 0) {
            bytes = invisible.bytes;
            add_escaped(first_of(rest, bytes));
            if (name_.empty()) {
                invisible_ = first_of(rest, bytes);
                name_ = invisible.name;
            }
        } else if (is_printable(character)) {
            bytes = character.bytes;
            add(first_of(rest, bytes));
        } else if (quoted.text.size() > longest_quote && byte >= 0xC2 && rest.size() < 4) {
            break; // the cut goes through this character
        } else {
            add_escaped(byte);
        }
        rest = {rest.data() + bytes, rest.size() - bytes};
    }
    add(quoted.text.size() > longest_quote ? "...'" : "'");
}

void Words::add(Unread unread) {
    add(unread.words);
    if (unread.has_number) {
        add(unread.number);
    }
}

void Words::add_name() {
    if (!name_.empty()) {
        add("; ");
        add_escaped(invisible_);
        add(" is ");
        add(name_);
    }
}

void Words::add(Suggestion suggestion) {
    if (!suggestion.word.empty()) {
        add("; did you mean ");
        add(Quoted{suggestion.word});
        add("?");
    }
}

} // namespace kvt_checking
