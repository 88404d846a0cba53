// SPDX-License-Identifier: Apache-2.0
//
// The public calls that are measured, each beside its platform calls made directly: the same operations in
// the same order with the same arguments, and nothing between them but what the arguments are made with.
// Both sides reach the platform through the same linkage: it is compiled apart from both, and nothing is
// optimized across.
#ifndef OVK_BENCH_CALLS_H
#define OVK_BENCH_CALLS_H

#include "ovk_ethernet.h"

namespace bench {

// Exceptions are configured on this domain and type.
inline constexpr u32 domain = 2;
inline constexpr u32 type = 10; // OVK_ETHERNET_EXCEPTION_TYPE_UNKNOWN_DEST_MAC
inline constexpr u32 type_code = 72;
inline constexpr u32 exception_id = 0x80020A;
inline constexpr u32 queue_handle = 0x51000001;
inline constexpr u32 cpu_param = 0x1234;
inline constexpr u32 priority = 5;
inline constexpr u32 cpu_queue = 0x0102;

// Created and deleted; and the trunk port that the other calls are made on, with its number.
inline constexpr u32 port = 1;
inline constexpr u32 trunk_port = 2;
extern ovk_ethernet_if_handle trunk;
inline constexpr ovk_ethernet_intf_attrs port_attrs = {.if_num = port,
                                                       .fwd_mode = OVK_ETHERNET_FWD_MODE_SWITCH_TRUNK,
                                                       .output_rate = OVK_ETHERNET_SPEED_100M,
                                                       .tx_enable = 1,
                                                       .rx_enable = 1,
                                                       .full_duplex = 1,
                                                       .src_mac = {0x02, 0x11, 0x22, 0x33, 0x44, 0x55},
                                                       .encap_type = OVK_ETHERNET_ENCAP_DIX};
inline constexpr u32 vlan = 100;
inline constexpr u32 bridge_group = 7;

// Around all pairs: start of the module and creation of the trunk port, and both undone.
u32 begin(ovk_module *module);
u32 end(ovk_module *module);

// Each measured call and, of the same name, its direct side.
#define PAIR(name)                                                                                         \
    u32 call_##name(ovk_module *module);                                                                   \
    u32 direct_##name(ovk_module *module)
PAIR(frame);
PAIR(send_to_cpu);
PAIR(drop);
PAIR(create_delete);
PAIR(create); // with its two blocks given back, so that it can be made again
PAIR(delete); // with two blocks taken, which it gives back
PAIR(vlan_add);
PAIR(vlan_delete);
PAIR(egress_vlan);
PAIR(counters);
PAIR(l2_counters);
#undef PAIR

} // namespace bench

#endif
