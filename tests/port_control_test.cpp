// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include <cstring>

namespace {

using handle = ovk_ethernet_if_handle;
using test::changes;
using test::hex;
using test::Lines;
using test::printed;

class PortControl : public test::InterfaceTest {
  protected:
    using call = std::function<u32(handle)>;
    template <class... Given, class... Args>
    call with(u32 (*make)(ovk_module *, handle, Given...), Args... args)
    {
        return [=, this](handle intf) { return make(module(), intf, static_cast<Given>(args)...); };
    }
    call rate(u32 speed) { return with(ovk_ethernet_output_rate_set, speed); }
    call tx(u32 on) { return with(ovk_ethernet_interface_tx, on); }
    call rx(u32 on) { return with(ovk_ethernet_interface_rx, on); }
    call duplex(u32 mode) { return with(ovk_ethernet_interface_duplex, mode); }
    call autoneg(u32 on) { return with(ovk_ethernet_interface_autoneg, on); }
    call flow(u32 policy, u32 time) { return with(ovk_ethernet_flow_control, 7, policy, time); }
    call loopback(u32 on) { return with(ovk_ethernet_port_loopback, on); }
    call status(u32 blocking, u32 mask, ovk_ethernet_port_status *to)
    {
        return with(ovk_ethernet_port_status_get, blocking, mask, to);
    }
    const call force = with(ovk_ethernet_autoneg_force),
               channel = with(ovk_ethernet_mac_channel_get, &channel_);

    // `text` with the interface's handle for each '@'.
    static std::string of(handle intf, const std::string &text)
    {
        return std::regex_replace(text, std::regex("@"), "Interface " + hex(intf));
    }

    const handle port_ = test::make_port(module(), 0x11, 2);
    u32 channel_ = 99;
    ovk_ethernet_port_status status_{};
};

TEST_F(PortControl, CallReadsFirstWritesOnlyAChangeAndSaysSo)
{
    const std::string mac = "MAC Channel KOR_GMAC17", configuring = "Configuring " + mac + " with ";
    const std::string half = " speed and in OVK_ETHERNET_DUPLEX_HALF mode", speed = "OVK_ETHERNET_SPEED_";
    const std::string getting = "Getting Port Status for " + mac;
    const struct {
        call make;
        std::string changes, hw, info;
    } steps[] = {
        {tx(1), "", mac + " TX already enabled", "@ Tx Enabled"},
        {tx(0), "- tx = 0x1 ", configuring + "Rx Enabled and Tx Disabled", "@ Tx Disabled"},
        {tx(0), "", mac + " TX already disabled", "@ Tx Disabled"},
        {rx(9), "", mac + " RX already enabled", "@ Rx Enabled"},
        {rx(0), "- rx = 0x1 ", configuring + "Rx Disabled and Tx Disabled", "@ Rx Disabled"},
        {rx(0), "", mac + " RX already disabled", "@ Rx Disabled"},
        {tx(9), "+ tx = 0x1 ", configuring + "Rx Disabled and Tx Enabled", "@ Tx Enabled"},
        {rx(1), "+ rx = 0x1 ", configuring + "Rx Enabled and Tx Enabled", "@ Rx Enabled"},
        {duplex(2), "", mac + " already configured in Full Duplex mode", "@ set in Full-Duplex mode"},
        {duplex(1), "+ duplex = 0x1 ", configuring + speed + "1G" + half, "@ set in Half-Duplex mode"},
        {duplex(1), "", mac + " already configured in Half Duplex mode", "@ set in Half-Duplex mode"},
        {rate(2), "+ speed = 0x2 ", configuring + speed + "100M" + half, "@ rate set to " + speed + "100M"},
        {rate(2), "", mac + " already configured for " + speed + "100M", "@ rate set to " + speed + "100M"},
        {flow(1, 9), "+ flow_control = enable 0x7 policy 0x1 time 0x9 ",
         "Enabling pause frame handling for " + mac + " with pause-type = 1 and pause-time = 9",
         "Flow Control Policy Applied for @"},
        {autoneg(1), "", "Enabling Auto-negotiation for " + mac, "Autonegotiation Enabled for @"},
        {autoneg(0), "", "Disabling Auto-negotiation for " + mac, "Autonegotiation Disabled for @"},
        {force, "", "Enabling and Re-starting Auto-negotiation for " + mac,
         "Autonegotiation Re-started for @"},
        {loopback(256), "", "Enabling loopback on " + mac, "Loopback enabled on @"},
        {loopback(0), "", "Disabling loopback on " + mac, "Loopback disabled on @"},
        {status(1, 0x3f, &status_), "", getting + " in Blocking mode, mask = 0x00000063",
         "Port Status Retrieved for @"},
        {status(2, 0x20, &status_), "", getting + " in Non-blocking mode, mask = 0x00000000",
         "Port Status Retrieved for @"},
    };
    module()->log_mask = 15 | OVK_ETHERNET_LOG_HW;
    for (const auto &at : steps) {
        const u64 writes = sim::journal::write_count();
        std::string changed;
        EXPECT_EQ(
            test::messages_of([&] { changed = changes(host(), [&] { return at.make(port_); }); }),
            (Lines{"[ovk_ethernet_log: hw] " + at.hw, "[ovk_ethernet_log: info] " + of(port_, at.info)}));
        EXPECT_EQ(changed, at.changes) << at.hw;
        EXPECT_EQ(sim::journal::write_count() - writes, at.changes.empty() ? 0u : 1u) << at.hw;
    }
    module()->log_mask = 0;
    for (u32 policy = 1; policy <= 5; policy++) {
        EXPECT_EQ(flow(policy, 1)(port_), 0u);
        EXPECT_EQ(sim::port(host().rte(), KOR_GMAC17).flow_control.policy_bit, 1u << (policy - 1));
    }
    const ovk_ethernet_port_status up = {
        1, 1, 0, 1, OVK_ETHERNET_DUPLEX_FULL, OVK_ETHERNET_SPEED_1G}; // as all are
    std::memset(&status_, 0xff, sizeof status_);
    EXPECT_EQ(status(0, 1, &status_)(port_) + channel(port_), 0u);
    EXPECT_EQ(std::memcmp(&status_, &up, sizeof up), 0);
    EXPECT_EQ(channel_, u32{KOR_GMAC17});
}

TEST_F(PortControl, RefusesHandleKindAndPortInThatOrder)
{
    ovk_eth_intf subif = *port_, xgmac0 = *port_, xgmac8 = *port_;
    subif.if_type = INTERFACE_TYPE_VLAN;
    xgmac0.phy.attrs.if_num = 0, xgmac8.phy.attrs.if_num = 8;
    const std::string no_rate = "|Failed to set @ at rate ",
                      no_status = "|Failed to retrieve port status for @";
    const std::string no_flow = "|Failed to set the Flow Control Policy for @",
                      half = "|Failed to set @ in Half-Duplex mode";
    const std::string no_channel = "|Failed to get MAC Channel Info for @",
                      no_mac = "32522 ovk_sys_mac_channel_id_get failed for port 17|";
    const std::string no_state = no_mac + "32522 RTE, Failed to get the GATR port admin status|";
    const std::string no_enable = no_state + "32522 RTE, Failed to set the GATR port admin status|";
    const std::string no_get = no_mac + "106 RTE, Failed to get the GATR port speed mode for port 17|";
    const struct {
        call make;
        std::string operation, xgmac; // the cause on ports 0 and 8
        std::string faults;
    } calls[] = {
        {rate(2), no_rate + "OVK_ETHERNET_SPEED_100M", "Rate for XGMAC port is fixed",
         no_get + "107 RTE, Failed to set the GATR port speed for port 17|"},
        {tx(1), "|Failed to set @ Tx Enabled", "", no_state},
        {tx(0), "|Failed to set @ Tx Disabled", "", no_enable},
        {rx(0), "|Failed to set @ Rx Disabled", "", no_enable},
        {duplex(1), half, "Duplixity for XGMAC port is fixed to full-duplex",
         no_get + "107 RTE, Failed to set the GATR port speed mode for port 17|"},
        {autoneg(0), "|Failed to set Autonegotiation Disabled for @",
         "Auto-neg for XGMAC port cannot be enabled", no_mac},
        {force, "|Failed to re-start Autonegotiation for @", "Auto-neg for XGMAC port cannot be forced",
         no_mac},
        {channel, no_channel, "", no_mac},
        {status(1, 1, &status_), no_status, "", no_mac},
        {flow(1, 1), no_flow, "", no_mac + "110 RTE, Failed to set Pause Frame Handling Policy|"},
        {loopback(1), "|Failed to enable loopback on @", "", no_mac},
        {loopback(0), "|Failed to disable loopback on @", "", no_mac},
    };
    const auto refused = [&](const call &make, handle intf, u32 with_status, const std::string &messages) {
        expect([&] { return make(intf); }, with_status, of(intf, messages));
    };
    for (const auto &at : calls) {
        refused(at.make, nullptr, 0x2000003, "Invalid Interface handle 0x00000000" + at.operation);
        refused(at.make, &subif, 0x200001e,
                "Incompatible Interface type INTERFACE_TYPE_VLAN" + at.operation);
        for (const handle intf : {&xgmac0, &xgmac8})
            if (!at.xgmac.empty())
                refused(at.make, intf, 0x200001d, at.xgmac + at.operation);
    }
    const std::string unknown = "UNKNOWN_RATE",
                      policy = "Flow Control Policy Type OVK_ETHERNET_FLOW_CONTROL_";
    refused(with(ovk_ethernet_mac_channel_get, nullptr), nullptr, 8, "Null Pointer parameter" + no_channel);
    refused(rate(0), &xgmac0, 0x2000013, "Invalid Output Rate UNKNOWN_RATE" + no_rate + unknown);
    refused(rate(6), port_, 0x2000013, "Invalid Output Rate UNKNOWN_RATE" + no_rate + unknown);
    refused(duplex(3), &xgmac0, 0x200001d, "Duplixity for XGMAC port is fixed to full-duplex" + half);
    refused(duplex(0), port_, 0x2000016, "Invalid duplex mode OVK_ETHERNET_DUPLEX_INVALID" + half);
    refused(duplex(3), port_, 0x2000016, "Invalid duplex mode OVK_ETHERNET_DUPLEX_MAX" + half);
    refused(status(1, 0, nullptr), port_, 8, "Null Pointer Parameter for Port Status" + no_status);
    refused(status(1, ~0x3fu, &status_), port_, 8,
            "Mask field for port status must not be all clear" + no_status);
    refused(flow(0, 0), port_, 8, "Time duration setting 0 is invalid" + no_flow);
    refused(flow(0, 1), port_, 8, policy + "INVALID is invalid" + no_flow);
    refused(flow(6, 1), port_, 8, policy + "MAX is invalid" + no_flow);
    EXPECT_EQ(test::messages_of([&] { EXPECT_EQ(ovk_ethernet_output_rate_set(nullptr, port_, 2), 1u); }),
              test::no_module(of(port_, "Failed to set @ at rate OVK_ETHERNET_SPEED_100M")));
    for (const auto &at : calls) {
        const std::string faults = faults_of([&] { return at.make(port_); });
        EXPECT_EQ(faults, at.faults) << at.operation;
    }
}

TEST_F(PortControl, TaskPrioritiesGoToThreePipelinesInOrder)
{
    const auto set = [&](const char *map) {
        return ovk_ethernet_pcp_to_task_pri_map(module(), reinterpret_cast<const u8 *>(map));
    };
    const auto record = [](const char *digits) {
        return " = 80818283" + std::string(digits) + "8c8d8e8f90919293 ";
    };
    u8 *const stored = ovk::object_of(module()).pcp_to_task_pri;
    const std::string before = host().image(), old(stored, stored + 8), map = record("3132333435363738");
    for (const char *zero : {"\0002345678", "1234567", "123\0005678"})
        EXPECT_EQ(set(zero), 8u);
    EXPECT_EQ(host().image(), before);
    EXPECT_EQ(std::string(stored, stored + 8), old);
    EXPECT_EQ(changes(host(), [&] { return set("12345678"); }),
              "+ bridging_vp 0x16" + map + "+ bridging_vp 0x17" + map + "+ bridging_vp 0x18" + map);
    // The map stays, and so do the pipelines before the failure.
    const auto first = [&] {
        std::string out = printed(" %c:", stored[0]);
        for (const u32 id : {0x16, 0x18, 0x17})
            out += static_cast<char>(sim::bridging_vp(host().rte(), id).pcp_task_priority[0]);
        return out;
    };
    const std::string get = "32522 kor_gatr_common_vps_bridging_vp_get Failed for ";
    const std::string put = "32522 kor_gatr_common_vps_bridging_vp_set Failed for ";
    const std::string a = "ethernet_hsw_switch VP Name", b = "ethernet_hsw_flood VP Name",
                      c = "ethernet_hsw_higher_layer_forward VP Name";
    EXPECT_EQ(faults_of([&] { return set("abcdefgh"); }, [&] { EXPECT_EQ(set("12345678"), 0u); }, first),
              get + a + " a:111|" + put + a + " a:111|" + get + b + " a:a11|" + put + b + " a:a11|" + get +
                  c + " a:aa1|" + put + c + " a:aa1|");
    expect(
        [&] { return set("1234567"); }, 8,
        "Task Priority 0 cannot be used for External Traffic.|Failed to set the PCP to Task Priority map");
}

} // namespace
