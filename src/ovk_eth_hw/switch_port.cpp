// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/switch_port.h"

#include <cstddef>

#include "common/op.h"
#include "common/switch_ids.h"
#include "kor_gatr.h"
#include "kor_gatr_switch.h"
#include "ovk_eth_hw/channel.h"

OVK_LOG_FILE(ovk_eth_hw, 16);

using ovk::on_channel;

static_assert(sizeof(kor_gatr_learn_attrs) == 10 && sizeof(kor_gatr_acl_port_cfg) == 100);
static_assert(sizeof(kor_gatr_bridge_port_attrs) == 24 &&
              offsetof(kor_gatr_bridge_port_attrs, max_age) == 20);
static_assert(sizeof(kor_gatr_ingress_options) == 24 && offsetof(kor_gatr_ingress_options, byte_20) == 20);
static_assert(offsetof(kor_gatr_parsing_options, untagged_discard) == 12);
static_assert(offsetof(kor_gatr_acl_port_cfg, word_56) == 56 &&
              offsetof(kor_gatr_acl_port_cfg, byte_98) == 98);

namespace {

constexpr u32 longest_age = 62;
constexpr u32 steps_per_minute = 12;
constexpr u32 most_minutes_in_steps = 4;

constexpr u32 unknown_multicast_index = 201;

// Shifts as the target makes them: 32 and more, or a negative amount, leave nothing.
constexpr u32 shifted_left(u32 value, u32 amount)
{
    return amount < 32 ? value << amount : 0;
}
constexpr u32 shifted_right(u32 value, u32 amount)
{
    return amount < 32 ? value >> amount : 0;
}

u32 get_bridge_attrs(ovk_module *module, u32 channel, kor_gatr_bridge_port_attrs *attrs)
{
    OVK_TRY_RTE(module, kor_gatr_switch_bridge_port_attrs_get(module->rte_handle, channel, attrs),
                KOR_E_BRIDGE_ATTRS_GET, "RTE Error: %s, kor_gatr_switch_bridge_port_attrs_get() Failed\n");
    return KOR_OK;
}

u32 set_bridge_attrs(ovk_module *module, u32 channel, const kor_gatr_bridge_port_attrs &attrs)
{
    OVK_TRY_RTE(module, kor_gatr_switch_bridge_port_attrs_set(module->rte_handle, channel, &attrs),
                KOR_E_BRIDGE_ATTRS_SET, "RTE Error: %s, kor_gatr_switch_bridge_port_attrs_set() Failed\n");
    return KOR_OK;
}

u32 get_learn_attrs(ovk_module *module, u32 channel, kor_gatr_learn_attrs *attrs)
{
    u8 learn = 0;
    OVK_TRY_RTE(module,
                kor_gatr_switch_bridge_port_learn_attrs_get(module->rte_handle, channel, &learn, attrs),
                KOR_E_LEARN_ATTRS_GET, "RTE Error: %s, Failed to get GATR HSW Learning Attributes\n");
    return KOR_OK;
}

u32 set_learn_attrs(ovk_module *module, u32 channel, u32 enable, const kor_gatr_learn_attrs &attrs)
{
    OVK_TRY_RTE(module,
                kor_gatr_switch_bridge_port_learn_attrs_set(module->rte_handle, channel, enable, &attrs),
                KOR_E_LEARN_ATTRS_SET, "RTE Error: %s, Failed to configure GATR HSW Learning Attributes\n");
    return KOR_OK;
}

u32 set_ingress_options(ovk_module *module, u32 channel, const kor_gatr_ingress_options &options)
{
    OVK_TRY_RTE(module, kor_gatr_port_ingress_options_set(module->rte_handle, channel, &options),
                KOR_E_INGRESS_OPTIONS_SET, "RTE Error: %s, Failed to set ingress options\n");
    return KOR_OK;
}

// What a port's ingress options are before its mode is put in.
kor_gatr_ingress_options base_ingress_options()
{
    kor_gatr_ingress_options options = {};
    options.byte_1 = 1;
    options.byte_20 = 1;
    options.byte_21 = 1;
    return options;
}

// Reads the port's parsing options, lets `change` change them, and writes them.
template <class Change>
u32 change_parsing_options(ovk_module *module, u32 channel, u32 port, Change change)
{
    kor_gatr_parsing_options options = {};
    OVK_TRY(ovk::get_parsing_options(module, channel, port, &options));
    change(options);
    return ovk::set_parsing_options(module, channel, port, options);
}

u32 enter_router_vlan(ovk_module *module, u32 channel)
{
    const kor_rte rte = module->rte_handle;
    OVK_TRY_RTE(
        module,
        ovk::already_is_fine(kor_gatr_port_ingress_vlan_set(rte, channel, OVK_ETH_ROUTER_VLAN_ID, 1)),
        KOR_E_INGRESS_VLAN_SET, "GATR HSW Ingress VLAN Set failed. RTE Error: %s \n");
    return KOR_OK;
}

u32 set_acl(ovk_module *module, u32 channel, u32 port)
{
    const kor_rte rte = module->rte_handle;
    kor_gatr_acl_port_cfg cfg = {};

    OVK_TRY_RTE(module, kor_gatr_switch_acl_port_cfg_get(rte, channel, &cfg), KOR_E_ACL_GET,
                "RTE Error: %s, Failed to get ACL options for port %u\n", port);
    cfg.word_56 = 1;
    cfg.word_60 = 1;
    cfg.byte_98 = 3;
    cfg.byte_99 = 0;
    OVK_TRY_RTE(module, kor_gatr_switch_acl_port_cfg_set(rte, channel, &cfg), KOR_E_ACL_SET,
                "RTE Error: %s, Failed to set ACL options for port %u\n", port);
    // A failed build is reported in the words of a failed read.
    OVK_TRY_RTE(module, kor_gatr_switch_acl_build(rte), KOR_E_ACL_BUILD,
                "RTE Error: %s, Failed to get ACL options for port %u\n", port);
    return KOR_OK;
}

u32 add_routed_vlan(ovk_module *module, u32 channel, u32 port, u32 vlan_id)
{
    const kor_rte rte = module->rte_handle;

    OVK_LOG(module, hw, "Configuring the Ingress VLAN for Port %u\n", port);
    OVK_TRY(enter_router_vlan(module, channel));
    OVK_TRY_RTE(module,
                kor_gatr_port_ingress_qinq_cvlan_map_set(rte, channel, vlan_id, OVK_ETH_ROUTER_VLAN_ID),
                KOR_E_CVLAN_MAP_SET, "GATR HSW CVLAN to SVLAN Map failed. RTE Error: %s \n");
    if (vlan_id != 0)
        return KOR_OK;
    OVK_TRY(
        change_parsing_options(module, channel, port, [](auto &options) { options.untagged_discard = 0; }));
    OVK_TRY_RTE(module, kor_gatr_port_default_vlan_set(rte, channel, OVK_ETH_ROUTER_VLAN_ID),
                KOR_E_DEFAULT_VLAN, "RTE Error: %s, Failed to Set default vlan id\n");
    return KOR_OK;
}

u32 remove_routed_vlan(ovk_module *module, u32 channel, u32 port, u32 vlan_id)
{
    OVK_LOG(module, hw, "Removing Ingress VLAN for Port %u\n", port);
    OVK_TRY_RTE(module, kor_gatr_port_ingress_qinq_cvlan_map_rem(module->rte_handle, channel, vlan_id),
                KOR_E_CVLAN_MAP_REM, "GATR HSW CVLAN to SVLAN Map removal failed. RTE Error: %s \n");
    if (vlan_id != 0)
        return KOR_OK;
    return change_parsing_options(module, channel, port,
                                  [](auto &options) { options.untagged_discard = 1; });
}

} // namespace

u32 ovk::get_parsing_options(ovk_module *module, u32 channel, u32 port, kor_gatr_parsing_options *options)
{
    OVK_TRY_RTE(module, kor_gatr_port_ingress_parsing_options_get(module->rte_handle, channel, options),
                KOR_E_PARSING_OPTIONS_GET, "RTE Error: %s, Failed to get parsing options for port %u\n",
                port);
    return KOR_OK;
}

u32 ovk::set_parsing_options(ovk_module *module, u32 channel, u32 port,
                             const kor_gatr_parsing_options &options)
{
    OVK_TRY_RTE(module, kor_gatr_port_ingress_parsing_options_set(module->rte_handle, channel, &options),
                KOR_E_PARSING_OPTIONS_SET, "RTE Error: %s, Failed to set parsing options for port %u\n",
                port);
    return KOR_OK;
}

u32 ovk_eth_hsw_port_learning_options_set(ovk_module *module, u32 port, u32 enable)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        kor_gatr_learn_attrs learning = {};
        kor_gatr_bridge_port_attrs bridging = {};

        OVK_LOG(module, hw, "Configuring the GATR Port Learning Attrs\n");
        OVK_TRY(get_learn_attrs(module, channel, &learning));
        learning.byte_5 = 1;
        learning.byte_6 = 1;
        learning.byte_7 = 1;
        learning.byte_8 = 0;
        learning.byte_9 = 1;
        OVK_TRY(set_learn_attrs(module, channel, enable, learning));
        OVK_LOG(module, hw, "Configuring the GATR Port max age timer value\n");
        OVK_TRY(get_bridge_attrs(module, channel, &bridging));
        bridging.max_age = longest_age;
        bridging.byte_11 = 1;
        return set_bridge_attrs(module, channel, bridging);
    });
}

u32 ovk_eth_hsw_port_learning_set(ovk_module *module, u32 port, u32 enable)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        kor_gatr_learn_attrs learning = {};
        OVK_TRY(get_learn_attrs(module, channel, &learning));
        return set_learn_attrs(module, channel, enable, learning);
    });
}

u32 ovk_eth_hsw_port_mac_aging_timer_value_set(ovk_module *module, u32 port, u32 minutes)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        kor_gatr_bridge_port_attrs bridging = {};
        OVK_LOG(module, hw, "Configuring the GATR Port max age timer value\n");
        OVK_TRY(get_bridge_attrs(module, channel, &bridging));
        bridging.max_age = minutes <= most_minutes_in_steps ? minutes * steps_per_minute : longest_age;
        return set_bridge_attrs(module, channel, bridging);
    });
}

u32 ovk_eth_hsw_port_flooding_option_set(ovk_module *module, u32 port, u8 option)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        const kor_rte rte = module->rte_handle;
        kor_gatr_bridge_port_attrs bridging = {};

        OVK_LOG(module, hw, "Configuring the GATR Port Flooding Option\n");
        OVK_TRY_RTE(module, kor_gatr_switch_bridge_port_attrs_get(rte, channel, &bridging),
                    KOR_E_BRIDGE_ATTRS_GET, "RTE Error: %s, Failed to Get GATR HSW Bridging Attributes\n");
        bridging.flooding = option;
        OVK_TRY_RTE(module, kor_gatr_switch_bridge_port_attrs_set(rte, channel, &bridging),
                    KOR_E_BRIDGE_ATTRS_SET, "RTE Error: %s, Failed to Set GATR HSW Bridging Attributes\n");
        return KOR_OK;
    });
}

u32 ovk_eth_set_gatr_port_hsw_mode(ovk_module *module, u32 port, u8 mode)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        kor_gatr_ingress_options options = {};
        OVK_TRY_RTE(module, kor_gatr_port_ingress_options_get(module->rte_handle, channel, &options),
                    KOR_E_INGRESS_OPTIONS_GET, "RTE Error: %s, Failed to Get ingress options\n");
        options.hsw_mode = mode;
        return set_ingress_options(module, channel, options);
    });
}

u32 ovk_eth_set_gatr_port_hsw_attr(ovk_module *module, u32 port, u8 hsw_mode, u8 bridging)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        OVK_LOG(module, hw, "Configuring ingress options for port %u\n", port);
        // Written without a read: nothing of an earlier owner's stays.
        kor_gatr_ingress_options options = base_ingress_options();
        options.hsw_mode = hsw_mode;
        options.bridging = bridging;
        OVK_TRY(set_ingress_options(module, channel, options));
        OVK_TRY(change_parsing_options(module, channel, port, [](auto &parsing) {
            parsing.byte_3 = 1;
            parsing.byte_4 = 1;
            parsing.untagged_discard = 1;
        }));
        const u32 group = hsw_mode != 0 ? unknown_multicast_index : 0;
        OVK_TRY_RTE(module,
                    kor_gatr_switch_bridge_unknown_multicast_set(module->rte_handle, channel, group),
                    KOR_E_UNKNOWN_MULTICAST,
                    "kor_gatr_switch_bridge_unknown_multicast_set failed. RTE Error: %s \n");
        return set_acl(module, channel, port);
    });
}

u32 ovk_eth_router_vlan_id(ovk_module *module, u32 port, u32 op)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        const kor_rte rte = module->rte_handle;

        OVK_LOG(module, hw, "Configuring ingress options for port %u\n", port);
        if (op == OVK_ETH_ADD)
            return enter_router_vlan(module, channel);
        OVK_TRY(set_ingress_options(module, channel, base_ingress_options()));
        OVK_TRY_RTE(module, kor_gatr_port_ingress_vlan_rem(rte, channel, OVK_ETH_ROUTER_VLAN_ID),
                    KOR_E_INGRESS_VLAN_REM, "GATR HSW Ingress VLAN Remove failed. RTE Error: %s \n");
        return KOR_OK;
    });
}

u32 ovk_eth_set_gatr_hsw_bridging_dest_vps(ovk_module *module, u32 op, u8 vp, u32 port)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        const kor_rte rte = module->rte_handle;
        const bool add = op == OVK_ETH_ADD;
        const u32 low = add ? shifted_left(1, vp) : 0;
        const u32 high = add ? shifted_left(1, vp - 32u) | shifted_right(1, 32u - vp) : 0;

        // Each destination index reaches its own virtual port and one that all have.
        OVK_TRY_RTE(module,
                    kor_gatr_switch_bridge_destination_vps_set(rte, static_cast<u8>(vp + 1),
                                                               low | (add ? OVK_ETH_FIXED_VP : 0), high),
                    KOR_E_DESTINATION_VPS, "RTE Error: %s, Failed to add entry to destination VP table\n");
        OVK_TRY_RTE(module, kor_gatr_switch_bridge_source_port_vps_set(rte, channel, low, high),
                    KOR_E_ACL_GET, "RTE Error: %s, Failed to source port map rule in HSW\n");
        return KOR_OK;
    });
}

u32 ovk_eth_hsw_routed_vlan(ovk_module *module, u32 op, u32 port, u32 vlan_id)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) {
        return op == OVK_ETH_ADD ? add_routed_vlan(module, channel, port, vlan_id)
                                 : remove_routed_vlan(module, channel, port, vlan_id);
    });
}
