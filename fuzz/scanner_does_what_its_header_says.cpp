// The functions that step through a text, from many positions and with many lengths, against what
// kvt_str.h says of them; and their fast forms against the plain ones.
#include <cstring>

#include "kvt/kvt_str.h"
#include "property.h"
#include "support/literal_scanner.h"
#include "text/scanner.h"
#include "text/text.h"

using namespace kvt_fuzz;
using namespace kvt_test;

namespace {

void check_steps(const char *at, const kvt_str::Text &text) {
    expect(next_line(at) == literal_next_line(at), "next_line");
    expect(check_start_msg(at) == literal_brace(at, '{'), "check_start_msg");
    expect(check_end_msg(at) == literal_brace(at, '}'), "check_end_msg");
    expect(find_end_msg(at) == literal_block_end(at), "find_end_msg");

    expect(text.after_line(at) == kvt_str::after_newline(at), "Text::after_line");
    expect(text.skip_blanks(at) == at + std::strspn(at, " \t\n"), "Text::skip_blanks");
    expect(text.find_block_end(at) == kvt_str::find_block_end(at), "Text::find_block_end");
    kvt_str::Text copy(text);
    expect(copy.find_quote(at) == at + std::strcspn(at, "\""), "Text::find_quote");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static constexpr uint64_t most_positions = 24;
    const InputText input(data, size);
    const kvt_str::Text text(input.get());
    const uint64_t length = input.length();
    for (uint64_t i = 0; i <= length && i < most_positions; ++i) {
        // Of a short text every position, of a longer one the first and some others.
        const uint64_t place =
            length < most_positions || i == 0 ? i : choice(input, i) % (length + 1);
        const char *at = input.get() + place;
        check_steps(at, text);

        const uint64_t rest = length - place;
        const uint64_t chosen = choice(input, i + 100);
        for (const uint64_t distance : {uint64_t{0}, rest, rest + 1, chosen % (rest + 1),
                                        chosen & 31, uint64_t{UINT32_MAX}}) {
            const auto steps = static_cast<uint32_t>(distance);
            expect(next_msg(at, steps) == literal_next_message(at, steps), "next_msg");
        }
    }
    return 0;
}
