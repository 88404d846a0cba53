// SPDX-License-Identifier: Apache-2.0
//
// The interface record: one block from the non-volatile heap for every kind of interface, all zero at
// birth. The handle that a caller holds is its address.
//
// Alive from the moment its magic is written until its delete call zeroes `if_magic`, `eth_handle` and
// `if_guard`, in that order, and frees it. Read and written under the module lock.
//
// `inif_flags` and `outif_flags` are what the classifier reads on each packet. Whoever changes one writes
// the whole word again into its tree and keeps it here.
#ifndef OVK_ETH_COMMON_INTF_H
#define OVK_ETH_COMMON_INTF_H

#include "common/layout.h"
#include "ovk_ethernet_interface.h"

inline constexpr u32 OVK_ETH_IF_MAGIC = 0x721ad41f;
inline constexpr u32 OVK_ETH_IF_GUARD = 0x43217856;
inline constexpr u32 OVK_ETH_ETHER_TYPES =
    16; // distinct ether types that an interface's flows may ever use
inline constexpr u32 OVK_ETH_BRIDGE_GROUPS = 64;
inline constexpr u32 OVK_ETH_VLAN_IDS = 4096;        // IEEE 802.1Q; 0 stands for untagged traffic
inline constexpr u16 OVK_ETH_VLAN_ETH_TYPE = 0x8100; // IEEE 802.1Q C-tag, until a port is given others

// Bits of the flags words. The lowest are the interface's id.
inline constexpr u32 OVK_ETH_FWD_MODE_SHIFT = 8;        // both, three bits
inline constexpr u32 OVK_ETH_LLC_SNAP_BIT = 0x10000;    // outif_flags
inline constexpr u32 OVK_ETH_FLOW_FILTER_BIT = 0x20000; // both
inline constexpr u32 OVK_ETH_POLICY_SHIFT = 19;         // inif_flags: the VLAN assignment policy, unmasked

inline constexpr u32 OVK_ETH_AGGR_KEYS = 4;          // hash keys of an aggregate
inline constexpr u32 OVK_ETH_AGGR_HISTORY_ROWS = 10; // earlier key maps that an aggregate remembers

// An ether type in use by flows of the interface.
struct ovk_eth_ether_type_slot {
    u8 in_use;
    u16 ether_type;
    u16 ref_count;
};

struct ovk_eth_phy_tail {
    ovk_ethernet_intf_attrs attrs; // as the caller gave them
    u8 promiscuous;
    u8 in_flow_filter;  // bit 17 of inif_flags
    u8 out_flow_filter; // bit 17 of outif_flags
    u8 spare_flag;      // bit 18 of both flags words; stays 0
    u8 phy_spare_byte;  // 1, read by nothing
    u32 phy_spare_word; // 1, read by nothing
    u32 vlan_assign_policy;
    u16 vlan_eth_type[2];
    ovk_eth_intf *parent_aggr; // while a member of an aggregate
    u8 recv_mac[6];            // second unicast address that the port accepts
    u32 tag_start;
    u32 tag_stop;
};

struct ovk_eth_vlan_tail {
    u16 vlan_id;
    ovk_eth_intf *parent; // the port or aggregate below
};

struct ovk_eth_svi_tail {
    ovk_ethernet_svi_data svi_data;
    u8 src_mac[6];
};

struct ovk_eth_aggr_tail {
    u8 src_mac[6];
    u32 fwd_mode;
    u32 encap_type;
    u8 promiscuous;
    u8 in_flow_filter;
    u8 out_flow_filter;
    u8 spare_flag;
    u8 aggr_spare_byte;  // 1, read by nothing
    u32 aggr_spare_word; // 1, read by nothing
    u32 vlan_assign_policy;
    u16 vlan_eth_type[2];
    u8 member_count;
    // Row 0 is the live map, hash key to member; the rows behind it are earlier maps, oldest first. One
    // flat array, since the row arithmetic runs over both.
    ovk_eth_intf *key_map[(1 + OVK_ETH_AGGR_HISTORY_ROWS) * OVK_ETH_AGGR_KEYS];
    u8 active_links;        // members whose link counts as up
    ovk_eth_intf **members; // a block of its own, four pointers
};

struct ovk_eth_intf {
    u32 reserved[4];
    u32 stats_ns_id;        // id of the interface's counters in state memory
    ovk_module *eth_handle; // who created it
    u32 if_guard;           // written, never tested
    u32 if_magic;           // the only word that a handle test reads
    u32 if_type;            // ovk_ethernet_intf_type
    u32 if_id;              // up to 20 bits; the low byte tells the kind
    u32 hsw_if_id;          // index in the switch front end
    u8 in_aggregate;
    u32 inif_flags;
    u32 outif_flags;
    ovk_eth_ether_type_slot ether_types[OVK_ETH_ETHER_TYPES];
    i16 bg_ref_count[OVK_ETH_BRIDGE_GROUPS]; // VLAN bindings on each bridge group
    union {
        ovk_eth_phy_tail phy;
        ovk_eth_vlan_tail vlan;
        ovk_eth_svi_tail svi;
        ovk_eth_aggr_tail aggr;
    };
};

OVK_TARGET_SIZE(ovk_ethernet_intf_attrs, 28);
OVK_TARGET_SIZE(ovk_ethernet_svi_data, 8);
OVK_TARGET_SIZE(ovk_ethernet_aggr_intf_attrs, 20);
OVK_TARGET_SIZE(ovk_eth_ether_type_slot, 6);
OVK_TARGET_OFFSET(ovk_eth_intf, stats_ns_id, 16);
OVK_TARGET_OFFSET(ovk_eth_intf, eth_handle, 20);
OVK_TARGET_OFFSET(ovk_eth_intf, if_guard, 24);
OVK_TARGET_OFFSET(ovk_eth_intf, if_magic, 28);
OVK_TARGET_OFFSET(ovk_eth_intf, if_type, 32);
OVK_TARGET_OFFSET(ovk_eth_intf, in_aggregate, 44);
OVK_TARGET_OFFSET(ovk_eth_intf, inif_flags, 48);
OVK_TARGET_OFFSET(ovk_eth_intf, ether_types, 56);
OVK_TARGET_OFFSET(ovk_eth_intf, bg_ref_count, 152);
OVK_TARGET_OFFSET(ovk_eth_intf, phy, 280);
OVK_TARGET_OFFSET(ovk_eth_intf, phy.parent_aggr, 328);
OVK_TARGET_OFFSET(ovk_eth_intf, phy.tag_stop, 344);
OVK_TARGET_OFFSET(ovk_eth_intf, vlan.parent, 284);
OVK_TARGET_OFFSET(ovk_eth_intf, svi.src_mac, 288);
OVK_TARGET_OFFSET(ovk_eth_intf, aggr.key_map, 320);
OVK_TARGET_OFFSET(ovk_eth_intf, aggr.members, 500);
OVK_TARGET_SIZE(ovk_eth_intf, 504);
static_assert(sizeof(ovk_eth_intf) >= 412);

// False for null, and for the one address at which the magic word itself would stand at null, which is
// tested before the word is read. The sum is made in integers: a test of the field's address would be
// folded away.
inline bool ovk_eth_valid_if_handle(const ovk_eth_intf *handle)
{
    if (handle == nullptr)
        return false;
    const uintptr_t magic = reinterpret_cast<uintptr_t>(handle) + offsetof(ovk_eth_intf, if_magic);
    return magic != 0 && *reinterpret_cast<const u32 *>(magic) == OVK_ETH_IF_MAGIC;
}

#endif
