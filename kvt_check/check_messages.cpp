// Checks messages one after the other: what stands between them, their envelopes, type lines and
// the opening lines of their blocks. The steps are those of MessageSequence::read and read_message.
#include "check_block.h"
#include "check_state.h"
#include "invisible.h"
#include "message_kinds.h"
#include "nearest.h"
#include "read_message.h"
#include "text/boundary.h"

namespace kvt_checking {

using namespace kvt_str;

namespace {

class MessagesCheck {
public:
    explicit MessagesCheck(Check &check)
        : check_(check), findings_(check.findings), cursor_(check.cursor) {}

    void check_all();

private:
    void check_start();
    void check_between();
    void seek_message();

    void check_message();
    void check_envelope();
    void check_type_below(const Line &line, const char *after_colon);
    const MessageKind *check_type_line();
    const MessageKind *check_kind(const Line &line, std::string_view name);
    bool check_record_line(const MessageKind &kind);
    void check_record_name(const MessageKind &kind, const Line &line, std::string_view word);
    bool check_no_brace(const MessageKind &kind, const Line &line, std::string_view word);
    void check_end(const MessageKind &kind);
    void report_text_end();
    void report_open(const Line &line);
    void report_outside(const Line &line, std::string_view text);

    bool is_at_message() const { return opens_message(cursor_.at(), cursor_.end()); }

    Check &check_;
    Findings &findings_;
    Cursor &cursor_;
    bool told_of_blank_lines_ = false;
    Place opening_{nullptr, nullptr, 0}; ///< of the message that is checked
};

/// Steps to the next line that opens a message, or to the end. What cannot be seen before it is
/// stepped over.
void MessagesCheck::seek_message() {
    for (cursor_.skip_blanks(); !cursor_.at_end() && !is_at_message(); cursor_.skip_blanks()) {
        const Line line = cursor_.look_at_line();
        const char *seen = skip_invisible(line.at, line.end);
        if (opens_message(seen, line.end)) {
            cursor_.step_to(seen);
            return;
        }
        cursor_.step_over_line();
    }
}

void MessagesCheck::report_text_end() {
    if (check_.indentation.has_missing()) {
        report_missing(check_, check_.indentation.first_missing());
        return;
    }
    findings_.report(
        KVT_FINDING_NOT_CLOSED, check_.mark(cursor_.at(), cursor_.at()).again(opening_.line),
        "the text ends here, but the message of line ", uint64_t{opening_.line}, " is not closed");
}

/// Reports that a message begins where the one above should be closed.
void MessagesCheck::report_open(const Line &line) {
    if (check_.indentation.has_missing()) {
        report_missing(check_, check_.indentation.first_missing());
        return;
    }
    findings_.report(KVT_FINDING_NOT_CLOSED, check_.mark(line).again(opening_.line),
                     "a message begins here, but that of line ", uint64_t{opening_.line},
                     " is not closed: the reader takes this line for its closing brace, and reads "
                     "neither this message nor those below");
}

// --- One message ---------------------------------------------------------------------------------

void MessagesCheck::check_envelope() {
    const Line line = check_.look_at_line();
    const char *brace = skip_blanks_in_line(line.at + 3, line);
    if (trimmed(line.at + 3, line.end).empty()) {
        findings_.report(KVT_FINDING_MISSING_BRACE, check_.mark(line),
                         "a message begins with the line 'msg {': the reader looks at the first "
                         "three letters only");
    } else if (!has_character(brace, line, '{')) {
        findings_.report(KVT_FINDING_ENVELOPE, check_.mark(line),
                         "a message begins with the line 'msg {': the reader looks at the first "
                         "three letters only, and skips the rest of this line");
    } else {
        check_after_brace(check_, brace, line);
    }
    cursor_.step_over_line();
    cursor_.skip_blanks();
}

/// The kind that the name on a type line stands for, or null.
const MessageKind *MessagesCheck::check_kind(const Line &line, std::string_view name) {
    char copy[type_name_capacity] = {};
    KVT_BOUNDARY(name.size() == sizeof copy - 1);
    KVT_BOUNDARY(name.size() == sizeof copy);
    std::memcpy(copy, name.data(), name.size() < sizeof copy ? name.size() : sizeof copy - 1);
    const MessageKind *kind = find_kind(copy);
    if (kind == nullptr) {
        Nearest nearest(name);
        for (const MessageKind &known : message_kinds()) {
            if (known.record != nullptr) {
                nearest.consider(known.name);
            }
        }
        findings_.suggest(KVT_FINDING_UNKNOWN_KIND, check_.mark(name), nearest.word(),
                          "there is no kind ", Quoted{name}, ": the reader refuses the text");
        return nullptr;
    }
    if (kind->record == nullptr) {
        findings_.report(KVT_FINDING_NO_RECORD, check_.mark(name), "messages of the kind ",
                         Quoted{kind->name}, " carry no record: the reader refuses the text");
        return nullptr;
    }
    const char *after = name.data() + std::string_view(kind->name).size();
    const std::string_view rest = trimmed(after, line.end);
    if (!rest.empty()) {
        findings_.report(KVT_FINDING_LONGER_KIND, check_.mark(rest), "the reader takes this for ",
                         Quoted{kind->name}, " and skips what stands after it, ", Quoted{rest});
    }
    return kind;
}

/// Checks a type line that ends after its colon: the reader takes the next word of the text for the
/// kind.
void MessagesCheck::check_type_below(const Line &line, const char *after_colon) {
    const char *end = cursor_.end();
    const char *name = skip_spaces(after_colon, end);
    char copy[type_name_capacity] = {};
    for (size_t i = 0; i < sizeof copy - 1 && name != end && !is_space(*name); ++i) {
        copy[i] = *name++;
    }
    const MessageKind *kind = copy[0] != '\0' ? find_kind(copy) : nullptr;
    if (kind != nullptr && kind->record != nullptr) {
        findings_.report(KVT_FINDING_TYPE_BELOW, check_.mark(line),
                         "no kind stands after 'type:' on its line: the reader takes ",
                         Quoted{kind->name},
                         " from a line below, and does not read the block after it");
    } else {
        findings_.report(KVT_FINDING_NO_TYPE, check_.mark(line),
                         "no kind stands after 'type:' on its line: the reader refuses the text");
    }
}

/// Checks the type line, and steps to the line after it. Null where the reader knows no kind from
/// it.
const MessageKind *MessagesCheck::check_type_line() {
    static constexpr std::string_view key = "type:";
    const Line line = check_.look_at_line();
    if (!cursor_.begins_with(key)) {
        findings_.report(KVT_FINDING_NO_TYPE, check_.mark(line),
                         "the line after 'msg {' must say the kind, such as 'type: END_JOB': the "
                         "reader refuses the text");
        return nullptr;
    }
    const char *name = skip_spaces(line.at + key.size(), line.end);
    const char *after = name;
    while (after != line.end && !is_space(*after)) {
        ++after;
    }
    if (name == after) {
        check_type_below(line, name);
        return nullptr;
    }
    const MessageKind *kind = check_kind(line, {name, static_cast<size_t>(after - name)});
    cursor_.step_over_line();
    cursor_.skip_blanks();
    return kind;
}

/// Checks a line where the record's block should be opened but is not. False where there is no
/// block at all.
bool MessagesCheck::check_no_brace(const MessageKind &kind, const Line &line,
                                   std::string_view word) {
    if (word == kind.block) {
        const Mark mark = check_.mark(line);
        const bool is_alone = trimmed(line.at + word.size(), line.end).empty();
        cursor_.step_over_line();
        cursor_.skip_blanks();
        const bool is_below = cursor_.begins_with("{");
        report_no_brace(check_, mark, word, is_alone, is_below);
        if (is_below) {
            cursor_.step_over_line();
        }
        return true;
    }
    const bool is_message = is_at_message();
    findings_.report(KVT_FINDING_NO_BLOCK, check_.mark(line), "the block ", Quoted{kind.block},
                     " should be opened here: the reader takes this line for that, and skips it");
    if (is_message) {
        return false;
    }
    const bool closes = has_character(line.at, line, '}');
    cursor_.step_over_line();
    return !closes;
}

/// Checks the line that opens the record's block, and steps to the line after it. False where the
/// message has no block to be checked.
bool MessagesCheck::check_record_line(const MessageKind &kind) {
    if (cursor_.at_end()) {
        report_text_end();
        return false;
    }
    const Line line = check_.look_at_line();
    const std::string_view word = first_word(line.at, line.end);
    if (is_balanced(line)) {
        report_one_line_block(check_, line,
                              "takes the lines below, up to a closing brace, for those of ",
                              kind.block);
        cursor_.step_over_line();
        check_end(kind);
        return false;
    }
    const char *brace = skip_blanks_in_line(line.at + word.size(), line);
    if (word.empty() || is_at_message() || !has_character(brace, line, '{')) {
        return check_no_brace(kind, line, word);
    }
    if (word != kind.block) {
        Nearest nearest(word);
        nearest.consider(kind.block);
        findings_.suggest(KVT_FINDING_BLOCK_NAME, check_.mark(word), nearest.word(),
                          "the block of ", Quoted{kind.name}, " is ", Quoted{kind.block},
                          ": the reader does not look at its name");
    }
    check_after_brace(check_, brace, line);
    cursor_.step_over_line();
    return true;
}

/// Checks the line that closes the envelope. The reader looks only for the next one.
void MessagesCheck::check_end(const MessageKind &kind) {
    cursor_.skip_blanks();
    if (cursor_.at_end()) {
        report_text_end();
        return;
    }
    const Line line = check_.look_at_line();
    if (is_at_message()) {
        report_open(line);
        return;
    }
    if (has_character(line.at, line, '}')) {
        check_after_brace(check_, line.at, line);
        cursor_.step_over_line();
        return;
    }
    const Mark mark = check_.mark(line);
    cursor_.step_over_line();
    cursor_.skip_blanks();
    findings_.report(KVT_FINDING_OUTSIDE, mark, "after the block ", Quoted{kind.block},
                     " only the closing brace of its message belongs: the reader takes this line "
                     "for that, ",
                     cursor_.begins_with("msg") ? "and skips it" : "and stops");
    seek_message();
}

void MessagesCheck::check_message() {
    ++findings_.message;
    check_.indentation.begin_message();
    opening_ = cursor_.here();
    check_envelope();
    if (cursor_.at_end()) {
        findings_.report(KVT_FINDING_NO_TYPE, check_.mark(cursor_.at(), cursor_.at()),
                         "the text ends before it says a kind: the reader refuses it");
        return;
    }
    const MessageKind *kind = check_type_line();
    if (kind == nullptr) {
        seek_message();
        return;
    }
    const Place opening = cursor_.here();
    if (!check_record_line(*kind)) {
        return;
    }
    const Frame frame{nullptr, *kind->record, kind->block, opening, false, 0};
    if (BlockCheck(check_, *kind->record, frame).check_lines() == BlockEnd::closed) {
        check_end(*kind);
    }
}

// --- All of them ---------------------------------------------------------------------------------

/// The reader refuses a text that begins with anything but a message.
void MessagesCheck::check_start() {
    static constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
    const char *begin = cursor_.at();
    if (cursor_.begins_with("msg")) {
        return;
    }
    if (cursor_.begins_with(byte_order_mark)) {
        findings_.report(KVT_FINDING_BYTE_ORDER_MARK,
                         check_.mark(begin, begin + byte_order_mark.size()),
                         "an invisible byte order mark stands before the text: the reader refuses "
                         "it");
        seek_message();
        return;
    }
    const Line first = cursor_.look_at_line();
    const Mark mark = check_.mark(first);
    const std::string_view text = trimmed(first.at, first.end);
    seek_message();
    if (cursor_.at_end()) {
        findings_.report(KVT_FINDING_NO_MESSAGE, mark, "no line 'msg {' begins a message here");
    } else if (trimmed(begin, cursor_.at()).empty()) {
        findings_.report(KVT_FINDING_BEFORE_MESSAGE, mark,
                         "blanks stand before the first message: a text must begin with 'msg', or "
                         "the reader refuses it");
    } else {
        findings_.report(KVT_FINDING_BEFORE_MESSAGE, mark, Quoted{text},
                         " stands before the first message: a text must begin with 'msg', or the "
                         "reader refuses it");
    }
}

/// Reports a line between two messages, which ends the text for the reader.
void MessagesCheck::report_outside(const Line &line, std::string_view text) {
    if (*line.at == '}') {
        report_extra(check_, check_.indentation.take_extra(cursor_.here()), {});
    } else {
        findings_.report(KVT_FINDING_OUTSIDE, check_.mark(line), Quoted{text},
                         " stands outside of the messages: the reader stops here, and reads "
                         "nothing below");
    }
}

/// Steps from the end of a message to the next one, or to the end of the text.
void MessagesCheck::check_between() {
    for (cursor_.skip_blanks(); !cursor_.at_end(); cursor_.skip_blanks()) {
        if (cursor_.begins_with("msg")) {
            return;
        }
        const Line line = check_.look_at_line();
        const std::string_view text = trimmed(line.at, line.end);
        if (!text.empty()) {
            report_outside(line, text);
            seek_message();
            return;
        }
        if (!told_of_blank_lines_) {
            told_of_blank_lines_ = true;
            findings_.report(
                KVT_FINDING_OUTSIDE, check_.mark(line.at, line.end),
                "a line of a carriage return, or the like, stands between two messages: it is not "
                "empty for the reader, which stops here, and reads nothing below");
        }
        cursor_.step_over_line();
    }
}

void MessagesCheck::check_all() {
    for (check_start(); !cursor_.at_end() && !findings_.stopped(); check_between()) {
        check_message();
    }
}

} // namespace

void check_messages(Check &check) {
    MessagesCheck(check).check_all();
}

} // namespace kvt_checking
