// Texts as they should be: the examples have no findings.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "check/found.h"
#include "support/check_promise.h"

namespace kvt_test {
namespace {

TEST(Examples, HaveNoFindings) {
    size_t examples = 0;
    for (const auto &entry : std::filesystem::directory_iterator(KVT_EXAMPLES)) {
        if (entry.path().extension() != ".kvt") {
            continue; // programs
        }
        SCOPED_TRACE(entry.path());
        std::ifstream file(entry.path(), std::ios::binary);
        std::stringstream content;
        content << file.rdbuf();
        EXPECT_EQ(found(content.str()), "");
        EXPECT_EQ(broken_promise(content.str()), "");
        ++examples;
    }
    EXPECT_GT(examples, 20U);
}

} // namespace
} // namespace kvt_test
