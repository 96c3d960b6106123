// kvt show: the values at a field path.
#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "commands/command_line.h"
#include "commands/printed_values.h"
#include "io/messages.h"
#include "io/pipeline.h"
#include "io/problems.h"
#include "model/field_path.h"
#include "model/json_line.h"
#include "json/to_json.h"

namespace kvt_tool {

namespace {

struct ShowOptions {
    bool with_paths = false; ///< each value after its input, line and path
    bool as_json = false;
    GuidForm guids = GuidForm::decimal;
    unsigned threads = 1;
};

class ShowJob : public PrintedValues {
public:
    ShowJob(const FieldPath &path, const ShowOptions &options) : path_(path), options_(options) {}

    void work(const Unit &unit, Result &result) const {
        const bool read = read_messages(unit, [&](const ReadMessage &message) {
            path_.each(message.kind, message.record, [&](const FoundField &found) {
                result.text +=
                    options_.as_json ? as_json(message, found) : as_words(message, found);
            });
        });
        result.unread.note(unit, read);
    }

    ExitStatus end(const std::string &input, bool) { return unread_.end(input); }

private:
    std::string as_words(const ReadMessage &message, const FoundField &found) const {
        std::string words;
        if (options_.with_paths) {
            words = message.unit.input + ":" + std::to_string(message.line) + ": ";
            words.append(found.path) += ": ";
        }
        return words + found.value(options_.guids) + "\n";
    }

    std::string as_json(const ReadMessage &message, const FoundField &found) const {
        const Json object = {{"file", message.unit.input},
                             {"line", message.line},
                             {"type", message.kind.name},
                             {"path", found.path},
                             {"value", to_json(found, {.guids = options_.guids})}};
        return json_line(object);
    }

    const FieldPath &path_;
    const ShowOptions &options_;
};

/// Prints what a path leads to in the messages of all inputs, one value on a line. Messages of
/// kinds that do not have the field are passed over; when no message has it, that is a problem.
ExitStatus show_fields(const std::vector<std::string> &inputs, const FieldPath &path,
                       const ShowOptions &options) {
    Progress progress(inputs);
    ShowJob job(path, options);
    const ExitStatus status = Pipeline(job, options.threads, progress).run(inputs);
    finish_printing();
    return job.found() ? status : worse(status, found_problems);
}

} // namespace

void add_show(CLI::App &app) {
    static CommonOptions common;
    static ShowOptions options;
    static std::string path;
    CLI::App *command = add_command(
        app, "show", "Print the values at a field path.",
        "A path is made of keys with dots between them. After the key of a list, [3] is its "
        "element "
        "3,\n"
        "counted from 0, [-1] the last one, [2:5] those from 2 on and before 5, [:3] the first and "
        "[-3:]\n"
        "the last three; [*], or nothing, all of them. ** stands for any number of blocks. "
        "Messages\n"
        "without the field are passed over.\n\n"
        "Exit status: 0 something was found, 1 nothing was, or something is no message, 2 a file\n"
        "cannot be read.\n\n"
        "Example: kvt show -p --guid hex '**.guid' job.kvt");
    command->add_option("PATH", path, "The path")->required()->type_name("");
    take_inputs(command, common);
    command->add_flag("-p,--with-paths", options.with_paths,
                      "Print file, line and path before each value");
    command->add_flag(
        "--json", options.as_json,
        "Print a JSON object for each value, one a line, with file, line, kind and path");
    take_guid_form(command, options.guids);
    take_threads(command, common);
    command->callback([] {
        options.threads = common.threads;
        static auto parsed = FieldPath::parse(path);
        if (const auto *wrong = std::get_if<std::string>(&parsed)) {
            throw CLI::ValidationError("PATH: " + *wrong);
        }
        chosen = [] {
            return show_fields(common.inputs, std::get<FieldPath>(parsed), options);
        };
    });
}

} // namespace kvt_tool
