#include "io/read_as_whole.h"

#include <algorithm>
#include <optional>

#include "io/input.h"
#include "io/unit_stream.h"
#include "kvt/message_layer.h"
#include "read_message.h"
#include "text/scanner.h"

namespace kvt_tool {

namespace {

constexpr size_t largest_text = size_t{64} << 20;

constexpr kvt_str::MessageReader reader = {"kvt", &kvt_str::MessageCodec::no_memory_in_sequence};

uint64_t count_messages(const std::string &text) {
    TextSource source(text);
    UnitStream stream(source);
    uint64_t count = 0;
    while (const auto batch = stream.next()) {
        batch->for_each([&](const Unit &unit) {
            count += kvt_str::begins_message(kvt_str::skip_blanks(unit.text)) ? 1 : 0;
        });
    }
    return count;
}

/// The content of a file; nothing for a pipe, or for a file that is too large.
std::optional<std::string> content_of(const std::string &name) {
    const std::optional<uint64_t> size = size_of_input(name);
    if (name == standard_input || !size.has_value() || *size > largest_text) {
        return std::nullopt;
    }
    InputFile file(name);
    std::string content(*size, '\0');
    size_t length = 0;
    while (length < content.size() && file.usable()) {
        const size_t more = file.read(content.data() + length, content.size() - length);
        if (more == 0) {
            break;
        }
        length += more;
    }
    content.resize(length);
    return content;
}

} // namespace

WholeReading read_as_whole(const std::string &text) {
    WholeReading reading;
    reading.all_messages = count_messages(text);
    kvt_str::Input input{kvt_str::Text(text.c_str()), kvt_str::Counts::agree};
    uint64_t line = 1;
    const char *counted = text.c_str();
    const char *at = counted;
    do {
        line += static_cast<uint64_t>(std::count(counted, at, '\n'));
        counted = at;
        const kvt_str::MessageKind *kind = nullptr;
        void *record = nullptr;
        const char *closing = kvt_str::begins_message(at)
                                  ? kvt_str::read_message(input, at, reader, kind, &record)
                                  : nullptr;
        if (closing == nullptr) {
            reading.refused_line = line;
            return reading;
        }
        kvt_msg_release(static_cast<int32_t>(kind->value), record);
        ++reading.messages;
        reading.last_line = line;
        const auto read = static_cast<size_t>(closing - text.c_str());
        at = kvt_str::next_message(closing, static_cast<uint32_t>(text.size() - read));
    } while (at != nullptr && kvt_str::begins_message(at));
    return reading;
}

std::string words_on_whole(const std::string &input) {
    const std::optional<std::string> text = content_of(input);
    const WholeReading reading = text.has_value() ? read_as_whole(*text) : WholeReading();
    if (reading.is_all()) {
        return {};
    }
    const std::string begin =
        input + ": a program that reads the file as a whole, with " + "kvt_msg_arr_from_str, gets ";
    const std::string of = std::to_string(reading.all_messages) +
                           (reading.all_messages == 1 ? " message" : " messages");
    if (reading.refused_line != 0) {
        return begin + "none of " + of + ": it is refused at line " +
               std::to_string(reading.refused_line) + "\n";
    }
    return begin + std::to_string(reading.messages) + " of " + of + ", the last one at line " +
           std::to_string(reading.last_line) + "\n";
}

} // namespace kvt_tool
