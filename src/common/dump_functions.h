// SPDX-License-Identifier: Apache-2.0
//
// The dump functions by name, as the tree list refers to them. None of them is there yet, and this is the
// one place that says so: a tree whose function is null is dumped in raw form.
#ifndef OVK_ETH_COMMON_DUMP_FUNCTIONS_H
#define OVK_ETH_COMMON_DUMP_FUNCTIONS_H

#include "common/tree.h"

inline constexpr eth_dump_fn eth_check_aggr_link_validity_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_cpu_flow_lookup_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_dest_mac_lookup_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_encap_flow_attr_dump = nullptr;
inline constexpr eth_dump_fn eth_encap_flow_dest_mac_dump = nullptr;
inline constexpr eth_dump_fn eth_encap_flow_proto_dump = nullptr;
inline constexpr eth_dump_fn eth_ether_type_lookup_tree = nullptr;
inline constexpr eth_dump_fn eth_flow_id_lookup_optimized_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_flow_id_lookup_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_get_constituent_link_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_get_virtual_intf_tags_dump = nullptr;
inline constexpr eth_dump_fn eth_if_vlan_stats_lookup_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_l2cp_priority_map_lookup_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_link_aggregation_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_lookup_virtual_interface_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_mac_ageout_timer_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_mac_index_lookup_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_map_input_port_ns_id_for_time_index_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_map_input_port_ns_id_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_map_ns_intf_id_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_map_output_port_ns_id_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_map_sub_intf_ns_id_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_multicast_lookup_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_multicast_svif_lookup_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_out_vlan_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_port_priority_map_lookup_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_port_qos_policy_lookup_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_priority_map_lookup_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_qos_policy_lookup_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_svi_smac_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_validate_destmac_tree_dump = nullptr;
inline constexpr eth_dump_fn eth_vlan_tree_dump = nullptr;

#endif
