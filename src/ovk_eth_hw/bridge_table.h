// SPDX-License-Identifier: Apache-2.0
//
// The writer of default and MAC entries of the switch's bridge table. Under the module lock.
#ifndef OVK_ETH_HW_BRIDGE_TABLE_H
#define OVK_ETH_HW_BRIDGE_TABLE_H

#include "common/frame.h"

// Puts in (`op` 1) or takes out (any other) the entry of bridge group `bg_id`: its default entry if
// `is_default` isn't 0, whose destination is fixed and for which `mac` isn't read, else the entry of `mac`
// on `port`. 0, KOR_E_BRIDGE_LEARN or KOR_E_BRIDGE_UNLEARN.
u32 ovk_eth_hsw_bridge_table_entry(ovk_module *module, u32 op, u32 port, const u8 *mac, u32 bg_id,
                                   u8 is_default);

#endif
