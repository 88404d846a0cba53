/* SPDX-License-Identifier: Apache-2.0 */
/* kor_time: the run-time environment's clock. */
#ifndef KOR_TIME_H
#define KOR_TIME_H

#include "kor_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Time since start: whole seconds, then the fraction in nanoseconds. */
typedef struct kor_time {
    u32 seconds;
    u32 nanoseconds;
} kor_time;

/* Fills `out`. Returns 0 or a platform status, with `out` untouched. */
u32 kor_gettime(kor_time *out);

/* Waits for so many microseconds. */
u32 kor_usleep(u32 microseconds);

#ifdef __cplusplus
}
#endif

#endif
