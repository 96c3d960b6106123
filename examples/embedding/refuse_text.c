/* Refuses a text of which the reader would lose something, before it is read. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <kvt/kvt_check.h>
#include <kvt/kvt_str.h>
#include <kvt/message_layer.h>
#include <kvt/messages/message_type.h>

static const char good[] = "msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  }\n}\n";
static const char bad[] = "msg {\n  type: END_JOB\n  end_job {\n    job_idd: 5\n  }\n}\n";

static int show(const kvt_finding *finding, void *name) {
    printf("%s:%zu:%zu: %s\n", (const char *)name, finding->line, finding->column, finding->name);
    return 0; /* go on */
}

/* Returns 0 when the text is fine and was read. */
static int read_checked(const char *text, char *name) {
    const kvt_check_options options = {KVT_SEVERITY_LOST, 0, 0}; /* what is of style is read */
    if (kvt_check_with(text, strlen(text), &options, show, name) != 0) {
        return -1;
    }
    void *record = NULL;
    if (kvt_msg_from_str(0, 0, text, &record) != 0) {
        return -1; /* there was no memory */
    }
    printf("%s: read\n", name);
    kvt_msg_release(VEMRA_MSG_TYPE_END_JOB, record);
    return 0;
}

int main(void) {
    char good_name[] = "good";
    char bad_name[] = "bad";
    if (read_checked(good, good_name) != 0) {
        fprintf(stderr, "a good text was refused\n");
        return EXIT_FAILURE;
    }
    if (read_checked(bad, bad_name) == 0) {
        fprintf(stderr, "a bad text was read\n");
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
