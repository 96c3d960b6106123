#include "finding_report.h"

#include <cstring>

#include "finding_kinds.h"

namespace kvt_checking {

namespace {

/// Room for a path and its NUL: the frames are five at most, and their names short.
constexpr size_t path_room = 300;

void add_path(Cut<path_room> &path, const Frame &frame) {
    if (frame.around != nullptr) {
        add_path(path, *frame.around);
        path.add(".");
    }
    path.add(frame.name);
    if (frame.is_element) {
        path.add("[");
        path.add(uint64_t{frame.index});
        path.add("]");
    }
}

} // namespace

Mark::Mark(const Place &place, const Line &text) : Mark(place, trimmed(text.at, text.end)) {}

bool Findings::is_wanted(kvt_finding_kind kind) const {
    return find_finding_kind(kind)->severity >= wanted_.options.least;
}

void Findings::deliver(kvt_finding_kind kind, const Mark &mark, std::string_view nearest,
                       const Words &words) {
    Cut<path_room> path;
    if (frame != nullptr) {
        add_path(path, *frame);
    }
    Cut<100> known;
    known.add(nearest);
    const size_t rest = static_cast<size_t>(end_ - mark.line_start);
    const void *newline = rest != 0 ? std::memchr(mark.line_start, '\n', rest) : nullptr;

    kvt_finding finding;
    finding.kind = kind;
    finding.name = find_finding_kind(kind)->name;
    finding.line = mark.line;
    finding.column = static_cast<size_t>(mark.from - mark.line_start) + 1;
    finding.offset = static_cast<size_t>(mark.from - begin_);
    finding.length = static_cast<size_t>(mark.to - mark.from);
    finding.line_offset = static_cast<size_t>(mark.line_start - begin_);
    finding.line_length =
        newline != nullptr
            ? static_cast<size_t>(static_cast<const char *>(newline) - mark.line_start)
            : rest;
    finding.first_line = mark.first_line;
    finding.message = words.text();
    finding.nearest = nearest.empty() ? nullptr : known.text();
    finding.path = path.text();
    finding.in_message = message;
    stopped_ = wanted_.callback(&finding, wanted_.user) != 0;
}

} // namespace kvt_checking
