#include "finding_words.h"

#include "invisible.h"

namespace kvt_checking {

namespace {

/// The bytes of a text that are shown, at most.
constexpr size_t longest_quote = 60;

bool continues_a_character(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// The bytes of the character that a text begins with when it is one of UTF-8 beyond ASCII; else 0.
/// Overlong forms count too: nothing but a terminal looks at them.
size_t bytes_of_character(std::string_view text) {
    const char *byte = text.data();
    const auto lead = static_cast<unsigned char>(byte[0]);
    const size_t bytes = lead >= 0xC2 && lead < 0xE0   ? 2
                         : lead >= 0xE0 && lead < 0xF0 ? 3
                         : lead >= 0xF0 && lead < 0xF5 ? 4
                                                       : 0;
    if (bytes > text.size()) {
        return 0;
    }
    for (size_t i = 1; i < bytes; ++i) {
        if (!continues_a_character(byte[i])) {
            return 0;
        }
    }
    return bytes;
}

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
        size_t bytes = 1;
        const Invisible invisible = invisible_at(rest.data(), rest.data() + rest.size());
        if (invisible.bytes != 0) {
            bytes = invisible.bytes;
            add_escaped(first_of(rest, bytes));
            if (name_.empty()) {
                invisible_ = first_of(rest, bytes);
                name_ = invisible.name;
            }
        } else if (byte >= ' ' && byte < 0x7F) {
            add(first_of(rest, 1));
        } else if (const size_t more = bytes_of_character(rest); more != 0) {
            add(first_of(rest, more));
            bytes = more;
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
