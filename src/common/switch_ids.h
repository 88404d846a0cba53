// SPDX-License-Identifier: Apache-2.0
//
// Numbers of the switch that more than one writer knows.
#ifndef OVK_ETH_COMMON_SWITCH_IDS_H
#define OVK_ETH_COMMON_SWITCH_IDS_H

#include "kor_types.h"

// The switch's own VLAN of routed ports; no bridge group.
inline constexpr u32 OVK_ETH_ROUTER_VLAN_ID = 4095;

// Virtual port 22, which is in every destination's set and in the sets that LLS flows make.
inline constexpr u32 OVK_ETH_FIXED_VP = 0x400000;

#endif
