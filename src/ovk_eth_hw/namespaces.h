// SPDX-License-Identifier: Apache-2.0
//
// The module's namespaces: those that it makes, those that it finds, and the ids that it holds from start
// to stop.
//
// Each function stops at the first failure and takes nothing back. Under the module lock.
#ifndef OVK_ETH_HW_NAMESPACES_H
#define OVK_ETH_HW_NAMESPACES_H

#include "common/module_object.h"

namespace ovk {

// Makes the module's three id pools. 0 or KOR_E_RSRC_CREATE.
u32 create_namespaces(ovk_module *module, ovk_eth_module_object &object);

// Finds the switch's namespace, and the four state memory namespaces with their figures. 0,
// KOR_E_RSRC_NOT_FOUND or KOR_E_RSRC_QUERY.
u32 find_namespaces(ovk_module *module, ovk_eth_module_object &object);

// Takes the ids of the global and default counters and of the interfaces' flow info blocks, and clears the
// counters. 0, KOR_E_RSRC_ALLOCATE or KOR_E_SE_WRITE.
u32 take_fixed_ids(ovk_module *module, ovk_eth_module_object &object);

// Gives those ids back. 0 or KOR_E_RSRC_FREE.
u32 free_fixed_ids(ovk_module *module, ovk_eth_module_object &object);

// Removes the three pools. 0 or KOR_E_RSRC_DESTROY.
u32 destroy_namespaces(ovk_module *module, ovk_eth_module_object &object);

} // namespace ovk

#endif
