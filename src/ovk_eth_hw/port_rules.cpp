// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/port_rules.h"

#include "ovk_eth_hw_helper/rule_engine.h"

OVK_LOG_FILE(ovk_eth_hw, 9);

using ovk::data_action;
using ovk::rule_key;
using ovk::value_action;

namespace {

constexpr u32 port_bits = 8;
constexpr u32 if_id_bits = 20;
constexpr u32 ns_id_bits = 24;

// Marks an owner in the action, so that port 0 is told from none.
constexpr u32 owner_given = 0x100;

constexpr u32 seconds_per_minute = 60;
constexpr u32 aging_rule_flag = 0x80;

} // namespace

u32 ovk_eth_map_subif_ns_id(ovk_module *module, u32 op, u32 if_id, u32 stats_ns_id)
{
    return ovk::internal_call(OVK_CALLER, module, [&] {
        return OVK_WRITE_RULE(module,
                              rule_key(module, OVK_ETH_TREE_MAP_INTF_NAMESPACE_ID).add(if_id, if_id_bits),
                              op, value_action(stats_ns_id));
    });
}

u32 ovk_eth_map_ns_intf_id(ovk_module *module, u32 op, u32 stats_ns_id, u32 if_id)
{
    return ovk::internal_call(OVK_CALLER, module, [&] {
        return OVK_WRITE_RULE(
            module, rule_key(module, OVK_ETH_TREE_MAP_NAMESPACE_INTF_ID).add(stats_ns_id, ns_id_bits), op,
            value_action(if_id));
    });
}

u32 ovk_eth_map_tvu_lagid_to_hsw_lagid(ovk_module *module, u32 op, u32 aggr_id, u32 hsw_if_id)
{
    return ovk::internal_call(OVK_CALLER, module, [&] {
        return OVK_WRITE_RULE(
            module, rule_key(module, OVK_ETH_TREE_TVU_LAG_ID_TO_HSW_LAG_ID).add(aggr_id, port_bits), op,
            value_action(hsw_if_id));
    });
}

// Destination map index 0 means none, so a switch index stands one higher in the key.
u32 ovk_eth_map_dest_map_index_to_mac_or_lag_id(ovk_module *module, u32 op, u32 hsw_if_id, u32 if_id)
{
    return ovk::internal_call(OVK_CALLER, module, [&] {
        return OVK_WRITE_RULE(
            module,
            rule_key(module, OVK_ETH_TREE_CONVERT_DESTMAPINDEX_TO_OUTPUT_PORT).add(hsw_if_id + 1, 6), op,
            value_action(if_id));
    });
}

u32 ovk_eth_inif_flags_stats(ovk_module *module, u32 op, u32 hsw_if_id, u32 stats_ns_id, u32 inif_flags)
{
    return ovk::internal_call(OVK_CALLER, module, [&] {
        return OVK_WRITE_RULE(
            module, rule_key(module, OVK_ETH_TREE_MAP_INPUT_PORT_NAMESPACE_ID).add(hsw_if_id, port_bits),
            op, data_action(stats_ns_id, inif_flags));
    });
}

u32 ovk_eth_outif_flags_stats(ovk_module *module, u32 op, u32 if_id, u32 stats_ns_id, u32 outif_flags)
{
    return ovk::internal_call(OVK_CALLER, module, [&] {
        return OVK_WRITE_RULE(
            module, rule_key(module, OVK_ETH_TREE_MAP_OUTPUT_PORT_NAMESPACE_ID).add(if_id, port_bits), op,
            data_action(stats_ns_id, outif_flags));
    });
}

u32 ovk_eth_setup_static_port(ovk_module *module, u32 op, u32 port, u32 out_port)
{
    return ovk::internal_call(OVK_CALLER, module, [&] {
        return OVK_WRITE_RULE(
            module, rule_key(module, OVK_ETH_TREE_LOOKUP_STATIC_PORT_MAP_TREE).add(port, port_bits), op,
            value_action(out_port));
    });
}

u32 ovk_eth_recv_mac(ovk_module *module, u32 op, u32 if_id, const ovk_eth_mac_prefix &mac, u32 mac_type)
{
    return ovk::internal_call(OVK_CALLER, module, [&] {
        return OVK_WRITE_RULE(module,
                              rule_key(module, OVK_ETH_TREE_VALIDATE_DESTMAC)
                                  .add(if_id, port_bits)
                                  .add_mac(mac.mac, mac.bits),
                              op, value_action(mac_type));
    });
}

u32 ovk_eth_mac_addr(ovk_module *module, u32 op, const u8 *mac, u32 if_id)
{
    return ovk::internal_call(OVK_CALLER, module, [&] {
        return OVK_WRITE_RULE(module, rule_key(module, OVK_ETH_TREE_LOOKUP_DESTMAC).add_mac(mac), op,
                              value_action(if_id | owner_given));
    });
}

u32 ovk_eth_mac_aging_timer(ovk_module *module, u32 port, u32 minutes)
{
    return ovk::internal_call(OVK_CALLER, module, [&] {
        return OVK_WRITE_RULE(module, rule_key(module, OVK_ETH_TREE_MAC_AGING_TIMER).add(port, port_bits),
                              OVK_ETH_ADD, data_action(minutes * seconds_per_minute, aging_rule_flag));
    });
}
