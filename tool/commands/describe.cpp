// kvt describe and kvt kinds: the kinds of messages, and the keys of one.
#include <CLI/CLI.hpp>
#include <string>

#include "commands/command_line.h"
#include "io/output.h"
#include "model/describe.h"

namespace kvt_tool {

namespace {

ExitStatus print_description(const std::string &text) {
    print(text);
    finish_printing();
    return all_well;
}

} // namespace

void add_describe(CLI::App &app) {
    static std::string word;
    CLI::App *command =
        add_command(app, "describe", "List the kinds of messages, or the keys of one.",
                    "Example: kvt describe job_data");
    command->add_option("KIND", word, "A kind or the name of its block; all kinds when none")
        ->type_name("");
    command->callback([] {
        static const kvt_str::MessageKind *kind = word.empty() ? nullptr : kind_option(word);
        chosen = [] {
            return print_description(kind != nullptr ? describe_kind(*kind) : describe_kinds());
        };
    });
}

void add_kinds(CLI::App &app) {
    CLI::App *command = add_command(app, "kinds", "List the kinds of messages and their records.",
                                    "Example: kvt kinds | grep RESERVATION");
    command->callback([] {
        chosen = [] {
            return print_description(list_kinds());
        };
    });
}

} // namespace kvt_tool
