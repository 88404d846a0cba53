// SPDX-License-Identifier: Apache-2.0
//
// The flow record: one block from the non-volatile heap behind every kind of flow handle, all zero at
// birth. Alive while `flow_magic` holds the live value. Read and written under the module lock.
//
// `flow_data` is the caller's input record, copied whole, or for two kinds a layout of their own.
#ifndef OVK_ETH_COMMON_FLOW_H
#define OVK_ETH_COMMON_FLOW_H

#include "common/layout.h"
#include "ovk_ethernet_flow.h"

inline constexpr u32 OVK_ETH_FLOW_MAGIC = 0x721ad4f0;
inline constexpr u32 OVK_ETH_FLOW_GUARD = 0x43215678;
inline constexpr u32 OVK_ETH_NO_MAC_INDEX = 64; // `mac_index` of a flow without a destination MAC

// ETH_FLOW_TYPE_EGRESS_ENCAP
struct ovk_eth_encap_flow_data {
    ovk_eth_intf *if_handle;
    u16 ether_type;
    u8 dmac[6];
};

// LLS flows, whose type has no name
struct ovk_eth_lls_flow_data {
    ovk_eth_intf *if_handle;
    u16 vlan_id;
    u16 bg_id;
    u8 port;
};

struct ovk_eth_flow {
    u32 flow_id; // from the pool of its kind; 0 in policing flows
    ovk_module *eth_handle;
    u32 flow_guard; // written, never tested
    u32 flow_magic; // the only word that a handle test reads
    u32 flow_type;  // ovk_ethernet_flow_type
    union {
        ovk_ethernet_ingress_flow_data ingress;
        ovk_ethernet_ingress_extended_flow_data association;
        ovk_ethernet_policing_flow_data policing;
        ovk_ethernet_egress_flow_data egress;
        ovk_eth_encap_flow_data encap;
        ovk_ethernet_cpu_flow_data cpu;
        ovk_eth_lls_flow_data lls;
    } flow_data;
    u32 mac_index; // ingress flows: slot of the MAC index table
};

OVK_TARGET_SIZE(ovk_ethernet_flow_action, 24);
OVK_TARGET_SIZE(ovk_ethernet_ingress_flow_data, 20);
OVK_TARGET_SIZE(ovk_ethernet_cpu_flow_data, 20);
OVK_TARGET_OFFSET(ovk_ethernet_cpu_flow_data, if_handle, 12);
OVK_TARGET_SIZE(ovk_ethernet_policing_flow_data, 24);
OVK_TARGET_OFFSET(ovk_ethernet_policing_flow_data, if_handle, 8);
OVK_TARGET_SIZE(ovk_ethernet_ingress_extended_flow_data, 28);
OVK_TARGET_OFFSET(ovk_ethernet_ingress_extended_flow_data, vlan_id, 24);
OVK_TARGET_OFFSET(ovk_eth_flow, flow_magic, 12);
OVK_TARGET_OFFSET(ovk_eth_flow, flow_data, 20);
OVK_TARGET_OFFSET(ovk_eth_flow, mac_index, 48);
OVK_TARGET_SIZE(ovk_eth_flow, 40 + 12);

// As ovk_eth_valid_if_handle().
inline bool ovk_eth_valid_flow_handle(const ovk_eth_flow *handle)
{
    if (handle == nullptr)
        return false;
    const uintptr_t magic = reinterpret_cast<uintptr_t>(handle) + offsetof(ovk_eth_flow, flow_magic);
    return magic != 0 && *reinterpret_cast<const u32 *>(magic) == OVK_ETH_FLOW_MAGIC;
}

#endif
