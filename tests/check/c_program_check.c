/* A C program that checks texts. It is linked with plain cc, without a C++ runtime, and with the
 * message layer for the names that the codec's tables want. */
#include "kvt/kvt_check.h"

#include <stdio.h>
#include <string.h>

static int failures = 0;

static void expect(int holds, const char *what) {
    if (!holds) {
        fprintf(stderr, "c_program_check: %s\n", what);
        ++failures;
    }
}

static int look_at(const kvt_finding *finding, void *user) {
    expect(finding->kind == KVT_FINDING_LONGER_KEY, "the kind");
    expect(strcmp(finding->name, "longer-key") == 0, "its name");
    expect(finding->line == 4 && finding->column == 5 && finding->length == 7, "the place");
    expect(strcmp(finding->nearest, "job_id") == 0, "the key that was meant");
    expect(strcmp(finding->path, "end_job") == 0, "the block");
    ++*(int *)user;
    return 0;
}

int main(void) {
    const char good[] = "msg {\n  type: END_JOB\n  end_job {\n    job_id: 5\n  }\n}\n";
    const char bad[] = "msg {\n  type: END_JOB\n  end_job {\n    job_idx: 5\n  }\n}\n";
    int seen = 0;
    expect(kvt_check(good, strlen(good), look_at, &seen) == 0, "a good text has no findings");
    expect(kvt_check(good, sizeof good, NULL, NULL) == 0, "nor with its NUL");
    expect(kvt_check(bad, strlen(bad), look_at, &seen) == 1 && seen == 1, "a bad text has one");
    expect(kvt_finding_of_name(kvt_finding_name(KVT_FINDING_NUL)) == KVT_FINDING_NUL, "names");
    expect(kvt_check_losses(bad, strlen(bad)) == 1, "a loss is counted");
    expect(kvt_check_with(bad, strlen(bad), NULL, look_at, &seen) == 1 && seen == 2, "options");
    expect(strchr(kvt_finding_remedy(KVT_FINDING_NUL), '.') != NULL, "remedies");
    expect(strcmp(kvt_severity_name(kvt_finding_severity(KVT_FINDING_NUL)), "lost") == 0,
           "severities");
    expect(strchr(kvt_finding_meaning(KVT_FINDING_NUL), '.') != NULL, "meanings");
    return failures == 0 ? 0 : 1;
}
