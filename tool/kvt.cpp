// The kvt command: what the command line says, and which command does it.
#include <CLI/CLI.hpp>

#include "fmt.h"
#include "input.h"
#include "kinds.h"
#include "kvt/message_layer.h"

int main(int argc, char **argv) {
    using namespace kvt_tool;

    CLI::App app("Works on messages in the text form of the kvt_str codec.", "kvt");
    app.set_version_flag("--version", "kvt " KVT_VERSION);
    app.require_subcommand(1);
    app.failure_message(CLI::FailureMessage::help);

    std::vector<std::string> inputs = {standard_input};
    bool verbose = false;
    ExitStatus status = all_well;

    CLI::App *fmt = app.add_subcommand("fmt", "Print messages in their normal form.");
    fmt->add_option("FILE", inputs, "Files to read; standard input when none, or for -");
    fmt->add_flag("-v,--verbose", verbose,
                  "Show the codec's traces on standard error: fields read, lines skipped");
    fmt->footer("Lines are put in order, fields that are zero left out, and lines that the format\n"
                "does not know dropped without a word, like values that are none: -v shows them.\n"
                "Broken messages are said on standard error as FILE:LINE: WHAT. The files stay\n"
                "as they are.\n\n"
                "Exit status: 0 all well, 1 something is wrong with a text, 2 a file cannot be\n"
                "read or the output not written.\n\n"
                "Example: kvt fmt job.kvt events.kvt > all.kvt");
    fmt->callback([&] {
        if (verbose) {
            log_cb = kvt_log_to_stderr;
            log_level = 6;
        }
        status = format_messages(inputs);
    });

    CLI::App *kinds = app.add_subcommand("kinds", "List the kinds of messages and their records.");
    kinds->footer("Example: kvt kinds | grep RESERVATION");
    kinds->callback([&] { status = list_kinds(); });

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        const int wrong_usage = app.exit(error);
        return wrong_usage == 0 ? all_well : could_not_work;
    }
    return status;
}
