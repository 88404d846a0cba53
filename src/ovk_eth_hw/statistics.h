// SPDX-License-Identifier: Apache-2.0
//
// Reading of counters. A failed read may leave `out` partly filled. Under the module lock.
#ifndef OVK_ETH_HW_STATISTICS_H
#define OVK_ETH_HW_STATISTICS_H

#include "ovk_ethernet_statistics.h"

// A port's counter registers in the switch.
struct ovk_eth_port_counter_regs {
    u32 a;
    u32 b;
    u32 c;
};

// The MAC's 27 transmit and 28 receive counters into one record, the halves of each put right. They may lie
// where they go.
void ovk_eth_copy_hw_stats(ovk_eth_port_stats *out, const u64 *tx, const u64 *rx);

// A port's MAC counters; `clear_on_read` 1 zeroes them. 0, the system module's own status, or
// KOR_E_MAC_STATS.
u32 ovk_eth_port_stats_get(ovk_module *module, u32 if_num, ovk_eth_port_stats *out, u32 clear_on_read);

// 0, the system module's own status, KOR_E_COUNTER_REG_MODE or KOR_E_COUNTER_REG_GET.
u32 ovk_eth_port_counter_reg_stats_get(ovk_module *module, u32 if_num, ovk_eth_port_counter_regs *out);

// The classifier's counters at `ns_id`, in host byte order. 0 or KOR_E_SE_READ.
u32 ovk_eth_if_stats_get(ovk_module *module, u32 ns_id, ovk_eth_if_stats *out);
u32 ovk_eth_global_stats_get(ovk_module *module, u32 ns_id, ovk_eth_global_stats *out);

#endif
