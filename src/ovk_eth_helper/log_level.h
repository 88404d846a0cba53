// SPDX-License-Identifier: Apache-2.0
//
// Between the system's log levels (0, 1, 3, 7, 15) and the module's log mask.
#ifndef OVK_ETH_HELPER_LOG_LEVEL_H
#define OVK_ETH_HELPER_LOG_LEVEL_H

#include "ovk_module.h"

// A system level becomes the mask, unchanged. Any other gives KOR_E_UNSUPPORTED and leaves `*out`.
u32 ovk_eth_map_sys_log(ovk_module *module, u32 level, u32 *out);

// The way back, from the current mask: the highest level bit decides, and any mask without one that isn't 0
// is 1.
u32 ovk_eth_map_eth_log(ovk_module *module);

#endif
