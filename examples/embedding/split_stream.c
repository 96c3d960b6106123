/* Splits a text of several messages, and reads each by its kind. */
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <kvt/kvt_str.h>
#include <kvt/message_layer.h>
#include <kvt/messages/job_control.h>

static const char stream[] = "msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  }\n}\n"
                             "\n"
                             "msg {\n  type: AM_SIGNAL\n  am_signal {\n    flags: 3\n  }\n}\n";

/* Returns 0 when the message could be read. */
static int handle(uint32_t kind, const char *text) {
    void *record = NULL;
    if (text == NULL || kvt_msg_from_str(0, 0, text, &record) != 0) {
        return -1;
    }
    switch (kind) {
    case VEMRA_MSG_TYPE_END_JOB:
        printf("job %" PRIu64 " ends\n", ((const vemra_end_job *)record)->job_id);
        break;
    case VEMRA_MSG_TYPE_AM_SIGNAL:
        printf("signal %" PRIu64 "\n", ((const vemra_am_signal *)record)->flags);
        break;
    default:
        printf("a message of kind %" PRIu32 "\n", kind);
    }
    kvt_msg_release((int32_t)kind, record);
    return 0;
}

int main(void) {
    char **texts = NULL;
    uint32_t *kinds = NULL;
    int32_t count = 0;
    if (kvt_msg_arr_from_str(stream, (uint32_t)strlen(stream), &texts, &kinds, &count) != 0) {
        fprintf(stderr, "cannot split the text\n");
        return EXIT_FAILURE;
    }
    int status = EXIT_SUCCESS;
    for (int32_t i = 0; i < count; ++i) {
        /* A text for which there was no memory is NULL. */
        if (handle(kinds[i], texts[i]) != 0) {
            fprintf(stderr, "cannot read message %" PRId32 "\n", i + 1);
            status = EXIT_FAILURE;
        }
        free(texts[i]);
    }
    free(texts);
    free(kinds);
    return status;
}
