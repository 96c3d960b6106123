/* Writes a message as text, and reads it back. */
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>

#include <kvt/kvt_str.h>
#include <kvt/message_layer.h>
#include <kvt/messages/job_control.h>

int main(void) {
    const vemra_end_job job = {.job_id = 5, .reservation_id = 7};
    const uint32_t size = kvt_str_get_buf_size(VEMRA_MSG_TYPE_END_JOB, &job);
    char *text = size >= 9 ? malloc(size) : NULL;
    if (text == NULL || kvt_msg_to_str(VEMRA_MSG_TYPE_END_JOB, &job, text) != 0) {
        fprintf(stderr, "cannot write the message\n");
        free(text);
        return EXIT_FAILURE;
    }
    fputs(text, stdout);

    void *record = NULL;
    const int32_t result = kvt_msg_from_str(0, 0, text, &record);
    free(text);
    if (result != 0) {
        fprintf(stderr, "cannot read the message\n");
        return EXIT_FAILURE;
    }
    const vemra_end_job *read = record;
    printf("job %" PRIu64 " of reservation %" PRIu64 " ends\n", read->job_id, read->reservation_id);
    kvt_msg_release(VEMRA_MSG_TYPE_END_JOB, record);
    return EXIT_SUCCESS;
}
