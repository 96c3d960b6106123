// One way to turn the records of the workloads into documents and back. All contenders have this
// form, so that the same loops measure them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

#include "kvt/messages/events.h"
#include "kvt/messages/job_control.h"
#include "kvt/messages/job_data.h"
#include "kvt/messages/job_start.h"
#include "kvt/messages/message_type.h"
#include "kvt/messages/resource_data.h"
#include "kvt/messages/topology.h"

namespace kvt_bench {

/// How many characters beyond its end a document's room has, all NUL: one ends a text, and JSON
/// parsers load that far.
inline constexpr size_t document_padding = 64;

/// Enough for the text of any workload.
inline constexpr size_t text_room = size_t{4} << 20;

class Codec {
public:
    Codec() = default;
    Codec(const Codec &) = delete;
    Codec &operator=(const Codec &) = delete;
    virtual ~Codec() = default;

    /// Turns a record into a document, which lies in room of the codec's own until the next call.
    virtual void encode(const void *record) = 0;

    /// That document.
    virtual std::string_view encoded() const = 0;

    /// Turns a document into a new record, which kvt_msg_release can release. After the document
    /// lies its padding.
    virtual void *decode(std::string_view document) = 0;
};

[[noreturn]] inline void fail(const char *what, const char *which = "") {
    std::fprintf(stderr, "kvt_bench: %s %s\n", what, which);
    std::exit(1);
}

/// Zeroed memory, as all memory of records is.
template <typename Element> Element *allocate(size_t count) {
    void *elements = std::calloc(count, sizeof(Element));
    if (elements == nullptr && count != 0) {
        fail("out of memory");
    }
    return static_cast<Element *>(elements);
}

/// A text in memory of its own, and its size with its NUL.
inline char *allocate_text(std::string_view text, uint32_t &size) {
    size = static_cast<uint32_t>(text.size() + 1);
    auto *copy = static_cast<char *>(std::malloc(size));
    if (copy == nullptr) {
        fail("out of memory");
    }
    text.copy(copy, text.size());
    copy[text.size()] = '\0';
    return copy;
}

/// Room for elements whose number is not known: 5 at first, then twice as many each time.
template <typename Element> class Growing {
public:
    Element &add() {
        if (count_ == capacity_) {
            grow();
        }
        return elements_[count_++];
    }

    /// As add, and clears the element.
    Element &add_cleared() { return add() = Element{}; }

    size_t count() const { return count_; }

    Element *elements() const { return elements_; }

private:
    void grow() {
        capacity_ = capacity_ == 0 ? 5 : 2 * capacity_;
        void *grown = std::realloc(elements_, capacity_ * sizeof(Element));
        if (grown == nullptr) {
            fail("out of memory");
        }
        elements_ = static_cast<Element *>(grown);
    }

    Element *elements_ = nullptr;
    size_t count_ = 0;
    size_t capacity_ = 0;
};

/// Makes the codec for the records of a kind.
template <template <typename Record> class CodecOf, typename... Parts>
std::unique_ptr<Codec> make_codec(int32_t kind, Parts... parts) {
    switch (kind) {
    case VEMRA_MSG_TYPE_END_JOB:
        return std::make_unique<CodecOf<vemra_end_job>>(std::move(parts)...);
    case VEMRA_MSG_TYPE_BEGIN_JOB:
        return std::make_unique<CodecOf<vemra_begin_job>>(std::move(parts)...);
    case VEMRA_MSG_TYPE_JOB_DATA:
        return std::make_unique<CodecOf<vemra_job_data>>(std::move(parts)...);
    case VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY:
        return std::make_unique<CodecOf<vemra_topology_info_list>>(std::move(parts)...);
    case VEMRA_MSG_TYPE_EVENTS_REPLY:
        return std::make_unique<CodecOf<vemra_event_list>>(std::move(parts)...);
    case VEMRA_MSG_TYPE_RESOURCE_DATA:
        return std::make_unique<CodecOf<vemra_resource_message>>(std::move(parts)...);
    default:
        fail("no workload has this kind of message");
    }
}

} // namespace kvt_bench
