// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/port_control.h"

#include <cstring>

#include "kor_gatr.h"
#include "ovk_eth_helper/names.h"
#include "ovk_eth_hw/channel.h"

OVK_LOG_FILE(ovk_eth_hw, 13);

using ovk::enabled_word;
using ovk::on_channel;

namespace {

// One direction of a port on or off; the other keeps its state.
u32 set_direction(ovk_module *module, u32 channel, bool is_tx, u32 on)
{
    const kor_rte rte = module->rte_handle;
    const char *name = ovk_eth_mac_channel_name(channel);
    u32 rx = 0;
    u32 tx = 0;

    if (const u32 rc = kor_gatr_port_enable_get(rte, channel, &rx, &tx))
        return OVK_FAIL(module, rc, "RTE Error: %s, Failed to get the GATR port admin status\n",
                        kor_status_get(rc));
    u32 &state = is_tx ? tx : rx;
    if ((state != 0) == (on != 0)) {
        OVK_LOG(module, hw,
                is_tx ? (on != 0 ? "MAC Channel %s TX already enabled\n"
                                 : "MAC Channel %s TX already disabled\n")
                      : (on != 0 ? "MAC Channel %s RX already enabled\n"
                                 : "MAC Channel %s RX already disabled\n"),
                name);
        return KOR_OK;
    }
    state = on;
    OVK_LOG(module, hw, "Configuring MAC Channel %s with Rx %s and Tx %s\n", name, enabled_word(rx),
            enabled_word(tx));
    if (const u32 rc = kor_gatr_port_enable_set(rte, channel, rx, tx))
        return OVK_FAIL(module, rc, "RTE Error: %s, Failed to set the GATR port admin status\n",
                        kor_status_get(rc));
    return KOR_OK;
}

u32 get_speed(ovk_module *module, u32 channel, u32 port, u32 *speed, u32 *duplex)
{
    OVK_TRY_RTE(module, kor_mac_speed_duplex_get(module->rte_handle, channel, speed, duplex),
                KOR_E_SPEED_GET, "RTE Error: %s, Failed to get the GATR port speed mode for port %d\n",
                port);
    return KOR_OK;
}

void log_speed(ovk_module *module, u32 channel, u32 speed, u32 duplex)
{
    OVK_LOG(module, hw, "Configuring MAC Channel %s with %s speed and in %s mode\n",
            ovk_eth_mac_channel_name(channel), ovk_eth_mac_speed_name(speed),
            ovk_eth_mac_duplex_name(duplex));
}

u32 set_duplex(ovk_module *module, u32 channel, u32 port, u32 duplex)
{
    u32 speed = 0;
    u32 old_duplex = 0;

    OVK_TRY(get_speed(module, channel, port, &speed, &old_duplex));
    if (old_duplex == duplex) {
        OVK_LOG(module, hw,
                duplex == OVK_ETHERNET_DUPLEX_FULL
                    ? "MAC Channel %s already configured in Full Duplex mode\n"
                    : "MAC Channel %s already configured in Half Duplex mode\n",
                ovk_eth_mac_channel_name(channel));
        return KOR_OK;
    }
    log_speed(module, channel, speed, duplex);
    OVK_TRY_RTE(module, kor_mac_speed_duplex_set(module->rte_handle, channel, speed, duplex),
                KOR_E_SPEED_SET, "RTE Error: %s, Failed to set the GATR port speed mode for port %d\n",
                port);
    return KOR_OK;
}

constexpr u32 phy_speed_1g = 2;

constexpr u32 ovk_eth_convert_phy_speed(u32 phy_speed)
{
    return phy_speed <= phy_speed_1g ? phy_speed + OVK_ETHERNET_SPEED_10M : 0;
}

static_assert(sizeof(ovk_ethernet_port_status) == 12);

struct bridging_vp_row {
    u32 id;
    const char *name;
};

constexpr bridging_vp_row bridging_vps[] = {
    {.id = 0x16, .name = "ethernet_hsw_switch"},
    {.id = 0x18, .name = "ethernet_hsw_flood"},
    {.id = 0x17, .name = "ethernet_hsw_higher_layer_forward"},
};
static_assert(sizeof(kor_gatr_bridging_vp) == 20 && offsetof(kor_gatr_bridging_vp, pcp_task_priority) == 4);

} // namespace

u32 ovk_eth_if_tx_enable(ovk_module *module, u32 port)
{
    return on_channel(OVK_CALLER, module, port,
                      [&](u32 channel) { return set_direction(module, channel, true, 1); });
}

u32 ovk_eth_if_tx_disable(ovk_module *module, u32 port)
{
    return on_channel(OVK_CALLER, module, port,
                      [&](u32 channel) { return set_direction(module, channel, true, 0); });
}

u32 ovk_eth_if_rx_enable(ovk_module *module, u32 port)
{
    return on_channel(OVK_CALLER, module, port,
                      [&](u32 channel) { return set_direction(module, channel, false, 1); });
}

u32 ovk_eth_if_rx_disable(ovk_module *module, u32 port)
{
    return on_channel(OVK_CALLER, module, port,
                      [&](u32 channel) { return set_direction(module, channel, false, 0); });
}

u32 ovk_eth_if_speed_set(ovk_module *module, u32 port, u32 rate)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        u32 speed = 0;
        u32 duplex = 0;

        OVK_TRY(get_speed(module, channel, port, &speed, &duplex));
        if (speed == rate) {
            OVK_LOG(module, hw, "MAC Channel %s already configured for %s\n",
                    ovk_eth_mac_channel_name(channel), ovk_eth_mac_speed_name(rate));
            return KOR_OK;
        }
        log_speed(module, channel, rate, duplex);
        OVK_TRY_RTE(module, kor_mac_speed_duplex_set(module->rte_handle, channel, rate, duplex),
                    KOR_E_SPEED_SET, "RTE Error: %s, Failed to set the GATR port speed for port %d\n",
                    port);
        return KOR_OK;
    });
}

u32 ovk_eth_if_full_duplex_set(ovk_module *module, u32 port)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) {
        return set_duplex(module, channel, port, OVK_ETHERNET_DUPLEX_FULL);
    });
}

u32 ovk_eth_if_full_duplex_reset(ovk_module *module, u32 port)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) {
        return set_duplex(module, channel, port, OVK_ETHERNET_DUPLEX_HALF);
    });
}

u32 ovk_eth_if_autoneg_enable(ovk_module *module, u32 port)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        OVK_LOG(module, hw, "Enabling Auto-negotiation for MAC Channel %s\n",
                ovk_eth_mac_channel_name(channel));
        return KOR_OK;
    });
}

u32 ovk_eth_if_autoneg_disable(ovk_module *module, u32 port)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        OVK_LOG(module, hw, "Disabling Auto-negotiation for MAC Channel %s\n",
                ovk_eth_mac_channel_name(channel));
        return KOR_OK;
    });
}

u32 ovk_eth_if_autoneg_force(ovk_module *module, u32 port)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        OVK_LOG(module, hw, "Enabling and Re-starting Auto-negotiation for MAC Channel %s\n",
                ovk_eth_mac_channel_name(channel));
        return KOR_OK;
    });
}

u32 ovk_eth_if_loopback(ovk_module *module, u32 port, u32 enable)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        OVK_LOG(module, hw, "%s loopback on MAC Channel %s\n", enable != 0 ? "Enabling" : "Disabling",
                ovk_eth_mac_channel_name(channel));
        return KOR_OK;
    });
}

u32 ovk_eth_port_status(ovk_module *module, u32 port, u32 blocking, u32 mask,
                        ovk_ethernet_port_status *status)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        OVK_LOG(module, hw, "Getting Port Status for MAC Channel %s in %s mode, mask = 0x%08x\n",
                ovk_eth_mac_channel_name(channel), blocking == 1 ? "Blocking" : "Non-blocking", mask);
        status->port_configured = 1;
        status->port_up = 1;
        status->autoneg_complete = 1;
        status->duplex = OVK_ETHERNET_DUPLEX_FULL;
        status->speed = ovk_eth_convert_phy_speed(phy_speed_1g);
        return KOR_OK;
    });
}

u32 ovk_eth_if_flow_control_set(ovk_module *module, u32 port, u32 enable, u32 policy_bit, u32 time)
{
    return on_channel(OVK_CALLER, module, port, [&](u32 channel) -> u32 {
        OVK_LOG(
            module, hw,
            "Enabling pause frame handling for MAC Channel %s with pause-type = %d and pause-time = %d\n",
            ovk_eth_mac_channel_name(channel), policy_bit, time);
        OVK_TRY_RTE(module,
                    kor_gatr_mac_flow_ctrl_set(module->rte_handle, channel, enable, policy_bit, time),
                    KOR_E_FLOW_CONTROL, "RTE Error: %s, Failed to set Pause Frame Handling Policy\n");
        return KOR_OK;
    });
}

u32 ovk::write_task_priorities(ovk_module *module, const u8 *map)
{
    for (const bridging_vp_row &row : bridging_vps) {
        kor_gatr_bridging_vp record = {};
        if (const u32 rc = kor_gatr_common_vps_bridging_vp_get(module->rte_handle, row.id, &record))
            return OVK_FAIL(module, rc, "kor_gatr_common_vps_bridging_vp_get Failed for %s VP Name\n",
                            row.name);
        std::memcpy(record.pcp_task_priority, map, sizeof record.pcp_task_priority);
        if (const u32 rc = kor_gatr_common_vps_bridging_vp_set(module->rte_handle, row.id, &record))
            return OVK_FAIL(module, rc, "kor_gatr_common_vps_bridging_vp_set Failed for %s VP Name\n",
                            row.name);
    }
    return KOR_OK;
}
