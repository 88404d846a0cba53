// SPDX-License-Identifier: Apache-2.0
//
// The table of measured pairs, with the number of platform calls of each.
#ifndef OVK_BENCH_PAIRS_H
#define OVK_BENCH_PAIRS_H

#include "calls.h"

#define TRACES(times) "trace " #times " ovk_lttng_fn_ptr_get " #times " "
#define LOCK "ovk_sys_sem_lock_wait 1 kor_sem_post 1 "

#define CREATE                                                                                             \
    TRACES(108)                                                                                            \
    LOCK "kor_nvm_calloc 2 ovk_sys_interface_id_alloc 1 ovk_sif_netDriver_demux_add 1 kor_se_state_set 2 " \
         "kor_vp_flow_data_write 2 ovk_ptn_clear 8 ovk_ptn_extend 26 kor_ptn_learn 8 ovk_ptn_new 1 "       \
         "kor_ptn_otreeset_append 1 kor_ptn_otreeset_build 1 ovk_ptn_free 1 "                              \
         "ovk_sys_mac_channel_id_get 15 kor_gatr_mac_statistics_get 1 kor_gatr_mac_addr_set 1 "            \
         "kor_gatr_tag_config_get 1 kor_gatr_tag_config_set 1 kor_gatr_tag_enable_set 1 "                  \
         "kor_gatr_port_vp_set 2 kor_gatr_qinq_set 1 kor_gatr_crc_set 1 kor_gatr_unicast_filter_set 1 "    \
         "kor_gatr_unicast_filter_enable 1 kor_gatr_broadcast_filter_set 1 kor_mac_speed_duplex_get 2 "    \
         "kor_mac_speed_duplex_set 1 kor_gatr_port_enable_get 2 kor_gatr_port_enable_set 1 "               \
         "kor_gatr_port_ingress_options_set 1 kor_gatr_port_ingress_parsing_options_get 1 "                \
         "kor_gatr_port_ingress_parsing_options_set 1 kor_gatr_port_ingress_vlan_set 1 "                   \
         "kor_gatr_switch_bridge_unknown_multicast_set 1 kor_gatr_switch_bridge_port_lport_set 1 "         \
         "kor_gatr_switch_acl_port_cfg_get 1 kor_gatr_switch_acl_port_cfg_set 1 "                          \
         "kor_gatr_switch_acl_build 1 " BRIDGE_PORT
#define DELETE                                                                                             \
    TRACES(70)                                                                                             \
    LOCK "kor_nvm_free 2 ovk_sys_interface_id_free 1 ovk_sif_netDriver_demux_remove 1 kor_se_state_set 1 " \
         "kor_vp_flow_data_write 2 ovk_ptn_clear 8 ovk_ptn_extend 26 kor_ptn_unlearn 8 ovk_ptn_new 1 "     \
         "kor_ptn_otreeset_clear 1 kor_ptn_otreeset_build 1 ovk_ptn_free 1 "                               \
         "ovk_sys_mac_channel_id_get 6 kor_gatr_port_enable_get 2 kor_gatr_port_enable_set 1 "             \
         "kor_gatr_port_ingress_options_set 1 kor_gatr_port_ingress_vlan_rem 1 " BRIDGE_PORT
#define BRIDGE_PORT                                                                                        \
    "kor_gatr_switch_bridge_destination_vps_set 1 kor_gatr_switch_bridge_source_port_vps_set 1 "           \
    "kor_gatr_switch_bridge_port_learn_attrs_get 1 kor_gatr_switch_bridge_port_learn_attrs_set 1 "         \
    "kor_gatr_switch_bridge_port_attrs_get 2 kor_gatr_switch_bridge_port_attrs_set 2 "

namespace bench {

struct Pair {
    const char *name;
    u32 (*call)(ovk_module *module);
    u32 (*direct)(ovk_module *module);
    const char *platform_calls; // exactly what either side makes: operations and how often, which add up
};

#define PAIR(name, platform_calls)                                                                         \
    {                                                                                                      \
#name, call_##name, direct_##name, platform_calls                                                  \
    }
inline constexpr Pair pairs[] = {
    PAIR(frame, TRACES(3) LOCK),
    PAIR(send_to_cpu,
         TRACES(20) LOCK "ovk_qos_queue_id_get 1 ovk_ptn_clear 3 ovk_ptn_extend 4 kor_ptn_learn 3"),
    PAIR(drop, TRACES(20) LOCK "ovk_ptn_clear 3 ovk_ptn_extend 4 kor_ptn_unlearn 3"),
    PAIR(create_delete, CREATE DELETE),
    PAIR(create, CREATE "kor_nvm_free 2"),
    PAIR(delete, "kor_nvm_malloc 2 " DELETE),
    PAIR(vlan_add,
         TRACES(12) LOCK "ovk_ptn_clear 1 ovk_ptn_extend 2 kor_ptn_learn 1 "
                         "kor_gatr_switch_bridge_vlan_vps_get 1 kor_gatr_switch_bridge_vlan_vps_set 1 "
                         "ovk_sys_mac_channel_id_get 1 kor_gatr_port_ingress_vlan_set 1 "
                         "kor_gatr_port_ingress_qinq_cvlan_map_set 1"),
    PAIR(vlan_delete,
         TRACES(10) LOCK "ovk_ptn_clear 1 ovk_ptn_extend 2 kor_ptn_unlearn 1 "
                         "ovk_sys_mac_channel_id_get 1 kor_gatr_port_ingress_qinq_cvlan_map_rem 1"),
    PAIR(egress_vlan, TRACES(8) LOCK "ovk_ptn_clear 1 ovk_ptn_extend 2 kor_ptn_learn 1"),
    PAIR(counters, TRACES(5) LOCK "ovk_sys_mac_channel_id_get 1 kor_gatr_mac_statistics_get 1"),
    PAIR(l2_counters, TRACES(8) LOCK "kor_se_state_get 1 ovk_sys_mac_channel_id_get 1 "
                                     "kor_gatr_mac_statistics_get 1"),
};
#undef PAIR

} // namespace bench

#endif
