// A release function that does not forgive: it looks at every element that a count promises.
#pragma once

#include <cstddef>

namespace kvt_test {

/// While it lives, every record that is given to kvt_msg_release is checked first: a count of 0
/// beside a null pointer, or no more elements than the block at the pointer has room for, and
/// the same for what the elements own. A record that is otherwise fails the test. The test program
/// is linked so that kvt_msg_release comes here first.
class StrictRelease {
public:
    StrictRelease();
    ~StrictRelease();
    StrictRelease(const StrictRelease &) = delete;
    StrictRelease &operator=(const StrictRelease &) = delete;

    size_t released() const; ///< records so far
};

} // namespace kvt_test
