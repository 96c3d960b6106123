// kvt json: messages to JSON.
#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "commands/command_line.h"
#include "io/messages.h"
#include "io/output.h"
#include "io/pipeline.h"
#include "io/unread.h"
#include "model/json_line.h"
#include "model/printable.h"
#include "json/schema.h"
#include "json/to_json.h"

namespace kvt_tool {

namespace {

struct JsonOptions {
    JsonForm form;
    bool lines = false; ///< one message on a line; otherwise one list, for people
    unsigned threads = 1;
};

/// What became of some units.
struct Converted {
    std::string text;
    Unread unread;
};

/// A list for people has each message indented by two blanks.
std::string in_list(const std::string &json) {
    std::string indented = "  ";
    for (const char character : json) {
        indented += character;
        if (character == '\n') {
            indented += "  ";
        }
    }
    return indented;
}

class ToJsonJob {
public:
    using Result = Converted;

    explicit ToJsonJob(const JsonOptions &options) : options_(options) {}

    void work(const Unit &unit, Converted &result) const {
        const bool read = read_messages(unit, [&](const ReadMessage &message) {
            const Json json = to_json(message.kind, message.record, options_.form);
            result.text +=
                options_.lines ? json_line(json) : in_list(printable_json(json.dump(2))) + ",\n";
        });
        result.unread.note(unit, read);
    }

    void begin(const InputFile &) { unread_.begin(); }

    void take(Converted &&result) {
        unread_.take(result.unread);
        std::string_view text = result.text;
        if (text.empty()) {
            return;
        }
        if (!options_.lines) {
            print(printed_ ? ",\n" : "[\n");
            text.remove_suffix(2);
        }
        print(text);
        printed_ = true;
    }

    ExitStatus end(const std::string &input, bool) {
        const ExitStatus status = unread_.end(input);
        return unread_.has_findings() ? worse(status, found_problems) : status;
    }

    void finish() const {
        if (!options_.lines) {
            print(printed_ ? "\n]\n" : "[]\n");
        }
    }

private:
    const JsonOptions &options_;
    UnreadOfInput unread_;
    bool printed_ = false;
};

/// Prints the messages of all inputs as JSON.
ExitStatus convert_to_json(const std::vector<std::string> &inputs, const JsonOptions &options) {
    Progress progress(inputs);
    ToJsonJob job(options);
    const ExitStatus status = Pipeline(job, options.threads, progress).run(inputs);
    job.finish();
    finish_printing();
    return status;
}

/// Prints a JSON Schema of what convert_to_json prints for a message.
ExitStatus print_json_schema() {
    print(json_schema());
    finish_printing();
    return all_well;
}

} // namespace

void add_json(CLI::App &app) {
    static CommonOptions common;
    static JsonOptions options;
    static bool schema = false;
    CLI::App *command = add_command(
        app, "json", "Print messages as JSON.",
        "A message is an object of its type and its record; repeated lines are lists, counts "
        "follow\n"
        "from them. Numbers of 64 bits are strings, since many programs lose digits of them. A "
        "text\n"
        "that is no UTF-8 is an object {\"hex\": \"...\"} of its bytes. \"kvt from-json\" takes "
        "all\n"
        "of these forms. Where something is lost, standard error says how many findings there "
        "are.\n\n"
        "Exit status: 0 all is well, 1 something of a text is lost, 2 a file cannot be read.\n\n"
        "Example: kvt json --lines archive.kvt | jq -r "
        "'select(.type==\"END_JOB\").end_job.job_id'");
    take_inputs(command, common);
    command->add_flag("-l,--lines", options.lines, "One message a line, not one list of all");
    command->add_flag("--plain-numbers", options.form.plain_numbers,
                      "Numbers of 64 bits as numbers, for programs that keep them");
    take_guid_form(command, options.form.guids);
    command->add_flag("--schema", schema, "Print the JSON Schema of a message instead");
    take_threads(command, common);
    command->callback([] {
        options.threads = common.threads;
        chosen = [] {
            return schema ? print_json_schema() : convert_to_json(common.inputs, options);
        };
    });
}

} // namespace kvt_tool
