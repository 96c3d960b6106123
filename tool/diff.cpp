#include "diff.h"

#include <deque>
#include <memory>
#include <utility>

#include "diff_messages.h"
#include "diff_text.h"
#include "messages.h"
#include "output.h"
#include "unread.h"

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

} // namespace

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

} // namespace kvt_tool
