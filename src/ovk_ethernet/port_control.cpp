// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/port_control.h"

#include <cstring>

#include "common/frame.h"
#include "ovk_eth_helper/identifiers.h"
#include "ovk_eth_helper/interface.h"
#include "ovk_eth_helper/names.h"
#include "ovk_eth_hw/channel.h"

OVK_LOG_FILE(ovk_ethernet, 8);

using ovk::enabled_word;
using ovk::outcome;
using ovk::word;

namespace {

// What every call but one begins with.
u32 check_port(ovk_module *module, ovk_ethernet_if_handle if_handle)
{
    OVK_TRY(ovk::check_if_handle(module, if_handle));
    return ovk::check_phy(module, if_handle);
}

u32 number_of(ovk_ethernet_if_handle if_handle)
{
    return if_handle->phy.attrs.if_num;
}

bool is_xgmac(ovk_ethernet_if_handle if_handle)
{
    return ovk::is_xgmac_number(number_of(if_handle));
}

// The MAC's own numbers for policies, and for the bits of a status mask. Bits 0x10 and 0x20 of the mask are
// known to the caller's side alone.
constexpr u8 policy_bits[] = {0, 1, 2, 4, 8, 0x10};
static_assert(sizeof policy_bits == OVK_ETHERNET_FLOW_CONTROL_MAX);

struct mask_row {
    u32 bit;
    u32 mapped;
};
constexpr mask_row status_mask_bits[] = {{1, 0x40}, {2, 0x20}, {4, 2}, {8, 1}};
constexpr u32 status_mask = 0x3f;

u32 map_status_mask(u32 mask)
{
    u32 mapped = 0;
    for (const mask_row &row : status_mask_bits)
        if ((mask & row.bit) != 0)
            mapped |= row.mapped;
    return mapped;
}

} // namespace

u32 ovk_ethernet_output_rate_set(ovk_module *module, ovk_ethernet_if_handle if_handle, u32 rate)
{
    return ovk::public_call(OVK_CALLER, module,
                            OVK_LINE("Failed to set Interface 0x%08x at rate %s\n", word(if_handle),
                                     ovk_eth_port_rate_name(rate)),
                            [&]() -> outcome {
                                OVK_TRY(check_port(module, if_handle));
                                if (rate < OVK_ETHERNET_SPEED_10M || rate > OVK_ETHERNET_SPEED_10G)
                                    return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_OUTPUT_RATE,
                                                    "Invalid Output Rate %s\n",
                                                    ovk_eth_port_rate_name(rate));
                                if (is_xgmac(if_handle))
                                    return OVK_FAIL(module, OVK_ETHERNET_E_INCOMPAT_PORT_TYPE,
                                                    "Rate for XGMAC port is fixed\n");
                                OVK_TRY(ovk_eth_if_speed_set(module, number_of(if_handle), rate));
                                OVK_INFO(module, "Interface 0x%08x rate set to %s\n", word(if_handle),
                                         ovk_eth_port_rate_name(rate));
                                return KOR_OK;
                            });
}

u32 ovk_ethernet_interface_tx(ovk_module *module, ovk_ethernet_if_handle if_handle, u32 enable)
{
    return ovk::public_call(
        OVK_CALLER, module,
        OVK_LINE("Failed to set Interface 0x%08x Tx %s\n", word(if_handle), enabled_word(enable)),
        [&]() -> outcome {
            OVK_TRY(check_port(module, if_handle));
            OVK_TRY(enable != 0 ? ovk_eth_if_tx_enable(module, number_of(if_handle))
                                : ovk_eth_if_tx_disable(module, number_of(if_handle)));
            OVK_INFO(module, "Interface 0x%08x Tx %s\n", word(if_handle), enabled_word(enable));
            return KOR_OK;
        });
}

u32 ovk_ethernet_interface_rx(ovk_module *module, ovk_ethernet_if_handle if_handle, u32 enable)
{
    return ovk::public_call(
        OVK_CALLER, module,
        OVK_LINE("Failed to set Interface 0x%08x Rx %s\n", word(if_handle), enabled_word(enable)),
        [&]() -> outcome {
            OVK_TRY(check_port(module, if_handle));
            OVK_TRY(enable != 0 ? ovk_eth_if_rx_enable(module, number_of(if_handle))
                                : ovk_eth_if_rx_disable(module, number_of(if_handle)));
            OVK_INFO(module, "Interface 0x%08x Rx %s\n", word(if_handle), enabled_word(enable));
            return KOR_OK;
        });
}

u32 ovk_ethernet_interface_duplex(ovk_module *module, ovk_ethernet_if_handle if_handle, u32 mode)
{
    const char *mode_word = mode == OVK_ETHERNET_DUPLEX_FULL ? "Full-Duplex" : "Half-Duplex";

    return ovk::public_call(
        OVK_CALLER, module,
        OVK_LINE("Failed to set Interface 0x%08x in %s mode\n", word(if_handle), mode_word),
        [&]() -> outcome {
            OVK_TRY(check_port(module, if_handle));
            if (is_xgmac(if_handle))
                return OVK_FAIL(module, OVK_ETHERNET_E_INCOMPAT_PORT_TYPE,
                                "Duplixity for XGMAC port is fixed to full-duplex\n");
            if (mode != OVK_ETHERNET_DUPLEX_HALF && mode != OVK_ETHERNET_DUPLEX_FULL)
                return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_DUPLEX_MODE, "Invalid duplex mode %s\n",
                                ovk_eth_mac_duplex_name(mode));
            OVK_TRY(mode == OVK_ETHERNET_DUPLEX_FULL
                        ? ovk_eth_if_full_duplex_set(module, number_of(if_handle))
                        : ovk_eth_if_full_duplex_reset(module, number_of(if_handle)));
            OVK_INFO(module, "Interface 0x%08x set in %s mode\n", word(if_handle), mode_word);
            return KOR_OK;
        });
}

u32 ovk_ethernet_interface_autoneg(ovk_module *module, ovk_ethernet_if_handle if_handle, u32 enable)
{
    return ovk::public_call(OVK_CALLER, module,
                            OVK_LINE("Failed to set Autonegotiation %s for Interface 0x%08x\n",
                                     enabled_word(enable), word(if_handle)),
                            [&]() -> outcome {
                                OVK_TRY(check_port(module, if_handle));
                                if (is_xgmac(if_handle))
                                    return OVK_FAIL(module, OVK_ETHERNET_E_INCOMPAT_PORT_TYPE,
                                                    "Auto-neg for XGMAC port cannot be enabled\n");
                                OVK_TRY(enable != 0
                                            ? ovk_eth_if_autoneg_enable(module, number_of(if_handle))
                                            : ovk_eth_if_autoneg_disable(module, number_of(if_handle)));
                                OVK_INFO(module, "Autonegotiation %s for Interface 0x%08x\n",
                                         enabled_word(enable), word(if_handle));
                                return KOR_OK;
                            });
}

u32 ovk_ethernet_autoneg_force(ovk_module *module, ovk_ethernet_if_handle if_handle)
{
    return ovk::public_call(
        OVK_CALLER, module,
        OVK_LINE("Failed to re-start Autonegotiation for Interface 0x%08x\n", word(if_handle)),
        [&]() -> outcome {
            OVK_TRY(check_port(module, if_handle));
            if (is_xgmac(if_handle))
                return OVK_FAIL(module, OVK_ETHERNET_E_INCOMPAT_PORT_TYPE,
                                "Auto-neg for XGMAC port cannot be forced\n");
            OVK_TRY(ovk_eth_if_autoneg_force(module, number_of(if_handle)));
            OVK_INFO(module, "Autonegotiation Re-started for Interface 0x%08x\n", word(if_handle));
            return KOR_OK;
        });
}

u32 ovk_ethernet_mac_channel_get(ovk_module *module, ovk_ethernet_if_handle if_handle, u32 *channel)
{
    return ovk::public_call(
        OVK_CALLER, module,
        OVK_LINE("Failed to get MAC Channel Info for Interface 0x%08x\n", word(if_handle)),
        [&]() -> outcome {
            if (channel == nullptr)
                return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT, "Null Pointer parameter\n");
            OVK_TRY(check_port(module, if_handle));
            const ovk::found_channel found = ovk::find_channel(module, number_of(if_handle));
            OVK_TRY(found.status);
            *channel = found.channel;
            OVK_INFO(module, "Retrieved MAC Channel Info for Interface 0x%08x\n", word(if_handle));
            return KOR_OK;
        });
}

u32 ovk_ethernet_port_status_get(ovk_module *module, ovk_ethernet_if_handle if_handle, u32 blocking,
                                 u32 mask, ovk_ethernet_port_status *status)
{
    return ovk::public_call(
        OVK_CALLER, module,
        OVK_LINE("Failed to retrieve port status for Interface 0x%08x\n", word(if_handle)),
        [&]() -> outcome {
            OVK_TRY(check_port(module, if_handle));
            if (status == nullptr)
                return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT, "Null Pointer Parameter for Port Status\n");
            if ((mask & status_mask) == 0)
                return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT,
                                "Mask field for port status must not be all clear\n");
            *status = {};
            OVK_TRY(
                ovk_eth_port_status(module, number_of(if_handle), blocking, map_status_mask(mask), status));
            OVK_INFO(module, "Port Status Retrieved for Interface 0x%08x\n", word(if_handle));
            return KOR_OK;
        });
}

u32 ovk_ethernet_flow_control(ovk_module *module, ovk_ethernet_if_handle if_handle, u32 enable, u32 policy,
                              u32 time)
{
    return ovk::public_call(
        OVK_CALLER, module,
        OVK_LINE("Failed to set the Flow Control Policy for Interface 0x%08x\n", word(if_handle)),
        [&]() -> outcome {
            OVK_TRY(check_port(module, if_handle));
            if (time == 0)
                return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT, "Time duration setting %d is invalid\n",
                                time);
            if (policy < OVK_ETHERNET_FLOW_CONTROL_RESPOND || policy >= OVK_ETHERNET_FLOW_CONTROL_MAX)
                return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT, "Flow Control Policy Type %s is invalid\n",
                                ovk_eth_flow_control_policy_name(policy));
            OVK_TRY(ovk_eth_if_flow_control_set(module, number_of(if_handle), enable, policy_bits[policy],
                                                time));
            OVK_INFO(module, "Flow Control Policy Applied for Interface 0x%08x\n", word(if_handle));
            return KOR_OK;
        });
}

u32 ovk_ethernet_port_loopback(ovk_module *module, ovk_ethernet_if_handle if_handle, u32 enable)
{
    return ovk::public_call(OVK_CALLER, module,
                            OVK_LINE(enable != 0 ? "Failed to enable loopback on Interface 0x%08x\n"
                                                 : "Failed to disable loopback on Interface 0x%08x\n",
                                     word(if_handle)),
                            [&]() -> outcome {
                                OVK_TRY(check_port(module, if_handle));
                                OVK_TRY(
                                    ovk_eth_if_loopback(module, number_of(if_handle), enable != 0 ? 1 : 0));
                                OVK_INFO(module,
                                         enable != 0 ? "Loopback enabled on Interface 0x%08x\n"
                                                     : "Loopback disabled on Interface 0x%08x\n",
                                         word(if_handle));
                                return KOR_OK;
                            });
}

u32 ovk_ethernet_pcp_to_task_pri_map(ovk_module *module, const u8 *map)
{
    return ovk::public_call(
        OVK_CALLER, module, OVK_LINE("Failed to set the PCP to Task Priority map\n"), [&]() -> outcome {
            u8 *priorities = ovk::object_of(module).pcp_to_task_pri;

            if (map == nullptr)
                return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT, "Null Pointer parameter\n");
            if (std::memchr(map, 0, OVK_ETH_TASK_PRIORITIES) != nullptr)
                return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT,
                                "Task Priority 0 cannot be used for External Traffic.\n");
            std::memcpy(priorities, map, OVK_ETH_TASK_PRIORITIES);
            return ovk::write_task_priorities(module, priorities);
        });
}
