// SPDX-License-Identifier: Apache-2.0
//
// What calls make of failures: one table for all of them.
#ifndef OVK_TESTS_FAULT_OUTCOMES_H
#define OVK_TESTS_FAULT_OUTCOMES_H

#include <string>

#include "kor_types.h"
#include "sim.h"

namespace test {

// What a call gives when a platform call fails, which is named by its beginning, and what it says first
// where no other test has that.
struct FaultOutcome {
    const char *operation;
    u32 status;
    const char *cause = "";
};

inline FaultOutcome fault_outcome(const std::string &failed)
{
    constexpr u32 own = sim::status_injected; // handed on as it came
    constexpr u32 ignored = 0;                // the outcome isn't looked at
    // clang-format off
    static constexpr FaultOutcome outcomes[] = {
        {"nothing", 0}, {"ovk_sys_sem_lock_wait", 0x300A5}, {"kor_sem_post", 0x100A5}, {"ovk_lttng_fn_ptr_get", ignored},
        {"kor_nvm_calloc", 18, "FATAL. Memory allocation failed"},
        {"ovk_sys_interface_id_alloc", own, "Failed to allocate Stats NS ID for if_num 17"},
        {"ovk_sys_interface_id_free", own, "Failed to free Stats NS ID for interface 17"},
        {"ovk_sys_mac_channel_id_get", own, "ovk_sys_mac_channel_id_get failed for port \\d+$"},
        {"ovk_sif_netDriver_demux_add", own, "Failed to program demux tree: injected fault"},
        {"ovk_sif_netDriver_demux_remove", own, "Failed to program demux tree: injected fault"},
        {"ovk_ptn_new", own, "Could not build the (default )?input pattern"}, {"ovk_ptn_free", ignored},
        {"ovk_ptn_clear", own, "Could not build the input pattern"},
        {"ovk_ptn_extend", own, "Could not build the input pattern"},
        {"kor_ptn_learn", 64}, {"kor_ptn_unlearn", 65},
        {"kor_ptn_otreeset_append", 77}, {"kor_ptn_otreeset_build", 81}, {"kor_ptn_otreeset_clear", ignored},
        {"kor_se_state_get", 43}, {"kor_se_state_set", 44, "RTE, Failed to (reset counters in|write to) SE memory"},
        {"kor_vp_flow_data_write", 21, "RTE, Failed to write flow data"},
        {"kor_gatr_tag_config_get", 96, "RTE, Failed to get the GATR tag MSB"},
        {"kor_gatr_tag_config_set", 97, "RTE, Failed to set the GATR tag MSB"},
        {"kor_gatr_tag_enable_set", 98, "RTE, Failed to enable the GATR tag"},
        {"kor_gatr_switch_bridge_port_lport_set", 131, "RTE, Logical Port set Failed for port 17"},
        {"kor_gatr_port_vp_set", 94, "RTE, Failed to configure Virtual Pipeline (ethernet_\\w+|ID for tagged packets)$"},
        {"kor_gatr_qinq_set", 101, "RTE, Failed to disable Q-in-Q for KOR_GMAC17"},
        {"kor_gatr_crc_set", 102, "RTE, Failed to configure CRC options"},
        {"kor_gatr_unicast_filter_enable", 103, "RTE, Failed to (disable U|enable/disable u)nicast filtering"},
        {"kor_gatr_broadcast_filter_set", 104, "RTE, Failed to disable Broadcast filtering"},
        {"kor_gatr_unicast_filter_set", 105, "RTE, Failed to set MAC addresses in Unicast filter"},
        {"kor_gatr_mac_addr_set", 100, "RTE, Failed to set the source MAC address"},
        {"kor_mac_speed_duplex_get", 106}, {"kor_mac_speed_duplex_set", 107},
        {"kor_gatr_mac_statistics_get", 108}, {"kor_gatr_mac_flow_ctrl_set", 110},
        {"kor_gatr_port_enable_get", own}, {"kor_gatr_port_enable_set", own},
        {"kor_gatr_common_vps_bridging_vp_get", own}, {"kor_gatr_common_vps_bridging_vp_set", own},
        {"kor_gatr_switch_bridge_port_learn_attrs_get", 134}, {"kor_gatr_switch_bridge_port_learn_attrs_set", 135},
        {"kor_gatr_switch_bridge_port_attrs_get", 136}, {"kor_gatr_switch_bridge_port_attrs_set", 137},
        {"kor_gatr_port_default_vlan_set", 138}, {"kor_gatr_port_ingress_vlan_set", 139},
        {"kor_gatr_port_ingress_vlan_rem", 140}, {"kor_gatr_switch_bridge_vlan_vps_get", 139},
        {"kor_gatr_port_ingress_qinq_cvlan_map_set", 141}, {"kor_gatr_switch_bridge_vlan_vps_set", 141},
        {"kor_gatr_port_ingress_qinq_cvlan_map_rem", 142}, {"kor_gatr_port_ingress_options_set", 144},
        {"kor_gatr_port_ingress_parsing_options_get", 145}, {"kor_gatr_port_ingress_parsing_options_set", 146},
        {"kor_gatr_switch_bridge_unknown_multicast_set", 148}, {"kor_gatr_switch_acl_port_cfg_get", 149},
        {"kor_gatr_switch_acl_port_cfg_set", 150}, {"kor_gatr_switch_acl_build", 151},
        {"kor_gatr_switch_bridge_destination_vps_set", 152}, {"kor_gatr_switch_bridge_source_port_vps_set", 149},
        {"kor_gettime", ignored}, {"kor_nvm_malloc", ignored}, {"kor_sem_init", ignored},
        {"ovk_sif_max_subnet_entry_sz_get", ignored}, {"kor_vp_handle_get_", 20}, {"kor_rsrc_find", 25},
        {"kor_rsrc_create", 26}, {"kor_rsrc_destroy", 27}, {"kor_rsrc_query", 28}, {"kor_rsrc_allocate_fixed", 29},
        {"kor_rsrc_free", 30}, {"kor_subnet_create", 58}, {"kor_subnet_destroy", 59}, {"kor_subnet_add_subnet", 60},
        {"kor_ptn_symbol_get_id", 63}, {"ovk_module_service_function_", own},
        {"kor_gatr_switch_bridge_age_hysteresis_set", own}, {"kor_gatr_common_dscp_cos_set", own},
        {"kor_gatr_switch_acl_cos_to_dscp_map_set", own}, {"kor_gatr_switch_bridge_entry_learn", 153},
        {"kor_gatr_switch_bridge_entry_unlearn", 154},
    };
    // clang-format on
    for (const FaultOutcome &row : outcomes)
        if (failed.starts_with(row.operation))
            return row;
    return {"", ~0u, "nobody says what it gives"};
}

} // namespace test

#endif
