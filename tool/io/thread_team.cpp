#include "io/thread_team.h"

#include <sys/mman.h>

#include <new>

#include "io/unfinished.h"

namespace kvt_tool {

namespace {

/// No work nests deeper than messages do. The usual 8 MB for each of many threads are more than
/// some processes may have.
constexpr size_t stack_size = 1 << 20;

/// A megabyte of text as JSON took half of this.
constexpr size_t room_of_thread = 32 << 20;

/// Whether the process may have so much memory more. Nothing of it is used.
bool has_room(size_t size) {
    void *room = mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    return room != MAP_FAILED && munmap(room, size) == 0;
}

void *do_work(void *work) {
    (*static_cast<std::function<void()> *>(work))();
    return nullptr;
}

} // namespace

size_t threads_with_room(size_t wanted) {
    while (wanted > 1 && !has_room(wanted * room_of_thread)) {
        --wanted;
    }
    return wanted > 0 ? wanted : 1;
}

ThreadTeam::~ThreadTeam() {
    for (const pthread_t thread : threads_) {
        pthread_join(thread, nullptr);
    }
}

bool ThreadTeam::add_thread() {
    if (!can_grow_) {
        return false;
    }
    // Signals come to the thread that writes files, which holds them back at times.
    const SignalsHeld held;
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, stack_size);
    pthread_t thread;
    try {
        threads_.reserve(threads_.size() + 1);
        can_grow_ = pthread_create(&thread, &attributes, do_work, &work_) == 0;
    } catch (const std::bad_alloc &) {
        can_grow_ = false;
    }
    pthread_attr_destroy(&attributes);
    if (can_grow_) {
        threads_.push_back(thread);
    }
    return can_grow_;
}

} // namespace kvt_tool
