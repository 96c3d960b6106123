// A text is a message by its first word, which ends anywhere after it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "kvt/kvt_str.h"
#include "kvt/message_layer.h"
#include "support/exact_copy.h"

namespace kvt_test {
namespace {

const std::string rest = " {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  }\n}\n";

TEST(FirstWord, ThatIsNotAllOfMsgIsRefusedByBothReaders) {
    for (const char *word : {"", "m", "ms", "msG", "mxg", "Msg", " msg", "mssg"}) {
        SCOPED_TRACE(word);
        const auto text = exact_copy(word + rest);
        void *record = nullptr;
        EXPECT_EQ(kvt_msg_from_str(0, 0, text.get(), &record), -1);
        EXPECT_EQ(record, nullptr);
        char **msgs = nullptr;
        int32_t count = -7;
        EXPECT_EQ(kvt_msg_arr_from_str(text.get(), 100, &msgs, nullptr, &count), -1);
        EXPECT_EQ(msgs, nullptr);
        EXPECT_EQ(count, -7);
    }
}

TEST(FirstWord, ThatIsCutShortByTheEndOfTheTextIsRefusedByBothReaders) {
    for (const char *word : {"", "m", "ms"}) {
        SCOPED_TRACE(word);
        const auto text = exact_copy(word);
        void *record = nullptr;
        EXPECT_EQ(kvt_msg_from_str(0, 0, text.get(), &record), -1);
        char **msgs = nullptr;
        EXPECT_EQ(kvt_msg_arr_from_str(text.get(), 3, &msgs, nullptr, nullptr), -1);
    }
}

TEST(FirstWord, MayGoOnAfterMsg) {
    const auto text = exact_copy("msgs" + rest);
    void *record = nullptr;
    EXPECT_EQ(kvt_msg_from_str(0, 0, text.get(), &record), 0);
    kvt_msg_release(VEMRA_MSG_TYPE_END_JOB, record);
}

// Between messages, too: what does not begin with the whole word ends the reading.
TEST(FirstWord, ThatIsNotAllOfMsgEndsTheReadingOfASequence) {
    const std::string message = "msg" + rest;
    for (const char *word : {"ms", "msG", "mssg"}) {
        const std::string text = message + word + rest + message;
        char **msgs = nullptr;
        int32_t count = 0;
        ASSERT_EQ(kvt_msg_arr_from_str(text.c_str(), static_cast<uint32_t>(text.size()), &msgs,
                                       nullptr, &count),
                  0);
        EXPECT_EQ(count, 1) << word;
        for (int32_t i = 0; i < count; ++i) {
            std::free(msgs[i]);
        }
        std::free(msgs);
    }
}

} // namespace
} // namespace kvt_test
