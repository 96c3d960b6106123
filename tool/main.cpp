// The kvt command: understands its command line, and runs the command that it names.
#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <exception>
#include <functional>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include "commands/command_line.h"
#include "commands/commands.h"
#include "io/memory.h"
#include "io/output.h"
#include "io/problems.h"
#include "io/rights.h"

namespace {

using namespace kvt_tool;

ExitStatus run(const std::function<ExitStatus()> &job, const Rights &rights_of_job) {
    try {
        keep_only(rights_of_job);
        return job();
    } catch (const OutputError &error) {
        // Nobody reads any more: that is how a pipe into "head" ends, and no matter.
        return error.reason.empty() ? could_not_work : cannot_use(error.name, error.reason);
    } catch (const std::bad_alloc &) {
        return no_memory_for(remembered_input());
    } catch (const std::exception &error) {
        return cannot_use("internal error", error.what());
    }
}

/// Prints help, or says what is wrong with the command line.
ExitStatus explain(const CLI::App &app, const CLI::ParseError &error) {
    std::ostringstream help;
    std::ostringstream words;
    const int wrong_usage = app.exit(error, help, words);
    print(help.str());
    finish_printing();
    say(words.str());
    return wrong_usage == 0 ? all_well : could_not_work;
}

/// A file that is opened must not become standard output or standard error, where these are closed.
void occupy_closed_streams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0) {
            // Standard input cannot be read then and standard output not written, which is said as
            // for any other reason.
            open("/dev/null", stream == STDOUT_FILENO ? O_RDONLY : O_WRONLY);
        }
    }
}

} // namespace

int main(int argc, char **argv) {
    occupy_closed_streams();
    expect_lack_of_memory();
    // The command line's parser would take a name in brackets for a list of names.
    std::vector<std::string> words(argv, argv + argc);
    for (std::string &word : words) {
        if (word.starts_with('[') && word.ends_with(']')) {
            word.insert(0, "./");
        }
    }
    std::vector<const char *> arguments;
    arguments.reserve(words.size());
    for (const std::string &word : words) {
        arguments.push_back(word.c_str());
    }
    CLI::App app("Works on messages in the text form of the kvt_str codec.", "kvt");
    app.set_version_flag("--version", version_text);
    app.require_subcommand(1);
    app.footer("\"kvt help COMMAND\" tells more, with an example.");
    app.failure_message(CLI::FailureMessage::simple);
    for (const auto add :
         {add_fmt, add_check, add_json, add_from_json, add_diff, add_graph, add_stat, add_split,
          add_show, add_find, add_describe, add_gen, add_kinds, add_help}) {
        add(app);
    }
    // The parser would only say that the word was not expected.
    if (words.size() > 1 && !words[1].starts_with('-') && !is_command(app, words[1])) {
        say("kvt: " + unknown_command(app, words[1]) + "\n");
        return could_not_work;
    }
    try {
        app.parse(argc, arguments.data());
    } catch (const CLI::ParseError &error) {
        return run([&] { return explain(app, error); }, {});
    }
    return run(chosen, rights);
}
