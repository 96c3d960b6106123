// kvt show: the values at a field path.
#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "commands/command_line.h"
#include "io/messages.h"
#include "io/output.h"
#include "io/pipeline.h"
#include "io/problems.h"
#include "io/unread.h"
#include "model/field_path.h"

namespace kvt_tool {

namespace {

struct ShowOptions {
    bool with_paths = false; ///< each value after its input, line and path
    unsigned threads = 1;
};

class ShowJob {
public:
    struct Result {
        std::string text;
        Unread unread;
    };

    ShowJob(const FieldPath &path, const ShowOptions &options) : path_(path), options_(options) {}

    void work(const Unit &unit, Result &result) const {
        const bool read = read_messages(unit, [&](const ReadMessage &message) {
            path_.each(message.kind, message.record, [&](const FoundField &found) {
                if (options_.with_paths) {
                    result.text += unit.input + ":" + std::to_string(message.line) + ": ";
                    result.text.append(found.path) += ": ";
                }
                result.text += found.value() + "\n";
            });
        });
        result.unread.note(unit, read);
    }

    void begin(const InputFile &) { unread_.begin(); }

    void take(Result &&result) {
        unread_.take(result.unread);
        found_ = found_ || !result.text.empty();
        print(result.text);
    }

    ExitStatus end(const std::string &input, bool) { return unread_.end(input); }

    bool found() const { return found_; }

private:
    const FieldPath &path_;
    const ShowOptions &options_;
    UnreadOfInput unread_;
    bool found_ = false;
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
        "A path is made of keys with dots between them. [3] after the key of a list is its "
        "element\n"
        "3, counted from 0; [*], or nothing, all of them. Messages without the field are passed "
        "over.\n\n"
        "Exit status: 0 something was found, 1 nothing was, or something is no message, 2 a file\n"
        "cannot be read.\n\n"
        "Example: kvt show 'conns[3].pr_sd_to_an.sl' job.kvt");
    command->add_option("PATH", path, "The path")->required()->type_name("");
    take_inputs(command, common);
    command->add_flag("-p,--with-paths", options.with_paths,
                      "Print file, line and path before each value");
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
