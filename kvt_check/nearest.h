// The known word that was probably meant by an unknown one.
#pragma once

#include <cstddef>
#include <string_view>

namespace kvt_checking {

/// Finds the nearest of some words: the first one that takes the fewest changes of a character,
/// where letters of either case are the same and two that changed places are one change.
class Nearest {
public:
    explicit Nearest(std::string_view unknown);

    void consider(std::string_view known);

    /// Empty where no word is so near that it was probably meant.
    std::string_view word() const { return word_; }

private:
    std::string_view unknown_;
    std::string_view word_;
    size_t fewest_; ///< changes that are too many
};

} // namespace kvt_checking
