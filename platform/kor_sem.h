/* SPDX-License-Identifier: Apache-2.0 */
/*
 * kor_sem: semaphores in caller-owned memory.
 *
 * The record is 28 bytes on every data model and its words belong to the run-time environment. A module's
 * locks are such semaphores, waited for with ovk_sys_sem_lock_wait() and given back with kor_sem_post().
 * A lock lets its holder in again and counts, since a public call may run inside another.
 */
#ifndef KOR_SEM_H
#define KOR_SEM_H

#include "kor_types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct kor_sem {
    u32 words[7];
} kor_sem;

/*
 * Makes the semaphore ready with the value `value`; `shared` is 1 when more than one process may use it.
 * Returns 0 or a platform status. The memory stays the caller's.
 */
u32 kor_sem_init(kor_sem *sem, u32 shared, u32 value);

/* Releases the semaphore once. Returns 0 or a platform status. */
u32 kor_sem_post(kor_sem *sem);

#ifdef __cplusplus
}
#endif

#endif
