/* SPDX-License-Identifier: Apache-2.0 */
/* ovk_sys: what the system module offers to its siblings. */
#ifndef OVK_SYS_H
#define OVK_SYS_H

#include "ovk_module.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Waits for the semaphore. Returns 0 when the caller holds it, or a platform status when it doesn't. */
u32 ovk_sys_sem_lock_wait(kor_sem *lock);

/* Text of any status, the family's and the modules' own included. The text stays the platform's. */
const char *ovk_sys_status_get(ovk_system *parent, u32 status);

#ifdef __cplusplus
}
#endif

#endif
