// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/port_setup.h"

#include "common/layout.h"
#include "common/module_object.h"
#include "kor_gatr.h"
#include "kor_gatr_switch.h"
#include "ovk_eth_helper/names.h"
#include "ovk_eth_hw/channel.h"

OVK_LOG_FILE(ovk_eth_hw, 11);

using ovk::on_channel;

static_assert(sizeof(kor_gatr_vp_params) == 12);

namespace {

constexpr u32 untagged = 0;
constexpr u32 tagged = 1;

// Untagged traffic has the one priority of PCP 0, tagged traffic the whole table.
u32 set_pipelines(ovk_module *module, u32 channel, const char *vp_name, const char *tagged_vp_name)
{
    const u8 *priorities = ovk::object_of(module).pcp_to_task_pri;
    kor_gatr_vp_params params = {};
    params.default_task_priority = priorities[0];

    OVK_LOG(module, hw, "Configuring the default virtual pipeline %s\n", vp_name);
    OVK_TRY_RTE(module, kor_gatr_port_vp_set(module->rte_handle, channel, untagged, vp_name, &params),
                KOR_E_PORT_VP, "RTE Error: %s, Failed to configure Virtual Pipeline %s\n", vp_name);
    std::memcpy(params.pcp_task_priority, priorities, sizeof params.pcp_task_priority);
    const char *name = tagged_vp_name != nullptr ? tagged_vp_name : vp_name;
    OVK_TRY_RTE(module, kor_gatr_port_vp_set(module->rte_handle, channel, tagged, name, &params),
                KOR_E_PORT_VP,
                "RTE Error: %s, Failed to configure Virtual Pipeline ID for tagged packets\n");
    return KOR_OK;
}

// In log lines a mode of 1 is what it says; elsewhere anything but 0 is.
bool is_promiscuous(u32 mode)
{
    return mode == 1;
}

} // namespace

u32 ovk_eth_if_owner(ovk_module *module, u32 port, const char *vp_name, const char *tagged_vp_name)
{
    return on_channel(OVK_CALLER, module, port,
                      [&](u32 channel) { return set_pipelines(module, channel, vp_name, tagged_vp_name); });
}

u32 ovk_eth_set_gatr_port_vp(ovk_module *module, u32 port, const char *vp_name, const char *tagged_vp_name)
{
    return on_channel(OVK_CALLER, module, port,
                      [&](u32 channel) { return set_pipelines(module, channel, vp_name, tagged_vp_name); });
}

u32 ovk_eth_set_gatr_port_attr(ovk_module *module, u32 port, const char *vp_name,
                               const char *tagged_vp_name)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        const kor_rte rte = module->rte_handle;
        const char *name = ovk_eth_mac_channel_name(channel);

        OVK_TRY(set_pipelines(module, channel, vp_name, tagged_vp_name));
        // The ether types are the adapter's own at this point: nothing sets them.
        OVK_LOG(module, hw, "Configuring MAC Channel %s with VLAN ethType 0x%04x & 0x%04x\n", name,
                OVK_ETH_VLAN_ETH_TYPE, OVK_ETH_VLAN_ETH_TYPE);
        OVK_LOG(module, hw, "Enabling Q-in-Q for MAC Channel %s\n", name);
        OVK_TRY_RTE(module, kor_gatr_qinq_set(rte, channel, 1), KOR_E_QINQ,
                    "RTE Error: %s, Failed to disable Q-in-Q for %s\n", name);
        OVK_LOG(module, hw, "Enabling Append-good-CRC and strip-CRC for MAC Channel %s\n", name);
        OVK_TRY_RTE(module, kor_gatr_crc_set(rte, channel, 1, 0, 1), KOR_E_CRC,
                    "RTE Error: %s, Failed to configure CRC options\n");
        OVK_LOG(module, hw, "Disabling Unicast filtering for MAC Channel %s\n", name);
        OVK_TRY_RTE(module, kor_gatr_unicast_filter_enable(rte, channel, 0), KOR_E_UNICAST_FILTER,
                    "RTE Error: %s, Failed to disable Unicast filtering\n");
        OVK_LOG(module, hw, "Disabling broadcast filtering for MAC Channel %s\n", name);
        OVK_TRY_RTE(module, kor_gatr_broadcast_filter_set(rte, channel, 0), KOR_E_BROADCAST_FILTER,
                    "RTE Error: %s, Failed to disable Broadcast filtering\n");
        return KOR_OK;
    });
}

u32 ovk_eth_link_tag_msb(ovk_module *module, u32 port, u32 hsw_if_id, u32 *tag_start, u32 *tag_stop)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        const kor_rte rte = module->rte_handle;
        const char *name = ovk_eth_mac_channel_name(channel);
        const u32 tag_msb = hsw_if_id | (port << 8);
        u32 stop = 0;
        u32 start = 0;
        u32 old_msb = 0;
        u32 flag = 0;

        OVK_LOG(module, hw, "Configuring TAG MSB with %d for MAC Channel %s\n", tag_msb, name);
        OVK_TRY_RTE(module, kor_gatr_tag_config_get(rte, channel, &stop, &start, &old_msb, &flag),
                    KOR_E_TAG_GET, "RTE Error: %s, Failed to get the GATR tag MSB\n");
        OVK_TRY_RTE(module, kor_gatr_tag_config_set(rte, channel, stop, start, tag_msb), KOR_E_TAG_SET,
                    "RTE Error: %s, Failed to set the GATR tag MSB\n");
        OVK_TRY_RTE(module, kor_gatr_tag_enable_set(rte, channel, 1), KOR_E_TAG_ENABLE,
                    "RTE Error: %s, Failed to enable the GATR tag\n");
        OVK_LOG(module, hw, "Configuring tag_msb(0x%x), start(%d)/stop(%d) offset for MAC Channel %s\n",
                tag_msb, start, stop, name);
        // An aggregate without members has no port in the switch.
        if (hsw_if_id < OVK_ETH_SWITCH_PORTS)
            OVK_TRY_RTE(module, kor_gatr_switch_bridge_port_lport_set(rte, channel, hsw_if_id & 0xff),
                        KOR_E_SWITCH_LPORT, "RTE Error: %s, Logical Port set Failed for port %u\n", port);
        if (tag_start != nullptr)
            *tag_start = start;
        if (tag_stop != nullptr)
            *tag_stop = stop;
        return KOR_OK;
    });
}

u32 ovk_eth_promisc_mode(ovk_module *module, u32 port, u32 mode)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        // The words are the wrong way round, and have always been.
        OVK_LOG(module, hw, "%s Unicast Filter for MAC Channel %s\n",
                is_promiscuous(mode) ? "Enabling" : "Disabling", ovk_eth_mac_channel_name(channel));
        OVK_TRY_RTE(module, kor_gatr_unicast_filter_enable(module->rte_handle, channel, mode == 0 ? 1 : 0),
                    KOR_E_UNICAST_FILTER, "RTE Error: %s, Failed to enable/disable unicast filtering\n");
        return KOR_OK;
    });
}

u32 ovk_eth_allow_mac(ovk_module *module, u32 port, u32 mode, const u8 *mac1, const u8 *mac2,
                      const u8 *mac3)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        OVK_LOG(module, hw,
                "Adding MAC addresses " OVK_ETH_MAC_FORMAT ", " OVK_ETH_MAC_FORMAT ", " OVK_ETH_MAC_FORMAT
                " in the Unicast Filter operating in %s mode for MAC Channel %s\n",
                OVK_ETH_MAC_ARGS(mac1), OVK_ETH_MAC_ARGS(mac2), OVK_ETH_MAC_ARGS(mac3),
                is_promiscuous(mode) ? "Promiscuous" : "Non-promiscuous",
                ovk_eth_mac_channel_name(channel));
        OVK_TRY_RTE(
            module,
            kor_gatr_unicast_filter_set(module->rte_handle, channel, mode == 0 ? 1 : 0, mac1, mac2, mac3),
            KOR_E_UNICAST_FILTER_MACS, "RTE Error: %s, Failed to set MAC addresses in Unicast filter\n");
        return KOR_OK;
    });
}

u32 ovk_eth_if_src_mac_set(ovk_module *module, u32 port, const u8 *mac)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        OVK_LOG(module, hw, "Setting srcMAC " OVK_ETH_MAC_FORMAT " of MAC Channel %s\n",
                OVK_ETH_MAC_ARGS(mac), ovk_eth_mac_channel_name(channel));
        OVK_TRY_RTE(module, kor_gatr_mac_addr_set(module->rte_handle, channel, mac), KOR_E_MAC_ADDR,
                    "RTE Error: %s, Failed to set the source MAC address\n");
        return KOR_OK;
    });
}
