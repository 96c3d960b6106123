// kvt stat: counts messages by kind.
#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "commands/command_line.h"
#include "io/messages.h"
#include "io/output.h"
#include "io/pipeline.h"
#include "io/problems.h"
#include "io/unread.h"
#include "model/kind_counts.h"

namespace kvt_tool {

namespace {

class StatJob {
public:
    struct Result {
        KindCounts counts;
        Unread unread;
    };

    static void work(const Unit &unit, Result &result) {
        const bool read = read_messages(unit, [&](const ReadMessage &message) {
            const auto length = static_cast<uint64_t>(message.end - message.begin);
            result.counts.add(message.kind, message.record, length);
        });
        result.unread.note(unit, read);
    }

    void begin(const InputFile &) { unread_.begin(); }

    void take(Result &&result) {
        counts_.merge(result.counts);
        unread_.take(result.unread);
    }

    ExitStatus end(const std::string &input, bool) { return unread_.end(input); }

    const KindCounts &counts() const { return counts_; }

private:
    KindCounts counts_;
    UnreadOfInput unread_;
};

/// Prints how many messages there are in all inputs and how large they are, as a table or as JSON.
ExitStatus print_counts(const std::vector<std::string> &inputs, bool as_json, unsigned threads) {
    ExitStatus status;
    StatJob job;
    {
        Progress progress(inputs);
        status = Pipeline(job, threads, progress).run(inputs);
    }
    print(as_json ? job.counts().json() + "\n" : job.counts().table());
    finish_printing();
    return status;
}

} // namespace

void add_stat(CLI::App &app) {
    static CommonOptions common;
    static bool as_json = false;
    CLI::App *command = add_command(
        app, "stat", "Count messages, bytes and elements by kind.",
        "Exit status: 0 all is well, 1 something is no message, 2 a file cannot be read.\n\n"
        "Example: kvt stat -j 0 archive/*.kvt");
    take_inputs(command, common);
    command->add_flag("--json", as_json, "Print a JSON object");
    take_threads(command, common);
    command->callback([] {
        chosen = [] {
            return print_counts(common.inputs, as_json, common.threads);
        };
    });
}

} // namespace kvt_tool
