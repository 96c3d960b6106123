#include "graph/colours.h"

#include <algorithm>
#include <iterator>

namespace kvt_tool {

namespace {

// Yellow and blue come last: yellow lines are faint on white, black letters dim on blue.
constexpr const char *palette[] = {"#56b4e9", "#e69f00", "#2fb38c", "#cc79a7",
                                   "#d55e00", "#f0e442", "#0072b2"};
constexpr char other_colour[] = "#c0c0c0";

} // namespace

Colours::Colours(std::string what, std::vector<uint32_t> numbers) : what_(std::move(what)) {
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    bool taken[std::size(palette)] = {};
    for (const uint32_t number : numbers) {
        if (number < std::size(palette)) {
            colours_[number] = palette[number];
            taken[number] = true;
            continue;
        }
        const auto *free = std::find(std::begin(taken), std::end(taken), false);
        if (free == std::end(taken)) {
            others_ = true;
            break;
        }
        const auto index = free - std::begin(taken);
        colours_[number] = palette[index];
        taken[index] = true;
    }
}

const char *Colours::of(uint32_t number) const {
    const auto found = colours_.find(number);
    return found != colours_.end() ? found->second : other_colour;
}

std::vector<LegendEntry> Colours::legend() const {
    std::vector<LegendEntry> entries;
    for (const auto &[number, colour] : colours_) {
        entries.push_back({what_ + " " + std::to_string(number), colour});
    }
    if (others_) {
        entries.push_back({"another " + what_, other_colour});
    }
    return entries;
}

} // namespace kvt_tool
