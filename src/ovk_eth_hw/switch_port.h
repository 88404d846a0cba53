// SPDX-License-Identifier: Apache-2.0
//
// Writers that put a port into the switch front end or take it out, and set how it learns, ages and floods
// there. `port` is a port number. Each reads, changes and writes platform records, stops at its first
// failure, and takes nothing back; statuses are the writers' own (kor_status.h). Under the module lock.
//
// A writer that needs a MAC channel may also return the system module's status for a port without one.
#ifndef OVK_ETH_HW_SWITCH_PORT_H
#define OVK_ETH_HW_SWITCH_PORT_H

#include "kor_gatr.h"
#include "ovk_module.h"

// Learning on (1) or off, with the attributes and the maximum age that go with a port in service.
// KOR_E_LEARN_ATTRS_GET, KOR_E_LEARN_ATTRS_SET, KOR_E_BRIDGE_ATTRS_GET, KOR_E_BRIDGE_ATTRS_SET.
u32 ovk_eth_hsw_port_learning_options_set(ovk_module *module, u32 port, u32 enable);

// Learning alone on or off. KOR_E_LEARN_ATTRS_GET, KOR_E_LEARN_ATTRS_SET.
u32 ovk_eth_hsw_port_learning_set(ovk_module *module, u32 port, u32 enable);

// Maximum age: the switch's steps for 1 to 4 minutes, its longest for more. KOR_E_BRIDGE_ATTRS_GET,
// KOR_E_BRIDGE_ATTRS_SET.
u32 ovk_eth_hsw_port_mac_aging_timer_value_set(ovk_module *module, u32 port, u32 minutes);

// Flooding of frames to unknown destinations. KOR_E_BRIDGE_ATTRS_GET, KOR_E_BRIDGE_ATTRS_SET.
u32 ovk_eth_hsw_port_flooding_option_set(ovk_module *module, u32 port, u8 option);

// The switch's mode of the port alone. KOR_E_INGRESS_OPTIONS_GET, KOR_E_INGRESS_OPTIONS_SET.
u32 ovk_eth_set_gatr_port_hsw_mode(ovk_module *module, u32 port, u8 mode);

// All that makes a port one of the switch's (`hsw_mode` 1), bridging or not, or takes it out (0). The port
// starts with untagged frames discarded. KOR_E_INGRESS_OPTIONS_SET, KOR_E_PARSING_OPTIONS_GET,
// KOR_E_PARSING_OPTIONS_SET, KOR_E_UNKNOWN_MULTICAST, KOR_E_ACL_GET, KOR_E_ACL_SET, KOR_E_ACL_BUILD.
u32 ovk_eth_set_gatr_port_hsw_attr(ovk_module *module, u32 port, u8 hsw_mode, u8 bridging);

// The router VLAN on the port: op 1 lets it in, any other takes it and the port's ingress options away.
// KOR_E_INGRESS_VLAN_SET, KOR_E_INGRESS_OPTIONS_SET, KOR_E_INGRESS_VLAN_REM.
u32 ovk_eth_router_vlan_id(ovk_module *module, u32 port, u32 op);

// The virtual port behind the port's destination index, and the port's source set: op 1 sets, any other
// clears. KOR_E_DESTINATION_VPS, KOR_E_ACL_GET.
u32 ovk_eth_set_gatr_hsw_bridging_dest_vps(ovk_module *module, u32 op, u8 vp, u32 port);

// Maps a VLAN of a routed port to the router VLAN (op 1) or takes it away; VLAN 0 is the port's untagged
// traffic. KOR_E_INGRESS_VLAN_SET, KOR_E_CVLAN_MAP_SET, KOR_E_CVLAN_MAP_REM, KOR_E_PARSING_OPTIONS_GET,
// KOR_E_PARSING_OPTIONS_SET, KOR_E_DEFAULT_VLAN.
u32 ovk_eth_hsw_routed_vlan(ovk_module *module, u32 op, u32 port, u32 vlan_id);

namespace ovk {

// A channel's parsing options, with the reports of the writers that change them. KOR_E_PARSING_OPTIONS_GET,
// KOR_E_PARSING_OPTIONS_SET.
u32 get_parsing_options(ovk_module *module, u32 channel, u32 port, kor_gatr_parsing_options *options);
u32 set_parsing_options(ovk_module *module, u32 channel, u32 port, const kor_gatr_parsing_options &options);

} // namespace ovk

#endif
