// SPDX-License-Identifier: Apache-2.0
#include "common/frame.h"
#include "common/mac.h"
#include "common/op.h"
#include "ovk_eth_helper/interface.h"
#include "ovk_eth_hw/port_rules.h"
#include "ovk_eth_hw/port_setup.h"
#include "ovk_ethernet_interface.h"

OVK_LOG_FILE(ovk_ethernet, 7);

using ovk::word;

namespace {

constexpr u32 with_filter(u32 flags, u32 filter)
{
    return filter == 1 ? flags | OVK_ETH_FLOW_FILTER_BIT : flags & ~OVK_ETH_FLOW_FILTER_BIT;
}

// The three addresses that the port's unicast filter lets through: its own, its aggregate's if it is a
// member, and the one that it was given.
u32 allow_own_and(ovk_module *module, const ovk_eth_intf &port, const u8 *mac)
{
    const ovk_eth_phy_tail &phy = port.phy;
    const u8 *own = phy.attrs.src_mac;
    const u8 *second = phy.parent_aggr != nullptr ? phy.parent_aggr->aggr.src_mac : own;
    return ovk_eth_allow_mac(module, phy.attrs.if_num, phy.promiscuous, own, second, mac);
}

u32 check_routed_port(ovk_module *module, ovk_ethernet_if_handle if_handle)
{
    OVK_TRY(ovk::check_if_handle(module, if_handle));
    return ovk::check_phy_mode(module, if_handle, ovk::routed_mode);
}

// A port writes the egress side first, an aggregate's members the ingress side.
u32 write_flags(ovk_module *module, ovk_eth_intf &intf, u32 inif_flags, u32 outif_flags)
{
    const auto write_in = [&](const ovk_eth_intf &port) {
        return ovk_eth_inif_flags_stats(module, OVK_ETH_ADD, port.hsw_if_id, port.stats_ns_id, inif_flags);
    };
    const auto write_out = [&](const ovk_eth_intf &port) {
        return ovk_eth_outif_flags_stats(module, OVK_ETH_ADD, port.if_id, port.stats_ns_id, outif_flags);
    };
    if (intf.if_type == INTERFACE_TYPE_PHY) {
        OVK_TRY(write_out(intf));
        return write_in(intf);
    }
    return ovk::for_each_port(intf, [&](const ovk_eth_intf &member) -> u32 {
        OVK_TRY(write_in(member));
        return write_out(member);
    });
}

} // namespace

u32 ovk_ethernet_promiscuous_mode(ovk_module *module, ovk_ethernet_if_handle if_handle, u32 mode)
{
    return ovk::public_call(OVK_CALLER, module,
                            OVK_LINE(mode != 0 ? "Failed to set Interface 0x%08x in Promiscuous mode\n"
                                               : "Failed to set Interface 0x%08x in Non-Promiscuous mode\n",
                                     word(if_handle)),
                            [&]() -> ovk::outcome {
                                OVK_TRY(ovk::check_if_handle(module, if_handle));
                                OVK_TRY(ovk::check_mode(module, if_handle, ovk::routed_mode));
                                OVK_TRY(ovk::for_each_port(*if_handle, [&](const ovk_eth_intf &port) {
                                    return ovk_eth_promisc_mode(module, port.if_id, mode);
                                }));
                                u8 &stored = if_handle->if_type == INTERFACE_TYPE_PHY
                                                 ? if_handle->phy.promiscuous
                                                 : if_handle->aggr.promiscuous;
                                stored = static_cast<u8>(mode);
                                OVK_INFO(module,
                                         mode != 0 ? "Interface 0x%08x set in Promiscuous mode\n"
                                                   : "Interface 0x%08x set in Non-Promiscuous mode\n",
                                         word(if_handle));
                                return KOR_OK;
                            });
}

u32 ovk_ethernet_flow_filter(ovk_module *module, ovk_ethernet_if_handle if_handle, u32 in_filter,
                             u32 out_filter)
{
    return ovk::public_call(
        OVK_CALLER, module,
        OVK_LINE("Failed to configure flow filtering on Interface 0x%08x\n", word(if_handle)),
        [&]() -> ovk::outcome {
            OVK_TRY(ovk::check_if_handle(module, if_handle));
            OVK_TRY(ovk::check_no_member(module, if_handle));
            OVK_TRY(ovk::check_mode(module, if_handle, ovk::switched_modes));
            const u32 inif_flags = with_filter(if_handle->inif_flags, in_filter);
            const u32 outif_flags = with_filter(if_handle->outif_flags, out_filter);
            OVK_TRY(write_flags(module, *if_handle, inif_flags, outif_flags));
            if_handle->inif_flags = inif_flags;
            if_handle->outif_flags = outif_flags;
            if (if_handle->if_type == INTERFACE_TYPE_PHY) {
                if_handle->phy.in_flow_filter = static_cast<u8>(in_filter);
                if_handle->phy.out_flow_filter = static_cast<u8>(out_filter);
            } else {
                if_handle->aggr.in_flow_filter = static_cast<u8>(in_filter);
                if_handle->aggr.out_flow_filter = static_cast<u8>(out_filter);
            }
            OVK_INFO(module, "Configured Basic Flow Filter on Interface 0x%08x\n", word(if_handle));
            return KOR_OK;
        });
}

u32 ovk_ethernet_recv_mac_add(ovk_module *module, ovk_ethernet_if_handle if_handle, const u8 *mac)
{
    // A null address shows as zeros in the lines that tell of it.
    constexpr u8 no_mac[OVK_ETH_MAC_BYTES] = {};
    const u8 *shown = mac != nullptr ? mac : no_mac;

    return ovk::public_call(
        OVK_CALLER, module,
        OVK_LINE("Failed to add " OVK_ETH_MAC_FORMAT " to intf 0x%08x recv mac list\n",
                 OVK_ETH_MAC_ARGS(shown), word(if_handle)),
        [&]() -> ovk::outcome {
            OVK_TRY(check_routed_port(module, if_handle));
            if (mac == nullptr)
                return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT, "NULL MAC Address pointer\n");
            if (ovk::is_group_mac(mac))
                return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_MAC_ADDR,
                                "MAC Address must be unicast address\n");
            OVK_TRY(allow_own_and(module, *if_handle, mac));
            ovk::copy_mac(if_handle->phy.recv_mac, mac);
            OVK_INFO(module, "Added " OVK_ETH_MAC_FORMAT " to intf 0x%08x recv mac list\n",
                     OVK_ETH_MAC_ARGS(mac), word(if_handle));
            return KOR_OK;
        });
}

u32 ovk_ethernet_recv_mac_del(ovk_module *module, ovk_ethernet_if_handle if_handle)
{
    return ovk::public_call(
        OVK_CALLER, module,
        OVK_LINE("Failed to remove MAC addr from intf 0x%08x recv mac list\n", word(if_handle)),
        [&]() -> ovk::outcome {
            OVK_TRY(check_routed_port(module, if_handle));
            const u8 *own = if_handle->phy.attrs.src_mac;
            OVK_TRY(allow_own_and(module, *if_handle, own));
            ovk::copy_mac(if_handle->phy.recv_mac, own);
            OVK_INFO(module, "Removed MAC addr from intf 0x%08x recv mac list\n", word(if_handle));
            return KOR_OK;
        });
}
