// SPDX-License-Identifier: Apache-2.0
/*
 * The classifier's programme that the simulated chips run: the lookup trees with the width of their keys
 * and what they answer on a miss, and the functions. This is the chip's side of the agreement about names
 * and widths, written down by itself and not shared with the library, so that a slip on either side shows.
 */
#include "world.h"

namespace sim {

const std::string programme_prefix = "ovk_ethernet.";

namespace {

struct TreeRow {
    const char *name;
    u32 width;
    const char *miss_function; /* null: the action beside it is the answer */
    kor_ptn_action miss;
};

// clang-format off
constexpr TreeRow trees[] = {
    {"Exception_Handler_lookup", 10, "Discard_Pdu", {}},
    {"Get_cpu_path_param", 24, "Cpu_param_not_found", {}},
    {"Get_cpu_path_qsh_queue", 24, nullptr, {4, 0xffffff, 0}},
    {"Get_cpu_path_qsh_and_bdl_queue", 24, "No_qsh_bdl_queue_configured", {}},
    {"eth_capture_cpu_path_param_lookup", 17, nullptr, {4, 0, 0}},
    {"Lookup_Static_Port_Map_Tree", 8, "Ethernet_No_Static_Fwd", {}},
    {"Vlan_Assignment_Tree", 11, nullptr, {0, 4096, 0}},
    {"Vlan_Assignment_Ext_Tree", 60, nullptr, {0, 4096, 0}},
    {"Validate_VLAN_ID", 20, "Invalid_VLAN_tag", {}},
    {"OUT_VLAN_Look_up", 20, "Invalid_VLAN_id", {}},
    {"MAC_aging_timer", 8, nullptr, {4, 300, 0}},
    {"Map_Intf_NameSpace_Id", 20, "No_NS_Id_for_sub_interface", {}},
    {"Map_Input_Port_NameSpace_Id", 8, "No_NS_Id_for_port", {}},
    {"Map_Output_Port_NameSpace_Id", 8, "No_NS_Id_for_port", {}},
    {"Map_NameSpace_Intf_Id", 24, "Unknown_NS_Id", {}},
    {"Map_Input_Port_NameSpace_Id_For_Time_Slot_Id", 8, "No_NS_Id_For_Port_For_Ts_index", {}},
    {"Lookup_Virtual_Interface", 24, nullptr, {4, 0, 0}},
    {"Get_Virtual_Intf_Tags", 12, "Unknown_Switch_Virtual_Intf", {}},
    {"Validate_destMAC", 56, nullptr, {0, 0, 0}},
    {"Lookup_destMAC", 48, nullptr, {0, 0, 0}},
    {"Multicast_Lookup", 63, "Check_multicast_svif", {}},
    {"Encap_Flow_Dest_MAC_Lookup", 16, "No_encap_flow_dmac", {}},
    {"Encap_Flow_Attr_Lookup", 16, "No_encap_flow_found", {}},
    {"Ctag_Stag_Map", 68, "No_Stag_Mapping", {}},
    {"Lookup_flow_id", 85, "No_flow_id_defined", {}},
    {"Dest_Mac_Index_Lookup", 48, nullptr, {0, 0, 0}},
    {"Lookup_flow_id_optimized", 28, "Lookup_flow_id_func", {}},
    {"Ethertype_Lookup", 24, "Unknown_EtherType", {}},
    {"Lookup_CPU_flow", 52, "cpu_flow_not_defined", {}},
    {"Lookup_Policing_Policy", 84, nullptr, {4, 0, 0}},
    {"Lookup_Intf_PCP_Policing_Policy", 24, nullptr, {4, 0, 0}},
    {"Lookup_Intf_PCP_Stats", 23, nullptr, {0, 0, 0}},
    {"Lookup_Intf_VLAN_Stats", 32, nullptr, {0, 0x900940, 0}},
    {"Lookup_Egress_flow_id", 92, nullptr, {4, 0, 0}},
    {"Port_Vlan_Pri_Mapping", 20, nullptr, {0, 0, 0}},
    {"Priority_Map_Lookup", 28, "Port_Priority_Map", {}},
    {"Port_Priority_Map_Lookup", 16, "No_Port_Priority_Map", {}},
    {"L2CP_Priority_Map_Lookup", 32, "No_L2cp_Priority_Map", {}},
    {"QoS_policy_lookup", 23, "Port_Qos_Policy", {}},
    {"Port_QoS_policy_lookup", 11, "No_QoS_Policy_Setup", {}},
    {"Check_for_Aggregated_Interface", 12, nullptr, {0, 0, 0}},
    {"Check_Aggregated_Link_Validity", 16, nullptr, {0, 0, 0}},
    {"Get_constituent_link", 10, "No_constituent_link_found", {}},
    {"Ethernet_MTU_Tree", 36, "Ethernet_MTU_Failed", {}},
    {"Custom_Bind_Interface_Tree", 19, "No_Custom_Bind_Func", {}},
    {"Flush_Enabled", 20, nullptr, {0, 0, 0}},
    {"MAC_Table_Bind_Handle_Lookup", 1, "No_MAC_bind_handle", {}},
    {"Mirror_Port_Lookup", 1, "No_Mirror_port", {}},
    {"Tvu_Lag_Id_to_Hsw_Lag_Id", 8, nullptr, {0, 0, 0}},
    {"Convert_DestMapIndex_To_Output_Port", 6, nullptr, {0, 0, 0}},
    {"Multicast_SVIF_Lookup", 60, "No_ethernet_output_if", {}},
    {"Eth_SVI_Src_MAC_Lookup", 12, "No_BVI_encap_sMAC", {}},
    {"Encap_Flow_Dest_Proto_Lookup", 16, "No_BVI_encap_proto", {}},
};
// clang-format on

/* Ordered tree sets, and where a frame goes that no rule takes. */
struct OrderedRow {
    const char *name;
    u32 widths[OrderedSet::most_fields];
    const char *miss_function;
};

constexpr OrderedRow ordered_sets[] = {
    {"Ethernet_Association", {8, 24, 48, 48, 12, 3}, "No_Ethernet_Association"},
};

/* Entry points and functions that rules lead to. Those that trees go to on a miss come on top. */
constexpr const char *functions[] = {
    "Ethernet_Encapsulation_direct",
    "Ethernet_Encapsulation_indirect",
    "Pick_aggregated_subif_for_eth_switch",
    "Pick_aggregated_subif_for_ipv4_encap",
    "Drop_Eviction_Msgs",
    "Ethernet_IP_Fwd_IMC_direct",
    "Ethernet_IP_Egress_IMC",
    "Ethernet_IPv6_Fwd_IMC",
    "Ethernet_IPv6_Egress_IMC",
    "Ethernet_OAM_ingress_direct",
    "Ethernet_OAM_egress_direct",
    "ovk_eth_to_bp_imc_direct",
    "Generic_Fast_Encapsulation_via_sed",
    "L3_Encapsulation_direct",
    "Ethernet_OAM_Encapsulation_direct",
    "Process_CPU_Pkts",
    "Process_CPU_Pkts_For_Bridging",
    "MAC_Table_Flush_Entry",
    "Static_MAC_Entry",
};

} // namespace

Chip::Chip(u32 number) : ordinal(number), first_id(0x1000 + number % 32 * 0x400)
{
    const auto add = [this](const std::string &name) {
        const auto [at, is_new] = symbols.try_emplace(programme_prefix + name, programme.size());
        if (is_new)
            programme.push_back({at->first});
        return at->second;
    };
    for (const char *name : functions)
        add(name);
    for (const TreeRow &row : trees) {
        kor_ptn_action miss = row.miss;
        if (row.miss_function)
            miss = {KOR_PTN_ACTION_FUNCTION, first_id + add(row.miss_function), 0};
        const u32 index = add(row.name);
        programme[index].tree = std::make_unique<Tree>(row.width, miss);
    }
    for (const OrderedRow &row : ordered_sets) {
        add(row.miss_function);
        programme[add(row.name)].ordered =
            std::make_unique<OrderedSet>(OrderedSet{{std::begin(row.widths), std::end(row.widths)}, {}});
    }
    for (const u32 channel : channels()) {
        ports.emplace(channel, power_on_port(channel));
        switch_ports.emplace(channel, power_on_switch_port());
    }
    for (const u32 id : {0x16U, 0x17U, 0x18U})
        bridging_vps.emplace(id, power_on_bridging_vp());
}

Symbol *Chip::find_symbol(std::string_view name)
{
    const auto at = symbols.find(name);
    return at == symbols.end() || hidden.contains(name) ? nullptr : &programme[at->second];
}

bool Chip::is_function(u32 id) const
{
    const u32 index = id - first_id;
    return index < programme.size() && !programme[index].tree && !programme[index].ordered;
}

std::string Chip::function_name(u32 id) const
{
    char number[12];
    std::snprintf(number, sizeof number, "0x%x", id);
    return id - first_id < programme.size() ? programme[id - first_id].name : number;
}

} // namespace sim
