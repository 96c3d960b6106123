// Watches the codec's allocations and lets chosen ones fail. The test programs are linked so that
// calloc, realloc and free of the codec and the message layer come here first.
#pragma once

#include <cstddef>

namespace kvt_test {

/// While it lives, allocations are counted. One at a time.
class MemoryWatch {
public:
    MemoryWatch();
    ~MemoryWatch();
    MemoryWatch(const MemoryWatch &) = delete;
    MemoryWatch &operator=(const MemoryWatch &) = delete;

    /// Lets the allocations `first` to `first` + `count` - 1 fail, counted from 0 and from now on.
    void fail(size_t first, size_t count = 1);
    /// Lets every realloc fail from now on.
    void fail_all_growth();
    /// Lets nothing fail from now on.
    void fail_nothing();

    size_t requests() const; ///< callocs and reallocs since the last call of fail
    size_t failed() const;   ///< of these, those that failed
    size_t alive() const;    ///< blocks that were given out while it lives and are not freed
    void free_alive();       ///< frees those blocks
    size_t largest() const;  ///< bytes of the largest request
};

} // namespace kvt_test
