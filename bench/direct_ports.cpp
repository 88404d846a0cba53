// SPDX-License-Identifier: Apache-2.0
//
// The direct sides of the calls on ports. They are on MAC channel 1; what they read they change as the
// calls do.
#include "calls.h"
#include "common/switch_ids.h"
#include "direct.h"
#include "kor_gatr.h"
#include "kor_gatr_switch.h"
#include "kor_nvm.h"
#include "kor_otreeset.h"
#include "kor_se.h"
#include "ovk_sif.h"
#include "ovk_sys.h"

#include <cstring>

#define NAME "KOR_GMAC1"
#define MAC_FORMAT "%02x-%02x-%02x-%02x-%02x-%02x"
#define MAC_WORDS MAC[0], MAC[1], MAC[2], MAC[3], MAC[4], MAC[5]

namespace bench {

namespace {

constexpr const u8 (&MAC)[6] = port_attrs.src_mac;
constexpr u8 broadcast[6] = {0xff, 0xff, 0xff, 0xff, 0xff, 0xff};
constexpr u8 zeroes[256] = {};
constexpr u32 flags = port | OVK_ETHERNET_FWD_MODE_SWITCH_TRUNK << 8 | 0x20000;

u32 word(const void *handle)
{
    return static_cast<u32>(reinterpret_cast<uintptr_t>(handle));
}

// A named function that works on a port's channel.
struct OnChannel : Passage {
    u32 channel = 0;
    u32 rc;

    OnChannel(ovk_module *in, const char *name, u32 number)
        : Passage(in, name), rc(ovk_sys_mac_channel_id_get(in->parent, number, &channel))
    {
    }
};

// The parts that a delete has too, there without actions and with everything off.

u32 flags_rules(ovk_module *module, const kor_ptn_action *action)
{
    const u32 rc = rule(module, "ovk_eth_inif_flags_stats", OVK_ETH_TREE_MAP_INPUT_PORT_NAMESPACE_ID,
                        action, Field{port, 8});
    return rc + rule(module, "ovk_eth_outif_flags_stats", OVK_ETH_TREE_MAP_OUTPUT_PORT_NAMESPACE_ID, action,
                     Field{port, 8});
}

u32 id_rules(ovk_module *module, u32 ns_id, const kor_ptn_action *to_port, const kor_ptn_action *to_ns)
{
    u32 rc = rule(module, "ovk_eth_map_dest_map_index_to_mac_or_lag_id",
                  OVK_ETH_TREE_CONVERT_DESTMAPINDEX_TO_OUTPUT_PORT, to_port, Field{port + 1, 6});
    rc +=
        rule(module, "ovk_eth_map_subif_ns_id", OVK_ETH_TREE_MAP_INTF_NAMESPACE_ID, to_ns, Field{port, 20});
    return rc + rule(module, "ovk_eth_map_ns_intf_id", OVK_ETH_TREE_MAP_NAMESPACE_INTF_ID, to_port,
                     Field{ns_id, 24});
}

Field octet(const u8 *mac, u32 index)
{
    return {mac[index], 8};
}

u32 receive_rule(ovk_module *module, const u8 *mac, const kor_ptn_action *action)
{
    return rule(module, "ovk_eth_recv_mac", OVK_ETH_TREE_VALIDATE_DESTMAC, action, Field{port, 8},
                octet(mac, 0), octet(mac, 1), octet(mac, 2), octet(mac, 3), octet(mac, 4), octet(mac, 5));
}

u32 mac_rule(ovk_module *module, const kor_ptn_action *action)
{
    return rule(module, "ovk_eth_mac_addr", OVK_ETH_TREE_LOOKUP_DESTMAC, action, octet(MAC, 0),
                octet(MAC, 1), octet(MAC, 2), octet(MAC, 3), octet(MAC, 4), octet(MAC, 5));
}

u32 bridge_port(ovk_module *module, u8 on)
{
    const kor_rte rte = module->rte_handle;
    kor_gatr_learn_attrs learning;
    kor_gatr_bridge_port_attrs bridging;
    u8 learn = 0;
    u32 rc = 0;
    {
        const OnChannel at(module, "ovk_eth_set_gatr_hsw_bridging_dest_vps", port);
        const u32 vps = on != 0 ? 1u << port : 0;
        rc += kor_gatr_switch_bridge_destination_vps_set(rte, port + 1,
                                                         vps | (on != 0 ? OVK_ETH_FIXED_VP : 0), 0);
        rc += at.rc + kor_gatr_switch_bridge_source_port_vps_set(rte, at.channel, vps, 0);
    }
    {
        const OnChannel at(module, "ovk_eth_hsw_port_learning_options_set", port);
        HW("Configuring the GATR Port Learning Attrs\n");
        rc += kor_gatr_switch_bridge_port_learn_attrs_get(rte, at.channel, &learn, &learning);
        learning.byte_5 = learning.byte_6 = learning.byte_7 = learning.byte_9 = 1;
        learning.byte_8 = 0;
        rc += kor_gatr_switch_bridge_port_learn_attrs_set(rte, at.channel, on, &learning);
        HW("Configuring the GATR Port max age timer value\n");
        rc += kor_gatr_switch_bridge_port_attrs_get(rte, at.channel, &bridging);
        bridging.max_age = 62;
        bridging.byte_11 = 1;
        rc += at.rc + kor_gatr_switch_bridge_port_attrs_set(rte, at.channel, &bridging);
    }
    const OnChannel at(module, "ovk_eth_hsw_port_flooding_option_set", port);
    HW("Configuring the GATR Port Flooding Option\n");
    rc += kor_gatr_switch_bridge_port_attrs_get(rte, at.channel, &bridging);
    bridging.flooding = on;
    return rc + at.rc + kor_gatr_switch_bridge_port_attrs_set(rte, at.channel, &bridging);
}

// One direction of the MAC, which stands as it is to be when there is a text to say so.
u32 set_direction(ovk_module *module, const char *function, const char *already, u32 rx_on, u32 tx_on)
{
    const OnChannel at(module, function, port);
    u32 rx = 0, tx = 0;
    u32 rc = at.rc + kor_gatr_port_enable_get(module->rte_handle, at.channel, &rx, &tx);
    if (already != nullptr) {
        HW(already, NAME);
        return rc;
    }
    HW("Configuring MAC Channel %s with Rx %s and Tx %s\n", NAME, rx_on != 0 ? "Enabled" : "Disabled",
       tx_on != 0 ? "Enabled" : "Disabled");
    return rc + kor_gatr_port_enable_set(module->rte_handle, at.channel, rx_on, tx_on);
}

u32 association(ovk_module *module, bool on)
{
    const Passage passage(module, "ovk_eth_default_association");
    const eth_tree_info &tree = ovk::tree_of(module, OVK_ETH_TREE_ETHERNET_ASSOCIATION);
    const kor_ptn_action action = {tree.default_action.type, tree.default_action.w1, 0};
    kor_vptn_field fields[6] = {{},
                                {0, {nullptr, 0, 24}},
                                {0, {nullptr, 0, 48}},
                                {0, {nullptr, 0, 48}},
                                {0, {nullptr, 0, 12}},
                                {0, {nullptr, 0, 3}}};
    kor_ptn &selector = fields[0].pattern;
    u32 rc = ovk_ptn_new(8, &selector);
    rc += ovk_ptn_extend(&selector, port, 8);
    TRACE(on ? 20 : 22, "%s: (%d) ", tree.tree_name, 0);
    rc += on ? kor_ptn_otreeset_append(module->rte_handle, tree.tree_id, 6, fields, &action)
             : kor_ptn_otreeset_clear(module->rte_handle, tree.tree_id, fields);
    TRACE(23, "%s: (%d) ", tree.tree_name, 0);
    rc += kor_ptn_otreeset_build(module->rte_handle, tree.tree_id, fields);
    return rc + ovk_ptn_free(selector.data, selector.length, selector.width);
}

// `data` are 136 bytes for both banks, `info` 8 of state memory.
u32 state(ovk_module *module, bool on, const void *data, u32 index, const void *info)
{
    const kor_vp vp = ovk::object_of(module).vp_egress_encap_ipv4;
    u32 rc = 0;
    {
        const Passage passage(module, on ? "ovk_eth_intf_flow_data_set" : "ovk_eth_intf_flow_data_clear");
        rc += kor_vp_flow_data_write(vp, 0, port, data);
        rc += kor_vp_flow_data_write(vp, 1, port + 256, data);
    }
    const Passage passage(module, on ? "ovk_eth_if_info_se_set" : "ovk_eth_if_info_se_reset");
    return rc + kor_se_state_set(module->rte_handle, index, 0, info, 8);
}

// What a create alone does to adapter, switch and MAC.

u32 set_up_adapter(ovk_module *module)
{
    constexpr const char *pipeline = "ethernet_static_forwarding";
    constexpr u32 msb = port | port << 8;
    const kor_rte rte = module->rte_handle;
    const u8 *priorities = ovk::object_of(module).pcp_to_task_pri;
    kor_gatr_vp_params params = {.default_task_priority = priorities[0]};
    u32 rc = 0, stop = 0, start = 0, old_msb = 0, flag = 0;
    {
        const OnChannel at(module, "ovk_eth_link_tag_msb", port);
        HW("Configuring TAG MSB with %d for MAC Channel %s\n", msb, NAME);
        rc += kor_gatr_tag_config_get(rte, at.channel, &stop, &start, &old_msb, &flag);
        rc += kor_gatr_tag_config_set(rte, at.channel, stop, start, msb);
        rc += kor_gatr_tag_enable_set(rte, at.channel, 1);
        HW("Configuring tag_msb(0x%x), start(%d)/stop(%d) offset for MAC Channel %s\n", msb, start, stop,
           NAME);
        rc += at.rc + kor_gatr_switch_bridge_port_lport_set(rte, at.channel, port);
    }
    const OnChannel at(module, "ovk_eth_set_gatr_port_attr", port);
    HW("Configuring the default virtual pipeline %s\n", pipeline);
    rc += kor_gatr_port_vp_set(rte, at.channel, 0, pipeline, &params);
    std::memcpy(params.pcp_task_priority, priorities, sizeof params.pcp_task_priority);
    rc += kor_gatr_port_vp_set(rte, at.channel, 1, pipeline, &params);
    HW("Configuring MAC Channel %s with VLAN ethType 0x%04x & 0x%04x\n", NAME, 0x8100, 0x8100);
    HW("Enabling Q-in-Q for MAC Channel %s\n", NAME);
    rc += kor_gatr_qinq_set(rte, at.channel, 1);
    HW("Enabling Append-good-CRC and strip-CRC for MAC Channel %s\n", NAME);
    rc += kor_gatr_crc_set(rte, at.channel, 1, 0, 1);
    HW("Disabling Unicast filtering for MAC Channel %s\n", NAME);
    rc += kor_gatr_unicast_filter_enable(rte, at.channel, 0);
    HW("Disabling broadcast filtering for MAC Channel %s\n", NAME);
    return rc + at.rc + kor_gatr_broadcast_filter_set(rte, at.channel, 0);
}

u32 enter_switch(ovk_module *module)
{
    const kor_rte rte = module->rte_handle;
    const kor_gatr_ingress_options options = {
        .hsw_mode = 1, .byte_1 = 1, .bridging = 1, .byte_20 = 1, .byte_21 = 1};
    kor_gatr_parsing_options parsing;
    kor_gatr_acl_port_cfg acl;
    u32 rc = 0;
    {
        const OnChannel at(module, "ovk_eth_set_gatr_port_hsw_attr", port);
        HW("Configuring ingress options for port %u\n", port);
        rc += kor_gatr_port_ingress_options_set(rte, at.channel, &options);
        rc += kor_gatr_port_ingress_parsing_options_get(rte, at.channel, &parsing);
        parsing.byte_3 = parsing.byte_4 = parsing.untagged_discard = 1;
        rc += kor_gatr_port_ingress_parsing_options_set(rte, at.channel, &parsing);
        rc += kor_gatr_switch_bridge_unknown_multicast_set(rte, at.channel, 201);
        rc += kor_gatr_switch_acl_port_cfg_get(rte, at.channel, &acl);
        acl.word_56 = acl.word_60 = 1;
        acl.byte_98 = 3;
        acl.byte_99 = 0;
        rc += kor_gatr_switch_acl_port_cfg_set(rte, at.channel, &acl);
        rc += at.rc + kor_gatr_switch_acl_build(rte);
    }
    rc += bridge_port(module, 1);
    const OnChannel at(module, "ovk_eth_router_vlan_id", port);
    HW("Configuring ingress options for port %u\n", port);
    return rc + at.rc + kor_gatr_port_ingress_vlan_set(rte, at.channel, OVK_ETH_ROUTER_VLAN_ID, 1);
}

u32 set_up_mac(ovk_module *module)
{
    const kor_rte rte = module->rte_handle;
    u32 rc = 0, speed = 0, duplex = 0;
    {
        const OnChannel at(module, "ovk_eth_if_speed_set", port);
        rc += kor_mac_speed_duplex_get(rte, at.channel, &speed, &duplex);
        HW("Configuring MAC Channel %s with %s speed and in %s mode\n", NAME, "OVK_ETHERNET_SPEED_100M",
           "OVK_ETHERNET_DUPLEX_FULL");
        rc += at.rc + kor_mac_speed_duplex_set(rte, at.channel, OVK_ETHERNET_SPEED_100M, duplex);
    }
    {
        const OnChannel at(module, "ovk_eth_if_full_duplex_set", port);
        rc += at.rc + kor_mac_speed_duplex_get(rte, at.channel, &speed, &duplex);
        HW("MAC Channel %s already configured in Full Duplex mode\n", NAME);
    }
    {
        const OnChannel at(module, "ovk_eth_if_autoneg_disable", port);
        HW("Disabling Auto-negotiation for MAC Channel %s\n", NAME);
        rc += at.rc;
    }
    rc += set_direction(module, "ovk_eth_if_rx_enable", "MAC Channel %s RX already enabled\n", 1, 0);
    return rc + set_direction(module, "ovk_eth_if_tx_enable", nullptr, 1, 1);
}

u32 add_addresses(ovk_module *module)
{
    const ovk_eth_module_object &object = ovk::object_of(module);
    const kor_ptn_action broadcasts = {0, 2, 0}, own = {0, 4, 0}, owner = {0, port | 0x100, 0};
    u32 data[KOR_VP_FLOW_DATA_SIZE / 4] = {}, rc = 0;
    u8 info[8] = {};
    {
        const OnChannel at(module, "ovk_eth_if_src_mac_set", port);
        HW("Setting srcMAC " MAC_FORMAT " of MAC Channel %s\n", MAC_WORDS, NAME);
        rc += at.rc + kor_gatr_mac_addr_set(module->rte_handle, at.channel, MAC);
    }
    rc += receive_rule(module, broadcast, &broadcasts);
    rc += receive_rule(module, MAC, &own);
    {
        const OnChannel at(module, "ovk_eth_allow_mac", port);
        HW("Adding MAC addresses " MAC_FORMAT ", " MAC_FORMAT ", " MAC_FORMAT
           " in the Unicast Filter operating in %s mode for MAC Channel %s\n",
           MAC_WORDS, MAC_WORDS, MAC_WORDS, "Promiscuous", NAME);
        rc += at.rc + kor_gatr_unicast_filter_set(module->rte_handle, at.channel, 0, MAC, MAC, MAC);
    }
    rc += mac_rule(module, &owner);
    rc += association(module, true);
    data[2] = u32{MAC[0]} << 24 | u32{MAC[1]} << 16 | u32{MAC[2]} << 8 | MAC[3];
    data[3] = u32{MAC[4]} << 8 | MAC[5] | 8 << 16;
    std::memcpy(info, MAC, sizeof MAC);
    return rc + state(module, true, data, object.flow_info_first_id + port, info);
}

u32 counters(ovk_module *module, u32 number, u32 clear)
{
    u64 tx[KOR_GATR_TX_COUNTERS], rx[KOR_GATR_RX_COUNTERS];
    const OnChannel at(module, "ovk_eth_port_stats_get", number);
    return at.rc + kor_gatr_mac_statistics_get(module->rte_handle, at.channel, tx, rx, clear);
}

// The blocks that a create takes and a delete gives back.
struct Blocks {
    void *record;
    void *vlans;
};

u32 create(ovk_module *module, Blocks &blocks, u32 &ns_id)
{
    ENTER("ovk_ethernet_interface_create");
    u32 rc = ovk_sys_sem_lock_wait(module->module_lock);
    {
        const Passage passage(module, "ovk_eth_valid_intf_attrs");
    }
    blocks.record = kor_nvm_calloc(1, sizeof(ovk_eth_intf));
    INFO("Assigned internal interface ID 0x%04x\n", port);
    blocks.vlans = kor_nvm_calloc(OVK_ETH_VLAN_IDS, sizeof(ovk_eth_vlan_entry));
    rc += ovk_sys_interface_id_alloc(module->parent, &ns_id);
    INFO("Allocated Stats NS ID 0x%08x for if_num 0x%04x\n", ns_id, port);
    {
        const Passage passage(module, "ovk_eth_clear_se_state");
        TRACE(27, "NS ID 0x%08x idx %d: ", ns_id, 0);
        rc += kor_se_state_set(module->rte_handle, ns_id, 0, zeroes, sizeof zeroes);
    }
    rc += counters(module, port, 1);
    const kor_ptn_action to_flags = {KOR_PTN_ACTION_DATA, ns_id, flags};
    const kor_ptn_action to_port = {KOR_PTN_ACTION_VALUE, port, 0}, to_ns = {0, ns_id, 0};
    rc += flags_rules(module, &to_flags);
    rc += id_rules(module, ns_id, &to_port, &to_ns);
    rc += set_up_adapter(module);
    rc += enter_switch(module);
    rc += set_up_mac(module);
    rc += add_addresses(module);
    const ovk_sif_demux_entry entry = {ovk::object_of(module).cpu_entry_fn_id, port};
    rc += ovk_sif_netDriver_demux_add(module->parent, &entry);
    INFO("Created Interface 0x%08x\n", word(blocks.record));
    rc += kor_sem_post(module->module_lock);
    EXIT("ovk_ethernet_interface_create");
    return rc;
}

u32 remove(ovk_module *module, const Blocks &blocks, u32 ns_id)
{
    ENTER("ovk_ethernet_interface_delete");
    u32 rc = ovk_sys_sem_lock_wait(module->module_lock);
    kor_nvm_free(blocks.vlans);
    rc += ovk_sys_interface_id_free(module->parent, ns_id);
    INFO("Freed Stats NS ID 0x%08x for the interface %d\n", ns_id, port);
    rc += flags_rules(module, nullptr);
    rc += bridge_port(module, 0);
    {
        const OnChannel at(module, "ovk_eth_router_vlan_id", port);
        const kor_gatr_ingress_options options = {.byte_1 = 1, .byte_20 = 1, .byte_21 = 1};
        HW("Configuring ingress options for port %u\n", port);
        rc += kor_gatr_port_ingress_options_set(module->rte_handle, at.channel, &options);
        rc +=
            at.rc + kor_gatr_port_ingress_vlan_rem(module->rte_handle, at.channel, OVK_ETH_ROUTER_VLAN_ID);
    }
    rc += id_rules(module, ns_id, nullptr, nullptr);
    rc += state(module, false, zeroes, port, zeroes);
    rc += set_direction(module, "ovk_eth_if_rx_disable", nullptr, 0, 0);
    rc += set_direction(module, "ovk_eth_if_tx_disable", "MAC Channel %s TX already disabled\n", 1, 0);
    rc += receive_rule(module, broadcast, nullptr);
    rc += receive_rule(module, MAC, nullptr);
    rc += mac_rule(module, nullptr);
    rc += association(module, false);
    const ovk_sif_demux_entry entry = {ovk::object_of(module).cpu_entry_fn_id, port};
    rc += ovk_sif_netDriver_demux_remove(module->parent, &entry);
    kor_nvm_free(blocks.record);
    INFO("Deleted interface 0x%08x\n", word(blocks.record));
    rc += kor_sem_post(module->module_lock);
    EXIT("ovk_ethernet_interface_delete");
    return rc;
}

u32 vlan_rule(ovk_module *module, const kor_ptn_action *action)
{
    return rule(module, "ovk_eth_vlan_id", OVK_ETH_TREE_VALIDATE_VLAN_ID, action, Field{trunk_port, 8},
                Field{vlan, 12});
}

} // namespace

u32 direct_create_delete(ovk_module *module)
{
    Blocks blocks;
    u32 ns_id = 0;
    const u32 rc = create(module, blocks, ns_id);
    return rc + remove(module, blocks, ns_id);
}

u32 direct_create(ovk_module *module)
{
    Blocks blocks;
    u32 ns_id = 0;
    const u32 rc = create(module, blocks, ns_id);
    kor_nvm_free(blocks.vlans);
    kor_nvm_free(blocks.record);
    return rc;
}

u32 direct_delete(ovk_module *module)
{
    Blocks blocks;
    blocks.record = kor_nvm_malloc(sizeof(ovk_eth_intf));
    blocks.vlans = kor_nvm_malloc(OVK_ETH_VLAN_IDS * sizeof(ovk_eth_vlan_entry));
    return remove(module, blocks, trunk->stats_ns_id);
}

u32 direct_vlan_add(ovk_module *module)
{
    const kor_rte rte = module->rte_handle;
    const kor_ptn_action action = {KOR_PTN_ACTION_DATA, bridge_group, trunk->stats_ns_id};
    ENTER("ovk_ethernet_vlan_id_add");
    u32 rc = ovk_sys_sem_lock_wait(module->module_lock);
    rc += vlan_rule(module, &action);
    {
        const Passage passage(module, "ovk_eth_hsw_vlan_filter");
        u64 vps = 0;
        rc += kor_gatr_switch_bridge_vlan_vps_get(rte, bridge_group, &vps);
        vps |= 1u << trunk_port;
        rc += kor_gatr_switch_bridge_vlan_vps_set(rte, bridge_group, static_cast<u32>(vps),
                                                  static_cast<u32>(vps >> 32));
    }
    {
        const OnChannel at(module, "ovk_eth_hsw_port_ingress_vlan", trunk_port);
        rc += kor_gatr_port_ingress_vlan_set(rte, at.channel, bridge_group, 0);
        rc += at.rc + kor_gatr_port_ingress_qinq_cvlan_map_set(rte, at.channel, vlan, bridge_group);
    }
    INFO("Added BG_ID 0x%04x for Interface 0x%08x and VLAN 0x%04x\n", bridge_group, word(trunk), vlan);
    rc += kor_sem_post(module->module_lock);
    EXIT("ovk_ethernet_vlan_id_add");
    return rc;
}

u32 direct_vlan_delete(ovk_module *module)
{
    ENTER("ovk_ethernet_vlan_id_del");
    u32 rc = ovk_sys_sem_lock_wait(module->module_lock);
    rc += vlan_rule(module, nullptr);
    {
        const OnChannel at(module, "ovk_eth_hsw_port_ingress_vlan", trunk_port);
        rc += at.rc + kor_gatr_port_ingress_qinq_cvlan_map_rem(module->rte_handle, at.channel, vlan);
    }
    INFO("Removed VLAN ID 0x%04x for Interface 0x%08x\n", vlan, word(trunk));
    rc += kor_sem_post(module->module_lock);
    EXIT("ovk_ethernet_vlan_id_del");
    return rc;
}

u32 direct_egress_vlan(ovk_module *module)
{
    const kor_ptn_action action = {KOR_PTN_ACTION_DATA, vlan | 0x3000, 0};
    ENTER("ovk_ethernet_port_egress_vlan_config");
    u32 rc = ovk_sys_sem_lock_wait(module->module_lock);
    rc += rule(module, "ovk_eth_out_vlan_id", OVK_ETH_TREE_OUT_VLAN_LOOK_UP, &action, Field{trunk_port, 8},
               Field{bridge_group, 12});
    INFO("Added VLAN 0x%04x for Interface 0x%08x and BG_ID 0x%04x\n", vlan, word(trunk), bridge_group);
    rc += kor_sem_post(module->module_lock);
    EXIT("ovk_ethernet_port_egress_vlan_config");
    return rc;
}

u32 direct_counters(ovk_module *module)
{
    ENTER("ovk_ethernet_port_statistics_get");
    u32 rc = ovk_sys_sem_lock_wait(module->module_lock);
    rc += counters(module, trunk_port, 0);
    INFO("Retrieved the port stats for interface 0x%08x\n", word(trunk));
    rc += kor_sem_post(module->module_lock);
    EXIT("ovk_ethernet_port_statistics_get");
    return rc;
}

u32 direct_l2_counters(ovk_module *module)
{
    ENTER("ovk_ethernet_l2_interface_statistics_get");
    u32 rc = ovk_sys_sem_lock_wait(module->module_lock);
    {
        const Passage passage(module, "ovk_eth_if_stats_get");
        u8 counts[232];
        rc += kor_se_state_get(module->rte_handle, trunk->stats_ns_id, 0, counts, sizeof counts);
        TRACE(28, "NS ID 0x%08x idx %d: ", trunk->stats_ns_id, 0);
    }
    rc += counters(module, trunk_port, 0);
    INFO("Retrieved the L2 interface stats for interface 0x%08x\n", word(trunk));
    rc += kor_sem_post(module->module_lock);
    EXIT("ovk_ethernet_l2_interface_statistics_get");
    return rc;
}

} // namespace bench
