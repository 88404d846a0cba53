// SPDX-License-Identifier: Apache-2.0
//
// Clearing of the memories that the classifier counts in, by whoever takes an id into use. Under the module
// lock.
#ifndef OVK_ETH_HW_STATE_MEMORY_H
#define OVK_ETH_HW_STATE_MEMORY_H

#include "common/frame.h"

// Zeroes `size` bytes, at most 256, of the state record `ns_id`. 0 or KOR_E_SE_WRITE.
u32 ovk_eth_clear_se_state(ovk_module *module, u32 ns_id, u32 size);

// Zeroes `size` bytes, at most 32, of the traffic manager's shared memory. 0 or KOR_E_SE_READ.
u32 ovk_eth_clear_shared_namespace_state(ovk_module *module, u32 ns_id, u32 size);

#endif
