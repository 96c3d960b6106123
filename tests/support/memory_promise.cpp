#include "support/memory_promise.h"

#include <cstdlib>
#include <cstring>
#include <string_view>

#include "kvt/kvt_str.h"
#include "kvt/message_layer.h"
#include "message_codecs.h"
#include "read_message.h"
#include "support/memory_watch.h"
#include "support/record_checker.h"
#include "text/scanner.h"

namespace kvt_test {

using namespace kvt_str;

namespace {

/// The kind on the type line of a message.
const MessageKind &kind_of(const char *text) {
    char name[type_name_capacity];
    scan_type_name(kvt_str::next_line(text), name);
    return *find_kind(name);
}

/// Checks a record that was read from a text, and releases it.
std::string check_and_release(void *record, const char *text, const MessageKind &kind) {
    const Verdict verdict = check_in_part(*kind.record, record, text);
    if (verdict.problem.empty()) {
        count_what_is_there(*kind.record, record);
        kvt_msg_release(static_cast<int32_t>(kind.value), record);
    }
    return verdict.problem;
}

std::string check_message(const MemoryWatch &watch, const char *text, const FailingSet &failing) {
    const bool record_fails = failing.has({false, 0, 0});
    int nobody = 0;
    void *record = &nobody;
    const int32_t result = kvt_msg_from_str(0, 0, text, &record);
    if (result != 0) {
        if (result != -1) {
            return "a text that is refused gives -1";
        }
        if (record != &nobody && record != nullptr) {
            return "a text that is refused hands out nothing";
        }
        if (watch.requests() != 0 && !record_fails) {
            return "a text whose record could be allocated is read";
        }
        return watch.alive() == 0 ? "" : "a text that is refused leaves nothing behind";
    }
    if (record_fails) {
        return "a text whose record could not be allocated is refused";
    }
    const std::string problem = check_and_release(record, text, kind_of(text));
    if (!problem.empty()) {
        return problem;
    }
    return watch.alive() == 0 ? "" : "a release leaves nothing behind";
}

/// Checks one of the texts of a sequence.
std::string check_text(const char *text, const MessageKind &kind) {
    const std::string_view view(text);
    if (watched_size(text) != view.size() + 1) {
        return "a text has a block of its size";
    }
    if (!view.starts_with(kvt_str::message_codec_of(kind).head) || !view.ends_with("  }\n}\n")) {
        return "a text is a whole message of its kind";
    }
    void *record = nullptr;
    if (kvt_msg_from_str(0, 0, text, &record) != 0) {
        return "a text is read again";
    }
    return check_and_release(record, text, kind);
}

/// Checks what was handed out, and frees it.
std::string check_texts(const MemoryWatch &watch, char **texts, uint32_t *kinds, size_t count) {
    if (watched_size(texts) < count * sizeof *texts ||
        watched_size(kinds) < count * sizeof *kinds) {
        return "there is room for the texts and the kinds";
    }
    for (size_t i = 0; i < count; ++i) {
        const MessageKind *kind = find_kind(static_cast<int32_t>(kinds[i]));
        if (kind == nullptr || kind->record == nullptr) {
            return "a message has a kind with a record";
        }
        if (texts[i] != nullptr) {
            const std::string problem = check_text(texts[i], *kind);
            if (!problem.empty()) {
                return problem;
            }
            std::free(texts[i]);
        }
    }
    std::free(texts);
    std::free(kinds);
    return watch.alive() == 0 ? "" : "nothing but the texts and both arrays is left";
}

std::string check_sequence(MemoryWatch &watch, const char *text, uint32_t length,
                           size_t &allocations) {
    char *no_text = nullptr;
    uint32_t no_kind = 0;
    char **texts = &no_text;
    uint32_t *kinds = &no_kind;
    int32_t count = -7;
    const int32_t result = kvt_msg_arr_from_str(text, length, &texts, &kinds, &count);
    allocations = watch.requests();
    const size_t failed = watch.failed();
    watch.fail_nothing();
    if (result != 0) {
        if (result != -1) {
            return "a text that is refused gives -1";
        }
        if (texts != &no_text || kinds != &no_kind || count != -7) {
            return "a text that is refused leaves the caller's variables";
        }
        return watch.alive() == 0 ? "" : "a text that is refused leaves nothing behind";
    }
    if (count <= 0) {
        return "a text that is read has a message";
    }
    const auto messages = static_cast<size_t>(count);
    size_t missing = 0;
    for (size_t i = 0; i < messages; ++i) {
        missing += texts[i] == nullptr ? 1 : 0;
    }
    if (missing > failed) {
        return "a text is missing only where an allocation failed";
    }
    return check_texts(watch, texts, kinds, messages);
}

/// A watch for one reading.
class FailingWatch : public MemoryWatch {
public:
    explicit FailingWatch(const FailingSet &failing) {
        mark_growth();
        fail_where([failing](const Request &request) { return failing.has(request); });
    }
};

} // namespace

MemoryVerdict check_memory_of_message(const char *text, const FailingSet &failing) {
    FailingWatch watch(failing);
    MemoryVerdict verdict;
    verdict.problem = check_message(watch, text, failing);
    verdict.allocations = watch.requests();
    watch.free_alive();
    return verdict;
}

MemoryVerdict check_memory_of_sequence(const char *text, uint32_t length,
                                       const FailingSet &failing) {
    FailingWatch watch(failing);
    MemoryVerdict verdict;
    verdict.problem = check_sequence(watch, text, length, verdict.allocations);
    watch.free_alive();
    return verdict;
}

} // namespace kvt_test
