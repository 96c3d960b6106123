#include "commands/command_line.h"

#include <unistd.h>

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <thread>

#include "model/describe.h"

namespace kvt_tool {

std::function<ExitStatus()> chosen;
Rights rights;

namespace {

void note_input(const std::string &name) {
    if (name != standard_input) {
        rights.inputs.push_back(name);
    }
}

} // namespace

bool is_terminal_for_colours(int file) {
    const char *no_colour = std::getenv("NO_COLOR");
    const char *terminal = std::getenv("TERM");
    return isatty(file) == 1 && (no_colour == nullptr || *no_colour == '\0') &&
           (terminal == nullptr || std::string_view(terminal) != "dumb");
}

CLI::App *add_command(CLI::App &app, const std::string &name, const std::string &what,
                      const std::string &footer) {
    CLI::App *command = app.add_subcommand(name, what);
    command->footer(footer);
    return command;
}

void take_inputs(CLI::App *command, CommonOptions &options) {
    command->add_option("FILE", options.inputs, "Files to read; standard input when none, or for -")
        ->each(note_input)
        ->type_name("");
}

void take_file(CLI::App *command, const std::string &option, std::string &name,
               const std::string &what) {
    command->add_option(option, name, what)->required()->each(note_input)->type_name("");
}

void take_threads(CLI::App *command, CommonOptions &options) {
    command
        ->add_option_function<unsigned>(
            "-j,--jobs",
            [&](unsigned jobs) {
                options.threads = jobs != 0 ? jobs : std::thread::hardware_concurrency();
            },
            "How many messages are worked on at once; 0 for one a processor. The order of what\n"
            "is printed is that of the inputs in any case")
        ->type_name("N")
        ->check(CLI::Range(0U, 1024U).description(""));
}

void take_guid_form(CLI::App *command, GuidForm &form) {
    const std::string usual = form == GuidForm::decimal ? "dec" : "hex";
    command
        ->add_option_function<std::string>(
            "--guid",
            [&](const std::string &word) {
                form = word == "hex" ? GuidForm::hexadecimal : GuidForm::decimal;
            },
            "GUIDs in decimal (dec), as in the text, or as 0x and 16 digits (hex); " + usual +
                " when\nnothing is said")
        ->check(CLI::IsMember({"dec", "hex", "decimal"}).description(""))
        ->type_name("FORM");
}

const CLI::Validator whole_number(
    [](std::string &word) {
        uint64_t number = 0;
        const char *end = word.data() + word.size();
        const auto [after, error] = std::from_chars(word.data(), end, number);
        return after == end && error == std::errc() ? std::string()
                                                    : word + " is no whole number of 64 bits";
    },
    "");

const kvt_str::MessageKind *kind_option(const std::string &word) {
    const kvt_str::MessageKind *kind = kind_of_word(word);
    if (kind == nullptr) {
        throw CLI::ValidationError("KIND: " + unknown_kind(word));
    }
    if (kind->record == nullptr) {
        throw CLI::ValidationError(std::string("KIND: ") + kind->name + " carries no record");
    }
    return kind;
}

} // namespace kvt_tool
