#include "support/memory_watch.h"

#include <algorithm>
#include <set>

#include "support/unknown_memory.h"

extern "C" {
void *__real_calloc(size_t count, size_t size);
void *__real_realloc(void *block, size_t size);
void __real_free(void *block);
}

namespace kvt_test {

namespace {

struct State {
    bool watching = false;
    bool growth_fails = false;
    size_t first = 0;
    size_t count = 0;
    size_t requests = 0;
    size_t failed = 0;
    size_t largest = 0;
    std::set<void *> alive;
};

State state;

/// True when the request that is made now is to fail.
bool fails(bool growth, size_t size) {
    const size_t number = state.requests++;
    state.largest = std::max(state.largest, size);
    const bool failing = (growth && state.growth_fails) ||
                         (number >= state.first && number - state.first < state.count);
    state.failed += failing;
    return failing;
}

} // namespace

MemoryWatch::MemoryWatch() {
    state = State{};
    state.watching = true;
}

MemoryWatch::~MemoryWatch() {
    state.watching = false;
}

void MemoryWatch::fail(size_t first, size_t count) {
    state.first = first;
    state.count = count;
    state.requests = 0;
    state.failed = 0;
    state.growth_fails = false;
}

void MemoryWatch::fail_all_growth() {
    fail(0, 0);
    state.growth_fails = true;
}

void MemoryWatch::fail_nothing() {
    fail(0, 0);
}

size_t MemoryWatch::requests() const {
    return state.requests;
}

size_t MemoryWatch::failed() const {
    return state.failed;
}

size_t MemoryWatch::alive() const {
    return state.alive.size();
}

void MemoryWatch::free_alive() {
    for (void *block : state.alive) {
        block_is_released(block);
        __real_free(block);
    }
    state.alive.clear();
}

size_t MemoryWatch::largest() const {
    return state.largest;
}

} // namespace kvt_test

extern "C" {

void *__wrap_calloc(size_t count, size_t size) {
    using kvt_test::state;
    if (!state.watching) {
        return __real_calloc(count, size);
    }
    if (kvt_test::fails(false, count * size)) {
        return nullptr;
    }
    void *block = __real_calloc(count, size);
    state.alive.insert(block);
    return block;
}

void *__wrap_realloc(void *block, size_t size) {
    using kvt_test::state;
    if (state.watching && kvt_test::fails(true, size)) {
        return nullptr;
    }
    const size_t known = kvt_test::known_size(block);
    if (state.watching) {
        state.alive.erase(block);
    }
    void *moved = __real_realloc(block, size);
    kvt_test::block_has_grown(block, known, moved, size);
    if (state.watching) {
        state.alive.insert(moved);
    }
    return moved;
}

void __wrap_free(void *block) {
    if (kvt_test::state.watching) {
        kvt_test::state.alive.erase(block);
    }
    kvt_test::block_is_released(block);
    __real_free(block);
}

} // extern "C"
