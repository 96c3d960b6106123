#include "fmt.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "input.h"
#include "kvt/kvt_str.h"
#include "kvt/message_layer.h"
#include "read_message.h"
#include "text/scanner.h"

namespace kvt_tool {

namespace {

using namespace kvt_str;

constexpr MessageReader tool_reader = {"kvt", &MessageKind::no_memory};

/// The first line that begins a message, from the line after `at` on, or the text's end.
const char *find_next_message(const char *at) {
    do {
        at = kvt_str::next_line(at);
    } while (*at != '\0' && !begins_message(at));
    return at;
}

/// The line at `at`, shortened for a message.
std::string excerpt(const char *at) {
    constexpr size_t longest = 60;
    const size_t length = std::strcspn(at, "\n");
    std::string shown(at, std::min(length, longest));
    return length > longest ? shown + "..." : shown;
}

/// Formats the messages of one input.
class Formatter {
public:
    Formatter(std::string name, const std::string &content, bool &printed_before)
        : name_(std::move(name)), content_(content), input_{Text(content.c_str()), Counts::agree},
          printed_before_(printed_before) {}

    ExitStatus format();

private:
    const char *format_message(const char *at);
    const char *behind_message(const char *first_line, const char *behind_record);
    void explain_unread(const char *at);
    void print(uint32_t kind, const void *record);
    void problem(const char *at, const std::string &what);
    size_t line_of(const char *at);

    std::string name_;
    const std::string &content_;
    Input input_; ///< counts are made to agree: the records are written and released by them
    bool &printed_before_; ///< by this command, so that the next message follows an empty line
    ExitStatus status_ = all_well;
    const char *counted_ = content_.c_str(); ///< newlines before it are in lines_
    size_t lines_ = 1;
};

size_t Formatter::line_of(const char *at) {
    if (at < counted_) {
        return lines_ - static_cast<size_t>(std::count(at, counted_, '\n'));
    }
    lines_ += static_cast<size_t>(std::count(counted_, at, '\n'));
    counted_ = at;
    return lines_;
}

void Formatter::problem(const char *at, const std::string &what) {
    std::fflush(stdout); // what is printed of the messages before stands before it on a terminal
    status_ = worse(status_, report(name_, line_of(at), what));
}

void Formatter::print(uint32_t kind, const void *record) {
    const auto type = static_cast<int32_t>(kind);
    const uint32_t size = kvt_str_get_buf_size(type, record);
    if (size == 0) {
        status_ = cannot_use(name_, "a message takes 4 GiB or more");
        return;
    }
    std::string text(size, '\0');
    kvt_msg_to_str(type, record, text.data());
    if (printed_before_) {
        std::fputc('\n', stdout);
    }
    printed_before_ = true;
    std::fwrite(text.data(), 1, size - 1, stdout);
}

void Formatter::explain_unread(const char *at) {
    const char *type_line = kvt_str::next_line(at);
    char type[type_name_capacity];
    scan_type_name(type_line, type);
    const MessageKind *kind = find_kind(type);
    if (type[0] == '\0') {
        problem(type_line, "a line \"type: KIND\" must follow the message's first line");
    } else if (kind == nullptr || kind->record == nullptr) {
        problem(type_line,
                std::string("\"") + type + "\" is not a kind of message; \"kvt kinds\" lists them");
    } else {
        problem(at, "out of memory");
        status_ = could_not_work;
    }
}

/// The message after the one whose record has been read up to `behind_record`.
const char *Formatter::behind_message(const char *first_line, const char *behind_record) {
    if (*behind_record == '}') {
        return kvt_str::next_line(behind_record);
    }
    const std::string which =
        "the message that begins in line " + std::to_string(line_of(first_line));
    if (*behind_record == '\0') {
        problem(behind_record, which + " is not closed");
        return behind_record;
    }
    problem(behind_record, which + " should end here, before: " + excerpt(behind_record));
    return begins_message(behind_record) ? behind_record : find_next_message(behind_record);
}

const char *Formatter::format_message(const char *at) {
    const MessageKind *kind = nullptr;
    void *record = nullptr;
    const char *behind = read_message(input_, at, tool_reader, kind, &record);
    if (behind == nullptr) {
        explain_unread(at);
        return find_next_message(at);
    }
    print(kind->value, record);
    kvt_msg_release(static_cast<int32_t>(kind->value), record);
    return behind_message(at, behind);
}

ExitStatus Formatter::format() {
    const char *end = content_.c_str() + content_.size();
    for (const char *at = skip_blanks(content_.c_str()); *at != '\0';) {
        if (begins_message(at)) {
            at = format_message(at);
        } else {
            problem(at, "not in any message: " + excerpt(at));
            at = find_next_message(at);
        }
    }
    if (input_.text.end() != end) {
        problem(input_.text.end(), "a NUL character ends the text here; what follows is not read");
    }
    return status_;
}

} // namespace

ExitStatus format_messages(const std::vector<std::string> &inputs) {
    ExitStatus status = all_well;
    bool printed = false;
    for (const std::string &input : inputs) {
        const std::optional<std::string> content = read_input(input);
        status = worse(status, content.has_value()
                                   ? Formatter(shown_name(input), *content, printed).format()
                                   : could_not_work);
    }
    if (std::fflush(stdout) != 0) {
        status = cannot_use("standard output", std::strerror(errno));
    }
    return status;
}

} // namespace kvt_tool
