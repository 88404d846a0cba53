// SPDX-License-Identifier: Apache-2.0
//
// The module object: all state of fixed size, in one allocation from the non-volatile heap, zeroed at
// birth.
//
// Made by initialisation, which stores it in the handle as its very last step; freed by shutdown. Between
// the two it lives on through a reload of the code, so whatever in it is an address of the process is
// renewed by the service update: the virtual pipeline handles and the trees' dump functions. Read and
// written under the module lock, the MAC forwarding database's fields under `mac_fdb_lock`.
//
// Exactly 87788 bytes on the target.
#ifndef OVK_ETH_COMMON_MODULE_OBJECT_H
#define OVK_ETH_COMMON_MODULE_OBJECT_H

#include "common/atomics.h"
#include "common/flow.h"
#include "common/intf.h"
#include "common/layout.h"
#include "common/tree.h"
#include "kor_rsrc.h"
#include "kor_sem.h"
#include "kor_vp.h"
#include "ovk_module.h"

inline constexpr u32 OVK_ETH_MODULE_MAGIC = 0x721ad430;
inline constexpr u32 OVK_ETH_INTERFACE_NUMBERS = 256; // port numbers and aggregate ids share this space
inline constexpr u32 OVK_ETH_MAX_IF_HANDLES = 1024;
inline constexpr u32 OVK_ETH_AGGREGATES = 2;
inline constexpr u32 OVK_ETH_SWITCH_PORTS = 22;
inline constexpr u32 OVK_ETH_MAC_INDICES = 64; // slot 0 is never used
inline constexpr u32 OVK_ETH_LLS_FLOWS = 189;
inline constexpr u32 OVK_ETH_LLS_PORT_GROUPS = 4; // slot 0 of each group table is the overflow
inline constexpr u32 OVK_ETH_LLS_VLAN_GROUPS = 64;
inline constexpr u32 OVK_ETH_TASK_PRIORITIES = 8;
// One more is allocated of each than is used or freed.
inline constexpr u32 OVK_ETH_FDB_NODES = 8000;
inline constexpr u32 OVK_ETH_FDB_BUCKETS = 2048;

// Time stamp ids. Ports of index 1 to 4 share the first group's id, 6 to 9 the second's.
struct ovk_eth_time_slot {
    u32 time_slot_group_a;
    u32 time_slot_group_b;
    u32 time_slot_ports; // a bit for each port index that has an id
};

// A namespace of the run-time environment and its figures when it was found.
struct ovk_eth_namespace {
    kor_rsrc handle;
    kor_rsrc_info info;
};

// A learnt or static MAC address.
struct ovk_eth_fdb_node {
    ovk_eth_fdb_node *next;
    u8 mac[6];
    u16 bg_id;
    u32 port;
    u32 source;  // the learning event's 24-bit value
    u32 hash[2]; // the switch's hash words; all ones in a static entry
    u8 in_use;
    u8 is_static;
    u8 valid;
    u8 reserved[5];
};
OVK_TARGET_SIZE(ovk_eth_fdb_node, 36);

struct ovk_eth_fdb_bucket {
    ovk_eth_fdb_node *head;
    u32 count;
};
OVK_TARGET_SIZE(ovk_eth_fdb_bucket, 8);

// What a VLAN id is bound to on a switch port; one table of 4096 for each port in service.
struct ovk_eth_vlan_entry {
    u32 id;         // bridge group, or sub-interface id
    u32 encoded_if; // 0: free
};

// The same on an aggregate.
struct ovk_eth_aggr_vlan_entry {
    u32 id;
    u32 stats_ns_id;
    u8 kind; // 1 sub-interface, 2 bridge group, 0 free
};

struct ovk_eth_aggr_slot {
    u16 aggr_mtu;
    u8 aggr_ingress_mirroring;
    u8 history_count;                       // rows of the key map's history in use
    u8 key_in_use[OVK_ETH_AGGR_KEYS];       // 1 for a member's home key
    u8 port_key_slot[OVK_ETH_SWITCH_PORTS]; // home key by switch port, 0xff: never had one
};

// A destination MAC prefix in use by ingress flows.
struct ovk_eth_mac_index_slot {
    u8 in_use;
    u8 mac[6];
    u8 mac_len; // bits
    i16 ref_count;
};
OVK_TARGET_SIZE(ovk_eth_mac_index_slot, 10);

// A statistics group of the switch in use by LLS flows.
struct ovk_eth_lls_group {
    u16 group_key;
    u8 ref_count;
    u8 in_use;
};

struct ovk_eth_module_object {
    u32 magic; // OVK_ETH_MODULE_MAGIC while the module lives
    eth_tree_info trees[OVK_ETH_TREE_COUNT];
    ovk_eth_time_slot time_slot;
    u32 cpu_entry_fn_id;
    u32 bridging_entry_fn_id;
    ovk_eth_intf *port_owner_table[OVK_ETH_INTERFACE_NUMBERS];
    u8 aggr_in_use[OVK_ETH_AGGREGATES];
    u32 static_mac_fn;
    u32 if_handle_count;
    ovk_eth_intf *if_handles[OVK_ETH_MAX_IF_HANDLES]; // packed, in no order
    kor_vp vp_egress_encap_ipv4;
    kor_vp vp_egress_encap;
    ovk_eth_namespace intf_stats_ns;
    u32 global_stats_ns_id; // the id of the global counters
    ovk_eth_namespace flow_info_ns;
    u32 flow_info_first_id; // first of the interfaces' own blocks, one for each interface number
    ovk_eth_namespace intf_pcp_stats_ns;
    u32 intf_pcp_default_ns_id;
    ovk_eth_namespace intf_vlan_stats_ns;
    u32 intf_vlan_default_ns_id;
    kor_rsrc multicast_group_ns_hdl;
    kor_rsrc eth_flows_ns_hdl;
    kor_rsrc virtual_intf_id;
    kor_rsrc switch_ns;
    kor_rsrc time_slot_ns; // found on first use
    kor_vp vp_expander_switch;
    kor_vp vp_hsw_switch;
    kor_vp vp_hsw_flood;
    kor_vp vp_hsw_default;
    ovk_eth_fdb_node *mac_fdb_nodes[OVK_ETH_FDB_NODES + 1];
    u16 mac_fdb_count; // next node never yet used
    ovk_eth_fdb_bucket
        *mac_fdb_hash[OVK_ETH_FDB_BUCKETS + 1];  // a head may be null, then its chain is untouched
    kor_sem *mac_fdb_lock;                       // null: no locking
    u8 pcp_to_task_pri[OVK_ETH_TASK_PRIORITIES]; // IEEE 802.1Q PCP to task priority
    u8 port_attributes_override;
    u8 fdb_events_enabled;
    u32 fdb_entry_count;
    u32 mac_flush_fn;
    ovk_eth_vlan_entry *hsw_port_vlan_table[OVK_ETH_SWITCH_PORTS];
    ovk_eth_aggr_vlan_entry *aggr_vlan_table[OVK_ETH_AGGREGATES];
    ovk_eth_aggr_slot aggr_slots[OVK_ETH_AGGREGATES];
    ovk_eth_mac_index_slot mac_index_table[OVK_ETH_MAC_INDICES];
    kor_rsrc lls_flow_ns_hdl; // 0, the host's own pool
    ovk_eth_flow *lls_flows[OVK_ETH_LLS_FLOWS];
    ovk_eth_lls_group lls_port_groups[OVK_ETH_LLS_PORT_GROUPS];
    ovk_eth_lls_group lls_bg_groups[OVK_ETH_LLS_VLAN_GROUPS];
    ovk_eth_lls_group lls_vlan_groups[OVK_ETH_LLS_VLAN_GROUPS];
    i16 lls_bg_ref_count[OVK_ETH_BRIDGE_GROUPS];
    u8 reserved[868]; // up to the size that hosts reckon with
};
OVK_TARGET_SIZE(ovk_eth_module_object, 87788);
OVK_TARGET_OFFSET(ovk_eth_module_object, magic, 0);
OVK_TARGET_OFFSET(ovk_eth_module_object, trees, 4);
OVK_TARGET_OFFSET(ovk_eth_module_object, port_owner_table, 39224);
OVK_TARGET_OFFSET(ovk_eth_module_object, if_handles, 40260);
OVK_TARGET_OFFSET(ovk_eth_module_object, vp_egress_encap_ipv4, 44356);
OVK_TARGET_OFFSET(ovk_eth_module_object, mac_fdb_nodes, 44480);
OVK_TARGET_OFFSET(ovk_eth_module_object, mac_fdb_hash, 76488);
OVK_TARGET_OFFSET(ovk_eth_module_object, pcp_to_task_pri, 84688);
OVK_TARGET_SIZE(ovk_module, 36);
static_assert(sizeof(kor_sem) == 28);
static_assert(sizeof(ovk_eth_module_object) >= 87788);

// True when the handle is that of a live module. Taken before the lock.
inline bool ovk_eth_valid_handle(const ovk_module *handle)
{
    if (handle == nullptr)
        return false;
    const auto *object =
        static_cast<const ovk_eth_module_object *>(ovk::load_acquire(handle->module_object));
    return object != nullptr && ovk::load_relaxed(object->magic) == OVK_ETH_MODULE_MAGIC;
}

namespace ovk {

// The object of a valid handle.
inline ovk_eth_module_object &object_of(const ovk_module *module)
{
    return *static_cast<ovk_eth_module_object *>(module->module_object);
}

inline eth_tree_info &tree_of(const ovk_module *module, ovk_eth_tree index)
{
    return object_of(module).trees[index];
}

} // namespace ovk

#endif
