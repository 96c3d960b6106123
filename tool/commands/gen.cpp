// kvt gen: prints sample messages.
#include <CLI/CLI.hpp>
#include <cstdint>

#include "commands/command_line.h"
#include "io/output.h"
#include "io/problems.h"
#include "message_kinds.h"
#include "model/write_text.h"
#include "samples/sample.h"

namespace kvt_tool {

namespace {

struct GenOptions {
    const kvt_str::MessageKind *kind = nullptr; ///< null for a mixed series
    uint64_t seed = 0;
    uint32_t size = 0;
    uint64_t count = 1;
};

/// Prints sample messages in normal form.
ExitStatus print_samples(const GenOptions &options) {
    FabricDay day(options.seed, options.size);
    std::string text;
    for (uint64_t i = 0; i < options.count; ++i) {
        const OwnedMessage message =
            options.kind != nullptr ? make_sample(*options.kind, {options.seed, options.size, i})
                                    : day.next();
        text.clear();
        if (!add_text(message.kind(), message.record(), text)) {
            return cannot_use("the sample", "its text takes 4 GiB or more");
        }
        text.pop_back();
        print(i == 0 ? "" : "\n");
        print(text);
    }
    finish_printing();
    return all_well;
}

} // namespace

void add_gen(CLI::App &app) {
    static GenOptions options = {.size = default_sample_size};
    static std::string word;
    CLI::App *command = add_command(
        app, "gen", "Print sample messages, for tests and trials.",
        "The same KIND, seed and size give the same text on every machine. Without KIND the\n"
        "messages are a mix, as on a day of a fabric.\n\n"
        "Example: kvt gen TOPOLOGY_INFO_REPLY --seed 1 --size 500 | kvt graph -T svg -o "
        "fabric.svg");
    command->add_option("KIND", word, "A kind or the name of its block; a mix when none")
        ->type_name("");
    command->add_option("--seed", options.seed, "Another number, another fabric")
        ->check(whole_number)
        ->type_name("N");
    command
        ->add_option("--size", options.size, "Elements of the longest lists: hosts, switches, ...")
        ->check(CLI::Range(0U, largest_sample_size).description(""))
        ->type_name("N")
        ->capture_default_str();
    command->add_option("-n,--count", options.count, "How many messages")
        ->check(whole_number)
        ->type_name("N")
        ->capture_default_str();
    command->callback([] {
        options.kind = word.empty() ? nullptr : kind_option(word);
        chosen = [] {
            return print_samples(options);
        };
    });
}

} // namespace kvt_tool
