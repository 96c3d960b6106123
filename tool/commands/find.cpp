// kvt find: where a number or a text stands.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <string>
#include <unordered_map>
#include <vector>

#include "commands/command_line.h"
#include "commands/printed_values.h"
#include "io/messages.h"
#include "io/pipeline.h"
#include "io/problems.h"
#include "model/field_path.h"
#include "model/json_line.h"
#include "model/needle.h"
#include "model/value_lines.h"
#include "json/to_json.h"

namespace kvt_tool {

namespace {

struct FindOptions {
    bool as_json = false;
    GuidForm guids = GuidForm::hexadecimal;
    unsigned threads = 1;
};

class FindJob : public PrintedValues {
public:
    FindJob(const Needle &needle, const FindOptions &options)
        : needle_(needle), options_(options), values_(std::get<FieldPath>(FieldPath::parse("**"))) {
    }

    void work(const Unit &unit, Result &result) const {
        if (!needle_.may_be_in({unit.text, unit.length})) {
            return;
        }
        const bool read =
            read_messages(unit, [&](const ReadMessage &message) { search(message, result.text); });
        result.unread.note(unit, read);
    }

    ExitStatus end(const std::string &, bool) const { return unread_.status(); }

private:
    struct Match {
        std::string path;
        uint64_t line; ///< in the input; that of the message where the value's is not known
        Json value;    ///< as words, in a string, unless JSON is printed
    };

    void search(const ReadMessage &message, std::string &text) const {
        std::vector<Match> matches;
        values_.each(message.kind, message.record, [&](const FoundField &found) {
            if (needle_.is_in(found)) {
                matches.push_back({std::string(found.path), 0, shown(found)});
            }
        });
        if (matches.empty()) {
            return;
        }
        find_lines(message, matches);
        for (const Match &match : matches) {
            text += options_.as_json ? as_json(message, match) : as_words(message, match);
        }
    }

    Json shown(const FoundField &found) const {
        if (options_.as_json) {
            return to_json(found, {.guids = options_.guids});
        }
        return shape_of(*found.row) == Shape::text ? shown_value(*found.row, found.record)
                                                   : found.value(options_.guids);
    }

    /// Sets the lines, and puts the matches in their order. A 0 that stands nowhere is no match.
    void find_lines(const ReadMessage &message, std::vector<Match> &matches) const {
        std::unordered_map<std::string, uint64_t> lines;
        uint64_t line = message.line;
        const char *counted = message.begin;
        each_value_line(
            message.kind, message.begin,
            [&](const Row &row, std::string_view text) { return needle_.is_on_line(row, text); },
            [&](const std::string &path, const char *at) {
                line += static_cast<uint64_t>(std::count(counted, at, '\n'));
                counted = at;
                lines[path] = line;
            });
        for (Match &match : matches) {
            const auto known = lines.find(match.path);
            match.line = known != lines.end() ? known->second : 0;
        }
        if (needle_.is_zero()) {
            std::erase_if(matches, [](const Match &match) { return match.line == 0; });
        }
        for (Match &match : matches) {
            match.line = match.line != 0 ? match.line : message.line;
        }
        std::ranges::stable_sort(matches, {}, &Match::line);
    }

    static std::string as_words(const ReadMessage &message, const Match &match) {
        return message.unit.input + ":" + std::to_string(match.line) + ": " + message.kind.name +
               ": " + match.path + ": " + match.value.get_ref<const std::string &>() + "\n";
    }

    static std::string as_json(const ReadMessage &message, const Match &match) {
        const Json object = {{"file", message.unit.input},   {"line", match.line},
                             {"message_line", message.line}, {"type", message.kind.name},
                             {"path", match.path},           {"value", match.value}};
        return json_line(object);
    }

    const Needle &needle_;
    const FindOptions &options_;
    FieldPath values_; ///< all
};

ExitStatus find_values(const std::vector<std::string> &inputs, const Needle &needle,
                       const FindOptions &options) {
    Progress progress(inputs);
    FindJob job(needle, options);
    const ExitStatus status = Pipeline(job, options.threads, progress).run(inputs);
    finish_printing();
    return status == could_not_work ? status : job.found() ? all_well : found_problems;
}

} // namespace

void add_find(CLI::App &app) {
    static CommonOptions common;
    static FindOptions options;
    static std::string what;
    CLI::App *command = add_command(
        app, "find", "Find where a GUID, a LID, another number or a text stands.",
        "A number, in decimal or as 0x..., is found wherever a field has this value, and in texts\n"
        "as a whole word in either form. Anything else is found in texts, as a part of them; "
        "large\n"
        "and small letters differ. Each line has file, line, kind, path and value.\n\n"
        "Exit status: 0 something was found, 1 nothing was, 2 a file cannot be read.\n\n"
        "Example: kvt find 0x0002c90300a1b2c4 archive/*.kvt");
    command->add_option("WHAT", what, "A number or a text")->required()->type_name("");
    take_inputs(command, common);
    command->add_flag("--json", options.as_json, "Print a JSON object for each value, one a line");
    take_guid_form(command, options.guids);
    take_threads(command, common);
    command->callback([] {
        options.threads = common.threads;
        if (what.empty()) {
            throw CLI::ValidationError("WHAT: an empty text is in every text");
        }
        chosen = [] {
            const Needle needle(what);
            return find_values(common.inputs, needle, options);
        };
    });
}

} // namespace kvt_tool
