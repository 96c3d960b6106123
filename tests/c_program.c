/* A C program that includes every public header, writes a message and reads it back. It is linked
 * with plain cc, without a C++ runtime. */
#include "kvt/kvt_str.h"
#include "kvt/message_layer.h"
#include "kvt/messages/events.h"
#include "kvt/messages/groups.h"
#include "kvt/messages/job_control.h"
#include "kvt/messages/job_data.h"
#include "kvt/messages/job_info.h"
#include "kvt/messages/job_start.h"
#include "kvt/messages/message_type.h"
#include "kvt/messages/reservations.h"
#include "kvt/messages/resource_data.h"
#include "kvt/messages/sm_data.h"
#include "kvt/messages/topology.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static int failures = 0;

static void expect(int holds, const char *what) {
    if (!holds) {
        fprintf(stderr, "c_program: %s\n", what);
        ++failures;
    }
}

/* A table of functions, as one that is filled by dlsym(). */
struct reader {
    int32_t (*kvt_msg_from_str)(kvt_ignored, kvt_ignored, const char *, void **);
};

static void write_and_read_a_job(void) {
    char hosts[] = "node001,node002";
    uint64_t guids[] = {1, 18446744073709551615u};
    vemra_begin_job job;
    memset(&job, 0, sizeof job);
    job.job_id = 42;
    job.quota_percentage = 12.5f;
    job.hosts = hosts;
    job.hosts_len = sizeof hosts;
    job.num_guids = 2;
    job.port_guids = guids;

    uint32_t size = kvt_str_get_buf_size(VEMRA_MSG_TYPE_BEGIN_JOB, &job);
    char *text = malloc(size);
    if (text == NULL) {
        expect(0, "no memory");
        return;
    }
    expect(kvt_msg_to_str(VEMRA_MSG_TYPE_BEGIN_JOB, &job, text) == 0, "writes");
    expect(strlen(text) + 1 == size, "the size is exact");

    void *record = NULL;
    const struct reader reader = {kvt_msg_from_str};
    expect(reader.kvt_msg_from_str(NULL, size, text, &record) == 0, "reads through a pointer");
    kvt_msg_release(VEMRA_MSG_TYPE_BEGIN_JOB, record);
    expect(kvt_msg_from_str(NULL, size, text, &record) == 0, "reads");
    const vemra_begin_job *read = record;
    expect(read->job_id == 42 && read->quota_percentage == 12.5f, "numbers survive");
    expect(strcmp(read->hosts, hosts) == 0 && read->hosts_len == sizeof hosts, "strings survive");
    expect(read->num_guids == 2 && read->port_guids[1] == guids[1], "arrays survive");
    kvt_msg_release(VEMRA_MSG_TYPE_BEGIN_JOB, record);

    char **texts = NULL;
    uint32_t *kinds = NULL;
    int32_t count = 0;
    expect(kvt_msg_arr_from_str(text, size - 1, &texts, &kinds, &count) == 0, "splits");
    expect(count == 1 && kinds[0] == VEMRA_MSG_TYPE_BEGIN_JOB && strcmp(texts[0], text) == 0,
           "one message is itself");
    free(texts[0]);
    free(texts);
    free(kinds);
    free(text);
}

static void pass_anything_for_the_ignored_arguments(void) {
    const char text[] = "msg {\n  type: AM_SIGNAL\n  am_signal {\n    flags: 3\n  }\n}\n";
    int32_t (*reader)(kvt_ignored, kvt_ignored, const char *, void **) = kvt_msg_from_str;
    void *record = NULL;
    expect(kvt_msg_from_str(0, NULL, text, &record) == 0, "0 and NULL");
    kvt_msg_release(VEMRA_MSG_TYPE_AM_SIGNAL, record);
    expect(kvt_msg_from_str(text, 7L, text, &record) == 0, "a pointer and a long");
    kvt_msg_release(VEMRA_MSG_TYPE_AM_SIGNAL, record);
    expect(reader(0, 0, text, &record) == 0, "through a pointer to the function");
    expect(((vemra_am_signal *)record)->flags == 3, "the same record");
    kvt_msg_release(VEMRA_MSG_TYPE_AM_SIGNAL, record);
}

static void step_through_lines(void) {
    const char text[] = "block {\n  key: 1\n}\nnext";
    expect(check_start_msg(text) == 1 && check_end_msg(text) == 0, "the first line opens");
    expect(strcmp(next_line(text), "key: 1\n}\nnext") == 0, "the next line");
    expect(strcmp(find_end_msg(text), "next") == 0, "after the block");
    expect(strcmp(next_msg(text, 99), "key: 1\n}\nnext") == 0, "the next message");
}

static void log_to_standard_error(void) {
    log_cb = kvt_log_to_stderr;
    log_level = -1; /* nothing is printed */
    expect(kvt_msg_to_str(VEMRA_MSG_TYPE_END_JOB, NULL, NULL) == -1, "null pointers are refused");
    log_cb = NULL;
    kvt_msg_release(VEMRA_MSG_TYPE_END_JOB, NULL);
    kvt_msg_release(-1, &failures);
}

int main(void) {
    write_and_read_a_job();
    pass_anything_for_the_ignored_arguments();
    step_through_lines();
    log_to_standard_error();
    return failures == 0 ? 0 : 1;
}
