// SPDX-License-Identifier: Apache-2.0
//
// The tree registry: turns the rows of the tree list into live tree records.
//
// Life of a record: filled by ovk_eth_get_xgr_tree_info() (id, scratch pattern, database with its root
// entry), given its dump function by ovk_ethernet_update_tree_info() whenever the code is new, torn down by
// ovk_eth_del_xgr_tree_info(). Under the module lock.
#ifndef OVK_ETH_HW_TREE_REGISTRY_H
#define OVK_ETH_HW_TREE_REGISTRY_H

#include "common/module_object.h"

// Fills `info` for `index`, 1 to 69. Statuses: KOR_E_INVALID_ARGUMENT (another index; only `dump_groups` is
// cleared), KOR_E_PTN_SYMBOL, KOR_E_NO_MEMORY, KOR_E_SUBNET_CREATE, KOR_E_SUBNET_ADD, or that of a failed
// temporary pattern. What was made before a failure stays in the record.
u32 ovk_eth_get_xgr_tree_info(ovk_module *module, u32 index, eth_tree_info *info);

// Fills all records of the object; stops at the first failure. The object isn't published yet, hence the
// argument.
u32 ovk_eth_cache_tree_ids(ovk_module *module, ovk_eth_module_object *module_object);

// Destroys the record's database and pattern. KOR_E_SUBNET_DESTROY leaves both; else the pattern's own
// status.
u32 ovk_eth_del_xgr_tree_info(ovk_module *module, eth_tree_info *info);

// Tears down all records; stops at the first failure.
u32 ovk_eth_clear_tree_ids(ovk_module *module);

// Renews the code pointer of a record. KOR_E_INVALID_ARGUMENT for an index outside 1 to 69.
u32 ovk_ethernet_update_tree_info(ovk_module *module, u32 index, eth_tree_info *info);

#endif
