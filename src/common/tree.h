// SPDX-License-Identifier: Apache-2.0
//
// The classifier's functions and trees as this module knows them: their indices, and the record that stands
// for each of them in the module object.
//
// A record is filled at start from its row of the tree list, torn down at shutdown, and in between read
// under the module lock. Its `input_pattern` is scratch that every writer of rules for the tree fills anew;
// holding the lock from there to the rule call is what makes sharing it safe.
#ifndef OVK_ETH_COMMON_TREE_H
#define OVK_ETH_COMMON_TREE_H

#include "common/layout.h"
#include "kor_ptn.h"
#include "kor_subnet.h"

// An entry without key bits is a function whose id alone matters.
enum ovk_eth_tree : u32 {
    OVK_ETH_TREE_ETHERNET_ENCAPSULATION_DIRECT = 1,
    OVK_ETH_TREE_ETHERNET_ENCAPSULATION_INDIRECT = 2,
    OVK_ETH_TREE_EXCEPTION_HANDLER_LOOKUP = 3,
    OVK_ETH_TREE_GET_CPU_PATH_PARAM = 4,
    OVK_ETH_TREE_GET_CPU_PATH_QSH_QUEUE = 5,
    OVK_ETH_TREE_GET_CPU_PATH_QSH_AND_BDL_QUEUE = 6,
    OVK_ETH_TREE_ETH_CAPTURE_CPU_PATH_PARAM_LOOKUP = 7,
    OVK_ETH_TREE_LOOKUP_STATIC_PORT_MAP_TREE = 8,
    OVK_ETH_TREE_VLAN_ASSIGNMENT_TREE = 9,
    OVK_ETH_TREE_VLAN_ASSIGNMENT_EXT_TREE = 10,
    OVK_ETH_TREE_VALIDATE_VLAN_ID = 11,
    OVK_ETH_TREE_OUT_VLAN_LOOK_UP = 12,
    OVK_ETH_TREE_MAC_AGING_TIMER = 13,
    OVK_ETH_TREE_MAP_INTF_NAMESPACE_ID = 14,
    OVK_ETH_TREE_MAP_INPUT_PORT_NAMESPACE_ID = 15,
    OVK_ETH_TREE_MAP_OUTPUT_PORT_NAMESPACE_ID = 16,
    OVK_ETH_TREE_MAP_NAMESPACE_INTF_ID = 17,
    OVK_ETH_TREE_MAP_INPUT_PORT_NAMESPACE_ID_FOR_TIME_SLOT_ID = 18,
    OVK_ETH_TREE_LOOKUP_VIRTUAL_INTERFACE = 19,
    OVK_ETH_TREE_GET_VIRTUAL_INTF_TAGS = 20,
    OVK_ETH_TREE_VALIDATE_DESTMAC = 21,
    OVK_ETH_TREE_LOOKUP_DESTMAC = 22,
    OVK_ETH_TREE_MULTICAST_LOOKUP = 23,
    OVK_ETH_TREE_ENCAP_FLOW_DEST_MAC_LOOKUP = 24,
    OVK_ETH_TREE_ENCAP_FLOW_ATTR_LOOKUP = 25,
    OVK_ETH_TREE_CTAG_STAG_MAP = 26,
    OVK_ETH_TREE_LOOKUP_FLOW_ID = 27,
    OVK_ETH_TREE_DEST_MAC_INDEX_LOOKUP = 28,
    OVK_ETH_TREE_LOOKUP_FLOW_ID_OPTIMIZED = 29,
    OVK_ETH_TREE_ETHERTYPE_LOOKUP = 30,
    OVK_ETH_TREE_LOOKUP_CPU_FLOW = 31,
    OVK_ETH_TREE_ETHERNET_ASSOCIATION = 32,
    OVK_ETH_TREE_LOOKUP_POLICING_POLICY = 33,
    OVK_ETH_TREE_LOOKUP_INTF_PCP_POLICING_POLICY = 34,
    OVK_ETH_TREE_LOOKUP_INTF_PCP_STATS = 35,
    OVK_ETH_TREE_LOOKUP_INTF_VLAN_STATS = 36,
    OVK_ETH_TREE_LOOKUP_EGRESS_FLOW_ID = 37,
    OVK_ETH_TREE_PORT_VLAN_PRI_MAPPING = 38,
    OVK_ETH_TREE_PRIORITY_MAP_LOOKUP = 39,
    OVK_ETH_TREE_PORT_PRIORITY_MAP_LOOKUP = 40,
    OVK_ETH_TREE_L2CP_PRIORITY_MAP_LOOKUP = 41,
    OVK_ETH_TREE_QOS_POLICY_LOOKUP = 42,
    OVK_ETH_TREE_PORT_QOS_POLICY_LOOKUP = 43,
    OVK_ETH_TREE_CHECK_FOR_AGGREGATED_INTERFACE = 44,
    OVK_ETH_TREE_CHECK_AGGREGATED_LINK_VALIDITY = 45,
    OVK_ETH_TREE_GET_CONSTITUENT_LINK = 46,
    OVK_ETH_TREE_ETHERNET_MTU_TREE = 47,
    OVK_ETH_TREE_CUSTOM_BIND_INTERFACE_TREE = 48,
    OVK_ETH_TREE_FLUSH_ENABLED = 49,
    OVK_ETH_TREE_MAC_TABLE_BIND_HANDLE_LOOKUP = 50,
    OVK_ETH_TREE_MIRROR_PORT_LOOKUP = 51,
    OVK_ETH_TREE_TVU_LAG_ID_TO_HSW_LAG_ID = 52,
    OVK_ETH_TREE_CONVERT_DESTMAPINDEX_TO_OUTPUT_PORT = 53,
    OVK_ETH_TREE_PICK_AGGREGATED_SUBIF_FOR_ETH_SWITCH = 54,
    OVK_ETH_TREE_PICK_AGGREGATED_SUBIF_FOR_IPV4_ENCAP = 55,
    OVK_ETH_TREE_DROP_EVICTION_MSGS = 56,
    OVK_ETH_TREE_ETHERNET_IP_FWD_IMC_DIRECT = 57,
    OVK_ETH_TREE_ETHERNET_IP_EGRESS_IMC = 58,
    OVK_ETH_TREE_ETHERNET_IPV6_FWD_IMC = 59,
    OVK_ETH_TREE_ETHERNET_IPV6_EGRESS_IMC = 60,
    OVK_ETH_TREE_ETHERNET_OAM_INGRESS_DIRECT = 61,
    OVK_ETH_TREE_ETHERNET_OAM_EGRESS_DIRECT = 62,
    OVK_ETH_TREE_OVK_ETH_TO_BP_IMC_DIRECT = 63,
    OVK_ETH_TREE_GENERIC_FAST_ENCAPSULATION_VIA_SED = 64,
    OVK_ETH_TREE_L3_ENCAPSULATION_DIRECT = 65,
    OVK_ETH_TREE_MULTICAST_SVIF_LOOKUP = 66,
    OVK_ETH_TREE_ETH_SVI_SRC_MAC_LOOKUP = 67,
    OVK_ETH_TREE_ENCAP_FLOW_DEST_PROTO_LOOKUP = 68,
    OVK_ETH_TREE_ETHERNET_OAM_ENCAPSULATION_DIRECT = 69,
    OVK_ETH_TREE_COUNT // one more than the last; slot 0 stands empty
};

inline constexpr u32 OVK_ETH_TREE_NAME_SIZE = 256;

// Prints a rule's key and action in the tree's own words; a null pattern asks for the header.
using eth_dump_fn = void (*)(const kor_ptn *pattern, const kor_ptn_action *action);

struct eth_tree_info {
    u32 tree_id;
    u32 key_bits;
    kor_ptn input_pattern;
    kor_ptn_action default_action; // what the tree answers on a miss
    u32 has_subnet_db;
    kor_subnet subnet_db; // 0 if there is none
    u32 dump_groups;
    eth_dump_fn dump_fn; // null until a service update, and in trees that have none
    char tree_name[OVK_ETH_TREE_NAME_SIZE];
    char default_name[OVK_ETH_TREE_NAME_SIZE]; // the default function, if the default action is one
};
OVK_TARGET_SIZE(kor_ptn, 12);
OVK_TARGET_SIZE(kor_ptn_action, 12);
OVK_TARGET_SIZE(eth_tree_info, 560);
OVK_TARGET_OFFSET(eth_tree_info, input_pattern, 8);
OVK_TARGET_OFFSET(eth_tree_info, default_action, 20);
OVK_TARGET_OFFSET(eth_tree_info, dump_fn, 44);
OVK_TARGET_OFFSET(eth_tree_info, tree_name, 48);

#endif
