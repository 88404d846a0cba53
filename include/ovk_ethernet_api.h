/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ovk_ethernet_api: the export marker and what holds for every public call.
 *
 * The frame of a call. Every function but ovk_ethernet_init() first tests the module handle: a null handle,
 * one without a module object, or one whose object is no longer alive is answered with KOR_E_INVALID_HANDLE
 * (1) and two lines under the name "ovk_unknown_log", with no lock taken. It then takes the module's lock,
 * if the handle has one, does its work, and gives the lock back. So any call may also return
 *
 *   OVK_E_LOCK_ACQUIRE (0x300A5)  the lock could not be taken; nothing was done
 *   OVK_E_LOCK_RELEASE (0x100A5)  the lock could not be given back; what the call did stands, and
 *                                 the status that it would have returned is lost
 *
 * and the status of any platform operation that failed, unchanged unless the call says otherwise. 0 is
 * success. Where a call says "a rule's", that is KOR_E_SUBNET_ADD, _DELETE or _FIND (60 to 62),
 * KOR_E_PTN_LEARN (64), KOR_E_PTN_UNLEARN (65), or the sum of what the pattern operations returned while
 * the rule's key was built.
 *
 * Threads. Calls on one module may come from any thread; the module's lock puts them in a row. Start and
 * stop are the host's to keep apart from other calls. Calls on two modules don't meet.
 *
 * Failure. A failed call logs its cause and then the operation, and takes nothing back unless it says so.
 */
#ifndef OVK_ETHERNET_API_H
#define OVK_ETHERNET_API_H

#include "ovk_module.h"

/* Stands before the declaration of everything that the library exports; the symbol list is made from it. */
#define OVK_ETHERNET_API __attribute__((visibility("default")))

/* Interface and flow handles are the addresses of records that only the library reads. */
typedef struct ovk_eth_intf *ovk_ethernet_if_handle;
typedef struct ovk_eth_flow *ovk_ethernet_flow_handle;

#endif
