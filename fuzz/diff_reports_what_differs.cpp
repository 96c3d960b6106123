// Any text, and the same without one of its lines: what is told of their messages differs, and
// what is not told is the same (tests/tool/diff_promise.h). Between a text and itself nothing is
// told, and every message of both is taken once.
#include <algorithm>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "diff/diff_messages.h"
#include "io/messages.h"
#include "property.h"
#include "tool/diff_promise.h"

using namespace kvt_fuzz;
using namespace kvt_tool;

namespace {

/// Longer lists of messages take too long for many executions.
constexpr size_t most_messages = 20;

/// The messages of a text, one after the other.
class TextMessages : public MessageSource {
public:
    explicit TextMessages(const std::string &text)
        : name_(std::make_shared<const std::string>("text")) {
        const Unit unit{*name_, text.c_str(), text.size(), 1, 0, false};
        read_messages(unit, [&](ReadMessage &message) {
            if (waiting_.size() < most_messages) {
                waiting_.push_back({{message.kind, std::exchange(message.record, nullptr)},
                                    name_,
                                    message.line,
                                    static_cast<size_t>(message.end - message.begin)});
            }
        });
    }

    std::optional<Message> next() override {
        if (waiting_.empty()) {
            return std::nullopt;
        }
        Message message = std::move(waiting_.front());
        waiting_.pop_front();
        return message;
    }

    const std::deque<Message> &waiting() const { return waiting_; }

private:
    std::shared_ptr<const std::string> name_;
    std::deque<Message> waiting_;
};

/// A text without a line that depends on all of it.
std::string without_a_line(const InputText &input) {
    std::string text = input.get();
    const auto lines = static_cast<uint64_t>(std::count(text.begin(), text.end(), '\n'));
    size_t begin = 0;
    for (uint64_t line = choice(input, 1) % (lines + 1); line != 0; --line) {
        begin = text.find('\n', begin) + 1;
    }
    const size_t end = text.find('\n', begin);
    return text.erase(begin, end == std::string::npos ? end : end + 1 - begin);
}

DiffSummary compare(const std::string &text_a, const std::string &text_b) {
    TextMessages a(text_a);
    TextMessages b(text_b);
    const size_t count_a = a.waiting().size();
    const size_t count_b = b.waiting().size();
    const DiffSummary summary = diff_messages(a, b, [](const MessageDifference &difference) {
        if (difference.a != nullptr && difference.b != nullptr) {
            expect(!difference.differences.empty(), "a pair that is told differs");
        }
    });
    expect(summary.equal + summary.differing + summary.only_in_a == count_a &&
               summary.equal + summary.differing + summary.only_in_b == count_b,
           "every message is taken once");
    return summary;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const InputText input(data, size);
    const std::string text = input.get();
    const std::string changed = without_a_line(input);
    expect(compare(text, text).all_equal(), "a text does not differ from itself");
    compare(text, changed);
    const TextMessages a(text);
    const TextMessages b(changed);
    const size_t pairs = std::min(a.waiting().size(), b.waiting().size());
    for (size_t i = 0; i < pairs; ++i) {
        const Message &of_a = a.waiting()[i];
        const Message &of_b = b.waiting()[i];
        if (&of_a.kind() == &of_b.kind()) {
            const std::string broken =
                kvt_test::broken_diff_promise(of_a.kind(), of_a.record(), of_b.record());
            if (!broken.empty()) {
                report(broken);
            }
        }
    }
    return 0;
}
