/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ovk_ethernet_exception: what happens to a frame that the classifier can't serve.
 *
 * The classifier's exception handler looks an action up by domain and type. Without a rule it drops the
 * frame, so dropping is configured by taking the rule away. Types NO_ENCAP_FLOW_FOUND and
 * UNKNOWN_ASSOCIATION share one rule in each domain: the last one configured decides for both.
 */
#ifndef OVK_ETHERNET_EXCEPTION_H
#define OVK_ETHERNET_EXCEPTION_H

#include "ovk_ethernet_api.h"
#include "ovk_ethernet_enums.h"
#include "ovk_ethernet_status.h"
#include "ovk_qos.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The action, by `type`, an ovk_ethernet_exception_action_type. Priorities are 0 to 7. */
typedef struct ovk_ethernet_exception_action {
    u32 type;
    union {
        struct {
            u8 priority;
            u32 cpu_param; /* 24 bits, carried to the CPU path */
            struct {
                u8 hi;
                u8 lo;
            } cpu_queue;
            ovk_queue_handle queue_handle; /* 0: no queue of the traffic manager */
        } send_to_cpu;
        struct {
            u8 priority;
            u16 bdl_queue;
            ovk_queue_handle queue_handle;
        } send_to_bdl;
        struct {
            ovk_ethernet_if_handle if_handle; /* a physical interface */
            u8 priority;
            ovk_queue_handle queue_handle;
        } send_to_port;
        struct {
            const char *function_name; /* a classifier function, prefix included */
        } send_to_tvu_func;
    };
} ovk_ethernet_exception_action;

/*
 * Sets the action for exceptions of `type` (ovk_ethernet_exception_type, 1 to 12) in `domain` (0, 2 or 3).
 * The record is read during the call only.
 *
 * Status, in the order of the checks:
 *   KOR_E_INVALID_ARGUMENT (8)                       null `action`
 *   OVK_E_INVALID_ARGUMENT (0x30008)                 `domain`
 *   OVK_ETHERNET_E_INVALID_EXCEPTION_TYPE            `type`
 *   the QoS module's own                             a queue handle that it doesn't know
 *   OVK_ETHERNET_E_INVALID_EXCEPTION_ACTION_TYPE     `action->type`
 *   OVK_ETHERNET_E_INVALID_IF_HANDLE, OVK_ETHERNET_E_INCOMPAT_IF_TYPE
 *                                                    the interface is dead, or not a physical one
 *   OVK_ETHERNET_E_INVALID_PRIORITY                  a priority above 7
 *   KOR_E_INVALID_ARGUMENT (8)                       null function name
 *   KOR_E_PTN_SYMBOL (63)                            the classifier has no function of that name
 *   KOR_E_PTN_LEARN (64), KOR_E_PTN_UNLEARN (65)     a rule couldn't be written; those written before stay
 */
OVK_ETHERNET_API u32 ovk_ethernet_exception_configure(ovk_module *module, u32 domain, u32 type,
                                                      const ovk_ethernet_exception_action *action);

#ifdef __cplusplus
}
#endif

#endif
