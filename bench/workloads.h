// The messages that speed is measured with: six workloads, and small messages in rotation.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "kvt/message_layer.h"

namespace kvt_bench {

/// A record and its kind. The record and all that hangs from it come from calloc and realloc, and
/// go by kvt_msg_release.
class Message {
public:
    Message(int32_t kind, void *record) : record_(record, Release{kind}) {}

    int32_t kind() const { return record_.get_deleter().kind; }

    void *record() const { return record_.get(); }

    /// The record as text.
    std::string text() const;

private:
    struct Release {
        int32_t kind;

        void operator()(void *record) const { kvt_msg_release(kind, record); }
    };

    std::unique_ptr<void, Release> record_;
};

/// How many elements every run and array of a workload has: its number in the full workload, times
/// `times`, divided by `parts`; at least 1.
struct Scale {
    unsigned times = 1;
    unsigned parts = 1;
};

struct Workload {
    const char *name;  ///< "W1" to "W6"
    const char *title; ///< what it is, such as "END_JOB, two fields"
    /// Makes the message: the same one at every call.
    Message (*make)(Scale scale);
};

/// W1 to W6.
std::span<const Workload> workloads();

/// 1,024 END_JOB messages that all differ, and as many BEGIN_JOB messages.
std::vector<Message> end_jobs();
std::vector<Message> begin_jobs();

} // namespace kvt_bench
