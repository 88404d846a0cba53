// SPDX-License-Identifier: Apache-2.0
//
// Checks and numbers of exception configuration.
#ifndef OVK_ETH_HELPER_EXCEPTION_H
#define OVK_ETH_HELPER_EXCEPTION_H

#include "ovk_ethernet_exception.h"

// The code that the classifier's handler has in its key for exception types 1 to 12; 0 for anything else.
// Types 6 and 8 share one.
u32 ovk_eth_get_exception_code(u32 type);

// Checks an action record, which isn't null: 0, OVK_ETHERNET_E_INVALID_EXCEPTION_ACTION_TYPE,
// OVK_ETHERNET_E_INVALID_PRIORITY, OVK_ETHERNET_E_INVALID_IF_HANDLE, OVK_ETHERNET_E_INCOMPAT_IF_TYPE or
// KOR_E_INVALID_ARGUMENT. Under the module lock.
u32 ovk_eth_valid_exception_action(ovk_module *module, const ovk_ethernet_exception_action *action);

#endif
