// The traces of joined strings show the first characters of a value that has no NUL of its own.
#include <gtest/gtest.h>

#include "support/exact_copy.h"
#include "support/log_capture.h"
#include "support/memory_watch.h"
#include "support/random_records.h"
#include "support/test_records.h"

namespace kvt_test {
namespace {

using namespace kvt_str;

TEST(JoinedStrings, TraceFiftyCharactersOfALongValueThatCouldNotBeAdded) {
    for (const size_t length : {49U, 50U, 51U, 52U, 298U, 299U}) {
        SCOPED_TRACE(length);
        std::string value;
        for (size_t i = 0; i < length; ++i) {
            value += static_cast<char>('a' + i % 26);
        }
        OwnedRecord record(RecordOf<test_everything>::table);
        const auto text = exact_copy("    hosts: \"" + value + "\"\n    hosts_len: 5\n  }\n");
        MemoryWatch watch;
        watch.fail(0);
        const LogCapture log;
        Input input{Text(text.get()), Counts::as_read};
        CodecOf<test_everything>::codec.unpack(input, text.get(), record.get(), 1);
        ASSERT_EQ(log.texts().size(), 2U);
        EXPECT_TRUE(log.texts()[0].ends_with(", value[" + value.substr(0, 50) + "]\n"))
            << log.texts()[0];
        EXPECT_EQ(record.as<test_everything>()->hosts, nullptr);
    }
}

} // namespace
} // namespace kvt_test
