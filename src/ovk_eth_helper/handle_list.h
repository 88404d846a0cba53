// SPDX-License-Identifier: Apache-2.0
//
// The module's list of interface handles: packed, in no order, at most 1024. Part of the internal
// interface; no call keeps it. Under the module lock.
#ifndef OVK_ETH_HELPER_HANDLE_LIST_H
#define OVK_ETH_HELPER_HANDLE_LIST_H

#include "common/module_object.h"

// 0, or KOR_E_LIST_FULL (7). A handle that is listed is listed again.
u32 ovk_eth_if_handle_list_add(ovk_module *module, ovk_ethernet_if_handle handle);

// 1 if the handle is listed, else 0.
u32 ovk_eth_if_handle_list_find(ovk_module *module, ovk_ethernet_if_handle handle);

// 0, or 1 if the handle isn't listed. The last entry moves into the hole.
u32 ovk_eth_if_handle_list_rem(ovk_module *module, ovk_ethernet_if_handle handle);

#endif
