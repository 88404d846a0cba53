/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ovk_ethernet_module: start, stop and reload of the module.
 *
 * Life of a module handle:
 *
 *   1. The host fills in an ovk_module: guard, a system log level in `log_mask`, name, trace context,
 *      locks, parent, rte handle; `module_object` null.
 *   2. ovk_ethernet_init(). On success the handle is valid and every other call works. On failure it isn't.
 *   3. Public calls, from any thread.
 *   4. Optionally, after the code was loaded anew: ovk_ethernet_service_function_update() of the new code.
 *   5. ovk_ethernet_shutdown(). On success the handle is invalid, `log_mask` is a system level again, and
 *      the host may start over at 2 or free the handle. On failure it stays valid, half released.
 *
 * OVK_E_LOCK_RELEASE is the exception to both: start and stop have done all their work when it comes back.
 */
#ifndef OVK_ETHERNET_MODULE_H
#define OVK_ETHERNET_MODULE_H

#include "ovk_ethernet_api.h"
#include "ovk_ethernet_status.h"

#ifdef __cplusplus
extern "C" {
#endif

/* One kind of object that the module allocates in non-volatile memory. */
typedef struct ovk_eth_obj_size {
    const char *name;
    u32 size;      /* bytes that hosts reckon with for one object */
    u32 head;      /* and what comes on top of it */
    u32 max_count; /* no call enforces it */
} ovk_eth_obj_size;

/* The host's sizing table, OVK_ETH_OBJ_SIZE_ROWS rows; the same numbers on every data model. */
enum {
    OVK_ETH_OBJ_SIZE_ROWS = 10
};
OVK_ETHERNET_API extern const ovk_eth_obj_size eth_obj_size[OVK_ETH_OBJ_SIZE_ROWS];

/*
 * Brings a handle to life: allocates the module object, finds virtual pipelines and namespaces, makes three
 * namespaces, resolves all classifier trees, registers the service record with the host and sets the
 * switch's defaults. The handle becomes valid in the very last step.
 *
 * `log_mask` must be a system level (0, 1, 3, 7 or 15) and becomes the module's mask.
 *
 * Status: 0, also for a handle that is valid already, on which nothing else happens;
 *   KOR_E_INVALID_HANDLE (1)     null handle
 *   KOR_E_UNSUPPORTED (15)       `log_mask` isn't a system level
 *   KOR_E_NO_MEMORY (18)         the object, a pattern or MAC forwarding memory couldn't be allocated
 *   KOR_E_VP_NOT_FOUND (20)      a virtual pipeline is missing
 *   KOR_E_RSRC_NOT_FOUND (25), KOR_E_RSRC_CREATE (26), KOR_E_RSRC_QUERY (28), KOR_E_RSRC_ALLOCATE (29)
 *                                a namespace is missing, can't be made or queried, or its ids are taken
 *   KOR_E_SE_WRITE (44)          state memory couldn't be cleared
 *   KOR_E_SUBNET_CREATE (58), KOR_E_SUBNET_ADD (60)
 *                                a tree's database
 *   KOR_E_PTN_SYMBOL (63)        the classifier's programme lacks a function or tree
 *   KOR_E_BRIDGE_LEARN (153)     the switch's default entry
 *   the lock's statuses, and the platform's own for a database's first pattern, service registration and
 *   switch defaults
 *
 * After a failure the object is freed and nothing else is taken back: namespaces, ids, databases, MAC
 * forwarding memory and the registration stay, and a second try meets them.
 */
OVK_ETHERNET_API u32 ovk_ethernet_init(ovk_module *module);

/*
 * Takes the module down. Interfaces and flows that are still there aren't looked at; delete them first.
 *
 * Status: 0; KOR_E_INVALID_HANDLE (1), also for a module that is down already; KOR_E_SUBNET_DESTROY (59) or
 * the pattern's own status; KOR_E_BRIDGE_UNLEARN (154); KOR_E_RSRC_FREE (30); KOR_E_RSRC_DESTROY (27); the
 * lock's. The first failure stops the call: what was released before stays released and the handle stays
 * valid. The call doesn't repair such a module, and a second try stops where the platform refuses it.
 */
OVK_ETHERNET_API u32 ovk_ethernet_shutdown(ovk_module *module);

/*
 * To be called in freshly loaded code on a module that older code started: renews the virtual pipeline
 * handles, the service record's addresses and the trees' dump functions. The classifier isn't touched. May
 * be called at any time.
 *
 * Status: 0; KOR_E_INVALID_HANDLE (1); KOR_E_VP_NOT_FOUND (20); the platform's own for the registration;
 * the lock's. What was renewed before a failure stays so.
 */
OVK_ETHERNET_API u32 ovk_ethernet_service_function_update(ovk_module *module);

#ifdef __cplusplus
}
#endif

#endif
