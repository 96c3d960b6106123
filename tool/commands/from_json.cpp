// kvt from-json: messages that are JSON to the text form.
#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "commands/command_line.h"
#include "io/output.h"
#include "io/pipeline.h"
#include "json/from_json.h"
#include "json/json_stream.h"

namespace kvt_tool {

namespace {

/// What became of some units.
struct Converted {
    std::string text;
    std::string words; ///< for standard error
};

class FromJsonJob {
public:
    using Result = Converted;

    static void work(const Unit &unit, Converted &result) {
        try {
            result.text += text_of_json({unit.text, unit.length});
        } catch (const JsonProblem &problem) {
            TextPlace place{unit.first_line, unit.first_column};
            place.add({unit.text, static_cast<size_t>(problem.at - unit.text)});
            result.words += unit.input + ":" + std::to_string(place.line) + ":" +
                            std::to_string(place.column) + ": " + problem.what + "\n";
        }
    }

    void begin(const InputFile &) { status_ = all_well; }

    void take(Converted &&result) {
        if (!result.words.empty()) {
            say(result.words);
            status_ = worse(status_, found_problems);
        }
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
        "Takes what \"kvt json\" prints: messages one on a line, one after the other, or in "
        "lists,\n"
        "in any layout. A message that a record or its text cannot hold is left out; standard "
        "error\n"
        "says the line and column of the value, its path, the cause and what to do. What is "
        "printed\n"
        "is read back as it stands.\n\n"
        "Exit status: 0 all is well, 1 a message is left out, 2 a file cannot be read.\n\n"
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
