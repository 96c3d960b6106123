/* A program with a message layer of its own: it defines the three names that the codec calls, and
 * does not link kvt_message_layer. */
#include <stdio.h>
#include <stdlib.h>

#include <kvt/kvt_str.h>
#include <kvt/message_layer.h>
#include <kvt/messages/job_control.h>
#include <kvt/messages/job_start.h>

void (*log_cb)(const char *file, int line, const char *func, int level, const char *format,
               ...) = NULL;
int log_level = 0;

static int released = 0;

/* Every kind that the program reads is released here with all that hangs from it. All of it comes
 * from calloc and realloc. */
void kvt_msg_release(int32_t msg_type, void *msg) {
    if (msg == NULL) {
        return;
    }
    switch (msg_type) {
    case VEMRA_MSG_TYPE_BEGIN_JOB: {
        vemra_begin_job *job = msg;
        free(job->hosts);
        free(job->port_guids);
        break;
    }
    case VEMRA_MSG_TYPE_END_JOB:
        break; /* nothing hangs from it */
    default:
        fprintf(stderr, "the program knows no messages of kind %d\n", (int)msg_type);
        return;
    }
    free(msg);
    ++released;
}

int main(void) {
    static const char *const texts[] = {
        "msg {\n  type: BEGIN_JOB\n  begin_job {\n    hosts: \"node1,node2\"\n"
        "    port_guids: 17\n    port_guids: 18\n  }\n}\n",
        "msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  }\n}\n"};
    static const int32_t kinds[] = {VEMRA_MSG_TYPE_BEGIN_JOB, VEMRA_MSG_TYPE_END_JOB};
    for (int i = 0; i < 2; ++i) {
        void *record = NULL;
        if (kvt_msg_from_str(0, 0, texts[i], &record) != 0) {
            fprintf(stderr, "cannot read message %d\n", i);
            return EXIT_FAILURE;
        }
        kvt_msg_release(kinds[i], record);
    }
    printf("%d records released\n", released);
    return EXIT_SUCCESS;
}
