// SPDX-License-Identifier: Apache-2.0
//
// The memory of the MAC forwarding database: all nodes and bucket heads are allocated at start, so that a
// learning event never allocates.
#ifndef OVK_ETH_HW_FDB_MEMORY_H
#define OVK_ETH_HW_FDB_MEMORY_H

#include "common/module_object.h"

namespace ovk {

// Allocates heads, nodes and the lock. A head that can't be had is reported and left null, and a lock
// likewise without a report; only a missing node fails, with KOR_E_NO_MEMORY. What was allocated then
// stays.
u32 allocate_fdb_memory(ovk_module *module, ovk_eth_module_object &object);

// Frees what is in use. Of heads and nodes one more each was allocated, and the last of each stays.
void free_fdb_memory(ovk_eth_module_object &object);

} // namespace ovk

#endif
