// SPDX-License-Identifier: Apache-2.0
//
// The numbers by which an interface is known. Pure functions: no state, no failure.
//
//   port number   a group in the high nibble, an index in the low; 22 of them
//   if_id         up to 20 bits. Low byte: a port number, an aggregate id, or 14 for a switch virtual
//                 interface; above it the VLAN of a sub-interface or the index of a virtual one
//   hsw_if_id     a port's index in the switch front end, 0 to 21
#ifndef OVK_ETH_HELPER_IDENTIFIERS_H
#define OVK_ETH_HELPER_IDENTIFIERS_H

#include "kor_types.h"

inline constexpr u32 OVK_ETH_FIRST_AGGR_ID = 0x80;
inline constexpr u32 OVK_ETH_VIRTUAL_IF_LOW_BYTE = 14;

constexpr u32 ovk_eth_create_if_id(u32 if_num)
{
    return if_num & 0xff;
}

// 0 for port 0 and for anything that is no port: the two can't be told apart by it.
u32 ovk_eth_create_hsw_if_id(u32 if_num);

// The way back for index 1 to 21; 0 otherwise.
u32 ovk_eth_create_port_id(u32 hsw_if_id);

constexpr u32 ovk_eth_create_subif_id(u32 if_id, u32 vlan_id)
{
    return (if_id & 0xff) + ((vlan_id & 0xfff) << 8);
}

constexpr u32 ovk_eth_create_virtual_if_id(u32 index)
{
    return ((index & 0xfff) << 8) | OVK_ETH_VIRTUAL_IF_LOW_BYTE;
}

constexpr u32 ovk_eth_get_virtual_if_ns_id(u32 virtual_if_id)
{
    return (virtual_if_id >> 8) & 0xfff;
}

constexpr u32 ovk_eth_create_aggr_if_id(u32 slot)
{
    return (slot + OVK_ETH_FIRST_AGGR_ID) & 0xffff;
}

namespace ovk {

// The 10-gigabit ports, 0 and 8 (which has a MAC and is no port number).
constexpr bool is_xgmac_number(u32 if_num)
{
    return (if_num & 0xFFFFFFF7) == 0;
}

// True for the 22 port numbers.
constexpr bool is_port_number(u32 if_num)
{
    const u32 group = if_num >> 4;
    const u32 index = if_num & 0xf;
    return group < 8 && index < (group < 2 ? 5u : 2u);
}

} // namespace ovk

#endif
