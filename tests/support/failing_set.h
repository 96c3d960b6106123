// Which allocations fail, as a few bytes tell: so that an input can hold it beside its text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "support/memory_watch.h"
#include "support/random_records.h"

namespace kvt_test {

/// The first byte tells what is counted: all allocations, or, when it is odd, growth alone. As many
/// of these as the second byte says succeed, then as many as the third one says fail, and so on in
/// turn. After the last byte all succeed; a last byte of 255 that lets fail lets all of them fail.
class FailingSet {
public:
    explicit FailingSet(std::string_view bytes);

    bool has(const Request &request) const;

    /// The numbers, to be shown.
    std::string in_words() const;

private:
    struct Range {
        size_t first;
        size_t end;
    };

    bool growth_alone_ = false;
    std::vector<Range> ranges_; ///< in order
};

/// The bytes of a set among the first `allocations`: one, all from one on, or some.
std::string random_failures(size_t allocations, Random &random);

} // namespace kvt_test
