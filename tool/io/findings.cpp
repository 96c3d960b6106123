#include "io/findings.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string_view>

#include "kvt_check/characters.h"
#include "model/json_line.h"
#include "model/printable.h"
#include "text/text.h"

namespace kvt_tool {

namespace {

/// Characters of a line that are shown, at most, and those before the place.
constexpr size_t widest = 100;
constexpr size_t before_place = 60;

/// Findings of one message that are kept. With more, nobody looks for the last ones, and they would
/// take far more memory than the message.
constexpr size_t most_findings = 100000;

/// Characters of a key that are told in a summary, at most.
constexpr size_t longest_key = 40;

/// What a message begins with that follows one.
constexpr char next_message[] = "msg {\n";

bool continues_character(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// The word that a line begins with, as a key is written.
std::string_view first_word(std::string_view line) {
    const size_t begin = std::min(line.find_first_not_of(" \t"), line.size());
    const std::string_view rest = line.substr(begin);
    return rest.substr(0, std::min(rest.find_first_not_of("abcdefghijklmnopqrstuvwxyz"
                                                          "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"
                                                          "_-."),
                                   longest_key));
}

/// A part of a line as a terminal can show it.
std::string shown_part(std::string_view part) {
    return printable(part, "\t");
}

/// What stands under a part of a line so that the next column is the same: tabs, and a blank for
/// each other character.
std::string underneath(std::string_view part, char mark) {
    std::string blanks;
    while (!part.empty()) {
        blanks += part.front() == '\t' ? '\t' : mark;
        part.remove_prefix(kvt_checking::first_character(part).bytes);
    }
    return blanks;
}

struct Colours {
    const char *place, *name, *mark, *off;
};

constexpr Colours no_colours = {"", "", "", ""};
constexpr Colours terminal_colours = {"\033[1m", "\033[1;31m", "\033[1;32m", "\033[0m"};

/// One check: where its findings go and in what form.
struct Check {
    const Unit &unit;
    const char *text; ///< the unit's without the blanks before it, or a copy of that
    uint64_t offset;  ///< of the text, in the input
    uint64_t first_line;
    const FindingKinds &wanted;
    FindingForm form;
    std::vector<Finding> &findings;
    size_t end = 0;       ///< of the text that is the unit's own
    bool is_open = false; ///< the text ends before its message is closed
    size_t count = 0;
    kvt_severity worst_of_rest = KVT_SEVERITY_STYLE;

    static int add(const kvt_finding *finding, void *user) {
        auto &check = *static_cast<Check *>(user);
        check.is_open |= finding->kind == KVT_FINDING_NOT_CLOSED && finding->offset == check.end;
        if (!check.wanted[finding->kind] || finding->offset > check.end) {
            return 0;
        }
        const kvt_severity severity = kvt_finding_severity(finding->kind);
        if (++check.count <= most_findings) {
            check.findings.push_back({finding->kind, check.text_of(*finding), finding->line,
                                      std::string(first_word(check.line_at(*finding))), severity});
        } else {
            check.worst_of_rest = std::max(check.worst_of_rest, severity);
        }
        return 0;
    }

    std::string text_of(const kvt_finding &finding) const {
        return form == FindingForm::none   ? std::string()
               : form == FindingForm::json ? as_json(finding)
                                           : as_words(finding);
    }

    /// Stands for the findings that are not kept.
    Finding rest() const {
        const size_t hidden = count - most_findings;
        const std::string words = std::to_string(hidden) + " findings more before the next message";
        const nlohmann::ordered_json object = {{"file", unit.input},
                                               {"line", first_line},
                                               {"name", "more-findings"},
                                               {"message", words}};
        return {KVT_FINDING_KINDS,
                form == FindingForm::json
                    ? json_line(object)
                    : unit.input + ":" + std::to_string(first_line) + ": " + words + "\n",
                first_line,
                "",
                worst_of_rest,
                hidden};
    }

    std::string_view line_at(const kvt_finding &finding) const {
        return {text + finding.line_offset, finding.line_length};
    }

    std::string as_words(const kvt_finding &finding) const {
        const Colours &colours = form == FindingForm::coloured ? terminal_colours : no_colours;
        std::string words = colours.place + unit.input + ":" + std::to_string(finding.line) + ":" +
                            std::to_string(finding.column) + ": " + colours.off + colours.name +
                            finding.name + colours.off + ": " + finding.message + " [" +
                            kvt_severity_name(kvt_finding_severity(finding.kind)) + "]\n";
        return form == FindingForm::line ? words : words + marked_line(finding, colours);
    }

    std::string marked_line(const kvt_finding &finding, const Colours &colours) const {
        const std::string_view line = line_at(finding);
        const size_t place = std::min(finding.column - 1, line.size());
        size_t from = place > before_place && line.size() > widest ? place - before_place : 0;
        while (from > 0 && continues_character(line[from])) {
            --from;
        }
        const std::string_view shown = line.substr(from, widest);
        const std::string_view before = line.substr(from, place - from);
        const std::string_view marked =
            line.substr(place, std::min(finding.length, from + shown.size() - place));
        const std::string number = std::to_string(finding.line);
        const std::string margin = "  " + std::string(number.size(), ' ') + " | ";
        std::string underline = underneath(marked, '~');
        underline = "^" + (underline.empty() ? "" : underline.substr(1));
        const char *cut_before = from > 0 ? "..." : "";
        const char *cut_after = from + shown.size() < line.size() ? "..." : "";
        return "  " + number + " | " + cut_before + shown_part(shown) + cut_after + "\n" + margin +
               (from > 0 ? "   " : "") + underneath(before, ' ') + colours.mark + underline +
               colours.off + "\n";
    }

    std::string as_json(const kvt_finding &finding) const {
        nlohmann::ordered_json object = {
            {"file", unit.input},
            {"line", finding.line},
            {"column", finding.column},
            {"offset", offset + finding.offset},
            {"length", finding.length},
            {"name", finding.name},
            {"severity", kvt_severity_name(kvt_finding_severity(finding.kind))},
            {"message", finding.message},
            {"path", finding.path},
            {"text", line_at(finding)},
        };
        if (finding.nearest != nullptr) {
            object["nearest"] = finding.nearest;
        }
        return json_line(object);
    }
};

} // namespace

FindingKinds unread_findings() {
    FindingKinds kinds;
    for (const kvt_finding_kind kind :
         {KVT_FINDING_NO_MESSAGE, KVT_FINDING_BYTE_ORDER_MARK, KVT_FINDING_BEFORE_MESSAGE,
          KVT_FINDING_OUTSIDE, KVT_FINDING_NUL, KVT_FINDING_NO_TYPE, KVT_FINDING_UNKNOWN_KIND,
          KVT_FINDING_NO_RECORD, KVT_FINDING_NOT_CLOSED, KVT_FINDING_EXTRA_BRACE}) {
        kinds.set(kind);
    }
    return kinds;
}

bool leaves_out_some(kvt_finding_kind kind) {
    switch (kind) {
    case KVT_FINDING_KINDS: // stands for several
    case KVT_FINDING_NO_MESSAGE:
    case KVT_FINDING_BYTE_ORDER_MARK:
    case KVT_FINDING_BEFORE_MESSAGE:
        return false;
    default:
        return unread_findings()[kind];
    }
}

FindingKinds findings_from(kvt_severity least) {
    FindingKinds kinds;
    for (int number = 0; number < KVT_FINDING_KINDS; ++number) {
        kinds[static_cast<size_t>(number)] =
            kvt_finding_severity(static_cast<kvt_finding_kind>(number)) >= least;
    }
    return kinds;
}

size_t check_unit(const Unit &unit, const FindingKinds &wanted, FindingForm form,
                  std::vector<Finding> &findings, const FindingScope &scope) {
    // Blanks may stand before a message, but for the first one of a text.
    const bool is_beginning = scope.from_beginning && unit.offset == 0;
    const char *text = is_beginning ? unit.text : kvt_str::skip_blanks(unit.text);
    const auto before = static_cast<size_t>(text - unit.text);
    if (before == unit.length && !is_beginning) {
        return 0;
    }
    const auto lines_before = static_cast<uint64_t>(std::count(unit.text, text, '\n'));
    Check check{unit, text,    unit.offset + before, unit.first_line + lines_before, wanted,
                form, findings};
    const std::string_view checked(text, unit.length - before);
    const kvt_check_options options = {KVT_SEVERITY_STYLE, scope.consequences ? 1 : 0,
                                       check.first_line};
    check.end = checked.size();
    const size_t kept = findings.size();
    kvt_check_with(checked.data(), checked.size(), &options, Check::add, &check);
    if (check.is_open && unit.is_before_message) {
        // The check sees that a message follows, and tells what becomes of those below.
        const std::string with_next = std::string(checked) + next_message;
        findings.erase(findings.begin() + static_cast<std::ptrdiff_t>(kept), findings.end());
        check.text = with_next.c_str();
        check.count = 0;
        kvt_check_with(with_next.data(), with_next.size(), &options, Check::add, &check);
    }
    if (check.count > most_findings) {
        findings.push_back(check.rest());
    }
    return check.count;
}

} // namespace kvt_tool
