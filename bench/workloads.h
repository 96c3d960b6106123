// The messages that speed is measured with: six workloads, and small messages in rotation.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "kvt/message_layer.h"

namespace kvt_bench {

/// A record and its kind. The record and all that hangs from it come from calloc, malloc and
/// realloc, and go by kvt_msg_release.
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

/// The text of a record that was read, by whatever reader. All set the places of qp_child_idxs that
/// have no line to 0, which the writer takes for a child: this ends the used ones again first, in
/// the record itself.
std::string text_of_read(Message &message);

/// How many elements the runs and arrays of a workload's record have: their number in the full
/// workload, times `times`, divided by `parts`; at least 1. Runs and arrays of their elements keep
/// their number, so that the text grows with the scale.
struct Scale {
    unsigned times = 1;
    unsigned parts = 1;
};

struct Workload {
    const char *name; ///< "W1" to "W6"
    /// Makes the message: the same one at every call.
    Message (*make)(Scale scale);
};

/// W1 to W6.
std::span<const Workload> workloads();

/// 1,024 END_JOB messages that all differ, and as many BEGIN_JOB messages.
std::vector<Message> end_jobs();
std::vector<Message> begin_jobs();

} // namespace kvt_bench
