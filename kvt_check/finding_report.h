// Hands the findings of one check to its caller.
#pragma once

#include <cstddef>
#include <string_view>

#include "cursor.h"
#include "engine/row.h"
#include "finding_words.h"
#include "kvt/kvt_check.h"

namespace kvt_checking {

/// A block that is being checked, and those around it.
struct Frame {
    const Frame *around;
    const kvt_str::Record &table;
    std::string_view name;
    Place opening; ///< of the block's name on its opening line
    bool is_element;
    size_t index; ///< of an element
};

/// What is marked: some characters of one line.
struct Mark {
    const char *line_start;
    size_t line;
    const char *from;
    const char *to;
    size_t first_line = 0; ///< of what comes again, or is not closed, here

    /// All of a line but for the blanks at its ends.
    Mark(const Place &place, const Line &text);

    /// Some of a line.
    Mark(const Place &place, std::string_view marked)
        : line_start(place.line_start), line(place.line), from(marked.data()),
          to(marked.data() + marked.size()) {}

    /// The same, for what comes again here and stood on an earlier line first.
    Mark again(size_t stood_first) const {
        Mark mark = *this;
        mark.first_line = stood_first;
        return mark;
    }
};

/// What the caller of a check asks for.
struct Wanted {
    kvt_finding_callback *callback = nullptr; ///< null when findings are only counted
    void *user = nullptr;
    kvt_check_options options{};
};

class Findings {
public:
    Findings(const char *begin, const char *end, const Wanted &wanted)
        : begin_(begin), end_(end), wanted_(wanted) {}

    size_t count() const { return count_; }

    /// The caller wants no more.
    bool stopped() const { return stopped_; }

    /// The caller looks at each finding. Otherwise findings are only counted.
    bool is_watched() const { return wanted_.callback != nullptr; }

    /// Consequences are wanted, too: the check goes on as the reader does.
    bool follows_reader() const { return wanted_.options.consequences != 0; }

    /// Reports one finding; `parts` are those of its sentence (finding_words.h).
    template <typename... Parts>
    void report(kvt_finding_kind kind, const Mark &mark, const Parts &...parts) {
        suggest(kind, mark, std::string_view(), parts...);
    }

    /// The same with a known word that was probably meant, or an empty one.
    template <typename... Parts>
    void suggest(kvt_finding_kind kind, const Mark &mark, std::string_view nearest,
                 const Parts &...parts) {
        if (stopped_ || (wanted_.options.least != KVT_SEVERITY_STYLE && !is_wanted(kind))) {
            return;
        }
        ++count_;
        if (is_watched()) {
            deliver(kind, mark, nearest, Words(parts..., Suggestion{nearest}));
        }
    }

    /// The innermost block, for the path of findings; null outside of a record.
    const Frame *frame = nullptr;

    /// The number of the message, from 1.
    size_t message = 0;

private:
    bool is_wanted(kvt_finding_kind kind) const;
    void deliver(kvt_finding_kind kind, const Mark &mark, std::string_view nearest,
                 const Words &words);

    const char *begin_;
    const char *end_;
    Wanted wanted_;
    size_t count_ = 0;
    bool stopped_ = false;
};

} // namespace kvt_checking
