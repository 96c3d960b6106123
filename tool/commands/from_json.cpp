// kvt from-json: messages that are JSON to the text form.
#include <CLI/CLI.hpp>
#include <new>
#include <string>
#include <vector>

#include "commands/command_line.h"
#include "diff/diff_records.h"
#include "io/messages.h"
#include "io/output.h"
#include "io/pipeline.h"
#include "kvt/kvt_check.h"
#include "model/record_content.h"
#include "model/write_text.h"
#include "json/from_json.h"
#include "json/json_stream.h"

namespace kvt_tool {

namespace {

/// What became of some units.
struct Converted {
    std::string text;
    std::string words; ///< for standard error
    ExitStatus status = all_well;
};

/// What stands in a text without findings, and is read as something else.
std::string changes_of(const kvt_str::MessageKind &kind,
                       const std::vector<Difference> &differences) {
    std::string words;
    for (const Difference &difference : differences) {
        words += (words.empty() ? "" : "; ") + (kind.block + ("." + difference.path)) + ": " +
                 difference.before + " would be " + difference.after;
    }
    return words;
}

/// What the reader would lose of a message's text: quotes and braces within its texts, mostly, and
/// digits of floats. Empty when it reads just the same message.
std::string losses_of(const OwnedMessage &made, const std::string &text) {
    const std::string no_name;
    const Unit unit{no_name, text.c_str(), text.size(), 1, 0, false};
    const Record &table = *made.kind().record;
    size_t messages = 0;
    bool same = false;
    std::string changes;
    const bool read = read_messages(unit, [&](const ReadMessage &message) {
        ++messages;
        if (message.kind.value == made.kind().value) {
            same = same_content(table, made.record(), message.record);
            changes =
                same ? ""
                     : changes_of(made.kind(), diff_records(table, made.record(), message.record));
        }
    });
    if (read && same && messages == 1) {
        return "";
    }
    std::string losses;
    const auto add = [](const kvt_finding *finding, void *user) {
        auto &words = *static_cast<std::string *>(user);
        words += words.empty() ? "" : "; ";
        words += std::string(finding->path) + ": " + finding->message;
        return 0;
    };
    kvt_check(text.data(), text.size(), add, &losses);
    return !losses.empty()    ? losses
           : !changes.empty() ? changes
                              : "the reader would take it for something else";
}

class FromJsonJob {
public:
    using Result = Converted;

    static void work(const Unit &unit, Converted &result) {
        const std::string place = unit.input + ":" + std::to_string(unit.first_line);
        try {
            const OwnedMessage made = from_json(parse_json({unit.text, unit.length}));
            std::string text;
            if (!add_text(made.kind(), made.record(), text)) {
                throw JsonProblem{0, "the message's text takes 4 GiB or more"};
            }
            const std::string losses = losses_of(made, text);
            if (!losses.empty()) {
                throw JsonProblem{0, "the message could not be read back: " + losses};
            }
            result.text += text;
        } catch (const JsonProblem &problem) {
            const uint64_t line = unit.first_line + (problem.line > 0 ? problem.line - 1 : 0);
            result.words += unit.input + ":" + std::to_string(line) + ": " + problem.what + "\n";
        } catch (const std::bad_alloc &) {
            result.words += place + ": out of memory\n";
            result.status = could_not_work;
        }
    }

    void begin(const InputFile &) { status_ = all_well; }

    void take(Converted &&result) {
        if (!result.words.empty()) {
            say(result.words);
            status_ = worse(status_, found_problems);
        }
        status_ = worse(status_, result.status);
        std::string_view text = result.text;
        if (!text.empty()) {
            text.remove_suffix(1);
            print(printed_ ? "\n" : "");
            print(text);
            printed_ = true;
        }
    }

    ExitStatus end(const std::string &, bool) const { return status_; }

private:
    ExitStatus status_ = all_well;
    bool printed_ = false;
};

/// Prints the messages of all inputs, which are JSON, in the text form.
ExitStatus convert_from_json(const std::vector<std::string> &inputs, unsigned threads) {
    Progress progress(inputs);
    FromJsonJob job;
    const ExitStatus status = Pipeline<FromJsonJob, JsonStream>(job, threads, progress).run(inputs);
    finish_printing();
    return status;
}

} // namespace

void add_from_json(CLI::App &app) {
    static CommonOptions common;
    CLI::App *command = add_command(
        app, "from-json", "Print messages that are JSON in the text form.",
        "Takes what \"kvt json\" prints: messages one on a line, one after the other, or in a "
        "list.\n"
        "A message with something that a record cannot hold is left out, with its line and "
        "reason.\n\n"
        "Exit status: 0 all is well, 1 a message is left out or cannot be read back, 2 a file "
        "cannot\n"
        "be read.\n\n"
        "Example: kvt json job.kvt | jq '.[].end_job.reservation_id = \"7\"' | kvt from-json");
    take_inputs(command, common);
    take_threads(command, common);
    command->callback([] {
        chosen = [] {
            return convert_from_json(common.inputs, common.threads);
        };
    });
}

} // namespace kvt_tool
