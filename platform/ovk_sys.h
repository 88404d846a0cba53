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

/* The MAC channel of a port number. Returns 0, or a status when there is no such port. */
u32 ovk_sys_mac_channel_id_get(ovk_system *parent, u32 port, u32 *channel);

/* Takes, and gives back, an interface id: 24 bits, and the id of the interface's counters in state memory.
 */
u32 ovk_sys_interface_id_alloc(ovk_system *parent, u32 *id);
u32 ovk_sys_interface_id_free(ovk_system *parent, u32 id);

#ifdef __cplusplus
}
#endif

#endif
