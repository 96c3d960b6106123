// END_JOB, REQ_SM_DATA, AM_SIGNAL and JOB_ERROR.
#include <gtest/gtest.h>

#include <cstring>

#include "kvt/messages/job_control.h"
#include "support/log_capture.h"
#include "support/messages.h"

namespace kvt_test {
namespace {

std::string end_job(const std::string &lines) {
    return message_text("END_JOB", "  end_job {\n" + lines + "  }\n");
}

std::string job_error(const std::string &lines) {
    return message_text("JOB_ERROR", "  job_error {\n" + lines + "  }\n");
}

TEST(JobControl, EndJobIsWrittenToTheLetter) {
    const vemra_end_job record = {.job_id = 5, .reservation_id = 7};
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_END_JOB, record), "msg {\n"
                                                       "  type: END_JOB\n"
                                                       "  end_job {\n"
                                                       "    job_id: 5\n"
                                                       "    reservation_id: 7\n"
                                                       "  }\n"
                                                       "}\n");
}

TEST(JobControl, EndJobLeavesOutWhatIsZero) {
    const vemra_end_job record = {.job_id = 5, .reservation_id = 0};
    const std::string text = end_job("    job_id: 5\n");
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_END_JOB, record), text);
    const ReadMessage<vemra_end_job> read(VEMRA_MSG_TYPE_END_JOB, text);
    EXPECT_EQ(read->job_id, 5U);
    EXPECT_EQ(read->reservation_id, 0U);
}

TEST(JobControl, RequestSmDataAlwaysTellsItsDataType) {
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_REQ_SM_DATA, vemra_request_sm_data{}),
              message_text("REQ_SM_DATA", "  request_sm_data {\n"
                                          "    data_type: 0\n"
                                          "  }\n"));
    const vemra_request_sm_data record = {.job_id = UINT64_MAX, .data_type = UINT32_MAX};
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_REQ_SM_DATA, record),
              message_text("REQ_SM_DATA", "  request_sm_data {\n"
                                          "    job_id: 18446744073709551615\n"
                                          "    data_type: 4294967295\n"
                                          "  }\n"));
}

TEST(JobControl, AmSignalIsEmptyWithoutFlags) {
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_AM_SIGNAL, vemra_am_signal{}),
              message_text("AM_SIGNAL", "  am_signal {\n  }\n"));
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_AM_SIGNAL, vemra_am_signal{.flags = 9}),
              message_text("AM_SIGNAL", "  am_signal {\n    flags: 9\n  }\n"));
}

TEST(JobControl, JobErrorIsWrittenToTheLetter) {
    const vemra_job_error record = {.job_id = 1,
                                    .vemra_job_id = 2,
                                    .tree_id = 3,
                                    .error = 4,
                                    .type = 5,
                                    .description = "link down, \\ as it stands"};
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_JOB_ERROR, record),
              job_error("    job_id: 1\n"
                        "    vemra_job_id: 2\n"
                        "    tree_id: 3\n"
                        "    error: 4\n"
                        "    type: 5\n"
                        "    description: \"link down, \\ as it stands\"\n"));
}

TEST(JobControl, JobErrorAlwaysTellsErrorAndTypeButNoEmptyDescription) {
    EXPECT_EQ(to_text(VEMRA_MSG_TYPE_JOB_ERROR, vemra_job_error{}), job_error("    error: 0\n"
                                                                              "    type: 0\n"));
}

TEST(JobControl, JobErrorReadsEveryField) {
    const ReadMessage<vemra_job_error> read(VEMRA_MSG_TYPE_JOB_ERROR,
                                            job_error("    job_id: 1\n"
                                                      "    vemra_job_id: 2\n"
                                                      "    tree_id: 3\n"
                                                      "    error: 4\n"
                                                      "    type: 5\n"
                                                      "    description: \"why { so\"\n"));
    EXPECT_EQ(read->job_id, 1U);
    EXPECT_EQ(read->vemra_job_id, 2U);
    EXPECT_EQ(read->tree_id, 3U);
    EXPECT_EQ(read->error, 4U);
    EXPECT_EQ(read->type, 5U);
    EXPECT_STREQ(read->description, "why { so");
}

TEST(JobControl, ANumberMayStandOnALaterLineWhichIsReadAgain) {
    LogCapture log;
    const ReadMessage<vemra_end_job> read(VEMRA_MSG_TYPE_END_JOB,
                                          end_job("    job_id:\n"
                                                  "\r\v\f 12\n"
                                                  "    reservation_id: 7\n"));
    EXPECT_EQ(read->job_id, 12U);
    EXPECT_EQ(read->reservation_id, 7U);
    // The line of the number is no key.
    EXPECT_EQ(log.texts()[1].substr(0, 55),
              std::string("_kvt_txt_unpack_msg_vemra_end_job mismatch, txt_msg[\r\v\f"));
}

TEST(JobControl, EveryReaderTracesEveryFieldUnderItsName) {
    LogCapture log;
    {
        const ReadMessage<vemra_end_job> read(
            VEMRA_MSG_TYPE_END_JOB, end_job("    job_id: 4294967311\n    reservation_id: 7\n"));
    }
    const std::string end_job_reader = "_kvt_txt_unpack_msg_vemra_end_job";
    EXPECT_EQ(log.take(), (std::vector<LogLine>{
                              {end_job_reader, 6, end_job_reader + " p_msg->job_id[0xf]\n"},
                              {end_job_reader, 6, end_job_reader + " p_msg->reservation_id[0x7]\n"},
                          }));
    {
        const ReadMessage<vemra_request_sm_data> read(
            VEMRA_MSG_TYPE_REQ_SM_DATA,
            message_text("REQ_SM_DATA", "  request_sm_data {\n  data_type: x\n  job_id:1\n  }\n"));
    }
    const std::string request_reader = "_kvt_txt_unpack_msg_vemra_request_sm_data";
    EXPECT_EQ(log.take(), (std::vector<LogLine>{
                              {request_reader, 6, request_reader + " p_msg->data_type[0x0]\n"},
                              {request_reader, 6, request_reader + " p_msg->job_id[0x1]\n"},
                          }));
    {
        const ReadMessage<vemra_am_signal> read(
            VEMRA_MSG_TYPE_AM_SIGNAL, message_text("AM_SIGNAL", "  am_signal {\n    flags: 255\n"
                                                                "    other: 1\n  }\n"));
    }
    const std::string signal_reader = "_kvt_txt_unpack_msg_vemra_am_signal";
    EXPECT_EQ(log.take(),
              (std::vector<LogLine>{
                  {signal_reader, 6, signal_reader + " p_msg->flags[0xff]\n"},
                  {signal_reader, 6, signal_reader + " mismatch, txt_msg[other: 1\n  }\n}\n]\n"},
              }));
    {
        const ReadMessage<vemra_job_error> read(VEMRA_MSG_TYPE_JOB_ERROR,
                                                job_error("    job_id: 1\n"
                                                          "    vemra_job_id: 2\n"
                                                          "    tree_id: 3\n"
                                                          "    error: 4\n"
                                                          "    type: 5\n"
                                                          "    description: \"" +
                                                          std::string(60, 'd') + "\"\n"));
    }
    const std::string error_reader = "_kvt_txt_unpack_msg_vemra_job_error";
    const std::string text_reader = "_kvt_txt_unpack_primarray_char";
    EXPECT_EQ(log.take(), (std::vector<LogLine>{
                              {error_reader, 6, error_reader + " p_msg->job_id[0x1]\n"},
                              {error_reader, 6, error_reader + " p_msg->vemra_job_id[0x2]\n"},
                              {error_reader, 6, error_reader + " p_msg->tree_id[0x3]\n"},
                              {error_reader, 6, error_reader + " p_msg->error[0x4]\n"},
                              {error_reader, 6, error_reader + " p_msg->type[0x5]\n"},
                              {text_reader, 6,
                               text_reader + " txt unpack value[" + std::string(50, 'd') + "]\n"},
                          }));
}

} // namespace
} // namespace kvt_test
