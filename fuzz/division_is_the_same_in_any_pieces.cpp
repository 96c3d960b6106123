// Any bytes: their units do not depend on the pieces in which they come, nor on how much is read at
// once. They are all of the input, but for what is dropped of text outside of messages.
#include <string>
#include <vector>

#include "property.h"
#include "tool/units.h"

using namespace kvt_fuzz;
using namespace kvt_tool;

namespace {

/// Sizes with which a small input has long units.
constexpr size_t long_unit = 60;
constexpr size_t kept = 20;

void check_whole(const std::string &input, const std::vector<UnitFacts> &units) {
    size_t offset = 0;
    for (const UnitFacts &unit : units) {
        expect(unit.offset == offset, "units follow each other, but after one that is cut");
        expect(input.compare(unit.offset, unit.text.size(), unit.text) == 0,
               "a unit is a part of the input");
        offset += unit.text.size();
        if (unit.is_cut) {
            const UnitFacts *next = &unit + 1;
            offset = next != units.data() + units.size() ? next->offset : input.size();
            expect(unit.text.size() == kept && offset - unit.offset > long_unit,
                   "only long text outside of messages is cut");
        }
    }
    expect(offset == input.size(), "nothing is left out");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const std::string input(reinterpret_cast<const char *>(data), size);
    const std::vector<UnitFacts> whole =
        facts_of_units(input, SIZE_MAX, {.long_unit = long_unit, .kept = kept});
    check_whole(input, whole);
    for (const size_t piece : {size_t{1}, size_t{2}, size_t{3}, size_t{7}, size_t{64}}) {
        for (const size_t block : {size_t{1}, size_t{16}, size_t{100}}) {
            const UnitSizes sizes = {.block = block, .long_unit = long_unit, .kept = kept};
            if (facts_of_units(input, piece, sizes) != whole) {
                report("pieces of " + std::to_string(piece) + " bytes give the same units");
            }
        }
    }
    return 0;
}
