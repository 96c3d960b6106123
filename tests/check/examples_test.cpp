// Texts as they should be: the examples have no findings.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
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
        std::string content(entry.file_size(), '\0');
        ASSERT_TRUE(file.read(content.data(), static_cast<std::streamsize>(content.size())));
        EXPECT_EQ(found(content), "");
        EXPECT_EQ(broken_promise(content), "");
        ++examples;
    }
    EXPECT_GT(examples, 20U);
}

} // namespace
} // namespace kvt_test
