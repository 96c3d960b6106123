#include "support/check_promise.h"

#include <cstdlib>
#include <cstring>
#include <map>
#include <set>
#include <sstream>
#include <string_view>
#include <vector>

#include "kvt/kvt_check.h"
#include "kvt/kvt_str.h"
#include "kvt/message_layer.h"
#include "message_kinds.h"
#include "support/exact_copy.h"
#include "support/memory_watch.h"
#include "support/messages.h"
#include "text/number.h"
#include "text/real.h"
#include "text/scanner.h"

namespace kvt_test {

using namespace kvt_str;

namespace {

/// The rows of a kind's records by their keys, those of blocks in them too.
using Rows = std::map<std::string, const Row *>;

void collect_rows(const Record &table, Rows &rows) {
    for (const Row &row : table.rows) {
        rows.emplace(std::string(row.label.text, row.key_length), &row);
        if (row.element != nullptr) {
            collect_rows(*row.element, rows);
        }
    }
}

std::string trim(const std::string &text) {
    size_t begin = 0;
    size_t end = text.size();
    while (begin != end && is_space(text[begin])) {
        ++begin;
    }
    while (end != begin && is_space(text[end - 1])) {
        --end;
    }
    return text.substr(begin, end - begin);
}

/// A number as the writer spells it. Any other value as it is.
std::string plain_value(const Row *row, const std::string &value) {
    if (row != nullptr && row->kind == RowKind::real) {
        float number = 0;
        char characters[real_capacity] = "";
        scan_real(value.c_str(), number);
        format_real(number, characters);
        return number == 0 ? "0" : characters;
    }
    size_t digits = 0;
    const bool negative = value[0] == '-';
    digits += negative || value[0] == '+';
    if (digits == value.size() || value.find_first_not_of("0123456789", digits) != value.npos) {
        return value;
    }
    while (digits + 1 < value.size() && value[digits] == '0') {
        ++digits;
    }
    const std::string number = value.substr(digits);
    return negative && number != "0" ? "-" + number : number;
}

/// A line in a form that two spellings of it share; empty for one that need not be written.
std::string plain_line(const Rows &rows, const std::string &line) {
    const std::string text = trim(line);
    const size_t end = text.find_first_of(": \t{");
    const std::string key = text.substr(0, end);
    const std::string rest = end != std::string::npos ? trim(text.substr(end)) : "";
    if (text.empty() || text[0] == '}') {
        return text.substr(0, 1);
    }
    // With or without braces that nobody needs.
    if (rest.find_first_not_of("{ \t") == std::string::npos) {
        return key + " {";
    }
    const auto found = rows.find(key);
    const Row *row = found != rows.end() ? found->second : nullptr;
    std::string value = trim(rest.substr(1));
    while (!value.empty() && value.back() == '{') {
        value = trim(value.substr(0, value.size() - 1));
    }
    const std::string plain = value.empty() ? value : plain_value(row, value);
    if (plain == "0" || plain == "\"\"" ||
        (row != nullptr && row->kind == RowKind::bytes &&
         plain == std::to_string(row->terminator))) {
        return {};
    }
    return key + ": " + plain;
}

/// The lines of a message, each in its plain form. Neighbours of a joined text are joined.
std::vector<std::string> plain_lines(const Rows &rows, const std::string &text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string raw; std::getline(stream, raw);) {
        const std::string line = plain_line(rows, raw);
        if (line.empty()) {
            continue;
        }
        const std::string key = line.substr(0, line.find(':'));
        const auto row = rows.find(key);
        if (!lines.empty() && row != rows.end() && row->second->kind == RowKind::joined_text &&
            lines.back().compare(0, key.size() + 1, key + ":") == 0) {
            lines.back().back() = ',';
            lines.back() += line.substr(key.size() + 3);
        } else {
            lines.push_back(line);
        }
    }
    return lines;
}

/// A line of the text that is not written; empty when there is none.
std::string lost_line(const MessageKind &kind, const std::string &text,
                      const std::string &written) {
    Rows rows;
    collect_rows(*kind.record, rows);
    const std::vector<std::string> lines = plain_lines(rows, written);
    std::multiset<std::string> there(lines.begin(), lines.end());
    std::set<std::string> values; // that were there, which may be said again
    for (const std::string &line : plain_lines(rows, text)) {
        const auto row = rows.find(line.substr(0, line.find(':')));
        const bool is_value = row != rows.end() && row->second->kind < RowKind::joined_text;
        const auto found = there.find(line);
        if (found != there.end()) {
            there.erase(found);
            if (is_value) {
                values.insert(line);
            }
        } else if (!is_value || values.count(line) == 0) {
            return line;
        }
    }
    return {};
}

/// Where messages begin: lines that begin with "msg". In a text without findings no other line
/// does, and no quoted text goes on to another line.
std::vector<size_t> message_starts(const std::string &text) {
    std::vector<size_t> starts;
    for (size_t line = 0; line < text.size(); line = text.find('\n', line) + 1) {
        const size_t start = text.find_first_not_of(" \t", line);
        if (start != std::string::npos && text.compare(start, 3, "msg") == 0) {
            starts.push_back(start);
        }
        if (text.find('\n', line) == std::string::npos) {
            break;
        }
    }
    return starts;
}

std::string broken_by_message(const std::string &text, const MessageKind &kind,
                              const std::string &agreeing) {
    const auto value = static_cast<int32_t>(kind.value);
    const MemoryWatch watch;
    void *record = nullptr;
    if (kvt_msg_from_str(0, nullptr, text.c_str(), &record) != 0) {
        return "a message is not read for itself";
    }
    const std::string written = text_of_record(value, record);
    kvt_msg_release(value, record);
    if (watch.alive() != 0) {
        return "a record is not released by its counts";
    }
    if (written != agreeing) {
        return "counts and elements do not agree";
    }
    const std::string lost = lost_line(kind, text, written);
    if (!lost.empty()) {
        return "this line is lost: " + lost;
    }
    const size_t worst =
        count_findings(text) == 0 ? count_findings(written) : count_losses(written);
    return worst == 0 ? "" : "what is written has findings: " + written;
}

} // namespace

size_t count_findings(const std::string &text) {
    return kvt_check(exact_copy_without_nul(text).get(), text.size(), nullptr, nullptr);
}

size_t count_losses(const std::string &text) {
    return kvt_check_losses(exact_copy_without_nul(text).get(), text.size());
}

std::string broken_promise(const std::string &text) {
    char **texts = nullptr;
    uint32_t *kinds = nullptr;
    int32_t count = 0;
    if (kvt_msg_arr_from_str(text.c_str(), static_cast<uint32_t>(text.size()), &texts, &kinds,
                             &count) != 0) {
        return "the messages are not read";
    }
    std::vector<std::string> written;
    std::vector<const MessageKind *> read;
    for (int32_t i = 0; i < count; ++i) {
        written.emplace_back(texts[i]);
        read.push_back(find_kind(static_cast<int32_t>(kinds[i])));
        std::free(texts[i]);
    }
    std::free(texts);
    std::free(kinds);

    const std::vector<size_t> starts = message_starts(text);
    if (starts.size() != written.size()) {
        return "a message is left out";
    }
    for (size_t i = 0; i < starts.size(); ++i) {
        const size_t end = i + 1 < starts.size() ? starts[i + 1] : text.size();
        const std::string broken =
            broken_by_message(text.substr(starts[i], end - starts[i]), *read[i], written[i]);
        if (!broken.empty()) {
            return broken;
        }
    }
    return {};
}

} // namespace kvt_test
