// Watches the codec's allocations and lets chosen ones fail. The test programs are linked so that
// calloc, realloc and free of the codec and the message layer come here first.
#pragma once

#include <cstddef>
#include <functional>

namespace kvt_test {

/// A calloc or realloc, by what went before it.
struct Request {
    bool growth;    ///< a realloc
    size_t number;  ///< of callocs and reallocs since MemoryWatch was last told what fails
    size_t growths; ///< of reallocs among these
};

/// While it lives, allocations are counted. One at a time.
class MemoryWatch {
public:
    MemoryWatch();
    ~MemoryWatch();
    MemoryWatch(const MemoryWatch &) = delete;
    MemoryWatch &operator=(const MemoryWatch &) = delete;

    /// Lets the allocations `first` to `first` + `count` - 1 fail, counted from 0 and from now on.
    void fail(size_t first, size_t count = 1);
    /// Lets the allocations fail from now on that `chosen` tells.
    void fail_where(std::function<bool(const Request &request)> chosen);
    /// Lets every realloc fail from now on.
    void fail_all_growth();
    /// Lets nothing fail from now on.
    void fail_nothing();

    /// Fills what a block gains by realloc with marks from now on, so that is_marked() tells what
    /// nobody has stored into.
    void mark_growth();

    size_t requests() const; ///< callocs and reallocs since the last call of fail
    size_t failed() const;   ///< of these, those that failed
    size_t alive() const;    ///< blocks that were given out while it lives and are not freed
    void free_alive();       ///< frees those blocks
    size_t largest() const;  ///< bytes of the largest request
};

/// The bytes that were asked for of a block that the watch has seen given out and not freed; 0 for
/// any other address.
size_t watched_size(const void *block);

/// True when all bytes are marks.
bool is_marked(const char *bytes, size_t size);

} // namespace kvt_test
