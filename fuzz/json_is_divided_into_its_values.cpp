// Any bytes that are taken for JSON: their division ends, and what it finds stands in the input one
// after the other, where it says. Of JSON it finds just the value, or those of a list.
#include <string>
#include <string_view>
#include <vector>

#include "io/byte_source.h"
#include "property.h"
#include "json/json_stream.h"
#include "json/parse_json.h"

using namespace kvt_fuzz;
using namespace kvt_tool;

namespace {

/// The values that are found, which must stand where they are said to.
std::vector<std::string> divide(std::string_view json) {
    std::vector<std::string> values;
    TextSource input(json);
    JsonStream stream(input);
    TextPlace place;
    size_t end = 0;
    while (const auto batch = stream.next()) {
        batch->for_each([&](const Unit &unit) {
            const std::string_view text(unit.text, unit.length);
            values.emplace_back(text);
            if (unit.offset == json.size()) {
                expect(text == "[", "beyond the end is only a list that is not closed");
                return;
            }
            expect(unit.length != 0 && unit.offset >= end, "a value follows the one before");
            expect(json.substr(unit.offset, unit.length) == text, "a value is of the input");
            place.add(json.substr(end, unit.offset - end));
            expect(unit.first_line == place.line && unit.first_column == place.column,
                   "a value stands at its line and column");
            place.add(text);
            end = unit.offset + unit.length;
        });
    }
    return values;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const std::string_view json(reinterpret_cast<const char *>(data), size);
    const std::vector<std::string> found = divide(json);
    std::vector<std::string> expected;
    try {
        const JsonValue value = parse_json(json);
        if (value.kind == JsonKind::list) {
            for (const JsonValue &element : value.parts) {
                expected.emplace_back(element.source);
            }
        } else {
            expected.emplace_back(value.source);
        }
    } catch (const JsonProblem &) {
        return 0;
    }
    expect(found == expected, "JSON is divided into its values");
    return 0;
}
