// Texts within a DOT text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kvt_tool {

/// The bytes of a name as UTF-8 that can be shown in one line: control characters and what is no
/// UTF-8 become \xNN.
std::string visible(std::string_view name);

/// The text of a character array of C, up to its NUL if it has one, made visible.
template <size_t Capacity> std::string visible_array(const char (&array)[Capacity]) {
    const std::string_view all(array, Capacity);
    return visible(all.substr(0, all.find('\0')));
}

/// A visible text cut to the length of a label.
std::string shortened(const std::string &text);

/// A text of valid UTF-8 as a quoted string of DOT that shows it; newlines part its lines.
std::string quoted(std::string_view text);

/// The same as the value of a tooltip, where Graphviz 2.42 takes escapes for such once more.
std::string quoted_tooltip(std::string_view text);

/// A text of valid UTF-8 within an HTML-like label.
std::string in_html(std::string_view text);

/// "1 host", "2 hosts".
std::string counted(size_t count, std::string_view singular, std::string_view plural);

} // namespace kvt_tool
