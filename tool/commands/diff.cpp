// kvt diff: what differs between the messages of two inputs.
#include <CLI/CLI.hpp>
#include <deque>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "commands/command_line.h"
#include "diff/diff_messages.h"
#include "diff/diff_text.h"
#include "io/memory.h"
#include "io/messages.h"
#include "io/output.h"
#include "io/problems.h"
#include "io/unread.h"
#include "model/identity.h"
#include "model/json_line.h"
#include "json/to_json.h"

namespace kvt_tool {

namespace {

struct DiffOptions {
    std::string a;
    std::string b;
    std::vector<FieldPath> ignored;
    bool json = false;
    std::string guids; ///< hex, dec, or nothing for what is usual
    DiffForm form;
};

/// The messages of an input. What cannot be read of it is said on the way.
class InputMessages : public MessageSource {
public:
    InputMessages(const std::string &name, const std::vector<FieldPath> &ignored)
        : argument_(name), input_(name), stream_(input_),
          name_(std::make_shared<const std::string>(input_.name())), ignored_(ignored) {}

    std::optional<Message> next() override {
        while (waiting_.empty()) {
            remember_input(input_.name());
            const auto batch = input_.usable() ? stream_.next() : nullptr;
            if (batch == nullptr) {
                end();
                return std::nullopt;
            }
            batch->for_each([this](const Unit &unit) { add_messages(unit); });
            if (allocation_has_failed()) {
                throw std::bad_alloc();
            }
        }
        Message message = std::move(waiting_.front());
        waiting_.pop_front();
        return message;
    }

    const std::string &name() const { return *name_; }

    ExitStatus status() const { return input_.usable() ? unread_.status() : could_not_work; }

private:
    /// Says what is lost, once.
    void end() {
        if (!has_ended_ && input_.usable()) {
            unread_.end(argument_);
        }
        has_ended_ = true;
    }

    void add_messages(const Unit &unit) {
        Unread unread;
        const size_t before = waiting_.size();
        const bool read = read_messages(unit, [&](ReadMessage &message) { add(message); });
        unread.note(unit, read);
        unread_.take(unread);
        add_unread_lines(unit, before);
    }

    /// Takes a message over, unless nothing of it is compared.
    void add(ReadMessage &message) {
        FieldSet ignored;
        ignored.add(ignored_, message.kind, message.record);
        if (!ignored.has(message.record)) {
            waiting_.push_back({{message.kind, std::exchange(message.record, nullptr)},
                                name_,
                                message.line,
                                static_cast<size_t>(message.end - message.begin),
                                std::move(ignored)});
        }
    }

    /// Gives the unit's lines that are not read to its messages, the first of which is waiting at
    /// `message`: each to the last message that begins at it or above.
    void add_unread_lines(const Unit &unit, size_t message) {
        for (UnreadLine &line : find_unread_lines(unit)) {
            while (message + 1 < waiting_.size() && waiting_[message + 1].first_line <= line.line) {
                ++message;
            }
            if (message < waiting_.size()) {
                waiting_[message].unread.push_back(std::move(line));
            }
        }
    }

    std::string argument_;
    InputFile input_;
    UnitStream stream_;
    std::shared_ptr<const std::string> name_;
    const std::vector<FieldPath> &ignored_;
    std::deque<Message> waiting_;
    UnreadOfInput unread_;
    bool has_ended_ = false;
};

/// Differences as JSON, one object on a line for each.
class DiffJson {
public:
    explicit DiffJson(const DiffOptions &options)
        : brief_(options.form.brief), form_{.guids = options.guids == "hex" ? GuidForm::hexadecimal
                                                                            : GuidForm::decimal} {}

    std::string lines(const MessageDifference &difference) const {
        if (difference.b == nullptr) {
            return line(head("message-removed", difference));
        }
        if (difference.a == nullptr) {
            return line(head("message-added", difference));
        }
        if (brief_) {
            Json object = head("message-changed", difference);
            object["differences"] = difference.count();
            return line(object);
        }
        std::string text;
        for (const Difference &of_pair : difference.differences) {
            text += line(object_of(difference, of_pair));
        }
        for (const UnreadDifference &of_pair : difference.unread) {
            text += line(object_of(difference, of_pair));
        }
        return text;
    }

private:
    static std::string line(const Json &object) { return json_line(object); }

    static Json place_of(const Message &message) {
        return {{"file", *message.input}, {"line", message.first_line}};
    }

    Json identity_of_record(const Record &table, const void *record) const {
        Json identity = Json::object();
        for (const Row *row : identity_of(table)) {
            identity[std::string(key_of(*row))] = field_to_json(*row, record, {}, form_);
        }
        return identity;
    }

    /// What it is, and of which messages.
    Json head(const char *what, const MessageDifference &difference) const {
        const Message &one = difference.a != nullptr ? *difference.a : *difference.b;
        Json object = {{"what", what},
                       {"type", one.kind().name},
                       {"identity", identity_of_record(*one.kind().record, one.record())}};
        if (difference.a != nullptr) {
            object["a"] = place_of(*difference.a);
        }
        if (difference.b != nullptr) {
            object["b"] = place_of(*difference.b);
        }
        return object;
    }

    static const char *word_of(Difference::What what) {
        switch (what) {
        case Difference::What::changed:
            return "changed";
        case Difference::What::removed:
            return "removed";
        case Difference::What::added:
            return "added";
        case Difference::What::order:
            return "order";
        }
        return "";
    }

    void add_place(const Difference &difference, const DifferencePlace &place, Json &side) const {
        if (place.record == nullptr) {
            return;
        }
        side["path"] = place.path;
        if (difference.what != Difference::What::order) {
            side["value"] = field_to_json(*difference.row, place.record, place.index, form_);
        }
    }

    Json object_of(const MessageDifference &messages, const Difference &difference) const {
        Json object = head(word_of(difference.what), messages);
        add_place(difference, difference.a, object["a"]);
        add_place(difference, difference.b, object["b"]);
        Json within = Json::array();
        for (const Enclosing &element : difference.within) {
            within.push_back(
                {{"list", key_of(*element.list)},
                 {"identity", identity_of_record(*element.list->element, element.record)}});
        }
        object["within"] = std::move(within);
        return object;
    }

    Json object_of(const MessageDifference &messages, const UnreadDifference &difference) const {
        Json object = head(word_of(difference.what), messages);
        if (difference.a != nullptr) {
            object["a"]["unread"] = json_of(*difference.a);
        }
        if (difference.b != nullptr) {
            object["b"]["unread"] = json_of(*difference.b);
        }
        return object;
    }

    static Json json_of(const UnreadLine &line) {
        return {{"line", line.line}, {"path", line.path}, {"text", line.text}};
    }

    bool brief_;
    JsonForm form_;
};

/// Prints the differences. The status is found_problems when there are some, or when something of
/// an input cannot be read.
ExitStatus diff_inputs(const DiffOptions &options) {
    InputMessages a(options.a, options.ignored);
    InputMessages b(options.b, options.ignored);
    const ExitStatus opened = worse(a.status(), b.status());
    if (opened != all_well) {
        return opened;
    }
    const DiffJson json(options);
    const DiffSummary summary = diff_messages(a, b, [&](const MessageDifference &difference) {
        print(options.json ? json.lines(difference) : difference_text(difference, options.form));
    });
    if (!summary.all_equal() && !options.json) {
        print(summary_text(summary, a.name(), b.name()));
    }
    finish_printing();
    const ExitStatus read = worse(a.status(), b.status());
    return summary.all_equal() ? read : worse(read, found_problems);
}

/// The paths that these words are.
std::vector<FieldPath> paths_of(const std::vector<std::string> &words) {
    std::vector<FieldPath> paths;
    for (const std::string &word : words) {
        auto path = FieldPath::parse(word);
        if (const auto *wrong = std::get_if<std::string>(&path)) {
            throw CLI::ValidationError("--ignore " + word + ": " + *wrong);
        }
        paths.push_back(std::move(std::get<FieldPath>(path)));
    }
    return paths;
}

} // namespace

void add_diff(CLI::App &app) {
    static DiffOptions options;
    static std::vector<std::string> ignored;
    CLI::App *command = add_command(
        app, "diff", "Show what differs between the messages of two files.",
        "Messages are matched by kind and identity, elements of lists by theirs (guid, "
        "tree_id, id). Lines that are not read are compared as lines.\n\n"
        "Exit status: 0 no differences, 1 differences, or something is no message, 2 a file\n"
        "cannot be read.\n\n"
        "Example: kvt diff --ignore 'job_data.conns[*].pr_sd_to_an' yesterday.kvt today.kvt");
    take_file(command, "A", options.a, "A file; - for standard input");
    take_file(command, "B", options.b, "The file to compare it with");
    command->add_flag("--brief", options.form.brief, "Only tell which messages differ");
    command->add_flag("--json", options.json, "Print each difference as an object, on a line");
    command
        ->add_option("--ignore", ignored,
                     "A path, as in \"kvt show\", that is not compared, with all below it. May be\n"
                     "given several times")
        ->allow_extra_args(false)
        ->type_name("PATH");
    command->add_option("--guid", options.guids, "GUIDs in hexadecimal (hex) or decimal (dec)")
        ->check(CLI::IsMember({"hex", "dec"}).description(""))
        ->type_name("FORM");
    command->callback([] {
        if (options.a == standard_input && options.b == standard_input) {
            throw CLI::ValidationError("only one of A and B can be standard input");
        }
        options.ignored = paths_of(ignored);
        if (!options.guids.empty()) {
            options.form.names = options.form.values =
                options.guids == "hex" ? GuidForm::hexadecimal : GuidForm::decimal;
        }
        options.form.colours = is_terminal_for_colours(STDOUT_FILENO);
        chosen = [] {
            return diff_inputs(options);
        };
    });
}

} // namespace kvt_tool
