// How thorough the tests with random input are.
#pragma once

#include <cstddef>
#include <cstdlib>

namespace kvt_test {

/// How often something random is tried. KVT_TEST_ROUNDS in the environment makes it more thorough.
inline size_t rounds() {
    const char *asked = std::getenv("KVT_TEST_ROUNDS");
    return asked != nullptr ? std::strtoul(asked, nullptr, 10) : 300;
}

} // namespace kvt_test
