// kvt describe and kvt kinds: the kinds of messages, and the keys of a kind or a block.
#include <CLI/CLI.hpp>
#include <string>
#include <variant>
#include <vector>

#include "commands/command_line.h"
#include "io/output.h"
#include "model/describe.h"
#include "model/describe_json.h"
#include "model/describe_places.h"

namespace kvt_tool {

namespace {

using Places = std::vector<FieldPlace>;

ExitStatus print_description(const std::string &text) {
    print(text);
    finish_printing();
    return all_well;
}

std::string description_of(const kvt_str::MessageKind &kind, bool as_json) {
    return as_json ? describe_as_json(kind, true).dump(2) + "\n" : describe_kind(kind);
}

std::string description_of(const Places &places, bool as_json) {
    if (!as_json) {
        return describe_places(places);
    }
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const FieldPlace &place : places) {
        list.push_back(describe_as_json(place));
    }
    return list.dump(2) + "\n";
}

std::string description_of_all_kinds(bool as_json) {
    if (!as_json) {
        return list_kinds(true);
    }
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const kvt_str::MessageKind &kind : kvt_str::message_kinds()) {
        list.push_back(describe_as_json(kind, false));
    }
    return list.dump(2) + "\n";
}

} // namespace

void add_describe(CLI::App &app) {
    static std::string word;
    static bool as_json = false;
    CLI::App *command = add_command(
        app, "describe", "List the kinds of messages, or the keys of a kind or a block.",
        "A block or a key is named by its path, or by the end of one: quota, conns or\n"
        "job_data.conns.pr_sd_to_an. It is shown wherever it stands.\n\n"
        "Example: kvt describe job_data.conns");
    command
        ->add_option("WORD", word, "A kind, the name of its block, or a path; all kinds when none")
        ->type_name("");
    command->add_flag("--json", as_json, "Print a JSON object, or a list of them");
    command->callback([] {
        static const bool is_kind = kind_of_word(word) != nullptr;
        static const kvt_str::MessageKind *kind = is_kind ? kind_option(word) : nullptr;
        static std::variant<Places, std::string> places;
        if (!word.empty() && kind == nullptr) {
            places = places_of_word(word);
            if (const auto *wrong = std::get_if<std::string>(&places)) {
                throw CLI::ValidationError("WORD: " + *wrong);
            }
        }
        chosen = [] {
            return print_description(word.empty() ? description_of_all_kinds(as_json)
                                     : kind != nullptr
                                         ? description_of(*kind, as_json)
                                         : description_of(std::get<Places>(places), as_json));
        };
    });
}

void add_kinds(CLI::App &app) {
    CLI::App *command = add_command(app, "kinds", "List the kinds of messages and their records.",
                                    "Example: kvt kinds | grep RESERVATION");
    command->callback([] {
        chosen = [] {
            return print_description(list_kinds(false));
        };
    });
}

} // namespace kvt_tool
