// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/vlan_membership.h"

#include "common/op.h"
#include "common/switch_ids.h"
#include "kor_gatr.h"
#include "kor_gatr_switch.h"
#include "ovk_eth_hw/channel.h"
#include "ovk_eth_hw/switch_port.h"
#include "ovk_eth_hw_helper/rule_engine.h"
#include "ovk_ethernet_vlan.h"

OVK_LOG_FILE(ovk_eth_hw, 15);

using ovk::on_channel;
using ovk::rule_key;

namespace {

constexpr u32 port_bits = 8;
constexpr u32 vlan_bits = 12;

constexpr u32 profile_given = 0x800000;
constexpr u32 single_tagged = 0x1000;

// As a set of its own.
constexpr u64 fixed_vp = OVK_ETH_FIXED_VP;

// A port's bit in a set of virtual ports. It is a 32-bit number that is widened with its sign, so port 31
// takes the whole high word along, and a port of 32 or more has none.
constexpr i32 port_bit(u32 port)
{
    const u32 shift = port & 0xff;
    return static_cast<i32>(shift < 32 ? 1u << shift : 0);
}

constexpr u64 sign_extended(i32 word)
{
    return static_cast<u64>(static_cast<int64_t>(word));
}

} // namespace

u32 ovk_eth_vlan_id(ovk_module *module, u32 op, u32 port, u32 vlan_id, u32 id, u16 if_word, u32 profile,
                    u32 last)
{
    return ovk::internal_call(OVK_CALLER, module, [&] {
        const u32 detail = profile != 0 ? profile_given | profile << 16 : last << 21;
        return OVK_WRITE_RULE(
            module,
            rule_key(module, OVK_ETH_TREE_VALIDATE_VLAN_ID).add(port, port_bits).add(vlan_id, vlan_bits),
            op, ovk::data_action(id, if_word | detail));
    });
}

u32 ovk_eth_out_vlan_id(ovk_module *module, u32 op, u32 port, u32 bg_id, u16 vlan_id, u32 port_tag_type,
                        u8 tag_rewrite)
{
    return ovk::internal_call(OVK_CALLER, module, [&] {
        rule_key key(module, OVK_ETH_TREE_OUT_VLAN_LOOK_UP);
        key.add(port, port_bits);
        if (bg_id != 0)
            key.add(bg_id, vlan_bits);
        const u32 tagged = port_tag_type == OVK_ETHERNET_PORT_TAG_TYPE_SINGLE_TAGGED ? single_tagged : 0;
        return OVK_WRITE_RULE(module, key, op,
                              ovk::data_action(vlan_id | tagged | (tag_rewrite & 1u) << 13, 0));
    });
}

u32 ovk_eth_hsw_vlan_filter(ovk_module *module, u32 op, u32 port, u32 bg_id, u8 fixed_vp_flag)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        u64 vps = 0;
        OVK_TRY_RTE(
            module,
            ovk::already_is_fine(kor_gatr_switch_bridge_vlan_vps_get(module->rte_handle, bg_id, &vps)),
            KOR_E_INGRESS_VLAN_SET, "HSW Ingress VLAN VPS Get failed. RTE Error: %s \n");
        if (op == OVK_ETH_ADD)
            vps = fixed_vp_flag != 0 ? fixed_vp : vps | sign_extended(port_bit(port));
        else
            vps &= fixed_vp_flag != 0 ? ~fixed_vp : sign_extended(~port_bit(port));
        OVK_TRY_RTE(module,
                    kor_gatr_switch_bridge_vlan_vps_set(module->rte_handle, bg_id, static_cast<u32>(vps),
                                                        static_cast<u32>(vps >> 32)),
                    KOR_E_CVLAN_MAP_SET, "HSW Ingress VLAN VPS Set failed. RTE Error: %s \n");
        return KOR_OK;
    });
}

u32 ovk_eth_hsw_port_ingress_vlan(ovk_module *module, u32 op, u32 port, u32 vlan_id, u16 bg_id)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        const kor_rte rte = module->rte_handle;
        if (op != OVK_ETH_ADD) {
            // Other VLANs of the bridge group may stand on the port, and nobody counts them: it stays.
            OVK_TRY_RTE(module, kor_gatr_port_ingress_qinq_cvlan_map_rem(rte, channel, vlan_id),
                        KOR_E_CVLAN_MAP_REM,
                        "GATR HSW CVLAN to SVLAN Map removal failed. RTE Error: %s \n");
            return KOR_OK;
        }
        OVK_TRY_RTE(module, ovk::already_is_fine(kor_gatr_port_ingress_vlan_set(rte, channel, bg_id, 0)),
                    KOR_E_INGRESS_VLAN_SET, "GATR HSW Ingress VLAN Set failed. RTE Error: %s \n");
        OVK_TRY_RTE(module, kor_gatr_port_ingress_qinq_cvlan_map_set(rte, channel, vlan_id, bg_id),
                    KOR_E_CVLAN_MAP_SET, "GATR HSW CVLAN to SVLAN Map failed. RTE Error: %s \n");
        return KOR_OK;
    });
}

u32 ovk_eth_set_gatr_port_default_vlan(ovk_module *module, u32 op, u32 port, u16 vlan)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        kor_gatr_parsing_options options = {};

        OVK_TRY(ovk::get_parsing_options(module, channel, port, &options));
        if (op == OVK_ETH_ADD)
            OVK_TRY_RTE(module, kor_gatr_port_default_vlan_set(module->rte_handle, channel, vlan),
                        KOR_E_DEFAULT_VLAN, "RTE Error: %s, Failed to Set default vlan id\n");
        options.untagged_discard = op == OVK_ETH_ADD ? 0 : 1;
        return ovk::set_parsing_options(module, channel, port, options);
    });
}
