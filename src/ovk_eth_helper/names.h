// SPDX-License-Identifier: Apache-2.0
//
// Names of enumeration values, as log messages show them.
//
// Pure functions from a value to a constant text: no handle, no state, no failure. A value without a name,
// gaps and values past the end among them, gives the enumeration's own fallback.
#ifndef OVK_ETH_HELPER_NAMES_H
#define OVK_ETH_HELPER_NAMES_H

#include "kor_types.h"

// The module's status codes. Also the error name service that the host is given, hence the C linkage.
extern "C" const char *ovk_eth_error_name(u32 status);

const char *ovk_eth_mac_channel_name(u32 channel);
const char *ovk_eth_exception_name(u32 value);
const char *ovk_eth_exception_action_name(u32 value);
const char *ovk_eth_mac_speed_name(u32 value);
const char *ovk_eth_port_rate_name(u32 value); // the same values, another fallback
const char *ovk_eth_mac_duplex_name(u32 value);
const char *ovk_eth_flow_control_policy_name(u32 value);
const char *ovk_eth_stp_state_name(u32 value);
const char *ovk_eth_intf_type_name(u32 value);
const char *ovk_eth_fwd_mode_name(u32 value);
const char *ovk_eth_stats_name(u32 value); // its fallback is the forwarding mode's
const char *ovk_eth_police_level_name(u32 value);
const char *ovk_eth_vlan_assign_policy_name(u32 value);
const char *ovk_ethernet_encap_type_name(u32 value);
const char *ovk_eth_flow_type_name(u32 value);
const char *ovk_eth_flow_action_name(u32 value);
const char *ovk_eth_egress_flow_action_name(u32 value);

#endif
