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

std::string write_again(const std::string &text) {
    std::string written;
    TextSource source(text);
    UnitStream stream(source);
    while (const auto batch = stream.next()) {
        batch->for_each([&](const Unit &unit) { written += write_again(unit, Texts::all).text; });
    }
    return written;
}

/// The messages of a unit that may not be read back as they were written, in a form that is.
std::string settled(const Unit &unit, std::string text) {
    std::string again = write_again(text);
    if (again != text) {
        // Without these texts only lengths that are not true are left, and strings that are cut.
        text = write_again(unit, Texts::plain).text;
        again = write_again(text);
    }
    while (again != text) {
        text = std::exchange(again, write_again(again));
    }
    return text;
}

} // namespace

NormalForm add_normal_form(const Unit &unit, std::string &text) {
    NormalForm form;
    Written written = write_again(unit, Texts::all);
    form.likeness = compare({unit.text, unit.length}, written.text);
    const bool found =
        form.likeness == Likeness::other &&
        check_unit(unit, findings_from(KVT_SEVERITY_LOST), FindingForm::line, form.findings);
    form.is_incomplete = !written.is_written || (!written.is_read && !found);
    text += written.reads_back ? written.text : settled(unit, std::move(written.text));
    return form;
}

} // namespace kvt_tool
