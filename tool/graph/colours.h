// Colours that people with any colour vision can tell apart, as in the palette of Okabe and Ito.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace kvt_tool {

inline constexpr char plain_fill[] = "#f2f2f2";
inline constexpr char plain_line[] = "#555555";
inline constexpr char faint_line[] = "#aaaaaa";

/// An explained look: a colour or a form, and what it means.
struct LegendEntry {
    std::string meaning;
    std::string fill = "white";
    std::string line = plain_line;
    std::string style = "solid"; ///< of the border
};

/// Gives numbers (status codes, trees) their colours. The first numbers have always the same, so
/// that pictures can be compared; greater ones take what the message leaves free.
class Colours {
public:
    /// Numbers that occur; `what` names them in the legend ("status").
    Colours(std::string what, std::vector<uint32_t> numbers);

    /// The colour of a number; grey when there are too many.
    const char *of(uint32_t number) const;

    /// An entry for each number that has a colour, and one for the others, if any.
    std::vector<LegendEntry> legend() const;

private:
    std::string what_;
    std::map<uint32_t, const char *> colours_;
    bool others_ = false;
};

} // namespace kvt_tool
