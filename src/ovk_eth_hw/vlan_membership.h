// SPDX-License-Identifier: Apache-2.0
//
// Writers below VLAN membership: the two VLAN trees, the port's VLAN registers and the switch's sets of
// virtual ports. `op` is 1 to add, any other value removes. Under the module lock.
//
// A writer that needs a MAC channel may also return the system module's status for a port without one.
#ifndef OVK_ETH_HW_VLAN_MEMBERSHIP_H
#define OVK_ETH_HW_VLAN_MEMBERSHIP_H

#include "ovk_module.h"

// What a VLAN of a port is bound to, by switch index: a bridge group or sub-interface `id`, the low 16 bits
// of the counter id `if_word`, and either a profile or, when that is 0, `last`. 0, the key's status or the
// rule engine's.
u32 ovk_eth_vlan_id(ovk_module *module, u32 op, u32 port, u32 vlan_id, u32 id, u16 if_word, u32 profile,
                    u32 last);

// How a bridge group leaves an interface, by if_id. Group 0 has a key of the port alone, the port's
// catch-all.
u32 ovk_eth_out_vlan_id(ovk_module *module, u32 op, u32 port, u32 bg_id, u16 vlan_id, u32 port_tag_type,
                        u8 tag_rewrite);

// Puts a port, by switch index, into the bridge group's set in the switch or takes it out. `fixed_vp_flag`
// not 0 puts the fixed virtual port in place of the whole set, or takes it alone out.
// KOR_E_INGRESS_VLAN_SET, KOR_E_CVLAN_MAP_SET.
u32 ovk_eth_hsw_vlan_filter(ovk_module *module, u32 op, u32 port, u32 bg_id, u8 fixed_vp_flag);

// Maps a VLAN of the port to a bridge group. The removal leaves the bridge group among the port's VLANs.
// KOR_E_INGRESS_VLAN_SET, KOR_E_CVLAN_MAP_SET, KOR_E_CVLAN_MAP_REM.
u32 ovk_eth_hsw_port_ingress_vlan(ovk_module *module, u32 op, u32 port, u32 vlan_id, u16 bg_id);

// Lets the port's untagged frames into a VLAN of the switch, or drops them. The removal leaves the default
// VLAN. KOR_E_PARSING_OPTIONS_GET, KOR_E_DEFAULT_VLAN, KOR_E_PARSING_OPTIONS_SET.
u32 ovk_eth_set_gatr_port_default_vlan(ovk_module *module, u32 op, u32 port, u16 vlan);

#endif
