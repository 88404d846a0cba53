/* SPDX-License-Identifier: Apache-2.0 */
/* ovk_qos: what the QoS module offers to its siblings. */
#ifndef OVK_QOS_H
#define OVK_QOS_H

#include "ovk_module.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A queue of the traffic manager, as the QoS module handed it out; 0 is none. */
typedef u32 ovk_queue_handle;

/* The 24-bit id of a queue. Returns 0, or a status when the handle isn't one. */
u32 ovk_qos_queue_id_get(ovk_system *parent, ovk_queue_handle queue_handle, u32 *queue_id);

#ifdef __cplusplus
}
#endif

#endif
