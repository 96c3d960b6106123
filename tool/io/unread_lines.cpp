#include "io/unread_lines.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "kvt/kvt_check.h"
#include "text/scanner.h"

namespace kvt_tool {

namespace {

/// Where what a finding says is lost.
enum class Extent {
    nothing, ///< nothing is
    line,    ///< on its line, and on the one that this repeats
    block,   ///< on all lines of the block that its line opens
    below,   ///< anywhere
};

Extent extent_of(kvt_finding_kind kind) {
    if (kvt_finding_severity(kind) == KVT_SEVERITY_STYLE) {
        return Extent::nothing;
    }
    switch (kind) {
    case KVT_FINDING_LONGER_KIND:
    case KVT_FINDING_BLOCK_NAME:
    case KVT_FINDING_UNKNOWN_KEY:
    case KVT_FINDING_STRAY_LINE:
    case KVT_FINDING_COMMENT:
    case KVT_FINDING_INVISIBLE:
    case KVT_FINDING_LONGER_KEY:
    case KVT_FINDING_NO_COLON:
    case KVT_FINDING_NO_VALUE:
    case KVT_FINDING_NOT_A_NUMBER:
    case KVT_FINDING_AFTER_NUMBER:
    case KVT_FINDING_HEXADECIMAL:
    case KVT_FINDING_GROUPED:
    case KVT_FINDING_FRACTION:
    case KVT_FINDING_EXPONENT:
    case KVT_FINDING_UNIT:
    case KVT_FINDING_OUT_OF_RANGE:
    case KVT_FINDING_ROUNDED:
    case KVT_FINDING_NO_QUOTES:
    case KVT_FINDING_BEFORE_TEXT:
    case KVT_FINDING_EMPTY_TEXT:
    case KVT_FINDING_AFTER_TEXT:
    case KVT_FINDING_LONG_TEXT:
    case KVT_FINDING_REPEATED_KEY:
    case KVT_FINDING_WRONG_COUNT:
    case KVT_FINDING_LATE_COUNT:
    case KVT_FINDING_LONE_COUNT:
    case KVT_FINDING_WRONG_LENGTH:
    case KVT_FINDING_TOO_MANY:
        return Extent::line;
    case KVT_FINDING_UNKNOWN_BLOCK:
        return Extent::block;
    default:
        return Extent::below;
    }
}

std::string_view trimmed(std::string_view line) {
    constexpr std::string_view blanks = " \t\r";
    const size_t first = line.find_first_not_of(blanks);
    return first == std::string_view::npos
               ? std::string_view()
               : line.substr(first, line.find_last_not_of(blanks) - first + 1);
}

class UnreadLines {
public:
    explicit UnreadLines(const Unit &unit)
        : begin_(kvt_str::skip_blanks(unit.text)), end_(unit.text + unit.length),
          first_line_(unit.first_line +
                      static_cast<uint64_t>(std::count(unit.text, begin_, '\n'))) {}

    std::vector<UnreadLine> find() {
        const std::string_view text(begin_, static_cast<size_t>(end_ - begin_));
        kvt_check(text.data(), text.size(), take, this);
        if (all_) {
            paths_.clear();
        }
        std::vector<UnreadLine> lines;
        uint64_t number = 0;
        for (std::string_view rest = text; !rest.empty();) {
            const std::string_view line = rest.substr(0, rest.find('\n'));
            rest.remove_prefix(std::min(line.size() + 1, rest.size()));
            const auto path = paths_.find(++number);
            if ((all_ || path != paths_.end()) && !trimmed(line).empty()) {
                lines.push_back({first_line_ + number - 1,
                                 path != paths_.end() ? path->second : std::string(),
                                 std::string(trimmed(line))});
            }
        }
        return lines;
    }

private:
    static int take(const kvt_finding *finding, void *user) {
        auto &lines = *static_cast<UnreadLines *>(user);
        switch (extent_of(finding->kind)) {
        case Extent::nothing:
            break;
        case Extent::block:
            lines.add_block(*finding);
            break;
        case Extent::line:
            lines.paths_.emplace(finding->line, finding->path);
            if (finding->first_line != 0) {
                lines.paths_.emplace(finding->first_line, finding->path);
            }
            break;
        case Extent::below:
            lines.all_ = true;
            return 1;
        }
        return 0;
    }

    void add_block(const kvt_finding &finding) {
        const char *begin = begin_ + finding.line_offset;
        const char *end = kvt_str::find_block_end(begin);
        const auto count = static_cast<size_t>(std::count(begin, end, '\n'));
        for (size_t line = finding.line; line < finding.line + std::max<size_t>(count, 1); ++line) {
            paths_.emplace(line, finding.path);
        }
    }

    const char *begin_; ///< of the unit's first line that is not blank
    const char *end_;
    uint64_t first_line_;
    std::map<uint64_t, std::string> paths_; ///< of the lines that are not read, by their numbers
    bool all_ = false;
};

} // namespace

std::vector<UnreadLine> find_unread_lines(const Unit &unit) {
    return UnreadLines(unit).find();
}

} // namespace kvt_tool
