#include "io/normal_form.h"

#include <utility>

#include "io/messages.h"
#include "model/reads_back.h"

namespace kvt_tool {

namespace {

enum class Texts {
    all,
    plain, ///< without those that look like lines
};

struct Written {
    std::string text;
    bool is_read;           ///< as read_messages tells
    bool is_written = true; ///< no message takes 4 GiB or more, and is left out
    bool reads_back = true; ///< all records of it
};

/// The messages of a unit as they are read.
Written write_again(const Unit &unit, Texts texts) {
    Written written;
    written.is_read = read_messages(unit, [&](const ReadMessage &message) {
        if (texts == Texts::plain) {
            drop_texts_that_look_like_lines(*message.kind.record, message.record);
        }
        written.reads_back = written.reads_back && reads_back(*message.kind.record, message.record);
        written.is_written =
            add_text(message.kind, message.record, written.text) && written.is_written;
    });
    return written;
}

std::string write_again(const std::string &text, Texts texts) {
    std::string written;
    TextSource source(text);
    UnitStream stream(source);
    while (const auto batch = stream.next()) {
        batch->for_each([&](const Unit &unit) { written += write_again(unit, texts).text; });
    }
    return written;
}

/// How often a text may change before quoted texts go that look like lines. The longest string is
/// cut in the first round; each text with a newline may take a few.
constexpr int most_rounds = 4;

/// Reads what was written, and writes it again, until nothing changes any more. A text that does
/// not settle soon loses those of its texts that look like lines.
std::string settled(std::string text) {
    for (int round = 0;; ++round) {
        std::string again = write_again(text, round < most_rounds ? Texts::all : Texts::plain);
        if (again == text) {
            return text;
        }
        text = std::move(again);
    }
}

} // namespace

NormalForm add_normal_form(const Unit &unit, std::string &text) {
    NormalForm form;
    Written written = write_again(unit, Texts::all);
    form.likeness = compare({unit.text, unit.length}, written.text);
    const bool found = form.likeness == Likeness::other &&
                       check_unit(unit, FindingKinds().set(), FindingForm::line, form.findings);
    form.is_incomplete = !written.is_written || (!written.is_read && !found);
    text += written.reads_back ? written.text : settled(std::move(written.text));
    return form;
}

} // namespace kvt_tool
