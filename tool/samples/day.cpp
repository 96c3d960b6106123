#include <algorithm>
#include <iterator>

#include "kvt/messages/message_type.h"
#include "samples/sample.h"
#include "samples/values.h"

namespace kvt_tool {

namespace {

constexpr uint32_t morning[] = {VEMRA_MSG_TYPE_TOPOLOGY_INFO_REQUEST,
                                VEMRA_MSG_TYPE_TOPOLOGY_INFO_REPLY, VEMRA_MSG_TYPE_REQ_SM_DATA,
                                VEMRA_MSG_TYPE_SM_DATA, VEMRA_MSG_TYPE_RESOURCE_DATA};

constexpr uint32_t plain_job[] = {VEMRA_MSG_TYPE_BEGIN_JOB, VEMRA_MSG_TYPE_JOB_DATA,
                                  VEMRA_MSG_TYPE_PERSISTENT_JOB_INFO, VEMRA_MSG_TYPE_END_JOB};

constexpr uint32_t job_with_groups[] = {VEMRA_MSG_TYPE_BEGIN_JOB,      VEMRA_MSG_TYPE_JOB_DATA,
                                        VEMRA_MSG_TYPE_ALLOC_GROUPS,   VEMRA_MSG_TYPE_GROUPS_DATA,
                                        VEMRA_MSG_TYPE_RELEASE_GROUPS, VEMRA_MSG_TYPE_END_JOB};

constexpr uint32_t failing_job[] = {VEMRA_MSG_TYPE_BEGIN_JOB, VEMRA_MSG_TYPE_JOB_DATA,
                                    VEMRA_MSG_TYPE_JOB_ERROR, VEMRA_MSG_TYPE_EVENTS_REPLY,
                                    VEMRA_MSG_TYPE_END_JOB};

constexpr uint32_t reservation[] = {VEMRA_MSG_TYPE_CREATE_RESERVATION,
                                    VEMRA_MSG_TYPE_PERSISTENT_RESERVATION_INFO,
                                    VEMRA_MSG_TYPE_BEGIN_JOB,
                                    VEMRA_MSG_TYPE_JOB_DATA,
                                    VEMRA_MSG_TYPE_END_JOB,
                                    VEMRA_MSG_TYPE_DELETE_RESERVATION};

constexpr uint32_t look_at_jobs[] = {VEMRA_MSG_TYPE_JOB_INFO_REQUEST,
                                     VEMRA_MSG_TYPE_JOB_INFO_REPLY};

constexpr uint32_t look_at_reservations[] = {VEMRA_MSG_TYPE_RESERVATION_INFO_REQUEST,
                                             VEMRA_MSG_TYPE_RESERVATION_INFO_REPLY};

constexpr uint32_t look_at_events[] = {VEMRA_MSG_TYPE_EVENTS_REQUEST, VEMRA_MSG_TYPE_EVENTS_REPLY};

constexpr uint32_t change_of_resources[] = {VEMRA_MSG_TYPE_AM_SIGNAL, VEMRA_MSG_TYPE_RESOURCE_DATA};

/// A kind of story, and how often it comes among others.
struct Plot {
    std::span<const uint32_t> kinds;
    unsigned weight;
    bool has_job; ///< begins a job of its own
    bool is_in_reservation;
};

constexpr Plot plots[] = {
    {plain_job, 6, true, false},       {job_with_groups, 6, true, false},
    {failing_job, 1, true, false},     {reservation, 2, true, true},
    {look_at_jobs, 2, false, false},   {look_at_reservations, 1, false, false},
    {look_at_events, 2, false, false}, {change_of_resources, 1, false, false},
    {morning, 1, false, false},
};

const Plot &plot_at(uint64_t place) {
    const Plot *plot = plots;
    while (place >= plot->weight) {
        place -= plot->weight;
        ++plot;
    }
    return *plot;
}

constexpr uint64_t all_weights() {
    uint64_t sum = 0;
    for (const Plot &plot : plots) {
        sum += plot.weight;
    }
    return sum;
}

} // namespace

FabricDay::FabricDay(uint64_t seed, uint32_t size)
    : seed_(seed), size_(std::min(size, largest_sample_size)), random_(seed) {
    // Alone at first: jobs begin when the fabric is known.
    stories_.push_back({morning, 0, size_});
}

void FabricDay::begin_story() {
    Random random(mixed(random_, step_));
    const Plot &plot = plot_at(random.between(0, all_weights() - 1));
    // What asks for jobs and events does so in the name of the job that began last.
    uint64_t job = jobs_;
    uint32_t size = size_;
    if (plot.has_job) {
        // Jobs in reservations have odd numbers.
        jobs_ += 1 + (jobs_ + (plot.is_in_reservation ? 0 : 1)) % 2;
        job = jobs_;
        size = size_ == 0 ? 0 : static_cast<uint32_t>(random.between(1, size_));
    }
    stories_.push_back({plot.kinds, job, size});
}

OwnedMessage FabricDay::next() {
    constexpr size_t most_stories = 4;
    while (step_ >= std::size(morning) && stories_.size() < most_stories) {
        begin_story();
        random_ = mixed(random_, stories_.size());
    }
    Random random(mixed(~random_, step_));
    const auto chosen =
        stories_.begin() + static_cast<ptrdiff_t>(random.between(0, stories_.size() - 1));
    const MessageKind &kind = *kvt_str::find_kind(static_cast<int32_t>(chosen->kinds.front()));
    const Scene scene(seed_, chosen->size, chosen->job, step_);
    chosen->kinds = chosen->kinds.subspan(1);
    if (chosen->kinds.empty()) {
        stories_.erase(chosen);
    }
    ++step_;
    return make_sample(kind, scene);
}

} // namespace kvt_tool
