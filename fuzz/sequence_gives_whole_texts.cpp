// Any text and any length: the messages are all given, each as a text in the writer's form in a
// block of just its size, or none is; a shorter length gives the first ones of them.
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "kvt/kvt_str.h"
#include "kvt/message_layer.h"
#include "message_codecs.h"
#include "messages.h"
#include "property.h"
#include "support/memory_watch.h"
#include "support/record_checker.h"

using namespace kvt_fuzz;
using namespace kvt_test;

namespace {

struct Split {
    int32_t result;
    std::vector<std::string> texts;
};

void check_text(const char *text, uint32_t value) {
    const kvt_str::MessageKind *kind = kvt_str::find_kind(static_cast<int32_t>(value));
    expect(kind != nullptr && kind->record != nullptr, "a message has a kind with a record");
    expect(text != nullptr, "every message has a text");
    const size_t size = std::strlen(text) + 1;
    expect(knows_blocks() ? block_size(text) == size : block_size(text) >= size,
           "a text has a block of its size");
    expect(std::string_view(text).starts_with(kvt_str::message_codec_of(*kind).head),
           "a text begins as the writer begins it");
    expect(std::string_view(text).ends_with("  }\n}\n"), "a text ends as the writer ends it");

    // A quoted text may hold lines of its own: only counts that agree can be released.
    const Message message = read_as(text, kvt_str::Counts::agree);
    expect(message.kind == kind, "a text is read as the same kind again");
    kvt_msg_release(static_cast<int32_t>(value), message.record);
}

Split split(const InputText &text, uint32_t length) {
    MemoryWatch watch;
    char *no_text = nullptr;
    uint32_t no_kind = 0;
    char **texts = &no_text;
    uint32_t *kinds = &no_kind;
    int32_t count = -7;
    Split made{kvt_msg_arr_from_str(text.get(), length, &texts, &kinds, &count), {}};
    if (made.result != 0) {
        expect(made.result == -1, "a text that is refused gives -1");
        expect(texts == &no_text && kinds == &no_kind && count == -7,
               "a text that is refused leaves the caller's variables");
        expect(watch.alive() == 0, "a text that is refused leaves nothing allocated");
        return made;
    }
    expect(count > 0, "a text that is read has a message");
    const auto messages = static_cast<size_t>(count);
    expect(block_size(texts) >= messages * sizeof *texts, "there is room for the texts");
    expect(block_size(kinds) >= messages * sizeof *kinds, "there is room for the kinds");
    expect(watch.alive() == messages + 2, "nothing but the texts and both arrays is left");
    for (size_t i = 0; i < messages; ++i) {
        check_text(texts[i], kinds[i]);
        made.texts.emplace_back(texts[i]);
        std::free(texts[i]);
    }
    std::free(texts);
    std::free(kinds);
    return made;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const InputText text(data, size);
    const auto length = static_cast<uint32_t>(text.length());
    const Split whole = split(text, length);

    const auto longer = static_cast<uint32_t>(choice(text, 1));
    const auto shorter = static_cast<uint32_t>(choice(text, 2) % (length + uint64_t{1}));
    for (const uint32_t other : {longer, shorter}) {
        const Split part = split(text, other);
        expect(whole.result != 0 || part.result == 0, "a part of a good text is good");
        if (whole.result != 0 || part.result != 0) {
            continue;
        }
        expect(part.texts.size() <= whole.texts.size(), "a length gives no more than the whole");
        expect(part.texts.size() == whole.texts.size() || other < length,
               "only a length within the text stops the reading");
        for (size_t i = 0; i < part.texts.size(); ++i) {
            expect(part.texts[i] == whole.texts[i], "a length changes no message");
        }
    }
    return 0;
}
