// Any bytes: the check of a text ends, its findings lie within the text, and their messages can be
// printed. A text whose findings are of style keeps what check_promise.h lists: it is read without
// a loss, into records whose counts and elements agree.
#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "kvt/kvt_check.h"
#include "property.h"
#include "support/check_promise.h"

using namespace kvt_fuzz;

namespace {

/// What is known of the findings so far.
struct Seen {
    std::string_view text;
    size_t most; ///< findings that are wanted
    size_t count = 0;
    size_t losses = 0;
};

bool is_printable(std::string_view message) {
    return std::none_of(message.begin(), message.end(),
                        [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; });
}

int look_at(const kvt_finding *finding, void *user) {
    auto &seen = *static_cast<Seen *>(user);
    const std::string_view text = seen.text;
    expect(finding->kind < KVT_FINDING_KINDS, "a finding has a kind");
    expect(std::strcmp(finding->name, kvt_finding_name(finding->kind)) == 0, "and the kind's name");
    expect(finding->column >= 1 && finding->line_offset == finding->offset - finding->column + 1,
           "a finding stands on its line");
    expect(finding->offset + finding->length <= text.size(), "a finding stands in the text");
    expect(finding->line_offset == 0 || text[finding->line_offset - 1] == '\n',
           "a line begins after a newline");
    const std::string_view before = text.substr(0, finding->line_offset);
    expect(static_cast<size_t>(std::count(before.begin(), before.end(), '\n')) + 1 == finding->line,
           "lines are counted");
    const std::string_view line = text.substr(finding->line_offset, finding->line_length);
    expect(line.find('\n') == std::string_view::npos, "a line is one line");
    expect(finding->first_line <= finding->line, "what stood first stands above");
    const std::string_view message = finding->message;
    expect(!message.empty() && message.size() < KVT_FINDING_MESSAGE_ROOM,
           "a message fits its room");
    expect(is_printable(message), "a message can be printed");
    expect(finding->nearest == nullptr || *finding->nearest != '\0', "a known word is a word");
    ++seen.count;
    seen.losses += kvt_finding_severity(finding->kind) != KVT_SEVERITY_STYLE;
    return seen.count == seen.most ? 1 : 0;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const auto *bytes = reinterpret_cast<const char *>(data);
    const size_t count = kvt_check(bytes, size, nullptr, nullptr);
    Seen all{{bytes, size}, SIZE_MAX};
    expect(kvt_check(bytes, size, look_at, &all) == count && all.count == count,
           "findings are counted as they are reported");
    expect(kvt_check_losses(bytes, size) == all.losses, "losses are those that are reported");
    Seen consequences{{bytes, size}, SIZE_MAX};
    const kvt_check_options options = {KVT_SEVERITY_STYLE, 1, 0};
    kvt_check_with(bytes, size, &options, look_at, &consequences);
    expect((consequences.losses == 0) == (all.losses == 0), "a consequence has a cause");
    if (count > 1) {
        Seen first{{bytes, size}, count - 1};
        expect(kvt_check(bytes, size, look_at, &first) == count - 1, "a check ends when it should");
    }
    if (all.losses == 0) {
        const std::string text(bytes, strnlen(bytes, size));
        const std::string broken = kvt_test::broken_promise(text);
        if (!broken.empty()) {
            report("a text that loses nothing keeps its promise: " + broken);
        }
    }
    return 0;
}
