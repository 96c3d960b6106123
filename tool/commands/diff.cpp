// kvt diff: what differs between the messages of two inputs.
#include <CLI/CLI.hpp>
#include <deque>
#include <memory>
#include <string>
#include <utility>

#include "commands/command_line.h"
#include "diff/diff_messages.h"
#include "diff/diff_text.h"
#include "io/messages.h"
#include "io/output.h"
#include "io/problems.h"
#include "io/unread.h"

namespace kvt_tool {

namespace {

/// The messages of an input. What cannot be read of it is said on the way.
class InputMessages : public MessageSource {
public:
    explicit InputMessages(const std::string &name)
        : input_(name), stream_(input_), name_(std::make_shared<const std::string>(input_.name())) {
    }

    std::optional<Message> next() override {
        while (waiting_.empty()) {
            const auto batch = input_.usable() ? stream_.next() : nullptr;
            if (batch == nullptr) {
                return std::nullopt;
            }
            batch->for_each([this](const Unit &unit) { add_messages(unit); });
        }
        Message message = std::move(waiting_.front());
        waiting_.pop_front();
        return message;
    }

    ExitStatus status() const { return input_.usable() ? unread_.status() : could_not_work; }

private:
    void add_messages(const Unit &unit) {
        Unread unread;
        const bool read = read_messages(unit, [&](ReadMessage &message) {
            waiting_.push_back(
                {&message.kind,
                 OwnedRecord(std::exchange(message.record, nullptr), {&message.kind}), name_,
                 message.line, static_cast<size_t>(message.end - message.begin)});
        });
        unread.note(unit, read);
        unread_.take(unread);
    }

    InputFile input_;
    UnitStream stream_;
    std::shared_ptr<const std::string> name_;
    std::deque<Message> waiting_;
    UnreadOfInput unread_;
};

/// Prints the differences. The status is found_problems when there are some, or when something of
/// an input cannot be read.
ExitStatus diff_inputs(const std::string &a, const std::string &b, bool coloured) {
    InputMessages messages_a(a);
    InputMessages messages_b(b);
    const ExitStatus opened = worse(messages_a.status(), messages_b.status());
    if (opened != all_well) {
        return opened;
    }
    const DiffSummary summary =
        diff_messages(messages_a, messages_b, [&](const MessageDifference &difference) {
            print(difference_text(difference, coloured));
        });
    finish_printing();
    const ExitStatus read = worse(messages_a.status(), messages_b.status());
    return summary.all_equal() ? read : worse(read, found_problems);
}

} // namespace

void add_diff(CLI::App &app) {
    static std::string a;
    static std::string b;
    CLI::App *command =
        add_command(app, "diff", "Show what differs between the messages of two files.",
                    "Messages are matched by kind and identity, elements of lists by theirs (guid, "
                    "tree_id, id).\n\n"
                    "Exit status: 0 no differences, 1 differences, 2 a file cannot be read.\n\n"
                    "Example: kvt diff yesterday.kvt today.kvt");
    command->add_option("A", a, "A file; - for standard input")->required()->type_name("");
    command->add_option("B", b, "The file to compare it with")->required()->type_name("");
    command->callback([] {
        if (a == standard_input && b == standard_input) {
            throw CLI::ValidationError("only one of A and B can be standard input");
        }
        chosen = [] {
            return diff_inputs(a, b, is_terminal_for_colours(STDOUT_FILENO));
        };
    });
}

} // namespace kvt_tool
