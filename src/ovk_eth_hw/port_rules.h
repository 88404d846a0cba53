// SPDX-License-Identifier: Apache-2.0
//
// Writers of the classifier's port and interface trees: who a port is, which MAC addresses end in it, and
// the maps that tie interface ids, switch indices and counter ids together.
//
// `op` is 1 to add and 2 to remove; a removal takes the same key and no values. All return 0, the key's
// status, or the rule engine's; under the module lock.
#ifndef OVK_ETH_HW_PORT_RULES_H
#define OVK_ETH_HW_PORT_RULES_H

#include "common/intf.h"
#include "common/mac.h"

// if_id to counter id, and back.
u32 ovk_eth_map_subif_ns_id(ovk_module *module, u32 op, u32 if_id, u32 stats_ns_id);
u32 ovk_eth_map_ns_intf_id(ovk_module *module, u32 op, u32 stats_ns_id, u32 if_id);

// Aggregate id to the switch index of its first member.
u32 ovk_eth_map_tvu_lagid_to_hsw_lagid(ovk_module *module, u32 op, u32 aggr_id, u32 hsw_if_id);

// Switch index to the if_id of the port or aggregate.
u32 ovk_eth_map_dest_map_index_to_mac_or_lag_id(ovk_module *module, u32 op, u32 hsw_if_id, u32 if_id);

// The two flags words of a port, with its counter id: ingress by switch index, egress by if_id.
u32 ovk_eth_inif_flags_stats(ovk_module *module, u32 op, u32 hsw_if_id, u32 stats_ns_id, u32 inif_flags);
u32 ovk_eth_outif_flags_stats(ovk_module *module, u32 op, u32 if_id, u32 stats_ns_id, u32 outif_flags);

// Static forwarding from port to port.
u32 ovk_eth_setup_static_port(ovk_module *module, u32 op, u32 port, u32 out_port);

// Destination MAC types of the interface's receive rules.
inline constexpr u32 OVK_ETH_MAC_TYPE_BROADCAST_RULE = 2;
inline constexpr u32 OVK_ETH_MAC_TYPE_OWN_RULE = 4;

// An address or prefix that the interface receives.
u32 ovk_eth_recv_mac(ovk_module *module, u32 op, u32 if_id, const ovk_eth_mac_prefix &mac, u32 mac_type);

// The interface that owns an address.
u32 ovk_eth_mac_addr(ovk_module *module, u32 op, const u8 *mac, u32 if_id);

// After how many minutes an address learnt on the port is forgotten. Always an addition: there is no
// removal.
u32 ovk_eth_mac_aging_timer(ovk_module *module, u32 port, u32 minutes);

#endif
