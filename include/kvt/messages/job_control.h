/**
 * @file
 * Small messages that steer a running job.
 */
#ifndef KVT_MESSAGES_JOB_CONTROL_H
#define KVT_MESSAGES_JOB_CONTROL_H

#include <stdint.h>

/** END_JOB: a job ends. */
typedef struct vemra_end_job {
    uint64_t job_id;         /**< the job that ends */
    uint64_t reservation_id; /**< the reservation that the job ran in, 0 for none */
} vemra_end_job;

/** REQ_SM_DATA: asks for subnet-manager data. */
typedef struct vemra_request_sm_data {
    uint64_t job_id;    /**< the job that the data is for, 0 for none */
    uint32_t data_type; /**< which data is wanted, a code of the message layer */
} vemra_request_sm_data;

/** AM_SIGNAL: a signal, given by its flags. */
typedef struct vemra_am_signal {
    uint64_t flags; /**< bits of the message layer */
} vemra_am_signal;

/** JOB_ERROR: reports an error in a job. */
typedef struct vemra_job_error {
    uint64_t job_id;       /**< the job, as the scheduler knows it */
    uint32_t vemra_job_id; /**< the job's number within the aggregation service */
    uint16_t tree_id;      /**< the aggregation tree concerned, 0 for none */
    uint32_t error;        /**< an error code of the message layer */
    uint32_t type;         /**< the type of the error, a code of the message layer */
    char description[128]; /**< NUL-terminated, empty when there is none; at most 127 bytes are read
                            */
} vemra_job_error;

#endif
