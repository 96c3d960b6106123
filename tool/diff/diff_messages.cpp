#include "diff/diff_messages.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <span>
#include <utility>

#include "diff/align_messages.h"
#include "diff/diff_unread.h"
#include "model/hash.h"
#include "model/identity.h"
#include "model/record_content.h"

namespace kvt_tool {

namespace {

AlignKey key_of_message(const Message &message) {
    const Record &table = *message.kind().record;
    return {mix_in(mix_in(content_hash(table, message.record(), message.ignored),
                          unread_hash(message.unread)),
                   message.kind().value),
            mix_in(identity_hash(table, message.record()), message.kind().value),
            !identity_of(table).empty()};
}

/// One of the two sequences, and those of its messages that are held.
class Side {
public:
    explicit Side(MessageSource &source) : source_(source) {}

    /// True when there is a message, which is then the front.
    bool has_front() { return !held_.empty() || read(); }

    /// Reads ahead as far as the limits allow.
    void read_ahead(const LookAhead &limits) {
        while (held_.size() < limits.messages && text_size_ < limits.text && read()) {
        }
    }

    const Message &front() const { return held_.front(); }

    void drop_front() {
        text_size_ -= held_.front().text_size;
        held_.pop_front();
        keys_.pop_front();
    }

    /// The keys of those held, at most of the first `most`.
    std::vector<AlignKey> keys(size_t most) const {
        const auto count = static_cast<std::ptrdiff_t>(std::min(most, keys_.size()));
        return {keys_.begin(), keys_.begin() + count};
    }

    const AlignKey &front_key() const { return keys_.front(); }

    size_t size() const { return held_.size(); }

    /// All messages have been read; they may still be held.
    bool ended() const { return ended_; }

private:
    bool read() {
        std::optional<Message> message = ended_ ? std::nullopt : source_.next();
        ended_ = !message.has_value();
        if (ended_) {
            return false;
        }
        keys_.push_back(key_of_message(*message));
        text_size_ += message->text_size;
        held_.push_back(std::move(*message));
        return true;
    }

    MessageSource &source_;
    std::deque<Message> held_;
    std::deque<AlignKey> keys_; ///< of those held
    size_t text_size_ = 0;      ///< of those held
    bool ended_ = false;
};

/// Messages to read ahead at first: most differences are small, and both sides soon agree again.
constexpr size_t short_look = 16;

/// Where both sides agree again: after so many pairs without anything between them that are equal.
/// Messages that are not identified do not count: they may be the same everywhere.
constexpr size_t agreeing_pairs = 4;

/// The number of pairs up to there; 0 when the sides do not agree again.
size_t pairs_until_agreement(std::span<const AlignedPair> pairs, std::span<const AlignKey> a,
                             std::span<const AlignKey> b) {
    size_t agreeing = 0;
    AlignedPair expected = {0, 0};
    for (size_t i = 0; i < pairs.size(); ++i) {
        const AlignedPair &pair = pairs[i];
        const bool is_equal = a[pair.a].content == b[pair.b].content;
        agreeing = pair == expected && is_equal ? agreeing : 0;
        agreeing += is_equal && a[pair.a].is_identified ? 1 : 0;
        if (agreeing == agreeing_pairs) {
            return i + 1;
        }
        expected = {pair.a + 1, pair.b + 1};
    }
    return 0;
}

class Comparison {
public:
    Comparison(MessageSource &a, MessageSource &b,
               const std::function<void(const MessageDifference &)> &report,
               const LookAhead &look_ahead)
        : a_(a), b_(b), report_(report), look_ahead_(look_ahead) {}

    DiffSummary run();

private:
    FieldSet ignored() const;
    bool fronts_are_equal() const;
    void take_pair();
    void take_only_a(size_t count);
    void take_only_b(size_t count);
    bool take_pairs(std::span<const AlignedPair> pairs, AlignedPair stop, AlignedPair &taken);
    bool take_until_agreement();
    void take_aligned();

    Side a_;
    Side b_;
    const std::function<void(const MessageDifference &)> &report_;
    const LookAhead &look_ahead_;
    DiffSummary summary_;
};

FieldSet Comparison::ignored() const {
    FieldSet fields = a_.front().ignored;
    fields.add(b_.front().ignored);
    return fields;
}

bool Comparison::fronts_are_equal() const {
    const Message &a = a_.front();
    const Message &b = b_.front();
    return &a.kind() == &b.kind() && a_.front_key().content == b_.front_key().content &&
           same_unread(a.unread, b.unread) &&
           same_content(*a.kind().record, a.record(), b.record(), ignored());
}

void Comparison::take_pair() {
    const Message &a = a_.front();
    const Message &b = b_.front();
    std::vector<Difference> differences;
    std::vector<UnreadDifference> unread;
    if (!fronts_are_equal()) {
        differences = diff_records(*a.kind().record, a.record(), b.record(), ignored());
        unread = diff_unread(a.unread, b.unread);
    }
    const size_t count = differences.size() + unread.size();
    ++(count == 0 ? summary_.equal : summary_.differing);
    summary_.differences += count;
    if (count != 0) {
        report_({&a, &b, std::move(differences), std::move(unread)});
    }
    a_.drop_front();
    b_.drop_front();
}

void Comparison::take_only_a(size_t count) {
    for (; count != 0; --count) {
        ++summary_.only_in_a;
        report_({&a_.front(), nullptr, {}});
        a_.drop_front();
    }
}

void Comparison::take_only_b(size_t count) {
    for (; count != 0; --count) {
        ++summary_.only_in_b;
        report_({nullptr, &b_.front(), {}});
        b_.drop_front();
    }
}

/// Takes pairs and what stands before them, but nothing from `stop` on. Returns whether it took all
/// of the pairs, and in `taken` what is after the last one.
bool Comparison::take_pairs(std::span<const AlignedPair> pairs, AlignedPair stop,
                            AlignedPair &taken) {
    taken = {0, 0};
    for (const AlignedPair &pair : pairs) {
        take_only_a(std::min(pair.a, stop.a) - taken.a);
        take_only_b(std::min(pair.b, stop.b) - taken.b);
        if (pair.a >= stop.a || pair.b >= stop.b) {
            return false;
        }
        take_pair();
        taken = {pair.a + 1, pair.b + 1};
    }
    return true;
}

/// Takes messages up to where both sides agree again, if that is near.
bool Comparison::take_until_agreement() {
    const LookAhead limits = {std::min(short_look, look_ahead_.messages), look_ahead_.text};
    a_.read_ahead(limits);
    b_.read_ahead(limits);
    const std::vector<AlignKey> keys_a = a_.keys(limits.messages);
    const std::vector<AlignKey> keys_b = b_.keys(limits.messages);
    std::vector<AlignedPair> pairs = align(keys_a, keys_b);
    pairs.resize(pairs_until_agreement(pairs, keys_a, keys_b));
    AlignedPair taken;
    take_pairs(pairs, {keys_a.size(), keys_b.size()}, taken);
    return !pairs.empty();
}

/// Matches all that may be read ahead and takes it, up to the middle where more messages follow:
/// those of the second half may match some that are not yet read.
void Comparison::take_aligned() {
    a_.read_ahead(look_ahead_);
    b_.read_ahead(look_ahead_);
    const bool is_all = a_.ended() && b_.ended();
    const AlignedPair stop = is_all ? AlignedPair{a_.size(), b_.size()}
                                    : AlignedPair{(a_.size() + 1) / 2, (b_.size() + 1) / 2};
    AlignedPair taken;
    if (take_pairs(align(a_.keys(a_.size()), b_.keys(b_.size())), stop, taken)) {
        // While the other side goes on, the last messages of a side wait for their partners.
        take_only_a(a_.ended() && !is_all ? 0 : stop.a - taken.a);
        take_only_b(b_.ended() && !is_all ? 0 : stop.b - taken.b);
    }
}

DiffSummary Comparison::run() {
    while (true) {
        const bool in_a = a_.has_front();
        const bool in_b = b_.has_front();
        if (in_a && in_b) {
            if (fronts_are_equal()) {
                take_pair();
            } else if (!take_until_agreement()) {
                take_aligned();
            }
        } else if (in_a) {
            take_only_a(1);
        } else if (in_b) {
            take_only_b(1);
        } else {
            return summary_;
        }
    }
}

} // namespace

DiffSummary diff_messages(MessageSource &a, MessageSource &b,
                          const std::function<void(const MessageDifference &)> &report,
                          const LookAhead &look_ahead) {
    return Comparison(a, b, report, look_ahead).run();
}

} // namespace kvt_tool
